// Every exported operation: what it asks, what becomes of the answer, how much it logs. All of it is typed
// from the definition of the operations, nothing is taken from the library.
#pragma once

#include "libvx63.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace responses {

// What an operation is called with. Its numbers and pointers, as far as it has them.
struct Arguments {
    int32_t first;
    int32_t second;
    const void* data; // what it reads
    const char* name; // of a set
    void* record;     // what it writes
    uint32_t flag;    // bDefault
};

// By which a service's ucRet becomes a result.
enum class Rule { noRet, strict, parameter, measurement, reading, lowBattery, buzzer, volume, update };
int32_t resultOf(Rule rule, uint8_t ret);

// What more than one exchange is made for.
enum class Loop { none, update, profile, registration };

// Of a response body and the caller's record: a field, zero-extended where the record's is wider.
struct Field {
    uint16_t here;
    uint16_t there;
    uint16_t width;
    uint16_t wide;
};

inline constexpr int kNobody = -1;
inline constexpr int kByMode = -2; // mode 0: the system service; any other: the measurement service

// What most operations do without.
struct Details {
    bool (*accepts)(const Arguments& with) = nullptr; // the numbers; null: all
    size_t recordSize = 0;
    std::span<const Field> fields = {}; // of the record
    size_t dataSize = 0;                // what it reads; of a registration the head
    bool testsRecord = true;            // refuses a null one
    bool ends = true;                   // logs its start and its end
    bool logsTexts = false;             // from the caller or the service
    Loop loop = Loop::none;
    enum class File { none, read, readRow, write, writeRow, remove, clear, clearAll, kind };
    File file = File::none;
    uint32_t set = 0;                    // of File::remove: the file id
    std::span<const uint8_t> kinds = {}; // of File::clear and File::kind: the ids that are
};

struct Operation : Details {
    const char* name; // and in brackets what tells it from its function's other row
    int service;
    uint16_t command;
    uint16_t length;  // of the request's body
    uint32_t timeout; // ms
    Rule rule;
    int lines; // that a success logs, but for those that depend on what is sent or read
    int32_t (*call)(const Arguments& with);

    std::string_view function() const
    {
        return std::string_view(name).substr(0, std::string_view(name).find('('));
    }
};

std::span<const Operation> operations();

} // namespace responses
