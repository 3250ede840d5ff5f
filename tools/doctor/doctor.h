// The steps of vx63 doctor.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tool {

enum class Health { good, remarkable, wrong };

// What was looked at, and what came of it.
struct Check {
    std::string step;    // "queues", "services", "log", "folders", "files"
    std::string subject; // "Key service"
    Health health = Health::good;
    std::string kind = "none"; // for programs
    std::string text;          // what is so
    std::string remedy;        // what to do; only where something is wrong
    std::optional<double> ms;
};

// Every settings folder, and every file in it, as the library reads it. Sends nothing.
std::vector<Check> checkSettings();

} // namespace tool
