// vx63 live: one channel on the whole terminal, over and over; in lines where there is no such terminal.
#include "live/live.h"
#include "commands.h"
#include "live/screen.h"

namespace tool {

namespace {

int live(const LiveOptions& options)
{
    return options.form == Form::text && Screen::isPossible() ? liveOnScreen(options) : liveInLines(options);
}

} // namespace

void addLive(CommandLine& program)
{
    program.addCommand(
        "live", "Show one channel on the whole terminal, over and over", "vx63 live --channel 27", live,
        [](CommandLine& line, LiveOptions& options) {
            addChannelOptions(line, options, false);
            line.number("--count", options.count, "N", "Readings to take [no end]", 1, UINT32_MAX);
            line.seconds("--interval", options.intervalMs,
                         "Seconds from one reading to the next; 0: as fast as the meter answers [0.2]", 0,
                         3600);
            line.flag("--tone", options.tone, "Click the buzzer, the faster the better C/N is");
            line.text("--record", options.record, "FILE",
                      "Add every reading to this file: JSON lines, or CSV where its name ends in .csv");
            line.csv(options.form);
            line.check([&options] { resolveChannel(options); });
        });
}

} // namespace tool
