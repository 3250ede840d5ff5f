"""`vx63-vmeter run`: a command with a meter of its own, and nothing left of it."""

import json
import os
import pty
import shutil
import signal
import subprocess
import termios
from fcntl import ioctl

import pytest
from conftest import (BUILD, DEV, EXCHANGE, HANG, MEAS, SERVICES, SYS, VMETER, Client, Process, descendants, run,
                      vmeter)

pytestmark = pytest.mark.usefixtures("namespaces")

SETTINGS = ["sys_set", "meas_set", "user_set", "user_set_usb1", "user_set_usb2", "logger_set",
            "logger_set_usb1", "logger_set_usb2", "ch_set", "pmeas_set"]
GET_STATUS = 0x17


# ---- the command ----


@pytest.mark.parametrize("script, status", [("exit 0", 0), ("exit 7", 7), ("exit 255", 255),
                                            ("kill -TERM $$", 143), ("kill -KILL $$", 137)])
def test_exit_status_is_the_commands(script, status):
    assert vmeter("run", "--", "sh", "-c", script).returncode == status


def test_command_not_found():
    ended = vmeter("run", "--", "no-such-program", env={**os.environ, "PATH": "/usr/bin:/bin"})
    assert ended.returncode == 127
    assert ended.stderr == ("vx63-vmeter: no-such-program: No such file or directory: "
                            "give the path of a program, or a name on PATH\n")


def test_command_whose_name_a_terminal_obeys():
    ended = vmeter("run", "--", "./\x1b]0;x\n")
    assert ended.returncode == 127
    assert ended.stderr == ("vx63-vmeter: ./\\x1B]0;x\\x0A: No such file or directory: "
                            "give the path of a program, or a name on PATH\n")


def test_command_not_executable(tmp_path):
    (tmp_path / "text").write_text("no program")
    ended = vmeter("run", "--", tmp_path / "text")
    assert ended.returncode == 126
    assert ended.stderr == f"vx63-vmeter: {tmp_path}/text: Permission denied: give a program that can be run\n"


def test_command_keeps_its_surroundings(tmp_path):
    ended = subprocess.run(
        [str(VMETER), "run", "--", "sh", "-c", 'pwd; echo "$MARK"; cat; echo error >&2; printf "<%s>" "$@"', "sh",
         "--", "--scene", "a b", ""], cwd=tmp_path, env={**os.environ, "MARK": "kept"}, input="in\n",
        capture_output=True, text=True, timeout=HANG)
    assert ended.stdout == f"{tmp_path}\nkept\nin\n<--><--scene><a b><>"
    assert ended.stderr == "error\n"


def test_command_inherits_no_descriptor_of_ours():
    ended = vmeter("run", "--trace", "/dev/null", "--", "sh", "-c", "ls /proc/$$/fd")
    assert ended.stdout.split() == ["0", "1", "2"]


def test_ignored_signals_stay_ignored():
    """As under nohup."""
    ended = run("sh", "-c", f"trap '' HUP INT; exec {VMETER} run -- sh -c 'kill -INT $$; kill -HUP $$; echo lives'")
    assert (ended.returncode, ended.stdout) == (0, "lives\n")


def test_what_the_command_left_running_is_ended(native):  # the emulator adopts no orphans
    with subprocess.Popen([VMETER, "run", "--", "sh", "-c", "setsid sleep 1000 & echo $!; read end"],
                          stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as started:
        started.stdout.readline()
        all_of_it = [Process(pid) for pid in descendants(started.pid)]
        assert len(all_of_it) >= 10  # guardian, 2 bubblewrap, supervisor, 5 services, sh, sleep
        started.stdin.write("\n")
        started.stdin.close()
        assert started.wait(HANG) == 0
        for process in all_of_it:
            assert process.ended(), "run ended before it"


# ---- the surroundings ----


def test_services_answer():
    with Client(VMETER, "run", "--") as client:
        for service in (SYS, DEV, 8, 10, MEAS):
            answer = client.call(service, 0x7FFF)
            assert (answer.source, answer.destination, answer.command) == (service, 17, 0xFFFF)
            assert (answer.option, answer.length, answer.body) == (1, 0, b"")
        answer = client.call(MEAS, GET_STATUS)
        assert (answer.command, answer.option, answer.length, answer.body[0]) == (0x8017, 0, 12, 0)
        assert client.close() == 0


def test_folders_are_private_and_empty():
    before = on_the_machine()
    script = "ls /var/log; cd /usr/local/bin && for f in " + " ".join(SETTINGS) + \
        "; do ls $f && echo x > $f/file && echo x > /var/log/$f || exit; done"
    ended = vmeter("run", "--empty-settings", "--", "sh", "-c", script)
    assert (ended.returncode, ended.stdout, ended.stderr) == (0, "", "")
    assert on_the_machine() == before


def outer(tmp_path, *command):
    """A machine whose /usr/local/bin is tmp_path/bin."""
    return run("bwrap", "--dev-bind", "/", "/", "--bind", tmp_path / "bin", "/usr/local/bin", "--", *command,
               env={**os.environ, "PATH": "/usr/local/bin:/usr/bin:/bin", "LD_LIBRARY_PATH": BUILD / "lib"})


def make_program(path, text):
    path.write_text(f"#!/bin/sh\n{text}\n")
    path.chmod(0o755)


def test_programs_of_the_machine_stay_visible(tmp_path):
    programs = tmp_path / "bin"
    (programs / "folder").mkdir(parents=True)
    (programs / "sys_set").mkdir()
    (programs / "sys_set" / "secret").touch()
    make_program(programs / "real", 'echo real $(dirname "$(realpath "$0")")')
    make_program(programs / "folder" / "deep", "echo deep")
    make_program(programs / "with space", "echo space")
    (programs / "relative").symlink_to("real")
    (programs / "into").symlink_to("folder/deep")
    (programs / "up").symlink_to("../../bin/true")
    (programs / "absolute").symlink_to("/usr/local/bin/real")
    (programs / "dangling").symlink_to("nowhere")
    (programs / "unreadable").touch(mode=0)
    script = 'real; relative; into; "with space"; up && echo up; absolute; readlink /usr/local/bin/dangling; ' \
             'ls /usr/local/bin/sys_set; echo x > /usr/local/bin/real'
    ended = outer(tmp_path, VMETER, "run", "--empty-settings", "--", "sh", "-c", script)
    assert ended.stdout == "real /usr/local/bin\n" * 2 + "deep\nspace\nup\nreal /usr/local/bin\nnowhere\n"
    assert "Read-only file system" in ended.stderr
    assert sorted(path.name for path in programs.iterdir()) == [
        "absolute", "dangling", "folder", "into", "real", "relative", "sys_set", "unreadable", "up", "with space"]


def test_own_program_below_usr_local_bin(tmp_path):
    (tmp_path / "bin").mkdir()
    shutil.copy(VMETER, tmp_path / "bin")
    make_program(tmp_path / "bin" / "tool", "echo found")
    ended = outer(tmp_path, "vx63-vmeter", "run", "--", "tool")
    assert (ended.returncode, ended.stdout, ended.stderr) == (0, "found\n", "")


def test_without_bubblewrap(tmp_path):
    ended = vmeter("run", "--", "true", env={**os.environ, "PATH": str(tmp_path)})
    assert ended.returncode == 125
    assert ended.stderr == ("vx63-vmeter: bwrap: not found on PATH: install it (apt-get install bubblewrap), "
                            "or use 'vx63-vmeter run --in-place'\n")
    ended = vmeter("check", env={**os.environ, "PATH": str(tmp_path)})
    assert (ended.returncode, ended.stdout) == (1, "")
    assert ended.stderr.startswith("vx63-vmeter: bwrap: not found on PATH: ")


def test_refused_namespaces(tmp_path):
    make_program(tmp_path / "bwrap", "echo 'bwrap: No permissions to create new namespace' >&2; exit 1")
    for what, status in (("check",), 1), (("run", "--", "true"), 125):
        ended = vmeter(*what, env={**os.environ, "PATH": f"{tmp_path}:/usr/bin:/bin"})
        assert ended.returncode == status
        assert ended.stderr == ("vx63-vmeter: namespaces: bwrap: No permissions to create new namespace: allow user "
                                "namespaces on this machine, or use 'vx63-vmeter run --in-place' in a container of "
                                "its own\n")


@pytest.mark.parametrize("end", ["echo 'No permissions' >&2; exit 1", "kill -SYS $$"])
def test_what_an_earlier_meter_told_outlives_a_refusal(tmp_path, end):
    """Also where a sandbox kills bubblewrap."""
    make_program(tmp_path / "bwrap", end)
    trace, state = tmp_path / "trace", tmp_path / "state"
    for path in trace, state:
        path.write_text("told\n")
    ended = vmeter("run", "--trace", trace, "--state-json", state, "--", "true",
                   env={**os.environ, "PATH": f"{tmp_path}:/usr/bin:/bin"})
    assert ended.returncode == 125
    assert ended.stderr.startswith("vx63-vmeter: namespaces: ")
    assert "allow user namespaces on this machine" in ended.stderr
    assert (trace.read_text(), state.read_text()) == ("told\n", "told\n")


def test_a_closed_standard_error_is_no_other_file(tmp_path):
    trace = tmp_path / "trace"
    ended = run("sh", "-c", 'exec 2>&-; exec "$@"', "sh", VMETER, "run", "--trace", trace, "--", "sh", "-c",
                "echo said >&2; echo runs")
    assert (ended.returncode, ended.stdout) == (0, "runs\n")
    assert "said" not in trace.read_text()


@pytest.mark.parametrize("refused", ["--proc", "--mqueue"])
def test_some_mounts_refused(tmp_path, refused):
    """Containers often refuse a new /proc or mqueue: the meter does without."""
    real = shutil.which("bwrap")
    make_program(tmp_path / "bwrap",
                 f'''all=$*
[ "$1" = --args ] && all=$(tr '\\0' ' ' < /dev/fd/$2; )
case " $all " in *" {refused} "*) echo refused >&2; exit 1;; esac
exec {real} "$@"''')
    # Without a /proc of its own, a build that looks for leaks looks itself up under another process's number.
    env = {**os.environ, "PATH": f"{tmp_path}:/usr/bin:/bin", "ASAN_OPTIONS": "detect_leaks=0"}
    ended = vmeter("run", "--", "sh", "-c", "echo runs", env=env)
    assert (ended.returncode, ended.stdout, ended.stderr) == (0, "runs\n", "")


def test_namespaces_are_made_once(tmp_path):
    make_program(tmp_path / "bwrap", f'echo made >> {tmp_path}/count; exec {shutil.which("bwrap")} "$@"')
    ended = vmeter("run", "--", "true", env={**os.environ, "PATH": f"{tmp_path}:/usr/bin:/bin"})
    assert (ended.returncode, ended.stderr) == (0, "")
    assert (tmp_path / "count").read_text() == "made\n"


# ---- state ----


def test_state_is_kept(tmp_path):
    state = tmp_path / "new" / "state"
    first = vmeter("run", "--state", state, "--", "sh", "-c",
                   "echo one > /var/log/libvx63.cpp.txt; echo two > /usr/local/bin/ch_set/file")
    assert (first.returncode, first.stderr) == (0, "")
    assert (state / "log" / "libvx63.cpp.txt").read_text() == "one\n"
    assert (state / "ch_set" / "file").read_text() == "two\n"
    second = vmeter("run", "--state", state, "--", "sh", "-c",
                    "cat /var/log/libvx63.cpp.txt /usr/local/bin/ch_set/file")
    assert second.stdout == "one\ntwo\n"
    assert sorted(path.name for path in state.iterdir()) == sorted(SETTINGS + ["log"])


def test_state_relative_to_the_working_folder(tmp_path):
    assert vmeter("run", "--state", "here", "--", "true", cwd=tmp_path).returncode == 0
    assert (tmp_path / "here" / "log").is_dir()


def test_state_is_for_one_meter_at_a_time(tmp_path):
    with Client(VMETER, "run", "--state", tmp_path, "--") as client:
        client.call(MEAS, GET_STATUS)
        second = vmeter("run", "--state", tmp_path, "--", "true")
        assert second.returncode == 125
        assert second.stderr == (f"vx63-vmeter: {tmp_path}: another meter is using it: "
                                 "wait for its end or give another folder with --state\n")
    assert vmeter("run", "--state", tmp_path, "--", "true").returncode == 0


def test_state_that_cannot_be_made(tmp_path):
    (tmp_path / "file").touch()
    for state, why in ((tmp_path / "file", "Not a directory"), (tmp_path / "file" / "below", "Not a directory")):
        ended = vmeter("run", "--state", state, "--", "true")
        assert ended.returncode == 125
        assert ended.stderr == (f"vx63-vmeter: {state}: {why}: "
                                "give a folder that you may write to with --state\n")


# ---- signals, and parts that are killed ----


class Terminal:
    """A run at a terminal of its own, as from a shell."""

    def __init__(self, *command):
        self.master, slave = pty.openpty()

        def take_terminal():
            os.setsid()
            ioctl(0, termios.TIOCSCTTY, 0)

        self.process = subprocess.Popen([str(word) for word in command], stdin=slave, stdout=slave, stderr=slave,
                                        preexec_fn=take_terminal)
        os.close(slave)
        self.shown = b""

    def read_until(self, text):
        """What was shown up to `text`; what follows it is kept for the next time."""
        while text not in self.shown:
            self.shown += os.read(self.master, 1000)
        end = self.shown.index(text) + len(text)
        seen, self.shown = self.shown[:end], self.shown[end:]
        return seen

    def type(self, keys):
        os.write(self.master, keys)

    def wait(self):
        status = self.process.wait(HANG)
        os.close(self.master)
        return status


def test_ctrl_c_ends_the_command():
    terminal = Terminal(VMETER, "run", "--", "sh", "-c", "echo started; exec sleep 1000")
    terminal.read_until(b"started")
    below = [Process(pid) for pid in descendants(terminal.process.pid)]
    terminal.type(b"\x03")
    assert terminal.wait() == 130
    for process in below:
        process.wait()


def test_ctrl_c_is_the_commands_business():
    """The services go on, and so does a command that wants to."""
    terminal = Terminal(VMETER, "run", "--", "sh", "-c",
                        "trap 'echo caught' INT; echo started; until [ \"$line\" = go ]; do read line; done; "
                        f"echo again; {EXCHANGE}; exit 5")
    terminal.read_until(b"started")
    service = Process(next(pid for pid, name in descendants(terminal.process.pid).items() if name == "vx63-meas"))
    terminal.type(b"\x03")
    terminal.type(b"go\n")
    terminal.read_until(b"caught")
    terminal.read_until(b"again")
    terminal.type(b"send 12 110c17000400000000000000\n")
    terminal.read_until(b'{"result": 0}')
    terminal.type(b"receive 17 60000\n")
    assert b"0c1117800c000000" in terminal.read_until(b"}")
    assert not service.ended()
    terminal.type(b"\x04")
    assert terminal.wait() == 5


def test_command_can_use_the_terminal():
    terminal = Terminal(VMETER, "run", "--", "sh", "-c", "stty -echo < /dev/tty && read line && echo got $line")
    terminal.type(b"text\n")
    terminal.read_until(b"got text")
    assert terminal.wait() == 0


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGHUP])
def test_signals_to_run_reach_the_command(number):
    name = number.name[3:]
    with subprocess.Popen([VMETER, "run", "--", "sh", "-c",
                           f"trap 'echo {name}; exit 9' {name}; echo started; while :; do read x; done"],
                          stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as started:
        started.stdout.readline()
        started.send_signal(number)
        started.stdin.write("\n")
        started.stdin.flush()
        assert started.stdout.readline() == f"{name}\n"
        assert started.wait(HANG) == 9


def test_sigterm_ends_a_plain_command():
    with subprocess.Popen([VMETER, "run", "--", "sh", "-c", "echo started; exec sleep 1000"],
                          stdout=subprocess.PIPE, text=True) as started:
        started.stdout.readline()
        started.terminate()
        assert started.wait(HANG) == 143


def test_command_that_ignores_sigterm_is_killed_after_a_grace():
    with subprocess.Popen([VMETER, "run", "--", "sh", "-c", "trap '' TERM; echo started; sleep 1000; sleep 1000"],
                          stdout=subprocess.PIPE, text=True) as started:
        started.stdout.readline()
        below = [Process(pid) for pid in descendants(started.pid)]
        started.terminate()
        assert started.wait(HANG) == 137
        for process in below:
            process.wait()


def parts(pid):
    """The processes of a run by what they are."""
    below = descendants(pid)
    names = list(below.values())
    found = {"run": pid}
    for process, name in below.items():
        if name == "bwrap":
            found["first process" if "bubblewrap" in found else "bubblewrap"] = process
        elif name == "vx63-vmeter":
            found["supervisor" if "guardian" in found else "guardian"] = process
        elif name == "vmeter_exchange":
            found["command"] = process
    assert SERVICES <= set(names), names
    return found


def on_the_machine():
    """Where a meter could leave something; others are at work there as well."""
    places = ("/tmp", "/var/log", "/usr/local/bin", "/dev/mqueue")
    return [os.path.join(place, name) for place in places if os.path.isdir(place)
            for name in sorted(os.listdir(place)) if name.startswith(("vx63-vmeter", "vx63.", "libvx63")) or name in SETTINGS]


@pytest.mark.parametrize("part, status", [("run", -signal.SIGKILL), ("guardian", 137), ("bubblewrap", 137),
                                          ("first process", None), ("supervisor", 137), ("command", 137)])
def test_nothing_is_left_when_a_part_is_killed(tmp_path, part, status):
    before = on_the_machine()
    client = Client(VMETER, "run", "--state", tmp_path, "--")
    client.call(MEAS, GET_STATUS)
    everything = [Process(pid) for pid in descendants(client.process.pid)]
    assert len(everything) >= 9
    os.kill(parts(client.process.pid)[part], signal.SIGKILL)
    ended = client.process.wait(HANG)
    if status is not None:
        assert ended == status
    else:
        assert ended != 0
    for process in everything:
        process.wait()
    client.close()
    assert on_the_machine() == before
    assert vmeter("run", "--state", tmp_path, "--", "true").returncode == 0  # the lock is free


def kill_service(client, service):
    victim = next(pid for pid, name in descendants(client.process.pid).items() if name == service)
    ended = Process(victim)
    os.kill(victim, signal.SIGKILL)
    ended.wait()


def test_killed_service_comes_back():
    with Client(VMETER, "run", "--") as client:
        assert client.call(MEAS, GET_STATUS).option == 0
        for _ in range(3):
            kill_service(client, "vx63-meas")
            assert client.call(MEAS, GET_STATUS).option == 0
        assert client.close() == 0


def test_simulated_time_outlives_a_killed_service(tmp_path):
    trace = tmp_path / "trace"
    with Client(VMETER, "run", "--trace", trace, "--") as client:
        client.call(MEAS, GET_STATUS)
        kill_service(client, "vx63-meas")
        client.call(MEAS, GET_STATUS)
    assert [json.loads(line)["sim_ms"] for line in trace.read_text().splitlines()] == [0, 100, 100, 200]


def test_stopped_service_does_not_keep_run_from_ending():
    client = Client(VMETER, "run", "--")
    client.call(MEAS, GET_STATUS)
    everything = [Process(pid) for pid in descendants(client.process.pid)]
    os.kill(next(pid for pid, name in descendants(client.process.pid).items() if name == "vx63-dev"),
            signal.SIGSTOP)
    assert client.close() == 0
    for process in everything:
        process.wait()
