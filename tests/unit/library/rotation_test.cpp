// A log that has grown past its limit is started anew while others log as well: whatever comes between two
// steps of a statement, no line is lost. Libc's functions are stood in for, to let another thread in at those
// places.
#include "libvx63.h"
#include "support/log_file.h"

#include <chrono>
#include <dlfcn.h>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using vx63test::kLogPath;
using vx63test::logMessages;

// What happens once before this thread's next call.
thread_local std::function<void()> t_beforeOpen;
thread_local std::function<void()> t_beforeTruncation;

void happen(std::function<void()>& what)
{
    if (const auto once = std::exchange(what, nullptr)) {
        once();
    }
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    happen(t_beforeOpen);
    static const auto real = reinterpret_cast<int (*)(const char*, int, ...)>(dlsym(RTLD_NEXT, "open64"));
    return real(path, flags, 0666);
}

int ftruncate(int fd, off_t length) noexcept
{
    happen(t_beforeTruncation);
    static const auto real = reinterpret_cast<int (*)(int, off64_t)>(dlsym(RTLD_NEXT, "ftruncate64"));
    return real(fd, length);
}

} // extern "C"

// On the meter the platform gives these; here nobody asks.
int32_t lmsg_tsndMq(uint8_t, const void*, uint32_t, uint32_t)
{
    return -1;
}

int32_t lmsg_trcvMq(uint8_t, void*, uint32_t, uint32_t*, uint32_t)
{
    return -1;
}

namespace {

class RotationTest : public testing::Test {
protected:
    void SetUp() override
    {
        vx63test::removeLog();
        std::ofstream(kLogPath) << std::string(2097152, 'x') << '\n';
    }
    void TearDown() override { vx63test::removeLog(); }
};

TEST_F(RotationTest, ALineWrittenBeforeTheFileIsOpenedStays)
{
    t_beforeOpen = [] { std::thread([] { vx63_init(19); }).join(); };
    vx63_init(18);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=19",
                                           "vx63_init: End. vx63_err=-2", "vx63_init: Start.",
                                           "vx63_init: arg error. procId=18", "vx63_init: End. vx63_err=-2"));
}

TEST_F(RotationTest, ALineOfWhoFindsTheFileFullMeanwhileStays)
{
    std::future<int32_t> other;
    t_beforeTruncation = [&other] {
        other = std::async(std::launch::async, [] { return vx63_init(19); });
        other.wait_for(std::chrono::milliseconds(50)); // it waits for us; did it not, it would be done
    };
    vx63_init(18);
    other.wait();
    EXPECT_THAT(logMessages(),
                UnorderedElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=19",
                                     "vx63_init: End. vx63_err=-2", "vx63_init: Start.",
                                     "vx63_init: arg error. procId=18", "vx63_init: End. vx63_err=-2"));
}

} // namespace
