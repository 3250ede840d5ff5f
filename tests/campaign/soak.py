#!/usr/bin/python3
"""Very many calls in one process, in up to 13 threads, while the services answer wrongly now and then.

soak.py SECONDS SEED. A session is a virtual meter and one client. Held against: the documented results, records of
failed calls and the bytes behind all records, memory and descriptors of the client and of each service (which do not
grow), queues (one for each id), and the log, whose lines are all whole although it is started anew by many at once.
"""

import os
import random
import re
import sys
import tempfile
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / "system")]

from conftest import BUILD, VMETER, Client, descendants  # noqa: E402

CALLER = BUILD / "bin" / "matrix_caller"
SERVICES = ["sys", "dev", "key", "buz", "meas"]
KINDS = ["twice", "refuse", "ret,1", "ret,2", "ret,7", "wrong", "stray", "cut,0", "cut,4", "oversized", "garbage",
         "silence", "late,20", "late,150", "die,20"]
SLOW = KINDS[-4:]
PATIENCE_MS = 100
DOCUMENTED = {"0", "-1", "-2", "-6", "-7", "-8"}
LINE = re.compile(rb"\d+\.\d{6} : [^:\n]+ : [\w.]+\(\d+\) \w+\(\) : .*")
MOST = 1_000_000  # calls of a thread in one session
ROOM = 256  # pages that an allocator and a cache may take later than at first


def pages(pid):
    return int(Path(f"/proc/{pid}/statm").read_text().split()[1])


def finding(text, told):
    print(f"finding: {text}: {told}", file=sys.stderr)
    sys.exit(1)


def check_log(folder):
    for file in folder.glob("*.txt"):
        for line in file.read_bytes().removesuffix(b"\n").split(b"\n"):
            if file.name == "libvx63.cpp.txt" and not LINE.fullmatch(line):
                finding("a line of the log is not whole", line)


def draw_rules(rng):
    rules = []
    for service in SERVICES:
        kind = rng.choice(KINDS)
        chance = rng.choice([0.0001, 0.001] if kind in SLOW else [0.0001, 0.01, 0.2])
        rules += ["--fault", f"{service}={kind}@{chance}"]
    return rules


def session(seed, count, state):
    rng = random.Random(seed)
    threads = rng.choice([1, 2, 13])
    rules = draw_rules(rng)
    with Client(VMETER, "run", "--state", state, *rules, "--", program=CALLER) as client:
        client.order(f"patience {PATIENCE_MS}")
        client.order(f"many {min(1000, count)} {rng.randrange(1 << 30)} {threads}")
        meter = {pid: name for pid, name in descendants(client.process.pid).items() if name.startswith("vx63-")}
        assert meter, "no process of the meter is seen"
        before = {pid: pages(pid) for pid in meter}
        told = client.order(f"many {count} {rng.randrange(1 << 30)} {threads}")
        after = {pid: pages(pid) for pid in meter if os.path.exists(f"/proc/{pid}")}  # one may have died
    told |= {"rules": rules, "threads": threads, "seed": seed}
    if not set(told["results"]) <= DOCUMENTED:
        finding("a result that is not documented", told)
    if told["written"]:
        finding("a record that should be as it was", told)
    if told["after"]["descriptors"] > told["before"]["descriptors"]:
        finding("descriptors are left open", told)
    if told["after"]["pages"] > told["before"]["pages"] + ROOM:
        finding("the client grows", told)
    for pid, now in after.items():
        if now > before[pid] + ROOM:
            finding(f"{meter[pid]} grows by {now - before[pid]} pages", told)
    if not any(rule.startswith("sys=garbage") for rule in rules):  # product data with line feeds
        check_log(state / "log")
    return sum(told["results"].values())


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    start = time.monotonic()
    calls = count = 0
    each = 1000
    while count == 0 or time.monotonic() < start + seconds:
        with tempfile.TemporaryDirectory() as state:
            os.chmod(state, 0o700)
            calls += session(f"{seed}.{count}", each, Path(state))
        count += 1
        each = min(2 * each, MOST)
    print(f"executions: {calls}")


if __name__ == "__main__":
    main()
