// liblmsg.so over the kernel's own queues.
#include "libc_hooks.h"
#include "lmsg.h"
#include "support/heap_count.h"

#include <gtest/gtest.h>

#include <array>
#include <barrier>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <linux/capability.h>
#include <mqueue.h>
#include <semaphore>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;
using hooks::Wait;
using vx63test::t_heapCalls;

constexpr int64_t kNsPerMs = 1'000'000;
constexpr int64_t kSecondNs = 1'000'000'000;
constexpr int64_t kDayNs = 86400 * kSecondNs;

// Far longer than any of these exchanges takes, so that a lost one fails instead of hanging.
constexpr uint32_t kLong = 60000;

// Beyond the process ids of a meter: without namespaces the tests run beside real services.
constexpr uint8_t kFirstId = 100;

std::string nameOf(uint8_t id)
{
    return "/vx63." + std::to_string(id);
}

Bytes text(const char* characters)
{
    return Bytes(characters, characters + std::strlen(characters));
}

int32_t send(uint8_t id, const Bytes& message, uint32_t timeout = 0)
{
    return lmsg_tsndMq(id, message.data(), static_cast<uint32_t>(message.size()), timeout);
}

struct Received {
    int32_t result;
    Bytes message;
    bool operator==(const Received&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Received& received)
{
    return out << received.result << " [" << std::string(received.message.begin(), received.message.end())
               << "]";
}

Received receive(uint8_t id, uint32_t timeout = 0)
{
    Bytes buffer(1300);
    uint32_t length = 0;
    const int32_t result = lmsg_trcvMq(id, buffer.data(), 1300, &length, timeout);
    buffer.resize(length);
    return {result, buffer};
}

// The queue as another program has it, which may have made it otherwise. Closed at the end.
class OtherSide {
public:
    OtherSide(uint8_t id, int flags, long depth = 4, long size = 1300, mode_t mode = 0600)
    {
        mq_attr geometry{};
        geometry.mq_maxmsg = depth;
        geometry.mq_msgsize = size;
        m_queue = mq_open(nameOf(id).c_str(), O_RDWR | O_NONBLOCK | flags, mode, &geometry);
    }
    ~OtherSide() { close(); }
    OtherSide(const OtherSide&) = delete;
    OtherSide& operator=(const OtherSide&) = delete;

    bool exists() const { return m_queue >= 0; }
    mqd_t descriptor() const { return m_queue; }

    void close()
    {
        if (m_queue >= 0)
            mq_close(m_queue);
        m_queue = -1;
    }

    mq_attr geometry() const
    {
        mq_attr geometry{};
        mq_getattr(m_queue, &geometry);
        return geometry;
    }

    mode_t mode() const
    {
        struct stat status {};
        fstat(m_queue, &status);
        return status.st_mode & 07777;
    }

    bool send(const Bytes& message) const
    {
        return mq_send(m_queue, reinterpret_cast<const char*>(message.data()), message.size(), 0) == 0;
    }

    Bytes receive() const
    {
        Bytes buffer(1300);
        const ssize_t length = mq_receive(m_queue, reinterpret_cast<char*>(buffer.data()), 1300, nullptr);
        buffer.resize(length < 0 ? 0 : static_cast<size_t>(length));
        return buffer;
    }

private:
    mqd_t m_queue;
};

// What this process's descriptors of a queue are, unlinked queues included.
std::vector<int> descriptorsOf(uint8_t id)
{
    std::vector<int> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error; // the iterator's own descriptor is among them
        const std::string target = std::filesystem::read_symlink(entry, error);
        if (target == nameOf(id) || target == nameOf(id) + " (deleted)")
            found.push_back(std::stoi(entry.path().filename()));
    }
    return found;
}

// Runs in a child, for what would change this process for good; gives its exit status, or -1.
template <class Function>
int inChild(Function function)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(function());
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

void limit(int resource, rlim_t value)
{
    rlimit both{};
    getrlimit(static_cast<__rlimit_resource>(resource), &both);
    both.rlim_cur = value;
    setrlimit(static_cast<__rlimit_resource>(resource), &both);
}

// Every wait takes exactly the time it was given, without anyone waiting; gives the sum.
int64_t& passTime()
{
    static int64_t s_waitedNs;
    s_waitedNs = 0;
    hooks::s_onWait = [](int64_t givenNs) {
        EXPECT_LE(givenNs, kSecondNs);
        EXPECT_GT(givenNs, 0);
        s_waitedNs += givenNs;
        hooks::s_passedNs += givenNs;
        return Wait::Over;
    };
    // The real clock runs on beneath: stop it.
    hooks::s_frozen = true;
    return s_waitedNs;
}

class Lmsg : public testing::Test {
protected:
    // Each test has queues that this process has never opened.
    static uint8_t newId()
    {
        static uint8_t s_next = kFirstId;
        mq_unlink(nameOf(s_next).c_str());
        return s_next++;
    }

    void fill() const
    {
        for (const char* message : {"first", "second", "third", "fourth"})
            ASSERT_EQ(LMSG_OK, send(id, text(message)));
    }

    void unlink() const { ASSERT_EQ(0, mq_unlink(nameOf(id).c_str())); }

    ~Lmsg() override
    {
        hooks::reset();
        // The kernel counts a queue for this user until its last descriptor is closed.
        for (const uint8_t queue : {id, id2}) {
            mq_unlink(nameOf(queue).c_str());
            for (const int descriptor : descriptorsOf(queue))
                close(descriptor);
        }
    }

    const uint8_t id = newId();
    const uint8_t id2 = newId();
};

// ---- messages

TEST_F(Lmsg, CarriesEveryLengthByteForByte)
{
    for (const uint32_t length : {1u, 7u, 8u, 1299u, 1300u}) {
        Bytes message(length);
        for (size_t i = 0; i < length; i++)
            message[i] =
                static_cast<uint8_t>(kFirstId + i * 7 + length); // not a request of a meter's process
        ASSERT_EQ(LMSG_OK, lmsg_tsndMq(id, message.data(), length, 0));

        Bytes buffer(1400, 0xEE);
        uint32_t received = 0xDEADBEEF;
        ASSERT_EQ(LMSG_OK, lmsg_trcvMq(id, buffer.data(), 1400, &received, 0));
        EXPECT_EQ(length, received);
        message.resize(1400, 0xEE); // beyond the message nothing is written
        EXPECT_EQ(message, buffer);
    }
}

TEST_F(Lmsg, KeepsTheOrderOfSending)
{
    fill();
    for (const char* message : {"first", "second", "third", "fourth"})
        EXPECT_EQ((Received{LMSG_OK, text(message)}), receive(id));
}

// None comes before another that was sent earlier, by whomever.
TEST_F(Lmsg, KeepsTheOrderOfSendingAmongAll)
{
    const OtherSide other(id, O_CREAT);
    ASSERT_TRUE(other.send(text("first")));
    ASSERT_EQ(LMSG_OK, send(id, text("second")));
    ASSERT_TRUE(other.send(text("third")));
    for (const char* message : {"first", "second", "third"})
        EXPECT_EQ((Received{LMSG_OK, text(message)}), receive(id));
}

TEST_F(Lmsg, KeepsQueuesApart)
{
    ASSERT_EQ(LMSG_OK, send(id, text("one")));
    ASSERT_EQ(LMSG_OK, send(id2, text("two")));
    EXPECT_EQ((Received{LMSG_OK, text("two")}), receive(id2));
    EXPECT_EQ((Received{LMSG_OK, text("one")}), receive(id));
}

TEST_F(Lmsg, TakesTheLastId)
{
    mq_unlink("/vx63.255");
    // In a child: this process never opens it.
    EXPECT_EQ(LMSG_OK, inChild([] { return send(255, text("message")); }));
    EXPECT_EQ(text("message"), OtherSide(255, 0).receive());
    mq_unlink("/vx63.255");
}

TEST_F(Lmsg, NeedsNoPlaceForTheLength)
{
    ASSERT_EQ(LMSG_OK, send(id, text("message")));
    Bytes buffer(1300);
    EXPECT_EQ(LMSG_OK, lmsg_trcvMq(id, buffer.data(), 1300, nullptr, 0));
    EXPECT_EQ('m', buffer[0]);
}

// ---- arguments

TEST_F(Lmsg, RefusesArgumentsBeforeAnythingElse)
{
    const Bytes message(1301);
    EXPECT_EQ(-1, lmsg_tsndMq(id, nullptr, 8, LMSG_FOREVER));
    EXPECT_EQ(-1, lmsg_tsndMq(id, nullptr, 0, LMSG_FOREVER));
    EXPECT_EQ(-1, lmsg_tsndMq(id, message.data(), 0, LMSG_FOREVER));
    EXPECT_EQ(-1, lmsg_tsndMq(id, message.data(), 1301, LMSG_FOREVER));
    EXPECT_EQ(-1, lmsg_tsndMq(id, message.data(), UINT32_MAX, LMSG_FOREVER));

    Bytes buffer(1300, 0xEE);
    uint32_t length = 0xDEADBEEF;
    EXPECT_EQ(-1, lmsg_trcvMq(id, nullptr, 1300, &length, LMSG_FOREVER));
    EXPECT_EQ(-1, lmsg_trcvMq(id, buffer.data(), 1299, &length, LMSG_FOREVER));
    EXPECT_EQ(-1, lmsg_trcvMq(id, buffer.data(), 0, &length, LMSG_FOREVER));
    EXPECT_EQ(0xDEADBEEF, length);
    EXPECT_EQ(Bytes(1300, 0xEE), buffer);

    EXPECT_FALSE(OtherSide(id, 0).exists());
}

// ---- the queue itself

TEST_F(Lmsg, SenderMakesTheQueue)
{
    ASSERT_EQ(LMSG_OK, send(id, text("message")));
    const OtherSide other(id, 0);
    ASSERT_TRUE(other.exists());
    EXPECT_EQ(4, other.geometry().mq_maxmsg);
    EXPECT_EQ(1300, other.geometry().mq_msgsize);
    EXPECT_EQ(0600u, other.mode());
    EXPECT_EQ(text("message"), other.receive());
}

TEST_F(Lmsg, ReceiverMakesTheQueue)
{
    ASSERT_EQ(-4, receive(id).result);
    const OtherSide other(id, 0);
    ASSERT_TRUE(other.exists());
    EXPECT_EQ(4, other.geometry().mq_maxmsg);
    EXPECT_EQ(1300, other.geometry().mq_msgsize);
    EXPECT_EQ(0600u, other.mode());
    ASSERT_TRUE(other.send(text("message")));
    EXPECT_EQ((Received{LMSG_OK, text("message")}), receive(id));
}

TEST_F(Lmsg, NoUmaskNarrowsTheMode)
{
    const mode_t before = umask(0777);
    const int32_t result = send(id, text("message"));
    EXPECT_EQ(0777u, umask(before));
    ASSERT_EQ(LMSG_OK, result);
    const OtherSide other(id, 0);
    ASSERT_TRUE(other.exists());
    EXPECT_EQ(0600u, other.mode());
}

TEST_F(Lmsg, LeavesAModeThatSufficesAlone)
{
    const OtherSide other(id, O_CREAT);
    ASSERT_EQ(0, fchmod(other.descriptor(), 0700));
    EXPECT_EQ(LMSG_OK, send(id, text("message")));
    EXPECT_EQ(0700u, other.mode());
}

TEST_F(Lmsg, LeavesAnotherDepthAlone)
{
    const OtherSide other(id, O_CREAT, 2);
    EXPECT_EQ(LMSG_OK, send(id, text("first")));
    EXPECT_EQ(LMSG_OK, send(id, text("second")));
    EXPECT_EQ(-4, send(id, text("third")));
    EXPECT_EQ(text("first"), other.receive());
}

// Messages of 8 bytes as the library writes them: sender, receiver, command, length, option.
constexpr uint8_t kWithoutId = 255;

Bytes request(uint8_t sender, uint8_t receiver)
{
    return {sender, receiver, 0x17, 0x00, 0, 0, 0, 0};
}

Bytes response(uint8_t option)
{
    return {12, 200, 0x17, 0x80, 0, 0, option, 0};
}

TEST_F(Lmsg, ARefusalMakesNoQueue)
{
    for (unsigned stranger = 18; stranger < 255; ++stranger) {
        ASSERT_EQ(-8, send(static_cast<uint8_t>(stranger), response(4))) << stranger;
        ASSERT_FALSE(OtherSide(static_cast<uint8_t>(stranger), 0).exists()) << stranger;
    }
}

TEST_F(Lmsg, ARefusalGoesToAQueueThatExists)
{
    EXPECT_EQ(-4, receive(id).result);
    EXPECT_EQ(LMSG_OK, send(id, response(4)));
    EXPECT_EQ((Received{LMSG_OK, response(4)}), receive(id));
    const OtherSide other(id2, O_CREAT);
    EXPECT_EQ(LMSG_OK, send(id2, response(4)));
    EXPECT_EQ(response(4), other.receive());
    ASSERT_EQ(0, mq_unlink(nameOf(id2).c_str()));
    EXPECT_EQ(-8, send(id2, response(4)));
    EXPECT_FALSE(OtherSide(id2, 0).exists());
}

TEST_F(Lmsg, AnyOtherResponseMakesTheQueue)
{
    Bytes withBody = response(4);
    withBody.push_back(0);
    Bytes otherOption = response(4);
    otherOption[7] = 1;
    Bytes noResponse = response(4); // whatever else its command says
    noResponse[0] = 200;            // no process of a meter
    noResponse[3] = 0x7F;
    for (const Bytes& message :
         {response(0), response(1), otherOption, withBody, noResponse, request(200, id)}) {
        Bytes among = message; // what lies behind a message is none of it
        among.resize(16);
        EXPECT_EQ(LMSG_OK, lmsg_tsndMq(id, among.data(), static_cast<uint32_t>(message.size()), 0));
        EXPECT_EQ(message, OtherSide(id, 0).receive());
        unlink();
    }
}

TEST_F(Lmsg, WhoAsksCanBeRefused)
{
    const auto makesItsQueue = [this](const Bytes& message) {
        mq_unlink(nameOf(message[0]).c_str());
        EXPECT_EQ(0, inChild([&] { return send(id, message); }));
        unlink();
        const bool made = OtherSide(message[0], 0).exists();
        mq_unlink(nameOf(message[0]).c_str());
        return made;
    };
    EXPECT_TRUE(makesItsQueue(request(kWithoutId, id)));
    EXPECT_TRUE(makesItsQueue({kWithoutId, id, 0xFF, 0x7F, 0, 0, 0, 0})) << "a command that no meter has";
    EXPECT_FALSE(makesItsQueue(request(200, id))) << "no meter has a process 200";
    EXPECT_FALSE(makesItsQueue(request(200, 5))) << "whomever it asks";
    EXPECT_FALSE(makesItsQueue({kWithoutId, id, 0x17, 0x80, 0, 0, 0, 0})) << "a response";
    EXPECT_FALSE(makesItsQueue({kWithoutId, id, 0x17})) << "no header";
}

// A meter's processes are 0 to 17.
TEST_F(Lmsg, EveryProcessOfAMeterThatAsksCanBeRefused)
{
    const auto exists = [](uint8_t process) { return OtherSide(process, 0).exists(); };
    for (const uint8_t process : std::array<uint8_t, 4>{0, 1, 17, 18}) {
        if (exists(process))
            GTEST_SKIP() << "there is a meter";
        EXPECT_EQ(0, inChild([&] { return send(id, request(process, id)); }));
        EXPECT_EQ(process <= 17, exists(process)) << unsigned{process};
        mq_unlink(nameOf(process).c_str());
        unlink();
    }
}

TEST_F(Lmsg, WhoAnswersOpensNoQueueOfAnyProcess)
{
    EXPECT_EQ(0, inChild([&] {
                  if (send(id, response(0)) != LMSG_OK)
                      return 1;
                  return descriptorsOf(0).empty() && descriptorsOf(response(0)[0]).empty() ? 0 : 2;
              }));
}

TEST_F(Lmsg, WhoAsksTwiceMakesItsQueueOnce)
{
    EXPECT_EQ(0, inChild([&] {
                  if (send(id, request(kWithoutId, id)) != LMSG_OK)
                      return 1;
                  const std::vector<int> kept = descriptorsOf(kWithoutId);
                  if (kept.size() != 1)
                      return 2;
                  hooks::s_openError = EIO;
                  return send(id, request(kWithoutId, id)) == LMSG_OK && descriptorsOf(kWithoutId) == kept
                             ? 0
                             : 3;
              }));
    mq_unlink(nameOf(kWithoutId).c_str());
}

// The second time costs no look at its queue, whatever the number of that is.
TEST_F(Lmsg, WhoAsksLooksAfterItsQueueOnce)
{
    for (const bool zero : {false, true}) {
        EXPECT_EQ(0, inChild([&] {
                      if (zero)
                          close(0);
                      if (send(id, request(kWithoutId, id)) != LMSG_OK)
                          return 1;
                      if (zero && descriptorsOf(kWithoutId) != std::vector<int>{0})
                          return 2;
                      int looks = 0;
                      hooks::s_onCall = [&](const char* call) {
                          looks += std::strcmp(call, "fstat") == 0;
                          return 0;
                      };
                      return send(id, request(kWithoutId, id)) == LMSG_OK && looks == 1 ? 0 : 3;
                  }));
        mq_unlink(nameOf(kWithoutId).c_str());
        unlink();
    }
}

TEST_F(Lmsg, TakesAQueueDated2040)
{
    const OtherSide other(id, O_CREAT);
    const timespec date = {.tv_sec = 2211840000, .tv_nsec = 0}; // 2 February 2040
    const timespec times[2] = {date, date};
    ASSERT_EQ(0, futimens(other.descriptor(), times));
    EXPECT_EQ(LMSG_OK, send(id, text("message")));
    ASSERT_EQ(0, futimens(other.descriptor(), times));
    EXPECT_EQ((Received{LMSG_OK, text("message")}), receive(id));
}

TEST_F(Lmsg, OpensOnceAndKeeps)
{
    ASSERT_EQ(LMSG_OK, send(id, text("message")));
    const std::vector<int> kept = descriptorsOf(id);
    ASSERT_EQ(1u, kept.size());
    EXPECT_EQ(FD_CLOEXEC, fcntl(kept[0], F_GETFD));

    hooks::s_openError = EIO;
    EXPECT_EQ((Received{LMSG_OK, text("message")}), receive(id));
    EXPECT_EQ(LMSG_OK, send(id, text("message")));
    EXPECT_EQ(kept, descriptorsOf(id));
}

// ---- failures; each leaves the receiver's memory alone, and the next call works

class LmsgFailure : public Lmsg {
protected:
    static bool receiveFails(uint8_t queue, int32_t result)
    {
        Bytes buffer(1300, 0xEE);
        uint32_t length = 0xDEADBEEF;
        return lmsg_trcvMq(queue, buffer.data(), 1300, &length, LMSG_FOREVER) == result &&
               length == 0xDEADBEEF && buffer == Bytes(1300, 0xEE);
    }

    static bool bothFail(uint8_t queue, int32_t result)
    {
        return lmsg_tsndMq(queue, "message", 7, LMSG_FOREVER) == result && receiveFails(queue, result);
    }

    static bool bothWork(uint8_t queue)
    {
        return send(queue, text("again")) == LMSG_OK && receive(queue) == Received{LMSG_OK, text("again")};
    }
};

TEST_F(LmsgFailure, Permission)
{
    // Mode 0 and no capability stand for a queue of another user, also where there is only one user.
    OtherSide other(id, O_CREAT);
    ASSERT_EQ(0, fchmod(other.descriptor(), 0));
    const int status = inChild([&] {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct none[2]{};
        if (syscall(SYS_capset, &header, none) != 0)
            return 1;
        if (!bothFail(id, -2))
            return 2;
        if (fchmod(other.descriptor(), 0600) != 0)
            return 3;
        return bothWork(id) ? 0 : 4;
    });
    EXPECT_EQ(0, status);
}

// Becomes another user in a child.
bool becomeNobody(bool keepCapabilities = false)
{
    constexpr unsigned kNobody = 65534;
    if (keepCapabilities && prctl(PR_SET_KEEPCAPS, 1, 0, 0, 0) != 0)
        return false;
    if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)
        return false;
    if (!keepCapabilities)
        return true;
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct all[2]{};
    if (syscall(SYS_capget, &header, all) != 0)
        return false;
    for (__user_cap_data_struct& one : all)
        one.effective = one.permitted;
    return syscall(SYS_capset, &header, all) == 0;
}

constexpr int kCannot = 99;

TEST_F(LmsgFailure, AQueueThatOthersMayUse)
{
    const OtherSide other(id, O_CREAT);
    ASSERT_TRUE(other.send(text("planted")));
    for (const mode_t mode : {0666u, 0660u, 0606u, 0620u, 0640u, 0602u, 0604u, 0610u, 0601u}) {
        ASSERT_EQ(0, fchmod(other.descriptor(), mode));
        EXPECT_TRUE(bothFail(id, -7)) << std::oct << mode;
        EXPECT_EQ(1u, descriptorsOf(id).size()) << "only the other side's";
        EXPECT_EQ(mode, other.mode());
    }
    EXPECT_EQ(1, other.geometry().mq_curmsgs);
    ASSERT_EQ(0, fchmod(other.descriptor(), 0600));
    EXPECT_EQ((Received{LMSG_OK, text("planted")}), receive(id));
    EXPECT_TRUE(bothWork(id));
}

TEST_F(LmsgFailure, AQueueOfAnotherUser)
{
    for (const mode_t mode : {0600u, 0666u}) {
        const int made = inChild([&] {
            if (!becomeNobody())
                return kCannot;
            const OtherSide other(id, O_CREAT | O_EXCL);
            return fchmod(other.descriptor(), mode) == 0 && other.send(text("planted")) ? 0 : 1;
        });
        if (made == kCannot)
            GTEST_SKIP() << "another user cannot be had";
        ASSERT_EQ(0, made);
        EXPECT_TRUE(bothFail(id, -7)) << std::oct << mode;
        unlink();
    }
    EXPECT_TRUE(bothWork(id));
}

TEST_F(LmsgFailure, ButRootIsTrusted)
{
    const OtherSide other(id, O_CREAT);
    const int status = inChild([&] { return !becomeNobody(true) ? kCannot : bothWork(id) ? 0 : 1; });
    if (status == kCannot)
        GTEST_SKIP() << "another user cannot be had";
    EXPECT_EQ(0, status);
}

TEST_F(LmsgFailure, NoMessageBytesLeft)
{
    const int status = inChild([&] {
        rlimit before{};
        getrlimit(RLIMIT_MSGQUEUE, &before);
        if (!bothWork(id2))
            return 1;
        limit(RLIMIT_MSGQUEUE, 1);
        if (!bothFail(id, -3))
            return 2;
        if (!bothWork(id2)) // a queue that is there needs no more
            return 3;
        limit(RLIMIT_MSGQUEUE, before.rlim_cur);
        return bothWork(id) ? 0 : 4;
    });
    EXPECT_EQ(0, status);
}

TEST_F(LmsgFailure, NoDescriptorsLeft)
{
    // By value: the undefined-behaviour sanitizer needs a descriptor to look at an object such as *this.
    const int status = inChild([id = id] {
        rlimit before{};
        getrlimit(RLIMIT_NOFILE, &before);
        limit(RLIMIT_NOFILE, 3);
        if (!bothFail(id, -3))
            return 1;
        limit(RLIMIT_NOFILE, before.rlim_cur);
        return bothWork(id) ? 0 : 2;
    });
    EXPECT_EQ(0, status);
}

TEST_F(LmsgFailure, OtherLimitsOfTheKernel)
{
    for (const int error : {ENFILE, ENOSPC, ENOMEM, EINVAL}) {
        hooks::s_openError = error;
        EXPECT_TRUE(bothFail(id, -3)) << std::strerror(error);
    }
    hooks::s_openError = 0;
    EXPECT_TRUE(bothWork(id));
}

TEST_F(LmsgFailure, Format)
{
    for (const long size : {1024L, 1299L, 1301L, 8192L}) {
        OtherSide other(id, O_CREAT, 4, size);
        EXPECT_TRUE(bothFail(id, -5)) << size;
        EXPECT_EQ(0, other.geometry().mq_curmsgs);
        EXPECT_EQ(1u, descriptorsOf(id).size()) << "only the other side's";
        unlink();
    }
    EXPECT_TRUE(bothWork(id));
}

TEST_F(LmsgFailure, System)
{
    for (const int error : {ENOSYS, EIO}) {
        hooks::s_openError = error;
        EXPECT_TRUE(bothFail(id, -6)) << std::strerror(error);
    }
    hooks::s_openError = 0;
    EXPECT_TRUE(bothWork(id));
}

// What a call to the kernel fails with where none should.
TEST_F(LmsgFailure, OfTheKernel)
{
    const auto failing = [](const char* name, int error) {
        hooks::s_onCall = [=](const char* call) { return std::strcmp(call, name) == 0 ? error : 0; };
    };
    for (const char* call : {"mq_getattr", "fstat"}) {
        failing(call, EIO);
        EXPECT_TRUE(bothFail(id, -6)) << call;
        EXPECT_TRUE(descriptorsOf(id).empty()) << call;
    }
    hooks::reset();
    ASSERT_TRUE(bothWork(id));
    failing("ppoll", ENOMEM);
    EXPECT_TRUE(receiveFails(id, -3));
    failing("ppoll", EFAULT);
    EXPECT_TRUE(receiveFails(id, -6));
    hooks::reset();
    EXPECT_TRUE(bothWork(id));
}

TEST_F(Lmsg, AnInterruptedCallIsMadeAgain)
{
    int interrupts = 3;
    hooks::s_onCall = [&](const char* call) {
        const bool exchanges = std::strcmp(call, "mq_send") == 0 || std::strcmp(call, "mq_receive") == 0;
        return exchanges && interrupts-- > 0 ? EINTR : 0;
    };
    ASSERT_EQ(LMSG_OK, send(id, text("message"), kLong));
    EXPECT_LT(interrupts, 0);
    interrupts = 3;
    EXPECT_EQ((Received{LMSG_OK, text("message")}), receive(id, kLong));
    EXPECT_LT(interrupts, 0);
}

// Behind its header, which tells where a message comes from.
TEST_F(LmsgFailure, UnreadableMessage)
{
    void* const pages = mmap(nullptr, 8192, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(MAP_FAILED, pages);
    uint8_t* const message = static_cast<uint8_t*>(pages) + 4096 - 8;
    message[0] = kFirstId;
    ASSERT_EQ(0, mprotect(message + 8, 4096, PROT_NONE));
    EXPECT_EQ(-6, lmsg_tsndMq(id, message, 9, LMSG_FOREVER));
    munmap(pages, 8192);
    EXPECT_EQ(-4, receive(id).result);
    EXPECT_TRUE(bothWork(id));
}

// ---- time-outs

TEST_F(Lmsg, ZeroDoesNotWait)
{
    EXPECT_EQ(-4, receive(id, 0).result);
    fill();
    EXPECT_EQ(-4, send(id, text("fifth"), 0));
    EXPECT_EQ(0, hooks::s_waits);
}

TEST_F(Lmsg, TimeoutLeavesEverythingAlone)
{
    passTime();
    Bytes buffer(1300, 0xEE);
    uint32_t length = 0xDEADBEEF;
    EXPECT_EQ(-4, lmsg_trcvMq(id, buffer.data(), 1300, &length, 100));
    EXPECT_EQ(0xDEADBEEF, length);
    EXPECT_EQ(Bytes(1300, 0xEE), buffer);

    fill();
    EXPECT_EQ(-4, send(id, text("fifth"), 100));
    for (const char* message : {"first", "second", "third", "fourth"})
        EXPECT_EQ((Received{LMSG_OK, text(message)}), receive(id));
    EXPECT_EQ(-4, receive(id).result);
}

TEST_F(Lmsg, WaitsExactlyTheTimeout)
{
    const int64_t& waitedNs = passTime();
    fill();
    for (const uint32_t timeout : {1u, 250u, 999u, 1000u, 1001u, 10000u, 600000u}) {
        passTime();
        EXPECT_EQ(-4, send(id, text("fifth"), timeout));
        EXPECT_EQ(timeout * kNsPerMs, waitedNs);
        passTime();
        EXPECT_EQ(-4, receive(id2, timeout).result);
        EXPECT_EQ(timeout * kNsPerMs, waitedNs);
    }
}

// A process is suspended right after it has looked in vain, until long after the time-out.
TEST_F(Lmsg, WhatIsThereWhenTheTimeIsOverIsTaken)
{
    passTime();
    int looks = 0;
    hooks::s_onCall = [&](const char* call) {
        if (std::strcmp(call, "mq_receive") != 0 || ++looks != 1)
            return 0;
        hooks::s_passedNs += 60 * kSecondNs;
        EXPECT_TRUE(OtherSide(id, 0).send(text("answer")));
        return EAGAIN;
    };
    hooks::s_onWait = [](int64_t) { return Wait::Interrupt; };
    EXPECT_EQ((Received{LMSG_OK, text("answer")}), receive(id, 10000));

    fill();
    looks = 0;
    hooks::s_onCall = [&](const char* call) {
        if (std::strcmp(call, "mq_send") != 0 || ++looks != 1)
            return 0;
        hooks::s_passedNs += 60 * kSecondNs;
        EXPECT_EQ(text("first"), OtherSide(id, 0).receive());
        return EAGAIN;
    };
    EXPECT_EQ(LMSG_OK, send(id, text("fifth"), 10000));
}

TEST_F(Lmsg, WallClockStepsChangeNothing)
{
    const int64_t& waitedNs = passTime();
    hooks::s_realtimeSteps = true;
    fill();
    EXPECT_EQ(-4, send(id, text("fifth"), 2500));
    EXPECT_EQ(2500 * kNsPerMs, waitedNs);
    passTime();
    EXPECT_EQ(-4, receive(id2, 2500).result);
    EXPECT_EQ(2500 * kNsPerMs, waitedNs);
}

TEST_F(Lmsg, LongestTimeoutEndsAfter49Days)
{
    passTime();
    hooks::s_onWait = [](int64_t) {
        hooks::s_passedNs += kDayNs;
        return Wait::Over;
    };
    EXPECT_EQ(-4, receive(id, UINT32_MAX - 1).result);
    EXPECT_EQ(50, hooks::s_waits); // 4294967.294 s = 49.71 days
}

TEST_F(Lmsg, ForeverDoesNotEnd)
{
    passTime();
    hooks::s_onWait = [this](int64_t) {
        hooks::s_passedNs += kDayNs;
        if (hooks::s_waits == 1000) {
            EXPECT_TRUE(OtherSide(id, 0).send(text("at last")));
        }
        return Wait::Over;
    };
    EXPECT_EQ((Received{LMSG_OK, text("at last")}), receive(id, LMSG_FOREVER));

    fill();
    hooks::s_waits = 0;
    hooks::s_onWait = [this](int64_t) {
        hooks::s_passedNs += kDayNs;
        if (hooks::s_waits == 1000) {
            EXPECT_EQ(text("first"), OtherSide(id, 0).receive());
        }
        return Wait::Over;
    };
    EXPECT_EQ(LMSG_OK, send(id, text("fifth"), LMSG_FOREVER));
    EXPECT_EQ(1000, hooks::s_waits);
}

TEST_F(Lmsg, SignalsRecomputeTheRest)
{
    passTime();
    std::vector<int64_t> given;
    hooks::s_onWait = [&](int64_t givenNs) {
        given.push_back(givenNs);
        hooks::s_passedNs += 100 * kNsPerMs;
        return Wait::Interrupt;
    };
    EXPECT_EQ(-4, receive(id, 300).result);
    EXPECT_EQ((std::vector<int64_t>{300 * kNsPerMs, 200 * kNsPerMs, 100 * kNsPerMs}), given);
    given.clear();
    fill();
    EXPECT_EQ(-4, send(id, text("fifth"), 300));
    EXPECT_EQ((std::vector<int64_t>{300 * kNsPerMs, 200 * kNsPerMs, 100 * kNsPerMs}), given);
}

// The kernel's clock may be a hair behind.
TEST_F(Lmsg, WhatIsLeftOfTheTimeIsWaitedForToo)
{
    passTime();
    std::vector<int64_t> given;
    hooks::s_onWait = [&](int64_t givenNs) {
        given.push_back(givenNs);
        hooks::s_passedNs += givenNs > 1 ? givenNs - 1 : givenNs;
        return Wait::Over;
    };
    EXPECT_EQ(-4, receive(id, 300).result);
    EXPECT_EQ((std::vector<int64_t>{300 * kNsPerMs, 1}), given);
    given.clear();
    fill();
    EXPECT_EQ(-4, send(id, text("fifth"), 300));
    EXPECT_EQ((std::vector<int64_t>{300 * kNsPerMs, 1}), given);
}

// Where the attempt itself has taken of it.
TEST_F(Lmsg, WhatPassesWhileItTriesIsNotWaitedFor)
{
    fill();
    const struct {
        int64_t passedMs;
        std::vector<int64_t> givenMs;
    } attempts[] = {{0, {300}}, {100, {200}}, {299, {1}}, {300, {}}, {301, {}}};
    for (const auto& attempt : attempts) {
        passTime();
        std::vector<int64_t> givenMs;
        hooks::s_onWait = [&](int64_t givenNs) {
            givenMs.push_back(givenNs / kNsPerMs);
            hooks::s_passedNs += givenNs;
            return Wait::Over;
        };
        bool passed = false;
        hooks::s_onCall = [&](const char* call) {
            if (std::strcmp(call, "mq_send") == 0 && !std::exchange(passed, true))
                hooks::s_passedNs += attempt.passedMs * kNsPerMs;
            return 0;
        };
        EXPECT_EQ(-4, send(id, text("fifth"), 300));
        EXPECT_EQ(attempt.givenMs, givenMs) << attempt.passedMs;
    }
}

TEST_F(Lmsg, TriesOnceWhenTheTimeIsOver)
{
    passTime();
    int attempts = 0;
    hooks::s_onCall = [&](const char* call) {
        attempts += std::strcmp(call, "mq_send") == 0 || std::strcmp(call, "mq_receive") == 0;
        return 0;
    };
    EXPECT_EQ(-4, receive(id, 300).result);
    EXPECT_EQ(1, attempts);
    fill();
    attempts = 0;
    EXPECT_EQ(-4, send(id, text("fifth"), 300));
    EXPECT_EQ(2, attempts) << "before it waits, too";
}

std::atomic<int> s_alarms{0};

TEST_F(Lmsg, AStormOfSignalsChangesNothing)
{
    fill();
    struct sigaction before {};
    struct sigaction count {};
    count.sa_handler = [](int) { s_alarms++; };
    ASSERT_EQ(0, sigaction(SIGALRM, &count, &before)); // no SA_RESTART
    const itimerval storm{{0, 500}, {0, 500}};
    ASSERT_EQ(0, setitimer(ITIMER_REAL, &storm, nullptr));

    const auto start = std::chrono::steady_clock::now();
    const int32_t sent = send(id, text("fifth"), 250);
    const auto middle = std::chrono::steady_clock::now();
    const int32_t received = receive(id2, 250).result;
    const auto end = std::chrono::steady_clock::now();

    const itimerval calm{};
    setitimer(ITIMER_REAL, &calm, nullptr);
    sigaction(SIGALRM, &before, nullptr);
    EXPECT_EQ(-4, sent);
    EXPECT_EQ(-4, received);
    EXPECT_GT(s_alarms, 0);
    for (const auto taken : {middle - start, end - middle}) {
        EXPECT_GE(taken, std::chrono::milliseconds(250));
        EXPECT_LT(taken, std::chrono::seconds(5));
    }
}

// ---- waiting for the other side

TEST_F(Lmsg, SleepsWhileItWaits)
{
    fill();
    EXPECT_EQ(-4, send(id, text("fifth"), 50));
    EXPECT_LE(hooks::s_waits, 2); // the kernel's clock may be a hair behind
    hooks::s_waits = 0;
    EXPECT_EQ(-4, receive(id2, 50).result);
    EXPECT_LE(hooks::s_waits, 2);
}

TEST_F(Lmsg, FullQueueGoesOnWhenTheReceiverDrains)
{
    fill();
    std::binary_semaphore waiting{0};
    hooks::s_onWait = [&](int64_t) {
        if (hooks::s_waits == 1)
            waiting.release();
        return Wait::Event;
    };
    int32_t result = 1;
    std::thread sender([&] { result = send(id, text("fifth"), kLong); });
    waiting.acquire();
    EXPECT_EQ((Received{LMSG_OK, text("first")}), receive(id));
    sender.join();
    EXPECT_EQ(LMSG_OK, result);
    EXPECT_EQ(1, hooks::s_waits);
    for (const char* message : {"second", "third", "fourth", "fifth"})
        EXPECT_EQ((Received{LMSG_OK, text(message)}), receive(id));
}

TEST_F(Lmsg, EmptyQueueGoesOnWhenAMessageComes)
{
    std::binary_semaphore waiting{0};
    hooks::s_onWait = [&](int64_t) {
        if (hooks::s_waits == 1)
            waiting.release();
        return Wait::Event;
    };
    Received received{};
    std::thread receiver([&] { received = receive(id, kLong); });
    waiting.acquire();
    EXPECT_EQ(LMSG_OK, send(id, text("message")));
    receiver.join();
    EXPECT_EQ((Received{LMSG_OK, text("message")}), received);
    EXPECT_EQ(1, hooks::s_waits);
}

// ---- queues made anew

TEST_F(Lmsg, SenderFindsTheQueueMadeAnew)
{
    ASSERT_EQ(LMSG_OK, send(id, text("old")));
    const std::vector<int> kept = descriptorsOf(id);
    unlink();
    {
        const OtherSide other(id, O_CREAT | O_EXCL);
        ASSERT_EQ(LMSG_OK, send(id, text("new")));
        EXPECT_EQ(text("new"), other.receive());
        EXPECT_EQ(Bytes(), other.receive());
    }
    // Under the same number, and the old queue is gone.
    EXPECT_EQ(kept, descriptorsOf(id));
    EXPECT_EQ(FD_CLOEXEC, fcntl(kept[0], F_GETFD));
}

// Whose number may be 0, where a program has closed its standard input.
TEST_F(Lmsg, AQueueMadeAnewKeepsTheNumber0)
{
    EXPECT_EQ(0, inChild([&] {
                  close(0);
                  if (send(id, text("old")) != LMSG_OK || descriptorsOf(id) != std::vector<int>{0})
                      return 1;
                  mq_unlink(nameOf(id).c_str());
                  if (send(id, text("new")) != LMSG_OK || descriptorsOf(id) != std::vector<int>{0})
                      return 2;
                  return receive(id) == Received{LMSG_OK, text("new")} ? 0 : 3;
              }));
}

TEST_F(Lmsg, ReceiverFindsTheQueueMadeAnew)
{
    ASSERT_EQ(LMSG_OK, send(id, text("old")));
    unlink();
    const OtherSide other(id, O_CREAT | O_EXCL);
    ASSERT_TRUE(other.send(text("new")));
    EXPECT_EQ((Received{LMSG_OK, text("new")}), receive(id));
    EXPECT_EQ(-4, receive(id).result);
}

// What lies in the old one reaches nobody, also where a message is waited for.
TEST_F(Lmsg, ReceiverThatWaitsFindsTheQueueMadeAnewToo)
{
    ASSERT_EQ(LMSG_OK, send(id, text("old")));
    unlink();
    const OtherSide other(id, O_CREAT | O_EXCL);
    ASSERT_TRUE(other.send(text("new")));
    EXPECT_EQ((Received{LMSG_OK, text("new")}), receive(id, kLong));
    EXPECT_EQ(-4, receive(id, 20).result);
}

TEST_F(Lmsg, MakesAnUnlinkedQueueAnewItself)
{
    ASSERT_EQ(LMSG_OK, send(id, text("old")));
    unlink();
    ASSERT_EQ(LMSG_OK, send(id, text("new")));
    EXPECT_EQ(text("new"), OtherSide(id, 0).receive());
}

TEST_F(Lmsg, WaitingReceiverFindsTheQueueMadeAnew)
{
    passTime();
    hooks::s_onWait = [this](int64_t givenNs) {
        EXPECT_LE(givenNs, kSecondNs);
        if (hooks::s_waits == 1) {
            unlink();
            EXPECT_TRUE(OtherSide(id, O_CREAT | O_EXCL).send(text("new")));
        }
        hooks::s_passedNs += givenNs;
        return Wait::Over;
    };
    EXPECT_EQ((Received{LMSG_OK, text("new")}), receive(id, LMSG_FOREVER));
    EXPECT_EQ(1, hooks::s_waits);
}

TEST_F(Lmsg, WaitingSenderFindsTheQueueMadeAnew)
{
    fill();
    passTime();
    hooks::s_onWait = [this](int64_t givenNs) {
        EXPECT_LE(givenNs, kSecondNs);
        if (hooks::s_waits == 1) {
            unlink();
            EXPECT_TRUE(OtherSide(id, O_CREAT | O_EXCL).exists());
        }
        hooks::s_passedNs += givenNs;
        return Wait::Over;
    };
    EXPECT_EQ(LMSG_OK, send(id, text("fifth"), LMSG_FOREVER));
    EXPECT_EQ(1, hooks::s_waits);
    EXPECT_EQ(text("fifth"), OtherSide(id, 0).receive());
}

TEST_F(Lmsg, AThreadMeetsAQueueThatAnotherIsJustReplacing)
{
    ASSERT_EQ(LMSG_OK, send(id, text("old")));
    const std::vector<int> kept = descriptorsOf(id);
    unlink();
    // Between the new queue under the kept number and the note of it.
    hooks::s_afterDup3 = [this] { EXPECT_EQ(LMSG_OK, send(id, text("other thread"))); };
    ASSERT_EQ(LMSG_OK, send(id, text("this thread")));
    EXPECT_EQ(kept, descriptorsOf(id));
    EXPECT_EQ((Received{LMSG_OK, text("other thread")}), receive(id));
    EXPECT_EQ((Received{LMSG_OK, text("this thread")}), receive(id));
}

TEST_F(Lmsg, TakesAnotherNumberWhenTheKeptOneIsBeyondTheLimit)
{
    const int status = inChild([&] {
        if (send(id, text("old")) != LMSG_OK)
            return 1;
        const int kept = descriptorsOf(id).at(0);
        mq_unlink(nameOf(id).c_str());
        close(0);
        limit(RLIMIT_NOFILE, static_cast<rlim_t>(kept));
        if (send(id, text("new")) != LMSG_OK)
            return 2;
        return receive(id) == Received{LMSG_OK, text("new")} ? 0 : 3;
    });
    EXPECT_EQ(0, status);
}

TEST_F(Lmsg, SurvivesAProgramThatClosesEverything)
{
    ASSERT_EQ(LMSG_OK, send(id, text("one")));
    ASSERT_EQ(LMSG_OK, send(id2, text("two")));
    const int first = descriptorsOf(id).at(0);
    const int second = descriptorsOf(id2).at(0);
    close(first);
    close(second);
    // The first number is now a file that is none of ours; one without a name, as our old queues are.
    const int foreign = open("/tmp", O_TMPFILE | O_RDWR, 0600);
    ASSERT_EQ(std::min(first, second), foreign);
    EXPECT_EQ((Received{LMSG_OK, text("two")}), receive(id2));
    EXPECT_EQ((Received{LMSG_OK, text("one")}), receive(id));
    EXPECT_EQ(2, write(foreign, "ok", 2));
    close(foreign);
}

TEST_F(Lmsg, NeverTakesOneQueueForAnother)
{
    ASSERT_EQ(LMSG_OK, send(id, text("one")));
    ASSERT_EQ(LMSG_OK, send(id2, text("two")));
    const int first = descriptorsOf(id).at(0);
    const int second = descriptorsOf(id2).at(0);
    close(first);
    close(second);
    // Opened in the other order, the numbers change places.
    EXPECT_EQ((Received{LMSG_OK, text("two")}), receive(id2));
    EXPECT_EQ((Received{LMSG_OK, text("one")}), receive(id));
    EXPECT_EQ(first, descriptorsOf(id2).at(0));
}

// Nor when it waits for a message.
TEST_F(Lmsg, NeverWaitsAtOneQueueForAnother)
{
    ASSERT_EQ(LMSG_OK, send(id, text("one")));
    ASSERT_EQ(LMSG_OK, send(id2, text("two")));
    const int first = descriptorsOf(id).at(0);
    close(first);
    close(descriptorsOf(id2).at(0));
    ASSERT_EQ(LMSG_OK, send(id2, text("three")));
    ASSERT_EQ(first, descriptorsOf(id2).at(0));
    EXPECT_EQ((Received{LMSG_OK, text("one")}), receive(id, kLong));
    EXPECT_EQ((Received{LMSG_OK, text("two")}), receive(id2, kLong));
}

// Nor where the other one, opened for the first time, has taken the number.
TEST_F(Lmsg, NeverWaitsAtANewQueueForAnother)
{
    ASSERT_EQ(LMSG_OK, send(id, text("one")));
    const int kept = descriptorsOf(id).at(0);
    close(kept);
    ASSERT_EQ(LMSG_OK, send(id2, text("two")));
    ASSERT_EQ(kept, descriptorsOf(id2).at(0));
    ASSERT_EQ((Received{LMSG_OK, text("one")}), receive(id, kLong));
    EXPECT_EQ((Received{LMSG_OK, text("two")}), receive(id2, kLong));
}

TEST_F(Lmsg, WaitsAnewWhereItsNumberIsAnotherFile)
{
    ASSERT_EQ(LMSG_OK, send(id, text("one")));
    const int kept = descriptorsOf(id).at(0);
    close(kept);
    ASSERT_EQ(kept, open("/tmp", O_TMPFILE | O_RDWR, 0600));
    EXPECT_EQ((Received{LMSG_OK, text("one")}), receive(id, kLong));
    close(kept);
    EXPECT_EQ(-4, receive(id, 20).result);
}

// ---- threads and processes

TEST_F(Lmsg, ManyThreadsOpenOneQueueAtOnce)
{
    constexpr int kPairs = 8;
    constexpr uint32_t kMessages = 50;
    std::barrier start(2 * kPairs);
    std::atomic<int> failures{0};
    std::array<std::atomic<int>, kPairs * kMessages> seen{};
    std::vector<std::thread> threads;
    for (uint32_t sender = 0; sender < kPairs; sender++) {
        threads.emplace_back([&, sender] {
            start.arrive_and_wait();
            for (uint32_t i = 0; i < kMessages; i++) {
                const uint32_t number = sender * kMessages + i;
                if (lmsg_tsndMq(id, &number, sizeof number, kLong) != LMSG_OK)
                    failures++;
            }
        });
        threads.emplace_back([&] {
            start.arrive_and_wait();
            for (uint32_t i = 0; i < kMessages; i++) {
                uint8_t buffer[1300];
                uint32_t number = UINT32_MAX;
                uint32_t length = 0;
                if (lmsg_trcvMq(id, buffer, sizeof buffer, &length, kLong) == LMSG_OK &&
                    length == sizeof number)
                    std::memcpy(&number, buffer, sizeof number);
                if (number < seen.size())
                    seen[number]++;
                else
                    failures++;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(0, failures);
    for (size_t i = 0; i < seen.size(); i++)
        EXPECT_EQ(1, seen[i]) << "message " << i;
    EXPECT_EQ(1u, descriptorsOf(id).size());
}

TEST_F(Lmsg, ThreadsOutliveAQueueThatKeepsVanishing)
{
    constexpr int kThreads = 6;
    std::atomic<bool> done{false};
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    std::barrier start(kThreads + 1);
    for (int i = 0; i < kThreads; i++)
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            while (!done) {
                const int32_t result = i % 2 == 0 ? send(id, text("message")) : receive(id).result;
                if (result != LMSG_OK && result != LMSG_ERR_TIMEOUT)
                    failures++;
            }
        });
    start.arrive_and_wait();
    for (int i = 0; i < 2000; i++)
        mq_unlink(nameOf(id).c_str());
    done = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(0, failures);

    mq_unlink(nameOf(id).c_str());
    ASSERT_EQ(LMSG_OK, send(id, text("message")));
    EXPECT_EQ((Received{LMSG_OK, text("message")}), receive(id));
}

TEST_F(Lmsg, AChildUsesWhatItInherits)
{
    ASSERT_EQ(LMSG_OK, send(id, text("question")));
    ASSERT_EQ(-4, receive(id2).result);
    const int status = inChild([&] {
        hooks::s_openError = EIO;
        if (receive(id) != Received{LMSG_OK, text("question")})
            return 1;
        return send(id2, text("answer")) == LMSG_OK ? 0 : 2;
    });
    EXPECT_EQ(0, status);
    EXPECT_EQ((Received{LMSG_OK, text("answer")}), receive(id2));
}

TEST_F(Lmsg, AServiceThatCrashedAndCameBackGetsWhatWasSentMeanwhile)
{
    const pid_t service = fork();
    if (service == 0) {
        receive(id, kLong);
        raise(SIGKILL);
    }
    ASSERT_GT(service, 0);
    ASSERT_EQ(LMSG_OK, send(id, text("last words"), kLong));
    int crash = 0;
    ASSERT_EQ(service, waitpid(service, &crash, 0));
    ASSERT_TRUE(WIFSIGNALED(crash));

    ASSERT_EQ(LMSG_OK, send(id, text("anyone?")));
    EXPECT_EQ(0, inChild([&] { return receive(id) == Received{LMSG_OK, text("anyone?")} ? 0 : 1; }));
}

// ---- the heap

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

TEST_F(Lmsg, NeverAsksForMemory)
{
    passTime();
    uint8_t buffer[1300]{kFirstId};
    uint32_t length = 0;
    const std::string name = nameOf(id);
    const int64_t before = t_heapCalls;
    EXPECT_EQ(LMSG_OK, lmsg_tsndMq(id, buffer, 1300, 0));
    EXPECT_EQ(LMSG_OK, lmsg_trcvMq(id, buffer, 1300, &length, 0));
    EXPECT_EQ(-4, lmsg_trcvMq(id, buffer, 1300, &length, 2000));
    EXPECT_EQ(0, mq_unlink(name.c_str()));
    EXPECT_EQ(LMSG_OK, lmsg_tsndMq(id, buffer, 1300, 0));
    hooks::s_openError = EIO;
    EXPECT_EQ(-6, lmsg_tsndMq(id2, buffer, 1300, 0));
    EXPECT_EQ(before, t_heapCalls);

    void* volatile memory = malloc(1); // the count counts, both ways
    free(memory);
    EXPECT_EQ(before + 2, t_heapCalls);
}

#endif

} // namespace
