// Any text as a value of a settings file, as the name of a file, of a set and of a column, and any bytes as a
// file: what is taken reads back as it was given, what is refused leaves the record and says why.
#include "told.h"

#include "settings/file.h"
#include "settings/meaning.h"
#include "settings/name.h"
#include "settings/record.h"

#include <algorithm>

using held::require;
using namespace tool;

namespace {

// A decimal number without what can be left out.
std::string plain(const std::string& text)
{
    const bool negative = text.starts_with('-');
    const size_t first = text.find_first_not_of('0', negative);
    return first == std::string::npos ? "0" : (negative ? "-" : "") + text.substr(first);
}

void judgeValue(const vx63::settings::File& file, const vx63::settings::Column& column,
                const std::string& text)
{
    constexpr uint8_t kBefore = 0xA5;
    std::vector<uint8_t> record(file.dataSize, kBefore);
    const auto why = storeCell(column, record.data(), text);
    const auto isBefore = [](uint8_t byte) { return byte == kBefore; };
    if (why) {
        require(!why->empty() && held::isPrintable(cli::printable(*why)), "a refusal that is not printable",
                *why);
        require(std::ranges::all_of(record, isBefore), "a refusal has changed the record", *why);
        return;
    }
    require(std::all_of(record.begin(), record.begin() + column.offset, isBefore) &&
                std::all_of(record.begin() + column.offset + column.width, record.end(), isBefore),
            "a value has changed another", text);
    const std::string cell = cellText(column, record.data());
    if (column.type == vx63::settings::kText)
        require(cell == text && held::isPrintable(cell), "a text reads back otherwise", text);
    else if (text.find_first_not_of("-0123456789") == std::string::npos)
        require(cell == plain(text), "a number reads back otherwise", text);
    std::vector<uint8_t> again(file.dataSize, kBefore);
    require(!storeCell(column, again.data(), cell) && again == record, "a value reads back otherwise", cell);
    if (const auto fault = meaningFault(column, record.data()))
        require(held::isPrintable(*fault), "a fault is not printable", *fault);
    cellJson(column, record.data());
}

void judgeName(const std::string& text)
{
    require(!setNameFault(text) ==
                (!text.empty() && text.size() <= 12 && text.find_first_of("/\\\t") == std::string::npos &&
                 text[0] != '.' && held::isPrintable(text)),
            "a name of a set is judged otherwise", text);
    try {
        const FileRef file = fileNamed("FILE", text);
        require(file.fileId < VX63_SET_FILE_COUNT, "a file that there is not", text);
        require((kindOf(file.fileId) == FileKind::set) == !file.set.empty() &&
                    (file.set.empty() || !setNameFault(file.set)),
                "a set that cannot be called so", text);
        const FileRef again = fileNamed("FILE", nameOf(file));
        require(again.fileId == file.fileId && again.set == file.set, "another file by its own name", text);
        const std::string path = pathOf(file);
        require(path.starts_with(folderPathOf(file.fileId) + "/") && path.find("/../") == std::string::npos &&
                    path.find('/', folderPathOf(file.fileId).size() + 1) == std::string::npos,
                "a file that lies elsewhere", path);
    } catch (const WrongUsage& wrong) {
        require(held::isPrintable(cli::printable(wrong.what())), "a refusal that is not printable",
                wrong.what());
    }
}

void judgeFile(uint32_t fileId, const std::string& bytes)
{
    const held::File given(bytes);
    const ReadResult read = readFileAt(given.path(), fileId);
    const vx63::settings::File& file = vx63::settings::kFiles[fileId];
    if (read.fault) {
        const std::string why = faultText(*read.fault);
        require(!read.fault->reason.empty() && held::isPrintable(why), "a fault without a printable reason",
                why);
        const auto lines = static_cast<size_t>(std::ranges::count(bytes, '\n')) + 1;
        require(read.fault->line <= lines && !read.fault->missing, "a fault behind the end", why);
        return;
    }
    require(read.contents.records <= file.rows, "too many records");
    for (const std::string& fault : meaninglessValues(fileId, read.contents))
        require(held::isPrintable(fault), "a fault is not printable", fault);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const uint32_t fileId = data[0] % VX63_SET_FILE_COUNT;
    const vx63::settings::File& file = vx63::settings::kFiles[fileId];
    const std::string text(reinterpret_cast<const char*>(data + 2), size - 2);
    judgeValue(file, file.columns[data[1] % file.columnCount], text);
    judgeName(text);
    const auto* const column = columnNamed(file, text);
    require(!column || std::string_view(column->name).size() == text.size(), "a column by another name",
            text);
    if (data[1] >= 128)
        judgeFile(fileId, std::string(vx63::settings::kVersion) + "\n" + headerOf(file) + "\n" + text);
    return 0;
}
