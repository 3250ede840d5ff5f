#!/usr/bin/python3
"""Lets every system call of the virtual meter fail in every way in which it can, as it starts, serves and ends, and
holds what it says and leaves against what is promised.

  meter_failures.py SECONDS SEED [CASE...]   1 second: a call of each case

No crash and no hang; the exit status is a documented one; who fails says what failed and why, printable; nothing stays in
/tmp, in the queues, in the folders of settings and log, and no process; a log of before stays; the same, given again,
works.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from at_call import LOG, PLACE, at_call, put  # noqa: E402
from failing import OUT, VX63, Case, campaign, check, is_printable  # noqa: E402

VMETER = PLACE / "bin" / "vx63-vmeter"
EXIT_CODES = {*range(16), 64, 65, 66, 73, 74, 75, 77}


METER = {
    "run": "run -- true", "in-place": "run --in-place --state /mnt/state -- true",
    "trace": "run --in-place --trace /mnt/out/t --state-json /mnt/out/s -- true",
    "serve": f"serve -- {VX63} info", "in-place-vx63": f"run --in-place -- {VX63} info",
}

KEPT = {True: Path("/mnt/state/log/libvx63.cpp.txt"), False: LOG}  # with --state or without: a log of before
LINE = "a line of before\n"
# So the kernel says that a queue is another user's, who keeps it.
ANOTHERS = {("mq_open", "EACCES"), ("mq_unlink", "EACCES")}


class Meter(Case):
    def __init__(self, name, begin):
        self.words = METER[name].split()
        self.kept = KEPT["--state" in self.words]
        super().__init__(name, begin)

    def try_one(self, call, number, error):
        self.error = error
        super().try_one(call, number, error)

    def do(self, mode):
        return at_call(mode, VMETER, *self.words)

    def restore(self):
        for path in self.left():
            subprocess.run(["rm", "-rf", path], check=False)
        put({}, OUT)
        for path in KEPT.values():
            path.unlink(missing_ok=True)
        self.kept.parent.mkdir(parents=True, exist_ok=True)
        self.kept.write_text(LINE)

    def is_meant(self, of):
        return of.startswith("vx63-")

    def again(self):
        if self.is_anothers():
            self.restore()

    def is_anothers(self):
        return (self.hit["failed"], self.error) in ANOTHERS

    def right(self, ended, tree):
        documented = {0, 64, 125, 126, 127} | (EXIT_CODES if "vx63" in " ".join(self.words) else set())
        check(ended.code in documented, "ends with", ended.code, ended.err)
        check(is_printable(ended.err), "prints", repr(ended.err))
        if ended.code != 0:
            check(tree is not None, "does not work:", ended.code, ended.err)
            check(re.search(r"vx63[-\w]*: .+: .+", ended.err), "ends with", ended.code, "and says", repr(ended.err))
        check(self.kept.exists() and self.kept.read_text().startswith(LINE), "loses a log of before", ended.err)
        left = self.left()
        if tree is not None and self.is_anothers():
            left = []
        check(left == [], "leaves", left, ended.code, ended.err)

    def left(self):
        left = [f"/tmp/{name}" for name in os.listdir("/tmp") if name != f"vx63-{os.getuid()}"]
        left += [f"/usr/local/bin/{name}" for name in os.listdir("/usr/local/bin")]
        if self.name != "serve":  # which works on the machine's own log and queues
            left += [f"/var/log/{name}" for name in os.listdir("/var/log") if Path("/var/log", name) != self.kept]
            left += [f"/dev/mqueue/{name}" for name in os.listdir("/dev/mqueue")]
        return left


if __name__ == "__main__":
    campaign({Meter: METER}, meter=False)
