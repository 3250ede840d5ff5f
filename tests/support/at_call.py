"""at_call: commands in which one system call is the last, or fails; and a machine of folders where that can be seen.

A campaign is a program that calls `inside()` first: it runs once more, on a machine of its own with a virtual meter,
and does its work there.
"""

import json
import os
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

BUILD = Path(os.environ.get("VX63_BUILD", "build/release")).resolve()
PLACE = Path("/media")  # where the build is on that machine: its own place may be below /tmp, of which it has another
SETTINGS = Path("/usr/local/bin")
LOG = Path("/var/log/libvx63.cpp.txt")
HANG = 60  # seconds, longer than anything takes
# Nobody looks for leaks while someone follows; what a sanitizer has to tell ends a program with a status of its own.
SANITIZERS = {"ASAN_OPTIONS": "detect_leaks=0:exitcode=99:allocator_may_return_null=1", "UBSAN_OPTIONS": "exitcode=99"}

PLACES = "EIO ENOSPC EDQUOT EROFS EACCES ENOMEM"
# What each call can give of what is tried.
ERRORS = {
    "open": "EIO ENOSPC EDQUOT EROFS EACCES EINTR ENFILE EMFILE ENOMEM",
    "openat": "EIO ENOSPC EDQUOT EROFS EACCES EINTR ENFILE EMFILE ENOMEM",
    "read": "EIO EINTR", "pread64": "EIO EINTR", "getdents64": "EIO",
    "write": "EIO ENOSPC EDQUOT EINTR", "writev": "EIO ENOSPC EDQUOT EINTR", "pwrite64": "EIO ENOSPC EDQUOT EINTR",
    "close": "EIO EINTR ENOSPC EDQUOT", "fsync": "EIO ENOSPC EDQUOT EROFS EINTR", "fdatasync": "EIO ENOSPC EDQUOT",
    "rename": PLACES, "renameat": PLACES, "renameat2": PLACES, "unlink": PLACES, "unlinkat": PLACES, "rmdir": PLACES,
    "mkdir": PLACES, "mkdirat": PLACES, "symlink": PLACES, "link": PLACES,
    "stat": "EIO EACCES ENOMEM", "lstat": "EIO EACCES ENOMEM", "fstat": "EIO ENOMEM",
    "newfstatat": "EIO EACCES ENOMEM", "statx": "EIO EACCES ENOMEM", "statfs": "EIO EACCES ENOMEM EINTR",
    "access": "EIO EROFS EACCES ENOMEM", "faccessat": "EIO EROFS EACCES ENOMEM",
    "faccessat2": "EIO EROFS EACCES ENOMEM", "readlink": "EIO EACCES ENOMEM", "readlinkat": "EIO EACCES ENOMEM",
    "chmod": "EIO EROFS EACCES ENOMEM", "fchmod": "EIO EROFS ENOMEM", "fchmodat": "EIO EROFS EACCES ENOMEM",
    "fchown": "EIO EROFS EDQUOT", "fchownat": "EIO EROFS EDQUOT EACCES", "ftruncate": "EIO EROFS EINTR",
    "flock": "EINTR ENOMEM EAGAIN", "fcntl": "EMFILE", "dup": "EMFILE", "dup2": "EINTR", "dup3": "EINTR",
    "pipe2": "EMFILE ENFILE", "memfd_create": "EMFILE ENFILE ENOMEM", "mmap": "ENOMEM", "mprotect": "ENOMEM",
    "clone": "EAGAIN ENOMEM", "clone3": "EAGAIN ENOMEM", "fork": "EAGAIN ENOMEM", "vfork": "EAGAIN ENOMEM",
    "execve": "EACCES EIO ENOMEM EMFILE ENFILE", "wait4": "EINTR", "waitid": "EINTR", "poll": "EINTR ENOMEM",
    "ppoll": "EINTR ENOMEM", "pselect6": "EINTR ENOMEM", "nanosleep": "EINTR", "clock_nanosleep": "EINTR",
    "mq_open": "EACCES EMFILE ENFILE ENOMEM ENOSPC", "mq_unlink": "EACCES", "mq_timedsend": "EINTR EAGAIN",
    "mq_timedreceive": "EINTR EAGAIN", "socket": "EACCES EMFILE ENFILE ENOMEM", "bind": "EACCES ENOMEM",
    "connect": "EACCES EAGAIN EINTR", "listen": "", "accept4": "EINTR EMFILE ENFILE ENOMEM", "sendto": "EINTR ENOMEM",
    "recvfrom": "EINTR ENOMEM", "sendmsg": "EINTR ENOMEM", "recvmsg": "EINTR ENOMEM",
    "signalfd4": "EMFILE ENFILE ENOMEM", "pidfd_open": "EMFILE ENFILE ENOMEM", "eventfd2": "EMFILE ENFILE ENOMEM",
    "timerfd_create": "EMFILE ENFILE ENOMEM", "getrandom": "EINTR", "ioctl": "EIO", "lseek": "",
    "sendfile": "EIO ENOSPC EDQUOT ENOMEM", "copy_file_range": "EIO ENOSPC EDQUOT ENOMEM EROFS", "chdir": "EACCES EIO",
    "getcwd": "ENOMEM", "setsid": "", "prctl": "",
}


def inside(meter=True):
    """Goes on only on a machine of its own: settings, log, queues and /tmp are folders of it, and a meter serves."""
    if "VX63_INSIDE" in os.environ:
        return
    vmeter = BUILD / "bin" / "vx63-vmeter"
    refused = subprocess.run([vmeter, "check"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if refused.returncode != 0:
        print(refused.stdout, file=sys.stderr)
        sys.exit(1 if os.environ.get("CI") == "true" else 77)
    source = Path(sys.argv[0]).resolve()
    with tempfile.TemporaryDirectory() as folder:
        for name in ("bin", "log", "tmp", "work"):
            Path(folder, name).mkdir()
        scene = (source.parents[2] / "vmeter" / "scene" / "default.toml").read_text()
        Path(folder, "work", "scene").write_text(scene.replace("clock_ms = 100\n", "clock_ms = 1000\n"))  # no waiting
        machine = ["bwrap", "--dev-bind", "/", "/", "--unshare-ipc", "--unshare-pid", "--proc", "/proc",
                   "--mqueue", "/dev/mqueue", "--ro-bind", BUILD, PLACE, "--ro-bind", source.parents[2], "/srv",
                   "--bind", f"{folder}/bin", SETTINGS, "--bind", f"{folder}/log", "/var/log",
                   "--bind", f"{folder}/work", "/mnt", "--bind", f"{folder}/tmp", "/tmp", "--chdir", "/mnt",
                   "--die-with-parent", "--"]
        serve = [PLACE / "bin" / "vx63-vmeter", "run", "--scene", "/mnt/scene", "--"] if meter else []
        command = ["/usr/bin/python3", "-B", Path("/srv") / source.relative_to(source.parents[2]), *sys.argv[1:]]
        environment = {key: value for key, value in os.environ.items() if not key.startswith("VX63_")}
        environment |= SANITIZERS | {"TZ": "UTC0", "LC_ALL": "C.UTF-8", "NO_COLOR": "1", "VX63_INSIDE": "1",
                                     "VX63_BUILD": str(PLACE)}
        sys.exit(subprocess.run([*machine, *serve, *command], env=environment, check=False).returncode)


@dataclass
class Ended:
    code: int
    out: str
    err: str
    told: dict  # what at_call says


def run(*command):
    ended = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                           stderr=subprocess.PIPE, text=True, errors="replace", timeout=HANG, check=False)
    return Ended(ended.returncode, ended.stdout, ended.stderr, {})


def at_call(mode, *command, marked=False):
    """The command under at_call; `mode` is "kill 7", "fail 7 EIO" or "writes"."""
    report = Path("/mnt/told")
    report.unlink(missing_ok=True)
    try:
        ended = run(PLACE / "bin" / "at_call", "--loaded", *(["--marked"] if marked else []), "-o", report,
                    *mode.split(), *command)
    except subprocess.TimeoutExpired as late:  # at work, without an end
        error = (late.stderr or b"").decode(errors="replace")
        return Ended(0, "", error, {"left": ["busy"], "of": "", "failed": "", "killed": ""})
    if not report.exists():
        raise RuntimeError(f"at_call {mode}: {ended}")
    ended.told = json.loads(report.read_text())
    ended.code = ended.told["status"]
    return ended


def files(folder=SETTINGS):
    """Contents of every file below a folder, by its path from there."""
    return {str(path.relative_to(folder)): path.read_bytes() for path in sorted(folder.rglob("*")) if path.is_file()}


def put(wanted, folder=SETTINGS):
    """Makes the files below the folder those that are wanted."""
    there = files(folder)
    for name in there.keys() - wanted.keys():
        (folder / name).unlink()
    for name, contents in wanted.items():
        if there.get(name) != contents:
            (folder / name).parent.mkdir(parents=True, exist_ok=True)
            (folder / name).write_bytes(contents)


def leftovers(tree):
    return [name for name in tree if name.endswith((".tmp", ".new"))]
