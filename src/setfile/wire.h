// Bodies of the commands about settings files. Every byte not named is sent as zero.
#pragma once

#include "frame/wire.h"

namespace vx63::wire {

// A record of a settings file changed: 0x13. (A whole file, 0x12: a ByteRequest with the file id.)
struct UpdateFileIdxRequest {
    uint8_t ucFileId;
    uint8_t ucReserved1[3];
    uint32_t ulIdx; // 0 to 255
};
static_assert(sizeof(UpdateFileIdxRequest) == 8 && std::is_trivially_copyable_v<UpdateFileIdxRequest>);
static_assert(offsetof(UpdateFileIdxRequest, ucFileId) == 0);
static_assert(offsetof(UpdateFileIdxRequest, ulIdx) == 4);

} // namespace vx63::wire
