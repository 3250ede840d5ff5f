// vx63: the meter on the command line.
#include "commands.h"
#include "common/failure.h"
#include "common/output.h"

#include <CLI/CLI.hpp>
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

// The innermost command that was given, and how it was called: "vx63 measure single".
struct Given {
    const CLI::App* command;
    std::string caller; // "vx63 measure"
    std::string line;
};

Given given(const CLI::App& app)
{
    Given result{&app, "", app.get_name()};
    while (!result.command->get_subcommands().empty()) {
        result.command = result.command->get_subcommands().front();
        result.caller = result.line;
        result.line += " " + result.command->get_name();
    }
    return result;
}

Failure wrongUsage(const CLI::App& app, const CLI::ParseError& error)
{
    const auto [command, caller, line] = given(app);
    std::string why = error.what();
    if (command->get_require_subcommand_min() > 0) {
        const auto words = command->remaining();
        why = words.empty() ? "no command is given" : "'" + words.front() + "' is no command";
    }
    return {kExitUsage, "wrong usage of '" + line + "'", why, "see '" + line + " --help'"};
}

int run(int argc, char** argv)
{
    CLI::App app("Measures with the meter, switches it, reads its log and looks after its settings.", "vx63");
    app.set_version_flag("--version", "vx63 " VX63_VERSION, "Print the version and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.get_formatter()->column_width(26);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.footer(kFooter);
    app.require_subcommand(1);

    Command command;
    addMeasure(app, command);
    addScan(app, command);
    addAngle(app, command);
    addInput(app, command);
    addPowerSupply(app, command);
    addStatus(app, command);
    addInfo(app, command);
    addDoctor(app, command);
    addKeys(app, command);
    addFailure(app, command);
    addPower(app, command);
    addUpdate(app, command);
    addFactoryReset(app, command);
    addDeveloperMode(app, command);
    addCalibrate(app, command);
    addBattery(app, command);
    addBuzzer(app, command);
    addVolume(app, command);
    addBrightness(app, command);
    addLog(app, command);
    addSettings(app, command);
    addSets(app, command);

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        const auto [asked, caller, line] = given(app);
        print(asked->help(caller));
        closeOutput();
        return kExitSuccess;
    } catch (const CLI::CallForVersion& version) {
        print(std::string(version.what()) + "\n");
        closeOutput();
        return kExitSuccess;
    } catch (const CLI::ParseError& error) {
        throw wrongUsage(app, error);
    }
    const int code = command();
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
