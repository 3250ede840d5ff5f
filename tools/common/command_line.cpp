#include "common/command_line.h"

#include "cli/help.h"
#include "cli/mistake.h"
#include "cli/place.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/output.h"
#include "common/terminal.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

namespace tool {

namespace {

Command printing(const std::string& text)
{
    return [text] {
        print(text);
        return kExitSuccess;
    };
}

// "'red' is neither on nor off", "'red' is none of boot, main, sub"
std::string noneOf(const std::string& text, const std::vector<std::string>& words)
{
    if (words.size() == 2)
        return "'" + text + "' is neither " + words[0] + " nor " + words[1];
    return "'" + text + "' is none of " + CLI::detail::join(words, ", ");
}

constexpr const char* kIdVariable = "VX63_PROCESS_ID";

Failure wrongUsage(const cli::Mistake& mistake)
{
    return {kExitUsage, "wrong usage of '" + mistake.line + "'", mistake.why, mistake.hint};
}

} // namespace

Option& Option::required()
{
    m_option->required();
    return *this;
}

Option& Option::needs(const Option& other)
{
    m_option->needs(other.m_option);
    return *this;
}

Option& Option::excludes(const Option& other)
{
    m_option->excludes(other.m_option);
    return *this;
}

Option& Option::offers(const std::string& words)
{
    std::vector<std::string> list;
    for (const std::string& word : CLI::detail::split(words, ','))
        list.push_back(CLI::detail::trim_copy(word));
    return offers([list](const cli::Given&) { return list; });
}

Option& Option::offers(cli::Words words)
{
    m_extras->words[m_option] = std::move(words);
    return *this;
}

bool Option::given() const
{
    return m_option->count() > 0;
}

bool CommandLine::isWanted(const std::string& name) const
{
    return m_app != nullptr && (m_program->whole || std::ranges::count(m_program->words, name) > 0);
}

CommandLine CommandLine::add(const char* name, const char* description, const char* example)
{
    CLI::App* app = m_app->add_subcommand(name, description)->group("Commands");
    app->footer(std::string("Example: ") + example);
    return {app, *m_program};
}

CommandLine CommandLine::addGroup(const char* name, const char* description, const char* example)
{
    if (!isWanted(name))
        return {nullptr, *m_program};
    CommandLine group = add(name, description, example);
    group.m_app->require_subcommand(1);
    return group;
}

void CommandLine::notes(const char* text)
{
    if (m_app != nullptr)
        m_app->footer(std::string(text) + "\n\n" + m_app->get_footer());
}

Option CommandLine::flag(const std::string& name, bool& target, const std::string& description)
{
    return option(*m_app->add_flag(name, target, description)->disable_flag_override());
}

Option CommandLine::text(const std::string& name, std::string& target, const std::string& type,
                         const std::string& description)
{
    return option(*m_app->add_option(name, target, description)->type_name(type));
}

Option CommandLine::seconds(const std::string& name, int64_t& targetMs, const std::string& description,
                            double lowest, double highest)
{
    return value(name, "S", description, [&targetMs, name, lowest, highest](const std::string& text) {
        targetMs = secondsIn(name, text, lowest, highest);
    });
}

Option CommandLine::value(const std::string& name, const std::string& type, const std::string& description,
                          std::function<void(const std::string&)> take)
{
    return option(
        *m_app->add_option_function<std::string>(name, std::move(take), description)->type_name(type));
}

Option CommandLine::choice(const std::string& name, const std::string& type, const std::string& description,
                           std::initializer_list<const char*> words, std::function<void(size_t)> take)
{
    const std::vector<std::string> list(words.begin(), words.end());
    return value(name, type, description,
                 [name, list, take = std::move(take)](const std::string& text) {
                     const auto word = std::find(list.begin(), list.end(), text);
                     if (word == list.end())
                         throw WrongUsage(name, noneOf(text, list));
                     take(static_cast<size_t>(word - list.begin()));
                 })
        .offers([list](const cli::Given&) { return list; });
}

void CommandLine::check(std::function<void()> check)
{
    m_check = std::move(check);
}

void CommandLine::finish(Command work)
{
    m_app->callback([app = m_app, check = m_check, work = std::move(work), program = m_program] {
        for (const CLI::App* below : app->get_subcommands()) { // it is this one that was given
            for (const CLI::Option* option : app->get_options())
                if (option->count() > 0)
                    throw WrongUsage(cli::nameOf(*option) + " is not for '" + below->get_name() + "'");
            return;
        }
        if (check)
            check();
        program->chosen = work;
    });
}

void CommandLine::addForm(const char* name, Form& target, Form form, const std::string& description)
{
    CLI::Option* added = m_app->add_flag_callback(
        name, [&target, form] { target = form; }, description);
    added->disable_flag_override();
    for (CLI::Option* other : m_forms)
        added->excludes(other);
    m_forms.push_back(added);
}

void CommandLine::csv(Form& form, const std::string& description)
{
    addForm("--csv", form, Form::csv, description);
}

void CommandLine::addForms(Form& form)
{
    addForm("--json", form, Form::json, "Print JSON, a list as an array");
    addForm("--jsonl", form, Form::jsonl, "Print JSON, an object a line");
}

void CommandLine::addJson(bool& json)
{
    flag("--json", json, "Print a JSON object");
}

void CommandLine::addYes(bool& yes)
{
    flag("--yes", yes, "Do not ask; needed where there is no terminal");
}

void CommandLine::addId(int32_t& id)
{
    const Option option =
        value("--id", "N",
              "Own process id, 0 to 17 but none of the services' 0, 6, 8, 10, 12 [VX63_PROCESS_ID, else 17]",
              [&id](const std::string& text) { id = processIdIn("--id", text); })
            .offers("1, 2, 3, 4, 5, 7, 9, 11, 13, 14, 15, 16, 17");
    // Not by CLI11: a wrong variable must not keep anybody from help.
    check([option, &id, check = std::move(m_check)] {
        if (check)
            check();
        const char* const text = std::getenv(kIdVariable);
        if (option.given())
            setDoctorId(id);
        else if (text != nullptr && *text != '\0')
            id = processIdIn(kIdVariable, text);
    });
}

Command readCommandLine(int argc, char** argv, const char* description, const char* footer,
                        void (*declare)(CommandLine&))
{
    std::vector<std::string> words = cli::wordsIn(argc, argv);
    const auto prepare = [&](CLI::App& app, CommandLine::Program& program) {
        app.set_version_flag("-V,--version", "vx63 " VX63_VERSION, "Print the version and exit");
        app.set_help_flag("-h,--help", "Print this help and exit");
        app.footer(footer);
        app.require_subcommand(1);
        CommandLine line(&app, program);
        // For the help: it may stand anywhere, and is taken out of the words before.
        line.text("--color", program.colour, "WHEN",
                  "Colour verdicts and errors: auto, always, never, in any command [auto: on a terminal, "
                  "unless "
                  "NO_COLOR is set]")
            .offers("auto, always, never");
        declare(line);
    };
    CLI::App app(description, "vx63");
    CommandLine::Program program{words, cli::needsAll(words), {}, {}, {}};
    prepare(app, program);
    if (const auto text = cli::answer(app, program.extras, words))
        return printing(*text);

    const auto mistake = [&](const std::string& why, const std::string& option) -> cli::Mistake {
        CLI::App all(description, "vx63");
        CommandLine::Program whole{words, true, {}, {}, {}};
        prepare(all, whole);
        if (const auto found = cli::mistakeIn(all, whole.extras, words))
            return *found;
        return cli::refusal(app, program.extras, words, why, option);
    };
    try {
        takeColourOption(words);
    } catch (const WrongUsage& error) { // no command has the option: it would be the mistake
        throw wrongUsage(cli::refusal(app, program.extras, {}, error.what()));
    }
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::CallForHelp&) {
        if (const auto found = cli::mistakeIn(app, program.extras, words); found && found->inCommand)
            throw wrongUsage(*found);
        return printing(cli::helpOf(app, program.extras, words));
    } catch (const CLI::CallForVersion& version) {
        return printing(std::string(version.what()) + "\n");
    } catch (const CLI::ParseError& error) {
        throw wrongUsage(mistake(error.what(), ""));
    } catch (const WrongUsage& error) {
        throw wrongUsage(mistake(error.what(), error.option()));
    }
    return program.chosen;
}

} // namespace tool
