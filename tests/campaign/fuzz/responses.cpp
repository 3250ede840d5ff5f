// Calls every exported operation, several in a row, with any arguments over services that answer anything at
// all, or nothing; holds results, records, requests, log lines, calls of libc and the heap against the
// definition.
#include "libvx63_settings.h"
#include "responses/call.h"
#include "responses/finding.h"
#include "responses/kernel.h"
#include "responses/same.h"

#include <cstdio>
#include <cstring>
#include <sanitizer/asan_interface.h>

using namespace responses;

namespace {

constexpr int kCallsMax = 8;
constexpr int kFailureLines = 5; // at most, of one exchange: its message, what it was, what became of it
constexpr uint8_t kGuard = 0xA5;
constexpr size_t kGuardSize = 64;

// Memory of just the right size: what lies before and behind may be neither read nor changed.
template <size_t kMost>
class Room {
public:
    uint8_t* open(size_t size)
    {
        m_size = size;
        memset(m_memory, kGuard, kGuardSize);
        memset(behind(), kGuard, kGuardSize);
        __asan_poison_memory_region(m_memory, kGuardSize);
        __asan_poison_memory_region(behind(), kGuardSize);
        return m_memory + kGuardSize;
    }

    void close()
    {
        __asan_unpoison_memory_region(m_memory, sizeof m_memory);
        for (size_t i = 0; i < kGuardSize; ++i)
            if (m_memory[i] != kGuard || behind()[i] != kGuard)
                finding("changes bytes beside a record");
    }

private:
    uint8_t* behind() { return m_memory + kGuardSize + m_size; }

    size_t m_size = 0;
    alignas(16) uint8_t m_memory[kMost + 2 * kGuardSize];
};

constexpr int kChannelsMax = 32767;
constexpr size_t kNameMax = 3000;

Room<kRecordMax> s_recordRoom;
Room<sizeof(MultiMeasReg) + kChannelsMax * sizeof(MeasCondition)> s_dataRoom;
Room<kNameMax + 1> s_nameRoom;
uint8_t s_dataBefore[kRecordMax];
size_t s_recordSize;
size_t s_dataSize;
uint8_t s_own; // the process id of this thread

// ---- arguments ----

// Many take long, and so come seldom.
int16_t drawChannels(Input& input)
{
    const auto count = static_cast<int16_t>(input.number());
    const uint32_t lot = static_cast<uint16_t>(count) * 2654435761u >> 16;
    if (count > 1300 && lot % 512 != 0)
        return count % 100;
    return count > 100 && lot % 16 != 0 ? count % 100 : count;
}

uint8_t* drawRegistration(Input& input)
{
    const int16_t count = drawChannels(input);
    const auto channels = static_cast<size_t>(std::max<int>(0, count));
    s_dataSize = sizeof(MultiMeasReg) + channels * sizeof(MeasCondition);
    uint8_t* const data = s_dataRoom.open(s_dataSize);
    memset(data, 0, sizeof(MultiMeasReg));
    memcpy(data, &count, sizeof count);
    MeasCondition conditions[2] = {};
    if (channels != 0) {
        input.bytes(&conditions[0], sizeof conditions[0]);
        conditions[1] = conditions[0];
        conditions[1].powerSupply = input.number();
    }
    auto* const places = reinterpret_cast<MeasCondition*>(data + sizeof(MultiMeasReg));
    for (size_t i = 0; i < channels; ++i) {
        places[i] = conditions[i % 2];
        places[i].ulFreq += static_cast<uint32_t>(i);
    }
    return data;
}

uint8_t* drawData(Input& input, size_t size)
{
    s_dataSize = size;
    uint8_t* const data = s_dataRoom.open(size);
    const size_t given = std::min<size_t>(size, 32);
    input.bytes(data, given);
    for (size_t i = given; i < size; ++i)
        data[i] = static_cast<uint8_t>(data[i - given] + i);
    return data;
}

const char* drawName(Input& input)
{
    const uint8_t kind = input.byte();
    if (kind >= 250)
        return nullptr;
    const size_t length = kind < 192 ? kind % 14 : kind < 224 ? kind % 160 : input.raw<uint16_t>() % kNameMax;
    const size_t given = std::min<size_t>(length, 24);
    auto* const name = reinterpret_cast<char*>(s_nameRoom.open(length + 1));
    input.bytes(name, given);
    memset(name + given, 'N', length - given);
    std::replace(name, name + length, '\0', 'N');
    name[length] = '\0';
    return name;
}

bool isOfFile(const Operation& operation)
{
    using enum Operation::File;
    return operation.file == read || operation.file == readRow || operation.file == write ||
           operation.file == writeRow;
}

// A settings file's record; 1 where there is no such file.
size_t rowSize(const Arguments& with)
{
    const auto id = static_cast<uint32_t>(with.first);
    return id < VX63_SET_FILE_COUNT ? vx63::settings::kFiles[id].dataSize : 1;
}

size_t rowsOf(const Arguments& with)
{
    const auto id = static_cast<uint32_t>(with.first);
    return id < VX63_SET_FILE_COUNT ? vx63::settings::kFiles[id].rows : 1;
}

size_t bytesOfFile(const Arguments& with)
{
    return rowsOf(with) * rowSize(with);
}

// As far as the records go that may be read: never none.
size_t bytesToWrite(const Operation& operation, const Arguments& with)
{
    const auto id = static_cast<uint32_t>(with.first);
    const auto given = static_cast<uint32_t>(with.second);
    const bool isCounted = id < VX63_SET_FILE_COUNT && vx63::settings::kFiles[id].defaultSize == 0;
    if (given >= rowsOf(with) || (operation.file == Operation::File::write && !isCounted))
        return bytesOfFile(with);
    return operation.file == Operation::File::write ? std::max<size_t>(given, 1) * rowSize(with)
                                                    : (given + 1) * rowSize(with);
}

void drawArguments(Input& input, const Operation& operation)
{
    Arguments& with = s_call.with;
    with = {};
    const uint8_t nulls = input.byte();
    const uint8_t choice = operation.file != Operation::File::none ? input.byte() : 255;
    with.first = choice < 200 ? choice % VX63_SET_FILE_COUNT : input.number();
    with.second = input.number();
    s_recordSize = operation.recordSize;
    size_t dataSize = operation.dataSize;
    if (isOfFile(operation)) {
        s_recordSize = s_recordSize != 0 ? bytesOfFile(with) : 0;
        dataSize = dataSize != 0 ? bytesToWrite(operation, with) : 0;
        const uint8_t flag = input.byte();
        with.flag = flag < 128 ? 0 : flag;
    }
    if (isOfFile(operation) || operation.file == Operation::File::remove)
        with.name = drawName(input);
    if (s_recordSize != 0) {
        uint8_t* const record = s_recordRoom.open(s_recordSize);
        memset(record, input.byte(), s_recordSize);
        memcpy(s_call.record, record, s_recordSize);
        with.record = (nulls & 0x0F) == 0x0F && operation.testsRecord ? nullptr : record;
    }
    if (dataSize != 0) {
        const uint8_t* const data =
            operation.loop == Loop::registration ? drawRegistration(input) : drawData(input, dataSize);
        with.data = (nulls & 0xF0) == 0xF0 ? nullptr : data;
        memcpy(s_dataBefore, data, std::min(s_dataSize, sizeof s_dataBefore));
        if (operation.file == Operation::File::writeRow) // the rows before are not read
            __asan_poison_memory_region(data, s_dataSize - std::min<size_t>(s_dataSize, rowSize(with)));
    }
}

// ---- oracles ----

void expectRecord()
{
    const Operation& operation = *s_call.operation;
    if (operation.recordSize != 0) {
        s_recordRoom.close();
        if (s_call.with.record != nullptr && !same(s_call.with.record, s_call.record, s_recordSize))
            finding("leaves another record, result %d", s_call.result);
    }
    if (operation.dataSize != 0) {
        s_dataRoom.close();
        if (s_call.with.data != nullptr &&
            !same(s_call.with.data, s_dataBefore, std::min(s_dataSize, sizeof s_dataBefore)))
            finding("changes what it may only read");
    }
    if (s_call.with.name != nullptr)
        s_nameRoom.close();
}

bool isLast(const char* format, int32_t result)
{
    char line[64];
    snprintf(line, sizeof line, format, result);
    return strcmp(s_kernel.last, line) == 0;
}

void expectLog(bool isWritable)
{
    using enum Operation::File;
    const Operation& operation = *s_call.operation;
    const int32_t result = s_call.result;
    if (!isLogAtRest())
        finding("leaves a log open");
    const bool logsKeys = operation.function() == "vx63_getKeyStatus" && result == VX63_ERR_COMM;
    const int lines =
        operation.lines + s_call.lines + (result < 0 ? kFailureLines : 0) + (logsKeys ? VX63_KEYS : 0);
    if (s_kernel.statements > lines)
        finding("logs %d times instead of %d at most", s_kernel.statements, lines);
    if (s_kernel.statements != 0 && strcmp(g_cLibTestLogFilePath, "/var/log/libvx63.cpp.txt") != 0)
        finding("leaves the path of its log as %.255s", g_cLibTestLogFilePath);
    if (!isWritable)
        return;
    if (s_kernel.lines + s_kernel.keyLines != s_kernel.statements ||
        s_kernel.keyLines != (logsKeys ? VX63_KEYS : 0))
        finding("writes %d lines and %d of keys, of %d", s_kernel.lines, s_kernel.keyLines,
                s_kernel.statements);
    if (operation.ends && strncmp(s_kernel.first, "Start.", 6) != 0)
        finding("begins its log with: %s", s_kernel.first);
    const bool isRead = isOfFile(operation);
    const bool endsAlways = operation.ends && !isRead && operation.file != clear;
    if ((endsAlways && !isLast("End. vx63_err=%d", result)) ||
        (operation.file == clear && result == 0 && !isLast("End. vx63_err=%d", result)) ||
        (isRead && result >= 0 && !isLast("End. iRet=%d", result)))
        finding("ends its log with: %s", s_kernel.last);
    if (result >= 0 && s_kernel.errors != 0)
        finding("succeeds and logs an error");
    // No message is defined for so few channels, nor for what the platform makes of a settings file.
    if (result < 0 && s_kernel.errors == 0 && !isRead &&
        !(operation.loop == Loop::registration && s_call.exchanges == 0))
        finding("fails without a message");
    if (!operation.ends && result >= 0 && s_kernel.statements != operation.lines)
        finding("logs %d times", s_kernel.statements);
}

// Whether the arguments are such that a service is asked.
bool isAccepted(const Operation& operation)
{
    const Arguments& with = s_call.with;
    return (operation.recordSize == 0 || with.record != nullptr) &&
           (operation.dataSize == 0 || with.data != nullptr) &&
           (operation.accepts == nullptr || operation.accepts(with));
}

int32_t resultOfRefusal(const Operation& operation)
{
    const bool isRegistration = operation.loop == Loop::registration && s_call.with.data != nullptr;
    return isRegistration && static_cast<const MultiMeasReg*>(s_call.with.data)->sRegNum <= -39
               ? VX63_ERR_COMM
               : VX63_ERR_ARG;
}

void call(Input& input, const Operation& operation,
          void (*arguments)(Input& input, const Operation& operation))
{
    s_calling = operation.name;
    s_call.operation = &operation;
    s_call.input = &input;
    arguments(input, operation);
    prepareKernel(input, operation.function(), operation.logsTexts);
    const bool isWritable = s_kernel.isWritable();
    const bool isFile = operation.file != Operation::File::none;
    const bool accepted = !isFile && isAccepted(operation);
    s_call.mayAsk = accepted && operation.service != kNobody;
    s_call.result = accepted ? static_cast<int32_t>(VX63_OK) : resultOfRefusal(operation);
    beginExchanges(s_own);
    beginFiles();
    g_cLibTestLogFilePath[input.byte()] = '#';

    s_heapCalls = 0;
    s_inside = true;
    const int32_t result = operation.call(s_call.with);
    s_inside = false;

    if (s_heapCalls != 0)
        finding("calls the heap %d times", static_cast<int>(s_heapCalls));
    endExchanges();
    if (isFile)
        endFiles();
    if (result != s_call.result)
        finding("returns %d instead of %d", result, s_call.result);
    expectRecord();
    expectLog(isWritable);
    if (operation.function() == "vx63_init" && result == VX63_OK)
        s_own = static_cast<uint8_t>(s_call.with.first);
}

const Operation& operationOf(std::string_view function)
{
    for (const Operation& operation : operations())
        if (operation.function() == function)
            return operation;
    abort();
}

// With an answer that is good and its own the next call succeeds: at once where no message was left behind,
// else by an id whose queue is empty.
void expectInStep()
{
    static const Operation& init = operationOf("vx63_init");
    static const Operation& status = operationOf("vx63_getMeasStatus");
    Input nothing(nullptr, 0);
    while (messagesFor(s_own) != 0) {
        call(nothing, init, [](Input&, const Operation&) { s_call.with = {.first = (s_own + 1) % 18}; });
        if (messagesFor(s_own) == 10)
            forgetMessages(); // of all ids
    }
    call(nothing, status, drawArguments);
    if (s_call.result != VX63_OK || s_call.exchanges != 1)
        finding("is not in step");
}

} // namespace

// --operations: prints their names.
extern "C" int LLVMFuzzerInitialize(int* count, char*** words)
{
    if (*count == 2 && strcmp((*words)[1], "--operations") == 0) {
        for (const Operation& operation : operations())
            printf("%.*s\n", static_cast<int>(operation.function().size()), operation.function().data());
        exit(0);
    }
    return 0;
}

// Beginning with a thread whose id is told by the first byte.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Operation& init = (watchOperations(), operationOf("vx63_init"));
    Input input(data, size);
    Input nothing(nullptr, 0);
    forgetMessages();
    static uint8_t own;
    own = input.byte() % 18;
    call(nothing, init, [](Input&, const Operation&) { s_call.with = {.first = own}; });
    for (int calls = 0; calls < kCallsMax && !input.empty(); ++calls)
        call(input, operations()[input.byte() % operations().size()], drawArguments);
    expectInStep();
    return 0;
}
