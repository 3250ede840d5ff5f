// Bodies of the measurement commands; those of a list of channels and of the angle sensor have files of
// their own. Every byte not named is sent as zero.
#pragma once

#include "frame/wire.h"

namespace vx63::wire {

// ucStartStop, and what switches the angle sensor.
inline constexpr uint8_t kStop = 0;
inline constexpr uint8_t kStart = 1;

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
    uint8_t ucStartStop;
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

// Start and stop of collecting constellation points: 0x105.
struct StartConstaRequest {
    uint8_t ucDispType;
    uint8_t ucReserved1[3];
    uint8_t ucStartStop;
    uint8_t ucReserved5;
    uint16_t collectNum; // 0 in a stop
};
static_assert(sizeof(StartConstaRequest) == 8 && std::is_trivially_copyable_v<StartConstaRequest>);
static_assert(offsetof(StartConstaRequest, ucDispType) == 0);
static_assert(offsetof(StartConstaRequest, ucStartStop) == 4);
static_assert(offsetof(StartConstaRequest, collectNum) == 6);

// Latest values with constellation points: 0x106.
struct ConstaRequest {
    uint8_t ucReserved0[4];
    uint16_t usReadCount;
    uint8_t ucReserved6[2];
};
static_assert(sizeof(ConstaRequest) == 8 && std::is_trivially_copyable_v<ConstaRequest>);
static_assert(offsetof(ConstaRequest, usReadCount) == 4);

// The points that one message has room for.
inline constexpr uint32_t kConstaPoints = 624;

// Lies as SingleResultResponse up to MOD.
struct ConstaResponse {
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
    uint16_t CONS_NUM; // may be more than the message carries
    uint16_t usReserved42;
    int8_t points[kConstaPoints][2]; // I, Q
};
static_assert(sizeof(ConstaResponse) == kBodySize && std::is_trivially_copyable_v<ConstaResponse>);
static_assert(offsetof(ConstaResponse, ucRet) == 0);
static_assert(offsetof(ConstaResponse, lock) == 4);
static_assert(offsetof(ConstaResponse, stat) == 8);
static_assert(offsetof(ConstaResponse, mesCond) == 10);
static_assert(offsetof(ConstaResponse, bdSys) == 14);
static_assert(offsetof(ConstaResponse, LEVEL) == 16);
static_assert(offsetof(ConstaResponse, CNR) == 20);
static_assert(offsetof(ConstaResponse, BER_TOTAL) == 24);
static_assert(offsetof(ConstaResponse, BER_ERR) == 28);
static_assert(offsetof(ConstaResponse, TSID) == 32);
static_assert(offsetof(ConstaResponse, GI) == 34);
static_assert(offsetof(ConstaResponse, LAYER) == 35);
static_assert(offsetof(ConstaResponse, MOD) == 36);
static_assert(offsetof(ConstaResponse, CONS_NUM) == 40);
static_assert(offsetof(ConstaResponse, points) == 44);

// One block of a delay profile: 0x108.
struct DlyPrfRequest {
    uint8_t ucReserved0[4];
    uint16_t usBlockNo;
    uint8_t ucReserved6[2];
};
static_assert(sizeof(DlyPrfRequest) == 8 && std::is_trivially_copyable_v<DlyPrfRequest>);
static_assert(offsetof(DlyPrfRequest, usBlockNo) == 4);

struct DlyPrfResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    uint16_t usStatus;
    uint16_t usReadBlockNo;
    uint8_t ucReserved8[4];
    int8_t data[400]; // the last block uses the first 48
};
static_assert(sizeof(DlyPrfResponse) == 412 && std::is_trivially_copyable_v<DlyPrfResponse>);
static_assert(offsetof(DlyPrfResponse, ucRet) == 0);
static_assert(offsetof(DlyPrfResponse, usStatus) == 4);
static_assert(offsetof(DlyPrfResponse, usReadBlockNo) == 6);
static_assert(offsetof(DlyPrfResponse, data) == 12);

// Start and stop of the optical power measurement: 0x10C.
struct OptMeasRequest {
    uint8_t ucReserved0[4];
    uint8_t ucStartStop;
    uint8_t ucReserved5[3];
    uint32_t ulWaveLength; // 0 in a stop
};
static_assert(sizeof(OptMeasRequest) == 12 && std::is_trivially_copyable_v<OptMeasRequest>);
static_assert(offsetof(OptMeasRequest, ucStartStop) == 4);
static_assert(offsetof(OptMeasRequest, ulWaveLength) == 8);

// Optical power: 0x10D.
struct OptMeasResultResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    int32_t lOptPow;
};
static_assert(sizeof(OptMeasResultResponse) == 8 && std::is_trivially_copyable_v<OptMeasResultResponse>);
static_assert(offsetof(OptMeasResultResponse, ucRet) == 0);
static_assert(offsetof(OptMeasResultResponse, lOptPow) == 4);

// Start and stop of the DC voltage measurement: 0x10E.
struct DcMeasRequest {
    uint8_t ucReserved0[4];
    uint8_t ucStartStop;
    uint8_t ucReserved5[3];
};
static_assert(sizeof(DcMeasRequest) == 8 && std::is_trivially_copyable_v<DcMeasRequest>);
static_assert(offsetof(DcMeasRequest, ucStartStop) == 4);

// DC voltage: 0x10F.
struct DcMeasResultResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    uint32_t ulDcV;
};
static_assert(sizeof(DcMeasResultResponse) == 8 && std::is_trivially_copyable_v<DcMeasResultResponse>);
static_assert(offsetof(DcMeasResultResponse, ucRet) == 0);
static_assert(offsetof(DcMeasResultResponse, ulDcV) == 4);

} // namespace vx63::wire
