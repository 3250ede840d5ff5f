// Constellations read by two threads at once, each over a service of its own.
#include "libvx63.h"
#include "lmsg.h"

#include <algorithm>
#include <barrier>
#include <cstring>
#include <gtest/gtest.h>
#include <string_view>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

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

// The threads meet when each has filled its request, and when each has received its response: what they
// shared would be the other one's by then. The library says in its log how far it is.
static std::barrier s_meeting(2);

extern "C" ssize_t write(int fd, const void* data, size_t size)
{
    const std::string_view line(static_cast<const char*>(data), size);
    if (line.find(": usReadCount=") != line.npos || line.find(": s_rspDataConsta.ucRet=") != line.npos) {
        s_meeting.arrive_and_wait();
    }
    return syscall(SYS_write, fd, data, size);
}

namespace {

void readConstellations(int id)
{
    EXPECT_EQ(vx63_init(id), 0);
    for (int i = 0; i < 10; ++i) {
        const auto readCount = static_cast<uint16_t>(id * 64 + i);
        SingleMeasResult result;
        EXPECT_EQ(vx63_getSingleMeasResult(readCount, &result), 0);
        EXPECT_EQ(result.CONS_NUM, 624);
        EXPECT_TRUE(std::all_of(result.points, result.points + 624, [readCount](ConstaPoint point) {
            return point.I == static_cast<int8_t>(readCount) && point.Q == point.I;
        })) << id;
    }
}

TEST(ThreadsTest, ConstellationsDoNotMix)
{
    std::thread other(readConstellations, 2);
    readConstellations(1);
    other.join();
}

} // namespace
