"""A meter that restarts, or hangs: none of its services answers."""

import json
import re

from tool_support import VX63, Terminal, error, isolation, meter  # noqa: F401 (fixtures)

RESTARTS = "the meter restarts, or hangs: none of its services answers"


# ---- each takes the library's time-out of 10 seconds twice ----

def test_all_are_silent(meter):
    result = meter.shell("$VX63 power shutdown --yes; $VX63 info")
    assert result.returncode == 11
    assert result.stderr.startswith(f"vx63: cannot read the product data: {RESTARTS}: wait and repeat the command, or switch ")
    assert [name for name, _ in meter.requests()][-2:] == ["product", "device-status"]


def test_all_are_silent_as_json(meter):
    result = meter.shell("$VX63 power shutdown --yes; $VX63 status --json")
    assert (result.returncode, result.stdout) == (11, "")
    assert (error(result)["kind"], error(result)["exit_code"], error(result)["why"]) == ("restarting", 11, RESTARTS)


def test_looking_at_a_meter_that_restarts(meter):
    """The first service is asked before the restart is over, and answers once the others do."""
    result = meter.shell("$VX63 power reboot --yes; $VX63 doctor")
    assert (result.returncode, result.stderr) == (0, "")
    assert re.search("^System service +note +did not answer at first, and does now: the meter restarted, or was busy$",
                     result.stdout, re.M)
    result = meter.shell("$VX63 power reboot --yes; $VX63 status --json")
    assert (result.returncode, result.stderr) == (0, "")
    assert json.loads(result.stdout)["missing"] == []


# ---- waiting for it ----

def test_reboot_and_wait(meter):
    terminal = Terminal(*meter.command(VX63, "power", "reboot", "--yes", "--wait"))
    terminal.wait_for("Rebooting: 1 s")
    assert terminal.finish() == 0
    assert re.search(r"The meter answers again after [0-9]+\.[0-9] s\r\n$", terminal.shown)
    asked = [name for name, _ in meter.requests()]
    assert asked[:2] == ["product", "reboot"]
    assert asked[-5:] == ["product", "device-status", "key-status", "buzzer", "meas-status"]


def test_nothing_goes_on_after_a_wait_that_is_killed(meter):
    """Whoever asks in its place would keep its process id."""
    result = meter.shell("""$VX63 power reboot --yes --wait & sleep 0.5; kill -KILL $!; wait $!; sleep 3
        $VX63 power state 2>/dev/null; echo $?""")
    assert result.stdout.split()[-1] != "75"


def test_reboot_that_takes_too_long(meter):
    result = meter.vx63("power", "reboot", "--yes", "--wait", "--timeout", "0.5")
    assert (result.returncode, result.stdout) == (11, "")
    assert result.stderr == ("vx63: cannot wait for the meter any longer: it was rebooted and has not answered for 0.5 s: "
                             "wait longer with --timeout, or see 'vx63 doctor'\n")
