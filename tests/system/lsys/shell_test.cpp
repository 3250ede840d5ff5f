// The shell: the result is the command's own, whatever the application does with signals and children.
#include "libc_hooks.h"
#include "settings_file.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <thread>

using namespace lsystest;

namespace {

// The shell tells on stderr what has been killed, or makes no sense to it.
class ShellTest : public FolderTest {
protected:
    void SetUp() override
    {
        FolderTest::SetUp();
        m_stderr = dup(STDERR_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    void TearDown() override
    {
        dup2(m_stderr, STDERR_FILENO);
        close(m_stderr);
        FolderTest::TearDown();
    }

    int m_stderr = -1;
};

size_t openDescriptors()
{
    return namesIn("/proc/self/fd").size();
}

TEST_F(ShellTest, GivesTheExitStatus)
{
    EXPECT_EQ(lsys_system("true"), 0);
    EXPECT_EQ(lsys_system(""), 0);
    EXPECT_EQ(lsys_system("exit 0; false"), 0);
    EXPECT_EQ(lsys_system("false"), 1);
    EXPECT_EQ(lsys_system("exit 3"), 3);
    EXPECT_EQ(lsys_system("exit 255"), 255);
    EXPECT_EQ(lsys_system("no_such_command"), 127);
    EXPECT_EQ(lsys_system("{"), 2);    // no sentence of the shell
    EXPECT_EQ(lsys_system("-x"), 127); // a command, no option
}

TEST_F(ShellTest, GivesTheSignalThatEndedTheCommand)
{
    EXPECT_EQ(lsys_system("kill -KILL $$"), 128 + SIGKILL);
    EXPECT_EQ(lsys_system("kill -TERM $$"), 128 + SIGTERM);
    EXPECT_EQ(lsys_system("kill -KILL $PPID"), 128 + SIGKILL); // the shell around the command
}

TEST_F(ShellTest, RefusesNoCommand)
{
    EXPECT_EQ(lsys_system(nullptr), LSYS_ERR_ARG);
}

TEST_F(ShellTest, RunsTheLineAsTheShellReadsIt)
{
    std::filesystem::create_directory(path("set"));
    putText(path("set/a.csv"), "");
    putText(path("set/b c.csv"), "");
    EXPECT_EQ(lsys_system(("rm -r " + path("set") + "//*").c_str()), 0);
    EXPECT_TRUE(namesIn(path("set")).empty());
    EXPECT_NE(lsys_system(("rm -r " + path("set") + "//*").c_str()), 0); // nothing there
    EXPECT_EQ(lsys_system(("echo \"'$0' $#\" '\"' >" + path("out")).c_str()), 0);
    EXPECT_EQ(textOf(path("out")), "'/bin/sh' 0 \"\n");
}

// Standard input of this process, for a while.
class Input {
public:
    explicit Input(int fd) : m_before(dup(STDIN_FILENO)) { dup2(fd, STDIN_FILENO); }
    ~Input()
    {
        dup2(m_before, STDIN_FILENO);
        close(m_before);
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

private:
    int m_before;
};

TEST_F(ShellTest, TheCommandHasNoInput)
{
    putText(path("in"), "not for the command");
    const int in = open(path("in").c_str(), O_RDONLY | O_CLOEXEC);
    {
        const Input input(in);
        EXPECT_EQ(lsys_system(("cat >" + path("out")).c_str()), 0);
    }
    EXPECT_EQ(lseek(in, 0, SEEK_CUR), 0);
    close(in);
    EXPECT_EQ(textOf(path("out")), "");
}

TEST_F(ShellTest, NothingIsAskedOnATerminal)
{
    std::filesystem::create_directory(path("set"));
    putText(path("set/a.csv"), "");
    ASSERT_EQ(chmod(path("set/a.csv").c_str(), 0444), 0);
    ASSERT_EQ(chmod(path("set").c_str(), 0777), 0);
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    const int terminal = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(isatty(terminal));
    ASSERT_EQ(write(master, "n\n", 2), 2); // where it is asked, nobody waits
    EXPECT_EQ(inChild([&] {
                  if (geteuid() == 0) // of whom nothing is asked
                      static_cast<void>(setgid(65534) == 0 && setuid(65534));
                  const Input input(terminal);
                  return lsys_system(("rm -r " + path("set") + "//*").c_str());
              }),
              0);
    close(terminal);
    close(master);
    EXPECT_TRUE(namesIn(path("set")).empty());
}

TEST_F(ShellTest, LeavesNoDescriptorBehindNorGivesOneToTheCommand)
{
    const size_t before = openDescriptors();
    EXPECT_EQ(lsys_system(("ls -l /proc/self/fd >" + path("out")).c_str()), 0);
    EXPECT_EQ(textOf(path("out")).find("memfd"), std::string::npos) << textOf(path("out"));
    EXPECT_EQ(lsys_system(nullptr), LSYS_ERR_ARG);
    EXPECT_EQ(openDescriptors(), before);
}

// Each result while children of the process are reaped by someone else.
int mismatches()
{
    int wrong = 0;
    for (int status = 0; status < 8; ++status)
        wrong += lsys_system(("exit " + std::to_string(status)).c_str()) != status;
    wrong += lsys_system("kill -KILL $$") != 128 + SIGKILL;
    return wrong;
}

TEST_F(ShellTest, TheApplicationMayIgnoreItsChildren)
{
    EXPECT_EQ(inChild([] {
                  signal(SIGCHLD, SIG_IGN);
                  return mismatches();
              }),
              0);
    EXPECT_EQ(inChild([] {
                  struct sigaction action {};
                  action.sa_handler = SIG_DFL;
                  action.sa_flags = SA_NOCLDWAIT;
                  sigaction(SIGCHLD, &action, nullptr);
                  return mismatches();
              }),
              0);
}

TEST_F(ShellTest, TheApplicationMayReapAllChildrenInAHandler)
{
    EXPECT_EQ(inChild([] {
                  signal(SIGCHLD, [](int) {
                      const int error = errno;
                      while (waitpid(-1, nullptr, WNOHANG) > 0) {
                      }
                      errno = error;
                  });
                  return mismatches();
              }),
              0);
}

TEST_F(ShellTest, TheApplicationMayReapAllChildrenInAThread)
{
    EXPECT_EQ(inChild([] {
                  std::atomic<bool> done{false};
                  std::thread reaper([&] {
                      while (!done) {
                          if (waitpid(-1, nullptr, WNOHANG) <= 0)
                              std::this_thread::yield();
                      }
                  });
                  const int wrong = mismatches();
                  done = true;
                  reaper.join();
                  return wrong;
              }),
              0);
}

// Where neither the children nor a note tells how the command has ended.
TEST_F(ShellTest, AShellThatVanishesIsAFailure)
{
    EXPECT_EQ(inChild([] {
                  signal(SIGCHLD, SIG_IGN);
                  return lsys_system("kill -KILL $PPID") == LSYS_ERR_SYSTEM ? 0 : 1;
              }),
              0);
}

TEST_F(ShellTest, ASignalWhileItWaitsChangesNothing)
{
    EXPECT_EQ(inChild([] {
                  struct sigaction action {};
                  action.sa_handler = [](int) {}; // calls are not taken up again by themselves
                  sigaction(SIGUSR1, &action, nullptr);
                  const std::string self = std::to_string(getpid());
                  return lsys_system(
                      ("for i in 1 2 3; do kill -USR1 " + self + "; sleep 0.02; done; exit 5").c_str());
              }),
              5);
}

TEST_F(ShellTest, TheCommandFindsItsOwnChildren)
{
    // Some shells see to that themselves, others wait in vain when they are started so.
    sigset_t defaults;
    sigemptyset(&defaults);
    hooks::s_onSpawn = [&](const posix_spawnattr_t& attributes) {
        short flags = 0;
        posix_spawnattr_getflags(&attributes, &flags);
        if ((flags & POSIX_SPAWN_SETSIGDEF) != 0)
            posix_spawnattr_getsigdefault(&attributes, &defaults);
    };
    hooks::s_emptiedSets = 0;
    EXPECT_EQ(lsys_system("true"), 0);
    EXPECT_EQ(hooks::s_emptiedSets, 1);
    hooks::reset();
    for (int number = 1; number < NSIG; ++number)
        EXPECT_EQ(sigismember(&defaults, number), number == SIGCHLD ? 1 : 0) << number;

    EXPECT_EQ(inChild([] {
                  signal(SIGCHLD, SIG_IGN);
                  return lsys_system("sh -c 'exit 5' & wait $!");
              }),
              5);
}

// A program may have closed its standard input: what is opened next has its number.
TEST_F(ShellTest, TheNoteMayHaveTheNumber0)
{
    EXPECT_EQ(inChild([] {
                  close(0);
                  return mismatches();
              }),
              0);
    EXPECT_EQ(inChild([] {
                  close(0);
                  signal(SIGCHLD, SIG_IGN);
                  return mismatches();
              }),
              0);
}

TEST_F(ShellTest, ThreadsGetTheirOwnResults)
{
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 16; ++i) {
        threads.emplace_back([&wrong, i] {
            for (int round = 0; round < 4; ++round)
                wrong += lsys_system(("exit " + std::to_string(i)).c_str()) != i;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(ShellTest, SaysWhenTheCommandCannotBeRun)
{
    EXPECT_EQ(lsys_system(std::string(16 << 20, 'x').c_str()), LSYS_ERR_SYSTEM);
    EXPECT_EQ(inChild([] {
                  const rlimit none{0, 0};
                  setrlimit(RLIMIT_NOFILE, &none);
                  return lsys_system("true") == LSYS_ERR_SYSTEM ? 0 : 1;
              }),
              0);
    EXPECT_EQ(lsys_system("true"), 0);
}

TEST_F(ShellTest, LeavesTheSignalsOfTheApplicationAlone)
{
    sigset_t before;
    sigset_t after;
    pthread_sigmask(SIG_SETMASK, nullptr, &before);
    struct sigaction interrupt {};
    interrupt.sa_handler = [](int) {};
    sigaction(SIGINT, &interrupt, nullptr);
    EXPECT_EQ(lsys_system("true"), 0);
    struct sigaction found {};
    sigaction(SIGINT, nullptr, &found);
    EXPECT_EQ(found.sa_handler, interrupt.sa_handler);
    sigaction(SIGCHLD, nullptr, &found);
    EXPECT_EQ(found.sa_handler, SIG_DFL);
    pthread_sigmask(SIG_SETMASK, nullptr, &after);
    for (int number = 1; number < NSIG; ++number)
        EXPECT_EQ(sigismember(&before, number), sigismember(&after, number));
    signal(SIGINT, SIG_DFL);
}

} // namespace
