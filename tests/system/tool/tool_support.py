"""vx63 as a person runs it: over a virtual meter of each test's own, from a shell, on a terminal."""

import fcntl
import json
import os
import pty
import signal
import struct
import subprocess
import termios
import time

import pytest

from conftest import BUILD, HANG, SOURCE, VMETER, isolation  # noqa: F401 (fixture)

VX63 = BUILD / "bin" / "vx63"
DEFAULT_SCENE = (SOURCE / "vmeter" / "scene" / "default.toml").read_text()
CLOCK = "clock_ms = 100\n"
assert CLOCK in DEFAULT_SCENE


def environment(**changes):
    env = {key: value for key, value in os.environ.items() if not key.startswith("VX63_")}
    return env | {"TZ": "UTC0", "LC_ALL": "C.UTF-8", "NO_COLOR": "1"} | changes


def default_signals():
    """As a terminal's shell leaves them, whatever started the tests."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGPIPE):
        signal.signal(number, signal.SIG_DFL)


def run(*command, **options):
    """Runs a program to its end; text output, standard error apart."""
    options = {"env": environment(), "stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE,
               "stderr": subprocess.PIPE} | options
    return subprocess.run([str(word) for word in command], text=True, timeout=HANG,
                          preexec_fn=default_signals, check=False, **options)


def as_text(stderr):
    """An error that was told as JSON, in its form for people; that form as it is."""
    if not stderr.startswith("{"):
        return stderr
    error = json.loads(stderr)["error"]
    return f"vx63: {error['what']}: {error['why']}: {error['hint']}\n"


def error(result):
    """The one line of JSON on standard error."""
    assert result.stderr.count("\n") == 1
    return json.loads(result.stderr)["error"]


class Meter:
    """A virtual meter for each command that is run, and the trace of its messages. It shows the default scene, in
    which time goes ten times as fast as usual: nobody waits for lock."""

    def __init__(self, folder, isolation):
        self.folder = folder
        self.isolation = isolation
        self.trace = folder / "trace.jsonl"
        self.scene = folder / "scene.toml"
        self.show(DEFAULT_SCENE.replace(CLOCK, "clock_ms = 1000\n"))

    def show(self, scene):
        self.scene.write_text(scene)

    def command(self, *command, fault=(), options=()):
        faults = [word for rule in ([fault] if isinstance(fault, str) else fault) for word in ("--fault", rule)]
        self.trace.unlink(missing_ok=True)
        return [VMETER, "run", *self.isolation, "--scene", self.scene, "--trace", self.trace, *options, *faults, "--",
                *command]

    def vx63(self, *words, fault=(), **options):
        return run(*self.command(VX63, *words, fault=fault), **options)

    def shell(self, script, fault=(), by=(), **options):
        """A script in which $VX63 is the tool and $DIR a folder for its files. `by` is what runs all of it: sudo, which
        hands no variables on."""
        env = options.setdefault("env", environment(VX63=str(VX63), DIR=str(self.folder)))
        variables = ["env", *(f"{name}={value}" for name, value in env.items())] if by else []
        return run(*by, *variables, *self.command("sh", "-c", script, fault=fault), **options)

    def messages(self):
        return [json.loads(line) for line in self.trace.read_text().splitlines()]

    def requests(self):
        """(command name, first bytes of the body) of every request of the client."""
        return [(message["command"], bytes.fromhex(message["body"])[:5]) for message in self.messages()
                if message["kind"] == "request" and message["from"].startswith("client")]


START = ("single-start", bytes([0, 0, 0, 0, 1]))
STOP = ("single-start", bytes(5))


@pytest.fixture
def meter(tmp_path, isolation):
    return Meter(tmp_path, isolation)


def until(condition):
    """Waits for something that nothing tells of."""
    deadline = time.monotonic() + HANG
    while not condition():
        assert time.monotonic() < deadline
        time.sleep(0.01)


class Terminal:
    """A program on a terminal of its own; what it shows comes as one stream."""

    def __init__(self, *command, columns=80, **env):
        self.master, terminal = pty.openpty()
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        self.before = termios.tcgetattr(terminal)
        self.process = subprocess.Popen([str(word) for word in command], stdin=terminal, stdout=terminal,
                                        stderr=terminal, start_new_session=True, env=environment(**env),
                                        preexec_fn=lambda: self._prepare(terminal))
        os.close(terminal)
        self.shown = ""

    @staticmethod
    def _prepare(terminal):
        fcntl.ioctl(terminal, termios.TIOCSCTTY, 0)
        default_signals()

    def _read(self):
        try:
            piece = os.read(self.master, 65536).decode(errors="replace")
        except OSError:  # EIO: the last program on the terminal has gone
            piece = ""
        self.shown += piece
        return piece != ""

    def wait_for(self, text):
        while text not in self.shown:
            assert self._read(), f"no {text!r} in {self.shown!r}"

    def type(self, keys):
        os.write(self.master, keys.encode())

    def finish(self):
        while self._read():
            pass
        os.close(self.master)
        return self.process.wait(timeout=HANG)
