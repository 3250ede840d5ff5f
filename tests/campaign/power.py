#!/usr/bin/python3
"""Takes the power away at every moment of every command that writes, and holds what a disk may then have against what was
there before and what was to come.

  power.py SECONDS SEED [COMMAND...]   1 second: a few losses of each

What a command does to files is recorded once (at_call writes). Of what was not flushed at a moment a loss of power leaves
anything: bytes written, missing, ended at a page or zero; names made, removed and renamed in their order up to one of
them, or but for one of them. What was flushed (fsync of the file; of the folder for names; sync) stays. Held: all that
kills.py holds of what a kill leaves; and what a command has told as done is there after any loss. Of what is written
elsewhere (export, survey, live --record): files whole or not there, results flushed are kept, and the same again works.
"""

import json
import os
import random
import shutil
import sys
from dataclasses import dataclass
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
import kills  # noqa: E402
from at_call import LOG, SETTINGS, at_call, files, leftovers, put, run  # noqa: E402
from failing import OUT, VX63, campaign, check  # noqa: E402

SHORT = ("set", "create", "delete", "clear", "repair", "survey", "record")  # what is quickly recorded
SOME = 6  # of many names that a loss treats out of their order
PAGE = 4096
FOLDER = None  # in the place of a file's number
PLAN = """site = "House"
[[list]]
name = "tv"
system = "terrestrial"
frequencies = ["557143", "563143"]
[[point]]
name = "A"
[[point]]
name = "B"
"""


@dataclass
class Name:
    """That a name was given to a file or a folder, or taken from it, or both."""
    given: Path | None
    taken: Path | None
    number: int | None  # of the file

    @property
    def folder(self):
        return (self.given or self.taken).parent


@dataclass
class Data:
    number: int
    at: int
    bytes: bytes | None  # None: the file ends there

    def change(self, old, end=None):
        if self.bytes is None:
            return old[:self.at].ljust(self.at, b"\0")
        new = self.bytes[:end]
        return old[:self.at].ljust(self.at, b"\0") + new + old[self.at + len(new):]


def change_names(names, change):
    if change.taken:
        names.pop(change.taken, None)
    if change.given:
        names[change.given] = change.number


class Disk:
    """What is known to be on it, and what has been done since and is not."""

    def __init__(self, *roots):
        self.roots = roots
        self.safe, self.contents, self.pending = {}, {}, []
        self.numbers = {}  # by inode, which is used again when its file is gone
        for root in roots:
            for path in [root, *root.rglob("*")]:
                self.safe[path] = FOLDER if path.is_dir() else len(self.contents)
                if path.is_file():
                    self.numbers[path.stat().st_ino] = self.safe[path]
                    self.contents[self.safe[path]] = path.read_bytes()
        self.now = dict(self.safe)  # names as they are seen

    def ours(self, path):
        return any(path.is_relative_to(root) for root in self.roots)

    def take(self, event):
        """Whether it changes what a loss leaves."""
        what = event["what"]
        path, to = (Path(os.path.normpath(event[key])) for key in ("path", "to"))
        number = self.numbers.get(event["inode"])
        if what == "sync":
            self.flush(lambda _: True)
        elif not self.ours(path):
            return False
        elif what == "fsync":
            self.flush(lambda one: one.folder == path if isinstance(one, Name) else one.number == number)
        elif what == "open":
            if path not in self.now:
                self.numbers[event["inode"]] = number = len(self.contents)
                self.contents[number] = b""
                self.rename(path, None, number)
            elif event["cut"]:
                self.pending.append(Data(number, 0, None))
        elif what == "write":
            self.pending.append(Data(number, event["at"], event["bytes"].encode("latin-1")))
        elif what == "truncate":
            self.pending.append(Data(number, event["at"], None))
        elif what == "rename":
            assert path.parent == to.parent, event
            self.rename(to, path, self.now[path])
        elif what == "link":
            self.rename(to, None, self.now[path])
        elif what == "unlink":
            self.rename(None, path, None)
        elif what == "mkdir":
            self.rename(path, None, FOLDER)
        return True

    def rename(self, given, taken, number):
        self.pending.append(Name(given, taken, number))
        change_names(self.now, self.pending[-1])

    def flush(self, meant):
        for one in filter(meant, self.pending):
            self.do(one)
        self.pending = [one for one in self.pending if not meant(one)]

    def do(self, one):
        if isinstance(one, Name):
            change_names(self.safe, one)
        else:
            self.contents[one.number] = one.change(self.contents[one.number])

    def data_after(self, kind, draw):
        """Contents of each file."""
        contents = dict(self.contents)
        writes = [one for one in self.pending if isinstance(one, Data)]
        for number in {one.number for one in writes}:
            mine = [one for one in writes if one.number == number]
            how = draw.choice(["lost", "kept", "first", "page", "zero"]) if kind == "any" else kind
            for i, one in enumerate(mine):
                old, last = contents[number], i + 1 == len(mine)
                if how == "lost" or (how == "first" and i > 0):
                    continue
                if how == "page" and last and one.bytes:
                    end = (one.at + len(one.bytes) - 1) // PAGE * PAGE - one.at
                    contents[number] = one.change(old, max(end, 0)) if end > 0 else old
                elif how == "zero" and one.bytes:
                    contents[number] = Data(number, one.at, bytes(len(one.bytes))).change(old)
                else:
                    contents[number] = one.change(old)
        return contents

    def losses(self, draw):
        """The files that may be found, by their path."""
        changes = [one for one in self.pending if isinstance(one, Name)]
        orders = [changes[:end] for end in range(len(changes) + 1)]
        for i in draw.sample(range(len(changes)), min(len(changes), SOME)):
            orders += [changes[:i] + changes[i + 1:], changes[i:i + 1], [one for one in changes if draw.random() < 0.5]]
        kinds = ("lost", "kept", "first", "page", "zero", "any") if len(changes) < len(self.pending) else ("lost",)
        for order in orders:
            names = dict(self.safe)
            for change in order:
                change_names(names, change)
            for kind in kinds:
                contents = self.data_after(kind, draw)
                yield {path: contents[number] for path, number in names.items() if number is not FOLDER and
                       all(names.get(above, "") is FOLDER for above in path.parents if self.ours(above))}


def below(folder, tree):
    return {str(path.relative_to(folder)): text for path, text in tree.items() if path.is_relative_to(folder)}


class Attempt(kills.Attempt):
    """A command after every moment of which the power fails."""

    sample = 3
    program = (VX63,)
    roots = (SETTINGS,)

    def do_whole(self):
        disk = Disk(*self.roots)
        whole = at_call("writes", *self.program, *self.words)
        draw = random.Random(63)
        found = {}
        moments = 0
        for event in whole.told["writes"]:
            if disk.take(event):
                moments += 1
                for tree in disk.losses(draw):
                    found.setdefault(frozenset(tree.items()), (moments, f"{event['what']} {event['path']}", tree))
        self.losses = list(found.values())
        self.done = [frozenset(tree.items()) for tree in disk.losses(draw)]
        return whole

    def todo(self):
        return self.losses

    def story(self, moment, event, _tree):
        return f"the power fails behind {moment} ({event})"

    def try_one(self, _moment, _event, tree):
        self.restore()
        put(below(SETTINGS, tree))
        if frozenset(tree.items()) in self.done:
            self.is_done(tree)
        self.judge(files())

    def is_done(self, tree):
        there = below(SETTINGS, tree)
        differ = {path for path in there.keys() | self.new.keys() if there.get(path) != self.new.get(path)}
        check(not differ - set(leftovers(there)), "told as done, and lost:", sorted(differ)[:3])


class Elsewhere(Attempt):
    """A command that writes into a folder of the user's."""

    roots = (OUT,)
    again = (0,)
    words = before = ()

    def __init__(self, name, begin):
        self.name, self.old = name, begin
        self.restore()
        whole = self.do_whole()
        self.made = files(OUT)
        check(self.made, name, "makes nothing:", whole.err)

    def restore(self):
        put(self.old)
        shutil.rmtree(OUT, ignore_errors=True)
        OUT.mkdir()
        if self.before:
            run(VX63, *self.before)
        LOG.write_bytes(b"")

    def try_one(self, _moment, _event, tree):
        self.restore()
        shutil.rmtree(OUT)
        OUT.mkdir()
        there = below(OUT, tree)
        put(there, OUT)
        if frozenset(tree.items()) in self.done:
            self.is_done(there)
        for path, text in there.items():
            check(path in leftovers(there) or self.may_be(path, text), path, "is neither whole nor missing:", text[-200:])
        ended = run(*self.program, *self.words)
        check(ended.code in self.again, "given again:", ended.code, ended.err)
        if ended.code == 0:
            self.finished(there, files(OUT))

    def is_done(self, there):
        check(there == self.made, "told as done, and lost:", sorted({*self.made} - {*there})[:3] or "contents")

    def may_be(self, path, text):
        return text == self.made.get(path)

    def finished(self, before, now):
        check(now == self.made, "in the end different:", sorted(now.keys() ^ self.made.keys()) or "contents")


class Export(Elsewhere):
    words = ("settings", "export", str(OUT / "backup"))
    again = (0, 73)  # not into a folder that has something


class Survey(Elsewhere):
    program = ("/usr/bin/env", "PATH=/nowhere", VX63)  # without what prints report.pdf, which takes seconds
    results = "house/results.jsonl"
    words = ("survey", "/mnt/plan.toml", "--out", str(OUT / "house"), "--yes")
    again = (0, 1, 14)

    def __init__(self, name, begin):
        Path("/mnt/plan.toml").write_text(PLAN)
        super().__init__(name, begin)

    def may_be(self, path, text):
        """Results end anywhere, maybe with zeros in place of the last."""
        whole = self.made.get(path, b"")
        return whole.startswith(text.rstrip(b"\0")) if path == self.results else text == whole

    def is_done(self, there):
        """Reports are made of the results again."""
        check(there.get(self.results) == self.made[self.results], "told as done, and lost:", there.keys())

    def finished(self, before, now):
        results = now[self.results]
        lines = [json.loads(line) for line in results.splitlines()]
        check(len(lines) == len(self.made[self.results].splitlines()), "not all is measured, or twice:", lines)
        kept = before.get(self.results, b"").rstrip(b"\0")
        check(results.startswith(kept[:kept.rfind(b"\n") + 1]), "results are not kept:", results)
        check(leftovers(now) == [], "left over:", leftovers(now))


class Record(Elsewhere):
    """Lines that the power took may leave one that is not whole, and no more."""

    def __init__(self, name, begin):
        self.file = OUT / ("lines.csv" if name == "record-csv" else "lines.jsonl")
        self.words = ("live", "--freq", "557143", "--count", "3", "--record", str(self.file))
        self.before = self.words if name == "record" else ()  # another recording is there already
        self.again = (0, 74) if name == "record-csv" else (0,)  # refused where its first line is lost
        super().__init__(name, begin)

    def may_be(self, path, text):
        return text == b"" or self.made[path].startswith(text.partition(b"\0")[0])

    def is_done(self, there):
        pass  # nobody flushes a recording

    def finished(self, before, now):
        was, now = (tree.get(self.file.name, b"").split(b"\n") for tree in (before, now))
        check(now[:len(was) - 1] == was[:-1] and now[-1] == b"" and len(now) >= 4, "lines are gone:", now)


if __name__ == "__main__":
    campaign({Attempt: [name for name in kills.CASES if name not in ("update", "log")],  # they write no settings
              Export: ["export"], Survey: ["survey"], Record: ["record", "record-csv"]}, short=SHORT)
