"""vx63 survey: the channels of a site by a plan, in one go and in several."""

import json
import os
import re
import signal

import pytest

from conftest import cannot
from test_json import validate
from tool_support import SOURCE, VX63, Terminal, isolation, meter, run, until  # noqa: F401 (fixture)

OUTLETS = """
site = "Example Street 12"
by = "A. Installer"
lock_timeout_s = 2
[limits]
slope_db = { fail_above = 30 }
[[list]]
plan = "uhf"
channels = "21,22,27"
input = 0
[[point]]
name = "outlet 1"
note = "kitchen"
[[point]]
name = "outlet 2"
[[point.list]]
plan = "catv"
channels = "C24,C25,C30"
system = "catv"
input = 1
limits = { level_dbuv = { fail_below = 40, marginal_above = 73.9, fail_above = 80 }, cnr_db = {}, mer_db = {}, ber = {} }
"""
CHANNELS = [("outlet 1", "uhf", "21"), ("outlet 1", "uhf", "22"), ("outlet 1", "uhf", "27"),
            ("outlet 2", "catv", "C24"), ("outlet 2", "catv", "C25"), ("outlet 2", "catv", "C30")]
KHZ = {"21": 521143, "22": 527143, "27": 557143, "C24": 231000, "C25": 237000, "C30": 267000}
ASKED = "connect the meter, then Enter; s skips, q ends "


@pytest.fixture(autouse=True)
def quick_printer(tmp_path, monkeypatch):
    """The reports have tests of their own, with the real one, which takes a second."""
    (tmp_path / "bin").mkdir()
    (tmp_path / "bin" / "weasyprint").write_text("#!/bin/sh\ncat > /dev/null\nprintf '%%PDF-1.7\\n'\n")
    (tmp_path / "bin" / "weasyprint").chmod(0o755)
    monkeypatch.setenv("PATH", f"{tmp_path / 'bin'}:{os.environ['PATH']}")


@pytest.fixture
def plan(meter):
    """Writes the plan of a survey, gives its path."""
    def write(text=OUTLETS):
        (meter.folder / "house.toml").write_text(text)
        return meter.folder / "house.toml"
    return write


def one_point(*lines, top=""):
    return "\n".join(['site = "House"', top, "[[point]]", 'name = "outlet"', "[[point.list]]", *lines, ""])


def lines_of(meter, kind="reading"):
    text = (meter.folder / "house" / "results.jsonl").read_text()
    assert text.endswith("\n")
    found = [json.loads(line) for line in text.splitlines()]
    return [line for line in found if line["kind"] == kind]


def measured(meter):
    return [(line["point"], line["list"], line["channel"]) for line in lines_of(meter)]


def starts(meter):
    """kHz of every measurement that was started."""
    return [int.from_bytes(bytes.fromhex(message["body"])[8:12], "little") for message in meter.messages()
            if message["kind"] == "request" and message["command"] == "single-start"
            and bytes.fromhex(message["body"])[4] == 1]


# ---- what is measured ----


def test_a_house_with_a_bad_outlet(meter, plan):
    result = meter.vx63("survey", plan(), "--yes")
    assert result.returncode == 14
    assert result.stderr == ("vx63: 1 of 6 fail: outlet 2, C30: fail: no signal: look at level, cable and antenna\n")
    lines = result.stdout.splitlines()
    assert lines[0] == "outlet 1, kitchen"
    assert lines[1].split() == ["uhf", "MHz", "dBuV", "C/N", "dB", "MER", "dB", "BER", "Verdict"]
    assert lines[2].split()[:2] == ["21", "521.143"]
    assert lines[2].endswith("  pass")
    assert lines[5:7] == ["", "outlet 2"]
    assert lines[8].endswith("  pass")  # C24: below 73.9 dBuV
    assert lines[10].split() == ["C30", "267.000", lines[10].split()[2], "-", "-", "-", "fail:", "no", "signal"]
    assert lines[11:13] == ["", "Verdict   fail"]
    assert lines[-2:] == ["Worst     outlet 2, C30: fail: no signal", f"Reports   {meter.folder / 'house'}"]

    [survey] = lines_of(meter, "survey")
    assert survey["meter"] == {"model": "VX63", "serial": "VX6300000001", "version": "1.0.0", "angle_calibration": 0}
    readings = lines_of(meter)
    assert measured(meter) == CHANNELS
    assert starts(meter) == [KHZ[channel] for _, _, channel in CHANNELS]
    assert [reading["input"] for reading in readings] == [0, 0, 0, 1, 1, 1]
    assert [reading["limits"]["level_dbuv"]["of_plan"] for reading in readings] == [False] * 3 + [True] * 3
    assert readings[3]["limits"]["level_dbuv"] == {"fail_below": 40, "marginal_below": None, "marginal_above": 73.9,
                                                  "fail_above": 80, "of_plan": True}
    assert readings[3]["limits"]["cnr_db"]["fail_below"] is None
    assert readings[0]["limits"]["cnr_db"]["fail_below"] is not None
    assert [reading["mer_db"] is not None for reading in readings] == [True] * 5 + [False]
    assert [(reading["constellation"], reading["delay_profile"]) for reading in readings] == [([], [])] * 6
    for line in [survey, *readings]:
        validate(line, "survey-line" if line is survey else "survey-reading")


@pytest.mark.parametrize("limit, code, told", [
    ("level_dbuv = { fail_below = 40 }", 0, ""),
    ("cnr_db = { marginal_below = 40 }", 15, "2 of 2 are marginal: outlet, 21: marginal: C/N"),
    ("mer_db = { fail_below = 50 }", 14, "2 of 2 fail: outlet, 21: fail: MER"),
    ("slope_db = { fail_above = 1 }", 14, "a slope fails: outlet, uhf: fail: slope 2."),
    ("slope_db = { marginal_above = 1 }", 15, "a slope is marginal: outlet, uhf: marginal: slope 2."),
])
def test_verdicts(meter, plan, limit, code, told):
    result = meter.vx63("survey", plan(one_point('plan = "uhf"', 'channels = "21,27"', f"limits = {{ {limit} }}")))
    assert (result.returncode, result.stderr[:6 + len(told)].rstrip()) == (code, f"vx63: {told}" if told else "")


def test_pictures_and_a_channel_of_two_ways(meter, plan):
    path = plan(one_point('plan = "catv"', 'channels = "1"', "input = 1", 'capture = ["constellation", "delay-profile"]',
                          top="lock_timeout_s = 2"))
    result = meter.vx63("survey", path)
    assert (result.returncode, result.stderr) == (0, "")
    assert starts(meter) == [93000, 93143]
    [reading] = lines_of(meter)
    assert (reading["channel"], reading["frequency_khz"], reading["system"]) == ("1", 93143, "terrestrial")
    assert (len(reading["constellation"]), len(reading["delay_profile"]), reading["trouble"]) == (1000, 2048, None)
    assert meter.vx63("survey", path).stderr == "vx63: all 1 channels are measured already: the reports are written anew\n"
    assert len(lines_of(meter)) == 1


def test_nobody_waits_for_what_is_not_expected(meter, plan):
    path = plan(one_point('plan = "uhf"', 'channels = "13,27"', "expected = false", top="lock_timeout_s = 3600"))
    result = meter.vx63("survey", path)
    assert (result.returncode, result.stderr) == (0, "")
    assert "no signal" in result.stdout
    assert "2 of 2: 1 pass, 1 not judged" in result.stdout


def test_a_level_carrier_and_what_comes_too_late(meter, plan):
    path = plan(one_point('name = "pilots"', 'frequencies = ["70MHz", "750MHz"]', 'system = "level"', "input = 1",
                          top="lock_timeout_s = 0") +
                "\n".join(["[[point.list]]", 'plan = "uhf"', 'channels = "26"', "input = 0",
                           'capture = ["delay-profile"]']))
    result = meter.vx63("survey", path)
    assert (result.returncode, result.stderr) == (0, "")
    assert measured(meter) == [("outlet", "pilots", "70"), ("outlet", "pilots", "750"), ("outlet", "uhf", "26")]
    assert [line["mer_db"] is None for line in lines_of(meter)] == [True, True, False]
    assert [line["trouble"] for line in lines_of(meter)] == [None, None, "no delay profile within 0 s"]
    assert lines_of(meter)[2]["delay_profile"] == []


# ---- cut off, and gone on with ----


@pytest.mark.parametrize("end", ["kill -KILL $pid", "kill -TERM $pid",
                                 "kill -KILL $pid; wait $pid; printf '{\"kind\": \"read' >> \"$DIR/house/results.jsonl\""])
def test_cut_off_in_the_middle(meter, plan, end):
    plan()
    result = meter.shell(f"""
        $VX63 survey "$DIR/house.toml" --yes > "$DIR/first" & pid=$!
        until grep -qs '"channel":"C24","frequency_khz":231000,"lo_khz"' "$DIR/house/results.jsonl"; do :; done
        {end}; wait $pid; echo "ended by $?"
        $VX63 survey "$DIR/house.toml" --yes > "$DIR/second"; echo "then $?"
    """)
    assert result.stdout.splitlines()[-1] == "then 14"
    assert result.stdout.splitlines()[0] == ("ended by 143" if "TERM" in end else "ended by 137")
    assert "of 6 channels are measured already\n" in result.stderr
    assert measured(meter) == CHANNELS
    verdicts = [line["verdict"] for line in lines_of(meter)]
    assert verdicts == ["pass"] * 3 + ["pass", verdicts[4], None]
    # What is on the disk is not measured again; what was under way is.
    made = starts(meter)
    assert [made.count(khz) for khz in (521143, 527143, 557143, 231000)] == [1] * 4
    assert len(lines_of(meter, "survey")) == 2


def test_ctrl_c(meter, plan):
    path = plan()
    terminal = Terminal(*meter.command(VX63, "survey", path, "--yes"), columns=100)
    terminal.wait_for("outlet 2: 3/3  C30  267.000 MHz")
    terminal.type("\x03")
    assert terminal.finish() == 130
    assert "what is measured is kept" in terminal.shown
    assert "Not measured  outlet 2 (1 of 3)" in terminal.shown
    assert measured(meter) == CHANNELS[:5]
    assert meter.requests()[-1][1][4:] == b"\0"  # stopped
    result = meter.vx63("survey", path, "--yes", "--json")
    assert result.returncode == 14
    assert result.stderr.startswith("vx63: 5 of 6 channels are measured already\n")
    assert measured(meter) == CHANNELS
    answer = json.loads(result.stdout)
    validate(answer, "survey")
    assert answer | {"points": None} == {
        "site": "Example Street 12", "out": str(meter.folder / "house"), "verdict": "fail", "complete": True, "channels": 6,
        "measured": 6, "passed": answer["passed"], "marginal": answer["marginal"], "failed": 1, "unjudged": 0,
        "points": None}


def test_a_service_that_is_lost(meter, plan):
    path = plan()
    result = meter.vx63("survey", path, "--yes", fault="meas/single-start:3-=refuse")
    assert result.returncode == 1
    assert result.stderr.startswith("vx63: cannot start the measurement: ")
    assert result.stderr.endswith("; the same command goes on with what is left\n")
    assert "Not measured  outlet 1 (2 of 3), outlet 2 (3 of 3)" in result.stdout
    assert measured(meter) == CHANNELS[:1]
    assert meter.vx63("survey", path, "--yes").returncode == 14
    assert measured(meter) == CHANNELS


def test_once_more(meter, plan):
    path = plan()
    assert meter.vx63("survey", path, "--point", "outlet 1").returncode == 13
    assert meter.vx63("survey", path, "--point", "outlet 1", "--again").returncode == 13
    assert measured(meter) == CHANNELS[:3] * 2
    changed = path.read_text().replace('"kitchen"', '"kitchen, left"')
    path.write_text(changed)
    # All of that point is there: no meter is needed, and what the plan says of it is kept.
    result = run(VX63, "survey", path, "--point", "outlet 1", "--json")
    assert result.returncode == 13
    first, second = result.stderr.splitlines()[-2:]
    assert first == "vx63: all 3 channels are measured already: the reports are written anew"
    assert json.loads(second)["error"]["kind"] == "incomplete"
    assert json.loads(second)["error"]["why"] == "outlet 2 (3 of 3)"
    assert run(VX63, "survey", path, "--point", "outlet 1").returncode == 13
    assert [line["points"][0]["note"] for line in lines_of(meter, "survey")] == ["kitchen", "kitchen", "kitchen, left"]
    assert lines_of(meter, "survey")[2]["meter"]["serial"] == "VX6300000001"


# ---- asked, and not ----


def test_asked_at_a_terminal(meter, plan):
    path = plan()
    terminal = Terminal(*meter.command(VX63, "survey", path), columns=120)
    terminal.wait_for(f"outlet 1 (1 of 2, 3 channels): {ASKED}")
    terminal.type("what?\n")
    until(lambda: terminal.shown.count(ASKED) == 2 or not terminal._read())
    terminal.type("s\n")
    terminal.wait_for(f"outlet 2 (2 of 2, 3 channels): {ASKED}")
    terminal.type("\n")
    terminal.wait_for("outlet 2: 1/3  C24  231.000 MHz")
    assert terminal.finish() == 14
    assert measured(meter) == CHANNELS[3:]
    assert "Not measured  outlet 1 (3 of 3)" in terminal.shown

    for keys, code in ("q\n", 14), ("\x04", 14), ("\x03", 130):
        terminal = Terminal(*meter.command(VX63, "survey", path), columns=120)
        terminal.wait_for(f"outlet 1 (1 of 2, 3 channels): {ASKED}")
        terminal.type(keys)
        assert terminal.finish() == code
        assert f"{ASKED}\r\n" in terminal.shown or keys != "\x04"
        assert starts(meter) == []


def test_nothing_is_asked_of_one_point(meter, plan):
    terminal = Terminal(*meter.command(VX63, "survey", plan(), "--point", "outlet 1"))
    assert terminal.finish() == 13
    assert ASKED not in terminal.shown


def test_a_point_whose_name_has_blanks_around_it(meter, plan):
    path = plan(one_point('plan = "uhf"', 'channels = "21"').replace('"outlet"', '" outlet "'))
    assert meter.vx63("survey", path, "--point", " outlet ").returncode == 0


def test_no_terminal(meter, plan):
    path = plan()
    result = meter.vx63("survey", path)
    assert (result.returncode, result.stdout) == (77, "")
    assert result.stderr == "vx63: nothing was done: there is no terminal to ask on: give --yes, or a point with --point\n"
    assert not (meter.folder / "house").exists()
    assert meter.vx63("survey", path, "--point", "outlet 1").returncode == 13
    assert meter.vx63("survey", path).returncode == 14  # one is left
    assert measured(meter) == CHANNELS


# ---- what goes wrong ----


def test_a_wrong_plan(meter, plan):
    path = plan(OUTLETS.replace("C24,", "C999,"))
    result = meter.vx63("survey", path, "--yes")
    assert (result.returncode, result.stdout) == (66, "")
    assert result.stderr == (f"vx63: cannot use the plan: {path}:18: point.list.channels: cannot tune channel 'C999': "
                             "plan catv has none of that name: see vx63-survey(1), PLAN\n")
    assert not (meter.folder / "house").exists()
    result = meter.vx63("survey", meter.folder / "none.toml")
    assert (result.returncode, result.stderr) == (
        66, f"vx63: cannot use the plan {meter.folder}/none.toml: No such file or directory: check the name\n")


def test_two_at_once(meter, plan):
    plan(one_point('plan = "uhf"', 'channels = "13"', top="lock_timeout_s = 3600"))
    result = meter.shell("""
        $VX63 survey "$DIR/house.toml" > /dev/null & pid=$!
        until grep -qs '"kind":"survey"' "$DIR/house/results.jsonl"; do :; done
        $VX63 survey "$DIR/house.toml" --id 16; echo "second $?"
        kill $pid; wait $pid; echo "first $?"
    """)
    assert result.stdout == "second 75\nfirst 143\n"
    assert result.stderr == (f"vx63: cannot write to {meter.folder}/house/results.jsonl: another vx63 survey writes to it: "
                             "wait until it ends, or name another folder with --out\n")


def test_full_disk(meter, plan, isolation):
    if isolation:
        cannot("needs namespaces")
    plan(one_point('plan = "uhf"', 'channels = "21,22"', 'capture = ["constellation"]'))
    (meter.folder / "house").mkdir()
    result = meter.shell("""
        bwrap --dev-bind / / --size 12288 --tmpfs "$DIR/house" sh -c '
            $VX63 survey "$DIR/house.toml"; echo "full $?"; cp "$DIR/house/results.jsonl" "$DIR/kept"'
    """)
    assert "full 74\n" in result.stdout
    assert result.stderr == (f"vx63: cannot write {meter.folder}/house/report.html: No space left on device: "
                             "make room on the disk\n"
                             f"vx63: cannot write to {meter.folder}/house/results.jsonl: No space left on device: "
                             "make room on the disk; the same command goes on with what is left\n")
    kept = (meter.folder / "kept").read_text().splitlines()
    assert [json.loads(line)["kind"] for line in kept] == ["survey", "reading"]


def test_no_place_for_the_results(meter, plan):
    path = plan(one_point('plan = "uhf"', 'channels = "21"'))
    result = meter.vx63("survey", path, "--out", "/proc/nothing")
    assert result.returncode == 74
    assert result.stderr.startswith("vx63: cannot make the folder /proc/nothing: ")
    (meter.folder / "loop").symlink_to("loop")
    result = meter.vx63("survey", path, "--out", meter.folder / "loop")
    assert result.returncode == 74
    assert result.stderr.startswith(f"vx63: cannot make the folder {meter.folder}/loop: ")
    bare = path.rename(meter.folder / "house")
    result = meter.vx63("survey", bare)
    assert result.returncode == 74
    assert result.stderr == f"vx63: cannot make the folder {bare}: Not a directory: choose another one\n"


def test_asleep(meter, plan):
    result = meter.shell(f"$VX63 power standby; $VX63 survey {plan()} --yes")
    assert (result.returncode, result.stdout) == (9, "")
    assert result.stderr == ("vx63: cannot survey Example Street 12: the meter sleeps: "
                             "wake it up with 'vx63 power wakeup'\n")
    assert not (meter.folder / "house").exists()


def test_no_answer_at_all(meter, plan):
    path = plan()
    result = meter.vx63("survey", path, "--yes", fault="meas/meas-status=refuse")
    assert result.returncode == 1
    assert result.stderr.startswith("vx63: cannot read the measurement status: ")
    assert not (meter.folder / "house").exists()


def test_the_reader_goes_away(meter, plan):
    plan()
    result = meter.shell('{ $VX63 survey "$DIR/house.toml" --yes; echo $? >&3; } 3> "$DIR/code" | head -n 1')
    assert result.stdout == "outlet 1, kitchen\n"
    assert (meter.folder / "code").read_text() == f"{128 + signal.SIGPIPE}\n"
    assert measured(meter) in (CHANNELS[:0], CHANNELS[:1], CHANNELS[:2])


def test_hostile_names_and_a_narrow_terminal(meter, plan):
    text = one_point('plan = "uhf"', 'channels = "21"', r'name = "u\u001b[2Jhf"').replace('"outlet"', r'"out\u001b[2Jlet"')
    terminal = Terminal(*meter.command(VX63, "survey", plan(text)), columns=40)
    assert terminal.finish() == 0
    assert r"out\x1B[2Jlet" in terminal.shown
    assert "\x1b" not in terminal.shown
    assert max(len(line) for line in terminal.shown.replace("\r", "\n").split("\n") if "Reports" not in line) <= 40
