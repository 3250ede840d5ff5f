#!/usr/bin/python3
"""constellation.py KHZ FILE: draws the constellation of a channel into a PNG, SVG or PDF file.

Without a meter: vx63-vmeter run -- ./constellation.py 557143 constellation.png
"""

import sys
import time

import vx63
from matplotlib.figure import Figure

frequency, points = int(sys.argv[1]), []
vx63.vx63_init(17)  # a process id that nobody else has
vx63.vx63_startSingleMeas(0, vx63.MeasCondition(ulFreq=frequency))
try:
    vx63.vx63_startConstaMeas(0, 1000)
    for _ in range(50):  # the meter needs a moment to lock; then a response carries 624 points at most
        result = vx63.vx63_getSingleMeasResult(624)
        points += [(point.I, point.Q) for point in result.points[:result.CONS_NUM] if result.lock]
        if len(points) >= 4000:
            break
        time.sleep(0.1)
finally:
    vx63.vx63_stopSingleMeas(0)
if not points:
    sys.exit(f"constellation.py: {frequency} kHz: no lock: check antenna and frequency")
figure = Figure(figsize=(5, 5))
figure.subplots(subplot_kw={"title": f"{frequency} kHz, {len(points)} points"}).scatter(*zip(*points), s=2)
figure.savefig(sys.argv[2])
