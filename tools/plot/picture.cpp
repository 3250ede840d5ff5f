#include "plot/picture.h"

#include "common/clock.h"
#include "common/command_line.h"
#include "common/failure.h"
#include "common/file.h"
#include "common/names.h"
#include "common/text.h"
#include "plot/axis.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <ctime>
#include <string_view>
#include <utility>

namespace tool {

namespace {

constexpr double kLeftMargin = 78;
constexpr double kRightMargin = 24;
constexpr double kTopMargin = 40; // with the title; further lines come on top
constexpr double kLine = 18;
constexpr double kBottomMargin = 50;
constexpr double kSubtitleSize = 12.5;

struct Format {
    std::string_view ending;
    CanvasMaker canvas;
};
constexpr Format kFormats[] = {{".png", pngCanvas}, {".svg", svgCanvas}, {".pdf", pdfCanvas}};

const Format* formatOf(std::string_view path)
{
    const auto* found = std::ranges::find_if(kFormats, [path](const Format& format) {
        const std::string_view ending = format.ending;
        return path.size() > ending.size() &&
               std::ranges::equal(path.substr(path.size() - ending.size()), ending,
                                  [](unsigned char a, char b) { return std::tolower(a) == b; });
    });
    return found == std::end(kFormats) ? nullptr : found;
}

// Adds lines: as many of the pieces between the commas a line as it has room for.
void wrap(std::string_view text, double width, std::vector<std::string>& lines)
{
    const size_t first = lines.size();
    while (!text.empty()) {
        const size_t end = std::min(text.find(", "), text.size());
        const std::string piece(text.substr(0, end));
        text.remove_prefix(std::min(end + 2, text.size()));
        if (lines.size() > first && textWidth(lines.back() + ", " + piece, kSubtitleSize) <= width)
            lines.back() += ", " + piece;
        else
            lines.push_back(piece);
    }
}

} // namespace

std::string circumstances(const std::vector<uint16_t>& systems, std::optional<unsigned> input, int64_t timeMs)
{
    std::vector<std::string> names;
    for (const uint16_t code : systems) {
        const auto known = systemName(code);
        std::string name = known ? std::string(*known) : format("system %u", code);
        if (std::ranges::find(names, name) == names.end())
            names.push_back(std::move(name));
    }
    std::string text;
    for (const std::string& name : names)
        text += name + ", ";
    if (input)
        text += format("input %u, ", *input);
    const tm local = localTime(timeMs / 1000);
    char time[32];
    std::strftime(time, sizeof time, "%Y-%m-%d %H:%M", &local);
    return text + time;
}

CanvasMaker canvasOf(const std::string& path)
{
    return formatOf(path)->canvas;
}

void savePicture(const std::string& path, const std::string& bytes)
{
    writeWholeFile(path, bytes, "cannot write the picture " + path, "write to another file with --plot");
}

void Picture::addOption(CommandLine& line, std::string& path)
{
    line.value("--plot", "FILE", "Draw a picture into this file, .png, .svg or .pdf",
               [&path](const std::string& text) {
                   if (formatOf(text) == nullptr)
                       throw WrongUsage(
                           "--plot",
                           format("'%s' is no file name that ends in .png, .svg or .pdf", text.c_str()));
                   path = text;
               });
}

Picture::Picture(CanvasMaker maker, double width, double height, const Caption& caption, Axis x, Axis y,
                 double xLabels)
    : m_x(std::move(x)), m_y(std::move(y))
{
    std::vector<std::string> subtitle;
    wrap(caption.subtitle, width, subtitle);
    wrap(caption.circumstances, width, subtitle);
    const size_t lines = subtitle.size() + (caption.legend.empty() ? 0 : 1);
    const double top = kTopMargin + kLine * static_cast<double>(lines);
    m_area = {kLeftMargin, top, kLeftMargin + width, top + height};
    m_canvas = maker({m_area.right + kRightMargin, m_area.bottom + xLabels + kBottomMargin, caption.title,
                      caption.subtitle + "; " + caption.circumstances + ". Across: " + m_x.label +
                          ". Up: " + m_y.label + "."});
    drawCaption(caption, subtitle);
    drawAxes(xLabels);
}

double Picture::x(double value) const
{
    return m_area.left + (value - m_x.low) / (m_x.high - m_x.low) * (m_area.right - m_area.left);
}

double Picture::y(double value) const
{
    return m_area.bottom - (value - m_y.low) / (m_y.high - m_y.low) * (m_area.bottom - m_area.top);
}

void Picture::drawMark(Canvas& canvas, Mark mark, const Point& place, const Colour& colour, double arm)
{
    const auto [x, y] = place;
    switch (mark) {
    case Mark::square:
        canvas.fill({x - arm, y - arm, x + arm, y + arm}, colour);
        break;
    case Mark::dot:
        canvas.discs(std::span(&place, 1), arm, colour);
        break;
    case Mark::cross:
        canvas.stroke(std::vector<Point>{{x - arm, y}, {x + arm, y}}, {colour, 1.1});
        canvas.stroke(std::vector<Point>{{x, y - arm}, {x, y + arm}}, {colour, 1.1});
        break;
    }
}

void Picture::drawCaption(const Caption& caption, const std::vector<std::string>& subtitle) const
{
    double y = 26;
    canvas().text({m_area.left, y}, caption.title, {.size = 16, .bold = true});
    for (const std::string& line : subtitle)
        canvas().text({m_area.left, y += kLine}, line, {.size = kSubtitleSize});
    y += kLine;
    double x = m_area.left;
    for (const LegendEntry& entry : caption.legend) {
        drawMark(canvas(), entry.mark, {x + 5, y - 4}, entry.colour, 5);
        canvas().text({x += 16, y}, entry.name, {});
        x += textWidth(entry.name, 12) + 18;
    }
}

void Picture::drawAxes(double xLabels) const
{
    const auto ticks = [](const Axis& axis, const auto& draw) {
        if (axis.step <= 0)
            return;
        const double first = std::ceil(axis.low / axis.step - 1e-9);
        const double last = std::floor(axis.high / axis.step + 1e-9);
        for (double i = first; i <= last; ++i)
            draw(i * axis.step, stepText(i * axis.step, axis.step));
    };
    const double left = m_area.left, top = m_area.top, right = m_area.right, bottom = m_area.bottom;
    ticks(m_x, [&](double value, const std::string& label) {
        canvas().stroke(std::vector<Point>{{x(value), top}, {x(value), bottom}}, {kGrid});
        canvas().text({x(value), bottom + 18}, label, {Anchor::middle});
    });
    ticks(m_y, [&](double value, const std::string& label) {
        canvas().stroke(std::vector<Point>{{left, y(value)}, {right, y(value)}}, {kGrid});
        canvas().text({left - 8, y(value) + 4}, label, {Anchor::right});
    });
    canvas().stroke(
        std::vector<Point>{{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}}, {kInk});
    canvas().text({(left + right) / 2, bottom + xLabels + 34}, m_x.label, {Anchor::middle, 13});
    canvas().text({26, (top + bottom) / 2}, m_y.label, {Anchor::middle, 13, false, true});
}

} // namespace tool
