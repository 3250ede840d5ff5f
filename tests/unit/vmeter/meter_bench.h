// The virtual meter without processes and queues: its services called as the service loop does, over a scene
// without fluctuation.
#pragma once

#include "meas/wire.h"
#include "meas/wire_angle.h"
#include "meas/wire_multi.h"
#include "scene/load.h"
#include "services/power.h"
#include "services/results.h"
#include "services/service.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace vmeter {

namespace wire = vx63::wire;

// No fluctuation: the readings are those of the formulas.
inline const char* const kCalm = R"(
level_sigma_db = 0
cn_sigma_db = 0
noise_figure_db = 8

[[input]]
id = 0
lnb = { current_ma = 160 }

[[signal]]
input = 0
frequency_khz = 473143
system = "terrestrial"
carriers = "64QAM"
guard_interval = "1/4"
layers = 3
level_dbuv = 60
cn_db = 20
tsid = 0x7FE0
lock_ms = 300

[[signal]]
input = 0
frequency_khz = 11727480
lo_khz = 10678000
system = "satellite"
modulation = "8PSK"
level_dbuv = 75
cn_db = 17
tsid = 0x4010
supply = "15V"
lock_ms = 300

[[signal]]
input = 1
frequency_khz = 473143
system = "terrestrial"
carriers = "QPSK"
level_dbuv = 40
cn_db = 20
lock_ms = 300

[[signal]]
input = 1
frequency_khz = 231000
system = "catv"
modulation = "256QAM"
level_dbuv = 70
cn_db = 26
lock_ms = 0

[[signal]]
input = 1
frequency_khz = 451250
system = "level"
level_dbuv = 79.5
cn_db = 50
)";

class Bench {
public:
    explicit Bench(Scene scene) : scene_(std::move(scene))
    {
        state_.device = initialDeviceState(scene_.device);
    }
    explicit Bench(const std::string& text = kCalm) : Bench(parseScene(text, "test")) {}

    // The clock goes on, then the handler answers.
    Body call(const Service& service, uint16_t usCmd, const Body& request = Body(4))
    {
        const auto command = std::ranges::find(service.commands, usCmd, &Command::usCmd);
        if (command == service.commands.end())
            throw std::logic_error("no such command");
        state_.ulSimMs += scene_.clockMs;
        if (sleepsThrough(state_.device, service.ucProcId, usCmd))
            return resultBody(kRetStandby);
        Meter meter{scene_, state_, settings_};
        Body body = command->handler(meter, request);
        note_ = meter.note;
        return body;
    }

    // The result byte of an answer that carries nothing else.
    int ret(const Service& service, uint16_t usCmd, const Body& request = Body(4))
    {
        const Body body = call(service, usCmd, request);
        if (body.size() != 4)
            throw std::logic_error("more than a result");
        return body[0];
    }
    int ret(const Service& service, uint16_t usCmd, uint8_t ucArg)
    {
        return ret(service, usCmd, Body{ucArg, 0, 0, 0});
    }

    uint8_t start(const wire::StartRequest& start)
    {
        return call(kMeasurementService, 0x103, toBody(start))[0];
    }
    uint8_t stop()
    {
        Body body(40);
        return call(kMeasurementService, 0x103, body)[0];
    }
    uint8_t input(uint8_t ucInput)
    {
        return call(kMeasurementService, 0x100, {0, 0, 0, 0, ucInput, 0, 0, 0})[0];
    }
    uint8_t supply(uint8_t ucCode) { return call(kMeasurementService, 0x15, {ucCode, 0, 0, 0})[0]; }
    wire::SingleResultResponse result()
    {
        const Body body = call(kMeasurementService, 0x104, Body(4));
        EXPECT_EQ(body.size(), 44u);
        return bodyAs<wire::SingleResultResponse>(body);
    }
    wire::MeasStatusResponse status()
    {
        return bodyAs<wire::MeasStatusResponse>(call(kMeasurementService, 0x17, Body(4)));
    }
    wire::PowerSupplyInfoResponse supplyInfo()
    {
        return bodyAs<wire::PowerSupplyInfoResponse>(call(kDeviceService, 0x22, Body(4)));
    }

    // A response whose size must be that of its struct.
    template <class Response, class Request>
    Response ask(const Service& service, uint16_t usCmd, const Request& request)
    {
        const Body body = call(service, usCmd, toBody(request));
        EXPECT_EQ(body.size(), sizeof(Response)) << usCmd;
        return bodyAs<Response>(body);
    }

    Scene scene_;
    State state_{};
    Settings settings_;
    std::string note_;
};

inline wire::StartRequest terrestrial()
{
    wire::StartRequest start{};
    start.ucStartStop = 1;
    start.ulFreq = 473143;
    start.usMod = 1;
    start.usCondition = 0x0027;
    return start;
}

inline wire::StartRequest satellite()
{
    wire::StartRequest start{};
    start.ucStartStop = 1;
    start.ulFreq = 11727480;
    start.ulLoFreq = 10678000;
    start.usBdSys = 1;
    start.ucSupplyLevel = 2;
    return start;
}

inline wire::StartRequest catv()
{
    wire::StartRequest start{};
    start.ucStartStop = 1;
    start.ulFreq = 231000;
    start.usBdSys = 3;
    start.usMod = 5120;
    return start;
}

} // namespace vmeter
