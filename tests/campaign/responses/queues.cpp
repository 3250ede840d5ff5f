// Stands in for the platform's queues. The services answer as the input tells: anything at all, to any queue.
#include "call.h"
#include "finding.h"
#include "lmsg.h"
#include "same.h"

#include <cstring>

namespace responses {
namespace {

constexpr int kClients = 18;
constexpr int kDepth = 10;
constexpr uint16_t kHead = 8;
constexpr uint16_t kBody = LMSG_SIZE_MAX - kHead;

struct Message {
    uint16_t length;
    uint8_t bytes[LMSG_SIZE_MAX];
};

struct Queue {
    Message messages[kDepth];
    int first;
    int count;

    Message* add() { return count == kDepth ? nullptr : &messages[(first + count++) % kDepth]; }
    const Message* take()
    {
        if (count == 0)
            return nullptr;
        const Message* const taken = &messages[first];
        first = (first + 1) % kDepth;
        --count;
        return taken;
    }
};
Queue s_queues[kClients];

uint8_t s_own;
bool s_waits;       // a request was sent, its answer not yet awaited
int s_receiveFails; // what the wait ends with; 0: it does not fail
bool s_refuses;     // a request came instead, and is to be refused
uint8_t s_refusal[kHead];
int s_part;
uint16_t s_block;

uint16_t at(const uint8_t* bytes, size_t place)
{
    return static_cast<uint16_t>(bytes[place] | bytes[place + 1] << 8);
}

void put(uint8_t* bytes, size_t place, uint16_t value)
{
    bytes[place] = static_cast<uint8_t>(value);
    bytes[place + 1] = static_cast<uint8_t>(value >> 8);
}

int service()
{
    const Operation& operation = *s_call.operation;
    if (operation.service != kByMode)
        return operation.service;
    return static_cast<uint8_t>(s_call.with.first) == 0 ? PROC_ID_PSYS : PROC_ID_PMEAS;
}

int channels()
{
    return static_cast<const MultiMeasReg*>(s_call.with.data)->sRegNum;
}

int parts()
{
    return channels() == 0 ? 1 : (channels() - 1) / 40 + 1;
}

// ---- what a service does with a request ----

uint16_t drawLength(Input& input, uint16_t most)
{
    static constexpr uint16_t kLengths[] = {1300, 1299, 1292, 420, 412, 124, 64, 52};
    const uint8_t choice = input.byte();
    const uint16_t length = choice < 64    ? choice
                            : choice < 128 ? kLengths[choice % 8]
                                           : static_cast<uint16_t>(input.raw<uint16_t>() % 1301);
    return std::min(length, most);
}

void drawBody(Input& input, uint8_t* body)
{
    const uint8_t given = input.byte() % 48;
    input.bytes(body, given);
    const uint8_t rest = input.byte();
    memset(body + given, rest, kBody - given);
    if (s_call.operation->command == 0x106 && rest % 16 != 15)
        put(body, 40, body[40]); // many points log many lines
}

struct Ramp {
    uint8_t bytes[kBody + 255];
    constexpr Ramp() : bytes{}
    {
        for (size_t i = 0; i < sizeof bytes; ++i)
            bytes[i] = static_cast<uint8_t>(i * 3 + i / 256);
    }
};
constexpr Ramp kRamp;

// An answer with which every operation succeeds, or goes on.
void goodBody(Input& input, const uint8_t* request, uint8_t* body)
{
    const Operation& operation = *s_call.operation;
    const uint8_t seed = input.byte();
    memcpy(body, kRamp.bytes + seed, kBody);
    if (operation.rule != Rule::noRet)
        body[0] = operation.rule == Rule::update && seed % 2 == 0 ? 3 : 0; // 0: the update goes on
    if (operation.loop == Loop::profile) {
        const uint16_t block = at(request, kHead + 4);
        put(body, 4, block < 5 || seed % 64 == 63 ? 2 : 1); // a whole profile logs 2048 lines
        put(body, 6, block);
    }
    if (operation.command == 0x106)
        put(body, 40, seed);
}

void react(const uint8_t* request, uint8_t kind)
{
    Message* const message = s_queues[s_own].add();
    if (message == nullptr)
        return;
    Input& input = *s_call.input;
    uint8_t* const head = message->bytes;
    uint8_t* const body = message->bytes + kHead;
    message->length = LMSG_SIZE_MAX;
    head[0] = request[1];
    head[1] = request[0];
    put(head, 2, at(request, 2) | 0x8000);
    put(head, 4, kBody);
    put(head, 6, 0);
    if (kind % 8 < 3)
        goodBody(input, request, body);
    else
        drawBody(input, body);
    switch (kind % 8) {
    case 0: // good
    case 3: // anything in its body
        break;
    case 1: // cut
        message->length = drawLength(input, LMSG_SIZE_MAX);
        put(head, 4,
            input.byte() % 2 == 0 ? static_cast<uint16_t>(message->length - kHead) : input.raw<uint16_t>());
        break;
    case 2: // another result
        body[0] = input.byte();
        break;
    case 4: // a head that tells otherwise
        put(head, 4, input.raw<uint16_t>());
        put(head, 6, input.byte() % 2 == 0 ? 0 : input.raw<uint16_t>());
        message->length = drawLength(input, LMSG_SIZE_MAX);
        break;
    case 5: // the answer to something else
        put(head, 2, static_cast<uint16_t>(input.number()) | 0x8000);
        break;
    case 6: // a request
        input.bytes(head, 2);
        put(head, 2, static_cast<uint16_t>(input.number()) & 0x7FFF);
        break;
    default: // anything
        input.bytes(head, kHead);
        message->length = drawLength(input, LMSG_SIZE_MAX);
        break;
    }
}

// ---- what is to become of an answer ----

void takeProfile(const uint8_t* body)
{
    s_call.lines += 2;
    if (at(body, 6) != s_block) {
        s_call.mayAsk = true;
        return;
    }
    const uint16_t status = at(body, 4);
    put(s_call.record, 0, status);
    if (status != 2)
        return;
    memcpy(s_call.record + 2 + 400 * s_block, body + 12, s_block < 5 ? 400 : 48);
    s_call.mayAsk = s_block < 5;
    s_call.lines += s_block < 5 ? 0 : 2048;
    ++s_block;
}

void takeRecord(const uint8_t* body)
{
    const Operation& operation = *s_call.operation;
    for (const Field& field : operation.fields) {
        memset(s_call.record + field.here, 0, field.wide);
        memcpy(s_call.record + field.here, body + field.there, field.width);
    }
    if (operation.command == 0x106) {
        const size_t points = std::min<size_t>(at(body, 40), VX63_CONSTA_POINTS_MAX);
        const size_t carried = std::min<size_t>(points, 624);
        memcpy(s_call.record + 38, body + 44, 2 * carried);
        memset(s_call.record + 38 + 2 * carried, 0, 2 * (points - carried));
        s_call.lines += static_cast<int>((points + 7) / 8);
    }
}

// What the message does not carry, or does not say that it carries, is zero.
void takeBody(const uint8_t* carried)
{
    static uint8_t body[kBody];
    const uint16_t length = std::min(at(carried, 4), kBody);
    memcpy(body, carried + kHead, length);
    memset(body + length, 0, kBody - length);

    const Operation& operation = *s_call.operation;
    if (operation.loop == Loop::update && body[0] == 0) {
        s_call.mayAsk = true;
        return;
    }
    s_call.result = resultOf(operation.rule, body[0]);
    if (s_call.result != VX63_OK)
        return;
    if (operation.loop == Loop::profile)
        takeProfile(body);
    else if (operation.loop == Loop::registration)
        s_call.mayAsk = ++s_part < parts();
    else
        takeRecord(body);
}

void takeMessage(const Message& message)
{
    static uint8_t carried[LMSG_SIZE_MAX];
    memcpy(carried, message.bytes, message.length);
    memset(carried + message.length, 0, sizeof carried - message.length);

    const uint16_t command = at(carried, 2);
    if (command == (s_call.operation->command | 0x8000)) {
        if (at(carried, 6) == 0)
            takeBody(carried);
    } else if ((command & 0x8000) == 0) {
        s_refuses = true;
        s_refusal[0] = carried[1];
        s_refusal[1] = carried[0];
        put(s_refusal, 2, command | 0x8000);
        put(s_refusal, 4, 0);
        put(s_refusal, 6, 4);
    }
}

// A condition as requests carry it.
void expectCondition(const uint8_t* bytes, const MeasCondition& condition)
{
    static constexpr uint8_t kSupplies[][2] = {{0, 0}, {1, 0}, {2, 0}, {1, 1}, {2, 1}};
    const bool isSupply = 0 <= condition.powerSupply && condition.powerSupply <= 4;
    const uint8_t* const supply = kSupplies[isSupply ? condition.powerSupply : 0];
    const uint8_t rest[7] = {supply[0], supply[1]};
    if (!same(bytes, &condition, 25) || !same(bytes + 25, rest, sizeof rest))
        finding("sends another condition");
}

uint8_t displayType()
{
    return static_cast<uint8_t>(s_call.with.first);
}

// A part of a registration: its head, and each channel as the caller described it.
void expectPart(const uint8_t* body)
{
    const auto* const conditions = static_cast<const MultiMeasReg*>(s_call.with.data)->single;
    const int first = 40 * s_part;
    const int count = std::min(40, channels() - first);
    const uint8_t kind = s_part + 1 < parts() ? 3 : s_call.operation->function() == "vx63_startScan" ? 2 : 1;
    const uint8_t head[12] = {
        displayType(), 0, 0, 0, kind, 0, 0, 0, static_cast<uint8_t>(first), 0, static_cast<uint8_t>(count)};
    if (!same(body, head, sizeof head))
        finding("sends part %d with a wrong head", s_part + 1);
    for (int i = 0; i < count; ++i)
        expectCondition(body + sizeof head + 32 * i, conditions[(first + i) % 256]);
    s_call.lines += 1 + 2 * count; // each channel, and that its supply is unknown
}

// The start of a measurement of one channel, and every stop that has a display type: there nothing else is
// told.
void expectStartOrStop(const uint8_t* body)
{
    static constexpr uint8_t kNothing[kBody] = {};
    const Operation& operation = *s_call.operation;
    const uint8_t head[8] = {displayType(), 0, 0, 0, static_cast<uint8_t>(operation.dataSize != 0)};
    if (!same(body, head, sizeof head))
        finding("sends a wrong head of the body");
    if (operation.dataSize != 0)
        expectCondition(body + sizeof head, *static_cast<const MeasCondition*>(s_call.with.data));
    else if (!same(body + sizeof head, kNothing, operation.length - sizeof head))
        finding("stops with more than that");
}

int32_t send(uint8_t queue, const uint8_t* message, uint32_t length, uint32_t timeout)
{
    const Operation& operation = *s_call.operation;
    Input& input = *s_call.input;
    if (timeout != operation.timeout)
        finding("sends with a time-out of %u ms", timeout);
    if (s_refuses) {
        s_refuses = false;
        if (queue != s_refusal[1] || length != kHead || !same(message, s_refusal, kHead))
            finding("refuses a request wrongly");
        return input.byte() < 224 ? static_cast<int32_t>(LMSG_OK) : input.failure(8);
    }
    if (!s_call.mayAsk || s_waits)
        finding("sends %u bytes that it must not send", length);
    s_call.mayAsk = false;
    s_call.result = VX63_ERR_COMM;
    ++s_call.exchanges;
    if (queue != service() || length != kHead + uint32_t{operation.length})
        finding("sends %u bytes to %u", length, queue);
    const uint8_t head[kHead] = {s_own,
                                 queue,
                                 static_cast<uint8_t>(operation.command),
                                 static_cast<uint8_t>(operation.command >> 8),
                                 static_cast<uint8_t>(operation.length),
                                 static_cast<uint8_t>(operation.length >> 8)};
    if (!same(message, head, kHead))
        finding("sends a wrong head");
    if (operation.loop == Loop::profile && at(message, kHead + 4) != s_block)
        finding("asks for block %u instead of %u", at(message, kHead + 4), s_block);
    if (operation.loop == Loop::registration)
        expectPart(message + kHead);
    else if (operation.command == 0x103 || operation.command == 0x107 || operation.command == 0x109)
        expectStartOrStop(message + kHead);

    s_receiveFails = 0;
    const uint8_t choice = input.byte();
    if (choice >= 128 && choice < 144)
        return input.failure(8);
    s_waits = true;
    if (choice < 128)
        react(message, choice);
    else if (choice < 168)
        ; // silence
    else if (choice < 184)
        s_receiveFails = input.failure(8);
    else
        for (int more = 2 + choice % 4; more > 0; --more)
            react(message, input.byte());
    return LMSG_OK;
}

int32_t receive(uint8_t queue, void* buffer, uint32_t room, uint32_t* length, uint32_t timeout)
{
    if (!s_waits)
        finding("waits for an answer without a request");
    s_waits = false;
    if (queue != s_own || room != LMSG_SIZE_MAX || timeout != s_call.operation->timeout)
        finding("waits in queue %u for %u ms, with room for %u bytes", queue, timeout, room);
    if (s_receiveFails != 0)
        return s_receiveFails;
    const Message* const message = s_queues[queue].take();
    if (message == nullptr)
        return LMSG_ERR_TIMEOUT;
    memcpy(buffer, message->bytes, message->length);
    if (length != nullptr)
        *length = message->length;
    takeMessage(*message);
    return LMSG_OK;
}

} // namespace

void forgetMessages()
{
    for (Queue& queue : s_queues)
        queue.count = 0;
}

int messagesFor(int32_t process)
{
    return s_queues[process].count;
}

void beginExchanges(uint8_t own)
{
    s_own = own;
    s_waits = s_refuses = false;
    s_part = 0;
    s_block = 0;
    s_call.lines = s_call.exchanges = 0;
    if (s_call.operation->loop == Loop::registration && s_call.with.data != nullptr)
        s_call.lines = std::max(0, channels());
}

void endExchanges()
{
    if (s_waits)
        finding("does not wait for the answer to its request");
    if (s_refuses)
        finding("leaves a request without an answer");
    if (s_call.mayAsk)
        finding("does not ask as often as it has to");
}

} // namespace responses

extern "C" int32_t lmsg_tsndMq(uint8_t ucQueId, const void* pMsg, uint32_t ulLen, uint32_t ulTimeout)
{
    return responses::send(ucQueId, static_cast<const uint8_t*>(pMsg), ulLen, ulTimeout);
}

extern "C" int32_t lmsg_trcvMq(uint8_t ucQueId, void* pMsg, uint32_t ulLen, uint32_t* pulMsgLen,
                               uint32_t ulTimeout)
{
    return responses::receive(ucQueId, pMsg, ulLen, pulMsgLen, ulTimeout);
}
