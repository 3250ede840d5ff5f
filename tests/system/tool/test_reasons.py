"""Why the meter does not do what it is asked, and what to try: exit code, kind and the line on standard error."""

import json
import re

import pytest

from conftest import VMETER, cannot
from tool_support import SOURCE, VX63, Terminal, environment, isolation, meter, run  # noqa: F401 (fixtures)

NO_METER = "no meter: no process serves the message queues"
START_ONE = "start one with 'vx63-vmeter run -- COMMAND', or the services of the meter"
RESTARTS = "the meter restarts, or hangs: none of its services answers"
UPDATE = ["update", "--program", "main", "--new-version", "2.0", "--size", "1048576", "--yes"]
SECTIONS = ["Measuring", "Power supply", "Battery", "Standby"]


def alone(*command):
    """Without any meter, in an IPC namespace of its own."""
    result = run(SOURCE / "tests" / "isolated", *command, env=environment(VX63=str(VX63), VMETER=str(VMETER)))
    if result.returncode == 77:
        cannot(result.stderr)
    # Where namespaces are refused a line tells of it.
    result.stderr = re.sub(r"^isolated: .*\n", "", result.stderr)
    return result


def error(result):
    """The one line of JSON on standard error."""
    assert result.stderr.count("\n") == 1
    return json.loads(result.stderr)["error"]


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


# ---- no answer: each takes the library's time-out of 10 seconds once or twice ----

def test_all_are_silent(meter):
    result = meter.shell("$VX63 power shutdown --yes; $VX63 info")
    assert result.returncode == 11
    assert result.stderr.startswith(f"vx63: cannot read the product data: {RESTARTS}: wait and repeat the command, or switch ")
    assert [name for name, _ in meter.requests()][-2:] == ["product", "device-status"]


def test_all_are_silent_as_json(meter):
    result = meter.shell("$VX63 power shutdown --yes; $VX63 status --json")
    assert (result.returncode, result.stdout) == (11, "")
    assert (error(result)["kind"], error(result)["exit_code"], error(result)["why"]) == ("restarting", 11, RESTARTS)


def test_one_was_busy(meter):
    result = meter.vx63("power-supply", fault="dev:1=silence")
    assert (result.returncode, result.stderr) == (11, "vx63: cannot read the power supply: the meter was restarting or "
                                                      "busy, and answers again: repeat the command; if it "
                                                      "fails again, 'vx63 doctor' and 'vx63 log --errors' tell more\n")


def test_looking_at_a_meter_that_restarts(meter):
    """The first service is asked before the restart is over, and answers once the others do."""
    result = meter.shell("$VX63 power reboot --yes; $VX63 doctor")
    assert (result.returncode, result.stderr) == (0, "")
    assert re.search("^System service +note +did not answer at first, and does now: the meter restarted, or was busy$",
                     result.stdout, re.M)
    result = meter.shell("$VX63 power reboot --yes; $VX63 status --json")
    assert (result.returncode, result.stderr) == (0, "")
    assert json.loads(result.stdout)["missing"] == []


def test_one_is_silent(meter):
    result = meter.vx63("power-supply", fault="dev=silence")
    assert result.returncode == 1
    assert result.stderr.startswith("vx63: cannot read the power supply: the device service does not answer, the others do: ")


def test_one_does_not_run(meter):
    result = meter.vx63("power-supply", fault="dev=die,60000")
    assert result.returncode == 1
    assert result.stderr.startswith("vx63: cannot read the power supply: the device service does not run: ")


def test_a_start_without_answer_is_stopped(meter):
    """The stop asks the silent service once more."""
    result = meter.vx63("measure", "single", "--freq", "557143", fault="meas/single-start:1=silence")
    assert result.returncode == 11
    assert [name for name, _ in meter.requests()][-3:] == ["single-start", "product", "single-start"]


def test_waiting_is_told_on_a_terminal(meter):
    terminal = Terminal(*meter.command(VX63, "power-supply", fault=["dev:1=silence", "sys=late,1000"]))
    terminal.wait_for("No answer: asking the system service (10 s at most)")
    assert terminal.finish() == 11


# ---- update ----

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


# ---- reboot ----

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


# ---- status ----

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
