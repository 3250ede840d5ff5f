#include "common/failure.h"

#include "common/json.h"
#include "common/output.h"

#include <algorithm>
#include <string_view>

namespace tool {

namespace {

constexpr ExitKind kExitKinds[] = {
    {kExitSuccess, "done", "done"},
    {kExitCommunication, "no-answer", "the meter's services do not answer, or not as they should"},
    {kExitArgument, "refused", "the meter refuses a value"},
    {kExitNoLock, "no-lock", "measured, but there was no lock"},
    {kExitDiffer, "differ", "settings files differ, or a survey became worse"},
    {kExitUnhealthy, "unhealthy", "the doctor found something wrong"},
    {kExitRepeat, "repeating", "the buzzer is sounding a repeating pattern"},
    {kExitPowerSupply, "supply-fault", "the antenna power supply reports a fault"},
    {kExitPriority, "priority", "the buzzer is busy with a sound of higher priority"},
    {kExitAsleep, "asleep", "the meter sleeps"},
    {kExitUpdateFailed, "update-failed", "the update failed"},
    {kExitRestarting, "restarting", "the meter restarts, or hangs"},
    {kExitNoMeter, "no-meter", "there is no meter: no process serves"},
    {kExitIncomplete, "incomplete", "a part of the answer is missing"},
    {kExitVerdictFail, "fail", "a verdict is \"fail\""},
    {kExitVerdictMarginal, "marginal", "a verdict is \"marginal\""},
    {kExitUsage, "usage", "wrong usage"},
    {kExitData, "broken", "a settings file is broken"},
    {kExitNoInput, "no-input", "an input file cannot be read"},
    {kExitInternal, "internal", "internal error"},
    {kExitCreate, "no-room", "the name is taken, or there is no room for another set"},
    {kExitOutput, "no-output", "the output cannot be written"},
    {kExitBusy, "busy", "another vx63 uses the same process id or folder"},
    {kExitDeclined, "declined", "not confirmed"},
};

} // namespace

std::span<const ExitKind> exitKinds()
{
    return kExitKinds;
}

void report(const Failure& failure, bool json)
{
    if (!json)
        return complain(failure.what());
    const auto* const kind = std::ranges::find(kExitKinds, failure.code(), &ExitKind::code);
    const Json error = {{"kind", kind != std::end(kExitKinds) ? Json(kind->word) : Json()},
                        {"exit_code", static_cast<int>(failure.code())},
                        {"what", failure.failed()},
                        {"why", failure.why()},
                        {"hint", failure.hint()}};
    printError(Json{{"error", error}}.line());
}

bool asksForJson(std::span<char* const> arguments)
{
    const auto end = std::ranges::find(arguments, std::string_view("--"));
    return std::any_of(arguments.begin(), end, [](std::string_view argument) {
        return argument == "--json" || argument == "--jsonl";
    });
}

} // namespace tool
