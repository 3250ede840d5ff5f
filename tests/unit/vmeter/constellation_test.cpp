// Constellation points of the virtual meter, against the ideal points typed from the tables of the standards.
#include "meter_bench.h"
#include "signal/constellation.h"

#include <rapidcheck/gtest.h>

#include <cmath>
#include <complex>

namespace vmeter {
namespace {

using Complex = std::complex<double>;

uint8_t collect(Bench& bench, uint16_t collectNum, uint8_t ucStartStop = 1)
{
    wire::StartConstaRequest start{};
    start.ucStartStop = ucStartStop;
    start.collectNum = collectNum;
    return bench.call(kMeasurementService, 0x105, toBody(start))[0];
}

Body readBody(Bench& bench, uint16_t usReadCount)
{
    wire::ConstaRequest request{};
    request.usReadCount = usReadCount;
    return bench.call(kMeasurementService, 0x106, toBody(request));
}

wire::ConstaResponse read(Bench& bench, uint16_t usReadCount)
{
    const Body body = readBody(bench, usReadCount);
    const auto response = bodyAs<wire::ConstaResponse>(body);
    EXPECT_EQ(body.size(), 44u + 2u * response.CONS_NUM);
    return response;
}

// A locked channel with a collection of 1000 points.
void lock(Bench& bench)
{
    bench.start(terrestrial());
    for (int i = 0; i < 3; ++i)
        bench.result();
    ASSERT_EQ(bench.result().lock, 1);
    ASSERT_EQ(collect(bench, 1000), 0);
}

// Ideal points on the scale of the bytes, by another way than the meter's.
std::vector<Complex> square(double outermost)
{
    const std::vector<double> axis = [&] {
        std::vector<double> values;
        for (double value = -outermost; value <= outermost; value += 2.0)
            values.push_back(value);
        return values;
    }();
    std::vector<Complex> points;
    for (const double i : axis) {
        for (const double q : axis)
            points.emplace_back(i, q);
    }
    // The mean of the squares of +-1, +-3 ... +-(m - 1) on two axes is 2 (m^2 - 1) / 3.
    const double m = outermost + 1.0;
    for (Complex& point : points)
        point *= 64.0 / std::sqrt(2.0 * (m * m - 1.0) / 3.0);
    return points;
}

std::vector<Complex> ring(double radius, std::initializer_list<double> degrees)
{
    std::vector<Complex> points;
    for (const double degree : degrees)
        points.push_back(std::polar(radius, degree * 3.14159265358979 / 180.0));
    return points;
}

std::vector<Complex> joined(std::initializer_list<std::vector<Complex>> lists)
{
    std::vector<Complex> points;
    for (const auto& list : lists)
        points.insert(points.end(), list.begin(), list.end());
    return points;
}

std::vector<Complex> expectedPoints(Modulation modulation)
{
    const std::initializer_list<double> kFour{45, 135, 225, 315};
    const std::initializer_list<double> kTwelve{15, 45, 75, 105, 135, 165, 195, 225, 255, 285, 315, 345};
    switch (modulation) {
    case Modulation::bpsk:
        return {64.0, -64.0};
    case Modulation::qpsk:
        return ring(64.0, kFour);
    case Modulation::psk8:
        return ring(64.0, {0, 45, 90, 135, 180, 225, 270, 315});
    case Modulation::apsk16: // (4 + 12 * 2.85^2) / 16 = 6.341875
        return joined(
            {ring(64.0 / std::sqrt(6.341875), kFour), ring(64.0 * 2.85 / std::sqrt(6.341875), kTwelve)});
    case Modulation::apsk32: // (4 + 12 * 2.84^2 + 16 * 5.27^2) / 32 = 17.03605
        return joined({ring(64.0 / std::sqrt(17.03605), kFour),
                       ring(64.0 * 2.84 / std::sqrt(17.03605), kTwelve),
                       ring(64.0 * 5.27 / std::sqrt(17.03605), {0, 22.5, 45, 67.5, 90, 112.5, 135, 157.5, 180,
                                                                202.5, 225, 247.5, 270, 292.5, 315, 337.5})});
    case Modulation::qam16:
        return square(3);
    case Modulation::qam64:
        return square(7);
    case Modulation::qam256:
        return square(15);
    case Modulation::none:
    case Modulation::ofdm:
        break;
    }
    return {};
}

constexpr Modulation kAll[] = {Modulation::bpsk,   Modulation::qpsk,  Modulation::psk8,  Modulation::apsk16,
                               Modulation::apsk32, Modulation::qam16, Modulation::qam64, Modulation::qam256};

Complex nearest(const std::vector<Complex>& ideal, const Complex& point)
{
    return *std::ranges::min_element(ideal, {}, [&](const Complex& c) { return std::norm(c - point); });
}

TEST(Constellation, IdealPointsAreThoseOfTheStandards)
{
    for (const Modulation modulation : kAll) {
        const std::span ideal = idealPoints(modulation);
        const std::vector<Complex> expected = expectedPoints(modulation);
        ASSERT_EQ(ideal.size(), expected.size());
        std::vector<int> met(expected.size());
        double power = 0.0;
        for (const Point& point : ideal) {
            const Complex scaled = 64.0 * Complex(point.i, point.q);
            const auto at =
                std::ranges::find_if(expected, [&](const Complex& c) { return std::abs(c - scaled) < 1e-3; });
            ASSERT_NE(at, expected.end()) << scaled;
            ++met[static_cast<size_t>(at - expected.begin())];
            power += point.i * point.i + point.q * point.q;
        }
        EXPECT_EQ(std::ranges::count(met, 1), static_cast<std::ptrdiff_t>(met.size()));
        EXPECT_NEAR(power / static_cast<double>(ideal.size()), 1.0, 1e-12);
    }
    EXPECT_TRUE(idealPoints(Modulation::none).empty());
    EXPECT_TRUE(idealPoints(Modulation::ofdm).empty());
    EXPECT_NEAR(64.0 * idealPoints(Modulation::qam64).back().i, 69.128, 1e-3); // 7 * 64 / sqrt(42)
}

// The modulation error ratio against the symbols that were sent: the first number of each draw tells which.
double errorRatioDb(Modulation modulation, double cnDb, uint64_t seed)
{
    const std::span ideal = idealPoints(modulation);
    double signal = 0.0;
    double error = 0.0;
    for (uint64_t k = 0; k < 4000; ++k) {
        Random random(seed, 1, Purpose::constellation, k);
        const auto symbol = static_cast<size_t>(Random(random).uniform() * static_cast<double>(ideal.size()));
        const ReceivedPoint point = drawPoint(random, ideal, cnDb);
        const Complex sent = 64.0 * Complex(ideal[symbol].i, ideal[symbol].q);
        signal += std::norm(sent);
        error += std::norm(Complex(point.i, point.q) - sent);
    }
    return 10.0 * std::log10(signal / error);
}

TEST(Constellation, ErrorRatioIsTheCn)
{
    for (const Modulation modulation : kAll) {
        for (double cnDb = 10.0; cnDb <= 35.0; cnDb += 2.5) {
            EXPECT_NEAR(errorRatioDb(modulation, cnDb, 1), cnDb, 0.5) << infoOf(modulation).name;
        }
    }
}

RC_GTEST_PROP(Constellation, ErrorRatioIsTheCnForAnySeed, (uint64_t seed))
{
    const auto modulation = *rc::gen::elementOf(std::vector<Modulation>(std::begin(kAll), std::end(kAll)));
    const double cnDb = *rc::gen::inRange(100, 350) / 10.0;
    RC_ASSERT(std::abs(errorRatioDb(modulation, cnDb, seed) - cnDb) < 0.5);
}

TEST(Constellation, RoundingIsWhatIsLeftOfNoNoise)
{
    for (const Modulation modulation : kAll) {
        const std::vector<Complex> ideal = expectedPoints(modulation);
        for (uint64_t k = 0; k < 1000; ++k) {
            Random random(1, 1, Purpose::constellation, k);
            const ReceivedPoint point = drawPoint(random, idealPoints(modulation), 60.0);
            const Complex error = nearest(ideal, Complex(point.i, point.q)) - Complex(point.i, point.q);
            EXPECT_LE(std::max(std::abs(error.real()), std::abs(error.imag())), 0.5 + 1e-9);
        }
    }
}

TEST(Constellation, IsClippedToTheBytes)
{
    int lowest = 0;
    int highest = 0;
    for (uint64_t k = 0; k < 1000; ++k) {
        Random random(1, 1, Purpose::constellation, k);
        const ReceivedPoint point = drawPoint(random, idealPoints(Modulation::qpsk), -20.0);
        lowest = std::min<int>(lowest, point.i);
        highest = std::max<int>(highest, point.q);
    }
    EXPECT_EQ(lowest, -128);
    EXPECT_EQ(highest, 127);
}

TEST(Constellation, AllSymbolsComeUp)
{
    std::vector<int> counts(64);
    const std::vector<Complex> ideal = expectedPoints(Modulation::qam64);
    for (uint64_t k = 0; k < 6400; ++k) {
        Random random(1, 1, Purpose::constellation, k);
        const ReceivedPoint point = drawPoint(random, idealPoints(Modulation::qam64), 40.0);
        const Complex sent = nearest(ideal, Complex(point.i, point.q));
        ++counts[static_cast<size_t>(std::ranges::find(ideal, sent) - ideal.begin())];
    }
    // 100 of each, give or take five standard deviations.
    EXPECT_GT(*std::ranges::min_element(counts), 50);
    EXPECT_LT(*std::ranges::max_element(counts), 150);
}

// The locked channel of each modulation through the service, read to the end of a collection of 4000.
TEST(ConstellationService, ShowsTheCnOfTheScene)
{
    const std::tuple<std::string, Modulation, double> cases[] = {
        {"system = \"satellite\"\nmodulation = \"BPSK\"", Modulation::bpsk, 10},
        {"system = \"satellite\"\nmodulation = \"QPSK\"", Modulation::qpsk, 15},
        {"system = \"satellite-2\"\nmodulation = \"8PSK\"", Modulation::psk8, 20},
        {"system = \"satellite-2\"\nmodulation = \"16APSK\"", Modulation::apsk16, 25},
        {"system = \"jsat-2\"\nmodulation = \"32APSK\"", Modulation::apsk32, 30},
        {"system = \"catv\"\nmodulation = \"64QAM\"", Modulation::qam64, 30},
        {"system = \"catv-2\"\nmodulation = \"256QAM\"", Modulation::qam256, 35},
        {"system = \"terrestrial\"\ncarriers = \"16QAM\"", Modulation::qam16, 25},
        {"system = \"terrestrial\"\ncarriers = \"64QAM\"", Modulation::qam64, 35}};
    for (const auto& [system, modulation, cnDb] : cases) {
        Bench bench("level_sigma_db = 0\ncn_sigma_db = 0\nnoise_figure_db = 0\n[[signal]]\ninput = 0\n"
                    "frequency_khz = 1049480\nlevel_dbuv = 100\nlock_ms = 0\ncn_db = " +
                    std::to_string(cnDb) + "\n" + system);
        wire::StartRequest start{};
        start.ucStartStop = 1;
        start.ulFreq = 1049480;
        start.usBdSys = static_cast<uint16_t>(bench.scene_.signals[0].system);
        ASSERT_EQ(bench.start(start), 0);
        ASSERT_EQ(collect(bench, 4000), 0);
        const std::vector<Complex> ideal = expectedPoints(modulation);
        double signal = 0.0;
        double error = 0.0;
        for (int left = 4000; left > 0;) {
            const wire::ConstaResponse response = read(bench, 4000);
            ASSERT_EQ(response.CONS_NUM, std::min(left, 624));
            EXPECT_EQ(response.CNR, static_cast<uint32_t>(cnDb * 10.0));
            for (int i = 0; i < response.CONS_NUM; ++i) {
                const Complex point(response.points[i][0], response.points[i][1]);
                const Complex sent = nearest(ideal, point); // at these C/N nearly always the one sent
                signal += std::norm(sent);
                error += std::norm(point - sent);
            }
            left -= response.CONS_NUM;
        }
        EXPECT_NEAR(10.0 * std::log10(signal / error), cnDb, 0.5) << system;
    }
}

TEST(ConstellationService, GivesTheResultBesideThePoints)
{
    Bench bench;
    lock(bench);
    const wire::ConstaResponse response = read(bench, 5);
    EXPECT_EQ(response.ucRet, 0);
    EXPECT_EQ(response.lock, 1);
    EXPECT_EQ(response.stat, 0x0007);
    EXPECT_EQ(response.mesCond, 0x0027);
    EXPECT_EQ(response.LEVEL, 600u);
    EXPECT_EQ(response.CNR, 200u);
    EXPECT_EQ(response.BER_TOTAL, 4754285u); // 4992 * 6 / 1260 us over 200 ms: the start took one of them
    EXPECT_EQ(response.TSID, 0x7FE0);
    EXPECT_EQ(response.GI, 3);
    EXPECT_EQ(response.LAYER, 3);
    EXPECT_EQ(response.MOD, 1u);
    EXPECT_EQ(response.CONS_NUM, 5);
}

TEST(ConstellationService, ReadsOnThroughTheCollection)
{
    Bench bench;
    lock(bench);
    EXPECT_EQ(read(bench, 1).CONS_NUM, 1);
    EXPECT_EQ(read(bench, 625).CONS_NUM, 624); // what a message has room for
    EXPECT_EQ(read(bench, 300).CONS_NUM, 300);
    EXPECT_EQ(read(bench, 65535).CONS_NUM, 75);  // what is left of 1000
    EXPECT_EQ(read(bench, 65535).CONS_NUM, 624); // of a new one
    EXPECT_EQ(readBody(bench, 624).size(), 44u + 2u * 376u);
    EXPECT_EQ(collect(bench, 2000), 0);
    int count = 0;
    for (const uint16_t expected : std::initializer_list<uint16_t>{624, 624, 624, 128, 624}) {
        EXPECT_EQ(read(bench, 1000).CONS_NUM, expected) << count;
        ++count;
    }
}

// The points do not depend on the pieces in which they are read.
TEST(ConstellationService, PiecesMakeUpTheSamePoints)
{
    const auto points = [](Bench& bench, std::initializer_list<uint16_t> counts) {
        Body all;
        for (const uint16_t usReadCount : counts) {
            const Body body = readBody(bench, usReadCount);
            all.insert(all.end(), body.begin() + 44, body.end());
        }
        return all;
    };
    Bench one;
    lock(one);
    Bench other;
    lock(other);
    const Body whole = points(one, {600});
    EXPECT_EQ(whole.size(), 1200u);
    EXPECT_EQ(points(other, {1, 2, 97, 500}), whole);
    EXPECT_EQ(collect(one, 1000), 0);
    EXPECT_NE(points(one, {600}), whole); // another moment, other symbols
}

TEST(ConstellationService, WithoutLockThereAreNoPoints)
{
    Bench bench;
    bench.start(terrestrial());
    EXPECT_EQ(collect(bench, 4000), 0);
    const wire::ConstaResponse response = read(bench, 100);
    EXPECT_EQ(response.ucRet, 0);
    EXPECT_EQ(response.lock, 0);
    EXPECT_EQ(response.LEVEL, 600u);
    EXPECT_EQ(response.CONS_NUM, 0);
    EXPECT_EQ(read(bench, 100).CONS_NUM, 100); // 300 ms after the start
}

TEST(ConstellationService, IsRefusedInTheWrongOrder)
{
    Bench bench;
    Body refused(44);
    refused[0] = 5;
    EXPECT_EQ(collect(bench, 1000), 5);
    EXPECT_EQ(readBody(bench, 1), refused);
    EXPECT_EQ(collect(bench, 0, 0), 0); // nothing to stop is no error
    bench.start(terrestrial());
    EXPECT_EQ(readBody(bench, 1), refused);
    EXPECT_EQ(collect(bench, 1000), 0);
    EXPECT_EQ(readBody(bench, 1)[0], 0);
    EXPECT_EQ(collect(bench, 0, 0), 0);
    EXPECT_EQ(readBody(bench, 1), refused);
    EXPECT_EQ(collect(bench, 1000), 0);
    bench.start(terrestrial()); // begins anew, without points
    EXPECT_EQ(readBody(bench, 1), refused);
    EXPECT_EQ(collect(bench, 1000), 0);
    bench.stop();
    EXPECT_EQ(readBody(bench, 1), refused);
}

TEST(ConstellationService, RefusesOtherNumbers)
{
    Bench bench;
    lock(bench);
    for (const uint16_t collectNum : std::initializer_list<uint16_t>{0, 1, 999, 1001, 3000, 4001, 65535})
        EXPECT_EQ(collect(bench, collectNum), 2) << collectNum;
    EXPECT_EQ(collect(bench, 1000, 2), 2);
    Body refused(44);
    refused[0] = 2;
    EXPECT_EQ(readBody(bench, 0), refused);
    EXPECT_EQ(read(bench, 1000).CONS_NUM, 624); // the collection goes on
}

TEST(ConstellationService, ReportsAFaultOfThePowerSupply)
{
    Bench bench;
    bench.start(satellite());
    for (int i = 0; i < 4; ++i)
        bench.result();
    collect(bench, 1000);
    bench.scene_.inputs[0].lnb.shortCircuit = true;
    Body refused(44);
    refused[0] = 3;
    EXPECT_EQ(readBody(bench, 1), refused);
}

} // namespace
} // namespace vmeter
