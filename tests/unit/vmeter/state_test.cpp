// The state of the virtual meter as people and programs read it.
#include "meter_bench.h"
#include "process/state_json.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vmeter {
namespace {

std::string stateOf(const Bench& bench, uint64_t nowMs = 0)
{
    return stateJson(bench.scene_, bench.state_, nowMs);
}

TEST(StateJson, TellsEverything)
{
    const Bench bench;
    EXPECT_EQ(stateOf(bench),
              R"({"sim_ms":0,)"
              R"("power":{"state":"on","standby":0,"reboots":0,"low_battery":false,"developer_mode":false,)"
              R"("factory_resets":0,"calibrations":0,"calibration_mode":0},)"
              R"("product":{"model_code":"VX63","option_info":"STD","serial_no":"VX6300000001",)"
              R"("boot_version":"1.0.0","main_version":"1.0.0","sub_version":"1.0.0","qt_version":"5.15.2",)"
              R"("product_version":"1.0.0"},)"
              R"("failure":{"code":0,"state":0,"control":0,"wait":0,)"
              R"("info":"0000000000000000000000000000000000000000000000000000000000000000"},)"
              R"("keys":[0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0],)"
              R"("display":{"brightness":1},)"
              R"("buzzer":{"sounding":false,"kind":null,"repeating":false,"sounds":0,"volumes":[0,0,0,0,0]},)"
              R"("update":{"running":false,"step":0,"finished":0},)"
              R"("settings":{"notices":0,"file":null,"record":null,"read":null},)"
              R"("measurement":{"input":0,"supply":0,"mix_band_supply":false,"run":"none",)"
              R"("locked":false,"optical_nm":0,"dc":false,"angle":false}})"
              "\n");
}

TEST(StateJson, TellsWhatTheCallsDid)
{
    Bench bench("[[key]]\nkey = 2\ntime_ms = 0\nduration_ms = 10000");
    bench.ret(kBuzzerService, 0x09, {3, 1, 0, 0});
    bench.ret(kMeasurementService, 0x19, 1);
    bench.ret(kMeasurementService, 0x1D);
    const auto state = nlohmann::json::parse(stateOf(bench));
    EXPECT_EQ(state["sim_ms"], 300);
    EXPECT_EQ(state["power"]["state"], "standby");
    EXPECT_EQ(state["power"]["standby"], 2);
    EXPECT_EQ(state["power"]["low_battery"], true);
    EXPECT_EQ(state["buzzer"]["sounding"], true);
    EXPECT_EQ(state["buzzer"]["kind"], 3);
    EXPECT_EQ(state["buzzer"]["repeating"], true);
    EXPECT_EQ(state["keys"][2], 1);
}

TEST(StateJson, ASoundEndsWithItsTime)
{
    Bench bench;
    bench.ret(kBuzzerService, 0x09, {0, 0, 0, 0});
    EXPECT_EQ(nlohmann::json::parse(stateOf(bench))["buzzer"]["sounding"], true);
    bench.state_.ulSimMs += 50;
    const auto buzzer = nlohmann::json::parse(stateOf(bench))["buzzer"];
    EXPECT_EQ(buzzer["sounding"], false);
    EXPECT_EQ(buzzer["kind"], nullptr);
    EXPECT_EQ(buzzer["sounds"], 1);
}

TEST(StateJson, TellsRebootAndOff)
{
    Bench bench;
    const auto power = [&bench](uint64_t nowMs) {
        return nlohmann::json::parse(stateOf(bench, nowMs))["power"]["state"].get<std::string>();
    };
    Meter meter{bench.scene_, bench.state_};
    reboot(meter, 1000);
    EXPECT_EQ(power(2999), "rebooting");
    EXPECT_EQ(power(3000), "on");
    bench.ret(kSystemService, 0x0D);
    EXPECT_EQ(power(2999), "off");
}

TEST(StateJson, StaysJsonWhateverAnUpdateBrings)
{
    Bench bench;
    std::fill(std::begin(bench.state_.device.product.cMainPrgVer),
              std::end(bench.state_.device.product.cMainPrgVer), '\xFF');
    EXPECT_EQ(nlohmann::json::parse(stateOf(bench))["product"]["main_version"], "????????????????");
}

TEST(StateText, IsAValueALine)
{
    EXPECT_EQ(
        stateText(R"({"sim_ms":100,"power":{"state":"on","standby":0},"keys":[0,1],"x":{"none":null}})"),
        "sim_ms                      100\n"
        "power.state                 on\n"
        "power.standby               0\n"
        "keys                        [0,1]\n"
        "x.none                      -\n");
    EXPECT_THROW(stateText("no json"), std::runtime_error);
    EXPECT_THROW(stateText("[]"), std::runtime_error);
    EXPECT_THROW(stateText(""), std::runtime_error);
}

// What answers need not be a meter.
TEST(StateText, OfAStrangerIsHarmless)
{
    EXPECT_EQ(stateText(R"({"a\u001b[2J":"\n\u009b","b\u001b":{"c":["\u007f"]}})"),
              "a\\x1B[2J                    \\x0A\\xC2\\x9B\n"
              "b\\x1B.c                     [\"\\x7F\"]\n");
    EXPECT_THROW(stateText("{\"a\":" + std::string(200000, '[') + std::string(200000, ']') + "}"),
                 std::runtime_error);
}

} // namespace
} // namespace vmeter
