#include "plot/picture.h"

#include "common/command_line.h"
#include "common/failure.h"
#include "common/text.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <numbers>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tool {

namespace {

constexpr double kLeftMargin = 78;
constexpr double kRightMargin = 24;
constexpr double kTopMargin = 58;
constexpr double kBottomMargin = 62;
constexpr double kPngScale = 2;

bool endsIn(std::string_view path, std::string_view ending)
{
    return path.size() > ending.size() &&
           std::ranges::equal(path.substr(path.size() - ending.size()), ending,
                              [](unsigned char a, char b) { return std::tolower(a) == b; });
}

bool isSvg(std::string_view path)
{
    return endsIn(path, ".svg");
}

cairo_status_t append(void* bytes, const unsigned char* data, unsigned length)
{
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

[[noreturn]] void failToWrite(const std::string& path, int error)
{
    throw Failure(kExitOutput, "cannot write the picture " + path, std::strerror(error),
                  error == ENOSPC ? "make room on the disk" : "write to another file with --plot");
}

void writeFile(const std::string& path, std::string_view bytes)
{
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0)
        failToWrite(path, errno);
    int error = 0;
    while (!bytes.empty() && error == 0) {
        const ssize_t written = write(fd, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<size_t>(written));
        else if (errno != EINTR)
            error = errno;
    }
    if (close(fd) != 0 && error == 0)
        error = errno;
    if (error == 0)
        return;
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode))
        unlink(path.c_str());
    failToWrite(path, error);
}

} // namespace

void Picture::addOption(CommandLine& line, std::string& path)
{
    line.value("--plot", "FILE", "Draw a picture into this file, .png or .svg",
               [&path](const std::string& text) {
                   if (!endsIn(text, ".png") && !endsIn(text, ".svg"))
                       throw WrongUsage(
                           "--plot", format("'%s' is no file name that ends in .png or .svg", text.c_str()));
                   path = text;
               });
}

Picture::Picture(std::string path, double width, double height, const std::string& title,
                 const std::string& subtitle, Axis x, Axis y)
    : m_path(std::move(path)), m_width(width), m_height(height), m_x(std::move(x)), m_y(std::move(y)),
      m_surface(nullptr, cairo().surface_destroy), m_context(nullptr, cairo().destroy)
{
    const double wholeWidth = kLeftMargin + width + kRightMargin;
    const double wholeHeight = kTopMargin + height + kBottomMargin;
    if (isSvg(m_path))
        m_surface.reset(cairo().svg_surface_create_for_stream(append, &m_bytes, wholeWidth, wholeHeight));
    else
        m_surface.reset(cairo().image_surface_create(CAIRO_FORMAT_RGB24,
                                                     static_cast<int>(std::ceil(wholeWidth * kPngScale)),
                                                     static_cast<int>(std::ceil(wholeHeight * kPngScale))));
    m_context.reset(cairo().create(m_surface.get()));
    if (!isSvg(m_path))
        cairo().scale(context(), kPngScale, kPngScale);
    colour({1, 1, 1});
    cairo().paint(context());
    drawAxes(title, subtitle);
}

double Picture::left() const
{
    return kLeftMargin;
}

double Picture::right() const
{
    return kLeftMargin + m_width;
}

double Picture::top() const
{
    return kTopMargin;
}

double Picture::bottom() const
{
    return kTopMargin + m_height;
}

double Picture::x(double value) const
{
    return left() + (value - m_x.low) / (m_x.high - m_x.low) * m_width;
}

double Picture::y(double value) const
{
    return bottom() - (value - m_y.low) / (m_y.high - m_y.low) * m_height;
}

void Picture::colour(const Colour& colour) const
{
    cairo().set_source_rgba(context(), colour.red, colour.green, colour.blue, colour.alpha);
}

double Picture::textWidth(const std::string& text, double size) const
{
    cairo_text_extents_t extents;
    cairo().set_font_size(context(), size);
    cairo().text_extents(context(), text.c_str(), &extents);
    return extents.x_advance;
}

void Picture::text(double atX, double atY, const std::string& text, Anchor anchor, double size,
                   bool bold) const
{
    cairo().select_font_face(context(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                             bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    const double width = textWidth(text, size);
    const double shift = anchor == Anchor::left ? 0 : anchor == Anchor::middle ? width / 2 : width;
    cairo().move_to(context(), atX - shift, atY);
    cairo().show_text(context(), text.c_str());
    cairo().new_path(context());
}

void Picture::clip() const
{
    cairo().save(context());
    cairo().rectangle(context(), left(), top(), m_width, m_height);
    cairo().clip(context());
}

void Picture::unclip() const
{
    cairo().restore(context());
}

void Picture::drawAxes(const std::string& title, const std::string& subtitle) const
{
    cairo_t* const cr = context();
    cairo().set_line_width(cr, 1);
    const auto ticks = [](const Axis& axis, const auto& draw) {
        if (axis.step <= 0)
            return;
        const double first = std::ceil(axis.low / axis.step - 1e-9);
        const double last = std::floor(axis.high / axis.step + 1e-9);
        for (double i = first; i <= last; ++i)
            draw(i * axis.step, format("%.*f", axis.decimals, i * axis.step + 0.0));
    };
    ticks(m_x, [&](double value, const std::string& label) {
        colour(kGrid);
        cairo().move_to(cr, x(value), top());
        cairo().line_to(cr, x(value), bottom());
        cairo().stroke(cr);
        colour(kInk);
        text(x(value), bottom() + 18, label, Anchor::middle);
    });
    ticks(m_y, [&](double value, const std::string& label) {
        colour(kGrid);
        cairo().move_to(cr, left(), y(value));
        cairo().line_to(cr, right(), y(value));
        cairo().stroke(cr);
        colour(kInk);
        text(left() - 8, y(value) + 4, label, Anchor::right);
    });
    colour(kInk);
    cairo().rectangle(cr, left(), top(), m_width, m_height);
    cairo().stroke(cr);

    text(left(), 26, title, Anchor::left, 16, true);
    text(left(), 46, subtitle, Anchor::left, 12.5);
    text((left() + right()) / 2, bottom() + 46, m_x.label, Anchor::middle, 13);
    cairo().save(cr);
    cairo().translate(cr, 26, (top() + bottom()) / 2);
    cairo().rotate(cr, -std::numbers::pi / 2);
    text(0, 0, m_y.label, Anchor::middle, 13);
    cairo().restore(cr);
}

void Picture::save()
{
    cairo_status_t status = cairo().status(context());
    if (!isSvg(m_path) && status == CAIRO_STATUS_SUCCESS)
        status = cairo().surface_write_to_png_stream(m_surface.get(), append, &m_bytes);
    cairo().surface_finish(m_surface.get()); // an SVG is written only now
    if (status == CAIRO_STATUS_SUCCESS)
        status = cairo().surface_status(m_surface.get());
    if (status != CAIRO_STATUS_SUCCESS)
        throw Failure(kExitInternal, "cannot draw the picture " + m_path, cairo().status_to_string(status),
                      "leave --plot out");
    writeFile(m_path, m_bytes);
}

} // namespace tool
