// The drawing library, loaded when the first PNG or PDF is drawn: with the eighteen libraries behind it, it
// takes longer to load than most commands take altogether.
#pragma once

#include <cairo-pdf.h>

namespace tool {

class CairoCall {
public:
    explicit CairoCall(const char* name) : m_name(name) {}
    template <class Function>
    operator Function*() const
    {
        return reinterpret_cast<Function*>(address());
    }

private:
    void* address() const;

    const char* m_name;
};

// Its functions, without their prefix. What is not here cannot be called: nothing is linked with the library.
struct Cairo {
    decltype(&cairo_arc) arc = CairoCall("cairo_arc");
    decltype(&cairo_clip) clip = CairoCall("cairo_clip");
    decltype(&cairo_create) create = CairoCall("cairo_create");
    decltype(&cairo_destroy) destroy = CairoCall("cairo_destroy");
    decltype(&cairo_fill) fill = CairoCall("cairo_fill");
    decltype(&cairo_image_surface_create) image_surface_create = CairoCall("cairo_image_surface_create");
    decltype(&cairo_line_to) line_to = CairoCall("cairo_line_to");
    decltype(&cairo_move_to) move_to = CairoCall("cairo_move_to");
    decltype(&cairo_new_path) new_path = CairoCall("cairo_new_path");
    decltype(&cairo_pdf_surface_create_for_stream) pdf_surface_create_for_stream =
        CairoCall("cairo_pdf_surface_create_for_stream");
    decltype(&cairo_pdf_surface_set_metadata) pdf_surface_set_metadata =
        CairoCall("cairo_pdf_surface_set_metadata");
    decltype(&cairo_rectangle) rectangle = CairoCall("cairo_rectangle");
    decltype(&cairo_restore) restore = CairoCall("cairo_restore");
    decltype(&cairo_rotate) rotate = CairoCall("cairo_rotate");
    decltype(&cairo_save) save = CairoCall("cairo_save");
    decltype(&cairo_scale) scale = CairoCall("cairo_scale");
    decltype(&cairo_select_font_face) select_font_face = CairoCall("cairo_select_font_face");
    decltype(&cairo_set_dash) set_dash = CairoCall("cairo_set_dash");
    decltype(&cairo_set_font_size) set_font_size = CairoCall("cairo_set_font_size");
    decltype(&cairo_set_line_join) set_line_join = CairoCall("cairo_set_line_join");
    decltype(&cairo_set_line_width) set_line_width = CairoCall("cairo_set_line_width");
    decltype(&cairo_set_source_rgba) set_source_rgba = CairoCall("cairo_set_source_rgba");
    decltype(&cairo_show_text) show_text = CairoCall("cairo_show_text");
    decltype(&cairo_status) status = CairoCall("cairo_status");
    decltype(&cairo_status_to_string) status_to_string = CairoCall("cairo_status_to_string");
    decltype(&cairo_stroke) stroke = CairoCall("cairo_stroke");
    decltype(&cairo_surface_destroy) surface_destroy = CairoCall("cairo_surface_destroy");
    decltype(&cairo_surface_finish) surface_finish = CairoCall("cairo_surface_finish");
    decltype(&cairo_surface_status) surface_status = CairoCall("cairo_surface_status");
    decltype(&cairo_surface_write_to_png_stream) surface_write_to_png_stream =
        CairoCall("cairo_surface_write_to_png_stream");
    decltype(&cairo_text_extents) text_extents = CairoCall("cairo_text_extents");
    decltype(&cairo_translate) translate = CairoCall("cairo_translate");
};

// Throws Failure when the library is not there.
const Cairo& cairo();

} // namespace tool
