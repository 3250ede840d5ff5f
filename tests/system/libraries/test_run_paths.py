"""Where the loader looks for libraries: never in the current folder, whatever was built."""

import subprocess

import pytest

from conftest import BUILD
from elf import assert_run_paths_are_safe, elf_files


def test_everything_built():
    """Programs, libraries, and the programs of the tests."""
    elves = elf_files(BUILD)
    names = {path.name for path in elves}
    assert {"vx63", "vx63-vmeter", "libvx63.so.1.0.0", "liblmsg.so", "liblsys.so", "vmeter_exchange"} <= names
    assert_run_paths_are_safe([path for path in elves if path.suffix not in (".o", ".a")])


@pytest.mark.parametrize("run_path", [":", ":$ORIGIN", "$ORIGIN/../lib:", "$ORIGIN::$ORIGIN", ".", "lib", "/usr/lib",
                                      "$ORIGINAL"])
def test_a_planted_one_is_found(tmp_path, run_path):
    subprocess.run(["cc", "-shared", "-x", "c", "/dev/null", "-o", tmp_path / "planted.so",
                    f"-Wl,-rpath,{run_path}"], check=True)
    with pytest.raises(AssertionError, match="planted.so: run path"):
        assert_run_paths_are_safe(elf_files(tmp_path))


def test_a_planted_name_is_found(tmp_path):
    subprocess.run(["cc", "-shared", "-x", "c", "/dev/null", "-o", "needed.so"], check=True, cwd=tmp_path)
    subprocess.run(["cc", "-shared", "-Wl,--no-as-needed", "./needed.so", "-o", "planted.so"], check=True, cwd=tmp_path)
    with pytest.raises(AssertionError, match="planted.so: needs"):
        assert_run_paths_are_safe(elf_files(tmp_path))
