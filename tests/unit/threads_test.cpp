// Constellations read by several threads at once, each over a service of its own.
#include "libvx63.h"
#include "lmsg.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <latch>
#include <thread>
#include <vector>

// The calling thread's service: answers a read of n with 624 points that all are n in its low 8 bits.
static thread_local uint8_t t_request[LMSG_SIZE_MAX];

int32_t lmsg_tsndMq(uint8_t, const void* pMsg, uint32_t ulLen, uint32_t)
{
    memcpy(t_request, pMsg, ulLen);
    return LMSG_OK;
}

int32_t lmsg_trcvMq(uint8_t, void* pMsg, uint32_t, uint32_t*, uint32_t)
{
    auto* const message = static_cast<uint8_t*>(pMsg);
    memset(message, t_request[8 + 4], LMSG_SIZE_MAX);
    const uint8_t head[8] = {12, t_request[0], 0x06, 0x81, 0x0C, 0x05, 0, 0};
    memcpy(message, head, sizeof head);
    message[8] = 0;
    message[8 + 40] = 0x70;
    message[8 + 41] = 0x02;
    return LMSG_OK;
}

namespace {

TEST(ThreadsTest, ConstellationsDoNotMix)
{
    constexpr int kThreads = 3;
    std::latch ready(kThreads);
    std::vector<std::thread> threads;
    for (int id = 1; id <= kThreads; ++id) {
        threads.emplace_back([id, &ready] {
            ASSERT_EQ(vx63_init(id), 0);
            SingleMeasResult result;
            ready.arrive_and_wait();
            for (int i = 0; i < 50; ++i) {
                const auto readCount = static_cast<uint16_t>(id * 64 + i);
                EXPECT_EQ(vx63_getSingleMeasResult(readCount, &result), 0);
                EXPECT_EQ(result.CONS_NUM, 624);
                EXPECT_TRUE(std::all_of(result.points, result.points + 624, [readCount](ConstaPoint point) {
                    return point.I == static_cast<int8_t>(readCount) && point.Q == point.I;
                })) << id;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
