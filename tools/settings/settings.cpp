// vx63 settings: look after the settings files. This file: what its commands have in common.
#include "settings/subcommands.h"

namespace tool {

void addSettings(CommandLine& program)
{
    CommandLine settings = program.addGroup("settings", "Read, change and check the settings files",
                                            "vx63 settings set sys_set/volume 0 VOLUME 2");
    settings.notes("FILE is the id of a file, a name such as ch_set/fm, or FOLDER/NAME of a setting set.");
    addSettingsList(settings);
    addSettingsShow(settings);
    addSettingsDescribe(settings);
    addSettingsGet(settings);
    addSettingsSet(settings);
    addSettingsDiff(settings);
    addSettingsReset(settings);
    addSettingsExport(settings);
    addSettingsImport(settings);
    addSettingsCheck(settings);
}

} // namespace tool
