"""A machine for a test alone, made of folders: what is left on it can be seen, and nobody else's is touched."""

import os
import subprocess

import pytest
from conftest import BUILD, HANG, descendants

SETTINGS = ["sys_set", "meas_set", "user_set", "user_set_usb1", "user_set_usb2", "logger_set",
            "logger_set_usb1", "logger_set_usb2", "ch_set", "pmeas_set"]
# The build tree as the room sees it: its own place may be below /tmp, of which the room has another.
VMETER, EXCHANGE = "/media/bin/vx63-vmeter", "/media/bin/vmeter_exchange"
IN_PLACE = f"{VMETER} run --in-place"


class Room:
    """A shell on a machine of its own, driven line by line."""

    def __init__(self, folder):
        self.bin, self.log, self.tmp, self.work = (folder / name for name in ("bin", "log", "tmp", "work"))
        for path in (self.bin, self.log, self.tmp, self.work):
            path.mkdir()
        self.shell = subprocess.Popen(
            ["bwrap", "--dev-bind", "/", "/", "--unshare-ipc", "--unshare-pid", "--proc", "/proc",
             "--mqueue", "/dev/mqueue",
             "--bind", self.bin, "/usr/local/bin", "--bind", self.log, "/var/log", "--bind", self.tmp, "/tmp",
             "--bind", self.work, "/mnt", "--ro-bind", BUILD, "/media", "--die-with-parent", "--chdir", "/mnt",
             "--", "sh"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def do(self, line):
        """Exit status and both outputs of a shell line."""
        self.shell.stdin.write(f"({line}) 2>&1; status=$?; echo; echo END $status\n")
        self.shell.stdin.flush()
        text = ""
        for shown in self.shell.stdout:
            if shown.startswith("END "):
                return int(shown[4:]), text[:-1]
            text += shown
        raise AssertionError(text)

    def start(self, options=""):
        """A meter in the background; gives its run process once it is up. Its command waits for ever."""
        self.do("mkfifo up")
        self.do(f"{IN_PLACE} {options} -- sh -c 'echo x > up; exec sleep 100000' > started 2>&1 &")
        self.do("cat up; rm up")
        return next(pid for pid, name in descendants(self.shell.pid).items() if name == "vx63-vmeter")

    def left(self):
        _, queues = self.do("ls /dev/mqueue")
        return {"bin": sorted(os.listdir(self.bin)), "log": sorted(os.listdir(self.log)),
                "tmp": sorted(os.listdir(self.tmp)), "queues": queues.split()}

    def close(self):
        self.shell.stdin.close()
        self.shell.wait(HANG)


EMPTY = {"bin": [], "log": [], "tmp": [], "queues": []}


@pytest.fixture
def room(tmp_path):
    made = Room(tmp_path)
    yield made
    made.close()
