// What every command shares: how it fails, speaks, listens and names things. This file: the exit codes
// and the failure that ends a command.
#pragma once

#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>

namespace tool {

// One per class of result; documented in vx63(1). The library's codes stand for themselves without their
// sign, the others are those of sysexits.
enum ExitCode {
    kExitSuccess = 0,
    kExitCommunication = 1,    // VX63_ERR_COMM
    kExitArgument = 2,         // VX63_ERR_ARG
    kExitNoLock = 3,           // measured, but without lock
    kExitDiffer = 4,           // settings files differ
    kExitUnhealthy = 5,        // the doctor found something wrong
    kExitRepeat = 6,           // VX63_ERR_REPEAT
    kExitPowerSupply = 7,      // VX63_ERR_POWER
    kExitPriority = 8,         // VX63_ERR_PRIORITY
    kExitVerdictFail = 14,     // --check
    kExitVerdictMarginal = 15, // --check
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

// Ends the command with an exit code and "vx63: what failed: why: what to try" on stderr.
class Failure : public std::exception {
public:
    Failure(ExitCode code, const std::string& what, const std::string& why, const std::string& hint)
        : m_code(code), m_text(what + ": " + why + ": " + hint)
    {}
    ExitCode code() const { return m_code; }
    const char* what() const noexcept override { return m_text.c_str(); }

private:
    ExitCode m_code;
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

} // namespace tool
