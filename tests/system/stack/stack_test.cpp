// Calls every operation in a thread of its own with the smallest stack that is promised. Runs in a virtual
// meter.
#include "libvx63.h"
#include "operation_costs.h"

#include <climits>
#include <gtest/gtest.h>
#include <optional>
#include <pthread.h>
#include <string>

namespace {

using vx63test::OperationCost;

// docs/architecture.md, "Threads and memory". With glibc a thread's storage and its guard page are part of
// its stack.
const size_t kSmallestStack = static_cast<size_t>(PTHREAD_STACK_MIN) + size_t{144} * 1024;

struct Call {
    int32_t (*call)();
    int32_t result;
};

void* make(void* call)
{
    vx63_init(1);
    static_cast<Call*>(call)->result = static_cast<Call*>(call)->call();
    return nullptr;
}

// What the operation returns; a stack that is too small ends the program.
std::optional<int32_t> callInSmallThread(const OperationCost& operation)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    EXPECT_EQ(pthread_attr_setstacksize(&attributes, kSmallestStack), 0);
    Call call{operation.call, 0};
    pthread_t thread;
    const int error = pthread_create(&thread, &attributes, make, &call);
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(error, 0);
    if (error != 0) {
        return std::nullopt;
    }
    pthread_join(thread, nullptr);
    return call.result;
}

// Those of the settings files go deepest, and the meter carries them out. Off goes last: nobody answers then.
TEST(Stack, HoldsEveryOperation)
{
    int succeeded = 0;
    std::optional<OperationCost> shutdown;
    vx63test::forEachOperation([&](const OperationCost& operation) {
        if (operation.name == "vx63_shutdown") {
            shutdown = operation;
        } else if (operation.service == vx63test::Service::Accepts) {
            const auto result = callInSmallThread(operation);
            succeeded += result == VX63_OK;
        }
    });
    ASSERT_TRUE(shutdown);
    EXPECT_EQ(callInSmallThread(*shutdown), VX63_OK);
    EXPECT_GE(succeeded, 40);
}

} // namespace
