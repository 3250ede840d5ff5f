// One exchange, through the library and in other ways.
#include "others/exchange.h"

#include "inside.h"
#include "others/others.h"
#include "require.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {
namespace {

class Library : public Way {
public:
    void serve() override { Platform::serve(); }
    void connect() override { inside_init(Platform::kOwn); }
    void ask(const Message& request) override
    {
        constexpr size_t kHead = 8;
        uint8_t response[kMessageSize];
        const int32_t result = inside_exchange(Platform::kService, kEcho, request.data() + kHead,
                                               static_cast<uint16_t>(request.size() - kHead), response);
        require(result == 0, "vx63_sndRcvCommon");
    }
};

std::unique_ptr<Way> makeLibrary()
{
    return std::make_unique<Library>();
}

struct Offer {
    const char* name;
    const char* package;
    std::unique_ptr<Way> (*make)();
};
const Offer kOffers[] = {
    {"vx63_sndRcvCommon", "libvx63", makeLibrary},
    {"ZeroMQ", "libzmq3-dev", makeZeroMq},
    {"nng", "libnng-dev", makeNng},
    {"sd-bus", "libsystemd-dev", makeSdBus},
    {"gRPC", "libgrpc++-dev", makeGrpc},
};

// What starts threads is never forked from.
void inOwnProcess(const std::function<void()>& work)
{
    const pid_t process = fork();
    require(process >= 0, "fork");
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        work();
        std::_Exit(0);
    }
    int status;
    require(waitpid(process, &status, 0) == process, "waitpid");
    std::filesystem::remove(kSocket);
    if (status != 0)
        std::_Exit(1);
}

void compare(Runner& runner, const Offer& offer, int processor)
{
    tie(0);
    const Peer bare(processor, BareQueues::serve);
    const std::unique_ptr<Way> way = offer.make();
    const Peer peer(processor, [&] { way->serve(); });
    way->connect();
    for (const size_t size : {size_t{12}, kMessageSize}) {
        const Message message = request(kEcho, size);
        runner.compare(
            {std::string(offer.name) + ", " + std::to_string(size) + " bytes" +
                 (processor == 0 ? ", same processor" : ", two processors"),
             "mq_timedsend, mq_timedreceive"},
            [&] { BareQueues::ask(message); }, [&] { way->ask(message); });
    }
}

} // namespace

void compareOtherExchanges(Runner& runner)
{
    for (const Offer& offer : kOffers) {
        if (offer.make == nullptr)
            tellLeftOut(offer.name, offer.package);
    }
    for (const int processor : {0, 1}) {
        if (!tie(processor)) {
            std::fprintf(stderr, "bench: one processor: no exchanges between two\n");
            continue;
        }
        for (const Offer& offer : kOffers) {
            if (offer.make != nullptr)
                inOwnProcess([&] { compare(runner, offer, processor); });
        }
    }
    tie(-1);
}

} // namespace bench
