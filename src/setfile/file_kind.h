// What a settings file is: a setting set (a family of user-named files), the list that records the names of
// the sets of one folder, or an ordinary file.
#pragma once

#include "libvx63.h"
#include "libvx63_settings.h"

#include <cstdint>

namespace vx63 {

enum class FileKind { ordinary, userSet, userList, loggerSet, loggerList };

constexpr FileKind kindOf(uint32_t fileId)
{
    switch (fileId) {
    case VX63_SET_FILE_USER_SET:
    case VX63_SET_FILE_USER_SET_USB1:
    case VX63_SET_FILE_USER_SET_USB2:
        return FileKind::userSet;
    case VX63_SET_FILE_USER_LIST:
    case VX63_SET_FILE_USER_LIST_USB1:
    case VX63_SET_FILE_USER_LIST_USB2:
        return FileKind::userList;
    case VX63_SET_FILE_LOGGER_SET:
    case VX63_SET_FILE_LOGGER_SET_USB1:
    case VX63_SET_FILE_LOGGER_SET_USB2:
        return FileKind::loggerSet;
    case VX63_SET_FILE_LOGGER_LIST:
    case VX63_SET_FILE_LOGGER_LIST_USB1:
    case VX63_SET_FILE_LOGGER_LIST_USB2:
        return FileKind::loggerList;
    default:
        return FileKind::ordinary;
    }
}

constexpr bool isSet(uint32_t fileId)
{
    return kindOf(fileId) == FileKind::userSet || kindOf(fileId) == FileKind::loggerSet;
}

constexpr bool isSetOrList(uint32_t fileId)
{
    return kindOf(fileId) != FileKind::ordinary;
}

// The list of a set's folder, or -1 where fileId is no set.
int32_t vx63_getFileIdSetFlist(int32_t fileId);

} // namespace vx63
