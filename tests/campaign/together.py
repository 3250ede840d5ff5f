#!/usr/bin/python3
"""Several at once: virtual meters that are given one state folder, and commands that write the same settings files.

together.py SECONDS SEED. A try is some meters on one folder, then a meter in which writers set, reset and import one
file, make, copy and delete sets of the same names and update programs, each under an id of its own or all under one,
while readers read. Held against: of the meters one at a time has the folder and the others say so; the documented exit
statuses and a reason for each that is not 0; each file is at any time as some command wrote it, whole; and `vx63
settings check --repair` brings lists and sets in step, after which all is well and nothing is left over.
"""

import os
import random
import re
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / "system")]

from conftest import BUILD, HANG, SOURCE, VMETER  # noqa: E402

VX63 = BUILD / "bin" / "vx63"
ROOM = Path("/usr/local/bin")
VOLUME = ROOM / "sys_set" / "system_setting_file_volume.csv"
SETS, LIST = ROOM / "user_set", "user_setting_file_list.csv"
LIST_LINES = 142  # two of the head, a line a record
NAMES = ["AA", "BB", "CC"]
SOURCES = ["ch_set/lte", "ch_set/uhf"]
IDS = 1, 2, 3, 4
BUSY, NO_METER = 75, 125
IN_USE = re.compile(r"vx63-vmeter: .+: another meter is using it: wait for its end or give another folder with --state\n")
TOLD = re.compile(r"vx63: .+: .+: .+\n")
VALUES = range(4)
SCENE = (SOURCE / "vmeter" / "scene" / "default.toml").read_text().replace("clock_ms = 100\n", "clock_ms = 1000\n")
UPDATE = "update --program main --new-version 2.0 --size 1048576 --yes"
# What may come of a command while others write: 66 where a set is gone meanwhile, 73 where another has made it.
WRITERS = {
    "settings set sys_set/volume 0 VOLUME {value}": {0},
    "settings reset sys_set/volume --yes": {0},
    "settings import {backup} --yes": {0},
    "sets create {name} --from {source}": {0, 73},
    "sets copy {name} {other}": {0, 66, 73},
    "sets delete {name} --yes": {0, 66},
    UPDATE: {0, 10, 11},
    "settings check": {0, 65},
    "settings show sys_set/volume --csv": {0},
    "sets list": {0},
}


def finding(*told):
    print("finding:", *told, file=sys.stderr)
    os._exit(1)  # other threads may be at work


def vx63(words, identity=None):
    environment = {**os.environ, "LC_ALL": "C.UTF-8"} | ({"VX63_PROCESS_ID": str(identity)} if identity else {})
    return subprocess.run([VX63, *words.split()], env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, text=True, timeout=HANG, check=False)


def one_state(rng, folder):
    """Meters on one folder: how many had it."""
    command = [VMETER, "run", "--state", folder, "--", "sh", "-c",
               "mkdir /usr/local/bin/sys_set/held && sleep 0.01 && rmdir /usr/local/bin/sys_set/held"]
    meters = [subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
              for _ in range(rng.choice([2, 4, 8]))]
    had = 0
    for meter in meters:
        _, said = meter.communicate(timeout=HANG)
        if meter.returncode == 0:
            had += 1
        elif meter.returncode != NO_METER or not IN_USE.fullmatch(said):
            finding("a meter on a folder that others use ends with", meter.returncode, said)
    if had == 0:
        finding("of", len(meters), "meters none has the folder")
    again = subprocess.run(command, timeout=HANG, check=False)
    if again.returncode != 0:
        finding("the folder cannot be used again:", again.returncode)
    return len(meters)


def variants():
    """All that the volume's file, and a set, may hold."""
    volume, sets = {VOLUME.read_bytes()}, set()
    for value in VALUES:
        vx63(f"settings set sys_set/volume 0 VOLUME {value}")
        volume.add(VOLUME.read_bytes())
    for source in SOURCES:
        vx63(f"sets create ONE --from {source}")
        sets.add((SETS / "ONE.csv").read_bytes())
        vx63("sets delete ONE --yes")
    return volume, sets


def check_files(volume, sets):
    text = VOLUME.read_bytes()
    if text not in volume:
        finding("the volume's file is not as anybody wrote it:", text)
    for name in [*NAMES, "ONE"]:
        try:
            text = (SETS / f"{name}.csv").read_bytes()
        except FileNotFoundError:
            continue
        if text not in sets:
            finding(f"set {name} is not as anybody wrote it:", text)
    text = (SETS / LIST).read_bytes()
    if text.count(b"\n") != LIST_LINES or not text.endswith(b"\n"):
        finding("the list of sets is not whole:", text)


def inside(seed, count, backup):
    """In the meter's surroundings."""
    rng = random.Random(seed)
    vx63("sets list")
    volume, sets = variants()
    vx63("sets create AA --from ch_set/lte")
    if vx63(f"settings export {backup}").returncode != 0:
        finding("nothing is exported")
    same_id = rng.random() < 0.25
    drawn = [[(rng.choice(list(WRITERS)), rng.choice(NAMES), rng.choice(NAMES), rng.choice(SOURCES), rng.choice(VALUES))
              for _ in range(count)] for _ in IDS]
    tried = 0

    def write(identity, words):
        nonlocal tried
        for form, name, other, source, value in words:
            given = form.format(name=name, other=other, source=source, value=value, backup=backup)
            ended = vx63(given, IDS[0] if same_id else identity)
            tried += 1
            if ended.returncode not in WRITERS[form] | ({BUSY} if same_id else set()):
                finding(f"vx63 {given} ends with", ended.returncode, ended.stderr)
            if ended.returncode not in (0, 65) and not TOLD.fullmatch(ended.stderr):
                finding(f"vx63 {given} ends with {ended.returncode} and says", repr(ended.stderr))

    writers = [threading.Thread(target=write, args=pair) for pair in zip(IDS, drawn)]
    for writer in writers:
        writer.start()
    while any(writer.is_alive() for writer in writers):
        check_files(volume, sets)
    vx63("settings check --repair")
    last = vx63("settings check")
    if last.returncode != 0:
        finding("after the repair:", last.stdout, last.stderr)
    left = [str(path) for path in ROOM.glob("*_set*/*") if path.suffix != ".csv"]
    if left:
        finding("left over:", left)
    print(tried)


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    rng = random.Random(seed)
    end = time.monotonic() + seconds
    executions = count = 0
    while count == 0 or time.monotonic() < end:
        with tempfile.TemporaryDirectory() as text:
            folder = Path(text)
            executions += one_state(rng, folder / "state")
            (folder / "scene.toml").write_text(SCENE)
            ended = subprocess.run([VMETER, "run", "--scene", folder / "scene.toml", "--", sys.executable, __file__, "--inside", f"{seed}.{count}",
                                    "4" if seconds <= 1 else "20", folder / "backup"], stdout=subprocess.PIPE,
                                   check=False)
            if ended.returncode != 0:
                sys.exit(1)
            executions += int(ended.stdout)
            count += 1
    print(f"executions: {executions}")


if __name__ == "__main__":
    if sys.argv[1] == "--inside":
        inside(sys.argv[2], int(sys.argv[3]), Path(sys.argv[4]))
    else:
        main()
