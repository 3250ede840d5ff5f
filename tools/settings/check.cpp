// vx63 settings check: read every file and judge it; bring lists and sets in step before.
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "settings/findings.h"
#include "settings/meaning.h"
#include "settings/set_list.h"
#include "settings/subcommands.h"

#include <string>
#include <vector>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    Form form = Form::text;
    bool repair = false;
};

Json findingJson(const Finding& finding)
{
    Json json = {{"id", finding.file.fileId},
                 {"name", printable(nameOf(finding.file))},
                 {"ok", !finding.fault || finding.fault->missing},
                 {"missing", finding.fault && finding.fault->missing},
                 {"line", nullptr},
                 {"column", nullptr},
                 {"fault", nullptr},
                 {"note", nullptr}};
    if (!finding.meaningless.empty())
        json.set("note", listedValues(finding.meaningless));
    if (!finding.fault || finding.fault->missing)
        return json;
    if (finding.fault->line != 0)
        json.set("line", finding.fault->line);
    if (finding.fault->column != 0)
        json.set("column", finding.fault->column);
    json.set("fault", printable(finding.fault->reason));
    return json;
}

void repairLists(int32_t id)
{
    const Identity identity(id);
    for (const vx63::settings::SetPair& pair : vx63::settings::kSetPairs)
        if (repairList(static_cast<uint32_t>(pair.set)))
            complain(nameOf({static_cast<uint32_t>(pair.list), ""}) + " is repaired");
}

int check(const Options& options)
{
    if (options.repair)
        repairLists(options.id);
    Table rows;
    List findings(options.form);
    int code = kExitSuccess;
    for (const Finding& finding : examineFiles()) {
        std::string verdict = "ok";
        if (!finding.meaningless.empty())
            verdict += ", but " + listedValues(finding.meaningless);
        if (finding.fault && finding.fault->missing) {
            verdict = kindOf(finding.file.fileId) == FileKind::ordinary ? "missing: the factory contents hold"
                                                                        : "missing";
        } else if (finding.fault) {
            verdict = "broken: " + faultText(*finding.fault);
            code = kExitData;
        }
        if (options.form != Form::text)
            findings.add(findingJson(finding));
        else
            rows.push_back({nameOf(finding.file), verdict});
    }
    if (options.form == Form::text)
        print(table(rows));
    findings.end();
    return code;
}

} // namespace

void addSettingsCheck(CommandLine& settings)
{
    settings.addCommand("check", "Read every file and tell what is wrong with it", "vx63 settings check",
                        check, [](CommandLine& line, Options& options) {
                            line.flag("--repair", options.repair,
                                      "Bring lists and sets in step before, by the sets that have a file");
                        });
}

} // namespace tool
