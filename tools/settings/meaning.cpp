#include "settings/meaning.h"

#include "common/text.h"
#include "settings/record.h"

#include <algorithm>

namespace tool {

namespace {

using vx63::settings::Values;

std::string valuesText(const vx63::settings::Column& column)
{
    const Values& values = *column.values;
    std::string text = values.kind == Values::kRange ? rangeText(column) : "";
    if (!values.unit.empty())
        text.append(text.empty() ? "" : " in ").append(text.empty() ? "" : values.unit);
    for (uint32_t i = 0; i < values.wordCount; ++i)
        text += (text.empty() ? "" : ", ") + wordText(values.words[i]);
    return text;
}

} // namespace

std::string wordText(const vx63::settings::Word& word)
{
    return std::to_string(word.value) + (word.text.empty() ? "" : " = " + std::string(word.text));
}

std::string rangeText(const vx63::settings::Column& column)
{
    const auto [lowest, highest] = rangeOf(column);
    return std::to_string(std::max(lowest, column.values->lowest)) + ".." +
           std::to_string(std::min(highest, column.values->highest));
}

std::optional<std::string> meaningFault(const vx63::settings::Column& column, const uint8_t* record)
{
    const Values& values = *column.values;
    if (column.type == vx63::settings::kText || values.have(numberAt(column, record)))
        return std::nullopt;
    const char* relation = values.kind == Values::kRange   ? "outside"
                           : values.kind == Values::kWords ? "none of"
                                                           : "no sum of";
    return "'" + cellText(column, record) + "' is " + relation + " " + valuesText(column) + " (" +
           std::string(column.meaning) + ")";
}

std::vector<std::string> meaninglessValues(uint32_t fileId, const Contents& contents)
{
    const vx63::settings::File& file = vx63::settings::kFiles[fileId];
    std::vector<std::string> found;
    for (uint32_t record = 0; record < contents.records; ++record)
        for (uint32_t i = 0; i < file.columnCount; ++i)
            if (const auto why =
                    meaningFault(file.columns[i], contents.bytes.data() + size_t{record} * file.dataSize))
                found.push_back(format("record %u ", record) + std::string(file.columns[i].name) + ": " +
                                *why);
    return found;
}

std::string listedValues(const std::vector<std::string>& meaningless)
{
    const size_t more = meaningless.size() - 1;
    return meaningless.front() + (more == 0   ? ""
                                  : more == 1 ? ", and 1 more value has no meaning"
                                              : format(", and %zu more values have no meaning", more));
}

void requireMeaning(ExitCode code, const std::string& what, const std::vector<std::string>& meaningless,
                    const std::string& hint)
{
    if (!meaningless.empty())
        throw Failure(code, what, listedValues(meaningless), hint);
}

} // namespace tool
