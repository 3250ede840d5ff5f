"""Why the meter does not do what it is asked, and what to try: exit code, kind and the line on standard error."""

import json
import re

import pytest

from conftest import VMETER, cannot
from tool_support import SOURCE, VX63, environment, error, isolation, meter, run  # noqa: F401 (fixtures)

NO_METER = "no meter: no process serves the message queues"
START_ONE = "start one with 'vx63-vmeter run -- COMMAND', or the services of the meter"


def alone(*command):
    """Without any meter, in an IPC namespace of its own."""
    result = run(SOURCE / "tests" / "isolated", *command, env=environment(VX63=str(VX63), VMETER=str(VMETER)))
    if result.returncode == 77:
        cannot(result.stderr)
    # Where namespaces are refused a line tells of it.
    result.stderr = re.sub(r"^isolated: .*\n", "", result.stderr)
    return result


# ---- no meter ----

def test_no_meter():
    result = alone(VX63, "info")
    assert (result.returncode, result.stdout) == (12, "")
    assert result.stderr == f"vx63: cannot read the product data: {NO_METER}: {START_ONE}\n"


def test_no_meter_as_json():
    result = alone(VX63, "status", "--json")
    assert (result.returncode, result.stdout) == (12, "")
    assert error(result) == {"kind": "no-meter", "exit_code": 12, "what": "cannot read the status", "why": NO_METER,
                             "hint": START_ONE}


def test_nothing_is_sent_where_nobody_is():
    """The library writes a line for every call but has written none but those of its start."""
    result = alone("sh", "-c", "log=/var/log/libvx63.cpp.txt; touch $log; before=$(wc -l < $log); $VX63 info; "
                               "tail -n +$((before + 1)) $log")
    assert "vx63_init() : End." in result.stdout
    assert "vx63_getProductInfo" not in result.stdout


LEFT = "$VMETER serve -- true; "  # leaves its queues behind


def test_queues_that_were_left_behind():
    """Takes the library's time-out of 10 seconds: queues without a process may be about to get one."""
    result = alone("sh", "-c", LEFT + "$VX63 info")
    assert (result.returncode, result.stderr) == (12, f"vx63: cannot read the product data: {NO_METER}: {START_ONE}\n")


@pytest.mark.parametrize("before", ["", LEFT])
def test_doctor_where_nobody_is(before):
    """Asks nobody, so waits for nobody."""
    result = alone("sh", "-c", before + "$VX63 doctor --json")
    assert result.returncode == 5
    assert result.stderr.count("\n") == 1  # as JSON
    assert error(result)["hint"] == START_ONE
    report = json.loads(result.stdout)
    assert [(check["subject"], check["kind"], check["ms"]) for check in report["checks"][:6]] == [
        ("Message queues", "no-meter", None),
        *[(word, "not-running", None) for word in ("sys", "dev", "key", "buz", "meas")]]


def test_doctor_where_one_service_is_missing(meter):
    """The request that kills the key service is the last one that it gets: the doctor does not ask it. Who asked
    is gone by then, since its descriptor of the queue could be that of a service."""
    script = ("$VX63 keys > \"$DIR/out\" 2>&1 & until grep -qs key-status \"$DIR/trace.jsonl\"; do :; done; "
              "kill $!; wait $! 2> /dev/null; $VX63 doctor --json")
    result = meter.shell(script, fault="key=die,60000")
    report = json.loads(result.stdout)
    wrong = {check["subject"]: (check["kind"], check["text"]) for check in report["checks"] if check["health"] == "wrong"}
    assert wrong["key"] == ("not-running", "its process does not run")
    assert "sys" not in wrong and "meas" not in wrong
    assert [name for name, _ in meter.requests()].count("key-status") == 1


# ---- asleep ----

@pytest.mark.parametrize("sleep, why, hint", [
    ("", "the meter sleeps", "wake it up with 'vx63 power wakeup'"),
    ("--measurement", "the measuring part sleeps", "wake it up with 'vx63 power wakeup --measurement'"),
])
def test_asleep(meter, sleep, why, hint):
    result = meter.shell(f"$VX63 power standby {sleep}; $VX63 measure single --freq 557143")
    assert (result.returncode, result.stdout) == (9, "")
    assert result.stderr == f"vx63: cannot start the measurement: {why}: {hint}\n"
    result = meter.shell(f"$VX63 power standby {sleep}; $VX63 measure single --freq 557143 --json")
    assert (result.returncode, result.stdout) == (9, "")
    assert error(result) == {"kind": "asleep", "exit_code": 9, "what": "cannot start the measurement", "why": why,
                             "hint": hint}


def test_waking_what_cannot_be_woken(meter):
    result = meter.shell("$VX63 power standby; $VX63 power wakeup --measurement")
    assert (result.returncode, result.stderr) == (9, "vx63: cannot wake the meter up: the whole meter sleeps, not its "
                                                     "measuring part alone: wake it up with 'vx63 power wakeup'\n")
    result = meter.shell("$VX63 power standby; $VX63 battery low; $VX63 power wakeup")
    assert (result.returncode, result.stderr) == (1, "vx63: cannot wake the meter up: it answers that it cannot, as it "
                                                     "does with a low battery: charge the battery, or use 'vx63 power "
                                                     "wakeup --force'\n")


# ---- as JSON ----

def test_wrong_usage_as_json():
    result = run(VX63, "info", "--wrong", "--json")
    assert (result.returncode, result.stdout) == (64, "")
    assert error(result) == {"kind": "usage", "exit_code": 64, "what": "wrong usage of 'vx63 info'",
                             "why": "'--wrong' is no option", "hint": "see 'vx63 info --help'"}


def test_json_behind_the_end_of_the_options_is_none():
    result = run(VX63, "info", "--", "--json")
    assert result.returncode == 64
    assert result.stderr.startswith("vx63: wrong usage of 'vx63 info': ")
