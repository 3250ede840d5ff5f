// One exchange: through the library, through the platform's calls, through nothing but the system calls.
#include "groups.h"
#include "inside.h"
#include "peer.h"
#include "require.h"

namespace bench {
namespace {

template <class Way>
void askEcho(size_t size)
{
    static Message s_request; // made once
    if (s_request.size() != size)
        s_request = request(kEcho, size);
    Way::ask(s_request);
}

void exchangeInside(size_t size)
{
    static uint8_t s_body[kMessageSize];
    static uint8_t s_response[kMessageSize];
    constexpr size_t kHead = 8;
    const auto length = static_cast<uint16_t>(size - kHead);
    require(inside_exchange(Platform::kService, kEcho, s_body, length, s_response) == 0, "an exchange",
            "no answer");
}

} // namespace

void compareExchanges(Runner& runner)
{
    inside_init(Platform::kOwn);
    for (const int processor : {0, 1}) {
        if (!tie(processor)) {
            std::fprintf(stderr, "bench: one processor: no exchanges between two\n");
            continue;
        }
        const std::string place = processor == 0 ? ", same processor" : ", two processors";
        const double bareTarget = processor == 0 ? 1.10 : 1.05;
        tie(0);
        const Peer platform(processor, Platform::serve);
        const Peer bare(processor, BareQueues::serve);
        const Peer careful(processor, CarefulQueues::serve);
        for (const size_t size : {size_t{12}, kMessageSize}) {
            const std::string bytes = ", " + std::to_string(size) + " bytes";
            runner.compare(
                {"vx63_sndRcvCommon" + bytes + place, "lmsg_tsndMq, lmsg_trcvMq", 1.05},
                [size] { askEcho<Platform>(size); }, [size] { exchangeInside(size); });
            runner.compare(
                {"lmsg_tsndMq, lmsg_trcvMq" + bytes + place, "mq_timedsend, mq_timedreceive", bareTarget},
                [size] { askEcho<BareQueues>(size); }, [size] { askEcho<Platform>(size); });
            runner.compare(
                {"lmsg_tsndMq, lmsg_trcvMq" + bytes + place, "fstat, mq_send; fstat, ppoll, mq_receive",
                 bareTarget},
                [size] { askEcho<CarefulQueues>(size); }, [size] { askEcho<Platform>(size); });
        }
    }
    tie(-1);
}

} // namespace bench
