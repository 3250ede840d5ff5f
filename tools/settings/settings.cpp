// vx63 settings: look after the settings files. This file: what its commands have in common.
#include "settings/subcommands.h"

namespace tool {

void addSettings(CLI::App& app, Command& command)
{
    CLI::App* settings =
        app.add_subcommand("settings", "Read, change and check the settings files")->group("Commands");
    settings->require_subcommand(1);
    settings->footer(
        "FILE is the id of a file, a name such as ch_set/fm, or FOLDER/NAME of a setting set.\n\n"
        "Example: vx63 settings set sys_set/volume 0 VOLUME 2");
    addSettingsList(*settings, command);
    addSettingsShow(*settings, command);
    addSettingsGet(*settings, command);
    addSettingsSet(*settings, command);
    addSettingsDiff(*settings, command);
    addSettingsReset(*settings, command);
    addSettingsExport(*settings, command);
    addSettingsImport(*settings, command);
    addSettingsCheck(*settings, command);
}

} // namespace tool
