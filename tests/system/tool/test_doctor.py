"""vx63 doctor: the right service and the right kind, or nothing claimed."""

import json
import os
import pwd

import pytest

from conftest import AS_NOBODY, EXCHANGE, cannot
from tool_support import SOURCE, VX63, Terminal, as_text, environment, isolation, meter, run  # noqa: F401 (fixtures)

LOG = "/var/log/libvx63.cpp.txt"
SERVICES = ["sys", "dev", "key", "buz", "meas"]
ROOT = "/usr/local/bin"
FOLDERS = ["sys_set", "meas_set", "user_set", "user_set_usb1", "user_set_usb2", "logger_set", "logger_set_usb1",
           "logger_set_usb2", "ch_set", "pmeas_set"]


def diagnose(meter, fault=(), before="true", doctor="$VX63 doctor --json", by=()):
    """The exit code, what stands on stderr in its form for people, and the report."""
    result = meter.shell(f"{before}; {doctor}", fault=fault, by=by)
    return result.returncode, as_text(result.stderr), json.loads(result.stdout)


def wrong(report):
    return {check["subject"]: check["kind"] for check in report["checks"] if check["health"] == "wrong"}


def test_healthy(meter):
    result = meter.vx63("doctor")
    assert (result.returncode, result.stderr) == (0, "")
    lines = result.stdout.splitlines()
    assert [line.split("  ")[0] for line in lines[:9]] == [
        "Message queues", "System service", "Device service", "Key service", "Buzzer service", "Measurement service",
        "Log", "Settings folders", "Settings files"]
    assert lines[7:] == ["Settings folders     ok     10 readable", "Settings files       ok     44 well formed", "",
                         "Nothing wrong was found."]
    assert all(len(line) <= 80 for line in lines)


def test_healthy_as_json(meter):
    code, error, report = diagnose(meter)
    assert (code, error, report["healthy"], report["first_wrong"], wrong(report)) == (0, "", True, None, {})
    checks = report["checks"]
    assert [check["subject"] for check in checks if check["step"] == "services"] == SERVICES
    assert all(isinstance(check["ms"], float) for check in checks if check["step"] == "services")
    assert [check["step"] for check in checks if check["step"] != "files"] == (
        ["queues"] + ["services"] * 5 + ["log"] + ["folders"] * 10)


def test_nothing_is_changed(meter):
    """What it asks may be asked of any meter at any time."""
    diagnose(meter)
    assert [name for name, _ in meter.requests()] == [
        *["product", "device-status", "key-status", "buzzer", "meas-status"] * 2, "product", "standby-state"]


# What can be seen of each fault through the library. None: nothing.
SEEN = {
    "twice": dict.fromkeys(SERVICES, "unexpected-answer"),
    "refuse": dict.fromkeys(SERVICES, "refused"),
    "ret": {"sys": "senseless-answer", "dev": None, "key": None, "buz": "failure-result", "meas": "failure-result"},
    "wrong": dict.fromkeys(SERVICES, "wrong-command"),
    "stray": dict.fromkeys(SERVICES, "stray-request"),
    "cut": {"sys": "empty-answer", "dev": "empty-answer", "key": None, "buz": None, "meas": None},
    "oversized": dict.fromkeys(SERVICES),
    "garbage": {"sys": "senseless-answer", "dev": "senseless-answer", "key": "senseless-answer",
                "buz": "failure-result", "meas": "failure-result"},
}


@pytest.mark.parametrize("service", SERVICES)
@pytest.mark.parametrize("kind", SEEN)
def test_fault(meter, kind, service):
    # The doctor gives way to the services: a second answer is there when it looks again.
    code, error, report = diagnose(meter, f"{service}={kind}", doctor="nice -n 19 $VX63 doctor --json")
    expected = SEEN[kind][service]
    if expected is None:
        assert (code, error, wrong(report)) == (0, "", {})
    else:
        assert (code, wrong(report)) == (5, {service: expected})
        first = report["first_wrong"]
        assert (first["subject"], first["kind"]) == (service, expected)
        assert first["text"] in error and first["remedy"] in error and error.count("\n") == 1


@pytest.mark.parametrize("service", SERVICES)
def test_wrong_command_once(meter, service):
    code, _, report = diagnose(meter, f"{service}:1=wrong")
    assert (code, wrong(report)) == (5, {service: "unexpected-answer"})


@pytest.mark.parametrize("service", SERVICES)
def test_late(meter, service):
    code, error, report = diagnose(meter, f"{service}=late")
    assert (code, error, wrong(report)) == (0, "", {})
    slow = {check["subject"] for check in report["checks"] if check["kind"] == "slow"}
    assert service in slow


@pytest.mark.parametrize("fault, service", [("sys=silence", "sys"), ("meas=die,10", "meas")])
def test_no_answer(meter, fault, service):
    """Each takes the library's time-out of 10 seconds."""
    code, error, report = diagnose(meter, fault)
    assert (code, wrong(report)) == (5, {service: "no-answer"})
    assert "does not answer in time" in error


def test_answer_after_the_time_out(meter):
    """Takes the library's time-out: the key service keeps the doctor until the answer of the other has come."""
    code, _, report = diagnose(meter, ["sys=late,10500", "dev=late,2000"])
    assert (code, wrong(report)) == (5, {"sys": "late-answer"})


def test_waiting_is_told_on_a_terminal(meter):
    terminal = Terminal(*meter.command(VX63, "doctor", fault="key=late,1000"))
    terminal.wait_for("Waiting for the Key service (10 s at most)")
    assert terminal.finish() == 0


def test_answer_to_somebody_who_was_killed(meter):
    script = ("$VX63 info > \"$DIR/out\" & until grep -qs product \"$DIR/trace.jsonl\"; do :; done; "
              "kill -9 $!; wait $! 2> /dev/null")
    code, _, report = diagnose(meter, "sys/product:1=late,500", before=script)
    assert code in (0, 5)  # the answer may come before or after the doctor
    assert set(wrong(report).items()) <= {("sys", "unexpected-answer")}


def test_answers_that_others_do_not_take(meter):
    """An application that was given two answers to one request, as one that polls leaves its queue."""
    script = f"printf 'send 12 030c170004000000{'00' * 4}\\nreceive 3 60000\\n' | {EXCHANGE} > $DIR/out"
    code, error, report = diagnose(meter, "meas/meas-status:1=twice", before=script)
    assert (code, error, report["healthy"]) == (0, "", True)
    assert [check for check in report["checks"] if check["kind"] == "untaken"] == [{
        "step": "queues", "subject": "Process id 3", "health": "note", "kind": "untaken",
        "text": "1 in its queue that nobody takes: who calls as 3 gets old answers", "remedy": None, "ms": None}]


@pytest.mark.parametrize("service, number, command", [("sys", "00", "0500"), ("meas", "0c", "1700")])
def test_an_answer_too_many_in_its_own_queue(meter, service, number, command):
    """Also one to the very question that is asked first."""
    asked = f"echo send {int(number, 16)} 11{number}{command}0400000000000000 | {EXCHANGE} > $DIR/out"
    # The doctor gives way to the services, as above.
    code, error, report = diagnose(meter, before=asked, doctor="nice -n 19 $VX63 doctor --json")
    assert (code, wrong(report)) == (5, {service: "unexpected-answer"})
    assert "that nothing waits for" in error and "call vx63 with another --id" in error


def test_an_answer_too_many_is_told_once(meter):
    result = meter.shell(f"echo send 0 110005000400000000000000 | {EXCHANGE} > $DIR/out; "
                         "nice -n 19 $VX63 doctor > $DIR/out 2>&1; echo $?; $VX63 doctor > $DIR/out; echo $?")
    assert result.stdout == "5\n0\n"


def test_queues_of_another_user(meter, as_root, public_bin, isolation):
    script = f"touch {LOG}; chmod 666 {LOG}; {' '.join(AS_NOBODY)} {public_bin}/vx63 doctor --json"
    result = run(*as_root, *meter.command("sh", "-c", script))
    assert result.returncode == 5
    expected = dict.fromkeys(["Message queues", *SERVICES], "queue")
    if isolation:  # the settings of a meter in place are its user's alone
        expected |= dict.fromkeys([f"{ROOT}/{name}" for name in FOLDERS], "unreadable")
    assert wrong(json.loads(result.stdout)) == expected
    assert as_text(result.stderr).startswith("vx63: Message queues: System service: its message queue is not permitted (lmsg_err=-2): ")


NOT_TRUSTED = ("is not trusted: /vx63.{} belongs to {}, mode 0666 (lmsg_err=-7): call vx63 as the user who runs the "
               "services, or remove the queue as its owner or root ('rm /dev/mqueue/vx63.N')\n")


def test_queue_of_a_service_that_others_may_use(meter):
    code, error, report = diagnose(meter, before="chmod 666 /dev/mqueue/vx63.12")
    assert (code, wrong(report)) == (5, {"Message queues": "queue", "meas": "queue"})
    user = pwd.getpwuid(os.getuid()).pw_name
    assert error == ("vx63: Message queues: Measurement service: its message queue "
                     + NOT_TRUSTED.format(12, f"{user} ({os.getuid()})"))


def test_own_queue_that_another_user_made_first(meter, public_bin):
    """What it plants there is not taken."""
    if os.getuid() != 0:
        cannot("needs another user")
    squatter = f"{' '.join(AS_NOBODY)} {public_bin}/vmeter_exchange"
    planted = bytes([0, 17, 1, 0x80, 44, 0, 0, 0, *[0x41] * 44]).hex()
    before = f"printf 'receive 17 0\nsend 17 {planted}\n' | {squatter} > /dev/null; chmod 666 /dev/mqueue/vx63.17"
    code, error, report = diagnose(meter, before=before)
    assert (code, wrong(report)) == (5, dict.fromkeys(["Message queues", *SERVICES], "own-queue"))
    nobody = pwd.getpwuid(65534).pw_name
    assert error == ("vx63: Message queues: System service: the message queue for its answers "
                     + NOT_TRUSTED.format(17, f"{nobody} (65534)"))
    result = meter.shell(f"{before}; $VX63 info")
    assert (result.returncode, result.stdout) == (1, "")
    assert "the message queues cannot be used (lmsg_err=-7): 'vx63 doctor' tells why" in result.stderr


def test_queue_of_the_id_that_is_given(meter):
    """Of which alone the doctor tells that has the same id."""
    made = "$VX63 info --id 3 > $DIR/out; chmod 666 /dev/mqueue/vx63.3"
    result = meter.shell(f"{made}; $VX63 info --id 3")
    assert (result.returncode, result.stdout) == (1, "")
    assert "the message queues cannot be used (lmsg_err=-7): 'vx63 doctor --id 3' tells why" in result.stderr
    code, _, report = diagnose(meter, before=made, doctor="$VX63 doctor --json --id 3")
    assert (code, wrong(report)) == (5, dict.fromkeys(["Message queues", *SERVICES], "own-queue"))


def test_standby_is_worth_a_note(meter):
    result = meter.shell("$VX63 power standby; $VX63 doctor")
    assert (result.returncode, result.stderr) == (0, "")
    assert "Standby              note   asleep, measures nothing: see 'vx63 power wakeup'\n" in result.stdout


# ---- log ----


@pytest.mark.parametrize("make, kind, text", [
    (f"rm -f {LOG}; mkdir {LOG}", "no-file", "it is no file"),
    (f"rm -f {LOG}; mkfifo {LOG}", "no-file", "it is no file"),
    (f"rm -f {LOG}; ln -s /nowhere/log {LOG}", "unwritable", "it cannot be made: No such file or directory"),
])
def test_log_that_cannot_be_written(meter, make, kind, text):
    code, error, report = diagnose(meter, before=make)
    assert (code, wrong(report)) == (5, {LOG: kind})
    assert error.startswith(f"vx63: {LOG}: {text}")


@pytest.mark.parametrize("kind", ["twice", "refuse", "wrong", "stray"])
def test_without_a_log_nobody_is_blamed(meter, kind):
    unknown = False
    for _ in range(10 if kind == "twice" else 1):  # the last of its answers may come when the doctor has gone
        code, _, report = diagnose(meter, f"key={kind}", before=f"mkdir {LOG}")
        assert (code, wrong(report)) == (5, {LOG: "no-file"})
        unknown = unknown or any(check["kind"] == "unknown" for check in report["checks"])
    assert unknown


def within(options, doctor="doctor --json"):
    """The doctor in surroundings of its own inside the meter's: by root, since anybody else gets a user namespace of
    its own there, from which the services cannot be looked at."""
    return f"bwrap --dev-bind / / {options} $VX63 {doctor}"


def test_full_disk(meter, as_root, isolation):
    if isolation:
        cannot("needs namespaces")
    filled = "--size 8192 --tmpfs /var/log sh -c 'head -c 9000 /dev/zero > /var/log/filler 2> /dev/null; $VX63 doctor --json'"
    code, _, report = diagnose(meter, doctor=f"bwrap --dev-bind / / {filled}", by=as_root)
    assert (code, wrong(report)) == (5, {LOG: "disk-full"})


# ---- settings ----


def test_removed_folders(meter, as_root, isolation):
    if isolation:
        cannot("needs namespaces")
    code, error, report = diagnose(meter, doctor=within(f"--tmpfs {ROOT}"), by=as_root)
    assert code == 5
    assert wrong(report) == {f"{ROOT}/{name}": "missing"
                             for name in ["sys_set", "meas_set", "ch_set", "pmeas_set", "user_set", "logger_set"]}
    assert error == (f"vx63: {ROOT}/sys_set: No such file or directory: make the folder, then restore its files\n")


@pytest.mark.parametrize("break_it, why", [
    ("echo 9.9.9 > {}", "line 1: not the expected version"),
    (": > {}", "line 1: cut short: no newline at the end of the file"),
    ("sed -i '$s/,.*//' {}", "line 8, column 1: wrong number of columns"),
    ("sed -i '$s/[0-9]*$/x/' {}", "line 8, column 3: not a number"),
    ("sed -i '$s/[0-9]*$/4294967296/' {}", "line 8, column 3: number out of range"),
    ("sed -n '3p' {} >> {}", "line 9: too many records"),
    ("truncate -s -1 {}", "line 8, column 3: cut short: no newline at the end of the file"),
    ("sed -i '$d' {}", "5 records instead of 6"), ("rm {}; mkdir {}", "not a regular file"),
])
def test_broken_file(meter, break_it, why):
    """In the words of 'vx63 settings check'."""
    path = f"{ROOT}/ch_set/channel_setting_file_lte.csv"
    doctor = "$VX63 settings check | grep lte > $DIR/check; $VX63 doctor --json"
    code, error, report = diagnose(meter, before=break_it.replace("{}", path), doctor=doctor)
    assert (code, wrong(report)) == (5, {path: "broken"})
    assert error == f"vx63: {path}: {why}: correct {path}, or use 'vx63 settings reset ch_set/lte'\n"
    assert (meter.folder / "check").read_text().split(maxsplit=1) == ["ch_set/lte", f"broken: {why}\n"]


def test_list_that_disagrees_with_its_sets(meter):
    path = f"{ROOT}/user_set/user_setting_file_list.csv"
    code, error, report = diagnose(meter, before=f"$VX63 sets create A --from ch_set/lte; rm {ROOT}/user_set/A.csv")
    assert (code, wrong(report)) == (5, {path: "broken"})
    assert error == (f"vx63: {path}: record 0 names 'A', which has no file: "
                     f"correct {path}, or use 'vx63 settings reset user_set/list'\n")


def test_files_that_are_missing_are_no_fault(meter):
    result = meter.shell(f"rm {ROOT}/sys_set/*.csv {ROOT}/user_set/*.csv; $VX63 doctor")
    assert (result.returncode, result.stderr) == (0, "")
    assert "  sys_set/system_setting_file_volume.csv" in result.stdout
    assert "note   missing: the factory contents hold" in result.stdout
    assert "note   missing: no set is listed" in result.stdout


def test_broken_set(meter):
    path = f"{ROOT}/logger_set_usb2/MY SET.csv"
    create = "$VX63 sets create 'MY SET' --logger --usb2 --from ch_set/lte"
    code, error, report = diagnose(meter, before=f"{create}; sed -i 3s/^1,/256,/ '{path}'")
    assert (code, wrong(report)) == (5, {path: "broken"})
    assert error == (f"vx63: {path}: line 3, column 1: number out of range: "
                     f"correct {path}, or use 'vx63 sets delete'\n")


def test_first_of_several(meter):
    """Services stand before the log, the log before the settings."""
    code, error, report = diagnose(meter, "key=refuse", before=f": > {ROOT}/ch_set/channel_setting_file_lte.csv")
    assert code == 5
    assert len(wrong(report)) == 2
    assert error.startswith("vx63: Key service: refuses the request (usOptOrRet=0001): ")
