"""The module vx63 of the source tree over the programs of the build tree."""

import os
import re
import subprocess
import sys
from pathlib import Path

import pytest

import conftest
from conftest import BUILD, HANG, cannot
from lent_machine import lent_machine

SOURCE = Path(__file__).resolve().parents[3]
PYTHON = SOURCE / "python"
INTERPRETER = "/usr/bin/python3"

# What libvx63.so exports.
EXPORTED = re.findall(r"^\s+(\w+);", (SOURCE / "packaging" / "libvx63.map").read_text(), re.MULTILINE)
VARIABLES = {"gLibDumpLog", "gLibDumpTestLog", "g_cLibTestLogFilePath", "g_lLibLogLevel", "g_measSetManuBdsysModDef"}

sys.path.insert(0, str(PYTHON))
os.environ["PYTHONPATH"] = str(PYTHON)
os.environ["VX63_LIBRARY"] = str(BUILD / "lib" / "libvx63.so.1")
os.environ["PATH"] = f"{BUILD / 'bin'}:{os.environ['PATH']}"


@pytest.fixture(scope="session", autouse=True)
def machine():
    """Where namespaces are refused, meters share the machine's own queues and paths."""
    checked = conftest.vmeter("check")
    if checked.returncode == 0:
        yield
    elif os.geteuid() == 0:
        with lent_machine():
            yield
    else:
        cannot(checked.stderr.strip())


def python(program, *before, **environment):
    """Runs a program in a Python of its own; gives its exit status and both outputs."""
    done = subprocess.run([*map(str, before), INTERPRETER, "-c", program], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=HANG, check=False,
                          env=os.environ | environment)
    return done.returncode, done.stdout, done.stderr
