#include "process/in_place.h"

#include "failure.h"
#include "model/settings.h"
#include "process/isolation.h"
#include "process/queues.h"
#include "services/service.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vmeter {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNotesParent = "/tmp";
constexpr std::string_view kNotesPrefix = "vx63-vmeter-";
constexpr std::size_t kNotesUnique = 6; // characters behind the prefix, as mkdtemp() makes them

// Inside the notes, beside the settings folders:
constexpr const char* kNoteState = "state";            // link to the state folder, if there is one
constexpr const char* kNoteKeptLogs = "kept-logs";     // a file named as each log that was there before
constexpr const char* kNoteKeptQueues = "kept-queues"; // a file named as each queue id that was there before
constexpr const char* kNoteComplete = "complete";      // the notes above can be relied on

bool isNotesName(const fs::path& name)
{
    const std::string& text = name.native();
    return text.starts_with(kNotesPrefix) && text.size() == kNotesPrefix.size() + kNotesUnique;
}

// Whether a settings folder is a link that a meter in place has made.
bool isOurs(const fs::path& link)
{
    std::error_code error;
    const fs::path target = fs::read_symlink(link, error);
    return !error && target.filename() == link.filename() && isNotesName(target.parent_path().filename()) &&
           target.parent_path().parent_path() == kNotesParent;
}

bool isLog(const fs::path& path)
{
    const std::string name = path.filename();
    return name.starts_with("libvx63") && name.ends_with(".txt");
}

std::vector<fs::path> logsIn(const fs::path& folder)
{
    std::vector<fs::path> logs;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (isLog(entry->path()))
            logs.push_back(entry->path());
    return logs;
}

// From one file system to another if need be.
void moveFile(const fs::path& from, const fs::path& to)
{
    std::error_code error;
    fs::rename(from, to, error);
    if (!error)
        return;
    if (fs::copy_file(from, to, fs::copy_options::overwrite_existing, error))
        fs::remove(from, error);
}

void note(const fs::path& path)
{
    if (!std::ofstream(path))
        throw Failure(path, "cannot be written", "free some space in /tmp");
}

Descriptor lockFolder(const fs::path& folder)
{
    Descriptor lock(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (lock && flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        lock = Descriptor();
    return lock;
}

// Undoes what the notes tell.
void undo(const fs::path& notes)
{
    std::error_code error;
    for (const char* folder : kSettingsFolders) {
        const fs::path link = fs::path(kProgramFolder) / folder;
        if (fs::read_symlink(link, error) == notes / folder)
            fs::remove(link, error);
    }
    if (fs::exists(notes / kNoteComplete, error)) {
        const fs::path state = fs::read_symlink(notes / kNoteState, error);
        for (const fs::path& log : logsIn(kLogFolder)) {
            if (fs::exists(notes / kNoteKeptLogs / log.filename(), error))
                continue;
            if (state.empty())
                fs::remove(log, error);
            else
                moveFile(log, state / "log" / log.filename());
        }
        for (const uint8_t id : queueIds())
            if (!fs::exists(notes / kNoteKeptQueues / std::to_string(id), error))
                removeQueue(id);
    }
    fs::remove_all(notes, error);
}

// What a meter left behind that was killed together with its guardian.
void undoKilled()
{
    std::error_code error;
    std::vector<fs::path> found;
    for (fs::directory_iterator entry(kNotesParent, error), end; !error && entry != end;
         entry.increment(error))
        found.push_back(entry->path());
    for (const fs::path& path : found) {
        struct stat status;
        if (!isNotesName(path.filename()) || lstat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
            status.st_uid != geteuid())
            continue;
        if (const Descriptor lock = lockFolder(path)) // nobody holds it any more
            undo(path);
    }
    for (const char* folder : kSettingsFolders) {
        const fs::path link = fs::path(kProgramFolder) / folder;
        if (isOurs(link))
            fs::remove(link, error);
    }
}

// Children of this process, also those it got because their parents died.
std::vector<pid_t> children()
{
    std::vector<pid_t> found;
    std::error_code error;
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error)) {
        const pid_t pid = std::atoi(entry->path().filename().c_str());
        std::ifstream file(entry->path() / "stat");
        std::string stat;
        if (pid <= 0 || !std::getline(file, stat))
            continue;
        // PID (NAME) STATE PPID ...; the name can hold anything.
        char state = 0;
        int parent = 0;
        const std::size_t at = stat.rfind(')');
        if (at != std::string::npos && std::sscanf(stat.c_str() + at + 1, " %c %d", &state, &parent) == 2 &&
            parent == getpid())
            found.push_back(pid);
    }
    return found;
}

void killDescendants()
{
    for (;;) {
        bool any = false;
        for (const pid_t pid : children())
            any = kill(pid, SIGKILL) == 0 || any;
        if (!any)
            return;
        // Their own children come to us when they are gone.
        waitpid(-1, nullptr, 0);
    }
}

} // namespace

InPlace::InPlace(const std::optional<fs::path>& state)
{
    const auto check = [](const fs::path& path, const std::error_code& error) {
        if (error)
            throw Failure(path, error.message(), "run as root, or without --in-place");
    };

    m_machineLock = Descriptor(open(kProgramFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!m_machineLock)
        check(kProgramFolder, std::error_code(errno, std::generic_category()));
    if (flock(m_machineLock.get(), LOCK_EX | LOCK_NB) != 0)
        throw Failure("--in-place",
                      errno == EWOULDBLOCK ? "another meter is running in place" : errorText(errno),
                      "wait for its end");
    for (const char* folder : {kProgramFolder, kLogFolder})
        if (access(folder, W_OK | X_OK) != 0)
            check(folder, std::error_code(errno, std::generic_category()));
    const Descriptor claim = claimQueues();

    std::error_code error;
    for (const char* folder : kSettingsFolders) {
        const fs::path path = fs::path(kProgramFolder) / folder;
        if (fs::symlink_status(path, error).type() != fs::file_type::not_found && !isOurs(path))
            throw Failure(path, "it exists and no vx63-vmeter has made it",
                          "move it away, or run without --in-place");
    }

    undoKilled();
    // Nobody serves them: what lies in them is for a meter that is gone.
    for (const Service* service : kServices)
        if (!removeQueue(service->ucProcId))
            throw Failure("message queue of service " + std::string(service->name), errorText(errno),
                          "remove it as its owner");

    std::string pattern = fs::path(kNotesParent) / kNotesPrefix;
    pattern.append(kNotesUnique, 'X');
    if (mkdtemp(pattern.data()) == nullptr)
        check(kNotesParent, std::error_code(errno, std::generic_category()));
    m_notes = pattern;
    m_notesLock = lockFolder(m_notes);

    try {
        fs::create_directory(m_notes / kNoteKeptLogs);
        fs::create_directory(m_notes / kNoteKeptQueues);
        for (const fs::path& log : logsIn(kLogFolder))
            note(m_notes / kNoteKeptLogs / log.filename());
        for (const uint8_t id : queueIds())
            if (queueExists(id))
                note(m_notes / kNoteKeptQueues / std::to_string(id));
        if (state)
            fs::create_symlink(*state, m_notes / kNoteState);
        note(m_notes / kNoteComplete);

        if (state)
            for (const fs::path& log : logsIn(*state / "log"))
                if (!fs::exists(m_notes / kNoteKeptLogs / log.filename()))
                    moveFile(log, kLogFolder / log.filename());
        for (const char* folder : kSettingsFolders) {
            if (state)
                fs::create_symlink(*state / folder, m_notes / folder);
            else
                fs::create_directory(m_notes / folder);
            fs::create_symlink(m_notes / folder, fs::path(kProgramFolder) / folder);
        }
    } catch (const fs::filesystem_error& failed) {
        undo(m_notes);
        check(failed.path2().empty() ? failed.path1() : failed.path2(), failed.code());
    } catch (...) {
        undo(m_notes);
        throw;
    }

    // What the meter leaves running comes to us, should the guardian die.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

InPlace::~InPlace()
{
    cleanUp();
}

void InPlace::guard(const std::vector<std::string>& program)
{
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent)
            _exit(kExitFailure);
        std::vector<char*> argv;
        for (const std::string& argument : program)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(kExitFailure);
    }
    int how = 0;
    pid_t ended = -1;
    while (child > 0 && ended != child)
        ended = waitpid(-1, &how, 0);
    cleanUp();
    _exit(child < 0 ? kExitFailure : WIFSIGNALED(how) ? 128 + WTERMSIG(how) : WEXITSTATUS(how));
}

void InPlace::cleanUp()
{
    killDescendants();
    if (m_notes.empty())
        return;
    undo(m_notes);
    m_notes.clear();
}

} // namespace vmeter
