// vx63 input: select the RF input.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/text.h"
#include "libvx63.h"

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    int32_t input = 0;
};

int selectInput(const Options& options)
{
    const Identity identity(options.id);
    require(format("cannot select input %d", options.input),
            [&] { return vx63_setMeasInput(options.input); });
    return kExitSuccess;
}

} // namespace

void addInput(CommandLine& program)
{
    program.addCommand("input", "Select the RF input", "vx63 input 1", selectInput,
                       [](CommandLine& line, Options& options) {
                           line.number("INPUT", options.input, "0|1", "The input", 0, 1).required();
                       });
}

} // namespace tool
