#include "common/program.h"

#include "common/failure.h"
#include "common/interrupt.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tool {

namespace {

constexpr std::chrono::milliseconds kLook{100}; // for a signal
constexpr int kNotFound = 127; // how the end of a program that was not there can look, by posix_spawn()
constexpr int kAlive = 9;      // of the program: open as long as it runs

[[noreturn]] void fail(const std::string& program, int error)
{
    throw Failure(kExitInternal, "cannot run " + program, std::strerror(error), "end other programs");
}

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor() { close(m_fd); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return m_fd; }

private:
    int m_fd;
};

// A file without a name: neither side waits for the other.
class Memory : public Descriptor {
public:
    explicit Memory(const std::string& program) : Descriptor(memfd_create("vx63", MFD_CLOEXEC))
    {
        if (number() < 0)
            fail(program, errno);
    }

    bool hold(std::string_view bytes) const
    {
        for (ssize_t wrote = 0; !bytes.empty(); bytes.remove_prefix(static_cast<size_t>(wrote)))
            if ((wrote = write(number(), bytes.data(), bytes.size())) < 0)
                return false;
        return lseek(number(), 0, SEEK_SET) == 0;
    }

    std::string contents() const
    {
        std::string bytes(static_cast<size_t>(std::max<off_t>(lseek(number(), 0, SEEK_END), 0)), '\0');
        lseek(number(), 0, SEEK_SET);
        size_t size = 0;
        for (ssize_t got = 1; got > 0 && size < bytes.size(); size += static_cast<size_t>(got))
            if ((got = read(number(), bytes.data() + size, bytes.size() - size)) < 0)
                break;
        bytes.resize(size);
        return bytes;
    }
};

// 0, or the error; the program gets its signals back.
int start(const std::vector<std::string>& words, const int (&descriptors)[4], pid_t& child)
{
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    const int places[4] = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO, kAlive};
    for (size_t i = 0; i < 4; ++i)
        posix_spawn_file_actions_adddup2(&files, descriptors[i], places[i]);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &pipe);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    const int error = posix_spawnp(&child, arguments[0], &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

} // namespace

std::optional<Ended> runProgram(const std::vector<std::string>& words, std::string_view input,
                                std::chrono::milliseconds timeout)
{
    const Memory in(words[0]);
    const Memory out(words[0]);
    const Memory err(words[0]);
    int alive[2];
    if (!in.hold(input) || pipe2(alive, O_CLOEXEC) != 0)
        fail(words[0], errno);
    const Descriptor end(alive[0]);
    pid_t child = 0;
    const int error = start(words, {in.number(), out.number(), err.number(), alive[1]}, child);
    close(alive[1]); // now the program alone has it: its end is that of the pipe
    if (error == ENOENT || error == EACCES || error == ENOTDIR)
        return std::nullopt;
    if (error != 0)
        fail(words[0], error);
    Ended ended;
    const int before = interruption();
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (pollfd wait{end.number(), POLLIN, 0}; poll(&wait, 1, 0) <= 0;) {
        const auto now = std::chrono::steady_clock::now();
        ended.timedOut = now >= deadline;
        ended.interrupted = interruption() != before;
        if (ended.timedOut || ended.interrupted)
            break;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - now);
        poll(&wait, 1, static_cast<int>(std::min<int64_t>(left.count(), kLook.count())));
    }
    if (ended.timedOut || ended.interrupted)
        kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    ended.exitCode = WIFSIGNALED(status) ? kExitSignal + WTERMSIG(status) : WEXITSTATUS(status);
    if (ended.exitCode == kNotFound)
        return std::nullopt;
    ended.output = out.contents();
    ended.errors = err.contents();
    return ended;
}

} // namespace tool
