// The doctor's look at the settings: each folder and each file in it.
#include "common/text.h"
#include "doctor/doctor.h"
#include "libvx63.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <string>
#include <string_view>

namespace tool {

namespace {

constexpr const char* kRoot = "/usr/local/bin/";
constexpr std::string_view kEnding = ".csv";

// Room for the records of any file.
constexpr size_t kRecordsMax = 12012;

struct File {
    uint32_t fileId;
    const char* name; // in its folder; a set's is found there
};

struct Folder {
    const char* name;
    bool usb;    // the memory may be out
    int32_t set; // file id of the sets in it; -1: none
    std::vector<File> files;
};

// "measrement" is how the meters spell it.
const std::array kFolders = {
    Folder{"sys_set",
           false,
           -1,
           {{0, "system_setting_file_powoff.csv"},
            {1, "system_setting_file_volume.csv"},
            {2, "system_setting_file_brightness.csv"}}},
    Folder{"meas_set",
           false,
           -1,
           {{3, "measrement_setting_file_local_freq.csv"},
            {4, "measrement_setting_file_thrd.csv"},
            {5, "measrement_setting_file_cnrmer.csv"},
            {6, "measrement_setting_file_catv_freq.csv"},
            {7, "measrement_setting_file_cable_loss.csv"},
            {8, "measrement_setting_file_cable_loss_enb.csv"},
            {9, "measrement_setting_file_input.csv"},
            {10, "measrement_setting_file_catv_mod.csv"},
            {11, "measrement_setting_file_dc_out.csv"},
            {12, "measrement_setting_file_opt_meas.csv"},
            {13, "measrement_setting_file_consta_num.csv"},
            {30, "measrement_setting_file_manu_bdsys_mod.csv"},
            {31, "measrement_setting_file_bdsys_conv.csv"},
            {32, "measrement_setting_file_catv_bdsys_conv.csv"}}},
    Folder{"ch_set",
           false,
           -1,
           {{16, "channel_setting_file_uhf_6mhz.csv"},
            {17, "channel_setting_file_bs_34.5mhz.csv"},
            {18, "channel_setting_file_cs_34.5mhz.csv"},
            {19, "channel_setting_file_sccb_27mhz.csv"},
            {20, "channel_setting_file_sccc_27mhz.csv"},
            {21, "channel_setting_file_jsat3a_27mhz.csv"},
            {22, "channel_setting_file_jsat4b_27mhz.csv"},
            {23, "channel_setting_file_catv_all_6mhz.csv"},
            {24, "channel_setting_file_catv_90_470mhz_6mhz.csv"},
            {25, "channel_setting_file_catv_470_1002mhz_6mhz.csv"},
            {26, "channel_setting_file_skyp_6mhz.csv"},
            {27, "channel_setting_file_pilot.csv"},
            {28, "channel_setting_file_lte.csv"},
            {29, "channel_setting_file_fm.csv"},
            {33, "channel_setting_file_catv_up_stream.csv"},
            {37, "channel_setting_file_jsat3a_antenna_27mhz.csv"},
            {38, "channel_setting_file_jsat4b_antenna_27mhz.csv"},
            {39, "channel_setting_file_fm_def.csv"},
            {40, "channel_setting_file_catv_up_stream_def.csv"},
            {41, "channel_setting_file_bs_cs_34.5mhz.csv"}}},
    Folder{"pmeas_set", false, -1, {{34, "pmeas_setting_file_pmeas_mng.csv"}}},
    Folder{"user_set", false, 14, {{15, "user_setting_file_list.csv"}}},
    Folder{"logger_set", false, 35, {{36, "logger_setting_file_list.csv"}}},
    Folder{"user_set_usb1", true, 42, {{43, "user_setting_file_list.csv"}}},
    Folder{"user_set_usb2", true, 44, {{45, "user_setting_file_list.csv"}}},
    Folder{"logger_set_usb1", true, 46, {{47, "logger_setting_file_list.csv"}}},
    Folder{"logger_set_usb2", true, 48, {{49, "logger_setting_file_list.csv"}}},
};

// The platform's results.
std::string reasonFor(int32_t lsys_err)
{
    constexpr const char* kReasons[] = {
        "",
        "it is no settings file",
        "there is no such file",
        "it is not permitted",
        "it is no file",
        "it has another version",
        "a line has more or fewer columns",
        "a number is none",
        "a number is too large for its column",
        "a text is too long for its column",
        "the quotes of a text are wrong",
        "it is cut short",
        "it has too many records",
        "it holds bytes that are no text",
        "the disk is full",
        "the system refuses it",
    };
    const size_t index = lsys_err < 0 ? static_cast<size_t>(-static_cast<int64_t>(lsys_err)) : 0;
    return index > 0 && index < std::size(kReasons) ? format("%s (lsys_err=%d)", kReasons[index], lsys_err)
                                                    : format("it cannot be read (lsys_err=%d)", lsys_err);
}

constexpr int32_t kMissing = -2;

Check checkFile(const std::string& path, uint32_t fileId, const char* set)
{
    static std::array<uint8_t, kRecordsMax> s_records;
    const int32_t records = vx63_readSetFile(fileId, s_records.data(), set, 0);
    if (records >= 0)
        return {"files",
                path,
                Health::good,
                "none",
                format("%d", records) + (records == 1 ? " record" : " records"),
                "",
                {}};
    const auto id = static_cast<int32_t>(fileId);
    const bool list = vx63_isFileIdUserSetFlist(id) == 1 || vx63_isFileIdLoggerSetFlist(id) == 1;
    if (records == kMissing)
        return {"files",
                path,
                Health::remarkable,
                "missing",
                list ? "missing: no set is listed" : "missing: the factory contents hold",
                "",
                {}};
    return {"files",
            path,
            Health::wrong,
            "broken",
            reasonFor(records),
            "restore it, or take 'vx63 factory-reset', which deletes all settings",
            {}};
}

Check checkFolder(const Folder& folder, std::vector<Check>& files)
{
    const std::string path = kRoot + std::string(folder.name);
    const std::unique_ptr<DIR, int (*)(DIR*)> opened(opendir(path.c_str()), closedir);
    if (!opened) {
        const int error = errno;
        if (error == ENOENT && folder.usb)
            return {"folders", path, Health::remarkable, "missing", "not there: no memory in the slot",
                    "",        {}};
        return {"folders",
                path,
                Health::wrong,
                error == ENOENT ? "missing" : "unreadable",
                std::strerror(error),
                error == ENOENT ? "make the folder, then restore its files"
                                : "check its permissions: 'ls -ld'",
                {}};
    }
    for (const File& file : folder.files)
        files.push_back(checkFile(path + "/" + file.name, file.fileId, nullptr));
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = readdir(opened.get())) {
        const std::string_view name = entry->d_name;
        if (folder.set >= 0 && name.size() > kEnding.size() && name.ends_with(kEnding) && name[0] != '.' &&
            name != folder.files.front().name)
            names.emplace_back(name.substr(0, name.size() - kEnding.size()));
        errno = 0;
    }
    if (const int error = errno)
        return {"folders", path, Health::wrong, "unreadable", std::strerror(error), "check the disk", {}};
    std::ranges::sort(names);
    const std::string prefix = path + "/";
    for (const std::string& name : names)
        files.push_back(checkFile(std::string(prefix).append(name).append(kEnding),
                                  static_cast<uint32_t>(folder.set), name.c_str()));
    return {"folders", path, Health::good, "none", "readable", "", {}};
}

} // namespace

std::vector<Check> checkSettings()
{
    std::vector<Check> checks;
    std::vector<Check> files;
    checks.reserve(kFolders.size());
    for (const Folder& folder : kFolders)
        checks.push_back(checkFolder(folder, files));
    checks.insert(checks.end(), files.begin(), files.end());
    return checks;
}

} // namespace tool
