// What the calls have done to the meter itself: its part of State.
#pragma once

#include "device/wire.h"
#include "model/device_scene.h"

#include <cstdint>
#include <type_traits>

namespace vmeter {

inline constexpr uint8_t kSoundCount = 5; // kinds of sound
inline constexpr uint8_t kVolumeMax = 3;
inline constexpr uint8_t kBrightnessMax = 2;

// The sound that goes on, and how loud each kind is.
struct BuzzerState {
    uint64_t ulUntilMs; // simulated time at which a single sound ends
    uint32_t ulSounds;  // begun so far
    uint8_t ucSounding;
    uint8_t ucRepeating;
    uint8_t ucKind;
    uint8_t ucVolumes[kSoundCount];
};

struct UpdateState {
    vx63::wire::UpdateRequest request; // the one under way
    uint32_t ulStep;                   // requests answered
    uint32_t ulFinished;               // updates that came to their end
    uint8_t ucRunning;
};

struct NoticeState {
    uint32_t ulCount;
    int32_t lFileId; // of the last one
    int32_t lRecord; // -1: the whole file
    uint8_t ucRead;  // it could be read back
};

// Without pointers, and all zero a meter that is switched on, as State asks for.
struct DeviceState {
    vx63::wire::ProductInfoResponse product;
    vx63::wire::FailInfoResponse failure;
    uint64_t ulRebootEndMs; // real time, see steadyMs()
    uint32_t ulReboots;
    uint32_t ulFactoryResets;
    uint32_t ulCalibrations;
    uint8_t ucCalibrationMode; // of the last one
    uint8_t ucOff;
    Standby standby;
    uint8_t ucLowBattery;
    uint8_t ucDeveloperMode;
    uint8_t ucBrightness;
    BuzzerState buzzer;
    UpdateState update;
    NoticeState notice;
};
static_assert(std::is_trivially_copyable_v<DeviceState>);

// The meter as it is when the scene begins.
DeviceState initialDeviceState(const DeviceScene& scene);

} // namespace vmeter
