#include "common/reason.h"

#include "common/evidence.h"
#include "common/exchange.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/output.h"
#include "common/own_log.h"
#include "common/served.h"
#include "common/services.h"
#include "common/standby.h"
#include "common/text.h"
#include "libvx63.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

namespace tool {

namespace {

// What the library's log tells of the last call.
struct Logged {
    std::optional<Evidence> evidence;
    const Service* service = nullptr; // who was asked
};

// Who answers an operation. Its name tells more than the word in the line about a failed exchange: "subcpu"
// may be either of two services, and of the forced standby the word is wrong.
const Service* askedBy(std::string_view operation, std::string_view message)
{
    const auto isOne = [&](std::initializer_list<std::string_view> parts) {
        return std::ranges::any_of(parts,
                                   [&](std::string_view part) { return operation.find(part) != part.npos; });
    };
    if (isOne({"Angle", "PowerSupplyInfo"}))
        return serviceOf(PROC_ID_PDEV);
    if (isOne(
            {"Meas", "DlyPrf", "Scan", "_force_", "reqPowerSupply", "calibration", "StandbyStat", "LowBatt"}))
        return serviceOf(PROC_ID_PMEAS);
    for (const Service& service : services())
        if (message.starts_with(service.process))
            return &service;
    return nullptr;
}

Logged lastCall(std::chrono::system_clock::time_point since)
{
    const int64_t start = std::chrono::floor<std::chrono::seconds>(since).time_since_epoch().count();
    std::vector<std::string> messages;
    Logged logged;
    OwnLog().read([&](const LogLine& line) {
        if (line.seconds < start)
            return;
        if (line.message.starts_with("Start.")) {
            messages.clear();
            logged.service = nullptr;
        }
        messages.emplace_back(line.message);
        if (const Service* const service = askedBy(line.function, line.message))
            logged.service = service;
    });
    logged.evidence = evidenceIn(messages);
    return logged;
}

std::string nameOf(const Service* service)
{
    if (service == nullptr)
        return "the service";
    std::string name = service->name; // "Device service"
    name[0] = static_cast<char>(name[0] - 'A' + 'a');
    return "the " + name;
}

// Whether the service answers anything at all.
//   ask  instead of its harmless question
bool answers(const Service& service, const std::function<int32_t()>& ask = nullptr)
{
    Progress progress;
    progress.show("No answer: asking " + nameOf(&service) + " (10 s at most)");
    Sense sense{};
    return exchange(ask ? ask : [&] { return service.ask(sense); }) != VX63_ERR_COMM || !failedCall().slow;
}

Failure silence(const Service* service, const std::string& what, const std::function<int32_t()>& again)
{
    const std::span<const Service> all = services();
    const auto isSilent = [](const Service& one) { return !answers(one); };
    if (service == nullptr) // the log does not tell
        if (const auto found = std::ranges::find_if(all, isUnserved, &Service::id); found != all.end())
            service = &*found;
    const std::string name = nameOf(service);
    if (service != nullptr && isUnserved(service->id))
        return {kExitCommunication, what, name + " does not run",
                "restart the meter; " + doctorCommand() + " tells more"};
    if (interruption() != 0)
        return {kExitCommunication, what, name + " does not answer", doctorCommand() + " tells more"};
    const bool isFirst = service == &all.front();
    if (isSilent(isFirst ? all[1] : all.front()))
        return nobodyAnswers(what);
    if (service != nullptr ? !answers(*service, again) : std::ranges::any_of(all.subspan(1), isSilent))
        return {kExitCommunication, what, name + " does not answer, the others do",
                doctorCommand() + (isFirst ? " tells more; restart the meter by hand"
                                           : " tells more; 'vx63 power reboot --wait' restarts the meter")};
    return {kExitRestarting, what, "the meter was restarting or busy, and answers again",
            "repeat the command; if it fails again, " + doctorCommand() +
                " and 'vx63 log --errors' tell more"};
}

Failure answered(const Logged& logged, const std::string& what)
{
    const bool mayBeAsleep = !logged.evidence || (logged.evidence->what == Evidence::failure &&
                                                  logged.service == serviceOf(PROC_ID_PMEAS));
    if (const auto sleeps = mayBeAsleep ? sleepOf(what) : std::nullopt)
        return *sleeps;
    const std::string name = nameOf(logged.service);
    const Evidence evidence = logged.evidence.value_or(Evidence{});
    switch (evidence.what) {
    case Evidence::failure:
        return {kExitCommunication, what, "refused or failed: " + name + " answers that it cannot",
                "see whether another measurement or an update runs, or the battery is low: 'vx63 status'; "
                "'vx63 log' "
                "shows what was asked"};
    case Evidence::refusal:
        return {kExitCommunication, what,
                format("%s refuses the request (usOptOrRet=%04X)", name.c_str(),
                       static_cast<unsigned>(evidence.number)),
                "see whether service and library belong to the same version: 'vx63 info'"};
    case Evidence::otherAnswer:
    case Evidence::request:
        return {kExitCommunication, what, "something else comes in place of the answer of " + name,
                doctorCommand() + " tells more; or choose another id with --id"};
    case Evidence::sendError:
    case Evidence::receiveError:
        return {kExitCommunication, what,
                format("the message queues cannot be used (lmsg_err=%d)", evidence.number),
                doctorCommand() + " tells why"};
    default:
        return {kExitCommunication, what, "the meter's services do not answer, or not as they should",
                doctorCommand() + " tells why; look at 'vx63 log --errors'"};
    }
}

} // namespace

std::optional<Evidence> loggedEvidence(const FailedCall& call)
{
    return lastCall(call.start).evidence;
}

std::optional<Failure> sleepOf(const std::string& what)
{
    uint32_t state = kAwake;
    if (exchange([&] { return vx63_getStandbyStat(&state); }) != VX63_OK ||
        (state != kMeterSleeps && state != kMeasurementSleeps))
        return std::nullopt;
    return Failure(kExitAsleep, what,
                   state == kMeterSleeps ? "the meter sleeps" : "the measuring part sleeps",
                   "wake it up with " + wakeUpCommand(state));
}

Failure nobodyAnswers(const std::string& what)
{
    if (isNobodyThere())
        return {kExitNoMeter, what, "no meter: no process serves the message queues",
                "start one with 'vx63-vmeter run -- COMMAND', or the services of the meter"};
    return {kExitRestarting, what, "the meter restarts, or hangs: none of its services answers",
            "wait and repeat the command, or switch the meter on; " + doctorCommand() + " tells more"};
}

Failure reasonOf(const FailedCall& call, const std::string& what, const std::function<int32_t()>& again)
{
    if (!call.made || (call.slow && isNobodyThere()))
        return nobodyAnswers(what);
    const Logged logged = lastCall(call.start);
    const bool timedOut = logged.evidence ? logged.evidence->what == Evidence::sendTimeout ||
                                                logged.evidence->what == Evidence::receiveTimeout
                                          : call.slow;
    return timedOut ? silence(logged.service, what, again) : answered(logged, what);
}

} // namespace tool
