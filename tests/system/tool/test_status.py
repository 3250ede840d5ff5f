"""vx63 status: what the services that answer tell."""

import json
import re

import pytest

from tool_support import error, isolation, meter  # noqa: F401 (fixtures)

SECTIONS = ["Measuring", "Power supply", "Battery", "Standby"]


@pytest.mark.parametrize("fault, shown, missing", [
    ("sys=silence", SECTIONS, []), ("key=silence", SECTIONS, []), ("buz=silence", SECTIONS, []),
    ("dev=silence", ["Measuring", "Standby"], ["power_supply", "device"]),
    ("dev=refuse", ["Measuring", "Standby"], ["power_supply", "device"]),
    ("dev/device-status=refuse", ["Measuring", "Power supply", "Standby"], ["device"]),
    ("meas=silence", ["Power supply", "Battery"], ["measurement", "standby"]),
    ("meas/meas-status=ret,9", ["Power supply", "Battery", "Standby"], ["measurement"]),
])
def test_status_of_what_answers(meter, fault, shown, missing):
    result = meter.vx63("status", fault=fault)
    rows = dict(re.split(r"  +", line, maxsplit=1) for line in result.stdout.splitlines())
    assert [label for label in SECTIONS if not rows.get(label, "- ").startswith("- ")] == shown
    lost = [label for label, value in rows.items() if value.startswith("- ")]
    assert lost == [{"power_supply": "Power supply"}.get(word, word.capitalize()) for word in missing]
    assert {rows[label] for label in lost} <= {"- (no answer)" if "silence" in fault else "- (no good answer)"}
    words = ", ".join(missing).replace("_", " ")
    assert (result.returncode, result.stderr) == ((0, "") if not missing else (
        13, f"vx63: cannot read all of the status: missing is {words}: repeat the command; if that does not "
        "help, 'vx63 doctor' tells which service is at fault\n"))


def test_status_asks_a_silent_service_once(meter):
    result = meter.vx63("status", "--json", fault="dev=silence")
    assert result.returncode == 13
    status = json.loads(result.stdout)
    assert (status["device"], status["power_supply"], status["measuring"], status["standby"]) == (None, None, False, "none")
    assert status["missing"] == ["power_supply", "device"]
    assert error(result)["kind"] == "incomplete"
    assert [name for name, _ in meter.requests()] == ["meas-status", "power-supply-info", "standby-state"]


def test_status_of_a_meter_that_sleeps(meter):
    result = meter.shell("$VX63 power standby; $VX63 status; $VX63 status --json")
    assert (result.returncode, result.stderr) == (0, "")
    *rows, line = result.stdout.splitlines()
    assert rows[-1] == "Standby           meter: asleep, measures nothing; 'vx63 power wakeup' wakes it"
    assert (json.loads(line)["standby"], json.loads(line)["missing"]) == ("meter", [])


def test_status_of_a_meter_that_tells_nothing_asleep(meter):
    result = meter.shell("$VX63 power standby; $VX63 status; $VX63 status --json", fault="meas/meas-status=ret,6")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout.startswith("Measurement      - (asleep)\n")
    status = json.loads(result.stdout.splitlines()[-1])
    assert (status["measuring"], status["measurement_status_code"], status["missing"]) == (None, None, [])
