// Names of channels as people type them.
#include "measure/channel_search.h"

#include <gtest/gtest.h>
#include <utility>

using namespace tool;

TEST(ChannelName, IsTheSameAsPeopleTypeIt)
{
    const std::pair<const char*, const char*> kSame[] = {
        {"BS-1", "BS-1"}, {"BS-1", "bs1"},    {"BS-1", "BS01"}, {"BS-1", "bs 1"},  {"BS-1", "bs-001"},
        {"ND2", "nd-2"},  {"ND2", "Nd 02"},   {"PL 1", "pl1"},  {"PL 1", "PL-1"},  {"PL 1", "pl  1"},
        {"H011", "H11"},  {"H-11", "H11"},    {"13", "013"},    {"76.5", "076.5"}, {"DL-L", "dll"},
        {"K-13", "k13"},  {"20.00", "20.00"}, {"0", "00"},
    };
    for (const auto& [planned, typed] : kSame)
        EXPECT_TRUE(sameChannelName(planned, typed)) << typed;
}

TEST(ChannelName, IsAnother)
{
    const std::pair<const char*, const char*> kOther[] = {
        {"BS-1", "BS-11"}, {"BS-10", "BS-1"}, {"13", "1-3"},   {"13", "1 3"},
        {"C13", "13"},     {"20.05", "20.5"}, {"20.00", "20"}, {"13", ""},
        {"76.5", "765"},   {"BS-1", "CS-1"},  {"100", "1"},
    };
    for (const auto& [planned, typed] : kOther)
        EXPECT_FALSE(sameChannelName(planned, typed)) << typed;
}
