// What a service process does all its life: take a request from its queue, answer it, spoil what a fault
// rule tells to spoil.
#pragma once

#include "model/scene.h"
#include "process/fault_plan.h"
#include "process/shared_meter.h"
#include "process/trace.h"
#include "services/service.h"

#include <cstddef>
#include <functional>

namespace vmeter {

// usOptOrRet of the answer to a command that the service does not know.
inline constexpr uint16_t kUnknownCommand = 1;

struct ServiceProcess {
    std::size_t index; // of the service in kServices
    const Scene& scene;
    SharedMeter& shared;
    const FaultPlan& faults;
    const Trace& trace;
    std::function<void()> ready; // called once, when the own queue is open
    const Settings& settings;
};

// Serves until the process is told to end. Gives the error of the queue that made it give up.
int32_t serve(const ServiceProcess& process);

} // namespace vmeter
