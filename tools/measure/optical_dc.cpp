// vx63 measure optical and vx63 measure dc: converters of their own, beside everything that is tuned.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/options.h"
#include "common/output.h"
#include "common/running.h"
#include "common/text.h"
#include "libvx63.h"
#include "measure/channel_options.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    std::optional<int32_t> input;
    uint32_t ulWaveLength = 0;
    bool json = false;
};

// Both are done with one reading.
template <class T>
std::optional<T> readOnce(const char* what, const Running::Call& start, const Running::Call& stop,
                          int32_t (*read)(T*))
{
    Running running(what, start, stop);
    T value{};
    if (interruption() == 0)
        require(std::string("cannot read ") + what, [&] { return read(&value); });
    running.stop();
    return interruption() == 0 ? std::optional(value) : std::nullopt;
}

int measureOptical(const Options& options)
{
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    const auto power = readOnce<int32_t>(
        "the optical power", [&] { return vx63_startOptMeas(options.ulWaveLength); }, vx63_stopOptMeas,
        vx63_getOptMeasResult);
    if (!power)
        return kExitSignal + interruption();
    const double dbm = *power / 100.0;
    if (options.json)
        print(nlohmann::ordered_json({{"wavelength_nm", options.ulWaveLength}, {"power_dbm", dbm}}).dump() +
              "\n");
    else
        print(aligned(
            {{"Wavelength", format("%u nm", options.ulWaveLength)}, {"Power", format("%.2f dBm", dbm)}}));
    return kExitSuccess;
}

int measureDc(const Options& options)
{
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    selectInput(options.input);
    const auto voltage =
        readOnce<uint32_t>("the DC voltage", vx63_startDcMeas, vx63_stopDcMeas, vx63_getDcMeasResult);
    if (!voltage)
        return kExitSignal + interruption();
    if (options.json)
        print(nlohmann::ordered_json({{"dc_v", *voltage / 1000.0}}).dump() + "\n");
    else
        print(format("%u.%03u V\n", *voltage / 1000, *voltage % 1000));
    return kExitSuccess;
}

} // namespace

void addOptical(CLI::App& measure, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* optical =
        measure.add_subcommand("optical", "Measure the optical power at a wavelength")->group("Commands");
    addNumber(*optical, "--wavelength", options->ulWaveLength, "NM", "Wavelength in nm", 1, UINT32_MAX)
        ->required();
    optical->add_flag("--json", options->json, "Print a JSON object");
    addIdOption(*optical, options->id);
    optical->footer("Example: vx63 measure optical --wavelength 1490");
    optical->callback([options, &command] { command = [options] { return measureOptical(*options); }; });
}

void addDc(CLI::App& measure, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* dc = measure.add_subcommand("dc", "Measure the DC voltage on the cable")->group("Commands");
    addNumber(*dc, "--input", options->input, "0|1", "Select this RF input first [leave it]", 0, 1);
    dc->add_flag("--json", options->json, "Print a JSON object");
    addIdOption(*dc, options->id);
    dc->footer("Example: vx63 measure dc --input 1");
    dc->callback([options, &command] { command = [options] { return measureDc(*options); }; });
}

} // namespace tool
