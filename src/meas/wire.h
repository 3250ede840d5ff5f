// Bodies of the measurement commands. Every byte not named is sent as zero.
#pragma once

#include "frame/wire.h"

namespace vx63::wire {

// Select the RF input: 0x100.
struct SetInputRequest {
    uint8_t ucReserved0[4];
    uint8_t ucInput;
    uint8_t ucReserved5[3];
};
static_assert(sizeof(SetInputRequest) == 8 && std::is_trivially_copyable_v<SetInputRequest>);
static_assert(offsetof(SetInputRequest, ucInput) == 4);

// Measurement status: 0x17.
struct MeasStatusResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    uint32_t ulMeasStat;
    uint16_t usInputStat;
    uint8_t ucReserved10[2];
};
static_assert(sizeof(MeasStatusResponse) == 12 && std::is_trivially_copyable_v<MeasStatusResponse>);
static_assert(offsetof(MeasStatusResponse, ucRet) == 0);
static_assert(offsetof(MeasStatusResponse, ulMeasStat) == 4);
static_assert(offsetof(MeasStatusResponse, usInputStat) == 8);

// Readings of the antenna power supply: 0x22.
struct PowerSupplyInfoResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    uint8_t ucPowerSupply;
    uint8_t ucVolt;
    uint16_t usAdVal;
    uint32_t ulCurrentM;
    uint32_t ulElecPowerM;
};
static_assert(sizeof(PowerSupplyInfoResponse) == 16 && std::is_trivially_copyable_v<PowerSupplyInfoResponse>);
static_assert(offsetof(PowerSupplyInfoResponse, ucRet) == 0);
static_assert(offsetof(PowerSupplyInfoResponse, ucPowerSupply) == 4);
static_assert(offsetof(PowerSupplyInfoResponse, ucVolt) == 5);
static_assert(offsetof(PowerSupplyInfoResponse, usAdVal) == 6);
static_assert(offsetof(PowerSupplyInfoResponse, ulCurrentM) == 8);
static_assert(offsetof(PowerSupplyInfoResponse, ulElecPowerM) == 12);

// Start and stop of a measurement of one channel: 0x103 (single), 0x107 (delay profile). A stop sets
// ucDispType alone.
struct StartRequest {
    uint8_t ucDispType;
    uint8_t ucReserved1[3];
    uint8_t ucStartStop; // 1 start, 0 stop
    uint8_t ucReserved5[3];
    uint32_t ulFreq;
    uint32_t ulLoFreq;
    uint16_t usBdSys;
    uint16_t usBand;
    uint16_t usMod;
    uint16_t usCondition;
    char ucStrChan[8];
    uint8_t ucOutputEnb;
    uint8_t ucSupplyLevel;
    uint8_t ucSupplyKind;
    uint8_t ucReserved35;
    uint32_t ulReserved36;
};
static_assert(sizeof(StartRequest) == 40 && std::is_trivially_copyable_v<StartRequest>);
static_assert(offsetof(StartRequest, ucDispType) == 0);
static_assert(offsetof(StartRequest, ucStartStop) == 4);
static_assert(offsetof(StartRequest, ulFreq) == 8);
static_assert(offsetof(StartRequest, ulLoFreq) == 12);
static_assert(offsetof(StartRequest, usBdSys) == 16);
static_assert(offsetof(StartRequest, usBand) == 18);
static_assert(offsetof(StartRequest, usMod) == 20);
static_assert(offsetof(StartRequest, usCondition) == 22);
static_assert(offsetof(StartRequest, ucStrChan) == 24);
static_assert(offsetof(StartRequest, ucOutputEnb) == 32);
static_assert(offsetof(StartRequest, ucSupplyLevel) == 33);
static_assert(offsetof(StartRequest, ucSupplyKind) == 34);
static_assert(offsetof(StartRequest, ulReserved36) == 36);

// Latest values of a single measurement: 0x104.
struct SingleResultResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    uint8_t lock;
    uint8_t ucReserved5[3];
    uint16_t stat;
    uint16_t mesCond;
    uint16_t usReserved12;
    uint16_t bdSys;
    uint32_t LEVEL;
    uint32_t CNR;
    uint32_t BER_TOTAL;
    uint32_t BER_ERR;
    uint16_t TSID;
    uint8_t GI;
    uint8_t LAYER;
    uint32_t MOD;
    uint32_t ulReserved40;
};
static_assert(sizeof(SingleResultResponse) == 44 && std::is_trivially_copyable_v<SingleResultResponse>);
static_assert(offsetof(SingleResultResponse, ucRet) == 0);
static_assert(offsetof(SingleResultResponse, lock) == 4);
static_assert(offsetof(SingleResultResponse, stat) == 8);
static_assert(offsetof(SingleResultResponse, mesCond) == 10);
static_assert(offsetof(SingleResultResponse, bdSys) == 14);
static_assert(offsetof(SingleResultResponse, LEVEL) == 16);
static_assert(offsetof(SingleResultResponse, CNR) == 20);
static_assert(offsetof(SingleResultResponse, BER_TOTAL) == 24);
static_assert(offsetof(SingleResultResponse, BER_ERR) == 28);
static_assert(offsetof(SingleResultResponse, TSID) == 32);
static_assert(offsetof(SingleResultResponse, GI) == 34);
static_assert(offsetof(SingleResultResponse, LAYER) == 35);
static_assert(offsetof(SingleResultResponse, MOD) == 36);

} // namespace vx63::wire
