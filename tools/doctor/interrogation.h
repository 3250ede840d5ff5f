// Finds out what is wrong with the services: asks each of them, and judges from the results and from what
// the library logs. Talks to nobody itself: how a question is asked, the caller tells.
#pragma once

#include "common/services.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tool {

// A call of the library: who answers it, and its command code.
struct Question {
    uint8_t service;
    uint16_t command;
};

// What came of a call.
struct Attempt {
    int32_t result;
    double ms;
    std::optional<std::vector<std::string>> messages; // what the library logged; nothing: that cannot be read
    Sense sense = Sense::good;
};

enum class Trouble {
    none,
    notRunning,       // it was not asked: its process does not run
    slow,             // it answers, but takes its time
    queueFull,        // nobody takes the requests out of its queue
    queue,            // its queue cannot be used: number is lmsg_err
    ownQueue,         // our queue cannot be used: number is lmsg_err
    noAnswer,         // within the time-out
    lateAnswer,       // the answer came after the time-out
    restarted,        // it did not answer at first, and does now that others do
    refused,          // at transport level: number is usOptOrRet
    failureResult,    // the answer says that it failed
    wrongCommand,     // answers carry another command code: number
    unexpectedAnswer, // an answer that nothing waited for: number is its command code
    strayRequest,     // it sends requests to us: number is their command code
    senseless,        // the answer is nothing that a meter could say
    emptyAnswer,      // the answer is empty, or was cut short
    unknown           // the call fails at once, and nothing tells why
};

struct Diagnosis {
    Trouble trouble = Trouble::none;
    int32_t number = 0;
    double ms = 0;          // of the call that was answered, or that failed
    std::string queue = {}; // that is not trusted: which, and whose it is, where that is known
};

// Our queue, or the service's, is not trusted.
bool isUntrustedQueue(const Diagnosis& diagnosis);

// Asks the questions in their order, one a service; where something comes in between, again; those that were
// silent before another one answered; and those that answered well a second time.
//   diagnoses  one a question
class Interrogation {
public:
    using Ask = std::function<Attempt(const Question&)>;
    Interrogation(std::span<const Question> questions, Ask ask);

    std::vector<Diagnosis> run();

private:
    void interrogate(size_t index);
    void takeAnswer(size_t asked, uint8_t from, uint16_t code);
    void blame(uint8_t service, Trouble trouble, int32_t number);

    std::span<const Question> m_questions;
    Ask m_ask;
    std::vector<Diagnosis> m_diagnoses;
    std::vector<unsigned> m_due; // answers to our own calls that have not come yet
};

// For people, and for programs: "no-answer".
std::string troubleText(const Diagnosis& diagnosis);
std::string troubleRemedy(const Diagnosis& diagnosis);
const char* troubleWord(Trouble trouble);

} // namespace tool
