#include "process/in_place.h"

#include "cli/printable.h"
#include "failure.h"
#include "model/settings.h"
#include "process/isolation.h"
#include "process/queues.h"
#include "services/service.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sys/file.h>
#include <sys/stat.h>
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
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (isLog(entry.path()))
            logs.push_back(entry.path());
    return logs;
}

// Empty where no link is.
fs::path linkTarget(const fs::path& path)
{
    return fs::is_symlink(fs::symlink_status(path)) ? fs::read_symlink(path) : fs::path();
}

// What another user makes while the meter runs is not the meter's.
bool isStrangers(const fs::path& path)
{
    struct stat status;
    return geteuid() != 0 && lstat(path.c_str(), &status) == 0 && status.st_uid != geteuid();
}

// From one file system to another if need be. Who is killed meanwhile leaves `from`, or `to`, or both.
//   part  what is copied first; `to` is whole when this is another
void moveFile(const fs::path& from, const fs::path& to, const fs::path& part)
{
    std::error_code error;
    fs::rename(from, to, error);
    if (!error)
        return;
    fs::copy_file(from, part, fs::copy_options::overwrite_existing);
    if (part != to)
        fs::rename(part, to);
    fs::remove(from);
}

// Between a state folder, whose logs are always whole, and the machine. While both have one, the state's
// counts.
void takeLog(const fs::path& log)
{
    const fs::path here = kLogFolder / log.filename();
    moveFile(log, here, here);
}

void bringBackLog(const fs::path& log, const fs::path& state)
{
    const fs::path kept = state / "log" / log.filename();
    if (fs::exists(kept))
        fs::remove(log);
    else
        moveFile(log, kept, kept.native() + ".part");
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

// The first thing that stays, and why.
using Stays = std::optional<fs::filesystem_error>;

template <typename Step>
void attempt(Stays& stays, const Step& step)
{
    try {
        step();
    } catch (const fs::filesystem_error& error) {
        if (!stays)
            stays = error;
    }
}

// Undoes what the notes tell, as far as it can be. The notes stay until all is undone.
Stays undoOnce(const fs::path& notes)
{
    Stays stays;
    for (const char* folder : kSettingsFolders) {
        attempt(stays, [&] {
            const fs::path link = fs::path(kProgramFolder) / folder;
            if (linkTarget(link) == notes / folder)
                fs::remove(link);
        });
    }
    attempt(stays, [&] {
        if (!fs::exists(notes / kNoteComplete))
            return;
        const fs::path state = linkTarget(notes / kNoteState);
        for (const fs::path& log : logsIn(kLogFolder)) {
            attempt(stays, [&] {
                if (fs::exists(notes / kNoteKeptLogs / log.filename()) || isStrangers(log))
                    return;
                if (state.empty())
                    fs::remove(log);
                else
                    bringBackLog(log, state);
            });
        }
        for (const uint8_t id : queueIds()) {
            attempt(stays, [&] {
                // EACCES: another user has made it.
                if (!fs::exists(notes / kNoteKeptQueues / std::to_string(id)) && !removeQueue(id) &&
                    errno != EACCES)
                    throw fs::filesystem_error("", "message queue of id " + std::to_string(id),
                                               std::error_code(errno, std::generic_category()));
            });
        }
        // Who is killed from here on leaves notes that cannot be relied on.
        if (!stays)
            fs::remove(notes / kNoteComplete);
    });
    if (!stays)
        attempt(stays, [&] { fs::remove_all(notes); });
    return stays;
}

// Gives whether nothing stays; tells what does.
bool undo(const fs::path& notes)
{
    Stays stays = undoOnce(notes);
    if (stays)
        stays = undoOnce(notes); // a machine that was short of something may no longer be
    if (stays)
        std::fprintf(stderr,
                     "vx63-vmeter: %s: %s: it stays with %s until that is mended and "
                     "'vx63-vmeter run --in-place -- true' takes it away\n",
                     cli::printable(stays->path1().native()).c_str(), stays->code().message().c_str(),
                     cli::printable(notes.native()).c_str());
    return !stays;
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
                    takeLog(log);
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
}

InPlace::~InPlace()
{
    cleanUp();
}

bool InPlace::cleanUp()
{
    return m_notes.empty() || undo(std::exchange(m_notes, {}));
}

void cleanUpKilled()
{
    // Where another meter has taken the machine, it has cleaned up.
    const Descriptor machine(open(kProgramFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (machine && flock(machine.get(), LOCK_EX | LOCK_NB) == 0)
        undoKilled();
}

} // namespace vmeter
