#!/usr/bin/python3
"""A meter that falls asleep, wakes up and starts anew at any moment of any operation and of the tool's commands.

standby.py SECONDS SEED. Held against what docs/services.md says of standby: each operation's result, asleep, awake and in
between; untouched records; answers to all requests, so that after waking no reading is lost; nothing that runs while
asleep; settings and exit codes of the tool. After a reboot at most restarts.MOST_LOST readings are lost.
"""

import os
import random
import subprocess
import sys
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / folder) for folder in ("support", "system", "system/matrix")]
import kills  # noqa: E402
from at_call import PLACE, files, inside  # noqa: E402
from conftest import MEAS, Client  # noqa: E402
from failing import VX63, is_printable, prepare  # noqa: E402
from failures import EXIT_CODES, TOLD  # noqa: E402
from operations import COMM, OK, OPERATIONS  # noqa: E402
from restarts import LIMIT, MOST_LOST, PATIENCE_MS, READINGS, Thread, finding  # noqa: E402

ASLEEP = 6  # ucRet
SLEEPS = {"standby": 1, "standby --measurement": 2, "standby --force": 2}
WAKES = {1: ["wakeup", "wakeup --force"], 2: ["wakeup", "wakeup --measurement", "wakeup --force"]}
ANSWERED = {"vx63_getMeasStatus", "vx63_getStandbyStat", "vx63_ntfLowBattStatChg"}  # by a meter that sleeps
ROWS = {row.name: row for row in OPERATIONS if not isinstance(row, str) and not row.name.startswith(
    ("vx63_standby", "vx63_wakeup", "vx63_force_", "vx63_reboot", "vx63_shutdown", "vx63_prgUpdate", "vx63_initFac"))}
COMMANDS = {kills.CASES[name].words: name for name in ("set", "row", "create", "copy", "delete", "import", "update")} | {
    words: None for words in ("measure single --freq 557143", "measure constellation --freq 557143", "status", "doctor",
                              "scan uhf --channels 21-23", "live --freq 557143 --count 2")}
MANY = 20  # calls in one state
REBOOT_EVERY, COMMAND_EVERY = 10, 3


def power(words, rng):
    """The tool, at some moment soon."""
    wait = rng.choice([0, rng.random() * 0.01, rng.random() * 0.1])
    return subprocess.Popen(["sh", "-c", f"sleep {wait:.4f}; exec {VX63} power {words} --id 14"], stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)


def ended(running, words):
    _, err = running.communicate(timeout=LIMIT)
    if running.returncode != 0:
        finding(f"vx63 power {words} ends with {running.returncode}", err)


class Asker(Thread):
    def ask(self, row, state):
        """An operation by a meter that is awake (0) or asleep; None: one or the other."""
        told = self.client.order(f"call {row.name}")
        own = [line for line in told["log"] if " : matrix_caller : " in line]
        result = told["result"]
        refused = row.service == MEAS and row.name not in ANSWERED
        documented = {OK, COMM} | set((row.results or {}).values())  # COMM: ucRet 4, something else runs, and others
        if state and refused:
            documented = {row.result(ASLEEP)}
        if result not in documented or not told["guard"]:
            finding(f"{row.name} while standby is {state}", told)
        if result < 0 and told["record"] is not None and row.function != "vx63_getDlyPrfResult":
            finding(f"{row.name} fails and writes", told)
        if any("communication error" in line for line in own):
            finding(f"{row.name} is not answered", told)
        return told

    def all_count(self, when):
        for service in READINGS:
            if not self.read(service):
                finding(f"a reading is lost {when}", service)


def sleep_and_wake(asker, fall, rng):
    rows = list(ROWS.values())
    state = SLEEPS[fall]
    for words, during, then in (fall, None, state), (rng.choice(WAKES[state]), None, 0):
        running = power(words, rng)
        while running.poll() is None:
            asker.ask(rng.choice(rows), during)
        ended(running, words)
        told = asker.ask(ROWS["vx63_getStandbyStat"], then)
        if int.from_bytes(bytes.fromhex(told["record"]), "little") != then:
            finding(f"another standby after {words}", told)
        if then != 0:
            told = asker.ask(ROWS["vx63_getMeasStatus"], then)
            if any(bytes.fromhex(told["record"])[:4]):
                finding("something measures while the meter sleeps", told)
        else:
            asker.all_count("after waking up")
        for _ in range(MANY):
            asker.ask(rng.choice(rows), then)
        asker.all_count(f"while standby is {then}")


def reboot(asker, rng):
    client = asker.client
    client.order(f"patience {PATIENCE_MS}")
    running = power("reboot --wait --yes", rng)
    while running.poll() is None:
        asker.read(rng.choice(list(READINGS)))
    ended(running, "reboot")
    client.order(f"patience {LIMIT * 1000}")
    lost = 0
    for service in READINGS:
        while not asker.read(service):
            lost += 1
            if lost > MOST_LOST:
                finding("readings are lost after the reboot", service)
    asker.all_count("after one that counted")


def command(words, begin, rng):
    """A command of the tool while the meter falls asleep and wakes up."""
    name = COMMANDS[words]
    if attempt := COMMANDS[words] and kills.Attempt(COMMANDS[words], begin):
        attempt.restore()
    fall = rng.choice(list(SLEEPS))
    running = subprocess.Popen([VX63, *words.split()], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, text=True)
    for power_words in fall, rng.choice(WAKES[SLEEPS[fall]]):
        one = power(power_words, rng)
        _, err = one.communicate(timeout=LIMIT)
        if one.returncode != 0 and "update" not in words:  # it keeps a meter awake
            finding(f"vx63 power {power_words} ends with {one.returncode} during {words}", err)
    out, err = running.communicate(timeout=LIMIT)
    code = running.returncode
    last = err.splitlines()[-1] if err else ""
    if code not in EXIT_CODES or not is_printable(out + err) or (code >= 3 and not TOLD.fullmatch(last)):
        finding(f"vx63 {words} ends with {code}", err)
    if attempt and (code != 0 or files() != attempt.new):
        finding(f"vx63 {words}, which needs no measuring, ends with {code}", err)
    again = subprocess.run([VX63, "status", "--json"], stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    if again.returncode != 0 or '"standby":"none"' not in again.stdout.replace(" ", ""):
        finding(f"out of step after {words}", (again.stdout, again.stderr))


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    inside()
    rng = random.Random(seed)
    begin = prepare()
    commands = rng.sample(list(COMMANDS), len(COMMANDS))
    end = time.monotonic() + seconds
    count = 0
    with Client(program=PLACE / "bin" / "matrix_caller") as client:
        client.order(f"patience {LIMIT * 1000}")
        asker = Asker(client)
        while count < len(SLEEPS) or time.monotonic() < end:
            sleep_and_wake(asker, list(SLEEPS)[count % len(SLEEPS)], rng)
            if count % COMMAND_EVERY == 1:
                command(commands[count // COMMAND_EVERY % len(commands)], begin, rng)
            if count % REBOOT_EVERY == 2:
                reboot(asker, rng)
            count += 1
    print(f"executions: {count}")


if __name__ == "__main__":
    main()
