// vx63 settings diff: compare the settings files with the factory contents or with another folder's.
#include "settings/diff.h"

#include "common/failure.h"
#include "common/json.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"
#include "settings/arguments.h"
#include "settings/record.h"
#include "settings/subcommands.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace tool {

namespace {

struct Options {
    std::optional<FileRef> file;
    std::string folder; // empty: the factory contents
    Form form = Form::text;
};

const uint8_t* recordAt(uint32_t fileId, const Contents& contents, uint32_t record)
{
    return contents.bytes.data() + size_t{record} * vx63::settings::kFiles[fileId].dataSize;
}

// The value of a cell with what it stands for.
std::string quoted(const vx63::settings::Column& column, const uint8_t* record)
{
    const std::string text = printable(cellText(column, record));
    return column.type == vx63::settings::kText ? '"' + text + '"' : text;
}

class Comparison {
public:
    explicit Comparison(const Options& options) : m_options(options), m_differences(options.form) {}

    void compare(const FileRef& file);
    void end() { m_differences.end(); }
    int exitCode() const { return m_broken ? kExitData : m_differ ? kExitDiffer : kExitSuccess; }

private:
    std::string otherName() const
    {
        return m_options.folder.empty() ? "factory" : printable(m_options.folder);
    }
    void tell(const FileRef& file, const std::string& text, const Json& json);

    const Options& m_options;
    List m_differences;
    bool m_differ = false;
    bool m_broken = false;
};

void Comparison::tell(const FileRef& file, const std::string& text, const Json& json)
{
    m_differ = true;
    if (m_options.form == Form::text) {
        print(printable(nameOf(file) + text) + "\n");
        return;
    }
    Json object = {{"name", nameOf(file)}, {"record", nullptr}, {"column", nullptr},
                   {"value", nullptr},     {"other", nullptr},  {"missing", nullptr}};
    object.add(json);
    m_differences.add(object);
}

void Comparison::compare(const FileRef& file)
{
    const ReadResult mine = readFile(file);
    ReadResult other;
    std::string otherPath;
    if (m_options.folder.empty()) {
        other.contents = factoryContents(file.fileId);
    } else {
        otherPath = (std::filesystem::path(m_options.folder) / folderOf(file.fileId) /
                     std::filesystem::path(pathOf(file)).filename())
                        .string();
        other = readFileAt(otherPath, file.fileId);
    }
    const std::pair<const ReadResult*, std::string> sides[] = {{&mine, pathOf(file)}, {&other, otherPath}};
    for (const auto& [read, path] : sides)
        if (read->fault && !read->fault->missing) {
            complain("cannot compare " + path + ": " + faultText(*read->fault) +
                     ": see 'vx63 settings check'");
            m_broken = true;
            return;
        }
    if (mine.fault && other.fault)
        return;
    if (mine.fault || other.fault) {
        // Without a file its factory contents hold: where those are compared with, nothing differs.
        if (mine.fault && m_options.folder.empty())
            return;
        const bool isMine = !mine.fault;
        tell(file, isMine ? ": only on the meter" : ": only in " + m_options.folder,
             {{"missing", isMine ? otherName() : "meter"}});
        return;
    }
    for (const Difference& difference : differencesOf(file.fileId, mine.contents, other.contents)) {
        const uint32_t record = difference.record;
        if (difference.column == nullptr) {
            tell(file,
                 format(" %u: only ", record) +
                     (difference.inFirst ? "on the meter" : "in " + m_options.folder),
                 {{"record", record}, {"missing", difference.inFirst ? otherName() : "meter"}});
            continue;
        }
        const vx63::settings::Column& column = *difference.column;
        const uint8_t* value = recordAt(file.fileId, mine.contents, record);
        const uint8_t* otherValue = recordAt(file.fileId, other.contents, record);
        tell(file,
             format(" %u ", record) + std::string(column.name) + ": " + quoted(column, value) + " (" +
                 otherName() + " " + quoted(column, otherValue) + ")",
             {{"record", record},
              {"column", column.name},
              {"value", cellJson(column, value)},
              {"other", cellJson(column, otherValue)}});
    }
}

int diff(const Options& options)
{
    Comparison comparison(options);
    const bool withFactory = options.folder.empty();
    if (!withFactory && !std::filesystem::is_directory(options.folder))
        throw Failure(kExitNoInput, "cannot compare with " + options.folder, "it is no folder",
                      "give one that 'vx63 settings export' made");
    if (options.file) {
        if (withFactory && kindOf(options.file->fileId) != FileKind::ordinary)
            throw Failure(kExitUsage, "cannot compare " + nameOf(*options.file),
                          "sets and lists have no factory contents", "compare with a folder: --with DIR");
        comparison.compare(*options.file);
        comparison.end();
        return comparison.exitCode();
    }
    for (const vx63::settings::File& entry : vx63::settings::kFiles) {
        const FileKind kind = kindOf(entry.fileId);
        if (kind == FileKind::ordinary || (kind == FileKind::list && !withFactory))
            comparison.compare({entry.fileId, ""});
        if (kind != FileKind::set || withFactory)
            continue;
        std::set<std::string> names;
        const std::string other = options.folder + "/" + folderOf(entry.fileId);
        for (const std::string& place : {folderPathOf(entry.fileId), other})
            for (std::string& name : setFilesIn(place, entry.fileId))
                names.insert(std::move(name));
        for (const std::string& name : names)
            if (!setNameFault(name))
                comparison.compare({entry.fileId, name});
    }
    comparison.end();
    return comparison.exitCode();
}

} // namespace

std::vector<Difference> differencesOf(uint32_t fileId, const Contents& first, const Contents& second)
{
    const vx63::settings::File& entry = vx63::settings::kFiles[fileId];
    std::vector<Difference> differences;
    for (uint32_t record = 0; record < std::max(first.records, second.records); ++record) {
        if (record >= first.records || record >= second.records) {
            differences.push_back({record, nullptr, record < first.records});
            continue;
        }
        for (uint32_t i = 0; i < entry.columnCount; ++i)
            if (cellText(entry.columns[i], recordAt(fileId, first, record)) !=
                cellText(entry.columns[i], recordAt(fileId, second, record)))
                differences.push_back({record, &entry.columns[i], true});
    }
    return differences;
}

void addSettingsDiff(CommandLine& settings)
{
    settings.addCommand("diff", "Compare with the factory contents or another folder",
                        "vx63 settings diff sys_set/volume", diff, [](CommandLine& line, Options& options) {
                            addFileArgument(line, options.file);
                            line.text("--with", options.folder, "DIR",
                                      "Compare with this folder, one that 'export' made");
                        });
}

} // namespace tool
