// Whole processes, from their start to their end.
#include "groups.h"
#include "process/isolation.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace bench {
namespace {

namespace fs = std::filesystem;
using Command = std::vector<std::string>;

std::string program(const char* name)
{
    return fs::read_symlink("/proc/self/exe").parent_path() / name;
}

// Whether it ends with 0. Its output is nobody's.
bool run(const Command& command)
{
    std::vector<char*> arguments;
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    const bool started =
        posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    return started && waitpid(process, &status, 0) == process && status == 0;
}

// What the virtual meter asks of bwrap, with a command that does nothing. Empty where namespaces are refused.
Command namespaces()
{
    const vmeter::Namespaces wanted = vmeter::wantedNamespaces();
    for (const bool proc : {true, false}) {
        for (const bool mqueue : {true, false}) {
            Command command = vmeter::bubblewrapArguments(
                {.proc = wanted.proc && proc, .mqueue = wanted.mqueue && mqueue}, std::nullopt);
            command.insert(command.end(), {"--", "true"});
            if (run(command))
                return command;
        }
    }
    return {};
}

void compareCommands(Runner& runner, const Row& row, const Command& floor, const Command& subject)
{
    for (const Command& command : {floor, subject}) {
        if (command.empty() || !run(command)) {
            std::fprintf(stderr, "bench: '%s' is left out: '%s' fails here\n", row.what.c_str(),
                         command.empty() ? row.floor.c_str() : command[0].c_str());
            return;
        }
    }
    runner.compare(
        row, [&] { run(floor); }, [&] { run(subject); });
}

} // namespace

void compareProcesses(Runner& runner)
{
    compareCommands(runner, {"vx63 --version", "an empty C program", 2.0}, {program("bench_empty")},
                    {program("vx63"), "--version"});
    compareCommands(runner, {"vx63-vmeter run -- true", "bwrap with the same namespaces, true", 1.5},
                    namespaces(), {program("vx63-vmeter"), "run", "--", "true"});
}

void compareMeasurement(Runner& runner)
{
    compareCommands(runner, {"vx63 measure single --json", "a C program with the same calls", 1.5},
                    {program("bench_single")},
                    {program("vx63"), "measure", "single", "--freq", "557143", "--json"});
}

} // namespace bench
