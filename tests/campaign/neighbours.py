#!/usr/bin/python3
"""Another user of the machine, a hostile environment and hostile words against a meter in place and the tool.

neighbours.py SECONDS SEED. Needs root, who becomes both users, and bwrap. A try is a machine of its own (/tmp,
/var/log, /usr/local/bin, queues) on which the neighbour plants what it may, before and while the user runs a meter in
place and commands in it. Held against: what the neighbour reads and changes (nothing), a file that is not the meter's
(stays), exit status and text (documented, printable, not without end), and the same once more when the neighbour has
gone: all well, and nothing left.
"""

import ctypes
import json
import os
import random
import re
import shutil
import stat
import subprocess
import sys
import tempfile
import time
from pathlib import Path

BUILD = Path(os.environ.get("VX63_BUILD", "build/release"))
USER, NEIGHBOUR = 10001, 65534
LIMIT = 120  # seconds, of whatever must not take for ever
DOCUMENTED = {*range(16), 64, 65, 66, 73, 74, 75, 77, 125, 126, 127, 130, 141, 143}
CANNOT = 77
ROOM = ["bwrap", "--ro-bind", "/", "/", "--unshare-ipc", "--unshare-pid", "--proc", "/proc", "--dev", "/dev", "--mqueue",
        "/dev/mqueue", "--tmpfs", "/run", "--die-with-parent"]
SECRET = "what the neighbour must not see"
SECRET_FREQ = "631415"  # in a file that would be a good set
SET = f"1.0.0\nNO,ENBFLG,BAND,SPEC,CH,CENTER_FREQ,MOD,LOCAL_FREQ,GETDATA_FLG,DC_OUT\n1,1,0,0,13,{SECRET_FREQ},0,0,0,0\n"
LOG, LINE = Path("/var/log/libvx63.cpp.txt"), "1767225600.000000 : vx63 : libvx63.cpp(1) before() : Start.\n"
MARK = b"\x0c\x11"  # a message of the neighbour's: from the measurement service, for process 17
LIBRT = ctypes.CDLL(None, use_errno=True)


# ---- the neighbour, before ----

def make_queue(name, mode, size):
    class Attributes(ctypes.Structure):
        _fields_ = [(field, ctypes.c_long) for field in ("flags", "maxmsg", "msgsize", "curmsgs")] + [
            ("reserved", ctypes.c_long * 4)]

    queue = LIBRT.mq_open(name.encode(), os.O_RDWR | os.O_CREAT | os.O_NONBLOCK, 0o600,
                          ctypes.byref(Attributes(0, 4, size, 0)))
    if queue < 0:
        return -1
    os.fchmod(queue, mode)
    return queue


def plant_queue(rng):
    number = rng.choice([0, 12, 16, 255, 17, 17, 17, 17, 17])
    size = rng.choice([1300, 1300, 1300, 8])
    queue = make_queue(f"/vx63.{number}", rng.choice([0o666, 0o666, 0o622, 0o644, 0o602, 0o600]), size)
    for _ in range(rng.randrange(4)):
        LIBRT.mq_send(queue, MARK + rng.randbytes(size), rng.randrange(len(MARK), size + 1), 0)
    return f"queue {number}"


def plant_name(rng, path):
    """Something at a path that the user is known to take."""
    kind = rng.choice(["folder", "open folder", "file", "link", "fifo", "dangling"])
    if os.path.lexists(path):
        return ""
    if "folder" in kind:
        os.mkdir(path, 0o777 if kind == "open folder" else 0o700)
        os.chmod(path, 0o777 if kind == "open folder" else 0o700)
    elif kind == "file":
        Path(path).write_text("planted\n")
    elif kind == "fifo":
        os.mkfifo(path)
    else:
        os.symlink("/opt/secret/keep" if kind == "link" else "/nowhere/at/all", path)
    return f"{kind} {path}"


def plant_lock_folder(rng):
    return plant_name(rng, f"/tmp/vx63-{USER}")


def plant_lock_file(rng):
    return plant_name(rng, f"/tmp/vx63-17-{os.stat('/proc/self/ns/ipc').st_ino}.lock")


def plant_notes(rng):
    """What a killed meter in place leaves, so that the next takes away what it tells."""
    folder = "/tmp/vx63-vmeter-" + "".join(rng.choices("abcXYZ019", k=6))
    if rng.random() < 0.2:
        return plant_name(rng, folder)
    os.makedirs(folder + "/kept-logs")
    os.mkdir(folder + "/kept-queues")
    Path(folder, "complete").touch()
    state = rng.choice(["/opt/secret", "/tmp", "/", ""])
    if state:
        os.symlink(state, folder + "/state")
    os.chmod(folder, rng.choice([0o700, 0o777, 0o777]))
    return f"notes {folder}"


def plant_lock(rng):
    """Held until the neighbour goes: any file or folder that may be read can be locked."""
    path = rng.choice(["/usr/local/bin", "/var/log", "/tmp", "/srv"])
    os.environ["HELD"] = path
    return f"lock on {path}"


PLANTS = [*[plant_queue] * 3, *[plant_notes] * 2, plant_lock_folder, plant_lock_file, plant_lock]

HOLD = """
import fcntl, os, sys
held = os.open(os.environ["HELD"], os.O_RDONLY) if "HELD" in os.environ else -1
if held >= 0: fcntl.flock(held, fcntl.LOCK_EX)
print("held", flush=True)
sys.stdin.read()
"""

# ---- the neighbour, meanwhile: tells what it could read or change ----

SNOOP = """
import ctypes, os, sys, time
libc = ctypes.CDLL(None)
room = ctypes.create_string_buffer(8192)
taking = "TAKE" in os.environ
print("looking", flush=True)
end = time.monotonic() + 60
while time.monotonic() < end and os.path.exists("/tmp/go"):
    for name in os.listdir("/dev/mqueue"):
        path = "/dev/mqueue/" + name
        try:
            mine = os.stat(path).st_uid == os.getuid()
        except OSError:
            continue
        if mine:
            try:
                queue = os.open(path, os.O_RDONLY | os.O_NONBLOCK)
            except OSError:
                continue
            length = libc.mq_receive(queue, room, len(room), None) if taking else -1
            if length >= 2 and room.raw[:2] != bytes.fromhex("0c11"):
                print("was sent", room.raw[:length].hex(), "by", name, flush=True)
            os.close(queue)
        else:
            for way in (os.O_RDONLY, os.O_WRONLY):
                try:
                    os.close(os.open(path, way | os.O_NONBLOCK))
                    print("opened", name, way, flush=True)
                except OSError:
                    pass
    if taking:
        continue # be quicker than the user
    for folder, _, files in [*os.walk("/tmp"), *os.walk("/usr/local/bin"), *os.walk("/opt")]:
        for name in files:
            try:
                with open(os.path.join(folder, name), "r+b"):
                    pass
                if os.stat(os.path.join(folder, name)).st_uid != os.getuid():
                    print("can write", os.path.join(folder, name), flush=True)
            except OSError:
                pass
    time.sleep(0.01)
"""

# ---- the user ----

NAMES = ["$(touch /opt/secret/shell)", "`id`", ";reboot", "a b", "-rf", "--", "*", "../../opt/secret", "../../opt/s", ".hid", "a\nb", "\x1b[2J",
         "\x9b31m", "n" * 13, "n" * 5000, "", "'", "%s%n", "\xff\xfe", "T"]


def commands(rng):
    name = rng.choice(NAMES)
    tool = str(BUILD / "bin" / "vx63")
    if rng.random() < 0.5:
        return [tool, *rng.choice(["info", "status", "keys", "measure single --freq 557143", "doctor"]).split()]
    return rng.choice([
        [tool, "log"],
        [tool, "settings", "list"], [tool, "settings", "show", "user_set/" + name],
        [tool, "settings", "show", "user_set/../../opt/s"], [tool, "sets", "create", name],
        [tool, "sets", "create", name, "--from", "ch_set/uhf"], [tool, "sets", "delete", "--yes", name],
        [tool, "sets", "clear", "--yes"], [tool, "settings", "reset", "--all", "--yes"], [tool, "settings", "check"],
        [tool, "log", name], [tool, name], [tool, "info", "--id", name],
    ])


def hostile_environment(rng):
    values = {
        "VX63_PROCESS_ID": ["16", "12", "999999999999", "-1", "\x1b[2J", ""], "COLUMNS": ["0", "-5", "1", "99999999999", "x"],
        "TERM": ["", "\x1b[2J", "../../../etc/passwd", "xterm"], "TZ": ["UTC0", ":/opt/secret/keep", "../../opt/secret/keep", "A" * 5000],
        "XDG_RUNTIME_DIR": ["", "/tmp", "/opt/secret", "relative", "/nowhere", "/tmp/" + "x" * 300], "LSYS_DEBUG": ["1"],
        "LC_ALL": ["C", "C.UTF-8", "../../opt/secret"], "NO_COLOR": ["", "1"], "TMPDIR": ["/nowhere", "/tmp"], "HOME": ["/opt/secret", ""],
    }
    chosen = {key: rng.choice(value) for key, value in values.items() if rng.random() < 0.3}
    return {"PATH": "/usr/bin:/bin", **chosen}


def as_user(user, command, **options):
    return subprocess.Popen(command, user=user, group=user, extra_groups=[], **options)


def finding(text, story):
    print(f"finding: {text}\n  {json.dumps(story)}", file=sys.stderr)
    sys.exit(1)


def in_place(rng, story, hostile):
    """One command in a meter in place; gives its exit status and text."""
    command = commands(rng) if hostile else [str(BUILD / "bin" / "vx63"), "info"]
    env = hostile_environment(rng) if hostile else {"PATH": "/usr/bin:/bin"}
    state = ["--state", "/srv"] if rng.random() < 0.3 else []
    story.update(command=command, environment=env, state=bool(state))
    run = as_user(USER, [BUILD / "bin" / "vx63-vmeter", "run", "--in-place", *state, "--", *command], env=env,
                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    try:
        text, _ = run.communicate(timeout=LIMIT)
    except subprocess.TimeoutExpired:
        run.kill()
        finding("no end", story)
    story.update(status=run.returncode, text=text.decode(errors="replace")[-2000:])
    if run.returncode not in DOCUMENTED:
        finding("an exit status that is not documented", story)
    bad = re.search(rb"[\x00-\x08\x0b-\x1f\x7f]|\xc2[\x80-\x9f]", text)
    if bad:
        finding(f"byte {bad.group()!r} in the output", story)
    if SECRET.encode() in text or SECRET_FREQ.encode() in text:
        finding("it tells what is secret", story)
    if hostile and run.returncode == 125 and not re.search(rb": .+: .+", text):
        finding("a failure without reason and advice", story)
    return run.returncode


def tell_secret():
    return {str(path): (path.read_text() if path.is_file() else "", oct(path.lstat().st_mode))
            for path in sorted(Path("/opt").rglob("*"))}


def one(seed):
    """Inside: root, on a machine of its own."""
    rng = random.Random(seed)
    story = {"seed": seed}
    for folder in ("/usr/local/bin", "/var/log", "/srv"):
        os.chown(folder, USER, USER)
    os.chmod("/tmp", 0o1777)
    os.chmod("/srv", rng.choice([0o700, 0o755]))
    secret = Path("/opt/secret")
    (secret / "log").mkdir(parents=True)
    for path in (secret / "keep", secret / "log" / "libvx63.cpp.txt", secret / "T.csv"):
        path.write_text(SECRET)
        path.chmod(0o600)
    Path("/opt/s.csv").write_text(SET)
    Path("/opt/s.csv").chmod(0o600)
    LOG.write_text(LINE)
    for path in (secret, *secret.rglob("*"), Path("/opt/s.csv"), *LOG.parent.iterdir()):
        os.chown(path, USER, USER)
    secret.chmod(0o700)
    before = tell_secret()

    plants = rng.choices(PLANTS, k=rng.randrange(4))
    planting = os.fork()
    if planting == 0:
        os.setgroups([])
        os.setgid(NEIGHBOUR)
        os.setuid(NEIGHBOUR)
        told = [plant(rng) for plant in plants]
        Path("/tmp/planted").write_text(json.dumps({"told": told, "held": os.environ.get("HELD")}))
        os._exit(0)
    os.waitpid(planting, 0)
    planted = json.loads(Path("/tmp/planted").read_text()) if Path("/tmp/planted").exists() else {"told": "failed", "held": None}
    Path("/tmp/planted").unlink(missing_ok=True)
    story["planted"] = planted["told"]
    Path("/tmp/go").touch()
    held = {"HELD": planted["held"]} if planted["held"] else {}
    pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.DEVNULL, "text": True}
    holder = as_user(NEIGHBOUR, ["/usr/bin/python3", "-c", HOLD], env=held, **pipes)
    taking = {"TAKE": "1"} if rng.random() < 0.5 else {}
    snoop = as_user(NEIGHBOUR, ["/usr/bin/python3", "-c", SNOOP], env=taking, **pipes)
    snoop.stdout.readline()
    if held and "/srv" != planted["held"]:
        holder.stdout.readline()

    in_place(rng, story, hostile=True)

    os.unlink("/tmp/go")
    seen, _ = snoop.communicate(timeout=LIMIT)
    holder.stdin.close()
    holder.wait()
    if seen:
        finding("the neighbour " + seen, story)
    if tell_secret() != before:
        finding("a file that is not the meter's has changed", story)

    # The neighbour has gone, and root has taken away what it left.
    for folder in ("/tmp", "/dev/mqueue"):
        for name in os.listdir(folder):
            path = os.path.join(folder, name)
            if os.lstat(path).st_uid == NEIGHBOUR:
                shutil.rmtree(path) if stat.S_ISDIR(os.lstat(path).st_mode) else os.unlink(path)
    again = {"seed": seed, "planted": story["planted"], "before": story["command"]}
    if in_place(rng, again, hostile=False) != 0:
        finding("it does not work again", again)
    left = {folder: os.listdir(folder) for folder in ("/usr/local/bin", "/var/log", "/dev/mqueue")}
    if not (LOG.exists() and LOG.read_text().startswith(LINE)):
        finding("the log of before is lost", again)
    left["/var/log"].remove(LOG.name)
    left["/tmp"] = [name for name in os.listdir("/tmp") if name != f"vx63-{USER}"]
    if any(left.values()):
        finding(f"left: {left}", again)


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    if os.geteuid() != 0:
        print("neighbours: needs root, who can become two users", file=sys.stderr)
        sys.exit(CANNOT)
    end = time.monotonic() + seconds
    count = 0
    while count == 0 or time.monotonic() < end:
        with tempfile.TemporaryDirectory() as text:
            folder = Path(text)
            folder.chmod(0o755)
            binds = []
            for name, place in (("bin", "/usr/local/bin"), ("log", "/var/log"), ("tmp", "/tmp"), ("state", "/srv"),
                                ("opt", "/opt")):
                (folder / name).mkdir()
                binds += ["--bind", folder / name, place]
            inside = subprocess.run(
                [*ROOM, *binds, "--ro-bind", BUILD, "/media", "--setenv",
                 "VX63_BUILD", "/media", "--ro-bind", Path(__file__).resolve().parent, "/mnt", "--",
                 "/usr/bin/python3", "/mnt/neighbours.py",
                 "--inside", f"{seed}.{count}"], check=False)
            if inside.returncode != 0:
                sys.exit(1)
            count += 1
    print(f"executions: {count}")


if __name__ == "__main__":
    if sys.argv[1:2] == ["--inside"]:
        one(sys.argv[2])
    else:
        main()
