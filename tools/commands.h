// The commands: each adds itself to the command line. A new command is a file with such a function and a line
// here and in main.cpp; docs/adding-a-command.md goes through it.
#pragma once

#include "common/command_line.h"

namespace tool {

void addMeasure(CommandLine& parent);
// Below measure.
void addConstellation(CommandLine& parent);
void addDelayProfile(CommandLine& parent);
void addMulti(CommandLine& parent);
void addOptical(CommandLine& parent);
void addDc(CommandLine& parent);
void addMeasureAngle(CommandLine& parent);
void addLive(CommandLine& parent);
void addScan(CommandLine& parent);
void addSurvey(CommandLine& parent);
void addChannels(CommandLine& parent);
void addAngle(CommandLine& parent);
void addInput(CommandLine& parent);
void addPowerSupply(CommandLine& parent);
void addStatus(CommandLine& parent);
void addInfo(CommandLine& parent);
void addDoctor(CommandLine& parent);
void addKeys(CommandLine& parent);
void addFailure(CommandLine& parent);
void addPower(CommandLine& parent);
void addUpdate(CommandLine& parent);
void addFactoryReset(CommandLine& parent);
void addDeveloperMode(CommandLine& parent);
void addCalibrate(CommandLine& parent);
void addBattery(CommandLine& parent);
void addBuzzer(CommandLine& parent);
void addVolume(CommandLine& parent);
void addBrightness(CommandLine& parent);
void addLog(CommandLine& parent);
void addSettings(CommandLine& parent);
void addSets(CommandLine& parent);

} // namespace tool
