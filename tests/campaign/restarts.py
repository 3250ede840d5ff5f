#!/usr/bin/python3
"""Services that are killed at any moment of any operation, and come back.

restarts.py SECONDS SEED. A session is a virtual meter and one client, who calls operations one after another and does
as docs/message-queues.md says: a reading counts when another operation of the same service succeeds right after it, and
whenever a call fails the thread takes another process id and empties that one's queue first. Held against: documented results,
untouched records, and the number of readings that are lost when the service is there again, which is MOST_LOST.
"""

import os
import random
import signal
import sys
import threading
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / "system")]

from conftest import BUILD, VMETER, Client, descendants  # noqa: E402

CALLER = BUILD / "bin" / "matrix_caller"
READINGS = {  # of each service but the key service, which has one operation: the reading, and what follows it
    "vx63-sys": ("vx63_getProductInfo", "vx63_getFailinfo"),
    "vx63-dev": ("vx63_getPowerSupplyInfo", "vx63_getDeviceStatus"),
    "vx63-buz": ("vx63_forceBuzzerVolume", "vx63_buzzer"),
    "vx63-meas": ("vx63_getMeasStatus", "vx63_getStandbyStat"),
}
IDS = 16, 17
PATIENCE_MS = 30  # while the service is gone
LIMIT = 60  # seconds
MOST_LOST = 3
OK, COMM = 0, -1


def finding(text, told):
    print(f"finding: {text}: {told}", file=sys.stderr)
    sys.exit(1)


class Thread:
    """A client that keeps in step."""

    def __init__(self, client):
        self.client = client
        self.told = None  # of the last call
        self.changes = 0
        self.get_in_step()

    def get_in_step(self):
        self.changes += 1
        own = IDS[self.changes % 2]
        self.client.order(f"drain {own}")
        self.client.order(f"init {own}")

    def read(self, service):
        """Whether a reading counts."""
        return all(self.call(name) for name in READINGS[service])

    def call(self, name):
        self.told = told = self.client.order(f"call {name}")
        if told["result"] not in (OK, COMM) or not told["guard"]:
            finding(f"{name} while a process is disturbed", told)
        if told["result"] == COMM:
            if told["record"] is not None:
                finding(f"{name} fails and writes", told)
            self.get_in_step()
        return told["result"] == OK


def process(client, service):
    """The service's, or none while it is gone."""
    return next((pid for pid, name in descendants(client.process.pid).items() if name == service), None)


def killed(client, thread, rng):
    service = rng.choice(list(READINGS))
    pid = process(client, service)
    wait = rng.choice([0, rng.random() * 0.0005, rng.random() * 0.005])

    def kill():
        time.sleep(wait)
        os.kill(pid, signal.SIGKILL)

    killer = threading.Thread(target=kill)
    killer.start()
    while killer.is_alive():
        thread.read(service)
    killer.join()
    start = time.monotonic()
    failures = 0
    there = False
    while True:
        now = process(client, service)
        if not there and now not in (None, pid):
            there = True
            client.order(f"patience {LIMIT * 1000}")  # from now on nothing is late
        counts = thread.read(service)
        if counts and there:
            break
        failures += there and not counts
        if time.monotonic() > start + LIMIT:
            finding(f"{service} does not come back", failures)
    if failures > MOST_LOST:
        finding(f"{failures} readings are lost after the service was there again", service)
    for other in READINGS:
        if not thread.read(other):
            finding("out of step after a reading that counted", service)
    client.order(f"patience {PATIENCE_MS}")


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    rng = random.Random(seed)
    end = time.monotonic() + seconds
    count = 0
    while count == 0 or time.monotonic() < end:
        with Client(VMETER, "run", "--", program=CALLER) as client:
            client.order(f"patience {PATIENCE_MS}")
            thread = Thread(client)
            for _ in range(50):
                killed(client, thread, rng)
                count += 1
                if time.monotonic() > end:
                    break
    print(f"executions: {count}")


if __name__ == "__main__":
    main()
