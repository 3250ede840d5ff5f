"""The virtual meter in Python: whose operations reach it, what it tells, how it fails and ends."""

import multiprocessing
import os
import re
import signal
import subprocess
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import pytest
from conftest import BUILD, HANG, Process, descendants
from python_support import INTERPRETER, PYTHON, SOURCE, machine, python  # noqa: F401

import vx63

pytest_plugins = ["vx63.pytest_plugin", "pytester"]

CHANNEL_27 = vx63.MeasCondition(ulFreq=557143)


def test_what_a_meter_tells(virtual_meter):
    vx63.vx63_init(17)
    vx63.vx63_startSingleMeas(0, CHANNEL_27)
    assert virtual_meter.state()["measurement"]["run"] == "single"
    assert [(line["from"], line["to"], line["command"]) for line in virtual_meter.trace()] == [
        ("client 17", "meas", "single-start"), ("meas", "client 17", "single-start")]
    assert " vx63_startSingleMeas() : Start." in "\n".join(virtual_meter.log())
    assert virtual_meter.log("libvx63_key.txt") == []
    assert virtual_meter.run("sh", "-c", "cat; echo y >&2", input="x").stdout == "x"
    assert virtual_meter.run("sh", "-c", "exit 3", check=False).returncode == 3
    with pytest.raises(subprocess.CalledProcessError):
        virtual_meter.run("sh", "-c", "exit 3")
    with pytest.raises(FileNotFoundError):
        virtual_meter.run("no-such-program")
    with pytest.raises(subprocess.TimeoutExpired):
        virtual_meter.run("sleep", "1000", timeout=0.1)


def test_variables_of_the_library(virtual_meter):
    assert vx63.g_cLibTestLogFilePath in (b"", b"/var/log/libvx63.cpp.txt")
    assert vx63.g_lLibLogLevel == 0
    assert vx63.gLibDumpTestLog == b""
    vx63.vx63_init(1)
    assert vx63.g_cLibTestLogFilePath == b"/var/log/libvx63.cpp.txt"
    vx63.vx63_startSingleMeas(0, CHANNEL_27)
    vx63.vx63_startConstaMeas(0, 1000)
    vx63.vx63_getSingleMeasResult(624)  # its points are dumped
    assert vx63.gLibDumpLog != b""
    with ThreadPoolExecutor(1) as other:  # of each thread its own
        assert other.submit(lambda: vx63.gLibDumpLog).result() == b""
    table = vx63.g_measSetManuBdsysModDef
    assert len(table) == 23 and isinstance(table[0], vx63.MeasSetManuBdsysMod)
    assert [(row.BDSYS, row.MOD) for row in table] == [
        (row.BDSYS, row.MOD) for row in vx63.vx63_readSetFile(vx63.VX63_SET_FILE_MANU_BDSYS_MOD, bDefault=1)]


@pytest.mark.virtual_meter(scene_text="[product]\nserial_no = 'ANOTHER'\n", empty_settings=True,
                           faults=["sys/product:2=ret,0", "sys/failure=wrong"])
def test_options(virtual_meter):
    vx63.vx63_init(1)
    assert vx63.vx63_getProductInfo().cSerialNo == b"ANOTHER"
    record = vx63.FailInfo(usCode=0xA5A5)
    with pytest.raises(vx63.CommError, match="^vx63_getFailinfo: VX63_ERR_COMM"):
        vx63.vx63_getFailinfo(record)
    assert record == vx63.FailInfo(usCode=0xA5A5)
    with pytest.raises(vx63.SetFileError):
        vx63.vx63_readSetFile(vx63.VX63_SET_FILE_VOLUME)


def test_state_folder_stays(tmp_path):
    for expected in (0, 2):
        with vx63.VirtualMeter(state=tmp_path / "state"):
            volume, = vx63.vx63_readSetFile(vx63.VX63_SET_FILE_VOLUME)
            assert volume.VOLUME == expected
            volume.VOLUME = 2
            vx63.vx63_writeSetFile(vx63.VX63_SET_FILE_VOLUME, [volume])
    assert (tmp_path / "state" / "log" / "libvx63.cpp.txt").stat().st_size > 0


@pytest.mark.virtual_meter(faults=["meas/calibration=silence"])
def test_threads(virtual_meter):
    """While one thread waits the others go on; each has a process id of its own."""
    began = time.monotonic()

    def wait():
        vx63.vx63_init(2)
        with pytest.raises(vx63.CommError):
            vx63.vx63_calibration(0)
        return time.monotonic()

    def work(number):
        vx63.vx63_init(number)
        for _ in range(20):
            assert vx63.vx63_getProductInfo().cModelCode == b"VX63"
        return time.monotonic()

    with ThreadPoolExecutor(4) as threads:
        waiting = threads.submit(wait)
        working = [threads.submit(work, number) for number in (3, 4, 5)]
        assert max(one.result() for one in working) < began + 5 <= waiting.result()
    assert {line["from"] for line in virtual_meter.trace() if line["kind"] == "request"} == {
        "client 2", "client 3", "client 4", "client 5"}


@pytest.mark.virtual_meter(faults=["meas/calibration:1=die,10"])
def test_service_that_dies_comes_back(virtual_meter):
    def ask():  # in vain
        vx63.vx63_init(2)
        with pytest.raises(vx63.CommError, match="^vx63_calibration: VX63_ERR_COMM"):
            vx63.vx63_calibration(0)

    with ThreadPoolExecutor(1) as other:
        asking = other.submit(ask)
        while not virtual_meter.trace():  # the first request is the other's
            time.sleep(0.01)
        vx63.vx63_init(1)
        vx63.vx63_calibration(0)
        assert not asking.done()
        asking.result()


def test_forked_process_has_its_own_way(virtual_meter):
    def ask():
        vx63.vx63_init(2)
        vx63.vx63_getProductInfo()

    vx63.vx63_init(1)
    child = multiprocessing.get_context("fork").Process(target=ask)
    child.start()
    child.join(HANG)
    assert child.exitcode == 0
    vx63.vx63_getProductInfo()  # as itself, still
    assert [line["from"] for line in virtual_meter.trace() if line["kind"] == "request"] == ["client 2", "client 1"]


def test_inner_meter_counts(namespaces):
    with vx63.VirtualMeter(scene_text="[product]\nserial_no = 'OUTER'\n"):
        vx63.vx63_init(1)
        with vx63.VirtualMeter(scene_text="[product]\nserial_no = 'INNER'\n"):
            vx63.vx63_init(1)
            assert vx63.vx63_getProductInfo().cSerialNo == b"INNER"
        assert vx63.vx63_getProductInfo().cSerialNo == b"OUTER"


def test_meter_that_cannot_start(tmp_path):
    before = set(descendants(os.getpid()))
    with pytest.raises(vx63.VirtualMeterError, match="scene.toml:1: "):
        with vx63.VirtualMeter(scene_text="nonsense = 1\n"):
            pass
    with pytest.raises(vx63.VirtualMeterError, match="usage: .*nobody"):
        with vx63.VirtualMeter(faults=["nobody=silence"]):
            pass
    with pytest.raises(vx63.VirtualMeterError, match="no-meter: not found: install vx63-vmeter"):
        with vx63.VirtualMeter(program="no-meter"):
            pass
    with pytest.raises(ValueError):
        vx63.VirtualMeter(scene=tmp_path, scene_text="")
    assert set(descendants(os.getpid())) == before


def test_meter_without_its_library(monkeypatch):
    monkeypatch.setenv("VX63_LIBRARY", "/nowhere/libvx63.so.1")
    with pytest.raises(vx63.VirtualMeterError, match="install libvx63, or name the libvx63.so.1 of a build tree"):
        with vx63.VirtualMeter():
            pass


def test_meter_that_is_killed(virtual_meter):
    vx63.vx63_init(1)
    below = [Process(pid) for pid in descendants(virtual_meter._process.pid)]
    os.kill(virtual_meter._process.pid, signal.SIGKILL)
    for process in below:
        process.wait()
    with pytest.raises(vx63.VirtualMeterError, match="^the virtual meter has ended: "):
        vx63.vx63_init(1)


def test_no_process_is_left_by_one_that_is_killed(tmp_path):
    program = "import os, signal, vx63\nmeter = vx63.VirtualMeter().__enter__()\nprint(os.getpid(), flush=True)\n"
    with subprocess.Popen([INTERPRETER, "-c", program + "input()\n"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                          text=True, env=os.environ | {"TMPDIR": str(tmp_path)}) as started:
        started.stdout.readline()
        processes = [Process(pid) for pid in descendants(started.pid)]
        assert len(processes) >= 7
        started.kill()
    for process in processes:
        process.wait()


def test_no_file_is_left(tmp_path):
    status, _, err = python("import vx63\nwith vx63.VirtualMeter(): vx63.vx63_init(1)\n", TMPDIR=str(tmp_path))
    assert (status, os.listdir(tmp_path)) == (0, []), err


ROOM = """
import os, vx63
with vx63.VirtualMeter({options}) as meter:
    vx63.vx63_init(1)
    print(vx63.vx63_getProductInfo().cModelCode, sorted(os.listdir("/usr/local/bin"))[0])
    print(meter.state()["power"]["state"], len(meter.trace()), len(meter.log()) > 0)
print(os.listdir("/usr/local/bin"), os.listdir("/var/log"), os.listdir("/dev/mqueue"))
"""


@pytest.mark.parametrize("options", ["", "in_place=True"])
def test_in_place(namespaces, tmp_path, options):
    """In a room of folders, where bubblewrap does not work; for root that is enough."""
    for name in ("bin", "log"):
        (tmp_path / name).mkdir()
    status, out, err = python(
        ROOM.format(options=options), "bwrap", "--dev-bind", "/", "/", "--unshare-ipc", "--unshare-pid", "--proc",
        "/proc", "--mqueue", "/dev/mqueue", "--bind", tmp_path / "bin", "/usr/local/bin", "--bind", tmp_path / "log",
        "/var/log", "--ro-bind", "/dev/null", "/usr/bin/bwrap", "--")
    if os.geteuid() != 0 and not options:
        assert "VirtualMeterError: vx63-vmeter: " in err and "allow user namespaces" in err
        return
    assert (status, out.splitlines()) == (0, ["b'VX63' ch_set", "on 2 True", "[] [] []"]), err


def test_library_of_this_process_under_a_meter():
    """Without VirtualMeter: a program that is started under one."""
    status, out, err = python(
        "import vx63; vx63.vx63_init(1); print(vx63.vx63_getProductInfo().cModelCode, vx63.g_lLibLogLevel)",
        BUILD / "bin" / "vx63-vmeter", "run", *vx63._virtual_meter._isolation(str(BUILD / "bin" / "vx63-vmeter")),
        "--")
    assert (status, out) == (0, "b'VX63' 0\n"), err


def test_fixture_of_an_installed_package(pytester, tmp_path):
    """Pytest finds it by the entry point of the package; the test is that of the README."""
    subprocess.run(["cmake", "--install", BUILD, "--component", "python", "--prefix", tmp_path], check=True,
                   stdout=subprocess.DEVNULL, timeout=HANG)
    packages = tmp_path / "lib" / "python3" / "dist-packages"
    installed = sorted(path.name for path in (packages / "vx63").iterdir())
    assert installed == sorted(path.name for path in (PYTHON / "vx63").iterdir() if path.name != "__pycache__")
    example, = re.findall(r"```python\n(@pytest.*?)```", (SOURCE / "README.md").read_text(), re.DOTALL)
    pytester.makepyfile(f"import pytest, vx63\nassert vx63.__file__.startswith('{packages}')\n{example}")
    done = subprocess.run([INTERPRETER, "-m", "pytest", "-q", "--strict-markers", "-p", "no:cacheprovider"],
                          cwd=pytester.path, env=os.environ | {"PYTHONPATH": str(packages)}, text=True,
                          stdout=subprocess.PIPE, timeout=HANG, check=False)
    assert "1 passed" in done.stdout, done.stdout


@pytest.mark.parametrize("example", ["poll.py", "constellation.py"])
def test_examples(virtual_meter, example, tmp_path):
    picture = tmp_path / "constellation.png"
    done = virtual_meter.run(INTERPRETER, SOURCE / "examples" / "python" / example, "557143",
                             *([picture] if example == "constellation.py" else ["3"]),
                             env=os.environ | {"MPLCONFIGDIR": str(tmp_path)})
    if example == "poll.py":
        assert [line.split()[0] for line in done.stdout.splitlines()] == ["557143"] * 3
        assert "63." in done.stdout and "dBuV" in done.stdout
    else:
        assert Path(picture).read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"


def test_example_of_the_readme(virtual_meter):
    example, = re.findall(r"```python\n(import vx63\n.*?)```", (SOURCE / "README.md").read_text(), re.DOTALL)
    assert "LEVEL=6" in virtual_meter.run(INTERPRETER, "-c", example).stdout


def test_terminal_signals_are_this_process_s_business(virtual_meter):
    assert os.getsid(virtual_meter._process.pid) != os.getsid(0)
