// The drawing library, loaded when the first PNG or PDF is drawn: with the eighteen libraries behind it, it
// takes longer to load than most commands take altogether.
#pragma once

#include "common/loaded.h"

#include <cairo-pdf.h>

namespace tool {

inline constexpr LoadedLibrary kCairo{"libcairo.so.2", "cannot draw a picture",
                                      "install libcairo2, or draw an .svg"};

// Its functions, without their prefix. What is not here cannot be called: nothing is linked with the library.
struct Cairo {
    decltype(&cairo_arc) arc = Loaded(kCairo, "cairo_arc");
    decltype(&cairo_clip) clip = Loaded(kCairo, "cairo_clip");
    decltype(&cairo_create) create = Loaded(kCairo, "cairo_create");
    decltype(&cairo_destroy) destroy = Loaded(kCairo, "cairo_destroy");
    decltype(&cairo_fill) fill = Loaded(kCairo, "cairo_fill");
    decltype(&cairo_image_surface_create) image_surface_create = Loaded(kCairo, "cairo_image_surface_create");
    decltype(&cairo_line_to) line_to = Loaded(kCairo, "cairo_line_to");
    decltype(&cairo_move_to) move_to = Loaded(kCairo, "cairo_move_to");
    decltype(&cairo_new_path) new_path = Loaded(kCairo, "cairo_new_path");
    decltype(&cairo_pdf_surface_create_for_stream) pdf_surface_create_for_stream =
        Loaded(kCairo, "cairo_pdf_surface_create_for_stream");
    decltype(&cairo_pdf_surface_set_metadata) pdf_surface_set_metadata =
        Loaded(kCairo, "cairo_pdf_surface_set_metadata");
    decltype(&cairo_rectangle) rectangle = Loaded(kCairo, "cairo_rectangle");
    decltype(&cairo_restore) restore = Loaded(kCairo, "cairo_restore");
    decltype(&cairo_rotate) rotate = Loaded(kCairo, "cairo_rotate");
    decltype(&cairo_save) save = Loaded(kCairo, "cairo_save");
    decltype(&cairo_scale) scale = Loaded(kCairo, "cairo_scale");
    decltype(&cairo_select_font_face) select_font_face = Loaded(kCairo, "cairo_select_font_face");
    decltype(&cairo_set_dash) set_dash = Loaded(kCairo, "cairo_set_dash");
    decltype(&cairo_set_font_size) set_font_size = Loaded(kCairo, "cairo_set_font_size");
    decltype(&cairo_set_line_join) set_line_join = Loaded(kCairo, "cairo_set_line_join");
    decltype(&cairo_set_line_width) set_line_width = Loaded(kCairo, "cairo_set_line_width");
    decltype(&cairo_set_source_rgba) set_source_rgba = Loaded(kCairo, "cairo_set_source_rgba");
    decltype(&cairo_show_text) show_text = Loaded(kCairo, "cairo_show_text");
    decltype(&cairo_status) status = Loaded(kCairo, "cairo_status");
    decltype(&cairo_status_to_string) status_to_string = Loaded(kCairo, "cairo_status_to_string");
    decltype(&cairo_stroke) stroke = Loaded(kCairo, "cairo_stroke");
    decltype(&cairo_surface_destroy) surface_destroy = Loaded(kCairo, "cairo_surface_destroy");
    decltype(&cairo_surface_finish) surface_finish = Loaded(kCairo, "cairo_surface_finish");
    decltype(&cairo_surface_status) surface_status = Loaded(kCairo, "cairo_surface_status");
    decltype(&cairo_surface_write_to_png_stream) surface_write_to_png_stream =
        Loaded(kCairo, "cairo_surface_write_to_png_stream");
    decltype(&cairo_text_extents) text_extents = Loaded(kCairo, "cairo_text_extents");
    decltype(&cairo_translate) translate = Loaded(kCairo, "cairo_translate");
};

// Throws Failure when the library is not there.
const Cairo& cairo();

} // namespace tool
