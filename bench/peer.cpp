#include "peer.h"

#include "lmsg.h"
#include "meas/wire.h"
#include "require.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <mqueue.h>
#include <poll.h>
#include <sched.h>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {
namespace {

using vx63::wire::LibMsgHead;

constexpr uint32_t kTimeout = 10000;

mqd_t openQueue(int number, int flags)
{
    mq_attr geometry{};
    geometry.mq_maxmsg = 4;
    geometry.mq_msgsize = kMessageSize;
    const mqd_t queue = mq_open(("/vx63." + std::to_string(number)).c_str(),
                                O_RDWR | O_CREAT | O_CLOEXEC | flags, 0600, &geometry);
    require(queue >= 0, "mq_open");
    return queue;
}

timespec deadline()
{
    timespec time;
    clock_gettime(CLOCK_REALTIME, &time);
    time.tv_sec += 3600; // who serves waits longer than who asks
    return time;
}

void sendBare(mqd_t queue, const uint8_t* message, size_t length)
{
    const timespec time = deadline();
    require(mq_timedsend(queue, reinterpret_cast<const char*>(message), length, 0, &time) == 0,
            "mq_timedsend");
}

size_t receiveBare(mqd_t queue, uint8_t* message)
{
    const timespec time = deadline();
    const ssize_t length =
        mq_timedreceive(queue, reinterpret_cast<char*>(message), kMessageSize, nullptr, &time);
    require(length >= 0, "mq_timedreceive");
    return static_cast<size_t>(length);
}

void look(mqd_t queue)
{
    struct stat status;
    require(fstat(queue, &status) == 0 && status.st_nlink != 0, "fstat");
}

void sendCarefully(mqd_t queue, const uint8_t* message, size_t length)
{
    look(queue);
    require(mq_send(queue, reinterpret_cast<const char*>(message), length, 0) == 0, "mq_send");
}

size_t receiveCarefully(mqd_t queue, uint8_t* message)
{
    int count = 0;
    while (count == 0) {
        look(queue);
        pollfd ready{queue, POLLIN, 0};
        const timespec time{1, 0};
        count = ppoll(&ready, 1, &time, nullptr);
        require(count >= 0, "ppoll");
    }
    const ssize_t length = mq_receive(queue, reinterpret_cast<char*>(message), kMessageSize, nullptr);
    require(length >= 0, "mq_receive");
    return static_cast<size_t>(length);
}

// Queues beyond the process ids of a meter.
enum { kBareOwn = 101, kBareService, kCarefulOwn, kCarefulService };

mqd_t kept(int number, int flags = 0)
{
    static mqd_t s_queues[256];
    if (s_queues[number] == 0)
        s_queues[number] = openQueue(number, flags);
    return s_queues[number];
}

} // namespace

Message request(uint16_t command, size_t size)
{
    Message message(size);
    const LibMsgHead head = {.ucSrcId = Platform::kOwn,
                             .ucDstId = Platform::kService,
                             .usCmd = command,
                             .usDataLen = static_cast<uint16_t>(size - sizeof head),
                             .usOptOrRet = 0};
    std::memcpy(message.data(), &head, sizeof head);
    return message;
}

size_t answer(const uint8_t* request, size_t length, uint8_t* response)
{
    LibMsgHead head;
    std::memcpy(&head, request, sizeof head);
    std::swap(head.ucSrcId, head.ucDstId);
    uint8_t* const body = response + sizeof head;
    switch (head.usCmd) {
    case kEcho:
        std::memcpy(body, request + sizeof head, length - sizeof head);
        break;
    case 0x0104: // the values of a single measurement
        head.usDataLen = sizeof(vx63::wire::SingleResultResponse);
        std::memset(body, 0, head.usDataLen);
        break;
    case 0x0106: // with points
        head.usDataLen = sizeof(vx63::wire::ConstaResponse);
        std::memset(body, 0, head.usDataLen);
        std::memcpy(body + offsetof(vx63::wire::ConstaResponse, CONS_NUM), &vx63::wire::kConstaPoints,
                    sizeof(uint16_t));
        break;
    default: // accepted
        head.usDataLen = 4;
        std::memset(body, 0, head.usDataLen);
        break;
    }
    head.usCmd |= vx63::wire::kResponseBit;
    std::memcpy(response, &head, sizeof head);
    return sizeof head + head.usDataLen;
}

Peer::Peer(int processor, const std::function<void()>& serve) : m_process(fork())
{
    require(m_process >= 0, "fork");
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        tie(processor);
        serve();
        std::_Exit(0);
    }
}

Peer::~Peer()
{
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
}

bool tie(int processor)
{
    static const cpu_set_t s_allowed = [] {
        cpu_set_t allowed;
        require(sched_getaffinity(0, sizeof allowed, &allowed) == 0, "sched_getaffinity");
        return allowed;
    }();
    if (processor >= CPU_COUNT(&s_allowed))
        return false;
    cpu_set_t one;
    CPU_ZERO(&one);
    for (int i = 0, nth = 0; i < CPU_SETSIZE; ++i) {
        if (CPU_ISSET(i, &s_allowed) && nth++ == processor)
            CPU_SET(i, &one);
    }
    require(sched_setaffinity(0, sizeof one, processor < 0 ? &s_allowed : &one) == 0, "sched_setaffinity");
    return true;
}

void Platform::ask(const Message& request)
{
    uint8_t response[kMessageSize];
    uint32_t length;
    require(lmsg_tsndMq(kService, request.data(), static_cast<uint32_t>(request.size()), kTimeout) == 0,
            "lmsg_tsndMq");
    require(lmsg_trcvMq(kOwn, response, sizeof response, &length, kTimeout) == 0, "lmsg_trcvMq");
}

void Platform::serve()
{
    for (;;) {
        uint8_t request[kMessageSize];
        uint8_t response[kMessageSize];
        uint32_t length;
        require(lmsg_trcvMq(kService, request, sizeof request, &length, LMSG_FOREVER) == 0, "lmsg_trcvMq");
        const size_t size = answer(request, length, response);
        require(lmsg_tsndMq(request[0], response, static_cast<uint32_t>(size), kTimeout) == 0, "lmsg_tsndMq");
    }
}

void BareQueues::ask(const Message& request)
{
    uint8_t response[kMessageSize];
    sendBare(kept(kBareService), request.data(), request.size());
    receiveBare(kept(kBareOwn), response);
}

void BareQueues::serve()
{
    for (;;) {
        uint8_t request[kMessageSize];
        uint8_t response[kMessageSize];
        const size_t length = receiveBare(kept(kBareService), request);
        sendBare(kept(kBareOwn), response, answer(request, length, response));
    }
}

void CarefulQueues::ask(const Message& request)
{
    uint8_t response[kMessageSize];
    sendCarefully(kept(kCarefulService, O_NONBLOCK), request.data(), request.size());
    receiveCarefully(kept(kCarefulOwn, O_NONBLOCK), response);
}

void CarefulQueues::serve()
{
    for (;;) {
        uint8_t request[kMessageSize];
        uint8_t response[kMessageSize];
        const size_t length = receiveCarefully(kept(kCarefulService, O_NONBLOCK), request);
        sendCarefully(kept(kCarefulOwn, O_NONBLOCK), response, answer(request, length, response));
    }
}

} // namespace bench
