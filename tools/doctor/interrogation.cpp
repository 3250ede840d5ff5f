#include "doctor/interrogation.h"

#include "common/evidence.h"
#include "common/text.h"
#include "libvx63.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace tool {

namespace {

// A queue holds four messages: the fifth call meets an answer to one of ours.
constexpr int kTries = 5;

// A call that fails later than this has met a time-out.
constexpr double kAtOnceMs = 4000;

constexpr double kSlowMs = 1000;
constexpr std::chrono::milliseconds kCatchingUp{50};

Evidence evidenceOf(const Attempt& attempt)
{
    // A buzzer that is busy has answered.
    if (attempt.result == VX63_OK || attempt.result == VX63_ERR_REPEAT || attempt.result == VX63_ERR_PRIORITY)
        return {Evidence::answer};
    const auto evidence = attempt.messages ? evidenceIn(*attempt.messages) : std::nullopt;
    return evidence.value_or(Evidence{});
}

} // namespace

Interrogation::Interrogation(std::span<const Question> questions, Ask ask)
    : m_questions(questions), m_ask(std::move(ask)), m_diagnoses(questions.size()), m_due(questions.size())
{}

// What a service does besides answering counts only when nothing else is known of it.
void Interrogation::blame(uint8_t service, Trouble trouble, int32_t number)
{
    const auto found = std::ranges::find(m_questions, service, &Question::service);
    if (found == m_questions.end())
        return;
    Diagnosis& diagnosis = m_diagnoses[static_cast<size_t>(found - m_questions.begin())];
    if (diagnosis.trouble == Trouble::none || diagnosis.trouble == Trouble::slow) {
        diagnosis.trouble = trouble;
        diagnosis.number = number;
    }
}

void Interrogation::takeAnswer(size_t asked, uint8_t from, uint16_t code)
{
    for (size_t i = 0; i < m_questions.size(); ++i) {
        if (m_questions[i].service != from || m_questions[i].command != code)
            continue;
        if (m_due[i] == 0)
            break;
        --m_due[i];
        if (i != asked && m_diagnoses[i].trouble == Trouble::noAnswer)
            m_diagnoses[i].trouble = Trouble::lateAnswer;
        return;
    }
    blame(from, Trouble::unexpectedAnswer, code);
}

void Interrogation::interrogate(size_t index)
{
    const Question& question = m_questions[index];
    int others = 0; // answers of this very service with a code that it was not asked
    int otherCode = 0;
    for (int made = 0; made < kTries; ++made) {
        const Attempt attempt = m_ask(question);
        const Evidence evidence = evidenceOf(attempt);
        const auto conclude = [&](Trouble trouble) {
            Diagnosis& diagnosis = m_diagnoses[index];
            diagnosis.ms = diagnosis.ms > 0 ? diagnosis.ms : attempt.ms;
            blame(question.service, trouble, evidence.number);
            if (others > 0)
                blame(question.service, Trouble::unexpectedAnswer, otherCode);
        };
        if (evidence.what != Evidence::sendTimeout && evidence.what != Evidence::sendError)
            ++m_due[index];
        switch (evidence.what) {
        case Evidence::answer:
            --m_due[index];
            return conclude(attempt.sense == Sense::none         ? Trouble::senseless
                            : attempt.sense == Sense::empty      ? Trouble::emptyAnswer
                            : made == 0 && attempt.ms >= kSlowMs ? Trouble::slow
                                                                 : Trouble::none);
        case Evidence::failure:
            --m_due[index];
            return conclude(Trouble::failureResult);
        case Evidence::refusal:
            --m_due[index];
            return conclude(Trouble::refused);
        case Evidence::sendTimeout:
            return conclude(Trouble::queueFull);
        case Evidence::sendError:
            return conclude(Trouble::queue);
        case Evidence::receiveTimeout:
            return conclude(Trouble::noAnswer);
        case Evidence::receiveError:
            return conclude(Trouble::ownQueue);
        case Evidence::nothing:
            return conclude(attempt.ms >= kAtOnceMs ? Trouble::noAnswer : Trouble::unknown);
        case Evidence::request:
            blame(static_cast<uint8_t>(evidence.from), Trouble::strayRequest, evidence.number);
            break;
        case Evidence::otherAnswer:
            if (evidence.from == question.service) {
                ++others;
                otherCode = evidence.number;
            } else {
                takeAnswer(index, static_cast<uint8_t>(evidence.from),
                           static_cast<uint16_t>(evidence.number));
            }
            break;
        }
    }
    if (others == kTries)
        blame(question.service, Trouble::wrongCommand, otherCode);
    else
        blame(question.service, Trouble::unknown, 0);
}

std::vector<Diagnosis> Interrogation::run()
{
    const auto placeOf = [&](auto isIt) {
        return static_cast<size_t>(std::ranges::find_if(m_diagnoses, isIt) - m_diagnoses.begin());
    };
    for (size_t i = 0; i < m_questions.size(); ++i)
        interrogate(i);
    const auto isWell = [](const Diagnosis& diagnosis) { return diagnosis.trouble == Trouble::none; };
    // While a meter restarts nobody answers; once somebody does, those that were asked before are there too.
    const size_t there = placeOf(isWell);
    for (size_t i = 0; i < there && there < m_questions.size(); ++i) {
        if (m_diagnoses[i].trouble != Trouble::noAnswer)
            continue;
        m_diagnoses[i] = {};
        interrogate(i);
        if (isWell(m_diagnoses[i]))
            m_diagnoses[i].trouble = Trouble::restarted;
    }
    // A service that sends too much may do so after our call has come back, but not after its next answer:
    // ask again, and at last somebody else than the last one, which gets the time to send it.
    size_t last = 0;
    for (size_t i = 0; i < m_questions.size(); ++i) {
        if (isWell(m_diagnoses[i]))
            interrogate(last = i);
    }
    const size_t first = placeOf(isWell);
    if (first < m_diagnoses.size() && first != last) {
        std::this_thread::sleep_for(kCatchingUp);
        interrogate(first);
    }
    return m_diagnoses;
}

const char* troubleWord(Trouble trouble)
{
    switch (trouble) {
    case Trouble::none:
        return "none";
    case Trouble::notRunning:
        return "not-running";
    case Trouble::slow:
        return "slow";
    case Trouble::restarted:
        return "restarted";
    case Trouble::queueFull:
        return "queue-full";
    case Trouble::queue:
        return "queue";
    case Trouble::ownQueue:
        return "own-queue";
    case Trouble::noAnswer:
        return "no-answer";
    case Trouble::lateAnswer:
        return "late-answer";
    case Trouble::refused:
        return "refused";
    case Trouble::failureResult:
        return "failure-result";
    case Trouble::wrongCommand:
        return "wrong-command";
    case Trouble::unexpectedAnswer:
        return "unexpected-answer";
    case Trouble::strayRequest:
        return "stray-request";
    case Trouble::senseless:
        return "senseless-answer";
    case Trouble::emptyAnswer:
        return "empty-answer";
    case Trouble::unknown:
        break;
    }
    return "unknown";
}

namespace {

constexpr int kPermission = -2;
constexpr int kResource = -3;
constexpr int kForeign = -5;
constexpr int kUntrusted = -7;

std::string queueText(const Diagnosis& diagnosis)
{
    const int lmsg_err = diagnosis.number;
    switch (lmsg_err) {
    case kPermission:
        return format("is not permitted (lmsg_err=%d)", lmsg_err);
    case kResource:
        return format("is not to be had: the system's limit is reached (lmsg_err=%d)", lmsg_err);
    case kForeign:
        return format("was made by another program, in another form (lmsg_err=%d)", lmsg_err);
    case kUntrusted:
        return "is not trusted: " +
               (diagnosis.queue.empty() ? "another user can read it or answer in it" : diagnosis.queue) +
               format(" (lmsg_err=%d)", lmsg_err);
    default:
        return format("cannot be used (lmsg_err=%d)", lmsg_err);
    }
}

std::string queueRemedy(int lmsg_err)
{
    switch (lmsg_err) {
    case kPermission:
        return "call vx63 as the user who runs the services, or remove the queue as its owner";
    case kResource:
        return "end programs that are not needed, or raise 'ulimit -q', 'ulimit -n' or fs.mqueue";
    case kForeign:
        return "end that program and remove the queue";
    case kUntrusted:
        return "call vx63 as the user who runs the services, or remove the queue as its owner or root "
               "('rm /dev/mqueue/vx63.N')";
    default:
        return "see whether this system has POSIX message queues and permits them";
    }
}

} // namespace

bool isUntrustedQueue(const Diagnosis& diagnosis)
{
    return (diagnosis.trouble == Trouble::queue || diagnosis.trouble == Trouble::ownQueue) &&
           diagnosis.number == kUntrusted;
}

std::string troubleText(const Diagnosis& diagnosis)
{
    switch (diagnosis.trouble) {
    case Trouble::none:
        return "answers";
    case Trouble::notRunning:
        return "its process does not run";
    case Trouble::restarted:
        return "did not answer at first, and does now: the meter restarted, or was busy";
    case Trouble::slow:
        return "answers slowly";
    case Trouble::queueFull:
        return "its message queue is full: nobody takes the requests";
    case Trouble::queue:
        return "its message queue " + queueText(diagnosis);
    case Trouble::ownQueue:
        return "the message queue for its answers " + queueText(diagnosis);
    case Trouble::noAnswer:
        return "does not answer in time";
    case Trouble::lateAnswer:
        return "answers after the time-out only";
    case Trouble::refused:
        return format("refuses the request (usOptOrRet=%04X)", static_cast<unsigned>(diagnosis.number));
    case Trouble::failureResult:
        return "answers that it failed, or with rubbish";
    case Trouble::wrongCommand:
        return format("answers another command (0x%04X) than was asked",
                      static_cast<unsigned>(diagnosis.number));
    case Trouble::unexpectedAnswer:
        return format("an answer (0x%04X) came that nothing waits for: it answers twice or with a wrong "
                      "command, or an earlier call was given up",
                      static_cast<unsigned>(diagnosis.number));
    case Trouble::strayRequest:
        return format("sends a request (0x%04X) where an answer is due",
                      static_cast<unsigned>(diagnosis.number));
    case Trouble::senseless:
        return "answers with values that no meter has";
    case Trouble::emptyAnswer:
        return "its answer is empty, or was cut short";
    case Trouble::unknown:
        break;
    }
    return "a call fails at once, it cannot be told why";
}

std::string troubleRemedy(const Diagnosis& diagnosis)
{
    switch (diagnosis.trouble) {
    case Trouble::none:
    case Trouble::restarted:
        return "";
    case Trouble::notRunning:
        return "start the service, or restart the meter";
    case Trouble::slow:
    case Trouble::lateAnswer:
        return "see what else keeps the meter busy";
    case Trouble::queueFull:
    case Trouble::noAnswer:
        return "see whether the service runs and is not stuck; restart the meter";
    case Trouble::queue:
    case Trouble::ownQueue:
        return queueRemedy(diagnosis.number);
    case Trouble::refused:
    case Trouble::wrongCommand:
        return "see whether service and library belong to the same version: 'vx63 info'";
    case Trouble::failureResult:
    case Trouble::senseless:
    case Trouble::emptyAnswer:
        return "restart the meter; if that does not help, its program is damaged";
    case Trouble::unexpectedAnswer:
        return "call vx63 with another --id: if this comes again, the service is at fault";
    case Trouble::strayRequest:
        return "see that nothing else uses this process id, and choose another with --id";
    case Trouble::unknown:
        break;
    }
    return "see that the log can be written, then ask again";
}

} // namespace tool
