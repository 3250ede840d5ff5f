#include "vmeter_fault_stub.h"

#include <stdexcept>

vmeter::FaultRule vmeter::makeFault(std::string_view service, std::string_view command, uint32_t first,
                                    uint32_t last, double probability, std::string_view kind,
                                    std::optional<uint32_t> value)
{
    if (kind == "impossible")
        throw std::invalid_argument("no such fault");
    g_faultCalls.push_back(
        {std::string(service), std::string(command), first, last, probability, std::string(kind), value});
    FaultRule rule;
    rule.first = first;
    rule.last = last;
    return rule;
}
