// The command line: how a command declares itself, its options and its arguments. CLI11 does the work behind
// this header alone, since whatever includes it takes ten times as long to compile.
#pragma once

#include "cli/declaration.h"
#include "common/list.h"
#include "common/numbers.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace tool {

// What a command does. Returns the exit code; throws Failure or BrokenPipe.
using Command = std::function<int()>;

// An option or a positional argument that has been declared.
class Option {
public:
    Option(CLI::Option& option, cli::Extras& extras) : m_option(&option), m_extras(&extras) {}
    Option& required();
    Option& needs(const Option& other);
    Option& excludes(const Option& other);
    Option& offers(const std::string& words); // what completes the value: "uhf, bs, cs"
    Option& offers(cli::Words words);
    bool given() const; // for CommandLine::check

private:
    CLI::Option* m_option;
    cli::Extras* m_extras;
};

// The command line of one command. Names: "--json", or "FILE" for a positional argument. Types are what the
// help shows for the value, and tell completion what to offer: see cli/declaration.h. Descriptions end with
// the value that holds without the option: "[0]".
class CommandLine {
public:
    // Declares a command below this one: `work` is called with its options when it is the one that was given.
    // `declare` adds what the command line can hold, where it names the command; by themselves come --json
    // where Options has `json` (an answer that is one object), --json and --jsonl where it has `form` (one
    // that is a list), --yes and --id where it has `yes` and `id`. `declare` can add commands below this one,
    // of which one can be given in place of what the command itself takes.
    //   example  as a person types it: "vx63 keys --watch"
    template <class Options>
    void addCommand(const char* name, const char* description, const char* example,
                    int (*work)(const Options&),
                    std::type_identity_t<void (*)(CommandLine&, Options&)> declare = nullptr)
    {
        if (!isWanted(name))
            return;
        CommandLine line = add(name, description, example);
        const auto options = std::make_shared<Options>();
        if (declare != nullptr)
            declare(line, *options);
        if constexpr (requires { options->form; })
            line.addForms(options->form);
        if constexpr (requires { options->json; })
            line.addJson(options->json);
        if constexpr (requires { options->yes; })
            line.addYes(options->yes);
        if constexpr (requires { options->id; })
            line.addId(options->id);
        line.finish([options, work] { return work(*options); });
    }

    // Declares a command below this one that only holds others.
    CommandLine addGroup(const char* name, const char* description, const char* example);

    // What the help says before the example.
    void notes(const char* text);

    Option flag(const std::string& name, bool& target, const std::string& description);
    Option text(const std::string& name, std::string& target, const std::string& type,
                const std::string& description);
    // --csv, of a command whose Options has `form`.
    void csv(Form& form, const std::string& description = "Print comma-separated values");
    // Whole seconds or a fraction of them, kept in milliseconds.
    Option seconds(const std::string& name, int64_t& targetMs, const std::string& description, double lowest,
                   double highest);
    // Gives the text to `take`, which throws WrongUsage.
    Option value(const std::string& name, const std::string& type, const std::string& description,
                 std::function<void(const std::string&)> take);
    // One of some words: gives its place among them to `take`.
    Option choice(const std::string& name, const std::string& type, const std::string& description,
                  std::initializer_list<const char*> words, std::function<void(size_t)> take);

    // A number, or an optional one.
    template <class T>
    Option number(const std::string& name, T& target, const std::string& type, const std::string& description,
                  uint64_t lowest, uint64_t highest)
    {
        return value(name, type, description, [&target, name, lowest, highest](const std::string& text) {
            using Value = std::remove_cvref_t<decltype(std::optional(target).value())>;
            target = static_cast<Value>(numberIn(name, text, lowest, highest));
        });
    }

    // Called when the whole command line has been read, before the command; throws WrongUsage.
    void check(std::function<void()> check);

private:
    struct Program { // what all command lines of a program share
        std::vector<std::string> words;
        bool whole; // all commands are declared, not only those whose names are among the words
        Command chosen;
        std::string colour;
        cli::Extras extras;
    };

    CommandLine(CLI::App* app, Program& program) : m_app(app), m_program(&program) {}
    bool isWanted(const std::string& name) const;
    CommandLine add(const char* name, const char* description, const char* example);
    void addForm(const char* name, Form& target, Form form, const std::string& description);
    void addForms(Form& form);
    void addJson(bool& json);
    void addYes(bool& yes);
    void addId(int32_t& id);
    void finish(Command work);
    Option option(CLI::Option& option) { return {option, m_program->extras}; }

    friend Command readCommandLine(int argc, char** argv, const char* description, const char* footer,
                                   void (*declare)(CommandLine&));

    CLI::App* m_app; // null: of a group that nobody asks for, which takes commands and notes in vain
    Program* m_program;
    std::vector<CLI::Option*> m_forms; // of which one can be given
    std::function<void()> m_check;
};

// Reads the command line of the program and returns what is to be done; asked for help or the version, that
// is to print it. Throws Failure for wrong usage.
Command readCommandLine(int argc, char** argv, const char* description, const char* footer,
                        void (*declare)(CommandLine&));

} // namespace tool
