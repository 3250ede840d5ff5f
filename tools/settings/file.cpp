#include "settings/file.h"

#include "common/exchange.h"
#include "common/failure.h"
#include "common/output.h"
#include "common/overhear.h"
#include "common/text.h"
#include "libvx63.h"
#include "lsys.h"
#include "settings/record.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <functional>
#include <unistd.h>

namespace tool {

namespace {

// The index in a notice has 8 bits.
constexpr uint32_t kNoticeRecordMax = 255;

constexpr const char* kDebugVariable = "LSYS_DEBUG";

// Makes a call to the platform and gets the reason that it gives.
int32_t listen(const std::function<int32_t()>& call, std::string& said)
{
    const bool wanted = getenv(kDebugVariable) != nullptr;
    setenv(kDebugVariable, "1", 0);
    const int32_t result = overhear(call, said);
    if (!wanted)
        unsetenv(kDebugVariable);
    return result;
}

const char* reasonOf(int32_t result)
{
    switch (result) {
    case LSYS_ERR_MISSING:
        return "no such file or folder";
    case LSYS_ERR_PERMISSION:
        return "not permitted";
    case LSYS_ERR_NOT_FILE:
        return "not a file";
    case LSYS_ERR_VERSION:
        return "wrong version";
    case LSYS_ERR_COLUMNS:
        return "wrong number of columns";
    case LSYS_ERR_NUMBER:
        return "not a number";
    case LSYS_ERR_RANGE:
        return "number out of range";
    case LSYS_ERR_TEXT:
        return "text too long";
    case LSYS_ERR_QUOTE:
        return "wrong quotes";
    case LSYS_ERR_CUT:
        return "the file is cut short";
    case LSYS_ERR_RECORDS:
        return "too many records";
    case LSYS_ERR_BINARY:
        return "binary data";
    case LSYS_ERR_FULL:
        return "no room on the disk";
    default:
        return "the platform refuses it";
    }
}

// Takes "NUMBER:" off the start of a text; 0 where there is none.
uint32_t takeNumber(std::string_view& text)
{
    uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end == text.data() + text.size() || *end != ':')
        return 0;
    text.remove_prefix(static_cast<size_t>(end - text.data()) + 1);
    return number;
}

// The platform says "lsys: PATH:LINE:COLUMN: REASON"; line and column only where they are known. A platform
// that says nothing leaves its result.
Fault faultOf(int32_t result, const std::string& path, std::string_view said)
{
    Fault fault;
    fault.missing = access(path.c_str(), F_OK) != 0 && (errno == ENOENT || errno == ENOTDIR);
    fault.reason = reasonOf(result);
    said = said.substr(0, said.find('\n'));
    const std::string start = "lsys: " + path + ":";
    if (!said.starts_with(start))
        return fault;
    said.remove_prefix(start.size());
    fault.line = takeNumber(said);
    fault.column = fault.line == 0 ? 0 : takeNumber(said);
    if (said.starts_with(' '))
        fault.reason = said.substr(1);
    return fault;
}

std::vector<LsysColumn> platformColumns(const vx63::settings::File& file)
{
    std::vector<LsysColumn> columns;
    for (uint32_t i = 0; i < file.columnCount; ++i)
        columns.push_back({file.columns[i].type, file.columns[i].width, file.columns[i].offset});
    return columns;
}

const char* setOf(const FileRef& file)
{
    return file.set.empty() ? nullptr : file.set.c_str();
}

Contents room(const vx63::settings::File& file)
{
    return {std::vector<uint8_t>(size_t{file.rows} * file.dataSize), 0};
}

ReadResult readBy(const std::string& path, uint32_t fileId, const std::function<int32_t(uint8_t*)>& reader)
{
    const vx63::settings::File& file = vx63::settings::kFiles[fileId];
    ReadResult read{std::nullopt, room(file)};
    std::string said;
    const int32_t result = listen([&] { return reader(read.contents.bytes.data()); }, said);
    if (result < 0) {
        read.fault = faultOf(result, path, said);
        return read;
    }
    read.contents.records = std::min(static_cast<uint32_t>(result), file.rows);
    if (kindOf(fileId) == FileKind::ordinary && read.contents.records < file.rows) {
        Fault fault;
        fault.reason = format("%u records instead of %u", read.contents.records, file.rows);
        read.fault = fault;
    }
    return read;
}

void writeBy(const std::string& path, const std::string& name, const std::function<int32_t()>& writer)
{
    std::string said;
    const int32_t result = listen(writer, said);
    if (result >= 0)
        return;
    const Fault fault = faultOf(result, path, said);
    throw Failure(kExitOutput, "cannot write " + name, faultText(fault),
                  result == LSYS_ERR_FULL ? "make room on the disk" : "look at 'ls -l " + path + "'");
}

} // namespace

std::string faultText(const Fault& fault)
{
    if (fault.line == 0)
        return fault.reason;
    if (fault.column == 0)
        return format("line %u: ", fault.line) + fault.reason;
    return format("line %u, column %u: ", fault.line, fault.column) + fault.reason;
}

ReadResult readFile(const FileRef& file)
{
    const bool isSet = kindOf(file.fileId) == FileKind::set;
    if (const auto why = isSet ? setNameFault(file.set) : std::nullopt) {
        Fault fault;
        fault.reason = "it is no name of a set: " + *why;
        return {fault, {}};
    }
    return readBy(pathOf(file), file.fileId,
                  [&](uint8_t* records) { return vx63_readSetFile(file.fileId, records, setOf(file), 0); });
}

ReadResult readFileAt(const std::string& path, uint32_t fileId)
{
    const vx63::settings::File& file = vx63::settings::kFiles[fileId];
    const std::vector<LsysColumn> columns = platformColumns(file);
    return readBy(path, fileId, [&](uint8_t* records) {
        return lsys_readCsvNewFmt(path.c_str(), vx63::settings::kVersion, file.rows, file.columnCount,
                                  records, file.dataSize, columns.data());
    });
}

Contents factoryContents(uint32_t fileId)
{
    Contents contents = room(vx63::settings::kFiles[fileId]);
    contents.records =
        static_cast<uint32_t>(vx63_readSetFile(fileId, contents.bytes.data(), nullptr, 1)); // cannot fail
    return contents;
}

std::string remedyFor(const FileRef& file)
{
    const bool isSet = kindOf(file.fileId) == FileKind::set;
    if (isSet && setNameFault(file.set))
        return "rename or remove " + pathOf(file);
    return "correct " + pathOf(file) + ", or use 'vx63 " +
           (isSet ? "sets delete" : "settings reset " + nameOf(file)) + "'";
}

Contents readOrFactory(const FileRef& file)
{
    const FileKind kind = kindOf(file.fileId);
    ReadResult read = readFile(file);
    if (!read.fault)
        return read.contents;
    if (!read.fault->missing)
        throw Failure(kExitData, "cannot read " + nameOf(file), faultText(*read.fault), remedyFor(file));
    if (kind == FileKind::set)
        throw Failure(kExitNoInput, "cannot read " + nameOf(file), "there is no such set",
                      "see 'vx63 sets list'");
    if (kind == FileKind::list)
        return read.contents;
    complain(nameOf(file) + " is missing: its factory contents hold");
    return factoryContents(file.fileId);
}

void writeFile(const FileRef& file, const Contents& contents)
{
    writeBy(pathOf(file), nameOf(file), [&] {
        return vx63_writeSetFile(file.fileId, contents.bytes.data(), setOf(file), contents.records);
    });
}

void writeRecord(const FileRef& file, const Contents& contents, uint32_t record)
{
    writeBy(pathOf(file), nameOf(file),
            [&] { return vx63_writeSetFileIdx(file.fileId, contents.bytes.data(), record, setOf(file)); });
}

void writeFileAt(const std::string& path, uint32_t fileId, const Contents& contents)
{
    const vx63::settings::File& file = vx63::settings::kFiles[fileId];
    const std::vector<LsysColumn> columns = platformColumns(file);
    const std::string header = headerOf(file);
    writeBy(path, path, [&] {
        return lsys_writeCsvNewFmt(path.c_str(), vx63::settings::kVersion, header.c_str(), contents.records,
                                   file.columnCount, contents.bytes.data(), file.dataSize, columns.data());
    });
}

void noticeFile(uint32_t fileId)
{
    require(nameOf({fileId, kAnySet}) + " has changed, but the system service was not told",
            [&] { return vx63_ntfUpdateFile(fileId); });
}

void noticeRecord(uint32_t fileId, uint32_t record)
{
    if (record > kNoticeRecordMax)
        return noticeFile(fileId); // it would arrive as another record
    require(nameOf({fileId, kAnySet}) + " has changed, but the system service was not told",
            [&] { return vx63_ntfUpdateFileIdx(fileId, record); });
}

} // namespace tool
