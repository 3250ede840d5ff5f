"""What the meter is and how it is, and what switches it: seen in its own state."""

import json
import re
import struct

import pytest

from conftest import EXCHANGE, VMETER
from tool_support import VX63, Terminal, environment, isolation, meter, run  # noqa: F401 (fixtures)


@pytest.fixture
def device(meter, tmp_path):
    """Runs a script over a meter and gives the result and the state in which the meter ends."""

    def script(text, scene="", fault=()):
        state_file = tmp_path / "state.json"
        meter.show(scene)
        command = meter.command("sh", "-c", text, fault=fault, options=["--state-json", state_file])
        result = run(*command, env=environment(VX63=str(VX63), VMETER=str(VMETER), DIR=str(tmp_path)))
        return result, json.loads(state_file.read_text())

    return script


# ---- what is shown ----

def test_info(meter):
    result = meter.vx63("info")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == ("Model          VX63\n"
                             "Option         STD\n"
                             "Serial number  VX6300000001\n"
                             "Product        1.0.0\n"
                             "Boot program   1.0.0\n"
                             "Main program   1.0.0\n"
                             "Sub program    1.0.0\n"
                             "Qt             5.15.2\n")


def test_info_of_full_fields(device):
    scene = '[product]\nmodel_code = "12345678"\noption_info = "abcde"\nserial_no = "123456789012"\n'
    result, _ = device("$VX63 info --json", scene)
    assert (result.returncode, result.stderr) == (0, "")
    assert json.loads(result.stdout) == {
        "model_code": "12345678", "option_info": "abcde", "serial_no": "123456789012", "boot_version": "1.0.0",
        "main_version": "1.0.0", "sub_version": "1.0.0", "qt_version": "5.15.2", "product_version": "1.0.0"}


def test_info_of_rubbish(meter):
    """Whatever bytes come, the terminal is safe and JSON is JSON."""
    result = meter.shell("$VX63 info && $VX63 info --json", fault="sys=garbage")
    assert (result.returncode, result.stderr) == (0, "")
    assert all(line.isprintable() for line in result.stdout.splitlines()[:8])
    assert set(json.loads(result.stdout.splitlines()[-1])) >= {"model_code", "product_version"}


def test_device_status(device):
    scene = ('[device]\nbattery_percent = 12\nbattery_mv = 6400\nlow_battery = true\nexternal_power = true\n'
             'charging = "charging"\ntemperature_c = 45\nusb2 = true\n')
    result, _ = device("$VX63 status | tail -n 8 | head -n 7; $VX63 status --json", scene)
    assert (result.returncode, result.stderr) == (0, "")
    lines = result.stdout.splitlines()
    assert lines[:7] == ["Battery           12 %", "Battery voltage   6400 mV", "Battery state     low",
                         "Fed by            external power", "Charger           charging", "Temperature       45 C",
                         "USB memory        in slot 2"]
    assert json.loads(lines[7])["device"] == {
        "battery_percent": 12, "battery_mv": 6400, "low_battery": True, "external_power": True, "charger": "charging",
        "temperature_c": 45, "usb1": False, "usb2": True, "battery_state_code": 1, "feed_code": 1, "charger_code": 1,
        "usb_code": 2}


def test_keys(device):
    scene = "".join(f"[[key]]\ntime_ms = 0\nkey = {key}\nduration_ms = 100000\n" for key in (3, 16))
    result, _ = device("$VX63 keys; $VX63 keys --json", scene)
    assert (result.returncode, result.stderr) == (0, "")
    text, line = result.stdout.splitlines()
    assert text == "Pressed  3, 16"
    keys = json.loads(line)
    assert (keys["pressed"], keys["key_codes"]) == ([3, 16], [0, 0, 0, 1] + [0] * 12 + [1])
    assert isinstance(keys["time"], float)


def test_keys_watched(device):
    """A look takes 100 ms of the scene's time: key 5 is seen on the third and fourth, key 0 on the fourth."""
    scene = ("[[key]]\ntime_ms = 200\nkey = 5\nduration_ms = 200\n"
             "[[key]]\ntime_ms = 300\nkey = 0\nduration_ms = 100\n")
    result, _ = device("$VX63 keys --watch --interval 0 --jsonl | head -n 4", scene)
    assert [json.loads(line)["pressed"] for line in result.stdout.splitlines()] == [[], [5], [0, 5], []]
    assert result.stderr == ""


def test_watching_ends_with_ctrl_c(meter):
    terminal = Terminal(*meter.command(VX63, "keys", "--watch"))
    terminal.wait_for("none")
    terminal.type("\x03")
    assert terminal.finish() == 130


# ---- failure record ----

def test_failure_is_set_shown_and_cleared(device):
    result, state = device("$VX63 failure set 0x0102 --info 00ffA0; $VX63 failure show --json; $VX63 failure show")
    assert (result.returncode, result.stderr) == (0, "")
    line, text = result.stdout.split("\n", 1)
    assert json.loads(line) == {"code": 0x102, "present": True, "state_code": 1, "control_code": 0, "wait": 0,
                                "info": "00ffa0" + "00" * 29}
    assert text == ("Failure      present\nCode         0x0102\nControl      0x00\nWait         0\n"
                    "Information  00ffa000000000000000000000000000\n"
                    "             00000000000000000000000000000000\n")
    assert (state["failure"]["code"], state["failure"]["state"]) == (0x102, 1)
    result, state = device("$VX63 failure clear", "[failure]\ncode = 7\nstate = 1\ninfo = \"ff\"\n")
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert (state["failure"]["code"], state["failure"]["state"], state["failure"]["info"]) == (0, 0, "00" * 32)


# ---- power ----

def test_standby_and_wake_up(device):
    result, state = device("$VX63 power state; $VX63 power standby; $VX63 power state; $VX63 power state --json")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == 'Standby  none\nStandby  meter\n{"standby":"meter","standby_code":1}\n'
    assert state["power"]["state"] == "standby"
    result, state = device("$VX63 power standby --measurement; $VX63 power state; $VX63 power wakeup --measurement")
    assert result.stdout == "Standby  measurement\n"
    assert state["power"]["standby"] == 0
    result, state = device("$VX63 power standby --force; $VX63 power state")
    assert result.stdout == "Standby  measurement\n"


def test_low_battery_keeps_a_meter_asleep_unless_forced(device):
    scene = '[power]\nstandby = "meter"\n'
    result, state = device("$VX63 battery low; $VX63 power wakeup", scene)
    assert result.returncode == 1
    assert result.stderr.startswith("vx63: cannot wake the meter up: ")
    assert state["power"]["standby"] == 1
    result, state = device("$VX63 battery low; $VX63 power wakeup --force; $VX63 battery ok; $VX63 battery ok", scene)
    assert (result.returncode, result.stderr) == (0, "")
    assert (state["power"]["standby"], state["power"]["low_battery"]) == (0, False)


def test_reboot_and_shutdown(device):
    result, state = device("$VX63 power reboot --yes", "[power]\nreboot_ms = 1\n")
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert state["power"]["reboots"] == 1
    result, state = device("$VX63 power shutdown --yes")
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert state["power"]["state"] == "off"


def test_factory_reset(device):
    result, state = device("rm /usr/local/bin/ch_set/channel_setting_file_fm.csv; echo x > /usr/local/bin/user_set/A.csv; "
                           "$VX63 factory-reset --yes; ls /usr/local/bin/user_set; "
                           "ls /usr/local/bin/ch_set/channel_setting_file_fm.csv")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == "user_setting_file_list.csv\n/usr/local/bin/ch_set/channel_setting_file_fm.csv\n"
    assert state["power"]["factory_resets"] == 1


UPDATE = ["update", "--program", "main", "--new-version", "2.0", "--size", "1048576"]
DANGEROUS = [["power", "reboot"], ["power", "shutdown"], ["factory-reset"], UPDATE]


@pytest.mark.parametrize("words", DANGEROUS)
def test_nothing_is_done_without_a_yes(meter, words):
    result = meter.vx63(*words)
    assert (result.returncode, result.stdout) == (77, "")
    assert result.stderr.startswith("vx63: nothing was done: there is no terminal to ask on: ")
    assert meter.requests() == []


@pytest.mark.parametrize("words", DANGEROUS)
@pytest.mark.parametrize("answer", ["\n", "n\n", "x\n", "\x04"])
def test_no_is_the_default(meter, words, answer):
    terminal = Terminal(*meter.command(VX63, *words))
    terminal.wait_for("[y/N] ")
    terminal.type(answer)
    assert terminal.finish() == 77
    assert "nothing was done" in terminal.shown
    assert meter.requests() == []


def test_yes_on_a_terminal(meter):
    terminal = Terminal(*meter.command(VX63, *UPDATE))
    terminal.wait_for("Update the program? ")
    terminal.type("y\n")
    assert terminal.finish() == 0
    assert re.search(r"Updating, step 6: the main program to 2\.0, 1024 KiB", terminal.shown)
    assert [name for name, _ in meter.requests()] == ["product"] + ["update"] * 6


@pytest.mark.parametrize("command, name", [(["power", "reboot"], "reboot"), (["factory-reset"], "factory-default")])
def test_a_failure_is_not_tried_again(meter, command, name):
    result = meter.vx63(*command, "--yes", fault=f"sys/{name}=ret,1")
    assert result.returncode == 1
    assert [request for request, _ in meter.requests()] == ["product", name]


def test_nothing_dangerous_while_old_answers_are_in_the_way(meter):
    result = meter.vx63("power", "reboot", "--yes", fault=["sys/product:1=wrong", "sys/product:3=wrong"])
    assert result.returncode == 1
    assert "answers to somebody's earlier calls seem to be in the way" in result.stderr
    assert {request for request, _ in meter.requests()} == {"product"}


def test_the_answer_to_a_killed_vx63_is_taken_out(meter):
    """Each that is killed as it waits leaves one; four of them fill the queue."""
    result = meter.shell(f"""
        yes 'send 0 110005000400000000000000' | head -n 4 | {EXCHANGE} > /dev/null
        $VX63 info --id 16 > /dev/null  # its answer comes behind the others
        $VX63 power state > /dev/null; echo $?
        echo 'send 0 110005000400000000000000' | {EXCHANGE} > /dev/null; $VX63 info --id 16 > /dev/null
        $VX63 power reboot --yes; echo $?
    """)
    assert (result.stdout, result.stderr) == ("0\n0\n", "")


# ---- update ----

def request_bytes(version=b"2.0"):
    body = struct.pack("<4sBBH16sI", b"VXUP", 2, 0, 0, version, 1 << 20)
    return body + struct.pack("<I", sum(body))


def test_update_from_options(device, meter):
    result, state = device("$VX63 " + " ".join(UPDATE) + " --yes")
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert (state["product"]["main_version"], state["update"]["finished"]) == ("2.0", 1)
    bodies = {message["body"] for message in meter.messages()
              if message["kind"] == "request" and message["command"] == "update"}
    assert bodies == {request_bytes().hex()}


@pytest.mark.parametrize("program, source, codes", [
    ("boot", "internal", (1, 0)), ("sub", "usb1", (3, 1)), ("qt", "usb2", (4, 2)), ("product", "usb1", (5, 1)),
])
def test_update_names_the_program_and_its_place(device, meter, program, source, codes):
    device(f"$VX63 update --program {program} --source {source} --new-version 2.0 --size 1 --yes")
    body = next(bytes.fromhex(message["body"]) for message in meter.messages()
                if message["kind"] == "request" and message["command"] == "update")
    assert (body[4], body[5]) == codes


def test_update_from_a_file(device, tmp_path):
    (tmp_path / "request").write_bytes(request_bytes(b"3.1"))
    result, state = device('$VX63 update --yes "$DIR/request"')
    assert (result.returncode, result.stderr) == (0, "")
    assert state["product"]["main_version"] == "3.1"


def test_update_that_fails_is_not_begun_anew(device):
    result, state = device("$VX63 " + " ".join(UPDATE) + " --yes", "[update]\nsteps = 5\nfail_step = 3\n")
    assert result.returncode == 10
    assert result.stderr.startswith("vx63: cannot update the program: the meter gave the update up: ")
    assert (state["product"]["main_version"], state["update"]["running"], state["update"]["step"]) == ("1.0.0", False, 3)


@pytest.mark.parametrize("content, why", [
    (None, "No such file or directory"), (b"", "it has 0 bytes, an update request has 32"),
    (bytes(31), "it has 31 bytes"), (bytes(33), "it is longer than the 32 bytes"), ("folder", "Is a directory"),
])
def test_files_that_are_no_request(tmp_path, content, why):
    path = tmp_path / "request"
    if content == "folder":
        path.mkdir()
    elif content is not None:
        path.write_bytes(content)
    result = run(VX63, "update", "--yes", path)
    assert (result.returncode, result.stdout) == (66, "")
    assert result.stderr.startswith(f"vx63: cannot read {path}: {why}")


# ---- modes, buzzer, display ----

def test_modes(device):
    result, state = device("$VX63 developer-mode on && $VX63 calibrate --level-only && $VX63 calibrate && "
                           "$VX63 calibrate --level-only && $VX63 battery low && $VX63 brightness bright")
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert state["power"]["developer_mode"] and state["power"]["low_battery"]
    assert (state["power"]["calibrations"], state["power"]["calibration_mode"]) == (3, 1)
    assert state["display"]["brightness"] == 2
    result, state = device("$VX63 developer-mode off && $VX63 brightness 0", "[device]\ndeveloper_mode = true\n")
    assert (state["power"]["developer_mode"], state["display"]["brightness"]) == (False, 0)


def test_volume(device):
    result, state = device("$VX63 volume all 2 && $VX63 volume alarm 3 && $VX63 volume 0 0")
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert state["buzzer"]["volumes"] == [0, 2, 2, 2, 3]


def test_buzzer(device):
    result, state = device("$VX63 buzzer warning --repeat")
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert (state["buzzer"]["sounding"], state["buzzer"]["kind"], state["buzzer"]["repeating"]) == (True, 2, True)
    result, state = device("$VX63 buzzer alarm; $VX63 buzzer 4 --stop")
    assert (result.returncode, state["buzzer"]["sounding"], state["buzzer"]["sounds"]) == (0, False, 1)


def test_buzzer_that_is_busy(device):
    result, _ = device("$VX63 buzzer 2 --repeat; $VX63 buzzer 2; echo $?; $VX63 volume 2 1; echo $?; "
                       "$VX63 buzzer 1; echo $?; $VX63 buzzer click --stop; echo $?; $VX63 buzzer 2 --stop; echo $?")
    assert result.stdout == "6\n6\n8\n8\n0\n"
    assert result.stderr.splitlines()[0] == (
        "vx63: cannot sound the buzzer: the buzzer is sounding a repeating pattern: stop it first")
    assert result.stderr.splitlines()[2] == (
        "vx63: cannot sound the buzzer: the buzzer is busy with a sound of higher priority: try again")


@pytest.mark.parametrize("fault, words, code, error", [
    ("sys=refuse", ["info"], 1, "cannot read the product data: "),
    ("key=wrong", ["keys", "--watch"], 1, "cannot read the keys: "),
    ("sys=refuse", ["failure", "show"], 1, "cannot read the failure record: "),
    ("sys=refuse", ["failure", "set", "1"], 1, "cannot set the failure record: "),
    ("meas=ret,2", ["power", "state"], 2, "cannot read the standby state: the meter refuses a value"),
    ("meas=ret", ["calibrate"], 1, "cannot calibrate the meter: "),
    ("meas=ret,2", ["battery", "low"], 2, "cannot tell the measurement service of the battery: the meter refuses"),
    ("sys=ret", ["developer-mode", "on"], 1, "cannot switch the developer mode: "),
    ("sys=ret,2", ["brightness", "0"], 2, "cannot set the brightness: the meter refuses a value"),
    ("sys/update=ret,4", [*UPDATE, "--yes"], 1, "cannot update the program: "),
])
def test_failures(meter, fault, words, code, error):
    result = meter.vx63(*words, fault=fault)
    assert (result.returncode, result.stdout) == (code, "")
    assert result.stderr.startswith("vx63: " + error)
    assert result.stderr.count("\n") == 1
