// Program updates.
#include "device/wire.h"
#include "services/results.h"
#include "services/system.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <numeric>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// The request, as this meter understands it.
struct ProgramUpdate {
    char cMagic[4];    // "VXUP"
    uint8_t ucProgram; // 1 boot, 2 main, 3 sub, 4 Qt, 5 product
    uint8_t ucSource;  // 0 internal, 1 USB 1, 2 USB 2
    uint8_t ucReserved[2];
    char cVersion[16]; // printable ASCII, padded with zeros; it may fill the field
    uint32_t ulSize;   // bytes of the new program, not 0
    uint32_t ulSum;    // of the 28 bytes before
};
static_assert(sizeof(ProgramUpdate) == 32 && std::is_trivially_copyable_v<ProgramUpdate>);
static_assert(offsetof(ProgramUpdate, ucProgram) == 4);
static_assert(offsetof(ProgramUpdate, ucSource) == 5);
static_assert(offsetof(ProgramUpdate, cVersion) == 8);
static_assert(offsetof(ProgramUpdate, ulSize) == 24);
static_assert(offsetof(ProgramUpdate, ulSum) == 28);

// The version that an update of a program replaces; none for a program that there is not.
std::span<char> versionOf(wire::ProductInfoResponse& product, uint8_t ucProgram)
{
    switch (ucProgram) {
    case 1:
        return product.cBootPrgVer;
    case 2:
        return product.cMainPrgVer;
    case 3:
        return product.cSubPrgVer;
    case 4:
        return product.cQtVer;
    case 5:
        return product.cProductVer;
    default:
        return {};
    }
}

bool isVersion(std::span<const char> text)
{
    const auto end = std::find(text.begin(), text.end(), '\0');
    return end != text.begin() &&
           std::all_of(text.begin(), end, [](char c) { return c >= ' ' && c <= '~'; }) &&
           std::all_of(end, text.end(), [](char c) { return c == '\0'; });
}

// What is wrong with a request; empty: nothing.
std::string_view wrongWith(const ProgramUpdate& asked, std::span<const uint8_t> bytes)
{
    constexpr uint8_t kPrograms = 5;
    constexpr uint8_t kSources = 3;
    if (std::memcmp(asked.cMagic, "VXUP", sizeof asked.cMagic) != 0)
        return "no update request";
    const auto summed = bytes.first(offsetof(ProgramUpdate, ulSum));
    if (std::accumulate(summed.begin(), summed.end(), uint32_t{0}) != asked.ulSum)
        return "wrong sum";
    if (asked.ucProgram == 0 || asked.ucProgram > kPrograms)
        return "no such program";
    if (asked.ucSource >= kSources)
        return "no such source";
    if (asked.ucReserved[0] != 0 || asked.ucReserved[1] != 0)
        return "reserved bytes are not 0";
    if (!isVersion(asked.cVersion))
        return "no version";
    return asked.ulSize == 0 ? "no size" : "";
}

} // namespace

Body updateProgram(Meter& meter, std::span<const uint8_t> request)
{
    constexpr uint8_t kRetFinished = 3;

    const auto asked = bodyAs<ProgramUpdate>(request);
    const std::string_view wrong =
        request.size() < sizeof asked ? "too short" : wrongWith(asked, request.first(sizeof asked));
    if (!wrong.empty()) {
        meter.note = wrong;
        return resultBody(kRetParameter);
    }

    DeviceState& device = meter.state.device;
    UpdateState& update = device.update;
    const auto bytes = bodyAs<wire::UpdateRequest>(request);
    if (!update.ucRunning) {
        if (device.ucLowBattery) {
            meter.note = "low battery";
            return resultBody(kRetNotNow);
        }
        update.request = bytes;
        update.ulStep = 0;
        update.ucRunning = 1;
    } else if (std::memcmp(update.request.ucData, bytes.ucData, sizeof bytes) != 0) {
        meter.note = "another update is under way";
        return resultBody(kRetNotNow);
    }

    const UpdateScene& scene = meter.scene.device.update;
    ++update.ulStep;
    if (update.ulStep == scene.ulFailStep) {
        update.ucRunning = 0;
        return resultBody(kRetError);
    }
    if (update.ulStep <= scene.ulSteps)
        return resultBody(kRetOk);
    update.ucRunning = 0;
    ++update.ulFinished;
    std::copy(std::begin(asked.cVersion), std::end(asked.cVersion),
              versionOf(device.product, asked.ucProgram).begin());
    return resultBody(kRetFinished);
}

} // namespace vmeter
