"""vx63 measure single."""

import csv
import io
import json
import re
import signal

import pytest

from tool_support import DEFAULT_SCENE, START, STOP, VX63, Terminal, isolation, meter, until  # noqa: F401 (fixtures)

CHANNEL = ("measure", "single", "--freq", "557143")
TOO_WEAK = ("measure", "single", "--freq", "575143")  # present, but too weak to lock


def test_reading_as_text(meter):
    result = meter.vx63(*CHANNEL)
    assert result.returncode == 0
    assert result.stderr == ""
    assert re.fullmatch(
        r"Frequency       557143 kHz\n"
        r"Input           0\n"
        r"Supply          off\n"
        r"System          terrestrial\n"
        r"Lock            yes\n"
        r"Level           6\d\.\d dBuV\n"
        r"C/N             3\d\.\d dB\n"
        r"Bit error rate  (< )?\d\.\de-\d\d\n"
        r"Errors/bits     \d+/\d+\n"
        r"Modulation      OFDM\n"
        r"Guard interval  1/8\n"
        r"TSID            0x7FE0\n"
        r"Layer           3\n"
        r"Verdict         pass\n", result.stdout)
    requests = meter.requests()
    assert requests[0] == START and requests[-1] == STOP
    assert {name for name, _ in requests[1:-1]} == {"single-result", "meas-status"}


def test_reading_as_json(meter):
    result = meter.vx63(*CHANNEL, "--json")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout.count("\n") == 1
    reading = json.loads(result.stdout)
    assert list(reading) == [
        "time", "channel", "frequency_khz", "lo_khz", "input", "power_supply", "signal", "locked", "unrecognised",
        "level_dbuv", "cnr_db", "ber", "ber_errors", "ber_bits", "system", "modulation", "guard_interval", "tsid", "layer",
        "verdict", "level_verdict", "cnr_verdict", "ber_verdict", "lock_code", "status_code", "condition_code",
        "system_code", "modulation_code", "guard_interval_code"]
    assert reading["frequency_khz"] == 557143
    assert reading["locked"] is True
    assert 60 < reading["level_dbuv"] < 70
    assert 30 < reading["cnr_db"] < 40
    assert reading["ber"] == pytest.approx(reading["ber_errors"] / reading["ber_bits"], rel=5e-4)
    assert (reading["input"], reading["power_supply"], reading["verdict"]) == (0, 0, "pass")
    assert (reading["system"], reading["modulation"], reading["guard_interval"]) == ("terrestrial", "OFDM", "1/8")
    assert (reading["tsid"], reading["layer"], reading["modulation_code"]) == (0x7FE0, 3, 1)


def test_options_reach_the_meter(meter):
    result = meter.vx63("measure", "single", "--freq", "11727480", "--lo", "0xA2EE10", "--system", "Satellite",
                        "--band", "2", "--mod", "8psk", "--condition", "0x8001", "--channel", "BS-1\u00e4\u00f6",
                        "--supply", "4", "--input", "0", "--disp-type", "200", "--json")
    assert (result.returncode, result.stderr) == (0, "")
    assert json.loads(result.stdout)["guard_interval"] is None
    sent = [message for message in meter.messages() if message["kind"] == "request"]
    assert sent[0]["command"] == "set-input"
    assert sent[1]["body"] == (
        "c8000000" "01000000" "78f2b200" "10eea200" "0100" "0200" "1000" "0180" "42532d31c3a4c3b6" "00020100" "00000000")
    assert sent[-1]["body"] == "c8" + "00" * 39


def test_count_prints_a_table(meter):
    result = meter.vx63(*CHANNEL, "--count", "3", "--interval", "0")
    assert (result.returncode, result.stderr) == (0, "")
    header, *rows = result.stdout.splitlines()
    assert header == "Time       dBuV C/N dB        BER Lock"
    assert len(rows) == 3
    for row in rows:
        assert re.fullmatch(r"\d\d:\d\d:\d\d +6\d\.\d +3\d\.\d +(< )?\d\.\de-\d\d +yes", row)
        assert len(row) == len(header) <= 40
    assert meter.requests().count(START) == meter.requests().count(STOP) == 1


def test_count_as_lines_as_an_array_and_as_csv(meter):
    result = meter.vx63(*CHANNEL, "--count", "2", "--interval", "0.1", "--jsonl")
    assert (result.returncode, result.stderr) == (0, "")
    first, second = map(json.loads, result.stdout.splitlines())
    assert second["time"] - first["time"] > 0.09  # both are rounded
    result = meter.vx63(*CHANNEL, "--count", "1", "--json")
    [reading] = json.loads(result.stdout)
    result = meter.vx63(*CHANNEL, "--csv")
    assert (result.returncode, result.stderr) == (0, "")
    header, row = csv.reader(io.StringIO(result.stdout))
    assert header == list(reading) == list(first)
    assert dict(zip(header, row))["modulation"] == "OFDM"


def test_array_is_whole_however_the_command_ends(meter):
    """Interrupted, and when the meter falls silent in between."""
    result = meter.shell("""
        $VX63 measure single --freq 557143 --count 1000 --interval 0.05 --json > $DIR/readings &
        until [ $(grep -c frequency $DIR/readings) -ge 2 ]; do sleep 0.02; done
        kill -TERM $!; wait $!; cat $DIR/readings""")
    assert len(json.loads(result.stdout)) >= 2
    result = meter.vx63(*CHANNEL, "--count", "4", "--interval", "0", "--lock-timeout", "0", "--json",
                        fault="meas/0x104:3-=ret,2")
    assert result.returncode == 2
    assert len(json.loads(result.stdout)) == 2


def test_input_and_supply_are_told(meter):
    result = meter.vx63(*CHANNEL, "--input", "1", "--supply", "4", "--lock-timeout", "0")
    assert "Input           1\nSupply          15 V, tone\n" in result.stdout
    script = "$VX63 input 1 && $VX63 power-supply 1 && $VX63 measure single --freq 76500 --system level --json"
    reading = json.loads(meter.shell(script).stdout)
    assert (reading["input"], reading["channel"]) == (1, None)


@pytest.mark.parametrize("words, code, why", [
    (CHANNEL, 0, ""),
    (("measure", "single", "--freq", "491143"), 14, "vx63: 1 of 1 fail: 491143 kHz: fail: BER: "),
    (("measure", "single", "--freq", "491143", "--count", "2", "--interval", "0"), 14, "vx63: 2 of 2 fail: "),
    (("measure", "single", "--freq", "70000", "--system", "level"), 14, "vx63: nothing can be judged: "),
    (TOO_WEAK + ("--lock-timeout", "0"), 3, "vx63: no lock at 575143 kHz"),
    (("scan", "--plan", "uhf"), 14, "vx63: 3 of 40 fail: 16: fail: BER: "),
    (("measure", "multi", "--plan", "fm"), 0, ""),
])
def test_check(meter, words, code, why):
    result = meter.vx63(*words, "--check")
    assert result.returncode == code, result.stderr
    assert result.stderr.startswith(why) and (why != "" or result.stderr == "")
    assert result.stdout == "" or "\n" in result.stdout


def test_marginal_verdict(meter, tmp_path):
    """A threshold between the two edges of the C/N."""
    script = ("$VX63 settings set meas_set/thrd 0 CN_LOW 100 && $VX63 settings set meas_set/thrd 0 CN_HIGH 600 && "
              "$VX63 measure single --freq 557143 --check")
    result = meter.shell(script)
    assert result.returncode == 15
    assert "Verdict         marginal: C/N\n" in result.stdout
    assert result.stderr.startswith("vx63: 1 of 1 are marginal: 557143 kHz: marginal: C/N: ")


def test_broken_thresholds_leave_a_reading(meter):
    result = meter.shell("echo x > /usr/local/bin/meas_set/measrement_setting_file_thrd.csv; "
                         "$VX63 measure single --freq 557143")
    assert result.returncode == 0
    assert "Lock            yes\n" in result.stdout and "Verdict         -\n" in result.stdout
    assert result.stderr.count("\n") == 1


def test_without_lock(meter):
    result = meter.vx63(*TOO_WEAK, "--lock-timeout", "0.3")
    assert result.returncode == 3
    assert "Lock            no\n" in result.stdout and "TSID            -\n" in result.stdout
    assert re.search(r"Level           2\d\.\d dBuV\n", result.stdout)
    assert result.stderr == ("vx63: no lock at 575143 kHz: none within 0.3 s: "
                             "check --freq, --lo, --system, --mod, --input, --supply and the level\n")
    assert meter.requests()[-1] == STOP
    assert len([name for name, _ in meter.requests() if name == "single-result"]) >= 3


def test_some_readings_without_lock(meter):
    result = meter.vx63(*TOO_WEAK, "--lock-timeout", "0", "--count", "2", "--interval", "0.1", "--jsonl")
    assert result.returncode == 3
    assert [json.loads(line)["locked"] for line in result.stdout.splitlines()] == [False, False]
    assert "2 of 2 readings were without it" in result.stderr


def test_level_needs_no_lock(meter):
    result = meter.vx63("measure", "single", "--freq", "76500", "--system", "level")
    assert (result.returncode, result.stderr) == (0, "")
    assert len([name for name, _ in meter.requests() if name == "single-result"]) == 1


@pytest.mark.parametrize("fault, code, why", [
    ("meas/0x103=ret,1", 1, "cannot start the measurement: refused or failed: the measurement service answers that it "
     "cannot: "),
    ("meas/0x103=ret,2", 2, "cannot start the measurement: the meter refuses a value of frequency 557.143 MHz, local "
     "oscillator none, system level, band 0, modulation any, condition 0x0000, supply 0: all are within the ranges"),
    ("meas/0x103=refuse", 1, "cannot start the measurement: the measurement service refuses the request "
     "(usOptOrRet=0001): "),
    ("meas/0x104=ret,2", 2, "cannot read the measurement: the meter refuses a value"),
    ("meas/0x104=ret,3", 7, "cannot read the measurement: the antenna power supply reports a fault"),
    ("meas/0x104=wrong", 1, "cannot read the measurement: something else comes in place of the answer of the measurement "
     "service: "),
    ("meas/0x100=ret,2", 2, "cannot select input 1: the meter refuses a value"),
])
def test_failures(meter, fault, code, why):
    result = meter.vx63(*CHANNEL, "--input", "1", "--system", "level", fault=fault)
    assert result.returncode == code
    assert result.stdout == ""
    assert result.stderr.startswith("vx63: " + why)
    assert result.stderr.count("\n") == 1 and result.stderr.count(": ") >= 3
    if "0x104" in fault:
        assert meter.requests()[-1] == STOP


def test_colours_are_for_terminals(meter):
    """Where somebody looks on, and wants them."""
    def shown(*words, **env):
        terminal = Terminal(*meter.command(VX63, *words), **env)
        terminal.finish()
        return terminal.shown
    assert "Verdict         \x1b[32mpass\x1b[0m\r\n" in shown(*CHANNEL, NO_COLOR="", TERM="xterm")
    assert "\x1b[1;31mvx63:\x1b[0m no lock" in shown(*TOO_WEAK, "--lock-timeout", "0", NO_COLOR="", TERM="xterm")
    assert "\x1b" not in shown(*CHANNEL, TERM="xterm", NO_COLOR="1")
    for unknown in ("dumb", ""):
        assert "\x1b" not in shown(*CHANNEL, NO_COLOR="", TERM=unknown)


def test_failing_stop_is_told(meter):
    result = meter.vx63(*CHANNEL, fault="meas/0x103:2-=ret,2")
    assert result.returncode == 2
    assert "Lock            yes\n" in result.stdout
    assert result.stderr.startswith("vx63: cannot stop the measurement: ")


def test_start_that_failed_is_stopped(meter):
    """A start may have reached the meter although its answer is no good."""
    assert meter.vx63(*CHANNEL, fault="meas/0x103:1-4=wrong").returncode == 1
    assert meter.requests()[-1] == STOP


@pytest.mark.parametrize("kind", ["twice", "stray", "wrong", "refuse"])
def test_one_bad_answer_harms_nobody(meter, kind):
    """Neither this command nor the next one, which finds what the first one left in the queue."""
    result = meter.shell("$VX63 measure single --freq 557143 --json && $VX63 status --json && $VX63 status --json",
                         fault=f"meas/0x104:2={kind}")
    assert (result.returncode, result.stderr) == (0, "")
    reading, *statuses = map(json.loads, result.stdout.splitlines())
    assert reading["locked"] is True
    assert [status["measuring"] for status in statuses] == [False, False]


@pytest.mark.parametrize("interval", ["0", "0.1"])  # seen when it writes, and when it waits
def test_reader_that_goes_away(meter, interval):
    script = f"""
        {{ $VX63 measure single --freq 557143 --count 100000 --interval {interval}; echo $? > "$DIR/code"; }} | head -n 2
    """
    result = meter.shell(script)
    assert result.stderr == ""
    assert len(result.stdout.splitlines()) == 2
    assert (meter.folder / "code").read_text() == "141\n"
    assert meter.requests()[-1] == STOP


def test_full_disk(meter):
    with open("/dev/full", "w") as full:
        result = meter.vx63(*CHANNEL, stdout=full)
    assert result.returncode == 74
    assert result.stderr == "vx63: cannot write to standard output: No space left on device: make room on the disk\n"
    assert meter.requests()[-1] == STOP


@pytest.mark.parametrize("name, code", [("TERM", 143), ("HUP", 129)])
def test_signals_stop_the_measurement(meter, name, code):
    script = f"""
        mkfifo "$DIR/rows"
        $VX63 measure single --freq 557143 --count 1000 --interval 3600 > "$DIR/rows" &
        exec 3< "$DIR/rows"
        read -r header <&3
        read -r row <&3
        kill -{name} $!
        wait $!
        echo $?
    """
    result = meter.shell(script)
    assert (result.stdout, result.stderr) == (f"{code}\n", "")
    assert meter.requests()[-1] == STOP


def test_ctrl_c_stops_the_measurement(meter):
    terminal = Terminal(*meter.command(VX63, *CHANNEL, "--count", "1000", "--interval", "3600"))
    terminal.wait_for("Lock\r\n")
    terminal.wait_for("yes\r\n")
    terminal.type("\x03")
    assert terminal.finish() == 130
    assert "stopping the measurement; Ctrl-C again ends at once" in terminal.shown
    assert meter.requests()[-1] == STOP


def test_ctrl_c_while_waiting_for_lock(meter):
    terminal = Terminal(*meter.command(VX63, *TOO_WEAK, "--lock-timeout", "3600"))
    terminal.wait_for("Waiting for lock")
    terminal.type("\x03")
    assert terminal.finish() == 130
    assert "Frequency" not in terminal.shown
    assert meter.requests()[-1] == STOP


def test_second_ctrl_c_ends_at_once(meter):
    meter.show(DEFAULT_SCENE)
    terminal = Terminal(*meter.command(VX63, *CHANNEL, fault="meas/0x104:3-=silence"))
    terminal.wait_for("Waiting for lock")
    until(lambda: len(meter.requests()) == 4)  # the read that gets no answer is on its way
    terminal.type("\x03")
    terminal.wait_for("ends at once")
    terminal.type("\x03")
    assert terminal.finish() == 128 + signal.SIGINT
    assert meter.requests()[-1] != STOP


def test_progress_on_a_terminal_is_erased(meter):
    meter.show(DEFAULT_SCENE)
    terminal = Terminal(*meter.command(VX63, *CHANNEL), columns=40)
    assert terminal.finish() == 0
    before, _, reading = terminal.shown.partition("Frequency       557143 kHz\r\n")
    states = before.split("\r")
    assert states[1] == "Tuning to 557143 kHz"
    assert re.fullmatch(r"Waiting for lock: \d+\.\d s, \d+\.\d dBuV *", states[2])
    assert states[-1] == "" and states[-2].strip() == ""
    assert all(len(state) < 40 for state in states)
    assert all(len(line) <= 40 for line in reading.split("\r\n"))
    assert "\x1b" not in terminal.shown
