// One call of an operation, and what is to become of it: worked out by the stand-ins for the platform while
// the operation runs.
#pragma once

#include "input.h"
#include "operations.h"

#include <cstdint>

namespace responses {

inline constexpr size_t kRecordMax = 12012;

struct Call {
    const Operation* operation = nullptr;
    Arguments with = {};
    Input* input = nullptr;

    bool mayAsk = false; // a service, now
    int32_t result = 0;  // what is to be returned, as far as is known
    int lines = 0;       // that may be logged beside the operation's own
    int exchanges = 0;
    uint8_t record[kRecordMax] = {}; // as it is to be left
};
inline Call s_call;

// ---- the queues ----

void forgetMessages();            // in all queues
int messagesFor(int32_t process); // that lie in its queue
void beginExchanges(uint8_t own); // before a call: the caller's process id
void endExchanges();              // after it: all was done that had to be

// ---- the files ----

void beginFiles();
void endFiles(); // works out the result

} // namespace responses
