"""vx63 input, power-supply and status of a meter that answers."""

import json

import pytest

from tool_support import isolation, meter  # noqa: F401 (fixtures)


def test_input_is_selected(meter):
    result = meter.shell("$VX63 input 1; $VX63 status --json; $VX63 input 0; $VX63 status --json")
    assert (result.returncode, result.stderr) == (0, "")
    assert [json.loads(line)["input"] for line in result.stdout.splitlines()] == [1, 0]


def test_power_supply_is_switched_and_shown(meter):
    result = meter.shell("$VX63 power-supply 3 && $VX63 power-supply")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == ("Power supply   3 (11 V, tone)\n"
                             "Voltage        11 V\n"
                             "Current        160 mA\n"
                             "Power          1760 mW\n"
                             "A/D converter  563\n")


@pytest.mark.parametrize("word, code", [("off", 0), ("0", 0), ("4", 4), ("0x2", 2)])
def test_power_supply_words(meter, word, code):
    assert meter.vx63("power-supply", word).returncode == 0
    assert meter.messages()[0]["body"] == f"{code:02x}000000"


def test_power_supply_as_json(meter):
    result = meter.shell("$VX63 power-supply 2 && $VX63 power-supply --json")
    assert (result.returncode, result.stderr) == (0, "")
    assert json.loads(result.stdout) == {
        "power_supply": 2, "voltage_v": 15, "current_ma": 160, "power_mw": 2400, "ad_value": 767}


def test_status_as_text(meter):
    result = meter.vx63("status")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == ("Measuring         no\n"
                             "Lock              no\n"
                             "Input             0\n"
                             "Measurement bits  0x00000000\n"
                             "Input bits        0x0000\n"
                             "Supply fault      no\n"
                             "Power supply      0 (off)\n"
                             "Voltage           0 V\n"
                             "Current           0 mA\n"
                             "Power             0 mW\n"
                             "A/D converter     0\n"
                             "Battery           80 %\n"
                             "Battery voltage   7400 mV\n"
                             "Battery state     good\n"
                             "Fed by            battery\n"
                             "Charger           off\n"
                             "Temperature       30 C\n"
                             "USB memory        none\n"
                             "Standby           none\n")


def test_status_while_another_measures(meter):
    script = """
        mkfifo "$DIR/rows"
        $VX63 measure single --id 16 --freq 557143 --count 1000 --interval 3600 > "$DIR/rows" &
        exec 3< "$DIR/rows"
        read -r header <&3
        read -r row <&3
        $VX63 status --json
        kill $!
        wait $!
    """
    status = json.loads(meter.shell(script).stdout)
    assert (status["measuring"], status["locked"]) == (True, True)
    assert status["measurement_status_code"] == 3


@pytest.mark.parametrize("fault, words, code, error", [
    ("meas/0x100=ret,2", ["input", "1"], 2, "cannot select input 1: the meter refuses a value"),
    ("meas/0x15=ret,2", ["power-supply", "1"], 2, "cannot switch the power supply to 1: the meter refuses a value"),
    ("dev=ret,1", ["power-supply"], 1, "cannot read the power supply: refused or failed: the device service answers"),
    ("dev=refuse", ["power-supply"], 1, "cannot read the power supply: the device service refuses the request (usOptOr"),
    ("dev=wrong", ["power-supply"], 1, "cannot read the power supply: something else comes in place of the answer of"),
])
def test_failures(meter, fault, words, code, error):
    result = meter.vx63(*words, fault=fault)
    assert result.returncode == code
    assert result.stdout == ""
    assert result.stderr.startswith("vx63: " + error)
    assert result.stderr.count("\n") == 1
