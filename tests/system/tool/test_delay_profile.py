"""vx63 measure delay-profile."""

import json
import re

import pytest

from pictures import Svg, png_size
from tool_support import STOP, VX63, Terminal, environment, isolation, meter  # noqa: F401 (fixtures)

NETWORK = ("measure", "delay-profile", "--freq", "551143")  # channel 26: echoes at -9.2, 18.6 and 122 us
STOP_PROFILE = ("delay-profile-start", bytes(5))


def test_echoes_of_the_scene(meter):
    result = meter.vx63(*NETWORK, "--json")
    assert (result.returncode, result.stderr) == (0, "")
    profile = json.loads(result.stdout)
    assert len(profile["samples_db"]) == 2048 and profile["samples_db"][512] == 0
    assert (profile["sample_us"], profile["first_sample_us"]) == (0.1640625, -84)
    expected = [(-9.2, -26), (0, 0), (18.6, -14), (122, -33)]
    assert len(profile["paths"]) == len(expected)
    for path, (delay, level) in zip(profile["paths"], expected):
        assert abs(path["delay_us"] - delay) < 0.1
        assert abs(path["level_db"] - level) < 1
        assert abs(path["distance_km"] - path["delay_us"] * 0.2998) < 0.01
    # 1/8 of 1008 us, from the first path on.
    assert abs(profile["guard_from_us"] + 9.2) < 0.1
    assert abs(profile["guard_to_us"] - profile["guard_from_us"] - 126) < 1e-9
    assert [path["outside_guard"] for path in profile["paths"]] == [False, False, False, True]


@pytest.mark.parametrize("frequency, echoes", [("521143", [4.3, 31.5]), ("539143", [4.3]), ("563143", [12.4, 57]),
                                               ("557143", []), ("491143", [])])
def test_no_path_too_many(meter, frequency, echoes):
    profile = json.loads(meter.vx63("measure", "delay-profile", "--freq", frequency, "--json").stdout)
    found = [path["delay_us"] for path in profile["paths"]]
    assert len(found) == len(echoes) + 1
    for delay, expected in zip(found, [0, *echoes]):
        assert abs(delay - expected) < 0.15


def test_text_and_picture(meter, tmp_path):
    result = meter.vx63(*NETWORK, "--plot", tmp_path / "d.png", env=environment(COLUMNS="60"))
    assert (result.returncode, result.stderr) == (0, "")
    assert re.search(r"^Path   Delay us        km      dB\n"
                     r"echo      -9\.\d\d    -2\.\d\d\d   -2\d\.\d\n"
                     r"main +-?0\.00 +-?0\.000 +0\.0\n"
                     r"echo      18\.\d\d     5\.\d\d\d   -1\d\.\d\n"
                     r"echo     12\d\.\d\d    36\.\d\d\d   -3\d\.\d  outside\n", result.stdout, re.M)
    assert re.search(r"\|-+ guard 1/8 -+\|", result.stdout)
    assert max(map(len, result.stdout.splitlines())) <= 60
    assert png_size(tmp_path / "d.png") == (1964, 1116)
    assert meter.requests()[-1] == STOP_PROFILE
    assert meter.vx63(*NETWORK, "--plot", tmp_path / "d.svg").returncode == 0
    svg = Svg(tmp_path / "d.svg")
    assert svg.size == (982, 558)
    assert svg.title == "Delay profile, 551.143 MHz"
    assert re.fullmatch(r"Level \d\d\.\d dBµV, C/N \d\d\.\d dB, 4 paths", svg.texts[1])
    assert re.fullmatch(r"terrestrial, input 0, \d{4}-\d\d-\d\d \d\d:\d\d", svg.texts[2])
    assert {"main path", "guard interval 1/8"} < set(svg.texts)


def test_without_lock(meter):
    result = meter.vx63("measure", "delay-profile", "--freq", "575143", "--lock-timeout", "0.3")
    assert (result.returncode, result.stdout) == (3, "")
    assert result.stderr.startswith("vx63: no lock at 575143 kHz")
    assert meter.requests()[-1] == STOP


@pytest.mark.parametrize("fault, code, why", [
    ("meas/0x107=ret,2", 2, "cannot start the delay profile: the meter refuses a value"),
    ("meas/0x107=ret,4", 1, "cannot start the delay profile: refused or failed: the measurement service"),
    ("meas/0x108=ret,3", 7, "cannot read the delay profile: the antenna power supply"),
    ("meas/0x108:4-=refuse", 1, "cannot read the delay profile: the measurement service refuses"),
    ("meas/0x107:2-=ret,2", 2, "cannot stop the delay profile: the meter refuses a value"),
])
def test_failures(meter, fault, code, why):
    result = meter.vx63(*NETWORK, fault=fault)
    assert (result.returncode, result.stdout) == (code, "")
    assert result.stderr.startswith("vx63: " + why)
    assert result.stderr.count("\n") == 1
    if fault != "meas/0x107=ret,2":
        assert meter.requests()[-1] == STOP_PROFILE


def test_ctrl_c(meter):
    terminal = Terminal(*meter.command(VX63, *NETWORK, fault="meas/0x108:2=late,4000"))
    terminal.wait_for("Measuring the delay profile")
    terminal.type("\x03")
    assert terminal.finish() == 130
    assert "main" not in terminal.shown
    assert meter.requests()[-1] == STOP_PROFILE
