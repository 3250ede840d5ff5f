// Whole operations, beside their exchanges and their log lines.
#include "groups.h"
#include "libvx63.h"
#include "peer.h"
#include "ready_line.h"
#include "require.h"

#include <cstring>

namespace bench {
namespace {

struct Asked {
    uint16_t command;
    size_t size; // of the request, with its head
    int times = 1;
};

void compareOperation(Runner& runner, const std::string& what, double target, const Asked& asked,
                      const std::function<int32_t()>& call)
{
    const Body operation = [&] { require(call() == VX63_OK, what.c_str(), "refused"); };
    operation();
    const std::vector<std::string> lines = linesOf(operation);
    const Message message = request(asked.command, asked.size);
    const auto floor = [&](void (*ask)(const Message&)) {
        for (int i = 0; i < asked.times; ++i)
            ask(message);
        for (const std::string& line : lines)
            writeReadyLine(line);
    };
    const std::string ready = ", " + std::to_string(lines.size()) + " ready lines";
    runner.compare(
        {what, "bare exchange" + ready, target}, [&] { floor(BareQueues::ask); }, operation);
    runner.compare(
        {what, "lmsg_* exchange" + ready, target}, [&] { floor(Platform::ask); }, operation);
}

std::vector<uint8_t> registration(int32_t channels)
{
    std::vector<uint8_t> memory(sizeof(MultiMeasReg) + static_cast<size_t>(channels) * sizeof(MeasCondition));
    std::memcpy(memory.data(), &channels, sizeof channels);
    return memory;
}

} // namespace

void compareOperations(Runner& runner)
{
    constexpr int kPartChannels = 39;
    vx63_init(Platform::kOwn);
    for (const int processor : {0, 1}) {
        if (!tie(processor))
            continue;
        tie(0);
        const std::string place = processor == 0 ? ", same processor" : ", two processors";
        const Peer platform(processor, Platform::serve);
        const Peer bare(processor, BareQueues::serve);

        const MeasCondition condition{};
        compareOperation(runner, "vx63_startSingleMeas" + place, 1.08, {.command = 0x0103, .size = 48},
                         [&] { return vx63_startSingleMeas(0, &condition); });
        SingleMeasResult result;
        compareOperation(runner, "vx63_getSingleMeasResult" + place, 1.08, {.command = 0x0104, .size = 12},
                         [&] { return vx63_getSingleMeasResult(0, &result); });
        compareOperation(runner, "vx63_getSingleMeasResult of 624 points" + place, 1.10,
                         {.command = 0x0106, .size = 16},
                         [&] { return vx63_getSingleMeasResult(624, &result); });
        for (const int channels : {40, 255}) {
            const std::vector<uint8_t> memory = registration(channels);
            compareOperation(
                runner, "vx63_startMultiMeas of " + std::to_string(channels) + " channels" + place, 1.10,
                {.command = 0x0109, .size = kMessageSize, .times = (channels - 1) / kPartChannels + 1},
                [&] { return vx63_startMultiMeas(0, reinterpret_cast<const MultiMeasReg*>(memory.data())); });
        }
    }
    tie(-1);
}

} // namespace bench
