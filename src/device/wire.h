// Bodies of the device and system commands. Every byte not named is sent as zero.
#pragma once

#include "frame/wire.h"

namespace vx63::wire {

// Failure: 0x04. No result byte: what arrives is the record.
struct FailInfoResponse {
    uint16_t usCode;
    uint8_t ucStat;
    uint8_t ucCtl;
    uint16_t usWait;
    uint8_t ucReserved[2];
    uint8_t ucAddInfo[32];
};
static_assert(sizeof(FailInfoResponse) == 40 && std::is_trivially_copyable_v<FailInfoResponse>);
static_assert(offsetof(FailInfoResponse, usCode) == 0);
static_assert(offsetof(FailInfoResponse, ucStat) == 2);
static_assert(offsetof(FailInfoResponse, ucCtl) == 3);
static_assert(offsetof(FailInfoResponse, usWait) == 4);
static_assert(offsetof(FailInfoResponse, ucReserved) == 6);
static_assert(offsetof(FailInfoResponse, ucAddInfo) == 8);

// Product information: 0x05. No result byte. Texts are NUL-padded; one that fills its field has no
// terminator.
struct ProductInfoResponse {
    char cModelCode[8];
    char cOptInfo[5];
    char cSerialNo[12];
    char cBootPrgVer[16];
    char cMainPrgVer[16];
    char cSubPrgVer[16];
    char cQtVer[16];
    char cProductVer[16];
};
static_assert(sizeof(ProductInfoResponse) == 105 && std::is_trivially_copyable_v<ProductInfoResponse>);
static_assert(offsetof(ProductInfoResponse, cModelCode) == 0);
static_assert(offsetof(ProductInfoResponse, cOptInfo) == 8);
static_assert(offsetof(ProductInfoResponse, cSerialNo) == 13);
static_assert(offsetof(ProductInfoResponse, cBootPrgVer) == 25);
static_assert(offsetof(ProductInfoResponse, cMainPrgVer) == 41);
static_assert(offsetof(ProductInfoResponse, cSubPrgVer) == 57);
static_assert(offsetof(ProductInfoResponse, cQtVer) == 73);
static_assert(offsetof(ProductInfoResponse, cProductVer) == 89);

// Device status: 0x06. No result byte. What the values mean is the device service's business: each is
// named by its offset.
struct DeviceStatusResponse {
    uint16_t usStat0;
    uint8_t ucStat2;
    uint8_t ucStat3;
    uint8_t ucStat4;
    uint8_t ucStat5;
    uint8_t ucStat6;
    uint8_t ucReserved7;
    uint16_t usStat8;
};
static_assert(sizeof(DeviceStatusResponse) == 10 && std::is_trivially_copyable_v<DeviceStatusResponse>);
static_assert(offsetof(DeviceStatusResponse, usStat0) == 0);
static_assert(offsetof(DeviceStatusResponse, ucStat2) == 2);
static_assert(offsetof(DeviceStatusResponse, ucStat3) == 3);
static_assert(offsetof(DeviceStatusResponse, ucStat4) == 4);
static_assert(offsetof(DeviceStatusResponse, ucStat5) == 5);
static_assert(offsetof(DeviceStatusResponse, ucStat6) == 6);
static_assert(offsetof(DeviceStatusResponse, ucReserved7) == 7);
static_assert(offsetof(DeviceStatusResponse, usStat8) == 8);

// Key states: 0x08. No result byte.
struct KeyStatusResponse {
    uint8_t stat[17];
};
static_assert(sizeof(KeyStatusResponse) == 17 && std::is_trivially_copyable_v<KeyStatusResponse>);
static_assert(offsetof(KeyStatusResponse, stat) == 0);

// Sound the buzzer: 0x09.
struct BuzzerRequest {
    uint8_t ucBuzz;
    uint8_t ucBuzzMode;
    uint8_t ucReserved[2];
};
static_assert(sizeof(BuzzerRequest) == 4 && std::is_trivially_copyable_v<BuzzerRequest>);
static_assert(offsetof(BuzzerRequest, ucBuzz) == 0);
static_assert(offsetof(BuzzerRequest, ucBuzzMode) == 1);

// Force the buzzer volume: 0x0A.
struct BuzzerVolumeRequest {
    uint8_t ucBuzz;
    uint8_t ucBuzzVol;
    uint8_t ucReserved[2];
};
static_assert(sizeof(BuzzerVolumeRequest) == 4 && std::is_trivially_copyable_v<BuzzerVolumeRequest>);
static_assert(offsetof(BuzzerVolumeRequest, ucBuzz) == 0);
static_assert(offsetof(BuzzerVolumeRequest, ucBuzzVol) == 1);

// Program update: 0x10. Its layout is the system service's business.
struct UpdateRequest {
    uint8_t ucData[32];
};
static_assert(sizeof(UpdateRequest) == 32 && std::is_trivially_copyable_v<UpdateRequest>);
static_assert(offsetof(UpdateRequest, ucData) == 0);

// Set the failure state: 0x11.
struct SetFailStatRequest {
    uint16_t usCode;
    uint8_t ucStat;
    uint8_t ucReserved3;
    uint8_t ucAddInfo[32];
};
static_assert(sizeof(SetFailStatRequest) == 36 && std::is_trivially_copyable_v<SetFailStatRequest>);
static_assert(offsetof(SetFailStatRequest, usCode) == 0);
static_assert(offsetof(SetFailStatRequest, ucStat) == 2);
static_assert(offsetof(SetFailStatRequest, ucReserved3) == 3);
static_assert(offsetof(SetFailStatRequest, ucAddInfo) == 4);

// Standby state: 0x18.
struct StandbyStatResponse {
    uint8_t ucRet;
    uint8_t ucReserved1[3];
    uint32_t ulStandbyStat;
};
static_assert(sizeof(StandbyStatResponse) == 8 && std::is_trivially_copyable_v<StandbyStatResponse>);
static_assert(offsetof(StandbyStatResponse, ucRet) == 0);
static_assert(offsetof(StandbyStatResponse, ulStandbyStat) == 4);

} // namespace vx63::wire
