// `vx63-vmeter run`: a meter and a command in surroundings of their own, and nothing left of them afterwards.
//
// run itself stays outside and outlives everything: it passes signals on and waits. Inside, the same program
// as `serve` starts the services and the command, and ends when run is gone. Between them stands a guardian,
// and bubblewrap unless in place: the guardian cleans up, and run does when the guardian is killed.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vmeter {

struct RunOptions {
    std::optional<std::string> scene;
    std::optional<std::filesystem::path> state;
    std::optional<std::string> trace;
    std::vector<std::string> faults; // already checked
    bool inPlace = false;
    std::optional<std::string> stateJson;
    bool emptySettings = false;
    std::vector<std::string> command;
};

// Gives the exit status of the command, 128 + n after signal n. Throws Failure.
int run(const RunOptions& options);

// Opens a scene file for reading. Throws Failure.
int openScene(const std::string& path);

// Opens a trace file for appending; what it holds stays until the meter begins. Throws Failure.
int openTrace(const std::string& path);

// Opens a file for the state at the end; what it holds stays until the meter begins. Throws Failure.
int openStateJson(const std::string& path);

} // namespace vmeter
