#include "csv.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace csv {

namespace {

const char* reason(const Failure& failure)
{
    if (failure.error != 0) {
        const char* const text = strerrordesc_np(failure.error);
        return text != nullptr ? text : "unknown system error";
    }
    switch (failure.code) {
    case LSYS_ERR_ARG:
        return "the call's arguments describe no file";
    case LSYS_ERR_NOT_FILE:
        return "not a regular file";
    case LSYS_ERR_VERSION:
        return "not the expected version";
    case LSYS_ERR_COLUMNS:
        return "wrong number of columns";
    case LSYS_ERR_NUMBER:
        return "not a number";
    case LSYS_ERR_RANGE:
        return "number out of range";
    case LSYS_ERR_TEXT:
        return "text too long";
    case LSYS_ERR_QUOTE:
        return "bad quoting";
    case LSYS_ERR_CUT:
        return "cut short: no newline at the end of the file";
    case LSYS_ERR_RECORDS:
        return "too many records";
    case LSYS_ERR_BINARY:
        return "binary garbage";
    default:
        return "unknown error";
    }
}

bool fits(const LsysColumn& column, uint32_t recordSize)
{
    const bool known = column.ulType <= LSYS_TYPE_UNSIGNED || isSigned(column) || isText(column);
    const bool wide = isText(column) ? column.ulWidth >= 1
                                     : column.ulWidth == 1 || column.ulWidth == 2 || column.ulWidth == 4;
    return known && wide && column.ulOffset <= recordSize && column.ulWidth <= recordSize - column.ulOffset;
}

} // namespace

Failure systemFailure(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
        return {LSYS_ERR_MISSING, error};
    case EACCES:
    case EPERM:
    case EROFS:
        return {LSYS_ERR_PERMISSION, error};
    case EISDIR:
    case ENXIO: // a socket, or a device that is not there
    case ENODEV:
        return {LSYS_ERR_NOT_FILE, error};
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return {LSYS_ERR_FULL, error};
    default:
        return {LSYS_ERR_SYSTEM, error};
    }
}

int32_t report(const char* path, const Failure& failure)
{
    if (getenv("LSYS_DEBUG") == nullptr)
        return failure.code;

    char place[sizeof ":4294967295:4294967295"] = "";
    if (failure.column != 0)
        snprintf(place, sizeof place, ":%u:%u", failure.line, failure.column);
    else if (failure.line != 0)
        snprintf(place, sizeof place, ":%u", failure.line);

    char text[PATH_MAX + 256];
    auto length = static_cast<size_t>(snprintf(text, sizeof text, "lsys: %.*s%s: %s", PATH_MAX,
                                               path != nullptr ? path : "(null)", place, reason(failure)));
    for (size_t i = 0; i < length; ++i) {
        if (isControl(static_cast<uint8_t>(text[i])))
            text[i] = '?'; // one line, whatever the path holds
    }
    text[length++] = '\n';
    while (write(STDERR_FILENO, text, length) < 0 && errno == EINTR) {
    }
    return failure.code;
}

bool describesFile(const char* path, const char* version, uint32_t columnCount, const LsysColumn* columns,
                   uint32_t recordSize)
{
    if (path == nullptr || *path == '\0' || version == nullptr || *version == '\0' || columns == nullptr ||
        columnCount == 0)
        return false;
    for (const char* at = version; *at != '\0'; ++at) {
        if (isControl(static_cast<uint8_t>(*at)))
            return false;
    }
    for (uint32_t i = 0; i < columnCount; ++i) {
        if (!fits(columns[i], recordSize))
            return false;
    }
    return true;
}

} // namespace csv
