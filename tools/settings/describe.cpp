// vx63 settings describe: what a file is for and what its columns mean.
#include "common/failure.h"
#include "common/json.h"
#include "common/output.h"
#include "common/table.h"
#include "common/terminal.h"
#include "common/text.h"
#include "plot/text.h"
#include "settings/arguments.h"
#include "settings/file.h"
#include "settings/meaning.h"
#include "settings/record.h"
#include "settings/subcommands.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace tool {

namespace {

using vx63::settings::Column;
using vx63::settings::Values;

struct Options {
    FileRef file{};
    std::string column;
    bool json = false;
};

// What the factory contents hold in a column.
class FactoryValues {
public:
    FactoryValues(const vx63::settings::File& file, const Column& column, const Contents& factory)
        : m_isText(column.type == vx63::settings::kText)
    {
        for (uint32_t i = 0; i < factory.records; ++i) {
            const uint8_t* record = factory.bytes.data() + size_t{i} * file.dataSize;
            if (i == 0) {
                m_text = cellText(column, record);
                m_json = cellJson(column, record);
            }
            m_same = m_same && cellText(column, record) == m_text;
            if (m_isText)
                continue;
            m_lowest = std::min(m_lowest, numberAt(column, record));
            m_highest = std::max(m_highest, numberAt(column, record));
        }
    }

    std::string text() const
    {
        return m_same     ? printable(m_text)
               : m_isText ? "varies"
                          : std::to_string(m_lowest) + ".." + std::to_string(m_highest);
    }
    Json json() const
    {
        return m_same ? m_json : m_isText ? Json() : Json({{"minimum", m_lowest}, {"maximum", m_highest}});
    }

private:
    bool m_isText;
    bool m_same = true;
    std::string m_text;
    Json m_json;
    int64_t m_lowest = std::numeric_limits<int64_t>::max();
    int64_t m_highest = std::numeric_limits<int64_t>::min();
};

const char* typeName(const Column& column)
{
    return column.type == vx63::settings::kText     ? "text"
           : column.type == vx63::settings::kSigned ? "signed"
                                                    : "unsigned";
}

Json columnJson(const Column& column, const FactoryValues& factory)
{
    const Values& values = *column.values;
    const bool isRange = column.type != vx63::settings::kText && values.kind == Values::kRange;
    const auto [lowest, highest] = rangeOf(column);
    Json words = Json::array();
    for (uint32_t i = 0; i < values.wordCount; ++i)
        words.push({{"value", values.words[i].value}, {"word", values.words[i].text}});
    return {
        {"name", column.name},
        {"type", typeName(column)},
        {"bytes", column.width},
        {"unit", values.unit},
        {"meaning", column.meaning},
        {"minimum", isRange ? Json(std::max(lowest, values.lowest)) : Json()},
        {"maximum", isRange ? Json(std::min(highest, values.highest)) : Json()},
        {"values", words},
        {"bits", values.kind == Values::kBits},
        {"factory", factory.json()},
    };
}

// The text in lines of the width of the output, all but the first indented.
std::string paragraph(const std::string& text)
{
    constexpr std::string_view kIndent = "    ";
    std::string lines;
    for (const std::string& line : wrapped(text, textStyle().columns - kIndent.size()))
        lines.append(lines.empty() ? "" : kIndent).append(line).append("\n");
    return lines;
}

std::string columnText(const Column& column, const FactoryValues& factory)
{
    const Values& values = *column.values;
    const bool isText = column.type == vx63::settings::kText;
    std::vector<std::string> allowed;
    if (!isText && values.kind == Values::kRange)
        allowed.push_back(rangeText(column));
    for (uint32_t i = 0; i < values.wordCount; ++i)
        allowed.push_back(wordText(values.words[i]));
    Rows rows;
    for (const std::string& value : allowed)
        rows.emplace_back(!rows.empty() ? "" : values.kind == Values::kBits ? "  sum of" : "  values", value);
    if (!values.unit.empty())
        rows.emplace_back("  unit", values.unit);
    if (const std::string text = factory.text(); !text.empty())
        rows.emplace_back("  factory", text);
    rows.emplace_back("  type",
                      typeName(column) + (isText              ? format(", at most %u bytes", column.width - 1)
                                          : column.width == 1 ? ", 1 byte"
                                                              : format(", %u bytes", column.width)));
    return paragraph(std::string(column.name) + ": " + std::string(column.meaning)) + aligned(rows);
}

int describe(const Options& options)
{
    const vx63::settings::File& file = entryOf(options.file);
    const bool isOrdinary = kindOf(file.fileId) == FileKind::ordinary;
    const Column* only = options.column.empty() ? nullptr : requireColumn(options.file, options.column);
    const Contents factory = isOrdinary ? factoryContents(file.fileId) : Contents{};
    Json columns = Json::array();
    std::string text = paragraph(printable(nameOf(options.file)) + ": " + file.purpose + "; " +
                                 (isOrdinary ? "" : "at most ") +
                                 format(file.rows == 1 ? "%u record" : "%u records", file.rows));
    for (uint32_t i = 0; i < file.columnCount; ++i) {
        const Column& column = file.columns[i];
        if (only != nullptr && only != &column)
            continue;
        const FactoryValues values(file, column, factory);
        columns.push(columnJson(column, values));
        text += "\n" + columnText(column, values);
    }
    if (!options.json) {
        print(text);
        return kExitSuccess;
    }
    const Json json = {
        {"id", file.fileId},       {"name", printable(nameOf(options.file))},
        {"purpose", file.purpose}, {"records", file.rows},
        {"columns", columns},
    };
    print(json.line());
    return kExitSuccess;
}

} // namespace

void addSettingsDescribe(CommandLine& settings)
{
    settings.addCommand("describe", "Tell what a file is for and what its columns mean",
                        "vx63 settings describe sys_set/volume VOLUME", describe,
                        [](CommandLine& line, Options& options) {
                            addFileArgument(line, options.file).required();
                            addColumnArgument(line, options.column);
                        });
}

} // namespace tool
