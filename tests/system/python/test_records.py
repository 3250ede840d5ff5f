"""Records, arguments and the loading of the library, without a meter."""

import ctypes
import os
import pickle
import shutil

import pytest
from conftest import BUILD, run
from python_support import machine, python  # noqa: F401

import vx63


def test_record_shows_its_fields():
    assert repr(vx63.MeasCondition(ulFreq=557143, ucStrChan=b"27")) == (
        "MeasCondition(ulFreq=557143, ulLoFreq=0, usBdSys=0, usBand=0, usMod=0, usCondition=0, ucStrChan=b'27', "
        "ucOutputEnb=0, powerSupply=0)")
    assert repr(vx63.AngleCalStat(lStatus=-1)) == (
        "AngleCalStat(lStatus=-1, centerPoint1=AnglePoint(x=0.0, y=0.0, z=0.0), "
        "centerPoint2=AnglePoint(x=0.0, y=0.0, z=0.0), centerPoint3=AnglePoint(x=0.0, y=0.0, z=0.0))")
    assert repr(vx63.KeyStatus()) == "KeyStatus(stat=[0, 0, 0, 0, 0, 0, 0, 0, ... 17 in all])"
    assert repr(vx63.SingleMeasResult()).endswith(
        ", CONS_NUM=0, points=[" + "ConstaPoint(I=0, Q=0), " * 8 + "... 4000 in all])")
    assert repr(vx63.MultiMeasReg([])) == "MultiMeasReg(sRegNum=0, single=[])"


def test_records_are_equal_by_their_fields():
    one, other = vx63.MeasCondition(ulFreq=1), vx63.MeasCondition(1)
    assert one == other
    ctypes.memset(ctypes.addressof(other) + 25, 0xFF, 3)  # behind ucOutputEnb
    assert one == other
    other.ucStrChan = b"27"
    assert one != other
    assert vx63.MeasCondition() != vx63.MeasStatus()
    assert vx63.MeasStatus() != 0
    left, right = vx63.SingleMeasResult(), vx63.SingleMeasResult()
    assert left == right
    right.points[3999].Q = -1
    assert left != right
    hidden = vx63.ProductInfo(cModelCode=b"A\0\0\0")
    ctypes.memset(ctypes.addressof(hidden) + 7, 0x42, 1)  # in the field, behind the NUL
    assert hidden.cModelCode == b"A" and hidden != vx63.ProductInfo(cModelCode=b"A")
    with pytest.raises(TypeError):
        hash(one)


def test_fields_refuse_what_they_cannot_hold():
    condition = vx63.MeasCondition(usBand=7, powerSupply=-1)
    for value in (-1, 65536):
        with pytest.raises(OverflowError, match=f"^MeasCondition.usBand: {value} does not fit$"):
            condition.usBand = value
    assert (condition.usBand, condition.powerSupply) == (7, -1)
    with pytest.raises(OverflowError):
        vx63.MeasCondition(ulFreq=1 << 32)
    with pytest.raises(AttributeError, match="^MeasCondition has no field ulFrq$"):
        condition.ulFrq = 557143
    with pytest.raises(AttributeError):
        vx63.MeasCondition(ulFrq=557143)
    with pytest.raises(ValueError):
        condition.ucStrChan = b"123456789"
    vx63.AnglePoint(x=16777217)  # rounded, as a float is


def test_channels_of_a_registration():
    registration = vx63.MultiMeasReg(vx63.MeasCondition(ulFreq=frequency) for frequency in range(1000, 1100))
    assert (registration.sRegNum, len(registration.single)) == (100, 100)
    assert bytes(registration)[:8] == b"\x64\0\0\0\xe8\x03\0\0"
    assert len(bytes(registration)) == 4 + 100 * 32
    view = registration.single
    view[99].usBand = 3
    assert registration.single[99] == vx63.MeasCondition(ulFreq=1099, usBand=3)
    del registration
    assert view[99].ulFreq == 1099  # its memory is still there
    with pytest.raises(AttributeError):
        vx63.MultiMeasReg([]).multiple


def test_registration_that_claims_more_than_it_has_is_refused():
    registration = vx63.MultiMeasReg([vx63.MeasCondition()])
    registration.sRegNum = 2
    with pytest.raises(ValueError, match="^MultiMeasReg.sRegNum: 2, but single has 1$"):
        vx63.vx63_startMultiMeas(0, registration)


def test_records_and_errors_can_be_pickled():
    registration = vx63.MultiMeasReg([vx63.MeasCondition(ulFreq=1), vx63.MeasCondition(ulFreq=2)])
    registration.sRegNum = 1
    for value in (vx63.MeasCondition(ulFreq=5), registration):
        assert pickle.loads(pickle.dumps(value)) == value
    error = pickle.loads(pickle.dumps(vx63.CommError("vx63_init", -1)))
    assert (type(error), error.operation, error.code) == (vx63.CommError, "vx63_init", -1)
    assert (str(vx63.CommError), str(vx63.MeasCondition)) == ("<class 'vx63.CommError'>", "<class 'vx63.MeasCondition'>")


def test_arguments_are_checked_before_the_call():
    with pytest.raises(OverflowError, match="^ucDispType: 256: must be 0 to 255$"):
        vx63.vx63_stopSingleMeas(256)
    with pytest.raises(OverflowError, match="^buzz: -2147483649: must be -2147483648 to 2147483647$"):
        vx63.vx63_buzzer(-2147483649, 0)
    with pytest.raises(TypeError, match="^pCondition: must be MeasCondition, is NoneType$"):
        vx63.vx63_startSingleMeas(0, None)
    with pytest.raises(TypeError):
        vx63.vx63_init("1")
    with pytest.raises(ValueError, match="^ucAddInfo: must be 32 bytes, is 3$"):
        vx63.vx63_setFailStat(1, 1, b"123")
    with pytest.raises(ValueError, match="^pcUserFileName: holds a NUL$"):
        vx63.vx63_deleteSetFileUser("A\0B")
    with pytest.raises(ValueError, match="^pDat: the file is always written whole: must be 3 records, is 1$"):
        vx63.vx63_writeSetFile(vx63.VX63_SET_FILE_DC_OUT, [vx63.SetFileDcOut()])
    with pytest.raises(TypeError, match="^pDat: must be SetFileVolume, is SetFileDcOut$"):
        vx63.vx63_writeSetFile(vx63.VX63_SET_FILE_VOLUME, [vx63.SetFileDcOut()])
    with pytest.raises(ValueError, match="^ulUserLine: 2, but pDat has 1 records$"):
        vx63.vx63_writeSetFile(vx63.VX63_SET_FILE_USER_LIST, [vx63.SetListEntry()], ulUserLine=2)
    with pytest.raises(AttributeError, match="^module 'vx63' has no attribute 'vx63_inti'$"):
        vx63.vx63_inti(1)


INIT = "import vx63; vx63.vx63_init(1); print('initialised')"


def loaded(**environment):
    status, out, err = python(INIT, **environment)
    return status, out, err.splitlines()[-1] if err else ""


def test_library_of_a_build_tree():
    assert loaded() == (0, "initialised\n", "")


def test_library_that_the_loader_finds():
    assert loaded(VX63_LIBRARY="", LD_LIBRARY_PATH=str(BUILD / "lib")) == (0, "initialised\n", "")


def test_missing_library():
    status, _, why = loaded(VX63_LIBRARY="/nowhere/libvx63.so.1")
    assert status == 1
    assert why == ("OSError: vx63: /nowhere/libvx63.so.1: /nowhere/libvx63.so.1: cannot open shared object file: No "
                   "such file or directory: install libvx63, or name the libvx63.so.1 of a build tree in "
                   "VX63_LIBRARY")


@pytest.fixture
def without_platform(tmp_path):
    """A library as on a meter: the platform's calls come from elsewhere, and it does not say from where."""
    library = tmp_path / "libvx63.so.1"
    (tmp_path / "init.c").write_text("int lmsg_tsndMq(void), lsys_readCsvNewFmt(void);\n"
                                     "int (*const calls[])(void) = {lmsg_tsndMq, lsys_readCsvNewFmt};\n"
                                     "int vx63_init(int id) { return calls[0] != calls[1] ? 0 : id; }\n")
    assert run("g++", "-x", "c", "-shared", "-fPIC", "-o", library, tmp_path / "init.c").returncode == 0
    return library


def test_missing_platform(without_platform, tmp_path):
    for name in (), ("liblmsg.so",), ("liblmsg.so", "liblsys.so"):
        for one in name:
            shutil.copy(BUILD / "lib" / one, tmp_path)
        status, out, why = loaded(VX63_LIBRARY=str(without_platform))
        if len(name) == 2:
            assert (status, out) == (0, "initialised\n"), why
        else:
            assert status == 1
            assert ": the platform's calls are missing: on a PC install vx63-vmeter, which brings liblmsg" in why


def test_platform_of_the_process_is_used(without_platform, tmp_path):
    """As with the firmware of a meter: whoever has the calls already provides them."""
    (tmp_path / "firmware.c").write_text("int lmsg_tsndMq(void) { return 1; }\n"
                                         "int lsys_readCsvNewFmt(void) { return 2; }\n")
    firmware = tmp_path / "firmware.so"
    assert run("g++", "-x", "c", "-shared", "-fPIC", "-o", firmware, tmp_path / "firmware.c").returncode == 0
    for name in ("liblmsg.so", "liblsys.so"):
        shutil.copy(BUILD / "lib" / name, tmp_path)
    program = INIT + "; print([name for name in ('liblmsg', 'liblsys') if name in open('/proc/self/maps').read()])"
    status, out, err = python(program, VX63_LIBRARY=str(without_platform), LD_PRELOAD=str(firmware))
    assert (status, out) == (0, "initialised\n[]\n"), err


def test_library_of_another_version(tmp_path):
    (tmp_path / "old.c").write_text("int vx63_buzzer(void) { return 0; }\n")
    old = tmp_path / "libvx63.so.1"
    assert run("g++", "-x", "c", "-shared", "-fPIC", "-o", old, tmp_path / "old.c").returncode == 0
    status, _, why = loaded(VX63_LIBRARY=str(old))
    assert status == 1
    assert why == (f"OSError: vx63: {old}: it has no vx63_init: it is of another version than this module: install "
                   "libvx63 and python3-vx63 of one version")


def test_module_can_be_imported_without_the_library():
    assert python("import vx63", VX63_LIBRARY="/nowhere")[0] == 0
    assert os.environ["VX63_LIBRARY"]
