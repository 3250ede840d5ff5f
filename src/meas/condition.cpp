#include "meas/condition.h"

#include <cstring>
#include <iterator>

// The layout of the public records is the binary interface.
static_assert(sizeof(MeasCondition) == 32);
static_assert(offsetof(MeasCondition, ulFreq) == 0);
static_assert(offsetof(MeasCondition, ulLoFreq) == 4);
static_assert(offsetof(MeasCondition, usBdSys) == 8);
static_assert(offsetof(MeasCondition, usBand) == 10);
static_assert(offsetof(MeasCondition, usMod) == 12);
static_assert(offsetof(MeasCondition, usCondition) == 14);
static_assert(offsetof(MeasCondition, ucStrChan) == 16);
static_assert(offsetof(MeasCondition, ucOutputEnb) == 24);
static_assert(offsetof(MeasCondition, powerSupply) == 28);

namespace vx63 {
namespace {

// The two bytes in which a request carries the antenna power supply.
struct Supply {
    uint8_t ucSupplyLevel;
    uint8_t ucSupplyKind;
};

constexpr Supply kSupplies[] = {
    {.ucSupplyLevel = 0, .ucSupplyKind = 0}, // VX63_POWER_SUPPLY_OFF
    {.ucSupplyLevel = 1, .ucSupplyKind = 0}, //
    {.ucSupplyLevel = 2, .ucSupplyKind = 0}, //
    {.ucSupplyLevel = 1, .ucSupplyKind = 1}, //
    {.ucSupplyLevel = 2, .ucSupplyKind = 1}, //
};

// One out of range is logged and taken as off.
Supply translateSupply(int32_t powerSupply, Caller caller)
{
    if (static_cast<uint32_t>(powerSupply) >= std::size(kSupplies)) {
        logLine({caller}, "arg error. powerSupply=%d -> VX63_POWER_SUPPLY_OFF", powerSupply);
        powerSupply = VX63_POWER_SUPPLY_OFF;
    }
    return kSupplies[powerSupply];
}

// A start body and a channel of a registration carry a condition in the same fields.
template <class Body>
void packCondition(Body& body, const MeasCondition& condition, Caller caller)
{
    const Supply supply = translateSupply(condition.powerSupply, caller);
    body.ulFreq = condition.ulFreq;
    body.ulLoFreq = condition.ulLoFreq;
    body.usBdSys = condition.usBdSys;
    body.usBand = condition.usBand;
    body.usMod = condition.usMod;
    body.usCondition = condition.usCondition;
    memcpy(body.ucStrChan, condition.ucStrChan, sizeof body.ucStrChan);
    body.ucOutputEnb = condition.ucOutputEnb;
    body.ucSupplyLevel = supply.ucSupplyLevel;
    body.ucSupplyKind = supply.ucSupplyKind;
}

} // namespace

wire::StartRequest packStart(uint8_t ucDispType, const MeasCondition& condition, Caller caller)
{
    logLine({caller},
            "ulFreq=%u, ulLoFreq=%u, usBdSys=%u, usBand=%u, usMod=0x%04X, usCondition=0x%04X, "
            "ucStrChan=[%.*s], ucOutputEnb=%u, powerSupply=%d",
            condition.ulFreq, condition.ulLoFreq, condition.usBdSys, condition.usBand, condition.usMod,
            condition.usCondition, static_cast<int>(sizeof condition.ucStrChan), condition.ucStrChan,
            condition.ucOutputEnb, condition.powerSupply);
    wire::StartRequest reqData = {};
    reqData.ucDispType = ucDispType;
    reqData.ucStartStop = wire::kStart;
    packCondition(reqData, condition, caller);
    logLine({caller}, "reqData.ucDispType=%u", reqData.ucDispType);
    return reqData;
}

wire::StartRequest packStop(uint8_t ucDispType, Caller caller)
{
    wire::StartRequest reqData = {};
    reqData.ucDispType = ucDispType;
    logLine({caller}, "reqData.ucDispType=%u", reqData.ucDispType);
    return reqData;
}

wire::Channel packChannel(const MeasCondition& condition, Caller caller)
{
    wire::Channel channel = {};
    packCondition(channel, condition, caller);
    return channel;
}

} // namespace vx63
