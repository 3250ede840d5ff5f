// The key service. A key is pressed when the scene's script says so at this moment of the simulated time.
#include "libvx63.h"
#include "services/keys.h"
#include "services/service.h"

namespace vmeter {

static_assert(sizeof vx63::wire::KeyStatusResponse::stat == kKeyCount);

vx63::wire::KeyStatusResponse keyStates(const DeviceScene& scene, uint64_t ulSimMs)
{
    vx63::wire::KeyStatusResponse keys{};
    for (const KeyPress& press : scene.keyPresses)
        if (ulSimMs >= press.ulTimeMs && ulSimMs - press.ulTimeMs < press.ulDurationMs)
            keys.stat[press.ucKey] = 1;
    return keys;
}

namespace {

Body keyStatus(Meter& meter, std::span<const uint8_t>)
{
    return toBody(keyStates(meter.scene.device, meter.state.ulSimMs));
}

constexpr Command kCommands[] = {
    {0x0008, "key-status", keyStatus},
};

} // namespace

const Service kKeyService = {PROC_ID_PKEY, "key", kCommands};

} // namespace vmeter
