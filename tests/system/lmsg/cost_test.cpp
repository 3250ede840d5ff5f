// What the platform's calls cost on a PC: the system calls of a send and a receive, as the kernel sees them.
// A queue costs more when a process uses it first.
#include "lmsg.h"
#include "support/kernel_calls.h"

#include <gtest/gtest.h>
#include <mqueue.h>

namespace {

using vx63test::Calls;

constexpr uint8_t kId = 99; // lmsg_test.cpp takes those from 100 on
constexpr char kName[] = "/vx63.99";
constexpr uint32_t kLong = 60000;

// The clock is read without the kernel, but for this program's own hook.
const Calls kSend = {{"clock_gettime", 1}, {"fstat", 1}, {"mq_send", 1}};
const Calls kReceive = {{"clock_gettime", 1}, {"fstat", 1}, {"ppoll", 1}, {"mq_receive", 1}};

void send()
{
    lmsg_tsndMq(kId, "message", 7, kLong);
}

void receive()
{
    uint8_t message[LMSG_SIZE_MAX];
    lmsg_trcvMq(kId, message, sizeof message, nullptr, kLong);
}

class LmsgCost : public testing::Test {
protected:
    // The queue is known to this process and empty.
    LmsgCost()
    {
        mq_unlink(kName);
        send();
        receive();
    }
    ~LmsgCost() override { mq_unlink(kName); }
};

// before: as in kernelCalls
void expectCalls(const Calls& expected, void (*work)(),
                 const std::function<void(const std::string& name)>& before = {})
{
    const auto calls = vx63test::kernelCalls(work, before);
    if (!calls) {
        GTEST_SKIP() << "a process may not trace its child";
    }
    EXPECT_EQ(*calls, expected);
}

TEST_F(LmsgCost, OfASend)
{
    expectCalls(kSend, send);
}

TEST_F(LmsgCost, OfReceivingWhatIsThere)
{
    send();
    expectCalls(kReceive, receive);
}

TEST_F(LmsgCost, OfReceivingWhatComes)
{
    expectCalls(kReceive, receive, [](const std::string& name) {
        if (name == "ppoll") { // once it waits
            send();
        }
    });
}

} // namespace
