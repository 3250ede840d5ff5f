#include "plot/delay_profile.h"

#include "common/text.h"
#include "plot/picture.h"

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

constexpr double kFirstUs = -85;
constexpr double kLastUs = 255;
constexpr double kLowestDb = -65;
constexpr double kHighestDb = 5;

void drawGuard(const Picture& picture, const GuardInterval& guard)
{
    Canvas& canvas = picture.canvas();
    const auto& [left, top, right, bottom] = picture.area();
    canvas.clip(picture.area());
    canvas.fill({picture.x(guard.from), top, picture.x(guard.to), bottom}, faint(kGreen, 0.10));
    for (const double edge : {picture.x(guard.from), picture.x(guard.to)})
        canvas.stroke(std::vector<Point>{{edge, top}, {edge, bottom}}, {kGreen, 1, true});
    canvas.unclip();
}

// Each path gets a mark at its top and a label where it meets neither another label nor a mark.
void drawPaths(const Picture& picture, const std::vector<Path>& paths)
{
    Canvas& canvas = picture.canvas();
    const Box& area = picture.area();
    std::vector<Box> taken;
    for (const Path& path : paths) {
        const double x = picture.x(path.delayUs);
        const double y = picture.y(path.levelDb);
        taken.push_back({x - 5, y - 5, x + 5, y + 5});
        taken.push_back({x - 3, y, x + 3, area.bottom}); // its line
        canvas.ring({x, y}, 4.5, {kOrange, 1.6});
    }
    constexpr double kLine = 13;
    std::vector<Path> strongest = paths;
    std::ranges::stable_sort(strongest, std::ranges::greater(), &Path::levelDb);
    for (const Path& path : strongest) {
        const bool main = &path == &strongest.front();
        const std::string lines[] = {
            main ? "main path" : format("%+.1f \u00B5s, %+.2f km", path.delayUs, distanceKm(path.delayUs)),
            main ? "" : format("%+.1f dB", path.levelDb)};
        const double width = std::max(textWidth(lines[0], 11), textWidth(lines[1], 11));
        const double x = picture.x(path.delayUs);
        const double y = picture.y(path.levelDb);
        // To the right of the mark, else to the left, further and further up.
        for (double up = 0; up < 160; up += 6) {
            bool drawn = false;
            for (const double left : {x + 9, x - 9 - width}) {
                const Box box{left - 2, y - up - kLine, left + width + 2, y - up + kLine + 3};
                if (box.left < area.left || box.right > area.right || box.top < area.top ||
                    std::ranges::any_of(taken, [&](const Box& other) { return overlap(box, other); }))
                    continue;
                taken.push_back(box);
                if (up > kLine)
                    canvas.stroke(
                        std::vector<Point>{{x, y - 5}, {left > x ? left - 2 : left + width + 2, y - up + 4}},
                        {faint(kOrange, 0.6), 0.8});
                canvas.text({left, y - up}, lines[0], {.size = 11});
                if (!main)
                    canvas.text({left, y - up + kLine}, lines[1], {.size = 11});
                drawn = true;
                break;
            }
            if (drawn)
                break;
        }
    }
}

} // namespace

std::string drawDelayProfile(CanvasMaker maker, const Caption& caption, const DlyPrfResult& profile,
                             const std::vector<Path>& paths, const std::optional<GuardInterval>& guard)
{
    Picture picture(maker, 880, 420, caption,
                    {"Delay against the main path (\u00B5s)", kFirstUs, kLastUs, 25},
                    {"Level against the main path (dB)", kLowestDb, kHighestDb, 10});
    Canvas& canvas = picture.canvas();
    if (guard)
        drawGuard(picture, *guard);
    std::vector<Point> samples;
    for (size_t i = 0; i < VX63_DLYPRF_SAMPLES; ++i)
        samples.push_back(
            {picture.x(delayOf(static_cast<double>(i))), picture.y(levelOf(profile.ucDlyPrfData[i]))});
    canvas.clip(picture.area());
    canvas.stroke(samples, {kBlue, 1.2});
    canvas.unclip();
    drawPaths(picture, paths);
    if (guard)
        canvas.text({std::min(picture.x(guard->to), picture.area().right) - 6, picture.area().top + 16},
                    "guard interval " + guard->name, {Anchor::right, 12, false, false, kGreen});
    return picture.finish();
}

void plotDelayProfile(const std::string& path, const Caption& caption, const DlyPrfResult& profile,
                      const std::vector<Path>& paths, const std::optional<GuardInterval>& guard)
{
    savePicture(path, drawDelayProfile(canvasOf(path), caption, profile, paths, guard));
}

std::string delayProfileText(const DlyPrfResult& profile, const std::optional<GuardInterval>& guard,
                             const TextStyle& style)
{
    constexpr size_t kRows = 14;  // of 5 dB
    constexpr size_t kMargin = 5; // "-60 |"
    const size_t columns = style.columns - kMargin - 1;
    DotCanvas canvas(columns, kRows, style.unicode);
    const double width = static_cast<double>(canvas.width());
    const double height = static_cast<double>(canvas.height());
    const auto column = [&](double us) {
        return static_cast<long>((us - kFirstUs) / (kLastUs - kFirstUs) * width);
    };
    const auto row = [&](double db) {
        return std::lround((kHighestDb - db) / (kHighestDb - kLowestDb) * height);
    };
    // A column of dots is several samples wide: the strongest one is shown, filled down to the bottom.
    std::vector<double> tops(canvas.width(), kLowestDb);
    for (size_t i = 0; i < VX63_DLYPRF_SAMPLES; ++i) {
        const auto at = static_cast<size_t>(column(delayOf(static_cast<double>(i))));
        tops.at(at) = std::max(tops[at], levelOf(profile.ucDlyPrfData[i]));
    }
    for (size_t x = 0; x < tops.size(); ++x)
        for (long y = row(tops[x]); y < static_cast<long>(height); ++y)
            canvas.dot(static_cast<long>(x), y);

    const std::vector<std::string> lines = canvas.rows();
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i) {
        // The label names the upper edge of its row.
        const double db = kHighestDb - static_cast<double>(i) / kRows * (kHighestDb - kLowestDb);
        text += (i % 2 == 1 ? format("%3.0f ", db) : std::string(4, ' ')) + (style.unicode ? "│" : "|") +
                lines[i] + "\n";
    }
    const auto mark = [&](std::string& line, double us, const std::string& label) {
        const auto at = static_cast<size_t>(column(us)) / (style.unicode ? 2 : 1);
        if (at + label.size() <= line.size())
            line.replace(at, label.size(), label);
    };
    if (guard) {
        std::string bar(columns, ' ');
        const auto cell = [&](double us) {
            return std::min(static_cast<size_t>(std::max(column(us), 0L)) / (style.unicode ? 2 : 1),
                            columns - 1);
        };
        const size_t from = cell(guard->from);
        const size_t to = cell(guard->to);
        for (size_t i = from; i <= to; ++i)
            bar[i] = i == from || i == to ? '|' : '-';
        const std::string label = " guard " + guard->name + " ";
        if (to - from > label.size() + 2)
            bar.replace(from + (to - from - label.size()) / 2, label.size(), label);
        text += std::string(kMargin, ' ') + bar.substr(0, bar.find_last_not_of(' ') + 1) + "\n";
    }
    std::string scale(columns, ' ');
    for (const int us : {-50, 0, 50, 100, 150, 200})
        mark(scale, us, format("%d", us));
    return text + " dB  " + scale.substr(0, scale.find_last_not_of(' ') + 1) + " us\n";
}

} // namespace tool
