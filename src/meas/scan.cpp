// The channel scan: a multi-channel measurement whose last part says "scan".
#include "frame/call.h"
#include "meas/multi.h"
#include "meas/wire_multi.h"

using namespace vx63;

int32_t vx63_startScan(uint8_t ucDispType, const MultiMeasReg* pReg)
{
    logLine({}, "Start.");
    return logEnd(vx63_startMultiMeasCommon(ucDispType, pReg, wire::kKindScan));
}

int32_t vx63_stopScan(uint8_t ucDispType)
{
    logLine({}, "Start.");
    return logEnd(stopMulti(ucDispType));
}

int32_t vx63_getScanResult(int32_t sIndex, MultiMeasResult* pResult)
{
    logLine({}, "Start.");
    return logEnd(readMulti(sIndex, pResult));
}
