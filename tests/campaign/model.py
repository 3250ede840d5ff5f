#!/usr/bin/python3
"""Long sequences of operations under mixed faults, each call held against what the definition says it does.

model.py SECONDS SEED. A session is a virtual meter of its own and one client, who calls all operations several times
over; about every second call is hit by a fault of some kind. Result, record, messages, time-outs and log lines of each
call are compared with tests/system/matrix, which has every operation typed from its definition. A session that
disagrees is made smaller until every fault left in it is needed.
"""

import random
import sys
import tempfile
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / "system" / folder) for folder in ("", "matrix")]

from operations import OPERATIONS  # noqa: E402
from test_matrix import FAULTS, PLAIN, SCENE, Session  # noqa: E402

LAST = 2  # reboot and shutdown: once, at the end
ROUNDS = 3


def draw(seed):
    """The rows of a session, each with its fault or none."""
    rng = random.Random(seed)
    rows = OPERATIONS[:-LAST] * rng.randrange(1, ROUNDS + 1) + OPERATIONS[-LAST:]
    drawn = []
    for row in rows:
        fault = rng.choice(FAULTS) if not isinstance(row, str) and rng.random() < 0.5 else None
        if fault == "garbage" and row.requests > 1:  # it is up to random bytes how many requests there are
            fault = None
        drawn.append((row, fault))
    return drawn


def try_out(drawn, scene):
    """What disagrees, or nothing."""
    session = Session()
    for row, fault in drawn:
        if isinstance(row, str):
            session.works(PLAIN[row])
        elif fault is None:
            session.works(row)
        else:
            session.take(fault)
            session.hit(row)
    try:
        session.run(scene)
    except BaseException as failure:  # pytest's own are no Exception
        if isinstance(failure, KeyboardInterrupt):
            raise
        return f"{type(failure).__name__}: {failure}"
    return None


def smaller(drawn, scene):
    for at, (row, fault) in enumerate(drawn):
        if fault is not None:
            fewer = [*drawn[:at], (row, None), *drawn[at + 1:]]
            if try_out(fewer, scene):
                drawn = fewer
    return drawn


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    end = time.monotonic() + seconds
    calls = count = 0
    with tempfile.TemporaryDirectory() as folder:
        scene = Path(folder) / "scene.toml"
        scene.write_text(SCENE)
        while count == 0 or time.monotonic() < end:
            drawn = draw(f"{seed}.{count}")
            disagreement = try_out(drawn, scene)
            if disagreement:
                drawn = smaller(drawn, scene)
                needed = [f"{row.id} under {fault}" for row, fault in drawn if fault]
                print(f"finding: session {seed}.{count}: {', '.join(needed) or 'no fault'}\n"
                      f"{try_out(drawn, scene) or disagreement}", file=sys.stderr)
                sys.exit(1)
            count += 1
            calls += len(drawn)
    print(f"executions: {calls}")


if __name__ == "__main__":
    main()
