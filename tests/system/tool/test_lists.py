"""vx63 scan and vx63 measure multi."""

import csv
import io
import itertools
import json
import re

import pytest

from pictures import png_size, svg_size
from tool_support import VX63, Terminal, environment, isolation, meter  # noqa: F401 (fixtures)

UHF = ["16", "21", "22", "23", "24", "25", "26", "27", "28", "30"]  # of the default scene
ROOT = "/usr/local/bin/"
WEAK = "30"  # does not lock
BS = ["BS-1", "BS-3", "BS-5", "BS-7", "BS-9", "BS-11", "BS-13", "BS-15", "BS-17", "BS-19", "BS-21", "BS-23",
      "BS-8", "BS-12", "BS-14"]
CATV = {"1": "OFDM", "2": "OFDM", "3": "OFDM", "C24": "64QAM", "C25": "64QAM", "C26": "256QAM", "C27": "256QAM",
        "13": "64QAM", "14": "256QAM", "15": "256QAM"}


def channels(result):
    assert (result.returncode, result.stderr) == (0, "")
    return [json.loads(line) for line in result.stdout.splitlines()]


def found(result):
    return [channel["channel"] for channel in channels(result) if channel["signal"]]


def parts(meter):
    """Kind, first index and count of each part of a registration, and the stops."""
    bodies = [bytes.fromhex(message["body"]) for message in meter.messages()
              if message["kind"] == "request" and message["usCmd"] == 0x109]
    return [(body[4], body[8], body[10]) for body in bodies]


def test_scan_finds_the_channels_of_the_scene(meter):
    list_ = channels(meter.vx63("scan", "--plan", "uhf", "--json"))
    assert [channel["channel"] for channel in list_] == [str(number) for number in range(13, 53)]
    assert [channel["frequency_khz"] for channel in list_] == [473143 + 6000 * i for i in range(40)]
    assert [channel["channel"] for channel in list_ if channel["signal"]] == UHF
    assert [channel["channel"] for channel in list_ if channel["locked"]] == [c for c in UHF if c != WEAK]
    assert {channel["verdict"] for channel in list_ if not channel["signal"]} == {None}
    by_name = {channel["channel"]: channel for channel in list_}
    assert by_name["27"]["verdict"] == "pass" and by_name["27"]["tsid"] == 0x7FE0
    assert by_name["28"]["verdict"] == by_name["28"]["level_verdict"] == "fail"
    assert by_name[WEAK]["verdict"] == "fail" and by_name[WEAK]["cnr_verdict"] is None
    assert parts(meter) == [(2, 0, 40), (0, 0, 0)]


def test_scan_as_text(meter, tmp_path):
    result = meter.vx63("scan", "--plan", "uhf", "--plot", tmp_path / "u.png")
    assert (result.returncode, result.stderr) == (0, "")
    table, chart, summary = result.stdout.split("\n\n")
    assert [row.split()[0] for row in table.splitlines()] == ["Channel", *UHF]
    assert re.search(r"^27 +557143 +6\d\.\d +3\d\.\d +(< )?\d\.\de-\d\d yes  OFDM    pass$", table, re.M)
    assert re.search(r"^30 +575143 .* no   -       fail: level, no lock$", table, re.M)
    assert summary == "10 of 40 channels carry a signal, 9 locked\n"
    assert "█" in chart and chart.splitlines()[-1].startswith("dBuV 13 ")
    assert max(map(len, result.stdout.splitlines())) <= 80
    assert png_size(tmp_path / "u.png") == (1964, 960)


@pytest.mark.parametrize("columns", ["20", "40", "240"])
def test_chart_fits_the_width(meter, columns):
    result = meter.vx63("scan", "--plan", "fm", env=environment(LC_ALL="C", COLUMNS=columns))
    assert result.returncode == 0 and result.stdout.isascii()
    assert max(map(len, result.stdout.split("\n\n")[1].splitlines())) <= int(columns)


@pytest.mark.parametrize("options, names", [
    (["--plan", "bs"], BS),
    (["--plan", "cs"], ["ND2", "ND4", "ND8", "ND24"]),
    (["--plan", "bs-cs"], [*BS[:12], "ND2", "ND4", "ND8", "ND24", *BS[12:]]),
    (["--plan", "fm"], ["76.5", "80.2", "85.1"]),
    (["--plan", "pilot", "--input", "1"], ["PL 1", "PL 14", "PL 17"]),
    (["--plan", "lte"], ["DL-L"]),
    (["--plan", "jsat3a"], []),
])
def test_plans(meter, options, names):
    assert found(meter.vx63("scan", *options, "--json")) == names


def test_changes_of_a_plan(meter):
    """The odd channels of the scene come with 11 V and the oscillator of the even ones."""
    result = meter.vx63("scan", "--plan", "cs", "--lo", "10678000", "--supply", "1", "--system", "satellite", "--json")
    locked = [channel["channel"] for channel in channels(result) if channel["locked"]]
    assert locked == ["ND1", "ND3", "ND9"]


def test_cable_plan_tells_qam_from_ofdm(meter):
    """Each of 150 channels in two ways: more than one run can hold."""
    result = meter.vx63("scan", "--plan", "catv", "--input", "1", "--json")
    list_ = channels(result)
    assert len(list_) == 150
    assert {channel["channel"]: channel["modulation"] for channel in list_ if channel["signal"]} == CATV
    registered = parts(meter)
    assert [count for kind, _, count in registered if kind != 0] == [40] * 6 + [16, 40, 4]
    assert [kind for kind, _, _ in registered] == [3] * 6 + [2, 0, 3, 2, 0]


def test_part_of_a_cable_plan(meter):
    result = meter.vx63("measure", "multi", "--plan", "catv-high", "--system", "catv", "--mod", "256QAM", "--input", "1",
                        "--json")
    list_ = channels(result)
    assert len(list_) == 88
    assert [channel["channel"] for channel in list_ if channel["locked"]] == ["14", "15"]
    assert parts(meter)[-2:] == [(1, 80, 8), (0, 0, 0)]


def test_thousand_channels(meter):
    list_ = channels(meter.vx63("scan", "--plan", "up-stream", "--input", "1", "--json"))
    assert len(list_) == 1001
    assert [channel["channel"] for channel in list_ if channel["signal"]] == ["19.95", "20.00", "20.05"]
    assert [first for kind, first, _ in parts(meter) if kind == 2] == [240, 240, 240, 200]
    assert [kind for kind, _, _ in parts(meter)].count(0) == 4


def test_supply_of_several_bands_is_switched_back(meter):
    assert meter.vx63("scan", "--plan", "bs-cs", "--json").returncode == 0
    requests = [(name, body[0]) for name, body in meter.requests() if name == "mix-band-supply"]
    assert requests == [("mix-band-supply", 1), ("mix-band-supply", 0)]


def test_plan_comes_from_the_settings_file(meter):
    """A channel that was moved in the file is measured where it lies now."""
    script = """
        file=/usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv
        sed -i 's/^13,473143/13,557143/' $file && $VX63 scan --plan uhf --json
    """
    assert [channel["channel"] for channel in channels(meter.shell(script)) if channel["signal"]] == ["13", *UHF]


def test_missing_files_are_told(meter):
    """Without its files the meter measures by their factory contents."""
    result = meter.shell(f"""
        rm {ROOT}ch_set/channel_setting_file_uhf_6mhz.csv {ROOT}ch_set/channel_setting_file_bs_34.5mhz.csv \\
            {ROOT}meas_set/*
        $VX63 scan --plan uhf --json; $VX63 scan --plan bs --json
    """)
    list_ = [json.loads(line) for line in result.stdout.splitlines()]
    assert result.returncode == 0
    assert [channel["channel"] for channel in list_[:40] if channel["signal"]] == UHF
    assert [channel["channel"] for channel in list_[40:] if channel["signal"]] == BS
    assert list_[14]["verdict"] == "pass"
    assert result.stderr == (
        "vx63: ch_set/uhf is missing: its factory contents hold\n"
        "vx63: meas_set/thrd is missing: its factory contents hold\n"
        "vx63: meas_set/local_freq is missing: its factory contents hold\n"
        "vx63: meas_set/dc_out is missing: its factory contents hold\n"
        "vx63: ch_set/bs is missing: its factory contents hold\n"
        "vx63: meas_set/thrd is missing: its factory contents hold\n")


@pytest.mark.parametrize("path, break_it, name, why", [
    ("ch_set/channel_setting_file_uhf_6mhz.csv", "sed -i '5s/,.*/,12x/'", "ch_set/uhf",
     "line 5, column 2: not a number"),
    ("ch_set/channel_setting_file_uhf_6mhz.csv", "sed -i '$d'", "ch_set/uhf", "39 records instead of 40"),
    ("ch_set/channel_setting_file_bs_34.5mhz.csv", "sed -i '3s/^/256/'", "ch_set/bs",
     "line 3, column 1: number out of range"),
    ("meas_set/measrement_setting_file_thrd.csv", "sed -i '7s/^[0-9]*,[0-9]*,/1,-1,/'", "meas_set/thrd",
     "line 7, column 2: number out of range"),
    ("meas_set/measrement_setting_file_local_freq.csv", "sed -i '4s/$/,0/'", "meas_set/local_freq",
     "line 4, column 8: wrong number of columns"),
    ("meas_set/measrement_setting_file_dc_out.csv", "sed -i 1s/.*/9.9.9/", "meas_set/dc_out",
     "line 1: not the expected version"),
])
def test_broken_files_end_it(meter, path, break_it, name, why):
    """Before anything is measured, and in the words of 'vx63 settings show'."""
    plan = "uhf" if name in ("ch_set/uhf", "meas_set/thrd") else "bs"
    result = meter.shell(f"{break_it} {ROOT}{path}; $VX63 scan --plan {plan} --json")
    told = f"vx63: cannot read {name}: {why}: correct {ROOT}{path}, or use 'vx63 settings reset {name}'\n"
    assert (result.returncode, result.stdout, result.stderr) == (65, "", told)
    assert meter.requests() == []
    result = meter.shell(f"{break_it} {ROOT}{path}; $VX63 settings show {name}")
    assert (result.returncode, result.stdout, result.stderr) == (65, "", told)


def test_thresholds_come_from_the_settings_file(meter):
    script = """
        file=/usr/local/bin/meas_set/measrement_setting_file_thrd.csv
        sed -i 's/^1,0,1,200,470,/1,0,1,200,680,/' $file && $VX63 scan --plan uhf --json
    """
    verdicts = {channel["channel"]: channel["level_verdict"] for channel in channels(meter.shell(script))}
    assert verdicts["27"] == verdicts["21"] == "fail"


def test_csv(meter):
    result = meter.vx63("measure", "multi", "--plan", "uhf", "--csv")
    assert (result.returncode, result.stderr) == (0, "")
    rows = list(csv.DictReader(io.StringIO(result.stdout)))
    assert list(rows[0]) == ["channel", "frequency_khz", "lo_khz", "signal", "locked", "level_dbuv", "cnr_db", "ber",
                             "ber_errors", "ber_bits", "system", "modulation", "tsid", "verdict"]
    assert [row["channel"] for row in rows if row["locked"] == "true"] == [c for c in UHF if c != WEAK]
    assert {row["tsid"] for row in rows if row["signal"] == "false"} == {""}
    assert parts(meter) == [(1, 0, 40), (0, 0, 0)]


def test_multi_shows_every_channel(meter, tmp_path):
    result = meter.vx63("measure", "multi", "--plan", "uhf", "--plot", tmp_path / "m.svg")
    table = result.stdout.split("\n\n")[0].splitlines()
    assert [row.split()[0] for row in table[1:]] == [str(number) for number in range(13, 53)]
    assert svg_size(tmp_path / "m.svg") == (982, 480)


def test_conditions(meter, tmp_path):
    (tmp_path / "list.json").write_text(json.dumps([
        {"channel": 'a "b",c', "frequency_khz": 557143, "band": 1},
        {"frequency_khz": 11727480, "lo_khz": 10678000, "system": "satellite", "modulation": "8PSK", "supply": 2,
         "band": 1},
        {"frequency_khz": 80200, "system": 10, "condition": 3, "output": 1, "band": 1}]))
    result = meter.vx63("measure", "multi", "--conditions", tmp_path / "list.json", "--csv")
    assert (result.returncode, result.stderr) == (0, "")
    rows = list(csv.DictReader(io.StringIO(result.stdout)))
    assert [row["channel"] for row in rows] == ['a "b",c', "2", "3"]
    assert [row["modulation"] for row in rows] == ["OFDM", "8PSK", ""]
    body = next(bytes.fromhex(message["body"]) for message in meter.messages() if message["kind"] == "request")
    assert body[12 + 32:12 + 64].hex() == ("78f2b200" "f0eea200" "0100" "0100" "1000" "0000" "0000000000000000" "00"
                                           "0200" "00" "00000000")


@pytest.mark.parametrize("contents, why", [
    ("", "byte 1 is not what JSON has there"),
    ("{}", "must be an array of at least one channel"),
    ("[]", "must be an array of at least one channel"),
    ("[1]", "[0]: must be an object"),
    ("[{}]", "[0].frequency_khz: is missing"),
    ('[{"frequency_khz": 1}, {"frequency_khz": 0}]', "[1].frequency_khz: must be a whole number from 1 to 4294967295"),
    ('[{"frequency_khz": 18446744073709551615}]', "[0].frequency_khz: must be"),
    ('[{"frequency_khz": -1}]', "[0].frequency_khz: must be"),
    ('[{"frequency_khz": 1.5}]', "[0].frequency_khz: must be"),
    ('[{"frequency_khz": "1"}]', "[0].frequency_khz: must be"),
    ('[{"frequency_khz": 1, "supply": 5}]', "[0].supply: must be a whole number from 0 to 4"),
    ('[{"frequency_khz": 1, "system": "moon"}]', "[0].system: is none of terrestrial,"),
    ('[{"frequency_khz": 1, "modulation": "am"}]', "[0].modulation: is none of OFDM,"),
    ('[{"frequency_khz": 1, "channel": "123456789"}]', "[0].channel: is longer than 8 bytes"),
    ('[{"frequency_khz": 1, "channel": 1}]', "[0].channel: must be a text"),
    ('[{"frequency_khz": 1, "sytem": 1}]', "[0].sytem: is no key"),
    ("[" * 100000, "is not what JSON has there"),
    (" " * (1 << 20) + "[]", "it is larger than 1 MiB"),
], ids=itertools.count())
def test_wrong_conditions(meter, tmp_path, contents, why):
    (tmp_path / "list.json").write_text(contents)
    result = meter.vx63("measure", "multi", "--conditions", "list.json", cwd=tmp_path)
    assert (result.returncode, result.stdout) == (66, "")
    assert result.stderr.startswith("vx63: cannot read the conditions in list.json: ")
    assert why in result.stderr and result.stderr.count("\n") == 1


@pytest.mark.parametrize("path, why", [("nowhere.json", "No such file or directory"), (".", "Is a directory")])
def test_missing_conditions(meter, tmp_path, path, why):
    result = meter.vx63("measure", "multi", "--conditions", path, cwd=tmp_path)
    assert result.returncode == 66 and why in result.stderr


@pytest.mark.parametrize("command", [["scan"], ["measure", "multi"]])
@pytest.mark.parametrize("fault, code, why", [
    ("meas/0x109=ret,2", 2, "cannot start the "),
    ("meas/0x109=ret,4", 1, "cannot start the "),
    ("meas/0x10B:5-=ret,3", 7, "cannot read channel "),
    ("meas/0x10B:5-=refuse", 1, "cannot read channel "),
    ("meas/0x109:2-=ret,2", 2, "cannot stop the "),
])
def test_failures(meter, command, fault, code, why):
    result = meter.vx63(*command, "--plan", "uhf", fault=fault)
    assert (result.returncode, result.stdout) == (code, "")
    assert result.stderr.startswith("vx63: " + why)
    assert result.stderr.count("\n") == 1
    assert parts(meter)[-1][0] == 0  # whatever was registered is dropped


def test_progress_and_ctrl_c(meter):
    terminal = Terminal(*meter.command(VX63, "scan", "--plan", "uhf", fault="meas/0x10B:12=late,4000"), columns=60)
    terminal.wait_for("/40 ")
    terminal.wait_for("MHz")
    terminal.type("\x03")
    assert terminal.finish() == 130
    assert "stopping the measurement" in terminal.shown and "Channel" not in terminal.shown
    assert re.search(r"\[[#.]{16}\] \d+/40 \d\d +\d{3}\.143 MHz", terminal.shown)
    assert parts(meter) == [(2, 0, 40), (0, 0, 0)]


def test_sigterm_stops_the_list(meter):
    result = meter.shell("""
        $VX63 scan --plan up-stream > "$DIR/out" & pid=$!
        until $VX63 status --id 16 --json | grep -q '"measurement_status_code":8'; do :; done
        kill $pid; wait $pid; echo $?
        cat "$DIR/out"
    """)
    assert (result.stdout, result.stderr) == ("143\n", "")
    assert parts(meter)[-1] == (0, 0, 0)
