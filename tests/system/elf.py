"""ELF files, as the loader sees them."""

import re
import subprocess
from pathlib import Path


def elf_files(*roots):
    found = []
    for root in roots:
        for path in Path(root).rglob("*"):
            if path.is_file() and not path.is_symlink():
                with open(path, "rb") as file:
                    if file.read(4) == b"\x7fELF":
                        found.append(path)
    return found


def searched(elf):
    """What the dynamic section says of where libraries are: its run paths, and the names of those it needs."""
    dynamic = subprocess.run(["readelf", "-dW", elf], capture_output=True, text=True, check=True).stdout
    return (re.findall(r"\((?:RPATH|RUNPATH)\)\s+Library (?:rpath|runpath): \[(.*)\]", dynamic),
            re.findall(r"\(NEEDED\)\s+Shared library: \[(.*)\]", dynamic))


def run_path(elf):
    """The elements of an ELF file's run path; None when it has none."""
    paths, _ = searched(elf)
    return paths[0].split(":") if paths else None


def assert_run_paths_are_safe(elves):
    """An empty or a relative element makes the loader search the current folder; an absolute one, a folder of the
    machine that built it. A name with a slash is looked for from the current folder."""
    assert elves
    for elf in elves:
        paths, needed = searched(elf)
        for element in ":".join(paths).split(":") if paths else []:
            assert re.fullmatch(r"\$ORIGIN(/.*)?", element), f"{elf}: run path {paths}"
        assert not [name for name in needed if "/" in name], f"{elf}: needs {needed}"
