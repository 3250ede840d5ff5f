#include "frame/call.h"
#include "frame/transport.h"
#include "libvx63.h"

#include <pthread.h>
#include <unistd.h>

using namespace vx63;

int32_t vx63_init(int32_t procId)
{
    constexpr uint32_t kProcIdMax = 17;

    logLine({}, "Start.");
    if (static_cast<uint32_t>(procId) > kProcIdMax) {
        logLine({}, "arg error. procId=%d", procId);
        return logEnd(VX63_ERR_ARG);
    }
    s_procId = procId;
    logLine({}, "getpid()=%d pthread_self()=%ld", getpid(), static_cast<long>(pthread_self()));
    return logEnd(VX63_OK);
}
