// The delay profile: start, stop, reading it block by block.
#include "frame/call.h"
#include "libvx63.h"
#include "meas/condition.h"
#include "meas/wire.h"

#include <cstring>

using namespace vx63;

static_assert(sizeof(DlyPrfResult) == 2050);
static_assert(offsetof(DlyPrfResult, stat) == 0);
static_assert(offsetof(DlyPrfResult, ucDlyPrfData) == 2);

// Start and stop share a command; the body tells them apart.
static constexpr Request kDlyPrfMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0107, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_startDlyPrfMeas(uint8_t ucDispType, const MeasCondition* pCondition)
{
    logLine({}, "Start.");
    if (pCondition == nullptr) {
        logLine({}, "arg error. pCondition=%p", static_cast<const void*>(pCondition));
        return logEnd(VX63_ERR_ARG);
    }
    const wire::StartRequest reqData = packStart(ucDispType, *pCondition);

    return logEnd(exchange(kDlyPrfMeas, reqData, judgeMeas));
}

int32_t vx63_stopDlyPrfMeas(uint8_t ucDispType)
{
    logLine({}, "Start.");
    const wire::StartRequest reqData = packStop(ucDispType);

    return logEnd(exchange(kDlyPrfMeas, reqData, judgeMeas));
}

static constexpr Request kDlyPrfResult = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0108, .ulTimeout = 10000, .commFailed = "subcpu"};

// usStatus of a block.
static constexpr uint16_t kMeasuring = 1;
static constexpr uint16_t kComplete = 2;

int32_t vx63_getDlyPrfResult(DlyPrfResult* pResult)
{
    constexpr int32_t kLastBlock = 5;
    constexpr size_t kBlockSize = sizeof wire::DlyPrfResponse::data;
    constexpr size_t kLastBlockSize = sizeof pResult->ucDlyPrfData - kLastBlock * kBlockSize;

    logLine({}, "Start.");
    if (pResult == nullptr) {
        logLine({}, "arg error. pResult=%p", static_cast<void*>(pResult));
        return logEnd(VX63_ERR_ARG);
    }
    int32_t lBlockCnt = 0;
    while (lBlockCnt <= kLastBlock) {
        wire::DlyPrfRequest reqData = {};
        reqData.usBlockNo = static_cast<uint16_t>(lBlockCnt);

        Response response;
        const int32_t vx63_err = exchange(kDlyPrfResult, reqData, response, judgeMeasResult);
        if (vx63_err != VX63_OK) {
            return logEnd(vx63_err);
        }
        const auto usReadBlockNo = response.field<uint16_t>(offsetof(wire::DlyPrfResponse, usReadBlockNo));
        const auto usStatus = response.field<uint16_t>(offsetof(wire::DlyPrfResponse, usStatus));
        const uint8_t* const data = response.bytes + offsetof(wire::DlyPrfResponse, data);
        if (usReadBlockNo != lBlockCnt) {
            // Intended: asked for again for as long as the service answers with another block.
            logLine({}, "DLYPRF continue. lBlockCnt(%d) != rspData.usReadBlockNo(%u)", lBlockCnt,
                    usReadBlockNo);
            continue;
        }
        logLine({}, "DLYPRF non continue. lBlockCnt(%d) == rspData.usReadBlockNo(%u)", lBlockCnt,
                usReadBlockNo);
        if (usStatus != kComplete) {
            if (usStatus == kMeasuring) {
                logLine({}, "DLYPRF status data ing. rspData.usStatus=%d", usStatus);
            } else {
                logLine({}, "DLYPRF status data none. rspData.usStatus=%d", usStatus);
            }
            pResult->stat = usStatus;
            return logEnd(VX63_OK);
        }
        int8_t* const samples = pResult->ucDlyPrfData + kBlockSize * static_cast<size_t>(lBlockCnt);
        if (lBlockCnt < kLastBlock) {
            memcpy(samples, data, kBlockSize);
            logLine({}, "DLYPRF blk%d get.", lBlockCnt);
        } else {
            memcpy(samples, data, kLastBlockSize);
            logLine({}, "stat=%04X", usStatus);
            for (int32_t i = 0; i < VX63_DLYPRF_SAMPLES; ++i) {
                logLine({}, "pResult->ucDlyPrfData[%d]=%d", i, pResult->ucDlyPrfData[i]);
            }
        }
        pResult->stat = usStatus;
        ++lBlockCnt;
    }
    return logEnd(VX63_OK);
}
