// vx63 doctor: finds out why a meter does not answer.
#include "doctor/doctor.h"

#include "commands.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "device/device_status.h"
#include "doctor/interrogation.h"
#include "libvx63.h"
#include "log/line.h"
#include "log/reader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

// glibc's name of this program, as the library writes it into each line of the log.
extern "C" const char* __progname;

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

// The library's log as far as it is about this very program.
class OwnLog {
public:
    OwnLog() : m_name(format("vx63-doctor-%d", getpid())), m_reader(g_cLibTestLogFilePath)
    {
        __progname = m_name.c_str();
        static_cast<void>(messages());
    }
    ~OwnLog() { __progname = m_before; }
    OwnLog(const OwnLog&) = delete;
    OwnLog& operator=(const OwnLog&) = delete;

    // What has been logged since the last time.
    std::vector<std::string> messages()
    {
        std::vector<std::string> found;
        struct stat status {};
        if (stat(g_cLibTestLogFilePath, &status) != 0 || !S_ISREG(status.st_mode))
            return found; // to open a FIFO would wait for its writer
        try {
            m_reader.read([&](std::string_view text) {
                if (const auto line = parseLogLine(text); line && line->program == m_name)
                    found.emplace_back(line->message);
            });
        } catch (const Failure&) {
            found.clear(); // as if nothing had been logged: the check of the log tells
        }
        return found;
    }

private:
    const char* m_before = __progname;
    std::string m_name;
    LogReader m_reader;
};

// ---- log ----

Check checkLog(bool written)
{
    constexpr int64_t kLimit = 0x200000; // the library starts the log anew beyond it
    const std::string path = g_cLibTestLogFilePath;
    Check check{"log", path, Health::wrong, "unwritable", "", "check it with 'ls -l' and 'df'", {}};
    struct stat status {};
    const int error = stat(path.c_str(), &status) == 0 ? 0 : errno;
    if (written && error == 0) {
        check.health = Health::good;
        check.kind = "none";
        check.remedy.clear();
        check.text =
            format("written, %lld of %lld KiB", static_cast<long long>((status.st_size + 1023) / 1024),
                   static_cast<long long>(kLimit / 1024));
        return check;
    }
    struct statvfs disk {};
    if (error != 0) {
        check.text = std::string("it cannot be made: ") + std::strerror(error);
        check.remedy = "make the folder /var/log, writable for the user of the applications";
    } else if (!S_ISREG(status.st_mode)) {
        check.kind = "no-file";
        check.text = "it is no file: the library leaves all lines out";
        check.remedy = "remove what is there";
    } else if (access(path.c_str(), W_OK) != 0) {
        check.text = std::string("it cannot be written: ") + std::strerror(errno);
        check.remedy = "make it writable for the user of the applications";
    } else if (access(path.c_str(), R_OK) != 0) {
        check.kind = "unreadable";
        check.text = std::string("it cannot be read: ") + std::strerror(errno);
        check.remedy = "call vx63 as a user who may read it";
    } else if (statvfs(path.c_str(), &disk) == 0 && disk.f_bavail == 0) {
        check.kind = "disk-full";
        check.text = "the disk is full: lines are lost";
        check.remedy = "make room on the disk";
    } else {
        check.kind = "unknown";
        check.text = "the lines of this program do not arrive in it";
    }
    return check;
}

// ---- services ----

struct Service {
    const char* name;
    const char* word;
    Question question;
    int32_t (*ask)(Sense&); // the cheapest call that changes nothing
};

bool isText(std::span<const char> field)
{
    const auto end = std::ranges::find(field, '\0');
    return std::all_of(field.begin(), end, [](char c) { return c >= ' ' && c <= '~'; }) &&
           std::all_of(end, field.end(), [](char c) { return c == '\0'; });
}

int32_t askSystem(Sense& sense)
{
    ProductInfo info{};
    const int32_t result = vx63_getProductInfo(&info);
    const bool text = isText(info.cModelCode) && isText(info.cOptInfo) && isText(info.cSerialNo) &&
                      isText(info.cBootPrgVer) && isText(info.cMainPrgVer) && isText(info.cSubPrgVer) &&
                      isText(info.cQtVer) && isText(info.cProductVer);
    const bool empty =
        info.cSerialNo[0] == '\0' && info.cMainPrgVer[0] == '\0' && info.cProductVer[0] == '\0';
    sense = !text ? Sense::none : empty ? Sense::empty : Sense::good;
    return result;
}

int32_t askDevice(Sense& sense)
{
    DeviceStatus status{};
    const int32_t result = vx63_getDeviceStatus(&status);
    const bool empty = status.ucStat2 == 0 && status.ucStat6 == 0 && status.usStat8 == 0;
    sense = !isPlausible(status) ? Sense::none : empty ? Sense::empty : Sense::good;
    return result;
}

int32_t askKeys(Sense& sense)
{
    KeyStatus keys{};
    const int32_t result = vx63_getKeyStatus(&keys);
    sense =
        std::ranges::all_of(keys.stat, [](int32_t state) { return state <= 1; }) ? Sense::good : Sense::none;
    return result;
}

// The buzzer service has nothing to read: a key click that does not sound is stopped.
int32_t askBuzzer(Sense&)
{
    constexpr int32_t kClick = 0;
    constexpr int32_t kStop = 2;
    return vx63_buzzer(kClick, kStop);
}

int32_t askMeasurement(Sense&)
{
    MeasStatus status{};
    return vx63_getMeasStatus(&status);
}

constexpr std::array kServices = {
    Service{"System service", "sys", {PROC_ID_PSYS, 0x0005}, askSystem},
    Service{"Device service", "dev", {PROC_ID_PDEV, 0x0006}, askDevice},
    Service{"Key service", "key", {PROC_ID_PKEY, 0x0008}, askKeys},
    Service{"Buzzer service", "buz", {PROC_ID_PBUZ, 0x0009}, askBuzzer},
    Service{"Measurement service", "meas", {PROC_ID_PMEAS, 0x0017}, askMeasurement},
};

std::vector<Diagnosis> interrogate(OwnLog& log, bool logWorks)
{
    std::array<Question, kServices.size()> questions;
    std::ranges::transform(kServices, questions.begin(), &Service::question);
    Progress progress;
    Interrogation interrogation(questions, [&](const Question& question) {
        const auto* service = std::ranges::find(kServices, question.service,
                                                [](const Service& one) { return one.question.service; });
        progress.show(format("Waiting for the %s (10 s at most)", service->name));
        Attempt attempt{};
        const auto start = std::chrono::steady_clock::now();
        attempt.result = service->ask(attempt.sense);
        attempt.ms =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        std::vector<std::string> messages = log.messages();
        if (logWorks)
            attempt.messages = std::move(messages);
        return attempt;
    });
    return interrogation.run();
}

// The queues of all services as one check, then each service.
//   logWorks  without the log nobody knows why a call fails at once, nor whose fault it is
void addServices(const std::vector<Diagnosis>& diagnoses, int32_t id, bool logWorks,
                 std::vector<Check>& checks)
{
    const auto isQueue = [](const Diagnosis& diagnosis) {
        return diagnosis.trouble == Trouble::queue || diagnosis.trouble == Trouble::ownQueue ||
               diagnosis.trouble == Trouble::queueFull;
    };
    const auto bad = std::ranges::find_if(diagnoses, isQueue);
    const bool unclear = std::ranges::any_of(
        diagnoses, [](const Diagnosis& diagnosis) { return diagnosis.trouble == Trouble::unknown; });
    if (bad == diagnoses.end()) {
        checks.push_back({"queues",
                          "Message queues",
                          unclear ? Health::remarkable : Health::good,
                          unclear ? "unknown" : "none",
                          unclear ? "cannot be told" : format("reached, permitted; process id %d", id),
                          "",
                          {}});
    } else {
        const auto* const name = kServices[static_cast<size_t>(bad - diagnoses.begin())].name;
        checks.push_back({"queues",
                          "Message queues",
                          Health::wrong,
                          troubleWord(bad->trouble),
                          format("%s: ", name) + troubleText(*bad),
                          troubleRemedy(*bad),
                          {}});
    }
    const bool silent = std::ranges::all_of(
        diagnoses, [](const Diagnosis& diagnosis) { return diagnosis.trouble == Trouble::noAnswer; });
    for (size_t i = 0; i < diagnoses.size(); ++i) {
        const Diagnosis& diagnosis = diagnoses[i];
        Check check{"services", kServices[i].name, Health::wrong, troubleWord(diagnosis.trouble), "", "", {}};
        check.text = troubleText(diagnosis);
        check.remedy = silent ? "no service answers: the meter is off, restarts, or is not there; without a "
                                "meter, put 'vx63-vmeter run --' before the command"
                              : troubleRemedy(diagnosis);
        if (diagnosis.trouble == Trouble::unknown && !logWorks) {
            check.health = Health::remarkable;
            check.remedy.clear();
        }
        if (diagnosis.trouble == Trouble::none || diagnosis.trouble == Trouble::slow) {
            check.health = diagnosis.trouble == Trouble::none ? Health::good : Health::remarkable;
            check.ms = diagnosis.ms;
            check.text += format(" in %.1f ms", diagnosis.ms);
        }
        checks.push_back(check);
    }
}

// A meter that sleeps answers, but does not measure.
void addStandby(std::vector<Check>& checks)
{
    if (std::ranges::find(checks, Health::wrong, &Check::health) != checks.end())
        return;
    uint32_t state = 0;
    if (vx63_getStandbyStat(&state) == VX63_OK && state != 0)
        checks.push_back({"services",
                          "Standby",
                          Health::remarkable,
                          "standby",
                          "asleep, measures nothing: see 'vx63 power wakeup'",
                          "",
                          {}});
}

// ---- what is shown ----

const char* healthWord(Health health)
{
    return health == Health::good ? "ok" : health == Health::wrong ? "wrong" : "note";
}

Json checkJson(const Check& check)
{
    const auto* service = std::ranges::find(kServices, check.subject, &Service::name);
    return {{"step", check.step},
            {"subject", service != kServices.end() ? service->word : printable(check.subject)},
            {"health", healthWord(check.health)},
            {"kind", check.kind},
            {"text", printable(check.text)},
            {"remedy", check.remedy.empty() ? Json() : Json(check.remedy)},
            {"ms", check.ms}};
}

// Folders and files are many: those that are well are counted.
Rows rowsOf(const std::vector<Check>& checks)
{
    Rows rows;
    const auto add = [&](const std::string& subject, Health health, const std::string& text) {
        rows.emplace_back(subject, format("%-5s  ", healthWord(health)) + printable(text));
    };
    const auto addMany = [&](const char* step, const char* subject, const char* good) {
        size_t count = 0;
        for (const Check& check : checks)
            count += check.step == step && check.health == Health::good;
        add(subject, count > 0 ? Health::good : Health::remarkable, format("%zu %s", count, good));
        for (const Check& check : checks)
            if (check.step == step && check.health != Health::good)
                add("  " + printable(check.subject.substr(check.subject.find("bin/") + 4)), check.health,
                    check.text);
    };
    for (const Check& check : checks)
        if (check.step != "folders" && check.step != "files")
            add(check.step == "log" ? "Log" : check.subject, check.health, check.text);
    addMany("folders", "Settings folders", "readable");
    addMany("files", "Settings files", "well formed");
    return rows;
}

int examine(const Options& options)
{
    std::vector<Check> checks;
    {
        OwnLog log;
        const Identity identity(options.id); // the first that is logged
        const bool written = !log.messages().empty();
        const std::vector<Diagnosis> diagnoses = interrogate(log, written);
        addServices(diagnoses, options.id, written, checks);
        addStandby(checks);
        checks.push_back(checkLog(written));
    }
    const std::vector<Check> settings = checkSettings();
    checks.insert(checks.end(), settings.begin(), settings.end());

    const auto wrong = std::ranges::find(checks, Health::wrong, &Check::health);
    if (options.json) {
        Json list = Json::array();
        for (const Check& check : checks)
            list.push(checkJson(check));
        const Json json = {{"healthy", wrong == checks.end()},
                           {"first_wrong", wrong == checks.end() ? Json() : checkJson(*wrong)},
                           {"checks", list}};
        print(json.line());
    } else {
        print(aligned(rowsOf(checks)));
        if (wrong == checks.end())
            print("\nNothing wrong was found.\n");
    }
    if (wrong != checks.end())
        throw Failure(kExitUnhealthy, wrong->subject, wrong->text, wrong->remedy);
    return kExitSuccess;
}

} // namespace

void addDoctor(CommandLine& program)
{
    program.addCommand("doctor", "Find out why the meter does not answer", "vx63 doctor", examine,
                       [](CommandLine& line, Options&) {
                           line.notes(
                               "Exits with 0 when nothing wrong was found, else with 5. A service that "
                               "does not answer takes\n10 s.");
                       });
}

} // namespace tool
