#include "common/served.h"

#include "common/services.h"

#include <algorithm>
#include <dlfcn.h>

namespace tool {

namespace {

int32_t servedState(uint8_t service)
{
    static const auto isServed =
        reinterpret_cast<decltype(&lmsg_isServed)>(dlsym(RTLD_DEFAULT, "lmsg_isServed"));
    return isServed != nullptr ? isServed(service) : LMSG_SERVED_UNKNOWN;
}

} // namespace

bool isUnserved(uint8_t service)
{
    const int32_t state = servedState(service);
    return state == LMSG_SERVED_NONE || state == LMSG_SERVED_LEFT;
}

bool isNobodyThere()
{
    return std::ranges::all_of(services(), isUnserved, &Service::id);
}

bool isNothingThere()
{
    return std::ranges::all_of(
        services(), [](uint8_t id) { return servedState(id) == LMSG_SERVED_NONE; }, &Service::id);
}

std::optional<LmsgQueue> queueOf(uint8_t id)
{
    static const auto lookAt = reinterpret_cast<decltype(&lmsg_lookAt)>(dlsym(RTLD_DEFAULT, "lmsg_lookAt"));
    LmsgQueue queue{};
    if (lookAt == nullptr || lookAt(id, &queue) != 0)
        return std::nullopt;
    return queue;
}

} // namespace tool
