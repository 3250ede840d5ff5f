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

int showInfo(const Options& options)
{
    const Identity identity(options.id);
    ProductInfo info{};
    require("cannot read the product data", [&] { return vx63_getProductInfo(&info); });
    if (options.json) {
        const Json json = {
            {"model_code", fieldText(info.cModelCode)},    {"option_info", fieldText(info.cOptInfo)},
            {"serial_no", fieldText(info.cSerialNo)},      {"boot_version", fieldText(info.cBootPrgVer)},
            {"main_version", fieldText(info.cMainPrgVer)}, {"sub_version", fieldText(info.cSubPrgVer)},
            {"qt_version", fieldText(info.cQtVer)},        {"product_version", fieldText(info.cProductVer)},
        };
        print(json.line());
        return kExitSuccess;
    }
    print(aligned({
        {"Model", printable(fieldText(info.cModelCode))},
        {"Option", printable(fieldText(info.cOptInfo))},
        {"Serial number", printable(fieldText(info.cSerialNo))},
        {"Product", printable(fieldText(info.cProductVer))},
        {"Boot program", printable(fieldText(info.cBootPrgVer))},
        {"Main program", printable(fieldText(info.cMainPrgVer))},
        {"Sub program", printable(fieldText(info.cSubPrgVer))},
        {"Qt", printable(fieldText(info.cQtVer))},
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
