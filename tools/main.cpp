// vx63: the meter on the command line.
#include "commands.h"
#include "common/failure.h"
#include "common/output.h"
#include "common/text.h"

#include <csignal>
#include <filesystem>
#include <new>
#include <string>
#include <system_error>

using namespace tool;

namespace {

std::string footer()
{
    std::string text = "Exit codes:\n";
    for (const ExitKind& kind : exitKinds())
        text += format("  %-4d %s", kind.code, kind.text) +
                (kind.code == kExitSuccess ? "\n" : format(" (%s)\n", kind.word));
    return text + R"(  129, 130, 143  ended by a closed terminal, Ctrl-C, SIGTERM (128 + signal)
  141  the reader of the output went away

Example: vx63 measure single --freq 557143)";
}

void addCommands(CommandLine& program)
{
    addMeasure(program);
    addLive(program);
    addScan(program);
    addSurvey(program);
    addChannels(program);
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
    const int code = readCommandLine(argc, argv, kDescription, footer().c_str(), addCommands)();
    closeOutput();
    return code;
}

int reportWant(const std::string& what, bool json)
{
    report({kExitInternal, "cannot go on", what, "end other programs"}, json);
    return kExitInternal;
}

} // namespace

int main(int argc, char** argv)
{
    prepareOutput();
    const bool json = asksForJson({argv + 1, argv + argc});
    try {
        return run(argc, argv);
    } catch (const Failure& failure) {
        report(failure, json);
        return failure.code();
    } catch (const BrokenPipe&) {
        return kExitSignal + SIGPIPE;
    } catch (const std::filesystem::filesystem_error& error) {
        const std::string path = error.path1().string();
        report(
            {kExitNoInput, "cannot look at " + path, error.code().message(), "look at 'ls -ld " + path + "'"},
            json);
        return kExitNoInput;
    } catch (const std::system_error& error) { // of a thread
        return reportWant(error.code().message(), json);
    } catch (const std::bad_alloc&) {
        return reportWant("no memory is left", json);
    } catch (const std::exception& error) {
        report({kExitInternal, "internal error", error.what(), "please report it with the command line"},
               json);
        return kExitInternal;
    }
}
