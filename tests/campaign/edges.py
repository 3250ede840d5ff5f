#!/usr/bin/python3
"""Answers that come about when the time-out ends: a few milliseconds before it, with it, or after it.

edges.py SECONDS SEED. Each call is held against tests/system/matrix: either it has its answer, and nothing is left in the
queue, or it tells of the time-out, with the record as it was; then the one answer that comes later is met by the next call,
and another id is in step.
"""

import random
import sys
import tempfile
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / "system" / folder) for folder in ("", "matrix")]

from conftest import MEAS, VMETER, Client  # noqa: E402
from operations import OK, OPERATIONS  # noqa: E402
from test_matrix import CALLER, CLIENTS, PLAIN, SCENE, TIMEOUT, Cell, Messages  # noqa: E402

LATE = 10  # milliseconds
PATIENCE = range(LATE - 2, LATE + 5)
SESSION = 200
FEWEST = 20
HANG = 300_000
ROWS = [row for row in OPERATIONS if not isinstance(row, str) and row.service == MEAS and row.requests == 1 and
        "standby" not in row.name]
NEXT = PLAIN["vx63_getProductInfo"]  # of another service, which is never late


def wanted(real, what, client, order):
    told = client.order(order)
    if told != real:
        raise AssertionError(f"{what}: {told} instead of {real}")


def one(client, row, own, patience):
    """The id from here on."""
    client.order(f"patience {patience}")
    cell = Cell(f"late,{LATE}", row, own)
    answer = client.order(f"call {row.name}")
    client.order(f"patience {HANG}")
    cell.requests(answer, 1)
    bodies = Messages(answer).bodies(row.command)
    if bodies:
        ret = bodies[0][0]
        cell.succeeded(answer) if row.result(ret) == OK else cell.refused_by(answer, ret)
        wanted({"messages": 0}, "an answer too many", client, f"drain {own}")
        return own
    cell.no_answer(answer, TIMEOUT)
    wanted({"result": 0}, "no late answer", client, f"await {own}")
    cell = Cell("an old answer", NEXT, own)
    cell.no_answer(client.order(f"call {NEXT.name}"), cell.another(row.command | 0x8000, row.service))
    wanted({"result": 0}, "no answer of its own", client, f"await {own}")
    fresh = sum(CLIENTS) - own
    wanted({"result": 0}, "init", client, f"init {fresh}")
    Cell("a fresh id", NEXT, fresh).succeeded(client.order(f"call {NEXT.name}"))
    wanted({"messages": 1}, "not one answer too many", client, f"drain {own}")
    return fresh


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    rng = random.Random(seed)
    end = time.monotonic() + seconds
    count = late = 0
    with tempfile.TemporaryDirectory() as folder:
        scene = Path(folder) / "scene.toml"
        scene.write_text(SCENE)
        while count < FEWEST or time.monotonic() < end:
            with Client(VMETER, "run", "--scene", scene, "--fault", f"meas=late,{LATE}", "--", program=CALLER) as client:
                own = CLIENTS[0]
                client.order(f"init {own}")
                for _ in range(SESSION):
                    if count >= FEWEST and time.monotonic() > end:
                        break
                    row, patience = rng.choice(ROWS), rng.choice(PATIENCE)
                    try:
                        now = one(client, row, own, patience)
                    except BaseException as failure:  # pytest's own are no Exception
                        if isinstance(failure, KeyboardInterrupt):
                            raise
                        sys.exit(print(f"finding: {row.name}, {patience} ms: {failure}", file=sys.stderr) or 1)
                    late += now != own
                    own = now
                    count += 1
    print(f"{late} came too late")
    print(f"executions: {count}")


if __name__ == "__main__":
    main()
