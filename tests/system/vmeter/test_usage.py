"""Bad options, bad scenes, help: what a person reads."""

import subprocess

import pytest
from conftest import HANG, VMETER, vmeter


@pytest.mark.parametrize("arguments, why", [
    ((), "give run, serve, state or check"),
    (("walk",), "walk"),
    (("run",), "run needs -- COMMAND"),
    (("run", "true"), "true"),
    (("run", "--"), "no COMMAND after --"),
    (("run", "--", ""), "no COMMAND after --"),
    (("run", "--scene"), "--scene"),
    (("run", "--no-such", "--", "true"), "--no-such"),
    (("run", "--scene", "a", "--scene", "b", "--", "true"), "--scene"),
    (("serve", "--state", "x"), "--state"),
    (("serve", "--ready-fd", "x"), "--ready-fd"),
    (("serve", "--ready-fd", "-1"), "--ready-fd"),
    (("serve", "--ready-fd", "77"), "77"),
    (("check", "--", "true"), "check takes no command"),
    (("check", "more"), "more"),
    (("state", "--", "true"), "state takes no command"),
    (("state", "more"), "more"),
    (("serve", "--settings", "some"), "--settings"),
    (("serve", "--empty-settings"), "--empty-settings"),
])
def test_usage_error(arguments, why):
    ended = vmeter(*arguments)
    assert (ended.returncode, ended.stdout) == (64, "")
    assert ended.stderr.startswith("vx63-vmeter: usage: ") and ended.stderr.endswith(": see 'vx63-vmeter --help'\n")
    assert why in ended.stderr and ended.stderr.count("\n") == 1


@pytest.mark.parametrize("command", [[], ["run"], ["serve"], ["check"], ["state"]])
def test_help(command):
    ended = vmeter(*command, "--help")
    assert (ended.returncode, ended.stderr) == (0, "")
    assert "Usage: vx63-vmeter" in ended.stdout
    assert "Example:" in ended.stdout
    assert "--inside" not in ended.stdout


def test_version():
    ended = vmeter("--version")
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
