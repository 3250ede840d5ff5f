// vx63 info: the product data.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "libvx63.h"

#include <cstring>
#include <string>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

// A field that is full has no terminator.
template <size_t kWidth>
std::string textOf(const char (&field)[kWidth])
{
    return {field, strnlen(field, kWidth)};
}

int showInfo(const Options& options)
{
    const Identity identity(options.id);
    ProductInfo info{};
    require("cannot read the product data", [&] { return vx63_getProductInfo(&info); });
    if (options.json) {
        const Json json = {
            {"model_code", textOf(info.cModelCode)},    {"option_info", textOf(info.cOptInfo)},
            {"serial_no", textOf(info.cSerialNo)},      {"boot_version", textOf(info.cBootPrgVer)},
            {"main_version", textOf(info.cMainPrgVer)}, {"sub_version", textOf(info.cSubPrgVer)},
            {"qt_version", textOf(info.cQtVer)},        {"product_version", textOf(info.cProductVer)},
        };
        print(json.line());
        return kExitSuccess;
    }
    print(aligned({
        {"Model", printable(textOf(info.cModelCode))},
        {"Option", printable(textOf(info.cOptInfo))},
        {"Serial number", printable(textOf(info.cSerialNo))},
        {"Product", printable(textOf(info.cProductVer))},
        {"Boot program", printable(textOf(info.cBootPrgVer))},
        {"Main program", printable(textOf(info.cMainPrgVer))},
        {"Sub program", printable(textOf(info.cSubPrgVer))},
        {"Qt", printable(textOf(info.cQtVer))},
    }));
    return kExitSuccess;
}

} // namespace

void addInfo(CommandLine& program)
{
    program.addCommand("info", "Show what the meter is: model, serial number, versions", "vx63 info",
                       showInfo);
}

} // namespace tool
