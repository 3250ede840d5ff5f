/*
 * measure: tunes a terrestrial channel, waits for lock and prints what is received.
 *
 * usage: measure [FREQUENCY_KHZ]
 *
 * Ends with 0 when all was measured, with 1 when something failed or nothing locked.
 */
#include <libvx63.h>

#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

enum {
    PROCESS_ID = 17, /* of the calling thread, as the firmware's process table gives it */
    POLL_MS = 100,
    LOCK_POLLS = 50,
    POINTS = 1000
};

static const char* resultText(int32_t result)
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
    default:
        return "an unknown result: the library is newer than this program";
    }
}

/* True on success; says what failed otherwise. */
static int succeeded(const char* what, int32_t result)
{
    if (result != VX63_OK)
        fprintf(stderr, "measure: cannot %s: %s (%d)\n", what, resultText(result), (int)result);
    return result == VX63_OK;
}

/* Polls until the channel is locked and bits were counted; false when that does not happen. */
static int waitForLock(SingleMeasResult* result)
{
    const struct timespec pause = {0, POLL_MS * 1000000L};

    for (int poll = 0; poll < LOCK_POLLS; ++poll) {
        if (!succeeded("read the result", vx63_getSingleMeasResult(0, result)))
            return 0;
        if (result->lock && result->BER_TOTAL > 0)
            return 1;
        nanosleep(&pause, NULL);
    }
    fprintf(stderr,
            "measure: no lock within %d s: level %.1f dBuV: give another frequency, or look at the antenna\n",
            LOCK_POLLS * POLL_MS / 1000, result->LEVEL / 10.0);
    return 0;
}

/* The ideal amplitude of 64QAM that lies nearest: an odd multiple of step, 1 to 7. */
static double nearestIdeal(double amplitude, double step)
{
    const double odd = 2 * floor(fabs(amplitude) / (2 * step)) + 1;

    return copysign(fmin(odd, 7) * step, amplitude);
}

/*
 * Modulation error ratio in dB: the power of the ideal points over that of the deviations from them. The root
 * mean square of the ideal points is 64; terrestrial channels carry 64QAM as a rule.
 */
static double modulationErrorRatio(const struct ConstaPoint* points, int count)
{
    const double step = 64 / sqrt(42);
    double ideal = 0;
    double error = 0;

    for (int i = 0; i < count; ++i) {
        const double idealI = nearestIdeal(points[i].I, step);
        const double idealQ = nearestIdeal(points[i].Q, step);
        ideal += idealI * idealI + idealQ * idealQ;
        error += pow(points[i].I - idealI, 2) + pow(points[i].Q - idealQ, 2);
    }
    return 10 * log10(ideal / error);
}

static int measure(SingleMeasResult* result)
{
    if (!waitForLock(result))
        return 0;
    printf("Level           %.1f dBuV\n", result->LEVEL / 10.0);
    printf("C/N             %.1f dB\n", result->CNR / 10.0);
    if (result->BER_ERR == 0)
        printf("Bit error rate  < %.1e\n", 1.0 / result->BER_TOTAL);
    else
        printf("Bit error rate  %.1e\n", (double)result->BER_ERR / result->BER_TOTAL);

    if (!succeeded("collect constellation points", vx63_startConstaMeas(0, POINTS)))
        return 0;
    const int32_t read = vx63_getSingleMeasResult(POINTS, result); /* as many as one response carries */
    const int32_t stopped = vx63_stopConstaMeas(0);
    if (!succeeded("read constellation points", read) || !succeeded("stop collecting points", stopped))
        return 0;
    if (result->CONS_NUM > VX63_CONSTA_POINTS_MAX)
        result->CONS_NUM = VX63_CONSTA_POINTS_MAX;
    if (result->CONS_NUM > 0)
        printf("MER             %.1f dB\n", modulationErrorRatio(result->points, result->CONS_NUM));
    return 1;
}

int main(int argc, char** argv)
{
    MeasCondition condition = {
        .usBdSys = VX63_BDSYS_TERRESTRIAL, .usMod = VX63_MOD_ANY, .powerSupply = VX63_POWER_SUPPLY_OFF};
    SingleMeasResult result;

    condition.ulFreq = argc > 1 ? (uint32_t)strtoul(argv[1], NULL, 10) : 557143; /* kHz */
    if (!succeeded("take a process id", vx63_init(PROCESS_ID)))
        return 1;
    if (!succeeded("start the measurement", vx63_startSingleMeas(0, &condition)))
        return 1;
    printf("Frequency       %u kHz\n", (unsigned)condition.ulFreq);
    const int measured = measure(&result);
    const int stopped = succeeded("stop the measurement", vx63_stopSingleMeas(0));
    return measured && stopped ? 0 : 1;
}
