// The services about the meter itself, handler by handler.
#include "meter_bench.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <numeric>

namespace vmeter {
namespace {

const Service& kSys = kSystemService;
const Service& kDev = kDeviceService;
const Service& kKey = kKeyService;
const Service& kBuz = kBuzzerService;
const Service& kMeas = kMeasurementService;

void append(Body& body, const std::string& text, size_t width)
{
    body.insert(body.end(), text.begin(), text.end());
    body.resize(body.size() + width - text.size());
}

Body zeros(size_t size, std::initializer_list<std::pair<size_t, uint8_t>> bytes = {})
{
    Body body(size);
    for (const auto& [at, byte] : bytes)
        body[at] = byte;
    return body;
}

TEST(Services, HaveTheirIdsAndCommands)
{
    const auto codes = [](const Service& service) {
        std::vector<uint16_t> found;
        for (const Command& command : service.commands)
            found.push_back(command.usCmd);
        std::sort(found.begin(), found.end());
        return found;
    };
    using Codes = std::vector<uint16_t>;
    EXPECT_EQ(kSys.ucProcId, 0);
    EXPECT_EQ(codes(kSys),
              (Codes{0x04, 0x05, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13, 0x1A, 0x1B}));
    EXPECT_EQ(kKey.ucProcId, 8);
    EXPECT_EQ(codes(kKey), (Codes{0x08}));
    EXPECT_EQ(kBuz.ucProcId, 10);
    EXPECT_EQ(codes(kBuz), (Codes{0x09, 0x0A}));
    for (const uint16_t usCmd : std::initializer_list<uint16_t>{0x0E, 0x0F, 0x16, 0x18, 0x19, 0x1D, 0x1E})
        EXPECT_EQ(std::ranges::count(kMeas.commands, usCmd, &Command::usCmd), 1) << usCmd;
    EXPECT_EQ(std::ranges::count(kDev.commands, 0x06, &Command::usCmd), 1);
}

// ---- information ----

TEST(Product, IsTheScenes)
{
    Bench bench(R"(
[product]
model_code = "MODEL-01"
option_info = "OP"
serial_no = "123456789012"
boot_version = "boot"
main_version = "main"
sub_version = "sub"
qt_version = "qt"
product_version = "abcdefghijklmnop"
)");
    Body expected;
    append(expected, "MODEL-01", 8);
    append(expected, "OP", 5);
    append(expected, "123456789012", 12);
    append(expected, "boot", 16);
    append(expected, "main", 16);
    append(expected, "sub", 16);
    append(expected, "qt", 16);
    append(expected, "abcdefghijklmnop", 16);
    ASSERT_EQ(expected.size(), 105u);
    EXPECT_EQ(bench.call(kSys, 0x05), expected);
}

TEST(Failure, IsTheScenesUntilItIsSet)
{
    Bench bench("[failure]\ncode = 0x1234\nstate = 1\ncontrol = 7\nwait = 300\ninfo = \"a1b2\"\n");
    EXPECT_EQ(bench.call(kSys, 0x04),
              zeros(40, {{0, 0x34}, {1, 0x12}, {2, 1}, {3, 7}, {4, 0x2C}, {5, 0x01}, {8, 0xA1}, {9, 0xB2}}));
    EXPECT_EQ(bench.ret(kSys, 0x11, zeros(36, {{0, 0xEF}, {1, 0xBE}, {2, 0}, {4, 9}, {35, 8}})), 0);
    EXPECT_EQ(bench.call(kSys, 0x04),
              zeros(40, {{0, 0xEF}, {1, 0xBE}, {2, 0}, {3, 7}, {4, 0x2C}, {5, 0x01}, {8, 9}, {39, 8}}));
    EXPECT_EQ(bench.ret(kSys, 0x11, zeros(36, {{0, 1}, {2, 2}})), 2);
    EXPECT_EQ(bench.call(kSys, 0x04)[0], 0xEF);
}

TEST(DeviceStatus, TellsTheCondition)
{
    Bench bench(R"(
[device]
battery_percent = 55
battery_mv = 7001
external_power = true
charging = "full"
temperature_c = 41
usb1 = true
usb2 = true
)");
    EXPECT_EQ(bench.call(kDev, 0x06), (Body{3, 0, 55, 1, 2, 0, 41, 0, 0x59, 0x1B}));
    bench.ret(kMeas, 0x19, 1);
    EXPECT_EQ(bench.call(kDev, 0x06)[5], 1);
    EXPECT_EQ(Bench("[device]\nusb2 = true").call(kDev, 0x06)[0], 2);
}

TEST(Keys, ArePressedInSimulatedTime)
{
    // Each request takes 100 ms; the first one is at 100.
    Bench bench(R"(
[[key]]
time_ms = 200
key = 3
duration_ms = 200
[[key]]
time_ms = 300
key = 16
duration_ms = 1
[[key]]
time_ms = 350
key = 3
duration_ms = 150
)");
    EXPECT_EQ(bench.call(kKey, 0x08), zeros(17));
    EXPECT_EQ(bench.call(kKey, 0x08), zeros(17, {{3, 1}}));
    EXPECT_EQ(bench.call(kKey, 0x08), zeros(17, {{3, 1}, {16, 1}}));
    EXPECT_EQ(bench.call(kKey, 0x08), zeros(17, {{3, 1}})); // at 400, by the third press alone
    EXPECT_EQ(bench.call(kKey, 0x08), zeros(17));
}

// ---- buzzer and display ----

int buzz(Bench& bench, uint8_t ucKind, uint8_t ucMode)
{
    return bench.ret(kBuz, 0x09, {ucKind, ucMode, 0, 0});
}
constexpr uint8_t kOnce = 0;
constexpr uint8_t kRepeat = 1;
constexpr uint8_t kStop = 2;

TEST(Buzzer, LowerSoundsWaitForHigherOnes)
{
    Bench bench;
    EXPECT_EQ(buzz(bench, 3, kOnce), 0); // 1000 ms from 100 on
    EXPECT_EQ(buzz(bench, 2, kOnce), 4);
    EXPECT_EQ(buzz(bench, 2, kRepeat), 4);
    EXPECT_EQ(buzz(bench, 2, kStop), 4);
    EXPECT_EQ(buzz(bench, 3, kOnce), 0); // the same again, from 500 on
    bench.state_.ulSimMs = 1399;
    bench.scene_.clockMs = 0;
    EXPECT_EQ(buzz(bench, 0, kOnce), 4); // 1399
    bench.state_.ulSimMs = 1499;
    EXPECT_EQ(buzz(bench, 0, kOnce), 4);
    bench.state_.ulSimMs = 1500;
    EXPECT_EQ(buzz(bench, 0, kOnce), 0);
}

TEST(Buzzer, SingleSoundsLastAsLongAsTheirKindTells)
{
    const std::pair<uint8_t, uint64_t> lasts[] = {{1, 200}, {2, 500}, {3, 1000}, {4, 2000}};
    for (const auto& [kind, ms] : lasts) {
        Bench bench;
        bench.scene_.clockMs = 0;
        EXPECT_EQ(buzz(bench, kind, kOnce), 0);
        bench.state_.ulSimMs = ms - 1;
        EXPECT_EQ(buzz(bench, 0, kOnce), 4) << int{kind};
        bench.state_.ulSimMs = ms;
        EXPECT_EQ(buzz(bench, 0, kOnce), 0) << int{kind};
    }
}

TEST(Buzzer, APatternRepeatsUntilItIsStopped)
{
    Bench bench;
    EXPECT_EQ(buzz(bench, 2, kRepeat), 0);
    bench.state_.ulSimMs += 1'000'000;
    EXPECT_EQ(buzz(bench, 2, kRepeat), 3);
    EXPECT_EQ(buzz(bench, 2, kOnce), 3);
    EXPECT_EQ(buzz(bench, 1, kRepeat), 4);
    EXPECT_EQ(buzz(bench, 1, kStop), 4);
    EXPECT_EQ(buzz(bench, 3, kRepeat), 0); // a higher one takes its place
    EXPECT_EQ(buzz(bench, 2, kStop), 4);
    EXPECT_EQ(buzz(bench, 3, kStop), 0);
    EXPECT_EQ(buzz(bench, 0, kOnce), 0);
    EXPECT_EQ(buzz(bench, 4, kStop), 0); // higher than what sounds
    EXPECT_EQ(buzz(bench, 0, kStop), 0); // nothing to stop
}

TEST(Buzzer, VolumesAreKeptByKind)
{
    Bench bench("[device]\nvolume = 2");
    EXPECT_EQ(bench.ret(kBuz, 0x0A, {1, 3, 0, 0}), 0);
    EXPECT_EQ(bench.ret(kBuz, 0x0A, {4, 0, 0, 0}), 0);
    const uint8_t expected[] = {2, 3, 2, 2, 0};
    EXPECT_TRUE(std::ranges::equal(bench.state_.device.buzzer.ucVolumes, expected));
    buzz(bench, 1, kRepeat);
    EXPECT_EQ(bench.ret(kBuz, 0x0A, {1, 1, 0, 0}), 3);
    EXPECT_EQ(bench.ret(kBuz, 0x0A, {2, 1, 0, 0}), 0);
    EXPECT_EQ(bench.state_.device.buzzer.ucVolumes[1], 3);
    EXPECT_EQ(bench.state_.device.buzzer.ucVolumes[2], 1);
}

TEST(Buzzer, RefusesOthers)
{
    Bench bench;
    EXPECT_EQ(buzz(bench, 5, 0), 2);
    EXPECT_EQ(buzz(bench, 0, 3), 2);
    EXPECT_EQ(bench.ret(kBuz, 0x0A, {5, 0, 0, 0}), 2);
    EXPECT_EQ(bench.ret(kBuz, 0x0A, {0, 4, 0, 0}), 2);
}

TEST(Brightness, IsKept)
{
    Bench bench;
    for (const uint8_t brightness : std::initializer_list<uint8_t>{0, 1, 2}) {
        EXPECT_EQ(bench.ret(kSys, 0x0B, brightness), 0);
        EXPECT_EQ(bench.state_.device.ucBrightness, brightness);
    }
    EXPECT_EQ(bench.ret(kSys, 0x0B, 3), 2);
    EXPECT_EQ(bench.state_.device.ucBrightness, 2);
}

// ---- standby ----

uint8_t standbyState(Bench& bench)
{
    const Body body = bench.call(kMeas, 0x18);
    EXPECT_EQ(body.size(), 8u);
    EXPECT_EQ(body[0], 0);
    return body[4];
}

const Body kStart = zeros(40, {{4, 1}, {8, 0x37}, {9, 0x38}, {10, 0x07}}); // 473143 kHz

TEST(StandbyMode, MeasurementsSleepUntilTheWakeUp)
{
    struct {
        const Service& service;
        uint16_t asleep, awake;
        uint8_t mode, stat;
    } const ways[] = {{kSys, 0x0E, 0x0F, 0, 1}, {kMeas, 0x0E, 0x0F, 1, 2}, {kMeas, 0x1D, 0x1E, 0, 2}};
    for (const auto& way : ways) {
        Bench bench;
        EXPECT_EQ(bench.ret(kMeas, 0x100, zeros(8, {{4, 1}})), 0);
        EXPECT_EQ(bench.ret(kMeas, 0x15, 2), 0);
        EXPECT_EQ(bench.ret(kMeas, 0x103, kStart), 0);
        EXPECT_EQ(standbyState(bench), 0);
        EXPECT_EQ(bench.ret(way.service, way.asleep, way.mode), 0);
        EXPECT_EQ(bench.ret(way.service, way.asleep, way.mode), 0); // already
        EXPECT_EQ(standbyState(bench), way.stat);
        for (const uint16_t usCmd : std::initializer_list<uint16_t>{0x15, 0x16, 0x1C, 0x100, 0x103, 0x104})
            EXPECT_EQ(bench.call(kMeas, usCmd, Body(40)), (Body{6, 0, 0, 0})) << usCmd;
        EXPECT_EQ(bench.call(kMeas, 0x17), zeros(12, {{8, 1}})); // nothing runs, no supply; the input stays
        EXPECT_EQ(bench.call(kKey, 0x08), zeros(17));
        EXPECT_EQ(bench.ret(way.service, way.awake, way.mode), 0);
        EXPECT_EQ(bench.ret(way.service, way.awake, way.mode), 0);
        EXPECT_EQ(standbyState(bench), 0);
        EXPECT_EQ(bench.call(kMeas, 0x104)[0], 5); // what ran does not run again
    }
}

TEST(StandbyMode, ModesBelongToTheirServices)
{
    Bench bench;
    for (const uint16_t usCmd : std::initializer_list<uint16_t>{0x0E, 0x0F}) {
        for (const uint8_t mode : std::initializer_list<uint8_t>{1, 2, 255})
            EXPECT_EQ(bench.ret(kSys, usCmd, mode), 2);
        for (const uint8_t mode : std::initializer_list<uint8_t>{0, 2, 255})
            EXPECT_EQ(bench.ret(kMeas, usCmd, mode), 2);
    }
    EXPECT_EQ(standbyState(bench), 0);
}

TEST(StandbyMode, OfTheMeterHoldsTheMeasurementPart)
{
    Bench bench("[power]\nstandby = \"meter\"");
    EXPECT_EQ(standbyState(bench), 1);
    EXPECT_EQ(bench.ret(kMeas, 0x0F, 1), 4);
    EXPECT_EQ(bench.ret(kMeas, 0x0E, 1), 0); // already
    EXPECT_EQ(standbyState(bench), 1);
    EXPECT_EQ(bench.ret(kSys, 0x0F, 0), 0);
    EXPECT_EQ(bench.ret(kMeas, 0x0E, 1), 0);
    EXPECT_EQ(bench.ret(kSys, 0x0E, 0), 0); // from the part to the whole
    EXPECT_EQ(standbyState(bench), 1);
}

TEST(StandbyMode, ALowBatteryForbidsTheOrdinaryWakeUp)
{
    Bench bench("[power]\nstandby = \"measurement\"\n[device]\nlow_battery = true");
    EXPECT_EQ(bench.ret(kMeas, 0x0F, 1), 4);
    EXPECT_EQ(bench.ret(kSys, 0x0F, 0), 4);
    EXPECT_EQ(standbyState(bench), 2);
    EXPECT_EQ(bench.ret(kMeas, 0x1E), 0);
    EXPECT_EQ(standbyState(bench), 0);
    EXPECT_EQ(bench.ret(kMeas, 0x0F, 1), 0); // awake already
}

TEST(LowBattery, TellsWhenNothingChanges)
{
    Bench bench;
    EXPECT_EQ(bench.ret(kMeas, 0x19, 0), 3);
    EXPECT_EQ(bench.ret(kMeas, 0x19, 1), 0);
    EXPECT_EQ(bench.ret(kMeas, 0x19, 1), 3);
    EXPECT_EQ(bench.ret(kMeas, 0x19, 2), 2);
    EXPECT_EQ(bench.state_.device.ucLowBattery, 1);
}

TEST(Calibration, KnowsTwoModes)
{
    Bench bench;
    EXPECT_EQ(bench.ret(kMeas, 0x16, 0), 0);
    EXPECT_EQ(bench.ret(kMeas, 0x16, 1), 0);
    EXPECT_EQ(bench.ret(kMeas, 0x16, 2), 2);
    EXPECT_EQ(bench.state_.device.ulCalibrations, 2u);
    EXPECT_EQ(bench.state_.device.ucCalibrationMode, 1);
}

TEST(DeveloperMode, IsKept)
{
    Bench bench;
    EXPECT_EQ(bench.ret(kSys, 0x1B, 1), 0);
    EXPECT_EQ(bench.state_.device.ucDeveloperMode, 1);
    EXPECT_EQ(bench.ret(kSys, 0x1B, 2), 2);
    EXPECT_EQ(bench.state_.device.ucDeveloperMode, 1);
    EXPECT_EQ(bench.ret(kSys, 0x1B, 0), 0);
    EXPECT_EQ(bench.state_.device.ucDeveloperMode, 0);
}

// ---- reboot and shutdown ----

TEST(Reboot, IsSilentForItsTimeAndThenAsSwitchedOn)
{
    Bench bench("[power]\nreboot_ms = 2000");
    bench.ret(kMeas, 0x100, zeros(8, {{4, 1}}));
    bench.ret(kMeas, 0x103, kStart);
    bench.ret(kSys, 0x0B, 2);
    bench.ret(kSys, 0x1B, 1);
    bench.ret(kSys, 0x11, zeros(36, {{0, 9}, {2, 1}}));
    bench.ret(kBuz, 0x0A, {0, 3, 0, 0});
    bench.ret(kMeas, 0x19, 1);
    bench.ret(kMeas, 0x1D);
    buzz(bench, 4, kRepeat);
    Meter meter{bench.scene_, bench.state_};
    bench.ret(kDev, 0x07, 1);
    const uint64_t simMs = bench.state_.ulSimMs;
    reboot(meter, 10'000);
    const DeviceState& device = bench.state_.device;
    EXPECT_EQ(reasonForSilence(device, 10'000), "the meter is rebooting");
    EXPECT_EQ(reasonForSilence(device, 11'999), "the meter is rebooting");
    EXPECT_EQ(reasonForSilence(device, 12'000), "");
    EXPECT_EQ(bench.state_.ulSimMs, simMs + 2000);
    EXPECT_EQ(device.ulReboots, 1u);
    EXPECT_EQ(device.ucBrightness, 2);
    EXPECT_EQ(device.ucDeveloperMode, 1);
    EXPECT_EQ(device.failure.usCode, 9);
    EXPECT_EQ(device.buzzer.ucVolumes[0], 3);
    EXPECT_EQ(device.ucLowBattery, 1);
    EXPECT_EQ(standbyState(bench), 0);
    EXPECT_EQ(bench.state_.ucInput, 0);
    EXPECT_EQ(bench.state_.angle.ucOn, 0);
    EXPECT_EQ(bench.call(kMeas, 0x17), zeros(12));
    EXPECT_EQ(buzz(bench, 0, kOnce), 0);
}

TEST(Reboot, IsAskedForAtTheSystemService)
{
    Bench bench("[power]\nreboot_ms = 600000");
    EXPECT_EQ(bench.ret(kSys, 0x0C), 0);
    EXPECT_EQ(reasonForSilence(bench.state_.device, steadyMs()), "the meter is rebooting");
    Bench quick("[power]\nreboot_ms = 0");
    EXPECT_EQ(quick.ret(kSys, 0x0C), 0);
    EXPECT_EQ(reasonForSilence(quick.state_.device, steadyMs()), "");
    EXPECT_EQ(quick.state_.device.ulReboots, 1u);
}

TEST(Shutdown, IsForGood)
{
    Bench bench;
    EXPECT_EQ(reasonForSilence(bench.state_.device, 0), "");
    EXPECT_EQ(bench.ret(kSys, 0x0D), 0);
    EXPECT_EQ(reasonForSilence(bench.state_.device, UINT64_MAX), "the meter is off");
}

// ---- program update ----

// A request for version "2.0" of the main program; bytes are changed before the sum is made.
Body updateRequest(std::initializer_list<std::pair<size_t, uint8_t>> changes = {})
{
    Body body = {'V', 'X', 'U', 'P', 2, 0, 0, 0};
    append(body, "2.0", 16);
    body.insert(body.end(), {0x00, 0x00, 0x10, 0x00}); // 1 MiB
    for (const auto& [at, byte] : changes)
        body[at] = byte;
    const uint32_t sum = std::accumulate(body.begin(), body.end(), 0u);
    for (int i = 0; i < 4; ++i)
        body.push_back(static_cast<uint8_t>(sum >> (8 * i)));
    return body;
}

std::string versionAt(Bench& bench, size_t at)
{
    const Body body = bench.call(kSys, 0x05);
    return std::string(body.begin() + static_cast<std::ptrdiff_t>(at),
                       body.begin() + static_cast<std::ptrdiff_t>(at) + 16)
        .c_str();
}

TEST(Update, TellsProgressAndThenTheEnd)
{
    Bench bench("[update]\nsteps = 3");
    const Body request = updateRequest();
    ASSERT_EQ(request.size(), 32u);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(bench.ret(kSys, 0x10, request), 0);
    EXPECT_EQ(versionAt(bench, 41), "1.0.0");
    EXPECT_EQ(bench.ret(kSys, 0x10, request), 3);
    EXPECT_EQ(versionAt(bench, 41), "2.0");
    EXPECT_EQ(bench.ret(kSys, 0x10, request), 0); // anew
}

TEST(Update, ReplacesTheVersionOfItsProgram)
{
    const std::pair<uint8_t, size_t> places[] = {{1, 25}, {2, 41}, {3, 57}, {4, 73}, {5, 89}};
    for (const auto& [program, at] : places) {
        Bench bench("[update]\nsteps = 0");
        EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest({{4, program}})), 3);
        for (const auto& [other, place] : places)
            EXPECT_EQ(versionAt(bench, place) == "2.0", other == program) << int{program};
    }
}

TEST(Update, FailsWhereTheSceneSaysSo)
{
    Bench bench("[update]\nsteps = 1\nfail_step = 2");
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest()), 0);
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest()), 1);
    EXPECT_EQ(versionAt(bench, 41), "1.0.0");
    EXPECT_EQ(bench.state_.device.update.ucRunning, 0);
}

TEST(Update, RefusesBadRequests)
{
    const std::pair<Body, const char*> cases[] = {
        {Body(), "too short"},
        {Body(31), "too short"},
        {Body(32), "no update request"},
        {updateRequest({{0, 'v'}}), "no update request"},
        {updateRequest({{4, 0}}), "no such program"},
        {updateRequest({{4, 6}}), "no such program"},
        {updateRequest({{5, 3}}), "no such source"},
        {updateRequest({{6, 1}}), "reserved bytes are not 0"},
        {updateRequest({{7, 1}}), "reserved bytes are not 0"},
        {updateRequest({{8, 0}}), "no version"},
        {updateRequest({{8, 7}}), "no version"},
        {updateRequest({{12, 'x'}}), "no version"},
        {updateRequest({{26, 0}}), "no size"},
    };
    for (const auto& [request, note] : cases) {
        Bench bench;
        EXPECT_EQ(bench.ret(kSys, 0x10, request), 2) << note;
        EXPECT_EQ(bench.note_, note);
        EXPECT_EQ(bench.state_.device.update.ucRunning, 0);
    }
    Bench bench;
    Body request = updateRequest();
    ++request[28];
    EXPECT_EQ(bench.ret(kSys, 0x10, request), 2);
    EXPECT_EQ(bench.note_, "wrong sum");
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest({{5, 2}})), 0);
}

TEST(Update, TakesOneAtATime)
{
    Bench bench;
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest()), 0);
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest({{4, 1}})), 4);
    EXPECT_EQ(bench.note_, "another update is under way");
    EXPECT_EQ(bench.ret(kSys, 0x0E, 0), 4); // no standby now
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest()), 0);
    Meter meter{bench.scene_, bench.state_};
    reboot(meter, 0); // gives it up
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest({{4, 1}})), 0);
}

TEST(Update, NeedsABattery)
{
    Bench bench;
    bench.ret(kMeas, 0x19, 1);
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest()), 4);
    EXPECT_EQ(bench.note_, "low battery");
    bench.ret(kMeas, 0x19, 0);
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest()), 0);
    bench.ret(kMeas, 0x19, 1); // what has begun goes on
    EXPECT_EQ(bench.ret(kSys, 0x10, updateRequest()), 0);
}

// ---- any request ----

TEST(ServiceRequests, ShortOnesAreParameterErrorsAndChangeNothing)
{
    struct {
        const Service& service;
        uint16_t usCmd;
        size_t size;
        size_t response;
    } const cases[] = {{kSys, 0x0B, 4, 4},  {kSys, 0x0C, 4, 4},  {kSys, 0x0D, 4, 4},  {kSys, 0x0E, 4, 4},
                       {kSys, 0x0F, 4, 4},  {kSys, 0x10, 32, 4}, {kSys, 0x11, 36, 4}, {kSys, 0x12, 4, 4},
                       {kSys, 0x13, 8, 4},  {kSys, 0x1A, 4, 4},  {kSys, 0x1B, 4, 4},  {kBuz, 0x09, 4, 4},
                       {kBuz, 0x0A, 4, 4},  {kMeas, 0x0E, 4, 4}, {kMeas, 0x0F, 4, 4}, {kMeas, 0x16, 4, 4},
                       {kMeas, 0x18, 4, 8}, {kMeas, 0x19, 4, 4}, {kMeas, 0x1D, 4, 4}, {kMeas, 0x1E, 4, 4}};
    for (const auto& one : cases) {
        for (size_t size = 0; size < one.size; ++size) {
            Bench bench;
            bench.scene_.clockMs = 0;
            const State before = bench.state_;
            EXPECT_EQ(bench.call(one.service, one.usCmd, Body(size, 1)), zeros(one.response, {{0, 2}}))
                << one.usCmd << " " << size;
            EXPECT_EQ(toBody(bench.state_), toBody(before)) << one.usCmd << " " << size;
        }
    }
}

// Whatever a client sends, a service answers, and the meter's state stays in its bounds.
RC_GTEST_PROP(AnyServiceRequest, IsAnswered, ())
{
    Bench bench;
    bench.settings_.folder = "/nonexistent";
    for (int count = *rc::gen::inRange(1, 30); count > 0; --count) {
        const Service& service = *kServices[*rc::gen::inRange<size_t>(0, 5)];
        const Command& command = service.commands[*rc::gen::inRange<size_t>(0, service.commands.size())];
        Body request =
            *rc::gen::container<Body>(*rc::gen::inRange<size_t>(0, 41), rc::gen::inRange<uint8_t>(0, 8));
        if (command.usCmd == 0x10 && *rc::gen::arbitrary<bool>())
            request = updateRequest({{4, *rc::gen::inRange<uint8_t>(1, 6)}});
        RC_ASSERT(bench.call(service, command.usCmd, request).size() >= 4u);
        const DeviceState& device = bench.state_.device;
        RC_ASSERT(device.standby <= Standby::measurement);
        RC_ASSERT(device.ucBrightness <= 2);
        RC_ASSERT(device.buzzer.ucKind < 5);
        RC_ASSERT(*std::ranges::max_element(device.buzzer.ucVolumes) <= 3);
        RC_ASSERT(device.failure.ucStat <= 1);
    }
}

} // namespace
} // namespace vmeter
