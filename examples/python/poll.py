#!/usr/bin/python3
"""poll.py KHZ [TIMES]: measures a channel and prints its level, C/N and bit errors once a second.

Without a meter: vx63-vmeter run -- ./poll.py 557143 5
"""

import sys
import time

import vx63

frequency, times = int(sys.argv[1]), int(sys.argv[2]) if len(sys.argv) > 2 else 10

vx63.vx63_init(17)  # a process id that nobody else has
vx63.vx63_startSingleMeas(0, vx63.MeasCondition(ulFreq=frequency))
try:
    for _ in range(50):  # the meter needs a moment to lock
        if vx63.vx63_getSingleMeasResult(0).lock:
            break
        time.sleep(0.1)
    for _ in range(times):
        time.sleep(1)
        result = vx63.vx63_getSingleMeasResult(0)
        print(f"{frequency} kHz  {result.LEVEL / 10:.1f} dBuV  C/N {result.CNR / 10:.1f} dB  "
              f"{result.BER_ERR} errors in {result.BER_TOTAL} bits{'' if result.lock else '  no lock'}", flush=True)
except vx63.PowerError as error:
    sys.exit(f"poll.py: the antenna's power supply: {error}")
finally:
    vx63.vx63_stopSingleMeas(0)
