// nng: a socket that asks and one that answers. Each side makes the message that it received its next one.
#include "others/exchange.h"
#include "require.h"

#include <nng/nng.h>
#include <nng/protocol/reqrep0/rep.h>
#include <nng/protocol/reqrep0/req.h>

namespace bench {
namespace {

constexpr char kAddress[] = "ipc://vx63-bench.socket";

void check(int result, const char* what)
{
    if (result != 0)
        require(false, what, nng_strerror(result));
}

class Nng : public Way {
public:
    ~Nng() override
    {
        nng_msg_free(m_message);
        nng_close(m_socket);
    }

    void serve() override
    {
        check(nng_rep0_open(&m_socket), "nng_rep0_open");
        check(nng_listen(m_socket, kAddress, nullptr, 0), "nng_listen");
        for (;;) {
            uint8_t response[kMessageSize];
            receive();
            const auto* const request = static_cast<const uint8_t*>(nng_msg_body(m_message));
            send(response, answer(request, nng_msg_len(m_message), response));
        }
    }

    void connect() override
    {
        check(nng_req0_open(&m_socket), "nng_req0_open");
        for (const char* const option : {NNG_OPT_SENDTIMEO, NNG_OPT_RECVTIMEO})
            check(nng_socket_set_ms(m_socket, option, kAnswerTimeout), "nng_socket_set_ms");
        // In the background: who answers may not be there yet.
        check(nng_dial(m_socket, kAddress, nullptr, NNG_FLAG_NONBLOCK), "nng_dial");
        check(nng_msg_alloc(&m_message, 0), "nng_msg_alloc");
    }

    void ask(const Message& request) override
    {
        send(request.data(), request.size());
        receive();
        require(nng_msg_len(m_message) == request.size(), "nng_recvmsg", "another length");
    }

private:
    void send(const uint8_t* message, size_t length)
    {
        nng_msg_clear(m_message);
        check(nng_msg_append(m_message, message, length), "nng_msg_append");
        check(nng_sendmsg(m_socket, m_message, 0), "nng_sendmsg");
        m_message = nullptr;
    }

    void receive() { check(nng_recvmsg(m_socket, &m_message, 0), "nng_recvmsg"); }

    nng_socket m_socket = NNG_SOCKET_INITIALIZER;
    nng_msg* m_message = nullptr;
};

} // namespace

std::unique_ptr<Way> makeNng()
{
    return std::make_unique<Nng>();
}

} // namespace bench
