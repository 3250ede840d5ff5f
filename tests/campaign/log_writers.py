#!/usr/bin/python3
"""The logs, written and started anew by 16 processes of several threads each.

log_writers.py SECONDS SEED. A session is a run of log_writers.cpp, which numbers its calls and keeps what a log has
whenever it is emptied. Held against: no log is emptied that is not past its limit, nor grows by more than a line of
each thread past it; all lines are whole; and each line of each call is there once, in the order of its thread.
"""

import random
import re
import subprocess
import sys
import tempfile
import time
from collections import Counter
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / "system")]

from conftest import BUILD, HANG, SOURCE  # noqa: E402

WRITERS = BUILD / "bin" / "log_writers"
PROCESSES = 16
CALLS = 12_000  # of all, in a session: several limits
LIMIT = 2_097_152
LONGEST = 5200  # bytes of a line
FIRST, KEYS, CANNOT = 18, 17, 77
MAIN, KEY = "libvx63.cpp.txt", "libvx63_key.txt"
HEAD = r"\d+\.\d{6} : log_writers : libvx63\.cpp\(\d+\) "
# The lines of each operation, in order, and what their number is.
LINES = {
    "init": [r"vx63_init\(\) : Start\.", r"vx63_init\(\) : arg error\. procId=(\d+)", r"vx63_init\(\) : End\. vx63_err=-2"],
    "read": [r"vx63_readSetFile\(\) : Start\.",
             r"vx63_readSetFile\(\) : fileId=0, pDat=0x[0-9a-f]+, pcMeasFileName=\[n*\], bDefault=(\d+)",
             r"vx63_readSetFile\(\) : End\. iRet=\d+"],
}
NUMBERED = {kind: re.compile(HEAD + lines[1]) for kind, lines in LINES.items()}
OTHERS = {line: re.compile(HEAD + line) for lines in LINES.values() for line in (lines[0], lines[2])}
# Of a call that asks for the keys, of which there is none.
UNANSWERED = re.compile(HEAD + r"\w+\(\) : (?!Start\.|End\.).*err=-1")
PRESSED = re.compile(HEAD + r"vx63_getKeyStatus\(\) : pKeyStat->stat\[(\d+)\]=(\d+)")


def finding(*told):
    print("finding:", *told, file=sys.stderr)
    sys.exit(1)


def kept(folder, log, threads):
    """All that has ever been in a log, in order."""
    parts = sorted(folder.glob(log + ".*"), key=lambda path: int(path.suffix[1:]))
    sizes = [part.stat().st_size for part in parts]
    for size in sizes[:-1]:
        if size <= LIMIT:
            finding(f"{log} is emptied at {size} bytes: of {sizes}")
    if max(sizes) > LIMIT + threads * LONGEST:
        finding(f"{log} grows to {max(sizes)} bytes: of {sizes}")
    lines = []
    for part in parts:
        text = part.read_text(errors="replace")
        if text and not text.endswith("\n"):
            finding(f"a line of {log} has no end:", text[-200:])
        lines += text.splitlines()
    return lines, len(parts) - 1


def session(rng, folder):
    """How many calls, and how often a log was emptied."""
    threads = rng.choice([2, 4, 8])
    calls = CALLS // PROCESSES // threads
    ran = subprocess.run([SOURCE / "tests" / "isolated", WRITERS, folder, str(PROCESSES), str(threads), str(calls),
                          str(rng.randrange(1 << 30))], timeout=HANG, check=False)
    if ran.returncode == CANNOT:
        sys.exit(CANNOT)
    if ran.returncode != 0:
        finding("log_writers ends with", ran.returncode)
    count = PROCESSES * threads * calls
    told = {kind: [] for kind in (*NUMBERED, "keys")}
    others = Counter()
    lines, emptied = kept(folder, MAIN, PROCESSES * threads)
    for line in lines:
        for kind, form in NUMBERED.items():
            if match := form.fullmatch(line):
                told[kind].append(int(match[1]))
                break
        else:
            for name, form in OTHERS.items():
                if form.fullmatch(line):
                    others[name] += 1
                    break
            else:
                if not UNANSWERED.fullmatch(line):
                    finding("a line is not whole:", line[:300])
                others["unanswered"] += 1
    for kind, (begin, _, end) in LINES.items():
        if not len(told[kind]) == others[begin] == others[end]:
            finding(f"of {kind}: {others[begin]} begin, {len(told[kind])} are told, {others[end]} end")

    lines, key_emptied = kept(folder, KEY, PROCESSES * threads)
    pressed = Counter()
    for line in lines:
        match = PRESSED.fullmatch(line)
        if not match:
            finding("a line of the keys is not whole:", line[:300])
        if pressed[int(match[2])] != int(match[1]):
            finding(f"of call {match[2]}, key {match[1]} follows {pressed[int(match[2])]} others")
        pressed[int(match[2])] += 1
        if int(match[1]) == 0:
            told["keys"].append(int(match[2]))
    if not set(pressed.values()) <= {KEYS}:
        finding("keys are missing:", Counter(pressed.values()))
    if others["unanswered"] % max(1, len(told["keys"])):
        finding(f"{others['unanswered']} lines of {len(told['keys'])} calls that get no answer")

    numbers = Counter(number for some in told.values() for number in some)
    if numbers != Counter(range(FIRST, FIRST + count)):
        finding("lost or twice:", [number for number in range(FIRST, FIRST + count) if numbers[number] != 1][:20])
    for some in told.values():
        last = Counter()
        for number in some:
            thread = (number - FIRST) // calls
            if number <= last[thread]:
                finding(f"call {number} after {last[thread]} of its thread")
            last[thread] = number
    return count, emptied + key_emptied


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    rng = random.Random(seed)
    end = time.monotonic() + seconds
    calls = emptied = 0
    while calls == 0 or time.monotonic() < end:
        with tempfile.TemporaryDirectory() as folder:
            made, anew = session(rng, Path(folder))
            calls += made
            emptied += anew
    print(f"a log was emptied {emptied} times")
    print(f"executions: {calls}")


if __name__ == "__main__":
    main()
