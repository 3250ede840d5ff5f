// vx63 measure optical and vx63 measure dc: converters of their own, beside everything that is tuned.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/output.h"
#include "common/running.h"
#include "common/table.h"
#include "common/text.h"
#include "libvx63.h"
#include "measure/channel_options.h"
#include "measure/limits.h"

#include <optional>
#include <string>

namespace tool {

namespace {

struct OpticalOptions {
    int32_t id = kDefaultProcessId;
    uint32_t ulWaveLength = 0;
    bool json = false;
};

struct DcOptions {
    int32_t id = kDefaultProcessId;
    std::optional<int32_t> input;
    bool json = false;
};

// Both are done with one reading.
template <class T>
std::optional<T> readOnce(const char* what, Running running, int32_t (*read)(T*))
{
    T value{};
    if (interruption() == 0)
        require(std::string("cannot read ") + what, [&] { return read(&value); });
    running.stop();
    return interruption() == 0 ? std::optional(value) : std::nullopt;
}

int measureOptical(const OpticalOptions& options)
{
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    constexpr const char* kWhat = "the optical power";
    const auto power =
        readOnce<int32_t>(kWhat,
                          startWith(
                              format("wavelength %u nm", options.ulWaveLength), kWhat,
                              [&] { return vx63_startOptMeas(options.ulWaveLength); }, vx63_stopOptMeas),
                          vx63_getOptMeasResult);
    if (!power)
        return kExitSignal + interruption();
    const double dbm = *power / 100.0;
    if (options.json)
        print(Json({{"wavelength_nm", options.ulWaveLength}, {"power_dbm", dbm}}).line());
    else
        print(aligned(
            {{"Wavelength", format("%u nm", options.ulWaveLength)}, {"Power", format("%.2f dBm", dbm)}}));
    return kExitSuccess;
}

int measureDc(const DcOptions& options)
{
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    selectInput(options.input);
    constexpr const char* kWhat = "the DC voltage";
    const auto voltage =
        readOnce<uint32_t>(kWhat, Running(kWhat, vx63_startDcMeas, vx63_stopDcMeas), vx63_getDcMeasResult);
    if (!voltage)
        return kExitSignal + interruption();
    if (options.json)
        print(Json({{"dc_v", *voltage / 1000.0}}).line());
    else
        print(format("%u.%03u V\n", *voltage / 1000, *voltage % 1000));
    return kExitSuccess;
}

} // namespace

void addOptical(CommandLine& measure)
{
    measure.addCommand(
        "optical", "Measure the optical power at a wavelength", "vx63 measure optical --wavelength 1490",
        measureOptical, [](CommandLine& line, OpticalOptions& options) {
            line.number("--wavelength", options.ulWaveLength, "NM",
                        format("Wavelength in nm, %u to %u", kOpticalNm.lowest, kOpticalNm.highest),
                        kOpticalNm.lowest, kOpticalNm.highest)
                .offers("1300, 1310, 1490")
                .required();
        });
}

void addDc(CommandLine& measure)
{
    measure.addCommand("dc", "Measure the DC voltage on the cable", "vx63 measure dc --input 1", measureDc,
                       [](CommandLine& line, DcOptions& options) {
                           line.number("--input", options.input, "0|1",
                                       "Select this RF input first [leave it]", 0, 1);
                       });
}

} // namespace tool
