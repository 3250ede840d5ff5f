// What is wrong with a service, as results and log lines tell it.
#include "doctor/interrogation.h"

#include "libvx63.h"

#include <deque>
#include <gtest/gtest.h>
#include <utility>

using namespace tool;

namespace {

constexpr Question kSys{0, 0x0005};
constexpr Question kDev{6, 0x0006};
constexpr Question kKey{8, 0x0008};

const Attempt kAnswer{0, 0.2, std::vector<std::string>{"Start.", "End. vx63_err=0"}};

Attempt failed(std::vector<std::string> messages, double ms = 0.2)
{
    messages.push_back("PROC_ID_PDEV communication error. vx63_err=-1");
    return {-1, ms, std::move(messages)};
}

// As the library logs a message that is not the answer.
Attempt answerInstead(unsigned from, const char* command)
{
    return failed({std::string("cmd error. usCmd(Req)=0006, usCmd(Rsp)=") + command,
                   "s_procId=17 getpid()=1 pthread_self()=1",
                   "lmsg_tsndMq(pSndMsg->head.ucDstId=6, pSndMsg->head.ucSrcId=17), pSndMsg=0x1, "
                   "lmsg_trcvMq(ucSrcId=17, pRcvMsg->head.ucSrcId=" +
                       std::to_string(from) + ", pRcvMsg->head.ucDstId=17), pRcvMsg=0x2"});
}

Attempt requestInstead(unsigned from, const char* command)
{
    return failed({std::string("cmd error. usCmd(Req)=0006, usCmd(Rsp)=") + command,
                   "s_procId=17 getpid()=1 pthread_self()=1",
                   "lmsg_tsndMq(pSndMsg->head.ucDstId=6, pSndMsg->head.ucSrcId=17), "
                   "lmsg_trcvMq(ucSrcId=17, pRcvMsg->head.ucSrcId=" +
                       std::to_string(from) + ", pRcvMsg->head.ucDstId=17)"});
}

const Attempt kTimeout = failed({"lmsgrcvMq() timeout error. lmsg_err=-4"}, 10000);

// Every call that is made, and what comes of it; each call must be made.
using Script = std::deque<std::pair<uint8_t, Attempt>>;

std::vector<Diagnosis> run(std::vector<Question> questions, Script script)
{
    Interrogation interrogation(questions, [&](const Question& question) -> Attempt {
        if (script.empty() || script.front().first != question.service) {
            ADD_FAILURE() << "unexpected question to " << unsigned{question.service};
            return {-1, 10000, std::nullopt};
        }
        const Attempt attempt = script.front().second;
        script.pop_front();
        return attempt;
    });
    std::vector<Diagnosis> diagnoses = interrogation.run();
    EXPECT_TRUE(script.empty()) << script.size() << " questions were not asked";
    return diagnoses;
}

// A service of which every call comes to this.
Diagnosis diagnosisOf(const Attempt& attempt)
{
    const Question questions[] = {kDev};
    return Interrogation(questions, [&](const Question&) { return attempt; }).run()[0];
}

TEST(Interrogation, OneFailureEach)
{
    const struct {
        const char* message;
        Trouble trouble;
        int32_t number;
    } kCases[] = {
        {"lmsg_tsndMq() timeout error. lmsg_err=-4", Trouble::queueFull, -4},
        {"lmsg_tsndMq() error. lmsg_err=-2", Trouble::queue, -2},
        {"lmsg_tsndMq() error. lmsg_err=-5", Trouble::queue, -5},
        {"lmsgrcvMq() timeout error. lmsg_err=-4", Trouble::noAnswer, -4},
        {"lmsgrcvMq() error. lmsg_err=-3 ucSrcId=17", Trouble::ownQueue, -3},
        {"ret error. usOptOrRet=0004", Trouble::refused, 4},
        {"ret error. usOptOrRet=FFFF", Trouble::refused, 0xFFFF},
        {"ret error. vx63_err=-1", Trouble::failureResult, 0},
        {"parameter error. vx63_err=-2", Trouble::failureResult, 0},
        {"something else", Trouble::unknown, 0},
    };
    for (const auto& one : kCases) {
        const Diagnosis diagnosis = diagnosisOf(failed({"Start.", one.message}));
        EXPECT_EQ(diagnosis.trouble, one.trouble) << one.message;
        EXPECT_EQ(diagnosis.number, one.number) << one.message;
    }
}

TEST(Interrogation, Answers)
{
    EXPECT_EQ(diagnosisOf(kAnswer).trouble, Trouble::none);
    EXPECT_EQ(diagnosisOf({-6, 0.2, std::nullopt}).trouble, Trouble::none); // a busy buzzer
    EXPECT_EQ(diagnosisOf({-8, 0.2, std::nullopt}).trouble, Trouble::none);
    EXPECT_EQ(diagnosisOf({0, 1000, std::nullopt}).trouble, Trouble::slow);
    EXPECT_EQ(diagnosisOf({0, 999, std::nullopt}).trouble, Trouble::none);
    EXPECT_EQ(diagnosisOf({0, 0.2, std::nullopt, Sense::none}).trouble, Trouble::senseless);
    EXPECT_EQ(diagnosisOf({0, 0.2, std::nullopt, Sense::empty}).trouble, Trouble::emptyAnswer);
}

TEST(Interrogation, WithoutTheLogOnlyTheTimeTells)
{
    EXPECT_EQ(diagnosisOf({-1, 10000, std::nullopt}).trouble, Trouble::noAnswer);
    EXPECT_EQ(diagnosisOf({-1, 0.2, std::nullopt}).trouble, Trouble::unknown);
}

TEST(Interrogation, RestartsWhenItIsAsked)
{
    const auto diagnoses = run({kSys, kDev, kKey}, {{0, kTimeout},
                                                    {6, kAnswer},
                                                    {8, kTimeout}, // not before the first answer
                                                    {0, kAnswer},
                                                    {6, kAnswer}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::restarted);
    EXPECT_EQ(diagnoses[1].trouble, Trouble::none);
    EXPECT_EQ(diagnoses[2].trouble, Trouble::noAnswer);
    EXPECT_EQ(run({kSys, kDev}, {{0, kTimeout}, {6, kAnswer}, {0, kTimeout}, {6, kAnswer}})[0].trouble,
              Trouble::noAnswer);
}

TEST(Interrogation, AnswersTwice)
{
    const auto diagnoses = run({kSys, kDev}, {{0, kAnswer},
                                              {6, answerInstead(0, "8005")}, // the second one
                                              {6, kAnswer},
                                              {6, kAnswer}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::unexpectedAnswer);
    EXPECT_EQ(diagnoses[0].number, 5);
    EXPECT_EQ(diagnoses[1].trouble, Trouble::none);
}

TEST(Interrogation, TheLastOneAnswersTwice)
{
    const auto diagnoses =
        run({kSys, kDev}, {{0, kAnswer}, {6, kAnswer}, {0, answerInstead(6, "8006")}, {0, kAnswer}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::none);
    EXPECT_EQ(diagnoses[1].trouble, Trouble::unexpectedAnswer);
}

TEST(Interrogation, TheSecondAnswerTakesItsTime)
{
    const auto diagnoses = run({kSys, kDev}, {{0, kAnswer},
                                              {6, kAnswer},
                                              {0, kAnswer},
                                              {6, kAnswer},
                                              {0, answerInstead(6, "8006")},
                                              {0, answerInstead(6, "8006")},
                                              {0, kAnswer}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::none);
    EXPECT_EQ(diagnoses[1].trouble, Trouble::unexpectedAnswer);
}

TEST(Interrogation, AnswerThatComesTooLate)
{
    const auto diagnoses = run({kSys, kDev, kKey}, {{0, kTimeout},
                                                    {6, answerInstead(0, "8005")},
                                                    {6, kAnswer},
                                                    {8, answerInstead(6, "8006")},
                                                    {8, kAnswer},
                                                    {6, answerInstead(8, "8008")},
                                                    {6, kAnswer},
                                                    {8, answerInstead(6, "8006")},
                                                    {8, kAnswer},
                                                    {6, answerInstead(8, "8008")},
                                                    {6, kAnswer}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::lateAnswer);
    EXPECT_EQ(diagnoses[1].trouble, Trouble::none);
    EXPECT_EQ(diagnoses[2].trouble, Trouble::none);
}

TEST(Interrogation, FailsTheSecondTime)
{
    const auto diagnoses = run({kDev}, {{6, kAnswer}, {6, kTimeout}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::noAnswer);
}

TEST(Interrogation, WrongCommandEveryTime)
{
    const Attempt wrong = answerInstead(6, "8001");
    const auto diagnoses = run({kDev}, {{6, wrong}, {6, wrong}, {6, wrong}, {6, wrong}, {6, wrong}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::wrongCommand);
    EXPECT_EQ(diagnoses[0].number, 1);
}

TEST(Interrogation, WrongCommandOnce)
{
    const auto diagnoses = run({kDev}, {{6, answerInstead(6, "8103")}, {6, kAnswer}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::unexpectedAnswer);
    EXPECT_EQ(diagnoses[0].number, 0x103);
}

TEST(Interrogation, RequestIsBlamedOnItsSender)
{
    const auto diagnoses = run({kSys, kDev}, {{0, requestInstead(6, "0001")},
                                              {0, kAnswer},
                                              {6, answerInstead(0, "8005")},
                                              {6, kAnswer},
                                              {0, answerInstead(6, "8006")},
                                              {0, kAnswer}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::none);
    EXPECT_EQ(diagnoses[1].trouble, Trouble::strayRequest);
    EXPECT_EQ(diagnoses[1].number, 1);
}

TEST(Interrogation, WhatIsDueComesOnlyOnce)
{
    const auto diagnoses = run({kSys, kDev}, {{0, requestInstead(6, "0001")},
                                              {0, kAnswer},
                                              {6, answerInstead(0, "8005")}, // ours, left over
                                              {6, answerInstead(0, "8005")}, // one too many
                                              {6, kAnswer}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::unexpectedAnswer);
    EXPECT_EQ(diagnoses[1].trouble, Trouble::strayRequest);
}

TEST(Interrogation, StrangersAreNoServices)
{
    const Attempt strange = requestInstead(5, "0001");
    const auto diagnoses =
        run({kDev}, {{6, strange}, {6, strange}, {6, strange}, {6, strange}, {6, strange}});
    EXPECT_EQ(diagnoses[0].trouble, Trouble::unknown);
}

TEST(Interrogation, EveryTroubleHasItsWords)
{
    for (int trouble = static_cast<int>(Trouble::queueFull); trouble <= static_cast<int>(Trouble::unknown);
         ++trouble) {
        const Diagnosis diagnosis{static_cast<Trouble>(trouble), -2, 0};
        EXPECT_NE(troubleText(diagnosis), "") << trouble;
        EXPECT_EQ(troubleRemedy(diagnosis) == "", diagnosis.trouble == Trouble::restarted) << trouble;
    }
    EXPECT_EQ(troubleText({Trouble::queue, -2, 0}), "its message queue is not permitted (lmsg_err=-2)");
    EXPECT_EQ(troubleText({Trouble::queue, -7, 0}),
              "its message queue is not trusted: another user can read it or answer in it (lmsg_err=-7)");
    EXPECT_EQ(
        troubleText({Trouble::ownQueue, -7, 0, "/vx63.17 belongs to nobody (65534), mode 0666"}),
        "the message queue for its answers is not trusted: /vx63.17 belongs to nobody (65534), mode 0666 "
        "(lmsg_err=-7)");
    EXPECT_EQ(troubleText({Trouble::refused, 4, 0}), "refuses the request (usOptOrRet=0004)");
}

} // namespace
