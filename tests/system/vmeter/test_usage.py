"""Bad options, bad scenes, help: what a person reads."""

import re
import subprocess

import pytest
from conftest import HANG, VMETER, vmeter


@pytest.mark.parametrize("arguments, why", [
    ((), "give run, serve, state or check"),
    (("walk",), "'walk' is no command"),
    (("run",), "run needs -- COMMAND"),
    (("run", "--"), "no COMMAND after --"),
    (("run", "--", ""), "no COMMAND after --"),
    (("run", "--scene"), "--scene lacks its value FILE"),
    (("run", "--fault", "--", "true"), "--fault lacks its value RULE"),
    (("run", "--no-such", "--", "true"), "'--no-such' is no option"),
    (("run", "--scene", "a", "--scene", "b", "--", "true"), "--scene is given twice"),
    (("run", "--in-place=so", "--", "true"), "--in-place takes no value"),
    (("serve", "--ready-fd", "x"), "--ready-fd"),
    (("serve", "--ready-fd", "-1"), "--ready-fd"),
    (("serve", "--ready-fd", "77"), "77"),
    (("check", "--", "true"), "check takes no command"),
    (("check", "more"), "unexpected argument 'more'"),
    (("state", "--", "true"), "state takes no command"),
    (("state", "more", "words"), "unexpected arguments 'more', 'words'"),
    (("serve", "--settings", "some"), "--settings: 'some' is neither factory nor empty"),
    (("serve", "--empty-settings"), "--empty-settings"),
])
def test_usage_error(arguments, why):
    ended = vmeter(*arguments)
    assert (ended.returncode, ended.stdout) == (64, "")
    assert re.fullmatch(r"vx63-vmeter: usage: .*: see 'vx63-vmeter( [a-z]+)? --help'\n", ended.stderr)
    assert why in ended.stderr


@pytest.mark.parametrize("arguments, told", [
    (("run", "vx63", "status"), "'--' is missing before the command: vx63-vmeter run -- vx63 status"),
    (("run", "--trace", "a b", "vx63", "log", "--help"),
     "'--' is missing before the command: vx63-vmeter run --trace 'a b' -- vx63 log --help"),
    (("serve", "./app", "it's"), r"'--' is missing before the command: vx63-vmeter serve -- ./app 'it'\''s'"),
    (("serve", "--state", "x"), "'--state' is no option: did you mean '--state-json'?"),
    (("rnu", "--", "true"), "'rnu' is no command: did you mean 'run'?"),
    (("help", "sreve"), "'sreve' is no command: did you mean 'serve'?"),
    (("run", "--fualt", "x", "--", "true"), "'--fualt' is no option: did you mean '--fault'?"),
    (("run", "--fault", "mes=late", "--", "true"), "--fault: mes=late: unknown service 'mes' "
     "(known: sys, dev, key, buz, meas): did you mean 'meas'?"),
    (("run", "--fault", "key/key-satus=late", "--", "true"), "--fault: key/key-satus=late: unknown command 'key-satus' "
     "of service key (known: key-status; or a code from 0 to 0x7FFF): did you mean 'key-status'?"),
    (("run", "--fault", "meas=silnce", "--", "true"), "--fault: meas=silnce: unknown fault 'silnce' (known: silence, "
     "late, twice, refuse, ret, wrong, stray, cut, oversized, garbage, die, random): did you mean 'silence'?"),
])
def test_what_was_meant(arguments, told):
    ended = vmeter(*arguments)
    assert (ended.returncode, ended.stdout, ended.stderr) == (64, "", f"vx63-vmeter: usage: {told}\n")


@pytest.mark.parametrize("command", [[], ["run"], ["serve"], ["check"], ["state"]])
def test_help(command):
    ended = vmeter(*command, "--help")
    assert (ended.returncode, ended.stderr) == (0, "")
    assert "Usage: vx63-vmeter" in ended.stdout
    assert "Example:" in ended.stdout
    assert "--inside" not in ended.stdout


def test_run_says_that_it_is_no_sandbox():
    assert "Not a security boundary" in vmeter("run", "--help").stdout


@pytest.mark.parametrize("columns, width", [(20, 40), (40, 40), (80, 80), (200, 80)])
@pytest.mark.parametrize("command", [[], ["run"], ["serve"], ["check"], ["state"]])
def test_help_fits(command, columns, width, monkeypatch):
    monkeypatch.setenv("COLUMNS", str(columns))
    ended = vmeter("help", *command)
    assert (ended.returncode, ended.stderr) == (0, "")
    assert ended.stdout == vmeter(*command, "--help").stdout
    assert [line for line in ended.stdout.splitlines() if len(line) > width or line != line.rstrip()] == []
    assert ("manual page vx63-vmeter(1)" in " ".join(ended.stdout.split())) == (command == [])


@pytest.mark.parametrize("word", ["--version", "-V"])
def test_version(word):
    ended = vmeter(word)
    assert (ended.returncode, ended.stdout) == (0, "vx63-vmeter 1.0.0\n")


@pytest.mark.usefixtures("namespaces")
class TestScene:
    def test_missing(self, tmp_path):
        ended = vmeter("run", "--scene", tmp_path / "none", "--", "echo", "started")
        assert (ended.returncode, ended.stdout) == (125, "")
        assert ended.stderr == (f"vx63-vmeter: {tmp_path}/none: No such file or directory: "
                                "give a file that you may read with --scene\n")

    def test_folder(self, tmp_path):
        ended = vmeter("run", "--scene", tmp_path, "--", "echo", "started")
        assert (ended.returncode, ended.stdout) == (125, "")
        assert ended.stderr == (f"vx63-vmeter: {tmp_path}: Is a directory: "
                                "give a file that you may read with --scene\n")

    @pytest.mark.parametrize("command", ["run", "serve"])
    def test_wrong_value(self, tmp_path, command):
        scene = tmp_path / "scene.toml"
        scene.write_text("\nclock_ms = -1\n")
        ended = vmeter(command, "--scene", scene, "--", "echo", "started")
        assert (ended.returncode, ended.stdout) == (125, "")
        assert ended.stderr.startswith(f"vx63-vmeter: {scene}:2: clock_ms: ")

    def test_wrong_fault(self, tmp_path):
        scene = tmp_path / "scene.toml"
        scene.write_text('[[fault]]\nservice = "none"\nkind = "silence"\n')
        ended = vmeter("run", "--scene", scene, "--", "echo", "started")
        assert (ended.returncode, ended.stdout) == (125, "")
        assert f"{scene}:" in ended.stderr and "unknown service 'none'" in ended.stderr

    def test_from_a_pipe(self, tmp_path):
        """Read once, by its descriptor."""
        ended = subprocess.run([VMETER, "run", "--scene", "/dev/stdin", "--", "true"], input="clock_ms = true\n",
                               capture_output=True, text=True, timeout=HANG)
        assert ended.returncode == 125
        assert ended.stderr.startswith("vx63-vmeter: /dev/stdin:1: clock_ms: ")
