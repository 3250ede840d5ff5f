// The commands: each adds itself to the command line and, when it is the one that was given, sets what is
// to be done. A new command is a file with such a function, a line here and one in main.cpp, an entry in
// the man page and in the completion.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace tool {

// Returns the exit code; throws Failure or BrokenPipe.
using Command = std::function<int()>;

void addMeasure(CLI::App& app, Command& command);
// Below measure.
void addConstellation(CLI::App& measure, Command& command);
void addDelayProfile(CLI::App& measure, Command& command);
void addMulti(CLI::App& measure, Command& command);
void addOptical(CLI::App& measure, Command& command);
void addDc(CLI::App& measure, Command& command);
void addMeasureAngle(CLI::App& measure, Command& command);
void addScan(CLI::App& app, Command& command);
void addAngle(CLI::App& app, Command& command);
void addInput(CLI::App& app, Command& command);
void addPowerSupply(CLI::App& app, Command& command);
void addStatus(CLI::App& app, Command& command);
void addInfo(CLI::App& app, Command& command);
void addDoctor(CLI::App& app, Command& command);
void addKeys(CLI::App& app, Command& command);
void addFailure(CLI::App& app, Command& command);
void addPower(CLI::App& app, Command& command);
void addUpdate(CLI::App& app, Command& command);
void addFactoryReset(CLI::App& app, Command& command);
void addDeveloperMode(CLI::App& app, Command& command);
void addCalibrate(CLI::App& app, Command& command);
void addBattery(CLI::App& app, Command& command);
void addBuzzer(CLI::App& app, Command& command);
void addVolume(CLI::App& app, Command& command);
void addBrightness(CLI::App& app, Command& command);
void addLog(CLI::App& app, Command& command);
void addSettings(CLI::App& app, Command& command);
void addSets(CLI::App& app, Command& command);

} // namespace tool
