// What the starts and stops of the measurements have in common: what they send is theirs, what they make of
// the answer is not. What is particular to one of them stands in the test of its family.
#include "support/bytes.h"
#include "support/operation_test.h"
#include "support/start_body.h"

namespace {

using testing::ElementsAreArray;
using vx63test::condition;
using vx63test::conditionLine;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::startRequest;
using vx63test::stopRequest;

struct StartOrStop {
    std::string name;
    int32_t (*call)();
    std::string request;
    std::string responseCommand;
    std::string function;            // the one that the exchange is logged in the name of
    std::vector<std::string> before; // the lines between Start and the exchange
};

const MeasCondition s_off = condition(0);
const MeasCondition s_third = condition(3);

const StartOrStop kOperations[] = {
    {"vx63_startSingleMeas",
     [] { return vx63_startSingleMeas(6, &s_off); },
     startRequest("03 01", "00 00"),
     "03 81",
     "vx63_startSingleMeasCommon",
     {conditionLine("vx63_startSingleMeasCommon", 0), "vx63_startSingleMeasCommon: reqData.ucDispType=6"}},
    {"vx63_stopSingleMeas",
     [] { return vx63_stopSingleMeas(6); },
     stopRequest("03 01"),
     "03 81",
     "vx63_stopSingleMeas",
     {"vx63_stopSingleMeas: reqData.ucDispType=6"}},
    {"vx63_startMultiChPrioMeas",
     [] { return vx63_startMultiChPrioMeas(6, &s_third); },
     startRequest("03 01", "01 01"),
     "03 81",
     "vx63_startSingleMeasCommon",
     {conditionLine("vx63_startSingleMeasCommon", 3), "vx63_startSingleMeasCommon: reqData.ucDispType=6"}},
    {"vx63_stopMultiChPrioMeas",
     [] { return vx63_stopMultiChPrioMeas(6); },
     stopRequest("03 01"),
     "03 81",
     "vx63_stopMultiChPrioMeas",
     {"vx63_stopMultiChPrioMeas: reqData.ucDispType=6"}},
    {"vx63_startConstaMeas",
     [] { return vx63_startConstaMeas(255, 1000); },
     "05 0C 05 01 08 00 00 00 | FF 00 00 00 01 00 E8 03",
     "05 81",
     "vx63_startConstaMeas",
     {"vx63_startConstaMeas: reqData.ucDispType=255", "vx63_startConstaMeas: collectNum=1000"}},
    {"vx63_stopConstaMeas",
     [] { return vx63_stopConstaMeas(6); },
     "05 0C 05 01 08 00 00 00 | 06 00 00 00 00 00 00 00",
     "05 81",
     "vx63_stopConstaMeas",
     {"vx63_stopConstaMeas: reqData.ucDispType=6"}},
    {"vx63_startDlyPrfMeas",
     [] { return vx63_startDlyPrfMeas(6, &s_third); },
     startRequest("07 01", "01 01"),
     "07 81",
     "vx63_startDlyPrfMeas",
     {conditionLine("vx63_startDlyPrfMeas", 3), "vx63_startDlyPrfMeas: reqData.ucDispType=6"}},
    {"vx63_stopDlyPrfMeas",
     [] { return vx63_stopDlyPrfMeas(6); },
     stopRequest("07 01"),
     "07 81",
     "vx63_stopDlyPrfMeas",
     {"vx63_stopDlyPrfMeas: reqData.ucDispType=6"}},
    {"vx63_stopMultiMeas",
     [] { return vx63_stopMultiMeas(6); },
     "05 0C 09 01 0C 05 00 00 | 06 00*1291",
     "09 81",
     "vx63_stopMultiMeas",
     {"vx63_stopMultiMeas: reqData.ucDispType=6"}},
    {"vx63_stopScan",
     [] { return vx63_stopScan(6); },
     "05 0C 09 01 0C 05 00 00 | 06 00*1291",
     "09 81",
     "vx63_stopScan",
     {"vx63_stopScan: reqData.ucDispType=6"}},
    {"vx63_startOptMeas",
     [] { return vx63_startOptMeas(0x12345678); },
     "05 0C 0C 01 0C 00 00 00 | 00 00 00 00 01 00 00 00 78 56 34 12",
     "0C 81",
     "vx63_startOptMeas",
     {"vx63_startOptMeas: ulWaveLength=305419896"}},
    {"vx63_stopOptMeas",
     [] { return vx63_stopOptMeas(); },
     "05 0C 0C 01 0C 00 00 00 | 00 00 00 00 00 00 00 00 00 00 00 00",
     "0C 81",
     "vx63_stopOptMeas",
     {}},
    {"vx63_startDcMeas",
     [] { return vx63_startDcMeas(); },
     "05 0C 0E 01 08 00 00 00 | 00 00 00 00 01 00 00 00",
     "0E 81",
     "vx63_startDcMeas",
     {}},
    {"vx63_stopDcMeas",
     [] { return vx63_stopDcMeas(); },
     "05 0C 0E 01 08 00 00 00 | 00 00 00 00 00 00 00 00",
     "0E 81",
     "vx63_stopDcMeas",
     {}},
};

class StartStopTest : public vx63test::OperationTest, public testing::WithParamInterface<StartOrStop> {
protected:
    // The log holds the lines of the operation up to its exchange, then these of the exchange, then the end.
    static void expectLog(const std::vector<std::string>& ofExchange, int32_t result)
    {
        std::vector<std::string> expected = {GetParam().name + ": Start."};
        expected.insert(expected.end(), GetParam().before.begin(), GetParam().before.end());
        expected.insert(expected.end(), ofExchange.begin(), ofExchange.end());
        expected.push_back(GetParam().name + ": End. vx63_err=" + std::to_string(result));
        EXPECT_THAT(logMessages(), ElementsAreArray(expected));
    }
};

TEST_P(StartStopTest, JudgesUcRet)
{
    for (unsigned ucRet = 0; ucRet < 256; ++ucRet) {
        SCOPED_TRACE(ucRet);
        vx63test::removeLog();
        platform().expectSend(12, 10000, GetParam().request);
        platform().expectReceive(5, 10000,
                                 "0C 05 " + GetParam().responseCommand + " 04 00 00 00 | " + hexByte(ucRet) +
                                     " 00 00 00");
        const int32_t result = GetParam().call();
        if (ucRet == 0 || ucRet == 7) {
            EXPECT_EQ(result, 0);
            expectLog({}, 0);
        } else if (ucRet == 2) {
            EXPECT_EQ(result, -2);
            expectLog({GetParam().function + ": parameter error. vx63_err=-2"}, -2);
        } else {
            EXPECT_EQ(result, -1); // for 3 as well: no power-supply error here
            expectLog({GetParam().function + ": ret error. vx63_err=-1"}, -1);
        }
    }
}

TEST_P(StartStopTest, NamesTheSubCpuWhenTheExchangeFails)
{
    const std::string line = GetParam().function + ": subcpu communication error. vx63_err=-1";

    platform().expectSend(12, 10000, GetParam().request, -4);
    EXPECT_EQ(GetParam().call(), -1);
    expectLog({"vx63_sndRcvCommon: lmsg_tsndMq() timeout error. lmsg_err=-4", line}, -1);

    vx63test::removeLog();
    platform().expectSend(12, 10000, GetParam().request);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(GetParam().call(), -1);
    expectLog({"vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4", line}, -1);
}

INSTANTIATE_TEST_SUITE_P(EveryMeasurement, StartStopTest, testing::ValuesIn(kOperations),
                         [](const auto& operation) { return operation.param.name; });

} // namespace
