#include "setfile/set_path.h"

#include "setfile/catalogue.h"
#include "setfile/file_kind.h"

#include <cstdio>

namespace vx63 {
namespace {

constinit thread_local char s_userPath[kSetPathSize] = {};
constinit thread_local char s_loggerPath[kSetPathSize] = {};

} // namespace

const char* pathOf(uint32_t fileId, const char* name)
{
    const SetFileDef& def = kCatalogue[fileId];
    if (!isSet(fileId)) {
        return def.path;
    }
    char* const path = kindOf(fileId) == FileKind::userSet ? s_userPath : s_loggerPath;
    const int length = snprintf(path, kSetPathSize, def.path, name);
    return static_cast<size_t>(length) < kSetPathSize ? path : nullptr; // a name of 2 GiB: -1
}

} // namespace vx63
