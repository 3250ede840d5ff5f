// measure: tunes a terrestrial channel, waits for lock and prints what is received.
//
// usage: measure [FREQUENCY_KHZ]
//
// Ends with 0 when all was measured, with 1 when something failed or nothing locked.
#include <libvx63.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace std::chrono_literals;

constexpr int32_t kProcessId = 17; // of the calling thread, as the firmware's process table gives it
constexpr auto kPoll = 100ms;
constexpr auto kPatience = 5s;
constexpr int kPoints = 1000;

std::string resultText(int32_t result)
{
    switch (result) {
    case VX63_OK:
        return "done";
    case VX63_ERR_COMM:
        return "no answer, or none that can be used: look at /var/log/libvx63.cpp.txt, try 'vx63 doctor'";
    case VX63_ERR_ARG:
        return "an argument is out of range: give another frequency";
    case VX63_ERR_REPEAT:
        return "the buzzer sounds a repeating pattern: stop it first";
    case VX63_ERR_POWER:
        return "a fault of the antenna power supply: look for a short circuit";
    case VX63_ERR_PRIORITY:
        return "the buzzer is busy with something more important: try again later";
    }
    return "result " + std::to_string(result) + ": the library is newer than this program";
}

void require(const char* what, int32_t result)
{
    if (result != VX63_OK)
        throw std::runtime_error(std::string("cannot ") + what + ": " + resultText(result));
}

// Measures until it is stopped; where something else failed, for as long as it lives.
class Measurement {
public:
    explicit Measurement(const MeasCondition& condition)
    {
        require("start the measurement", vx63_startSingleMeas(0, &condition));
    }
    Measurement(const Measurement&) = delete;
    Measurement& operator=(const Measurement&) = delete;
    ~Measurement()
    {
        if (m_runs)
            vx63_stopSingleMeas(0);
    }

    void stop()
    {
        m_runs = false;
        require("stop the measurement", vx63_stopSingleMeas(0));
    }

    // Polls until the channel is locked and bits were counted.
    const SingleMeasResult& waitForLock()
    {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        do {
            require("read the result", vx63_getSingleMeasResult(0, &m_result));
            if (m_result.lock != 0 && m_result.BER_TOTAL > 0)
                return m_result;
            std::this_thread::sleep_for(kPoll);
        } while (std::chrono::steady_clock::now() < end);
        throw std::runtime_error("no lock: give another frequency, or look at the antenna");
    }

    // One response's worth of constellation points.
    const SingleMeasResult& readPoints()
    {
        require("collect constellation points", vx63_startConstaMeas(0, kPoints));
        const int32_t read = vx63_getSingleMeasResult(kPoints, &m_result);
        require("stop collecting points", vx63_stopConstaMeas(0));
        require("read constellation points", read);
        return m_result;
    }

private:
    bool m_runs = true;
    SingleMeasResult m_result{};
};

// Modulation error ratio in dB: the power of the ideal points over that of the deviations from them. The root
// mean square of the ideal points is 64; terrestrial channels carry 64QAM as a rule: odd multiples, 1 to 7,
// of a step.
double modulationErrorRatio(const ConstaPoint* points, int count)
{
    const double step = 64 / std::sqrt(42.0);
    double ideal = 0;
    double error = 0;
    for (int i = 0; i < count; ++i)
        for (const double amplitude : {points[i].I, points[i].Q}) {
            const double odd = 2 * std::floor(std::abs(amplitude) / (2 * step)) + 1;
            const double nearest = std::copysign(std::min(odd, 7.0) * step, amplitude);
            ideal += nearest * nearest;
            error += (amplitude - nearest) * (amplitude - nearest);
        }
    return 10 * std::log10(ideal / error);
}

void measure(uint32_t frequencyKhz)
{
    require("take a process id", vx63_init(kProcessId));
    MeasCondition condition{};
    condition.ulFreq = frequencyKhz;
    condition.usBdSys = VX63_BDSYS_TERRESTRIAL;
    condition.usMod = VX63_MOD_ANY;
    condition.powerSupply = VX63_POWER_SUPPLY_OFF;
    Measurement measurement(condition);
    std::printf("Frequency       %u kHz\n", unsigned{frequencyKhz});

    const SingleMeasResult& result = measurement.waitForLock();
    std::printf("Level           %.1f dBuV\n", result.LEVEL / 10.0);
    std::printf("C/N             %.1f dB\n", result.CNR / 10.0);
    if (result.BER_ERR == 0)
        std::printf("Bit error rate  < %.1e\n", 1.0 / result.BER_TOTAL);
    else
        std::printf("Bit error rate  %.1e\n", double(result.BER_ERR) / result.BER_TOTAL);

    const SingleMeasResult& collected = measurement.readPoints();
    if (const int count = std::min<int>(collected.CONS_NUM, VX63_CONSTA_POINTS_MAX); count > 0)
        std::printf("MER             %.1f dB\n", modulationErrorRatio(collected.points, count));
    measurement.stop();
}

} // namespace

int main(int argc, char** argv)
try {
    measure(argc > 1 ? static_cast<uint32_t>(std::strtoul(argv[1], nullptr, 10)) : 557143);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "measure: %s\n", failure.what());
    return 1;
}
