/* What `vx63 measure single --freq 557143 --json` asks of the library, with the same pauses, and no more. */
#include <inttypes.h>
#include <libvx63.h>
#include <poll.h>
#include <stdio.h>

int main(void)
{
    const MeasCondition condition = {.ulFreq = 557143, .usBdSys = VX63_BDSYS_TERRESTRIAL};
    static uint8_t thresholds[24 * 88];
    SingleMeasResult result = {0};
    MeasStatus status = {0};
    int pauses = 50; /* of 200 ms: ten seconds */

    if (vx63_readSetFile(VX63_SET_FILE_THRD, thresholds, NULL, 0) < 0)
        return 1;
    vx63_init(17);
    if (vx63_startSingleMeas(0, &condition) != VX63_OK)
        return 1;
    while (vx63_getSingleMeasResult(0, &result) == VX63_OK && !result.lock && pauses-- > 0)
        poll(NULL, 0, 200);
    if (vx63_getMeasStatus(&status) != VX63_OK)
        return 1;
    printf("{\"input\":%d,\"locked\":%s,\"level_dbuv\":%.1f,\"cnr_db\":%.1f,\"ber_errors\":%" PRIu32
           ",\"ber_bits\":%" PRIu32 "}\n",
           (status.usInputStat & VX63_INPUT_STAT_1) != 0, result.lock ? "true" : "false", result.LEVEL / 10.0,
           result.CNR / 10.0, result.BER_ERR, result.BER_TOTAL);
    return vx63_stopSingleMeas(0) != VX63_OK || !result.lock;
}
