// vx63 failure: show, set or clear the failure record.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/numbers.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "libvx63.h"

#include <array>
#include <span>

namespace tool {

namespace {

using Info = std::array<uint8_t, sizeof FailInfo::ucAddInfo>;

struct ShowOptions {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

struct SetOptions {
    int32_t id = kDefaultProcessId;
    uint16_t code = 0;
    Info info{};
};

struct ClearOptions {
    int32_t id = kDefaultProcessId;
};

std::string hexOf(std::span<const uint8_t> bytes)
{
    std::string text;
    for (const uint8_t byte : bytes)
        text += format("%02x", byte);
    return text;
}

// Pairs of hexadecimal digits, filled up with zeros. Throws WrongUsage that names the option.
Info infoIn(const std::string& option, const std::string& text)
{
    const WrongUsage wrong(option,
                           format("'%s' is not up to 32 bytes, two hexadecimal digits each", text.c_str()));
    Info info{};
    if (text.size() % 2 != 0 || text.size() / 2 > info.size())
        throw wrong;
    for (size_t i = 0; i < text.size() / 2; ++i) {
        const auto byte = parseNumber("0x" + text.substr(2 * i, 2));
        if (!byte)
            throw wrong;
        info[i] = static_cast<uint8_t>(*byte);
    }
    return info;
}

int showFailure(const ShowOptions& options)
{
    const Identity identity(options.id);
    FailInfo failure{};
    require("cannot read the failure record", [&] { return vx63_getFailinfo(&failure); });
    if (options.json) {
        const Json json = {{"code", failure.usCode},
                           {"present", failure.ucStat != 0},
                           {"state_code", failure.ucStat},
                           {"control_code", failure.ucCtl},
                           {"wait", static_cast<int16_t>(failure.usWait)},
                           {"info", hexOf(failure.ucAddInfo)}};
        print(json.line());
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

int setFailure(const SetOptions& options)
{
    const Identity identity(options.id);
    require("cannot set the failure record",
            [&] { return vx63_setFailStat(options.code, true, options.info.data()); });
    return kExitSuccess;
}

int clearFailure(const ClearOptions& options)
{
    const Identity identity(options.id);
    constexpr Info kNone{};
    require("cannot clear the failure record", [&] { return vx63_setFailStat(0, false, kNone.data()); });
    return kExitSuccess;
}

} // namespace

void addFailure(CommandLine& program)
{
    CommandLine failure =
        program.addGroup("failure", "Show, set or clear the failure record", "vx63 failure show");
    failure.addCommand("show", "Show the failure record", "vx63 failure show --json", showFailure);
    failure.addCommand(
        "set", "Report a failure as present", "vx63 failure set 0x0102 --info 00ff", setFailure,
        [](CommandLine& line, SetOptions& options) {
            line.number("CODE", options.code, "CODE", "The failure code, 0 to 65535", 0, UINT16_MAX)
                .required();
            line.value("--info", "HEX",
                       "Additional information: up to 32 bytes, two hexadecimal digits each [zeros]",
                       [&options](const std::string& text) { options.info = infoIn("--info", text); });
        });
    failure.addCommand("clear", "Clear the failure record: code, state, information", "vx63 failure clear",
                       clearFailure);
}

} // namespace tool
