// The angle sensor and its calibration.
#include "signal/angle.h"
#include "meas/wire.h"
#include "meas/wire_angle.h"
#include "services/device.h"
#include "services/results.h"

namespace vmeter {
namespace {

namespace wire = vx63::wire;

void put(const Vector& v, float& x, float& y, float& z)
{
    x = static_cast<float>(v.x);
    y = static_cast<float>(v.y);
    z = static_cast<float>(v.z);
}

bool isCalibrating(const State& state)
{
    const int32_t lStatus = calibrationStatus(state);
    return lStatus >= 1 && lStatus <= kTurns;
}

} // namespace

Body angleStart(Meter& meter, std::span<const uint8_t> request)
{
    const auto onOff = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof onOff || onOff.ucArg > wire::kStart)
        return resultBody(kRetParameter);
    meter.state.angle.ucOn = onOff.ucArg;
    return resultBody(kRetOk);
}

Body angleCalibrationStart(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return resultBody(kRetParameter);
    meter.state.angle.ucCalibration = 1;
    meter.state.angle.ulCalibrationMs = meter.state.ulSimMs;
    return resultBody(kRetOk);
}

Body angleCalibrationStatus(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return refusalBody<wire::AngleCalStatResponse>(kRetParameter);
    wire::AngleCalStatResponse response{};
    response.lStatus = calibrationStatus(meter.state);
    float* const points[kTurns] = {response.centerPoint1, response.centerPoint2, response.centerPoint3};
    for (int32_t turn = 0; turn + 1 < response.lStatus; ++turn)
        put(centerPoint(meter, turn), points[turn][0], points[turn][1], points[turn][2]);
    return toBody(response);
}

Body angleDetail(Meter& meter, std::span<const uint8_t> request)
{
    using Response = wire::AngleCalInfoDetailResponse;
    if (request.size() < sizeof(wire::ByteRequest))
        return refusalBody<Response>(kRetParameter);
    if (!meter.state.angle.ucOn && !isCalibrating(meter.state))
        return refusalBody<Response>(kRetNotRunning);
    const AngleReading reading = readAngle(meter);
    Response response{};
    wire::AngleDetail& detail = response.detail;
    detail.flRoll = static_cast<float>(reading.rollDeg);
    detail.flPitch = static_cast<float>(reading.pitchDeg);
    put(reading.acceleration, detail.flAx, detail.flAy, detail.flAz);
    put(reading.field, detail.flMx, detail.flMy, detail.flMz);
    put(reading.levelAcceleration, detail.flAxRot, detail.flAyRot, detail.flAzRot);
    put(reading.levelField, detail.flMxRot, detail.flMyRot, detail.flMzRot);
    return toBody(response);
}

} // namespace vmeter
