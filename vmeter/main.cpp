// vx63-vmeter: a virtual meter, five service processes over one simulated scene.
#include "cli/declaration.h"
#include "cli/help.h"
#include "cli/mistake.h"
#include "cli/printable.h"
#include "failure.h"
#include "lmsg.h"
#include "process/descriptor.h"
#include "process/isolation.h"
#include "process/queues.h"
#include "process/run.h"
#include "process/state_json.h"
#include "process/state_query.h"
#include "process/supervisor.h"
#include "scene/fault_rules.h"
#include "scene/load.h"
#include "services/settings_files.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace vmeter;

struct Options {
    std::optional<std::string> scene;
    std::optional<std::string> state;
    std::optional<std::string> trace;
    std::vector<std::string> faults;
    bool inPlace = false;
    std::optional<std::string> stateJson;
    bool emptySettings = false;
    std::string settings; // empty: not the meter's own
    bool json = false;
    int readyFd = -1;
    std::vector<std::string> command;

    // Between run and the serve that it starts inside.
    int controlFd = -1;
    int begunFd = -1;
    int wordsFd = -1;
    int holdFd = -1;
    int sceneFd = -1;
    int traceFd = -1;
    int stateJsonFd = -1;
    std::string signals;
    bool probe = false;
};

// Descriptors that run handed over are not for the services' and the command's programs.
Descriptor takeOver(int number)
{
    if (number >= 0)
        fcntl(number, F_SETFD, FD_CLOEXEC);
    return Descriptor(number);
}

// From the descriptor that run has opened, or else from the file.
Scene readScene(const std::string& path, Descriptor file)
{
    if (!file)
        file = Descriptor(openScene(path));
    std::string text;
    char part[4096];
    ssize_t got;
    while (text.size() <= kSceneSizeMax && (got = read(file.get(), part, sizeof part)) != 0) {
        if (got > 0)
            text.append(part, static_cast<std::size_t>(got));
        else if (errno != EINTR)
            throw Failure(path, errorText(errno), "give a file that you may read with --scene");
    }
    return parseScene(text, path);
}

int serve(const Options& options)
{
    const Descriptor control = takeOver(options.controlFd);
    const Descriptor hold = takeOver(options.holdFd);
    Descriptor trace = takeOver(options.traceFd);
    if (const Descriptor words = takeOver(options.wordsFd))
        dup2(words.get(), STDERR_FILENO);
    if (Descriptor begun = takeOver(options.begunFd))
        writeByte(begun.get(), 1);

    Scene scene = options.scene ? readScene(*options.scene, takeOver(options.sceneFd)) : defaultScene();
    for (const std::string& fault : options.faults)
        scene.faults.push_back(parseFault(fault));
    if (options.trace)
        trace = Descriptor(openTrace(*options.trace));
    Descriptor stateJson = takeOver(options.stateJsonFd);
    if (options.stateJson)
        stateJson = Descriptor(openStateJson(*options.stateJson));

    const Descriptor claim = claimQueues();
    // What an earlier meter has told stays until this one begins.
    for (const Descriptor* told : {&trace, &stateJson}) {
        if (*told && ftruncate(told->get(), 0) != 0) {
            // A pipe has no length.
        }
    }
    Supervision supervision;
    supervision.command = options.command;
    supervision.traceFd = trace.get();
    supervision.readyFd = options.readyFd;
    supervision.controlFd = options.controlFd;
    supervision.claimFd = claim.get();
    supervision.stateJsonFd = stateJson.get();
    supervision.settings.own = !options.settings.empty();
    if (options.settings == "factory")
        fillSettings(supervision.settings);
    supervision.callerSignals =
        options.controlFd >= 0 ? CallerSignals::fromText(options.signals) : CallerSignals::current();
    return supervise(scene, supervision);
}

int run(const Options& options)
{
    RunOptions runOptions;
    runOptions.scene = options.scene;
    runOptions.state = options.state;
    runOptions.trace = options.trace;
    runOptions.faults = options.faults;
    runOptions.inPlace = options.inPlace;
    runOptions.stateJson = options.stateJson;
    runOptions.emptySettings = options.emptySettings;
    runOptions.command = options.command;
    return vmeter::run(runOptions);
}

int check(const Options& options)
{
    if (options.probe) { // inside the namespaces: are there message queues?
        uint8_t message[LMSG_SIZE_MAX];
        const int32_t result = lmsg_trcvMq(255, message, sizeof message, nullptr, 0);
        if (result == LMSG_OK || result == LMSG_ERR_TIMEOUT)
            return 0;
        std::printf("message queues: lmsg_err=%d\n", static_cast<int>(result));
        return 1;
    }
    try {
        tryNamespaces();
    } catch (const Failure& failure) {
        std::fprintf(stderr, "vx63-vmeter: %s\n", cli::printable(failure.what()).c_str());
        return 1;
    }
    std::puts("namespaces work here: 'vx63-vmeter run' needs nothing else");
    return 0;
}

int showState(const Options& options)
{
    const std::string state = queryState();
    const std::string line = state.substr(0, state.find('\n'));
    std::fputs(options.json ? (cli::printable(line) + "\n").c_str() : stateText(state).c_str(), stdout);
    return 0;
}

std::string faultError(const std::string& text)
{
    try {
        parseFault(text);
    } catch (const std::invalid_argument& error) {
        return text + ": " + error.what();
    }
    return "";
}

std::string descriptorError(const std::string& text)
{
    int number = -1;
    const bool open = CLI::detail::lexical_cast(text, number) && number >= 0 && fcntl(number, F_GETFD) >= 0;
    return open ? "" : text + " is no open descriptor";
}

std::string settingsError(const std::string& text)
{
    return text == "factory" || text == "empty" ? "" : "'" + text + "' is neither factory nor empty";
}

void addMeterOptions(CLI::App& command, Options& options)
{
    command.add_option("--scene", options.scene, "scene file; none: the scene that is built in")
        ->type_name("FILE");
    command.add_option("--trace", options.trace, "write every message to FILE, one line of JSON each")
        ->type_name("FILE");
    command.add_option("--state-json", options.stateJson, "write the meter's state to FILE at the end")
        ->type_name("FILE");
    command
        .add_option("--fault", options.faults,
                    "make requests go wrong: SERVICE[/COMMAND][:FIRST[-[LAST]]]=KIND[,VALUE][@PROBABILITY]; "
                    "may be repeated")
        ->type_name("RULE")
        ->allow_extra_args(false)
        ->check(CLI::Validator(faultError, ""));
}

void addRun(CLI::App& app, cli::Extras& extras, Options& options)
{
    CLI::App& command = *app.add_subcommand(
        "run", "run a command with a meter of its own: private queues, log and settings folders");
    extras.rest[&command] = "-- COMMAND..."; // not CLI11's to parse
    addMeterOptions(command, options);
    command.add_option("--state", options.state, "keep log and settings folders in DIR")->type_name("DIR");
    command.add_flag("--in-place", options.inPlace,
                     "use this machine's own paths and queues (for a container that refuses namespaces)");
    command.add_flag("--empty-settings", options.emptySettings,
                     "leave empty settings folders empty, without the factory files");
    command.footer(
        "Not a security boundary: COMMAND can write to your files and use the network as it can without "
        "run.\n\n"
        "The exit status is the command's, 128 + n after signal n; 125: the meter cannot run, or something "
        "of it stays, 126: "
        "the command cannot be executed, 127: it is not found.\n\n"
        "Example:\n"
        "  vx63-vmeter run --fault meas/0x104:2=late,300 -- ./my-application");
}

void addServe(CLI::App& app, cli::Extras& extras, Options& options)
{
    CLI::App& command = *app.add_subcommand("serve", "run the services on the queues that are here");
    extras.rest[&command] = "[-- COMMAND...]";
    addMeterOptions(command, options);
    command
        .add_option("--ready-fd", options.readyFd,
                    "write a byte to descriptor N when ready, not 'ready' to stderr")
        ->type_name("N")
        ->check(CLI::Validator(descriptorError, ""));
    command
        .add_option("--settings", options.settings,
                    "the settings folders are the meter's own: fill the empty ones (factory) or not (empty); "
                    "without this it changes none of them")
        ->type_name("factory|empty")
        ->check(CLI::Validator(settingsError, ""));
    command.add_option("--inside", options.controlFd)->group("");
    command.add_option("--begun", options.begunFd)->group("");
    command.add_option("--words", options.wordsFd)->group("");
    command.add_option("--hold", options.holdFd)->group("");
    command.add_option("--scene-fd", options.sceneFd)->group("");
    command.add_option("--trace-fd", options.traceFd)->group("");
    command.add_option("--state-json-fd", options.stateJsonFd)->group("");
    command.add_option("--signals", options.signals)->group("");
    command.footer("Example:\n"
                   "  unshare --ipc --map-root-user vx63-vmeter serve -- ./my-application");
}

void addState(CLI::App& app, cli::Extras& /*extras*/, Options& options)
{
    CLI::App& command = *app.add_subcommand("state", "print the state of the meter that runs here");
    command.add_flag("--json", options.json, "as one line of JSON");
    command.footer("Example:\n"
                   "  vx63-vmeter run -- sh -c './my-application; vx63-vmeter state'");
}

void addCheck(CLI::App& app, cli::Extras& /*extras*/, Options& options)
{
    CLI::App& command = *app.add_subcommand("check", "tell whether 'run' can have namespaces here");
    command.add_flag("--inside", options.probe)->group("");
}

constexpr struct {
    const char* name;
    void (*add)(CLI::App&, cli::Extras&, Options&);
} kCommands[] = {{"run", addRun}, {"serve", addServe}, {"state", addState}, {"check", addCheck}};

int usageError(const std::string& what, const std::string& hint = "see 'vx63-vmeter --help'")
{
    // What to try can stand there already: "did you mean 'meas'?"
    const std::string rest = what.ends_with('?') ? "" : ": " + hint;
    std::fprintf(stderr, "vx63-vmeter: usage: %s%s\n", cli::printable(what).c_str(), rest.c_str());
    return kExitUsage;
}

int usageError(const cli::Mistake& mistake)
{
    return usageError(mistake.why, mistake.hint);
}

int runMain(int argc, char** argv)
{
    const std::vector<std::string> words = cli::wordsIn(argc, argv);
    // What follows "--" belongs to the command, whatever it looks like.
    Options options;
    const auto separator = std::find(words.begin(), words.end(), "--");
    const bool separated = separator != words.end();
    if (separated)
        options.command.assign(separator + 1, words.end());
    const std::vector<std::string> arguments(words.begin(), separator);

    const auto declare = [&](CLI::App& app, cli::Extras& extras, bool all) {
        app.require_subcommand(0, 1);
        app.footer("Example:\n"
                   "  vx63-vmeter run --trace messages.json -- vx63 measure single --freq 557143");
        app.set_version_flag("-V,--version", "vx63-vmeter " VX63_VERSION, "print the version and exit");
        app.set_help_flag("-h,--help", "print this help and exit");
        for (const auto& [name, add] : kCommands)
            if (all || std::ranges::count(arguments, name) > 0)
                add(app, extras, options);
    };
    constexpr const char* kDescription =
        "A virtual meter: the five service processes of the meter over one simulated scene.";
    CLI::App app(kDescription, "vx63-vmeter");
    cli::Extras extras;
    declare(app, extras, cli::needsAll(arguments));
    if (const auto text = cli::answer(app, extras, words)) {
        std::fputs(text->c_str(), stdout);
        return 0;
    }

    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // as CLI11 wants them
    } catch (const CLI::CallForHelp&) {
        if (const auto mistake = cli::mistakeIn(app, extras, words); mistake && mistake->inCommand)
            return usageError(*mistake);
        std::fputs(cli::helpOf(app, extras, arguments).c_str(), stdout);
        return 0;
    } catch (const CLI::CallForVersion& version) {
        std::puts(version.what());
        return 0;
    } catch (const CLI::ParseError& error) {
        CLI::App all(kDescription, "vx63-vmeter");
        cli::Extras allExtras;
        declare(all, allExtras, true);
        const auto mistake = cli::mistakeIn(all, allExtras, words);
        return usageError(mistake ? *mistake : cli::refusal(app, extras, arguments, error.what()));
    }

    if (app.get_subcommands().empty())
        return usageError("give run, serve, state or check");
    const std::string& command = app.get_subcommands().front()->get_name();
    if (command == "check")
        return separated ? usageError("check takes no command") : check(options);
    if (command == "state")
        return separated ? usageError("state takes no command") : showState(options);
    if (separated && (options.command.empty() || options.command[0].empty()))
        return usageError("no COMMAND after --");
    if (command == "serve")
        return serve(options);
    if (!separated)
        return usageError("run needs -- COMMAND");
    return run(options);
}

} // namespace

int main(int argc, char** argv)
{
    // A standard descriptor that is closed would become the first file that is opened.
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(standard, F_GETFD) < 0)
            open("/dev/null", O_RDWR);
    }
    try {
        return runMain(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vx63-vmeter: %s\n", cli::printable(error.what()).c_str());
        return vmeter::kExitFailure;
    }
}
