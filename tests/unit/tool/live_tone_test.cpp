// How fast vx63 live clicks.
#include "live/tone.h"

#include <gtest/gtest.h>
#include <utility>

using namespace tool;
using std::chrono::milliseconds;

TEST(LiveTone, DoublesEveryTenDecibels)
{
    const std::pair<uint32_t, int> kCases[] = {{0, 2000},  {100, 1000}, {200, 500}, {300, 250},
                                               {400, 125}, {500, 125},  {150, 707}};
    for (const auto& [cnr, ms] : kCases) {
        MultiMeasResult result{};
        result.stat = VX63_STAT_SIGNAL;
        result.CNR = cnr;
        EXPECT_EQ(clickInterval(result), milliseconds(ms)) << cnr;
    }
}

TEST(LiveTone, IsSilentWithoutASignal)
{
    MultiMeasResult result{};
    result.CNR = 300;
    EXPECT_EQ(clickInterval(result), std::nullopt);
}
