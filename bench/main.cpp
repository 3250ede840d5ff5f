// vx63-bench [--brief] [--only TEXT] GROUP...: what calls cost, beside their floors, and how that grows. Each
// result is one line of JSON; script/bench makes tables of them. Where each group is to be run, bench/run
// knows; the group "meter" is a client of a virtual meter (bench/growth).
#include "groups.h"

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    static constexpr struct {
        const char* name;
        void (*run)(bench::Runner&);
    } kGroups[] = {
        {"exchanges", bench::compareExchanges},
        {"log", bench::compareLog},
        {"operations", bench::compareOperations},
        {"settings", bench::compareSettingsFiles},
        {"processes", bench::compareProcesses},
        {"measurement", bench::compareMeasurement},
        {"others", bench::compareOthers},
        {"threads", bench::growThreads},
        {"log-growth", bench::growLog},
        {"settings-growth", bench::growSettingsFiles},
        {"meter", bench::callMeter},
    };

    bench::Options options;
    int at = 1;
    for (; at < argc && argv[at][0] == '-'; ++at) {
        if (std::strcmp(argv[at], "--brief") == 0) {
            options.brief = true;
        } else if (std::strcmp(argv[at], "--only") == 0 && at + 1 < argc) {
            options.only = argv[++at];
        } else {
            std::fprintf(stderr, "vx63-bench: unknown option '%s'\n", argv[at]);
            return 64;
        }
    }
    for (; at < argc; ++at) {
        bool known = false;
        for (const auto& group : kGroups) {
            if (std::strcmp(argv[at], group.name) == 0) {
                options.group = group.name;
                bench::Runner runner(options);
                group.run(runner);
                known = true;
            }
        }
        if (!known) {
            std::fprintf(stderr, "vx63-bench: unknown group '%s'\n", argv[at]);
            return 64;
        }
    }
    return 0;
}
