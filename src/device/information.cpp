// What the meter is and how it is: product data, failure, key states, device status.
//
// The responses carry no result byte: one that arrives is the answer. Only vx63_getProductInfo logs its
// start and its end.
#include "device/wire.h"
#include "frame/call.h"
#include "libvx63.h"

#include <cstdio>
#include <cstring>
#include <iterator>

using namespace vx63;

// Product information and failure are copied whole: record and body have one layout.
static_assert(sizeof(ProductInfo) == sizeof(wire::ProductInfoResponse));
static_assert(offsetof(ProductInfo, cModelCode) == 0);
static_assert(offsetof(ProductInfo, cOptInfo) == 8);
static_assert(offsetof(ProductInfo, cSerialNo) == 13);
static_assert(offsetof(ProductInfo, cBootPrgVer) == 25);
static_assert(offsetof(ProductInfo, cMainPrgVer) == 41);
static_assert(offsetof(ProductInfo, cSubPrgVer) == 57);
static_assert(offsetof(ProductInfo, cQtVer) == 73);
static_assert(offsetof(ProductInfo, cProductVer) == 89);

static_assert(sizeof(FailInfo) == sizeof(wire::FailInfoResponse));
static_assert(offsetof(FailInfo, usCode) == 0);
static_assert(offsetof(FailInfo, ucStat) == 2);
static_assert(offsetof(FailInfo, ucCtl) == 3);
static_assert(offsetof(FailInfo, usWait) == 4);
static_assert(offsetof(FailInfo, ucReserved) == 6);
static_assert(offsetof(FailInfo, ucAddInfo) == 8);

static_assert(sizeof(KeyStatus) == 68);
static_assert(offsetof(KeyStatus, stat) == 0);

static_assert(sizeof(DeviceStatus) == 20);
static_assert(offsetof(DeviceStatus, usStat0) == 0);
static_assert(offsetof(DeviceStatus, ucStat2) == 2);
static_assert(offsetof(DeviceStatus, ucStat6) == 3);
static_assert(offsetof(DeviceStatus, ulStat3) == 4);
static_assert(offsetof(DeviceStatus, ulStat4) == 8);
static_assert(offsetof(DeviceStatus, ulStat5) == 12);
static_assert(offsetof(DeviceStatus, usStat8) == 16);

static constexpr Request kGetProductInfo = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x0005, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_getProductInfo(ProductInfo* pProductInfo)
{
    logLine({}, "Start.");
    if (pProductInfo == nullptr) {
        logLine({}, "arg error. pProductInfo=%p", static_cast<void*>(pProductInfo));
        return logEnd(VX63_ERR_ARG);
    }
    Response response;
    const int32_t vx63_err = exchange(kGetProductInfo, wire::ByteRequest{}, response, judgeNothing);
    if (vx63_err == VX63_OK) {
        const auto rspData = response.as<wire::ProductInfoResponse>();
        memcpy(pProductInfo, &rspData, sizeof *pProductInfo);
        // The precisions are the widths of the fields: one that is full has no terminator.
        logLine({},
                "cModelCode=%.8s, cOptInfo=%.5s, cSerialNo=%.12s, cBootPrgVer=%.16s, cMainPrgVer=%.16s, "
                "cSubPrgVer=%.16s, cQtVer=%.16s, cProductVer=%.16s",
                pProductInfo->cModelCode, pProductInfo->cOptInfo, pProductInfo->cSerialNo,
                pProductInfo->cBootPrgVer, pProductInfo->cMainPrgVer, pProductInfo->cSubPrgVer,
                pProductInfo->cQtVer, pProductInfo->cProductVer);
    }
    return logEnd(vx63_err);
}

static constexpr Request kGetFailinfo = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x0004, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_getFailinfo(FailInfo* pFail)
{
    if (pFail == nullptr) {
        logLine({}, "arg error. pFail=%p", static_cast<void*>(pFail));
        return VX63_ERR_ARG;
    }
    Response response;
    const int32_t vx63_err = exchange(kGetFailinfo, wire::ByteRequest{}, response, judgeNothing);
    if (vx63_err == VX63_OK) {
        const auto rspData = response.as<wire::FailInfoResponse>();
        memcpy(pFail, &rspData, sizeof *pFail);

        constexpr size_t kAddInfoSize = sizeof pFail->ucAddInfo;
        char addInfo[kAddInfoSize * sizeof "0XFF, "];
        size_t used = 0;
        for (size_t i = 0; i < kAddInfoSize; ++i) {
            used += static_cast<size_t>(snprintf(addInfo + used, sizeof addInfo - used, "%s%#02X",
                                                 i == 0 ? "" : ", ", pFail->ucAddInfo[i]));
        }
        logLine({}, "usCode=0x%04X, ucStat=%u, ucCtl=%u, usWait=%d, ucAddInfo[0]-[31]= %s", pFail->usCode,
                pFail->ucStat, pFail->ucCtl, static_cast<int16_t>(pFail->usWait), addInfo);
    }
    return vx63_err;
}

static constexpr Request kGetKeyStatus = {
    .ucDstId = PROC_ID_PKEY, .usCmd = 0x0008, .ulTimeout = 10000, .commFailed = "PROC_ID_PKEY"};

// Intended: a success leaves no line in any log; a failure leaves the key states as the caller still has
// them.
int32_t vx63_getKeyStatus(KeyStatus* pKeyStat)
{
    if (pKeyStat == nullptr) {
        logLine({}, "arg error. pKeyStat=%p", static_cast<void*>(pKeyStat));
        return VX63_ERR_ARG;
    }
    Response response;
    const int32_t vx63_err = exchange(kGetKeyStatus, wire::ByteRequest{}, response, judgeNothing);
    if (vx63_err != VX63_OK) {
        for (int i = 0; i < VX63_KEYS; ++i) {
            logKeyLine({}, "pKeyStat->stat[%d]=%d", i, pKeyStat->stat[i]);
        }
        return vx63_err;
    }
    const auto rspData = response.as<wire::KeyStatusResponse>();
    static_assert(std::size(rspData.stat) == VX63_KEYS);
    for (int i = 0; i < VX63_KEYS; ++i) {
        pKeyStat->stat[i] = rspData.stat[i];
    }
    return VX63_OK;
}

static constexpr Request kGetDeviceStatus = {
    .ucDstId = PROC_ID_PDEV, .usCmd = 0x0006, .ulTimeout = 10000, .commFailed = "PROC_ID_PDEV"};

int32_t vx63_getDeviceStatus(DeviceStatus* pDevStat)
{
    if (pDevStat == nullptr) {
        logLine({}, "arg error. pDevStat=%p", static_cast<void*>(pDevStat));
        return VX63_ERR_ARG;
    }
    Response response;
    const int32_t vx63_err = exchange(kGetDeviceStatus, wire::ByteRequest{}, response, judgeNothing);
    if (vx63_err == VX63_OK) {
        const auto rspData = response.as<wire::DeviceStatusResponse>();
        pDevStat->usStat0 = rspData.usStat0;
        pDevStat->ucStat2 = rspData.ucStat2;
        pDevStat->ucStat6 = rspData.ucStat6;
        pDevStat->ulStat3 = rspData.ucStat3;
        pDevStat->ulStat4 = rspData.ucStat4;
        pDevStat->ulStat5 = rspData.ucStat5;
        pDevStat->usStat8 = rspData.usStat8;
    }
    return vx63_err;
}

static constexpr Request kSetFailStat = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x0011, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_setFailStat(uint16_t usCode, uint8_t ucStat, const uint8_t* ucAddInfo)
{
    constexpr uint8_t kStatMax = 1;

    if (ucStat > kStatMax) {
        logLine({}, "arg error. ucStat=%u", ucStat);
        return VX63_ERR_ARG;
    }
    if (ucAddInfo == nullptr) {
        logLine({}, "arg error. ucAddInfo=%p", static_cast<const void*>(ucAddInfo));
        return VX63_ERR_ARG;
    }
    logLine({}, "usCode=0x%04X, ucStat=%u", usCode, ucStat);
    wire::SetFailStatRequest reqData = {};
    reqData.usCode = usCode;
    reqData.ucStat = ucStat;
    memcpy(reqData.ucAddInfo, ucAddInfo, sizeof reqData.ucAddInfo);

    return exchange(kSetFailStat, reqData, judgeNothing);
}
