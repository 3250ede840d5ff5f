#include "paired.h"

#include "require.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::nanoseconds;

constexpr nanoseconds kBlock = std::chrono::milliseconds(3);
constexpr nanoseconds kPair = std::chrono::milliseconds(1500);
constexpr nanoseconds kStep = std::chrono::milliseconds(500);
constexpr size_t kFewestRounds = 15;

nanoseconds timeOf(const Body& body, int calls)
{
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < calls; ++i)
        body();
    return Clock::now() - start;
}

// How many calls make a block.
int callsOf(const Body& body)
{
    body(); // the first is none like the others
    int calls = 1;
    while (timeOf(body, calls) < kBlock)
        calls *= 2;
    return calls;
}

double quantile(std::vector<double> values, double part)
{
    const auto at = values.begin() + static_cast<ptrdiff_t>(part * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

void print(const nlohmann::ordered_json& line)
{
    std::printf("%s\n", line.dump().c_str());
    require(std::fflush(stdout) == 0, "standard output");
}

// Each in nanoseconds a call.
struct Rounds {
    std::vector<double> floors;
    std::vector<double> subjects;
    std::vector<double> ratios;
};

Rounds roundsOf(const Body& floor, const Body& subject, bool brief, nanoseconds time)
{
    const int floorCalls = brief ? 1 : callsOf(floor);
    const int subjectCalls = brief ? 1 : callsOf(subject);
    Rounds rounds;
    auto& [floors, subjects, ratios] = rounds;
    const Clock::time_point start = Clock::now();
    while (brief ? ratios.empty() : ratios.size() < kFewestRounds || Clock::now() - start < time) {
        const bool floorFirst = ratios.size() % 2 == 0;
        const nanoseconds first =
            timeOf(floorFirst ? floor : subject, floorFirst ? floorCalls : subjectCalls);
        const nanoseconds second =
            timeOf(floorFirst ? subject : floor, floorFirst ? subjectCalls : floorCalls);
        const auto of = [](nanoseconds all, int calls) { return static_cast<double>(all.count()) / calls; };
        floors.push_back(of(floorFirst ? first : second, floorCalls));
        subjects.push_back(of(floorFirst ? second : first, subjectCalls));
        ratios.push_back(subjects.back() / floors.back());
    }
    return rounds;
}

} // namespace

void Runner::compare(const Row& row, const Body& floor, const Body& subject)
{
    if (!wants(row))
        return;
    const auto [floors, subjects, ratios] = roundsOf(floor, subject, m_options.brief, kPair);
    nlohmann::ordered_json line = {{"group", m_options.group},
                                   {"what", row.what},
                                   {"floor", row.floor},
                                   {"floor_ns", quantile(floors, 0.5)},
                                   {"ns", quantile(subjects, 0.5)},
                                   {"ratio", quantile(ratios, 0.5)},
                                   {"ratio_low", quantile(ratios, 0.25)},
                                   {"ratio_high", quantile(ratios, 0.75)},
                                   {"rounds", ratios.size()}};
    if (row.target != 0)
        line["target"] = row.target;
    print(line);
}

void Runner::grow(const Step& step, const Body& floor, const Body& subject)
{
    constexpr double kMicrosecond = 1000;
    const Rounds rounds = roundsOf(floor, subject, m_options.brief, kStep);
    tell(step.table, step.at, step.subject, median(rounds.subjects) / kMicrosecond);
    tell(step.table, step.at, step.floor, median(rounds.floors) / kMicrosecond);
}

void tell(const std::string& table, double at, const std::string& series, double value)
{
    print({{"table", table}, {"at", at}, {"series", series}, {"value", value}});
}

double median(const std::vector<double>& values)
{
    return quantile(values, 0.5);
}

} // namespace bench
