// Reads any text as a scene, and measures with one that is accepted for a few simulated seconds: a mistake is
// told on one printable line with its place, no reading is beyond what a meter shows, and twice comes to the
// same.
#include "cli/printable.h"
#include "held.h"
#include "meas/wire.h"
#include "meas/wire_multi.h"
#include "model/meter.h"
#include "process/state_json.h"
#include "scene/load.h"
#include "services/service.h"
#include "signal/channel_list.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

using held::require;
using namespace vmeter;
namespace wire = vx63::wire;

namespace {

// "scene:LINE: KEY: reason", but for one that is too large.
void judgeMistake(const std::string& told, std::string_view text)
{
    require(held::isPrintable(cli::printable(told)), "a mistake is not told on one printable line", told);
    require(told.starts_with("scene:") && told.size() < 2000, "a mistake without its file, or without an end",
            told);
    const char* const from = told.data() + std::string_view("scene:").size();
    size_t line = 0;
    const auto [end, error] = std::from_chars(from, told.data() + told.size(), line);
    const auto lines = static_cast<size_t>(std::ranges::count(text, '\n')) + 1;
    require(error == std::errc() && *end == ':' && line >= 1 && line <= lines, "a mistake without its line",
            told);
    require(told.find(": ", static_cast<size_t>(end - told.data()) + 2) != std::string::npos,
            "a mistake without its key", told);
}

// Numbers are what docs/scene.md lets them be.
void judgeValues(const Scene& scene)
{
    const auto within = [](double value, double lowest, double highest) {
        require(value >= lowest && value <= highest, "a value that a scene cannot have",
                std::to_string(value));
    };
    within(scene.noiseFigureDb, 0, 60);
    within(scene.levelSigmaDb, 0, 10);
    within(scene.cnSigmaDb, 0, 10);
    for (const Input& input : scene.inputs) {
        within(input.dcV, 0, 100);
        within(input.cable.lengthM, 0, 10000);
        within(input.cable.extraDb, 0, 200);
        within(input.cable.skin, 0, 1000);
        within(input.cable.dielectric, 0, 1000);
        within(input.lnb.crossPolarDb, 0, 60);
    }
    for (const Signal& signal : scene.signals) {
        within(signal.levelDbuv, -20, 130);
        within(signal.cnDb, -20, 60);
        within(signal.bandwidthKhz, 1, 100000);
        within(signal.ifKhz(), 10000, 3224000);
        for (const Echo& echo : signal.echoes) {
            within(echo.delayUs, -84, 251);
            within(echo.levelDb, -60, 0);
            within(echo.phaseDeg, -360, 360);
        }
    }
    for (const Light& light : scene.lights) {
        within(light.wavelengthNm, 800, 1700);
        within(light.powerDbm, -80, 30);
    }
    within(scene.antenna.rollPeriodMs, 100, 3600000);
    within(scene.antenna.fieldUt, 0, 200);
    for (const double iron : scene.antenna.hardIronUt)
        within(iron, -1000, 1000);
    for (const FaultRule& fault : scene.faults)
        within(fault.probability, 0, 1);
}

class Bench {
public:
    explicit Bench(const Scene& scene) : m_scene(scene) { m_state.device = initialDeviceState(scene.device); }

    template <class Request>
    Body ask(const Service& service, uint16_t usCmd, const Request& request)
    {
        const auto command = std::ranges::find(service.commands, usCmd, &Command::usCmd);
        m_state.ulSimMs += m_scene.clockMs;
        Meter meter{m_scene, m_state};
        Body answer = command->handler(meter, toBody(request));
        m_all.insert(m_all.end(), answer.begin(), answer.end());
        return answer;
    }

    void set(uint8_t ucInput)
    {
        wire::SetInputRequest input{};
        input.ucInput = ucInput;
        ask(kMeasurementService, 0x0100, input);
    }

    void readings(const Body& body)
    {
        const auto read = bodyAs<wire::SingleResultResponse>(body);
        require(read.LEVEL < 4000 && read.CNR < 4000, "level or C/N beyond everything");
        require(read.BER_ERR <= read.BER_TOTAL, "more errors than bits");
    }

    void measure(const Signal& signal)
    {
        wire::StartRequest start{};
        start.ucStartStop = 1;
        start.ulFreq = signal.ulFrequencyKhz;
        start.ulLoFreq = signal.ulLoKhz;
        start.usBdSys = static_cast<uint16_t>(signal.system);
        start.ucSupplyLevel = signal.supply == SupplyNeed::none ? 0 : 2;
        set(signal.ucInput);
        require(ask(kMeasurementService, 0x0103, start)[0] == 0, "a signal of the scene cannot be measured");
        wire::StartConstaRequest collect{};
        collect.ucStartStop = 1;
        collect.collectNum = 1000;
        ask(kMeasurementService, 0x0105, collect);
        wire::ConstaRequest points{};
        points.usReadCount = 20;
        for (int i = 0; i < 6; ++i) {
            readings(ask(kMeasurementService, 0x0104, wire::ByteRequest{}));
            readings(ask(kMeasurementService, 0x0106, points));
        }
        ask(kMeasurementService, 0x0103, wire::StartRequest{});
        if (signal.modulation != Modulation::ofdm)
            return;
        ask(kMeasurementService, 0x0107, start);
        wire::DlyPrfRequest block{};
        block.usBlockNo = 5; // the short one
        for (int i = 0; i < 8; ++i)
            ask(kMeasurementService, 0x0108, block);
        ask(kMeasurementService, 0x0107, wire::StartRequest{});
    }

    void list()
    {
        wire::MultiMeasRequest part{};
        part.ucKind = wire::kKindMulti;
        for (const Signal& signal : m_scene.signals) {
            if (part.ucRegCount == wire::kPartChannels)
                break;
            wire::Channel& channel = part.channels[part.ucRegCount++];
            channel.ulFreq = signal.ulFrequencyKhz;
            channel.ulLoFreq = signal.ulLoKhz;
            channel.usBdSys = static_cast<uint16_t>(signal.system);
            channel.ucSupplyLevel = 1;
        }
        if (part.ucRegCount == 0)
            return;
        require(ask(kMeasurementService, 0x0109, part)[0] == 0, "the signals of the scene are no list");
        wire::MultiResultRequest read{};
        for (int i = 0; i < 8; ++i) {
            read.usIndex = static_cast<uint16_t>(i % part.ucRegCount);
            readings(ask(kMeasurementService, 0x010B, read));
        }
        ask(kDeviceService, 0x0022, wire::ByteRequest{});
        ask(kMeasurementService, 0x0017, wire::ByteRequest{});
        ask(kMeasurementService, 0x0109, wire::MultiMeasRequest{});
    }

    void rest()
    {
        ask(kDeviceService, 0x0007, wire::ByteRequest{1});
        ask(kDeviceService, 0x001F, wire::ByteRequest{});
        for (int i = 0; i < 4; ++i)
            for (const uint16_t usCmd : {uint16_t{0x0020}, uint16_t{0x0021}}) {
                const Body body = ask(kDeviceService, usCmd, wire::ByteRequest{});
                for (size_t at = usCmd == 0x0020 ? 8 : 4; at < body.size(); at += sizeof(float)) {
                    float value = 0;
                    std::memcpy(&value, body.data() + at, sizeof value);
                    require(std::isfinite(value), "a value of the angle sensor that is no number");
                }
            }
        wire::OptMeasRequest light{};
        light.ucStartStop = 1;
        light.ulWaveLength =
            m_scene.lights.empty() ? 1310 : static_cast<uint32_t>(m_scene.lights[0].wavelengthNm);
        ask(kMeasurementService, 0x010C, light);
        ask(kMeasurementService, 0x010D, wire::ByteRequest{});
        wire::DcMeasRequest dc{};
        dc.ucStartStop = 1;
        ask(kMeasurementService, 0x010E, dc);
        ask(kMeasurementService, 0x010F, wire::ByteRequest{});
        ask(kKeyService, 0x0008, wire::ByteRequest{});
        for (const uint16_t usCmd : {uint16_t{0x0004}, uint16_t{0x0005}})
            ask(kSystemService, usCmd, wire::ByteRequest{});
        ask(kDeviceService, 0x0006, wire::ByteRequest{});
    }

    std::string all()
    {
        const std::string json = stateJson(m_scene, m_state, 0);
        require(held::isPrintable(json.substr(0, json.size() - 1)), "the state is not printable", json);
        return std::string(m_all.begin(), m_all.end()) + json;
    }

private:
    const Scene& m_scene;
    State m_state{};
    Body m_all;
};

// All answers, or the mistake.
std::string outcomeOf(std::string_view text)
{
    constexpr size_t kMost = 4; // signals
    Scene scene;
    try {
        scene = parseScene(text, "scene");
    } catch (const std::runtime_error& mistake) {
        judgeMistake(mistake.what(), text);
        return mistake.what();
    }
    judgeValues(scene);
    Bench bench(scene);
    for (size_t i = 0; i < std::min(kMost, scene.signals.size()); ++i)
        bench.measure(scene.signals[i]);
    bench.list();
    bench.rest();
    return bench.all();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string first = outcomeOf(text);
    if (size % 8 == 0)
        require(outcomeOf(text) == first, "the same scene comes to something else");
    return 0;
}
