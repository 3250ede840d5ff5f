// Calls the operations of libvx63.so as it is told on standard input, and tells what came of it.
//
//   init ID         vx63_init(ID)                                      -> {"result": R}
//   call NAME       the operation of that name, with arguments that    -> see call()
//                   a meter accepts and a record full of kFill
//   call NAME over N   the same, and the Nth wait for an answer is over at once
//   file ID         the settings file of the calls behind it           -> {"result": 0}
//   delete NAME     vx63_deleteSetFileUser(), the name in hexadecimal  -> {"result": R}
//   await ID        waits until a message lies in the queue of ID      -> {"result": 0}
//   drain ID        takes all messages out of that queue               -> {"messages": HOW MANY}
//   patience MS     from now on an answer is waited for no longer      -> {"result": 0}
//   many N SEED T   N calls of any operations in each of T threads     -> see many()
//
// It stands between the library and its queues: what was sent and received is told as well, and a time-out
// costs no time.
#include "libvx63.h"
#include "libvx63_settings.h"
#include "lmsg.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <mqueue.h>
#include <nlohmann/json.hpp>
#include <numeric>
#include <poll.h>
#include <random>
#include <sstream>
#include <string>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

using nlohmann::json;
using vx63::settings::kFiles;

namespace {

constexpr uint8_t kFill = 0xA5;
constexpr size_t kGuard = 64;    // bytes behind a record that no one may write
constexpr int kHangMs = 300'000; // longer than anything takes

std::string hex(const void* data, size_t size)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        const uint8_t byte = static_cast<const uint8_t*>(data)[i];
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::string unhex(const std::string& text)
{
    std::string bytes;
    for (size_t i = 0; i + 1 < text.size(); i += 2)
        bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    return bytes;
}

// ---- between the library and its queues ----

struct Watch {
    bool on = false;
    int over = 0; // the wait for an answer that is over at once; 0 none
    int waits = 0;
    json messages = json::array();
} s_watch;

uint32_t s_patience = LMSG_FOREVER; // milliseconds

template <class Function>
Function* platform(const char* name)
{
    void* const found = dlsym(RTLD_NEXT, name);
    if (found == nullptr) {
        std::cerr << "matrix_caller: " << name << ": " << dlerror() << "\n";
        std::exit(1);
    }
    return reinterpret_cast<Function*>(found);
}

} // namespace

extern "C" int32_t lmsg_tsndMq(uint8_t ucQueId, const void* pMsg, uint32_t ulLen, uint32_t ulTimeout)
{
    static auto* const send = platform<decltype(lmsg_tsndMq)>("lmsg_tsndMq");
    const int32_t result = send(ucQueId, pMsg, ulLen, ulTimeout);
    if (s_watch.on)
        s_watch.messages.push_back(
            {{"sent", hex(pMsg, ulLen)}, {"queue", ucQueId}, {"timeout", ulTimeout}, {"result", result}});
    return result;
}

extern "C" int32_t lmsg_trcvMq(uint8_t ucQueId, void* pMsg, uint32_t ulLen, uint32_t* pulMsgLen,
                               uint32_t ulTimeout)
{
    static auto* const receive = platform<decltype(lmsg_trcvMq)>("lmsg_trcvMq");
    if (!s_watch.on)
        return receive(ucQueId, pMsg, ulLen, pulMsgLen, std::min(ulTimeout, s_patience));

    uint32_t length = 0;
    const int32_t result = ++s_watch.waits == s_watch.over
                               ? static_cast<int32_t>(LMSG_ERR_TIMEOUT)
                               : receive(ucQueId, pMsg, ulLen, &length, std::min(ulTimeout, s_patience));
    s_watch.messages.push_back(
        {{"received", hex(pMsg, length)}, {"queue", ucQueId}, {"timeout", ulTimeout}, {"result", result}});
    if (result == LMSG_OK && pulMsgLen != nullptr)
        *pulMsgLen = length;
    return result;
}

namespace {

// ---- the operations ----

constexpr int16_t kChannels = 41; // two parts

MeasCondition condition()
{
    MeasCondition terrestrial{};
    terrestrial.ulFreq = 557143;
    std::memcpy(terrestrial.ucStrChan, "27      ", sizeof terrestrial.ucStrChan);
    return terrestrial;
}

const MeasCondition kCondition = condition();

const MultiMeasReg* channels()
{
    struct alignas(MultiMeasReg) Memory {
        uint8_t bytes[sizeof(MultiMeasReg) + kChannels * sizeof(MeasCondition)] = {};
    };
    static const Memory memory = [] {
        Memory filled;
        for (size_t i = 0; i < kChannels; ++i)
            std::memcpy(filled.bytes + sizeof(MultiMeasReg) + i * sizeof kCondition, &kCondition,
                        sizeof kCondition);
        std::memcpy(filled.bytes, &kChannels, sizeof kChannels);
        return filled;
    }();
    return reinterpret_cast<const MultiMeasReg*>(memory.bytes);
}

// Version 2.0 of the main program, 1 MiB.
std::array<uint8_t, 32> updateRequest()
{
    std::array<uint8_t, 32> bytes = {'V', 'X', 'U', 'P', 2, 0, 0, 0, '2', '.', '0'};
    bytes[26] = 0x10;
    const auto sum = static_cast<uint16_t>(std::accumulate(bytes.begin(), bytes.end(), 0));
    bytes[28] = static_cast<uint8_t>(sum);
    bytes[29] = static_cast<uint8_t>(sum >> 8);
    return bytes;
}

const std::array<uint8_t, 32> kUpdate = updateRequest();
const uint8_t kAddInfo[32] = {1, 2, 3};

uint32_t s_fileId = 0;
constexpr char kSet[] = "AUTUMN";      // a set's name
constexpr uint32_t kSetRecords = 2;    // of a set or a list
constexpr size_t kLargestFile = 12012; // bytes of its records

bool isSetOrList()
{
    return kFiles[s_fileId].defaultSize == 0;
}

uint32_t lastRecord()
{
    return (isSetOrList() ? kSetRecords : kFiles[s_fileId].rows) - 1;
}

// Records of the file in which no two neighbours are the same; texts are texts.
std::vector<uint8_t> contents()
{
    const vx63::settings::File& file = kFiles[s_fileId];
    std::vector<uint8_t> records(size_t{file.rows} * file.dataSize);
    for (size_t i = 0; i < records.size(); ++i)
        records[i] = static_cast<uint8_t>(37 * i + 11);
    for (uint32_t row = 0; row < file.rows; ++row)
        for (uint32_t i = 0; i < file.columnCount; ++i)
            if (const vx63::settings::Column& column = file.columns[i]; column.type == vx63::settings::kText)
                std::snprintf(reinterpret_cast<char*>(&records[row * file.dataSize + column.offset]),
                              column.width, "N%u", static_cast<unsigned>(row));
    return records;
}

struct Operation {
    size_t size; // of its record
    int32_t (*call)(void* record);
};

// An operation without a record.
template <auto kFunction, auto... kArguments>
Operation plain()
{
    return {0, [](void*) { return kFunction(kArguments...); }};
}

// One whose only argument is its record.
template <class Record, int32_t (*kFunction)(Record*)>
Operation getter()
{
    return {sizeof(Record), [](void* record) { return kFunction(static_cast<Record*>(record)); }};
}

// One whose only argument is the settings file.
template <auto kFunction>
Operation ofFile()
{
    return {0, [](void*) { return kFunction(s_fileId); }};
}

const std::map<std::string, Operation> kOperations = {
    {"vx63_ntfUpdateFile", plain<vx63_ntfUpdateFile, 0u>()},
    {"vx63_ntfUpdateFileIdx", plain<vx63_ntfUpdateFileIdx, 0u, 0u>()},

    {"vx63_setMeasInput", plain<vx63_setMeasInput, 0>()},
    {"vx63_setMeasInput(1)", plain<vx63_setMeasInput, 1>()},
    {"vx63_reqPowerSupply", plain<vx63_reqPowerSupply, 1>()},
    {"vx63_getMeasStatus", getter<MeasStatus, vx63_getMeasStatus>()},
    {"vx63_getPowerSupplyInfo", getter<PowerSupplyInfo, vx63_getPowerSupplyInfo>()},
    {"vx63_setPowerSupplyMultiMeasMixBand", plain<vx63_setPowerSupplyMultiMeasMixBand, uint8_t{1}>()},

    {"vx63_startSingleMeas", {0, [](void*) { return vx63_startSingleMeas(0, &kCondition); }}},
    {"vx63_stopSingleMeas", plain<vx63_stopSingleMeas, uint8_t{0}>()},
    {"vx63_getSingleMeasResult",
     {sizeof(SingleMeasResult),
      [](void* record) { return vx63_getSingleMeasResult(0, static_cast<SingleMeasResult*>(record)); }}},
    {"vx63_getSingleMeasResult(624)",
     {sizeof(SingleMeasResult),
      [](void* record) { return vx63_getSingleMeasResult(624, static_cast<SingleMeasResult*>(record)); }}},
    {"vx63_startConstaMeas", plain<vx63_startConstaMeas, uint8_t{0}, 1000>()},
    {"vx63_stopConstaMeas", plain<vx63_stopConstaMeas, uint8_t{0}>()},
    {"vx63_startDlyPrfMeas", {0, [](void*) { return vx63_startDlyPrfMeas(0, &kCondition); }}},
    {"vx63_stopDlyPrfMeas", plain<vx63_stopDlyPrfMeas, uint8_t{0}>()},
    {"vx63_getDlyPrfResult", getter<DlyPrfResult, vx63_getDlyPrfResult>()},
    {"vx63_startMultiMeas", {0, [](void*) { return vx63_startMultiMeas(0, channels()); }}},
    {"vx63_stopMultiMeas", plain<vx63_stopMultiMeas, uint8_t{0}>()},
    {"vx63_getMultiMeasResult",
     {sizeof(MultiMeasResult),
      [](void* record) { return vx63_getMultiMeasResult(0, static_cast<MultiMeasResult*>(record)); }}},
    {"vx63_startMultiChPrioMeas", {0, [](void*) { return vx63_startMultiChPrioMeas(0, &kCondition); }}},
    {"vx63_stopMultiChPrioMeas", plain<vx63_stopMultiChPrioMeas, uint8_t{0}>()},
    {"vx63_getMultiChPrioMeas", getter<SingleMeasResult, vx63_getMultiChPrioMeas>()},
    {"vx63_startScan", {0, [](void*) { return vx63_startScan(0, channels()); }}},
    {"vx63_stopScan", plain<vx63_stopScan, uint8_t{0}>()},
    {"vx63_getScanResult",
     {sizeof(MultiMeasResult),
      [](void* record) { return vx63_getScanResult(0, static_cast<MultiMeasResult*>(record)); }}},
    {"vx63_startOptMeas", plain<vx63_startOptMeas, 1550u>()},
    {"vx63_stopOptMeas", plain<vx63_stopOptMeas>()},
    {"vx63_getOptMeasResult", getter<int32_t, vx63_getOptMeasResult>()},
    {"vx63_startDcMeas", plain<vx63_startDcMeas>()},
    {"vx63_stopDcMeas", plain<vx63_stopDcMeas>()},
    {"vx63_getDcMeasResult", getter<uint32_t, vx63_getDcMeasResult>()},
    {"vx63_startAngleMeas", plain<vx63_startAngleMeas>()},
    {"vx63_stopAngleMeas", plain<vx63_stopAngleMeas>()},
    {"vx63_startAngleCal", plain<vx63_startAngleCal>()},
    {"vx63_getAngleCalStat", getter<AngleCalStat, vx63_getAngleCalStat>()},
    {"vx63_getAngleCalInfoDetail", getter<AngleCalInfoDetail, vx63_getAngleCalInfoDetail>()},

    {"vx63_getProductInfo", getter<ProductInfo, vx63_getProductInfo>()},
    {"vx63_getFailinfo", getter<FailInfo, vx63_getFailinfo>()},
    {"vx63_getKeyStatus", getter<KeyStatus, vx63_getKeyStatus>()},
    {"vx63_getDeviceStatus", getter<DeviceStatus, vx63_getDeviceStatus>()},
    {"vx63_setFailStat", {0, [](void*) { return vx63_setFailStat(0x1234, 1, kAddInfo); }}},
    {"vx63_reboot", plain<vx63_reboot>()},
    {"vx63_shutdown", plain<vx63_shutdown>()},
    {"vx63_standby(0)", plain<vx63_standby, uint8_t{0}>()},
    {"vx63_standby(1)", plain<vx63_standby, uint8_t{1}>()},
    {"vx63_wakeup(0)", plain<vx63_wakeup, uint8_t{0}>()},
    {"vx63_wakeup(1)", plain<vx63_wakeup, uint8_t{1}>()},
    {"vx63_force_standby", plain<vx63_force_standby>()},
    {"vx63_force_wakeup", plain<vx63_force_wakeup>()},
    {"vx63_getStandbyStat", getter<uint32_t, vx63_getStandbyStat>()},
    {"vx63_calibration", plain<vx63_calibration, uint8_t{0}>()},
    {"vx63_ntfLowBattStatChg", plain<vx63_ntfLowBattStatChg, uint8_t{0}>()},
    {"vx63_initFactoryDefault", plain<vx63_initFactoryDefault>()},
    {"vx63_setDeveloperMode", plain<vx63_setDeveloperMode, uint8_t{1}>()},
    {"vx63_prgUpdate", {0, [](void*) { return vx63_prgUpdate(kUpdate.data()); }}},

    {"vx63_buzzer", plain<vx63_buzzer, 0, 0>()},
    {"vx63_forceBuzzerVolume", plain<vx63_forceBuzzerVolume, 1, 1>()},
    {"vx63_forceBrightness", plain<vx63_forceBrightness, 1>()},

    {"vx63_init", plain<vx63_init, 17>()},
    {"vx63_setMultiMeasChannel", plain<vx63_setMultiMeasChannel>()},
    {"vx63_isFileIdUserSet", ofFile<vx63_isFileIdUserSet>()},
    {"vx63_isFileIdUserSetFlist", ofFile<vx63_isFileIdUserSetFlist>()},
    {"vx63_isFileIdLoggerSet", ofFile<vx63_isFileIdLoggerSet>()},
    {"vx63_isFileIdLoggerSetFlist", ofFile<vx63_isFileIdLoggerSetFlist>()},
    {"vx63_readSetFile",
     {kLargestFile, [](void* records) { return vx63_readSetFile(s_fileId, records, kSet, 0); }}},
    {"vx63_readSetFile(default)",
     {kLargestFile, [](void* records) { return vx63_readSetFile(s_fileId, records, kSet, 1); }}},
    {"vx63_writeSetFile",
     {0, [](void*) { return vx63_writeSetFile(s_fileId, contents().data(), kSet, kSetRecords); }}},
    {"vx63_readSetFileIdx",
     {kLargestFile,
      [](void* records) { return vx63_readSetFileIdx(s_fileId, records, lastRecord(), kSet, 0); }}},
    {"vx63_writeSetFileIdx",
     {0, [](void*) { return vx63_writeSetFileIdx(s_fileId, contents().data(), lastRecord(), kSet); }}},
    {"vx63_deleteSetFileUser", plain<vx63_deleteSetFileUser, kSet>()},
    {"vx63_deleteSetFileUserUsb1", plain<vx63_deleteSetFileUserUsb1, kSet>()},
    {"vx63_deleteSetFileUserUsb2", plain<vx63_deleteSetFileUserUsb2, kSet>()},
    {"vx63_deleteSetFileLogger", plain<vx63_deleteSetFileLogger, kSet>()},
    {"vx63_deleteSetFileLoggerUsb1", plain<vx63_deleteSetFileLoggerUsb1, kSet>()},
    {"vx63_deleteSetFileLoggerUsb2", plain<vx63_deleteSetFileLoggerUsb2, kSet>()},
    {"vx63_deleteSetFileUserBulk", ofFile<vx63_deleteSetFileUserBulk>()},
    {"vx63_deleteSetFileLoggerBulk", ofFile<vx63_deleteSetFileLoggerBulk>()},
    {"vx63_deleteAllSetFile", plain<vx63_deleteAllSetFile>()},
};

// ---- orders ----

std::vector<std::string> linesOf(const char* path)
{
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

// Tells tests/support/at_call.cpp that an operation begins, or has ended.
void mark()
{
    syscall(SYS_getpgid, -63L);
}

// "record" is null when not a byte of it was written.
json call(std::istream& words)
{
    static constexpr char kLog[] = "/var/log/libvx63.cpp.txt";
    static constexpr char kKeyLog[] = "/var/log/libvx63_key.txt";
    std::string name, over;
    words >> name >> over;
    s_watch = {};
    if (over == "over")
        words >> s_watch.over;
    const Operation& operation = kOperations.at(name);
    unlink(kLog);
    unlink(kKeyLog);
    std::vector<uint8_t> memory(operation.size + kGuard, kFill);
    const auto guard = memory.begin() + static_cast<std::ptrdiff_t>(operation.size);
    const auto isUntouched = [](uint8_t byte) { return byte == kFill; };

    s_watch.on = true;
    mark();
    const int32_t result = operation.call(memory.data());
    mark();
    s_watch.on = false;

    json record;
    if (!std::all_of(memory.begin(), guard, isUntouched))
        record = hex(memory.data(), operation.size);
    return {{"result", result},
            {"record", record},
            {"guard", std::all_of(guard, memory.end(), isUntouched)},
            {"messages", s_watch.messages},
            {"log", linesOf(kLog)},
            {"keys", linesOf(kKeyLog)}};
}

json await(unsigned queue)
{
    const std::string name = "/vx63." + std::to_string(queue);
    const mqd_t descriptor = mq_open(name.c_str(), O_RDONLY | O_NONBLOCK);
    pollfd ready{descriptor, POLLIN, 0};
    const int result = descriptor < 0 ? -1 : poll(&ready, 1, kHangMs);
    mq_close(descriptor);
    return {{"result", result == 1 ? 0 : -1}};
}

int empty(uint8_t queue)
{
    int messages = 0;
    uint8_t message[LMSG_SIZE_MAX];
    while (lmsg_trcvMq(queue, message, sizeof message, nullptr, 0) == LMSG_OK)
        ++messages;
    return messages;
}

// ---- very many calls ----

// What may follow any other, and takes no time.
bool isForMany(const std::string& name)
{
    return !name.ends_with("set") && name.find("SetFile") == std::string::npos && name != "vx63_init" &&
           name != "vx63_reboot" && name != "vx63_shutdown" && name != "vx63_prgUpdate" &&
           name != "vx63_initFactoryDefault" && !name.starts_with("vx63_standby") &&
           name != "vx63_force_standby";
}

struct Done {
    std::map<int32_t, int> results;
    int written = 0; // records of failed calls that are not as they were, and bytes behind records
};

// In step again after each call that met what it had not asked for.
Done callMany(uint8_t id, int count, unsigned seed)
{
    std::vector<Operation> operations;
    for (const auto& [name, operation] : kOperations)
        if (isForMany(name))
            operations.push_back(operation);
    std::mt19937 random(seed);
    vx63_init(id);
    Done done;
    std::vector<uint8_t> memory(kLargestFile + kGuard);
    for (int i = 0; i < count; ++i) {
        const Operation& operation = operations[random() % operations.size()];
        const auto end = memory.begin() + static_cast<std::ptrdiff_t>(operation.size + kGuard);
        std::fill(memory.begin(), end, kFill);
        const int32_t result = operation.call(memory.data());
        ++done.results[result];
        const bool keeps =
            result == VX63_OK || operation.size == sizeof(DlyPrfResult); // the blocks that came
        const auto behind = memory.begin() + static_cast<std::ptrdiff_t>(keeps ? operation.size : 0);
        done.written += !std::all_of(behind, end, [](uint8_t byte) { return byte == kFill; });
        if (result == VX63_ERR_COMM)
            empty(id);
    }
    return done;
}

// Pages in memory, and open descriptors.
json taken()
{
    long size = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return {{"pages", resident}, {"descriptors", std::distance(begin(open), end(open))}};
}

// What is taken after a first part, and after all: {"results": {"0": HOW MANY, ...}, "written": RECORDS,
// "before": {...}, "after": {...}}.
json many(std::istream& words)
{
    static constexpr uint8_t kFree[] = {1, 2, 3, 4, 5, 7, 9, 11, 13, 14, 15, 16, 17};
    int count = 0;
    unsigned seed = 0;
    size_t threads = 0;
    words >> count >> seed >> threads;
    json told = {{"results", json::object()}, {"written", 0}};
    for (const char* const when : {"before", "after"}) {
        std::vector<Done> done(threads);
        std::vector<std::thread> running;
        for (size_t i = 0; i < threads; ++i)
            running.emplace_back([&done, i, count, seed] {
                done[i] = callMany(kFree[i], count / 2, seed + static_cast<unsigned>(i));
            });
        for (std::thread& thread : running)
            thread.join();
        told[when] = taken();
        for (const Done& one : done) {
            told["written"] = told["written"].get<int>() + one.written;
            for (const auto& [result, times] : one.results) {
                json& sum = told["results"][std::to_string(result)];
                sum = (sum.is_null() ? 0 : sum.get<int>()) + times;
            }
        }
    }
    return told;
}

} // namespace

int main()
{
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string what;
        words >> what;
        json answer;
        if (what == "call") {
            answer = call(words);
        } else if (what == "many") {
            answer = many(words);
        } else if (what == "delete") {
            std::string name;
            words >> name;
            answer = {{"result", vx63_deleteSetFileUser(unhex(name).c_str())}};
        } else {
            int id = 0;
            words >> id;
            if (what == "init") {
                answer = {{"result", vx63_init(id)}};
                empty(static_cast<uint8_t>(id)); // from now on there is a queue, as if it had been waited on
            } else if (what == "await")
                answer = await(static_cast<unsigned>(id));
            else if (what == "patience") {
                s_patience = static_cast<uint32_t>(id);
                answer = {{"result", 0}};
            } else if (what == "file") {
                s_fileId = static_cast<uint32_t>(id);
                answer = {{"result", 0}};
            } else if (what == "drain")
                answer = {{"messages", empty(static_cast<uint8_t>(id))}};
            else
                return 64;
        }
        // Texts that a fault has spoiled need not be UTF-8.
        std::cout << answer.dump(-1, ' ', true, json::error_handler_t::replace) << std::endl;
    }
    return 0;
}
