// vx63 measure multi: a list of channels, each measured once.
#include "commands.h"
#include "measure/list_measurement.h"

#include <memory>

namespace tool {

void addMulti(CLI::App& measure, Command& command)
{
    const auto options = std::make_shared<ListOptions>();
    CLI::App* multi =
        measure.add_subcommand("multi", "Measure the channels of a plan or a file")->group("Commands");
    addListOptions(*multi, *options);
    CLI::Option* file =
        multi->add_option("--conditions", options->conditions, "Channels in a JSON file, see vx63(1)")
            ->type_name("FILE");
    for (const char* name : {"--plan", "--lo", "--system", "--mod", "--supply"})
        file->excludes(multi->get_option(name));
    multi->footer("Example: vx63 measure multi --plan bs --plot levels.svg");
    multi->callback([options, &command] {
        if (options->plan.empty() && options->conditions.empty())
            throw CLI::RequiredError("--plan or --conditions");
        resolveListModulation(*options);
        command = [options] { return runList(ListKind::multi, *options); };
    });
}

} // namespace tool
