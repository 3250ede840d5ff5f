// The doctor's look at the settings: each folder and each file in it.
#include "common/text.h"
#include "doctor/doctor.h"
#include "settings/findings.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <string>
#include <vector>

namespace tool {

namespace {

std::vector<uint32_t> oneFileOfEachFolder()
{
    std::vector<uint32_t> fileIds;
    for (const vx63::settings::File& entry : vx63::settings::kFiles)
        if (std::ranges::find(fileIds, folderOf(entry.fileId), folderOf) == fileIds.end())
            fileIds.push_back(entry.fileId);
    return fileIds;
}

Check checkFolder(uint32_t fileId)
{
    const std::string path = folderPathOf(fileId);
    const bool onUsb = path.find("_usb") != std::string::npos; // the memory may be out
    const std::unique_ptr<DIR, int (*)(DIR*)> opened(opendir(path.c_str()), closedir);
    if (!opened) {
        const int error = errno;
        if (error == ENOENT && onUsb)
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
    errno = 0;
    while (readdir(opened.get()) != nullptr)
        errno = 0;
    if (const int error = errno)
        return {"folders", path, Health::wrong, "unreadable", std::strerror(error), "check the disk", {}};
    return {"folders", path, Health::good, "none", "readable", "", {}};
}

Check checkOf(const Finding& finding)
{
    const auto& [file, fault, records, meaningless] = finding;
    if (!fault)
        return {"files",
                pathOf(file),
                Health::good,
                "none",
                format("%u", records) + (records == 1 ? " record" : " records"),
                "",
                {}};
    if (fault->missing)
        return {"files",
                pathOf(file),
                Health::remarkable,
                "missing",
                kindOf(file.fileId) == FileKind::list ? "missing: no set is listed"
                                                      : "missing: the factory contents hold",
                "",
                {}};
    return {"files", pathOf(file), Health::wrong, "broken", faultText(*fault), remedyFor(file), {}};
}

} // namespace

std::vector<Check> checkSettings()
{
    std::vector<Check> checks;
    std::vector<std::string> readable;
    for (const uint32_t fileId : oneFileOfEachFolder()) {
        checks.push_back(checkFolder(fileId));
        if (checks.back().health == Health::good)
            readable.push_back(folderOf(fileId));
    }
    for (const Finding& finding : examineFiles())
        if (std::ranges::find(readable, folderOf(finding.file.fileId)) != readable.end())
            checks.push_back(checkOf(finding));
    return checks;
}

} // namespace tool
