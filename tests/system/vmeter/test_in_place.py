"""`vx63-vmeter run --in-place`: on the machine's own paths and queues. The machine is a room made of folders
below tmp_path, so that nobody else's machine is touched and everything that is left can be seen."""

import os
import signal

import pytest
from conftest import SERVICES, Process, descendants
from room import EMPTY, EXCHANGE, IN_PLACE, SETTINGS, VMETER, room  # noqa: F401

pytestmark = pytest.mark.usefixtures("namespaces")


def test_command_has_a_meter(room):
    status, text = room.do(f"{IN_PLACE} -- sh -c 'echo \"send 12 110c170004000000\"00000000 | {EXCHANGE}; "
                           f"echo \"receive 17 60000\" | {EXCHANGE}; ls /usr/local/bin; exit 7'")
    assert status == 7
    assert text == '{"result": 0}\n{"result": 0, "message": "0c1117800c00000' + "0" * 25 + '"}\n' + \
        "".join(f"{name}\n" for name in sorted(SETTINGS))
    assert room.left() == EMPTY


@pytest.mark.parametrize("script, status", [("exit 0", 0), ("kill -TERM $$", 143), ("no-such", 127)])
def test_exit_status(room, script, status):
    assert room.do(f"{IN_PLACE} -- sh -c '{script}'")[0] == status
    assert room.left() == EMPTY


def test_what_the_command_left_running_is_ended(room, native):  # the emulator adopts no orphans
    _, pid = room.do(f"{IN_PLACE} -- sh -c 'setsid sleep 100000 > /dev/null 2>&1 & echo $!'")
    assert room.do(f"kill -0 {pid}")[0] != 0


def test_logs_of_before_are_appended_to_and_stay(room):
    (room.log / "libvx63.cpp.txt").write_text("before\n")
    (room.log / "syslog").write_text("other\n")
    room.do(f"{IN_PLACE} -- sh -c 'echo new >> /var/log/libvx63.cpp.txt; echo new > /var/log/libvx63_key.txt'")
    assert (room.log / "libvx63.cpp.txt").read_text() == "before\nnew\n"
    assert room.left()["log"] == ["libvx63.cpp.txt", "syslog"]


def test_queues_of_before_stay(room):
    room.do(f"echo 'send 3 {'00' * 4}' | {EXCHANGE}")
    room.do(f"{IN_PLACE} -- sh -c \"echo 'send 4 {'00' * 4}' | {EXCHANGE}\"")
    assert room.left() == {**EMPTY, "queues": ["vx63.3"]}


def test_stale_queues_of_the_services_are_removed(room):
    room.do(f"echo 'send 12 110c170004000000{'00' * 4}' | {EXCHANGE}")
    status, text = room.do(f"{IN_PLACE} -- sh -c \"echo 'receive 17 0' | {EXCHANGE}\"")
    assert (status, text) == (0, '{"result": -4}\n')
    assert room.left() == {**EMPTY, "queues": ["vx63.17"]}  # of who has asked, before


@pytest.mark.parametrize("script, status", [("exit 0", 125), ("exit 7", 7)])
def test_what_cannot_be_taken_away_is_told(room, script, status):
    (room.log / "libvx63.cpp.txt").write_text("before\n")
    ended, text = room.do(f"{IN_PLACE} -- sh -c 'mkdir -p /var/log/libvx63_held.txt/held; {script}'")
    left = room.left()
    notes = f"/tmp/{left['tmp'][0]}"
    assert (ended, text) == (status, f"vx63-vmeter: /var/log/libvx63_held.txt: Directory not empty: it stays with {notes} "
                             "until that is mended and 'vx63-vmeter run --in-place -- true' takes it away\n")
    assert left == {**EMPTY, "log": ["libvx63.cpp.txt", "libvx63_held.txt"], "tmp": left["tmp"]}
    (room.log / "libvx63_held.txt" / "held").rmdir()
    assert room.do(f"{IN_PLACE} -- true") == (0, "")
    assert room.left() == {**EMPTY, "log": ["libvx63.cpp.txt"]}


def test_state_is_kept(room):
    for number in (1, 2):
        status, text = room.do(f"{IN_PLACE} --state state -- sh -c 'echo {number} >> /var/log/libvx63.cpp.txt; "
                               f"echo {number} >> /usr/local/bin/ch_set/file'")
        assert (status, text) == (0, "")
        assert room.left() == EMPTY
    assert (room.work / "state/log/libvx63.cpp.txt").read_text() == "1\n2\n"
    assert (room.work / "state/ch_set/file").read_text() == "1\n2\n"


def test_settings_of_others_are_not_touched(room):
    (room.bin / "ch_set").mkdir()
    (room.bin / "ch_set" / "file").write_text("precious")
    (room.bin / "user_set").symlink_to("/tmp/elsewhere/user_set")
    before = room.left()
    status, text = room.do(f"{IN_PLACE} -- echo started")
    assert status == 125
    assert text.startswith("vx63-vmeter: /usr/local/bin/") and \
        text.endswith("_set: it exists and no vx63-vmeter has made it: move it away, or run without --in-place\n")
    assert room.left() == before
    assert (room.bin / "ch_set" / "file").read_text() == "precious"


def test_one_meter_at_a_time(room):
    pid = room.start()
    status, text = room.do(f"{IN_PLACE} -- echo started")
    assert (status, text) == (125, "vx63-vmeter: --in-place: another meter is running in place: wait for its end\n")
    assert room.left()["bin"] == sorted(SETTINGS)
    run = Process(pid)
    os.kill(pid, signal.SIGTERM)
    run.wait()
    assert room.do(f"{IN_PLACE} -- echo started") == (0, "started\n")


def test_services_of_a_serve_are_not_disturbed(room):
    status, text = room.do(f"{VMETER} serve -- {IN_PLACE} -- echo started")
    assert status == 125
    assert text.startswith("vx63-vmeter: message queues: another meter serves them: ")


def parts(run):
    found = {"run": run}
    generation = descendants(run)
    vmeters = [pid for pid, name in generation.items() if name == "vx63-vmeter"]
    found["guardian"], found["supervisor"] = vmeters
    found["command"] = next(pid for pid, name in generation.items() if name in ("sh", "sleep"))
    found["service"] = next(pid for pid, name in generation.items() if name == "vx63-meas")
    assert SERVICES <= set(generation.values())
    return found


@pytest.mark.parametrize("part", ["run", "guardian", "supervisor", "command"])
@pytest.mark.parametrize("options", ["", "--state state"])
def test_nothing_is_left_when_a_part_is_killed(room, part, options):
    run = room.start(options)
    everything = parts(run)
    processes = [Process(pid) for pid in (run, *descendants(run))]
    os.kill(everything[part], signal.SIGKILL)
    for process in processes:
        process.wait()
    assert room.left() == EMPTY


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGHUP])
def test_signals_to_run_end_it(room, number):
    run = room.start()
    processes = [Process(pid) for pid in (run, *descendants(run))]
    os.kill(run, number)
    for process in processes:
        process.wait()
    assert room.left() == EMPTY


def test_the_next_meter_cleans_up_after_one_that_was_killed_whole(room):
    (room.log / "libvx63.cpp.txt").write_text("before\n")
    run = room.start()
    everything = parts(run)
    processes = [Process(pid) for pid in (run, *descendants(run))]
    for part in ("run", "guardian"):  # stopped first, so that neither sees the other die
        os.kill(everything[part], signal.SIGSTOP)
    (room.log / "libvx63_key.txt").write_text("from the killed meter\n")
    for part in ("run", "guardian"):
        os.kill(everything[part], signal.SIGKILL)
    for process in processes:
        process.wait()
    left = room.left()
    assert left["bin"] == sorted(SETTINGS) and len(left["tmp"]) == 1 and "vx63.12" in left["queues"]
    assert room.do(f"{IN_PLACE} -- echo started") == (0, "started\n")
    assert room.left() == {**EMPTY, "log": ["libvx63.cpp.txt"]}


def test_leftover_links_alone_are_recognised(room):
    (room.bin / "ch_set").symlink_to("/tmp/vx63-vmeter-AbCdEf/ch_set")
    (room.tmp / "vx63-vmeter-notes").mkdir()  # not a name that we give
    assert room.do(f"{IN_PLACE} -- echo started") == (0, "started\n")
    assert room.left() == {**EMPTY, "tmp": ["vx63-vmeter-notes"]}


def test_paths_that_may_not_be_written(room):
    status, text = room.do("exec bwrap --dev-bind / / --ro-bind /usr/local/bin /usr/local/bin -- "
                           f"{IN_PLACE} -- echo started")
    assert status == 125
    assert text == "vx63-vmeter: /usr/local/bin: Read-only file system: run as root, or without --in-place\n"
    assert room.left() == EMPTY
