#!/usr/bin/python3
"""Kills every command that writes settings, log or device at every system call, and holds what is there after it
against what was there before and what was to come.

  kills.py SECONDS SEED [COMMAND...]   1 second: a few moments of each

After each kill: every settings file is wholly old or wholly new; `vx63 settings check --repair` brings lists and sets in
step and finds nothing else; every line of the log is whole; the same command, given again, ends as it should, and what
is there then is what was to come, without a leftover.
"""

import re
import sys
from dataclasses import dataclass
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from at_call import LOG, at_call, files, leftovers, put, run  # noqa: E402
from failing import VX63, campaign, check  # noqa: E402

LINE = re.compile(rb"\d+\.\d{6} : [^\n]* : libvx63\.cpp\(\d+\) [^\n]*")
LIMIT = 0x200000


@dataclass
class Case:
    words: str
    again: tuple = (0,)        # exit codes of the command that is given again when all was done, or nothing
    whole: bool = True         # after the repair all is old or all is new
    log: bytes = b""           # the log before
    device: bool = False       # it changes no file
    without: str = "\0"        # the files whose names have this are not there before


OLD_LOG = b"1767225600.000000 : vx63 : libvx63.cpp(1) before() : Start.\n"
OLD_LOG = OLD_LOG * (LIMIT // len(OLD_LOG) + 1)

CASES = {
    "set": Case("settings set sys_set/volume 0 VOLUME 1"),
    "row": Case("settings set user_set/B 3 CENTER_FREQ 500000"),
    "make": Case("settings set ch_set/fm 2 CH_NO x", without="channel_setting_file_fm"),
    "create": Case("sets create NEW --from ch_set/lte", again=(0, 73)),
    "copy": Case("sets copy B NEW", again=(0, 73)),
    "delete": Case("sets delete B --yes", again=(0, 66)),
    "clear": Case("sets clear --yes", whole=False),
    "reset": Case("settings reset --all --yes", whole=False),
    "reset-list": Case("settings reset user_set/list --yes"),
    "import": Case("settings import /mnt/backup --yes", whole=False),
    "delete-all": Case("settings reset --all --delete --yes", whole=False),
    "repair": Case("settings check --repair", without="user_set/user_setting_file_list"),
    "update": Case("update --program main --new-version 2.0 --size 1048576 --yes", device=True),
    "log": Case("sets delete B --yes", again=(0, 66), log=OLD_LOG),
}


def good_log():
    text = LOG.read_bytes() if LOG.exists() else b""
    check(text == b"" or text.endswith(b"\n"), "the log ends within a line:", text[-80:])
    for line in text.removeprefix(OLD_LOG).splitlines():
        check(LINE.fullmatch(line), "a line of the log is not whole:", line)


class Attempt:
    """A command killed at one moment after another."""

    sample = 2

    def __init__(self, name, begin):
        self.name, self.case = name, CASES[name]
        self.old = {path: text for path, text in begin.items() if self.case.without not in path}
        self.words = self.case.words.split()
        self.restore()
        whole = self.do_whole()
        check(whole.code == 0, name, "fails:", whole.err)
        self.new = files()
        check(self.case.device or self.new != self.old or name == "reset-list", name, "changes nothing")

    def do_whole(self):
        whole = at_call("kill 0", VX63, *self.words)
        self.moments = whole.told["count"]
        return whole

    def restore(self):
        put(self.old)
        LOG.write_bytes(self.case.log)

    def todo(self):
        return [(moment,) for moment in range(1, self.moments + 1)]

    def story(self, moment):
        return f"killed at {moment}"

    def try_one(self, moment):
        self.restore()
        told = at_call(f"kill {moment}", VX63, *self.words).told
        check(told["left"] == [], "left over:", told["left"])
        good_log()
        self.judge(files())

    def judge(self, left):
        """Holds the files that are left there, and what comes of them, against what is promised."""
        for path, text in left.items():
            check(path in leftovers(left) or text in (self.old.get(path), self.new.get(path)) or
                  (not self.case.whole and path.endswith("_list.csv")), path, "is neither old nor new:", text[:200])
        repaired = run(VX63, "settings", "check", "--repair")
        check(repaired.code == 0, "not repaired:", repaired.out, repaired.err)
        tree = {path: text for path, text in files().items() if path not in leftovers(left)}
        if self.case.whole:
            check(tree in (self.old, self.new), "neither old nor new after the repair:",
                  [path for path in tree if tree[path] != self.old.get(path)], repaired.err)
        again = run(VX63, *self.words)
        check(again.code in self.case.again, "given again:", again.code, again.err)
        check(self.case.device or again.code == 0 or tree == self.new, "refused, but not done:", again.err)
        good_log()
        if not self.case.device:
            now = files()
            check(now == self.new, "in the end different:",
                  sorted(path for path in now.keys() | self.new.keys() if now.get(path) != self.new.get(path)))


if __name__ == "__main__":
    campaign({Attempt: CASES})
