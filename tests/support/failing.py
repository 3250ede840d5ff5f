"""A campaign that tries many things at many system calls; and a call that fails, in whatever is done: what every such
campaign does and holds."""

import os
import random
import re
import shutil
import subprocess
import sys
import time
from collections import Counter
from pathlib import Path

from at_call import ERRORS, LOG, PLACE, files, inside, leftovers, put, run

VX63 = PLACE / "bin" / "vx63"
OUT = Path("/mnt/out")
SHARE = "CAMPAIGN_SHARE"  # which of how many copies this one is, from 0 on


class Finding(Exception):
    pass


class NotHit(Exception):
    """Another call than the one that was meant: processes take turns as they like."""


def check(condition, *what):
    if not condition:
        raise Finding(" ".join(map(str, what)))


def is_printable(text):
    return all(character.isprintable() or character == "\n" for character in text) and "\ufffd" not in text


class Case:
    """Something that is done, its calls, and what is there before."""

    sample = 1  # tries in the short form

    def __init__(self, name, begin):
        self.name, self.old = name, begin
        self.restore()
        whole = self.do("calls")
        self.whole = whole
        self.right(whole, None)
        self.new, self.made = files(), files(OUT)
        self.calls = [tuple(call) for call in whole.told["calls"]]

    def restore(self):
        put(self.old)
        shutil.rmtree(OUT, ignore_errors=True)  # folders too: an export goes into an empty one
        OUT.mkdir()
        LOG.write_text("1767225600.000000 : vx63 : libvx63.cpp(1) before() : Start.\n")

    def todo(self):
        """The n-th of each call, since processes take turns as they like."""
        counts = Counter()
        tries = []
        for of, call in self.calls:
            counts[call] += 1
            if self.is_meant(of):
                tries += [(call, counts[call], error) for error in ERRORS[call].split()]
        return tries

    def is_meant(self, _of):
        return True

    def try_one(self, call, number, error):
        self.restore()
        ended = self.do(f"--only {call} fail {number} {error}")
        told = self.hit = ended.told
        check(told["left"] != ["busy"], "hangs:", told, ended.err)
        if not self.is_meant(told["of"]) or told["failed"] != call:
            raise NotHit
        check(told["left"] == [], "hangs:", told, ended.err)
        if told["failed"] in ("mmap", "mprotect") and "AddressSanitizer" in ended.err:
            raise NotHit  # the sanitizer's own memory
        check(0 <= ended.code < 128 and ended.code != 99, "ends with", ended.code, ended.err)
        check("ERROR: AddressSanitizer" not in ended.err and "runtime error:" not in ended.err, ended.err)
        tree = files()
        for path, text in tree.items():
            known = path in leftovers(tree) or text in (self.old.get(path), self.new.get(path))
            check(known or self.may_be_between(path), path, "is neither old nor new:", text[:100], ended.code, ended.err)
        self.right(ended, tree)
        left = {path: text for path, text in tree.items() if path in leftovers(tree)}
        self.again()
        put(self.old | left)
        self.right(self.do("fail 0 EIO"), None)
        check(leftovers(files()) == [], "leaves, also after the next write,", leftovers(files()))

    def story(self, call, number, error):
        return f"{call} {number}, of {self.hit['of']} {self.hit.get('path')!r}, fails with {error}"

    def again(self):
        self.restore()

    def may_be_between(self, _path):
        return False


def prepare():
    """Sets in two folders, and a backup with others."""
    for words in ("sets create A --from ch_set/lte", "settings export /mnt/backup", "sets create B --from ch_set/pilot",
                  "sets create C --from ch_set/lte", "sets copy user_set/A A --logger", "settings set sys_set/volume 0 VOLUME 3"):
        ended = run(VX63, *words.split())
        assert ended.code == 0, ended
    return files()


def hit(case, one, attempts=3):
    try:
        case.try_one(*one)
    except NotHit:
        if attempts == 1:
            raise
        hit(case, one, attempts - 1)


def on_all_processors():
    """The campaign once for each processor, each with its share; ends with the worst of their exit statuses."""
    count = os.cpu_count()
    copies = [subprocess.Popen([sys.executable, *sys.argv], env={**os.environ, SHARE: f"{share}/{count}"},
                               stdout=subprocess.PIPE, text=True) for share in range(count)]
    told = "".join(copy.communicate()[0] for copy in copies)
    print(told, f"executions: {sum(map(int, re.findall('^executions: (.*)', told, re.MULTILINE)))}", sep="")
    sys.exit(max(copy.returncode for copy in copies))


def campaign(kinds, meter=True, short=None):
    """The cases of each kind, or those that the command names, by SECONDS and SEED of the command; in the short form
    those of `short`. They take turns, so that each gets its share of a time that is short. The long form has a machine
    for each processor."""
    seconds, seed, *names = float(sys.argv[1]), int(sys.argv[2]), *sys.argv[3:]
    names = names or (short if seconds <= 1 else None) or [name for all_ in kinds.values() for name in all_]
    if seconds > 1 and SHARE not in os.environ:
        on_all_processors()
    share, shares = map(int, os.environ.get(SHARE, "0/1").split("/"))
    inside(meter)
    OUT.mkdir()
    begin = prepare() if meter else {}
    draw = random.Random(seed)
    todo = []
    for case in [kind(name, begin) for kind, all_ in kinds.items() for name in all_ if name in names]:
        tries = case.todo()[share::shares]
        draw.shuffle(tries)
        print(f"{case.name}: {len(tries)} tries", flush=True)
        todo.append([(case, one) for one in (tries[:case.sample] if seconds <= 1 else tries)])
    end = time.monotonic() + seconds
    turns = [one for turn in range(max(map(len, todo))) for tries in todo for one in tries[turn:turn + 1]]
    executions = findings = missed = 0
    for case, one in turns:
        if seconds > 1 and time.monotonic() > end:
            break
        try:
            hit(case, one)
            executions += 1
        except NotHit:
            missed += 1
        except Finding as finding:
            executions += 1
            findings += 1
            print(f"{case.name}: {case.story(*one)}: {str(finding)!r}", file=sys.stderr, flush=True)
    print(f"findings: {findings} of {len(turns)} tries, {executions} made, {missed} not hit")
    print(f"executions: {executions}")
    sys.exit(findings > 0)
