"""vx63 live, on a terminal that pyte emulates."""

import csv
import fcntl
import json
import os
import re
import signal
import struct
import termios

import pyte
import pytest

from conftest import descendants, native  # noqa: F401 (fixture)
from tool_support import DEFAULT_SCENE, START, STOP, VX63, Terminal, environment, isolation, meter, run, until  # noqa: F401 (fixtures)

# Nothing of it changes from one reading to the next.
STILL = "level_sigma_db = 0\ncn_sigma_db = 0\n"


class Screen(Terminal):
    """What a person sees of a program on a terminal."""

    def __init__(self, *command, columns=80, rows=24, **env):
        self.screen = pyte.Screen(columns, rows)
        self.stream = pyte.ByteStream(self.screen)
        self.bytes = b""
        super().__init__(*command, columns=columns, TERM=env.pop("TERM", "xterm-256color"), **env)
        if rows != 24:
            self.resize(columns, rows)

    def _read(self):
        try:
            piece = os.read(self.master, 65536)
        except OSError:  # EIO: the last program on the terminal has gone
            piece = b""
        self.bytes += piece
        # pyte knows no rep, by which ncurses repeats a character.
        self.stream.feed(re.sub(rb"([\x20-\x7e]|[\xc0-\xff][\x80-\xbf]+)\x1b\[(\d+)b",
                                lambda found: found[1] * (1 + int(found[2])), piece))
        return piece != b""

    @property
    def lines(self):
        return [line.rstrip() for line in self.screen.display]

    def until(self, condition):
        """Reads until the lines are as they should be."""
        while not condition(self.lines):
            assert self._read(), "\n".join(self.lines)

    def wait_for(self, text):
        self.until(lambda lines: any(text in line for line in lines))

    def resize(self, columns, rows):
        self.screen.resize(rows, columns)
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def finish(self):
        while self._read():
            pass
        self.after = termios.tcgetattr(self.master)
        os.close(self.master)
        return self.process.wait(timeout=300)


@pytest.fixture
def live(meter):
    """Starts it on a terminal, in a meter of its own."""
    def start(*words, channel="27", fault=(), scene=DEFAULT_SCENE, columns=80, rows=24, **env):
        meter.show(scene)
        command = meter.command(VX63, "live", "--channel", channel, "--interval", "0.01", *words, fault=fault)
        return Screen(*command, columns=columns, rows=rows, **env)
    return start


def vx63_of(terminal):
    """The process id of vx63 on the terminal."""
    return next(pid for pid, name in descendants(terminal.process.pid).items() if name == "vx63")


def service_of(terminal):
    return next(pid for pid, name in descendants(terminal.process.pid).items() if name == "vx63-meas")


def quit(terminal, key="q", code=0):
    """Ends it, and looks at what it left."""
    terminal.type(key)
    assert terminal.finish() == code
    assert terminal.bytes.count(b"\x1b[?1049h") == terminal.bytes.count(b"\x1b[?1049l") == 1
    assert terminal.bytes.rindex(b"\x1b[?1049l") > terminal.bytes.rindex(b"\x1b[?1049h")
    assert terminal.after == terminal.before


# ---- the screen ----

def test_screen(live, meter):
    locked = r"Lock yes  BER < \d\.\de-\d\d  MER 3\d\.\d dB  Verdict pass"
    terminal = live()
    terminal.until(lambda lines: re.fullmatch(locked, lines[13]))
    lines = terminal.lines
    assert re.fullmatch(r"27  557\.143 MHz   terrestrial OFDM   input 0, supply off {16}\d\d:\d\d:\d\d", lines[0])
    assert re.fullmatch(r".{34}Level, dBuV {26}peak 6\d\.\d", lines[1])
    assert re.fullmatch(r".{34}█{12}│█+◆░+│░+", lines[2])
    assert lines[5][34:] == "20         47                 90           120"
    assert re.fullmatch(r".{34}C/N, dB {30}peak 3\d\.\d", lines[7])
    assert lines[11][34:] == "5                     20     25             35"
    assert lines[16].startswith("Level") or lines[17].startswith("Level")
    assert lines[23] == "n next  p previous  c channel  i input  r reset peaks  t tone  q quit"
    terminal.until(lambda lines: sum(line.count("+") for line in lines[14:22]) >= 32)  # ideal points of 64QAM
    quit(terminal)
    requests = meter.requests()
    assert requests[0] == START and requests[-1] == STOP


def test_smallest_screen(live):
    terminal = live(columns=40, rows=12)
    # What is drawn comes from above to below, in pieces.
    terminal.until(lambda lines: re.fullmatch(r"Lock yes  BER < \d\.\de-\d\d  MER 3\d\.\d dB", lines[5]) and
                   lines[6] == "Verdict pass")
    lines = terminal.lines
    assert re.fullmatch(r"27  557\.143 MHz {17}\d\d:\d\d:\d\d", lines[0])
    assert re.fullmatch(r"Level  6\d\.\d dBuV {15}peak 6\d\.\d", lines[1])
    assert re.fullmatch(r"█+│█+◆░+│░+", lines[2])
    assert lines[8].startswith("Level ")
    assert lines[11] == "n/p next c chan i inp r reset t tone q"
    quit(terminal)


def test_in_ascii(live):
    terminal = live(LC_ALL="C")
    terminal.wait_for("Lock yes")
    terminal.until(lambda lines: re.fullmatch(r".{34}#{12}\|#+\*\.+\|\.+", lines[2]))
    quit(terminal)
    assert terminal.bytes.isascii()


def test_resize(live):
    terminal = live()
    terminal.wait_for("Lock yes")
    for columns, rows, seen in [(40, 12, "Verdict pass"), (100, 40, "Lock yes"), (39, 12, "at least 40 x 12"),
                                (10, 3, "at least 4"), (60, 16, "input 0, supply off"), (80, 24, "Level, dBuV")]:
        terminal.resize(columns, rows)
        terminal.until(lambda lines: any(seen in line for line in lines) and
                       (rows < 12 or columns < 40 or lines[rows - 1].startswith("n")))
    quit(terminal)


def test_end_on_a_terminal_with_one_screen(live):
    """The shell goes on in a line of its own."""
    terminal = live(TERM="vt100")
    terminal.wait_for("Verdict pass")
    terminal.type("q")
    assert terminal.finish() == 0
    assert b"\x1b[?1049" not in terminal.bytes
    assert "Verdict pass" in "".join(terminal.lines)
    assert terminal.lines[23] == ""


def test_colours(live):
    terminal = live(NO_COLOR="")
    terminal.wait_for("Verdict pass")
    row = next(row for row, line in enumerate(terminal.lines) if "Verdict pass" in line)
    assert terminal.screen.buffer[row][terminal.lines[row].index("pass")].fg == "green"
    quit(terminal)


@pytest.mark.parametrize("words, env", [((), {"NO_COLOR": "1"}), (("--color", "never"), {"NO_COLOR": ""})])
def test_no_colours(live, words, env):
    terminal = live(*words, **env)
    terminal.wait_for("Verdict pass")
    quit(terminal)
    assert not re.search(rb"\x1b\[[0-9;]*3[1-7]m", terminal.bytes)


def test_only_what_changes_is_sent(live):
    """Of a screen that stays the same nothing but the time and the trace, until that is full."""
    terminal = live("--count", "500", scene=STILL)
    assert terminal.finish() == 0
    assert len(terminal.bytes) < 12000  # one screen has more than 3000


# ---- keys ----

def test_channels(live, meter):
    terminal = live(channel="51")
    terminal.wait_for("51  701.143 MHz")
    terminal.type("n")
    terminal.wait_for("52  707.143 MHz")
    terminal.wait_for("channel 52")
    terminal.type("\x1bOA")  # up
    terminal.wait_for("52 is the last channel: plan uhf goes no further")
    terminal.type("\x1bODp")  # left
    terminal.wait_for("50  695.143 MHz")
    terminal.type("\x1bOC")  # right
    terminal.wait_for("51  701.143 MHz")
    terminal.type("x?~\t")
    terminal.type("\x1bOB")  # down
    terminal.wait_for("50  695.143 MHz")
    quit(terminal)
    assert meter.requests()[-1] == STOP


def test_another_channel_is_read_at_once(meter):
    terminal = Screen(*meter.command(VX63, "live", "--channel", "27", "--interval", "3600"))
    terminal.wait_for("27  557.143 MHz   terrestrial")
    terminal.type("n")
    terminal.wait_for("28  563.143 MHz   terrestrial")
    quit(terminal)


def test_lock_is_waited_for(meter):
    """However rarely it is read later."""
    meter.show(DEFAULT_SCENE)
    terminal = Screen(*meter.command(VX63, "live", "--channel", "27", "--interval", "3600"))
    terminal.wait_for("Lock yes")
    quit(terminal)


def test_keys_are_forgotten_at_the_end(live, meter):
    terminal = live(fault="meas=late,100")
    terminal.wait_for("MER 3")
    terminal.type("i" * 60)
    terminal.until(lambda lines: lines[22] in ("input 0", "input 1"))
    quit(terminal)
    assert sum(name == "set-input" for name, _ in meter.requests()) < 30


def test_typed_channel(live):
    terminal = live()
    terminal.type("c")
    terminal.wait_for("Channel or frequency: _")
    terminal.wait_for("Enter tunes  Esc leaves")
    terminal.type("bsq\x7f1")
    terminal.wait_for("Channel or frequency: bs1_")
    terminal.type("\r")
    terminal.wait_for("BS-1  11727.48 MHz   satellite 8PSK   input 0, supply 15 V")
    terminal.type("c533.143MHz\r")
    terminal.until(lambda lines: lines[0].startswith("533.143 MHz   terrestrial OFDM"))
    terminal.type("n")
    terminal.wait_for("no plan: give --channel")
    for typed, why in [("99", "cannot tune channel '99': no plan has it"), ("5GHz", "--freq: 5000 MHz is outside 10..3224")]:
        terminal.type(f"c{typed}\r")
        terminal.wait_for(why)
        assert terminal.lines[0].startswith("533.143 MHz")
    terminal.type("c27")
    terminal.wait_for("Channel or frequency: 27_")
    terminal.type("\x7f\x7f\x7f\x7f28")
    terminal.wait_for("Channel or frequency: 28_")
    terminal.type("\x1b")
    terminal.wait_for("n next")
    assert terminal.lines[0].startswith("533.143 MHz")
    quit(terminal)


def test_options_hold_for_what_is_typed(live):
    terminal = live("--system", "level")
    terminal.wait_for("27  557.143 MHz   level")
    terminal.wait_for("Lock -")
    terminal.type("c533143\r")
    terminal.until(lambda lines: lines[0].startswith("533.143 MHz   level"))
    quit(terminal)


def test_other_input(live):
    terminal = live()
    terminal.wait_for("input 0, supply off")
    terminal.type("i")
    terminal.wait_for("input 1, supply off")
    terminal.until(lambda lines: lines[22].startswith("input 1"))
    terminal.type("i")
    terminal.wait_for("input 0, supply off")
    quit(terminal)


def test_peaks_are_held_and_reset(live):
    terminal = live(channel="28", scene=STILL + """
        [[signal]]
        input = 0
        frequency_khz = 563143
        system = "terrestrial"
        carriers = "64QAM"
        level_dbuv = 60
        cn_db = 30
        """)
    terminal.until(lambda lines: lines[1].endswith("peak 60.0"))
    terminal.type("i")  # nothing there
    terminal.until(lambda lines: "input 1" in lines[0] and not lines[1].endswith(("peak 60.0", "peak -")))
    terminal.type("i")
    terminal.until(lambda lines: lines[1].endswith("peak 60.0"))
    terminal.type("r")
    terminal.wait_for("peaks and trace reset")
    quit(terminal)


def test_tone(live, meter):
    terminal = live("--tone")
    until(lambda: meter.trace.exists() and "buzzer" in meter.trace.read_text())
    terminal.wait_for("tone")
    terminal.type("t")
    terminal.wait_for("tone off")
    terminal.type("t")
    terminal.wait_for("tone on")
    quit(terminal)
    assert {body for name, body in meter.requests() if name == "buzzer"} == {bytes(4)}  # a click, once


@pytest.mark.parametrize("answer", [3, 4])
def test_tone_beside_other_sounds(live, meter, answer):
    """Something else sounds: no failure."""
    terminal = live("--tone", fault=f"buz=ret,{answer}")
    until(lambda: meter.trace.exists() and meter.trace.read_text().count('"buzzer"') >= 4)
    terminal.wait_for("Lock yes")
    assert "tone" in terminal.lines[22]
    quit(terminal)


def test_tone_without_a_buzzer(live):
    terminal = live("--tone", fault="buz=refuse")
    terminal.wait_for("tone off: the buzzer does not answer")
    terminal.wait_for("Lock yes")
    quit(terminal)


def test_no_tone_without_a_signal(live, meter):
    terminal = live("--tone", "--count", "50", channel="35")
    assert terminal.finish() == 0
    assert "buzzer" not in {name for name, _ in meter.requests()}


# ---- a lost meter ----

def test_a_service_that_is_gone_for_a_while(live):
    terminal = live()
    terminal.wait_for("Lock yes")
    service = service_of(terminal)
    os.kill(service, signal.SIGSTOP)
    terminal.wait_for("The meter has not answered for ")  # 2 s, or 3
    terminal.type("c28\r")  # keys answer all the same
    terminal.wait_for("tuning to 28 ...")
    os.kill(service, signal.SIGCONT)
    terminal.wait_for("28  563.143 MHz   terrestrial OFDM")
    terminal.wait_for("Lock yes")
    quit(terminal)


def test_a_lost_service_comes_back(live, meter):
    terminal = live(fault="meas/constellation-result:9=die,2000")
    terminal.wait_for("Since ")
    terminal.wait_for("the meter answers again")
    terminal.wait_for("Lock yes")
    quit(terminal)
    assert meter.requests()[-1] == STOP


@pytest.mark.parametrize("words, fault, key", [
    ((), "meas/constellation-start:2=late,6000", "n"),  # the stop before the next channel is tuned
    (("--tone",), "buz:1=late,6000", ""),
])
def test_old_values_are_told_whoever_is_waited_for(live, words, fault, key):
    terminal = live(*words, fault=fault)
    terminal.wait_for("MER 3" if key else "Level")
    terminal.type(key)
    terminal.wait_for("The meter has not answered for ")  # 2 s, or 3
    quit(terminal)


def test_an_answer_that_refuses_is_one(live):
    terminal = live(fault="meas/single-result:2-=refuse")
    terminal.wait_for("cannot read the measurement: the measurement service refuses the request")
    quit(terminal)


def test_a_fault_that_is_told(live):
    terminal = live(fault="meas/single-start:2-3=ret,2")
    terminal.wait_for("Lock yes")
    terminal.type("n")
    terminal.wait_for("cannot start the measurement: the meter refuses a value")
    terminal.wait_for("the meter answers again")
    terminal.wait_for("28  563.143 MHz   terrestrial OFDM")
    quit(terminal)


@pytest.mark.parametrize("key, code", [("q", 0), ("\x03", 130)])
def test_end_while_it_is_lost(live, key, code):
    terminal = live()
    terminal.wait_for("Lock yes")
    os.kill(service_of(terminal), signal.SIGSTOP)
    terminal.wait_for("has not answered")
    terminal.type(key)
    terminal.wait_for("vx63: stopping the measurement; Ctrl-C again ends at once")
    terminal.type("\x03")
    assert terminal.finish() == 130
    assert terminal.bytes.count(b"\x1b[?1049l") == 1
    assert terminal.after == terminal.before


# ---- the end ----

def test_interruption(live, meter):
    terminal = live()
    terminal.wait_for("Lock yes")
    quit(terminal, "\x03", 130)
    assert meter.requests()[-1] == STOP


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGHUP])
def test_signals(live, meter, number):
    terminal = live()
    terminal.wait_for("Lock yes")
    os.kill(vx63_of(terminal), number)
    quit(terminal, "", 128 + number)
    assert meter.requests()[-1] == STOP


def test_the_terminal_goes_away(live, meter):
    terminal = live()
    terminal.wait_for("Lock yes")
    os.close(terminal.master)
    assert terminal.process.wait(timeout=300) == 128 + signal.SIGHUP
    assert meter.requests()[-1] == STOP


def test_stop_and_go_on(meter, native):  # the emulator loses a SIGTSTP now and then
    terminal = Screen(*meter.command("bash", "--norc", "-i"))
    terminal.type(f"'{VX63}' live --channel 27 --interval 0.02\r")
    terminal.wait_for("Lock yes")
    terminal.type("\x1a")
    terminal.wait_for("Stopped")
    terminal.screen.reset()
    terminal.type("fg\r")
    terminal.wait_for("Lock yes")
    terminal.type("q")
    terminal.type("exit 5\r")
    assert terminal.finish() == 5


def test_count(live):
    terminal = live("--count", "3")
    assert terminal.finish() == 0
    assert terminal.after == terminal.before


def test_no_meter():
    terminal = Screen(VX63, "live", "--freq", "557143")
    code = terminal.finish()
    assert code in (1, 12)
    assert b"\x1b[?1049h" not in terminal.bytes
    assert b"vx63: cannot start the measurement: " in terminal.bytes


def test_a_start_that_fails(live):
    terminal = live(fault="meas/single-start=ret,2")
    assert terminal.finish() == 2
    assert b"\x1b[?1049h" not in terminal.bytes
    assert b"vx63: cannot start the measurement: the meter refuses a value of frequency 557.143 MHz" in terminal.bytes


# ---- no screen ----

ROW = r"\d\d:\d\d:\d\d   6\d\.\d   3\d\.\d +\S+ +(yes|no)\n"


@pytest.mark.parametrize("terminal", [None, "", "dumb", "no-such-terminal"])
def test_lines(meter, terminal):
    meter.show(DEFAULT_SCENE)
    command = meter.command(VX63, "live", "--channel", "27", "--count", "3", "--interval", "0")
    if terminal is None:
        result = run(*command)
        text, code = result.stdout, result.returncode
        assert result.stderr == ""
    else:
        shown = Screen(*command, TERM=terminal)
        code = shown.finish()
        text = re.sub(r"^\r.*\r", "", shown.bytes.decode().replace("\r\n", "\n"))
    assert code == 0
    assert re.fullmatch(r"Time       dBuV C/N dB        BER Lock\n" + 3 * f"(?:{ROW})", text), text
    assert meter.requests()[-1] == STOP


def test_lines_until_the_reader_goes(meter):
    result = meter.shell('{ $VX63 live --channel 27 --interval 0; echo $? > "$DIR/code"; } | head -3')
    assert (len(result.stdout.splitlines()), result.stderr) == (3, "")
    assert (meter.folder / "code").read_text() == "141\n"
    assert meter.requests()[-1] == STOP


def test_lines_of_a_lost_meter(meter):
    result = meter.vx63("live", "--channel", "27", "--count", "4", "--interval", "0",
                        fault="meas/single-result:3-4=ret,3")
    assert result.returncode == 0
    assert len(result.stdout.splitlines()) == 5
    assert result.stderr == ("vx63: cannot read the measurement: the antenna power supply reports a fault\n"
                             "vx63: the meter answers again\n")


def test_interrupted_lines(meter):
    result = meter.shell('$VX63 live --channel 27 --interval 0 --json > "$DIR/out" & pid=$!; '
                         'until [ -s "$DIR/out" ]; do :; done; kill $pid; wait $pid; echo $?')
    assert result.stdout == "143\n"
    assert json.loads((meter.folder / "out").read_text())[0]["channel"] == "27"
    assert meter.requests()[-1] == STOP


# ---- record ----

def test_record(live, meter):
    file = meter.folder / "record.jsonl"
    file.write_text('{"cut sho')
    terminal = live("--count", "60", "--record", file)
    assert terminal.finish() == 0
    cut, *lines = file.read_text().splitlines()
    assert cut == '{"cut sho'
    readings = [json.loads(line) for line in lines]
    assert len(readings) == 60
    assert {reading["channel"] for reading in readings} == {"27"}
    assert list(readings[0])[-2:] == ["guard_interval_code", "mer_db"]
    assert readings[0]["mer_db"] is None
    assert 30 < readings[-1]["mer_db"] < 36
    assert list(readings[0])[:-1] == list(json.loads(meter.vx63("measure", "single", "--freq", "557143", "--json").stdout))


def test_record_as_csv(meter):
    file = meter.folder / "record.csv"
    for _ in range(2):
        result = meter.vx63("live", "--channel", "27", "--count", "20", "--interval", "0", "--record", file)
        assert (result.returncode, result.stderr) == (0, "")
    header, *rows = csv.reader(file.read_text().splitlines())
    assert header[:2] == ["time", "channel"] and header[-1] == "mer_db"
    assert len(rows) == 40
    assert {row[1] for row in rows} == {"27"}
    assert float(rows[-1][-1]) > 30


def test_record_of_other_columns(meter):
    file = meter.folder / "record.csv"
    file.write_text("time,channel\n1,2\n")
    result = meter.vx63("live", "--channel", "27", "--record", file)
    assert (result.returncode, result.stdout) == (74, "")
    assert result.stderr == f"vx63: cannot record to {file}: its first line has other columns: record to another file\n"
    assert file.read_text() == "time,channel\n1,2\n"


def test_record_nowhere(meter):
    result = meter.vx63("live", "--channel", "27", "--record", "/nowhere/file")
    assert result.returncode == 74
    assert result.stderr == "vx63: cannot record to /nowhere/file: No such file or directory: record to another file\n"


def test_record_into_a_pipe_that_nobody_reads(meter):
    os.mkfifo(meter.folder / "pipe")
    result = meter.vx63("live", "--channel", "27", "--record", meter.folder / "pipe")
    assert (result.returncode, "No such device or address" in result.stderr) == (74, True)


def test_record_on_a_full_disk(live):
    terminal = live("--record", "/dev/full")
    terminal.wait_for("recording stopped: cannot record to /dev/full: No space left on device")
    terminal.wait_for("Lock yes")
    quit(terminal)
