#include "plot/levels.h"

#include "common/text.h"
#include "plot/picture.h"

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

constexpr double kStep = 10;
constexpr double kRowStep = 5; // on a terminal

double highest(const std::vector<LevelBar>& bars)
{
    double level = 50;
    for (const LevelBar& bar : bars)
        level = std::max(level, bar.level);
    return std::ceil((level + 1) / kStep) * kStep;
}

struct Kind {
    const char* name;
    Colour colour;
};

Kind kindOf(const LevelBar& bar)
{
    if (!bar.signal)
        return {"no signal", kGrey};
    switch (bar.verdict) {
    case Verdict::pass:
        return {"pass", kGreen};
    case Verdict::marginal:
        return {"marginal", kYellow};
    case Verdict::fail:
        return {"fail", kOrange};
    case Verdict::none:
        break;
    }
    return {"signal", kBlue};
}

// From the right, above the plot: the kinds that there are.
void drawLegend(const Picture& picture, const std::vector<LevelBar>& bars)
{
    std::vector<Kind> kinds;
    for (const LevelBar& bar : bars)
        if (const Kind kind = kindOf(bar); std::ranges::find(kinds, kind.name, &Kind::name) == kinds.end())
            kinds.push_back(kind);
    double x = picture.right();
    for (const Kind& kind : kinds) {
        x -= picture.textWidth(kind.name, 12);
        picture.colour(kInk);
        picture.text(x, picture.top() - 12, kind.name);
        x -= 16;
        picture.colour(kind.colour);
        cairo().rectangle(picture.context(), x, picture.top() - 21, 10, 10);
        cairo().fill(picture.context());
        x -= 18;
    }
}

} // namespace

void plotLevels(const std::string& path, const std::string& title, const std::string& subtitle,
                const std::vector<LevelBar>& bars)
{
    const double count = static_cast<double>(bars.size());
    Picture picture(path, std::clamp(count * 22, 640.0, 1500.0), 360, title, subtitle,
                    {"Channel", 0, count, 0}, {"Level (dB\u00B5V)", 0, highest(bars), kStep});
    cairo_t* const cr = picture.context();
    drawLegend(picture, bars);
    const double slot = picture.x(1) - picture.x(0);
    const double gap = slot > 4 ? slot * 0.2 : 0;
    double free = picture.left(); // from here on there is room for a label
    for (size_t i = 0; i < bars.size(); ++i) {
        const double left = picture.x(static_cast<double>(i));
        const double top = std::min(picture.y(bars[i].level), picture.bottom());
        picture.colour(kindOf(bars[i]).colour);
        cairo().rectangle(cr, left + gap / 2, top, slot - gap, picture.bottom() - top);
        cairo().fill(cr);
        const double width = picture.textWidth(bars[i].name, 10.5);
        const double middle = left + slot / 2;
        if (middle - width / 2 < free)
            continue;
        picture.colour(kInk);
        picture.text(middle, picture.bottom() + 16, bars[i].name, Anchor::middle, 10.5);
        free = middle + width / 2 + 5;
    }
    picture.save();
}

std::string levelsText(const std::vector<LevelBar>& bars, const TextStyle& style)
{
    constexpr size_t kMargin = 5; // "100 |"
    const size_t columns = style.columns - kMargin - 1;
    // Several columns a channel, one of them a gap, or several channels a column, of which the strongest
    // shows.
    const size_t wide = std::clamp<size_t>(columns / bars.size(), 1, 4);
    const size_t dense = (bars.size() + columns - 1) / columns;
    std::vector<double> values;
    std::string names;
    for (size_t i = 0; i < bars.size(); i += dense) {
        double level = 0;
        for (size_t k = i; k < std::min(i + dense, bars.size()); ++k)
            level = std::max(level, bars[k].level);
        const size_t column = values.size();
        values.insert(values.end(), wide > 1 ? wide - 1 : 1, level);
        if (wide > 1)
            values.push_back(0);
        if (names.size() <= column) {
            const std::string name = printable(bars[i].name);
            if (column + name.size() <= columns)
                names += std::string(column - names.size(), ' ') + name + " ";
        }
    }
    const double high = highest(bars);
    const auto height = static_cast<size_t>(std::lround(high / kRowStep));
    const std::vector<std::string> rows = barRows(values, 0, high, height, style.unicode);
    std::string text;
    for (size_t i = 0; i < rows.size(); ++i) {
        // The label names the upper edge of its row.
        const double edge = kRowStep * static_cast<double>(height - i);
        text += (i % 2 == 0 ? format("%3.0f ", edge) : std::string(4, ' ')) + (style.unicode ? "│" : "|") +
                rows[i] + "\n";
    }
    return text + "dBuV " + names.substr(0, names.find_last_not_of(' ') + 1) + "\n";
}

} // namespace tool
