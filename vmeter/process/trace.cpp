#include "process/trace.h"

#include "frame/wire.h"
#include "services/service.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace vmeter {
namespace {

using vx63::wire::LibMsgHead;

const Service* findService(uint8_t ucProcId)
{
    for (const Service* service : kServices)
        if (service->ucProcId == ucProcId)
            return service;
    return nullptr;
}

std::string partyName(uint8_t ucProcId)
{
    const Service* const service = findService(ucProcId);
    return service ? service->name : "client " + std::to_string(ucProcId);
}

std::string commandName(uint8_t ucProcId, uint16_t usCmd)
{
    const auto code = static_cast<uint16_t>(usCmd & ~vx63::wire::kResponseBit);
    if (const Service* const service = findService(ucProcId))
        for (const Command& command : service->commands)
            if (command.usCmd == code)
                return command.name;
    char text[sizeof "0xFFFF"];
    std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(code));
    return text;
}

std::string hex(std::span<const uint8_t> bytes)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

} // namespace

std::string traceLine(double seconds, uint8_t ucProcId, std::span<const uint8_t> message, uint64_t simMs,
                      const TraceRemark& remark)
{
    nlohmann::ordered_json line;
    line["time"] = seconds;
    line["sim_ms"] = simMs;
    LibMsgHead head{};
    if (message.size() >= sizeof head) {
        std::memcpy(&head, message.data(), sizeof head);
        message = message.subspan(sizeof head);
        line["from"] = partyName(head.ucSrcId);
        line["to"] = partyName(head.ucDstId);
        line["from_id"] = head.ucSrcId;
        line["to_id"] = head.ucDstId;
        line["command"] = commandName(ucProcId, head.usCmd);
        line["kind"] = (head.usCmd & vx63::wire::kResponseBit) != 0 ? "response" : "request";
        line["ucSrcId"] = head.ucSrcId;
        line["ucDstId"] = head.ucDstId;
        line["usCmd"] = head.usCmd;
        line["usDataLen"] = head.usDataLen;
        line["usOptOrRet"] = head.usOptOrRet;
    } else { // not even a header
        line["to"] = partyName(ucProcId);
        line["to_id"] = ucProcId;
    }
    line["body"] = hex(message);
    if (!remark.fault.empty())
        line["fault"] = remark.fault;
    if (!remark.note.empty())
        line["note"] = remark.note;
    return line.dump() + "\n";
}

void Trace::write(uint8_t ucProcId, std::span<const uint8_t> message, uint64_t simMs,
                  const TraceRemark& remark) const
{
    if (m_descriptor < 0)
        return;
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    const double seconds =
        static_cast<double>(time.tv_sec) + std::round(static_cast<double>(time.tv_nsec) / 1e3) / 1e6;
    const std::string line = traceLine(seconds, ucProcId, message, simMs, remark);
    [[maybe_unused]] const ssize_t written = ::write(m_descriptor, line.data(), line.size());
}

} // namespace vmeter
