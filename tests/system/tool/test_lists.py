"""vx63 scan and vx63 measure multi."""

import csv
import io
import itertools
import json
import re

import pytest

from channel_lists import UHF, WEAK, channels, parts
from pictures import Svg, png_size
from tool_support import DEFAULT_SCENE, VX63, Terminal, isolation, meter  # noqa: F401 (fixtures)


def test_scan_finds_the_channels_of_the_scene(meter):
    list_ = channels(meter.vx63("scan", "--plan", "uhf", "--jsonl"))
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
    assert re.search(r"^27 +557143 +6\d\.\d +3\d\.\d +(< )?\d\.\de-\d\d  yes +OFDM  pass$", table, re.M)
    assert re.search(r"^30 +575143 .* no +- +fail: level, no lock$", table, re.M)
    assert summary == "10 of 40 channels carry a signal, 9 locked\n"
    assert "█" in chart and chart.splitlines()[-1].startswith("dBuV 13 ")
    assert max(map(len, result.stdout.splitlines())) <= 80
    assert png_size(tmp_path / "u.png") == (1964, 1032)


def test_csv(meter):
    result = meter.vx63("measure", "multi", "--plan", "uhf", "--csv")
    assert (result.returncode, result.stderr) == (0, "")
    rows = list(csv.DictReader(io.StringIO(result.stdout)))
    assert list(rows[0]) == list(json.loads(meter.vx63("measure", "multi", "--plan", "uhf", "--json").stdout)[0])
    assert [row["channel"] for row in rows if row["locked"] == "true"] == [c for c in UHF if c != WEAK]
    assert {row["tsid"] for row in rows if row["signal"] == "false"} == {""}
    assert parts(meter) == [(1, 0, 40), (0, 0, 0)]


def test_multi_shows_every_channel(meter, tmp_path):
    result = meter.vx63("measure", "multi", "--plan", "uhf", "--plot", tmp_path / "m.svg")
    table = result.stdout.split("\n\n")[0].splitlines()
    assert [row.split()[0] for row in table[1:]] == [str(number) for number in range(13, 53)]
    assert Svg(tmp_path / "m.svg").size == (982, 516)


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
    body = next(bytes.fromhex(message["body"]) for message in meter.messages()
                if message["kind"] == "request" and message["usCmd"] == 0x109)
    assert body[12 + 32:12 + 64].hex() == ("78f2b200" "f0eea200" "0100" "0100" "1000" "0000" "0000000000000000" "00"
                                           "0200" "00" "00000000")


@pytest.mark.parametrize("contents, why", [
    ("", "byte 1 is not what JSON has there"),
    ("{}", "must be an array of at least one channel"),
    ("[]", "must be an array of at least one channel"),
    ("[1]", "[0]: must be an object"),
    ("[{}]", "[0].frequency_khz: is missing"),
    ('[{"frequency_khz": 557143}, {"frequency_khz": 0}]', "[1].frequency_khz: must be a whole number from 1 to 4294967295"),
    ('[{"frequency_khz": 18446744073709551615}]', "[0].frequency_khz: must be"),
    ('[{"frequency_khz": -1}]', "[0].frequency_khz: must be"),
    ('[{"frequency_khz": 1e400}]', "it holds a number that is too large"),
    ('[{"frequency_khz": 1.5}]', "[0].frequency_khz: must be"),
    ('[{"frequency_khz": "1"}]', "[0].frequency_khz: must be"),
    ('[{"frequency_khz": 1, "supply": 5}]', "[0].supply: must be a whole number from 0 to 4"),
    ('[{"frequency_khz": 1, "system": "moon"}]', "[0].system: is none of terrestrial,"),
    ('[{"frequency_khz": 1, "modulation": "am"}]', "[0].modulation: is none of OFDM,"),
    ('[{"frequency_khz": 1, "channel": "123456789"}]', "[0].channel: is longer than 8 bytes"),
    ('[{"frequency_khz": 1, "channel": 1}]', "[0].channel: must be a text"),
    ('[{"frequency_khz": 1, "sytem": 1}]', "[0].sytem: is no key"),
    ('[{"frequency_khz": 557143}, {"frequency_khz": 9999}]',
     "[1].frequency_khz: 9.999 MHz is outside 10..3224 MHz of the tuner"),
    ('[{"frequency_khz": 557143, "lo_khz": 557143}]',
     "[0].lo_khz: the local oscillator, 557.143 MHz, is not below the frequency, 557.143 MHz"),
    ('[{"frequency_khz": 557143, "modulation": "QPSK"}]',
     "[0].modulation: QPSK is no modulation of terrestrial, which has OFDM"),
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
    ("meas/0x109=ret,2", 2, "cannot start the (scan|multi-channel measurement): the meter refuses a value of the "
                            "channels 13 to 52: "),
    ("meas/0x109=ret,4", 1, "cannot start the "),
    ("meas/0x10B:5-=ret,3", 7, "cannot read channel "),
    ("meas/0x10B:5-=refuse", 1, "cannot read channel "),
    ("meas/0x109:2-=ret,2", 2, "cannot stop the "),
])
def test_failures(meter, command, fault, code, why):
    result = meter.vx63(*command, "--plan", "uhf", fault=fault)
    assert (result.returncode, result.stdout) == (code, "")
    assert re.match("vx63: " + why, result.stderr)
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
    meter.show(DEFAULT_SCENE)
    result = meter.shell("""
        $VX63 scan --plan up-stream > "$DIR/out" & pid=$!
        until $VX63 status --id 16 --json | grep -q '"measurement_status_code":8'; do :; done
        kill $pid; wait $pid; echo $?
        cat "$DIR/out"
    """)
    assert (result.stdout, result.stderr) == ("143\n", "")
    assert parts(meter)[-1] == (0, 0, 0)
