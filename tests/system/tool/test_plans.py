"""vx63 scan and vx63 measure multi over the channel plans: each takes its time, channel by channel."""

import json

import pytest

from channel_lists import UHF, channels, parts
from tool_support import DEFAULT_SCENE, as_text, environment, isolation, meter  # noqa: F401 (fixtures)

ROOT = "/usr/local/bin/"
BS = ["BS-1", "BS-3", "BS-5", "BS-7", "BS-9", "BS-11", "BS-13", "BS-15", "BS-17", "BS-19", "BS-21", "BS-23",
      "BS-8", "BS-12", "BS-14"]
CATV = {"1": "OFDM", "2": "OFDM", "3": "OFDM", "C24": "64QAM", "C25": "64QAM", "C26": "256QAM", "C27": "256QAM",
        "13": "64QAM", "14": "256QAM", "15": "256QAM"}


def found(result):
    return [channel["channel"] for channel in channels(result) if channel["signal"]]


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
    assert found(meter.vx63("scan", *options, "--jsonl")) == names


def test_changes_of_a_plan(meter):
    """The odd channels of the scene come with 11 V and the oscillator of the even ones."""
    result = meter.vx63("scan", "--plan", "cs", "--lo", "10678000", "--supply", "1", "--system", "satellite", "--jsonl")
    locked = [channel["channel"] for channel in channels(result) if channel["locked"]]
    assert locked == ["ND1", "ND3", "ND9"]


def test_cable_plan_tells_qam_from_ofdm(meter):
    """Each of 150 channels in two ways: more than one run can hold."""
    result = meter.vx63("scan", "--plan", "catv", "--input", "1", "--jsonl")
    list_ = channels(result)
    assert len(list_) == 150
    assert {channel["channel"]: channel["modulation"] for channel in list_ if channel["signal"]} == CATV
    registered = parts(meter)
    assert [count for kind, _, count in registered if kind != 0] == [40] * 6 + [16, 40, 4]
    assert [kind for kind, _, _ in registered] == [3] * 6 + [2, 0, 3, 2, 0]


def test_part_of_a_cable_plan(meter):
    meter.show(DEFAULT_SCENE)
    result = meter.vx63("measure", "multi", "--plan", "catv-high", "--system", "catv", "--mod", "256QAM", "--input", "1",
                        "--jsonl")
    list_ = channels(result)
    assert len(list_) == 88
    assert [channel["channel"] for channel in list_ if channel["locked"]] == ["14", "15"]
    assert parts(meter)[-2:] == [(1, 80, 8), (0, 0, 0)]


def test_thousand_channels(meter):
    list_ = channels(meter.vx63("scan", "--plan", "up-stream", "--input", "1", "--jsonl"))
    assert len(list_) == 1001
    assert [channel["channel"] for channel in list_ if channel["signal"]] == ["19.95", "20.00", "20.05"]
    assert [first for kind, first, _ in parts(meter) if kind == 2] == [240, 240, 240, 200]
    assert [kind for kind, _, _ in parts(meter)].count(0) == 4


def test_supply_of_several_bands_is_switched_back(meter):
    assert meter.vx63("scan", "--plan", "bs-cs", "--jsonl").returncode == 0
    requests = [(name, body[0]) for name, body in meter.requests() if name == "mix-band-supply"]
    assert requests == [("mix-band-supply", 1), ("mix-band-supply", 0)]


def test_plan_comes_from_the_settings_file(meter):
    """A channel that was moved in the file is measured where it lies now."""
    script = """
        file=/usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv
        sed -i 's/^13,473143/13,557143/' $file && $VX63 scan --plan uhf --jsonl
    """
    assert [channel["channel"] for channel in channels(meter.shell(script)) if channel["signal"]] == ["13", *UHF]


def test_missing_files_are_told(meter):
    """Without its files the meter measures by their factory contents."""
    result = meter.shell(f"""
        rm {ROOT}ch_set/channel_setting_file_uhf_6mhz.csv {ROOT}ch_set/channel_setting_file_bs_34.5mhz.csv \\
            {ROOT}meas_set/*
        $VX63 scan --plan uhf --jsonl; $VX63 scan --plan bs --jsonl
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
    result = meter.shell(f"{break_it} {ROOT}{path}; $VX63 scan --plan {plan} --jsonl")
    told = f"vx63: cannot read {name}: {why}: correct {ROOT}{path}, or use 'vx63 settings reset {name}'\n"
    assert (result.returncode, result.stdout, as_text(result.stderr)) == (65, "", told)
    assert meter.requests() == []
    result = meter.shell(f"{break_it} {ROOT}{path}; $VX63 settings show {name}")
    assert (result.returncode, result.stdout, result.stderr) == (65, "", told)


def test_thresholds_come_from_the_settings_file(meter):
    script = """
        file=/usr/local/bin/meas_set/measrement_setting_file_thrd.csv
        sed -i 's/^1,0,1,200,470,/1,0,1,200,680,/' $file && $VX63 scan --plan uhf --jsonl
    """
    verdicts = {channel["channel"]: channel["level_verdict"] for channel in channels(meter.shell(script))}
    assert verdicts["27"] == verdicts["21"] == "fail"
