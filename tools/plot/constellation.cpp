#include "plot/constellation.h"

#include "plot/picture.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tool {

namespace {

constexpr double kEdge = 128; // I and Q are signed bytes
constexpr double kNear = 96;  // holds all that modulations with few points need
constexpr double kSide = 560;
constexpr size_t kMostMarks = 64; // ideal points that a terminal has room for among the others

} // namespace

void plotConstellation(const std::string& path, const std::string& title, const std::string& subtitle,
                       std::span<const ConstaPoint> points, const std::optional<IdealPoints>& ideal)
{
    const bool near = std::ranges::all_of(points, [](const ConstaPoint& point) {
        return std::abs(point.I) < kNear && std::abs(point.Q) < kNear;
    });
    const double edge = near ? kNear : kEdge;
    Picture picture(path, kSide, kSide, title, subtitle,
                    {"I (root mean square of the ideal points: 64)", -edge, edge, 32},
                    {"Q", -edge, edge, 32});
    cairo_t* const cr = picture.context();
    picture.clip();
    picture.colour({kInk.red, kInk.green, kInk.blue, 0.45});
    cairo().move_to(cr, picture.x(0), picture.top());
    cairo().line_to(cr, picture.x(0), picture.bottom());
    cairo().move_to(cr, picture.left(), picture.y(0));
    cairo().line_to(cr, picture.right(), picture.y(0));
    cairo().stroke(cr);

    picture.colour({kBlue.red, kBlue.green, kBlue.blue, 0.45});
    for (const ConstaPoint& point : points) {
        cairo().arc(cr, picture.x(point.I), picture.y(point.Q), 1.7, 0, 2 * std::numbers::pi);
        cairo().fill(cr);
    }
    if (ideal) {
        const double arm = ideal->points.size() > 100 ? 4 : 7;
        picture.colour(kOrange);
        cairo().set_line_width(cr, 1.1);
        for (const auto& point : ideal->points) {
            const double x = picture.x(point.real());
            const double y = picture.y(point.imag());
            cairo().move_to(cr, x - arm, y);
            cairo().line_to(cr, x + arm, y);
            cairo().move_to(cr, x, y - arm);
            cairo().line_to(cr, x, y + arm);
        }
        cairo().stroke(cr);
    }
    picture.unclip();
    picture.save();
}

std::string constellationText(std::span<const ConstaPoint> points, const std::optional<IdealPoints>& ideal,
                              const TextStyle& style)
{
    // A character is about twice as high as it is wide.
    const size_t rows = std::clamp<size_t>((style.columns - 4) / 2, 8, 24);
    DotCanvas canvas(2 * rows, rows, style.unicode);
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
    const std::vector<std::string> lines = canvas.rows();

    std::string dashes;
    for (size_t i = 0; i < 2 * rows; ++i)
        dashes += style.unicode ? "─" : "-";
    const char* side = style.unicode ? "│" : "|";
    std::string text = style.unicode ? "┌" + dashes + "┐\n" : "+" + dashes + "+\n";
    for (const std::string& line : lines)
        text += side + line + side + "\n";
    return text + (style.unicode ? "└" + dashes + "┘\n" : "+" + dashes + "+\n");
}

} // namespace tool
