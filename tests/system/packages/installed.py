"""What the tests of installed files share."""

import re
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
