"""Channels by their names, frequencies as people type them, and vx63 channels."""

import csv
import io
import json
import struct

import pytest

from channel_lists import channels
from tool_support import environment, isolation, meter  # noqa: F401 (fixtures)

SINGLE = ("measure", "single", "--lock-timeout", "0", "--json")
UHF_FILE = "/usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv"


def started(meter, command=0x103):
    """What the first start told the meter: frequency, oscillator, system, band, modulation, condition, name, supply."""
    body = next(bytes.fromhex(message["body"]) for message in meter.messages()
                if message["kind"] == "request" and message["usCmd"] == command)
    values = struct.unpack_from("<IIHHHH8s", body, 8)
    return (*values[:6], values[6].rstrip(b"\0").decode(), body[33], body[34])


@pytest.mark.parametrize("options, sent", [
    (["--channel", "27"], (557143, 0, 0, 1, 0, 0, "27", 0, 0)),
    (["--channel", "13"], (473143, 0, 0, 1, 0, 0, "13", 0, 0)),
    (["--channel", "13", "--system", "catv"], (473000, 0, 3, 8, 0, 0, "13", 0, 0)),
    (["--channel", "27", "--plan", "uhf"], (557143, 0, 0, 1, 0, 0, "27", 0, 0)),
    (["--channel", "027", "--plan", "UHF"], (557143, 0, 0, 1, 0, 0, "27", 0, 0)),
    (["--channel", "27", "--plan", "catv"], (557000, 0, 3, 8, 0, 0, "27", 0, 0)),
    (["--channel", "27", "--system", "terrestrial"], (557143, 0, 0, 1, 0, 0, "27", 0, 0)),
    (["--channel", "27", "--system", "catv"], (557000, 0, 3, 8, 0, 0, "27", 0, 0)),
    (["--channel", "27", "--plan", "catv", "--system", "terrestrial"], (557143, 0, 0, 8, 0, 0, "27", 0, 0)),
    (["--channel", "27", "--plan", "catv", "--mod", "OFDM"], (557143, 0, 0, 8, 1, 0, "27", 0, 0)),
    (["--channel", "27", "--plan", "catv", "--mod", "256QAM"], (557000, 0, 3, 8, 0x1000, 0, "27", 0, 0)),
    (["--channel", "c-24"], (231000, 0, 3, 8, 0, 0, "C24", 0, 0)),
    (["--channel", "BS-1"], (11727480, 10678000, 1, 2, 0, 0, "BS-1", 2, 0)),
    (["--channel", "bs01"], (11727480, 10678000, 1, 2, 0, 0, "BS-1", 2, 0)),
    (["--channel", "BS 8"], (11861740, 9505000, 2, 2, 0, 0, "BS-8", 2, 0)),
    (["--channel", "nd2"], (12291000, 10678000, 1, 3, 0, 0, "ND2", 2, 0)),
    (["--channel", "K-1", "--plan", "jsat3a"], (12268250, 10678000, 5, 4, 0, 0, "K-1", 1, 0)),
    (["--channel", "K-1", "--plan", "jsat4b"], (12268000, 10678000, 5, 5, 0, 0, "K-1", 1, 1)),
    (["--channel", "k2", "--plan", "jsat4b"], (12283000, 10678000, 5, 5, 0, 0, "K-2", 2, 1)),
    (["--channel", "pl1"], (70000, 0, 10, 11, 0, 0, "PL 1", 0, 0)),
    (["--channel", "76.5"], (76500, 0, 10, 14, 0, 0, "76.5", 0, 0)),
    (["--channel", "h-11"], (159250, 0, 6, 12, 0, 0, "H-11", 0, 0)),
    (["--channel", "BS-1", "--lo", "9505 MHz", "--system", "level", "--band", "7", "--supply", "4", "--condition", "3"],
     (11727480, 9505000, 10, 7, 0, 3, "BS-1", 2, 1)),
    (["--channel", "BS-1", "--mod", "8PSK"], (11727480, 10678000, 1, 2, 0x10, 0, "BS-1", 2, 0)),
    (["--channel", "BS-2", "--mod", "8PSK"], (11746660, 9505000, 2, 2, 0x20, 0, "BS-2", 2, 0)),
    # With --freq a channel without --plan is but a name.
    (["--freq", "557143", "--channel", "27"], (557143, 0, 0, 0, 0, 0, "27", 0, 0)),
    (["--freq", "556.5MHz", "--channel", "27"], (556500, 0, 0, 0, 0, 0, "27", 0, 0)),
    (["--freq", "1049480", "--channel", "bs1", "--system", "satellite"], (1049480, 0, 1, 0, 0, 0, "bs1", 0, 0)),
    (["--freq", "11.72748GHz", "--channel", "BS-1", "--lo", "9.75GHz"], (11727480, 9750000, 0, 0, 0, 0, "BS-1", 0, 0)),
    (["--freq", "557143", "--channel", "roof"], (557143, 0, 0, 0, 0, 0, "roof", 0, 0)),
    (["--freq", "557.2 MHz", "--channel", "27", "--plan", "uhf"], (557200, 0, 0, 1, 0, 0, "27", 0, 0)),
    (["--freq", "557143"], (557143, 0, 0, 0, 0, 0, "", 0, 0)),
    (["--freq", "557143kHz"], (557143, 0, 0, 0, 0, 0, "", 0, 0)),
    (["--freq", "1.03648 ghz", "--lo", "0"], (1036480, 0, 0, 0, 0, 0, "", 0, 0)),
])
def test_what_is_sent(meter, options, sent):
    result = meter.vx63(*SINGLE, *options)
    assert result.returncode in (0, 3) and json.loads(result.stdout)["frequency_khz"] == sent[0]
    assert started(meter) == sent


@pytest.mark.parametrize("options, why", [
    (["--channel", "1"], "'1': it is in catv, sccb: say which with --plan"),
    (["--channel", "K-1"], "'K-1': it is in jsat3a, jsat4b: say which with --plan"),
    (["--channel", "h11"], "'h11': it can be H011 at 158.25 MHz or H-11 at 159.25 MHz of plan skyp: give the whole name"),
    (["--channel", "roof"], "'roof': no plan has it: see 'vx63 channels', or give --freq"),
    (["--channel", "BS-1", "--plan", "uhf"], "'BS-1': plan uhf has none of that name: see 'vx63 channels uhf'"),
    (["--freq", "563143", "--channel", "27"],
     "'27': --freq is 563.143 MHz, the channel is at 557.143 MHz in uhf: leave out one of them"),
    (["--freq", "557644", "--channel", "27"], "'27': --freq is 557.644 MHz, the channel is at 557.143 MHz in uhf: "),
    (["--freq", "557500", "--channel", "28", "--plan", "uhf"],
     "'28': --freq is 557.5 MHz, the channel is at 563.143 MHz in uhf: leave out one of them"),
])
def test_channels_that_are_refused(meter, options, why):
    result = meter.vx63("measure", "single", *options)
    assert (result.returncode, result.stdout) == (64, "")
    assert result.stderr.startswith("vx63: cannot tune channel " + why) and result.stderr.count("\n") == 1
    assert meter.requests() == []


def test_half_a_megahertz_is_the_same_channel(meter):
    assert meter.vx63(*SINGLE, "--freq", "557643", "--channel", "27", "--plan", "uhf").returncode in (0, 3)
    assert meter.vx63(*SINGLE, "--freq", "557644", "--channel", "27", "--plan", "uhf").returncode == 64


@pytest.mark.parametrize("command", ["constellation", "delay-profile"])
def test_others_that_tune(meter, command):
    result = meter.vx63("measure", command, "--channel", "27", "--plan", "uhf", "--json")
    assert (result.returncode, result.stderr) == (0, "")
    assert started(meter) == (557143, 0, 0, 1, 0, 0, "27", 0, 0)


def test_delay_profile_takes_what_is_terrestrial(meter):
    """In place of another plan, and of QAM on a cable."""
    result = meter.vx63("measure", "delay-profile", "--channel", "27", "--json")
    assert (result.returncode, result.stderr) == (0, "")
    assert started(meter, 0x107) == (557143, 0, 0, 1, 0, 0, "27", 0, 0)
    meter.vx63("measure", "delay-profile", "--channel", "C24", "--lock-timeout", "0")
    assert started(meter) == (231143, 0, 0, 8, 0, 0, "C24", 0, 0)
    result = meter.vx63("measure", "delay-profile", "--channel", "bs1")
    assert result.returncode == 64 and "is of terrestrial (OFDM) alone, not of satellite" in result.stderr
    assert meter.requests() == []


def test_refused_delay_profile_tells_the_values(meter):
    result = meter.vx63("measure", "delay-profile", "--freq", "557143", fault="meas/0x107=ret,2")
    assert result.returncode == 2
    assert result.stderr.startswith("vx63: cannot start the delay profile: the meter refuses a value of frequency "
                                    "557.143 MHz, local oscillator none, system terrestrial, band 0, ")


def test_channel_comes_from_the_settings_file(meter):
    result = meter.shell(f"sed -i 's/^27,557143/27,557000/' {UHF_FILE}; $VX63 measure single --channel 27 --plan uhf "
                         "--lock-timeout 0 --json")
    assert result.returncode in (0, 3) and started(meter)[0] == 557000


def test_missing_files_of_other_plans_are_not_told(meter):
    result = meter.shell("rm /usr/local/bin/ch_set/*; $VX63 measure single --channel C24 --lock-timeout 0 --json")
    assert result.returncode in (0, 3)
    assert result.stderr.splitlines()[0] == "vx63: ch_set/catv_all is missing: its factory contents hold"
    assert "ch_set" not in "".join(result.stderr.splitlines()[1:])


def test_broken_files(meter):
    """A plan that cannot be read may have the channel, too; with a frequency it is not needed."""
    result = meter.shell(f"sed -i '5s/,.*/,12x/' {UHF_FILE}; $VX63 measure single --channel C24")
    assert (result.returncode, result.stdout) == (65, "")
    assert result.stderr.startswith("vx63: cannot read ch_set/uhf: line 5, column 2: not a number: ")
    result = meter.shell(f"sed -i '5s/,.*/,12x/' {UHF_FILE}; $VX63 measure single --channel C24 --plan catv --json "
                         "--lock-timeout 0; $VX63 measure single --channel 27 --freq 557143 --json")
    assert [json.loads(line)["frequency_khz"] for line in result.stdout.splitlines()] == [231000, 557143]


@pytest.mark.parametrize("command", [["scan"], ["measure", "multi"]])
@pytest.mark.parametrize("plan, names, picked", [
    ("uhf", "13-15,27", ["13", "14", "15", "27"]),
    ("uhf", "27,13-14,027,14", ["13", "14", "27"]),
    ("bs", "BS-1-bs5,bs8", ["BS-1", "BS-3", "BS-5", "BS-8"]),
    ("catv", "3-C14", ["3", "C13", "C14"]),
    ("fm", "76.5", ["76.5"]),
])
def test_some_channels_of_a_plan(meter, command, plan, names, picked):
    result = meter.vx63(*command, "--plan", plan, "--channel", names, "--jsonl")
    assert [channel["channel"] for channel in channels(result)] == picked


@pytest.mark.parametrize("names, why", [
    ("270", "'270': plan uhf has none of that name"),
    ("13,", "'': plan uhf has none of that name"),
    ("15-13", "'15-13': plan uhf has none of that name"),
    ("13-99", "'13-99': plan uhf has none of that name"),
])
def test_channels_that_cannot_be_picked(meter, names, why):
    result = meter.vx63("scan", "--plan", "uhf", "--channel", names)
    assert (result.returncode, result.stdout) == (64, "")
    assert result.stderr.startswith("vx63: cannot tune channel " + why) and meter.requests() == []


@pytest.mark.parametrize("options, why", [
    (["--plan", "uhf", "--mod", "BPSK"], "13 of plan uhf: BPSK is no modulation of terrestrial, which has OFDM: check "),
    (["--plan", "bs", "--lo", "5GHz"],
     "BS-1 of plan bs: 11727.48 MHz less the local oscillator, 5000 MHz, is 6727.48 MHz, outside 10..3224 MHz of the "),
])
def test_plans_that_the_meter_would_refuse(meter, options, why):
    result = meter.vx63("scan", *options)
    assert (result.returncode, result.stdout) == (64, "")
    assert result.stderr.startswith("vx63: cannot measure channel " + why) and meter.requests() == []


def test_modulation_has_the_code_of_each_system(meter):
    """8PSK of the first generation and of the second; the names of a cable's channels, with QAM alone."""
    assert meter.vx63("scan", "--plan", "bs", "--channel", "BS-1,BS-2", "--mod", "8PSK").returncode == 0
    body = next(bytes.fromhex(message["body"]) for message in meter.messages() if message["usCmd"] == 0x109)
    assert [struct.unpack_from("<H", body, 12 + 32 * place + 12)[0] for place in (0, 1)] == [0x10, 0x20]
    assert meter.vx63("scan", "--plan", "catv", "--channel", "1", "--mod", "256QAM", "--json").returncode == 0
    body = next(bytes.fromhex(message["body"]) for message in meter.messages() if message["usCmd"] == 0x109)
    assert (body[10], struct.unpack_from("<I", body, 12)[0]) == (1, 93000)


def test_plans_are_shown(meter):
    result = meter.vx63("channels")
    assert (result.returncode, result.stderr) == (0, "")
    header, *rows = result.stdout.splitlines()
    assert header.split() == ["Plan", "Channels", "MHz", "System", "What", "it", "is"]
    assert len(rows) == 16
    assert rows[0].split() == ["uhf", "40", "473.143..707.143", "terrestrial", "UHF", "television"]
    assert rows[4].split() == ["catv", "150", "93..995.143", "catv", "cable", "television"]
    rows = channels(meter.vx63("channels", "--jsonl"))
    assert rows[1] == {"plan": "bs", "description": "BS satellite", "channels": 24, "lowest_khz": 11727480,
                       "highest_khz": 12168620, "system": "satellite"}
    assert [row["channels"] for row in rows] == [40, 24, 26, 50, 150, 62, 88, 113, 28, 32, 23, 24, 251, 6, 20, 1001]
    rows = list(csv.DictReader(io.StringIO(meter.vx63("channels", "--csv").stdout)))
    assert rows[5] == {"plan": "catv-low", "description": "cable: 90 to 470 MHz", "channels": "62",
                       "lowest_khz": "93000", "highest_khz": "465143", "system": "catv"}
    assert meter.requests() == []


def test_channels_of_a_plan_are_shown(meter):
    result = meter.vx63("channels", "bs")
    assert (result.returncode, result.stderr) == (0, "")
    lines = result.stdout.splitlines()
    assert len(lines) == 25
    assert lines[0].split() == ["Channel", "MHz", "System", "Band", "LO", "MHz", "Pol", "Supply"]
    assert lines[1].split() == ["BS-1", "11727.48", "satellite", "2", "10678", "R", "15", "V"]
    assert lines[13].split() == ["BS-2", "11746.66", "satellite-2", "2", "9505", "L", "15", "V"]
    lines = meter.vx63("channels", "CATV").stdout.splitlines()
    assert [line.split() for line in lines[:3]] == [["Channel", "MHz", "System", "Band"], ["1", "93", "catv", "8"],
                                                    ["1", "93.143", "terrestrial", "8"]]
    rows = channels(meter.vx63("channels", "sccb", "--jsonl"))
    assert rows[0] == {"channel": "1", "frequency_khz": 12290000, "system": "jsat-2", "band": 6, "lo_khz": 10678000,
                       "polarisation": "V", "power_supply": 1}
    assert rows[12]["polarisation"] == "H"
    rows = list(csv.DictReader(io.StringIO(meter.vx63("channels", "pilot", "--csv").stdout)))
    assert rows[0] == {"channel": "PL 1", "frequency_khz": "70000", "system": "level", "band": "11", "lo_khz": "0",
                       "polarisation": "", "power_supply": "0"}


@pytest.mark.parametrize("plan", ["", "uhf", "bs", "catv", "sccb", "up-stream"])
def test_narrow_terminals_leave_columns_out(meter, plan):
    result = meter.vx63("channels", *plan.split(), env=environment(COLUMNS="40"))
    assert result.returncode == 0
    assert max(map(len, result.stdout.splitlines())) <= 40
    assert result.stdout.split()[0] == ("Channel" if plan else "Plan") and "MHz" in result.stdout


def test_missing_plan_is_shown_as_the_factory_has_it(meter):
    result = meter.shell("rm /usr/local/bin/*_set/*.csv; $VX63 channels --jsonl; $VX63 channels uhf --jsonl")
    rows = [json.loads(line) for line in result.stdout.splitlines()]
    assert (len(rows), rows[0]["channels"], rows[16]["channel"]) == (16 + 40, 40, "13")
    assert result.stderr == "vx63: ch_set/uhf is missing: its factory contents hold\n"


@pytest.mark.parametrize("plan", ["uhf", "bs", "cs", "bs-cs", "catv", "catv-low", "catv-high", "skyp", "jsat3a", "jsat4b",
                                  "sccb", "sccc", "fm", "lte", "pilot", "up-stream"])
def test_every_channel_is_found_by_its_name(meter, plan):
    names = {row["channel"] for row in channels(meter.vx63("channels", plan, "--jsonl"))}
    result = meter.vx63("scan", "--plan", plan, "--channel", ",".join(sorted(names)), "--mod", "0x8000")
    assert result.returncode == 64 and "0x8000 is no modulation of" in result.stderr  # all found, none measured


def test_broken_plan_is_not_shown(meter):
    result = meter.shell(f"sed -i '5s/,.*/,12x/' {UHF_FILE}; $VX63 channels uhf")
    assert (result.returncode, result.stdout) == (65, "")
    assert result.stderr.startswith("vx63: cannot read ch_set/uhf: ")


def test_a_broken_plan_stops_no_other(meter):
    result = meter.shell("""
        echo broken > /usr/local/bin/ch_set/channel_setting_file_lte.csv
        $VX63 measure single --channel 27 --jsonl
        $VX63 channels | grep lte
        $VX63 channels --jsonl | grep lte
        $VX63 measure single --channel DL-L; echo $?
    """)
    reading, *rows, code = result.stdout.splitlines()
    assert json.loads(reading)["frequency_khz"] == 557143
    assert rows[0].split()[:3] == ["lte", "broken", "-"]
    assert json.loads(rows[1])["channels"] is None
    assert code == "65" and "cannot read ch_set/lte" in result.stderr
