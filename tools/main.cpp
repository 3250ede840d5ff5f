// vx63: the meter on the command line.
#include "commands.h"
#include "common/failure.h"
#include "common/output.h"

#include <csignal>
#include <string>

using namespace tool;

namespace {

constexpr const char* kFooter = R"(Exit codes:
  0    done
  1    the meter's services do not answer, or not as they should
  2    the meter refuses a value
  3    measured, but there was no lock
  4    settings files differ
  5    the doctor found something wrong
  6    the buzzer is sounding a repeating pattern
  7    the antenna power supply reports a fault
  8    the buzzer is busy with a sound of higher priority
  64   wrong usage
  65   a settings file is broken
  66   an input file cannot be read
  70   internal error
  73   the name is taken, or there is no room for another set
  74   the output cannot be written
  75   another vx63 uses the same process id
  77   not confirmed
  129, 130, 143  ended by a closed terminal, Ctrl-C, SIGTERM (128 + signal)
  141  the reader of the output went away

Example: vx63 measure single --freq 557143)";

void addCommands(CommandLine& program)
{
    addMeasure(program);
    addScan(program);
    addAngle(program);
    addInput(program);
    addPowerSupply(program);
    addStatus(program);
    addInfo(program);
    addDoctor(program);
    addKeys(program);
    addFailure(program);
    addPower(program);
    addUpdate(program);
    addFactoryReset(program);
    addDeveloperMode(program);
    addCalibrate(program);
    addBattery(program);
    addBuzzer(program);
    addVolume(program);
    addBrightness(program);
    addLog(program);
    addSettings(program);
    addSets(program);
}

int run(int argc, char** argv)
{
    constexpr const char* kDescription =
        "Measures with the meter, switches it, reads its log and looks after its settings.";
    const int code = readCommandLine(argc, argv, kDescription, kFooter, addCommands)();
    closeOutput();
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    prepareOutput();
    try {
        return run(argc, argv);
    } catch (const Failure& failure) {
        complain(failure.what());
        return failure.code();
    } catch (const BrokenPipe&) {
        return kExitSignal + SIGPIPE;
    } catch (const std::exception& error) {
        complain(std::string("internal error: ") + error.what() + ": please report it with the command line");
        return kExitInternal;
    }
}
