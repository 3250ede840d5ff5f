// One record of a settings file: the whole file is read, the record moved and, for a write, the whole file
// written back.
#include "frame/log.h"
#include "libvx63.h"
#include "setfile/catalogue.h"
#include "setfile/file_kind.h"
#include "setfile/set_path.h"
#include "setfile/staging.h"

#include <cstring>

using namespace vx63;

constinit thread_local uint8_t vx63::s_staging[kFileSizeMax] = {};

// What read and write both refuse.
static bool argumentsAreValid(uint32_t fileId, const void* pDat, const char* pcUserFileName,
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
    if (isSet(fileId) && pcUserFileName == nullptr) {
        logLine({caller}, "arg null pointer error. pcUserFileName=%p",
                static_cast<const void*>(pcUserFileName));
        return false;
    }
    return true;
}

// Reads the file into the staging buffer. Returns how many records it holds, record ulIdx among them, or a
// negative value.
static int32_t stage(uint32_t fileId, uint32_t ulIdx, const char* pcUserFileName, uint32_t bDefault,
                     Caller caller = {})
{
    // What the file does not fill is zero, never a rest of the file before it.
    memset(s_staging, 0, sizeof s_staging);
    const int32_t iRet = vx63_readSetFile(fileId, s_staging, pcUserFileName, bDefault);
    if (iRet < 0) {
        return iRet;
    }
    // Whatever number the platform reports, a record lies within the file's rows.
    if (static_cast<uint32_t>(iRet) <= ulIdx || kCatalogue[fileId].rows <= ulIdx) {
        logLine({caller}, "arg range error. %dline ulIdx=%u", -1, ulIdx);
        return -1;
    }
    return iRet;
}

int32_t vx63_readSetFileIdx(uint32_t fileId, void* pDat, uint32_t ulIdx, const char* pcUserFileName,
                            uint32_t bDefault)
{
    logLine({}, "Start.");
    if (!argumentsAreValid(fileId, pDat, pcUserFileName)) {
        return -1;
    }
    logLine({}, "fileId=%d, pDat=%p, ulIdx=%u, pcUserFileName=[%s], bDefault=%u",
            static_cast<int32_t>(fileId), pDat, ulIdx, pcUserFileName, bDefault);

    const int32_t iRet = stage(fileId, ulIdx, pcUserFileName, bDefault);
    if (iRet < 0) {
        return iRet;
    }
    const SetFileDef* const pInfo = &kCatalogue[fileId];
    const uint32_t ulOffset = ulIdx * pInfo->dataSize;
    logLine({}, "pInfo=%p", static_cast<const void*>(pInfo));
    logLine({}, "pInfo->dataSize=%d ulOffset=%u", static_cast<int32_t>(pInfo->dataSize), ulOffset);
    memcpy(static_cast<uint8_t*>(pDat) + ulOffset, s_staging + ulOffset, pInfo->dataSize);
    logLine({}, "End. iRet=%d", iRet);
    return iRet;
}

int32_t vx63_writeSetFileIdx(uint32_t fileId, const void* pDat, uint32_t ulIdx, const char* pcUserFileName)
{
    logLine({}, "Start.");
    if (!argumentsAreValid(fileId, pDat, pcUserFileName)) {
        return -1;
    }
    logLine({}, "fileId=%d, pDat=%p, ulIdx=%u, pcUserFileName=[%s]", static_cast<int32_t>(fileId), pDat,
            ulIdx, pcUserFileName);

    const int32_t count = stage(fileId, ulIdx, pcUserFileName, 0);
    if (count < 0) {
        return count;
    }
    const uint32_t dataSize = kCatalogue[fileId].dataSize;
    const uint32_t ulOffset = ulIdx * dataSize;
    memcpy(s_staging + ulOffset, static_cast<const uint8_t*>(pDat) + ulOffset, dataSize);
    const int32_t iRet = vx63_writeSetFile(fileId, s_staging, pcUserFileName, static_cast<uint32_t>(count));
    logLine({}, "End. iRet=%d", iRet);
    return iRet;
}
