// How a settings file is replaced: wholly or not at all, whatever happens, and nothing is left lying about.
#include "libc_hooks.h"
#include "settings_file.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <thread>

using namespace lsystest;

namespace {

const Layout kPlan{12, "CH_NO,CENT_FREQ", {{6, 8, 0}, {3, 4, 8}}};

// A plan whose records all tell which one it is.
Bytes plan(uint32_t records, uint8_t mark)
{
    Bytes bytes(size_t{records} * kPlan.recordSize, mark);
    for (uint32_t i = 0; i < records; ++i)
        bytes[size_t{i} * kPlan.recordSize + 7] = 0;
    return bytes;
}

const Bytes kOld = plan(3, 'o');
const Bytes kNew = plan(5, 'n');
const char kOldText[] =
    "1.0.0\nCH_NO,CENT_FREQ\nooooooo,1869573999\nooooooo,1869573999\nooooooo,1869573999\n";

class ReplacementTest : public FolderTest {
protected:
    void TearDown() override
    {
        hooks::reset();
        FolderTest::TearDown();
    }

    struct stat statusOf(const std::string& name) const
    {
        struct stat status {};
        EXPECT_EQ(lstat(name.c_str(), &status), 0) << name;
        return status;
    }

    mode_t modeOf(const std::string& name) const { return statusOf(name).st_mode & 07777; }

    std::vector<std::string> onlyTheFile() const { return {"file.csv"}; }
};

TEST_F(ReplacementTest, ANewFileGetsTheUsualMode)
{
    const mode_t mask = umask(0);
    EXPECT_EQ(write(path("a"), kPlan, kNew), LSYS_OK);
    EXPECT_EQ(modeOf(path("a")), 0644);
    umask(0077);
    EXPECT_EQ(write(path("b"), kPlan, kNew), LSYS_OK);
    umask(mask);
    EXPECT_EQ(modeOf(path("b")), 0600);
}

TEST_F(ReplacementTest, AnOldFileKeepsModeAndOwner)
{
    const mode_t mask = umask(0077);
    for (const mode_t mode : {0600, 0664, 0666, 0777, 0200}) {
        putText(path(), "old");
        ASSERT_EQ(chmod(path().c_str(), mode), 0);
        const bool given = geteuid() == 0 && chown(path().c_str(), 1234, 4321) == 0;
        EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
        EXPECT_EQ(modeOf(path()), mode);
        ASSERT_EQ(chmod(path().c_str(), 0600), 0);
        EXPECT_EQ(textOf(path()), kOldText);
        if (given) {
            EXPECT_EQ(statusOf(path()).st_uid, 1234U);
            EXPECT_EQ(statusOf(path()).st_gid, 4321U);
        }
    }
    umask(mask);
}

TEST_F(ReplacementTest, AFileDated2040IsReadAndReplaced)
{
    putText(path(), kOldText);
    const timespec date = {.tv_sec = 2211840000, .tv_nsec = 0}; // 2 February 2040
    const timespec times[2] = {date, date};
    ASSERT_EQ(utimensat(AT_FDCWD, path().c_str(), times, 0), 0);
    EXPECT_EQ(read(path(), kPlan, 3).records, kOld);
    EXPECT_EQ(write(path(), kPlan, kNew), LSYS_OK);
    EXPECT_EQ(read(path(), kPlan, 5).records, kNew);
}

TEST_F(ReplacementTest, LinksStayAndTheFileBehindThemIsReplaced)
{
    std::filesystem::create_directories(path("real/deep"));
    std::filesystem::create_directory(path("links"));
    putText(path("real/deep/file.csv"), "old");
    std::filesystem::create_symlink("../real/deep/file.csv", path("links/relative"));
    std::filesystem::create_symlink(path("links/relative"), path("links/absolute"));
    std::filesystem::create_symlink("absolute", path("links/chain"));
    std::filesystem::create_directory_symlink("real/deep", path("folder"));
    for (const char* name : {"links/relative", "links/absolute", "links/chain", "folder/file.csv"}) {
        putText(path("real/deep/file.csv"), "old");
        EXPECT_EQ(write(path(name), kPlan, kOld), LSYS_OK) << name;
        EXPECT_EQ(textOf(path("real/deep/file.csv")), kOldText) << name;
    }
    EXPECT_TRUE(S_ISLNK(statusOf(path("links/chain")).st_mode));
    EXPECT_EQ(namesIn(path("links")), (std::vector<std::string>{"absolute", "chain", "relative"}));
    EXPECT_EQ(namesIn(path("real/deep")), onlyTheFile());

    // A link to nothing: the file is made there.
    std::filesystem::create_symlink("real/new", path("dangling"));
    EXPECT_EQ(write(path("dangling"), kPlan, kOld), LSYS_OK);
    EXPECT_EQ(textOf(path("real/new")), kOldText);
    std::filesystem::create_symlink("none/new", path("lost"));
    EXPECT_EQ(write(path("lost"), kPlan, kOld), LSYS_ERR_MISSING);
    std::filesystem::create_symlink("circle", path("circle"));
    EXPECT_EQ(write(path("circle"), kPlan, kOld), LSYS_ERR_MISSING);
    std::filesystem::create_symlink("real", path("toFolder"));
    EXPECT_EQ(write(path("toFolder"), kPlan, kOld), LSYS_ERR_NOT_FILE);
}

TEST_F(ReplacementTest, ARelativePathIsTakenFromTheWorkingFolder)
{
    EXPECT_EQ(inChild([&] {
                  if (chdir(m_folder.c_str()) != 0)
                      return 1;
                  return write("file.csv", kPlan, kOld) == LSYS_OK ? 0 : 2;
              }),
              0);
    EXPECT_EQ(textOf(path()), kOldText);
}

TEST_F(ReplacementTest, AReaderKeepsTheFileThatItHasOpened)
{
    ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    std::ifstream reader(path());
    ASSERT_EQ(write(path(), kPlan, kNew), LSYS_OK);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), kOldText);
}

TEST_F(ReplacementTest, LeftoversAreRemovedAndWhatIsAtWorkIsNot)
{
    putText(path(".lsys.0.tmp"), "left over");
    putText(path(".lsys.1.tmp"), "another writer's");
    const int other = open(path(".lsys.1.tmp").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    EXPECT_EQ(write(path(), kPlan, kNew), LSYS_OK);
    EXPECT_EQ(namesIn(m_folder), (std::vector<std::string>{".lsys.1.tmp", "file.csv"}));

    putText(path(".lsys.0.tmp"), "at work too");
    const int first = open(path(".lsys.0.tmp").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(first, LOCK_EX), 0);
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    EXPECT_EQ(textOf(path()), kOldText);
    EXPECT_EQ(textOf(path(".lsys.0.tmp")), "at work too");
    EXPECT_EQ(textOf(path(".lsys.1.tmp")), "another writer's");
    close(first);
    close(other);
}

TEST_F(ReplacementTest, WhatOnlyHasTheNameOfALeftoverStays)
{
    putText(path("precious"), "precious");
    std::filesystem::create_directory(path(".lsys.0.tmp"));
    std::filesystem::create_symlink("precious", path(".lsys.1.tmp"));
    ASSERT_EQ(mkfifo(path(".lsys.2.tmp").c_str(), 0600), 0);
    EXPECT_EQ(write(path(), kPlan, kNew), LSYS_OK);
    EXPECT_EQ(namesIn(m_folder), (std::vector<std::string>{".lsys.0.tmp", ".lsys.1.tmp", ".lsys.2.tmp",
                                                           "file.csv", "precious"}));
    EXPECT_EQ(textOf(path("precious")), "precious");
}

TEST_F(ReplacementTest, AFileSystemWithoutLocksWillDo)
{
    hooks::s_onCall = [](const std::string& call) { return call == "flock" ? ENOLCK : 0; };
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    EXPECT_EQ(textOf(path()), kOldText);
    putText(path(".lsys.0.tmp"), "perhaps at work");
    EXPECT_EQ(write(path(), kPlan, kNew), LSYS_OK);
    EXPECT_EQ(namesIn(m_folder), (std::vector<std::string>{".lsys.0.tmp", "file.csv"}));
}

TEST_F(ReplacementTest, AFileTakenForALeftoverIsMadeAgain)
{
    // Another writer looks between the making of the file and its lock.
    bool taken = false;
    hooks::s_onCall = [&](const std::string& call) {
        if (call == "flock" && !taken) {
            taken = true;
            unlink(path(".lsys.0.tmp").c_str());
        }
        return 0;
    };
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    EXPECT_TRUE(taken);
    EXPECT_EQ(textOf(path()), kOldText);
    EXPECT_EQ(namesIn(m_folder), onlyTheFile());
}

TEST_F(ReplacementTest, ANameThatChangesHandsIsLeftAlone)
{
    // Between the look at a temporary file and the lock its writer finishes and another takes the name.
    putText(path(".lsys.0.tmp"), "first");
    int other = -1;
    hooks::s_onCall = [&](const std::string& call) {
        if (call == "flock" && other < 0) {
            std::filesystem::rename(path(".lsys.0.tmp"), path("finished"));
            other = open(path(".lsys.0.tmp").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
            flock(other, LOCK_EX);
        }
        return 0;
    };
    EXPECT_EQ(write(path(), kPlan, kNew), LSYS_OK);
    EXPECT_EQ(namesIn(m_folder), (std::vector<std::string>{".lsys.0.tmp", "file.csv", "finished"}));
    close(other);
}

TEST_F(ReplacementTest, ShortAndInterruptedCallsGoOn)
{
    hooks::s_writeLimit = 7;
    bool interrupt = false;
    hooks::s_onCall = [&](const std::string& call) {
        interrupt = !interrupt;
        return interrupt && (call == "write" || call == "read") ? EINTR : 0;
    };
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    const Read back = read(path(), kPlan, 3);
    hooks::reset();
    EXPECT_EQ(back.result, 3);
    EXPECT_EQ(back.records, kOld);
    EXPECT_EQ(textOf(path()), kOldText);
}

TEST_F(ReplacementTest, WhateverFailsTheOldFileStays)
{
    const struct {
        const char* call;
        int error;
        int32_t result;
    } failures[] = {
        {"openat", EACCES, LSYS_ERR_PERMISSION}, {"openat", EROFS, LSYS_ERR_PERMISSION},
        {"openat", ENOSPC, LSYS_ERR_FULL},       {"openat", EMFILE, LSYS_ERR_SYSTEM},
        {"fstatat", EIO, LSYS_ERR_SYSTEM},       {"fstat", EIO, LSYS_ERR_SYSTEM},
        {"write", ENOSPC, LSYS_ERR_FULL},        {"write", EDQUOT, LSYS_ERR_FULL},
        {"write", EFBIG, LSYS_ERR_FULL},         {"write", EIO, LSYS_ERR_SYSTEM},
        {"fsync", ENOSPC, LSYS_ERR_FULL},        {"fsync", EIO, LSYS_ERR_SYSTEM},
        {"renameat", ENOSPC, LSYS_ERR_FULL},     {"renameat", EPERM, LSYS_ERR_PERMISSION},
    };
    for (const auto& failure : failures) {
        for (int nth = 1; nth <= 2; ++nth) {
            ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
            int count = 0;
            bool renamed = false;
            bool failed = false;
            hooks::s_writeLimit = 30;
            hooks::s_onCall = [&](const std::string& call) {
                if (call == failure.call && ++count == nth) {
                    failed = true;
                    return failure.error;
                }
                renamed = renamed || call == "renameat";
                return 0;
            };
            const int32_t result = write(path(), kPlan, kNew);
            hooks::reset();
            EXPECT_EQ(result, failed ? failure.result : LSYS_OK) << failure.call << failure.error;
            EXPECT_EQ(read(path(), kPlan, 5).result, renamed ? 5 : 3) << failure.call << failure.error;
            if (std::string(failure.call) != "fstat") { // its leftover goes with the next write
                EXPECT_EQ(namesIn(m_folder), onlyTheFile()) << failure.call << failure.error;
            }
        }
    }
    // A folder that cannot be flushed is no failure.
    int flushes = 0;
    hooks::s_onCall = [&](const std::string& call) { return call == "fsync" && ++flushes == 2 ? EINVAL : 0; };
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    EXPECT_EQ(flushes, 2);
}

TEST_F(ReplacementTest, AFailedReadSaysSo)
{
    ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    hooks::s_onCall = [](const std::string& call) { return call == "read" ? EIO : 0; };
    const int32_t result = read(path(), kPlan, 3).result;
    hooks::reset();
    EXPECT_EQ(result, LSYS_ERR_SYSTEM);
}

TEST_F(ReplacementTest, NoDescriptorIsLeftOpen)
{
    const size_t before = namesIn("/proc/self/fd").size();
    putText(path("bad"), "bad");
    std::filesystem::create_symlink("file.csv", path("link"));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
        EXPECT_EQ(write(path("link"), kPlan, kOld), LSYS_OK);
        EXPECT_EQ(write(path("link/x"), kPlan, kOld), LSYS_ERR_MISSING);
        EXPECT_EQ(write(m_folder, kPlan, kOld), LSYS_ERR_NOT_FILE);
        EXPECT_EQ(write(path(), kPlan, Bytes(12, 'x')), LSYS_ERR_TEXT);
        EXPECT_EQ(read(path(), kPlan, 3).result, 3);
        EXPECT_EQ(read(path("bad"), kPlan, 3).result, LSYS_ERR_CUT);
        EXPECT_EQ(read(m_folder, kPlan, 3).result, LSYS_ERR_NOT_FILE);
    }
    EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

// What the file holds: records that all bear one mark, or 0.
char wholeMark(const std::string& file, uint32_t most)
{
    const Read back = read(file, kPlan, most);
    if (back.result <= 0)
        return 0;
    const Bytes records(back.records.begin(),
                        back.records.begin() + static_cast<ptrdiff_t>(back.result) * kPlan.recordSize);
    return records == plan(static_cast<uint32_t>(back.result), records[0]) ? static_cast<char>(records[0])
                                                                           : '\0';
}

TEST_F(ReplacementTest, KilledAtAnyStepTheFileIsWhole)
{
    for (const uint32_t records : {5U, 1001U}) {
        const Bytes fresh = plan(records, 'n');
        bool survived = false;
        for (int step = 1; !survived; ++step) {
            ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
            const pid_t child = fork();
            if (child == 0) {
                int count = 0;
                hooks::s_writeLimit = 4000;
                hooks::s_onCall = [&](const std::string&) { return ++count == step ? raise(SIGKILL) : 0; };
                _exit(write(path(), kPlan, fresh) == LSYS_OK ? 0 : 1);
            }
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            survived = WIFEXITED(status);
            if (survived) {
                ASSERT_EQ(WEXITSTATUS(status), 0);
                EXPECT_GE(step, 10);
            }
            const Read back = read(path(), kPlan, records);
            ASSERT_TRUE(back.result == 3 || back.result == static_cast<int32_t>(records)) << back.result;
            ASSERT_EQ(wholeMark(path(), records), back.result == 3 ? 'o' : 'n') << step;

            // The next write works, and clears up.
            ASSERT_EQ(write(path(), kPlan, kNew), LSYS_OK);
            ASSERT_EQ(namesIn(m_folder), onlyTheFile()) << step;
        }
    }
}

// Writes the plans of the marks 'a', 'b', ... in turn, and tells each one by a byte, until it is killed.
pid_t startWriter(const std::string& file, uint32_t records, int& told)
{
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        for (uint8_t mark = 'a';; mark = mark == 'z' ? 'a' : static_cast<uint8_t>(mark + 1)) {
            if (write(file, kPlan, plan(records, mark)) != LSYS_OK || ::write(ends[1], &mark, 1) != 1)
                _exit(1);
        }
    }
    close(ends[1]);
    told = ends[0];
    return child;
}

TEST_F(ReplacementTest, KilledHundredsOfTimesTheFileIsWhole)
{
    std::mt19937 random(20260); // the same kills every time
    for (const uint32_t records : {2U, 1001U}) {
        for (int round = 0; round < 250; ++round) {
            int told;
            const pid_t child = startWriter(path(), records, told);
            char mark = 0;
            for (auto writes = 1 + random() % 3; writes != 0; --writes)
                ASSERT_EQ(::read(told, &mark, 1), 1);
            // Somewhere in the writes after that.
            for (auto turns = random() % 100000; turns != 0; --turns)
                std::atomic_signal_fence(std::memory_order_seq_cst);
            ASSERT_EQ(kill(child, SIGKILL), 0);
            int status;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            ASSERT_TRUE(WIFSIGNALED(status));
            char last;
            while (::read(told, &last, 1) == 1)
                mark = last;
            close(told);
            const char found = wholeMark(path(), records);
            const char next = mark == 'z' ? 'a' : static_cast<char>(mark + 1);
            ASSERT_TRUE(found == mark || found == next) << round << " " << found << " after " << mark;
            ASSERT_LE(namesIn(m_folder).size(), 2U);
        }
    }
    ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    EXPECT_EQ(namesIn(m_folder), onlyTheFile());
}

TEST_F(ReplacementTest, WritersAtOnceLeaveOneWholeFile)
{
    constexpr uint32_t kRecords = 200;
    ASSERT_EQ(write(path(), kPlan, plan(kRecords, 'A')), LSYS_OK);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&, i] {
            const Bytes mine = plan(kRecords, static_cast<uint8_t>('A' + i));
            // Every other thread writes a file of its own in the same folder.
            const std::string file = i % 2 == 0 ? path() : path("other" + std::to_string(i));
            for (int round = 0; round < 50; ++round) {
                wrong += write(file, kPlan, mine) != LSYS_OK;
                wrong += wholeMark(file, kRecords) == 0;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(namesIn(m_folder),
              (std::vector<std::string>{"file.csv", "other1", "other3", "other5", "other7"}));
}

// Runs where on_small_disk has put a disk of a few pages at LSYS_SMALL_DISK.
class SmallDiskTest : public testing::Test {
protected:
    void SetUp() override
    {
        const char* const disk = getenv("LSYS_SMALL_DISK");
        if (disk == nullptr)
            GTEST_SKIP() << "no small disk: run by tests/system/lsys/on_small_disk";
        m_folder = disk;
    }

    std::string path(const std::string& name) const { return m_folder + "/" + name; }

    // Takes all room but `left` bytes.
    void fill(size_t left) const
    {
        const int file = open(path("filler").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        const Bytes page(4096, 'f');
        off_t taken = 0;
        while (::write(file, page.data(), page.size()) == static_cast<ssize_t>(page.size()))
            taken += static_cast<off_t>(page.size());
        ASSERT_EQ(errno, ENOSPC);
        ASSERT_EQ(ftruncate(file, std::max<off_t>(0, taken - static_cast<off_t>(left))), 0);
        close(file);
    }

    std::string m_folder;
};

TEST_F(SmallDiskTest, AFullDiskLeavesTheOldFile)
{
    constexpr uint32_t kRecords = 1001; // five pages
    const Bytes old = plan(kRecords, 'o');
    const Bytes fresh = plan(kRecords, 'n');
    bool full = false;
    bool written = false;
    for (size_t left = 0; !written; left += 4096) {
        ASSERT_LT(left, size_t{1} << 20);
        unlink(path("filler").c_str());
        ASSERT_EQ(write(path("file.csv"), kPlan, old), LSYS_OK);
        ASSERT_NO_FATAL_FAILURE(fill(left));
        const int32_t result = write(path("file.csv"), kPlan, fresh);
        written = result == LSYS_OK;
        full = full || result == LSYS_ERR_FULL;
        ASSERT_TRUE(written || result == LSYS_ERR_FULL) << result;
        ASSERT_EQ(read(path("file.csv"), kPlan, kRecords).records, written ? fresh : old);
        ASSERT_EQ(namesIn(m_folder), (std::vector<std::string>{"file.csv", "filler"}));
    }
    EXPECT_TRUE(full);

    // No room for another file at all.
    unlink(path("filler").c_str());
    ASSERT_NO_FATAL_FAILURE(fill(0));
    EXPECT_EQ(write(path("new.csv"), kPlan, fresh), LSYS_ERR_FULL);
    EXPECT_EQ(namesIn(m_folder), (std::vector<std::string>{"file.csv", "filler"}));
    unlink(path("filler").c_str());
    EXPECT_EQ(write(path("new.csv"), kPlan, fresh), LSYS_OK);
}

} // namespace
