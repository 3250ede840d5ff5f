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

constexpr Supply kSupplies[] = {
    {.ucSupplyLevel = 0, .ucSupplyKind = 0}, // VX63_POWER_SUPPLY_OFF
    {.ucSupplyLevel = 1, .ucSupplyKind = 0}, //
    {.ucSupplyLevel = 2, .ucSupplyKind = 0}, //
    {.ucSupplyLevel = 1, .ucSupplyKind = 1}, //
    {.ucSupplyLevel = 2, .ucSupplyKind = 1}, //
};

constexpr uint8_t kStart = 1;

} // namespace

Supply translateSupply(int32_t powerSupply, Site at)
{
    if (static_cast<uint32_t>(powerSupply) >= std::size(kSupplies)) {
        logLine(at, "arg error. powerSupply=%d -> VX63_POWER_SUPPLY_OFF", powerSupply);
        powerSupply = VX63_POWER_SUPPLY_OFF;
    }
    return kSupplies[powerSupply];
}

wire::StartRequest packStart(uint8_t ucDispType, const MeasCondition& condition, Site at)
{
    logLine(at,
            "ulFreq=%u, ulLoFreq=%u, usBdSys=%u, usBand=%u, usMod=0x%04X, usCondition=0x%04X, "
            "ucStrChan=[%.*s], ucOutputEnb=%u, powerSupply=%d",
            condition.ulFreq, condition.ulLoFreq, condition.usBdSys, condition.usBand, condition.usMod,
            condition.usCondition, static_cast<int>(sizeof condition.ucStrChan), condition.ucStrChan,
            condition.ucOutputEnb, condition.powerSupply);
    const Supply supply = translateSupply(condition.powerSupply, at);

    wire::StartRequest reqData = {};
    reqData.ucDispType = ucDispType;
    reqData.ucStartStop = kStart;
    reqData.ulFreq = condition.ulFreq;
    reqData.ulLoFreq = condition.ulLoFreq;
    reqData.usBdSys = condition.usBdSys;
    reqData.usBand = condition.usBand;
    reqData.usMod = condition.usMod;
    reqData.usCondition = condition.usCondition;
    memcpy(reqData.ucStrChan, condition.ucStrChan, sizeof reqData.ucStrChan);
    reqData.ucOutputEnb = condition.ucOutputEnb;
    reqData.ucSupplyLevel = supply.ucSupplyLevel;
    reqData.ucSupplyKind = supply.ucSupplyKind;
    logLine(at, "reqData.ucDispType=%u", reqData.ucDispType);
    return reqData;
}

wire::StartRequest packStop(uint8_t ucDispType, Site at)
{
    wire::StartRequest reqData = {};
    reqData.ucDispType = ucDispType;
    logLine(at, "reqData.ucDispType=%u", reqData.ucDispType);
    return reqData;
}

} // namespace vx63
