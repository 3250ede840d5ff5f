// Lists of channels in the virtual meter: registration, the time that each channel takes, results.
#include "meter_bench.h"

#include <rapidcheck/gtest.h>

#include <vector>

namespace vmeter {
namespace {

wire::Channel channelOf(const wire::StartRequest& start)
{
    wire::Channel channel{};
    channel.ulFreq = start.ulFreq;
    channel.ulLoFreq = start.ulLoFreq;
    channel.usBdSys = start.usBdSys;
    channel.usMod = start.usMod;
    channel.usCondition = start.usCondition;
    channel.ucSupplyLevel = start.ucSupplyLevel;
    channel.ucSupplyKind = start.ucSupplyKind;
    return channel;
}

wire::Channel emptyChannel()
{
    wire::Channel channel = channelOf(terrestrial());
    channel.ulFreq = 479143;
    return channel;
}

uint8_t registerPart(Bench& bench, uint8_t ucKind, uint8_t ucRegIdx,
                     const std::vector<wire::Channel>& channels)
{
    wire::MultiMeasRequest part{};
    part.ucKind = ucKind;
    part.ucRegIdx = ucRegIdx;
    part.ucRegCount = static_cast<uint8_t>(channels.size());
    std::ranges::copy(channels, part.channels);
    return bench.call(kMeasurementService, 0x109, toBody(part))[0];
}

uint8_t stopList(Bench& bench)
{
    return bench.call(kMeasurementService, 0x109, Body(1292))[0];
}

wire::MultiResultResponse read(Bench& bench, uint16_t usIndex)
{
    wire::MultiResultRequest request{};
    request.usIndex = usIndex;
    return bench.ask<wire::MultiResultResponse>(kMeasurementService, 0x10B, request);
}

// 500 ms, 200 ms and 500 ms.
const std::vector<wire::Channel> kThree{channelOf(terrestrial()), emptyChannel(), channelOf(satellite())};

constexpr uint8_t kMulti = 1;
constexpr uint8_t kScan = 2;
constexpr uint8_t kMore = 3;

TEST(ChannelList, IsMeasuredChannelByChannel)
{
    for (const uint8_t ucKind : {kMulti, kScan}) {
        Bench bench;
        EXPECT_EQ(registerPart(bench, ucKind, 0, kThree), 0);
        // Every read takes 100 ms. The last value is that at 1200 ms.
        const int current[] = {0, 0, 0, 0, 1, 1, 2, 2, 2, 2, 2, ucKind == kMulti ? 0 : 2};
        for (int i = 0; i < 12; ++i) {
            const auto usIndex = static_cast<uint16_t>(i % 3);
            const int measuredAt[] = {5, 7, 12};
            const wire::MultiResultResponse result = read(bench, usIndex);
            EXPECT_EQ(result.ucRet, 0);
            EXPECT_EQ(result.readIdx, usIndex);
            EXPECT_EQ(result.currIdx, current[i]) << i;
            EXPECT_EQ((result.stat & 0x0010) != 0, i + 1 >= measuredAt[usIndex]) << i;
        }
    }
}

TEST(ChannelList, GivesWhatWasMeasured)
{
    Bench bench;
    registerPart(bench, kScan, 0, kThree);
    const wire::MultiResultResponse notYet = read(bench, 2);
    wire::MultiResultResponse expected{};
    expected.readIdx = 2;
    EXPECT_EQ(toBody(notYet), toBody(expected));

    bench.state_.ulSimMs += 2000;
    wire::MultiResultResponse result = read(bench, 0);
    EXPECT_EQ(result.lock, 1);
    EXPECT_EQ(result.stat, 0x0017);
    EXPECT_EQ(result.mesCond, 0x0027);
    EXPECT_EQ(result.readIdx, 0);
    EXPECT_EQ(result.currIdx, 2);
    EXPECT_EQ(result.bdSys, 0);
    EXPECT_EQ(result.LEVEL, 600u);
    EXPECT_EQ(result.CNR, 200u);
    EXPECT_EQ(result.BER_TOTAL, 4754285u); // 4992 * 6 / 1260 us over 200 ms
    EXPECT_NEAR(result.BER_ERR, 40347.0, 1300.0);
    EXPECT_EQ(result.TSID, 0x7FE0);
    EXPECT_EQ(result.GI, 3);
    EXPECT_EQ(result.LAYER, 3);
    EXPECT_EQ(result.MOD, 1u);

    result = read(bench, 1);
    EXPECT_EQ(result.lock, 0);
    EXPECT_EQ(result.stat, 0x0010);
    EXPECT_EQ(result.LEVEL, 102u);
    EXPECT_EQ(result.CNR, 0u);
    EXPECT_EQ(result.BER_TOTAL, 0u);
    EXPECT_EQ(result.MOD, 0u);

    result = read(bench, 2);
    EXPECT_EQ(result.lock, 1);
    EXPECT_EQ(result.stat, 0x001F); // with its power supply
    EXPECT_EQ(result.bdSys, 1);
    EXPECT_EQ(result.CNR, 170u);
    EXPECT_EQ(result.BER_TOTAL, 17316000u); // 28.86 Msymbol/s, 3 bits, 200 ms
    EXPECT_EQ(result.MOD, 16u);
}

TEST(ChannelList, AScanKeepsItsResults)
{
    Scene scene = parseScene(kCalm, "test");
    scene.levelSigmaDb = 1.0;
    Bench bench(scene);
    registerPart(bench, kScan, 0, kThree);
    bench.state_.ulSimMs += 1200;
    const Body first = toBody(read(bench, 0));
    bench.state_.ulSimMs += 1'000'000;
    EXPECT_EQ(toBody(read(bench, 0)), first);
}

TEST(ChannelList, AMultiMeasurementGoesRoundAndRound)
{
    Scene scene = parseScene(kCalm, "test");
    scene.levelSigmaDb = 1.0;
    Bench bench(scene);
    registerPart(bench, kMulti, 0, kThree);
    bench.state_.ulSimMs += 1200;
    const uint32_t ulFirst = read(bench, 0).LEVEL; // 1300 ms
    EXPECT_EQ(read(bench, 0).LEVEL, ulFirst);      // 1400, 1500, 1600 ms
    EXPECT_EQ(read(bench, 0).LEVEL, ulFirst);
    EXPECT_EQ(read(bench, 0).LEVEL, ulFirst);
    EXPECT_NE(read(bench, 0).LEVEL, ulFirst);  // 1700 ms: measured again
    bench.state_.ulSimMs += 1'200'000'000'000; // whatever the time
    EXPECT_EQ(read(bench, 0).stat, 0x0017);
}

TEST(ChannelList, ChannelsTakeTheTimeThatTheyNeed)
{
    const auto timeOf = [](const std::string& text, const wire::Channel& channel, uint8_t ucInput = 0) {
        Bench bench(text);
        bench.scene_.clockMs = 1;
        bench.input(ucInput);
        EXPECT_EQ(registerPart(bench, kScan, 0, {channel}), 0);
        int ms = 1;
        while ((read(bench, 0).stat & 0x0010) == 0)
            ++ms;
        return ms;
    };
    const auto with = [](const std::string& from, const std::string& to) {
        std::string text = kCalm;
        text.replace(text.find(from), from.size(), to);
        return text;
    };
    EXPECT_EQ(timeOf(kCalm, channelOf(terrestrial())), 500);
    EXPECT_EQ(timeOf(kCalm, emptyChannel()), 200);
    EXPECT_EQ(timeOf(with("lock_ms = 300", "lock_ms = 0"), channelOf(terrestrial())), 200);
    EXPECT_EQ(timeOf(with("lock_ms = 300", "lock_ms = 1000"), channelOf(terrestrial())), 1200);
    EXPECT_EQ(timeOf(with("lock_ms = 300", "lock_ms = 1001"), channelOf(terrestrial())), 1000);
    EXPECT_EQ(timeOf(with("cn_db = 20", "cn_db = 18"), channelOf(terrestrial())), 1000); // too bad
    wire::Channel other = channelOf(terrestrial());
    other.usBdSys = 3;
    other.usMod = 0;
    EXPECT_EQ(timeOf(kCalm, other), 1000); // another system
    wire::Channel level{};
    level.ulFreq = 451250;
    level.usBdSys = 10;
    EXPECT_EQ(timeOf(kCalm, level, 1), 200);
}

TEST(ChannelList, ASignalWithoutLockIsFound)
{
    std::string text = kCalm;
    text.replace(text.find("lock_ms = 300"), 13, "lock_ms = 1001");
    Bench bench(text);
    registerPart(bench, kScan, 0, {channelOf(terrestrial())});
    bench.state_.ulSimMs += 1000;
    const wire::MultiResultResponse result = read(bench, 0);
    EXPECT_EQ(result.lock, 0);
    EXPECT_EQ(result.stat, 0x0011);
    EXPECT_EQ(result.BER_TOTAL, 0u);
}

TEST(ChannelList, IsRegisteredInParts)
{
    std::vector<wire::Channel> forty(40, emptyChannel());
    for (const int total : {40, 41, 80, 256}) {
        Bench bench;
        for (int first = 0; first < total; first += 40) {
            const int count = std::min(40, total - first);
            forty.resize(static_cast<size_t>(count));
            const uint8_t ucKind = first + count == total ? kScan : kMore;
            EXPECT_EQ(registerPart(bench, ucKind, static_cast<uint8_t>(first), forty), 0);
            forty.resize(40, emptyChannel());
        }
        EXPECT_EQ(read(bench, static_cast<uint16_t>(total - 1)).ucRet, 0);
        EXPECT_EQ(read(bench, static_cast<uint16_t>(total)).ucRet, 2);
        EXPECT_EQ(read(bench, 4464).ucRet, 2);
        EXPECT_EQ(read(bench, 65535).ucRet, 2);
    }
}

TEST(ChannelList, WrapsAt256)
{
    // 300 channels: the seventh part reaches from 240 over the end to 23, the eighth begins at 24.
    Bench bench;
    for (unsigned part = 0; part < 7; ++part) {
        std::vector<wire::Channel> channels(40, emptyChannel());
        if (part == 6)
            channels[20] = channelOf(terrestrial()); // 260 - 256
        EXPECT_EQ(registerPart(bench, kMore, static_cast<uint8_t>(40 * part), channels), 0);
    }
    std::vector<wire::Channel> last(20, emptyChannel());
    last[0] = channelOf(terrestrial());
    EXPECT_EQ(registerPart(bench, kScan, 24, last), 0);
    bench.state_.ulSimMs += 256 * 200 + 600;
    EXPECT_EQ(read(bench, 3).stat, 0x0010);
    EXPECT_EQ(read(bench, 4).lock, 1);
    EXPECT_EQ(read(bench, 24).lock, 1);
    EXPECT_EQ(read(bench, 25).stat, 0x0010);
    EXPECT_EQ(read(bench, 255).stat, 0x0010);
    EXPECT_EQ(read(bench, 255).currIdx, 255);
    EXPECT_EQ(read(bench, 256).ucRet, 2);
}

TEST(ChannelList, RefusesPartsOutOfOrder)
{
    Bench bench;
    const std::vector<wire::Channel> two(2, emptyChannel());
    EXPECT_EQ(registerPart(bench, kScan, 40, two), 5); // there is no list yet
    EXPECT_EQ(registerPart(bench, kMore, 0, two), 0);
    EXPECT_EQ(registerPart(bench, kScan, 3, two), 5);
    EXPECT_EQ(registerPart(bench, kScan, 1, two), 5);
    EXPECT_EQ(registerPart(bench, kScan, 2, two), 0);
    EXPECT_EQ(read(bench, 3).ucRet, 0);
    EXPECT_EQ(registerPart(bench, kScan, 4, two), 5); // it is being measured
    EXPECT_EQ(read(bench, 3).ucRet, 0);
    EXPECT_EQ(registerPart(bench, kMore, 0, two), 0); // a new one
    EXPECT_EQ(read(bench, 0).ucRet, 5);
    EXPECT_EQ(stopList(bench), 0); // forgets it
    EXPECT_EQ(registerPart(bench, kScan, 2, two), 5);
    EXPECT_EQ(registerPart(bench, kMore, 0, two), 0);
    EXPECT_EQ(registerPart(bench, kMulti, 0, {two[0]}), 0); // begun anew, shorter
    EXPECT_EQ(read(bench, 0).ucRet, 0);
    EXPECT_EQ(read(bench, 1).ucRet, 2);
}

TEST(ChannelList, RefusesBadParts)
{
    Bench bench;
    EXPECT_EQ(registerPart(bench, kScan, 0, kThree), 0);
    const State before = bench.state_;
    const auto refused = [&](auto change) {
        wire::MultiMeasRequest part{};
        part.ucKind = 1;
        part.ucRegCount = 3;
        std::ranges::copy(kThree, part.channels);
        change(part);
        const Body body = bench.call(kMeasurementService, 0x109, toBody(part));
        bench.state_.ulSimMs = before.ulSimMs;
        return body == Body({2, 0, 0, 0}) && toBody(bench.state_) == toBody(before);
    };
    EXPECT_TRUE(refused([](auto& part) { part.ucKind = 4; }));
    EXPECT_TRUE(refused([](auto& part) { part.ucKind = 255; }));
    EXPECT_TRUE(refused([](auto& part) { part.ucRegCount = 0; }));
    EXPECT_TRUE(refused([](auto& part) { part.ucRegCount = 41; }));
    EXPECT_TRUE(refused([](auto& part) { part.ucRegCount = 255; }));
    EXPECT_TRUE(refused([](auto& part) { part.channels[2].ulFreq = 9999; }));
    EXPECT_TRUE(refused([](auto& part) { part.channels[0].usBdSys = 7; }));
    EXPECT_TRUE(refused([](auto& part) { part.channels[0].usMod = 1024; }));
    EXPECT_TRUE(refused([](auto& part) { part.channels[0].ucSupplyLevel = 3; }));
    EXPECT_FALSE(refused([](auto& part) { part.channels[3].usBdSys = 7; })); // behind the last one
}

TEST(ChannelList, TakesItsSupplyChannelByChannel)
{
    Bench bench;
    registerPart(bench, kMulti, 0, kThree);
    EXPECT_EQ(bench.supplyInfo().ucPowerSupply, 0);
    EXPECT_EQ(bench.status().usInputStat, 0x0000);
    bench.state_.ulSimMs += 500;
    EXPECT_EQ(bench.supplyInfo().ucPowerSupply, 2); // 800 ms
    EXPECT_EQ(bench.status().usInputStat, 0x0006);
    EXPECT_EQ(stopList(bench), 0);
    EXPECT_EQ(bench.supplyInfo().ucPowerSupply, 2); // stays
}

TEST(ChannelList, ListsOfSeveralBandsNeedTheMixBandSupply)
{
    std::vector<wire::Channel> channels = kThree;
    channels[2].usBand = 1;
    Bench bench;
    registerPart(bench, kScan, 0, channels);
    bench.state_.ulSimMs += 2000;
    EXPECT_EQ(read(bench, 2).stat, 0x0010); // no supply, no signal
    EXPECT_EQ(bench.call(kMeasurementService, 0x1C, {1, 0, 0, 0}), Body(4));
    EXPECT_EQ(read(bench, 2).stat, 0x0010); // counts from the next start
    registerPart(bench, kScan, 0, channels);
    bench.state_.ulSimMs += 2000;
    EXPECT_EQ(read(bench, 2).stat, 0x001F);
}

TEST(ChannelList, ReportsAFaultOfThePowerSupply)
{
    Bench bench;
    bench.scene_.inputs[0].lnb.shortCircuit = true;
    registerPart(bench, kScan, 0, kThree);
    bench.state_.ulSimMs += 2000;
    EXPECT_EQ(read(bench, 0).ucRet, 0); // needs none
    Body refused(40);
    refused[0] = 3;
    EXPECT_EQ(toBody(read(bench, 2)), refused);
}

TEST(ChannelList, IsRefusedInTheWrongOrder)
{
    Bench bench;
    Body refused(40);
    refused[0] = 5;
    EXPECT_EQ(toBody(read(bench, 0)), refused);
    EXPECT_EQ(stopList(bench), 0);
    registerPart(bench, kMore, 0, kThree);
    EXPECT_EQ(toBody(read(bench, 0)), refused); // not started
    EXPECT_EQ(bench.result().ucRet, 5);
    registerPart(bench, kMulti, 0, kThree);
    EXPECT_EQ(bench.result().ucRet, 5); // not a single measurement
    stopList(bench);
    EXPECT_EQ(toBody(read(bench, 0)), refused);
}

TEST(OneRunAtATime, ASecondOfAnotherKindIsRefused)
{
    Bench bench;
    const auto list = [&](uint8_t ucKind) { return registerPart(bench, ucKind, 0, kThree); };
    const auto profile = [&](uint8_t ucStartStop) {
        wire::StartRequest start = terrestrial();
        start.ucStartStop = ucStartStop;
        return bench.call(kMeasurementService, 0x107, toBody(start))[0];
    };
    EXPECT_EQ(bench.start(terrestrial()), 0);
    EXPECT_EQ(list(kMore), 4);
    EXPECT_EQ(list(kMulti), 4);
    EXPECT_EQ(profile(1), 4);
    EXPECT_EQ(stopList(bench), 0); // stops nothing
    EXPECT_EQ(profile(0), 0);
    EXPECT_EQ(bench.result().ucRet, 0);
    EXPECT_EQ(bench.stop(), 0);

    EXPECT_EQ(list(kMulti), 0);
    EXPECT_EQ(list(kScan), 0); // takes its place
    EXPECT_EQ(bench.start(terrestrial()), 4);
    EXPECT_EQ(profile(1), 4);
    EXPECT_EQ(bench.input(1), 4);
    EXPECT_EQ(bench.supply(1), 4);
    EXPECT_EQ(bench.stop(), 0);
    EXPECT_EQ(profile(0), 0);
    EXPECT_EQ(read(bench, 0).ucRet, 0);
    bench.state_.ulSimMs += 2000;
    EXPECT_EQ(bench.start(terrestrial()), 4); // over, but its results are kept
    EXPECT_EQ(stopList(bench), 0);

    EXPECT_EQ(profile(1), 0);
    EXPECT_EQ(profile(1), 0);
    EXPECT_EQ(bench.start(terrestrial()), 4);
    EXPECT_EQ(list(kScan), 4);
    EXPECT_EQ(profile(0), 0);
    EXPECT_EQ(bench.start(terrestrial()), 0);
    EXPECT_EQ(bench.start(satellite()), 0);
}

TEST(OneRunAtATime, IsToldByTheStatus)
{
    Bench bench;
    registerPart(bench, kMore, 0, kThree);
    EXPECT_EQ(bench.status().ulMeasStat, 0u);
    registerPart(bench, kMulti, 0, kThree);
    EXPECT_EQ(bench.status().ulMeasStat, 0x04u);
    registerPart(bench, kScan, 0, kThree);
    EXPECT_EQ(bench.status().ulMeasStat, 0x08u);
    bench.state_.ulSimMs += 1000;
    EXPECT_EQ(bench.status().ulMeasStat, 0x00u); // 1200 ms: over
    stopList(bench);
    bench.call(kMeasurementService, 0x107, toBody(terrestrial()));
    EXPECT_EQ(bench.status().ulMeasStat, 0x10u);
    bench.state_.ulSimMs += 200;
    EXPECT_EQ(bench.status().ulMeasStat, 0x12u);
    bench.call(kMeasurementService, 0x107, Body(40));
    bench.start(terrestrial());
    bench.call(kMeasurementService, 0x105, {0, 0, 0, 0, 1, 0, 0xE8, 0x03});
    EXPECT_EQ(bench.status().ulMeasStat, 0x21u);
    bench.call(kMeasurementService, 0x10C, {0, 0, 0, 0, 1, 0, 0, 0, 0x0E, 0x06, 0, 0}); // 1550 nm
    bench.call(kMeasurementService, 0x10E, {0, 0, 0, 0, 1, 0, 0, 0});
    EXPECT_EQ(bench.status().ulMeasStat, 0xE3u);
    bench.stop();
    EXPECT_EQ(bench.status().ulMeasStat, 0xC0u);
}

// The priority run starts as a single measurement does, byte for byte: the meter makes no difference.
TEST(PriorityRun, IsASingleMeasurement)
{
    Bench bench;
    EXPECT_EQ(bench.start(terrestrial()), 0);
    for (int i = 0; i < 3; ++i)
        bench.result();
    EXPECT_EQ(bench.result().lock, 1);
    EXPECT_EQ(bench.stop(), 0);
    EXPECT_EQ(bench.result().ucRet, 5);
}

// Channels 13 to 52 in the parts and in the time of a real scan, one result a request.
TEST(DefaultScene, AScanOfTheUhfBandFindsWhatIsThere)
{
    Bench bench(defaultScene());
    std::vector<wire::Channel> channels;
    for (uint32_t i = 0; i < 40; ++i) {
        wire::Channel channel{};
        channel.ulFreq = 473143 + 6000 * i;
        channel.usMod = 1;
        channels.push_back(channel);
    }
    EXPECT_EQ(registerPart(bench, kScan, 0, channels), 0);
    int requests = 0;
    while ((read(bench, 39).stat & 0x0010) == 0)
        ++requests;
    EXPECT_LT(requests, 400);
    std::vector<uint32_t> found;
    std::vector<uint32_t> locked;
    for (uint16_t i = 0; i < 40; ++i) {
        const wire::MultiResultResponse result = read(bench, i);
        EXPECT_EQ(result.readIdx, i);
        EXPECT_EQ(result.currIdx, 39);
        if ((result.stat & 0x0001) != 0) {
            found.push_back(13u + i);
            EXPECT_GT(result.LEVEL, 150u);
        } else {
            EXPECT_LT(result.LEVEL, 130u);
        }
        if (result.lock && i != 15)
            locked.push_back(13u + i);
    }
    EXPECT_EQ(found, std::vector<uint32_t>({16, 21, 22, 23, 24, 25, 26, 27, 28, 30}));
    EXPECT_EQ(locked, std::vector<uint32_t>({16, 21, 22, 23, 24, 25, 26, 27})); // 28 is at the edge
}

// Whatever the list and the time, the channel being measured and those that have been follow the order of
// the list, and the results are those of any other process that shares the state.
RC_GTEST_PROP(ChannelList, GoesOnInOrder, (uint64_t seed))
{
    Scene scene = parseScene(kCalm, "test");
    scene.seed = seed;
    Bench bench(scene);
    const std::vector<wire::Channel> channels = *rc::gen::container<std::vector<wire::Channel>>(
        *rc::gen::inRange<size_t>(1, 41), rc::gen::elementOf(kThree));
    const auto ucKind = *rc::gen::element(kMulti, kScan);
    RC_ASSERT(registerPart(bench, ucKind, 0, channels) == 0);
    bench.state_.ulSimMs += *rc::gen::inRange<uint64_t>(0, 30'000);
    Bench other(scene);
    other.state_ = bench.state_;
    const uint64_t ulNowMs = bench.state_.ulSimMs;
    bool before = true;
    const uint8_t ucCurrent = read(bench, 0).currIdx;
    RC_ASSERT(ucCurrent < channels.size());
    for (size_t i = 0; i < channels.size(); ++i) {
        bench.state_.ulSimMs = ulNowMs;
        other.state_.ulSimMs = ulNowMs;
        const wire::MultiResultResponse result = read(bench, static_cast<uint16_t>(i));
        RC_ASSERT(toBody(read(other, static_cast<uint16_t>(i))) == toBody(result));
        RC_ASSERT(result.currIdx == ucCurrent);
        const bool measured = (result.stat & 0x0010) != 0;
        RC_ASSERT(before || !measured);
        RC_ASSERT(i >= ucCurrent || measured);
        before = measured;
    }
}

} // namespace
} // namespace vmeter
