"""`vx63-vmeter serve`: the services alone, for whoever brings their own isolation."""

import os
import signal
import subprocess

import pytest
from conftest import AS_NOBODY, EXCHANGE, HANG, SERVICES, VMETER, Process, descendants, run

pytestmark = pytest.mark.usefixtures("namespaces")

ROOM = ["bwrap", "--dev-bind", "/", "/", "--unshare-ipc", "--die-with-parent", "--"]


def test_ready_on_stderr_and_ends_with_sigterm():
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        with subprocess.Popen([*ROOM, VMETER, "serve"], stderr=subprocess.PIPE, text=True) as served:
            assert served.stderr.readline() == "ready\n"
            below = descendants(served.pid)
            assert SERVICES <= set(below.values())
            processes = [Process(pid) for pid in below]
            os.kill(next(pid for pid, name in below.items() if name == "vx63-vmeter"), number)
            assert served.wait(HANG) == 0
            assert all(process.ended() for process in processes)
            assert served.stderr.read() == ""


def test_ready_on_a_descriptor():
    reading, writing = os.pipe()
    with subprocess.Popen([*ROOM, VMETER, "serve", "--ready-fd", str(writing)], stderr=subprocess.PIPE,
                          pass_fds=[writing]) as served:
        os.close(writing)
        assert len(os.read(reading, 10)) == 1
        assert SERVICES <= set(descendants(served.pid).values())
        os.kill(next(pid for pid, name in descendants(served.pid).items() if name == "vx63-vmeter"), signal.SIGTERM)
        assert served.wait(HANG) == 0
        assert served.stderr.read() == b""
    assert os.read(reading, 10) == b""
    os.close(reading)


def test_command_runs_when_all_services_are_there():
    ended = run(*ROOM, VMETER, "serve", "--", "sh", "-c",
                f"echo 'receive 17 0' | {EXCHANGE}; kill -USR1 $$")
    assert ended.returncode == 128 + signal.SIGUSR1
    assert ended.stdout == '{"result": -4}\n'
    assert ended.stderr == ""


def test_sigterm_goes_to_the_command():
    ended = run(*ROOM, VMETER, "serve", "--", "sh", "-c", "trap 'exit 3' TERM; kill -TERM $PPID; while :; do read x; done",
                stdin=subprocess.PIPE)
    assert ended.returncode == 3


def test_killed_supervisor_takes_everything_along():
    with subprocess.Popen([*ROOM, VMETER, "serve", "--", "sh", "-c", "echo up; exec sleep 1000"],
                          stdout=subprocess.PIPE, text=True) as served:
        served.stdout.readline()
        below = descendants(served.pid)
        processes = [Process(pid) for pid in below]
        os.kill(next(pid for pid, name in below.items() if name == "vx63-vmeter"), signal.SIGKILL)
        for process in processes:
            process.wait()


def test_one_meter_on_the_queues(tmp_path):
    told = tmp_path / "told"
    told.write_text("by another meter\n")
    ended = run(*ROOM, VMETER, "serve", "--", VMETER, "serve", "--trace", told, "--", "echo", "started")
    assert (ended.returncode, ended.stdout) == (125, "")
    assert told.read_text() == "by another meter\n"
    assert ended.stderr == ("vx63-vmeter: message queues: another meter serves them: wait for its end, or use "
                            "'vx63-vmeter run', which has queues of its own\n")


def test_queues_beyond_the_limit(public_bin):
    nobody = AS_NOBODY if os.getuid() == 0 else []
    ended = run("prlimit", "--msgqueue=0:0", *nobody, *ROOM, public_bin / "vx63-vmeter", "serve", "--", "echo", "started")
    assert (ended.returncode, ended.stdout) == (125, "")
    assert "vx63-vmeter: message queue of service " in ended.stderr
    assert "lmsg_err=-3: end other meters, or raise RLIMIT_MSGQUEUE" in ended.stderr
