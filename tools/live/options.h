// What the command line of vx63 live says.
#pragma once

#include "common/list.h"
#include "measure/channel_options.h"

#include <cstdint>
#include <string>

namespace tool {

struct LiveOptions : ChannelOptions {
    int64_t intervalMs = 200;
    uint32_t count = 0; // 0: no end
    bool tone = false;
    std::string record; // a file; empty: none
    Form form = Form::text;
};

} // namespace tool
