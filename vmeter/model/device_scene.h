// What a scene tells of the meter itself: identity, condition, keys. docs/scene.md tells every key.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vmeter {

struct ProductScene {
    std::string modelCode = "VX63";
    std::string optionInfo = "STD";
    std::string serialNo = "VX6300000001";
    std::string bootVersion = "1.0.0";
    std::string mainVersion = "1.0.0";
    std::string subVersion = "1.0.0";
    std::string qtVersion = "5.15.2";
    std::string productVersion = "1.0.0";
};

struct FailureScene {
    uint16_t usCode = 0;
    uint8_t ucState = 0;
    uint8_t ucControl = 0;
    uint16_t usWait = 0;
    std::vector<uint8_t> info; // at most 32 bytes
};

// Where the meter's power comes from, as the device status tells it.
enum class Charging : uint8_t { no, charging, full };

struct ConditionScene {
    uint8_t ucBatteryPercent = 80;
    uint16_t usBatteryMv = 7400;
    bool lowBattery = false;
    bool externalPower = false;
    Charging charging = Charging::no;
    uint8_t ucTemperatureC = 30;
    bool usb1 = false;
    bool usb2 = false;
    uint8_t ucBrightness = 1; // as in the factory settings
    uint8_t ucVolume = 0;     // as in the factory settings
    bool developerMode = false;
};

// What the meter sleeps through; the values are those of ulStandbyStat.
enum class Standby : uint8_t { none, meter, measurement };

struct PowerScene {
    Standby standby = Standby::none;
    uint32_t ulRebootMs = 2000; // real time
};

struct UpdateScene {
    uint32_t ulSteps = 5;    // answers that tell of progress before the one that tells of the end
    uint32_t ulFailStep = 0; // the answer that tells of a failure instead; 0: none
};

inline constexpr uint8_t kKeyCount = 17;

// Simulated time.
struct KeyPress {
    uint8_t ucKey;
    uint64_t ulTimeMs;
    uint64_t ulDurationMs;
};

struct DeviceScene {
    ProductScene product;
    FailureScene failure;
    ConditionScene condition;
    PowerScene power;
    UpdateScene update;
    std::vector<KeyPress> keyPresses;
};

} // namespace vmeter
