"""The module and the C headers say the same."""

import ctypes
import inspect
import pydoc
import re
import subprocess

from conftest import HANG, run
from python_support import EXPORTED, INTERPRETER, PYTHON, SOURCE, VARIABLES, machine  # noqa: F401

import vx63


def test_written_part_is_up_to_date(tmp_path):
    done = run(SOURCE / "script" / "python-interface", tmp_path / "fresh.py")
    assert done.returncode == 0, done.stderr
    assert (tmp_path / "fresh.py").read_text() == (PYTHON / "vx63" / "_interface.py").read_text(), \
        "run script/python-interface"


def test_every_exported_name_is_there():
    assert VARIABLES < set(EXPORTED)
    for name in set(EXPORTED) - VARIABLES:
        assert callable(getattr(vx63, name)) and getattr(vx63, name).__doc__, name
        assert name in vx63.__all__


def told(thing):
    return pydoc.render_doc(thing, renderer=pydoc.plaintext)


def test_help_of_a_record_tells_units_and_codes():
    result = told(vx63.SingleMeasResult)
    assert " |    LEVEL      0.1 dBuV: level; 0 for 0 dBuV and less\n" in result
    assert " |    LAYER      hierarchical layers, bits: 1 A, 2 B, 4 C\n" in result
    assert " |    flAx, flAy, flAz           g: acceleration, raw\n" in told(vx63.AngleCalInfoDetail)
    threshold = told(vx63.SET_FILES[vx63.VX63_SET_FILE_THRD].record)
    assert " |    LV_LOW        0.1 dBuV: level: lowest that passes; -200 to 1300\n" in threshold
    assert " |    CENT_FREQ  kHz: centre frequency; 10000 to 3224000, 0 = empty place\n" in told(vx63.SetFileUhf)


def test_help_of_a_record_tells_all_fields():
    for cls in vars(vx63).values():
        if isinstance(cls, type) and issubclass(cls, vx63.Record) and "_fields_" in vars(cls):
            listed = re.findall(r"^ {2}((?:\w+, )*\w+) {2,}\S", inspect.getdoc(cls).partition("\nFields:\n")[2], re.M)
            assert ", ".join(listed).split(", ") == [name for name, *_ in fields(cls)], cls


def test_help_of_the_module_tells_what_constants_mean():
    assert "\n      VX63_MOD_NONE            8192  a carrier without modulation\n" in told(vx63)


def test_every_result_code_is_an_exception():
    codes = {name: value for name, value in vars(vx63).items() if name.startswith("VX63_ERR_")}
    assert codes == {"VX63_ERR_COMM": -1, "VX63_ERR_ARG": -2, "VX63_ERR_REPEAT": -6, "VX63_ERR_POWER": -7,
                     "VX63_ERR_PRIORITY": -8}
    classes = {cls.code: cls for cls in (vx63.CommError, vx63.ArgError, vx63.RepeatError, vx63.PowerError,
                                         vx63.PriorityError)}
    assert set(classes) == set(codes.values())
    for name, code in codes.items():
        error = vx63._errors.error_of("vx63_x", code)
        assert type(error) is classes[code]
        assert re.fullmatch(rf"vx63_x: {name} \({code}\): .{{20,}}: .{{20,}}", str(error)), str(error)
        assert "of one version" not in str(error)
    assert str(vx63._errors.error_of("vx63_x", -3)) == (
        "vx63_x: an unknown result (-3): install library and module of one version")


def fields(cls):
    """Name, size and offset of every field; the array of a record of any length has size 0."""
    for name, *_ in cls._fields_:
        if name == "_single" or not name.startswith("_"):  # the others fill gaps
            place = getattr(cls, name)
            yield name.lstrip("_"), place.size, place.offset


def test_records_lie_in_memory_as_in_c(tmp_path):
    records = [cls for cls in vars(vx63).values() if isinstance(cls, type) and issubclass(cls, vx63.Record)
               and hasattr(cls, "_fields_") and not cls.__name__.startswith("SetFile")]
    assert len(records) == 18
    lines = ['#include "libvx63.h"', '#include "stddef.h"', "#include <stdio.h>", "int main(void) {"]
    expected = []
    for cls in records:
        name = "struct ConstaPoint" if cls is vx63.ConstaPoint else cls.__name__
        lines.append(f'printf("{name} %zu\\n", sizeof({name}));')
        expected.append(f"{name} {ctypes.sizeof(cls)}")
        for field, size, offset in fields(cls):
            flexible = size == 0
            shown = "(size_t)0" if flexible else f"sizeof((({name}*)0)->{field})"
            lines.append(f'printf("{name}.{field} %zu %zu\\n", {shown}, offsetof({name}, {field}));')
            expected.append(f"{name}.{field} {size} {offset}")
    (tmp_path / "sizes.c").write_text("\n".join(lines + ["return 0; }", ""]))
    subprocess.run(["g++", "-x", "c", "-std=c99", "-I", SOURCE / "include", "-o", tmp_path / "sizes",
                    tmp_path / "sizes.c"], check=True, timeout=HANG)
    assert run(tmp_path / "sizes").stdout.splitlines() == expected


def test_records_of_settings_files_lie_in_memory_as_the_library_takes_them(tmp_path):
    (tmp_path / "sizes.cpp").write_text("""
#include "libvx63_settings.h"
#include <cstdio>
int main()
{
    for (const vx63::settings::File& file : vx63::settings::kFiles) {
        std::printf("%u %s %u %u %d\\n", file.fileId, file.path, file.rows, file.dataSize, file.defaultSize != 0);
        for (uint32_t i = 0; i < file.columnCount; ++i)
            std::printf("%s %u %u\\n", file.columns[i].name.data(), file.columns[i].width, file.columns[i].offset);
    }
}
""")
    subprocess.run(["g++", "-std=c++17", "-I", SOURCE / "include", "-o", tmp_path / "sizes", tmp_path / "sizes.cpp"],
                   check=True, timeout=HANG)
    shown = run(tmp_path / "sizes").stdout.splitlines()
    at = 0
    for number, file in enumerate(vx63.SET_FILES):
        assert file.file_id == number
        assert shown[at] == f"{number} {file.path} {file.rows} {ctypes.sizeof(file.record)} {int(file.fixed)}"
        columns = sorted(shown[at + 1:at + 1 + len(list(fields(file.record)))], key=lambda line: int(line.split()[2]))
        for column, (name, size, offset) in zip(columns, fields(file.record), strict=True):
            assert column.split() == [column.split()[0], str(size), str(offset)]
            assert re.sub(r"\W+", "_", column.split()[0]).strip("_") == name
        at += 1 + len(columns)
    assert at == len(shown)
    assert vx63.SET_FILES[vx63.VX63_SET_FILE_USER_SET].record is vx63.SetChannel
    assert vx63.SET_FILES[vx63.VX63_SET_FILE_LOGGER_LIST_USB2].record is vx63.SetListEntry


def test_hints_are_right(tmp_path):
    """The module itself, and what a program that uses it is told."""
    (tmp_path / "program.py").write_text("""
import vx63
vx63.vx63_init(1)
reveal_type(vx63.vx63_getSingleMeasResult(0))
reveal_type(vx63.MultiMeasReg([vx63.MeasCondition(ulFreq=1)]).single[0].ulFreq)
reveal_type(vx63.g_lLibLogLevel)
reveal_type(vx63.vx63_getOptMeasResult())
vx63.vx63_inti(1)
vx63.vx63_startSingleMeas(0, 557143)
""")
    done = run(INTERPRETER, "-m", "mypy", "--strict", "--cache-dir", tmp_path / "cache", "-p", "vx63",
               cwd=PYTHON)
    assert done.stdout == "Success: no issues found in 10 source files\n", done.stderr
    done = run(INTERPRETER, "-m", "mypy", "--strict", "--cache-dir", tmp_path / "cache", tmp_path / "program.py",
               cwd=PYTHON)
    assert [line.partition(": ")[2] for line in done.stdout.splitlines()] == [
        'note: Revealed type is "vx63._interface.SingleMeasResult"',
        'note: Revealed type is "builtins.int"',
        'note: Revealed type is "builtins.int"',
        'note: Revealed type is "builtins.int"',
        'error: Module has no attribute "vx63_inti"  [attr-defined]',
        'error: Argument 2 to "vx63_startSingleMeas" has incompatible type "int"; expected "MeasCondition"  '
        '[arg-type]',
        "",
    ]
