"""A service that does not answer: each test takes the library's time-out of 10 seconds, once or twice."""

from tool_support import VX63, Terminal, isolation, meter  # noqa: F401 (fixtures)


def test_one_was_busy(meter):
    result = meter.vx63("power-supply", fault="dev:1=silence")
    assert (result.returncode, result.stderr) == (11, "vx63: cannot read the power supply: the meter was restarting or "
                                                      "busy, and answers again: repeat the command; if it "
                                                      "fails again, 'vx63 doctor' and 'vx63 log --errors' tell more\n")


def test_one_is_silent(meter):
    result = meter.vx63("power-supply", fault="dev=silence")
    assert result.returncode == 1
    assert result.stderr.startswith("vx63: cannot read the power supply: the device service does not answer, the others do: ")


def test_one_does_not_run(meter):
    result = meter.vx63("power-supply", fault="dev=die,60000")
    assert result.returncode == 1
    assert result.stderr.startswith("vx63: cannot read the power supply: the device service does not run: ")


def test_a_start_without_answer_is_stopped(meter):
    """The stop asks the silent service once more."""
    result = meter.vx63("measure", "single", "--freq", "557143", fault="meas/single-start:1=silence")
    assert result.returncode == 11
    assert [name for name, _ in meter.requests()][-3:] == ["single-start", "product", "single-start"]


def test_waiting_is_told_on_a_terminal(meter):
    terminal = Terminal(*meter.command(VX63, "power-supply", fault=["dev:1=silence", "sys=late,1000"]))
    terminal.wait_for("No answer: asking the system service (10 s at most)")
    assert terminal.finish() == 11
