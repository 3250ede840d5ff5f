// log_writers FOLDER PROCESSES THREADS CALLS SEED: logs as fast as it can, in threads of many processes at
// once.
//
// Each call has a number of its own, which its lines tell. Whenever a log is emptied, what it had goes to
// FOLDER/LOG.N, from N = 0, and what it has at the end to the last of these. So that this is exact, nobody
// writes while somebody empties; all else is as it comes.
#include "libvx63.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <random>
#include <string>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kFirst = 18;        // the least number that is no process id
constexpr size_t kLongest = 5000; // name
constexpr const char* kLogs[] = {"/var/log/libvx63.cpp.txt", "/var/log/libvx63_key.txt"};

std::string s_folder;

struct Shared { // by all processes
    pthread_rwlock_t writing;
    std::atomic<int> emptied;
};
Shared* s_shared = nullptr;

[[noreturn]] void fail(const char* what)
{
    perror(what);
    _exit(1);
}

void keep(const char* log)
{
    const int from = open(log, O_RDONLY | O_CLOEXEC);
    struct stat status;
    if (from < 0 || fstat(from, &status) != 0)
        fail(log);
    char name[64]; // behind a link in /proc stands the path
    const ssize_t length = readlink(("/proc/self/fd/" + std::to_string(from)).c_str(), name, sizeof name);
    const std::string path(name, static_cast<size_t>(length));
    const std::string kept =
        s_folder + path.substr(path.rfind('/')) + "." + std::to_string(s_shared->emptied++);
    const int to = open(kept.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    for (off_t at = 0; at < status.st_size;)
        if (sendfile(to, from, &at, static_cast<size_t>(status.st_size - at)) <= 0)
            fail(kept.c_str());
    close(to);
    close(from);
}

template <class Function, class... Arguments>
auto real(const char* name, Function*, Arguments... arguments)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name))(arguments...);
}

} // namespace

// Between the library and the kernel.
extern "C" {

ssize_t write(int fd, const void* bytes, size_t count)
{
    pthread_rwlock_rdlock(&s_shared->writing);
    const ssize_t result = real("write", write, fd, bytes, count);
    pthread_rwlock_unlock(&s_shared->writing);
    return result;
}

ssize_t writev(int fd, const iovec* pieces, int count)
{
    pthread_rwlock_rdlock(&s_shared->writing);
    const ssize_t result = real("writev", writev, fd, pieces, count);
    pthread_rwlock_unlock(&s_shared->writing);
    return result;
}

int ftruncate64(int fd, off64_t length) noexcept
{
    pthread_rwlock_wrlock(&s_shared->writing);
    keep(("/proc/self/fd/" + std::to_string(fd)).c_str());
    const int result = real("ftruncate64", ftruncate64, fd, length);
    pthread_rwlock_unlock(&s_shared->writing);
    return result;
}

int ftruncate(int fd, off_t length) noexcept
{
    return ftruncate64(fd, length);
}

int flock(int fd, int operation) noexcept
{
    return real("flock", flock, fd, operation & ~LOCK_NB);
}

// No meter.
int32_t lmsg_tsndMq(uint8_t, const void*, uint32_t, uint32_t)
{
    return -1;
}

int32_t lmsg_trcvMq(uint8_t, void*, uint32_t, uint32_t*, uint32_t)
{
    return -1;
}
}

namespace {

void callMany(int first, int calls, unsigned seed)
{
    std::mt19937 random(seed);
    const std::string letters(kLongest, 'n');
    uint8_t records[20000];
    for (int number = first; number < first + calls; ++number) {
        switch (random() % 3) {
        case 0:
            vx63_init(number);
            break;
        case 1: // a default needs no file, and its name is logged only
            vx63_readSetFile(0, records, letters.c_str() + random() % kLongest,
                             static_cast<uint32_t>(number));
            break;
        case 2: {
            KeyStatus status;
            for (int32_t& stat : status.stat)
                stat = number;
            vx63_getKeyStatus(&status);
        }
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 6)
        return 64;
    s_folder = argv[1];
    const int processes = std::atoi(argv[2]);
    const int threads = std::atoi(argv[3]);
    const int calls = std::atoi(argv[4]);
    const auto seed = static_cast<unsigned>(std::atoi(argv[5]));
    void* const memory =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        fail("memory");
    s_shared = new (memory) Shared{};
    pthread_rwlockattr_t attributes;
    pthread_rwlockattr_init(&attributes);
    pthread_rwlockattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_rwlock_init(&s_shared->writing, &attributes);

    for (int process = 0; process < processes; ++process)
        if (fork() == 0) {
            std::vector<std::thread> running;
            for (int i = 0; i < threads; ++i) {
                const int place = process * threads + i;
                running.emplace_back(callMany, kFirst + place * calls, calls,
                                     seed + static_cast<unsigned>(place));
            }
            for (std::thread& thread : running)
                thread.join();
            _exit(0);
        }
    int status = 0;
    int failed = 0;
    while (wait(&status) > 0)
        failed += status != 0;
    for (const char* const log : kLogs)
        keep(log);
    return failed != 0;
}
