#include "process/service_loop.h"

#include "frame/wire.h"
#include "lmsg.h"
#include "scene/fault_rules.h"
#include "services/power.h"
#include "services/results.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <unistd.h>
#include <vector>

namespace vmeter {
namespace {

using Clock = std::chrono::steady_clock;
using Message = std::vector<uint8_t>;
using vx63::wire::LibMsgHead;

static_assert(vx63::wire::kMessageSize == LMSG_SIZE_MAX);

// A client that does not read must not keep the others waiting.
constexpr uint32_t kSendMs = 200;

// Ids that clients have: those of the process table, and 255, which a thread without an id sends from.
bool isClient(uint8_t ucProcId)
{
    return ucProcId <= 17 || ucProcId == 255;
}

LibMsgHead headOf(const Message& message)
{
    LibMsgHead head;
    std::memcpy(&head, message.data(), sizeof head);
    return head;
}

void setHead(Message& message, const LibMsgHead& head)
{
    std::memcpy(message.data(), &head, sizeof head);
}

Message makeMessage(LibMsgHead head, const Body& body)
{
    head.usDataLen = static_cast<uint16_t>(body.size());
    Message message(sizeof head + body.size());
    setHead(message, head);
    std::copy(body.begin(), body.end(), message.begin() + sizeof head);
    return message;
}

// While one lives, the request to end waits: no message is taken from the queue in vain, no line of the
// trace is cut.
class Undisturbed {
public:
    Undisturbed() { block(SIG_BLOCK); }
    ~Undisturbed() { block(SIG_UNBLOCK); }
    Undisturbed(const Undisturbed&) = delete;
    Undisturbed& operator=(const Undisturbed&) = delete;

private:
    static void block(int how)
    {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGTERM);
        sigprocmask(how, &signals, nullptr);
    }
};

class ServiceLoop {
public:
    explicit ServiceLoop(const ServiceProcess& process)
        : m_process(process), m_service(*kServices[process.index])
    {}

    int32_t run()
    {
        uint32_t timeout = 0; // the first look opens the queue
        bool opened = false;
        for (;;) {
            uint8_t buffer[LMSG_SIZE_MAX];
            uint32_t length = 0;
            const int32_t result = lmsg_trcvMq(m_service.ucProcId, buffer, sizeof buffer, &length, timeout);
            if (result != LMSG_OK && result != LMSG_ERR_TIMEOUT)
                return result;
            const Undisturbed undisturbed;
            if (!opened) {
                m_process.ready();
                opened = true;
            }
            if (result == LMSG_OK)
                take(Message(buffer, buffer + length));
            timeout = sendDue();
        }
    }

private:
    struct Late {
        Clock::time_point due;
        Message answer;
        uint64_t simMs;
        std::string note;
    };

    void take(const Message& message)
    {
        const std::string reason = reasonToIgnore(message);
        if (!reason.empty()) {
            trace(message, m_process.shared.simMs(), {"", "ignored: " + reason});
            return;
        }
        const State state = m_process.shared.state();
        if (const std::string_view silence = reasonForSilence(state.device, steadyMs()); !silence.empty()) {
            trace(message, state.ulSimMs, {"", "ignored: " + std::string(silence)});
            return;
        }

        const LibMsgHead head = headOf(message);
        const std::optional<Fault> fault = m_process.faults.next(m_service.ucProcId, head.usCmd);
        trace(message, m_process.shared.simMs(), {fault ? faultName(fault->kind) : "", ""});
        if (fault && fault->kind == FaultKind::die) {
            m_process.shared.comeBackMs(m_process.index) = fault->value;
            _exit(0);
        }

        const std::span<const uint8_t> body(message.data() + sizeof head, head.usDataLen);
        if (fault)
            spoil(head, body, *fault);
        else
            send(answer(head, body), "");
    }

    std::string reasonToIgnore(const Message& message) const
    {
        if (message.size() < sizeof(LibMsgHead))
            return "shorter than a header";
        const LibMsgHead head = headOf(message);
        if ((head.usCmd & vx63::wire::kResponseBit) != 0)
            return "a response to a service";
        if (head.usDataLen > message.size() - sizeof head)
            return "shorter than its header claims";
        if (!isClient(head.ucSrcId))
            return "no such client";
        return "";
    }

    // Carries the request out.
    Message answer(const LibMsgHead& request, std::span<const uint8_t> body)
    {
        for (const Command& command : m_service.commands) {
            if (command.usCmd != request.usCmd)
                continue;
            Body response;
            m_simMs = m_process.shared.update([&](State& state) {
                state.ulSimMs += m_process.scene.clockMs;
                Meter meter{m_process.scene, state, m_process.settings};
                response = sleepsThrough(state.device, m_service.ucProcId, command.usCmd)
                               ? resultBody(kRetStandby)
                               : command.handler(meter, body);
                m_note = meter.note;
            });
            return makeMessage(answerHead(request, vx63::wire::kAccepted), response);
        }
        return refusal(request, kUnknownCommand);
    }

    Message refusal(const LibMsgHead& request, uint16_t usOptOrRet)
    {
        m_simMs = m_process.shared.simMs();
        m_note.clear();
        return makeMessage(answerHead(request, usOptOrRet), {});
    }

    static LibMsgHead answerHead(const LibMsgHead& request, uint16_t usOptOrRet)
    {
        const auto usCmd = static_cast<uint16_t>(request.usCmd | vx63::wire::kResponseBit);
        return {request.ucDstId, request.ucSrcId, usCmd, 0, usOptOrRet};
    }

    // Carries the request out, but for a refusal, and sends what the fault makes of the answer.
    void spoil(const LibMsgHead& request, std::span<const uint8_t> body, const Fault& fault)
    {
        const std::string_view name = faultName(fault.kind);
        const auto value = static_cast<uint16_t>(fault.value);
        if (fault.kind == FaultKind::refuse) {
            send(refusal(request, value), name);
            return;
        }

        Message response = answer(request, body);
        LibMsgHead head = headOf(response);
        switch (fault.kind) {
        case FaultKind::silence:
            return;
        case FaultKind::late:
            hold({Clock::now() + std::chrono::milliseconds(fault.value), std::move(response), m_simMs,
                  m_note});
            return;
        case FaultKind::twice:
            send(response, name);
            break;
        case FaultKind::ret:
            if (response.size() > sizeof head)
                response[sizeof head] = static_cast<uint8_t>(fault.value);
            break;
        case FaultKind::wrong:
            head.usCmd = static_cast<uint16_t>(value | vx63::wire::kResponseBit);
            break;
        case FaultKind::stray:
            send(makeMessage({head.ucSrcId, head.ucDstId, value, 0, 0}, {}), name);
            break;
        case FaultKind::cut:
            response.resize(std::min(response.size(), sizeof head + fault.value));
            head.usDataLen = static_cast<uint16_t>(response.size() - sizeof head);
            break;
        case FaultKind::oversized:
            head.usDataLen = value;
            break;
        case FaultKind::garbage: {
            const std::vector<uint8_t> bytes = randomBytes(fault.seed, response.size() - sizeof head);
            std::copy(bytes.begin(), bytes.end(), response.begin() + sizeof head);
            break;
        }
        case FaultKind::refuse: // done above
        case FaultKind::die:    // done before anything was carried out
        case FaultKind::random: // drawn by the plan
            break;
        }
        setHead(response, head);
        send(response, name);
    }

    // The line comes first, so that whoever has the answer finds it in the trace.
    void send(const Message& message, std::string_view fault)
    {
        trace(message, m_simMs, {fault, m_note});
        const uint8_t ucDstId = headOf(message).ucDstId;
        const int32_t result =
            lmsg_tsndMq(ucDstId, message.data(), static_cast<uint32_t>(message.size()), kSendMs);
        if (result == LMSG_ERR_TIMEOUT)
            trace(message, m_simMs, {fault, "dropped: the client's queue is full"});
        else if (result != LMSG_OK)
            trace(message, m_simMs, {fault, "dropped: lmsg_err=" + std::to_string(result)});
    }

    // Late answers are kept in the order in which they are due.
    void hold(Late late)
    {
        const auto dueLater = [](const Late& a, const Late& b) { return a.due < b.due; };
        m_late.insert(std::upper_bound(m_late.begin(), m_late.end(), late, dueLater), std::move(late));
    }

    // Sends the late answers whose time has come. Gives the milliseconds to the next one.
    uint32_t sendDue()
    {
        while (!m_late.empty()) {
            const auto rest = std::chrono::ceil<std::chrono::milliseconds>(m_late.front().due - Clock::now());
            if (rest.count() > 0)
                return static_cast<uint32_t>(rest.count());
            const Late late = std::move(m_late.front());
            m_late.erase(m_late.begin());
            m_simMs = late.simMs;
            m_note = late.note;
            send(late.answer, faultName(FaultKind::late));
        }
        return LMSG_FOREVER;
    }

    void trace(const Message& message, uint64_t simMs, const TraceRemark& remark) const
    {
        m_process.trace.write(m_service.ucProcId, message, simMs, remark);
    }

    const ServiceProcess& m_process;
    const Service& m_service;
    std::vector<Late> m_late; // by due time
    uint64_t m_simMs = 0;     // simulated time of the answer being sent
    std::string m_note;       // and what the trace says beside it
};

} // namespace

int32_t serve(const ServiceProcess& process)
{
    return ServiceLoop(process).run();
}

} // namespace vmeter
