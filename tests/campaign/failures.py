#!/usr/bin/python3
"""Lets every system call fail in every way in which it can, in the library and the tool, and holds what they say and
leave against what is promised.

  failures.py SECONDS SEED [CASE...]   1 second: a call of each case

No crash and no hang; the exit status or the result is a documented one; who fails says what failed, why and what to
try, printable; who does not fail has done all of it; settings files are wholly old or wholly new; records are as they
were before a call that fails, and nothing behind them is written; nothing stays in /tmp or in the queues; the same,
given again, works.
"""

import json
import os
import re
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from at_call import PLACE, at_call, files  # noqa: E402
from failing import OUT, VX63, Case, campaign, check, is_printable  # noqa: E402

CALLER = PLACE / "bin" / "matrix_caller"
TOLD = re.compile(r"vx63: .+: .+: .+")  # what failed: why: what to try
EXIT_CODES = {*range(16), 64, 65, 66, 70, 73, 74, 75, 77}


TOOL = {
    "info": "info", "status": "status --json", "measure": "measure single --freq 557143 --json",
    "constellation": f"measure constellation --freq 557143 --plot {OUT}/c.svg",
    "log": "log --lines 3", "doctor": "doctor", "channels": "channels uhf", "list": "sets list",
    "check": "settings check", "show": "settings show sys_set/volume --csv", "export": f"settings export {OUT}",
    "set": "settings set sys_set/volume 0 VOLUME 1", "create": "sets create NEW --from ch_set/lte",
    "copy": "sets copy B NEW", "delete": "sets delete B --yes", "clear": "sets clear --yes",
    "reset-list": "settings reset user_set/list --yes", "import": "settings import /mnt/backup --yes",
    "reset": "settings reset --all --yes",
    "update": "update --program main --new-version 2.0 --size 1048576 --yes",
}
STEADY = {"channels", "list", "check", "show", "export"}  # print the same every time
TOGETHER = {"import", "clear", "reset"}                         # change several files


class Tool(Case):
    def __init__(self, name, begin):
        self.words = TOOL[name].split()
        super().__init__(name, begin)

    def do(self, mode):
        return at_call(mode, VX63, *self.words)

    def again(self):
        super().again()
        if self.name == "doctor":  # it tells of an answer that came when the one before it had gone, and has it then
            self.do("fail 0 EIO")

    def may_be_between(self, path):
        return self.name in TOGETHER and path.endswith("_list.csv")

    def right(self, ended, tree):
        check(ended.code in EXIT_CODES, "ends with", ended.code, ended.err)
        check(is_printable(ended.err + ended.out), "prints", repr(ended.err + ended.out))
        check("please report" not in ended.err, "says", ended.err)
        if ended.code != 0:
            check(tree is not None, "does not work:", ended.code, ended.err)
            last = ended.err.splitlines()[-1] if ended.err else ""
            ok = self.name == "check" and ended.code == 65 and "  broken: " in ended.out
            ok = ok or TOLD.fullmatch(last) or (last.startswith('{"error":') and json.loads(last)["error"]["hint"])
            check(ok, "ends with", ended.code, "and says", repr(ended.err))
        elif tree is not None:
            check(tree == self.new or (self.name in TOGETHER and not self.differ(tree)), "is done, but different:",
                  self.differ(tree))
            made = files(OUT)
            check(self.name == "constellation" or made == self.made, "made something else:",
                  sorted(made.keys() ^ self.made.keys()) or "contents")
            check(self.name not in STEADY or ended.out == self.whole.out or "  broken: " in ended.out, "prints something else:", ended.out[:300])
        left = [name for name in os.listdir("/tmp") if name != "vx63-0" and not name.startswith("vx63-" + str(os.getuid()))]
        check(left == [], "leaves in /tmp:", left)
        check(set(os.listdir("/dev/mqueue")) <= QUEUES, "leaves queues:", os.listdir("/dev/mqueue"))

    def differ(self, tree):
        return sorted(path for path in tree.keys() | self.new.keys() if tree.get(path) != self.new.get(path))


QUEUES = {f"vx63.{number}" for number in (0, 6, 8, 10, 12, 17)}

# Operations of the library, of settings files with the file. Reading a file fills the record as far as it comes.
LIBRARY = {
    "get-status": "vx63_getDeviceStatus", "get-info": "vx63_getProductInfo", "start": "vx63_startSingleMeas",
    "input": "vx63_setMeasInput", "prg-update": "vx63_prgUpdate", "read": "vx63_readSetFile 1",
    "write": "vx63_writeSetFile 1", "write-set": "vx63_writeSetFile 14", "read-row": "vx63_readSetFileIdx 1",
    "write-row": "vx63_writeSetFileIdx 1", "delete-set": "vx63_deleteSetFileUser", "bulk": "vx63_deleteSetFileUserBulk 14",
    "all": "vx63_deleteAllSetFile", "notice": "vx63_ntfUpdateFile",
}
FILLED = {"read", "read-row"}


class Library(Case):
    def __init__(self, name, begin):
        self.operation, _, file = LIBRARY[name].partition(" ")
        self.orders = f"init 17\nfile {file or 0}\ncall {self.operation}\n"
        if name == "delete-set":
            begin = begin | {"user_set/AUTUMN.csv": begin["user_set/A.csv"]}
        super().__init__(name, begin)

    def do(self, mode):
        Path("/mnt/orders").write_text(self.orders)
        return at_call(mode, "sh", "-c", f"exec {CALLER} < /mnt/orders", marked=True)

    def may_be_between(self, path):
        return path.endswith("AUTUMN.csv") or path.endswith("_list.csv")

    def right(self, ended, tree):
        lines = [json.loads(line) for line in ended.out.splitlines()]
        check(ended.code == 0 and len(lines) == 3, "the caller ends with", ended.code, ended.out, ended.err)
        called = lines[2]
        check(called["guard"], "writes behind its record")
        check(-15 <= called["result"] or called["result"] > 0, "result", called["result"])
        if called["result"] < 0:
            check(tree is not None, "does not work:", called["result"], called["log"][-3:])
            check(called["record"] is None or self.name in FILLED, "fails with", called["result"], "and fills its record")
        elif tree is not None:
            check(tree == self.new, "is done, but different")
        elif hasattr(self, "calls"):
            check(called["result"] == json.loads(self.whole.out.splitlines()[2])["result"], "another result")


if __name__ == "__main__":
    campaign({Tool: TOOL, Library: LIBRARY})
