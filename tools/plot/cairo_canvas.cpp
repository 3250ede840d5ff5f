#include "common/failure.h"
#include "common/text.h"
#include "plot/cairo.h"
#include "plot/canvas.h"

#include <cmath>
#include <numbers>

namespace tool {

namespace {

constexpr double kPngScale = 2;

cairo_status_t append(void* bytes, const unsigned char* data, unsigned length)
{
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

class CairoCanvas : public Canvas {
public:
    CairoCanvas(const Page& page, bool png)
        : m_png(png), m_surface(png ? imageOf(page) : pdfOf(page), cairo().surface_destroy),
          m_context(cairo().create(m_surface.get()), cairo().destroy)
    {
        if (m_png)
            cairo().scale(context(), kPngScale, kPngScale);
        CairoCanvas::fill({0, 0, page.width, page.height}, {1, 1, 1});
    }

    void stroke(std::span<const Point> line, const Pen& pen) override
    {
        for (const Point& point : line)
            cairo().line_to(context(), point.x, point.y);
        strokePath(pen);
    }

    void fill(const Box& box, const Colour& colour) override
    {
        use(colour);
        rectangle(box);
        cairo().fill(context());
    }

    void discs(std::span<const Point> centres, double radius, const Colour& colour) override
    {
        use(colour);
        for (const Point& centre : centres) {
            circle(centre, radius);
            cairo().fill(context());
        }
    }

    void ring(const Point& centre, double radius, const Pen& pen) override
    {
        circle(centre, radius);
        strokePath(pen);
    }

    void text(const Point& place, const std::string& text, const Lettering& lettering) override
    {
        const std::string safe = printable(text);
        cairo().save(context());
        use(lettering.colour);
        cairo().select_font_face(context(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                                 lettering.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        cairo().set_font_size(context(), lettering.size);
        cairo().translate(context(), place.x, place.y);
        if (lettering.upwards)
            cairo().rotate(context(), -std::numbers::pi / 2);
        cairo_text_extents_t extents;
        cairo().text_extents(context(), safe.c_str(), &extents);
        cairo().move_to(context(), -extents.x_advance * static_cast<double>(lettering.anchor) / 2, 0);
        cairo().show_text(context(), safe.c_str());
        cairo().new_path(context());
        cairo().restore(context());
    }

    void clip(const Box& box) override
    {
        cairo().save(context());
        rectangle(box);
        cairo().clip(context());
    }

    void unclip() override { cairo().restore(context()); }

    std::string finish() override
    {
        cairo_status_t status = cairo().status(context());
        if (m_png && status == CAIRO_STATUS_SUCCESS)
            status = cairo().surface_write_to_png_stream(m_surface.get(), append, &m_bytes);
        cairo().surface_finish(m_surface.get()); // a PDF is written only now
        if (status == CAIRO_STATUS_SUCCESS)
            status = cairo().surface_status(m_surface.get());
        if (status != CAIRO_STATUS_SUCCESS)
            throw Failure(kExitInternal, "cannot draw a picture", cairo().status_to_string(status),
                          "draw an .svg");
        return std::move(m_bytes);
    }

private:
    static cairo_surface_t* imageOf(const Page& page)
    {
        const auto pixels = [](double size) { return static_cast<int>(std::ceil(size * kPngScale)); };
        return cairo().image_surface_create(CAIRO_FORMAT_RGB24, pixels(page.width), pixels(page.height));
    }

    cairo_surface_t* pdfOf(const Page& page)
    {
        cairo_surface_t* const surface =
            cairo().pdf_surface_create_for_stream(append, &m_bytes, page.width, page.height);
        cairo().pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_TITLE, printable(page.title).c_str());
        cairo().pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_SUBJECT,
                                         printable(page.description).c_str());
        return surface;
    }

    cairo_t* context() const { return m_context.get(); }

    void use(const Colour& colour) const
    {
        cairo().set_source_rgba(context(), colour.red, colour.green, colour.blue, colour.alpha);
    }

    void rectangle(const Box& box) const
    {
        cairo().rectangle(context(), box.left, box.top, box.right - box.left, box.bottom - box.top);
    }

    void circle(const Point& centre, double radius) const
    {
        cairo().arc(context(), centre.x, centre.y, radius, 0, 2 * std::numbers::pi);
    }

    void strokePath(const Pen& pen) const
    {
        use(pen.colour);
        const double dashes[] = {5, 4};
        cairo().set_dash(context(), dashes, pen.dashed ? 2 : 0, 0);
        cairo().set_line_join(context(), CAIRO_LINE_JOIN_ROUND);
        cairo().set_line_width(context(), pen.width);
        cairo().stroke(context());
    }

    bool m_png;
    std::string m_bytes; // as they come
    std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> m_surface;
    std::unique_ptr<cairo_t, decltype(&cairo_destroy)> m_context;
};

} // namespace

std::unique_ptr<Canvas> pngCanvas(const Page& page)
{
    return std::make_unique<CairoCanvas>(page, true);
}

std::unique_ptr<Canvas> pdfCanvas(const Page& page)
{
    return std::make_unique<CairoCanvas>(page, false);
}

} // namespace tool
