#include "live/layout.h"

#include "common/clock.h"
#include "common/names.h"
#include "common/terminal.h"
#include "common/text.h"
#include "live/digits.h"
#include "measure/frequency.h"
#include "plot/constellation.h"
#include "plot/text.h"

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

constexpr int64_t kLongMs = 2000; // an answer that takes longer is missed
constexpr size_t kLargeColumns = 80, kLargeRows = 24;
constexpr double kTraceStep = 5; // dB, at which the ends of a trace stand

struct Area {
    size_t column, row, columns, rows;
};

// One of the two values that have a bar.
struct Gauge {
    const char* name;
    const char* unit;
    std::optional<double> value, peak;
    Verdict verdict;
    double low, high;               // ends of the scale
    std::optional<double> edges[2]; // of what is wanted
    std::optional<double> Sample::*sample;
};

Look lookOf(Verdict verdict)
{
    return verdict == Verdict::pass       ? Look::good
           : verdict == Verdict::marginal ? Look::doubtful
           : verdict == Verdict::fail     ? Look::bad
                                          : Look::plain;
}

std::string timeText(int64_t timeMs)
{
    const tm local = localTime(timeMs / 1000);
    return format("%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);
}

std::string oneDecimal(const std::optional<double>& value)
{
    return value ? format("%.1f", *value) : "-";
}

class Painter {
public:
    Painter(const LiveState& state, const View& view)
        : m_state(state), m_view(view), m_grid(view.columns, view.rows, view.unicode),
          m_large(view.columns >= kLargeColumns && view.rows >= kLargeRows),
          m_stale(!state.trouble.empty() || (state.askedMs != 0 && view.nowMs - state.askedMs > kLongMs))
    {}

    Grid paint()
    {
        if (m_view.columns < kLeastColumns || m_view.rows < kLeastRows) {
            const std::string text = format("at least %zu x %zu", kLeastColumns, kLeastRows);
            const size_t width = std::min(text.size(), m_view.columns);
            m_grid.text((m_view.columns - width) / 2, m_view.rows / 2, text);
            return std::move(m_grid);
        }
        size_t row = header();
        for (const Gauge& gauge : {level(), cn()})
            row = m_large ? largeGauge(row, gauge) : smallGauge(row, gauge);
        row = values(row);
        drawings({0, row, m_view.columns, m_view.rows - 2 - row});
        messageLine(m_view.rows - 2);
        keys(m_view.rows - 1);
        return std::move(m_grid);
    }

private:
    const Reading* reading() const { return m_state.last ? &m_state.last->reading : nullptr; }

    bool isLocked() const { return reading() != nullptr && reading()->result.lock != 0; }

    // Of a value that is no longer that of the signal.
    Look live(Look look) const { return m_stale ? Look::faint : look; }

    Gauge level() const
    {
        Gauge gauge{"Level", "dBuV", {}, m_state.history.levelPeak, {}, 20, 120, {}, &Sample::level};
        if (reading() != nullptr) {
            gauge.value = reading()->result.LEVEL / 10.0;
            gauge.verdict = reading()->judgement.level;
        }
        if (m_state.last && m_state.last->threshold) {
            const Threshold& threshold = *m_state.last->threshold;
            setScale(gauge, threshold.LV_MIN, threshold.LV_MAX, threshold.LV_LOW, threshold.LV_HIGH);
        }
        return gauge;
    }

    Gauge cn() const
    {
        Gauge gauge{"C/N", "dB", {}, m_state.history.cnPeak, {}, 0, 50, {}, &Sample::cn};
        if (reading() != nullptr) {
            gauge.value = reading()->result.CNR / 10.0;
            gauge.verdict = reading()->judgement.cnr;
        }
        if (m_state.last && m_state.last->threshold) {
            const Threshold& threshold = *m_state.last->threshold;
            if (threshold.CN_HIGH != 0) // else it is not judged
                setScale(gauge, threshold.CN_MIN, threshold.CN_MAX, threshold.CN_LOW, threshold.CN_HIGH);
        }
        return gauge;
    }

    static void setScale(Gauge& gauge, double least, double most, double low, double high)
    {
        if (least < most) {
            gauge.low = least / 10;
            gauge.high = most / 10;
        }
        gauge.edges[0] = low / 10;
        gauge.edges[1] = high / 10;
    }

    // ---- what is measured where ----

    size_t header()
    {
        const std::string channel =
            (m_state.channel.empty() ? "" : m_state.channel + "  ") + megahertz(m_state.frequencyKhz);
        const size_t end = m_grid.text(0, 0, channel, Look::bold);
        m_grid.textBefore(m_view.columns, 0, timeText(m_view.nowMs));
        if (m_view.columns >= kLargeColumns) {
            m_grid.text(end + 3, 0, signal() + "   " + surroundings());
            return 1;
        }
        if (m_view.rows < 16)
            return 1;
        m_grid.text(0, 1, signal() + "  " + surroundings());
        return 2;
    }

    std::string signal() const
    {
        if (reading() == nullptr)
            return "-";
        const MultiMeasResult& result = reading()->result;
        std::string text(systemName(result.bdSys).value_or("unknown system"));
        if (const auto modulation = modulationName(result.MOD); isLocked() && modulation)
            text += " " + std::string(*modulation);
        return text;
    }

    std::string surroundings() const
    {
        if (reading() == nullptr || !reading()->input)
            return "input -";
        const auto supply = powerSupplyName(static_cast<uint8_t>(reading()->supply.value_or(0)));
        return format("input %u, supply ", *reading()->input) + std::string(supply.value_or("-"));
    }

    // ---- bars ----

    size_t smallGauge(size_t row, const Gauge& gauge)
    {
        m_grid.text(0, row, gauge.name, Look::bold);
        m_grid.text(7, row, oneDecimal(gauge.value) + " " + gauge.unit, live(lookOf(gauge.verdict)));
        m_grid.textBefore(m_view.columns, row, "peak " + oneDecimal(gauge.peak));
        bar({0, row + 1, m_view.columns, 1}, gauge);
        if (m_view.rows < 16)
            return row + 2;
        scale({0, row + 2, m_view.columns, 1}, gauge);
        return row + 3;
    }

    size_t largeGauge(size_t row, const Gauge& gauge)
    {
        constexpr size_t kDigitsColumns = 34; // "100.0" and a gap
        largeText(m_grid, 0, row, oneDecimal(gauge.value), live(lookOf(gauge.verdict)));
        const Area area{kDigitsColumns, row + 1, m_view.columns - kDigitsColumns, 3};
        m_grid.text(area.column, row, std::string(gauge.name) + ", " + gauge.unit, Look::bold);
        m_grid.textBefore(m_view.columns, row, "peak " + oneDecimal(gauge.peak), Look::bold);
        bar(area, gauge);
        scale({area.column, row + 4, area.columns, 1}, gauge);
        return row + kDigitRows + 1;
    }

    static size_t placeOf(double value, const Gauge& gauge, size_t columns)
    {
        const double part = std::clamp((value - gauge.low) / (gauge.high - gauge.low), 0.0, 1.0);
        return static_cast<size_t>(std::lround(part * static_cast<double>(columns - 1)));
    }

    void bar(const Area& area, const Gauge& gauge)
    {
        const bool unicode = m_view.unicode;
        const size_t full =
            gauge.value && *gauge.value > gauge.low ? placeOf(*gauge.value, gauge, area.columns) + 1 : 0;
        for (size_t row = area.row; row < area.row + area.rows; ++row) {
            for (size_t x = 0; x < area.columns; ++x)
                if (x < full)
                    m_grid.put(area.column + x, row, unicode ? U'█' : U'#', live(lookOf(gauge.verdict)));
                else
                    m_grid.put(area.column + x, row, unicode ? U'░' : U'.', Look::faint);
            for (const auto& edge : gauge.edges)
                if (edge && *edge > gauge.low && *edge < gauge.high)
                    m_grid.put(area.column + placeOf(*edge, gauge, area.columns), row, unicode ? U'│' : U'|');
            if (gauge.peak && *gauge.peak > gauge.low)
                m_grid.put(area.column + placeOf(*gauge.peak, gauge, area.columns), row,
                           unicode ? U'◆' : U'*', Look::bold);
        }
    }

    // The ends, and the edges where they leave room for them.
    void scale(const Area& area, const Gauge& gauge)
    {
        const size_t end = area.column + area.columns;
        const std::string high = format("%g", gauge.high);
        size_t free = m_grid.text(area.column, area.row, format("%g", gauge.low), Look::faint) + 1;
        m_grid.textBefore(end, area.row, high, Look::faint);
        for (const auto& edge : gauge.edges) {
            if (!edge || *edge <= gauge.low || *edge >= gauge.high)
                continue;
            const std::string text = format("%g", *edge);
            const size_t place = area.column + placeOf(*edge, gauge, area.columns);
            const size_t begin = std::max(place - std::min(place, text.size() / 2), free);
            if (begin + text.size() < end - high.size())
                free = m_grid.text(begin, area.row, text, Look::faint) + 1;
        }
    }

    // ---- values ----

    size_t values(size_t row)
    {
        const bool measured = reading() != nullptr;
        const bool needs = measured && needsLock(reading()->condition);
        size_t end = m_grid.text(0, row, "Lock ");
        end = m_grid.text(end, row,
                          isLocked() ? "yes"
                          : needs    ? "no"
                                     : "-",
                          live(isLocked() ? Look::good
                               : needs    ? Look::bad
                                          : Look::plain));
        end = m_grid.text(end + 2, row, "BER ");
        end = m_grid.text(end, row, measured ? bitErrorRateText(reading()->result) : "-",
                          live(measured ? lookOf(reading()->judgement.ber) : Look::plain));
        end = m_grid.text(end + 2, row, "MER ");
        const std::optional<double> mer = measured ? m_state.last->merDb : std::nullopt;
        end = m_grid.text(end, row, oneDecimal(mer) + (mer ? " dB" : ""),
                          live(measured ? lookOf(reading()->judgement.mer) : Look::plain));
        if (m_view.columns < kLargeColumns)
            end = m_grid.text(0, ++row, "Verdict ");
        else
            end = m_grid.text(end + 2, row, "Verdict ");
        const Cell verdict = measured ? verdictCell(*reading()) : Cell("-");
        m_grid.text(end, row, verdict.text,
                    live(verdict.tint == Tint::good       ? Look::good
                         : verdict.tint == Tint::doubtful ? Look::doubtful
                         : verdict.tint == Tint::bad      ? Look::bad
                                                          : Look::plain));
        return row + 1;
    }

    // ---- trace and constellation ----

    void drawings(Area area)
    {
        for (const std::string& line : troubleLines()) {
            if (area.rows == 0)
                return;
            m_grid.text(0, area.row++, line, Look::bad);
            --area.rows;
        }
        constexpr size_t kLeastConstellation = 6;
        const size_t side = std::min(area.rows, area.columns / 5);
        if (side >= kLeastConstellation && m_view.columns >= 60) {
            constellation({area.columns - 2 * side, area.row, 2 * side, side});
            area.columns -= 2 * side + 2;
        }
        constexpr size_t kEach = 6; // lines that a trace is worth
        if (area.rows >= 2 * kEach) {
            const size_t first = area.rows / 2;
            trace({area.column, area.row, area.columns, first}, level());
            trace({area.column, area.row + first, area.columns, area.rows - first}, cn());
        } else if (area.rows > 0) {
            const size_t half = area.columns / 2;
            trace({area.column, area.row, half - 1, area.rows}, level());
            trace({area.column + half, area.row, area.columns - half, area.rows}, cn());
        }
    }

    std::vector<std::string> troubleLines() const
    {
        if (!m_state.trouble.empty())
            return wrapped("Since " + timeText(m_state.troubleSinceMs) + " " + printable(m_state.trouble),
                           m_view.columns);
        if (m_stale)
            return wrapped(format("The meter has not answered for %lld s",
                                  static_cast<long long>((m_view.nowMs - m_state.askedMs) / 1000)),
                           m_view.columns);
        return {};
    }

    void constellation(const Area& area)
    {
        const auto& last = m_state.last;
        if (!last || last->points.empty())
            return m_grid.textBefore(area.column + area.columns, area.row, "no points", Look::faint), void();
        size_t row = area.row;
        for (const std::string& line :
             constellationRows(last->points, last->ideal, area.rows, m_view.unicode))
            m_grid.text(area.column, row++, line, live(Look::plain));
    }

    void trace(const Area& area, const Gauge& gauge)
    {
        constexpr size_t kLabels = 6;
        const bool hasTime = area.rows >= 5;
        const size_t rows = area.rows - (hasTime ? 1 : 0);
        DotCanvas canvas(area.columns - kLabels, rows, m_view.unicode);
        const auto& samples = m_state.history.trace;
        const size_t count = std::min(samples.size(), canvas.width());
        const size_t first = samples.size() - count;

        double low = HUGE_VAL, high = -HUGE_VAL;
        for (size_t i = first; i < samples.size(); ++i)
            if (const auto& value = samples[i].*gauge.sample) {
                low = std::min(low, *value);
                high = std::max(high, *value);
            }
        if (low > high)
            low = high = 0;
        low = std::floor(low / kTraceStep) * kTraceStep;
        high = std::max(std::ceil(high / kTraceStep) * kTraceStep, low + kTraceStep);

        const auto height = static_cast<double>(canvas.height() - 1);
        std::optional<long> before;
        for (size_t i = 0; i < count; ++i) {
            const auto& value = samples[first + i].*gauge.sample;
            std::optional<long> y;
            if (value)
                y = std::lround((high - *value) / (high - low) * height);
            const auto x = static_cast<long>(canvas.width() - count + i);
            // The line goes on from where it was, so that a fall is seen as well as a rise.
            if (y)
                for (long at = *y; at != before.value_or(*y); at += before > at ? 1 : -1)
                    canvas.dot(x, at);
            if (y && before.value_or(*y) == *y)
                canvas.dot(x, *y);
            before = y;
        }
        const std::vector<std::string> lines = canvas.rows();
        for (size_t i = 0; i < rows; ++i)
            m_grid.text(area.column + kLabels, area.row + i, lines[i]);
        m_grid.textBefore(area.column + kLabels - 1, area.row, format("%g", high), Look::faint);
        if (rows >= 3)
            m_grid.textBefore(area.column + kLabels - 1, area.row + (rows - 1) / 2, gauge.name, Look::faint);
        if (rows >= 2)
            m_grid.textBefore(area.column + kLabels - 1, area.row + rows - 1, format("%g", low), Look::faint);
        if (!hasTime)
            return;
        const auto ago = [&](const Sample& sample) {
            const auto seconds = static_cast<long long>((m_view.nowMs - sample.timeMs) / 1000);
            return seconds > 0 ? format("-%lld s", seconds) : std::string("now");
        };
        if (count > 1)
            m_grid.text(area.column + kLabels +
                            (canvas.width() - count) * (area.columns - kLabels) / canvas.width(),
                        area.row + rows, ago(samples[first]), Look::faint);
        m_grid.textBefore(area.column + area.columns, area.row + rows,
                          m_stale && count > 0 ? " " + ago(samples.back()) : " now", Look::faint);
    }

    // ---- the last lines ----

    void messageLine(size_t row)
    {
        if (m_view.input) {
            size_t end = m_grid.text(0, row, "Channel or frequency: ", Look::bold);
            end = m_grid.text(end, row, *m_view.input);
            m_grid.put(end, row, U'_');
            return;
        }
        m_grid.text(0, row, m_state.message);
        std::string going = m_state.tone ? "  tone" : "";
        if (m_state.recorded)
            going += format("  recorded %llu", static_cast<unsigned long long>(*m_state.recorded));
        m_grid.textBefore(m_view.columns, row, going, Look::faint);
    }

    void keys(size_t row)
    {
        const size_t columns = m_view.columns;
        m_grid.text(0, row,
                    m_view.input    ? "Enter tunes  Esc leaves"
                    : columns >= 72 ? "n next  p previous  c channel  i input  r reset peaks  t tone  q quit"
                    : columns >= 56 ? "n next  p prev  c channel  i input  r reset  t tone  q quit"
                                    : "n/p next c chan i inp r reset t tone q",
                    Look::faint);
    }

    const LiveState& m_state;
    const View& m_view;
    Grid m_grid;
    bool m_large;
    bool m_stale;
};

} // namespace

Grid layout(const LiveState& state, const View& view)
{
    return Painter(state, view).paint();
}

} // namespace tool
