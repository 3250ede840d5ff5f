"""The command line and its help."""

import os
import re
import subprocess

import pytest

from tool_support import VX63, Terminal, as_text, environment, run

DEVICE_COMMANDS = ["info", "doctor", "keys", "failure", "power", "update", "factory-reset", "developer-mode",
                   "calibrate", "battery", "buzzer", "volume", "brightness"]
DEVICE_LEAVES = [["info"], ["doctor"], ["keys"], ["failure", "show"], ["failure", "set"], ["failure", "clear"],
                 *(["power", word] for word in ["reboot", "shutdown", "standby", "wakeup", "state"]), ["update"],
                 ["factory-reset"], ["developer-mode"], ["calibrate"], ["battery"], ["buzzer"], ["volume"],
                 ["brightness"]]
COMMANDS = ["measure", "live", "scan", "survey", "channels", "angle", "input", "power-supply", "status", *DEVICE_COMMANDS,
            "log", "settings", "sets"]
GROUPS = [["measure"], ["angle"], ["failure"], ["power"], ["settings"], ["sets"]]
LEAVES = [["measure", "single"], ["measure", "constellation"], ["measure", "delay-profile"], ["measure", "multi"],
          ["measure", "optical"], ["measure", "dc"], ["measure", "angle"], ["live"], ["scan"], ["survey"],
          ["survey", "report"], ["survey", "compare"], ["channels"], ["angle", "calibrate"],
          ["input"], ["power-supply"], ["status"], *DEVICE_LEAVES, ["log"],
          *[["settings", name] for name in ("list", "show", "describe", "get", "set", "diff", "reset", "export",
                                             "import", "check")],
          *[["sets", name] for name in ("list", "show", "create", "copy", "delete", "clear")]]


def help_of(*words):
    result = run(VX63, *words, "--help")
    assert (result.returncode, result.stderr) == (0, "")
    return result.stdout


def listed(text, heading):
    section = text.split(f"\n{heading}:\n")[1].split("\n\n")[0]
    return re.findall(r"^  (\S+)", section, re.M)


def options_of(*words):
    return set(re.findall(r"^  (?:-[hV],)?(--[a-z0-9-]+)", help_of(*words), re.M))


@pytest.mark.parametrize("words, why", [
    ([], "no command is given"),
    (["measure"], "no command is given"),
    (["bogus"], "'bogus' is no command"),
    (["measure", "double"], "'double' is no command"),
    (["--bogus"], "'--bogus' is no option"),
    (["measure", "--json"], "'--json' is no option"),
    (["--", "status"], "no command is given before '--'"),
    (["measure", "single"], "say what to measure: --channel or --freq"),
    (["measure", "single", "--freq"], "--freq lacks its value "),
    (["measure", "single", "--freq="], "--freq lacks its value "),
    (["measure", "single", "--freq", "--json"], "--freq lacks its value "),
    (["measure", "single", "--freq", "1", "--json=yes"], "--json takes no value"),
    (["measure", "single", "--bogus", "1"], "'--bogus' is no option"),
    (["measure", "single", "-x"], "'-x' is no option"),
    (["measure", "single", "--freq", "0"], "--freq: '0' is not a frequency in whole kHz, as 557143,"),
    (["measure", "single", "--freq", "4294967296"], "--freq: '4294967296' is not"),
    (["measure", "single", "--freq", "-1"], "--freq: '-1' is not"),
    (["measure", "single", "--freq", "557.143"], "--freq: '557.143' is not"),
    (["measure", "single", "--freq", ""], "--freq: '' is not"),
    (["measure", "single", "--freq", "1", "--freq", "2"], "--freq is given twice"),
    (["measure", "single", "--freq", "1", "extra"], "unexpected argument 'extra'"),
    (["measure", "single", "one", "--freq", "1", "two", "three"], "unexpected arguments 'one', 'two', 'three'"),
    (["measure", "single", "--freq", "1", "--", "--json"], "unexpected argument '--json'"),
    (["measure", "single", "--freq", "0.1 kHz"], "--freq: '0.1 kHz' is not a frequency in whole kHz"),
    (["measure", "single", "--freq", "9999"], "--freq: 9.999 MHz is outside 10..3224 MHz of the tuner"),
    (["measure", "single", "--freq", "11.72748GHz"], "MHz of the tuner; a satellite's needs the local oscillator of the "),
    (["measure", "single", "--freq", "557143", "--lo", "1e3"], "--lo: '1e3' is not a frequency in whole kHz"),
    (["measure", "single", "--freq", "557143", "--lo", "557.143MHz"], "--lo: the local oscillator, 557.143 MHz, is not "),
    (["measure", "single", "--freq", "557143", "--mod", "64QAM"], "--mod: 64QAM is no modulation of terrestrial, which "),
    (["measure", "single", "--freq", "557143", "--plan", "uhf"], "--plan requires --channel"),
    (["measure", "single", "--channel", "27", "--plan", "vhf"], "--plan: 'vhf' is none of uhf, bs,"),
    (["measure", "single", "--freq", "1", "--system", "moon"], "--system: 'moon' is none of terrestrial, satellite,"),
    (["measure", "single", "--freq", "1", "--system", "65536"], "--system: '65536' is none of"),
    (["measure", "single", "--freq", "1", "--mod", "am"], "--mod: 'am' is none of OFDM, BPSK,"),
    (["measure", "single", "--freq", "1", "--condition", "0x10000"], "--condition: '0x10000' is not"),
    (["measure", "single", "--freq", "1", "--channel", "123456789"], "--channel: '123456789' is longer than 8 bytes"),
    (["measure", "single", "--freq", "1", "--supply", "5"], "--supply: '5' is not a whole number from 0 to 4"),
    (["measure", "single", "--freq", "1", "--input", "2"], "--input: '2' is not a whole number from 0 to 1"),
    (["measure", "single", "--freq", "1", "--disp-type", "256"], "--disp-type: '256' is not"),
    (["measure", "single", "--freq", "1", "--lock-timeout", "nan"], "--lock-timeout: 'nan' is not a number of seconds"),
    (["measure", "single", "--freq", "1", "--count", "0"], "--count: '0' is not"),
    (["measure", "single", "--freq", "1", "--interval", "1"], "--interval requires --count"),
    (["measure", "single", "--freq", "1", "--count", "2", "--interval", "-1"], "--interval: '-1' is not"),
    (["measure", "constellation"], "say what to measure: --channel or --freq"),
    (["measure", "constellation", "--freq", "1", "--points", "3000"], "--points: '3000' is none of 1000, 2000, 4000"),
    (["measure", "constellation", "--freq", "1", "--points", "-1000"], "--points: '-1000' is none of"),
    (["measure", "constellation", "--freq", "1", "--plot", "points.gif"],
     "--plot: 'points.gif' is no file name that ends in .png, .svg or .pdf"),
    (["measure", "constellation", "--freq", "1", "--plot", ".png"], "--plot: '.png' is no file name"),
    (["measure", "constellation", "--freq", "76500", "--system", "level"], "--system: a level carrier has no constellation"),
    (["measure", "delay-profile"], "say what to measure: --channel or --freq"),
    (["measure", "delay-profile", "--freq", "231MHz", "--system", "catv"],
     "--system: a delay profile is of terrestrial (OFDM) alone, not of catv"),
    (["measure", "delay-profile", "--freq", "231MHz", "--system", "satellite"],
     "alone, not of satellite: see 'vx63 measure delay-profile --help'"),
    (["measure", "delay-profile", "--freq", "231MHz", "--system", "77"], "alone, not of another system"),
    (["measure", "multi"], "--plan or --conditions is required"),
    (["measure", "multi", "--plan", "uhf", "--conditions", "list.json"], "excludes"),
    (["measure", "multi", "--conditions", "list.json", "--channel", "13"], "--channel"),
    (["scan", "--plan", "uhf", "--lo", "0.5"], "--lo: '0.5' is not a frequency in whole kHz"),
    (["channels", "vhf"], "PLAN: 'vhf' is none of uhf, bs,"),
    (["channels", "bs", "cs"], "cs"),
    (["channels", "--json", "--csv"], "excludes"),
    (["measure", "multi", "--plan", "vhf"], "--plan: 'vhf' is none of uhf, bs, cs, bs-cs, catv,"),
    (["live"], "say what to measure: --channel or --freq"),
    (["live", "--freq", "557143", "--interval", "-1"], "--interval: '-1' is not"),
    (["live", "--freq", "557143", "--count", "0"], "--count: '0' is not"),
    (["live", "--freq", "557143", "--lock-timeout", "1"], "'--lock-timeout' is no option"),
    (["scan"], "--plan is required"),
    (["scan", "--color", "pink"], "--color: 'pink' is none of auto, always, never"),
    (["scan", "--color"], "--color: auto, always or never is missing"),
    (["scan", "--plan", ""], "--plan: '' is none of uhf,"),
    (["scan", "--plan", "uhf", "--json", "--csv"], "excludes"),
    (["scan", "--plan", "uhf", "--supply", "5"], "--supply: '5' is not a whole number from 0 to 4"),
    (["scan", "--plan", "uhf", "--system", "moon"], "--system: 'moon' is none of terrestrial,"),
    (["scan", "--plan", "uhf", "--mod", "am"], "--mod: 'am' is none of OFDM,"),
    (["survey"], "PLAN is required"),
    (["survey", "house.toml", "--point"], "--point"),
    (["measure", "optical"], "--wavelength is required"),
    (["measure", "optical", "--wavelength", "0"], "--wavelength: '0' is not a whole number"),
    (["measure", "optical", "--wavelength", "799"], "--wavelength: '799' is not a whole number from 800 to 1700"),
    (["measure", "optical", "--wavelength", "1701"], "--wavelength: '1701' is not a whole number from 800 to 1700"),
    (["measure", "dc", "--input", "2"], "--input: '2' is not"),
    (["angle"], "no command is given"),
    (["angle", "turn"], "'turn' is no command"),
    (["angle", "calibrate", "--timeout", "-1"], "--timeout: '-1' is not a number of seconds"),
    (["input"], "INPUT is required"),
    (["input", "2"], "INPUT: '2' is not a whole number from 0 to 1"),
    (["input", "0", "1"], "unexpected argument '1'"),
    (["power-supply", "on"], "SUPPLY: 'on' is not"),
    (["power-supply", "5"], "SUPPLY: '5' is not"),
    (["power-supply", "1", "--json"], "leave SUPPLY out"),
    (["power", "reboot", "--timeout", "5"], "--timeout"),
    (["status", "now"], "unexpected argument 'now'"),
    (["settings"], "no command is given"),
    (["settings", "bogus"], "'bogus' is no command"),
    (["settings", "show"], "FILE is required"),
    (["settings", "describe"], "FILE is required"),
    (["settings", "show", "list"], "FILE: 'list' can mean user_set/list, logger_set/list, user_set_usb1/list,"),
    (["settings", "show", "ch_set/jsat"], "FILE: 'ch_set/jsat' is no settings file; there are ch_set/jsat3a, ch_set/"),
    (["settings", "show", "50"], "FILE: '50' is no settings file, which 'vx63 settings list' tells"),
    (["settings", "show", "42"], "FILE: 42 is a folder of setting sets; give user_set_usb1/NAME"),
    (["settings", "show", "fm", "--json", "--csv"], "excludes"),
    (["settings", "get", "fm", "-1", "CH_NO"], "RECORD: '-1' is not a whole number from 0 to 4294967295"),
    (["settings", "set", "fm", "0", "CH_NO"], "VALUE is required"),
    (["settings", "reset"], "FILE or --all is required"),
    (["settings", "reset", "fm", "--all"], "excludes"),
    (["settings", "reset", "fm", "--delete"], "--delete requires --all"),
    (["settings", "import"], "DIR is required"),
    (["sets"], "no command is given"),
    (["sets", "list", "--usb1", "--usb2"], "excludes"),
    (["sets", "create", "A"], "--from is required"),
    (["sets", "create", "A", "--from", "B"], "--from: 'B' is no settings file"),
    (["sets", "delete", "1234567890123"], "NAME: '1234567890123' is no name of a set: it has 13 bytes, more than 12"),
    (["sets", "delete", "../volume"], "NAME: '../volume' is no name of a set: it holds a separator"),
    (["sets", "delete", ""], "NAME: '' is no name of a set: it is empty"),
    (["sets", "delete", "."], "NAME: '.' is no name of a set: it begins with a point"),
    (["sets", "delete", "a\tb"], "is no name of a set: it is not printable"),
    (["sets", "copy", "ch_set/uhf", "A"], "SOURCE: 'ch_set/uhf' is no set; 'vx63 sets create' makes one of a plan"),
    (["info", "now"], "unexpected argument 'now'"),
    (["doctor", "--watch"], "'--watch' is no option"),
    (["keys", "--interval", "1"], "--interval requires --watch"),
    (["keys", "--watch", "--interval", "-1"], "--interval: '-1' is not"),
    (["failure"], "no command is given"),
    (["failure", "set"], "CODE is required"),
    (["failure", "set", "65536"], "CODE: '65536' is not a whole number from 0 to 65535"),
    (["failure", "set", "-1"], "CODE: '-1' is not a whole number"),
    (["failure", "set", "1", "--info", "0"], "--info: '0' is not up to 32 bytes"),
    (["failure", "set", "1", "--info", "0g"], "--info: '0g' is not up to 32 bytes"),
    (["failure", "set", "1", "--info", "00" * 33], "is not up to 32 bytes"),
    (["power"], "no command is given"),
    (["power", "sleep"], "'sleep' is no command"),
    (["power", "standby", "--force", "--measurement"], "excludes"),
    (["update"], "FILE or --program is required"),
    (["update", "--program", "main"], "requires"),
    (["update", "--new-version", "1"], "--new-version requires --program"),
    (["update", "--program", "all", "--new-version", "1", "--size", "1"], "--program: 'all' is none of boot, main"),
    (["update", "--program", "main", "--new-version", "", "--size", "1"], "--new-version: '' is not 1 to 16"),
    (["update", "--program", "main", "--new-version", "1" * 17, "--size", "1"], "is not 1 to 16"),
    (["update", "--program", "main", "--new-version", "\u00e4", "--size", "1"], "is not 1 to 16"),
    (["update", "--program", "main", "--new-version", "1", "--size", "0"], "--size: '0' is not"),
    (["update", "--program", "main", "--new-version", "1", "--size", "1", "--source", "usb3"], "--source: 'usb3' is"),
    (["update", "request", "--program", "main", "--new-version", "1", "--size", "1"], "excludes"),
    (["developer-mode"], "STATE is required"),
    (["developer-mode", "1"], "STATE: '1' is neither on nor off"),
    (["battery", "high"], "STATE: 'high' is neither low nor ok"),
    (["buzzer"], "SOUND is required"),
    (["buzzer", "5"], "SOUND: '5' is none of click, confirmation"),
    (["buzzer", "click", "--repeat", "--stop"], "excludes"),
    (["volume", "all"], "VOLUME is required"),
    (["volume", "all", "4"], "VOLUME: '4' is not a whole number from 0 to 3"),
    (["volume", "bell", "1"], "SOUND: 'bell' is none of all, click, confirmation"),
    (["brightness", "3"], "BRIGHTNESS: '3' is not a whole number from 0 to 2"),
    (["log", "--lines", "some"], "--lines: 'some' is not"),
    (["log", "\x1b[2J", "\x1b[2J"], "\\x1B[2J"),
])
def test_wrong_usage(words, why):
    result = run(VX63, *words)
    assert result.returncode == 64
    assert result.stdout == ""
    assert result.stderr.count("\n") == 1
    error = as_text(result.stderr)
    assert error.startswith("vx63: wrong usage of 'vx63")
    assert why in error
    assert re.search(r": (see 'vx63[ a-z-]* --help'|did you mean '\S+'( or '\S+')*\?)\n$", error)


@pytest.mark.parametrize("words, told", [
    ("mesure", "'vx63': 'mesure' is no command: did you mean 'measure'?"),
    ("MEASURE single", "'vx63': 'MEASURE' is no command: did you mean 'measure'?"),
    ("set list", "'vx63': 'set' is no command: did you mean 'settings' or 'sets'?"),
    ("hlep", "'vx63': 'hlep' is no command: did you mean 'help'?"),
    ("--help hlep", "'vx63': 'hlep' is no command: see 'vx63 --help'"),
    ("help mesure", "'vx63': 'mesure' is no command: did you mean 'measure'?"),
    ("mesure --help", "'vx63': 'mesure' is no command: did you mean 'measure'?"),
    ("help measure singel", "'vx63 measure': 'singel' is no command: did you mean 'single'?"),
    ("measure singel --freq 5", "'vx63 measure': 'singel' is no command: did you mean 'single'?"),
    ("sets delte A", "'vx63 sets': 'delte' is no command: did you mean 'delete'?"),
    ("measure single --frq 5", "'vx63 measure single': '--frq' is no option: did you mean '--freq'?"),
    ("measure single --frequncy 5", "'vx63 measure single': '--frequncy' is no option: did you mean '--freq'?"),
    ("measure single --frq=5 --sytem moon", "'vx63 measure single': '--frq' is no option: did you mean '--freq'?"),
    ("measure single -freq 5", "'vx63 measure single': '-freq' is no option: did you mean '--freq'?"),
    ("measure single --lock 5", "'vx63 measure single': '--lock' is no option: did you mean '--lock-timeout'?"),
    ("scan plan uhf", "'vx63 scan': unexpected arguments 'plan', 'uhf': did you mean '--plan'?"),
])
def test_what_was_meant(words, told):
    result = run(VX63, *words.split())
    assert (result.returncode, result.stdout, result.stderr) == (64, "", f"vx63: wrong usage of {told}\n")


@pytest.mark.parametrize("words, meant", [
    ("measure single --freq 1 --system satelite", "satellite"),
    ("measure single --freq 1 --mod odfm", "OFDM"),
    ("scan --plan uhff", "uhf"),
    ("buzzer clik", "click"),
    ("brightness drak", "dark"),
    ("developer-mode onn", "on"),
    ("update --program mian --new-version 1 --size 1", "main"),
    ("settings show ch_set/uhff", "ch_set/uhf"),
    ("settings show volme", "sys_set/volume"),
    ("settings get sys_set/volume 0 VOLUM_SEL1", "VOLUME_SEL1"),
    ("sets create A --from ufh", "ch_set/uhf"),
])
def test_what_value_was_meant(words, meant):
    result = run(VX63, *words.split())
    assert (result.returncode, result.stdout) == (64, "")
    assert result.stderr.endswith(f": did you mean '{meant}'?\n")


@pytest.mark.parametrize("words", [[], ["measure"], ["measure", "single"], ["log"]])
def test_help_command(words):
    for before in ["help"], ["help", "help"], ["help", "--help"]:
        result = run(VX63, *before, *words)
        assert (result.returncode, result.stdout, result.stderr) == (0, help_of(*words), "")


@pytest.mark.parametrize("columns, width", [("20", 40), ("40", 40), ("57", 57), ("80", 80), ("200", 80), ("x", 80)])
@pytest.mark.parametrize("words", [[], *GROUPS, *LEAVES])
def test_help_fits(words, columns, width):
    result = run(VX63, *words, "--help", env=environment(COLUMNS=columns))
    assert (result.returncode, result.stderr) == (0, "")
    assert [line for line in result.stdout.splitlines() if len(line) > width or line != line.rstrip()] == []
    # Nothing but the breaks differs.
    assert "".join(result.stdout.split()).replace("\\", "") == "".join(help_of(*words).split()).replace("\\", "")


def test_help_fits_the_terminal():
    terminal = Terminal(VX63, "measure", "single", "--help", columns=60)
    assert terminal.finish() == 0
    assert 50 < max(map(len, terminal.shown.splitlines())) <= 60


def test_notes_are_one_paragraph():
    assert ("\nExits with 0 when nothing wrong was found, else with 5. A service that runs and\n"
            "does not answer takes 10 s.\n") in help_of("doctor")


@pytest.mark.parametrize("words", [[], *GROUPS, *LEAVES])
def test_help_is_for_people(words):
    """No names of the code, and where to read on."""
    assert re.findall(r"\bu[slc][A-Z]\w+|\b[a-z]{2,}[A-Z]\w+|\bBand code\b|\bDisplay type\b", help_of(*words)) == []
    assert ("'vx63 help COMMAND', and the manual page vx63(1)" in help_of(*words)) == (words == [])


@pytest.mark.parametrize("words", [["--help"], ["--version"], ["-V"], ["help"], ["help", "status"], ["status", "--help"],
                                   ["--complete", "st"], ["log", "/dev/null"]])
def test_a_wrong_process_id_is_no_hindrance_where_none_is_used(words):
    result = run(VX63, *words, env=environment(VX63_PROCESS_ID="x"))
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == run(VX63, *words).stdout


def test_a_wrong_process_id():
    result = run(VX63, "status", env=environment(VX63_PROCESS_ID="8"))
    assert (result.returncode, result.stdout) == (64, "")
    assert result.stderr == ("vx63: wrong usage of 'vx63 status': VX63_PROCESS_ID: 8 is the id of a service: "
                             "see 'vx63 status --help'\n")


def test_help_lists_commands_and_exit_codes():
    text = help_of()
    assert listed(text, "Commands") == COMMANDS
    assert listed(text, "Exit codes")[:25] == [*map(str, range(16)), "64", "65", "66", "70", "73",
                                               "74", "75", "77", "129,"]


@pytest.mark.parametrize("words", [[], *GROUPS, *LEAVES])
def test_help_has_an_example_that_is_right(words):
    example = re.search(r"^Example: (vx63 .*)$", help_of(*words).replace("\\\n", ""), re.M).group(1)
    # With --help behind it, everything before is checked but nothing is done.
    assert example.split()[1] in COMMANDS
    assert run(VX63, *example.split()[1:], "--help").returncode == 0


@pytest.mark.parametrize("word", ["--version", "-V"])
def test_version(word):
    result = run(VX63, word)
    assert (result.returncode, result.stderr) == (0, "")
    assert re.fullmatch(r"vx63 \d+\.\d+\.\d+\n", result.stdout)


@pytest.mark.parametrize("words", [["--help"], ["--version"], ["log", "/dev/stdin"]])
def test_full_disk(words):
    with open("/dev/full", "w") as full, open(__file__) as source:
        result = run(VX63, *words, stdin=source, stdout=full)
    assert result.returncode == 74
    assert result.stderr == "vx63: cannot write to standard output: No space left on device: make room on the disk\n"


def test_closed_output():
    result = run("sh", "-c", f"'{VX63}' --version >&-")
    assert result.returncode == 74
    assert result.stderr.startswith("vx63: cannot write to standard output: ")


def test_everything_closed():
    assert run("sh", "-c", f"'{VX63}' --version <&- >&- 2>&-").returncode == 74
