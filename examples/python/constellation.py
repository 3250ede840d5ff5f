#!/usr/bin/python3
"""constellation.py KHZ FILE: draws the constellation of a channel into a PNG, SVG or PDF file.

Without a meter: vx63-vmeter run -- ./constellation.py 557143 constellation.png
"""

import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import vx63

frequency, file = int(sys.argv[1]), sys.argv[2]

vx63.vx63_init(17)  # a process id that nobody else has
vx63.vx63_startSingleMeas(0, vx63.MeasCondition(ulFreq=frequency))
try:
    vx63.vx63_startConstaMeas(0, 1000)
    points = []
    for _ in range(100):  # a response carries 624 points at most
        result = vx63.vx63_getSingleMeasResult(624)
        if result.lock:
            points += [(point.I, point.Q) for point in result.points[:min(result.CONS_NUM, 624)]]
        if len(points) >= 4000:
            break
finally:
    vx63.vx63_stopSingleMeas(0)

if not points:
    sys.exit(f"constellation.py: {frequency} kHz: no lock: check antenna and frequency")
plt.figure(figsize=(5, 5))
plt.scatter(*zip(*points), s=2)
plt.title(f"{frequency} kHz, {len(points)} points")
plt.savefig(file)
