#!/usr/bin/python3
"""The tool's commands that go on, and a virtual meter beside them, for as long as they are let: nothing grows.

long_commands.py SECONDS SEED. Several virtual meters; in each, commands that measure, watch and follow the log, under
an id of their own, and one short command after another. /proc is looked at all the time. Held against: memory of each
process (its own alone, shared pages left out), descriptors and threads, which do not grow from the first third of the
time to the last; queues (one for each id) and messages that nobody takes (none); the log, which stays within its limit;
that every command goes on and says nothing on standard error; and how it ends.
"""

import os
import random
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / "system")]

from conftest import BUILD, HANG, SOURCE, VMETER, descendants  # noqa: E402

VX63 = BUILD / "bin" / "vx63"
LOG = Path("/var/log/libvx63.cpp.txt")
LOG_LIMIT = 2_097_152 + 65_536
WARM = 1.5  # seconds
QUEUES = {f"vx63.{number}" for number in (0, 6, 8, 10, 12, 1, 2, 9, 17)}  # of services, and of what is run here
POINTS = 2_000  # of 40 channels: hours, where each waits for lock
# It keeps what it has measured for the report: its memory is told, not judged. SIGTERM would let it write that.
SURVEY = "survey plan.toml --yes --id 1"
QUIET = ["status --json", "info", "doctor", "buzzer alarm", "settings check", "sets create NEW --from ch_set/lte",
         "sets delete NEW --yes"]
MEASURING = ["scan --plan uhf --csv", "measure multi --plan uhf --channel 13-27 --jsonl",
             "measure constellation --freq 557143 --json", "measure delay-profile --freq 557143 --json",
             "measure single --channel 27", "power standby", "power wakeup"]
# A meter has one tuner: who measures has it alone. What goes on, and what is run beside it.
METERS = {
    "live": (["live --freq 557143 --interval 0 --jsonl --id 1", "log --follow --jsonl", "log --follow --errors"], QUIET),
    "record": (["live --channel 27 --interval 0.01 --tone --csv --record record.csv --id 1"], QUIET),
    "json": (["live --channel 27 --interval 0.02 --record record.jsonl --id 1"], QUIET),
    "single": (["measure single --freq 557143 --interval 0 --count 4000000000 --jsonl --id 1",
                "keys --watch --interval 0.001 --jsonl --id 2"], QUIET),
    "survey": ([SURVEY], QUIET),
    "short": ([], QUIET + MEASURING),
}
STOPPED = {0, -signal.SIGTERM, 143}  # what a command that SIGTERM ends may exit with


def finding(*told):
    print("finding:", *told, file=sys.stderr)
    sys.exit(1)


class Command:
    """One that runs until it is stopped; what it prints is counted."""

    def __init__(self, words, folder):
        self.words = words
        self.lines = 0
        self.errors = (folder / f"errors-{words.replace(' ', '-').replace('/', '-')}").open("w+")
        self.process = subprocess.Popen([VX63, *words.split()], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=self.errors, cwd=folder)
        self.reader = threading.Thread(target=self.read)
        self.reader.start()

    def read(self):
        with self.process.stdout as output:
            while block := os.read(output.fileno(), 65536):
                self.lines += block.count(b"\n")

    def check(self):
        self.errors.seek(0)
        said = self.errors.read()
        if said or self.process.poll() is not None:
            finding(f"vx63 {self.words}: exit status {self.process.poll()}, says {said!r}")

    def stop(self):
        status = self.process.wait(HANG)
        self.reader.join()
        if status not in (STOPPED if self.words != SURVEY else {-signal.SIGKILL}):
            self.errors.seek(0)
            finding(f"vx63 {self.words}: it is ended with {status}, it says {self.errors.read()!r}")


def own_kb(pid):
    return sum(int(line.split()[1]) for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()
               if line.startswith(("Private_", "Swap:")))


def sample(pid):
    return {"KiB": own_kb(pid), "descriptors": len(os.listdir(f"/proc/{pid}/fd")),
            "threads": len(os.listdir(f"/proc/{pid}/task"))}


def queues():
    """All queues, and the bytes that wait in each."""
    return {path.name: int(path.read_text().split()[0].partition(":")[2]) for path in Path("/dev/mqueue").iterdir()}


ROOM = {"KiB": 256, "descriptors": 0, "threads": 0}  # that an allocator may take later than at first


class Watch:
    """What each process takes: the most in the first third of the time, the least in the last."""

    def __init__(self, processes):
        self.processes = processes
        self.early = {}
        self.late = {}

    def look(self, passed):
        if 1 / 3 < passed < 2 / 3:
            return
        chosen, seen = (max, self.early) if passed <= 1 / 3 else (min, self.late)
        for name, pid in self.processes.items():
            for what, value in sample(pid).items():
                seen[name, what] = chosen(value, seen.get((name, what), value))

    def judge(self, but):
        for (name, what), value in self.late.items():
            if value > self.early[name, what] + ROOM[what] and (name, what) not in but:
                finding(f"{name}: from {self.early[name, what]} to {value} {what}")

    def tell(self):
        for name in self.processes:
            print(f"  {name}: " + ", ".join(f"{self.early[name, what]} to {self.late[name, what]} {what}" for what in ROOM))


def inside(seconds, seed, name, folder):
    """In the meter's surroundings."""
    rng = random.Random(f"{seed}.{name}")
    until_stopped, beside = METERS[name]
    plan = "".join(f'[[point]]\nname = "{i}"\n' for i in range(POINTS))
    (folder / "plan.toml").write_text(
        'site = "Example Street 12"\n[[list]]\nname = "terrestrial"\nplan = "uhf"\nchannels = "13-52"\n' + plan)
    for own in "1", "2", "9", "17":  # makes the log, and each service opens the queue of each
        subprocess.run([VX63, "doctor", "--id", own], stdout=subprocess.DEVNULL, timeout=HANG, check=True)
    commands = [Command(words, folder) for words in until_stopped]
    short = 0
    try:
        meter = {f"{name} {pid}": pid for pid, name in descendants(os.getppid()).items() if name.startswith("vx63-")}
        meter |= {"the meter": os.getppid()}
        watch = Watch(meter | {"vx63 " + command.words: command.process.pid for command in commands})
        while not all(command.lines for command in commands if "--errors" not in command.words):
            for command in commands:
                command.check()
            time.sleep(0.01)
        start = time.monotonic() + WARM
        while time.monotonic() < start + seconds:
            begun = time.monotonic()
            words = rng.choice(beside)
            ended = subprocess.run([VX63, *words.split(), *([] if "set" in words else ["--id", "9"])],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                   timeout=HANG, check=False)
            short += 1
            if ended.returncode < 0 or b"please report" in ended.stderr:
                finding(f"vx63 {words}: {ended.returncode}, says {ended.stderr}")
            for command in commands:
                command.check()
            if time.monotonic() > start:
                passed = (time.monotonic() - start) / seconds if watch.early else 0
                watch.look(passed)
                if new := set(queues()) - QUEUES:
                    finding("queues of nobody:", new)
                if LOG.stat().st_size > LOG_LIMIT:
                    finding("the log has", LOG.stat().st_size, "bytes")
            time.sleep(max(0, min(seconds / 100, 1) - (time.monotonic() - begun)))
        watch.look(1)
        lines = {command.words: command.lines for command in commands}
    finally:
        for command in commands:
            command.process.send_signal(signal.SIGKILL if command.words == SURVEY else signal.SIGTERM)
    for command in commands:
        command.stop()
    watch.tell()
    if any(queues().values()) and SURVEY not in until_stopped:
        finding("messages that nobody takes:", queues())
    for words, count in lines.items():
        print(f"  vx63 {words}: {count} lines")
    watch.judge({("vx63 " + SURVEY, "KiB")})
    print(sum(lines.values()) + short)


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    scene = (SOURCE / "vmeter" / "scene" / "default.toml").read_text()
    # Nobody waits for lock, but the survey, which would come to its end.
    at_once = scene.replace("clock_ms = 100\n", "clock_ms = 1000\n")
    running = {}
    executions = 0
    found = False
    with tempfile.TemporaryDirectory() as text:
        for name in METERS:
            folder = Path(text) / name
            folder.mkdir()
            (folder / "scene.toml").write_text(scene if name == "survey" else at_once)
            running[name] = subprocess.Popen(
                [VMETER, "run", "--scene", folder / "scene.toml", "--", sys.executable, __file__, "--inside",
                 str(seconds), str(seed), name, folder], stdout=subprocess.PIPE, text=True)
        for name, meter in running.items():
            told, _ = meter.communicate()
            *lines, last = told.splitlines() or [""]
            print(f"{name}:", *lines, sep="\n")
            found = found or meter.returncode != 0
            executions += int(last) if last.isdigit() else 0
    print(f"executions: {executions}")
    sys.exit(found)


if __name__ == "__main__":
    if sys.argv[1] == "--inside":
        inside(float(sys.argv[2]), int(sys.argv[3]), sys.argv[4], Path(sys.argv[5]))
    else:
        main()
