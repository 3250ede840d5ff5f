#include "plot/levels.h"

#include "common/text.h"
#include "plot/axis.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tool {

namespace {

constexpr double kStep = 10;
constexpr double kRowStep = 5; // on a terminal
constexpr double kNameSize = 10.5;
constexpr double kNameHeight = 12;
constexpr double kMarkSize = 13;
constexpr double kLeastMark = 6; // a bar and its gap
constexpr double kMostBar = 60;
constexpr double kNameRoom = 5;    // dB above the highest bar, for a name or a mark
constexpr double kMostLevel = 150; // what a meter in disorder tells may be a million times as much

struct Kind {
    const char* name;
    Colour colour;
    const char* mark; // above a bar, for who does not see the colour
};
constexpr Kind kKinds[] = {
    {"pass", kGreen, ""},  {"marginal", kYellow, "!"},       {"fail", kOrange, "\u00D7"},
    {"signal", kBlue, ""}, {"not recognised", kViolet, "?"}, {"no signal", kGrey, ""}};

const Kind& kindOf(LevelKind kind)
{
    return kKinds[static_cast<size_t>(kind)];
}

double highest(const std::vector<LevelBar>& bars, double room)
{
    double level = 50;
    for (const LevelBar& bar : bars)
        level = std::max(level, std::min(bar.level, kMostLevel));
    return std::ceil((level + room) / kStep) * kStep;
}

// The upper edge of a bar; what goes beyond the chart ends with it.
double topOf(const Picture& picture, const LevelBar& bar)
{
    return std::clamp(picture.y(bar.level), picture.area().top, picture.area().bottom);
}

// Of the kinds that there are.
std::vector<LegendEntry> legendOf(const std::vector<LevelBar>& bars)
{
    std::vector<LegendEntry> legend;
    for (size_t i = 0; i < std::size(kKinds); ++i)
        if (std::ranges::find(bars, static_cast<LevelKind>(i), &LevelBar::kind) != bars.end())
            legend.push_back({kKinds[i].name, kKinds[i].colour});
    return legend;
}

// Frequencies from the left to the right edge of the chart, and what a channel of unknown width takes of
// them: as much as there is to its neighbour.
struct Span {
    double low, high, channel;
};

Span spanOf(const std::vector<LevelBar>& bars)
{
    std::vector<double> places;
    for (const LevelBar& bar : bars)
        places.push_back(bar.mhz);
    std::ranges::sort(places);
    double nearest = 0;
    for (size_t i = 1; i < places.size(); ++i)
        if (const double gap = places[i] - places[i - 1]; gap > 0 && (nearest == 0 || gap < nearest))
            nearest = gap;
    Span span{places.front(), places.back(), nearest > 0 ? nearest : 1};
    const double margin = (places.back() - places.front()) / 100;
    for (const LevelBar& bar : bars) {
        const double half = std::max((bar.widthMhz > 0 ? bar.widthMhz : span.channel) / 2, margin);
        span.low = std::min(span.low, bar.mhz - half);
        span.high = std::max(span.high, bar.mhz + half);
    }
    return span;
}

bool isNumber(const std::string& name)
{
    return name.find_first_not_of("0123456789.") == std::string::npos;
}

// The names above their bars, those of the strongest first, where they meet neither another one nor a bar.
void drawNames(const Picture& picture, std::vector<LevelBar> bars, std::vector<Box> taken)
{
    const Box& area = picture.area();
    std::ranges::stable_sort(bars, std::ranges::greater(), &LevelBar::level);
    for (const LevelBar& bar : bars) {
        const double half = textWidth(bar.name, kNameSize) / 2;
        const double x = std::clamp(picture.x(bar.mhz), area.left + half + 2, area.right - half - 2);
        const double y = topOf(picture, bar) - 4;
        const Box box{x - half, y - kNameHeight, x + half, y};
        if (std::ranges::any_of(taken, [&](const Box& other) { return overlap(box, other); }))
            continue;
        taken.push_back(box);
        picture.canvas().text({x, y}, bar.name, {Anchor::middle, kNameSize});
    }
}

std::string drawByFrequency(CanvasMaker maker, const Caption& caption, const std::vector<LevelBar>& bars,
                            double width)
{
    constexpr double kLeastBar = 3;
    constexpr double kLabel = 70; // what a label of the axis takes
    const bool named = !std::ranges::all_of(bars, isNumber, &LevelBar::name);
    const Span span = spanOf(bars);
    Picture picture(
        maker, width, 360, caption,
        {"Frequency (MHz)", span.low, span.high, roundStep((span.high - span.low) * kLabel / width)},
        {"Level (dB\u00B5V)", 0, highest(bars, named ? kNameRoom : 1), kStep});
    const double pixel = (span.high - span.low) / width;
    std::vector<Box> drawn;
    for (const LevelBar& bar : bars) {
        const double half =
            std::max(bar.widthMhz > 0 ? bar.widthMhz - 2 * pixel : span.channel * 0.8, kLeastBar * pixel) / 2;
        drawn.push_back({picture.x(bar.mhz - half), topOf(picture, bar), picture.x(bar.mhz + half),
                         picture.area().bottom});
        picture.canvas().fill(drawn.back(), kindOf(bar.kind).colour);
    }
    if (named)
        drawNames(picture, bars, drawn);
    return picture.finish();
}

std::string drawByName(CanvasMaker maker, const Caption& caption, const std::vector<LevelBar>& bars,
                       double width)
{
    const double slot = width / static_cast<double>(bars.size());
    double widest = 0;
    for (const LevelBar& bar : bars)
        widest = std::max(widest, textWidth(printable(bar.name), kNameSize));
    // Names that do not fit side by side are read from below; of many channels some have none.
    const bool upwards = widest + 5 > slot;
    const auto stride = static_cast<size_t>(upwards ? roundStep(std::max(1.0, kNameHeight / slot)) : 1);
    Picture picture(maker, width, 360, caption, {"Channel", 0, static_cast<double>(bars.size()), 0},
                    {"Level (dB\u00B5V)", 0, highest(bars, kNameRoom), kStep},
                    upwards ? widest : kNameHeight);
    const double gap = slot > 4 ? std::max(slot * 0.2, slot - kMostBar) : 0;
    const double bottom = picture.area().bottom;
    for (size_t i = 0; i < bars.size(); ++i) {
        const double left = picture.x(static_cast<double>(i));
        const double top = topOf(picture, bars[i]);
        picture.canvas().fill({left + gap / 2, top, left + slot - gap / 2, bottom},
                              kindOf(bars[i].kind).colour);
        const double middle = left + slot / 2;
        if (const char* mark = kindOf(bars[i].kind).mark; *mark != '\0' && slot >= kLeastMark)
            picture.canvas().text({middle, top - 4}, mark, {Anchor::middle, std::min(kMarkSize, slot), true});
        if (i % stride != 0)
            continue;
        if (upwards)
            picture.canvas().text({middle + 4, bottom + 8}, bars[i].name,
                                  {Anchor::right, kNameSize, false, true});
        else
            picture.canvas().text({middle, bottom + 16}, bars[i].name, {Anchor::middle, kNameSize});
    }
    return picture.finish();
}

// What stands in the columns of a terminal.
struct Columns {
    std::vector<double> levels;
    std::string labels;
};

// Several columns a channel, one of them a gap, or several channels a column, of which the strongest shows.
Columns columnsByName(const std::vector<LevelBar>& bars, size_t columns)
{
    const size_t wide = std::clamp<size_t>(columns / bars.size(), 1, 4);
    const size_t dense = (bars.size() + columns - 1) / columns;
    size_t longest = 0;
    for (const LevelBar& bar : bars)
        longest = std::max(longest, printable(bar.name).size());
    const auto stride = dense * static_cast<size_t>(roundStep(std::max(1.0, static_cast<double>(longest + 1) /
                                                                                static_cast<double>(wide))));
    Columns result;
    for (size_t i = 0; i < bars.size(); i += dense) {
        const auto end = bars.begin() + static_cast<ptrdiff_t>(std::min(i + dense, bars.size()));
        const double level =
            std::max_element(bars.begin() + static_cast<ptrdiff_t>(i), end, [](const auto& a, const auto& b) {
                return a.level < b.level;
            })->level;
        const std::string name = printable(bars[i].name);
        if (const size_t column = result.levels.size(); i % stride == 0 && column + name.size() <= columns) {
            result.labels.resize(column, ' ');
            result.labels += name;
        }
        result.levels.insert(result.levels.end(), wide > 1 ? wide - 1 : 1, level);
        if (wide > 1)
            result.levels.push_back(0);
    }
    return result;
}

// A channel whose width is known takes all the columns that it touches, of those in one the strongest shows.
Columns columnsByFrequency(const std::vector<LevelBar>& bars, size_t columns)
{
    const std::string unit = " MHz";
    const Span span = spanOf(bars);
    const double mhz = (span.high - span.low) / static_cast<double>(columns); // a column
    const auto columnOf = [&](double place) {
        return static_cast<size_t>(
            std::clamp((place - span.low) / mhz + 1e-6, 0.0, static_cast<double>(columns - 1)));
    };
    Columns result{std::vector<double>(columns), ""};
    for (const LevelBar& bar : bars) {
        const double half = bar.widthMhz / 2;
        const size_t last = columnOf(bar.mhz + half - (half > 0 ? mhz / 1000 : 0));
        for (size_t i = columnOf(bar.mhz - half); i <= last; ++i)
            result.levels[i] = std::max(result.levels[i], bar.level);
    }
    double step = roundStep(3 * mhz);
    while (static_cast<double>(stepText(span.high, step).size() + 2) * mhz > step)
        step = roundStep(step * 1.1);
    for (double tick = std::ceil(span.low / step - 1e-9); tick * step <= span.high; ++tick) {
        const std::string label = stepText(tick * step, step);
        const size_t column = columnOf(tick * step);
        const size_t left = column - std::min(column, label.size() / 2);
        if (left + label.size() + unit.size() > columns)
            break;
        result.labels.resize(left, ' ');
        result.labels += label;
    }
    result.labels += unit;
    return result;
}

} // namespace

std::string drawLevels(CanvasMaker maker, Caption caption, const LevelChart& chart)
{
    caption.legend = legendOf(chart.bars);
    const double width = std::clamp(static_cast<double>(chart.bars.size()) * 22, 640.0, chart.mostWidth);
    return (chart.byFrequency ? drawByFrequency : drawByName)(maker, caption, chart.bars, width);
}

void plotLevels(const std::string& path, Caption caption, const LevelChart& chart)
{
    savePicture(path, drawLevels(canvasOf(path), std::move(caption), chart));
}

std::string levelsText(const LevelChart& chart, const TextStyle& style)
{
    constexpr size_t kMargin = 5; // "100 |"
    const auto [levels, labels] =
        (chart.byFrequency ? columnsByFrequency : columnsByName)(chart.bars, style.columns - kMargin - 1);
    const double high = highest(chart.bars, 1);
    const auto height = static_cast<size_t>(std::lround(high / kRowStep));
    const std::vector<std::string> rows = barRows(levels, 0, high, height, style.unicode);
    std::string text;
    for (size_t i = 0; i < rows.size(); ++i) {
        // The label names the upper edge of its row.
        const double edge = kRowStep * static_cast<double>(height - i);
        text += (i % 2 == 0 ? format("%3.0f ", edge) : std::string(4, ' ')) + (style.unicode ? "│" : "|") +
                rows[i] + "\n";
    }
    return text + "dBuV " + labels + "\n";
}

} // namespace tool
