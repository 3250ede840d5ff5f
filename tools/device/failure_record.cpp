// vx63 failure: show, set or clear the failure record.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/options.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"

#include <array>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>

namespace tool {

namespace {

using Info = std::array<uint8_t, sizeof FailInfo::ucAddInfo>;

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
    uint16_t code = 0;
    Info info{};
};

std::string hexOf(std::span<const uint8_t> bytes)
{
    std::string text;
    for (const uint8_t byte : bytes)
        text += format("%02x", byte);
    return text;
}

// Pairs of hexadecimal digits, filled up with zeros; nothing when it is no such text or does not fit.
std::optional<Info> infoFrom(const std::string& text)
{
    Info info{};
    if (text.size() % 2 != 0 || text.size() / 2 > info.size())
        return std::nullopt;
    for (size_t i = 0; i < text.size() / 2; ++i) {
        const auto byte = parseNumber("0x" + text.substr(2 * i, 2));
        if (!byte)
            return std::nullopt;
        info[i] = static_cast<uint8_t>(*byte);
    }
    return info;
}

int showFailure(const Options& options)
{
    const Identity identity(options.id);
    FailInfo failure{};
    require("cannot read the failure record", [&] { return vx63_getFailinfo(&failure); });
    if (options.json) {
        const nlohmann::ordered_json json = {{"code", failure.usCode},
                                             {"present", failure.ucStat != 0},
                                             {"state_code", failure.ucStat},
                                             {"control_code", failure.ucCtl},
                                             {"wait", static_cast<int16_t>(failure.usWait)},
                                             {"info", hexOf(failure.ucAddInfo)}};
        print(json.dump() + "\n");
        return kExitSuccess;
    }
    const std::span<const uint8_t> info = failure.ucAddInfo;
    print(aligned({
        {"Failure", failure.ucStat == 0   ? "none"
                    : failure.ucStat == 1 ? "present"
                                          : format("code %u", failure.ucStat)},
        {"Code", format("0x%04X", failure.usCode)},
        {"Control", format("0x%02X", failure.ucCtl)},
        {"Wait", format("%d", static_cast<int16_t>(failure.usWait))},
        {"Information", hexOf(info.first<16>())},
        {"", hexOf(info.last<16>())},
    }));
    return kExitSuccess;
}

int setFailure(const Options& options, bool present)
{
    const Identity identity(options.id);
    require(present ? "cannot set the failure record" : "cannot clear the failure record",
            [&] { return vx63_setFailStat(options.code, present, options.info.data()); });
    return kExitSuccess;
}

} // namespace

void addFailure(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* failure =
        app.add_subcommand("failure", "Show, set or clear the failure record")->group("Commands");
    failure->require_subcommand(1);
    failure->footer("Example: vx63 failure show");

    CLI::App* show = failure->add_subcommand("show", "Show the failure record")->group("Commands");
    show->add_flag("--json", options->json, "Print a JSON object");
    addIdOption(*show, options->id);
    show->footer("Example: vx63 failure show --json");
    show->callback([options, &command] { command = [options] { return showFailure(*options); }; });

    CLI::App* set = failure->add_subcommand("set", "Report a failure as present")->group("Commands");
    addNumber(*set, "CODE", options->code, "CODE", "The failure code, 0 to 65535", 0, UINT16_MAX)->required();
    set->add_option_function<std::string>(
           "--info",
           [options](const std::string& text) {
               const auto info = infoFrom(text);
               if (!info)
                   throw CLI::ValidationError(
                       "--info",
                       format("'%s' is not up to 32 bytes, two hexadecimal digits each", text.c_str()));
               options->info = *info;
           },
           "Additional information: up to 32 bytes, two hexadecimal digits each [zeros]")
        ->type_name("HEX");
    addIdOption(*set, options->id);
    set->footer("Example: vx63 failure set 0x0102 --info 00ff");
    set->callback([options, &command] { command = [options] { return setFailure(*options, true); }; });

    CLI::App* clear = failure->add_subcommand("clear", "Clear the failure record: code, state, information")
                          ->group("Commands");
    addIdOption(*clear, options->id);
    clear->footer("Example: vx63 failure clear");
    clear->callback([options, &command] { command = [options] { return setFailure(*options, false); }; });
}

} // namespace tool
