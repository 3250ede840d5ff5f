// The parent of the five service processes: starts them, brings back those that die, runs the command and
// ends everything.
#pragma once

#include "model/scene.h"
#include "model/settings.h"

#include <csignal>
#include <string>
#include <vector>

namespace vmeter {

// The signals that a terminal or a caller sends to the whole program, and SIGPIPE; a command gets them as
// the caller had set them.
struct CallerSignals {
    static constexpr int kNumbers[] = {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGPIPE};

    bool ignored[std::size(kNumbers)] = {};

    // As they are set in this process now.
    static CallerSignals current();

    // Sets them and unblocks everything, in a child that is about to become someone else's program.
    void restore() const;

    // For handing them to another vx63-vmeter.
    std::string text() const;
    static CallerSignals fromText(const std::string& text);
};

struct Supervision {
    std::vector<std::string> command; // empty: serve until told to end
    int traceFd = -1;                 // opened with O_APPEND
    int readyFd = -1;                 // gets a byte when all services can be reached
    int controlFd = -1;               // bytes are signal numbers for the command; its end ends everything
    CallerSignals callerSignals;
    int claimFd = -1;     // of claimQueues(): answers who asks for the state
    int stateJsonFd = -1; // gets the state at the end
    Settings settings;
};

// Runs the services, and the command, to the end. Gives the exit status for the whole program: that of the
// command (128 + n after signal n), 0 without one. Throws Failure when the meter cannot be started.
int supervise(const Scene& scene, const Supervision& supervision);

} // namespace vmeter
