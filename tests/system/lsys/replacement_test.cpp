// How a settings file is replaced: wholly or not at all, whatever happens, and nothing is left lying about.
#include "libc_hooks.h"
#include "settings_file.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <map>
#include <random>
#include <sys/file.h>
#include <thread>
#include <utility>

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
    for (const mode_t mode : {0600, 0664, 0666, 0777, 0200, 06755}) {
        putText(path(), "old");
        const bool given = geteuid() == 0 && chown(path().c_str(), 1234, 4321) == 0;
        ASSERT_EQ(chmod(path().c_str(), mode), 0);
        EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
        // The kernel takes set-id bits away where anyone but root writes.
        EXPECT_EQ(modeOf(path()), geteuid() == 0 ? mode : mode & 0777);
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

TEST_F(ReplacementTest, AsManyLinksAreFollowedAsTheKernelFollows)
{
    std::string behind = "file.csv";
    for (int i = 1; i <= 41; ++i) {
        const std::string name = "link" + std::to_string(i);
        std::filesystem::create_symlink(behind, path(name));
        behind = name;
    }
    EXPECT_EQ(write(path("link40"), kPlan, kOld), LSYS_OK);
    EXPECT_EQ(read(path("link40"), kPlan, 3).result, 3);
    EXPECT_EQ(write(path("link41"), kPlan, kNew), LSYS_ERR_MISSING);
    EXPECT_EQ(read(path("link41"), kPlan, 3).result, LSYS_ERR_MISSING);
    EXPECT_EQ(textOf(path()), kOldText);
}

TEST_F(ReplacementTest, TheLongestPathOfAFolderIsTheKernels)
{
    const std::string longest = m_folder + std::string(4095 - m_folder.size(), '/');
    EXPECT_EQ(write(longest + "file.csv", kPlan, kOld), LSYS_OK);
    EXPECT_EQ(textOf(path()), kOldText);
    EXPECT_EQ(write(longest + "/file.csv", kPlan, kNew), LSYS_ERR_MISSING);
    EXPECT_EQ(write(std::string(16 << 20, 'n') + "/file.csv", kPlan, kNew), LSYS_ERR_MISSING);
    EXPECT_EQ(textOf(path()), kOldText);
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

TEST_F(ReplacementTest, AFileThatAnotherLocksFirstIsMadeAgain)
{
    bool locked = false;
    hooks::s_onCall = [&](const std::string& call) {
        return call == "flock" && !std::exchange(locked, true) ? EWOULDBLOCK : 0;
    };
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    EXPECT_TRUE(locked);
    EXPECT_EQ(textOf(path()), kOldText);
    EXPECT_EQ(namesIn(m_folder), onlyTheFile());
}

// The new file is made under another name, and the one that is lost stays as it is.
TEST_F(ReplacementTest, AFileThatAnotherLocksFirstIsLeftToIt)
{
    const size_t before = namesIn("/proc/self/fd").size();
    int other = -1;
    hooks::s_onCall = [&](const std::string& call) {
        if (call == "flock" && other < 0) {
            other = open(path(".lsys.0.tmp").c_str(), O_RDONLY | O_CLOEXEC);
            flock(other, LOCK_EX);
        }
        return 0;
    };
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    close(other);
    EXPECT_EQ(textOf(path()), kOldText);
    EXPECT_EQ(namesIn(m_folder), (std::vector<std::string>{".lsys.0.tmp", "file.csv"}));
    EXPECT_EQ(textOf(path(".lsys.0.tmp")), "");
    EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

TEST_F(ReplacementTest, WhatIsAtWorkIsLocked)
{
    bool locked = false;
    hooks::s_onCall = [&](const std::string& call) {
        if (call == "write") {
            const int file = open(path(".lsys.0.tmp").c_str(), O_RDONLY | O_CLOEXEC);
            locked = file >= 0 && flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
            close(file);
        }
        return 0;
    };
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    EXPECT_TRUE(locked);
}

TEST_F(ReplacementTest, TheFirstFreeNameIsTaken)
{
    std::vector<std::string> names;
    int locks = 0;
    hooks::s_onCall = [&](const std::string& call) {
        if (call == "write")
            names = namesIn(m_folder);
        locks += call == "flock";
        return 0;
    };
    putText(path(".lsys.0.tmp"), "left over");
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    EXPECT_EQ(names, std::vector<std::string>{".lsys.0.tmp"});
    EXPECT_EQ(locks, 2);

    putText(path(".lsys.0.tmp"), "at work");
    const int other = open(path(".lsys.0.tmp").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    locks = 0;
    EXPECT_EQ(write(path(), kPlan, kNew), LSYS_OK);
    EXPECT_EQ(names, (std::vector<std::string>{".lsys.0.tmp", ".lsys.1.tmp", "file.csv"}));
    EXPECT_EQ(locks, 2);
    close(other);
}

// Whatever cannot be told of a leftover, or done with it: it stays, and the next name is taken.
TEST_F(ReplacementTest, ALeftoverThatCannotBeLookedAtStays)
{
    const struct {
        const char* call;
        int nth;
    } failures[] = {{"openat", 3}, {"fstat", 1}, {"fstatat", 2}, {"unlinkat", 1}};
    for (const auto& failure : failures) {
        putText(path(".lsys.0.tmp"), "left over");
        int count = 0;
        hooks::s_onCall = [&](const std::string& call) {
            return call == failure.call && ++count == failure.nth ? EIO : 0;
        };
        EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK) << failure.call;
        hooks::reset();
        EXPECT_EQ(textOf(path()), kOldText) << failure.call;
        EXPECT_EQ(namesIn(m_folder), (std::vector<std::string>{".lsys.0.tmp", "file.csv"})) << failure.call;
        EXPECT_EQ(textOf(path(".lsys.0.tmp")), "left over") << failure.call;
    }
}

TEST_F(ReplacementTest, AnotherOwnerOrGroupAloneIsKeptToo)
{
    const struct {
        uid_t owner;
        gid_t group;
    } others[] = {{0, 4321}, {1234, getegid()}};
    for (const auto& other : others) {
        putText(path(), "old");
        if (geteuid() != 0 || chown(path().c_str(), other.owner, other.group) != 0)
            GTEST_SKIP() << "no other owner can be had";
        EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
        EXPECT_EQ(statusOf(path()).st_uid, other.owner);
        EXPECT_EQ(statusOf(path()).st_gid, other.group);
    }
}

// Not every file system can set owner and mode: nothing is asked for that is there already.
TEST_F(ReplacementTest, OwnerAndModeThatAreRightAreNotSet)
{
    const mode_t mask = umask(0022);
    ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    int set = 0;
    hooks::s_onCall = [&](const std::string& call) {
        set += call == "fchown" || call == "fchmod";
        return 0;
    };
    EXPECT_EQ(write(path(), kPlan, kNew), LSYS_OK);
    umask(mask);
    EXPECT_EQ(set, 0);
    EXPECT_EQ(modeOf(path()), 0644U);
}

// A set-id bit means the owner that the file had.
TEST_F(ReplacementTest, WhoCannotKeepTheOwnerKeepsNoSetIdBit)
{
    putText(path(), "old");
    if (geteuid() != 0 || chown(path().c_str(), 1234, 4321) != 0)
        GTEST_SKIP() << "no other owner can be had";
    ASSERT_EQ(chmod(path().c_str(), 06755), 0);
    hooks::s_onCall = [](const std::string& call) { return call == "fchown" ? EPERM : 0; };
    EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    hooks::reset();
    EXPECT_EQ(modeOf(path()), 0755U);
    EXPECT_EQ(textOf(path()), kOldText);
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
    for (const size_t limit : {1, 7}) {
        hooks::s_writeLimit = limit;
        std::map<std::string, int> made;
        hooks::s_onCall = [&](const std::string& call) {
            const bool interrupt = ++made[call] % 2 == 1;
            return interrupt && (call == "write" || call == "read" || call == "fsync") ? EINTR : 0;
        };
        EXPECT_EQ(write(path(), kPlan, kOld), LSYS_OK);
        const Read back = read(path(), kPlan, 3);
        hooks::reset();
        EXPECT_EQ(back.result, 3);
        EXPECT_EQ(back.records, kOld);
        EXPECT_EQ(textOf(path()), kOldText);
    }
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
        {"openat", ENODEV, LSYS_ERR_NOT_FILE},   {"fchmod", EIO, LSYS_ERR_SYSTEM},
    };
    for (const auto& failure : failures) {
        for (int nth = 1; nth <= 2; ++nth) {
            ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
            ASSERT_EQ(chmod(path().c_str(), 0666), 0); // which a umask narrows
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
    for (const char* failing : {"read", "fstat"}) {
        hooks::s_onCall = [&](const std::string& call) { return call == failing ? EIO : 0; };
        const int32_t result = read(path(), kPlan, 3).result;
        hooks::reset();
        EXPECT_EQ(result, LSYS_ERR_SYSTEM) << failing;
    }
}

TEST_F(ReplacementTest, ALinkThatCannotBeReadSaysSo)
{
    std::filesystem::create_symlink("file.csv", path("link"));
    hooks::s_onCall = [](const std::string& call) { return call == "readlinkat" ? EIO : 0; };
    EXPECT_EQ(write(path("link"), kPlan, kOld), LSYS_ERR_SYSTEM);
    hooks::reset();
    EXPECT_EQ(namesIn(m_folder), std::vector<std::string>{"link"});
}

// The text is written in pieces. Each byte of a record comes to lie at the end of one that cannot be written.
TEST_F(ReplacementTest, WhicheverPieceFailsTheOldFileStays)
{
    const Layout layout{24, "N,T,U,P", {{4, 4, 0}, {6, 12, 4}, {6, 4, 16}, {6, 4, 20}}};
    const std::string line = "-2147483648,\"a\"\",b\"\"\",\"c\"\"e\",pla\n";
    Bytes records;
    for (size_t left = 2 * 16384; left > line.size(); left -= line.size()) {
        const Bytes record = {0, 0, 0, 0x80, 'a', '"', ',', 'b', '"', 0,   0,   0,
                              0, 0, 0, 0,    'c', '"', 'e', 0,   'p', 'l', 'a', 0};
        records.insert(records.end(), record.begin(), record.end());
    }
    const auto fails = [&](const std::string& version, const Layout& as) {
        int writes = 0;
        hooks::s_onCall = [&](const std::string& call) {
            return call == "write" && ++writes == 1 ? ENOSPC : 0;
        };
        const int32_t result = write(path(), as, records, version.c_str());
        hooks::reset();
        EXPECT_EQ(result, LSYS_ERR_FULL);
        EXPECT_EQ(writes, 1);
        EXPECT_EQ(textOf(path()), kOldText);
        EXPECT_EQ(namesIn(m_folder), onlyTheFile());
    };
    ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
    for (size_t shift = 0; shift <= line.size(); ++shift)
        fails(std::string(1 + shift, 'v'), layout);
    for (const size_t length : {16383, 16384, 16385, 40000}) {
        fails(std::string(length, 'v'), layout);
        fails("1.0.0", {24, std::string(length, 'h') + ",T,U,P", layout.columns});
    }
}

TEST_F(ReplacementTest, NoDescriptorIsLeftOpen)
{
    const size_t before = namesIn("/proc/self/fd").size();
    putText(path("bad"), "bad");
    std::filesystem::create_symlink("file.csv", path("link"));
    for (int i = 0; i < 3; ++i) {
        putText(path(".lsys.0.tmp"), "left over");
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

// A child that the application starts meanwhile.
TEST_F(ReplacementTest, NoDescriptorIsInherited)
{
    const auto inherited = [] {
        int count = 0;
        for (int file = 0; file < 256; ++file)
            count += fcntl(file, F_GETFD) == 0;
        return count;
    };
    putText(path(".lsys.0.tmp"), "left over");
    std::filesystem::create_symlink("file.csv", path("link"));
    const int before = inherited();
    int most = 0;
    hooks::s_onCall = [&](const std::string&) {
        most = std::max(most, inherited());
        return 0;
    };
    EXPECT_EQ(write(path("link"), kPlan, kOld), LSYS_OK);
    EXPECT_EQ(read(path("link"), kPlan, 3).result, 3);
    EXPECT_EQ(most, before);
}

// A program may have closed its standard input: what is opened next has its number.
TEST_F(ReplacementTest, ADescriptorMayBe0)
{
    std::filesystem::create_symlink("file.csv", path("link"));
    const std::vector<std::string> names = {"file.csv", "link"};
    for (const int error : {0, ENOSPC}) {
        for (int nth = 1; nth <= 5;
             ++nth) { // two folders, two times the temporary file, between them a leftover
            ASSERT_EQ(write(path(), kPlan, kOld), LSYS_OK);
            putText(path(".lsys.0.tmp"), "left over");
            EXPECT_EQ(inChild([&] {
                          dup2(STDERR_FILENO, 0);
                          const size_t before = namesIn("/proc/self/fd").size();
                          int opened = 0;
                          hooks::s_onCall = [&](const std::string& call) {
                              if (call == "openat" && ++opened == nth)
                                  close(0);
                              return call == "write" ? error : 0;
                          };
                          const int32_t result = write(path("link"), kPlan, kNew);
                          hooks::reset();
                          if (opened != 5)
                              return 1;
                          if (result != (error != 0 ? LSYS_ERR_FULL : LSYS_OK))
                              return 2;
                          if (read(path(), kPlan, 5).result != (error != 0 ? 3 : 5))
                              return 3;
                          if (namesIn(m_folder) != names)
                              return 4;
                          return namesIn("/proc/self/fd").size() == before - 1 ? 0 : 5;
                      }),
                      0)
                << nth << " " << error;
        }
    }
}

TEST_F(ReplacementTest, StandardInputStaysOpenWhereNothingIsOpened)
{
    EXPECT_EQ(inChild([&] {
                  dup2(STDERR_FILENO, 0);
                  if (write(path("none/file.csv"), kPlan, kOld) != LSYS_ERR_MISSING)
                      return 1;
                  return fcntl(0, F_GETFD) >= 0 ? 0 : 2;
              }),
              0);
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
