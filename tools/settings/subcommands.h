// The commands of `vx63 settings`, each in a file of its own; see commands.h.
#pragma once

#include "commands.h"

namespace tool {

void addSettingsList(CLI::App& settings, Command& command);
void addSettingsShow(CLI::App& settings, Command& command);
void addSettingsGet(CLI::App& settings, Command& command);
void addSettingsSet(CLI::App& settings, Command& command);
void addSettingsDiff(CLI::App& settings, Command& command);
void addSettingsReset(CLI::App& settings, Command& command);
void addSettingsExport(CLI::App& settings, Command& command);
void addSettingsImport(CLI::App& settings, Command& command);
void addSettingsCheck(CLI::App& settings, Command& command);

} // namespace tool
