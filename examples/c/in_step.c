/*
 * in_step: reads a terrestrial channel again and again, notices when an answer is not the one to its
 * question, and goes on as another process.
 *
 * usage: in_step [READINGS]
 *
 * An answer that comes late, or twice, stays in the queue of its process id. From then on each call meets the
 * answer to the call before; one that asks the same again returns old values, with VX63_OK. Two things help.
 *
 * A reading counts only when a call of another operation of the same service succeeds right after it: an
 * answer too many makes that one fail with VX63_ERR_COMM.
 *
 * After any VX63_ERR_COMM, and at the start, the thread takes another process id, and empties its queue
 * first. What still comes for the old id meets nobody.
 */
#define _GNU_SOURCE /* RTLD_DEFAULT */
#include <libvx63.h>

#include <dlfcn.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

enum { TRIES = 5, MESSAGE_SIZE = 1300 };

/* This thread's alone. */
static const uint8_t processIds[] = {15, 16};

/* The platform's: waits so many milliseconds for a message on the queue of a process id, and takes it. */
typedef int32_t Receive(uint8_t id, void* message, uint32_t size, uint32_t* length, uint32_t timeout);

static int getInStep(void)
{
    static unsigned changes;
    const uint8_t id = processIds[changes++ % sizeof processIds];
    unsigned char message[MESSAGE_SIZE];
    uint32_t length;
    Receive* receive;

    *(void**)&receive = dlsym(RTLD_DEFAULT, "lmsg_trcvMq");
    while (receive != NULL && receive(id, message, sizeof message, &length, 0) == 0) {
    }
    fprintf(stderr, "in_step: process %d\n", id);
    return vx63_init(id) == VX63_OK;
}

/* False when it does not succeed, even as another process. */
static int readInStep(SingleMeasResult* result)
{
    MeasStatus status;

    for (int made = 0; made < TRIES; ++made) {
        const int32_t read = vx63_getSingleMeasResult(0, result);
        if (read == VX63_OK && vx63_getMeasStatus(&status) == VX63_OK)
            return 1;
        if ((read != VX63_OK && read != VX63_ERR_COMM) || !getInStep())
            break;
    }
    fprintf(stderr, "in_step: cannot read: look at /var/log/libvx63.cpp.txt, try 'vx63 doctor'\n");
    return 0;
}

int main(int argc, char** argv)
{
    const MeasCondition condition = {.ulFreq = 557143 /* kHz */, .usBdSys = VX63_BDSYS_TERRESTRIAL};
    const int readings = argc > 1 ? atoi(argv[1]) : 5;
    SingleMeasResult result;
    int made = 0;

    if (!getInStep() || vx63_startSingleMeas(0, &condition) != VX63_OK) {
        fprintf(stderr, "in_step: cannot start: try 'vx63 doctor'\n");
        return 1;
    }
    for (; made < readings && readInStep(&result); ++made)
        printf("%.1f dBuV, %u bits\n", result.LEVEL / 10.0, (unsigned)result.BER_TOTAL);
    return vx63_stopSingleMeas(0) == VX63_OK && made == readings ? 0 : 1;
}
