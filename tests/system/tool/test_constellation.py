"""vx63 measure constellation."""

import json
import math
import re

import pytest

from pictures import Svg, pdf_properties, pdf_texts, png_size
from tool_support import START, STOP, VX63, Terminal, environment, isolation, meter  # noqa: F401 (fixtures)

CHANNEL = ("measure", "constellation", "--freq", "557143")
TOO_WEAK = ("measure", "constellation", "--freq", "575143")  # present, but too weak to lock
COLLECT = ("constellation-start", bytes([0, 0, 0, 0, 1]))
COLLECT_NO_MORE = ("constellation-start", bytes(5))


def names(meter):
    return [name for name, _ in meter.requests() if name != "meas-status"]


@pytest.mark.parametrize("points, reads", [("1000", [624, 376]), ("2000", [624, 624, 624, 128]),
                                           ("4000", [624] * 6 + [256])])
def test_points_are_read_in_parts(meter, points, reads):
    result = meter.vx63(*CHANNEL, "--points", points, "--json")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout.count("\n") == 1
    reading = json.loads(result.stdout)
    assert len(reading["points"]) == int(points)
    requests = [message for message in meter.messages() if message["kind"] == "request"]
    bodies = [message["body"] for message in requests if message["command"] == "constellation-result"]
    assert [int.from_bytes(bytes.fromhex(body)[4:6], "little") for body in bodies] == reads
    start = next(message["body"] for message in requests if message["command"] == "constellation-start")
    assert start == "00000000" "0100" + int(points).to_bytes(2, "little").hex()
    assert meter.requests()[0] == START
    assert meter.requests()[-2:] == [COLLECT_NO_MORE, STOP]


# The C/N at the receiver follows from the scene's, the cable and the receiver's own noise.
@pytest.mark.parametrize("options, modulation", [
    (["--freq", "557143"], "64QAM"),
    (["--freq", "491143"], "64QAM"),
    (["--freq", "12291000", "--lo", "10678000", "--system", "satellite", "--supply", "2"], "QPSK"),
    (["--freq", "11727480", "--lo", "10678000", "--system", "satellite", "--supply", "2"], "8PSK"),
    (["--freq", "11861740", "--lo", "9505000", "--system", "satellite-2", "--supply", "2"], "16APSK"),
    (["--freq", "231000", "--system", "catv", "--input", "1"], "64QAM"),
    (["--freq", "243000", "--system", "catv", "--input", "1"], "256QAM"),
])
def test_modulation_error_ratio_is_the_ratio_of_carrier_to_noise(meter, options, modulation):
    reading = json.loads(meter.vx63("measure", "constellation", *options, "--points", "4000", "--json").stdout)
    assert reading["points_modulation"] == modulation
    assert abs(reading["mer_db"] - reading["cnr_db"]) < 1
    power = sum(i * i + q * q for i, q in reading["points"]) / len(reading["points"])
    assert abs(math.sqrt(power) - 64) < 3


def test_scenes_ratio(meter):
    """Channel 27: 33.5 dB at the antenna."""
    reading = json.loads(meter.vx63(*CHANNEL, "--points", "4000", "--json").stdout)
    assert abs(reading["mer_db"] - 33.5) < 0.8


def test_text(meter):
    result = meter.vx63(*CHANNEL)
    assert (result.returncode, result.stderr) == (0, "")
    assert re.search(r"^MER             3\d\.\d dB\nPoints          1000 of 64QAM\n┌─+┐\n", result.stdout, re.M)
    drawing = [line for line in result.stdout.splitlines() if line.startswith("│")]
    assert len(drawing) == 24 and {len(line) for line in drawing} == {50}
    assert sum(line.count("+") for line in drawing) == 64
    assert any(0x2800 < ord(letter) < 0x2900 for line in drawing for letter in line)


@pytest.mark.parametrize("columns, width", [("40", 38), ("20", 18), ("1", 18), ("1000000", 50), ("wide", 50)])
def test_text_fits_the_width(meter, columns, width):
    result = meter.vx63(*CHANNEL, env=environment(LC_ALL="C", COLUMNS=columns))
    drawing = [line for line in result.stdout.splitlines() if line.startswith(("|", "+-"))]
    assert result.stdout.isascii()
    assert {len(line) for line in drawing} == {width}
    assert len(drawing) == (width - 2) / 2 + 2


def test_pictures(meter, tmp_path):
    assert meter.vx63(*CHANNEL, "--plot", tmp_path / "c.PNG").returncode == 0
    assert meter.vx63(*CHANNEL, "--plot", tmp_path / "c.svg", "--json").returncode == 0
    width, height = png_size(tmp_path / "c.PNG")
    assert (width, height) == (1324, 1432)
    assert Svg(tmp_path / "c.svg").size == (662, 716)


def test_picture_tells_what_it_shows(meter, tmp_path):
    assert meter.vx63(*CHANNEL, "--input", "0", "--plot", tmp_path / "c.svg").returncode == 0
    svg = Svg(tmp_path / "c.svg")
    assert svg.title == svg.texts[0] == "Constellation, 557.143 MHz, 64QAM"
    assert re.fullmatch(r"MER 3\d\.\d dB, C/N 3\d\.\d dB, level 6\d\.\d dBµV, 1000 points", svg.texts[1])
    assert re.fullmatch(r"terrestrial, input 0, \d{4}-\d\d-\d\d \d\d:\d\d", svg.texts[2])
    assert svg.texts[3:5] == ["measured", "ideal (64QAM)"]
    assert svg.description == (f"{svg.texts[1]}; {svg.texts[2]}. "
                               "Across: I (root mean square of the ideal points: 64). Up: Q.")


def test_pdf(meter, tmp_path):
    assert meter.vx63(*CHANNEL, "--plot", tmp_path / "c.pdf").returncode == 0
    text = pdf_texts(tmp_path / "c.pdf")
    for words in ("Constellation, 557.143 MHz, 64QAM", " 1000 points\n", "measured", "ideal (64QAM)"):
        assert words in text
    properties = pdf_properties(tmp_path / "c.pdf")
    assert properties["Title"] == "Constellation, 557.143 MHz, 64QAM"
    assert properties["Subject"].startswith("MER ")
    assert (properties["Pages"], properties["Page size"]) == ("1", "662 x 716 pts")


@pytest.mark.parametrize("target, why", [("file/c.png", "Not a directory"), ("nowhere/c.png", "No such file"),
                                         ("full.png", "No space left on device: make room on the disk")])
def test_pictures_that_cannot_be_written(meter, tmp_path, target, why):
    (tmp_path / "full.png").symlink_to("/dev/full")
    (tmp_path / "file").touch()
    result = meter.vx63(*CHANNEL, "--plot", target, cwd=tmp_path)
    assert result.returncode == 74
    assert "MER             " in result.stdout  # what was measured is not lost
    assert result.stderr.startswith(f"vx63: cannot write the picture {target}: {why}")
    assert result.stderr.count("\n") == 1
    assert meter.requests()[-1] == STOP


def test_pictures_without_the_drawing_library(meter, tmp_path):
    """Only PNG and PDF need it."""
    library = tmp_path / "libcairo.so.2"
    library.touch()
    options = {"cwd": tmp_path, "env": environment(LD_LIBRARY_PATH=str(tmp_path))}
    for file in ("c.png", "c.pdf"):
        result = meter.vx63(*CHANNEL, "--plot", file, **options)
        assert result.returncode == 70
        assert "MER             " in result.stdout
        assert result.stderr == (f"vx63: cannot draw a picture: {library}: file too short: "
                                 "install libcairo2, or draw an .svg\n")
    result = meter.vx63(*CHANNEL, "--plot", "c.svg", **options)
    assert (result.returncode, result.stderr) == (0, "")
    assert Svg(tmp_path / "c.svg").size == (662, 716)


def test_without_lock(meter, tmp_path):
    result = meter.vx63(*TOO_WEAK, "--lock-timeout", "0.3", "--plot", tmp_path / "c.png")
    assert (result.returncode, result.stdout) == (3, "")
    assert result.stderr.startswith("vx63: no lock at 575143 kHz: none within 0.3 s: ")
    assert meter.requests()[-1] == STOP
    assert not (tmp_path / "c.png").exists()


@pytest.mark.parametrize("fault, code, why", [
    ("meas/0x103=ret,2", 2, "cannot start the measurement: "),
    ("meas/0x105=ret,2", 2, "cannot start the collection of points: the meter refuses a value"),
    ("meas/0x105=ret,9", 1, "cannot start the collection of points: refused or failed: the measurement service answers"),
    ("meas/0x106=ret,3", 7, "cannot read the constellation: the antenna power supply reports a fault"),
    ("meas/0x106=refuse", 1, "cannot read the constellation: "),
    ("meas/0x105:2-=ret,2", 2, "cannot stop the collection of points: the meter refuses a value"),
])
def test_failures(meter, fault, code, why):
    result = meter.vx63(*CHANNEL, fault=fault)
    assert result.returncode == code
    assert result.stdout == ""
    assert result.stderr.startswith("vx63: " + why)
    assert result.stderr.count("\n") == 1
    if "0x103" not in fault:
        assert meter.requests()[-1] == STOP


@pytest.mark.parametrize("kind", ["twice", "stray", "wrong", "refuse", "cut,44", "garbage"])
def test_one_bad_answer_harms_nobody(meter, kind):
    result = meter.shell("$VX63 measure constellation --freq 557143 --json; echo $?; $VX63 status --json",
                         fault=f"meas/0x106:1={kind}")
    *_, code, status = result.stdout.splitlines()
    assert int(code) in (0, 1, 2, 7)
    assert json.loads(status)["measuring"] is False


def test_ctrl_c_while_collecting(meter):
    terminal = Terminal(*meter.command(VX63, *CHANNEL, "--points", "4000", fault="meas/0x106:3=late,4000"))
    terminal.wait_for("Reading points: 1248 of 4000")
    terminal.type("\x03")
    assert terminal.finish() == 130
    assert "MER" not in terminal.shown
    assert meter.requests()[-2:] == [COLLECT_NO_MORE, STOP]
    assert names(meter).count("constellation-result") == 3
