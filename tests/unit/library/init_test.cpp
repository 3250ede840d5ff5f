#include "support/operation_test.h"

#include <pthread.h>
#include <thread>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using vx63test::logMessages;
using vx63test::platform;

using InitTest = vx63test::OperationTest;

// A request of an operation without arguments, sent by the given id, which nobody answers.
void expectRequestFrom(const char* id)
{
    const std::string message = std::string(id) + " 0C 17 00 04 00 00 00 | 00 00 00 00";
    platform().expectSend(12, 10000, message);
}

TEST_F(InitTest, EveryIdOfAClientIsTaken)
{
    const std::string thread = std::to_string(static_cast<long>(pthread_self()));
    const std::string ids = "vx63_init: getpid()=" + std::to_string(getpid()) + " pthread_self()=" + thread;
    EXPECT_EQ(vx63_init(0), 0);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_init: Start.", ids, "vx63_init: End. vx63_err=0"));
    for (int32_t id = 1; id <= 17; ++id) {
        EXPECT_EQ(vx63_init(id), 0) << id;
    }
    expectRequestFrom("11"); // 17
    platform().expectReceiveFails(17, 10000, -4);
    MeasStatus status;
    EXPECT_EQ(vx63_getMeasStatus(&status), -1);
}

class InitRefusedTest : public InitTest, public testing::WithParamInterface<int32_t> {};

TEST_P(InitRefusedTest, LeavesTheIdAsItWas)
{
    EXPECT_EQ(vx63_init(GetParam()), -2);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=" + std::to_string(GetParam()),
                            "vx63_init: End. vx63_err=-2"));
    expectRequestFrom("05");
    platform().expectReceiveFails(5, 10000, -4);
    MeasStatus status;
    EXPECT_EQ(vx63_getMeasStatus(&status), -1);
}

INSTANTIATE_TEST_SUITE_P(OutOfRange, InitRefusedTest, testing::Values(18, 255, -1, INT32_MAX, INT32_MIN));

TEST_F(InitTest, AThreadThatNeverInitialisedSendsAs255)
{
    std::thread([] {
        vx63test::removeLog();
        expectRequestFrom("FF");
        platform().expectReceiveFails(255, 10000, -4);
        MeasStatus status;
        EXPECT_EQ(vx63_getMeasStatus(&status), -1);
        EXPECT_EQ(vx63_init(18), -2);
        expectRequestFrom("FF");
        platform().expectReceiveFails(255, 10000, -4);
        EXPECT_EQ(vx63_getMeasStatus(&status), -1);
        EXPECT_EQ(vx63_init(3), 0);
    }).join();
    // The other thread's id is its own.
    expectRequestFrom("05");
    platform().expectReceiveFails(5, 10000, -4);
    MeasStatus status;
    EXPECT_EQ(vx63_getMeasStatus(&status), -1);
}

} // namespace
