// What a call costs: no heap at all, and of what leaves the process no more than its lines in the log and its
// exchanges take. Counted by standing in for what the library calls.
#include "libvx63.h"
#include "operation_costs.h"
#include "support/heap_count.h"
#include "support/log_file.h"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using vx63test::Calls;
using vx63test::forEachOperation;
using vx63test::OperationCost;
using vx63test::standInCalls;

void expectNoHeap(const OperationCost& operation)
{
    const int64_t before = vx63test::t_heapCalls;
    const int32_t result = operation.call();
    EXPECT_EQ(vx63test::t_heapCalls, before);
    EXPECT_EQ(result, operation.result);
}

TEST(CostTest, NoOperationTouchesTheHeap)
{
    forEachOperation(expectNoHeap);
    std::thread([] { forEachOperation(expectNoHeap); }).join(); // nor does the first use in a thread
}

TEST(CostTest, AnOperationCostsItsLinesAndItsExchanges)
{
    forEachOperation([](const OperationCost& operation) {
        EXPECT_EQ(standInCalls(operation.call), vx63test::expectedCalls(operation));
    });
}

// The cost of three lines with the log as it is.
Calls threeLines()
{
    return standInCalls([] { vx63_setMeasInput(2); });
}

TEST(CostTest, AFullLogIsStartedAnewOnce)
{
    vx63test::removeLog();
    std::ofstream(vx63test::kLogPath) << std::string(2097153, 'x');
    EXPECT_EQ(threeLines(), (Calls{{"stat", 3},
                                   {"open", 3},
                                   {"clock_gettime", 3},
                                   {"write", 3},
                                   {"close", 3},
                                   {"pthread_sigmask", 2},
                                   {"flock", 2},
                                   {"fstat", 1},
                                   {"ftruncate", 1}}));
}

TEST(CostTest, ALogThatIsNoFileCostsALook)
{
    vx63test::removeLog();
    std::filesystem::create_directory(vx63test::kLogPath);
    EXPECT_EQ(threeLines(), (Calls{{"stat", 3}}));
    vx63test::removeLog();
}

// The first operation's lines begin with that.
void expectLines(const std::string& begin)
{
    vx63test::removeLog();
    standInCalls([] { vx63_init(5); });
    const std::vector<std::string> lines = vx63test::logLines();
    EXPECT_FALSE(lines.empty());
    for (const std::string& line : lines) {
        EXPECT_EQ(line.substr(0, line.find('(')), begin);
    }
}

TEST(CostTest, TheTimeIsTruncatedToMicroseconds)
{
    expectLines("1234567890.000042 : unit_cost : libvx63.cpp");
}

TEST(CostTest, TheTimeGoesOnBeyond2038)
{
    vx63test::s_seconds = 2211840000; // 2 February 2040
    expectLines("2211840000.000042 : unit_cost : libvx63.cpp");
    vx63test::s_seconds = 1234567890;
}

TEST(CostTest, EveryOperationIsListed)
{
    // The names come from the built library.
    Dl_info library;
    ASSERT_NE(dladdr(reinterpret_cast<const void*>(&vx63_init), &library), 0);
    const std::string command = std::string("nm -D --defined-only '") + library.dli_fname +
                                "' | awk '$2 == \"T\" {sub(/@.*/, \"\", $3); print $3}'";
    FILE* const names = popen(command.c_str(), "r");
    ASSERT_NE(names, nullptr);
    std::set<std::string> exported;
    char name[128];
    while (fscanf(names, "%127s", name) == 1) {
        exported.insert(name);
    }
    pclose(names);
    std::set<std::string> listed;
    forEachOperation([&listed](const OperationCost& operation) {
        if (operation.result == VX63_OK) {
            listed.insert(operation.name.substr(0, operation.name.find('(')));
        }
    });
    EXPECT_EQ(listed, exported);
}

} // namespace
