"""vx63 measure optical, dc and angle, vx63 angle calibrate."""

import json

import pytest

from tool_support import VX63, Terminal, isolation, meter  # noqa: F401 (fixtures)


@pytest.mark.parametrize("wavelength, dbm", [("1490", -18.4), ("1550", -9.7), ("1310", 1.8), ("850", -70)])
def test_optical(meter, wavelength, dbm):
    result = meter.vx63("measure", "optical", "--wavelength", wavelength, "--json")
    assert (result.returncode, result.stderr) == (0, "")
    reading = json.loads(result.stdout)
    assert list(reading) == ["wavelength_nm", "power_dbm"]
    assert reading["wavelength_nm"] == int(wavelength) and abs(reading["power_dbm"] - dbm) < 0.6
    bodies = [message["body"] for message in meter.messages() if message["kind"] == "request"]
    assert bodies == ["00000000" "01000000" + int(wavelength).to_bytes(4, "little").hex(), "00000000", "00" * 12]


def test_optical_as_text(meter):
    result = meter.vx63("measure", "optical", "--wavelength", "1490")
    assert result.returncode == 0
    assert result.stdout.splitlines()[0] == "Wavelength  1490 nm"
    assert result.stdout.splitlines()[1].startswith("Power       -18.") and result.stdout.endswith(" dBm\n")


def test_dc(meter):
    result = meter.vx63("measure", "dc", "--input", "1")
    assert (result.returncode, result.stderr) == (0, "")
    assert abs(float(result.stdout.removesuffix(" V\n")) - 28.4) < 0.2
    assert [name for name, _ in meter.requests()][-1] == "dc-start"
    assert meter.requests()[-1][1][4] == 0
    assert json.loads(meter.vx63("measure", "dc", "--json").stdout) == {"dc_v": 0}


def test_angle(meter):
    result = meter.shell("$VX63 measure angle --json && $VX63 angle calibrate --json && $VX63 measure angle --json")
    assert (result.returncode, result.stderr) == (0, "")
    before, calibration, after = map(json.loads, result.stdout.splitlines())
    for reading in (before, after):
        assert abs(reading["roll_deg"] - 1.5) < 1 and abs(reading["pitch_deg"] - 38) < 1.5
        assert sum(x * x for x in reading["acceleration_g"]) == pytest.approx(1, abs=0.05)
    assert (before["calibrated"], before["heading_deg"]) == (False, None)
    assert after["calibrated"] is True and abs(after["heading_deg"] - 224) < 5
    assert calibration["state_code"] == 4
    for point in calibration["centre_points_ut"]:
        assert point == pytest.approx([12.4, -7.1, 4.6], abs=0.3)


def test_angle_as_text(meter):
    result = meter.vx63("measure", "angle")
    assert [line.split("  ")[0] for line in result.stdout.splitlines()] == [
        "Roll", "Pitch", "Heading", "Acceleration", "Magnetic field", "Level acceleration", "Level field"]
    assert "- (not calibrated)" in result.stdout
    assert [body[0] for _, body in meter.requests()] == [1, 0, 0, 0]


def test_calibration_shows_its_progress(meter):
    terminal = Terminal(*meter.command(VX63, "angle", "calibrate"))
    assert terminal.finish() == 0
    for turn in (1, 2, 3):
        assert f"Calibrating: turn {turn} of 3" in terminal.shown
    assert "Calibration     finished\r\n" in terminal.shown


def test_calibration_that_is_interrupted(meter):
    terminal = Terminal(*meter.command(VX63, "angle", "calibrate", fault="dev/0x20:5=late,4000"))
    terminal.wait_for("turn 1 of 3")
    terminal.type("\x03")
    assert terminal.finish() == 130
    assert "goes on with the calibration, which cannot be stopped" in terminal.shown


def test_calibration_that_takes_too_long(meter):
    result = meter.vx63("angle", "calibrate", "--timeout", "0")
    assert (result.returncode, result.stdout) == (1, "")
    assert result.stderr == ("vx63: cannot calibrate the angle sensor: not finished after 0 s, state 1: "
                             "wait longer with --timeout\n")


@pytest.mark.parametrize("words, fault, code, why, stop", [
    (["measure", "optical", "--wavelength", "800"], "meas/0x10C=ret,2", 2,
     "cannot start the optical power: the meter refuses a value of wavelength 800 nm: all are within", None),
    (["measure", "optical", "--wavelength", "1490"], "meas/0x10D=ret,5", 1, "cannot read the optical power: ", "opt"),
    (["measure", "dc"], "meas/0x10E:1=ret,2", 2, "cannot start the DC voltage: the meter refuses a value", None),
    (["measure", "dc"], "meas/0x10F=refuse", 1, "cannot read the DC voltage: ", "dc"),
    (["measure", "dc"], "meas/0x10E:2-=ret,2", 2, "cannot stop the DC voltage: the meter refuses a value", "dc"),
    (["measure", "angle"], "dev/0x07=refuse", 1, "cannot start the angle sensor: ", "angle"),
    (["measure", "angle"], "dev/0x21=ret,5", 1, "cannot read the angle sensor: ", "angle"),
    (["angle", "calibrate"], "dev/0x1F=ret,7", 1, "cannot start the calibration: ", None),
    (["angle", "calibrate"], "dev/0x20=refuse", 1, "cannot read the calibration: ", None),
])
def test_failures(meter, words, fault, code, why, stop):
    result = meter.vx63(*words, fault=fault)
    assert result.returncode == code
    assert result.stderr.startswith("vx63: " + why)
    assert result.stderr.count("\n") == 1
    if stop:
        assert meter.requests()[-1][0].startswith(stop)
