#!/usr/bin/python3
"""A client that forks, ends threads and takes signals that log in the middle of everything (forks_client.cpp).

forks.py SECONDS SEED. Held against: each call of a thread or child with an id of its own succeeds with its own answer; of
two processes with one id each call succeeds or is told as failed, with the record as it was; descriptors that another
program inherits; the lines of the log, which are all whole; and that all ends.
"""

import subprocess
import sys
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[1] / folder) for folder in ("support", "system")]
from at_call import LOG, PLACE, inside  # noqa: E402
from kills import LINE  # noqa: E402

PART = 5  # seconds of one client
HANG = 60


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    inside()
    count = findings = 0
    for part in range(max(1, int(seconds / PART))):
        command = [PLACE / "bin" / "forks_client", str(min(seconds, PART)), str(1000 * seed + part)]
        try:
            ended = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True,
                                   timeout=PART + HANG, check=False)
        except subprocess.TimeoutExpired:
            sys.exit(print(f"finding: {command} does not end", file=sys.stderr) or 1)
        print(ended.stdout, end="")
        findings += ended.returncode != 0
        if ended.returncode not in (0, 1):
            print(f"finding: the client ends with {ended.returncode}", file=sys.stderr)
            continue
        count += int(ended.stdout.split()[0])
        torn = [line for line in LOG.read_bytes().splitlines(keepends=True) if not LINE.fullmatch(line.removesuffix(b"\n"))]
        if torn:
            findings += 1
            print("finding: lines of the log are not whole:", torn[:3], file=sys.stderr)
    print(f"executions: {count}")
    sys.exit(findings > 0)


if __name__ == "__main__":
    main()
