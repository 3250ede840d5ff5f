// Stands in for the platform's settings files and shell, which come to any end that the input tells.
#include "call.h"
#include "finding.h"
#include "kernel.h"
#include "libvx63_settings.h"
#include "lsys.h"
#include "same.h"

#include <cstdio>
#include <cstring>
#include <string_view>

namespace responses {
namespace {

using vx63::settings::File;
using vx63::settings::kFiles;
using Access = Operation::File;

constexpr int kCommandsMax = 10;
constexpr uint32_t kSetNameMax = 12;

int s_reads;
int s_writes;
int s_commands;
int32_t s_readResult;
int32_t s_writeResult;
bool s_commandFailed;
uint8_t s_contents[kRecordMax]; // what the file has, zero behind it
size_t s_held;                  // bytes of it

uint32_t fileId()
{
    const Operation& operation = *s_call.operation;
    return operation.file == Access::remove ? operation.set : static_cast<uint32_t>(s_call.with.first);
}

uint32_t rowIndex()
{
    return static_cast<uint32_t>(s_call.with.second);
}

bool isSet(uint32_t id)
{
    return std::string_view(kFiles[id].path).find('%') != std::string_view::npos;
}

bool isSetOrList(uint32_t id)
{
    return kFiles[id].defaultSize == 0;
}

bool isPath(const char* path, uint32_t id)
{
    static char right[4096];
    snprintf(right, sizeof right, kFiles[id].path, s_call.with.name);
    return strcmp(path, isSet(id) ? right : kFiles[id].path) == 0;
}

const File& expectFile(uint32_t id, const char* path, const char* version, uint32_t columns,
                       uint32_t recordSize)
{
    if (!isPath(path, id))
        finding("touches %s", path);
    const File& file = kFiles[id];
    if (strcmp(version, vx63::settings::kVersion) != 0 || columns != file.columnCount ||
        recordSize != file.dataSize)
        finding("describes %s wrongly", path);
    return file;
}

int32_t read(const File& file, uint8_t* records)
{
    Input& input = *s_call.input;
    const uint8_t choice = input.byte();
    const auto some = [&input, &file] {
        return static_cast<int32_t>(input.raw<uint16_t>() % (file.rows + 1));
    };
    s_readResult = choice < 8     ? static_cast<int32_t>(file.rows)
                   : choice < 160 ? some()
                   : choice < 240 ? input.failure(15)
                                  : input.number();
    s_held = static_cast<size_t>(s_readResult < 0 ? some()
                                                  : std::min(s_readResult, static_cast<int32_t>(file.rows))) *
             file.dataSize;
    const uint8_t seed = input.byte();
    memset(s_contents, 0, sizeof s_contents);
    for (size_t i = 0; i < s_held; ++i)
        s_contents[i] = static_cast<uint8_t>(seed + 5 * i);
    memcpy(records, s_contents, s_held);
    return s_readResult;
}

// The records that are to be written.
const uint8_t* rightContents(const File& file)
{
    switch (s_call.operation->file) {
    case Access::write:
        return static_cast<const uint8_t*>(s_call.with.data);
    case Access::writeRow: {
        const size_t place = rowIndex() * size_t{file.dataSize};
        memcpy(s_contents + place, static_cast<const uint8_t*>(s_call.with.data) + place, file.dataSize);
        return s_contents;
    }
    default: // an empty list
        memset(s_contents, 0, sizeof s_contents);
        for (uint32_t i = 0; i < file.rows; ++i)
            s_contents[i * file.dataSize] = static_cast<uint8_t>(i + 1);
        return s_contents;
    }
}

uint32_t rightRecords(const File& file)
{
    const bool isCounted = isSetOrList(file.fileId);
    switch (s_call.operation->file) {
    case Access::write:
        return isCounted ? rowIndex() : file.rows;
    case Access::writeRow:
        return isCounted ? static_cast<uint32_t>(s_readResult) : file.rows;
    default:
        return file.rows;
    }
}

bool isRightCommand(std::string_view command)
{
    static constexpr std::string_view kAll[kCommandsMax] = {
        "rm -r /usr/local/bin/sys_set/*",         "rm -r /usr/local/bin/meas_set/*",
        "rm -r /usr/local/bin/user_set/*",        "rm -r /usr/local/bin/user_set_usb1/*",
        "rm -r /usr/local/bin/user_set_usb2/*",   "rm -r /usr/local/bin/logger_set/*",
        "rm -r /usr/local/bin/logger_set_usb1/*", "rm -r /usr/local/bin/logger_set_usb2/*",
        "rm -r /usr/local/bin/ch_set/*",          "rm -r /usr/local/bin/pmeas_set/*",
    };
    if (s_call.operation->file == Access::clearAll)
        return s_commands < kCommandsMax && command == kAll[s_commands];
    const std::string_view path = kFiles[fileId()].path;
    const std::string_view folder = path.substr(0, path.rfind('/') + 1);
    return s_commands == 0 && command.starts_with("rm -r ") && command.ends_with("//*") &&
           command.substr(6, command.size() - 8) == folder;
}

bool isAmong(std::span<const uint8_t> kinds, uint32_t id)
{
    return std::find(kinds.begin(), kinds.end(), id) != kinds.end();
}

bool isRefused()
{
    const Operation& operation = *s_call.operation;
    const uint32_t id = fileId();
    switch (operation.file) {
    case Access::clear:
        return !isAmong(operation.kinds, id);
    case Access::clearAll:
        return false;
    case Access::remove:
        return s_call.with.name == nullptr;
    default:
        break;
    }
    const bool reads = operation.file == Access::read || operation.file == Access::readRow;
    if (id >= VX63_SET_FILE_COUNT || (reads ? s_call.with.record : s_call.with.data) == nullptr)
        return true;
    if (isSet(id) && s_call.with.name == nullptr)
        return true;
    return operation.file == Access::write && isSetOrList(id) && rowIndex() > kFiles[id].rows;
}

// The name of a set may be refused where it is longer than any that a list holds.
bool isLongName(uint32_t id)
{
    return isSet(id) && strlen(s_call.with.name) > kSetNameMax;
}

void untouched(const char* why)
{
    if (s_reads + s_writes + s_commands + s_kernel.removals != 0)
        finding("touches a file: %s", why);
}

// Of what was read: the record alone.
int32_t takeRow(const File& file, int32_t count, const uint8_t* contents)
{
    if (count < 0)
        return count;
    if (static_cast<uint32_t>(count) <= rowIndex() || rowIndex() >= file.rows)
        return -1;
    const size_t place = rowIndex() * size_t{file.dataSize};
    memcpy(s_call.record + place, contents + place, file.dataSize);
    return count;
}

int32_t resultOfRead(const File& file)
{
    const bool isRow = s_call.operation->file == Access::readRow;
    if (s_call.with.flag != 0 && !isSetOrList(file.fileId)) {
        untouched("the factory contents are asked for");
        // What they are, others test.
        const auto* const given = static_cast<const uint8_t*>(s_call.with.record);
        if (isRow)
            return takeRow(file, static_cast<int32_t>(file.rows), given);
        memcpy(s_call.record, given, file.defaultSize);
        return static_cast<int32_t>(file.rows);
    }
    if (s_reads == 0 && isLongName(file.fileId))
        return -1;
    if (s_reads != 1)
        finding("reads %d files", s_reads);
    if (isRow)
        return takeRow(file, s_readResult, s_contents);
    memcpy(s_call.record, s_contents, s_held);
    return s_readResult;
}

int32_t resultOfWrite(const File& file)
{
    if (s_writes + s_reads == 0 && isLongName(file.fileId))
        return -1;
    if (s_call.operation->file == Access::writeRow) {
        if (s_reads != 1)
            finding("reads %d files", s_reads);
        if (s_readResult < 0)
            return s_readResult;
        if (static_cast<uint32_t>(s_readResult) <= rowIndex() || rowIndex() >= file.rows)
            return -1;
        // More than the file can hold, as no platform reads, need not be written.
        if (s_writes == 0 && static_cast<uint32_t>(s_readResult) > file.rows)
            return -1;
    }
    if (s_writes != 1)
        finding("writes %d files", s_writes);
    return s_writeResult;
}

} // namespace

void beginFiles()
{
    s_reads = s_writes = s_commands = 0;
    s_readResult = s_writeResult = 0;
    s_commandFailed = false;
}

void endFiles()
{
    const Operation& operation = *s_call.operation;
    if (s_kernel.unsynced)
        finding("ends before what it wrote has reached the flash");
    if (operation.file == Access::kind) {
        s_call.result = isAmong(operation.kinds, fileId());
        return;
    }
    s_call.result = -1;
    if (isRefused()) {
        untouched("the arguments are wrong");
        return;
    }
    switch (operation.file) {
    case Access::read:
    case Access::readRow:
        s_call.result = resultOfRead(kFiles[fileId()]);
        break;
    case Access::write:
    case Access::writeRow:
        s_call.result = resultOfWrite(kFiles[fileId()]);
        break;
    case Access::remove:
        if (s_kernel.removals == 0 && isLongName(fileId()))
            break;
        if (s_kernel.removals != 1 || !isPath(s_kernel.removed, fileId()))
            finding("removes %d files, the last %s", s_kernel.removals, s_kernel.removed);
        s_call.result = s_kernel.removeError == 0 ? 0 : -1;
        break;
    case Access::clear:
        if (s_commands != 1 || s_writes != (s_commandFailed ? 0 : 1))
            finding("runs %d commands and writes %d lists", s_commands, s_writes);
        s_call.result = s_commandFailed || s_writeResult < 0 ? -1 : 0;
        break;
    default:
        if (s_commands != kCommandsMax)
            finding("runs %d commands", s_commands);
        s_call.result = s_commandFailed ? -1 : 0;
        break;
    }
}

} // namespace responses

using namespace responses;

extern "C" {

int32_t lsys_readCsvNewFmt(const char* pcPath, const char* pcVersion, uint32_t ulMaxRecords,
                           uint32_t ulColumnCount, uint8_t* pRecords, uint32_t ulRecordSize,
                           const LsysColumn* pColumns)
{
    const File& file = expectFile(fileId(), pcPath, pcVersion, ulColumnCount, ulRecordSize);
    if (++s_reads > 1 || ulMaxRecords != file.rows || pRecords == nullptr || pColumns == nullptr)
        finding("reads %s wrongly", pcPath);
    return read(file, pRecords);
}

int32_t lsys_writeCsvNewFmt(const char* pcPath, const char* pcVersion, const char* pcHeader,
                            uint32_t ulRecords, uint32_t ulColumnCount, const uint8_t* pRecords,
                            uint32_t ulRecordSize, const LsysColumn* pColumns)
{
    // The list of a folder comes behind its sets.
    const uint32_t id = s_call.operation->file == Access::clear ? fileId() + 1 : fileId();
    const File& file = expectFile(id, pcPath, pcVersion, ulColumnCount, ulRecordSize);
    if (++s_writes > 1 || ulRecords != rightRecords(file) || pcHeader == nullptr || pColumns == nullptr)
        finding("writes %s wrongly, %u records", pcPath, ulRecords);
    // A platform may tell of more records than there can be: then nobody knows what to write.
    const size_t size = size_t{std::min(ulRecords, file.rows)} * file.dataSize;
    if (!same(pRecords, rightContents(file), size))
        finding("writes other records");
    s_kernel.unsynced = true;
    Input& input = *s_call.input;
    s_writeResult = input.byte() < 160 ? 0 : input.number();
    return s_writeResult;
}

int32_t lsys_system(const char* pcCommand)
{
    if (!isRightCommand(pcCommand))
        finding("runs %s", pcCommand);
    ++s_commands;
    Input& input = *s_call.input;
    const int32_t result = input.byte() < 160 ? 0 : input.number();
    s_commandFailed |= result != 0;
    return result;
}

} // extern "C"
