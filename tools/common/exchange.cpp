#include "common/exchange.h"

#include "common/identity.h"
#include "common/served.h"
#include "common/text.h"
#include "libvx63.h"
#include "lmsg.h"

#include <array>
#include <chrono>
#include <dlfcn.h>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;

// A call that fails sooner than this was answered, but not with its own answer.
constexpr std::chrono::seconds kAtOnce{4};
constexpr unsigned kMaxBehind = 3;
constexpr unsigned kMostOld = 100; // somebody may send without end

// Answers that lie in our queue ahead of each new one. Every call puts one in and takes one out, so the
// queue never gets shorter again: from then on a call has to be made as many times more for its answer to be
// a fresh one.
unsigned s_behind = 0;

FailedCall s_failed;

int32_t make(const std::function<int32_t()>& call)
{
    s_failed = {.start = std::chrono::system_clock::now()};
    const auto start = Clock::now();
    const int32_t result = call();
    s_failed.slow = Clock::now() - start >= kAtOnce;
    return result;
}

} // namespace

const FailedCall& failedCall()
{
    return s_failed;
}

int32_t exchange(const std::function<int32_t()>& call)
{
    static const bool s_nothing = isNothingThere();
    if (s_nothing) {
        s_failed = {.start = {}, .made = false};
        return VX63_ERR_COMM;
    }
    int32_t result = VX63_OK;
    for (unsigned made = 0; made <= s_behind; ++made) {
        result = make(call);
        if (result != VX63_ERR_COMM)
            continue;
        if (s_failed.slow)
            break; // nobody answers: waiting as long again helps nobody
        if (made == s_behind && s_behind < kMaxBehind)
            ++s_behind;
    }
    return result;
}

bool isBehind()
{
    return s_behind > 0;
}

void forgetAnswers(int32_t id, uint32_t quietMs)
{
    // The library takes no answer without asking. Whatever platform it is linked with has this call.
    static const auto receive = reinterpret_cast<decltype(&lmsg_trcvMq)>(dlsym(RTLD_DEFAULT, "lmsg_trcvMq"));
    std::array<uint8_t, LMSG_SIZE_MAX> message;
    int32_t result = receive != nullptr ? LMSG_OK : LMSG_ERR_RESOURCE;
    for (unsigned taken = 0; taken < kMostOld && result == LMSG_OK; ++taken)
        result = receive(static_cast<uint8_t>(id), message.data(), message.size(), nullptr, quietMs);
    s_behind = 0;
}

Failure failureOf(int32_t result, const std::string& what, const std::function<int32_t()>& again)
{
    switch (result) {
    case VX63_ERR_COMM:
        return reasonOf(failedCall(), what, again);
    case VX63_ERR_ARG:
        return {kExitArgument, what, "the meter refuses a value",
                "check the values; 'vx63 log' shows what was sent"};
    case VX63_ERR_REPEAT:
        return {kExitRepeat, what, "the buzzer is sounding a repeating pattern", "stop it first"};
    case VX63_ERR_POWER:
        return {kExitPowerSupply, what, "the antenna power supply reports a fault",
                "check the cable for a short circuit and see 'vx63 power-supply'"};
    case VX63_ERR_PRIORITY:
        return {kExitPriority, what, "the buzzer is busy with a sound of higher priority", "try again"};
    default:
        return {kExitInternal, what, format("unknown result %d of the library", result),
                "look at 'vx63 log --errors'"};
    }
}

void require(const std::string& what, const std::function<int32_t()>& call)
{
    if (const int32_t result = exchange(call); result != VX63_OK)
        throw failureOf(result, what);
}

void requireOnce(int32_t id, const std::string& what, const std::function<int32_t()>& call)
{
    ProductInfo info{};
    const auto ask = [&] { return vx63_getProductInfo(&info); };
    require(what, ask);
    if (s_behind > 0) {
        forgetAnswers(id);
        require(what, ask);
    }
    if (s_behind > 0)
        throw Failure(kExitCommunication, what, "answers to somebody's earlier calls seem to be in the way",
                      "see " + doctorCommand() + ", or choose another id with --id");
    if (const int32_t result = make(call); result != VX63_OK)
        throw failureOf(result, what);
}

} // namespace tool
