#include "support/scripted_platform.h"

#include "lmsg.h"
#include "support/bytes.h"

#include <cstring>
#include <gtest/gtest.h>

namespace vx63test {

void ScriptedPlatform::expectSend(uint8_t queue, uint32_t timeout, std::string_view message, int32_t result)
{
    m_calls.push_back({true, queue, timeout, bytes(message), result});
}

void ScriptedPlatform::expectReceive(uint8_t queue, uint32_t timeout, std::string_view message)
{
    m_calls.push_back({false, queue, timeout, bytes(message), 0});
}

void ScriptedPlatform::expectReceiveFails(uint8_t queue, uint32_t timeout, int32_t result)
{
    m_calls.push_back({false, queue, timeout, {}, result});
}

void ScriptedPlatform::finish()
{
    EXPECT_EQ(m_calls.size(), 0u) << "listed calls that were not made";
    m_calls.clear();
}

int32_t ScriptedPlatform::send(uint8_t queue, const void* message, uint32_t length, uint32_t timeout)
{
    if (m_calls.empty() || !m_calls.front().isSend) {
        ADD_FAILURE() << "unexpected send to queue " << int{queue};
        return -1;
    }
    const Call call = m_calls.front();
    m_calls.pop_front();
    EXPECT_EQ(queue, call.queue);
    EXPECT_EQ(timeout, call.timeout);
    const auto* const first = static_cast<const uint8_t*>(message);
    EXPECT_EQ(std::vector<uint8_t>(first, first + length), call.message);
    return call.result;
}

int32_t ScriptedPlatform::receive(uint8_t queue, void* buffer, uint32_t length, uint32_t* messageLength,
                                  uint32_t timeout)
{
    if (m_calls.empty() || m_calls.front().isSend) {
        ADD_FAILURE() << "unexpected receive on queue " << int{queue};
        return -1;
    }
    const Call call = m_calls.front();
    m_calls.pop_front();
    EXPECT_EQ(queue, call.queue);
    EXPECT_EQ(timeout, call.timeout);
    EXPECT_EQ(length, 1300u);
    EXPECT_NE(messageLength, nullptr);
    if (call.result == 0) {
        memcpy(buffer, call.message.data(), call.message.size());
        *messageLength = static_cast<uint32_t>(call.message.size());
    }
    return call.result;
}

ScriptedPlatform& platform()
{
    static ScriptedPlatform instance;
    return instance;
}

} // namespace vx63test

int32_t lmsg_tsndMq(uint8_t ucQueId, const void* pMsg, uint32_t ulLen, uint32_t ulTimeout)
{
    return vx63test::platform().send(ucQueId, pMsg, ulLen, ulTimeout);
}

int32_t lmsg_trcvMq(uint8_t ucQueId, void* pMsg, uint32_t ulLen, uint32_t* pulMsgLen, uint32_t ulTimeout)
{
    return vx63test::platform().receive(ucQueId, pMsg, ulLen, pulMsgLen, ulTimeout);
}
