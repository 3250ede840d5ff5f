// What the library's log says of a call that failed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

// What the transport says of a call.
struct Evidence {
    enum What {
        answer,
        sendTimeout,
        sendError,
        receiveTimeout,
        receiveError,
        refusal,
        failure,
        otherAnswer,
        request,
        nothing
    } what = nothing;
    int number = 0; // of a failure: its ucRet, 0 where that is not logged
    unsigned from = 0;
};

// The first of the messages of a call that tells something.
std::optional<Evidence> evidenceIn(const std::vector<std::string>& messages);

} // namespace tool
