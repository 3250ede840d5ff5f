// The folders of the settings files.
#pragma once

#include <filesystem>

namespace vmeter {

inline constexpr const char* kProgramFolder = "/usr/local/bin";

// Folders of the settings files, in kProgramFolder.
inline constexpr const char* kSettingsFolders[] = {
    "sys_set",    "meas_set",        "user_set",        "user_set_usb1", "user_set_usb2",
    "logger_set", "logger_set_usb1", "logger_set_usb2", "ch_set",        "pmeas_set"};

// Where the settings folders lie, and whether they are the meter's own: it writes into no others.
struct Settings {
    std::filesystem::path folder = kProgramFolder;
    bool own = false;
};

inline const Settings kForeignSettings;

} // namespace vmeter
