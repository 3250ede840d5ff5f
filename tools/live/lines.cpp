#include "common/failure.h"
#include "common/interrupt.h"
#include "common/output.h"
#include "live/live.h"
#include "live/worker.h"
#include "measure/reading.h"

namespace tool {

int liveInLines(const LiveOptions& options)
{
    catchInterruption(kStoppingNotice);
    List list(options.form);
    bool begun = false;
    const auto show = [&](const Reading& reading) {
        if (options.form != Form::text) {
            list.add(readingJson(reading));
            list.flush();
            return;
        }
        if (!begun)
            print(readingTableHeader());
        begun = true;
        print(readingTableRow(reading));
    };
    Worker worker(options, !options.record.empty(), {show, complain});
    while (!worker.hasEnded() && interruption() == 0) {
        waitFor(std::chrono::hours(1), worker.news());
        worker.seen();
    }
    worker.stop();
    worker.join();
    list.end();
    return interruption() != 0 ? kExitSignal + interruption() : kExitSuccess;
}

} // namespace tool
