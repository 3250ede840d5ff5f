#include "device/update_steps.h"

#include "libvx63.h"
#include "lmsg.h"

#include <atomic>
#include <cstring>
#include <dlfcn.h>

namespace {

constexpr uint16_t kUpdate = 0x0010;
constexpr uint32_t kCommandAt = 2; // in the head of a message

std::atomic<uint32_t> s_requests = 0;

} // namespace

// A definition in the program goes before that of the platform's library: what the library sends passes here.
extern "C" int32_t lmsg_tsndMq(uint8_t ucQueId, const void* pMsg, uint32_t ulLen, uint32_t ulTimeout)
{
    static const auto send = reinterpret_cast<decltype(&lmsg_tsndMq)>(dlsym(RTLD_NEXT, "lmsg_tsndMq"));
    if (ucQueId == PROC_ID_PSYS && ulLen >= kCommandAt + sizeof kUpdate)
        s_requests += std::memcmp(static_cast<const char*>(pMsg) + kCommandAt, &kUpdate, sizeof kUpdate) == 0;
    return send != nullptr ? send(ucQueId, pMsg, ulLen, ulTimeout) : LMSG_ERR_SYSTEM;
}

namespace tool {

uint32_t updateRequests()
{
    return s_requests;
}

} // namespace tool
