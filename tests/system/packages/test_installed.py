"""`cmake --install`: what each component has, and that applications are built with it and run."""

import json
import os
import re
import shutil
from pathlib import Path

import pytest

from conftest import BUILD, SOURCE, run
from elf import assert_run_paths_are_safe, elf_files, run_path
from installed import LIBDIR, cache, done, files


@pytest.fixture(scope="module")
def prefix(tmp_path_factory):
    """Everything, below a prefix that the build knows nothing of."""
    where = tmp_path_factory.mktemp("prefix")
    done("cmake", "--install", BUILD, "--prefix", where)
    return where


@pytest.fixture
def meter(prefix, isolation):
    """What to put before a command to run it in an installed virtual meter."""
    return lambda *options: [prefix / "bin" / "vx63-vmeter", "run", *isolation, *options, "--"]


def component(name, where):
    done("cmake", "--install", BUILD, "--prefix", where, "--component", name)
    return files(where)


# ---- components ----


def test_library(tmp_path):
    assert component("library", tmp_path) == [f"{LIBDIR}/libvx63.so.1", f"{LIBDIR}/libvx63.so.1.0.0"]


def test_development(tmp_path):
    assert component("development", tmp_path) == sorted([
        "include/libvx63.h",
        "include/libvx63_settings.h",
        f"{LIBDIR}/cmake/vx63/vx63-config-version.cmake",
        f"{LIBDIR}/cmake/vx63/vx63-config.cmake",
        f"{LIBDIR}/libvx63.so",
        f"{LIBDIR}/pkgconfig/libvx63.pc",
        "share/doc/libvx63-dev/examples/c/CMakeLists.txt",
        "share/doc/libvx63-dev/examples/c/Makefile",
        "share/doc/libvx63-dev/examples/c/in_step.c",
        "share/doc/libvx63-dev/examples/c/measure.c",
        "share/doc/libvx63-dev/examples/cpp/CMakeLists.txt",
        "share/doc/libvx63-dev/examples/cpp/measure.cpp",
        "share/man/man3/libvx63.3",
    ])


def test_tools(tmp_path):
    installed = component("tools", tmp_path)
    assert {"share/man/man1/vx63.1", "share/man/man1/vx63-measure.1"} <= set(installed)
    schemas = {f"share/doc/vx63-tools/json/{path.name}" for path in (SOURCE / "docs" / "json").glob("*")}
    assert schemas and schemas <= set(installed)
    assert [name for name in installed if not name.startswith("share/man/man1/vx63") and name not in schemas] == [
        "bin/vx63",
        "share/bash-completion/completions/vx63",
        "share/doc/vx63-tools/examples/survey.toml",
        "share/doc/vx63-tools/json.md",
        "share/doc/vx63-tools/survey-reports.md",
        "share/doc/vx63-tools/survey.md",
        "share/fish/vendor_completions.d/vx63.fish",
        "share/zsh/vendor-completions/_vx63",
    ]


def test_vmeter(tmp_path):
    assert component("vmeter", tmp_path) == sorted([
        "bin/vx63-vmeter",
        "include/lmsg.h",
        "include/lsys.h",
        f"{LIBDIR}/liblmsg.so",
        f"{LIBDIR}/liblsys.so",
        "share/bash-completion/completions/vx63-vmeter",
        "share/fish/vendor_completions.d/vx63-vmeter.fish",
        "share/man/man1/vx63-vmeter.1",
        "share/vx63-vmeter/scenes/default.toml",
        "share/zsh/vendor-completions/_vx63-vmeter",
    ])


def test_no_file_without_component(prefix, tmp_path):
    """A file of no component would be in no package."""
    for name in "library", "development", "tools", "vmeter", "python":
        component(name, tmp_path)
    assert files(prefix) == files(tmp_path)


def test_library_alone(tmp_path):
    """VX63_LIBRARY_ONLY needs nothing but a compiler, and installs nothing but the library."""
    toolchain = [f"-DCMAKE_TOOLCHAIN_FILE={cache('CMAKE_TOOLCHAIN_FILE')}"] if cache("CMAKE_TOOLCHAIN_FILE") else []
    done("cmake", "-S", SOURCE, "-B", tmp_path / "build", "-G", "Ninja", "-DVX63_LIBRARY_ONLY=ON",
         "-DCMAKE_DISABLE_FIND_PACKAGE_PkgConfig=ON", *toolchain)
    done("cmake", "--build", tmp_path / "build", "-j2")
    done("cmake", "--install", tmp_path / "build", "--prefix", tmp_path / "prefix")
    component("library", tmp_path / "parts")
    expected = component("development", tmp_path / "parts")
    assert files(tmp_path / "prefix") == [name for name in expected if not name.startswith("share/man/")]


# ---- run paths ----


def test_run_paths(prefix):
    assert_run_paths_are_safe(elf_files(prefix))
    libraries = os.path.relpath(prefix / LIBDIR, prefix / "bin")
    for program in "vx63", "vx63-vmeter":
        assert f"$ORIGIN/{libraries}" in run_path(prefix / "bin" / program)
    assert run_path(prefix / LIBDIR / "libvx63.so.1") == ["$ORIGIN"]


def test_programs_find_their_libraries(prefix, meter):
    said = done(*meter(), prefix / "bin" / "vx63", "measure", "single", "--freq", "557143")
    assert re.search(r"^Lock +yes$", said, re.MULTILINE)


# ---- applications ----


# What the build itself was compiled with, for applications of the same machine.
C_COMPILER = re.search(r'set\(CMAKE_C_COMPILER "(.*)"\)',
                       next(BUILD.glob("CMakeFiles/*/CMakeCCompiler.cmake")).read_text()).group(1)
SYSROOT = cache("VX63_SYSROOT")


def by_make(where, prefix):
    pkg_config = f"PKG_CONFIG_PATH={prefix / LIBDIR / 'pkgconfig'}"
    done("env", pkg_config, "make", "-C", where, f"CC={C_COMPILER}" + (f" --sysroot={SYSROOT}" if SYSROOT else ""),
         f"CFLAGS={cache('CMAKE_C_FLAGS')}", f"LDFLAGS=-Wl,-rpath,{prefix / LIBDIR}")
    return where / "measure"


def by_cmake(where, prefix):
    toolchain = cache("CMAKE_TOOLCHAIN_FILE")  # which looks for packages in its sysroot alone
    found = ([f"-DCMAKE_TOOLCHAIN_FILE={toolchain}", f"-Dvx63_DIR={prefix / LIBDIR}/cmake/vx63"] if toolchain else
             [f"-DCMAKE_PREFIX_PATH={prefix}"])
    compilers = [f"-D{name}={cache(name)}" for name in ("CMAKE_C_COMPILER", "CMAKE_CXX_COMPILER") if cache(name)]
    done("cmake", "-S", where, "-B", where / "build", "-G", "Ninja", *found, *compilers)
    done("cmake", "--build", where / "build")
    return where / "build" / "measure"


@pytest.fixture(scope="module")
def programs(prefix, tmp_path_factory):
    """The installed examples, built."""
    where = tmp_path_factory.mktemp("examples")
    shutil.copytree(prefix / "share/doc/libvx63-dev/examples", where, dirs_exist_ok=True)
    shutil.copytree(where / "c", where / "c-cmake")
    return {"make": by_make(where / "c", prefix), "c": by_cmake(where / "c-cmake", prefix),
            "cpp": by_cmake(where / "cpp", prefix)}


MEASURED = re.compile(r"""Frequency       557143 kHz
Level           (\d+\.\d) dBuV
C/N             (\d+\.\d) dB
Bit error rate  (?:< )?\d\.\de-\d\d
MER             (\d+\.\d) dB
""")


@pytest.mark.parametrize("how", ["make", "c", "cpp"])
def test_example_measures(programs, how, prefix, meter):
    said = done(*meter(), programs[how])
    level, ratio, error_ratio = map(float, MEASURED.fullmatch(said).groups())
    assert 60 < level < 67 and 30 < ratio < 37 and abs(error_ratio - ratio) < 2, said


@pytest.mark.parametrize("how", ["c", "cpp"])
@pytest.mark.parametrize("fault, what", [
    ("meas/single-start=ret,2", "cannot start the measurement: an argument is out of range: "),
    ("meas/single-result=ret,3", "cannot read the result: a fault of the antenna power supply: "),
    ("meas/constellation-start=refuse", "cannot collect constellation points: no answer, or none that can be used: "),
    ("meas/single-start:2=refuse", "cannot stop the measurement: no answer, or none that can be used: "),
])
def test_example_says_what_failed(programs, how, meter, fault, what):
    ended = run(*meter("--fault", fault), programs[how])
    assert ended.stderr.startswith(f"measure: {what}"), ended
    assert ended.returncode == 1


# An answer that nothing waits for: to a result read (0x104) and to a status read (0x17) of the process ids 15 and 16.
PLANTED = "; ".join(f"echo send {queue} 0c{queue:02x}{command}{len(body) // 2:02x}000000{body}"
                    for queue in (15, 16) for command, body in (("0481", "00" * 44), ("1780", "00" * 12)))


@pytest.mark.parametrize("how", ["make", "c"])
@pytest.mark.parametrize("faults, planted, changes", [
    pytest.param([], "", 0, id="well"),
    pytest.param([], PLANTED, 0, id="left"),
    pytest.param(["meas/single-result:2=twice"], "", 1, id="reading-twice"),
    pytest.param(["meas/meas-status:2=twice"], "", 1, id="status-twice"),
    pytest.param(["meas/single-result:2=twice", "meas/meas-status:4=stray", "meas/single-result:6=wrong"], PLANTED, 3,
                 id="all"),
])
def test_example_gets_in_step(programs, how, meter, tmp_path, faults, planted, changes):
    """Each of its readings is a new one, the last one too."""
    trace = tmp_path / "trace"
    options = [option for rule in faults for option in ("--fault", rule)]
    script = f"({planted or 'true'}) | {BUILD}/bin/vmeter_exchange > {tmp_path}/sent; exec {programs[how].parent}/in_step 5"
    ended = run(*meter("--trace", trace, *options), "sh", "-c", script)
    assert ended.returncode == 0, ended
    assert ended.stderr.splitlines() == [f"in_step: process {(15, 16)[made % 2]}" for made in range(changes + 1)]
    readings = re.findall(r"^(\d+\.\d) dBuV, (\d+) bits$", ended.stdout, re.MULTILINE)
    messages = [json.loads(line) for line in trace.read_text().splitlines()]
    bodies = [bytes.fromhex(message["body"]) for message in messages if message["usCmd"] == 0x8104]
    answers = [(f"{int.from_bytes(body[16:20], 'little') / 10:.1f}", str(int.from_bytes(body[24:28], "little")))
               for body in bodies]
    rest = iter(answers)
    assert len(readings) == 5 and all(reading in rest for reading in readings), (readings, answers)
    assert readings[-1] == answers[-1] != answers[-2]


def test_versions(prefix, tmp_path):
    assert done("env", f"PKG_CONFIG_PATH={prefix / LIBDIR / 'pkgconfig'}", "pkg-config", "--modversion",
                "libvx63") == "1.0.0\n"
    for wanted, fits in ("1", True), ("1.0", True), ("1.1", False), ("2", False):
        (tmp_path / "CMakeLists.txt").write_text("cmake_minimum_required(VERSION 3.13)\nproject(wants NONE)\n"
                                                 f"find_package(vx63 {wanted} REQUIRED)\n")
        ended = run("cmake", "-S", tmp_path, "-B", tmp_path / wanted, f"-Dvx63_DIR={prefix / LIBDIR}/cmake/vx63")
        assert (ended.returncode == 0) == fits, f"{wanted}: {ended.stderr}"


def test_no_platform_where_it_is_linked(tmp_path):
    """A meter's own is nowhere near the linker; a name that the application calls must still be there."""
    component("library", tmp_path)
    component("development", tmp_path)
    where = tmp_path / "share/doc/libvx63-dev/examples/c"
    assert by_make(where, tmp_path).exists()
    assert by_cmake(where, tmp_path).exists()

    source = (where / "measure.c").read_text()
    (where / "measure.c").write_text(source.replace("vx63_init(", "vx63_begin("))
    for build in by_make, by_cmake:
        with pytest.raises(AssertionError, match="undefined reference to `vx63_begin'"):
            build(where, tmp_path)


def test_readme_example(prefix, tmp_path, meter):
    (tmp_path / "measure.c").write_text(re.search(r"^```c\n(.*?)^```", (SOURCE / "README.md").read_text(),
                                                  re.MULTILINE | re.DOTALL).group(1))
    shutil.copy(SOURCE / "examples/c/Makefile", tmp_path)
    assert re.fullmatch(r"6\d\.\d dBuV, C/N 3\d\.\d dB\n", done(*meter(), by_make(tmp_path, prefix)))


def test_example_without_signal(programs, meter):
    ended = run(*meter(), programs["c"], "600000")
    assert ended.returncode == 1
    assert ended.stderr.startswith("measure: no lock within 5 s: level ")
