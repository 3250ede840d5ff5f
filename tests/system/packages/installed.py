"""What the tests of installed files share."""

import re
import subprocess
from pathlib import Path

from conftest import BUILD, run


def cache(name):
    """An entry of the build's CMakeCache.txt; empty when there is none."""
    found = re.search(rf"^{name}:\w+=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE)
    return found.group(1) if found else ""


LIBDIR = cache("CMAKE_INSTALL_LIBDIR")


def done(*command, **options):
    """What a command that must succeed says."""
    ended = run(*command, **options)
    assert ended.returncode == 0, f"{command}:\n{ended.stdout}{ended.stderr}"
    return ended.stdout


def files(root):
    """Every file and link below `root`, relative to it, sorted."""
    return sorted(str(path.relative_to(root)) for path in Path(root).rglob("*")
                  if path.is_symlink() or not path.is_dir())


def elf_files(*roots):
    found = []
    for root in roots:
        for path in Path(root).rglob("*"):
            if path.is_file() and not path.is_symlink():
                with open(path, "rb") as file:
                    if file.read(4) == b"\x7fELF":
                        found.append(path)
    return found


def run_path(elf):
    """The elements of an ELF file's run path; None when it has none."""
    dynamic = subprocess.run(["readelf", "-dW", elf], capture_output=True, text=True, check=True).stdout
    found = re.findall(r"\((?:RPATH|RUNPATH)\)\s+Library (?:rpath|runpath): \[(.*)\]", dynamic)
    return found[0].split(":") if found else None


def assert_run_paths_are_relative(elves):
    """An empty or a relative element makes the loader search the current folder."""
    assert elves
    for elf in elves:
        for element in run_path(elf) or []:
            assert re.fullmatch(r"\$ORIGIN(/.*)?", element), f"{elf}: run path {run_path(elf)}"
