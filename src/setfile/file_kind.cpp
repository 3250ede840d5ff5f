// Which settings files are sets or lists.
#include "setfile/file_kind.h"

#include "frame/log.h"

using namespace vx63;

int32_t vx63_isFileIdUserSet(int32_t fileId)
{
    return kindOf(static_cast<uint32_t>(fileId)) == FileKind::userSet;
}

int32_t vx63_isFileIdUserSetFlist(int32_t fileId)
{
    return kindOf(static_cast<uint32_t>(fileId)) == FileKind::userList;
}

int32_t vx63_isFileIdLoggerSet(int32_t fileId)
{
    return kindOf(static_cast<uint32_t>(fileId)) == FileKind::loggerSet;
}

int32_t vx63_isFileIdLoggerSetFlist(int32_t fileId)
{
    return kindOf(static_cast<uint32_t>(fileId)) == FileKind::loggerList;
}

int32_t vx63::vx63_getFileIdSetFlist(int32_t fileId)
{
    logLine({}, "Start. fileId=%d", fileId);
    int32_t retFileId = -1;
    for (const settings::SetPair& pair : settings::kSetPairs) {
        if (pair.set == fileId) {
            retFileId = pair.list;
            break;
        }
    }
    logLine({}, "End. retFileId=%d", retFileId);
    return retFileId;
}
