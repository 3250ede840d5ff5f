"""What the system tests share: the built programs, run as a person runs them.

VX63_BUILD names the build folder, VX63_SERVICES_BUILD that of the virtual meter where it is another one. Nothing here
sleeps: a test waits for a line, a process or a descriptor.
"""

import json
import os
import select
import shutil
import struct
import subprocess
import tempfile
from pathlib import Path

import pytest

from lent_machine import lent_machine

# Longer than anything takes; only a test that hangs meets it.
HANG = 300

SOURCE = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("VX63_BUILD", "build/debug")).resolve()
VMETER = Path(os.environ.get("VX63_SERVICES_BUILD", BUILD)).resolve() / "bin" / "vx63-vmeter"
EXCHANGE = BUILD / "bin" / "vmeter_exchange"

SYS, DEV, KEY, BUZ, MEAS = 0, 6, 8, 10, 12
SERVICES = {"vx63-sys", "vx63-dev", "vx63-key", "vx63-buz", "vx63-meas"}


def run(*command, **options):
    """Runs a program to its end, both outputs caught."""
    options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          text=True, timeout=HANG, **options)


def vmeter(*arguments, **options):
    return run(VMETER, *arguments, **options)


def pytest_collection_modifyitems(config, items):
    """Where programs are emulated there is one user (tests/emulated); what others may do, the native tests show."""
    if "QEMU_LD_PREFIX" in os.environ:
        left_out = [item for item in items if {"public_bin", "native"} & set(item.fixturenames)]
        items[:] = [item for item in items if item not in left_out]
        config.hook.pytest_deselected(items=left_out)


@pytest.fixture
def native():
    """For a test of what the emulator cannot do."""


def needs_other_users():
    """Skips a test in which root is or makes somebody else, where there is nobody: as where programs are emulated."""
    if os.geteuid() != 0 or Path("/proc/self/uid_map").read_text().split()[2] == "1":
        pytest.skip("there is no other user to be")


def cannot(why):
    """Skips a test that cannot run here; in CI that is a failure."""
    if os.environ.get("CI") == "true":
        pytest.fail(why)
    pytest.skip(why)


@pytest.fixture(scope="session")
def namespaces():
    """Asks for namespaces, which containers refuse."""
    checked = vmeter("check")
    if checked.returncode != 0:
        cannot(checked.stderr.strip())


@pytest.fixture(scope="session")
def isolation():
    """Options of vx63-vmeter run: none, or --in-place where namespaces are refused."""
    checked = vmeter("check")
    if checked.returncode == 0:
        yield []
    elif os.geteuid() == 0:
        with lent_machine():
            yield ["--in-place"]
    else:
        cannot(checked.stderr.strip())


# Makes another user of root.
AS_NOBODY = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"]


@pytest.fixture(scope="session")
def as_root():
    """What to put before a command that root has to run."""
    if os.geteuid() == 0:
        return []
    if not shutil.which("sudo") or run("sudo", "-n", "true").returncode != 0:
        cannot("needs another user: run as root, or allow sudo without a password")
    return ["sudo", "-n"]


@pytest.fixture(scope="session")
def public_bin():
    """The shipped programs where any user can run them: the checkout may lie below /root."""
    with tempfile.TemporaryDirectory(prefix="shipped-") as folder:
        os.chmod(folder, 0o755)
        for part, programs in ("bin", [VMETER, EXCHANGE, BUILD / "bin" / "vx63"]), ("lib", (BUILD / "lib").iterdir()):
            Path(folder, part).mkdir()
            for program in programs:
                os.chmod(shutil.copy(program, Path(folder, part)), 0o755)
            os.chmod(Path(folder, part), 0o755)
        yield Path(folder, "bin")


def message(source, destination, command, body=b"\0" * 4, length=None, option=0):
    """A message as it lies in a queue; `length` is what its header claims."""
    return struct.pack("<BBHHH", source, destination, command, len(body) if length is None else length,
                       option) + body


class Message:
    """A message taken from a queue."""

    def __init__(self, data):
        self.source, self.destination, self.command, self.length, self.option = struct.unpack("<BBHHH", data[:8])
        self.body = data[8:]

    def __repr__(self):
        return (f"Message({self.source} -> {self.destination}, 0x{self.command:04X}, length {self.length}, "
                f"option {self.option}, {self.body.hex()})")


class Client:
    """A client inside a meter's surroundings, driven from outside: `vx63-vmeter ... -- vmeter_exchange`."""

    def __init__(self, *command, own=17, program=EXCHANGE, **options):
        self.own = own
        self.process = subprocess.Popen([str(word) for word in command] + [str(program)],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, **options)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends the client, and the meter with it; gives the exit status."""
        if self.process.stdin and not self.process.stdin.closed:
            try:
                self.process.stdin.close()
            except BrokenPipeError:
                pass
        status = self.process.wait(HANG)
        self.process.stdout.close()
        return status

    def order(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def send(self, queue, data):
        result = self.order(f"send {queue} {data.hex()}")["result"]
        assert result == 0, result

    def receive(self, timeout=HANG * 1000):
        """The next message on the own queue; None when none came within `timeout` milliseconds."""
        answer = self.order(f"receive {self.own} {timeout}")
        if answer["result"] == -4:
            return None
        assert answer["result"] == 0, answer
        return Message(bytes.fromhex(answer["message"]))

    def request(self, destination, command, body=b"\0" * 4):
        self.send(destination, message(self.own, destination, command, body))

    def call(self, destination, command, body=b"\0" * 4):
        self.request(destination, command, body)
        return self.receive()


class Process:
    """A process of this machine, and no other that gets its number later."""

    def __init__(self, pid):
        self.pid = pid
        self.handle = os.pidfd_open(pid)

    def __del__(self):
        os.close(self.handle)

    def ended(self, within=0):
        return bool(select.select([self.handle], [], [], within)[0])

    def wait(self):
        assert self.ended(HANG), f"process {self.pid} lives on"


def parents():
    """Parent and short name of every process that has not ended."""
    found = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                stat = Path("/proc", entry, "stat").read_text()
            except OSError:
                continue
            name = stat[stat.index("(") + 1:stat.rindex(")")]
            state, parent = stat[stat.rindex(")") + 2:].split()[:2]
            if state != "Z":  # ended, and not yet waited for
                found[int(entry)] = (int(parent), name)
    return found


def descendants(pid):
    """Short names of all processes below `pid`, by process id, parents first."""
    table = parents()
    found = {}
    generation = [pid]
    while generation:
        generation = [child for child, (parent, _) in table.items() if parent in generation]
        found.update((child, table[child][1]) for child in generation)
    return found
