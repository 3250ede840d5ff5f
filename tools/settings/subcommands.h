// The commands of `vx63 settings`, each in a file of its own; see commands.h.
#pragma once

#include "commands.h"

namespace tool {

void addSettingsList(CommandLine& settings);
void addSettingsShow(CommandLine& settings);
void addSettingsDescribe(CommandLine& settings);
void addSettingsGet(CommandLine& settings);
void addSettingsSet(CommandLine& settings);
void addSettingsDiff(CommandLine& settings);
void addSettingsReset(CommandLine& settings);
void addSettingsExport(CommandLine& settings);
void addSettingsImport(CommandLine& settings);
void addSettingsCheck(CommandLine& settings);

} // namespace tool
