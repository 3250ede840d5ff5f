#include "scene/load.h"

#include "scene/fault_rules.h"
#include "scene/load_device.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <tuple>

namespace vmeter {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kFileKeys[] = {
    "seed",    "clock_ms", "noise_figure_db", "level_sigma_db", "cn_sigma_db", "input", "signal", "light",
    "antenna", "fault",    "product",         "failure",        "device",      "power", "update", "key"};
constexpr std::string_view kInputKeys[] = {"id", "cable", "lnb", "dc_v"};
constexpr std::string_view kCableKeys[] = {"length_m", "loss_db_100m", "loss_db"};
constexpr std::string_view kLnbKeys[] = {"current_ma", "short_circuit", "cross_polar_db"};
constexpr std::string_view kSignalKeys[] = {
    "input",         "frequency_khz",    "lo_khz",     "system",  "modulation", "carriers",
    "bandwidth_khz", "symbol_rate_ksps", "level_dbuv", "cn_db",   "tsid",       "guard_interval",
    "layers",        "supply",           "tone",       "lock_ms", "echoes"};
constexpr std::string_view kEchoKeys[] = {"delay_us", "level_db", "phase_deg"};
constexpr std::string_view kLightKeys[] = {"wavelength_nm", "power_dbm"};
constexpr std::string_view kAntennaKeys[] = {
    "roll_deg",        "pitch_deg",      "heading_deg",          "roll_swing_deg",
    "pitch_swing_deg", "roll_period_ms", "pitch_period_ms",      "field_ut",
    "inclination_deg", "hard_iron_ut",   "acceleration_sigma_g", "field_sigma_ut"};
constexpr std::string_view kFaultKeys[] = {"service", "command",     "first", "last",
                                           "kind",    "probability", "value"};

constexpr struct {
    std::string_view name;
    std::span<const std::string_view> keys;
} kTables[] = {{"", kFileKeys},           {"input", kInputKeys},     {"input.cable", kCableKeys},
               {"input.lnb", kLnbKeys},   {"signal", kSignalKeys},   {"signal.echoes", kEchoKeys},
               {"light", kLightKeys},     {"antenna", kAntennaKeys}, {"fault", kFaultKeys},
               {"product", kProductKeys}, {"failure", kFailureKeys}, {"device", kDeviceKeys},
               {"power", kPowerKeys},     {"update", kUpdateKeys},   {"key", kKeyKeys}};

[[noreturn]] void refusePoints(const Fields& fields)
{
    fields.fail("loss_db_100m", "must be one or two pairs [MHz, dB], the frequency 1 to 5000 and rising, "
                                "the loss 0 to 1000");
}

// The cable of the points in loss_db_100m; without loss when they are not given.
Cable readLossPoints(const Fields& fields)
{
    if (!fields.has("loss_db_100m"))
        return {};
    const std::vector<std::vector<double>> points = fields.numberLists("loss_db_100m");
    if (points.empty() || points.size() > 2)
        refusePoints(fields);
    double mhz[2] = {};
    double loss[2] = {};
    for (size_t i = 0; i < points.size(); ++i) {
        if (points[i].size() != 2)
            refusePoints(fields);
        mhz[i] = points[i][0];
        loss[i] = points[i][1];
        if (!(mhz[i] >= 1 && mhz[i] <= 5000 && loss[i] >= 0 && loss[i] <= 1000))
            refusePoints(fields);
    }
    if (points.size() == 1)
        return cableThrough(mhz[0], loss[0], mhz[0], loss[0]);
    if (mhz[1] <= mhz[0])
        refusePoints(fields);
    const Cable cable = cableThrough(mhz[0], loss[0], mhz[1], loss[1]);
    if (cable.skin < 0 || cable.dielectric < 0) {
        fields.fail("loss_db_100m", "the loss must rise at least with the square root of the frequency and "
                                    "at most with the frequency: no cable does otherwise");
    }
    return cable;
}

Cable readCable(const Fields& fields)
{
    fields.allow(kCableKeys);
    Cable cable = readLossPoints(fields);
    cable.lengthM = fields.number("length_m", 0, 10000, 0.0);
    if (cable.lengthM > 0 && !fields.has("loss_db_100m"))
        fields.fail("length_m", "needs loss_db_100m beside it");
    cable.extraDb = fields.number("loss_db", 0, 200, 0.0);
    return cable;
}

Lnb readLnb(const Fields& fields)
{
    fields.allow(kLnbKeys);
    Lnb lnb;
    lnb.ulCurrentMa = static_cast<uint32_t>(fields.integer("current_ma", 0, 5000, 0));
    lnb.shortCircuit = fields.flag("short_circuit", false);
    lnb.crossPolarDb = fields.number("cross_polar_db", 0, 60, lnb.crossPolarDb);
    return lnb;
}

void readInputs(const Fields& top, Scene& scene)
{
    bool given[kInputCount] = {};
    for (const Fields& fields : top.tables("input")) {
        fields.allow(kInputKeys);
        const auto id = static_cast<size_t>(fields.integer("id", 0, kInputCount - 1));
        if (given[id])
            fields.fail("id", "input " + std::to_string(id) + " is given twice");
        given[id] = true;
        if (const auto cable = fields.table("cable"))
            scene.inputs[id].cable = readCable(*cable);
        if (const auto lnb = fields.table("lnb"))
            scene.inputs[id].lnb = readLnb(*lnb);
        scene.inputs[id].dcV = fields.number("dc_v", 0, 100, 0.0);
    }
}

const SystemInfo& readSystem(const Fields& fields)
{
    std::vector<std::string_view> names;
    for (const SystemInfo& info : systems())
        names.push_back(info.name);
    return systems()[fields.choice("system", names)];
}

Modulation readModulation(const Fields& fields, std::string_view key, std::span<const Modulation> allowed)
{
    std::vector<std::string_view> names;
    for (const Modulation modulation : allowed)
        names.push_back(infoOf(modulation).name);
    // Where there is but one, it need not be said.
    const auto fallback = allowed.size() == 1 ? std::optional<size_t>(0) : std::nullopt;
    return allowed[fields.choice(key, names, fallback)];
}

std::vector<Echo> readEchoes(const Fields& signal)
{
    constexpr size_t kEchoesMax = 16;
    std::vector<Echo> echoes;
    const std::vector<Fields> tables = signal.tables("echoes");
    if (tables.size() > kEchoesMax)
        signal.fail("echoes", "must be at most 16, are " + std::to_string(tables.size()));
    for (const Fields& fields : tables) {
        fields.allow(kEchoKeys);
        echoes.push_back({.delayUs = fields.number("delay_us", -84, 251),
                          .levelDb = fields.number("level_db", -60, 0),
                          .phaseDeg = fields.number("phase_deg", -360, 360, 0.0)});
    }
    return echoes;
}

Signal readSignal(const Fields& fields)
{
    fields.allow(kSignalKeys);
    const SystemInfo& system = readSystem(fields);
    const Modulation modulation = readModulation(fields, "modulation", system.modulations);
    const bool isOfdm = modulation == Modulation::ofdm;
    const bool isSingleCarrier = !isOfdm && modulation != Modulation::none;
    const auto refuseUnless = [&](bool fits, std::string_view key) {
        if (!fits && fields.has(key))
            fields.fail(key, "has no meaning for modulation " + std::string(infoOf(modulation).name));
    };
    refuseUnless(isOfdm, "carriers");
    refuseUnless(isOfdm, "guard_interval");
    refuseUnless(isOfdm, "echoes");
    refuseUnless(isSingleCarrier, "symbol_rate_ksps");
    refuseUnless(!isSingleCarrier, "bandwidth_khz");
    refuseUnless(modulation != Modulation::none, "tsid");
    refuseUnless(modulation != Modulation::none, "layers");
    refuseUnless(modulation != Modulation::none, "lock_ms");

    constexpr Modulation kCarriers[] = {Modulation::qpsk, Modulation::qam16, Modulation::qam64};
    constexpr std::string_view kGuards[] = {"1/32"sv, "1/16"sv, "1/8"sv, "1/4"sv};
    constexpr std::string_view kSupplies[] = {"none"sv, "any"sv, "11V"sv, "15V"sv};
    constexpr std::string_view kTones[] = {"any"sv, "off"sv, "on"sv};

    Signal signal{};
    signal.ucInput = static_cast<uint8_t>(fields.integer("input", 0, kInputCount - 1));
    signal.ulFrequencyKhz = static_cast<uint32_t>(fields.integer("frequency_khz", kTunerMinKhz, 22000000));
    signal.ulLoKhz = static_cast<uint32_t>(fields.integer("lo_khz", 0, 22000000, 0));
    const int64_t ifKhz = int64_t{signal.ulFrequencyKhz} - signal.ulLoKhz;
    if (ifKhz < kTunerMinKhz || ifKhz > kTunerMaxKhz) {
        fields.fail("frequency_khz", "less lo_khz must be " + std::to_string(kTunerMinKhz) + " to " +
                                         std::to_string(kTunerMaxKhz) + ", is " + std::to_string(ifKhz));
    }
    signal.system = system.system;
    signal.modulation = modulation;
    signal.carriers = isOfdm ? readModulation(fields, "carriers", kCarriers) : Modulation::none;
    signal.bandwidthKhz =
        fields.number(isSingleCarrier ? "symbol_rate_ksps" : "bandwidth_khz", 1, 100000, system.bandwidthKhz);
    signal.levelDbuv = fields.number("level_dbuv", -20, 130);
    signal.cnDb = fields.number("cn_db", -20, 60);
    signal.usTsid = static_cast<uint16_t>(fields.integer("tsid", 0, UINT16_MAX, 0));
    signal.ucGuardInterval = static_cast<uint8_t>(isOfdm ? fields.choice("guard_interval", kGuards, 2) : 0);
    signal.ucLayers = static_cast<uint8_t>(fields.integer("layers", 0, UINT8_MAX, 0));
    signal.supply = static_cast<SupplyNeed>(fields.choice("supply", kSupplies, 0));
    signal.tone = static_cast<ToneNeed>(fields.choice("tone", kTones, 0));
    if (signal.supply == SupplyNeed::none && signal.tone != ToneNeed::any)
        fields.fail("tone", "needs a supply other than none");
    signal.ulLockMs = static_cast<uint32_t>(fields.integer("lock_ms", 0, 3600000, 450));
    signal.echoes = readEchoes(fields);
    return signal;
}

void readSignals(const Fields& top, Scene& scene)
{
    std::set<std::tuple<uint8_t, uint32_t, uint32_t, SupplyNeed, ToneNeed>> seen;
    for (const Fields& fields : top.tables("signal")) {
        const Signal signal = readSignal(fields);
        if (!seen.emplace(signal.ucInput, signal.ulFrequencyKhz, signal.ulLoKhz, signal.supply, signal.tone)
                 .second) {
            fields.fail("frequency_khz",
                        "a signal of the same input, frequency, oscillator and supply stands before");
        }
        scene.signals.push_back(signal);
    }
}

void readLights(const Fields& top, Scene& scene)
{
    for (const Fields& fields : top.tables("light")) {
        fields.allow(kLightKeys);
        scene.lights.push_back({.wavelengthNm = fields.number("wavelength_nm", 800, 1700),
                                .powerDbm = fields.number("power_dbm", -80, 30)});
    }
}

void readAntenna(const Fields& fields, Antenna& antenna)
{
    fields.allow(kAntennaKeys);
    antenna.rollDeg = fields.number("roll_deg", -180, 180, antenna.rollDeg);
    antenna.pitchDeg = fields.number("pitch_deg", -90, 90, antenna.pitchDeg);
    antenna.headingDeg = fields.number("heading_deg", 0, 360, antenna.headingDeg);
    antenna.rollSwingDeg = fields.number("roll_swing_deg", 0, 90, antenna.rollSwingDeg);
    antenna.pitchSwingDeg = fields.number("pitch_swing_deg", 0, 90, antenna.pitchSwingDeg);
    antenna.rollPeriodMs = fields.number("roll_period_ms", 100, 3600000, antenna.rollPeriodMs);
    antenna.pitchPeriodMs = fields.number("pitch_period_ms", 100, 3600000, antenna.pitchPeriodMs);
    antenna.fieldUt = fields.number("field_ut", 0, 200, antenna.fieldUt);
    antenna.inclinationDeg = fields.number("inclination_deg", -90, 90, antenna.inclinationDeg);
    antenna.accelerationSigmaG = fields.number("acceleration_sigma_g", 0, 1, antenna.accelerationSigmaG);
    antenna.fieldSigmaUt = fields.number("field_sigma_ut", 0, 100, antenna.fieldSigmaUt);
    if (!fields.has("hard_iron_ut"))
        return;
    const std::vector<double> axes = fields.numbers("hard_iron_ut");
    const auto fits = [](double value) { return value >= -1000 && value <= 1000; };
    if (axes.size() != std::size(antenna.hardIronUt) || !std::ranges::all_of(axes, fits))
        fields.fail("hard_iron_ut", "must be three numbers, -1000 to 1000");
    std::ranges::copy(axes, antenna.hardIronUt);
}

void readFaults(const Fields& top, Scene& scene)
{
    for (const Fields& fields : top.tables("fault")) {
        fields.allow(kFaultKeys);
        std::string command;
        if (fields.isInteger("command"))
            command = std::to_string(fields.integer("command", 0, 0x7FFF)); // TOML knows 0x104 too
        else
            command = fields.text("command", "");
        const std::string service = fields.text("service");
        const std::string kind = fields.text("kind");
        const auto first = static_cast<uint32_t>(fields.integer("first", 1, UINT32_MAX, 1));
        const auto last = static_cast<uint32_t>(fields.integer("last", first, UINT32_MAX, UINT32_MAX));
        const double probability = fields.number("probability", 0, 1, 1.0);
        std::optional<uint32_t> value;
        if (fields.has("value"))
            value = static_cast<uint32_t>(fields.integer("value", 0, UINT32_MAX));
        try {
            scene.faults.push_back(makeFault(service, command, first, last, probability, kind, value));
        } catch (const std::invalid_argument& error) {
            fields.fail(error.what());
        }
    }
}

} // namespace

Scene parseScene(std::string_view text, const std::string& name)
{
    if (text.size() > kSceneSizeMax)
        throw std::runtime_error(name + ": is larger than 1 MiB: no scene file");
    const Fields fields(text, name);
    fields.allow(kFileKeys);
    Scene scene;
    scene.seed = static_cast<uint64_t>(fields.integer("seed", 0, INT64_MAX, 1));
    scene.clockMs = static_cast<uint32_t>(fields.integer("clock_ms", 1, 60000, scene.clockMs));
    scene.noiseFigureDb = fields.number("noise_figure_db", 0, 60, scene.noiseFigureDb);
    scene.levelSigmaDb = fields.number("level_sigma_db", 0, 10, scene.levelSigmaDb);
    scene.cnSigmaDb = fields.number("cn_sigma_db", 0, 10, scene.cnSigmaDb);
    readInputs(fields, scene);
    readSignals(fields, scene);
    readLights(fields, scene);
    if (const auto antenna = fields.table("antenna"))
        readAntenna(*antenna, scene.antenna);
    readFaults(fields, scene);
    scene.device = readDeviceScene(fields);
    return scene;
}

Scene loadScene(const std::string& path)
{
    // A directory opens like a file and then reads like an empty one.
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        throw std::runtime_error(path + ": is a directory, not a scene file");
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error(path + ": cannot be opened: " + std::strerror(errno));
    std::string text(kSceneSizeMax + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad())
        throw std::runtime_error(path + ": cannot be read: " + std::strerror(errno));
    text.resize(static_cast<size_t>(file.gcount()));
    return parseScene(text, path);
}

Scene defaultScene()
{
    return parseScene(defaultSceneText(), "built-in scene");
}

std::vector<std::string> sceneKeys()
{
    std::vector<std::string> result;
    for (const auto& table : kTables) {
        for (const std::string_view key : table.keys)
            result.push_back(table.name.empty() ? std::string(key)
                                                : std::string(table.name) + "." + std::string(key));
    }
    return result;
}

} // namespace vmeter
