// vx63 scan: which channels of a plan carry a signal.
#include "commands.h"
#include "measure/list_measurement.h"

namespace tool {

namespace {

int scan(const ListOptions& options)
{
    return runList(ListKind::scan, options);
}

} // namespace

void addScan(CommandLine& program)
{
    program.addCommand("scan", "Find the channels that carry a signal", "vx63 scan --plan uhf --csv", scan,
                       [](CommandLine& line, ListOptions& options) {
                           addListOptions(line, options).front().required();
                           line.notes("Ctrl-C stops the scan at the meter before the program ends.");
                       });
}

} // namespace tool
