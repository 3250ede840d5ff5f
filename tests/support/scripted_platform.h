// The platform's message queues, scripted: a test lists the messages that it expects and what comes back
// for each. Replaces lmsg_* in a test program; nothing waits.
#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

namespace vx63test {

class ScriptedPlatform {
public:
    // The next call must send exactly this message to this queue with this time-out; result comes back.
    void expectSend(uint8_t queue, uint32_t timeout, std::string_view message, int32_t result = 0);

    // The next call must receive on this queue with this time-out; this message comes back.
    void expectReceive(uint8_t queue, uint32_t timeout, std::string_view message);

    // The next call must receive on this queue with this time-out; it fails.
    void expectReceiveFails(uint8_t queue, uint32_t timeout, int32_t result);

    // Fails the test if a listed call was not made; forgets the script.
    void finish();

    int32_t send(uint8_t queue, const void* message, uint32_t length, uint32_t timeout);
    int32_t receive(uint8_t queue, void* buffer, uint32_t length, uint32_t* messageLength, uint32_t timeout);

private:
    struct Call {
        bool isSend;
        uint8_t queue;
        uint32_t timeout;
        std::vector<uint8_t> message;
        int32_t result;
    };
    std::deque<Call> m_calls;
};

// The one that lmsg_* of this program end at.
ScriptedPlatform& platform();

} // namespace vx63test
