// A client of a meter that forks, ends threads and takes signals in the middle of everything, for forks.py:
//
//   forks_client SECONDS SEED
//
// Threads with an id each call operations that nothing disturbs: every call has to succeed and to bring its
// own answer. A signal interrupts them all the time, whose handler logs and forks now and then; so do the
// threads themselves, and the first one, while others are in the middle of a call. A child ends (at once, by
// exit(), by a signal), becomes another program, calls operations by an id of its own in the thread that it
// has and in a new one, or goes on with its parent's id beside it, which spoils the calls of both. A thread
// ends by returning or by pthread_exit(), or is cancelled in the middle of a call; another takes its id.
// Tells what is not as documented on standard error, and, in the end, how many calls, children and threads
// there were.
#include "libvx63.h"
#include "lmsg.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <pthread.h>
#include <random>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr uint8_t kShared = 5; // the id of two processes at once
constexpr uint32_t kPatienceMs = 50;

} // namespace

// Who shares an id waits for answers that the other one has taken.
extern "C" int32_t lmsg_trcvMq(uint8_t ucQueId, void* pMsg, uint32_t ulLen, uint32_t* pulMsgLen,
                               uint32_t ulTimeout)
{
    static auto* const receive = reinterpret_cast<decltype(&lmsg_trcvMq)>(dlsym(RTLD_NEXT, "lmsg_trcvMq"));
    return receive(ucQueId, pMsg, ulLen, pulMsgLen,
                   ucQueId == kShared ? std::min(ulTimeout, kPatienceMs) : ulTimeout);
}

namespace {

using Clock = std::chrono::steady_clock;
using Random = std::minstd_rand;

constexpr uint8_t kFill = 0xA5;
constexpr int kThreads = 4;                 // ids 1 to 4
constexpr uint8_t kOwn[] = {9, 11, 13, 14}; // of the children of each
constexpr int kFindings = 3;                // exit status of a child that found something

std::atomic<int> s_findings{0};
std::atomic<int> s_calls{0};
std::atomic<int> s_children{0};
std::atomic<int> s_ended{0};
std::atomic<bool> s_over{false};

[[gnu::format(printf, 1, 2)]] void finding(const char* format, ...)
{
    char text[400];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text, sizeof text - 1, format, arguments);
    va_end(arguments);
    const auto end = std::min<size_t>(static_cast<size_t>(length), sizeof text - 1);
    text[end] = '\n';
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, end + 1);
    ++s_findings;
}

// ---- calls ----

struct Operation {
    const char* name;
    size_t size;
    int32_t (*call)(void* record);
    bool (*isRight)(const void* record); // what only this operation's answer can be
};

const Operation kOperations[] = {
    {"vx63_getProductInfo", sizeof(ProductInfo),
     [](void* record) { return vx63_getProductInfo(static_cast<ProductInfo*>(record)); },
     [](const void* record) { return memcmp(record, "VX63", 4) == 0; }},
    {"vx63_getMeasStatus", sizeof(MeasStatus),
     [](void* record) { return vx63_getMeasStatus(static_cast<MeasStatus*>(record)); },
     [](const void* record) { return static_cast<const MeasStatus*>(record)->ulMeasStat == 0; }},
    {"vx63_getStandbyStat", sizeof(uint32_t),
     [](void* record) { return vx63_getStandbyStat(static_cast<uint32_t*>(record)); },
     [](const void* record) { return *static_cast<const uint32_t*>(record) == 0; }},
    {"vx63_getDeviceStatus", sizeof(DeviceStatus),
     [](void* record) { return vx63_getDeviceStatus(static_cast<DeviceStatus*>(record)); },
     [](const void*) { return true; }},
    {"vx63_getKeyStatus", sizeof(KeyStatus),
     [](void* record) { return vx63_getKeyStatus(static_cast<KeyStatus*>(record)); },
     [](const void* record) {
         const int32_t* const states = static_cast<const KeyStatus*>(record)->stat;
         return std::all_of(states, states + 17, [](int32_t state) { return state == 0 || state == 1; });
     }},
    {"vx63_forceBuzzerVolume", 0, [](void*) { return vx63_forceBuzzerVolume(1, 1); },
     [](const void*) { return true; }},
    {"vx63_readSetFileIdx", 4096, // sys_set/volume, which nobody changes
     [](void* record) -> int32_t {
         return std::min(vx63_readSetFileIdx(0, record, 0, nullptr, 0), VX63_OK + 0);
     },
     [](const void*) { return true; }},
};

// Whether it succeeded.
bool callOne(Random& random, bool undisturbed)
{
    const Operation& operation = kOperations[random() % std::size(kOperations)];
    alignas(8) uint8_t record[4096 + 64];
    memset(record, kFill, sizeof record);
    const int32_t result = operation.call(record);
    ++s_calls;
    const auto isUntouched = [&](size_t from) {
        return std::all_of(record + from, record + sizeof record, [](uint8_t byte) { return byte == kFill; });
    };
    if (result != VX63_OK && (undisturbed || result != VX63_ERR_COMM))
        finding("%s: %d in process %d", operation.name, result, getpid());
    if (!isUntouched(result == VX63_OK ? operation.size : 0))
        finding("%s: %d, and bytes that it must not write", operation.name, result);
    if (result == VX63_OK && undisturbed && !operation.isRight(record))
        finding("%s: not its own answer", operation.name);
    return result == VX63_OK;
}

void empty(uint8_t id)
{
    uint8_t message[LMSG_SIZE_MAX];
    while (lmsg_trcvMq(id, message, sizeof message, nullptr, 0) == LMSG_OK) {
    }
}

void callSome(uint8_t id, unsigned seed, int count, bool undisturbed)
{
    Random random(seed);
    vx63_init(id);
    for (int i = 0; i < count; ++i)
        callOne(random, undisturbed);
}

// ---- children ----

struct Task {
    std::function<void()> work;
};

void* doTask(void* task)
{
    static_cast<Task*>(task)->work();
    return nullptr;
}

// An id of a child's own: a thread forks one child at a time.
void beChild(int thread, unsigned seed)
{
    const uint8_t own = kOwn[thread];
    callSome(own, seed, 5, true);
    Task task{[&] { callSome(own, seed + 1, 5, true); }};
    pthread_t other;
    if (pthread_create(&other, nullptr, doTask, &task) != 0)
        return;
    pthread_join(other, nullptr);
}

void waitForChild(pid_t child, const char* what)
{
    int how = 0;
    pid_t waited;
    while ((waited = waitpid(child, &how, 0)) < 0 && errno == EINTR) {
    }
    const bool good = waited == child && ((WIFEXITED(how) && WEXITSTATUS(how) == 0) ||
                                          (WIFSIGNALED(how) && WTERMSIG(how) == SIGKILL));
    if (!good)
        finding("a child that %s: %d, status %04X", what, waited, how);
}

void calm()
{
    const itimerval none{};
    setitimer(ITIMER_REAL, &none, nullptr); // a child has none; a program that follows neither
}

void forkOne(Random& random, int thread)
{
    static constexpr const char* kWhat[] = {"ends at once", "exits", "dies", "becomes another program",
                                            "calls"};
    const unsigned what = static_cast<unsigned>(random() % std::size(kWhat));
    const unsigned seed = static_cast<unsigned>(random());
    ++s_children;
    const pid_t child = fork();
    if (child < 0)
        return finding("fork: %s", strerror(errno));
    if (child > 0)
        return waitForChild(child, kWhat[what]);
    s_findings = 0;
    switch (what) {
    case 0:
        _exit(0);
    case 1:
        std::exit(0);
    case 2:
        raise(SIGKILL);
        break;
    case 3: // whose descriptors are the three usual ones, and that of the folder it reads
        execl("/bin/sh", "sh", "-c", "ls /proc/self/fd | tr '\\n' ' ' | grep -qx '0 1 2 3 '",
              static_cast<char*>(nullptr));
        _exit(1);
    default:
        beChild(thread, seed);
        break;
    }
    _exit(s_findings != 0 ? kFindings : 0);
}

// A child that goes on with the id of the thread that forked it.
void shareAnId(Random& random)
{
    vx63_init(kShared);
    const unsigned seed = static_cast<unsigned>(random());
    ++s_children;
    const pid_t child = fork();
    if (child < 0)
        return finding("fork: %s", strerror(errno));
    Random own(seed + (child == 0));
    if (child == 0)
        s_findings = 0;
    for (int i = 0; i < 10; ++i)
        if (!callOne(own, false))
            empty(kShared); // a queue that is full holds up the service
    if (child == 0)
        _exit(s_findings != 0 ? kFindings : 0);
    waitForChild(child, "has the same id");
    empty(kShared);
}

// ---- signals ----

std::atomic<unsigned> s_signals{0};

void onAlarm(int)
{
    const int error = errno;
    vx63_init(18); // no such id: it logs, and nothing else
    if (++s_signals % 64 == 0) {
        const pid_t child = _Fork(); // in the middle of whatever; fork() must not be called in a handler
        if (child == 0) {
            vx63_init(18);
            _exit(0);
        }
        while (child > 0 && waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    errno = error;
}

// ---- threads ----

void work(int thread, unsigned seed)
{
    Random random(seed);
    vx63_init(1 + thread);
    const auto calls = static_cast<int>(random() % 50);
    for (int i = 0; i < calls && !s_over; ++i) {
        callOne(random, true);
        if (random() % 8 == 0)
            forkOne(random, thread);
    }
    ++s_ended;
    if (random() % 2 == 0)
        pthread_exit(nullptr);
}

// One thread after another with the same id.
void keepWorking(int thread, unsigned seed)
{
    for (Random random(seed); !s_over;) {
        const auto next = static_cast<unsigned>(random());
        Task task{[=] { work(thread, next); }};
        pthread_t worker;
        if (pthread_create(&worker, nullptr, doTask, &task) != 0)
            return finding("pthread_create");
        pthread_join(worker, nullptr);
    }
}

} // namespace

int main(int, char** arguments)
{
    const auto end = Clock::now() + std::chrono::milliseconds(std::lround(1000 * std::atof(arguments[1])));
    const auto seed = static_cast<unsigned>(std::atoi(arguments[2]));

    struct sigaction action {};
    action.sa_handler = onAlarm;
    action.sa_flags = SA_RESTART;
    sigaction(SIGALRM, &action, nullptr);
    const itimerval storm{{0, 500}, {0, 500}};
    setitimer(ITIMER_REAL, &storm, nullptr);

    std::vector<Task> tasks;
    for (int i = 0; i < kThreads; ++i)
        tasks.push_back({[=] { keepWorking(i, seed + 1000 * static_cast<unsigned>(i)); }});
    std::vector<pthread_t> threads(tasks.size());
    for (size_t i = 0; i < tasks.size(); ++i)
        pthread_create(&threads[i], nullptr, doTask, &tasks[i]);

    Random random(seed);
    do
        shareAnId(random);
    while (Clock::now() < end);
    s_over = true;
    for (const pthread_t thread : threads)
        pthread_join(thread, nullptr);
    calm();
    std::printf("%d calls, %d children, %d threads, %u signals\n", s_calls.load(), s_children.load(),
                s_ended.load(), s_signals.load());
    return s_findings != 0;
}
