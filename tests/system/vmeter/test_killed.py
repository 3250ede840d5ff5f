"""`vx63-vmeter` and each of its parts killed at any moment, or not to be had: nothing is left.

The moments are those at which a process of the meter enters or leaves the kernel, some thousands. A run takes a few
of them, drawn by a seed; VX63_KILL_EVERY=1 takes all, =N every N-th, which takes minutes.
"""

import json
import os
import random

import pytest
from room import EMPTY, VMETER, room  # noqa: F401

pytestmark = pytest.mark.usefixtures("namespaces", "native")

# What is looked for is left, not leaked; and nobody looks for leaks while someone follows.
KILLED_AT = "env ASAN_OPTIONS=detect_leaks=0 /media/bin/at_call"
SAMPLE = 15
COMMAND = {"first": "sleep 100000", "kill": "true"}  # a part that is no more than that comes back or does not matter


def killed_at(room, who, moment, options):
    status, text = room.do(f"{KILLED_AT} {who} {moment} {VMETER} run {options} -- {COMMAND[who]} 2> /dev/null")
    assert status == 0, text
    return json.loads(text)


def moments(count):
    every = int(os.environ.get("VX63_KILL_EVERY", 0))
    return range(1, count + 1, every) if every else sorted(random.Random(63).sample(range(1, count + 1), SAMPLE))


@pytest.mark.parametrize("options", ["--state state", "--in-place", "--in-place --state state"])
@pytest.mark.parametrize("who", ["first", "kill"])
def test_nothing_is_left(room, who, options):
    """Killed is run itself while all begins, or whichever part it is until all has ended."""
    in_place, state = "--in-place" in options, room.work / "state" / "log"
    before = EMPTY
    if in_place:
        (room.log / "libvx63_key.txt").write_text("before\n")
        before = {**EMPTY, "log": ["libvx63_key.txt"]}
    whole = killed_at(room, who, 0, options)
    assert whole["left"] == [] and room.left() == before
    if "--state" in options:
        (state / "libvx63.cpp.txt").write_text("kept\n" * 2000)
    for moment in moments(whole["count"]):
        told = killed_at(room, who, moment, options)
        assert told["left"] == [], (moment, told)
        assert room.left() == before, (moment, told)
        if in_place:
            assert (room.log / "libvx63_key.txt").read_text() == "before\n", (moment, told)
        if "--state" in options:
            assert (state / "libvx63.cpp.txt").read_text() == "kept\n" * 2000, (moment, told)
            assert os.listdir(state) == ["libvx63.cpp.txt"], (moment, told)
    assert room.do(f"{VMETER} run {options} -- echo free") == (0, "free\n")


def test_a_command_that_cannot_be_forked(room):
    """Behind the five services."""
    _, told = room.do(f"{KILLED_AT} --only clone -o told fail 6 EAGAIN {VMETER} serve -- true; cat told")
    said, told = told.splitlines()
    assert said == "vx63-vmeter: fork: Resource temporarily unavailable: end other programs"
    told = json.loads(told)
    assert (told["failed"], told["status"], told["left"]) == ("clone", 125, [])


@pytest.mark.parametrize("call, last", [("newfstatat", 45), ("unlinkat", 8), ("mq_unlink", 4)])
def test_a_call_that_fails_once_while_all_is_taken_away(room, call, last):
    """It is tried again; and who cannot tell whether a log was there before lets it be."""
    log = room.log / "libvx63_key.txt"
    log.write_text("before\n")
    known = f"{KILLED_AT} --only {call} -o told"
    commands = f"{VMETER} run --in-place -- sh -c 'echo new > /var/log/libvx63.cpp.txt'"
    _, told = room.do(f"{known} calls {commands}; cat told")
    count, failed = json.loads(told)["count"], 0
    for number in range(count - last + 1, count + 1):
        _, text = room.do(f"{known} fail {number} ENOMEM {commands}; cat told")
        *said, told = text.splitlines()
        told = json.loads(told)
        assert (said, told["status"]) == ([], 0), told
        failed += told["failed"] == call  # services that are ended make a call more or less
        assert room.left() == {**EMPTY, "log": [log.name]}, told
        assert log.read_text() == "before\n", told
    assert failed > last / 2
