// Namespaces for a meter and its command, made by bubblewrap: message queues and processes of their own,
// a /var/log and settings folders of their own.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vmeter {

inline constexpr const char* kLogFolder = "/var/log";
inline constexpr const char* kProgramFolder = "/usr/local/bin";

// Folders of the settings files, in kProgramFolder.
inline constexpr const char* kSettingsFolders[] = {
    "sys_set",    "meas_set",        "user_set",        "user_set_usb1", "user_set_usb2",
    "logger_set", "logger_set_usb1", "logger_set_usb2", "ch_set",        "pmeas_set"};

// What the machine allows beside the namespaces that are always needed.
struct Namespaces {
    bool proc = true;   // a /proc of their own
    bool mqueue = true; // /dev/mqueue shows their own queues
};

// Tries them out. Throws Failure that tells why they are refused.
Namespaces tryNamespaces();

// The arguments of bubblewrap, its own name first, without the command. `state` keeps log and settings
// folders and must hold them; none: they vanish with the meter.
std::vector<std::string> bubblewrapArguments(const Namespaces& namespaces,
                                             const std::optional<std::filesystem::path>& state);

// The path of this program.
std::string ownPath();

} // namespace vmeter
