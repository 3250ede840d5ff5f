#include "inside.h"

#include "frame/call.h"
#include "frame/transport.h"

using namespace vx63;

void inside_init(int32_t procId)
{
    s_procId = procId;
}

int32_t inside_exchange(uint8_t service, uint16_t command, const void* body, uint16_t length, void* response)
{
    return vx63_sndRcvCommon(service, command, body, length, response, 10000);
}

void inside_logStart()
{
    logLine({"vx63_startSingleMeas"}, "Start.");
}

void inside_logEnd()
{
    logEnd(0, {"vx63_startSingleMeas"});
}
