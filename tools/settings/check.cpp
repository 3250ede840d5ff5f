// vx63 settings check: read every file and judge it.
#include "common/failure.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "settings/file.h"
#include "settings/set_list.h"
#include "settings/subcommands.h"

#include <memory>
#include <nlohmann/json.hpp>

namespace tool {

namespace {

struct Options {
    bool json = false;
};

struct Finding {
    FileRef file;
    std::optional<Fault> fault; // nothing: all is well
};

void checkFile(const FileRef& file, std::vector<Finding>& findings)
{
    findings.push_back({file, readFile(file).fault});
}

void checkFolder(uint32_t setFileId, std::vector<Finding>& findings)
{
    const std::vector<std::string> names = setFilesIn("/usr/local/bin/" + folderOf(setFileId), setFileId);
    for (const std::string& name : names) {
        if (const auto why = setNameFault(name))
            findings.push_back({{setFileId, name}, Fault{false, 0, 0, "it is no name of a set: " + *why}});
        else
            checkFile({setFileId, name}, findings);
    }
    const FileRef list{listOf(setFileId), ""};
    const ReadResult read = readFile(list);
    findings.push_back({list, read.fault});
    if (read.fault && !read.fault->missing)
        return;
    for (const std::string& fault : listFaults(listedSets(list.fileId, read.contents), names))
        findings.push_back({list, Fault{false, 0, 0, fault}});
}

nlohmann::ordered_json findingJson(const Finding& finding)
{
    nlohmann::ordered_json json = {{"id", finding.file.fileId},
                                   {"name", printable(nameOf(finding.file))},
                                   {"ok", !finding.fault || finding.fault->missing},
                                   {"missing", finding.fault && finding.fault->missing},
                                   {"line", nullptr},
                                   {"column", nullptr},
                                   {"fault", nullptr}};
    if (!finding.fault || finding.fault->missing)
        return json;
    if (finding.fault->line != 0)
        json["line"] = finding.fault->line;
    if (finding.fault->column != 0)
        json["column"] = finding.fault->column;
    json["fault"] = printable(finding.fault->reason);
    return json;
}

int check(const Options& options)
{
    std::vector<Finding> findings;
    for (const vx63::settings::File& entry : vx63::settings::kFiles) {
        if (kindOf(entry.fileId) == FileKind::ordinary)
            checkFile({entry.fileId, ""}, findings);
        else if (kindOf(entry.fileId) == FileKind::set)
            checkFolder(entry.fileId, findings);
    }
    std::vector<std::vector<std::string>> rows;
    int code = kExitSuccess;
    for (const Finding& finding : findings) {
        std::string verdict = "ok";
        if (finding.fault && finding.fault->missing) {
            verdict = kindOf(finding.file.fileId) == FileKind::ordinary ? "missing: the factory contents hold"
                                                                        : "missing";
        } else if (finding.fault) {
            verdict = "broken: " + faultText(*finding.fault);
            code = kExitData;
        }
        if (options.json)
            print(findingJson(finding).dump() + "\n");
        else
            rows.push_back({nameOf(finding.file), verdict});
    }
    if (!options.json)
        print(table(rows));
    return code;
}

} // namespace

void addSettingsCheck(CLI::App& settings, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* app =
        settings.add_subcommand("check", "Read every file and tell what is wrong with it")->group("Commands");
    app->add_flag("--json", options->json, "Print a JSON object a file");
    app->footer("Example: vx63 settings check");
    app->callback([options, &command] { command = [options] { return check(*options); }; });
}

} // namespace tool
