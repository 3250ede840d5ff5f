// Sends any messages to the five services and holds answers and state against what docs/services.md and
// docs/measured-values.md tell: typed sizes and results, refusals that change nothing, a meter that goes on.
#include "held.h"
#include "lmsg.h"
#include "process/service_loop.h"
#include "process/state_json.h"
#include "scene/load.h"
#include "services/power.h"
#include "services/settings_files.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>

using held::require;
using namespace vmeter;

namespace {

constexpr uint16_t bits(std::initializer_list<int> rets)
{
    unsigned all = 0;
    for (const int ret : rets)
        all |= 1u << ret;
    return static_cast<uint16_t>(all);
}

struct Expected {
    uint16_t usCmd;
    size_t request; // bytes that it needs
    size_t answer;
    uint16_t rets; // a bit for each result; 0: the answer has none
    bool sleeps = false;
};

constexpr uint16_t kConstellation = 0x0106; // its answer ends with the last point
const std::vector<Expected> kExpected[] = {
    {{0x0004, 0, 40, 0},
     {0x0005, 0, 105, 0},
     {0x000B, 4, 4, bits({0, 2})},
     {0x000C, 4, 4, bits({0, 2})},
     {0x000D, 4, 4, bits({0, 2})},
     {0x000E, 4, 4, bits({0, 2, 4})},
     {0x000F, 4, 4, bits({0, 2, 4})},
     {0x0010, 32, 4, bits({0, 1, 2, 3, 4})},
     {0x0011, 36, 4, bits({0, 2})},
     {0x0012, 4, 4, bits({0, 1, 2})},
     {0x0013, 8, 4, bits({0, 1, 2})},
     {0x001A, 4, 4, bits({0, 1, 2})},
     {0x001B, 4, 4, bits({0, 2})}},
    {{0x0006, 0, 10, 0},
     {0x0007, 4, 4, bits({0, 2})},
     {0x001F, 4, 4, bits({0, 2})},
     {0x0020, 4, 44, bits({0, 2})},
     {0x0021, 4, 60, bits({0, 2, 5})},
     {0x0022, 4, 16, bits({0, 2})}},
    {{0x0008, 0, 17, 0}},
    {{0x0009, 4, 4, bits({0, 2, 3, 4})}, {0x000A, 4, 4, bits({0, 2, 3})}},
    {{0x000E, 4, 4, bits({0, 2})},
     {0x000F, 4, 4, bits({0, 2, 4})},
     {0x0015, 4, 4, bits({0, 2, 4}), true},
     {0x0016, 4, 4, bits({0, 2}), true},
     {0x0017, 4, 12, bits({0, 2})},
     {0x0018, 4, 8, bits({0, 2})},
     {0x0019, 4, 4, bits({0, 2, 3})},
     {0x001C, 4, 4, bits({0, 2}), true},
     {0x001D, 4, 4, bits({0, 2})},
     {0x001E, 4, 4, bits({0, 2})},
     {0x0100, 8, 4, bits({0, 2, 4}), true},
     {0x0103, 40, 4, bits({0, 2, 4}), true},
     {0x0104, 4, 44, bits({0, 2, 3, 5}), true},
     {0x0105, 8, 4, bits({0, 2, 5}), true},
     {0x0106, 8, 1292, bits({0, 2, 3, 5}), true},
     {0x0107, 40, 4, bits({0, 2, 4}), true},
     {0x0108, 8, 412, bits({0, 2, 3, 5}), true},
     {0x0109, 1292, 4, bits({0, 2, 4, 5}), true},
     {0x010B, 12, 40, bits({0, 2, 3, 5}), true},
     {0x010C, 12, 4, bits({0, 2}), true},
     {0x010D, 4, 8, bits({0, 2, 5}), true},
     {0x010E, 8, 4, bits({0, 2}), true},
     {0x010F, 4, 8, bits({0, 2, 5}), true}},
};
constexpr uint8_t kProcIds[] = {0, 6, 8, 10, 12};
constexpr size_t kServiceCount = std::size(kProcIds);
constexpr size_t kMeasurement = 4;

constexpr const char* kWorld = R"(
clock_ms = 250
[[input]]
id = 0
dc_v = 12
cable = { length_m = 30, loss_db_100m = [[100, 6], [1000, 20]], loss_db = 3 }
lnb = { current_ma = 160, cross_polar_db = 20 }
[[input]]
id = 1
lnb = { short_circuit = true }
[[signal]]
input = 0
frequency_khz = 473143
system = "terrestrial"
carriers = "64QAM"
level_dbuv = 60
cn_db = 40
lock_ms = 300
echoes = [{ delay_us = 10, level_db = -6, phase_deg = 90 }, { delay_us = -84, level_db = 0 }]
[[signal]]
input = 0
frequency_khz = 11727480
lo_khz = 10678000
system = "satellite"
modulation = "8PSK"
level_dbuv = 75
cn_db = 17
supply = "15V"
lock_ms = 0
[[signal]]
input = 1
frequency_khz = 231000
system = "catv"
modulation = "256QAM"
level_dbuv = 70
cn_db = 60
[[signal]]
input = 1
frequency_khz = 451250
system = "level"
level_dbuv = 130
cn_db = 50
[[light]]
wavelength_nm = 1310
power_dbm = -7
[antenna]
roll_deg = 3
roll_swing_deg = 5
pitch_swing_deg = 90
hard_iron_ut = [1, -2, 3]
acceleration_sigma_g = 0.1
field_sigma_ut = 1
[[key]]
time_ms = 1000
key = 16
duration_ms = 5000
[update]
steps = 2
fail_step = 2
)";

struct World {
    Scene scene;
    bool faulty;
};

World world(const std::string& more, bool faulty)
{
    return {parseScene(kWorld + more, "world"), faulty};
}

std::string fault(const char* service, const char* kind, const char* value)
{
    return std::string("[[fault]]\nservice = \"") + service + "\"\nprobability = 0.5\nkind = \"" + kind +
           "\"\n" + value + "\n";
}

const World& worldOf(uint8_t choice)
{
    static const World worlds[] = {
        world("[power]\nreboot_ms = 0\n", false),
        world("[power]\nreboot_ms = 600000\nstandby = \"meter\"\n[device]\nlow_battery = true\n", false),
        {parseScene("[power]\nreboot_ms = 0\n", "empty"), false},
        world("[power]\nreboot_ms = 0\n" + fault("meas", "garbage", "") + fault("sys", "late", "value = 0") +
                  fault("dev", "cut", "value = 3") + fault("buz", "oversized", "") +
                  fault("key", "wrong", ""),
              true),
        world("[power]\nreboot_ms = 0\n" + fault("meas", "twice", "") + fault("sys", "refuse", "") +
                  fault("dev", "stray", "") + fault("buz", "ret", "value = 255") +
                  fault("key", "silence", "") + fault("meas", "cut", "value = 1292"),
              true),
    };
    return worlds[choice % std::size(worlds)];
}

// The settings folders; they go with the process.
const std::filesystem::path& folder()
{
    static const std::filesystem::path made = [] {
        std::string pattern =
            access("/dev/shm", W_OK) == 0 ? "/dev/shm/fuzz_services.XXXXXX" : "/tmp/fuzz_services.XXXXXX";
        require(mkdtemp(pattern.data()) != nullptr, "no folder");
        for (const char* const name : kSettingsFolders)
            std::filesystem::create_directory(std::filesystem::path(pattern) / name);
        fillSettings({pattern, true});
        return std::filesystem::path(pattern);
    }();
    static const int cleared = atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(folder(), ignored);
    });
    require(cleared == 0, "atexit");
    return made;
}

using Message = std::vector<uint8_t>;

// The queues: one request in, what comes out.
struct Queues {
    std::optional<Message> request;
    std::vector<std::pair<uint8_t, Message>> sent;
} queues;

uint16_t word(const Message& message, size_t at)
{
    return static_cast<uint16_t>(message[at] | message[at + 1] << 8);
}

class Bench {
public:
    Bench(const World& world, bool own)
        : m_world(world), m_settings{folder(), own}, m_shared(kServiceCount, world.scene.faults.size()),
          m_plan(world.scene.seed, world.scene.faults, m_shared.faultCounts())
    {
        m_shared.update([&](State& state) { state.device = initialDeviceState(world.scene.device); });
    }

    // Sends and judges; gives the body of the answer, empty where there is none.
    Message send(size_t index, const Message& request)
    {
        const State before = m_shared.state();
        const bool silent = before.device.ucOff != 0 || before.device.ulRebootEndMs > steadyMs();
        queues = {request, {}};
        const ServiceProcess process{index, m_world.scene, m_shared, m_plan, m_trace, [] {}, m_settings};
        require(serve(process) == LMSG_ERR_SYSTEM && !queues.request, "the service has ended by itself");
        const State after = m_shared.state();
        judgeState(after);
        for (const auto& [ucDstId, message] : queues.sent) {
            require(message.size() >= 8 && message.size() <= 1300, "an answer of a strange length");
        }
        const bool ignored = request.size() < 8 || (word(request, 2) & 0x8000) != 0 ||
                             word(request, 4) > request.size() - 8 || (request[0] > 17 && request[0] != 255);
        if (ignored || silent) {
            require(queues.sent.empty(), "an answer to what is none of its requests");
            require(std::memcmp(&before, &after, sizeof after) == 0, "what is ignored has changed something");
            return {};
        }
        return m_world.faulty ? Message{} : judge(index, request, before, after);
    }

    State state() { return m_shared.state(); }

    // What is told of it all.
    std::string told()
    {
        const std::string json = stateJson(m_world.scene, state(), 0);
        require(nlohmann::json::accept(json) && held::isPrintable(json.substr(0, json.size() - 1)),
                "the state that is told", json);
        require(!stateText(json).empty(), "the state as text");
        for (const auto& [ucDstId, message] : queues.sent) {
            const std::string line = traceLine(1.5, kProcIds[kMeasurement], message, 1, {"", ""});
            require(nlohmann::json::accept(line) && held::isPrintable(line.substr(0, line.size() - 1)),
                    "a strange line of the trace", line);
        }
        return json;
    }

private:
    Message judge(size_t index, const Message& request, const State& before, const State& after)
    {
        require(queues.sent.size() == 1, "not one answer");
        const auto& [ucDstId, message] = queues.sent.front();
        const uint16_t usCmd = word(request, 2);
        require(ucDstId == request[0] && message[1] == request[0] && message[0] == request[1],
                "the answer goes elsewhere");
        require(word(message, 2) == (usCmd | 0x8000), "the answer is of another command");
        require(word(message, 4) == message.size() - 8, "the answer claims another length");
        const auto& all = kExpected[index];
        const auto command = std::ranges::find(all, usCmd, &Expected::usCmd);
        if (command == all.end()) {
            require(word(message, 6) == 1 && message.size() == 8, "an unknown command is not refused");
            return {};
        }
        require(word(message, 6) == 0, "a known command is refused");
        require(after.ulSimMs >= before.ulSimMs + m_world.scene.clockMs, "time has stood still");
        const Message body(message.begin() + 8, message.end());
        if (index == kMeasurement && command->sleeps && before.device.standby != Standby::none) {
            require(body == Message{6, 0, 0, 0}, "a sleeper's answer");
            requireUnchanged(before, after);
            return body;
        }
        if (usCmd == kConstellation && index == kMeasurement)
            require(body.size() >= 44 && body.size() == 44 + size_t{2} * word(body, 40) &&
                        body.size() <= 1292,
                    "an answer of another length");
        else
            require(body.size() == command->answer, "an answer of another length");
        if (command->rets == 0)
            return body;
        require(body[0] < 16 && (command->rets >> body[0] & 1) != 0, "a result that is not told");
        require(body[1] == 0 && body[2] == 0 && body[3] == 0, "reserved bytes");
        if (word(request, 4) < command->request)
            require(body[0] == 2, "a request that is too short is accepted");
        if (body[0] != 0 && body[0] != 3)
            require(std::all_of(body.begin() + 4, body.end(), [](uint8_t byte) { return byte == 0; }),
                    "a refusal that tells values");
        const bool counted = index == 0 && (usCmd == 0x0012 || usCmd == 0x0013);
        if (body[0] == 2 && !counted)
            requireUnchanged(before, after);
        judgeValues(index, usCmd, body);
        return body;
    }

    static void judgeValues(size_t index, uint16_t usCmd, const Message& body)
    {
        const auto number = [&](size_t at) {
            uint32_t value = 0;
            std::memcpy(&value, body.data() + at, sizeof value);
            return value;
        };
        if (index == 1 && (usCmd == 0x0020 || usCmd == 0x0021))
            for (size_t at = usCmd == 0x0020 ? 8 : 4; at < body.size(); at += 4) {
                float value = 0;
                std::memcpy(&value, body.data() + at, sizeof value);
                require(std::isfinite(value), "a value of the angle sensor that is no number");
            }
        if (index == kMeasurement && (usCmd == 0x0104 || usCmd == kConstellation || usCmd == 0x010B)) {
            require(body[4] <= 1, "lock");
            require(number(16) < 4000 && number(20) < 4000, "level or C/N beyond everything");
            require(number(28) <= number(24), "more errors than bits");
        }
    }

    // But for the time.
    static void requireUnchanged(const State& before, State after)
    {
        after.ulSimMs = before.ulSimMs;
        require(std::memcmp(&before, &after, sizeof after) == 0, "a refusal has changed something");
    }

    void judgeState(const State& state) const
    {
        require(state.ucInput < 2 && state.ucSupplyCode <= 4 && state.ucMixBandSupply <= 1, "the inputs");
        require(state.run <= Run::scan, "what runs");
        require(state.demodulator.ucLocked <= 1 && state.demodulator.ulWanted <= m_world.scene.signals.size(),
                "the demodulator");
        require(state.constellation.usRead <= state.constellation.usCollected, "the points");
        require(state.list.usCount <= kListMax, "the list");
        const bool list = state.run == Run::multi || state.run == Run::scan;
        require(!list || (state.list.usCount > 0 && state.list.ulEndMs[state.list.usCount - 1] > 0),
                "a list without channels runs");
        const DeviceState& device = state.device;
        require(device.ucBrightness <= 2 && device.standby <= Standby::measurement && device.ucOff <= 1 &&
                    device.ucDeveloperMode <= 1 && device.ucLowBattery <= 1 && device.buzzer.ucKind <= 4,
                "the device");
        for (const uint8_t volume : device.buzzer.ucVolumes)
            require(volume <= 3, "the volumes");
        require(device.standby == Standby::none || state.run == Run::none, "a sleeper measures");
    }

    const World& m_world;
    Settings m_settings;
    SharedMeter m_shared;
    FaultPlan m_plan;
    Trace m_trace{-1};
};

Message framed(size_t index, uint16_t usCmd, const Message& body, uint8_t ucSrcId = 17)
{
    Message message{ucSrcId,
                    kProcIds[index],
                    static_cast<uint8_t>(usCmd),
                    static_cast<uint8_t>(usCmd >> 8),
                    static_cast<uint8_t>(body.size()),
                    static_cast<uint8_t>(body.size() >> 8),
                    0,
                    0};
    message.insert(message.end(), body.begin(), body.end());
    return message;
}

class Bytes {
public:
    Bytes(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}
    bool empty() const { return m_size == 0; }
    uint8_t one()
    {
        if (m_size == 0)
            return 0;
        --m_size;
        return *m_data++;
    }
    Message take(size_t count)
    {
        count = std::min(count, m_size);
        const Message taken(m_data, m_data + count);
        m_data += count;
        m_size -= count;
        return taken;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
};

// A byte tells service and form; then either a message as it is, or a command of the service with a body of
// the length that it needs, or of another one.
std::pair<size_t, Message> next(Bytes& bytes)
{
    const uint8_t choice = bytes.one();
    const size_t index = choice % kServiceCount;
    const unsigned form = choice / kServiceCount % 4;
    if (form == 3) {
        Message message = bytes.take(bytes.one());
        message.resize(std::max<size_t>(message.size(), 1)); // no queue holds an empty one
        return {index, message};
    }
    const auto& all = kExpected[index];
    const Expected& command = all[bytes.one() % all.size()];
    Message body = bytes.take(bytes.one());
    if (form != 2)
        body.resize(std::max(body.size(), command.request));
    body.resize(std::min<size_t>(body.size(), 1292));
    return {index, framed(index, command.usCmd, body)};
}

// After whatever came before: a meter that is awake and measures when it is asked to.
void judgeTheNext(Bench& run)
{
    const State state = run.state();
    if (state.device.ucOff || state.device.ulRebootEndMs > steadyMs())
        return;
    const auto ask = [&](uint16_t usCmd, const Message& body) {
        return run.send(kMeasurement, framed(kMeasurement, usCmd, body));
    };
    const Message done{0, 0, 0, 0};
    require(ask(0x001E, Message(4)) == done, "it does not wake up");
    require(ask(0x0103, Message(40)) == done && ask(0x0107, Message(40)) == done &&
                ask(0x0109, Message(1292)) == done,
            "it does not stop");
    Message start(40);
    start[4] = 1;
    const uint32_t khz = 473143;
    std::memcpy(start.data() + 8, &khz, sizeof khz);
    require(ask(0x0103, start) == done, "it does not start");
    const Message result = ask(0x0104, Message(4));
    require(!result.empty() && result[0] == 0, "it does not measure");
}

} // namespace

extern "C" int32_t lmsg_trcvMq(uint8_t, void* pMsg, uint32_t ulLen, uint32_t* pulMsgLen, uint32_t)
{
    if (!queues.request)
        return LMSG_ERR_SYSTEM; // ends the service
    require(ulLen >= 1300, "a buffer that is too short");
    std::memcpy(pMsg, queues.request->data(), queues.request->size());
    *pulMsgLen = static_cast<uint32_t>(queues.request->size());
    queues.request.reset();
    return LMSG_OK;
}

extern "C" int32_t lmsg_tsndMq(uint8_t ucQueId, const void* pMsg, uint32_t ulLen, uint32_t)
{
    const auto* const bytes = static_cast<const uint8_t*>(pMsg);
    queues.sent.emplace_back(ucQueId, Message(bytes, bytes + ulLen));
    return LMSG_OK;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr int kMost = 64; // messages
    if (size == 0)
        return 0;
    const World& chosen = worldOf(data[0] & 0x0F);
    const bool own = (data[0] & 0x10) != 0;
    std::string first;
    for (int round = 0; round <= (data[0] >> 5 & 1); ++round) {
        Bench run(chosen, own);
        std::string answers;
        bool reset = false;
        Bytes bytes(data + 1, size - 1);
        for (int i = 0; i < kMost && !bytes.empty(); ++i) {
            const auto [index, message] = next(bytes);
            const bool resets = index == 0 && message.size() > 4 && word(message, 2) == 0x001A;
            if (resets && reset && own)
                continue; // it writes forty files
            reset = reset || resets;
            const Message body = run.send(index, message);
            answers.append(body.begin(), body.end());
            answers.push_back('\n');
        }
        answers += run.told();
        if (round == 0)
            first = answers;
        require(chosen.faulty || first == answers, "the same requests come to something else");
        if (!chosen.faulty)
            judgeTheNext(run);
    }
    return 0;
}
