"""Every example that a person can read does what it shows: manual pages as man and mandoc print them, README.md,
docs/*.md, and the help. Each runs as printed, by a shell, with a virtual meter of its own.

Of Markdown these are the blocks marked sh, a command a line, and console, commands behind "$" and what they print.
"""

import concurrent.futures
import functools
import os
import re

import pytest

from test_usage import GROUPS, LEAVES, help_of
from tool_support import BUILD, SOURCE, VMETER, Meter, Terminal, environment, isolation, meter, run  # noqa: F401

PAGES = sorted((SOURCE / "docs" / "man").glob("*.[13]"))
DOCUMENTS = [SOURCE / "README.md", *sorted((SOURCE / "docs").glob("*.md"))]

NOT_RUN = {  # what such a command begins with, and why it is not run here
    "cmake ": "builds the project",
    "(cd build/release && ctest": "runs the tests",
    "tests/isolated ": "runs the tests",
    "sudo apt-get install ./build/packages/": "installs packages; script/package --check does",
    "cp -r /usr/share/doc/libvx63-dev/": "needs the packages; tests/system/packages does it",
    "for package in libvx63-1": "needs the packages for the meter",
    "VX63_BUILD=": "runs the tests",
    "PATH=": "changes the shell in which it is typed",
    "mkdir -p /tmp/mq && sudo mount": "mounts a file system on the machine",
    "ls /tmp/mq": "needs that file system",
    "LSYS_DEBUG=1 some-application": "needs an application that comes upon these files",
}
# They go on until they are interrupted, or for minutes.
LONG = re.compile(r"--follow|--watch|--count|vx63 live")
# They ask, and are told yes.
ASKS = re.compile(r"^vx63 (power (reboot|shutdown)|update) ?(?!.*--yes)")
SURVEYED = """cat > north-street.toml <<.
site = "North Street"
[[list]]
plan = "uhf"
channels = "27"
[[point]]
name = "outlet"
.
vx63 survey north-street.toml
cp -r north-street 2026-06
cp -r north-street 2026-11"""
# What has to be there before, by what the example holds.
BEFORE = {
    r"vx63 survey .*house\.toml": f"cp '{SOURCE}/examples/survey.toml' house.toml",
    r"vx63 survey (report|compare)": SURVEYED,
    r"^vx63 sets (show TOKYO|delete TOKYO|copy user_set/TOKYO)": "vx63 sets create TOKYO --from ch_set/uhf",
    r"examples/python/": f"mkdir build && ln -s '{SOURCE}'/examples '{SOURCE}'/python . && ln -s '{BUILD}' build/release",
    r"settings import backup": "vx63 settings export backup",
    r"settings check \| grep broken": "sed -i '3s/.*/2,2,2,2,loud/' "
                                     "/usr/local/bin/sys_set/system_setting_file_volume.csv",
}
EXIT_CODES = {  # where it is not 0
    'vx63 survey house.toml --point "cable outlet"': 13,
    "vx63-vmeter run --fault meas/0x104:1=silence -- vx63 measure single --freq 557143": 11,
}


def shown_by(viewer, page):
    if viewer == "man":
        return run("man", "-l", page, env=environment(MANWIDTH="150")).stdout.expandtabs()
    return run("sh", "-c", f"mandoc -T utf8 -O width=150 '{page}' | col -b").stdout.expandtabs()


def section_of(text, title):
    return re.search(rf"^{title}\n(.*?)(?=^\S|\Z)", text, re.M | re.S).group(1)


def blocks_of(text):
    """What is shown as it stands: further to the right than text."""
    return [re.sub(r"^ +", "", block, flags=re.M).strip() for block in re.findall(r"(?:^ {8,}\S.*\n)+", text, re.M)]


@functools.cache
def manual_examples(viewer="man"):
    texts = [shown_by(viewer, page) for page in PAGES]
    return [block for text in texts if "\nEXAMPLES\n" in text for block in blocks_of(section_of(text, "EXAMPLES"))]


def fences(kind):
    """(commands, what they print) of the blocks of a kind."""
    return [block for document in DOCUMENTS
            for block in re.findall(rf"^```{kind}\n(.*?)^```$", document.read_text(), re.M | re.S)]


def help_examples():
    texts = [help_of(*words) for words in [[], *GROUPS, *LEAVES]]
    texts += [run(VMETER, *words, "--help").stdout for words in [[], ["run"], ["serve"], ["state"], ["check"]]]
    whole = (re.sub(r" \\\n\s+", " ", text) for text in texts)  # as a shell reads them
    return [example.strip() for text in whole for example in re.findall(r"^Example:\s+(\S.*)$", text, re.M)]


@functools.cache
def scripts():
    lines = [re.sub(r"\s+#.*", "", line) for block in fences("sh") for line in block.splitlines() if line]
    # What reads a file of the line before it is one example with that line.
    joined = re.sub(r"\n(?=jq )", "\0", "\n".join(lines)).split("\n")
    return sorted({*manual_examples(), *help_examples(), *(line.replace("\0", "\n") for line in joined)})


def reason_not_to_run(script):
    return next((why for begin, why in NOT_RUN.items() if script.startswith(begin)), None)


class Desk:
    """A person at this machine, with the programs on the PATH, their own ones in the folder."""

    def __init__(self, folder, isolation):
        self.meter = Meter(folder, isolation)
        self.folder = folder
        (folder / "vx63-vmeter").write_text(
            f'#!/bin/sh\nif [ "$1" = run ]; then shift; set -- run {" ".join(isolation)} "$@"; fi\n'
            f'exec "{VMETER}" "$@"\n')
        for name in "my-application", "your-application":
            (folder / name).write_text("#!/bin/sh\nvx63 input 1\n")
        for program in folder.iterdir():
            program.chmod(0o755)

    def run(self, script):
        """Exit code, and what was shown."""
        before = "".join(f"{line}\n" for text, line in BEFORE.items() if re.search(text, script))
        command = ["env", f'PATH={self.folder}:{BUILD / "bin"}:{os.environ["PATH"]}',
                   "sh", "-ec", f"cd '{self.folder}'\n{before}{script}"]
        if "vx63-vmeter" not in script:
            command = self.meter.command(*command)
        elif "serve" in script:  # its clients write into the machine's log otherwise
            command = ["bwrap", "--dev-bind", "/", "/", "--tmpfs", "/var/log", "--", *command]
        if ASKS.search(script):
            terminal = Terminal(*command)
            terminal.wait_for("?")
            terminal.type("y\n")
            return terminal.finish(), terminal.shown
        if LONG.search(script):
            command = ["timeout", "--preserve-status", "--signal=INT", "2", *command]
        result = run(*command)
        return result.returncode, result.stdout + result.stderr


@pytest.fixture
def desk(tmp_path, isolation):
    return Desk(tmp_path, isolation)


@pytest.fixture(scope="session")
def outcomes(request, tmp_path_factory, isolation):
    """Of all examples that are asked for: most of them wait, so several run at once, where each meter is private."""
    asked = [item.callspec.params["script"] for item in request.session.items if hasattr(item, "callspec")
             and "script" in item.callspec.params]
    with concurrent.futures.ThreadPoolExecutor(1 if isolation else 4) as pool:
        yield {script: pool.submit(Desk(tmp_path_factory.mktemp("desk"), isolation).run, script) for script in asked}


def test_man_and_mandoc_show_the_same_examples():
    assert manual_examples("man") == manual_examples("mandoc")
    assert len(manual_examples()) > 50


@pytest.mark.parametrize("viewer", ["man", "mandoc"])
def test_file_of_conditions_as_shown(meter, viewer):
    page = shown_by(viewer, SOURCE / "docs" / "man" / "vx63-measure.1")
    [shown] = blocks_of(re.sub(r"(?m)^ {8,}[^\[\s].*\n", "", section_of(page, "CONDITIONS")))
    (meter.folder / "list.json").write_text(shown)
    result = meter.vx63("measure", "multi", "--conditions", meter.folder / "list.json", "--csv")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout.count("557143") == 1


@pytest.mark.parametrize("script", [script for script in scripts() if not reason_not_to_run(script)])
def test_example(outcomes, request, script):
    if re.search("unshare|vx63-vmeter check", script):
        request.getfixturevalue("namespaces")
    code, shown = outcomes[script].result()
    assert code == (130 if LONG.search(script) else EXIT_CODES.get(script, 0)), shown


def test_fault_rules_as_shown(desk):
    rules = re.findall(r"^--fault \S+", (SOURCE / "docs" / "virtual-meter.md").read_text(), re.M)
    assert len(rules) == 3
    for rule in rules:
        assert desk.run(f"vx63-vmeter run {rule} -- true") == (0, "")


def alike(line):
    """Times, addresses and measured values are others every time; "..." stands for the rest of a line."""
    return re.sub(r"0x[0-9a-fA-F]+|\d+", "N", line)


@pytest.mark.parametrize("session", [block for block in fences("console")
                                     if not reason_not_to_run(block.removeprefix("$ "))])
def test_session(desk, session):
    commands = re.findall(r"^\$ (.*)$", session, re.M)
    _, shown = desk.run("\n".join(f"echo '$ {command}'\n{command} || true" for command in commands))
    shown, expected = ([line for line in text.splitlines() if line] for text in (shown, session))
    assert len(shown) == len(expected), shown
    for line, wanted in zip(shown, expected):
        if wanted.endswith("..."):
            line, wanted = line[:len(wanted) - 3], wanted[:-3]
        assert alike(line) == alike(wanted)


def test_no_command_is_in_an_unmarked_block():
    for document in DOCUMENTS:
        for kind, block in re.findall(r"^```([^\n]*)\n(.*?)^```$", document.read_text(), re.M | re.S):
            if kind not in ("sh", "console"):
                assert not re.search(r"^(\$ )?(vx63|vx63-vmeter) ", block, re.M), f"{document}: {block}"


def test_no_reason_is_left_over():
    everything = [*scripts(), *(block.removeprefix("$ ") for block in fences("console"))]
    for begin in NOT_RUN:
        assert any(script.startswith(begin) for script in everything), begin
