// Bodies of the angle sensor's commands. Floats are IEEE-754 single precision.
#pragma once

#include "frame/wire.h"

#include <limits>

namespace vx63::wire {

static_assert(std::numeric_limits<float>::is_iec559 && sizeof(float) == 4);

// Progress of the calibration: 0x20.
struct AngleCalStatResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    int32_t lStatus;
    float centerPoint1[3]; // x, y, z
    float centerPoint2[3];
    float centerPoint3[3];
};
static_assert(sizeof(AngleCalStatResponse) == 44 && std::is_trivially_copyable_v<AngleCalStatResponse>);
static_assert(offsetof(AngleCalStatResponse, ucRet) == 0);
static_assert(offsetof(AngleCalStatResponse, lStatus) == 4);
static_assert(offsetof(AngleCalStatResponse, centerPoint1) == 8);
static_assert(offsetof(AngleCalStatResponse, centerPoint2) == 20);
static_assert(offsetof(AngleCalStatResponse, centerPoint3) == 32);

// Live values of the sensor: 0x21.
struct AngleDetail {
    float flRoll;
    float flPitch;
    float flAx;
    float flAy;
    float flAz;
    float flMx;
    float flMy;
    float flMz;
    float flAxRot;
    float flAyRot;
    float flAzRot;
    float flMxRot;
    float flMyRot;
    float flMzRot;
};
static_assert(sizeof(AngleDetail) == 56 && std::is_trivially_copyable_v<AngleDetail>);
static_assert(offsetof(AngleDetail, flRoll) == 0);
static_assert(offsetof(AngleDetail, flPitch) == 4);
static_assert(offsetof(AngleDetail, flAx) == 8);
static_assert(offsetof(AngleDetail, flAy) == 12);
static_assert(offsetof(AngleDetail, flAz) == 16);
static_assert(offsetof(AngleDetail, flMx) == 20);
static_assert(offsetof(AngleDetail, flMy) == 24);
static_assert(offsetof(AngleDetail, flMz) == 28);
static_assert(offsetof(AngleDetail, flAxRot) == 32);
static_assert(offsetof(AngleDetail, flAyRot) == 36);
static_assert(offsetof(AngleDetail, flAzRot) == 40);
static_assert(offsetof(AngleDetail, flMxRot) == 44);
static_assert(offsetof(AngleDetail, flMyRot) == 48);
static_assert(offsetof(AngleDetail, flMzRot) == 52);

struct AngleCalInfoDetailResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    AngleDetail detail;
};
static_assert(sizeof(AngleCalInfoDetailResponse) == 60);
static_assert(std::is_trivially_copyable_v<AngleCalInfoDetailResponse>);
static_assert(offsetof(AngleCalInfoDetailResponse, ucRet) == 0);
static_assert(offsetof(AngleCalInfoDetailResponse, detail) == 4);

} // namespace vx63::wire
