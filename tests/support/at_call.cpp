// Does something at a system call that can be named to one process of a tree:
//
//   at_call [--loaded] [--marked] [--only CALL] [-o FILE] MODE COMMAND [ARG...]
//
// runs COMMAND and follows all that descends from it. MODE is one of
//
//   first N       kills COMMAND when the tree has entered or left the kernel N times in all, and
//                 not later than one of it becomes `sleep`
//   kill N        kills the process that does so the N-th time
//   fail N ERROR  the N-th call of the tree is not made and fails with that error (ENOSPC);
//                 close() is made, as in Linux
//   interrupt N   fail N EINTR
//   calls         does nothing: tells all calls
//   writes        does nothing: tells what was done to files, in its order (struct Write)
//
// With --loaded a program's calls count from its own first instruction on: the loader's do not. With --marked
// those of COMMAND itself count only between getpgid(-63) and the next one, with --only those calls alone
// that fail or are told. It waits until none of the tree is left and tells, in FILE or on standard output,
//
//   {"count": C, "status": S, "killed": "NAME", "failed": "CALL", "of": "NAME", "path": "PATH",
//    "left": ["NAME", ...],
//    "calls": [["NAME", "CALL"], ...], "writes": [{"what": ...}, ...]}
//
// with C how often there was something to count until then, S the exit status of COMMAND or 128 and its
// signal. What lives on after half a minute without a step, or 50 s in all, is `left`, and killed. 77: not on
// this processor.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <sched.h>
#include <string>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#ifdef __x86_64__

namespace {

constexpr unsigned kPatienceSeconds = 30;
constexpr std::chrono::seconds kLongest{50}; // less than HANG in at_call.py
constexpr long kBreakpoint = 0xCC;
constexpr auto kHere = static_cast<unsigned long long>(AT_FDCWD);
constexpr auto kMark = static_cast<unsigned long long>(-63L);

enum class Mode { first, kill, fail, calls, writes };

struct Order {
    Mode mode = Mode::calls;
    long at = 0;
    int error = 0;
    bool loaded = false;
    bool marked = false;
    std::string only;
    std::string report;
};

constexpr std::pair<const char*, int> kErrors[] = {
    {"EIO", EIO},       {"ENOSPC", ENOSPC}, {"EDQUOT", EDQUOT}, {"EROFS", EROFS},
    {"EACCES", EACCES}, {"EINTR", EINTR},   {"ENFILE", ENFILE}, {"EMFILE", EMFILE},
    {"ENOMEM", ENOMEM}, {"EAGAIN", EAGAIN}, {"ENOSYS", ENOSYS},
};

constexpr int kNoPath = -1;

struct Call {
    long number;
    const char* name;
    int path; // which argument it is
};

#define CALL(name, path)                                                                                     \
    {                                                                                                        \
        SYS_##name, #name, path                                                                              \
    }
// Those that can fail for want of something, or by a fault of what is behind them.
constexpr Call kCalls[] = {
    CALL(open, 0),
    CALL(openat, 1),
    CALL(read, kNoPath),
    CALL(pread64, kNoPath),
    CALL(write, kNoPath),
    CALL(writev, kNoPath),
    CALL(pwrite64, kNoPath),
    CALL(close, kNoPath),
    CALL(fsync, kNoPath),
    CALL(fdatasync, kNoPath),
    CALL(rename, 0),
    CALL(renameat, 1),
    CALL(renameat2, 1),
    CALL(unlink, 0),
    CALL(unlinkat, 1),
    CALL(rmdir, 0),
    CALL(mkdir, 0),
    CALL(mkdirat, 1),
    CALL(symlink, 1),
    CALL(link, 1),
    CALL(stat, 0),
    CALL(lstat, 0),
    CALL(fstat, kNoPath),
    CALL(newfstatat, 1),
    CALL(statx, 1),
    CALL(statfs, 0),
    CALL(fstatfs, kNoPath),
    CALL(access, 0),
    CALL(faccessat, 1),
    CALL(faccessat2, 1),
    CALL(readlink, 0),
    CALL(readlinkat, 1),
    CALL(chmod, 0),
    CALL(fchmod, kNoPath),
    CALL(fchmodat, 1),
    CALL(fchown, kNoPath),
    CALL(fchownat, 1),
    CALL(ftruncate, kNoPath),
    CALL(getdents64, kNoPath),
    CALL(flock, kNoPath),
    CALL(fcntl, kNoPath),
    CALL(dup, kNoPath),
    CALL(dup2, kNoPath),
    CALL(dup3, kNoPath),
    CALL(pipe2, kNoPath),
    CALL(memfd_create, 0),
    CALL(mmap, kNoPath),
    CALL(mprotect, kNoPath),
    CALL(clone, kNoPath),
    CALL(clone3, kNoPath),
    CALL(fork, kNoPath),
    CALL(vfork, kNoPath),
    CALL(execve, 0),
    CALL(wait4, kNoPath),
    CALL(waitid, kNoPath),
    CALL(poll, kNoPath),
    CALL(ppoll, kNoPath),
    CALL(pselect6, kNoPath),
    CALL(nanosleep, kNoPath),
    CALL(clock_nanosleep, kNoPath),
    CALL(mq_open, 0),
    CALL(mq_unlink, 0),
    CALL(mq_timedsend, kNoPath),
    CALL(mq_timedreceive, kNoPath),
    CALL(socket, kNoPath),
    CALL(bind, kNoPath),
    CALL(connect, kNoPath),
    CALL(listen, kNoPath),
    CALL(accept4, kNoPath),
    CALL(sendto, kNoPath),
    CALL(recvfrom, kNoPath),
    CALL(sendmsg, kNoPath),
    CALL(recvmsg, kNoPath),
    CALL(signalfd4, kNoPath),
    CALL(pidfd_open, kNoPath),
    CALL(eventfd2, kNoPath),
    CALL(timerfd_create, kNoPath),
    CALL(getrandom, kNoPath),
    CALL(ioctl, kNoPath),
    CALL(lseek, kNoPath),
    CALL(sendfile, kNoPath),
    CALL(copy_file_range, kNoPath),
    CALL(chdir, 0),
    CALL(getcwd, kNoPath),
    CALL(setsid, kNoPath),
    CALL(prctl, kNoPath),
};
#undef CALL

const Call* callOf(unsigned long long number)
{
    for (const Call& call : kCalls)
        if (static_cast<unsigned long long>(call.number) == number)
            return &call;
    return nullptr;
}

// Something that was done to a file or folder, which outlives a loss of power or not.
struct Write {
    const char* what; // open, write, truncate, rename, link, unlink, mkdir, fsync, sync
    std::string path;
    std::string to;          // rename, link
    unsigned long inode = 0; // open, write, truncate, fsync
    long at = 0;             // write: where; truncate: the size
    std::string bytes = {};  // write
    bool cut = false;        // open: O_TRUNC
};

std::string nameOf(pid_t pid)
{
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(pid) + "/comm"), name);
    return name;
}

// As a string of JSON.
std::string quoted(const std::string& text)
{
    std::string all = "\"";
    for (const char c : text) {
        char escaped[8];
        const auto byte = static_cast<unsigned char>(c);
        std::snprintf(escaped, sizeof escaped,
                      byte < ' ' || byte >= 0x7F || c == '"' || c == '\\' ? "\\u%04x" : "%c", byte);
        all += escaped;
    }
    return all + "\"";
}

class Tree {
public:
    explicit Tree(const Order& order) : m_order(order) {}

    // Gives whether all have ended.
    bool follow(pid_t first)
    {
        m_first = first;
        m_processes[first].counts = !m_order.loaded && !m_order.marked;
        const auto end = std::chrono::steady_clock::now() + kLongest;
        while (std::chrono::steady_clock::now() < end) {
            int how = 0;
            alarm(kPatienceSeconds);
            const pid_t pid = waitpid(-1, &how, __WALL);
            if (pid < 0)
                return errno == ECHILD;
            if (WIFSTOPPED(how)) {
                goOn(pid, how);
                continue;
            }
            m_processes.erase(pid);
            if (pid == m_first)
                m_status = WIFSIGNALED(how) ? 128 + WTERMSIG(how) : WEXITSTATUS(how);
        }
        return false;
    }

    void tell(FILE* out) const
    {
        std::fprintf(
            out,
            "{\"count\": %ld, \"status\": %d, \"killed\": %s, \"failed\": %s, \"of\": %s, \"path\": %s, ",
            m_count, m_status, quoted(m_killed).c_str(), quoted(m_failed).c_str(), quoted(m_of).c_str(),
            quoted(m_path).c_str());
        std::fputs("\"left\": [", out);
        const char* between = "";
        for (const auto& [pid, process] : m_processes) {
            std::fprintf(out, "%s%s", between, quoted(nameOf(pid)).c_str());
            between = ", ";
        }
        std::fputs("], \"calls\": [", out);
        between = "";
        for (const auto& [name, call] : m_calls) {
            std::fprintf(out, "%s[%s, \"%s\"]", between, quoted(name).c_str(), call);
            between = ", ";
        }
        std::fputs("], \"writes\": [", out);
        between = "";
        for (const Write& write : m_writes) {
            std::fprintf(out,
                         "%s{\"what\": \"%s\", \"path\": %s, \"to\": %s, \"inode\": %lu, \"at\": %ld, "
                         "\"cut\": %s, \"bytes\": %s}",
                         between, write.what, quoted(write.path).c_str(), quoted(write.to).c_str(),
                         write.inode, write.at, write.cut ? "true" : "false", quoted(write.bytes).c_str());
            between = ", ";
        }
        std::fputs("]}\n", out);
    }

private:
    struct Process {
        bool counts = true; // what is forked is past the loader
        unsigned long entry = 0;
        long instructions = 0; // behind the breakpoint at the entry
        bool fails = false;    // the call in which it is
        unsigned long long number = 0;
        unsigned long long arguments[6] = {};
    };

    void goOn(pid_t pid, int how)
    {
        int deliver = 0;
        Process& process = m_processes[pid];
        if (WSTOPSIG(how) == (SIGTRAP | 0x80)) {
            inKernel(pid, process);
        } else if (how >> 16 == PTRACE_EVENT_EXEC) {
            if (m_order.mode == Mode::first && m_killed.empty() && nameOf(pid) == "sleep")
                kill(m_first);
            if (m_order.loaded)
                stopAtEntry(pid, process);
        } else if (how >> 16 == 0 && !(WSTOPSIG(how) == SIGTRAP && atEntry(pid, process))) {
            deliver = WSTOPSIG(how);
        }
        ptrace(isDone() ? PTRACE_CONT : PTRACE_SYSCALL, pid, nullptr, deliver);
    }

    // No call matters any more: what was to be done has been done, or nothing is to be.
    bool isDone() const
    {
        return m_order.mode == Mode::fail ? m_order.at == 0 || m_hasFailed : !m_killed.empty();
    }

    void stopAtEntry(pid_t pid, Process& process)
    {
        process.counts = false;
        std::ifstream vector("/proc/" + std::to_string(pid) + "/auxv", std::ios::binary);
        for (unsigned long entry[2]; vector.read(reinterpret_cast<char*>(entry), sizeof entry);)
            if (entry[0] == 9) // AT_ENTRY
                process.entry = entry[1];
        process.instructions = ptrace(PTRACE_PEEKTEXT, pid, process.entry, nullptr);
        ptrace(PTRACE_POKETEXT, pid, process.entry, (process.instructions & ~0xFFL) | kBreakpoint);
    }

    bool atEntry(pid_t pid, Process& process)
    {
        user_regs_struct registers{};
        ptrace(PTRACE_GETREGS, pid, nullptr, &registers);
        if (process.counts || registers.rip != process.entry + 1)
            return false;
        ptrace(PTRACE_POKETEXT, pid, process.entry, process.instructions);
        registers.rip = process.entry;
        ptrace(PTRACE_SETREGS, pid, nullptr, &registers);
        process.counts = !m_order.marked || pid != m_first;
        return true;
    }

    // Entered or left.
    void inKernel(pid_t pid, Process& process)
    {
        if (isDone())
            return;
        __ptrace_syscall_info info{};
        if (m_order.marked) {
            ptrace(PTRACE_GET_SYSCALL_INFO, pid, sizeof info, &info);
            if (info.op == PTRACE_SYSCALL_INFO_ENTRY && info.entry.nr == SYS_getpgid &&
                info.entry.args[0] == kMark)
                process.counts = !process.counts;
        }
        if (!process.counts)
            return;
        if (m_order.mode == Mode::first || m_order.mode == Mode::kill) {
            if (++m_count == m_order.at)
                kill(m_order.mode == Mode::first ? m_first : pid);
            return;
        }
        ptrace(PTRACE_GET_SYSCALL_INFO, pid, sizeof info, &info);
        if (m_order.mode == Mode::writes) {
            if (info.op == PTRACE_SYSCALL_INFO_ENTRY) {
                process.number = info.entry.nr;
                std::copy_n(info.entry.args, 6, process.arguments);
            } else if (info.op == PTRACE_SYSCALL_INFO_EXIT && !info.exit.is_error) {
                note(pid, process, info.exit.rval);
            }
            return;
        }
        if (info.op == PTRACE_SYSCALL_INFO_ENTRY)
            enter(pid, process, info);
        else if (info.op == PTRACE_SYSCALL_INFO_EXIT && std::exchange(process.fails, false)) {
            change(pid, &user_regs_struct::rax, static_cast<unsigned long long>(-m_order.error));
            m_hasFailed = true;
        }
    }

    void enter(pid_t pid, Process& process, const __ptrace_syscall_info& info)
    {
        const Call* const call = callOf(info.entry.nr);
        if (call == nullptr || (!m_order.only.empty() && m_order.only != call->name))
            return;
        if (call->number == SYS_wait4 && (info.entry.args[2] & WNOHANG) != 0)
            return; // it does not wait, so that nothing interrupts it
        ++m_count;
        if (m_order.mode == Mode::calls)
            m_calls.emplace_back(nameOf(pid), call->name);
        else if (m_count == m_order.at) {
            m_failed = call->name;
            m_of = nameOf(pid);
            if (call->path != kNoPath)
                m_path = textAt(pid, info.entry.args[call->path]);
            process.fails = true;
            if (call->number != SYS_close)
                change(pid, &user_regs_struct::orig_rax, ~0ULL);
        }
    }

    // A call that has done something to a file.
    void note(pid_t pid, const Process& process, long result)
    {
        const auto& given = process.arguments;
        const auto path = [&](size_t folder, size_t name) { return pathAt(pid, given[folder], given[name]); };
        const auto here = [&](size_t name) { return pathAt(pid, kHere, given[name]); };
        switch (process.number) {
        case SYS_open:
            return noteOpen(pid, given[1], result);
        case SYS_openat:
            return noteOpen(pid, given[2], result);
        case SYS_creat:
            return noteOpen(pid, O_CREAT | O_TRUNC, result);
        case SYS_write:
        case SYS_writev:
            return noteWrite(pid, given[0], positionOf(pid, given[0]) - result, result);
        case SYS_pwrite64:
            return noteWrite(pid, given[0], static_cast<long>(given[3]), result);
        case SYS_sendfile:
            return noteWrite(pid, given[0], positionOf(pid, given[0]) - result, result);
        case SYS_copy_file_range:
            return noteWrite(pid, given[2], positionOf(pid, given[2]) - result, result);
        case SYS_ftruncate:
            return noteOpened("truncate", pid, given[0], static_cast<long>(given[1]));
        case SYS_rename:
            return m_writes.push_back({"rename", here(0), here(1)});
        case SYS_renameat:
        case SYS_renameat2:
            return m_writes.push_back({"rename", path(0, 1), path(2, 3)});
        case SYS_link:
            return m_writes.push_back({"link", here(0), here(1)});
        case SYS_linkat:
            return m_writes.push_back({"link", path(0, 1), path(2, 3)});
        case SYS_unlink:
        case SYS_rmdir:
            return m_writes.push_back({"unlink", here(0), ""});
        case SYS_unlinkat:
            return m_writes.push_back({"unlink", path(0, 1), ""});
        case SYS_mkdir:
            return m_writes.push_back({"mkdir", here(0), ""});
        case SYS_mkdirat:
            return m_writes.push_back({"mkdir", path(0, 1), ""});
        case SYS_fsync:
        case SYS_fdatasync:
            return noteOpened("fsync", pid, given[0], 0);
        case SYS_sync:
        case SYS_syncfs:
            return m_writes.push_back({"sync", "", ""});
        default:
            return;
        }
    }

    void noteOpen(pid_t pid, unsigned long long flags, long file)
    {
        if ((flags & (O_CREAT | O_TRUNC)) == 0)
            return;
        noteOpened("open", pid, static_cast<unsigned long long>(file), 0);
        m_writes.back().cut = (flags & O_TRUNC) != 0;
    }

    void noteOpened(const char* what, pid_t pid, unsigned long long file, long at)
    {
        m_writes.push_back({what, target(fileOf(pid, file)), "", inodeOf(fileOf(pid, file)), at});
    }

    // What is in the file now is what was written.
    void noteWrite(pid_t pid, unsigned long long file, long at, long count)
    {
        struct stat status {};
        const std::string name = fileOf(pid, file);
        if (stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
            return;
        noteOpened("write", pid, file, at);
        std::string& bytes = m_writes.back().bytes;
        bytes.resize(static_cast<size_t>(count));
        std::ifstream in(name, std::ios::binary);
        in.seekg(at);
        in.read(bytes.data(), count);
    }

    static std::string fileOf(pid_t pid, unsigned long long file)
    {
        return "/proc/" + std::to_string(pid) + "/fd/" + std::to_string(static_cast<int>(file));
    }

    static unsigned long inodeOf(const std::string& name)
    {
        struct stat status {};
        stat(name.c_str(), &status);
        return status.st_ino;
    }

    static std::string target(const std::string& link)
    {
        char text[4096];
        const ssize_t size = readlink(link.c_str(), text, sizeof text);
        return {text, size > 0 ? static_cast<size_t>(size) : 0};
    }

    static long positionOf(pid_t pid, unsigned long long file)
    {
        std::ifstream in("/proc/" + std::to_string(pid) + "/fdinfo/" +
                         std::to_string(static_cast<int>(file)));
        std::string word;
        long position = 0;
        in >> word >> position;
        return position;
    }

    static std::string pathAt(pid_t pid, unsigned long long folder, unsigned long long address)
    {
        std::string path = textAt(pid, address);
        if (path.starts_with('/'))
            return path;
        return target(static_cast<int>(folder) == AT_FDCWD ? "/proc/" + std::to_string(pid) + "/cwd"
                                                           : fileOf(pid, folder)) +
               "/" + path;
    }

    static void change(pid_t pid, unsigned long long user_regs_struct::*which, unsigned long long value)
    {
        user_regs_struct registers{};
        ptrace(PTRACE_GETREGS, pid, nullptr, &registers);
        registers.*which = value;
        ptrace(PTRACE_SETREGS, pid, nullptr, &registers);
    }

    static std::string textAt(pid_t pid, unsigned long long address)
    {
        std::ifstream memory("/proc/" + std::to_string(pid) + "/mem", std::ios::binary);
        memory.seekg(static_cast<std::streamoff>(address));
        std::string text;
        std::getline(memory, text, '\0');
        return text.substr(0, 200);
    }

    void kill(pid_t victim)
    {
        m_killed = nameOf(victim);
        ::kill(victim, SIGKILL);
    }

    const Order& m_order;
    pid_t m_first = -1;
    int m_status = -1;
    long m_count = 0;
    bool m_hasFailed = false;
    std::string m_killed, m_failed, m_of, m_path;
    std::vector<std::pair<std::string, const char*>> m_calls;
    std::vector<Write> m_writes;
    std::map<pid_t, Process> m_processes;
};

// Gives the words of the command; none where the words in front of it are wrong.
char** readOrder(char** words, Order& order)
{
    for (; *words != nullptr && **words == '-'; ++words) {
        if (std::strcmp(*words, "--loaded") == 0)
            order.loaded = true;
        else if (std::strcmp(*words, "--marked") == 0)
            order.marked = true;
        else if (std::strcmp(*words, "--only") == 0 && words[1] != nullptr)
            order.only = *++words;
        else if (std::strcmp(*words, "-o") == 0 && words[1] != nullptr)
            order.report = *++words;
        else
            return nullptr;
    }
    const std::string mode = *words != nullptr ? *words++ : "";
    if (mode == "writes")
        order.mode = Mode::writes;
    if (mode == "writes" || mode == "calls")
        return words;
    order.mode = mode == "first" ? Mode::first : mode == "kill" ? Mode::kill : Mode::fail;
    if (*words == nullptr || (order.mode == Mode::fail && mode != "fail" && mode != "interrupt"))
        return nullptr;
    order.at = std::atol(*words++);
    if (order.mode != Mode::fail)
        return words;
    const std::string error = mode == "interrupt" ? "EINTR" : *words != nullptr ? *words++ : "";
    for (const auto& [name, number] : kErrors)
        if (error == name)
            order.error = number;
    return order.error != 0 ? words : nullptr;
}

} // namespace

int main(int, char** argv)
{
    Order order;
    char** const command = readOrder(argv + 1, order);
    if (command == nullptr || *command == nullptr) {
        std::fputs("usage: at_call [--loaded] [--marked] [--only CALL] [-o FILE] first N|kill N|fail N ERROR|"
                   "interrupt N|calls|writes "
                   "COMMAND [ARG...]\n",
                   stderr);
        return 64;
    }
    // To take turns on one processor costs half of what it costs on two.
    cpu_set_t here;
    CPU_ZERO(&here);
    CPU_SET(static_cast<size_t>(sched_getcpu()), &here);
    sched_setaffinity(0, sizeof here, &here);
    // Whoever loses its parent comes to us.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    struct sigaction wakeUp {};
    wakeUp.sa_handler = [](int) {};
    sigaction(SIGALRM, &wakeUp, nullptr); // no SA_RESTART
    int begin[2];
    if (pipe(begin) != 0)
        return 1;
    const pid_t first = fork();
    char byte = 0;
    if (first == 0) {
        if (read(begin[0], &byte, 1) != 1)
            _exit(1);
        close(begin[0]);
        close(begin[1]);
        execvp(*command, command);
        _exit(127);
    }
    constexpr long kFollow = PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK |
                             PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC;
    if (ptrace(PTRACE_SEIZE, first, nullptr, kFollow) != 0 ||
        ptrace(PTRACE_INTERRUPT, first, nullptr, nullptr) != 0 || write(begin[1], &byte, 1) != 1) {
        std::perror("at_call");
        kill(first, SIGKILL);
        return 1;
    }
    close(begin[0]);
    close(begin[1]);
    Tree tree(order);
    tree.follow(first);
    FILE* const out = order.report.empty() ? stdout : std::fopen(order.report.c_str(), "w");
    if (out == nullptr)
        return 1;
    tree.tell(out);
    std::fclose(out);
    // PTRACE_O_EXITKILL ends what is left.
}

#else

int main()
{
    return 77;
}

#endif
