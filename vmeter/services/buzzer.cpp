// The buzzer service. docs/services.md tells sounds, modes and priorities.
#include "libvx63.h"
#include "services/results.h"
#include "services/service.h"

#include "device/wire.h"

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// How long a single sound of each kind lasts, in simulated time.
constexpr uint32_t kSoundMs[kSoundCount] = {50, 200, 500, 1000, 2000};

// ucBuzzMode; 0: once
constexpr uint8_t kModeRepeat = 1;
constexpr uint8_t kModeStop = 2;

constexpr uint8_t kRetRepeating = 3;
constexpr uint8_t kRetPriority = 4;

// A single sound is over when its time is.
void followSound(State& state)
{
    BuzzerState& buzzer = state.device.buzzer;
    if (buzzer.ucSounding && !buzzer.ucRepeating && state.ulSimMs >= buzzer.ulUntilMs)
        buzzer.ucSounding = 0;
}

Body buzz(Meter& meter, std::span<const uint8_t> request)
{
    const auto sound = bodyAs<wire::BuzzerRequest>(request);
    if (request.size() < sizeof sound || sound.ucBuzz >= kSoundCount || sound.ucBuzzMode > kModeStop)
        return resultBody(kRetParameter);
    followSound(meter.state);
    BuzzerState& buzzer = meter.state.device.buzzer;
    if (buzzer.ucSounding && sound.ucBuzz < buzzer.ucKind)
        return resultBody(kRetPriority);
    if (sound.ucBuzzMode == kModeStop) {
        buzzer.ucSounding = 0;
        return resultBody(kRetOk);
    }
    if (buzzer.ucSounding && buzzer.ucRepeating && sound.ucBuzz == buzzer.ucKind)
        return resultBody(kRetRepeating);
    buzzer.ucSounding = 1;
    buzzer.ucKind = sound.ucBuzz;
    buzzer.ucRepeating = sound.ucBuzzMode == kModeRepeat;
    buzzer.ulUntilMs = meter.state.ulSimMs + kSoundMs[sound.ucBuzz];
    ++buzzer.ulSounds;
    return resultBody(kRetOk);
}

Body setVolume(Meter& meter, std::span<const uint8_t> request)
{
    const auto volume = bodyAs<wire::BuzzerVolumeRequest>(request);
    if (request.size() < sizeof volume || volume.ucBuzz >= kSoundCount || volume.ucBuzzVol > kVolumeMax)
        return resultBody(kRetParameter);
    BuzzerState& buzzer = meter.state.device.buzzer;
    if (buzzer.ucSounding && buzzer.ucRepeating && volume.ucBuzz == buzzer.ucKind)
        return resultBody(kRetRepeating);
    buzzer.ucVolumes[volume.ucBuzz] = volume.ucBuzzVol;
    return resultBody(kRetOk);
}

constexpr Command kCommands[] = {
    {0x0009, "buzzer", buzz},
    {0x000A, "buzzer-volume", setVolume},
};

} // namespace

const Service kBuzzerService = {PROC_ID_PBUZ, "buz", kCommands};

} // namespace vmeter
