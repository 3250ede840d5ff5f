#!/usr/bin/python3
"""Processes that are suspended (SIGSTOP) at any moment of anything, for less or more than the time-out, and go on.

  suspended.py SECONDS SEED [KIND...]   1 second: each kind once

Suspended are: a service, the client of the library, all services with their supervisor (which is asked for the state),
vx63 (whose clock runs fifty times as fast, but for the live view, whose threads wait for each other), and any or all
processes of a `vx63-vmeter run` of its own. Held against: documented results and exit codes, records, texts and settings
files that are wholly old or new; when all go on, no more readings are lost than when a service was killed, no value is
an old one, the next vx63 is in step, a survey goes on where it was, and nothing is left.
"""

import contextlib
import itertools
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / folder) for folder in ("support", "system")]
from at_call import LOG, PLACE, Ended, files, inside, leftovers, put, run  # noqa: E402
from failing import Finding, check  # noqa: E402

if "VX63_INSIDE" in os.environ:
    os.environ["VX63_BUILD"] = str(PLACE)
from conftest import VMETER, Client, descendants, parents  # noqa: E402
from kills import LINE  # noqa: E402
from restarts import CALLER, LIMIT, MOST_LOST, OK, PATIENCE_MS, READINGS, Thread  # noqa: E402

VX63 = PLACE / "bin" / "vx63"
TIMES = 50  # hurried_clock.cpp
SHORT, LONG = 0.01, 2 * PATIENCE_MS / 1000  # suspensions of what the client calls; the time-out lies in between
OF_TOOL = 0.02, 1.3 * 10
NO_PROGRAMS = "/nowhere"  # a PATH: a report as PDF would take its time
HANG = 60  # seconds, longer than anything takes
INPUTS = "vx63_setMeasInput", "vx63_setMeasInput(1)"
UNTOLD = "vx63-vmeter: state: the meter does not tell: ask as the user who started it; "\
         "let a service that was stopped go on (kill -CONT)\n"
ERROR = re.compile(r"vx63: [^:\n]+: .+: .+\n")

LIVE = "live --channel 27 --interval 0 --count 3 --csv"  # tells of what does not answer, and goes on
# What vx63 is asked, and the exit codes beside 0 that tell of a meter that did not answer in time.
COMMANDS = {
    "update --program main --new-version 2.0 --size 1048576 --yes": (1, 11),
    "info --json": (1, 11),
    "status --json": (1, 11, 13),
    "measure single --channel 27 --json": (1, 3, 11),
    "measure multi --plan uhf --channel 27,28 --json": (1, 3, 11, 13),
    "scan --plan catv --json": (1, 3, 11, 13),
    "settings set sys_set/volume 0 VOLUME 1": (1, 11),
    "sets create NEW --from ch_set/lte": (1, 11),
    "sets delete B --yes": (1, 11),
    "settings reset user_set/list --yes": (1, 11),
    "doctor --json": (5,),
    LIVE: (),
}
PLAN = Path("/mnt/plan.toml")
SURVEY = ["survey", PLAN, "--yes"]
POINTS, CHANNELS = "abc", ("16", "27")  # of which one does not pass
OF_SURVEY = 1, 3, 11, 13, 14


def services():
    """Process ids by names; a killed one may be missing."""
    return {name: pid for pid, (_, name) in parents().items() if name in READINGS or name == "vx63-key"}


def everyone():
    """The services and their supervisor."""
    return [os.getppid(), *services().values()]


def tell(pids, number, rng):
    for pid in rng.sample(pids, len(pids)):
        with contextlib.suppress(ProcessLookupError):  # it may have ended
            os.kill(pid, number)


def suspend(pids, seconds, rng, meanwhile=lambda: None):
    try:
        tell(pids, signal.SIGSTOP, rng)
        time.sleep(seconds)
        meanwhile()
    finally:
        tell(pids, signal.SIGCONT, rng)


def later(wait, *arguments):
    def disturb():
        time.sleep(wait)
        suspend(*arguments)
    disturber = threading.Thread(target=disturb)
    disturber.start()
    return disturber


# ---- the library ----

class Reader(Thread):
    """Reads by the recipe, and knows which input was set last."""

    def read_input(self, number):
        if not self.call(INPUTS[number]) or not self.call("vx63_getMeasStatus"):
            return False
        real = bytes.fromhex(self.told["record"])[4:6]
        check(real == number.to_bytes(2, "little"), "an old value counts:", number, real)
        return True

    def catch_up(self):
        """What lay in the services' queues until here is answered, and meets nobody later."""
        self.client.order(f"patience {LIMIT * 1000}")
        self.get_in_step()
        for one in READINGS:
            while not self.read(one):
                pass
        self.call("vx63_getKeyStatus")


def library(reader, rng, pids, meanwhile=lambda: None):
    reader.client.order(f"patience {PATIENCE_MS}")
    wait = rng.choice([0, rng.random() * 0.001, rng.random() * 0.01])
    disturber = later(wait, pids, rng.choice([SHORT, LONG]), rng, meanwhile)
    while disturber.is_alive():
        service = rng.choice(list(READINGS))
        reader.read_input(rng.randrange(2)) if service == "vx63-meas" else reader.read(service)
    disturber.join()
    reader.client.order(f"patience {LIMIT * 1000}")  # from now on nothing is late
    lost = 0
    for service in READINGS:
        while not reader.read(service):
            lost += 1
            check(lost <= 2 * MOST_LOST, lost, "readings are lost after", service, "went on")
    for service in READINGS:
        check(reader.read(service), "out of step after a reading that counted:", service)
    check(reader.read_input(rng.randrange(2)), "out of step at the input")


def service(reader, rng):
    library(reader, rng, [services()[rng.choice(list(READINGS))]])


def client(reader, rng):
    library(reader, rng, [reader.client.process.pid])


def meter(reader, rng):
    """Now and then a service dies while nobody can start it again."""
    victim = services()[rng.choice(list(READINGS))] if rng.random() < 0.3 else None
    library(reader, rng, everyone(), lambda: victim and os.kill(victim, signal.SIGKILL))


def state(reader, rng):
    """The supervisor tells the state, or that it cannot, also where a service is in the middle of changing it."""
    def ask():
        ended = run(VMETER, "state", "--json")
        told = ended.code == 0 and json.loads(ended.out)["sim_ms"] >= 0
        check(told or ended.err == UNTOLD, "vx63-vmeter state:", ended)
    failed = []

    def meanwhile():
        try:
            ask()
        except (Finding, subprocess.TimeoutExpired) as failure:
            failed.append(failure)
    library(reader, rng, [services()[rng.choice(list(READINGS))]], meanwhile)
    check(not failed, *failed)


# ---- the tool ----

def good_log():
    text = LOG.read_bytes() if LOG.exists() else b""
    check(text == b"" or text.endswith(b"\n"), "the log ends within a line:", text[-80:])
    for line in text.splitlines():
        check(LINE.fullmatch(line), "a line of the log is not whole:", line)
    return text


def disturbed(words, seconds, rng, meanwhile=lambda: None, hurried=True):
    """vx63 while it, a service or the meter is suspended once within its time."""
    environment = os.environ | {"PATH": NO_PROGRAMS}
    if hurried:
        environment["LD_PRELOAD"] = str(PLACE / "lib" / "libhurried_clock.so")
    with subprocess.Popen([VX63, *words], env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as tool:
        pids = rng.choice([[tool.pid], [services()[rng.choice(list(READINGS))]], everyone()])
        disturber = later(rng.random() * seconds, pids, rng.choice(OF_TOOL) / (TIMES if hurried else 1), rng, meanwhile)
        try:
            out, error = tool.communicate(timeout=HANG)
        except subprocess.TimeoutExpired:
            tool.kill()
            raise Finding(f"{words} does not end") from None
        disturber.join()
    return Ended(tool.returncode, out, error, {})


class Tool:
    def __init__(self, begin):
        self.begin = begin
        self.right = {}  # what is there after each command, and how long it takes
        for words in COMMANDS:
            put(begin)
            start = time.monotonic()
            ended = run(VX63, *words.split())
            check(ended.code == 0, words, ended)
            self.right[words] = ended.out, files(), time.monotonic() - start

    def __call__(self, reader, rng):
        words = rng.choice(list(COMMANDS))
        codes = COMMANDS[words]
        out, new, seconds = self.right[words]
        reader.catch_up()
        put(self.begin)
        LOG.write_bytes(b"")
        seen = {}
        tool = disturbed(words.split(), seconds, rng, lambda: seen.update(files()), words != LIVE)
        told, error = tool.out, tool.err
        what = f"{words}: {tool.code}: {error}"
        check(tool.code == 0 or tool.code in codes, "exit code of", what)
        log = good_log()
        now = files()
        check(leftovers(now) == [], what, "leaves", leftovers(now))
        for path in seen.keys() - set(leftovers(seen)):
            check(seen[path] in (self.begin.get(path), new.get(path)), path, "while it is suspended by", what)
        if tool.code == 0:
            check(now == new, what, "is told as done, and is not")
            check(error == "" or words == LIVE, "an error with exit code 0:", what)
            if "--json" in words:
                check(type(json.loads(told)) is type(json.loads(out)), "other output of", what, told)
        else:
            check(all(text in (self.begin.get(path), new.get(path)) for path, text in now.items()), what, "is half done")
            # The doctor tells also of an answer that came when the vx63 before it had gone.
            check(b"timeout error" in log or tool.code == 3 or "doctor" in words, "no time-out is the reason of", what,
                  [line for line in log.splitlines() if b"rror" in line])
            if not told:
                check(error.startswith("{") or ERROR.fullmatch(error), "text of", what)
        reader.catch_up()
        number = rng.randrange(2)
        ended = run(VX63, "input", str(number))
        check(ended.code == 0, "the next command:", ended, "after", what)
        ended = run(VX63, "status", "--json")
        check(ended.code == 0, "the next command:", ended, "after", what)
        check(json.loads(ended.out)["input"] == number, "an old value:", ended.out, "after", what)
        ended = run(VX63, "info", "--json")
        check((ended.code, ended.out) == (0, self.right["info --json"][0]), "the next command:", ended, "after", what)


class Survey:
    """Whatever happened, what is measured is there whole, and the same command, given again, measures the rest."""

    def __init__(self):
        points = "".join(f'[[point]]\nname = "{point}"\n' for point in POINTS)
        PLAN.write_text(f'site = "Example Street 12"\n[[list]]\nname = "terrestrial"\nplan = "uhf"\n'
                        f'channels = "{",".join(CHANNELS)}"\n{points}')
        start = time.monotonic()
        self.readings(self.measure(), list(itertools.product(POINTS, CHANNELS)))
        self.seconds = time.monotonic() - start

    def __call__(self, reader, rng):
        shutil.rmtree(PLAN.with_suffix(""))
        reader.catch_up()
        check(run(VX63, "input", "0").code == 0, "the input is not set")  # at another, each channel waits for lock
        ended = disturbed(SURVEY, self.seconds, rng)
        check(ended.code in OF_SURVEY and ERROR.fullmatch(ended.err.splitlines(True)[-1]), "the survey ends with", ended)
        first = self.readings(ended)
        reader.catch_up()
        again = self.measure()
        all_ = self.readings(again, list(itertools.product(POINTS, CHANNELS)))
        check(all_[:len(first)] == first, "measured is another", ended, again)
        reader.catch_up()

    @staticmethod
    def measure():
        ended = subprocess.run([VX63, *SURVEY], env=os.environ | {"PATH": NO_PROGRAMS}, stdin=subprocess.DEVNULL,
                               capture_output=True, text=True, timeout=HANG, check=False)
        check(ended.returncode == 14, "the survey ends with", ended)
        return ended

    @staticmethod
    def readings(ended, wanted=None):
        results = PLAN.with_suffix("") / "results.jsonl"
        lines = [json.loads(line) for line in results.read_text().splitlines()] if results.exists() else []
        readings = [line for line in lines if line["kind"] == "reading"]
        found = [(reading["point"], reading["channel"]) for reading in readings]
        check(len(found) == len(set(found)) and wanted in (None, found), "measured is", found, ended)
        return readings


# ---- a meter of its own ----

def meters(_reader, rng):
    """Any or all processes of a run, from its first moment to its last."""
    with subprocess.Popen([VMETER, "run", "--", VX63, "info", "--json"], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as running:
        time.sleep(rng.random() * 0.12)
        tree = [running.pid, *descendants(running.pid)]
        suspend(rng.choice([tree, [rng.choice(tree)]]), rng.choice([SHORT, LONG]), rng)
        try:
            out, error = running.communicate(timeout=HANG)
        except subprocess.TimeoutExpired:
            told = descendants(running.pid)
            running.kill()
            raise Finding(f"vx63-vmeter run does not end: {told}") from None
    check(running.returncode == 0 and error == "", "vx63-vmeter run:", running.returncode, error)
    check(json.loads(out)["model_code"] == "VX63", "other output:", out)
    left = {pid: name for pid, (_, name) in parents().items() if pid in tree}
    check(not left, "left over:", left)


def prepare():
    for words in ("sets create A --from ch_set/lte", "sets create B --from ch_set/pilot",
                  "settings set sys_set/volume 0 VOLUME 3"):
        ended = run(VX63, *words.split())
        assert ended.code == 0, ended
    return files()


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    inside()
    os.environ["VX63_PROCESS_ID"] = "15"  # of vx63: restarts.py has others
    tool = Tool(prepare())
    kinds = {"service": service, "client": client, "meter": meter, "state": state, "tool": tool, "survey": Survey(),
             "run": meters}
    only = sys.argv[3:] or list(kinds)
    end = time.monotonic() + seconds
    count = findings = 0
    with Client(program=CALLER) as caller:
        reader = Reader(caller)
        while count < len(only) or time.monotonic() < end:
            kind = only[count % len(only)]
            try:
                kinds[kind](reader, random.Random(f"{seed}.{count}"))
            except Finding as finding:
                findings += 1
                print(f"finding: {kind} {seed}.{count}: {finding}", file=sys.stderr, flush=True)
                reader.client.order(f"patience {LIMIT * 1000}")
            count += 1
    print(f"findings: {findings}")
    print(f"executions: {count}")
    sys.exit(findings > 0)


if __name__ == "__main__":
    main()
