"""The process id under which vx63 talks."""

import os
import subprocess
from pathlib import Path

import pytest

from conftest import BUILD, EXCHANGE, HANG, cannot, needs_other_users
from tool_support import VX63, environment, isolation, meter, run  # noqa: F401 (fixtures)

MEASURING = """
    mkfifo "$DIR/rows"
    $VX63 measure single --freq 557143 --count 1000 --interval 3600 > "$DIR/rows" &
    exec 3< "$DIR/rows"
    read -r header <&3
    read -r row <&3
"""


def test_two_at_once_with_one_id(meter):
    result = meter.shell(MEASURING + "$VX63 status; echo $?; $VX63 status --id 16 > /dev/null; echo $?; kill $!; wait $!")
    assert result.stdout == "75\n0\n"
    assert result.stderr == ("vx63: cannot use process id 17: another vx63 is using it: "
                             "wait until it ends, or choose another id with --id\n")


def test_id_is_free_after_a_crash(meter):
    result = meter.shell(MEASURING + "kill -9 $!; wait $!; $VX63 status > /dev/null; echo $?")
    assert result.stdout == "0\n"


def test_no_answer_is_left_to_who_has_the_id_next(meter):
    result = meter.shell(f"$VX63 measure single --channel 27 > /dev/null; echo $?; echo receive 17 0 | {EXCHANGE}",
                         fault="meas/single-start:1=twice")
    assert result.stdout == '0\n{"result": -4}\n'


def test_one_id_in_two_meters(meter, isolation):
    if isolation:
        cannot("one meter at a time without namespaces")
    command = meter.command(VX63, "status")
    result = meter.shell(MEASURING + " ".join(f"'{word}'" for word in command) + " > /dev/null; echo $?; kill $!; wait $!")
    assert result.stdout == "0\n"


LOCK = "vx63-17-$(stat -Lc %i /proc/self/ns/ipc).lock"


def test_no_lock_file_is_left(meter):
    left = f"; echo $?; ls /tmp /tmp/vx63-$(id -u) | grep '{LOCK}'".replace("'", '"')
    own = environment(VX63=str(VX63), DIR=str(meter.folder), XDG_RUNTIME_DIR="")
    assert meter.shell("$VX63 status > /dev/null" + left, env=own).stdout == "0\n"
    assert meter.shell("$VX63 status > /dev/null 2>&1" + left, fault="dev=refuse", env=own).stdout == "13\n"


def test_where_the_lock_lies(meter):
    """In the user's runtime folder if it is private, else in /tmp in a folder that is."""
    result = meter.shell(f"""
        umask 0
        show() {{
            export XDG_RUNTIME_DIR
            $VX63 measure single --freq 557143 --count 1000 --interval 3600 > /dev/null & tool=$!
            until ls "$1" 2> /dev/null | grep -qx "{LOCK}"; do :; done
            stat -c "%a %u" "$1" "$1/{LOCK}"
            kill $tool; wait $tool
        }}
        mkdir -m 700 "$DIR/private"; mkdir -m 755 "$DIR/shared"; ln -s private "$DIR/link"
        XDG_RUNTIME_DIR=$DIR/private; show "$DIR/private"
        XDG_RUNTIME_DIR=$DIR/shared;  show /tmp/vx63-$(id -u)
        XDG_RUNTIME_DIR=$DIR/link;    show /tmp/vx63-$(id -u)
        XDG_RUNTIME_DIR=relative;     show /tmp/vx63-$(id -u)
        XDG_RUNTIME_DIR=$DIR/none;    show /tmp/vx63-$(id -u)
    """)
    assert result.stdout == f"700 {os.getuid()}\n600 {os.getuid()}\n" * 5


@pytest.mark.parametrize("make", ["mkdir -m 777", "ln -s private", "touch", "mkfifo",
                                  pytest.param("install -d -m 700 -o 65534", id="another user")])
def test_folder_that_another_user_made_first(meter, isolation, tmp_path, make):
    """Nothing is put into it, and it bars nobody."""
    if isolation:
        cannot("a /tmp of its own needs namespaces")
    if "-o" in make:
        needs_other_users()
    tmp, scene = tmp_path / "tmp", tmp_path / "tmp" / "scene.toml"
    (tmp / "private").mkdir(mode=0o700, parents=True)
    scene.write_text(meter.scene.read_text())
    subprocess.run(f"{make} vx63-$(id -u)", shell=True, cwd=tmp, check=True)
    result = run("bwrap", "--dev-bind", "/", "/", "--ro-bind", BUILD, "/media", "--bind", tmp, "/tmp",  # BUILD may be there
                 "/media/bin/vx63-vmeter", "run", "--scene", "/tmp/scene.toml", "--", "/media/bin/vx63", "status",
                 env=environment(XDG_RUNTIME_DIR=""))
    assert (result.returncode, result.stderr) == (0, "")
    assert sorted(path.name for path in tmp.rglob("*")) == sorted(["private", "scene.toml", f"vx63-{os.getuid()}"])


def test_lock_of_another_user(meter):
    """Who cannot use our folder cannot hold our lock, whatever lies in /tmp."""
    needs_other_users()
    script = 'stat -Lc %i /proc/self/ns/ipc; read -r go; "$0" status > /dev/null; echo $?'
    pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "text": True}
    with subprocess.Popen([str(word) for word in meter.command("sh", "-c", script, VX63)], **pipes) as ours:
        lock = Path(f"/tmp/vx63-17-{ours.stdout.readline().strip()}.lock")
        with subprocess.Popen(["flock", lock, "sh", "-c", "echo held; cat"], user=65534, **pipes) as theirs:
            assert theirs.stdout.readline() == "held\n"
            assert ours.communicate("go\n", timeout=HANG)[0] == "0\n"
            theirs.communicate()
    lock.unlink()


@pytest.mark.parametrize("make", ["mkdir", "mkfifo", "ln -s /dev/zero"])
def test_lock_file_that_is_something_else(meter, make):
    """Whatever lies there harms nobody."""
    script = f"""
        mkdir -m 700 "$DIR/private"
        export XDG_RUNTIME_DIR="$DIR/private"
        {make} "$XDG_RUNTIME_DIR/{LOCK}"
        $VX63 status > /dev/null
        echo $?
    """
    result = meter.shell(script)
    assert (result.stdout, result.stderr) == ("0\n", "")


def test_id_is_the_sender(meter):
    assert meter.vx63("input", "0", "--id", "3").returncode == 0
    assert {message["ucSrcId"] for message in meter.messages() if message["kind"] == "request"} == {3}
    assert meter.vx63("input", "0", env=environment(VX63_PROCESS_ID="5")).returncode == 0
    assert {message["ucSrcId"] for message in meter.messages() if message["kind"] == "request"} == {5}
    assert meter.vx63("input", "0", env=environment(VX63_PROCESS_ID="")).returncode == 0  # counts as none
    assert {message["ucSrcId"] for message in meter.messages() if message["kind"] == "request"} == {17}
    assert meter.vx63("input", "0", "--id", "4", env=environment(VX63_PROCESS_ID="5")).returncode == 0
    assert {message["ucSrcId"] for message in meter.messages() if message["kind"] == "request"} == {4}


@pytest.mark.parametrize("value", ["0", "6", "8", "10", "12", "18", "-1", "x", "", "17 ", "0x12"])
def test_ids_that_are_refused(value):
    results = [run(VX63, "status", f"--id={value}")]
    if value != "":
        results.append(run(VX63, "status", env=environment(VX63_PROCESS_ID=value)))
    for result in results:
        assert result.returncode == 64
        assert result.stdout == ""
        assert result.stderr.startswith("vx63: wrong usage of 'vx63 status': ")
