// Namespaces for a meter and its command, made by bubblewrap: message queues and processes of their own,
// a /var/log and settings folders of their own.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vmeter {

inline constexpr const char* kLogFolder = "/var/log";

// What the machine allows beside the namespaces that are always needed.
struct Namespaces {
    bool proc = true;   // a /proc of their own
    bool mqueue = true; // /dev/mqueue shows their own queues
};

// All that this machine knows of.
Namespaces wantedNamespaces();

// Tries out what the machine allows, which takes as long as a meter's start. Throws Failure that tells why
// they are refused.
Namespaces tryNamespaces();

// The arguments of bubblewrap, its own name first, without the command. `state` keeps log and settings
// folders and must hold them; none: they vanish with the meter.
std::vector<std::string> bubblewrapArguments(const Namespaces& namespaces,
                                             const std::optional<std::filesystem::path>& state);

// The path of this program.
std::string ownPath();

} // namespace vmeter
