"""The manual pages in docs/man: made of what the programs and the header say now, whole, and well formed."""

import re

import pytest

from conftest import BUILD
from test_usage import GROUPS, LEAVES, help_of, options_of
from tool_support import SOURCE, VMETER, environment, run

MAN = SOURCE / "docs" / "man"
PAGES = sorted(path.name for path in MAN.glob("*.[13]"))


def shown(name):
    return run("man", "-l", MAN / name, env=environment(MANWIDTH="500")).stdout.expandtabs()


def synopsis_of(name):
    text = re.search(r"^SYNOPSIS\n(.*?)^\S", shown(name), re.M | re.S).group(1)
    return [line.strip() for line in text.splitlines() if line.strip()]


def page_of(words):
    return f"vx63-{words[0]}.1"


def test_up_to_date():
    result = run(SOURCE / "script" / "manual-pages", "--check", env=environment(VX63_BUILD=str(BUILD)))
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")


@pytest.mark.parametrize("name", PAGES)
def test_well_formed(name):
    for command in ["man", "--warnings", "-l"], ["mandoc", "-Tlint", "-Wwarning"]:
        result = run(*command, MAN / name)
        assert (result.returncode, result.stderr) == (0, "")
        assert command[0] == "man" or result.stdout == ""


def test_a_page_for_every_command():
    commands = {page_of(words) for words in LEAVES}
    assert set(PAGES) == commands | {"vx63.1", "vx63-vmeter.1", "libvx63.3"}
    overview = shown("vx63.1")
    assert [name for name in commands if name.replace(".1", "(1)") not in overview] == []


@pytest.mark.parametrize("words", LEAVES)
def test_every_option_of_a_command(words):
    def is_of(leaf, text):
        return text.split()[1:len(leaf) + 1] == leaf
    below = [leaf for leaf in LEAVES if leaf[:len(words)] == words and leaf != words]
    line = [line for line in synopsis_of(page_of(words))
            if is_of(words, line) and not any(is_of(leaf, line) for leaf in below)]
    told = {option for text in line for option in re.findall(r"--[a-z0-9-]+", text)}
    assert told | {"--help"} == options_of(*words)
    listed = re.findall(r"^ {5}(--[a-z0-9-]+)", shown(page_of(words)), re.M)
    assert told <= set(listed)


def test_synopses():
    assert synopsis_of("vx63-sets.1")[3:5] == [
        "vx63 sets copy [--usb1 | --usb2] [--logger] [--id N] SOURCE NEW",
        "vx63 sets delete [--usb1 | --usb2] [--logger] [--yes] [--id N] NAME"]
    assert synopsis_of("vx63-update.1") == [
        "vx63 update [--program PROGRAM --new-version VERSION --size BYTES [--source SOURCE] | FILE] [--yes] [--id N]"]
    assert synopsis_of("vx63-settings.1")[6] == "vx63 settings reset [--all [--delete] | FILE] [--yes] [--id N]"
    assert synopsis_of("vx63-keys.1") == ["vx63 keys [--watch [--interval S]] [--json | --jsonl] [--id N]"]
    assert synopsis_of("vx63-vmeter.1")[1:] == [
        "vx63-vmeter serve [--scene FILE] [--trace FILE] [--state-json FILE] [--fault RULE ...] [--ready-fd N] "
        "[--settings factory|empty] [-- COMMAND ...]", "vx63-vmeter state [--json]", "vx63-vmeter check"]


@pytest.mark.parametrize("command", ["run", "serve", "state", "check"])
def test_every_option_of_the_virtual_meter(command):
    options = set(re.findall(r"^  (?:-h,)?(--[a-z-]+)", run(VMETER, command, "--help").stdout, re.M))
    [line] = [line for line in synopsis_of("vx63-vmeter.1") if line.startswith(f"vx63-vmeter {command}")]
    assert set(re.findall(r"--[a-z-]+", line)) | {"--help"} == options


def test_every_exit_code():
    listed = help_of().split("Exit codes:\n")[1].split("\n\n")[0]
    status = re.search(r"^EXIT STATUS\n(.*?)^\S", shown("vx63.1"), re.M | re.S).group(1)
    assert re.findall(r"^ {5}(\d+(?:, \d+)*)", status, re.M) == re.findall(r"^  (\d+(?:, \d+)*)", listed, re.M)


def test_every_operation_of_the_library():
    exported = (SOURCE / "tests" / "system" / "libraries" / "libvx63.names").read_text()
    names = re.findall(r"^\w+$", exported, re.M)
    assert len(names) > 70
    page = shown("libvx63.3")
    assert [name for name in names if not re.search(rf"^ {{5}}{name}(\(|$)", page, re.M)] == []
    assert "     VX63_ERR_PRIORITY (-8)\n             The buzzer is busy with a sound of higher priority.\n" in page
    assert re.search(r"^ {3}Threads\n {5}Each thread that talks to a service first calls vx63_init\(\)", page, re.M)


@pytest.mark.parametrize("words", GROUPS)
def test_a_group_tells_its_commands(words):
    commands = {leaf[1] for leaf in LEAVES if leaf[0] == words[0]}
    assert commands == set(re.findall(r"^ {3}([a-z-]+)\n", shown(page_of(words)).split("\nOPTIONS\n")[0], re.M))


def test_installed(tmp_path):
    result = run("cmake", "--install", BUILD, "--prefix", tmp_path)
    assert result.returncode == 0, result.stderr
    share = tmp_path / "share"
    assert {path.name for path in (share / "man").glob("man*/*")} == set(PAGES)
    for path in ["bash-completion/completions/vx63", "bash-completion/completions/vx63-vmeter",
                 "fish/vendor_completions.d/vx63.fish", "fish/vendor_completions.d/vx63-vmeter.fish",
                 "zsh/vendor-completions/_vx63", "zsh/vendor-completions/_vx63-vmeter"]:
        assert (share / path).is_file()
