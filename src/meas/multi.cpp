// The multi-channel measurement: registration in parts, stop, latest values of one channel.
#include "meas/multi.h"

#include "frame/call.h"
#include "meas/condition.h"
#include "meas/wire_multi.h"

using namespace vx63;

static_assert(sizeof(MultiMeasReg) == 4);
static_assert(offsetof(MultiMeasReg, sRegNum) == 0);
static_assert(offsetof(MultiMeasReg, single) == 4);

static_assert(sizeof(MultiMeasResult) == 36);
static_assert(offsetof(MultiMeasResult, lock) == 0);
static_assert(offsetof(MultiMeasResult, stat) == 2);
static_assert(offsetof(MultiMeasResult, mesCond) == 4);
static_assert(offsetof(MultiMeasResult, readIdx) == 6);
static_assert(offsetof(MultiMeasResult, currIdx) == 7);
static_assert(offsetof(MultiMeasResult, bdSys) == 8);
static_assert(offsetof(MultiMeasResult, LEVEL) == 12);
static_assert(offsetof(MultiMeasResult, CNR) == 16);
static_assert(offsetof(MultiMeasResult, BER_TOTAL) == 20);
static_assert(offsetof(MultiMeasResult, BER_ERR) == 24);
static_assert(offsetof(MultiMeasResult, TSID) == 28);
static_assert(offsetof(MultiMeasResult, GI) == 30);
static_assert(offsetof(MultiMeasResult, LAYER) == 31);
static_assert(offsetof(MultiMeasResult, MOD) == 32);

// Registration and stop share a command; the body tells them apart.
static constexpr Request kMultiMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0109, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63::vx63_startMultiMeasCommon(uint8_t ucDispType, const MultiMeasReg* pReg, uint8_t ucLastKind)
{
    wire::MultiMeasRequest reqData = {};
    logLine({}, "Start. reqSize=%u rspSize=%u", static_cast<unsigned>(sizeof reqData),
            static_cast<unsigned>(sizeof(wire::ResultResponse)));
    if (pReg == nullptr) {
        logLine({}, "arg error. pReg=%p", static_cast<const void*>(pReg));
        return VX63_ERR_ARG;
    }
    const int32_t sRegNum = pReg->sRegNum;
    logLine({}, "sRegNum=%u", static_cast<uint32_t>(sRegNum)); // intended: -1 shows as 4294967295
    for (int32_t i = 0; i < sRegNum; ++i) {
        const MeasCondition& single = pReg->single[i];
        logLine({},
                "single[%d] : ulFreq=%u, ulLoFreq=%u, usBdSys=%u, usBand=%u, usMod=0x%04X, "
                "usCondition=0x%04X, ucStrChan=[%.*s], ucOutputEnb=%u, powerSupply=%d",
                i, single.ulFreq, single.ulLoFreq, single.usBdSys, single.usBand, single.usMod,
                single.usCondition, static_cast<int>(sizeof single.ucStrChan), single.ucStrChan,
                single.ucOutputEnb, single.powerSupply);
    }
    reqData.ucDispType = ucDispType;
    logLine({}, "reqData.ucDispType=%u", reqData.ucDispType);

    // Truncated towards zero: no channels make one empty part, -39 and below make none.
    const int32_t parts = (sRegNum - 1) / wire::kPartChannels + 1;
    if (parts < 1) {
        return VX63_ERR_COMM; // intended: without a message
    }
    if (sRegNum < 0) { // one part, of more channels than it has room for
        logLine({}, "arg error. sRegNum=%d", sRegNum);
        return VX63_ERR_ARG;
    }
    const auto lastCount = static_cast<uint8_t>((sRegNum - 1) % wire::kPartChannels + 1);

    for (int32_t part = 1; part <= parts; ++part) {
        const bool isLast = part == parts;
        reqData.ucKind = isLast ? ucLastKind : wire::kKindMore;
        reqData.ucRegCount = isLast ? lastCount : wire::kPartChannels;
        logLine({}, "split(%d/%d) ucRegIdx=%u ucRegCount=%u", part, parts, reqData.ucRegIdx,
                reqData.ucRegCount);
        // Intended: behind the channels of a short last part lie those of the part before.
        for (int32_t k = 0; k < reqData.ucRegCount; ++k) {
            // Intended: an index has 8 bits, so the 257th channel is the first once more.
            const auto ucRegIdx = static_cast<uint8_t>(reqData.ucRegIdx + k);
            reqData.channels[k] = packChannel(pReg->single[ucRegIdx]);
            logLine({}, "split(%d/%d) %d/%u ucRegIdx=%u", part, parts, k + 1, reqData.ucRegCount, ucRegIdx);
        }

        const int32_t vx63_err = exchange(kMultiMeas, reqData, judgeMeas);
        if (vx63_err != VX63_OK) {
            return vx63_err; // intended: the parts before stay registered
        }
        reqData.ucRegIdx = static_cast<uint8_t>(reqData.ucRegIdx + wire::kPartChannels);
    }
    return VX63_OK;
}

int32_t vx63_startMultiMeas(uint8_t ucDispType, const MultiMeasReg* pReg)
{
    logLine({}, "Start.");
    return logEnd(vx63_startMultiMeasCommon(ucDispType, pReg, wire::kKindMulti));
}

int32_t vx63::stopMulti(uint8_t ucDispType, Caller caller)
{
    wire::MultiMeasRequest reqData = {};
    reqData.ucDispType = ucDispType;
    reqData.ucKind = wire::kKindStop;
    logLine({caller}, "reqData.ucDispType=%u", reqData.ucDispType);

    return exchange(kMultiMeas, reqData, judgeMeas, caller);
}

int32_t vx63_stopMultiMeas(uint8_t ucDispType)
{
    logLine({}, "Start.");
    return logEnd(stopMulti(ucDispType));
}

// Intended: an empty operation, kept in the interface. It does not even log.
int32_t vx63_setMultiMeasChannel(void)
{
    return VX63_OK;
}

static constexpr Request kMultiMeasResult = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x010B, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63::readMulti(int32_t sIndex, MultiMeasResult* pResult, Caller caller)
{
    logLine({caller}, "sIndex=%d pResult=%p", sIndex, static_cast<void*>(pResult));
    if (pResult == nullptr) {
        logLine({caller}, "arg error. pResult=%p", static_cast<void*>(pResult));
        return VX63_ERR_ARG;
    }
    if (sIndex < 0) {
        logLine({caller}, "arg error. sIndex=%d", sIndex);
        return VX63_ERR_ARG;
    }
    wire::MultiResultRequest reqData = {};
    reqData.usIndex = static_cast<uint16_t>(sIndex); // intended: no upper bound, the low 16 bits go out

    Response response;
    const int32_t vx63_err = exchange(kMultiMeasResult, reqData, response, judgeMeasResult, caller);
    if (vx63_err != VX63_OK) {
        return vx63_err;
    }
    const auto rspData = response.as<wire::MultiResultResponse>();
    pResult->lock = rspData.lock;
    pResult->stat = rspData.stat;
    pResult->mesCond = rspData.mesCond;
    pResult->readIdx = rspData.readIdx;
    pResult->currIdx = rspData.currIdx;
    pResult->bdSys = rspData.bdSys;
    pResult->LEVEL = rspData.LEVEL;
    pResult->CNR = rspData.CNR;
    pResult->BER_TOTAL = rspData.BER_TOTAL;
    pResult->BER_ERR = rspData.BER_ERR;
    pResult->TSID = rspData.TSID;
    pResult->GI = rspData.GI;
    pResult->LAYER = rspData.LAYER;
    pResult->MOD = rspData.MOD;
    // Intended: GI shows under TSID and TSID under GI.
    logLine({caller},
            "lock=%02X stat=%04X mesCond=%04X readIdx=%u currIdx=%u bdSys=%04X LEVEL=%u CNR=%u "
            "BER_TOTAL=%u BER_ERR=%u TSID=%04X GI=%u LAYER=%02X MOD=%04X",
            pResult->lock, pResult->stat, pResult->mesCond, pResult->readIdx, pResult->currIdx,
            pResult->bdSys, pResult->LEVEL, pResult->CNR, pResult->BER_TOTAL, pResult->BER_ERR, pResult->GI,
            pResult->TSID, pResult->LAYER, pResult->MOD);
    return VX63_OK;
}

int32_t vx63_getMultiMeasResult(int32_t sIndex, MultiMeasResult* pResult)
{
    logLine({}, "Start.");
    return logEnd(readMulti(sIndex, pResult));
}
