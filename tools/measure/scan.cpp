// vx63 scan: which channels of a plan carry a signal.
#include "commands.h"
#include "measure/list_measurement.h"

#include <memory>

namespace tool {

void addScan(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<ListOptions>();
    CLI::App* scan = app.add_subcommand("scan", "Find the channels that carry a signal")->group("Commands");
    addListOptions(*scan, *options);
    scan->get_option("--plan")->required();
    scan->footer("Ctrl-C stops the scan at the meter before the program ends.\n\n"
                 "Example: vx63 scan --plan uhf --csv");
    scan->callback([options, &command] {
        resolveListModulation(*options);
        command = [options] { return runList(ListKind::scan, *options); };
    });
}

} // namespace tool
