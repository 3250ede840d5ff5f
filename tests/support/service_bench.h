// The services of the virtual meter without processes and queues: the handlers, called as the service loop
// calls them.
#pragma once

#include "power.h"
#include "service.h"
#include "services/results.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace vmeter {

class ServiceBench {
public:
    explicit ServiceBench(const std::string& scene = "") : scene_(parseScene(scene, "test"))
    {
        state_.device = initialDeviceState(scene_.device);
    }

    Body call(const Service& service, uint16_t usCmd, const Body& request = Body(4))
    {
        const auto command = std::ranges::find(service.commands, usCmd, &Command::usCmd);
        if (command == service.commands.end())
            throw std::logic_error("no such command");
        state_.ulSimMs += scene_.clockMs;
        Meter meter{scene_, state_, settings_};
        if (sleepsThrough(state_.device, service.ucProcId, usCmd))
            return resultBody(kRetStandby);
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

    Scene scene_;
    State state_{};
    Settings settings_;
    std::string note_;
};

} // namespace vmeter
