/* The public header as a C99 program uses it: every name, and the thread-local buffers. */
#include "libvx63.h"

#include <stddef.h>
#include <stdio.h>
#include <string.h>

static int s_failures = 0;

static void expect(int condition, const char* what)
{
    if (!condition) {
        fprintf(stderr, "header_c99: %s\n", what);
        ++s_failures;
    }
}

int main(void)
{
    int32_t (*const pInit)(int32_t) = vx63_init;
    int32_t (*const pReadSetFile)(uint32_t, void*, const char*, uint32_t) = vx63_readSetFile;
    int32_t (*const pWriteSetFile)(uint32_t, const void*, const char*, uint32_t) = vx63_writeSetFile;
    int32_t (*const pReadSetFileIdx)(uint32_t, void*, uint32_t, const char*, uint32_t) = vx63_readSetFileIdx;
    int32_t (*const pWriteSetFileIdx)(uint32_t, const void*, uint32_t, const char*) = vx63_writeSetFileIdx;
    int32_t (*const pIsFileId[])(int32_t) = {vx63_isFileIdUserSet, vx63_isFileIdUserSetFlist,
                                             vx63_isFileIdLoggerSet, vx63_isFileIdLoggerSetFlist};
    int32_t (*const pDeleteSetFile[])(const char*) = {
        vx63_deleteSetFileUser,   vx63_deleteSetFileUserUsb1,   vx63_deleteSetFileUserUsb2,
        vx63_deleteSetFileLogger, vx63_deleteSetFileLoggerUsb1, vx63_deleteSetFileLoggerUsb2};
    int32_t (*const pDeleteSetFileBulk[])(uint32_t) = {vx63_deleteSetFileUserBulk,
                                                       vx63_deleteSetFileLoggerBulk};
    int32_t (*const pDeleteAllSetFile)(void) = vx63_deleteAllSetFile;
    int32_t (*const pNtfUpdateFile)(uint32_t) = vx63_ntfUpdateFile;
    int32_t (*const pNtfUpdateFileIdx)(uint32_t, uint32_t) = vx63_ntfUpdateFileIdx;
    int32_t (*const pSetMeasInput)(int32_t) = vx63_setMeasInput;
    int32_t (*const pReqPowerSupply)(int32_t) = vx63_reqPowerSupply;
    int32_t (*const pGetMeasStatus)(MeasStatus*) = vx63_getMeasStatus;
    int32_t (*const pGetPowerSupplyInfo)(PowerSupplyInfo*) = vx63_getPowerSupplyInfo;
    int32_t (*const pMixBand)(uint8_t) = vx63_setPowerSupplyMultiMeasMixBand;
    int32_t (*const pStart)(uint8_t, const MeasCondition*) = vx63_startSingleMeas;
    int32_t (*const pStop)(uint8_t) = vx63_stopSingleMeas;
    int32_t (*const pResult)(uint16_t, SingleMeasResult*) = vx63_getSingleMeasResult;
    int32_t (*const pStartConsta)(uint8_t, int32_t) = vx63_startConstaMeas;
    int32_t (*const pStopConsta)(uint8_t) = vx63_stopConstaMeas;
    int32_t (*const pStartDlyPrf)(uint8_t, const MeasCondition*) = vx63_startDlyPrfMeas;
    int32_t (*const pStopDlyPrf)(uint8_t) = vx63_stopDlyPrfMeas;
    int32_t (*const pDlyPrf)(DlyPrfResult*) = vx63_getDlyPrfResult;
    int32_t (*const pStartMulti)(uint8_t, const MultiMeasReg*) = vx63_startMultiMeas;
    int32_t (*const pStopMulti)(uint8_t) = vx63_stopMultiMeas;
    int32_t (*const pSetMulti)(void) = vx63_setMultiMeasChannel;
    int32_t (*const pMulti)(int32_t, MultiMeasResult*) = vx63_getMultiMeasResult;
    int32_t (*const pStartPrio)(uint8_t, const MeasCondition*) = vx63_startMultiChPrioMeas;
    int32_t (*const pStopPrio)(uint8_t) = vx63_stopMultiChPrioMeas;
    int32_t (*const pPrio)(SingleMeasResult*) = vx63_getMultiChPrioMeas;
    int32_t (*const pStartScan)(uint8_t, const MultiMeasReg*) = vx63_startScan;
    int32_t (*const pStopScan)(uint8_t) = vx63_stopScan;
    int32_t (*const pScan)(int32_t, MultiMeasResult*) = vx63_getScanResult;
    int32_t (*const pStartOpt)(uint32_t) = vx63_startOptMeas;
    int32_t (*const pStopOpt)(void) = vx63_stopOptMeas;
    int32_t (*const pOpt)(int32_t*) = vx63_getOptMeasResult;
    int32_t (*const pStartDc)(void) = vx63_startDcMeas;
    int32_t (*const pStopDc)(void) = vx63_stopDcMeas;
    int32_t (*const pDc)(uint32_t*) = vx63_getDcMeasResult;
    int32_t (*const pStartAngle)(void) = vx63_startAngleMeas;
    int32_t (*const pStopAngle)(void) = vx63_stopAngleMeas;
    int32_t (*const pStartCal)(void) = vx63_startAngleCal;
    int32_t (*const pCalStat)(AngleCalStat*) = vx63_getAngleCalStat;
    int32_t (*const pCalDetail)(AngleCalInfoDetail*) = vx63_getAngleCalInfoDetail;
    int32_t (*const pProductInfo)(ProductInfo*) = vx63_getProductInfo;
    int32_t (*const pFailinfo)(FailInfo*) = vx63_getFailinfo;
    int32_t (*const pKeyStatus)(KeyStatus*) = vx63_getKeyStatus;
    int32_t (*const pDeviceStatus)(DeviceStatus*) = vx63_getDeviceStatus;
    int32_t (*const pSetFailStat)(uint16_t, uint8_t, const uint8_t*) = vx63_setFailStat;
    int32_t (*const pWithoutArgument[])(void) = {vx63_reboot, vx63_shutdown, vx63_force_standby,
                                                 vx63_force_wakeup, vx63_initFactoryDefault};
    int32_t (*const pWithByte[])(uint8_t) = {vx63_standby, vx63_wakeup, vx63_calibration,
                                             vx63_ntfLowBattStatChg, vx63_setDeveloperMode};
    int32_t (*const pStandbyStat)(uint32_t*) = vx63_getStandbyStat;
    int32_t (*const pPrgUpdate)(const void*) = vx63_prgUpdate;
    int32_t (*const pBuzzer)(int32_t, int32_t) = vx63_buzzer;
    int32_t (*const pBuzzerVolume)(int32_t, int32_t) = vx63_forceBuzzerVolume;
    int32_t (*const pBrightness)(int32_t) = vx63_forceBrightness;

    expect(pInit(18) == VX63_ERR_ARG, "vx63_init(18)");
    expect(pInit(17) == VX63_OK, "vx63_init(17)");
    uint8_t brightness[4] = {0};
    expect(pReadSetFile(VX63_SET_FILE_BRIGHTNESS, brightness, NULL, 1) == 1 && brightness[0] == 3,
           "vx63_readSetFile(brightness)");
    expect(pWriteSetFile(VX63_SET_FILE_COUNT, brightness, NULL, 1) == -1, "vx63_writeSetFile(50)");
    expect(pReadSetFileIdx(VX63_SET_FILE_BRIGHTNESS, brightness, 1, NULL, 1) == -1,
           "vx63_readSetFileIdx(brightness, 1)");
    expect(pWriteSetFileIdx(VX63_SET_FILE_USER_SET, brightness, 0, NULL) == -1,
           "vx63_writeSetFileIdx(no name)");
    for (size_t i = 0; i < sizeof pIsFileId / sizeof pIsFileId[0]; ++i) {
        expect(pIsFileId[i](VX63_SET_FILE_POWOFF) == 0, "vx63_isFileId*(0)");
    }
    for (size_t i = 0; i < sizeof pDeleteSetFile / sizeof pDeleteSetFile[0]; ++i) {
        expect(pDeleteSetFile[i](NULL) == -1, "vx63_deleteSetFile*(NULL)");
    }
    for (size_t i = 0; i < sizeof pDeleteSetFileBulk / sizeof pDeleteSetFileBulk[0]; ++i) {
        expect(pDeleteSetFileBulk[i](VX63_SET_FILE_USER_LIST) == -1, "vx63_deleteSetFile*Bulk(15)");
    }
    expect(pDeleteAllSetFile != NULL, "vx63_deleteAllSetFile");
    expect(pNtfUpdateFile(VX63_SET_FILE_COUNT) == VX63_ERR_ARG, "vx63_ntfUpdateFile(50)");
    expect(pNtfUpdateFileIdx(VX63_SET_FILE_COUNT, 0) == VX63_ERR_ARG, "vx63_ntfUpdateFileIdx(50)");
    expect(pSetMeasInput(2) == VX63_ERR_ARG, "vx63_setMeasInput(2)");
    expect(pReqPowerSupply(5) == VX63_ERR_ARG, "vx63_reqPowerSupply(5)");
    expect(pGetMeasStatus(NULL) == VX63_ERR_ARG, "vx63_getMeasStatus(NULL)");
    expect(pStart(0, NULL) == VX63_ERR_ARG, "vx63_startSingleMeas(NULL)");
    expect(pResult(0, NULL) == VX63_ERR_ARG, "vx63_getSingleMeasResult(NULL)");
    expect(pGetPowerSupplyInfo != NULL && pMixBand != NULL && pStop != NULL, "functions");
    expect(pProductInfo(NULL) == VX63_ERR_ARG, "vx63_getProductInfo(NULL)");
    expect(pFailinfo(NULL) == VX63_ERR_ARG, "vx63_getFailinfo(NULL)");
    expect(pKeyStatus(NULL) == VX63_ERR_ARG, "vx63_getKeyStatus(NULL)");
    expect(pDeviceStatus(NULL) == VX63_ERR_ARG, "vx63_getDeviceStatus(NULL)");
    expect(pSetFailStat(0, 0, NULL) == VX63_ERR_ARG, "vx63_setFailStat(NULL)");
    expect(pWithoutArgument[4] != NULL && pWithByte[4] != NULL, "power functions");
    expect(pStandbyStat(NULL) == VX63_ERR_ARG, "vx63_getStandbyStat(NULL)");
    expect(pPrgUpdate(NULL) == VX63_ERR_ARG, "vx63_prgUpdate(NULL)");
    expect(pBuzzer(5, 0) == VX63_ERR_ARG, "vx63_buzzer(5)");
    expect(pBuzzerVolume(0, 4) == VX63_ERR_ARG, "vx63_forceBuzzerVolume(4)");
    expect(pBrightness(3) == VX63_ERR_ARG, "vx63_forceBrightness(3)");

    expect(pStartConsta(0, 3000) == VX63_ERR_ARG, "vx63_startConstaMeas(3000)");
    expect(pStartDlyPrf(0, NULL) == VX63_ERR_ARG, "vx63_startDlyPrfMeas(NULL)");
    expect(pDlyPrf(NULL) == VX63_ERR_ARG, "vx63_getDlyPrfResult(NULL)");
    expect(pStartMulti(0, NULL) == VX63_ERR_ARG, "vx63_startMultiMeas(NULL)");
    expect(pSetMulti() == VX63_OK, "vx63_setMultiMeasChannel()");
    expect(pMulti(0, NULL) == VX63_ERR_ARG, "vx63_getMultiMeasResult(NULL)");
    expect(pStartPrio(0, NULL) == VX63_ERR_ARG, "vx63_startMultiChPrioMeas(NULL)");
    expect(pPrio(NULL) == VX63_ERR_ARG, "vx63_getMultiChPrioMeas(NULL)");
    expect(pStartScan(0, NULL) == VX63_ERR_ARG, "vx63_startScan(NULL)");
    expect(pScan(0, NULL) == VX63_ERR_ARG, "vx63_getScanResult(NULL)");
    expect(pStartOpt(0) == VX63_ERR_ARG, "vx63_startOptMeas(0)");
    expect(pOpt(NULL) == VX63_ERR_ARG, "vx63_getOptMeasResult(NULL)");
    expect(pDc(NULL) == VX63_ERR_ARG, "vx63_getDcMeasResult(NULL)");
    expect(pStopConsta != NULL && pStopDlyPrf != NULL && pStopMulti != NULL && pStopPrio != NULL &&
               pStopScan != NULL && pStopOpt != NULL && pStartDc != NULL && pStopDc != NULL,
           "measurement functions");
    expect(pStartAngle != NULL && pStopAngle != NULL && pStartCal != NULL && pCalStat != NULL &&
               pCalDetail != NULL,
           "angle functions");

    expect(VX63_OK == 0 && VX63_ERR_COMM == -1 && VX63_ERR_ARG == -2 && VX63_ERR_REPEAT == -6 &&
               VX63_ERR_POWER == -7 && VX63_ERR_PRIORITY == -8,
           "result codes");
    expect(PROC_ID_PSYS == 0 && PROC_ID_PDEV == 6 && PROC_ID_PKEY == 8 && PROC_ID_PBUZ == 10 &&
               PROC_ID_PMEAS == 12,
           "process ids");
    expect(VX63_POWER_SUPPLY_OFF == 0, "VX63_POWER_SUPPLY_OFF");

    expect(sizeof(MeasCondition) == 32 && offsetof(MeasCondition, powerSupply) == 28, "MeasCondition");
    expect(sizeof(MeasStatus) == 8 && sizeof(PowerSupplyInfo) == 12, "status records");
    expect(sizeof(SingleMeasResult) == 8040 && offsetof(SingleMeasResult, points) == 38, "SingleMeasResult");
    expect(sizeof(struct ConstaPoint) == 2, "ConstaPoint");
    expect(sizeof(DlyPrfResult) == 2050 && VX63_DLYPRF_SAMPLES == 2048, "DlyPrfResult");
    expect(sizeof(MultiMeasReg) == 4 && offsetof(MultiMeasReg, single) == 4, "MultiMeasReg");
    expect(sizeof(MultiMeasResult) == 36 && offsetof(MultiMeasResult, currIdx) == 7, "MultiMeasResult");
    expect(sizeof(AngleCalStat) == 40 && sizeof(AngleCalInfoDetail) == 56, "angle records");
    expect(sizeof(ProductInfo) == 105 && offsetof(ProductInfo, cProductVer) == 89, "ProductInfo");
    expect(sizeof(FailInfo) == 40 && offsetof(FailInfo, ucAddInfo) == 8, "FailInfo");
    expect(VX63_KEYS == 17 && sizeof(KeyStatus) == 68, "KeyStatus");
    expect(sizeof(DeviceStatus) == 20 && offsetof(DeviceStatus, ulStat3) == 4, "DeviceStatus");
    expect(sizeof(SetChannel) == 28 && offsetof(SetChannel, CH) == 4 && offsetof(SetChannel, DC_OUT) == 25,
           "SetChannel");
    expect(sizeof(SetListEntry) == 15 && offsetof(SetListEntry, FILE_NAME) == 2, "SetListEntry");

    expect(sizeof gLibDumpLog == 50000 && sizeof gLibDumpTestLog == 50000, "dump buffers");
    memset(gLibDumpTestLog, 'x', sizeof gLibDumpTestLog);
    gLibDumpLog[0] = '\0';
    expect(sizeof g_cLibTestLogFilePath == 256, "g_cLibTestLogFilePath");
    expect(strcmp(g_cLibTestLogFilePath, "/var/log/libvx63.cpp.txt") == 0, "log path");
    g_lLibLogLevel = 3;
    expect(g_measSetManuBdsysModDef[22].BDSYS == 10 && g_measSetManuBdsysModDef[22].MOD == 8192,
           "g_measSetManuBdsysModDef");
    return s_failures == 0 ? 0 : 1;
}
