"""The process id under which vx63 talks."""

import os

import pytest

from conftest import cannot
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


def test_one_id_in_two_meters(meter, isolation):
    if isolation:
        cannot("one meter at a time without namespaces")
    command = meter.command(VX63, "status")
    result = meter.shell(MEASURING + " ".join(f"'{word}'" for word in command) + " > /dev/null; echo $?; kill $!; wait $!")
    assert result.stdout == "0\n"


def test_no_lock_file_is_left(meter):
    left = "; echo $?; ls /tmp | grep \"vx63-.*-$(stat -Lc %i /proc/self/ns/ipc)\\.lock\""
    assert meter.shell("$VX63 status > /dev/null" + left).stdout == "0\n"
    assert meter.shell("$VX63 status > /dev/null 2>&1" + left, fault="dev=refuse").stdout == "13\n"


@pytest.mark.parametrize("make", ["mkdir", "mkfifo", "ln -s /dev/zero"])
def test_lock_file_that_is_something_else(meter, make):
    """Whatever lies there harms nobody."""
    script = f"""
        lock=/tmp/vx63-17-$(stat -Lc %i /proc/self/ns/ipc).lock
        {make} "$lock"
        $VX63 status > /dev/null
        echo $?
        rm -rf "$lock"
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
