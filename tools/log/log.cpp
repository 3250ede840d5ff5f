// vx63 log: the library's log, at once or as it grows.
#include "commands.h"
#include "common/failure.h"
#include "common/json.h"
#include "common/output.h"
#include "libvx63.h"
#include "log/line.h"
#include "log/reader.h"

#include <deque>
#include <optional>
#include <string>
#include <utility>

namespace tool {

namespace {

constexpr const char* kDefaultPath = "/var/log/libvx63.cpp.txt";
constexpr uint64_t kFollowLines = 10;
constexpr size_t kFlushSize = 65536;

struct Options {
    std::string path;
    bool follow = false;
    bool errors = false;
    Form form = Form::text;
    std::optional<uint64_t> lines;
};

// Lines on their way to standard output: written in large pieces.
class LinePrinter {
public:
    explicit LinePrinter(Form form) : m_form(form), m_objects(form) {}

    void add(std::string_view text, Doubt doubt)
    {
        if (m_form != Form::text)
            return m_objects.add(logLineJson(text, doubt));
        m_pending += logLineText(text, doubt) + '\n';
        if (m_pending.size() >= kFlushSize)
            flush();
    }

    void flush()
    {
        if (m_form != Form::text)
            return m_objects.flush();
        print(m_pending);
        m_pending.clear();
    }

    void end()
    {
        flush();
        m_objects.end();
    }

private:
    Form m_form;
    List m_objects;
    std::string m_pending;
};

bool isWanted(const Options& options, std::string_view text)
{
    if (!options.errors)
        return true;
    const auto line = parseLogLine(text);
    return line && isFailure(*line);
}

int showLog(const Options& options)
{
    LogReader reader(options.path);
    LinePrinter printer(options.form);

    const FolderWatch watch(options.path); // before the first look, so that nothing falls between the two
    if (!reader.open()) {
        if (!options.follow)
            throw Failure(kExitNoInput, "cannot read " + options.path, "there is no such file",
                          "name another FILE; the library writes its log with the first call");
        complain(options.path + " does not exist yet: waiting for it");
    }

    // The lines that are there already: all, or the last ones.
    std::deque<std::pair<std::string, Doubt>> last;
    LogDoubts doubts;
    const LineSink sink = [&](std::string_view text) {
        const Doubt doubt = doubts.of(text);
        if (!isWanted(options, text))
            return;
        if (!options.lines) {
            printer.add(text, doubt);
        } else if (*options.lines > 0) {
            if (last.size() == *options.lines)
                last.pop_front();
            last.emplace_back(text, doubt);
        }
    };
    reader.read(sink);
    if (!options.follow)
        reader.finish(sink);
    for (const auto& [text, doubt] : last)
        printer.add(text, doubt);
    printer.flush();

    while (options.follow) { // until a signal ends the program: there is nothing to clean up
        watch.wait();
        reader.read([&](std::string_view text) {
            const Doubt doubt = doubts.of(text);
            if (isWanted(options, text))
                printer.add(text, doubt);
        });
        printer.flush();
    }
    printer.end();
    return kExitSuccess;
}

} // namespace

void addLog(CommandLine& program)
{
    program.addCommand(
        "log", "Show the library's log", "vx63 log --errors --follow", showLog,
        [](CommandLine& line, Options& options) {
            options.path = g_cLibTestLogFilePath[0] != '\0' ? g_cLibTestLogFilePath : kDefaultPath;
            line.text("FILE", options.path, "", "The log [" + options.path + "]");
            line.flag("--follow", options.follow, "Go on with new lines as they come, until interrupted");
            line.flag("--errors", options.errors, "Only lines that tell of a failure");
            line.number("--lines", options.lines, "N", "Only the last N lines [all; 10 with --follow]", 0,
                        UINT32_MAX);
            line.check([&options] {
                if (options.follow && options.form == Form::json)
                    throw WrongUsage("--json", "an array that is followed has no end: use --jsonl");
                if (options.follow && !options.lines)
                    options.lines = kFollowLines;
            });
        });
}

} // namespace tool
