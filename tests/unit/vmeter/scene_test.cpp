// Scene files: what is read, what is refused and how that is said.
#include "scene/load.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace vmeter {
namespace {

std::string readFile(const std::string& path)
{
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string refusal(const std::string& text)
{
    try {
        parseScene(text, "x.toml");
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "accepted";
}

// A signal in order, and the same with one line put in place of a key's or added.
std::string signalWith(const std::string& key, const std::string& line)
{
    const std::pair<const char*, const char*> lines[] = {{"input", "input = 0"},
                                                         {"frequency_khz", "frequency_khz = 473143"},
                                                         {"system", "system = \"terrestrial\""},
                                                         {"carriers", "carriers = \"64QAM\""},
                                                         {"level_dbuv", "level_dbuv = 60"},
                                                         {"cn_db", "cn_db = 30"}};
    std::string text = "[[signal]]\n";
    bool replaced = false;
    for (const auto& [name, usual] : lines) {
        replaced = replaced || key == name;
        text += (key == name ? line : usual) + std::string("\n");
    }
    return replaced ? text : text + line + "\n";
}

class SceneFile : public testing::Test {
protected:
    void SetUp() override
    {
        path_ =
            std::filesystem::path(testing::TempDir()) /
            ("scene-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".toml");
    }
    void TearDown() override { std::filesystem::remove_all(path_); }

    void write(const std::string& text) const { std::ofstream(path_, std::ios::binary) << text; }
    std::string refusal() const
    {
        try {
            loadScene(path_);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "accepted";
    }

    std::filesystem::path path_;
};

TEST(Scene, EmptyIsAMeterWithNothingConnected)
{
    const Scene scene = parseScene("", "x.toml");
    EXPECT_EQ(scene.seed, 1u);
    EXPECT_EQ(scene.clockMs, 100u);
    EXPECT_EQ(scene.noiseFigureDb, 8.0);
    EXPECT_EQ(scene.levelSigmaDb, 0.1);
    EXPECT_EQ(scene.cnSigmaDb, 0.2);
    EXPECT_TRUE(scene.signals.empty());
    EXPECT_TRUE(scene.faults.empty());
    EXPECT_EQ(cableLossDb(scene.inputs[0].cable, 1000), 0.0);
    EXPECT_EQ(scene.inputs[1].lnb.ulCurrentMa, 0u);
    EXPECT_EQ(scene.inputs[1].dcV, 0.0);
    EXPECT_TRUE(scene.lights.empty());
    EXPECT_EQ(scene.antenna.fieldUt, 46.0);
    EXPECT_EQ(scene.antenna.inclinationDeg, 49.0);
    EXPECT_TRUE(parseScene("signal = []\ninput = []\nfault = []", "x.toml").signals.empty());
}

TEST(Scene, ReadsEveryKey)
{
    const Scene scene = parseScene(R"(
seed = 9223372036854775807
clock_ms = 60000
noise_figure_db = 7.5
level_sigma_db = 0
cn_sigma_db = 1

[[input]]
id = 1
dc_v = 28.5
[input.cable]
length_m = 200
loss_db_100m = [[400, 12.8], [1600, 27.2]]
loss_db = 3
[input.lnb]
current_ma = 210
short_circuit = true
cross_polar_db = 18.5

[[signal]]
input = 1
frequency_khz = 11727480
lo_khz = 10678000
system = "satellite"
modulation = "8PSK"
symbol_rate_ksps = 28000
level_dbuv = 74.5
cn_db = -1
tsid = 0x4010
layers = 7
supply = "11V"
tone = "on"
lock_ms = 0

[[signal]]
input = 0
frequency_khz = 473143
system = "terrestrial"
carriers = "16QAM"
bandwidth_khz = 429
guard_interval = "1/4"
level_dbuv = 50
cn_db = 20
echoes = [{ delay_us = -84, level_db = -60, phase_deg = -360 }, { delay_us = 251, level_db = 0 }]

[[light]]
wavelength_nm = 1310.5
power_dbm = -12

[antenna]
roll_deg = -1
pitch_deg = 2
heading_deg = 3
roll_swing_deg = 4
pitch_swing_deg = 5
roll_period_ms = 600
pitch_period_ms = 700
field_ut = 8
inclination_deg = -9
hard_iron_ut = [10, -11, 12.5]
acceleration_sigma_g = 0.25
field_sigma_ut = 14
)",
                                   "x.toml");
    EXPECT_EQ(scene.seed, 9223372036854775807u);
    EXPECT_EQ(scene.clockMs, 60000u);
    EXPECT_EQ(scene.noiseFigureDb, 7.5);
    EXPECT_EQ(scene.levelSigmaDb, 0.0);
    EXPECT_EQ(scene.cnSigmaDb, 1.0);
    EXPECT_NEAR(cableLossDb(scene.inputs[1].cable, 900), 2 * (0.6 * 30 + 0.002 * 900) + 3, 1e-9);
    EXPECT_EQ(cableLossDb(scene.inputs[0].cable, 900), 0.0);
    EXPECT_EQ(scene.inputs[1].lnb.ulCurrentMa, 210u);
    EXPECT_TRUE(scene.inputs[1].lnb.shortCircuit);
    EXPECT_EQ(scene.inputs[1].lnb.crossPolarDb, 18.5);

    ASSERT_EQ(scene.signals.size(), 2u);
    const Signal& first = scene.signals[0];
    EXPECT_EQ(first.ucInput, 1);
    EXPECT_EQ(first.ulFrequencyKhz, 11727480u);
    EXPECT_EQ(first.ulLoKhz, 10678000u);
    EXPECT_EQ(first.ifKhz(), 1049480u);
    EXPECT_EQ(first.system, System::satellite);
    EXPECT_EQ(first.modulation, Modulation::psk8);
    EXPECT_EQ(first.carriers, Modulation::none);
    EXPECT_EQ(first.bandwidthKhz, 28000.0);
    EXPECT_EQ(first.levelDbuv, 74.5);
    EXPECT_EQ(first.cnDb, -1.0);
    EXPECT_EQ(first.usTsid, 0x4010);
    EXPECT_EQ(first.ucGuardInterval, 0);
    EXPECT_EQ(first.ucLayers, 7);
    EXPECT_EQ(first.supply, SupplyNeed::volt11);
    EXPECT_EQ(first.tone, ToneNeed::on);
    EXPECT_EQ(first.ulLockMs, 0u);

    const Signal& second = scene.signals[1];
    EXPECT_EQ(second.ucInput, 0);
    EXPECT_EQ(second.ulLoKhz, 0u);
    EXPECT_EQ(second.modulation, Modulation::ofdm);
    EXPECT_EQ(second.carriers, Modulation::qam16);
    EXPECT_EQ(second.bandwidthKhz, 429.0);
    EXPECT_EQ(second.ucGuardInterval, 3);
    EXPECT_EQ(second.supply, SupplyNeed::none);
    EXPECT_EQ(second.tone, ToneNeed::any);
    EXPECT_EQ(second.ulLockMs, 450u);
    EXPECT_TRUE(first.echoes.empty());
    ASSERT_EQ(second.echoes.size(), 2u);
    EXPECT_EQ(second.echoes[0].delayUs, -84.0);
    EXPECT_EQ(second.echoes[0].levelDb, -60.0);
    EXPECT_EQ(second.echoes[0].phaseDeg, -360.0);
    EXPECT_EQ(second.echoes[1].delayUs, 251.0);
    EXPECT_EQ(second.echoes[1].levelDb, 0.0);
    EXPECT_EQ(second.echoes[1].phaseDeg, 0.0);

    EXPECT_EQ(scene.inputs[0].dcV, 0.0);
    EXPECT_EQ(scene.inputs[1].dcV, 28.5);
    ASSERT_EQ(scene.lights.size(), 1u);
    EXPECT_EQ(scene.lights[0].wavelengthNm, 1310.5);
    EXPECT_EQ(scene.lights[0].powerDbm, -12.0);
    const Antenna& antenna = scene.antenna;
    EXPECT_EQ(antenna.rollDeg, -1.0);
    EXPECT_EQ(antenna.pitchDeg, 2.0);
    EXPECT_EQ(antenna.headingDeg, 3.0);
    EXPECT_EQ(antenna.rollSwingDeg, 4.0);
    EXPECT_EQ(antenna.pitchSwingDeg, 5.0);
    EXPECT_EQ(antenna.rollPeriodMs, 600.0);
    EXPECT_EQ(antenna.pitchPeriodMs, 700.0);
    EXPECT_EQ(antenna.fieldUt, 8.0);
    EXPECT_EQ(antenna.inclinationDeg, -9.0);
    EXPECT_EQ(antenna.hardIronUt[0], 10.0);
    EXPECT_EQ(antenna.hardIronUt[1], -11.0);
    EXPECT_EQ(antenna.hardIronUt[2], 12.5);
    EXPECT_EQ(antenna.accelerationSigmaG, 0.25);
    EXPECT_EQ(antenna.fieldSigmaUt, 14.0);
}

TEST(Scene, SystemsBringTheirBandwidth)
{
    const std::pair<const char*, double> cases[] = {
        {"system = \"terrestrial\"\ncarriers = \"QPSK\"", 5570},
        {"system = \"satellite\"\nmodulation = \"BPSK\"", 28860},
        {"system = \"satellite-2\"\nmodulation = \"32APSK\"", 33756.1},
        {"system = \"catv\"\nmodulation = \"64QAM\"", 5274},
        {"system = \"jsat\"", 21096},
        {"system = \"jsat-2\"\nmodulation = \"QPSK\"", 23303.5},
        {"system = \"skyp\"", 5274},
        {"system = \"catv-2\"\nmodulation = \"256QAM\"", 5274},
        {"system = \"level\"", 200}};
    for (const auto& [system, bandwidth] : cases) {
        const Scene scene =
            parseScene("[[signal]]\ninput = 0\nfrequency_khz = 473143\nlevel_dbuv = 1\ncn_db = 1\n" +
                           std::string(system),
                       "x.toml");
        EXPECT_EQ(scene.signals[0].bandwidthKhz, bandwidth) << system;
    }
}

TEST(Scene, RefusesWithFileLineKeyAndReason)
{
    const std::string pairs =
        "x.toml:2: input.cable.loss_db_100m: must be one or two pairs [MHz, dB], the frequency "
        "1 to 5000 and rising, the loss 0 to 1000";
    const auto cable = [](const std::string& points) {
        return "[[input]]\ncable = { loss_db_100m = " + points + " }\nid = 0";
    };
    const std::string hardIron = "x.toml:2: antenna.hard_iron_ut: must be three numbers, -1000 to 1000";
    std::string seventeen;
    for (int i = 0; i < 17; ++i)
        seventeen += "{ delay_us = 1, level_db = -1 }, ";
    const std::pair<std::string, std::string> cases[] = {
        {"sead = 1",
         "x.toml:1: sead: unknown key; known here: seed, clock_ms, noise_figure_db, level_sigma_db, "
         "cn_sigma_db, input, signal, light, antenna, fault, product, failure, device, power, update, key"},
        {"seed = -1", "x.toml:1: seed: must be 0 to 9223372036854775807, is -1"},
        {"seed = 1.5", "x.toml:1: seed: must be an integer, not floating-point"},
        {"seed = \"1\"", "x.toml:1: seed: must be an integer, not string"},
        {"seed = 2026-01-01", "x.toml:1: seed: must be an integer, not date"},
        {"\n\nclock_ms = 0", "x.toml:3: clock_ms: must be 1 to 60000, is 0"},
        {"clock_ms = 60001", "x.toml:1: clock_ms: must be 1 to 60000, is 60001"},
        {"noise_figure_db = nan", "x.toml:1: noise_figure_db: must be 0 to 60, is nan"},
        {"noise_figure_db = -0.1", "x.toml:1: noise_figure_db: must be 0 to 60, is -0.1"},
        {"noise_figure_db = true", "x.toml:1: noise_figure_db: must be a number, not boolean"},
        {"noise_figure_db = 9223372036854775807",
         "x.toml:1: noise_figure_db: must be 0 to 60, is 9.22337e+18"},
        {"level_sigma_db = inf", "x.toml:1: level_sigma_db: must be 0 to 10, is inf"},
        {"cn_sigma_db = 11", "x.toml:1: cn_sigma_db: must be 0 to 10, is 11"},
        {"seed = 1\nseed = 2",
         "x.toml:2: syntax: Error while parsing key-value pair: cannot redefine existing "
         "integer 'seed'"},
        {"input = 3", "x.toml:1: input: must be tables, each headed [[input]]"},
        {"[input]\nid = 0", "x.toml:1: input: must be tables, each headed [[input]]"},
        {"signal = [1]", "x.toml:1: signal: must be tables, each headed [[signal]]"},
        {"[[input]]\nid = 2", "x.toml:2: input.id: must be 0 to 1, is 2"},
        {"\n[[input]]\n", "x.toml:2: input.id: is missing"},
        {"[[input]]\nid = 0\n[[input]]\nid = 0", "x.toml:4: input.id: input 0 is given twice"},
        {"[[input]]\nid = 0\ncable = 20", "x.toml:3: input.cable: must be a table, not integer"},
        {"[[input]]\nid = 0\nfoo = 20", "x.toml:3: input.foo: unknown key; known here: id, cable, lnb, dc_v"},
        {"[[input]]\nid = 0\n[input.cable]\nlength = 20",
         "x.toml:4: input.cable.length: unknown key; known here: length_m, loss_db_100m, loss_db"},
        {"[[input]]\nid = 0\n[input.cable]\nlength_m = -1",
         "x.toml:4: input.cable.length_m: must be 0 to 10000, is -1"},
        {"[[input]]\nid = 0\n[input.cable]\nlength_m = 20",
         "x.toml:4: input.cable.length_m: needs loss_db_100m beside it"},
        {"[[input]]\nid = 0\n[input.cable]\nloss_db = 201",
         "x.toml:4: input.cable.loss_db: must be 0 to 200, is 201"},
        {cable("3"), pairs},
        {cable("[]"), pairs},
        {cable("[1, 2]"), pairs},
        {cable("[[1, 2, 3]]"), pairs},
        {cable("[[1, \"2\"]]"), pairs},
        {cable("[[0, 2]]"), pairs},
        {cable("[[5001, 2]]"), pairs},
        {cable("[[100, -1]]"), pairs},
        {cable("[[100, nan]]"), pairs},
        {cable("[[100, 1], [100, 1]]"), pairs},
        {cable("[[200, 1], [100, 1]]"), pairs},
        {cable("[[100, 1], [200, 2], [300, 3]]"), pairs},
        {cable("[[100, 10], [400, 19]]"), // less than twice the loss at four times the frequency
         "x.toml:2: input.cable.loss_db_100m: the loss must rise at least with the square root of the "
         "frequency and "
         "at most with the frequency: no cable does otherwise"},
        {cable("[[100, 10], [400, 41]]"), "x.toml:2: input.cable.loss_db_100m: the loss must rise at least "
                                          "with the square root of the frequency and "
                                          "at most with the frequency: no cable does otherwise"},
        {"[[input]]\nid = 0\n[input.lnb]\ncurrent_ma = 5001",
         "x.toml:4: input.lnb.current_ma: must be 0 to 5000, is 5001"},
        {"[[input]]\nid = 0\n[input.lnb]\nshort_circuit = 1",
         "x.toml:4: input.lnb.short_circuit: must be true or false, not integer"},
        {"[[input]]\nid = 0\n[input.lnb]\ncross_polar_db = 61",
         "x.toml:4: input.lnb.cross_polar_db: must be 0 to 60, is 61"},
        {"[[input]]\nid = 0\n[input.lnb]\nvolt = 11",
         "x.toml:4: input.lnb.volt: unknown key; known here: current_ma, short_circuit, cross_polar_db"},
        {signalWith("input", ""), "x.toml:1: signal.input: is missing"},
        {signalWith("input", "input = 2"), "x.toml:2: signal.input: must be 0 to 1, is 2"},
        {signalWith("frequency_khz", ""), "x.toml:1: signal.frequency_khz: is missing"},
        {signalWith("frequency_khz", "frequency_khz = 9999"),
         "x.toml:3: signal.frequency_khz: must be 10000 to 22000000, is 9999"},
        {signalWith("frequency_khz", "frequency_khz = 3224001"),
         "x.toml:3: signal.frequency_khz: less lo_khz must be 10000 to 3224000, is 3224001"},
        {signalWith("lo_khz", "lo_khz = 473143"),
         "x.toml:3: signal.frequency_khz: less lo_khz must be 10000 to 3224000, is 0"},
        {signalWith("lo_khz", "lo_khz = 22000000"),
         "x.toml:3: signal.frequency_khz: less lo_khz must be 10000 to 3224000, is -21526857"},
        {signalWith("lo_khz", "lo_khz = -1"), "x.toml:8: signal.lo_khz: must be 0 to 22000000, is -1"},
        {signalWith("system", ""), "x.toml:1: signal.system: is missing"},
        {signalWith("system", "system = 0"), "x.toml:4: signal.system: must be a string, not integer"},
        {signalWith("system", "system = \"DVB\""), "x.toml:4: signal.system: must be one of terrestrial, "
                                                   "satellite, satellite-2, catv, jsat, jsat-2, skyp, "
                                                   "catv-2, level, not \"DVB\""},
        {signalWith("system", "system = \"catv\""), "x.toml:1: signal.modulation: is missing"},
        {signalWith("modulation", "modulation = \"64QAM\""),
         "x.toml:8: signal.modulation: must be one of OFDM, not \"64QAM\""},
        {signalWith("modulation", "modulation = \"a\\nb01234567890123456789012345678901234567890\""),
         "x.toml:8: signal.modulation: must be one of OFDM, not "
         "\"a?b0123456789012345678901234567890123456...\""},
        {signalWith("carriers", ""), "x.toml:1: signal.carriers: is missing"},
        {signalWith("carriers", "carriers = \"8PSK\""),
         "x.toml:5: signal.carriers: must be one of QPSK, 16QAM, 64QAM, not \"8PSK\""},
        {signalWith("level_dbuv", ""), "x.toml:1: signal.level_dbuv: is missing"},
        {signalWith("level_dbuv", "level_dbuv = 130.5"),
         "x.toml:6: signal.level_dbuv: must be -20 to 130, is 130.5"},
        {signalWith("cn_db", ""), "x.toml:1: signal.cn_db: is missing"},
        {signalWith("cn_db", "cn_db = 61"), "x.toml:7: signal.cn_db: must be -20 to 60, is 61"},
        {signalWith("tsid", "tsid = 65536"), "x.toml:8: signal.tsid: must be 0 to 65535, is 65536"},
        {signalWith("layers", "layers = 256"), "x.toml:8: signal.layers: must be 0 to 255, is 256"},
        {signalWith("guard_interval", "guard_interval = \"1/2\""),
         "x.toml:8: signal.guard_interval: must be one of 1/32, 1/16, 1/8, 1/4, not \"1/2\""},
        {signalWith("supply", "supply = \"18V\""),
         "x.toml:8: signal.supply: must be one of none, any, 11V, 15V, not \"18V\""},
        {signalWith("tone", "tone = \"on\""), "x.toml:8: signal.tone: needs a supply other than none"},
        {signalWith("tone", "tone = true"), "x.toml:8: signal.tone: must be a string, not boolean"},
        {signalWith("lock_ms", "lock_ms = 3600001"),
         "x.toml:8: signal.lock_ms: must be 0 to 3600000, is 3600001"},
        {signalWith("bandwidth_khz", "bandwidth_khz = 0.5"),
         "x.toml:8: signal.bandwidth_khz: must be 1 to 100000, is 0.5"},
        {signalWith("symbol_rate_ksps", "symbol_rate_ksps = 5274"),
         "x.toml:8: signal.symbol_rate_ksps: has no meaning for modulation OFDM"},
        {signalWith("system", "system = \"jsat\""),
         "x.toml:5: signal.carriers: has no meaning for modulation QPSK"},
        {signalWith("system", "system = \"jsat\"\nguard_interval = \"1/4\"\n#"),
         "x.toml:7: signal.carriers: has no meaning for modulation QPSK"},
        {"[[signal]]\nsystem = \"jsat\"\nguard_interval = \"1/4\"",
         "x.toml:3: signal.guard_interval: has no meaning for modulation QPSK"},
        {"[[signal]]\nsystem = \"jsat\"\nbandwidth_khz = 5",
         "x.toml:3: signal.bandwidth_khz: has no meaning for modulation QPSK"},
        {"[[signal]]\nsystem = \"level\"\ntsid = 5",
         "x.toml:3: signal.tsid: has no meaning for modulation none"},
        {"[[signal]]\nsystem = \"level\"\nlayers = 5",
         "x.toml:3: signal.layers: has no meaning for modulation none"},
        {"[[signal]]\nsystem = \"level\"\nlock_ms = 5",
         "x.toml:3: signal.lock_ms: has no meaning for modulation none"},
        {signalWith("", "") + signalWith("", ""),
         "x.toml:11: signal.frequency_khz: a signal of the same input, "
         "frequency, oscillator and supply stands before"},
        {"[[input]]\nid = 0\ndc_v = -1", "x.toml:3: input.dc_v: must be 0 to 100, is -1"},
        {signalWith("echoes", "echoes = 1"),
         "x.toml:8: signal.echoes: must be tables, each headed [[signal.echoes]]"},
        {signalWith("echoes", "echoes = [{ level_db = -1 }]"),
         "x.toml:8: signal.echoes.delay_us: is missing"},
        {signalWith("echoes", "echoes = [{ delay_us = 1 }]"), "x.toml:8: signal.echoes.level_db: is missing"},
        {signalWith("echoes", "echoes = [{ delay_us = 251.1, level_db = -1 }]"),
         "x.toml:8: signal.echoes.delay_us: must be -84 to 251, is 251.1"},
        {signalWith("echoes", "echoes = [{ delay_us = -84.1, level_db = -1 }]"),
         "x.toml:8: signal.echoes.delay_us: must be -84 to 251, is -84.1"},
        {signalWith("echoes", "echoes = [{ delay_us = 1, level_db = 0.5 }]"),
         "x.toml:8: signal.echoes.level_db: must be -60 to 0, is 0.5"},
        {signalWith("echoes", "echoes = [{ delay_us = 1, level_db = 0, phase_deg = 361 }]"),
         "x.toml:8: signal.echoes.phase_deg: must be -360 to 360, is 361"},
        {signalWith("echoes", "echoes = [{ delay_us = 1, level_db = 0, phase = 1 }]"),
         "x.toml:8: signal.echoes.phase: unknown key; known here: delay_us, level_db, phase_deg"},
        {signalWith("echoes", "echoes = [" + seventeen + "]"),
         "x.toml:8: signal.echoes: must be at most 16, are 17"},
        {"[[signal]]\nsystem = \"jsat\"\nechoes = []",
         "x.toml:3: signal.echoes: has no meaning for modulation QPSK"},
        {"[light]\nwavelength_nm = 1310", "x.toml:1: light: must be tables, each headed [[light]]"},
        {"[[light]]\nwavelength_nm = 1310", "x.toml:1: light.power_dbm: is missing"},
        {"[[light]]\npower_dbm = 0", "x.toml:1: light.wavelength_nm: is missing"},
        {"[[light]]\npower_dbm = 31\nwavelength_nm = 1310",
         "x.toml:2: light.power_dbm: must be -80 to 30, is 31"},
        {"[[light]]\nwavelength_nm = 799", "x.toml:2: light.wavelength_nm: must be 800 to 1700, is 799"},
        {"[[antenna]]\nroll_deg = 1", "x.toml:1: antenna: must be a table, not array"},
        {"[antenna]\nroll_deg = 181", "x.toml:2: antenna.roll_deg: must be -180 to 180, is 181"},
        {"[antenna]\npitch_deg = -91", "x.toml:2: antenna.pitch_deg: must be -90 to 90, is -91"},
        {"[antenna]\nheading_deg = -1", "x.toml:2: antenna.heading_deg: must be 0 to 360, is -1"},
        {"[antenna]\nroll_swing_deg = 91", "x.toml:2: antenna.roll_swing_deg: must be 0 to 90, is 91"},
        {"[antenna]\npitch_swing_deg = 91", "x.toml:2: antenna.pitch_swing_deg: must be 0 to 90, is 91"},
        {"[antenna]\nroll_period_ms = 0", "x.toml:2: antenna.roll_period_ms: must be 100 to 3.6e+06, is 0"},
        {"[antenna]\npitch_period_ms = 99",
         "x.toml:2: antenna.pitch_period_ms: must be 100 to 3.6e+06, is 99"},
        {"[antenna]\nfield_ut = 201", "x.toml:2: antenna.field_ut: must be 0 to 200, is 201"},
        {"[antenna]\ninclination_deg = 91", "x.toml:2: antenna.inclination_deg: must be -90 to 90, is 91"},
        {"[antenna]\nacceleration_sigma_g = 2",
         "x.toml:2: antenna.acceleration_sigma_g: must be 0 to 1, is 2"},
        {"[antenna]\nfield_sigma_ut = -1", "x.toml:2: antenna.field_sigma_ut: must be 0 to 100, is -1"},
        {"[antenna]\nhard_iron_ut = 1", hardIron},
        {"[antenna]\nhard_iron_ut = [1, 2]", hardIron},
        {"[antenna]\nhard_iron_ut = [1, 2, 3, 4]", hardIron},
        {"[antenna]\nhard_iron_ut = [1, 2, \"3\"]", hardIron},
        {"[antenna]\nhard_iron_ut = [1, 2, nan]", hardIron},
        {"[antenna]\nhard_iron_ut = [1, 2, 1001]", hardIron},
        {"[[fault]]\nkind = \"silence\"", "x.toml:1: fault.service: is missing"},
        {"[[fault]]\nservice = \"meas\"", "x.toml:1: fault.kind: is missing"},
        {"[[fault]]\nservice = \"meas\"\nkind = \"silence\"\nfirst = 0",
         "x.toml:4: fault.first: must be 1 to 4294967295, is 0"},
        {"[[fault]]\nservice = \"meas\"\nkind = \"silence\"\nfirst = 5\nlast = 4",
         "x.toml:5: fault.last: must be 5 to 4294967295, is 4"},
        {"[[fault]]\nservice = \"meas\"\nkind = \"silence\"\nprobability = 1.1",
         "x.toml:4: fault.probability: must be 0 to 1, is 1.1"},
        {"[[fault]]\nservice = \"meas\"\nkind = \"silence\"\nvalue = -1",
         "x.toml:4: fault.value: must be 0 to 4294967295, is -1"},
        {"[[fault]]\nservice = \"meas\"\nkind = \"silence\"\ncommand = 32768",
         "x.toml:4: fault.command: must be 0 to 32767, is 32768"},
        {"[[fault]]\nservice = \"meas\"\nkind = \"silence\"\ncommand = true",
         "x.toml:4: fault.command: must be a string, not boolean"},
        {"[[fault]]\nservice = \"meas\"\nkind = \"silence\"\nwhen = 1",
         "x.toml:4: fault.when: unknown key; known here: service, command, first, last, kind, probability, "
         "value"},
        {"\n[[fault]]\nservice = \"meas\"\nkind = \"impossible\"",
         "x.toml:2: fault: unknown fault 'impossible' (known: silence, late, twice, refuse, ret, wrong, "
         "stray, cut, "
         "oversized, garbage, die, random)"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(refusal(text), expected) << text;
}

TEST(Scene, SignalsMayShareAFrequencyWhenTheSupplyTellsThemApart)
{
    const std::string text = signalWith("supply", "supply = \"11V\"") +
                             signalWith("supply", "supply = \"15V\"") + signalWith("input", "input = 1");
    EXPECT_EQ(parseScene(text, "x.toml").signals.size(), 3u);
}

TEST(Scene, GivesFaultsOn)
{
    const Scene scene = parseScene(R"(
[[fault]]
service = "meas"
command = "single-result"
first = 2
last = 5
kind = "late"
probability = 0.5
value = 300
[[fault]]
service = "dev"
command = 0x22
kind = "silence"
)",
                                   "x.toml");
    ASSERT_EQ(scene.faults.size(), 2u);
    EXPECT_EQ(scene.faults[0].first, 2u);
    EXPECT_EQ(scene.faults[0].ucProcId, 12);
    EXPECT_EQ(scene.faults[0].usCmd, 0x0104);
    EXPECT_EQ(scene.faults[0].last, 5u);
    EXPECT_EQ(scene.faults[0].probability, 0.5);
    EXPECT_EQ(scene.faults[0].kind, FaultKind::late);
    EXPECT_EQ(scene.faults[0].value, 300u);
    EXPECT_EQ(scene.faults[1].ucProcId, 6);
    EXPECT_EQ(scene.faults[1].usCmd, 0x0022);
    EXPECT_EQ(scene.faults[1].first, 1u);
    EXPECT_EQ(scene.faults[1].last, UINT32_MAX);
    EXPECT_EQ(scene.faults[1].probability, 1.0);
    EXPECT_EQ(scene.faults[1].kind, FaultKind::silence);
    EXPECT_EQ(scene.faults[1].value, std::nullopt);
}

TEST(Scene, SyntaxErrorsTellFileAndLine)
{
    EXPECT_EQ(refusal("seed = 1\nclock_ms ="),
              "x.toml:2: syntax: Error while parsing key-value pair: encountered end-of-file");
    for (const std::string& garbage :
         {std::string("\x7f\x45LF\x02\x01\x00\x00", 8), std::string("a = \"\xff\xfe\""),
          std::string(5000, '['), "seed = " + std::string(5000, '['), std::string("\x00\x00", 2)})
        EXPECT_EQ(refusal(garbage).rfind("x.toml:1: syntax: ", 0), 0u) << refusal(garbage);
}

TEST(Scene, WhatTripsTheParserIsRefusedLikeAnyOther)
{
    EXPECT_EQ(refusal("[="), "x.toml:1: syntax: no key, value or table header");
    EXPECT_EQ(refusal("seed \xCF\x9D = 1"),
              "x.toml:1: syntax: Error while parsing key-value pair: expected '=', "
              "saw '\xCF\x9D'"); // asked whether it is a blank
    EXPECT_EQ(refusal("seed = 1\n\n[[[\n\nclock_ms = 3\n"),
              "x.toml:3: syntax: no key, value or table header");
}

// As many tables in each other as a megabyte has room for would be more than the stack has.
TEST(Scene, KeysHaveAnEnd)
{
    const auto key = [](size_t parts) {
        std::string text = "a";
        while (--parts > 0)
            text += ".a";
        return text;
    };
    const std::string refused = "syntax: a key of more than 100 parts";
    EXPECT_EQ(refusal(key(100) + " = 1").find("x.toml:1: a: unknown key; "), 0u);
    EXPECT_EQ(refusal("\n" + key(101) + " = 1"), "x.toml:2: " + refused);
    EXPECT_EQ(refusal("[" + key(500000) + "]"), "x.toml:1: " + refused);
    EXPECT_EQ(refusal("seed = 1 # " + key(200) + "\n[[" + key(500000) + "]]"), "x.toml:2: " + refused);
    EXPECT_EQ(refusal("light = [{ wavelength_nm = 1310, " + key(500000) + " = 1 }]"), "x.toml:1: " + refused);
    for (const std::string quotes : {"\"", "'", "\"\"\"", "'''"}) { // what looks like a key in a text is none
        const std::string start = "[product]\nmodel_code = " + quotes;
        EXPECT_EQ(refusal(start + key(4) + quotes + "\n# " + key(200) + "\n"), "accepted");
        EXPECT_EQ(refusal(start + key(4) + quotes + "\n\n" + key(101) + "=1"), "x.toml:4: " + refused);
        EXPECT_EQ(refusal(start + key(200) + quotes),
                  "x.toml:2: product.model_code: must be at most 8 printable ASCII characters");
    }
    // Quotes that end a text, and those that belong to it.
    for (const std::string text :
         {R"("""a"""")", "'''a'''''", R"("""\"""")", "\"\"\"\n\"a\"\n\"\"\"", R"("\"")"})
        EXPECT_EQ(refusal("product = { model_code = " + text + ", " + key(101) + " = 1 }"),
                  "x.toml:" + std::to_string(1 + std::count(text.begin(), text.end(), '\n')) + ": " + refused)
            << text;
}

// At each point in a key the parser goes through all tables that such keys have made.
TEST(Scene, PointsInKeysHaveAnEnd)
{
    std::string text = "noise_figure_db = 1.5 # 1.2.3\n";
    for (int i = 0; i < 50000; ++i)
        text += "t" + std::to_string(i) + ".a = 1.5\n";
    EXPECT_EQ(refusal(text).find("x.toml:2: t0: unknown key; "), 0u);
    EXPECT_EQ(refusal(text + "a = 1.5\nb.c = 1\n"), "x.toml:50003: syntax: more than 50,000 points in keys");
}

// Of a long file no more is read again than has to be.
TEST(Scene, LineOfAnAssertionInALongFile)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "k" + std::to_string(i) + " = 1\n";
    const std::string refused = ": syntax: no key, value or table header";
    EXPECT_EQ(refusal(text + "[=\n" + text), "x.toml:1001" + refused);
    EXPECT_EQ(refusal(text + std::string(1000, '\n') + "[=" + std::string(1000, ' ') + "\n\n"),
              "x.toml:2001" + refused);
    EXPECT_EQ(refusal(text + "[="), "x.toml:1001" + refused);
}

// Any damage to a scene gives a scene or a refusal.
RC_GTEST_PROP(Scene, SurvivesDamage, ())
{
    std::string text(defaultSceneText().substr(0, 2000));
    const auto count = *rc::gen::inRange(1, 5);
    for (int i = 0; i < count; ++i) {
        const auto at = *rc::gen::inRange<size_t>(0, text.size());
        const auto length = *rc::gen::inRange<size_t>(0, 20);
        const std::string with = *rc::gen::oneOf(
            rc::gen::container<std::string>(rc::gen::arbitrary<char>()),
            rc::gen::container<std::string>(rc::gen::elementOf(std::string("[]{}=.,\"'\n#-+_09ae:"))));
        text.replace(at, length, with);
    }
    try {
        parseScene(text, "x.toml");
    } catch (const std::runtime_error& error) {
        RC_ASSERT(std::string(error.what()).rfind("x.toml:", 0) == 0u);
    }
}

TEST_F(SceneFile, IsLoaded)
{
    write("seed = 42\n" + signalWith("", ""));
    const Scene scene = loadScene(path_);
    EXPECT_EQ(scene.seed, 42u);
    EXPECT_EQ(scene.signals.size(), 1u);
}

TEST_F(SceneFile, NamesItselfWhenRefused)
{
    write("seed = 42\nclock_ms = 0\n");
    EXPECT_EQ(refusal(), path_.string() + ":2: clock_ms: must be 1 to 60000, is 0");
}

TEST_F(SceneFile, Missing)
{
    EXPECT_EQ(refusal(), path_.string() + ": cannot be opened: No such file or directory");
}

TEST_F(SceneFile, Directory)
{
    std::filesystem::create_directory(path_);
    EXPECT_EQ(refusal(), path_.string() + ": is a directory, not a scene file");
}

TEST_F(SceneFile, Huge)
{
    write(std::string(1048576, '\n'));
    EXPECT_EQ(refusal(), "accepted");
    write(std::string(1048577, '\n'));
    EXPECT_EQ(refusal(), path_.string() + ": is larger than 1 MiB: no scene file");
}

TEST(SceneDefault, IsARoofAntennaAndACableOutlet)
{
    const Scene scene = defaultScene();
    const auto count = [&](uint8_t ucInput, System system) {
        return std::ranges::count_if(scene.signals, [&](const Signal& signal) {
            return signal.ucInput == ucInput && signal.system == system;
        });
    };
    EXPECT_EQ(count(0, System::terrestrial), 10);
    EXPECT_EQ(count(0, System::satellite), 19);
    EXPECT_EQ(count(0, System::satellite2), 3);
    EXPECT_EQ(count(0, System::level), 4);
    EXPECT_EQ(count(1, System::terrestrial), 3);
    EXPECT_EQ(count(1, System::catv), 7);
    EXPECT_EQ(count(1, System::level), 4);
    EXPECT_GT(scene.inputs[0].cable.lengthM, 0.0);
    EXPECT_GT(scene.inputs[0].lnb.ulCurrentMa, 0u);
    EXPECT_TRUE(scene.faults.empty());
}

TEST(SceneDefault, IsTheFileOfThatName)
{
    EXPECT_EQ(defaultSceneText(), readFile(VX63_SOURCE_DIR "/vmeter/scene/default.toml"));
}

// The rows "| `key` |" of each table of docs/scene.md, as "signal.key".
std::set<std::string> documentedKeys()
{
    const std::pair<std::string, std::string> sections[] = {{"## File", ""},
                                                            {"## `[[input]]`", "input."},
                                                            {"## `cable` of an input", "input.cable."},
                                                            {"## `lnb` of an input", "input.lnb."},
                                                            {"## `[[signal]]`", "signal."},
                                                            {"## `echoes` of a signal", "signal.echoes."},
                                                            {"## `[[light]]`", "light."},
                                                            {"## `[antenna]`", "antenna."},
                                                            {"## `[product]`", "product."},
                                                            {"## `[failure]`", "failure."},
                                                            {"## `[device]`", "device."},
                                                            {"## `[power]`", "power."},
                                                            {"## `[update]`", "update."},
                                                            {"## `[[key]]`", "key."},
                                                            {"## `[[fault]]`", "fault."}};
    std::set<std::string> keys;
    std::istringstream text(readFile(VX63_SOURCE_DIR "/docs/scene.md"));
    std::string prefix;
    for (std::string line; std::getline(text, line);) {
        for (const auto& [title, name] : sections)
            prefix = line == title ? name : prefix;
        if (line.rfind("| `", 0) == 0 && line.rfind("| `system` | Code", 0) != 0)
            keys.insert(prefix + line.substr(3, line.find('`', 3) - 3));
    }
    return keys;
}

TEST(SceneDocument, TellsEveryKeyAndNoOther)
{
    const std::vector<std::string> known = sceneKeys();
    EXPECT_FALSE(known.empty());
    EXPECT_EQ(documentedKeys(), std::set<std::string>(known.begin(), known.end()));
}

TEST(SceneDocument, ItsExampleLoads)
{
    const std::string text = readFile(VX63_SOURCE_DIR "/docs/scene.md");
    const size_t begin = text.find("```toml\n") + 8;
    const Scene scene = parseScene(text.substr(begin, text.find("```", begin) - begin), "docs/scene.md");
    EXPECT_EQ(scene.seed, 7u);
    EXPECT_EQ(scene.signals.size(), 2u);
    EXPECT_EQ(scene.faults.size(), 1u);
}

} // namespace
} // namespace vmeter
