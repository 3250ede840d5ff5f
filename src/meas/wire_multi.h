// Bodies of the commands that measure or scan a list of channels. Every byte not named is sent as zero.
#pragma once

#include "frame/wire.h"

namespace vx63::wire {

// ucKind of a MultiMeasRequest.
inline constexpr uint8_t kKindStop = 0;
inline constexpr uint8_t kKindMulti = 1; // the last part: start to measure
inline constexpr uint8_t kKindScan = 2;  // the last part: start to scan
inline constexpr uint8_t kKindMore = 3;  // a part that others follow

// One channel to measure.
struct Channel {
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
    uint8_t ucReserved27;
    uint16_t usReserved28;
    uint16_t usReserved30;
};
static_assert(sizeof(Channel) == 32 && std::is_trivially_copyable_v<Channel>);
static_assert(offsetof(Channel, ulFreq) == 0);
static_assert(offsetof(Channel, ulLoFreq) == 4);
static_assert(offsetof(Channel, usBdSys) == 8);
static_assert(offsetof(Channel, usBand) == 10);
static_assert(offsetof(Channel, usMod) == 12);
static_assert(offsetof(Channel, usCondition) == 14);
static_assert(offsetof(Channel, ucStrChan) == 16);
static_assert(offsetof(Channel, ucOutputEnb) == 24);
static_assert(offsetof(Channel, ucSupplyLevel) == 25);
static_assert(offsetof(Channel, ucSupplyKind) == 26);

// The channels that one part has room for.
inline constexpr uint8_t kPartChannels = 40;

// A part of a registration, or the stop: 0x109. A stop sets ucDispType alone.
struct MultiMeasRequest {
    uint8_t ucDispType;
    uint8_t ucReserved1[3];
    uint8_t ucKind;
    uint8_t ucReserved5[3];
    uint8_t ucRegIdx; // of the first channel of this part
    uint8_t ucReserved9;
    uint8_t ucRegCount; // channels of this part; what lies behind them is ignored
    uint8_t ucReserved11;
    Channel channels[kPartChannels];
};
static_assert(sizeof(MultiMeasRequest) == 1292 && std::is_trivially_copyable_v<MultiMeasRequest>);
static_assert(offsetof(MultiMeasRequest, ucDispType) == 0);
static_assert(offsetof(MultiMeasRequest, ucKind) == 4);
static_assert(offsetof(MultiMeasRequest, ucRegIdx) == 8);
static_assert(offsetof(MultiMeasRequest, ucRegCount) == 10);
static_assert(offsetof(MultiMeasRequest, channels) == 12);

// Latest values of one channel: 0x10B.
struct MultiResultRequest {
    uint8_t ucReserved0[8];
    uint16_t usIndex;
    uint8_t ucReserved10[2];
};
static_assert(sizeof(MultiResultRequest) == 12 && std::is_trivially_copyable_v<MultiResultRequest>);
static_assert(offsetof(MultiResultRequest, usIndex) == 8);

struct MultiResultResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    uint8_t lock;
    uint8_t ucReserved5[3];
    uint16_t stat;
    uint16_t mesCond;
    uint8_t readIdx;
    uint8_t currIdx;
    uint16_t bdSys;
    uint32_t LEVEL;
    uint32_t CNR;
    uint32_t BER_TOTAL;
    uint32_t BER_ERR;
    uint16_t TSID;
    uint8_t GI;
    uint8_t LAYER;
    uint32_t MOD;
};
static_assert(sizeof(MultiResultResponse) == 40 && std::is_trivially_copyable_v<MultiResultResponse>);
static_assert(offsetof(MultiResultResponse, ucRet) == 0);
static_assert(offsetof(MultiResultResponse, lock) == 4);
static_assert(offsetof(MultiResultResponse, stat) == 8);
static_assert(offsetof(MultiResultResponse, mesCond) == 10);
static_assert(offsetof(MultiResultResponse, readIdx) == 12);
static_assert(offsetof(MultiResultResponse, currIdx) == 13);
static_assert(offsetof(MultiResultResponse, bdSys) == 14);
static_assert(offsetof(MultiResultResponse, LEVEL) == 16);
static_assert(offsetof(MultiResultResponse, CNR) == 20);
static_assert(offsetof(MultiResultResponse, BER_TOTAL) == 24);
static_assert(offsetof(MultiResultResponse, BER_ERR) == 28);
static_assert(offsetof(MultiResultResponse, TSID) == 32);
static_assert(offsetof(MultiResultResponse, GI) == 34);
static_assert(offsetof(MultiResultResponse, LAYER) == 35);
static_assert(offsetof(MultiResultResponse, MOD) == 36);

} // namespace vx63::wire
