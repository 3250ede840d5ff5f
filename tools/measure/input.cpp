// vx63 input: select the RF input.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/options.h"
#include "common/text.h"
#include "libvx63.h"

#include <memory>

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

void addInput(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* input = app.add_subcommand("input", "Select the RF input")->group("Commands");
    addNumber(*input, "INPUT", options->input, "0|1", "The input", 0, 1)->required();
    addIdOption(*input, options->id);
    input->footer("Example: vx63 input 1");
    input->callback([options, &command] { command = [options] { return selectInput(*options); }; });
}

} // namespace tool
