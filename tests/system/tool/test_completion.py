"""Completion on the command line, asked of each shell as it runs, and of the programs themselves."""

import os
import re

import pytest

from conftest import BUILD
from test_usage import COMMANDS, GROUPS, LEAVES, help_of, listed, options_of
from tool_support import SOURCE, VMETER, VX63, Terminal, environment, isolation, meter, run  # noqa: F401 (fixtures)

COMPLETION = SOURCE / "tools" / "completion"
PATH = f'{BUILD / "bin"}:{os.environ["PATH"]}'


def offered(program, *words):
    """What the program itself offers for the last word."""
    result = run(program, "--complete", *words)
    assert (result.returncode, result.stderr) == (0, "")
    return {line.split("\t")[0] for line in result.stdout.splitlines()}


def bash(line, folder):
    """COMPREPLY for the last word of the line, as readline takes lines apart."""
    words = re.findall(r"[=:]|[^\s=:]+", line) + ([""] if line[-1] in " " else [])
    current = "" if words[-1] in "=:" else words[-1]
    script = f"""
        source '{COMPLETION}/vx63.bash'
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE='{line}' COMP_POINT={len(line)}
        _vx63 "$1" '{current}' "${{@: -2:1}}"
        printf '%s\\n' "${{COMPREPLY[@]}}"
    """
    result = run("bash", "-uc", script, "bash", *words, cwd=folder, env=environment(PATH=PATH))
    assert (result.returncode, result.stderr) == (0, "")
    return set(result.stdout.split())


def fish(line, folder):
    script = f"source '{COMPLETION}/vx63.fish'; complete --do-complete '{line}'"
    home = str(folder.parent)
    env = environment(PATH=PATH, HOME=home, XDG_CONFIG_HOME=home, XDG_DATA_HOME=home)
    result = run("fish", "--no-config", "-c", script, cwd=folder, env=env)
    assert (result.returncode, result.stderr) == (0, "")
    return {text.split("\t")[0].rstrip("/") for text in result.stdout.splitlines()}


def zsh(line, folder):
    """What its completion system collects, by a compadd that tells it."""
    home = folder.parent
    (home / "functions").mkdir()
    (home / "functions" / "_vx63").write_bytes((COMPLETION / "vx63.zsh").read_bytes())
    (home / "setup").write_text(f"""
        fpath=({home}/functions $fpath); autoload -Uz compinit; compinit -u -D
        zstyle ':completion:*' insert-tab false
        compadd() {{
            local -a matches
            builtin compadd -O matches "$@"
            print -rl -- $matches >> {home}/offered
            builtin compadd "$@"
        }}
        cd {folder}; PS1='ready> '
    """)
    (home / "offered").touch()
    terminal = Terminal("env", f"PATH={PATH}", "TERM=dumb", f"HOME={home}", "zsh", "-f", "-i")
    terminal.type(f"source {home}/setup\n")
    terminal.wait_for("ready> ")
    terminal.type(f"{line}\t\x15exit\n")
    terminal.finish()
    return {word for word in (home / "offered").read_text().splitlines() if word}


SHELLS = {"bash": bash, "fish": fish, "zsh": zsh}


@pytest.fixture(params=SHELLS)
def completed(request, tmp_path):
    files = tmp_path / "files"
    (files / "folder").mkdir(parents=True)
    (files / "update.bin").touch()

    def complete(line):
        # Of an option with "=" some offer the whole word.
        return {word.split("=")[-1] for word in SHELLS[request.param](line, files)}

    return complete


@pytest.mark.parametrize("line, words", [
    ("vx63 pow", {"power", "power-supply"}),
    ("vx63 measure d", {"delay-profile", "dc"}),
    ("vx63 measure single --l", {"--lo", "--lock-timeout"}),
    ("vx63 measure single --system sat", {"satellite", "satellite-2"}),
    ("vx63 measure single --system=sat", {"satellite", "satellite-2"}),
    ("vx63 measure constellation --points ", {"1000", "2000", "4000"}),
    ("vx63 measure single --freq ", set()),
    ("vx63 brightness m", {"middle"}),
    ("vx63 power-supply o", {"off"}),
    ("vx63 settings show sys_set/v", {"sys_set/volume"}),
    ("vx63 settings get sys_set/volume 0 VOLUME_", {f"VOLUME_SEL{n}" for n in (1, 2, 3, 4)}),
    ("vx63 settings describe sys_set/volume VOLUME_", {f"VOLUME_SEL{n}" for n in (1, 2, 3, 4)}),
    ("vx63 sets create A --from ch_set/jsat3", {"ch_set/jsat3a", "ch_set/jsat3a_antenna"}),
    ("vx63 update u", {"update.bin"}),
    ("vx63 settings export f", {"folder"}),
    ("vx63 measure single --freq 1 --nothing", set()),
    ("vx63-vmeter s", {"serve", "state"}),
    ("vx63-vmeter run --e", {"--empty-settings"}),
    ("vx63-vmeter run --scene u", {"update.bin"}),
    ("vx63-vmeter run --state f", {"folder"}),
    ("vx63-vmeter serve --settings ", {"factory", "empty"}),
])
def test_in_the_shell(completed, line, words):
    assert completed(line) == words


@pytest.mark.parametrize("load, files", [
    ("bash --norc -i", "source /usr/share/bash-completion/bash_completion; source '{0}/vx63.bash'"),
    ("zsh -f -i", "mkdir {1}/f; cp '{0}/vx63.zsh' {1}/f/_vx63; fpath=({1}/f $fpath); autoload -Uz compinit; "
                  "compinit -u -D"),
    ("fish --no-config", "source '{0}/vx63.fish'"),
])
def test_typed(load, files, tmp_path):
    """As a person does it: the word on the line is completed, also behind a program that runs it."""
    terminal = Terminal("env", f"PATH={PATH}", "TERM=dumb", f"HOME={tmp_path}", f"XDG_CONFIG_HOME={tmp_path}",
                        f"XDG_DATA_HOME={tmp_path}", *load.split())
    terminal.type(files.format(COMPLETION, tmp_path) + "; echo rea''dy\n")
    terminal.wait_for("ready")
    for typed, completed in [("vx63 meas", "ure "), ("del", "ay-profile "), ("--fr", "eq "),
                             ("\x15vx63-vmeter run --in-place -- vx63 setti", "ngs "), ("che", "ck ")]:
        terminal.shown = ""
        terminal.type(typed)
        terminal.wait_for(typed[-4:])
        terminal.shown = ""
        terminal.type("\t")
        terminal.wait_for(completed)
    terminal.type("\x15exit\n")
    terminal.finish()


def test_all_that_help_lists():
    assert offered(VX63, "") == set(COMMANDS) | {"help"} | options_of()
    assert offered(VX63, "help", "") == set(COMMANDS) | options_of()
    assert offered(VX63, "help", "sets", "") == offered(VX63, "sets", "")
    for words in GROUPS:
        assert offered(VX63, *words, "") == set(listed(help_of(*words), "Commands")) | {"--help"}
    for words in LEAVES:
        assert offered(VX63, *words, "--") == options_of(*words)
    assert offered(VMETER, "") == {"run", "serve", "state", "check", "help", "--help", "--version"}
    for command in "run", "serve", "state", "check":
        text = run(VMETER, command, "--help").stdout
        assert offered(VMETER, command, "-") == set(re.findall(r"^  (?:-h,)?(--[a-z-]+)", text, re.M))


def test_values():
    text = " ".join(help_of("measure", "single").split())
    for option, heading in [("--system", "Broadcast system"), ("--mod", "Modulation")]:
        names = re.search(heading + r": (.*?), or its code", text).group(1).split(", ")
        assert offered(VX63, "measure", "single", option, "") == set(names)
    free = {str(number) for number in range(18)} - {"0", "6", "8", "10", "12"}
    assert offered(VX63, "status", "--id", "") == free
    assert offered(VX63, "scan", "--supply", "") == {"0", "1", "2", "3", "4"}
    assert offered(VX63, "volume", "") == {"all", "click", "confirmation", "warning", "error", "alarm", "--id",
                                           "--help"}
    assert offered(VX63, "volume", "all", "") == {"0", "1", "2", "3", "--id", "--help"}
    assert offered(VX63, "update", "--program", "") == {"boot", "main", "sub", "qt", "product"}
    assert offered(VX63, "update", "--", "") == {":files"}
    assert offered(VX63, "settings", "get", "nothing", "0", "") == {"--default", "--help"}
    assert len(offered(VX63, "settings", "diff", "")) >= 44 + 3  # the files that are no sets, and options
    assert offered(VMETER, "run", "--scene", "s", "--", "vx63", "") == {":command 5"}


def test_setting_sets_that_are_there(meter):
    result = meter.shell(""" set -e
        $VX63 sets create TOKYO --from ch_set/uhf
        $VX63 sets create 'A B' --from ch_set/uhf --usb1
        $VX63 --complete sets show ''
        echo; $VX63 --complete sets show --usb1 ''
        echo; $VX63 --complete sets copy ''
        echo; $VX63 --complete sets create ''
        echo; $VX63 --complete settings show ''
    """)
    assert (result.returncode, result.stderr) == (0, "")
    show, usb, copy, create, files = ({line.split("\t")[0] for line in part.splitlines()}
                                      for part in result.stdout.split("\n\n"))
    assert [{name for name in part if not name.startswith("-")} for part in (show, usb, copy, create)] == [
        {"TOKYO"}, {"A B"}, {"TOKYO", "user_set/TOKYO", "user_set_usb1/A B"}, set()]
    assert {"user_set/TOKYO", "user_set_usb1/A B", "user_set/list"} <= files
