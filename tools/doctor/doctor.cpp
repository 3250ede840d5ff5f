// vx63 doctor: finds out why a meter does not answer.
#include "doctor/doctor.h"

#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/output.h"
#include "common/own_log.h"
#include "common/served.h"
#include "common/services.h"
#include "common/standby.h"
#include "common/table.h"
#include "common/text.h"
#include "doctor/interrogation.h"
#include "libvx63.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <pwd.h>
#include <string>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
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

std::vector<std::string> messages(OwnLog& log)
{
    std::vector<std::string> found;
    log.read([&](const LogLine& line) { found.emplace_back(line.message); });
    return found;
}

// "/vx63.12 belongs to nobody (65534), mode 0666"
std::string ownerText(uint8_t id)
{
    const auto queue = queueOf(id);
    if (!queue)
        return "";
    const passwd* const user = getpwuid(queue->user);
    return format("/vx63.%u belongs to %s (%u), mode %04o", static_cast<unsigned>(id),
                  user != nullptr ? user->pw_name : "a user without a name", queue->user, queue->mode);
}

// One diagnosis a service. Those that nobody serves are not asked.
std::vector<Diagnosis> interrogate(OwnLog& log, int32_t id, bool logWorks)
{
    std::vector<Question> questions;
    for (const Service& service : services())
        if (!isUnserved(service.id))
            questions.push_back({service.id, service.command});
    Progress progress;
    Interrogation interrogation(questions, [&](const Question& question) {
        const Service* const service = serviceOf(question.service);
        progress.show(format("Waiting for the %s (10 s at most)", service->name));
        Attempt attempt{};
        const auto start = std::chrono::steady_clock::now();
        attempt.result = service->ask(attempt.sense);
        attempt.ms =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        std::vector<std::string> said = messages(log);
        if (logWorks)
            attempt.messages = std::move(said);
        return attempt;
    });
    std::vector<Diagnosis> answers = interrogation.run();
    for (size_t i = 0; i < questions.size(); ++i)
        if (isUntrustedQueue(answers[i]))
            answers[i].queue = ownerText(answers[i].trouble == Trouble::ownQueue ? static_cast<uint8_t>(id)
                                                                                 : questions[i].service);
    std::vector<Diagnosis> diagnoses(services().size(), Diagnosis{Trouble::notRunning});
    for (size_t i = 0; i < questions.size(); ++i)
        diagnoses[static_cast<size_t>(serviceOf(questions[i].service) - services().data())] = answers[i];
    return diagnoses;
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
    const bool nobody = std::ranges::all_of(
        diagnoses, [](const Diagnosis& diagnosis) { return diagnosis.trouble == Trouble::notRunning; });
    const auto bad = std::ranges::find_if(diagnoses, isQueue);
    const bool unclear = std::ranges::any_of(
        diagnoses, [](const Diagnosis& diagnosis) { return diagnosis.trouble == Trouble::unknown; });
    if (nobody) {
        checks.push_back({"queues",
                          "Message queues",
                          Health::wrong,
                          "no-meter",
                          "no meter: no process serves them",
                          "start one with 'vx63-vmeter run -- COMMAND', or the services of the meter",
                          {}});
    } else if (bad == diagnoses.end()) {
        checks.push_back({"queues",
                          "Message queues",
                          unclear ? Health::remarkable : Health::good,
                          unclear ? "unknown" : "none",
                          unclear ? "cannot be told" : format("reached, permitted; process id %d", id),
                          "",
                          {}});
    } else {
        const auto* const name = services()[static_cast<size_t>(bad - diagnoses.begin())].name;
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
        Check check{"services", services()[i].name, Health::wrong, troubleWord(diagnosis.trouble), "", "",
                    {}};
        check.text = troubleText(diagnosis);
        check.remedy = silent ? "no service answers: the meter is off, restarts or hangs: wait and "
                                "ask again"
                              : troubleRemedy(diagnosis);
        if (diagnosis.trouble == Trouble::unknown && !logWorks) {
            check.health = Health::remarkable;
            check.remedy.clear();
        }
        if (diagnosis.trouble == Trouble::restarted)
            check.health = Health::remarkable;
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
                          "asleep, measures nothing: see " + wakeUpCommand(state),
                          "",
                          {}});
}

// ---- the queues of others ----

// The messages that lie in each client's queue.
std::vector<uint32_t> countWaiting()
{
    std::vector<uint32_t> counts;
    for (uint8_t id = 0; id <= kHighestProcessId; ++id) {
        const auto queue = serviceOf(id) != nullptr ? std::nullopt : queueOf(id);
        counts.push_back(queue && queue->trusted != 0 ? queue->messages : 0);
    }
    return counts;
}

// A client takes its answer at once: one that is there when it is looked for twice was not waited for, and
// each call of its thread meets the answer to the one before. The own queue is known by its answers.
void addUntaken(const std::vector<uint32_t>& before, const std::vector<uint32_t>& after, int32_t own,
                std::vector<Check>& checks)
{
    for (int32_t id = kHighestProcessId; id >= 0; --id) {
        const uint32_t count = std::min(before[static_cast<size_t>(id)], after[static_cast<size_t>(id)]);
        if (count > 0 && id != own)
            checks.insert(
                checks.begin() + 1,
                {"queues",
                 format("Process id %d", id),
                 Health::remarkable,
                 "untaken",
                 format("%u in its queue that nobody takes: who calls as %d gets old answers", count, id),
                 "",
                 {}});
    }
}

// ---- what is shown ----

const char* healthWord(Health health)
{
    return health == Health::good ? "ok" : health == Health::wrong ? "wrong" : "note";
}

Tint healthTint(Health health)
{
    return health == Health::good ? Tint::good : health == Health::wrong ? Tint::bad : Tint::doubtful;
}

Json checkJson(const Check& check)
{
    const auto service = std::ranges::find(services(), check.subject, &Service::name);
    return {{"step", check.step},
            {"subject", service != services().end() ? service->word : printable(check.subject)},
            {"health", healthWord(check.health)},
            {"kind", check.kind},
            {"text", printable(check.text)},
            {"remedy", check.remedy.empty() ? Json() : Json(check.remedy)},
            {"ms", check.ms}};
}

// Folders and files are many: those that are well are counted.
Table rowsOf(const std::vector<Check>& checks)
{
    Table rows;
    const auto add = [&](const std::string& subject, Health health, const std::string& text) {
        rows.push_back({subject, Cell(format("%-5s", healthWord(health)), healthTint(health)), text});
    };
    const auto addMany = [&](const char* step, const char* subject, const char* good) {
        size_t count = 0;
        for (const Check& check : checks)
            count += check.step == step && check.health == Health::good;
        add(subject, count > 0 ? Health::good : Health::remarkable, format("%zu %s", count, good));
        for (const Check& check : checks)
            if (check.step == step && check.health != Health::good)
                add("  " + check.subject.substr(check.subject.find("bin/") + 4), check.health, check.text);
    };
    for (const Check& check : checks)
        if (check.step != "folders" && check.step != "files")
            add(check.step == "log" ? "Log" : check.subject, check.health, check.text);
    addMany("folders", "Settings folders", "readable");
    addMany("files", "Settings files", "well formed");
    return rows;
}

// The last call got the answer to another one, or may have.
bool isOutOfStep(const Diagnosis& diagnosis)
{
    return diagnosis.trouble == Trouble::unexpectedAnswer || diagnosis.trouble == Trouble::unknown;
}

int examine(const Options& options)
{
    std::vector<Check> checks;
    const std::vector<uint32_t> before = countWaiting();
    {
        OwnLog log(format("vx63-doctor-%d", getpid()));
        log.read([](const LogLine&) {});
        const Identity identity(options.id, OldAnswers::keep); // the first that is logged
        const bool written = !messages(log).empty();
        const std::vector<Diagnosis> diagnoses = interrogate(log, options.id, written);
        addServices(diagnoses, options.id, written, checks);
        addStandby(checks);
        checks.push_back(checkLog(written));
        if (std::ranges::any_of(diagnoses, isOutOfStep))
            forgetAnswers(options.id); // also the one that is on its way
    }
    const std::vector<Check> settings = checkSettings();
    addUntaken(before, countWaiting(), options.id, checks);
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
        print(table(rowsOf(checks)));
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
                               "runs and does not answer takes 10 s.");
                       });
}

} // namespace tool
