// The antenna angle sensor: on and off, calibration, live values. Served by the device service, for whose
// answers 7 is no success.
#include "frame/call.h"
#include "libvx63.h"
#include "meas/wire.h"
#include "meas/wire_angle.h"

#include <cstring>

using namespace vx63;

static_assert(sizeof(AnglePoint) == 12);
static_assert(offsetof(AnglePoint, x) == 0);
static_assert(offsetof(AnglePoint, y) == 4);
static_assert(offsetof(AnglePoint, z) == 8);

static_assert(sizeof(AngleCalStat) == 40);
static_assert(offsetof(AngleCalStat, lStatus) == 0);
static_assert(offsetof(AngleCalStat, centerPoint1) == 4);
static_assert(offsetof(AngleCalStat, centerPoint2) == 16);
static_assert(offsetof(AngleCalStat, centerPoint3) == 28);

static_assert(sizeof(AngleCalInfoDetail) == sizeof(wire::AngleDetail));
static_assert(offsetof(AngleCalInfoDetail, flRoll) == 0);
static_assert(offsetof(AngleCalInfoDetail, flPitch) == 4);
static_assert(offsetof(AngleCalInfoDetail, flAx) == 8);
static_assert(offsetof(AngleCalInfoDetail, flAy) == 12);
static_assert(offsetof(AngleCalInfoDetail, flAz) == 16);
static_assert(offsetof(AngleCalInfoDetail, flMx) == 20);
static_assert(offsetof(AngleCalInfoDetail, flMy) == 24);
static_assert(offsetof(AngleCalInfoDetail, flMz) == 28);
static_assert(offsetof(AngleCalInfoDetail, flAxRot) == 32);
static_assert(offsetof(AngleCalInfoDetail, flAyRot) == 36);
static_assert(offsetof(AngleCalInfoDetail, flAzRot) == 40);
static_assert(offsetof(AngleCalInfoDetail, flMxRot) == 44);
static_assert(offsetof(AngleCalInfoDetail, flMyRot) == 48);
static_assert(offsetof(AngleCalInfoDetail, flMzRot) == 52);

// Start and stop share a command; the body tells them apart. Intended: unlike the calibration, a failed
// exchange is told as one with the "subcpu".
static constexpr Request kAngleMeas = {
    .ucDstId = PROC_ID_PDEV, .usCmd = 0x0007, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_startAngleMeas(void)
{
    logLine({}, "Start.");
    const wire::ByteRequest reqData = {.ucArg = wire::kStart};

    return logEnd(exchange(kAngleMeas, reqData, judge));
}

int32_t vx63_stopAngleMeas(void)
{
    logLine({}, "Start.");
    const wire::ByteRequest reqData = {.ucArg = wire::kStop};

    return logEnd(exchange(kAngleMeas, reqData, judge));
}

static constexpr Request kStartAngleCal = {
    .ucDstId = PROC_ID_PDEV, .usCmd = 0x001F, .ulTimeout = 10000, .commFailed = "PROC_ID_PDEV"};

int32_t vx63_startAngleCal(void)
{
    logLine({}, "Start.");
    return logEnd(exchange(kStartAngleCal, wire::ByteRequest{}, judge));
}

static constexpr Request kGetAngleCalStat = {
    .ucDstId = PROC_ID_PDEV, .usCmd = 0x0020, .ulTimeout = 10000, .commFailed = "PROC_ID_PDEV"};

// Intended: the pointer is not tested.
int32_t vx63_getAngleCalStat(AngleCalStat* pStat)
{
    logLine({}, "Start.");
    Response response;
    const int32_t vx63_err = exchange(kGetAngleCalStat, wire::ByteRequest{}, response, judge);
    if (vx63_err == VX63_OK) {
        const auto rspData = response.as<wire::AngleCalStatResponse>();
        pStat->lStatus = rspData.lStatus;
        // As bytes: a float that is no number may lose some of its bits when it is assigned.
        memcpy(&pStat->centerPoint1, rspData.centerPoint1, sizeof pStat->centerPoint1);
        memcpy(&pStat->centerPoint2, rspData.centerPoint2, sizeof pStat->centerPoint2);
        memcpy(&pStat->centerPoint3, rspData.centerPoint3, sizeof pStat->centerPoint3);
        // Intended: the line ends with a comma and a blank.
        logLine({},
                "lStatus=%d, centerPoint1=(%f, %f, %f), centerPoint2=(%f, %f, %f), "
                "centerPoint3=(%f, %f, %f), ",
                pStat->lStatus, pStat->centerPoint1.x, pStat->centerPoint1.y, pStat->centerPoint1.z,
                pStat->centerPoint2.x, pStat->centerPoint2.y, pStat->centerPoint2.z, pStat->centerPoint3.x,
                pStat->centerPoint3.y, pStat->centerPoint3.z);
    }
    return logEnd(vx63_err);
}

static constexpr Request kGetAngleCalInfoDetail = {
    .ucDstId = PROC_ID_PDEV, .usCmd = 0x0021, .ulTimeout = 10000, .commFailed = "PROC_ID_PDEV"};

// Intended: the pointer is not tested.
int32_t vx63_getAngleCalInfoDetail(AngleCalInfoDetail* pInfo)
{
    logLine({}, "Start.");
    Response response;
    const int32_t vx63_err = exchange(kGetAngleCalInfoDetail, wire::ByteRequest{}, response, judge);
    if (vx63_err == VX63_OK) {
        const auto rspData = response.as<wire::AngleCalInfoDetailResponse>();
        memcpy(pInfo, &rspData.detail, sizeof *pInfo); // as bytes: see vx63_getAngleCalStat
        logLine({},
                "flRoll=%f, flPitch=%f, flAx=%f, flAy=%f, flAz=%f, flMx=%f, flMy=%f, flMz=%f, "
                "flAxRot=%f, flAyRot=%f, flAzRot=%f, flMxRot=%f, flMyRot=%f, flMzRot=%f",
                pInfo->flRoll, pInfo->flPitch, pInfo->flAx, pInfo->flAy, pInfo->flAz, pInfo->flMx,
                pInfo->flMy, pInfo->flMz, pInfo->flAxRot, pInfo->flAyRot, pInfo->flAzRot, pInfo->flMxRot,
                pInfo->flMyRot, pInfo->flMzRot);
    }
    return logEnd(vx63_err);
}
