"""What a client sees of a meter is the same whatever processor either is for.

Every exported operation is called, with the same arguments, in a fresh meter: results, records, messages, log and
trace, and in the end the settings files, byte by byte. A native client in a native meter is what the others are
compared with.
"""

import json
import os
import re
import sys
from pathlib import Path

import pytest
from conftest import BUILD, Client, run

sys.path.append(str(Path(__file__).parents[1] / "matrix"))
from operations import OPERATIONS  # noqa: E402
from test_matrix import SCENE  # noqa: E402

pytestmark = pytest.mark.usefixtures("namespaces")

NATIVE = Path(os.environ["VX63_NATIVE_BUILD"])
FILES = range(50)
SETS = {"User": (14, 42, 44), "Logger": (35, 46, 48)}  # internal, USB memory 1 and 2

# Services first; what works on files needs none.
CALLS = ["vx63_init", *(row if isinstance(row, str) else row.name for row in OPERATIONS), "vx63_setMultiMeasChannel"]
FILE_CALLS = ["vx63_isFileIdUserSet", "vx63_isFileIdUserSetFlist", "vx63_isFileIdLoggerSet",
              "vx63_isFileIdLoggerSetFlist", "vx63_readSetFile", "vx63_writeSetFile", "vx63_readSetFile",
              "vx63_readSetFile(default)", "vx63_readSetFileIdx", "vx63_writeSetFileIdx"]
DELETIONS = [f"call vx63_deleteSetFile{kind}{place}" for kind in SETS for place in ("", "Usb1", "Usb2")]
DELETIONS += [order for kind, files in SETS.items() for file in files
              for order in (f"file {file}", f"call vx63_deleteSetFile{kind}Bulk")]
DELETIONS += ["call vx63_deleteAllSetFile"]


OWN = re.compile(r"^\d+\.\d{6}|(?<==)0x[0-9a-f]{5,}|(?<=getpid\(\)=)\d+|(?<=pthread_self\(\)=)-?\d+")


def without_what_is_its_own(answer):
    """The time, pointers, and the numbers of process and thread."""
    for log in ("log", "keys"):
        answer[log] = [OWN.sub("*", line) for line in answer.get(log, [])]
    return answer


def contents(state):
    return [(str(file.relative_to(state)), {"bytes": file.read_bytes()}) for file in sorted(state.rglob("*.csv"))]


def story(client, services, scene, folder):
    """What happened, in its order: (what was done, what came of it)."""
    trace, state = folder / "trace", folder / "state"
    happened = []

    def do(order):
        happened.append((order, without_what_is_its_own(meter.order(order))))
    with Client(services / "bin" / "vx63-vmeter", "run", "--scene", scene, "--trace", trace, "--state", state, "--",
                program=client / "bin" / "matrix_caller") as meter:
        do("init 17")
        for name in CALLS:
            do(f"call {name}")
        for file in FILES:
            do(f"file {file}")
            for name in FILE_CALLS:
                do(f"call {name}")
        happened += contents(state)
        for order in DELETIONS:
            do(order)
        happened += contents(state)
    for number, line in enumerate(trace.read_text().splitlines()):
        message = json.loads(line)
        del message["time"]
        happened.append((f"message {number}", message))
    return happened


@pytest.fixture(scope="module")
def scene(tmp_path_factory):
    file = tmp_path_factory.mktemp("scene") / "scene.toml"
    file.write_text(SCENE)
    return file


@pytest.fixture(scope="module")
def wanted(scene, tmp_path_factory):
    happened = story(NATIVE, NATIVE, scene, tmp_path_factory.mktemp("native"))
    failed = [(what, came["result"]) for what, came in happened if "result" in came and came["result"] < 0]
    assert failed == [("call vx63_readSetFile", -2)] * 6  # each set, before it is written
    return happened


@pytest.mark.parametrize("client, services", [(BUILD, BUILD), (BUILD, NATIVE), (NATIVE, BUILD)],
                         ids=["all", "client", "services"])
def test_the_same_happens(client, services, wanted, scene, tmp_path):
    happened = story(client, services, scene, tmp_path)
    for here, there in zip(happened, wanted):
        if here != there:
            pytest.fail(f"{here} instead of {there}", pytrace=False)
    assert len(happened) == len(wanted)


def test_no_operation_is_forgotten():
    symbols = run("nm", "-D", "--defined-only", BUILD / "lib" / "libvx63.so")
    exported = {line.split()[2].split("@")[0] for line in symbols.stdout.splitlines() if line.split()[1] == "T"}
    called = CALLS + FILE_CALLS + [order.split()[1] for order in DELETIONS if order.startswith("call")]
    assert exported == {name.split("(")[0] for name in called}
