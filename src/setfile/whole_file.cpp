// A settings file as a whole: between its CSV file and the caller's array of records.
#include "frame/log.h"
#include "libvx63.h"
#include "libvx63_settings.h"
#include "lsys.h"
#include "setfile/catalogue.h"
#include "setfile/file_kind.h"
#include "setfile/set_path.h"

#include <cstring>
#include <unistd.h>

using namespace vx63;

// What read and write both refuse.
static bool argumentsAreValid(uint32_t fileId, const void* pDat, const char* pcMeasFileName,
                              Caller caller = {})
{
    if (fileId >= VX63_SET_FILE_COUNT) {
        logLine({caller}, "arg error. fileId=%d", static_cast<int32_t>(fileId));
        return false;
    }
    if (pDat == nullptr) {
        logLine({caller}, "arg null pointer error. pDat=%p", pDat);
        return false;
    }
    if (isSet(fileId) && pcMeasFileName == nullptr) {
        logLine({caller}, "arg null pointer error. pcMeasFileName=%p",
                static_cast<const void*>(pcMeasFileName));
        return false;
    }
    return true;
}

int32_t vx63_readSetFile(uint32_t fileId, void* pDat, const char* pcMeasFileName, uint32_t bDefault)
{
    logLine({}, "Start.");
    if (!argumentsAreValid(fileId, pDat, pcMeasFileName)) {
        return -1;
    }
    logLine({}, "fileId=%d, pDat=%p, pcMeasFileName=[%s], bDefault=%u", static_cast<int32_t>(fileId), pDat,
            pcMeasFileName, bDefault);

    const SetFileDef& def = kCatalogue[fileId];
    int32_t iRet = -1;
    if (!isSetOrList(fileId) && bDefault != 0) {
        memcpy(pDat, def.defaultData, def.defaultSize);
        iRet = static_cast<int32_t>(def.rows);
    } else {
        const char* const path = pathOf(fileId, pcMeasFileName);
        if (path == nullptr) {
            logLine({}, "arg error. pcMeasFileName=[%.64s]...", pcMeasFileName);
            return -1;
        }
        iRet = lsys_readCsvNewFmt(path, settings::kVersion, def.rows, def.columnCount,
                                  static_cast<uint8_t*>(pDat), def.dataSize, def.columns);
    }
    logLine({}, "End. iRet=%d", iRet);
    return iRet;
}

int32_t vx63_writeSetFile(uint32_t fileId, const void* pDat, const char* pcMeasFileName, uint32_t ulUserLine)
{
    logLine({}, "Start.");
    if (!argumentsAreValid(fileId, pDat, pcMeasFileName)) {
        return -1;
    }
    const SetFileDef& def = kCatalogue[fileId];
    if (isSetOrList(fileId) && ulUserLine > def.rows) {
        logLine({}, "arg out of range error. ulUserLine=%u", ulUserLine);
        return -1;
    }
    logLine({}, "fileId=%d, pDat=%p, pcMeasFileName=[%s], ulUserLine=%u", static_cast<int32_t>(fileId), pDat,
            pcMeasFileName, ulUserLine);

    const char* const path = pathOf(fileId, pcMeasFileName);
    if (path == nullptr) {
        logLine({}, "arg error. pcMeasFileName=[%.64s]...", pcMeasFileName);
        return -1;
    }
    const uint32_t records = isSetOrList(fileId) ? ulUserLine : def.rows;
    const int32_t iRet = lsys_writeCsvNewFmt(path, settings::kVersion, def.header, records, def.columnCount,
                                             static_cast<const uint8_t*>(pDat), def.dataSize, def.columns);
    sync();
    logLine({}, "End. iRet=%d", iRet);
    return iRet;
}
