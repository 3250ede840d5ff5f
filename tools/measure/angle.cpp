// vx63 measure angle and vx63 angle calibrate: the sensor on the antenna.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/numbers.h"
#include "common/output.h"
#include "common/running.h"
#include "common/table.h"
#include "common/text.h"
#include "libvx63.h"

#include <chrono>
#include <cmath>
#include <numbers>
#include <optional>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int32_t kFinished = 4; // of the calibration; 1 to 3 are its turns
constexpr milliseconds kPollTime{50};

struct MeasureOptions {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

struct CalibrateOptions {
    int32_t id = kDefaultProcessId;
    int64_t timeoutMs = 60000;
    bool json = false;
};

// Clockwise from magnetic north, 0 to 360 degrees; true only of a calibrated sensor.
double headingOf(const AngleCalInfoDetail& info)
{
    const double heading = std::atan2(-info.flMyRot, info.flMxRot) * 180 / std::numbers::pi;
    return heading < 0 ? heading + 360 : heading;
}

// Floats arrive bit for bit: what is no number is null in JSON by itself.
Json vectorJson(float x, float y, float z)
{
    const auto number = [](float value) { return rounded(static_cast<double>(value), 3); };
    return Json::array({number(x), number(y), number(z)});
}

std::string vectorText(float x, float y, float z, const char* unit)
{
    return format("%.3f, %.3f, %.3f %s", static_cast<double>(x), static_cast<double>(y),
                  static_cast<double>(z), unit);
}

std::string vectorText(const AnglePoint& point)
{
    return vectorText(point.x, point.y, point.z, "uT");
}

AngleCalStat readCalibration()
{
    AngleCalStat status{};
    require("cannot read the calibration", [&] { return vx63_getAngleCalStat(&status); });
    return status;
}

int measureAngle(const MeasureOptions& options)
{
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    AngleCalInfoDetail info{};
    AngleCalStat calibration{};
    {
        Running running("the angle sensor", vx63_startAngleMeas, vx63_stopAngleMeas);
        if (interruption() == 0) {
            require("cannot read the angle sensor", [&] { return vx63_getAngleCalInfoDetail(&info); });
            calibration = readCalibration();
        }
        running.stop();
    }
    if (interruption() != 0)
        return kExitSignal + interruption();
    const bool calibrated = calibration.lStatus == kFinished;
    if (options.json) {
        const Json json = {
            {"roll_deg", rounded(static_cast<double>(info.flRoll), 2)},
            {"pitch_deg", rounded(static_cast<double>(info.flPitch), 2)},
            {"heading_deg", calibrated ? Json(rounded(headingOf(info), 1)) : Json()},
            {"calibrated", calibrated},
            {"acceleration_g", vectorJson(info.flAx, info.flAy, info.flAz)},
            {"field_ut", vectorJson(info.flMx, info.flMy, info.flMz)},
            {"level_acceleration_g", vectorJson(info.flAxRot, info.flAyRot, info.flAzRot)},
            {"level_field_ut", vectorJson(info.flMxRot, info.flMyRot, info.flMzRot)},
        };
        print(json.line());
    } else {
        print(aligned({
            {"Roll", format("%.1f deg", static_cast<double>(info.flRoll))},
            {"Pitch", format("%.1f deg", static_cast<double>(info.flPitch))},
            {"Heading", calibrated ? format("%.1f deg", headingOf(info)) : "- (not calibrated)"},
            {"Acceleration", vectorText(info.flAx, info.flAy, info.flAz, "g")},
            {"Magnetic field", vectorText(info.flMx, info.flMy, info.flMz, "uT")},
            {"Level acceleration", vectorText(info.flAxRot, info.flAyRot, info.flAzRot, "g")},
            {"Level field", vectorText(info.flMxRot, info.flMyRot, info.flMzRot, "uT")},
        }));
    }
    return kExitSuccess;
}

Json pointJson(const AnglePoint& point)
{
    return vectorJson(point.x, point.y, point.z);
}

int calibrate(const CalibrateOptions& options)
{
    const Identity identity(options.id);
    catchInterruption("\nvx63: the meter goes on with the calibration, which cannot be stopped\n");
    require("cannot start the calibration", vx63_startAngleCal);
    std::optional<Progress> progress(std::in_place);
    const auto deadline = Clock::now() + milliseconds(options.timeoutMs);
    AngleCalStat status = readCalibration();
    while (status.lStatus != kFinished) {
        if (interruption() != 0)
            return kExitSignal + interruption();
        if (Clock::now() >= deadline)
            throw Failure(kExitCommunication, "cannot calibrate the angle sensor",
                          format("not finished after %g s, state %d",
                                 static_cast<double>(options.timeoutMs) / 1000, status.lStatus),
                          "wait longer with --timeout");
        progress->show(status.lStatus >= 1 && status.lStatus < kFinished
                           ? format("Calibrating: turn %d of 3", status.lStatus)
                           : format("Calibrating: state %d", status.lStatus));
        waitFor(kPollTime);
        status = readCalibration();
    }
    progress.reset();
    if (options.json) {
        const Json json = {
            {"state_code", status.lStatus},
            {"centre_points_ut", Json::array({pointJson(status.centerPoint1), pointJson(status.centerPoint2),
                                              pointJson(status.centerPoint3)})}};
        print(json.line());
    } else {
        print(aligned({{"Calibration", "finished"},
                       {"Centre point 1", vectorText(status.centerPoint1)},
                       {"Centre point 2", vectorText(status.centerPoint2)},
                       {"Centre point 3", vectorText(status.centerPoint3)}}));
    }
    return kExitSuccess;
}

} // namespace

void addMeasureAngle(CommandLine& measure)
{
    measure.addCommand("angle", "Read the angle sensor on the antenna", "vx63 measure angle", measureAngle);
}

void addAngle(CommandLine& program)
{
    program.addGroup("angle", "Calibrate the angle sensor", "vx63 angle calibrate")
        .addCommand("calibrate", "Calibrate the angle sensor, in three turns of the antenna",
                    "vx63 angle calibrate --timeout 300", calibrate,
                    [](CommandLine& line, CalibrateOptions& options) {
                        line.seconds("--timeout", options.timeoutMs,
                                     "How long to wait for the end, in seconds [60]", 0, 3600);
                    });
}

} // namespace tool
