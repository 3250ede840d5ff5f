// Asking whether the meter is where it is to measure next.
#pragma once

#include <string>

namespace tool {

enum class Answer { go, skip, end };

// Whether there is a terminal to ask on.
bool canAsk();

// Waits for an answer; an interruption and the end of the input are `end`. What was typed before the question
// is none.
//   place  "outlet 2 (2 of 20, 12 channels)"
Answer askFor(const std::string& place);

} // namespace tool
