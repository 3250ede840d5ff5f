// vx63 status: what the services say of themselves.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/output.h"
#include "common/served.h"
#include "common/standby.h"
#include "common/table.h"
#include "common/text.h"
#include "device/device_status.h"
#include "libvx63.h"
#include "measure/supply.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace tool {

namespace {

constexpr const char* kWhat = "cannot read the status";

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

// One of the services, as this command asks it: after a time-out again only when another one answers.
struct Service {
    const char* name;
    bool silent = false;
};

template <class Value>
struct Section {
    const char* name;
    const char* word;
    std::optional<Value> value;
    bool answered = false; // but not as it should
};

struct Status {
    Section<MeasStatus> measurement{"Measurement", "measurement", {}};
    Section<PowerSupplyInfo> supply{"Power supply", "power_supply", {}};
    Section<DeviceStatus> device{"Device", "device", {}};
    Section<uint32_t> standby{"Standby", "standby", {}};

    bool isAsleep() const { return standby.value.value_or(kAwake) != kAwake; }
};

// Throws Failure where nobody is there.
template <class Value>
void read(Service& service, Section<Value>& section, int32_t (*call)(Value*))
{
    if (service.silent)
        return;
    Progress progress;
    progress.show(format("Asking the %s service (10 s at most)", service.name));
    Value value{};
    const int32_t result = exchange([&] { return call(&value); });
    if (result == VX63_OK)
        section.value = value;
    service.silent = result == VX63_ERR_COMM && failedCall().slow;
    section.answered = !service.silent;
    if (result == VX63_ERR_COMM && !failedCall().made)
        throw nobodyAnswers(kWhat);
    if (service.silent && isNobodyThere())
        throw nobodyAnswers(kWhat);
}

Status readStatus()
{
    Status status;
    Service measurement{"measurement"};
    Service device{"device"};
    read(measurement, status.measurement, vx63_getMeasStatus);
    read(device, status.supply, vx63_getPowerSupplyInfo);
    read(device, status.device, vx63_getDeviceStatus);
    if (measurement.silent && device.silent)
        throw nobodyAnswers(kWhat);
    if (measurement.silent) { // the meter may have been restarting: the device service was asked later
        measurement.silent = false;
        read(measurement, status.measurement, vx63_getMeasStatus);
    }
    read(measurement, status.standby, vx63_getStandbyStat);
    return status;
}

// Where nothing could be read: "- (no answer)".
template <class Value>
Rows rowsOf(const Section<Value>& section, Rows (*rows)(const Value&), const char* why = nullptr)
{
    if (section.value)
        return rows(*section.value);
    return {{section.name, format("- (%s)", why != nullptr     ? why
                                            : section.answered ? "no good answer"
                                                               : "no answer")}};
}

struct Measurement {
    bool measuring;
    bool locked;
    bool fault;
    unsigned input;
};

Measurement measurementOf(const MeasStatus& status)
{
    return {(status.ulMeasStat & VX63_MEAS_SINGLE) != 0, (status.ulMeasStat & VX63_MEAS_LOCKED) != 0,
            (status.usInputStat & VX63_INPUT_STAT_SUPPLY_FAULT) != 0,
            (status.usInputStat & VX63_INPUT_STAT_1) != 0 ? 1U : 0U};
}

Rows measurementRows(const MeasStatus& status)
{
    const auto [measuring, locked, fault, input] = measurementOf(status);
    return {
        {"Measuring", measuring ? "yes" : "no"},
        {"Lock", locked ? "yes" : "no"},
        {"Input", format("%u", input)},
        {"Measurement bits", format("0x%08X", status.ulMeasStat)},
        {"Input bits", format("0x%04X", status.usInputStat)},
        {"Supply fault", fault ? "yes" : "no"},
    };
}

Json measurementJson(const std::optional<MeasStatus>& status)
{
    if (!status)
        return {{"measuring", nullptr},
                {"locked", nullptr},
                {"input", nullptr},
                {"power_supply_fault", nullptr},
                {"measurement_status_code", nullptr},
                {"input_status_code", nullptr}};
    const auto [measuring, locked, fault, input] = measurementOf(*status);
    return {
        {"measuring", measuring},
        {"locked", locked},
        {"input", input},
        {"power_supply_fault", fault},
        {"measurement_status_code", status->ulMeasStat},
        {"input_status_code", status->usInputStat},
    };
}

Rows standbyRows(const uint32_t& state)
{
    const std::string word = standbyText(state);
    return {{"Standby", state == kAwake
                            ? word
                            : word + ": asleep, measures nothing; " + wakeUpCommand(state) + " wakes it"}};
}

int showStatus(const Options& options)
{
    const Identity identity(options.id);
    const Status status = readStatus();
    const auto& [measurement, supply, device, standby] = status;
    // Of a meter that sleeps no measurement is expected.
    const bool expected = !status.isAsleep() || !measurement.answered;

    std::vector<std::string> missing;
    if (!measurement.value && expected)
        missing.emplace_back(measurement.word);
    if (!supply.value)
        missing.emplace_back(supply.word);
    if (!device.value)
        missing.emplace_back(device.word);
    if (!standby.value)
        missing.emplace_back(standby.word);

    if (options.json) {
        Json json = measurementJson(measurement.value);
        json.set("power_supply", supply.value ? supplyJson(*supply.value) : Json());
        json.set("device", device.value ? deviceStatusJson(*device.value) : Json());
        json.set("standby", standby.value ? standbyJson(*standby.value) : Json());
        json.set("missing", Json::arrayOf(missing));
        print(json.line());
    } else {
        Rows rows;
        for (const Rows& some :
             {rowsOf(measurement, measurementRows, expected ? nullptr : "asleep"), rowsOf(supply, supplyRows),
              rowsOf(device, deviceStatusRows), rowsOf(standby, standbyRows)})
            rows.insert(rows.end(), some.begin(), some.end());
        print(aligned(rows));
    }
    if (missing.empty())
        return kExitSuccess;
    std::string words;
    for (const std::string& word : missing)
        words += (words.empty() ? "" : ", ") + word;
    std::ranges::replace(words, '_', ' ');
    throw Failure(kExitIncomplete, "cannot read all of the status", "missing is " + words,
                  "repeat the command; if that does not help, " + doctorCommand() +
                      " tells which service is at fault");
}

} // namespace

void addStatus(CommandLine& program)
{
    program.addCommand("status", "Show how the meter is: measurement, power supply, battery, standby",
                       "vx63 status --json", showStatus);
}

} // namespace tool
