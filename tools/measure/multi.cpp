// vx63 measure multi: a list of channels, each measured once.
#include "commands.h"
#include "common/failure.h"
#include "measure/list_measurement.h"

namespace tool {

namespace {

int measureMulti(const ListOptions& options)
{
    return runList(ListKind::multi, options);
}

} // namespace

void addMulti(CommandLine& measure)
{
    measure.addCommand("multi", "Measure the channels of a plan or a file",
                       "vx63 measure multi --plan bs --plot levels.svg", measureMulti,
                       [](CommandLine& line, ListOptions& options) {
                           const auto ofPlan = addListOptions(line, options);
                           Option file = line.text("--conditions", options.conditions, "FILE",
                                                   "Channels in a JSON file, see vx63-measure(1)");
                           for (const Option& option : ofPlan)
                               file.excludes(option);
                           line.check([&options] {
                               if (options.plan == nullptr && options.conditions.empty())
                                   throw WrongUsage("--plan or --conditions is required");
                           });
                       });
}

} // namespace tool
