#!/usr/bin/python3
"""All 13 free process ids at once, for long, under the thread sanitizer.

all_ids.py SECONDS SEED. A session is a virtual meter and one client with a thread for each id, who all call any
operations while services answer wrongly now and then. Held against: the thread sanitizer, which ends the client with
what it found; the documented results, and records of failed calls and the bytes behind all records.

VX63_TSAN_BUILD names the build folder of the client (preset tsan); without it the client is one without a sanitizer.
"""

import json
import os
import random
import sys
import tempfile
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / "system")]

from conftest import BUILD, VMETER, Client  # noqa: E402
from soak import DOCUMENTED, PATIENCE_MS, check_log, draw_rules, finding  # noqa: E402

CALLER = Path(os.environ.get("VX63_TSAN_BUILD", BUILD)).resolve() / "bin" / "matrix_caller"
THREADS = 13
CALLS = 2000  # of a thread, between two looks at the clock


def session(seed, end, state):
    rng = random.Random(seed)
    rules = draw_rules(rng) if rng.random() < 0.5 else []
    calls = 0
    reports = state / "reports"
    options = f"{os.environ.get('TSAN_OPTIONS', '')} halt_on_error=1 exitcode=66 log_path={reports}"
    client = Client(VMETER, "run", "--state", state, *rules, "--", program=CALLER,
                    env={**os.environ, "TSAN_OPTIONS": options})
    try:
        client.order(f"patience {PATIENCE_MS}")
        for _ in range(10):
            try:
                told = client.order(f"many {CALLS} {rng.randrange(1 << 30)} {THREADS}")
            except json.JSONDecodeError:  # it has ended: below
                break
            calls += sum(told["results"].values())
            if not set(told["results"]) <= DOCUMENTED:
                finding("a result that is not documented", told)
            if told["written"]:
                finding("a record that should be as it was", told)
            if time.monotonic() > end:
                break
    finally:
        status = client.close()
    found = [path.read_text() for path in state.glob("reports*")]
    if status != 0 or found:
        finding(f"session {seed} ends with {status}", "\n".join(found))
    if not any(rule.startswith("sys=garbage") for rule in rules):
        check_log(state / "log")
    return calls


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    end = time.monotonic() + seconds
    calls = count = 0
    while count == 0 or time.monotonic() < end:
        with tempfile.TemporaryDirectory() as state:
            os.chmod(state, 0o700)
            calls += session(f"{seed}.{count}", end, Path(state))
        count += 1
    print(f"executions: {calls}")


if __name__ == "__main__":
    main()
