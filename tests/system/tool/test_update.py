"""vx63 update: what it tells while it goes on, and why it does not."""

import pytest

from tool_support import VX63, Terminal, isolation, meter  # noqa: F401 (fixtures)

UPDATE = ["update", "--program", "main", "--new-version", "2.0", "--size", "1048576", "--yes"]


@pytest.mark.parametrize("code, exit_code, why", [
    (1, 10, "the meter gave the update up"), (2, 2, "the meter refuses the request"),
    (4, 1, "not now: another update is under way, or the battery is low"),
])
def test_update(meter, code, exit_code, why):
    result = meter.vx63(*UPDATE, fault=f"sys/update=ret,{code}")
    assert (result.returncode, result.stdout) == (exit_code, "")
    assert result.stderr.startswith(f"vx63: cannot update the program: {why}: ")


def test_update_without_a_log(meter):
    result = meter.shell("rm -f /var/log/libvx63.cpp.txt; mkdir /var/log/libvx63.cpp.txt; $VX63 " + " ".join(UPDATE),
                         fault="sys/update=ret,4")
    assert result.returncode == 10
    assert "the meter gave the update up, or refused it" in result.stderr


def test_update_tells_what_it_does(meter):
    terminal = Terminal(*meter.command(VX63, *UPDATE, fault=["sys/update:1=late,1200", "sys/update:3=late,1200"]))
    terminal.wait_for("Updating, step 1, 1 s: the main program to 2.0, 1024 KiB")
    terminal.wait_for("Updating, step 3, 2 s: the main program to 2.0, 1024 KiB")
    assert terminal.finish() == 0
    assert " 0 s" not in terminal.shown


def test_update_tells_the_step_on_a_narrow_terminal(meter):
    terminal = Terminal(*meter.command(VX63, *UPDATE, fault="sys/update:1=late,1200"), columns=40)
    terminal.wait_for("Updating, step 1, 1 s: the main program")
    assert terminal.finish() == 0
