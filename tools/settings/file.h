// Settings files read and written whole: the meter's through the library, those of another folder through the
// platform, which alone knows their form.
#pragma once

#include "settings/name.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace tool {

// Why a file cannot be read or written.
struct Fault {
    bool missing = false;
    uint32_t line = 0;   // from 1; 0 where the whole file is meant
    uint32_t column = 0; // from 1; 0 where the whole line is meant
    std::string reason;
};

// "line 7, column 3: number out of range"
std::string faultText(const Fault& fault);

struct Contents {
    std::vector<uint8_t> bytes; // room for as many records as the file can hold
    uint32_t records = 0;
};

struct ReadResult {
    std::optional<Fault> fault;
    Contents contents; // without fault
};

// Ordinary files hold all their records: one with fewer has a fault. So has a set that cannot be called so.
ReadResult readFile(const FileRef& file);
ReadResult readFileAt(const std::string& path, uint32_t fileId);

// Of an ordinary file.
Contents factoryContents(uint32_t fileId);

// What to do about a file that is broken.
std::string remedyFor(const FileRef& file);

// The records of the file. Of an ordinary file that is missing the factory contents, and a line on stderr
// that says so. Throws Failure.
Contents readOrFactory(const FileRef& file);

// As the struct that the columns of the file describe.
template <class Record>
std::vector<Record> recordsIn(const Contents& contents)
{
    static_assert(std::is_trivially_copyable_v<Record>);
    std::vector<Record> records(contents.records);
    std::memcpy(records.data(), contents.bytes.data(), records.size() * sizeof(Record));
    return records;
}

// The records of an ordinary file.
template <class Record>
std::vector<Record> recordsOrFactory(uint32_t fileId)
{
    return recordsIn<Record>(readOrFactory({fileId, ""}));
}

// Throw Failure.
void writeFile(const FileRef& file, const Contents& contents);
void writeRecord(const FileRef& file, const Contents& contents, uint32_t record);
void writeFileAt(const std::string& path, uint32_t fileId, const Contents& contents);

// Tell the system service that a file has changed, or one of its records. Throw Failure.
void noticeFile(uint32_t fileId);
void noticeRecord(uint32_t fileId, uint32_t record);

} // namespace tool
