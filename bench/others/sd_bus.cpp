// sd-bus: a method that takes bytes and returns bytes, over a connection between the two, without a bus.
#include "others/exchange.h"
#include "require.h"

#include <cerrno>
#include <sys/socket.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace bench {
namespace {

constexpr char kObject[] = "/vx63";
constexpr char kInterface[] = "vx63.Service";
constexpr char kMethod[] = "Exchange";

int check(int result, const char* what)
{
    if (result < 0) {
        errno = -result;
        require(false, what);
    }
    return result;
}

int answerCall(sd_bus_message* call, void*, sd_bus_error*)
{
    if (sd_bus_message_is_method_call(call, kInterface, kMethod) <= 0)
        return 0;
    const void* request;
    size_t length;
    check(sd_bus_message_read_array(call, 'y', &request, &length), "sd_bus_message_read_array");
    uint8_t response[kMessageSize];
    const size_t size = answer(static_cast<const uint8_t*>(request), length, response);
    sd_bus_message* reply = nullptr;
    check(sd_bus_message_new_method_return(call, &reply), "sd_bus_message_new_method_return");
    check(sd_bus_message_append_array(reply, 'y', response, size), "sd_bus_message_append_array");
    const int result = sd_bus_send(sd_bus_message_get_bus(call), reply, nullptr);
    sd_bus_message_unref(reply);
    return check(result, "sd_bus_send");
}

class SdBus : public Way {
public:
    SdBus()
    {
        require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, m_ends) == 0,
                "socketpair");
    }
    ~SdBus() override { sd_bus_close_unref(m_bus); }

    void serve() override
    {
        open(m_ends[1], m_ends[0]);
        sd_id128_t id;
        check(sd_id128_randomize(&id), "sd_id128_randomize");
        check(sd_bus_set_server(m_bus, 1, id), "sd_bus_set_server");
        check(sd_bus_add_object(m_bus, nullptr, kObject, answerCall, nullptr), "sd_bus_add_object");
        check(sd_bus_start(m_bus), "sd_bus_start");
        for (;;) {
            while (check(sd_bus_process(m_bus, nullptr), "sd_bus_process") > 0) {
            }
            check(sd_bus_wait(m_bus, UINT64_MAX), "sd_bus_wait");
        }
    }

    void connect() override
    {
        open(m_ends[0], m_ends[1]);
        check(sd_bus_start(m_bus), "sd_bus_start");
    }

    void ask(const Message& request) override
    {
        sd_bus_message* call = nullptr;
        check(sd_bus_message_new_method_call(m_bus, &call, nullptr, kObject, kInterface, kMethod),
              "sd_bus_message_new_method_call");
        check(sd_bus_message_append_array(call, 'y', request.data(), request.size()),
              "sd_bus_message_append_array");
        sd_bus_message* reply = nullptr;
        check(sd_bus_call(m_bus, call, uint64_t{kAnswerTimeout} * 1000, nullptr, &reply), "sd_bus_call");
        const void* response;
        size_t length;
        check(sd_bus_message_read_array(reply, 'y', &response, &length), "sd_bus_message_read_array");
        require(length == request.size(), "sd_bus_call", "another length");
        sd_bus_message_unref(reply);
        sd_bus_message_unref(call);
    }

private:
    void open(int own, int others)
    {
        close(others);
        check(sd_bus_new(&m_bus), "sd_bus_new");
        check(sd_bus_set_fd(m_bus, own, own), "sd_bus_set_fd");
    }

    int m_ends[2];
    sd_bus* m_bus = nullptr;
};

} // namespace

std::unique_ptr<Way> makeSdBus()
{
    return std::make_unique<SdBus>();
}

} // namespace bench
