#include "plot/constellation.h"

#include "plot/picture.h"

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

constexpr double kEdge = 128; // I and Q are signed bytes
constexpr double kNear = 96;  // holds all that modulations with few points need
constexpr double kSide = 560;
constexpr double kTick = 32;
constexpr size_t kMostMarks = 64; // ideal points that a terminal has room for among the others

} // namespace

std::string drawConstellation(CanvasMaker maker, Caption caption, std::span<const ConstaPoint> points,
                              const std::optional<IdealPoints>& ideal)
{
    const bool near = std::ranges::all_of(points, [](const ConstaPoint& point) {
        return std::abs(point.I) < kNear && std::abs(point.Q) < kNear;
    });
    const double edge = near ? kNear : kEdge;
    const Colour cloud = faint(kBlue, 0.45);
    caption.legend = {{"measured", cloud, Mark::dot}};
    if (ideal)
        caption.legend.push_back({"ideal (" + std::string(ideal->modulation) + ")", kOrange, Mark::cross});
    Picture picture(maker, kSide, kSide, caption,
                    {"I (root mean square of the ideal points: 64)", -edge, edge, kTick},
                    {"Q", -edge, edge, kTick});
    Canvas& canvas = picture.canvas();
    const Box& area = picture.area();
    canvas.clip(area);
    const Pen axis{faint(kInk, 0.45)};
    canvas.stroke(std::vector<Point>{{picture.x(0), area.top}, {picture.x(0), area.bottom}}, axis);
    canvas.stroke(std::vector<Point>{{area.left, picture.y(0)}, {area.right, picture.y(0)}}, axis);

    std::vector<Point> measured;
    for (const ConstaPoint& point : points)
        measured.push_back({picture.x(point.I), picture.y(point.Q)});
    canvas.discs(measured, 1.7, cloud);
    if (ideal)
        for (const auto& point : ideal->points)
            Picture::drawMark(canvas, Mark::cross, {picture.x(point.real()), picture.y(point.imag())},
                              kOrange, ideal->points.size() > 100 ? 4 : 7);
    canvas.unclip();
    return picture.finish();
}

void plotConstellation(const std::string& path, Caption caption, std::span<const ConstaPoint> points,
                       const std::optional<IdealPoints>& ideal)
{
    savePicture(path, drawConstellation(canvasOf(path), std::move(caption), points, ideal));
}

std::vector<std::string> constellationRows(std::span<const ConstaPoint> points,
                                           const std::optional<IdealPoints>& ideal, size_t rows, bool unicode)
{
    // A character is about twice as high as it is wide.
    DotCanvas canvas(2 * rows, rows, unicode);
    const double width = static_cast<double>(canvas.width());
    const double height = static_cast<double>(canvas.height());
    // What stands around is left out, so that the clouds stay apart.
    double edge = 64;
    for (const ConstaPoint& point : points)
        edge = std::max({edge, std::abs(point.I) + 4.0, std::abs(point.Q) + 4.0});
    edge = std::min(edge, kEdge);
    const auto column = [&](double i) { return std::lround((i / edge + 1) / 2 * (width - 1)); };
    const auto row = [&](double q) { return std::lround((1 - q / edge) / 2 * (height - 1)); };
    for (const ConstaPoint& point : points)
        canvas.dot(column(point.I), row(point.Q));
    if (ideal && ideal->points.size() <= kMostMarks)
        for (const auto& point : ideal->points)
            canvas.mark(column(point.real()), row(point.imag()), '+');
    return canvas.rows();
}

std::string constellationText(std::span<const ConstaPoint> points, const std::optional<IdealPoints>& ideal,
                              const TextStyle& style)
{
    const size_t rows = std::clamp<size_t>((style.columns - 4) / 2, 8, 24);
    std::string dashes;
    for (size_t i = 0; i < 2 * rows; ++i)
        dashes += style.unicode ? "─" : "-";
    const char* side = style.unicode ? "│" : "|";
    std::string text = style.unicode ? "┌" + dashes + "┐\n" : "+" + dashes + "+\n";
    for (const std::string& line : constellationRows(points, ideal, rows, style.unicode))
        text += side + line + side + "\n";
    return text + (style.unicode ? "└" + dashes + "┘\n" : "+" + dashes + "+\n");
}

} // namespace tool
