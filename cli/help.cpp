#include "cli/help.h"

#include "cli/columns.h"
#include "cli/place.h"

#include <algorithm>
#include <set>
#include <unistd.h>

namespace cli {

namespace {

constexpr size_t kNarrowest = 40, kTwoColumns = 64, kWidest = 80;

// Texts one under the other, their lines broken at blanks, and within a word that no line holds.
class Page {
public:
    explicit Page(size_t width) : m_width(width) {}

    // Lines but the first begin at column `indent`, all but the last end with `mark`. What has been begun is
    // gone on with.
    void add(const std::string& text, size_t indent, const std::string& mark = "")
    {
        const size_t width = m_width - mark.size();
        for (const std::string& word : CLI::detail::split(text, ' ')) {
            if (m_line.size() > indent && m_line.size() + word.size() > width)
                end(indent, mark);
            m_line += word;
            while (m_line.size() > width) {
                size_t cut = m_line.find_last_of("[=", width);
                cut = cut == std::string::npos || cut <= indent ? width : cut;
                const std::string rest = m_line.substr(cut);
                m_line.resize(cut);
                end(indent, mark);
                m_line += rest;
            }
            m_line += ' ';
        }
        end(0, "");
    }

    // A name, and at its column what it is; below the name where the page is narrow.
    void entry(const std::string& name, const std::string& text)
    {
        const size_t column = m_width < kTwoColumns ? 8 : 26;
        m_line = "  ";
        if (name.size() + 4 > column)
            add(name, 6);
        else
            m_line += name;
        m_line.resize(column, ' ');
        add(text, column);
    }

    void heading(const std::string& text) { m_text += "\n" + text + ":\n"; }

    // A line of its own: an example, whose lines a shell puts together again; or laid out with blanks, and
    // further lines begin where its second column does.
    void line(const std::string& text)
    {
        const size_t begin = std::min(text.find_first_not_of(' '), text.size());
        const size_t gap = text.find("  ", begin);
        if (gap != std::string::npos) {
            const size_t column = text.find_first_not_of(' ', gap);
            m_line = text.substr(0, column);
            add(text.substr(column), column);
        } else if (begin > 0 || text.starts_with("Example: ")) {
            m_line = text.substr(0, begin);
            add(text.substr(begin), begin + 2, " \\");
        } else {
            add(text, 0);
        }
    }

    std::string text() { return std::move(m_text); }

private:
    void end(size_t indent, const std::string& mark)
    {
        m_line.erase(m_line.find_last_not_of(' ') + 1);
        m_text += m_line + mark + "\n";
        m_line.assign(indent, ' ');
    }

    size_t m_width;
    std::string m_line;
    std::string m_text;
};

std::string listOf(const std::set<CLI::Option*>& options)
{
    std::set<std::string> names; // not by where they lie in memory
    for (const CLI::Option* option : options)
        names.insert(nameOf(*option));
    return CLI::detail::join(names, ", ");
}

// "--freq KHZ", "-h,--help"
std::string leftOf(const CLI::Option& option)
{
    std::string text = option.get_positional() ? nameOf(option) : option.get_name(false, true);
    if (takesValue(option) && typeOf(option) != text)
        text += " " + typeOf(option);
    return text + (isRepeatable(option) ? " ..." : "");
}

std::string rightOf(const CLI::Option& option)
{
    std::string text = option.get_description();
    if (option.get_required() && !option.get_positional())
        text += " (required)";
    if (!option.get_needs().empty())
        text += " (needs " + listOf(option.get_needs()) + ")";
    if (!option.get_excludes().empty())
        text += " (not with " + listOf(option.get_excludes()) + ")";
    return text;
}

} // namespace

std::string helpOf(const CLI::App& program, const Extras& extras, const std::vector<std::string>& words)
{
    const Place place(program, words);
    const CLI::App& command = *place.command;
    const auto arguments = argumentsOf(command);
    const auto commands = commandsOf(command);
    Page page(std::clamp(columnsOf(STDOUT_FILENO).value_or(kWidest), kNarrowest, kWidest));
    page.add(command.get_description(), 0);
    std::string usage = "Usage: " + place.line + " [OPTION]...";
    for (const CLI::Option* argument : arguments)
        usage += argument->get_required() ? " " + nameOf(*argument) : " [" + nameOf(*argument) + "]";
    if (!commands.empty() && arguments.empty())
        usage += " COMMAND";
    if (const auto rest = extras.rest.find(&command); rest != extras.rest.end())
        usage += " " + rest->second;
    page.add(usage, 4);
    if (!commands.empty() && !arguments.empty())
        page.add("       " + place.line + " COMMAND", 4);

    if (!arguments.empty())
        page.heading("Arguments");
    for (const CLI::Option* argument : arguments)
        page.entry(leftOf(*argument), rightOf(*argument));
    page.heading("Options");
    for (const CLI::Option* option : optionsOf(command))
        page.entry(leftOf(*option), rightOf(*option));
    if (!commands.empty())
        page.heading("Commands");
    for (const CLI::App* below : commands)
        page.entry(below->get_name(), below->get_description());
    page.line("");
    for (const std::string& text : CLI::detail::split(command.get_footer(), '\n'))
        page.line(text);
    if (&command == &program) {
        page.line("");
        page.line("More: '" + place.line + " help COMMAND', and the manual page " + place.line + "(1).");
    }
    return page.text();
}

} // namespace cli
