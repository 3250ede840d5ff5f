// ZeroMQ: a socket that asks and one that answers, with a thread for input and output on each side.
#include "others/exchange.h"
#include "require.h"

#include <zmq.h>

namespace bench {
namespace {

constexpr char kAddress[] = "ipc://vx63-bench.socket";

class ZeroMq : public Way {
public:
    ~ZeroMq() override
    {
        if (m_socket != nullptr) {
            zmq_close(m_socket);
            zmq_ctx_term(m_context);
        }
    }

    void serve() override
    {
        open(ZMQ_REP);
        check(zmq_bind(m_socket, kAddress), "zmq_bind");
        for (;;) {
            uint8_t request[kMessageSize];
            uint8_t response[kMessageSize];
            const int length = zmq_recv(m_socket, request, sizeof request, 0);
            check(length, "zmq_recv");
            check(zmq_send(m_socket, response, answer(request, static_cast<size_t>(length), response), 0),
                  "zmq_send");
        }
    }

    void connect() override
    {
        open(ZMQ_REQ);
        for (const int option : {ZMQ_SNDTIMEO, ZMQ_RCVTIMEO})
            check(zmq_setsockopt(m_socket, option, &kAnswerTimeout, sizeof kAnswerTimeout), "zmq_setsockopt");
        check(zmq_connect(m_socket, kAddress), "zmq_connect");
    }

    void ask(const Message& request) override
    {
        uint8_t response[kMessageSize];
        check(zmq_send(m_socket, request.data(), request.size(), 0), "zmq_send");
        const int length = zmq_recv(m_socket, response, sizeof response, 0);
        check(length, "zmq_recv");
        require(static_cast<size_t>(length) == request.size(), "zmq_recv", "another length");
    }

private:
    static void check(int result, const char* what)
    {
        if (result < 0)
            require(false, what, zmq_strerror(zmq_errno()));
    }

    void open(int type)
    {
        m_context = zmq_ctx_new();
        require(m_context != nullptr, "zmq_ctx_new");
        m_socket = zmq_socket(m_context, type);
        require(m_socket != nullptr, "zmq_socket");
        constexpr int kLinger = 0;
        check(zmq_setsockopt(m_socket, ZMQ_LINGER, &kLinger, sizeof kLinger), "zmq_setsockopt");
    }

    void* m_context = nullptr;
    void* m_socket = nullptr;
};

} // namespace

std::unique_ptr<Way> makeZeroMq()
{
    return std::make_unique<ZeroMq>();
}

} // namespace bench
