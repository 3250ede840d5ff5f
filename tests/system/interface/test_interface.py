"""script/interface: changes of the library's binary interface, planted in a copy, are seen for what they are."""

import shutil

import pytest

from conftest import SOURCE, run


@pytest.fixture(scope="module")
def copy(tmp_path_factory):
    """What the library is built from. Every test leaves it as it was."""
    folder = tmp_path_factory.mktemp("copy")
    for name in ("CMakeLists.txt", "include", "src", "platform", "packaging", "script"):
        source = SOURCE / name
        (shutil.copytree if source.is_dir() else shutil.copy)(source, folder / name)
    (folder / "build").mkdir()
    status, out, err = check(folder)
    assert (status, out, err) == (0, "interface: as in packaging/interface\n", ""), out + err
    return folder


@pytest.fixture
def plant(copy):
    """Replaces a text in a file of the copy."""
    files = {}

    def replace(name, old, new):
        path = copy / name
        text = files.setdefault(path, path.read_text())
        assert old in path.read_text()
        path.write_text(path.read_text().replace(old, new))

    yield replace
    for path, text in files.items():
        path.write_text(text)


def check(copy):
    done = run(copy / "script" / "interface", "check")
    return done.returncode, done.stdout, done.stderr


BREAKS = "interface: applications that are built against libvx63.so.1 would break.\n"
GOES_ON = "interface: built applications go on to work, but the reference does not know the above.\n"


def test_a_field_inserted(copy, plant):
    plant("include/libvx63.h", "    uint16_t usInputStat;", "    uint16_t usExtra;\n    uint16_t usInputStat;")
    plant("src/meas/input.cpp", "static_assert(offsetof(MeasStatus, usInputStat) == 4);", "")
    status, out, err = check(copy)
    assert status == 1 and err.startswith(BREAKS), err
    assert "struct MeasStatus" in out and "usInputStat" in out


def test_an_argument_widened(copy, plant):
    for name in ("include/libvx63.h", "src/meas/input.cpp"):
        plant(name, "vx63_setMeasInput(int32_t input)", "vx63_setMeasInput(int64_t input)")
    plant("src/meas/input.cpp", "input=%d", "input=%ld")
    status, out, err = check(copy)
    assert status == 1 and err.startswith(BREAKS), err
    assert "vx63_setMeasInput" in out


def test_a_symbol_lost(copy, plant):
    plant("packaging/libvx63.map", "vx63_setMultiMeasChannel;", "")
    status, out, err = check(copy)
    assert status == 1 and err.startswith(BREAKS), err
    assert "vx63_setMultiMeasChannel" in out


def test_a_record_of_a_settings_file_grown(copy, plant):
    plant("include/libvx63.h", "    char FILE_NAME[13];", "    char FILE_NAME[14];")
    for assertion in ("sizeof(SetListEntry) == kCatalogue[VX63_SET_FILE_USER_LIST].dataSize",):
        plant("src/setfile/catalogue.cpp", assertion, "true")
    status, out, err = check(copy)
    assert status == 1 and err.startswith(BREAKS), err
    assert "SetListEntry" in out


def test_a_constant_renumbered(copy, plant):
    plant("include/libvx63.h", "VX63_ERR_REPEAT = -6,", "VX63_ERR_REPEAT = -5,")
    status, out, err = check(copy)
    assert status == 1 and err.startswith(BREAKS), err
    assert "VX63_ERR_REPEAT -6" in out and "VX63_ERR_REPEAT -5" in out
    assert "script/interface update" in err


def test_a_constant_added(copy, plant):
    plant("include/libvx63.h", "    VX63_KEYS = 17", "    VX63_KEYS_OF_OLD = 16,\n    VX63_KEYS = 17")
    status, out, err = check(copy)
    assert status == 1 and err.startswith(GOES_ON), err
    assert "VX63_KEYS_OF_OLD 16" in out
