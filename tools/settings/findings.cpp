#include "settings/findings.h"

#include "common/failure.h"
#include "settings/meaning.h"
#include "settings/set_list.h"

#include <string>

namespace tool {

namespace {

Fault faultBecause(const std::string& reason)
{
    Fault fault;
    fault.reason = reason;
    return fault;
}

Finding findingOf(const FileRef& file, const ReadResult& read)
{
    if (read.fault)
        return {file, read.fault};
    return {file, std::nullopt, read.contents.records, meaninglessValues(file.fileId, read.contents)};
}

Finding examineFile(const FileRef& file)
{
    return findingOf(file, readFile(file));
}

void examineFolder(uint32_t setFileId, std::vector<Finding>& findings)
{
    std::vector<std::string> names;
    try {
        names = setFilesOf(setFileId);
    } catch (const Failure& failure) {
        return findings.push_back(
            {{listOf(setFileId), ""}, faultBecause(failure.failed() + ": " + failure.why())});
    }
    for (const std::string& name : names)
        findings.push_back(examineFile({setFileId, name}));
    const FileRef list{listOf(setFileId), ""};
    const ReadResult read = readFile(list);
    findings.push_back(findingOf(list, read));
    if (read.fault && !read.fault->missing)
        return;
    for (const std::string& reason : listFaults(listedSets(list.fileId, read.contents), names))
        findings.push_back({list, faultBecause(reason)});
}

} // namespace

std::vector<Finding> examineFiles()
{
    std::vector<Finding> findings;
    for (const vx63::settings::File& entry : vx63::settings::kFiles) {
        if (kindOf(entry.fileId) == FileKind::set)
            examineFolder(entry.fileId, findings);
        else if (kindOf(entry.fileId) == FileKind::ordinary)
            findings.push_back(examineFile({entry.fileId, ""}));
    }
    return findings;
}

} // namespace tool
