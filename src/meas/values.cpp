// The values of a single measurement on their way to the caller.
#include "meas/values.h"

using namespace vx63;

static_assert(sizeof(SingleMeasResult) == 8040);
static_assert(offsetof(SingleMeasResult, lock) == 0);
static_assert(offsetof(SingleMeasResult, stat) == 2);
static_assert(offsetof(SingleMeasResult, mesCond) == 4);
static_assert(offsetof(SingleMeasResult, reserved) == 6);
static_assert(offsetof(SingleMeasResult, bdSys) == 8);
static_assert(offsetof(SingleMeasResult, LEVEL) == 12);
static_assert(offsetof(SingleMeasResult, CNR) == 16);
static_assert(offsetof(SingleMeasResult, BER_TOTAL) == 20);
static_assert(offsetof(SingleMeasResult, BER_ERR) == 24);
static_assert(offsetof(SingleMeasResult, TSID) == 28);
static_assert(offsetof(SingleMeasResult, GI) == 30);
static_assert(offsetof(SingleMeasResult, LAYER) == 31);
static_assert(offsetof(SingleMeasResult, MOD) == 32);
static_assert(offsetof(SingleMeasResult, CONS_NUM) == 36);
static_assert(offsetof(SingleMeasResult, points) == 38);

void vx63::storeValues(const wire::SingleResultResponse& rspData, SingleMeasResult& result)
{
    result.lock = rspData.lock;
    result.stat = rspData.stat;
    result.mesCond = rspData.mesCond;
    result.bdSys = rspData.bdSys;
    result.LEVEL = rspData.LEVEL;
    result.CNR = rspData.CNR;
    result.BER_TOTAL = rspData.BER_TOTAL;
    result.BER_ERR = rspData.BER_ERR;
    result.TSID = rspData.TSID;
    result.GI = rspData.GI;
    result.LAYER = rspData.LAYER;
    result.MOD = rspData.MOD;
}

void vx63::logValues(const SingleMeasResult& result, Caller caller)
{
    logLine({caller},
            "lock=%02X stat=%04X mesCond=%04X bdSys=%04X LEVEL=%u CNR=%u BER_TOTAL=%u BER_ERR=%u "
            "TSID=%04X GI=%u LAYER=%02X MOD=%04X",
            result.lock, result.stat, result.mesCond, result.bdSys, result.LEVEL, result.CNR,
            result.BER_TOTAL, result.BER_ERR, result.TSID, result.GI, result.LAYER, result.MOD);
}
