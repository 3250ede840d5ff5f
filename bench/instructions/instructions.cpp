// instructions [CASE TIMES]: calls of the shipped libraries, for bench/instructions/count. Without arguments
// the cases, a line each; with arguments makes the calls of one, the first is 0, so many times.
//
// What a call does is the same each time and everywhere: time, process id, addresses and messages are fixed.
// To be run by tests/isolated: it writes into /var/log.
#include "libvx63.h"
#include "libvx63_settings.h"
#include "lmsg.h"
#include "lsys.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <iterator>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// What a service answers, and what a request must measure; both with the head of 8 bytes.
uint8_t s_response[LMSG_SIZE_MAX];
uint32_t s_responseSize;
uint32_t s_requestSize;

} // namespace

extern "C" {

// The digits of a line must depend on neither the moment nor the process.
int clock_gettime(clockid_t, struct timespec* time) noexcept
{
    *time = {.tv_sec = 1'700'000'000, .tv_nsec = 123'456'789};
    return 0;
}

pid_t getpid() noexcept
{
    return 12345;
}

pthread_t pthread_self() noexcept
{
    return 140'000'000'000'000;
}

// As cheap as can be: it is counted with the library.
int32_t lmsg_tsndMq(uint8_t, const void*, uint32_t ulLen, uint32_t)
{
    return ulLen == s_requestSize ? LMSG_OK : LMSG_ERR_FORMAT;
}

int32_t lmsg_trcvMq(uint8_t, void* pMsg, uint32_t, uint32_t* pulMsgLen, uint32_t)
{
    memcpy(pMsg, s_response, s_responseSize);
    *pulMsgLen = s_responseSize;
    return LMSG_OK;
}
}

namespace {

constexpr char kLog[] = "/var/log/libvx63.cpp.txt";

// A settings file with its factory contents, which the platform's functions read and write.
template <uint32_t kFileId>
struct SettingsFile {
    static constexpr const vx63::settings::File& kFile = vx63::settings::kFiles[kFileId];

    SettingsFile()
    {
        snprintf(path, sizeof path, "/var/log/instructions%u.csv", kFileId);
        vx63_readSetFile(kFileId, records, nullptr, 1);
        std::transform(kFile.columns, kFile.columns + kFile.columnCount, columns,
                       [](const vx63::settings::Column& column) {
                           return LsysColumn{column.type, column.width, column.offset};
                       });
        for (uint32_t i = 0; i < kFile.columnCount; ++i) {
            strcat(header, i == 0 ? "" : ",");
            strncat(header, kFile.columns[i].name.data(), kFile.columns[i].name.size());
        }
        write();
    }
    ~SettingsFile() { unlink(path); }

    bool read()
    {
        return lsys_readCsvNewFmt(path, vx63::settings::kVersion, kFile.rows, kFile.columnCount, records,
                                  kFile.dataSize, columns) == static_cast<int32_t>(kFile.rows);
    }
    bool write()
    {
        return lsys_writeCsvNewFmt(path, vx63::settings::kVersion, header, kFile.rows, kFile.columnCount,
                                   records, kFile.dataSize, columns) == LSYS_OK;
    }

    char path[40];
    char header[1024] = {};
    LsysColumn columns[kFile.columnCount];
    uint8_t records[kFile.defaultSize];
};

SettingsFile<VX63_SET_FILE_CATV_UP_STREAM>* s_longFile;
SettingsFile<VX63_SET_FILE_PMEAS_MNG>* s_wideFile;

// Static: where a record lies is logged.
uint8_t s_records[sizeof s_longFile->records];
DeviceStatus s_deviceStatus;
MeasStatus s_measStatus;
SingleMeasResult s_result;
alignas(MultiMeasReg) uint8_t s_registration[sizeof(MultiMeasReg) + 40 * sizeof(MeasCondition)];

bool registerChannels(int16_t count)
{
    auto* const reg = reinterpret_cast<MultiMeasReg*>(s_registration);
    reg->sRegNum = count;
    return vx63_startMultiMeas(1, reg) == VX63_OK;
}

struct Case {
    const char* name;
    int lines; // that a call logs
    bool (*call)();
    uint16_t command = 0; // of its one exchange
    uint32_t requestSize = 0;
    uint32_t responseSize = 0;
};

const Case kCases[] = {
    {"lsys_readCsvNewFmt, 1001 x 2 values", 0, [] { return s_longFile->read(); }},
    {"lsys_readCsvNewFmt, 48 x 29 values", 0, [] { return s_wideFile->read(); }},
    {"lsys_writeCsvNewFmt, 1001 x 2 values", 0, [] { return s_longFile->write(); }},
    {"lsys_writeCsvNewFmt, 48 x 29 values", 0, [] { return s_wideFile->write(); }},
    {"vx63_getDeviceStatus, 12 bytes", 0, [] { return vx63_getDeviceStatus(&s_deviceStatus) == VX63_OK; },
     0x0006, 12, 18},
    {"vx63_getMeasStatus, 12 bytes", 3, [] { return vx63_getMeasStatus(&s_measStatus) == VX63_OK; }, 0x0017,
     12, 20},
    {"vx63_getSingleMeasResult, 624 points", 85,
     [] { return vx63_getSingleMeasResult(1000, &s_result) == VX63_OK && s_result.CONS_NUM == 624; }, 0x0106,
     16, LMSG_SIZE_MAX},
    {"vx63_init", 3, [] { return vx63_init(1) == VX63_OK; }},
    {"vx63_init, refused", 3, [] { return vx63_init(18) == VX63_ERR_ARG; }},
    {"vx63_readSetFile, factory contents of 12012 bytes", 3,
     [] { return vx63_readSetFile(VX63_SET_FILE_CATV_UP_STREAM, s_records, nullptr, 1) == 1001; }},
    {"vx63_readSetFile, refused", 2, [] { return vx63_readSetFile(100, s_records, nullptr, 1) == -1; }},
    {"vx63_setFailStat, refused", 1, [] { return vx63_setFailStat(1, 100, s_records) == VX63_ERR_ARG; }},
    {"vx63_startMultiMeas, 1 channel, 1300 bytes", 8, [] { return registerChannels(1); }, 0x0109,
     LMSG_SIZE_MAX, 12},
    {"vx63_startMultiMeas, 40 channels, 1300 bytes", 86, [] { return registerChannels(40); }, 0x0109,
     LMSG_SIZE_MAX, 12},
};

// What is counted, by this name.
extern "C" [[gnu::noipa]] bool countedCall(const Case& test)
{
    return test.call();
}

off_t sizeOfLog()
{
    struct stat status;
    return stat(kLog, &status) == 0 ? status.st_size : 0;
}

long linesOfLog()
{
    static char text[0x10000];
    const int log = open(kLog, O_RDONLY);
    const ssize_t size = read(log, text, sizeof text);
    close(log);
    return size < 0 ? 0 : std::count(text, text + size, '\n');
}

[[noreturn]] void fail(const Case& test, const char* why)
{
    fprintf(stderr, "instructions: %s: %s\n", test.name, why);
    exit(1);
}

struct Run {
    const Case* test;
    long times;
};

void* run(void* argument)
{
    const auto [test, times] = *static_cast<const Run*>(argument);
    SettingsFile<VX63_SET_FILE_CATV_UP_STREAM> longFile;
    SettingsFile<VX63_SET_FILE_PMEAS_MNG> wideFile;
    s_longFile = &longFile;
    s_wideFile = &wideFile;
    vx63_init(1);

    s_requestSize = test->requestSize;
    s_responseSize = test->responseSize;
    const uint32_t bodySize = s_responseSize - 8;
    const uint8_t head[] = {0, // from whom
                            1,
                            static_cast<uint8_t>(test->command),
                            static_cast<uint8_t>(test->command >> 8 | 0x80),
                            static_cast<uint8_t>(bodySize),
                            static_cast<uint8_t>(bodySize >> 8)};
    memcpy(s_response, head, sizeof head);
    if (s_responseSize == LMSG_SIZE_MAX) { // constellation points: 624
        const uint16_t points = 624;
        memcpy(s_response + 8 + 40, &points, sizeof points);
        for (uint32_t i = 8 + 44; i < LMSG_SIZE_MAX; ++i) {
            s_response[i] = static_cast<uint8_t>(i);
        }
    }

    // A log that cannot be written would cost less.
    unlink(kLog);
    if (!test->call() || linesOfLog() != test->lines) {
        fail(*test, "not the result or not the lines that it has: may /var/log be written?");
    }
    const off_t size = sizeOfLog();
    for (long i = 0; i < times; ++i) {
        if (!countedCall(*test)) {
            fail(*test, "not the result that it has");
        }
    }
    if (sizeOfLog() != size * (times + 1)) {
        fail(*test, "lines are missing in the log");
    }
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 1) {
        for (const Case& test : kCases) {
            printf("%s%s", test.name, test.lines == 1 ? ", 1 line" : "");
            printf(test.lines > 1 ? ", %d lines\n" : "\n", test.lines);
        }
        return 0;
    }
    const long index = argc == 3 ? strtol(argv[1], nullptr, 10) : -1;
    if (index < 0 || index >= static_cast<long>(std::size(kCases))) {
        fputs("usage: instructions [CASE TIMES]\n", stderr);
        return 64;
    }
    if (access(kLog, F_OK) == 0) {
        fprintf(stderr, "instructions: %s exists: run by tests/isolated\n", kLog);
        return 1;
    }
    // What is in the environment and where the program lies moves the stack and thread-local data, and libc's
    // functions on texts take another way at the end of a page: a stack of its own stays where it is.
    alignas(4096) static char stack[0x100000];
    Run request = {&kCases[index], strtol(argv[2], nullptr, 10)};
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, sizeof stack);
    const int error = pthread_create(&thread, &attributes, run, &request);
    if (error != 0) {
        fprintf(stderr, "instructions: no thread: %s\n", strerror(error));
        return 1;
    }
    pthread_join(thread, nullptr);
    unlink(kLog);
    return 0;
}
