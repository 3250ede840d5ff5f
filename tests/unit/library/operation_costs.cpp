#include "operation_costs.h"

#include "libvx63.h"
#include "support/log_file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace vx63test {
namespace {

SingleMeasResult s_result;
MeasStatus s_status;
PowerSupplyInfo s_info;
DlyPrfResult s_profile;
MultiMeasResult s_multi;
int32_t s_optPow;
uint32_t s_dcV;
AngleCalStat s_calStat;
AngleCalInfoDetail s_calDetail;
const MeasCondition kCondition = {};
ProductInfo s_productInfo;
FailInfo s_failInfo;
KeyStatus s_keyStatus;
DeviceStatus s_deviceStatus;
uint32_t s_standbyStat;
const uint8_t k32Bytes[32] = {};
uint8_t s_file[12012];

// The number of records that a read returns, as a result.
int32_t oneRecord(int32_t count)
{
    return count == 1 ? 0 : -1;
}

const MultiMeasReg* registration(int16_t channels)
{
    alignas(MultiMeasReg) static uint8_t memory[sizeof(MultiMeasReg) + 255 * sizeof(MeasCondition)];
    auto* const reg = reinterpret_cast<MultiMeasReg*>(memory);
    reg->sRegNum = channels;
    return reg;
}

const Calls kReads = {{"lsys_readCsvNewFmt", 1}};
const Calls kWrites = {{"lsys_writeCsvNewFmt", 1}, {"sync", 1}};
const Calls kReadsAndWrites = {{"lsys_readCsvNewFmt", 1}, {"lsys_writeCsvNewFmt", 1}, {"sync", 1}};
const Calls kRemoves = {{"remove", 1}, {"sync", 1}};
const Calls kEmpties = {{"lsys_system", 1}, {"lsys_writeCsvNewFmt", 1}, {"sync", 1}};
const Calls kRefusal = {{"getpid", 1}, {"lmsg_tsndMq", 1}};

// Every exported operation, one that can cost more than once in both ways; a symbol that is missing here
// fails EveryOperationIsListed.
const OperationCost kOperations[] = {
    {"vx63_init", 3, 0, {{"getpid", 1}}, [] { return vx63_init(5); }},
    {"vx63_readSetFile", 3, 0, kReads, [] { return oneRecord(vx63_readSetFile(14, s_file, "ABC", 0)); }},
    {"vx63_readSetFile(default)", 3, 0, {}, [] { return oneRecord(vx63_readSetFile(0, s_file, "", 1)); }},
    {"vx63_writeSetFile", 3, 0, kWrites, [] { return vx63_writeSetFile(14, s_file, "ABC", 1); }},
    {"vx63_readSetFileIdx", 8, 0, kReads,
     [] { return oneRecord(vx63_readSetFileIdx(14, s_file, 0, "ABC", 0)); }},
    {"vx63_writeSetFileIdx", 9, 0, kReadsAndWrites,
     [] { return vx63_writeSetFileIdx(14, s_file, 0, "ABC"); }},
    {"vx63_isFileIdUserSet", 0, 0, {}, [] { return vx63_isFileIdUserSet(15); }},
    {"vx63_isFileIdUserSetFlist", 0, 0, {}, [] { return vx63_isFileIdUserSetFlist(14); }},
    {"vx63_isFileIdLoggerSet", 0, 0, {}, [] { return vx63_isFileIdLoggerSet(14); }},
    {"vx63_isFileIdLoggerSetFlist", 0, 0, {}, [] { return vx63_isFileIdLoggerSetFlist(14); }},
    {"vx63_deleteSetFileUser", 5, 0, kRemoves, [] { return vx63_deleteSetFileUser("ABC"); }},
    {"vx63_deleteSetFileUserUsb1", 5, 0, kRemoves, [] { return vx63_deleteSetFileUserUsb1("ABC"); }},
    {"vx63_deleteSetFileUserUsb2", 5, 0, kRemoves, [] { return vx63_deleteSetFileUserUsb2("ABC"); }},
    {"vx63_deleteSetFileLogger", 5, 0, kRemoves, [] { return vx63_deleteSetFileLogger("ABC"); }},
    {"vx63_deleteSetFileLoggerUsb1", 5, 0, kRemoves, [] { return vx63_deleteSetFileLoggerUsb1("ABC"); }},
    {"vx63_deleteSetFileLoggerUsb2", 5, 0, kRemoves, [] { return vx63_deleteSetFileLoggerUsb2("ABC"); }},
    {"vx63_deleteSetFileUserBulk", 8, 0, kEmpties, [] { return vx63_deleteSetFileUserBulk(14); }},
    {"vx63_deleteSetFileLoggerBulk", 8, 0, kEmpties, [] { return vx63_deleteSetFileLoggerBulk(35); }},
    {"vx63_deleteAllSetFile", 12, 0, {{"lsys_system", 10}}, [] { return vx63_deleteAllSetFile(); }},
    {"vx63_ntfUpdateFile", 2, 1, {}, [] { return vx63_ntfUpdateFile(0); }},
    {"vx63_ntfUpdateFileIdx", 2, 1, {}, [] { return vx63_ntfUpdateFileIdx(0, 0); }},
    {"vx63_setMeasInput", 2, 1, {}, [] { return vx63_setMeasInput(1); }},
    {"vx63_reqPowerSupply", 2, 1, {}, [] { return vx63_reqPowerSupply(1); }},
    {"vx63_getMeasStatus", 3, 1, {}, [] { return vx63_getMeasStatus(&s_status); }},
    {"vx63_getPowerSupplyInfo", 3, 1, {}, [] { return vx63_getPowerSupplyInfo(&s_info); }},
    {"vx63_setPowerSupplyMultiMeasMixBand", 2, 1, {}, [] { return vx63_setPowerSupplyMultiMeasMixBand(1); }},
    {"vx63_startSingleMeas", 4, 1, {}, [] { return vx63_startSingleMeas(1, &kCondition); }},
    {"vx63_stopSingleMeas", 3, 1, {}, [] { return vx63_stopSingleMeas(1); }},
    {"vx63_getSingleMeasResult", 5, 1, {}, [] { return vx63_getSingleMeasResult(0, &s_result); }},
    {"vx63_getSingleMeasResult(624)", 85, 1, {}, [] { return vx63_getSingleMeasResult(624, &s_result); }},
    {"vx63_getSingleMeasResult(4000)", 507, 1, {}, [] { return vx63_getSingleMeasResult(4000, &s_result); }},
    {"vx63_startConstaMeas", 4, 1, {}, [] { return vx63_startConstaMeas(1, 4000); }},
    {"vx63_stopConstaMeas", 3, 1, {}, [] { return vx63_stopConstaMeas(1); }},
    {"vx63_startDlyPrfMeas", 4, 1, {}, [] { return vx63_startDlyPrfMeas(1, &kCondition); }},
    {"vx63_stopDlyPrfMeas", 3, 1, {}, [] { return vx63_stopDlyPrfMeas(1); }},
    {"vx63_getDlyPrfResult", 2062, 6, {}, [] { return vx63_getDlyPrfResult(&s_profile); }},
    {"vx63_startMultiMeas(40)", 86, 1, {}, [] { return vx63_startMultiMeas(1, registration(40)); }},
    {"vx63_startMultiMeas(41)", 89, 2, {}, [] { return vx63_startMultiMeas(1, registration(41)); }},
    {"vx63_startMultiMeas(255)", 522, 7, {}, [] { return vx63_startMultiMeas(1, registration(255)); }},
    {"vx63_stopMultiMeas", 3, 1, {}, [] { return vx63_stopMultiMeas(1); }},
    {"vx63_setMultiMeasChannel", 0, 0, {}, [] { return vx63_setMultiMeasChannel(); }},
    {"vx63_getMultiMeasResult", 4, 1, {}, [] { return vx63_getMultiMeasResult(0, &s_multi); }},
    {"vx63_startMultiChPrioMeas", 4, 1, {}, [] { return vx63_startMultiChPrioMeas(1, &kCondition); }},
    {"vx63_stopMultiChPrioMeas", 3, 1, {}, [] { return vx63_stopMultiChPrioMeas(1); }},
    {"vx63_getMultiChPrioMeas", 4, 1, {}, [] { return vx63_getMultiChPrioMeas(&s_result); }},
    {"vx63_startScan(40)", 86, 1, {}, [] { return vx63_startScan(1, registration(40)); }},
    {"vx63_startScan(41)", 89, 2, {}, [] { return vx63_startScan(1, registration(41)); }},
    {"vx63_startScan(255)", 522, 7, {}, [] { return vx63_startScan(1, registration(255)); }},
    {"vx63_stopScan", 3, 1, {}, [] { return vx63_stopScan(1); }},
    {"vx63_getScanResult", 4, 1, {}, [] { return vx63_getScanResult(0, &s_multi); }},
    {"vx63_startOptMeas", 3, 1, {}, [] { return vx63_startOptMeas(1550); }},
    {"vx63_stopOptMeas", 2, 1, {}, [] { return vx63_stopOptMeas(); }},
    {"vx63_getOptMeasResult", 3, 1, {}, [] { return vx63_getOptMeasResult(&s_optPow); }},
    {"vx63_startDcMeas", 2, 1, {}, [] { return vx63_startDcMeas(); }},
    {"vx63_stopDcMeas", 2, 1, {}, [] { return vx63_stopDcMeas(); }},
    {"vx63_getDcMeasResult", 3, 1, {}, [] { return vx63_getDcMeasResult(&s_dcV); }},
    {"vx63_startAngleMeas", 2, 1, {}, [] { return vx63_startAngleMeas(); }},
    {"vx63_stopAngleMeas", 2, 1, {}, [] { return vx63_stopAngleMeas(); }},
    {"vx63_startAngleCal", 2, 1, {}, [] { return vx63_startAngleCal(); }},
    {"vx63_getAngleCalStat", 3, 1, {}, [] { return vx63_getAngleCalStat(&s_calStat); }},
    {"vx63_getAngleCalInfoDetail", 3, 1, {}, [] { return vx63_getAngleCalInfoDetail(&s_calDetail); }},
    {"vx63_getProductInfo", 3, 1, {}, [] { return vx63_getProductInfo(&s_productInfo); }},
    {"vx63_getFailinfo", 1, 1, {}, [] { return vx63_getFailinfo(&s_failInfo); }},
    {"vx63_getKeyStatus", 0, 1, {}, [] { return vx63_getKeyStatus(&s_keyStatus); }},
    {"vx63_getDeviceStatus", 0, 1, {}, [] { return vx63_getDeviceStatus(&s_deviceStatus); }},
    {"vx63_setFailStat", 1, 1, {}, [] { return vx63_setFailStat(1, 1, k32Bytes); }},
    {"vx63_reboot", 2, 1, {}, [] { return vx63_reboot(); }},
    {"vx63_shutdown", 2, 1, {}, [] { return vx63_shutdown(); }},
    {"vx63_standby", 2, 1, {}, [] { return vx63_standby(0); }},
    {"vx63_wakeup", 2, 1, {}, [] { return vx63_wakeup(1); }},
    {"vx63_force_standby", 2, 1, {}, [] { return vx63_force_standby(); }},
    {"vx63_force_wakeup", 2, 1, {}, [] { return vx63_force_wakeup(); }},
    {"vx63_getStandbyStat", 3, 1, {}, [] { return vx63_getStandbyStat(&s_standbyStat); }},
    {"vx63_calibration", 2, 1, {}, [] { return vx63_calibration(1); }},
    {"vx63_ntfLowBattStatChg", 2, 1, {}, [] { return vx63_ntfLowBattStatChg(1); }},
    {"vx63_initFactoryDefault", 2, 1, {}, [] { return vx63_initFactoryDefault(); }},
    {"vx63_setDeveloperMode", 2, 1, {}, [] { return vx63_setDeveloperMode(1); }},
    {"vx63_prgUpdate", 2, 1, {}, [] { return vx63_prgUpdate(k32Bytes); }},
    {"vx63_buzzer", 3, 1, {}, [] { return vx63_buzzer(1, 1); }},
    {"vx63_forceBuzzerVolume", 3, 1, {}, [] { return vx63_forceBuzzerVolume(1, 1); }},
    {"vx63_forceBrightness", 3, 1, {}, [] { return vx63_forceBrightness(1); }},
};

int32_t setInput()
{
    return vx63_setMeasInput(1);
}

int32_t getKeys()
{
    return vx63_getKeyStatus(&s_keyStatus);
}

// Too long for any path; two lines carry it, which are written from their pieces.
const std::string kLongName(2000, 'N');

int32_t readLongName()
{
    return vx63_readSetFile(14, s_file, kLongName.c_str(), 0);
}

using enum Service;

// What is refused, by the library or a service, and what does not come.
const OperationCost kFailures[] = {
    {"vx63_setMeasInput(argument)", 3, 0, {}, [] { return vx63_setMeasInput(2); }, VX63_ERR_ARG},
    {"vx63_setMeasInput(refused)", 3, 1, {}, setInput, VX63_ERR_COMM, Refuses},
    {"vx63_setMeasInput(silence)", 4, 1, {}, setInput, VX63_ERR_COMM, IsSilent},
    {"vx63_setMeasInput(full)", 4, 0, {{"lmsg_tsndMq", 1}}, setInput, VX63_ERR_COMM, IsFull},
    {"vx63_setMeasInput(late)", 6, 1, {{"getpid", 1}}, setInput, VX63_ERR_COMM, IsOneBehind},
    {"vx63_setMeasInput(asked)", 6, 1, kRefusal, setInput, VX63_ERR_COMM, AsksInstead},
    {"vx63_getKeyStatus(silence)", 19, 1, {}, getKeys, VX63_ERR_COMM, IsSilent},
    {"vx63_readSetFile(long)", 3, 0, {{"write", -1}, {"writev", 1}}, readLongName, -1},
};

} // namespace

Calls expectedCalls(const OperationCost& operation)
{
    Calls calls = operation.others;
    for (const char* const perLine : {"stat", "open", "clock_gettime", "write", "close"}) {
        calls[perLine] += operation.lines;
    }
    for (const char* const perExchange : {"lmsg_tsndMq", "lmsg_trcvMq"}) {
        calls[perExchange] += operation.exchanges;
    }
    std::erase_if(calls, [](const auto& call) { return call.second == 0; });
    return calls;
}

void forEachOperation(const std::function<void(const OperationCost& operation)>& check)
{
    const auto checkOne = [&check](const OperationCost& operation) {
        SCOPED_TRACE(operation.name);
        s_service = operation.service;
        removeLog();
        check(operation);
    };
    std::ranges::for_each(kOperations, checkOne);
    std::ranges::for_each(kFailures, checkOne);
    s_service = Service::Accepts;
}

} // namespace vx63test
