// What a call costs: no heap at all, and for each line of the log one status, one open, one write, one
// close. Counted by standing in for libc's functions.
#include "libvx63.h"
#include "lmsg.h"
#include "lsys.h"
#include "support/heap_count.h"
#include "support/log_file.h"

#include <atomic>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

struct Counts {
    int64_t heap = 0;
    int stat = 0;
    int open = 0;
    int write = 0;
    int close = 0;
};
thread_local Counts* t_counts = nullptr;
time_t s_seconds = 1234567890;

void count(int Counts::*what)
{
    if (t_counts != nullptr) {
        ++(t_counts->*what);
    }
}

} // namespace

extern "C" {

int stat(const char* path, struct stat* status) noexcept
{
    count(&Counts::stat);
    return fstatat(AT_FDCWD, path, status, 0);
}

int open(const char* path, int flags, ...)
{
    count(&Counts::open);
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, 0666));
}

ssize_t write(int fd, const void* data, size_t size)
{
    count(&Counts::write);
    return syscall(SYS_write, fd, data, size);
}

int close(int fd)
{
    count(&Counts::close);
    return static_cast<int>(syscall(SYS_close, fd));
}

// A time whose microseconds have leading zeros.
int clock_gettime(clockid_t clock, struct timespec* time) noexcept
{
    if (clock == CLOCK_REALTIME && t_counts != nullptr) {
        *time = {.tv_sec = s_seconds, .tv_nsec = 42999};
        return 0;
    }
#ifdef SYS_clock_gettime64
    return static_cast<int>(syscall(SYS_clock_gettime64, clock, time));
#else
    return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
#endif
}

// A service that accepts everything: the response of a request is its head and zeros, unless more makes
// more work.
static thread_local uint8_t t_request[LMSG_SIZE_MAX];

int32_t lmsg_tsndMq(uint8_t, const void* pMsg, uint32_t ulLen, uint32_t)
{
    memcpy(t_request, pMsg, ulLen);
    return LMSG_OK;
}

int32_t lmsg_trcvMq(uint8_t, void* pMsg, uint32_t, uint32_t*, uint32_t)
{
    memset(pMsg, 0, LMSG_SIZE_MAX);
    memcpy(pMsg, t_request, 8);
    auto* const message = static_cast<uint8_t*>(pMsg);
    uint8_t* const body = message + 8;
    switch (message[2] | message[3] << 8) {
    case 0x0010: // the program update: finished, not still running
        body[0] = 3;
        break;
    case 0x0106: // 4000 points
        body[40] = 0xA0;
        body[41] = 0x0F;
        break;
    case 0x0108: // the block that was asked for, complete
        body[4] = 2;
        body[6] = t_request[8 + 4];
        break;
    case 0x0020:
    case 0x0021: // the largest floats
        for (int place = 4; place < 60; place += 4) {
            memcpy(body + place, "\xFF\xFF\x7F\x7F", 4);
        }
        break;
    default:
        break;
    }
    message[4] = 0x0C; // a whole body
    message[5] = 0x05;
    message[3] |= 0x80;
    return LMSG_OK;
}

// Every settings file holds one record; every command and every removal succeeds.
int32_t lsys_readCsvNewFmt(const char*, const char*, uint32_t, uint32_t, uint8_t*, uint32_t,
                           const LsysColumn*)
{
    return 1;
}

int32_t lsys_writeCsvNewFmt(const char*, const char*, const char*, uint32_t, uint32_t, const uint8_t*,
                            uint32_t, const LsysColumn*)
{
    return 0;
}

int32_t lsys_system(const char*)
{
    return 0;
}

int remove(const char*) noexcept
{
    return 0;
}

void sync() noexcept {}
}

namespace {

struct Operation {
    const char* name;
    int lines; // that it logs
    int32_t (*call)();
};

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

// Two parts.
const MultiMeasReg* registration()
{
    alignas(MultiMeasReg) static uint8_t memory[sizeof(MultiMeasReg) + 41 * sizeof(MeasCondition)];
    auto* const reg = reinterpret_cast<MultiMeasReg*>(memory);
    reg->sRegNum = 41;
    return reg;
}

// Every exported operation, one that can cost more than once in both ways; a symbol that is missing here
// fails EveryOperationIsListed.
const Operation kOperations[] = {
    {"vx63_init", 3, [] { return vx63_init(5); }},
    {"vx63_readSetFile", 3, [] { return oneRecord(vx63_readSetFile(14, s_file, "ABC", 0)); }},
    {"vx63_writeSetFile", 3, [] { return vx63_writeSetFile(14, s_file, "ABC", 1); }},
    {"vx63_readSetFileIdx", 8, [] { return oneRecord(vx63_readSetFileIdx(14, s_file, 0, "ABC", 0)); }},
    {"vx63_writeSetFileIdx", 9, [] { return vx63_writeSetFileIdx(14, s_file, 0, "ABC"); }},
    {"vx63_isFileIdUserSet", 0, [] { return vx63_isFileIdUserSet(15); }},
    {"vx63_isFileIdUserSetFlist", 0, [] { return vx63_isFileIdUserSetFlist(14); }},
    {"vx63_isFileIdLoggerSet", 0, [] { return vx63_isFileIdLoggerSet(14); }},
    {"vx63_isFileIdLoggerSetFlist", 0, [] { return vx63_isFileIdLoggerSetFlist(14); }},
    {"vx63_deleteSetFileUser", 5, [] { return vx63_deleteSetFileUser("ABC"); }},
    {"vx63_deleteSetFileUserUsb1", 5, [] { return vx63_deleteSetFileUserUsb1("ABC"); }},
    {"vx63_deleteSetFileUserUsb2", 5, [] { return vx63_deleteSetFileUserUsb2("ABC"); }},
    {"vx63_deleteSetFileLogger", 5, [] { return vx63_deleteSetFileLogger("ABC"); }},
    {"vx63_deleteSetFileLoggerUsb1", 5, [] { return vx63_deleteSetFileLoggerUsb1("ABC"); }},
    {"vx63_deleteSetFileLoggerUsb2", 5, [] { return vx63_deleteSetFileLoggerUsb2("ABC"); }},
    {"vx63_deleteSetFileUserBulk", 8, [] { return vx63_deleteSetFileUserBulk(14); }},
    {"vx63_deleteSetFileLoggerBulk", 8, [] { return vx63_deleteSetFileLoggerBulk(35); }},
    {"vx63_deleteAllSetFile", 12, [] { return vx63_deleteAllSetFile(); }},
    {"vx63_ntfUpdateFile", 2, [] { return vx63_ntfUpdateFile(0); }},
    {"vx63_ntfUpdateFileIdx", 2, [] { return vx63_ntfUpdateFileIdx(0, 0); }},
    {"vx63_setMeasInput", 2, [] { return vx63_setMeasInput(1); }},
    {"vx63_reqPowerSupply", 2, [] { return vx63_reqPowerSupply(1); }},
    {"vx63_getMeasStatus", 3, [] { return vx63_getMeasStatus(&s_status); }},
    {"vx63_getPowerSupplyInfo", 3, [] { return vx63_getPowerSupplyInfo(&s_info); }},
    {"vx63_setPowerSupplyMultiMeasMixBand", 2, [] { return vx63_setPowerSupplyMultiMeasMixBand(1); }},
    {"vx63_startSingleMeas", 4, [] { return vx63_startSingleMeas(1, &kCondition); }},
    {"vx63_stopSingleMeas", 3, [] { return vx63_stopSingleMeas(1); }},
    {"vx63_getSingleMeasResult", 5, [] { return vx63_getSingleMeasResult(0, &s_result); }},
    {"vx63_getSingleMeasResult", 507, [] { return vx63_getSingleMeasResult(4000, &s_result); }},
    {"vx63_startConstaMeas", 4, [] { return vx63_startConstaMeas(1, 4000); }},
    {"vx63_stopConstaMeas", 3, [] { return vx63_stopConstaMeas(1); }},
    {"vx63_startDlyPrfMeas", 4, [] { return vx63_startDlyPrfMeas(1, &kCondition); }},
    {"vx63_stopDlyPrfMeas", 3, [] { return vx63_stopDlyPrfMeas(1); }},
    {"vx63_getDlyPrfResult", 2062, [] { return vx63_getDlyPrfResult(&s_profile); }},
    {"vx63_startMultiMeas", 89, [] { return vx63_startMultiMeas(1, registration()); }},
    {"vx63_stopMultiMeas", 3, [] { return vx63_stopMultiMeas(1); }},
    {"vx63_setMultiMeasChannel", 0, [] { return vx63_setMultiMeasChannel(); }},
    {"vx63_getMultiMeasResult", 4, [] { return vx63_getMultiMeasResult(0, &s_multi); }},
    {"vx63_startMultiChPrioMeas", 4, [] { return vx63_startMultiChPrioMeas(1, &kCondition); }},
    {"vx63_stopMultiChPrioMeas", 3, [] { return vx63_stopMultiChPrioMeas(1); }},
    {"vx63_getMultiChPrioMeas", 4, [] { return vx63_getMultiChPrioMeas(&s_result); }},
    {"vx63_startScan", 89, [] { return vx63_startScan(1, registration()); }},
    {"vx63_stopScan", 3, [] { return vx63_stopScan(1); }},
    {"vx63_getScanResult", 4, [] { return vx63_getScanResult(0, &s_multi); }},
    {"vx63_startOptMeas", 3, [] { return vx63_startOptMeas(1550); }},
    {"vx63_stopOptMeas", 2, [] { return vx63_stopOptMeas(); }},
    {"vx63_getOptMeasResult", 3, [] { return vx63_getOptMeasResult(&s_optPow); }},
    {"vx63_startDcMeas", 2, [] { return vx63_startDcMeas(); }},
    {"vx63_stopDcMeas", 2, [] { return vx63_stopDcMeas(); }},
    {"vx63_getDcMeasResult", 3, [] { return vx63_getDcMeasResult(&s_dcV); }},
    {"vx63_startAngleMeas", 2, [] { return vx63_startAngleMeas(); }},
    {"vx63_stopAngleMeas", 2, [] { return vx63_stopAngleMeas(); }},
    {"vx63_startAngleCal", 2, [] { return vx63_startAngleCal(); }},
    {"vx63_getAngleCalStat", 3, [] { return vx63_getAngleCalStat(&s_calStat); }},
    {"vx63_getAngleCalInfoDetail", 3, [] { return vx63_getAngleCalInfoDetail(&s_calDetail); }},
    {"vx63_getProductInfo", 3, [] { return vx63_getProductInfo(&s_productInfo); }},
    {"vx63_getFailinfo", 1, [] { return vx63_getFailinfo(&s_failInfo); }},
    {"vx63_getKeyStatus", 0, [] { return vx63_getKeyStatus(&s_keyStatus); }},
    {"vx63_getDeviceStatus", 0, [] { return vx63_getDeviceStatus(&s_deviceStatus); }},
    {"vx63_setFailStat", 1, [] { return vx63_setFailStat(1, 1, k32Bytes); }},
    {"vx63_reboot", 2, [] { return vx63_reboot(); }},
    {"vx63_shutdown", 2, [] { return vx63_shutdown(); }},
    {"vx63_standby", 2, [] { return vx63_standby(0); }},
    {"vx63_wakeup", 2, [] { return vx63_wakeup(1); }},
    {"vx63_force_standby", 2, [] { return vx63_force_standby(); }},
    {"vx63_force_wakeup", 2, [] { return vx63_force_wakeup(); }},
    {"vx63_getStandbyStat", 3, [] { return vx63_getStandbyStat(&s_standbyStat); }},
    {"vx63_calibration", 2, [] { return vx63_calibration(1); }},
    {"vx63_ntfLowBattStatChg", 2, [] { return vx63_ntfLowBattStatChg(1); }},
    {"vx63_initFactoryDefault", 2, [] { return vx63_initFactoryDefault(); }},
    {"vx63_setDeveloperMode", 2, [] { return vx63_setDeveloperMode(1); }},
    {"vx63_prgUpdate", 2, [] { return vx63_prgUpdate(k32Bytes); }},
    {"vx63_buzzer", 3, [] { return vx63_buzzer(1, 1); }},
    {"vx63_forceBuzzerVolume", 3, [] { return vx63_forceBuzzerVolume(1, 1); }},
    {"vx63_forceBrightness", 3, [] { return vx63_forceBrightness(1); }},
};

Counts costOf(const Operation& operation)
{
    Counts counts;
    const int64_t before = vx63test::t_heapCalls;
    t_counts = &counts;
    const int32_t result = operation.call();
    t_counts = nullptr;
    counts.heap = vx63test::t_heapCalls - before;
    EXPECT_EQ(result, 0) << operation.name;
    return counts;
}

TEST(CostTest, NoOperationTouchesTheHeap)
{
    for (const Operation& operation : kOperations) {
        EXPECT_EQ(costOf(operation).heap, 0) << operation.name;
    }
    std::thread([] { // nor does the first use in a thread
        for (const Operation& operation : kOperations) {
            EXPECT_EQ(costOf(operation).heap, 0) << operation.name;
        }
    })
        .join();
}

TEST(CostTest, ALineCostsFourSystemCalls)
{
    for (const Operation& operation : kOperations) {
        const Counts counts = costOf(operation);
        EXPECT_EQ(counts.stat, operation.lines) << operation.name;
        EXPECT_EQ(counts.open, operation.lines) << operation.name;
        EXPECT_EQ(counts.write, operation.lines) << operation.name;
        EXPECT_EQ(counts.close, operation.lines) << operation.name;
    }
}

// The first operation's lines begin with that.
void expectLines(const std::string& begin)
{
    unlink(vx63test::kLogPath); // remove() is stood in for
    costOf(kOperations[0]);
    const std::vector<std::string> lines = vx63test::logLines();
    EXPECT_FALSE(lines.empty());
    for (const std::string& line : lines) {
        EXPECT_EQ(line.substr(0, line.find('(')), begin);
    }
}

TEST(CostTest, TheTimeIsTruncatedToMicroseconds)
{
    expectLines("1234567890.000042 : unit_cost : libvx63.cpp");
}

TEST(CostTest, TheTimeGoesOnBeyond2038)
{
    s_seconds = 2211840000; // 2 February 2040
    expectLines("2211840000.000042 : unit_cost : libvx63.cpp");
    s_seconds = 1234567890;
}

TEST(CostTest, EveryOperationIsListed)
{
    // The names come from the built library.
    Dl_info library;
    ASSERT_NE(dladdr(reinterpret_cast<const void*>(&vx63_init), &library), 0);
    const std::string command = std::string("nm -D --defined-only '") + library.dli_fname +
                                "' | awk '$2 == \"T\" {sub(/@.*/, \"\", $3); print $3}'";
    FILE* const names = popen(command.c_str(), "r");
    ASSERT_NE(names, nullptr);
    std::set<std::string> exported;
    char name[128];
    while (fscanf(names, "%127s", name) == 1) {
        exported.insert(name);
    }
    pclose(names);
    std::set<std::string> listed;
    for (const Operation& operation : kOperations) {
        listed.insert(operation.name);
    }
    EXPECT_EQ(listed, exported);
}

} // namespace
