// What every command shares: how it fails, speaks, listens and names things. This file: the exit codes
// and the failure that ends a command.
#pragma once

#include <exception>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

namespace tool {

// One per class of result; exitKinds() tells of each. The library's codes stand for themselves without their
// sign, those from 64 are of sysexits.
enum ExitCode {
    kExitSuccess = 0,
    kExitCommunication = 1, // VX63_ERR_COMM, and no reason of its own was found
    kExitArgument = 2,      // VX63_ERR_ARG
    kExitNoLock = 3,
    kExitDiffer = 4,
    kExitUnhealthy = 5,
    kExitRepeat = 6,      // VX63_ERR_REPEAT
    kExitPowerSupply = 7, // VX63_ERR_POWER
    kExitPriority = 8,    // VX63_ERR_PRIORITY
    kExitAsleep = 9,
    kExitUpdateFailed = 10,
    kExitRestarting = 11,
    kExitNoMeter = 12,
    kExitIncomplete = 13,
    kExitVerdictFail = 14,
    kExitVerdictMarginal = 15,
    kExitUsage = 64,
    kExitData = 65,
    kExitNoInput = 66,
    kExitInternal = 70,
    kExitCreate = 73,
    kExitOutput = 74,
    kExitBusy = 75,
    kExitDeclined = 77,
    kExitSignal = 128 // plus the number of the signal
};

struct ExitKind {
    ExitCode code;
    const char* word; // for programs: stable
    const char* text; // for people: the help and the manual page
};
std::span<const ExitKind> exitKinds();

// Ends the command with an exit code and "vx63: what failed: why: what to try" on stderr.
class Failure : public std::exception {
public:
    Failure(ExitCode code, std::string what, std::string why, std::string hint)
        : m_code(code), m_what(std::move(what)), m_why(std::move(why)), m_hint(std::move(hint)),
          m_text(m_what + ": " + m_why + ": " + m_hint)
    {}
    ExitCode code() const { return m_code; }
    const std::string& failed() const { return m_what; }
    const std::string& why() const { return m_why; }
    const std::string& hint() const { return m_hint; }
    const char* what() const noexcept override { return m_text.c_str(); } // all of it

private:
    ExitCode m_code;
    std::string m_what;
    std::string m_why;
    std::string m_hint;
    std::string m_text;
};

// The command line is wrong: "OPTION: WHY".
class WrongUsage : public std::runtime_error {
public:
    explicit WrongUsage(const std::string& why) : std::runtime_error(why) {}
    WrongUsage(const std::string& option, const std::string& why)
        : std::runtime_error(option + ": " + why), m_option(option)
    {}
    const std::string& option() const { return m_option; } // empty where it is not one alone

private:
    std::string m_option;
};

// The failure as it goes to stderr: a line of text, or as JSON the line {"error": {...}}.
void report(const Failure& failure, bool json);

// Whether the command line asks for JSON: then errors are JSON as well, wrong usage too.
bool asksForJson(std::span<char* const> arguments);

} // namespace tool
