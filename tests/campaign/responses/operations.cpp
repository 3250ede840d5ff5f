#include "operations.h"

namespace responses {
namespace {

using A = const Arguments&;
using enum Rule;

constexpr int kSys = 0, kDev = 6, kKey = 8, kBuz = 10, kMeas = 12;

constexpr Field same(uint16_t here, uint16_t there, uint16_t width)
{
    return {here, there, width, width};
}

constexpr Field kOneNumber[] = {same(0, 4, 4)};
constexpr Field kStatus[] = {same(0, 4, 4), same(4, 8, 2)};
constexpr Field kSupply[] = {same(0, 4, 1), same(1, 5, 1), same(2, 6, 2), same(4, 8, 4), same(8, 12, 4)};
constexpr Field kSingle[] = {same(0, 4, 1), same(2, 8, 2), same(4, 10, 2), same(8, 14, 2), same(12, 16, 24)};
constexpr Field kPoints[] = {same(0, 4, 1),  same(2, 8, 2),    same(4, 10, 2),
                             same(8, 14, 2), same(12, 16, 24), same(36, 40, 2)}; // the points apart
constexpr Field kMulti[] = {same(0, 4, 1),  same(2, 8, 2),  same(4, 10, 2),  same(6, 12, 1),
                            same(7, 13, 1), same(8, 14, 2), same(12, 16, 24)};
constexpr Field kCalStat[] = {same(0, 4, 40)};
constexpr Field kCalDetail[] = {same(0, 4, 56)};
constexpr Field kProduct[] = {same(0, 0, 105)};
constexpr Field kFailure[] = {same(0, 0, 40)};
constexpr Field kKeys[] = {{0, 0, 1, 4},   {4, 1, 1, 4},   {8, 2, 1, 4},   {12, 3, 1, 4},  {16, 4, 1, 4},
                           {20, 5, 1, 4},  {24, 6, 1, 4},  {28, 7, 1, 4},  {32, 8, 1, 4},  {36, 9, 1, 4},
                           {40, 10, 1, 4}, {44, 11, 1, 4}, {48, 12, 1, 4}, {52, 13, 1, 4}, {56, 14, 1, 4},
                           {60, 15, 1, 4}, {64, 16, 1, 4}};
constexpr Field kDevice[] = {same(0, 0, 2), same(2, 2, 1), same(3, 6, 1), {4, 3, 1, 4},
                             {8, 4, 1, 4},  {12, 5, 1, 4}, same(16, 8, 2)};

constexpr uint8_t kUserSets[] = {14, 42, 44};
constexpr uint8_t kUserLists[] = {15, 43, 45};
constexpr uint8_t kLoggerSets[] = {35, 46, 48};
constexpr uint8_t kLoggerLists[] = {36, 47, 49};

constexpr size_t kLargestFile = 12012;

uint8_t byteOf(int32_t number)
{
    return static_cast<uint8_t>(number);
}

uint32_t id(A a)
{
    return static_cast<uint32_t>(a.first);
}

template <class Record>
Record* recordOf(A a)
{
    return static_cast<Record*>(a.record);
}

const MeasCondition* condition(A a)
{
    return static_cast<const MeasCondition*>(a.data);
}

const MultiMeasReg* registration(A a)
{
    return static_cast<const MultiMeasReg*>(a.data);
}

template <int32_t kLast>
bool firstTo(A a)
{
    return 0 <= a.first && a.first <= kLast;
}

template <int32_t kFirst, int32_t kSecond>
bool bothTo(A a)
{
    return 0 <= a.first && a.first <= kFirst && 0 <= a.second && a.second <= kSecond;
}

bool isCollected(A a)
{
    return a.first == 1000 || a.first == 2000 || a.first == 4000;
}

bool isIndex(A a)
{
    return a.first >= 0;
}

bool isFailState(A a)
{
    return byteOf(a.second) <= 1;
}

bool isWaveLength(A a)
{
    return a.first != 0;
}

bool isSent(A a)
{
    return registration(a)->sRegNum >= 0;
}

using enum Details::File;

Operation asks(const char* name, int service, uint16_t command, uint16_t length, uint32_t timeout, Rule rule,
               int lines, int32_t (*call)(A), Details details = {})
{
    return {details, name, service, command, length, timeout, rule, lines, call};
}

Operation local(const char* name, int lines, int32_t (*call)(A), Details details = {})
{
    return {details, name, kNobody, 0, 0, 0, noRet, lines, call};
}

#define CALL(expression) [](A a [[maybe_unused]]) -> int32_t { return expression; }

const Operation kOperations[] = {
    local("vx63_init", 3, CALL(vx63_init(a.first)), {.accepts = firstTo<17>}),
    local("vx63_readSetFile", 3, CALL(vx63_readSetFile(id(a), a.record, a.name, a.flag)),
          {.recordSize = kLargestFile, .logsTexts = true, .file = read}),
    local("vx63_writeSetFile", 3,
          CALL(vx63_writeSetFile(id(a), a.data, a.name, static_cast<uint32_t>(a.second))),
          {.dataSize = kLargestFile, .logsTexts = true, .file = write}),
    local("vx63_readSetFileIdx", 8,
          CALL(vx63_readSetFileIdx(id(a), a.record, static_cast<uint32_t>(a.second), a.name, a.flag)),
          {.recordSize = kLargestFile, .logsTexts = true, .file = readRow}),
    local("vx63_writeSetFileIdx", 9,
          CALL(vx63_writeSetFileIdx(id(a), a.data, static_cast<uint32_t>(a.second), a.name)),
          {.dataSize = kLargestFile, .logsTexts = true, .file = writeRow}),
    local("vx63_isFileIdUserSet", 0, CALL(vx63_isFileIdUserSet(a.first)),
          {.ends = false, .file = kind, .kinds = kUserSets}),
    local("vx63_isFileIdUserSetFlist", 0, CALL(vx63_isFileIdUserSetFlist(a.first)),
          {.ends = false, .file = kind, .kinds = kUserLists}),
    local("vx63_isFileIdLoggerSet", 0, CALL(vx63_isFileIdLoggerSet(a.first)),
          {.ends = false, .file = kind, .kinds = kLoggerSets}),
    local("vx63_isFileIdLoggerSetFlist", 0, CALL(vx63_isFileIdLoggerSetFlist(a.first)),
          {.ends = false, .file = kind, .kinds = kLoggerLists}),
    local("vx63_deleteSetFileUser", 6, CALL(vx63_deleteSetFileUser(a.name)),
          {.logsTexts = true, .file = remove, .set = 14}),
    local("vx63_deleteSetFileUserUsb1", 6, CALL(vx63_deleteSetFileUserUsb1(a.name)),
          {.logsTexts = true, .file = remove, .set = 42}),
    local("vx63_deleteSetFileUserUsb2", 6, CALL(vx63_deleteSetFileUserUsb2(a.name)),
          {.logsTexts = true, .file = remove, .set = 44}),
    local("vx63_deleteSetFileLogger", 6, CALL(vx63_deleteSetFileLogger(a.name)),
          {.logsTexts = true, .file = remove, .set = 35}),
    local("vx63_deleteSetFileLoggerUsb1", 6, CALL(vx63_deleteSetFileLoggerUsb1(a.name)),
          {.logsTexts = true, .file = remove, .set = 46}),
    local("vx63_deleteSetFileLoggerUsb2", 6, CALL(vx63_deleteSetFileLoggerUsb2(a.name)),
          {.logsTexts = true, .file = remove, .set = 48}),
    local("vx63_deleteSetFileUserBulk", 9, CALL(vx63_deleteSetFileUserBulk(id(a))),
          {.file = clear, .kinds = kUserSets}),
    local("vx63_deleteSetFileLoggerBulk", 9, CALL(vx63_deleteSetFileLoggerBulk(id(a))),
          {.file = clear, .kinds = kLoggerSets}),
    local("vx63_deleteAllSetFile", 12, CALL(vx63_deleteAllSetFile()), {.file = clearAll}),
    asks("vx63_ntfUpdateFile", kSys, 0x12, 4, 10000, parameter, 2, CALL(vx63_ntfUpdateFile(id(a))),
         {.accepts = firstTo<49>}),
    asks("vx63_ntfUpdateFileIdx", kSys, 0x13, 8, 10000, parameter, 2,
         CALL(vx63_ntfUpdateFileIdx(id(a), static_cast<uint32_t>(a.second))), {.accepts = firstTo<49>}),
    asks("vx63_setMeasInput", kMeas, 0x100, 8, 10000, measurement, 2, CALL(vx63_setMeasInput(a.first)),
         {.accepts = firstTo<1>}),
    asks("vx63_reqPowerSupply", kMeas, 0x15, 4, 10000, measurement, 2, CALL(vx63_reqPowerSupply(a.first)),
         {.accepts = firstTo<4>}),
    asks("vx63_getMeasStatus", kMeas, 0x17, 4, 10000, measurement, 3,
         CALL(vx63_getMeasStatus(recordOf<MeasStatus>(a))), {.recordSize = 8, .fields = kStatus}),
    asks("vx63_getPowerSupplyInfo", kDev, 0x22, 4, 10000, strict, 3,
         CALL(vx63_getPowerSupplyInfo(recordOf<PowerSupplyInfo>(a))),
         {.recordSize = 12, .fields = kSupply, .testsRecord = false}),
    asks("vx63_setPowerSupplyMultiMeasMixBand", kMeas, 0x1C, 4, 5000, strict, 2,
         CALL(vx63_setPowerSupplyMultiMeasMixBand(byteOf(a.first)))),
    asks("vx63_startSingleMeas", kMeas, 0x103, 40, 10000, measurement, 5,
         CALL(vx63_startSingleMeas(byteOf(a.first), condition(a))), {.dataSize = 32, .logsTexts = true}),
    asks("vx63_stopSingleMeas", kMeas, 0x103, 40, 10000, measurement, 3,
         CALL(vx63_stopSingleMeas(byteOf(a.first)))),
    asks("vx63_getSingleMeasResult", kMeas, 0x104, 4, 10000, reading, 5,
         CALL(vx63_getSingleMeasResult(0, recordOf<SingleMeasResult>(a))),
         {.recordSize = 8040, .fields = kSingle}),
    asks("vx63_getSingleMeasResult(points)", kMeas, 0x106, 8, 10000, reading, 7,
         CALL(vx63_getSingleMeasResult(static_cast<uint16_t>(a.first | 1), recordOf<SingleMeasResult>(a))),
         {.recordSize = 8040, .fields = kPoints}),
    asks("vx63_startConstaMeas", kMeas, 0x105, 8, 10000, measurement, 4,
         CALL(vx63_startConstaMeas(byteOf(a.second), a.first)), {.accepts = isCollected}),
    asks("vx63_stopConstaMeas", kMeas, 0x105, 8, 10000, measurement, 3,
         CALL(vx63_stopConstaMeas(byteOf(a.first)))),
    asks("vx63_startDlyPrfMeas", kMeas, 0x107, 40, 10000, measurement, 5,
         CALL(vx63_startDlyPrfMeas(byteOf(a.first), condition(a))), {.dataSize = 32, .logsTexts = true}),
    asks("vx63_stopDlyPrfMeas", kMeas, 0x107, 40, 10000, measurement, 3,
         CALL(vx63_stopDlyPrfMeas(byteOf(a.first)))),
    asks("vx63_getDlyPrfResult", kMeas, 0x108, 8, 10000, reading, 2,
         CALL(vx63_getDlyPrfResult(recordOf<DlyPrfResult>(a))), {.recordSize = 2050, .loop = Loop::profile}),
    asks("vx63_startMultiMeas", kMeas, 0x109, 1292, 10000, measurement, 5,
         CALL(vx63_startMultiMeas(byteOf(a.first), registration(a))),
         {.accepts = isSent, .dataSize = 4, .logsTexts = true, .loop = Loop::registration}),
    asks("vx63_stopMultiMeas", kMeas, 0x109, 1292, 10000, measurement, 3,
         CALL(vx63_stopMultiMeas(byteOf(a.first)))),
    local("vx63_setMultiMeasChannel", 0, CALL(vx63_setMultiMeasChannel()), {.ends = false}),
    asks("vx63_getMultiMeasResult", kMeas, 0x10B, 12, 10000, reading, 4,
         CALL(vx63_getMultiMeasResult(a.first, recordOf<MultiMeasResult>(a))),
         {.accepts = isIndex, .recordSize = 36, .fields = kMulti}),
    asks("vx63_startMultiChPrioMeas", kMeas, 0x103, 40, 10000, measurement, 5,
         CALL(vx63_startMultiChPrioMeas(byteOf(a.first), condition(a))), {.dataSize = 32, .logsTexts = true}),
    asks("vx63_stopMultiChPrioMeas", kMeas, 0x103, 40, 10000, measurement, 3,
         CALL(vx63_stopMultiChPrioMeas(byteOf(a.first)))),
    asks("vx63_getMultiChPrioMeas", kMeas, 0x104, 4, 10000, reading, 4,
         CALL(vx63_getMultiChPrioMeas(recordOf<SingleMeasResult>(a))),
         {.recordSize = 8040, .fields = kSingle}),
    asks("vx63_startScan", kMeas, 0x109, 1292, 10000, measurement, 5,
         CALL(vx63_startScan(byteOf(a.first), registration(a))),
         {.accepts = isSent, .dataSize = 4, .logsTexts = true, .loop = Loop::registration}),
    asks("vx63_stopScan", kMeas, 0x109, 1292, 10000, measurement, 3, CALL(vx63_stopScan(byteOf(a.first)))),
    asks("vx63_getScanResult", kMeas, 0x10B, 12, 10000, reading, 4,
         CALL(vx63_getScanResult(a.first, recordOf<MultiMeasResult>(a))),
         {.accepts = isIndex, .recordSize = 36, .fields = kMulti}),
    asks("vx63_startOptMeas", kMeas, 0x10C, 12, 10000, measurement, 3, CALL(vx63_startOptMeas(id(a))),
         {.accepts = isWaveLength}),
    asks("vx63_stopOptMeas", kMeas, 0x10C, 12, 10000, measurement, 2, CALL(vx63_stopOptMeas())),
    asks("vx63_getOptMeasResult", kMeas, 0x10D, 4, 10000, measurement, 3,
         CALL(vx63_getOptMeasResult(recordOf<int32_t>(a))), {.recordSize = 4, .fields = kOneNumber}),
    asks("vx63_startDcMeas", kMeas, 0x10E, 8, 10000, measurement, 2, CALL(vx63_startDcMeas())),
    asks("vx63_stopDcMeas", kMeas, 0x10E, 8, 10000, measurement, 2, CALL(vx63_stopDcMeas())),
    asks("vx63_getDcMeasResult", kMeas, 0x10F, 4, 10000, measurement, 3,
         CALL(vx63_getDcMeasResult(recordOf<uint32_t>(a))), {.recordSize = 4, .fields = kOneNumber}),
    asks("vx63_startAngleMeas", kDev, 0x07, 4, 10000, strict, 2, CALL(vx63_startAngleMeas())),
    asks("vx63_stopAngleMeas", kDev, 0x07, 4, 10000, strict, 2, CALL(vx63_stopAngleMeas())),
    asks("vx63_startAngleCal", kDev, 0x1F, 4, 10000, strict, 2, CALL(vx63_startAngleCal())),
    asks("vx63_getAngleCalStat", kDev, 0x20, 4, 10000, strict, 3,
         CALL(vx63_getAngleCalStat(recordOf<AngleCalStat>(a))),
         {.recordSize = 40, .fields = kCalStat, .testsRecord = false}),
    asks("vx63_getAngleCalInfoDetail", kDev, 0x21, 4, 10000, strict, 3,
         CALL(vx63_getAngleCalInfoDetail(recordOf<AngleCalInfoDetail>(a))),
         {.recordSize = 56, .fields = kCalDetail, .testsRecord = false}),
    asks("vx63_getProductInfo", kSys, 0x05, 4, 10000, noRet, 3,
         CALL(vx63_getProductInfo(recordOf<ProductInfo>(a))),
         {.recordSize = 105, .fields = kProduct, .logsTexts = true}),
    asks("vx63_getFailinfo", kSys, 0x04, 4, 10000, noRet, 1, CALL(vx63_getFailinfo(recordOf<FailInfo>(a))),
         {.recordSize = 40, .fields = kFailure, .ends = false}),
    asks("vx63_getKeyStatus", kKey, 0x08, 4, 10000, noRet, 0, CALL(vx63_getKeyStatus(recordOf<KeyStatus>(a))),
         {.recordSize = 68, .fields = kKeys, .ends = false}),
    asks("vx63_getDeviceStatus", kDev, 0x06, 4, 10000, noRet, 0,
         CALL(vx63_getDeviceStatus(recordOf<DeviceStatus>(a))),
         {.recordSize = 20, .fields = kDevice, .ends = false}),
    asks("vx63_setFailStat", kSys, 0x11, 36, 10000, noRet, 1,
         CALL(vx63_setFailStat(static_cast<uint16_t>(a.first), byteOf(a.second),
                               static_cast<const uint8_t*>(a.data))),
         {.accepts = isFailState, .dataSize = 32, .ends = false}),
    asks("vx63_reboot", kSys, 0x0C, 4, 10000, strict, 2, CALL(vx63_reboot())),
    asks("vx63_shutdown", kSys, 0x0D, 4, 10000, strict, 2, CALL(vx63_shutdown())),
    asks("vx63_standby", kByMode, 0x0E, 4, 10000, strict, 2, CALL(vx63_standby(byteOf(a.first)))),
    asks("vx63_wakeup", kByMode, 0x0F, 4, 10000, strict, 2, CALL(vx63_wakeup(byteOf(a.first)))),
    asks("vx63_force_standby", kMeas, 0x1D, 4, 10000, strict, 2, CALL(vx63_force_standby())),
    asks("vx63_force_wakeup", kMeas, 0x1E, 4, 10000, strict, 2, CALL(vx63_force_wakeup())),
    asks("vx63_getStandbyStat", kMeas, 0x18, 4, 10000, parameter, 3,
         CALL(vx63_getStandbyStat(recordOf<uint32_t>(a))), {.recordSize = 4, .fields = kOneNumber}),
    asks("vx63_calibration", kMeas, 0x16, 4, 5000, strict, 2, CALL(vx63_calibration(byteOf(a.first)))),
    asks("vx63_ntfLowBattStatChg", kMeas, 0x19, 4, 5000, lowBattery, 2,
         CALL(vx63_ntfLowBattStatChg(byteOf(a.first)))),
    asks("vx63_initFactoryDefault", kSys, 0x1A, 4, 5000, strict, 2, CALL(vx63_initFactoryDefault())),
    asks("vx63_setDeveloperMode", kSys, 0x1B, 4, 5000, strict, 2,
         CALL(vx63_setDeveloperMode(byteOf(a.first)))),
    asks("vx63_prgUpdate", kSys, 0x10, 32, 600000, update, 2, CALL(vx63_prgUpdate(a.data)),
         {.dataSize = 32, .loop = Loop::update}),
    asks("vx63_buzzer", kBuz, 0x09, 4, 10000, buzzer, 3, CALL(vx63_buzzer(a.first, a.second)),
         {.accepts = bothTo<4, 2>}),
    asks("vx63_forceBuzzerVolume", kBuz, 0x0A, 4, 10000, volume, 3,
         CALL(vx63_forceBuzzerVolume(a.first, a.second)), {.accepts = bothTo<4, 3>}),
    asks("vx63_forceBrightness", kSys, 0x0B, 4, 10000, parameter, 3, CALL(vx63_forceBrightness(a.first)),
         {.accepts = firstTo<2>}),
};

#undef CALL

} // namespace

int32_t resultOf(Rule rule, uint8_t ret)
{
    const bool isMeasurement = rule == measurement || rule == reading;
    const bool isBuzzer = rule == buzzer || rule == volume;
    if (rule == noRet || (rule == update ? ret == 3 : ret == 0))
        return VX63_OK;
    if ((isMeasurement && ret == 7) || (rule == lowBattery && ret == 3))
        return VX63_OK;
    if (ret == 2 && rule != strict && rule != update)
        return VX63_ERR_ARG;
    if (ret == 3 && rule == reading)
        return VX63_ERR_POWER;
    if (ret == 3 && isBuzzer)
        return VX63_ERR_REPEAT;
    if (ret == 4 && rule == buzzer)
        return VX63_ERR_PRIORITY;
    return VX63_ERR_COMM;
}

std::span<const Operation> operations()
{
    return kOperations;
}

} // namespace responses
