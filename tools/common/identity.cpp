#include "common/identity.h"

#include "common/exchange.h"
#include "common/failure.h"
#include "common/numbers.h"
#include "common/served.h"
#include "common/text.h"
#include "libvx63.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {

namespace {

bool isService(uint64_t id)
{
    return id == PROC_ID_PSYS || id == PROC_ID_PDEV || id == PROC_ID_PKEY || id == PROC_ID_PBUZ ||
           id == PROC_ID_PMEAS;
}

uid_t user()
{
    return static_cast<uid_t>(getauxval(AT_EUID)); // geteuid() would be a system call
}

bool isPrivate(const std::string& folder)
{
    struct stat status {};
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == user() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

// A folder in which nobody else can hold a lock: whoever may read a file may lock it. Empty where there is
// none.
std::string lockFolder()
{
    const char* const runtime = getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && *runtime == '/' && isPrivate(runtime))
        return runtime;
    const std::string folder = format("/tmp/vx63-%u", user());
    const bool found = isPrivate(folder) || mkdir(folder.c_str(), S_IRWXU) == 0 ||
                       isPrivate(folder); // another vx63 was faster
    return found ? folder : "";
}

// An empty path when there is no place for it, or the namespace cannot be told.
std::string lockPath(int32_t id)
{
    struct stat ipc {};
    if (stat("/proc/self/ns/ipc", &ipc) != 0)
        return "";
    const std::string folder = lockFolder();
    return folder.empty()
               ? ""
               : folder + format("/vx63-%d-%llu.lock", id, static_cast<unsigned long long>(ipc.st_ino));
}

// The file at the path is the one that was opened, and not one that an ending vx63 has just removed.
bool isCurrent(int fd, const std::string& path)
{
    struct stat opened {
    }, atPath{};
    return fstat(fd, &opened) == 0 && stat(path.c_str(), &atPath) == 0 && opened.st_dev == atPath.st_dev &&
           opened.st_ino == atPath.st_ino;
}

} // namespace

int32_t processIdIn(const std::string& option, const std::string& text)
{
    const uint64_t value = numberIn(option, text, 0, kHighestProcessId);
    if (isService(value))
        throw WrongUsage(option, format("%s is the id of a service", text.c_str()));
    return static_cast<int32_t>(value);
}

static std::string s_doctorCommand = "'vx63 doctor'";

std::string doctorCommand()
{
    return s_doctorCommand;
}

void setDoctorId(int32_t id)
{
    s_doctorCommand = format("'vx63 doctor --id %d'", id);
}

Identity::Identity(int32_t id, OldAnswers old) : m_id(id), m_path(lockPath(id))
{
    while (!m_path.empty()) {
        // O_NONBLOCK: whatever lies there, a FIFO too, must not hold us up.
        m_fd =
            open(m_path.c_str(), O_RDONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (m_fd < 0)
            break; // no lock to be had: go on without
        if (flock(m_fd, LOCK_EX | LOCK_NB) != 0) {
            const bool taken = errno == EWOULDBLOCK;
            close(m_fd);
            m_fd = -1;
            if (taken)
                throw Failure(kExitBusy, format("cannot use process id %d", id), "another vx63 is using it",
                              "wait until it ends, or choose another id with --id");
            break;
        }
        if (isCurrent(m_fd, m_path))
            break;
        close(m_fd);
        m_fd = -1;
    }
    const auto queue = old == OldAnswers::forget ? queueOf(static_cast<uint8_t>(id)) : std::nullopt;
    if (queue && queue->messages != 0)
        forgetAnswers(id, 0);
    vx63_init(id); // the id is known to be valid
}

Identity::~Identity()
{
    const auto queue = queueOf(static_cast<uint8_t>(m_id));
    if (isBehind() || (queue && queue->messages != 0))
        forgetAnswers(m_id);
    if (m_fd < 0)
        return;
    unlink(m_path.c_str()); // still locked: nobody else can hold this file
    close(m_fd);
}

} // namespace tool
