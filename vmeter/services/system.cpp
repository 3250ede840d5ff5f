// The system service: its table. docs/services.md tells arguments, results and what they do to the meter.
#include "services/system.h"
#include "libvx63.h"

namespace vmeter {
namespace {

constexpr Command kCommands[] = {
    {0x0004, "failure", failureRecord},
    {0x0005, "product", productData},
    {0x000B, "brightness", setBrightness},
    {0x000C, "reboot", rebootMeter},
    {0x000D, "shutdown", shutDown},
    {0x000E, "standby", standbyMeter},
    {0x000F, "wakeup", wakeUpMeter},
    {0x0010, "update", updateProgram},
    {0x0011, "set-failure", setFailure},
    {0x0012, "file-changed", fileChanged},
    {0x0013, "record-changed", recordChanged},
    {0x001A, "factory-default", factoryDefault},
    {0x001B, "developer-mode", setDeveloperMode},
};

} // namespace

const Service kSystemService = {PROC_ID_PSYS, "sys", kCommands};

} // namespace vmeter
