"""Every operation over a virtual meter: what goes in, what comes back, what is raised."""

import struct

import pytest
from python_support import EXPORTED, VARIABLES, machine  # noqa: F401

import vx63

pytest_plugins = ["vx63.pytest_plugin"]

CHANNEL_27 = 557143  # kHz: in the built-in scene
CALLED = set()


@pytest.fixture
def meter(virtual_meter, monkeypatch):
    """The fixture of the package, for a thread with a process id; it notes what is called."""
    call = virtual_meter.call
    monkeypatch.setattr(virtual_meter, "call", lambda name, arguments: CALLED.add(name) or call(name, arguments))
    vx63.vx63_init(1)
    return virtual_meter


def requests(meter):
    return [line["command"] for line in meter.trace() if line["kind"] == "request"]


def test_input_and_supply(meter):
    assert vx63.vx63_setMeasInput(1) is None
    vx63.vx63_setMeasInput(0)
    vx63.vx63_reqPowerSupply(4)
    supply = vx63.vx63_getPowerSupplyInfo()
    assert (type(supply), supply.ucPowerSupply) == (vx63.PowerSupplyInfo, 4)
    status = vx63.MeasStatus(usInputStat=0xA5A5)
    assert vx63.vx63_getMeasStatus(status) is status
    assert status.usInputStat != 0xA5A5
    vx63.vx63_setPowerSupplyMultiMeasMixBand(1)
    state = meter.state()["measurement"]
    assert (state["input"], state["supply"], state["mix_band_supply"]) == (0, 4, True)
    with pytest.raises(vx63.ArgError) as caught:
        vx63.vx63_reqPowerSupply(5)
    assert (caught.value.operation, caught.value.code) == ("vx63_reqPowerSupply", -2)
    assert isinstance(caught.value, vx63.Error)
    with pytest.raises(vx63.ArgError):
        vx63.vx63_init(18)


def poll(ready, read):
    for _ in range(50):
        result = read()
        if ready(result):
            return result
    raise AssertionError(result)


def test_single_measurement_and_constellation(meter):
    vx63.vx63_startSingleMeas(3, vx63.MeasCondition(ulFreq=CHANNEL_27, ucStrChan=b"27"))
    result = poll(lambda one: one.lock, lambda: vx63.vx63_getSingleMeasResult(0))
    assert (result.TSID, result.LAYER, result.CONS_NUM) == (0x7FE0, 3, 0)
    vx63.vx63_startConstaMeas(3, 1000)
    with_points = poll(lambda one: one.CONS_NUM, lambda: vx63.vx63_getSingleMeasResult(600))
    assert len({(point.I, point.Q) for point in with_points.points[:with_points.CONS_NUM]}) > 50
    assert all((point.I, point.Q) == (0, 0) for point in with_points.points[with_points.CONS_NUM:])
    before = with_points.points[5].I, with_points.points[5].Q
    with_points.reserved = 0xA5A5
    vx63.vx63_getSingleMeasResult(0, with_points)  # leaves the points as they are
    assert ((with_points.points[5].I, with_points.points[5].Q), with_points.reserved) == (before, 0xA5A5)
    assert with_points.CONS_NUM > 0
    vx63.vx63_stopConstaMeas(3)
    vx63.vx63_stopSingleMeas(3)
    with pytest.raises(vx63.CommError):
        vx63.vx63_getSingleMeasResult(0)  # nothing is measured
    with pytest.raises(vx63.ArgError):
        vx63.vx63_startConstaMeas(3, 1001)


def test_delay_profile(meter):
    vx63.vx63_startDlyPrfMeas(0, vx63.MeasCondition(ulFreq=CHANNEL_27))
    profile = poll(lambda one: one.stat == 2, vx63.vx63_getDlyPrfResult)
    assert len(profile.ucDlyPrfData) == 2048 and len(set(profile.ucDlyPrfData)) > 5
    vx63.vx63_stopDlyPrfMeas(0)


def test_channels_in_turn(meter):
    channels = vx63.MultiMeasReg([vx63.MeasCondition(ulFreq=frequency) for frequency in (CHANNEL_27, 521143)] +
                                 [vx63.MeasCondition(ulFreq=999999)] * 39)
    vx63.vx63_startMultiMeas(0, channels)
    result = poll(lambda one: one.lock, lambda: vx63.vx63_getMultiMeasResult(1))
    assert (result.readIdx, result.TSID) == (1, 0x7FE8)
    assert requests(meter).count("multi-start") == 2  # 40 channels a request
    vx63.vx63_setMultiMeasChannel()
    vx63.vx63_stopMultiMeas(0)
    vx63.vx63_startScan(0, channels)
    result = poll(lambda one: one.lock, lambda: vx63.vx63_getScanResult(0))
    assert (result.readIdx, result.TSID) == (0, 0x7FE0)
    vx63.vx63_stopScan(0)
    channels.sRegNum = -1
    with pytest.raises(vx63.ArgError):
        vx63.vx63_startScan(0, channels)


def test_channel_of_priority(meter):
    vx63.vx63_startMultiChPrioMeas(0, vx63.MeasCondition(ulFreq=CHANNEL_27))
    assert poll(lambda one: one.lock, vx63.vx63_getMultiChPrioMeas).TSID == 0x7FE0
    vx63.vx63_stopMultiChPrioMeas(0)


@pytest.mark.virtual_meter(scene_text="""
[[input]]
id = 0
dc_v = 12
[[light]]
wavelength_nm = 1550
power_dbm = -4.5
[antenna]
pitch_deg = 30
""")
def test_light_voltage_angle(meter):
    vx63.vx63_startOptMeas(1550)
    assert vx63.vx63_getOptMeasResult() < 0
    assert meter.state()["measurement"]["optical_nm"] == 1550
    vx63.vx63_stopOptMeas()
    with pytest.raises(vx63.ArgError):
        vx63.vx63_startOptMeas(0)
    vx63.vx63_startDcMeas()
    assert vx63.vx63_getDcMeasResult() > 0
    vx63.vx63_stopDcMeas()
    vx63.vx63_startAngleMeas()
    angle = vx63.vx63_getAngleCalInfoDetail()
    assert (angle.flRoll, angle.flPitch) == (pytest.approx(0, abs=0.1), pytest.approx(30, abs=0.1))
    vx63.vx63_stopAngleMeas()
    vx63.vx63_startAngleCal()
    assert isinstance(vx63.vx63_getAngleCalStat().centerPoint1, vx63.AnglePoint)


def test_the_device(meter):
    assert vx63.vx63_getProductInfo() == vx63.ProductInfo(
        cModelCode=b"VX63", cOptInfo=b"STD", cSerialNo=b"VX6300000001", cBootPrgVer=b"1.0.0", cMainPrgVer=b"1.0.0",
        cSubPrgVer=b"1.0.0", cQtVer=b"5.15.2", cProductVer=b"1.0.0")
    assert vx63.vx63_getFailinfo() == vx63.FailInfo()
    vx63.vx63_setFailStat(0x1234, 1, bytes(range(32)))
    assert vx63.vx63_getFailinfo() == vx63.FailInfo(usCode=0x1234, ucStat=1, ucAddInfo=tuple(range(32)))
    assert vx63.vx63_getKeyStatus() == vx63.KeyStatus()
    assert vx63.vx63_getDeviceStatus() == vx63.DeviceStatus(ucStat2=80, ucStat6=30, usStat8=7400)
    with pytest.raises(vx63.ArgError):
        vx63.vx63_setFailStat(1, 2, bytes(32))


def test_sounds_and_display(meter):
    vx63.vx63_forceBuzzerVolume(3, 2)
    vx63.vx63_buzzer(3, 1)
    with pytest.raises(vx63.RepeatError):
        vx63.vx63_buzzer(3, 0)
    with pytest.raises(vx63.PriorityError, match="wait until the other sound has ended$"):
        vx63.vx63_buzzer(1, 0)
    with pytest.raises(vx63.RepeatError):
        vx63.vx63_forceBuzzerVolume(3, 0)
    vx63.vx63_buzzer(3, 2)
    vx63.vx63_forceBrightness(2)
    state = meter.state()
    assert (state["buzzer"]["sounding"], state["buzzer"]["volumes"][3], state["display"]["brightness"]) == (False, 2, 2)


def update_request(version):
    request = struct.pack("<4sBBH16sI", b"VXUP", 2, 0, 0, version, 1 << 20)
    return request + struct.pack("<I", sum(request))


@pytest.mark.virtual_meter(scene_text="[power]\nreboot_ms = 0\n")
def test_power_and_system(meter):
    for asleep, sleep, wake in ((1, lambda: vx63.vx63_standby(0), lambda: vx63.vx63_wakeup(0)),
                                (2, lambda: vx63.vx63_standby(1), lambda: vx63.vx63_wakeup(1)),
                                (2, vx63.vx63_force_standby, vx63.vx63_force_wakeup)):
        sleep()
        assert vx63.vx63_getStandbyStat() == asleep
        wake()
        assert vx63.vx63_getStandbyStat() == 0
    vx63.vx63_calibration(1)
    vx63.vx63_ntfLowBattStatChg(0)
    vx63.vx63_setDeveloperMode(1)
    assert meter.state()["power"]["developer_mode"] is True
    vx63.vx63_prgUpdate(update_request(b"2.0"))
    assert vx63.vx63_getProductInfo().cMainPrgVer == b"2.0"
    with pytest.raises(vx63.CommError):
        vx63.vx63_prgUpdate(bytes(32))
    vx63.vx63_initFactoryDefault()
    vx63.vx63_reboot()
    poll(lambda state: state == "on", lambda: meter.state()["power"]["state"])
    vx63.vx63_getProductInfo()
    vx63.vx63_shutdown()
    assert {key: meter.state()["power"][key] for key in ("state", "reboots", "factory_resets", "calibrations")} == {
        "state": "off", "reboots": 1, "factory_resets": 1, "calibrations": 1}


def test_settings_files(meter):
    volume, = vx63.vx63_readSetFile(vx63.VX63_SET_FILE_VOLUME)
    assert isinstance(volume, vx63.SetFileVolume) and volume.VOLUME == 0
    volume.VOLUME = 3
    vx63.vx63_writeSetFile(vx63.VX63_SET_FILE_VOLUME, [volume])
    vx63.vx63_ntfUpdateFile(vx63.VX63_SET_FILE_VOLUME)
    assert meter.state()["buzzer"]["volumes"] == [3] * 5
    assert vx63.vx63_readSetFile(vx63.VX63_SET_FILE_VOLUME) == [volume]
    assert vx63.vx63_readSetFile(vx63.VX63_SET_FILE_VOLUME, bDefault=1)[0].VOLUME == 0

    outputs = vx63.vx63_readSetFile(vx63.VX63_SET_FILE_DC_OUT)
    assert len(outputs) == 3
    outputs[1].SCC_B_H = 9
    vx63.vx63_writeSetFileIdx(vx63.VX63_SET_FILE_DC_OUT, outputs[1], 1)
    vx63.vx63_ntfUpdateFileIdx(vx63.VX63_SET_FILE_DC_OUT, 1)
    assert vx63.vx63_readSetFileIdx(vx63.VX63_SET_FILE_DC_OUT, 1) == outputs[1]
    assert vx63.vx63_readSetFileIdx(vx63.VX63_SET_FILE_DC_OUT, 1, bDefault=1).SCC_B_H != 9
    assert vx63.vx63_readSetFile(vx63.VX63_SET_FILE_DC_OUT) == outputs
    settings = meter.state()["settings"]
    assert (settings["file"], settings["record"], settings["read"]) == (vx63.VX63_SET_FILE_DC_OUT, 1, True)

    with pytest.raises(vx63.ArgError):
        vx63.vx63_ntfUpdateFile(50)
    for refused in (lambda: vx63.vx63_readSetFile(50), lambda: vx63.vx63_writeSetFile(50, []),
                    lambda: vx63.vx63_readSetFileIdx(vx63.VX63_SET_FILE_DC_OUT, 3),
                    lambda: vx63.vx63_writeSetFileIdx(vx63.VX63_SET_FILE_DC_OUT, outputs[1], 3),
                    lambda: vx63.vx63_readSetFile(vx63.VX63_SET_FILE_USER_SET)):
        with pytest.raises(vx63.SetFileError, match="an argument is refused") as caught:
            refused()
        assert caught.value.code == -1
    with pytest.raises(vx63.SetFileError, match="^vx63_readSetFile: -2: the platform cannot read or write the file"):
        vx63.vx63_readSetFile(vx63.VX63_SET_FILE_USER_SET, "NOBODY")
    assert any("arg error. fileId=50" in line for line in meter.log())


def test_sets(meter):
    one = vx63.SetChannel(NO=1, ENBFLG=1, CH=b"27", CENTER_FREQ=CHANNEL_27)
    kinds = [(vx63.VX63_SET_FILE_USER_SET, vx63.vx63_deleteSetFileUser),
             (vx63.VX63_SET_FILE_USER_SET_USB1, vx63.vx63_deleteSetFileUserUsb1),
             (vx63.VX63_SET_FILE_USER_SET_USB2, vx63.vx63_deleteSetFileUserUsb2),
             (vx63.VX63_SET_FILE_LOGGER_SET, vx63.vx63_deleteSetFileLogger),
             (vx63.VX63_SET_FILE_LOGGER_SET_USB1, vx63.vx63_deleteSetFileLoggerUsb1),
             (vx63.VX63_SET_FILE_LOGGER_SET_USB2, vx63.vx63_deleteSetFileLoggerUsb2)]
    for file_id, delete in kinds:
        vx63.vx63_writeSetFile(file_id, [one, one], "TOKYO", ulUserLine=1)
        assert vx63.vx63_readSetFile(file_id, b"TOKYO") == [one]
        delete("TOKYO")
        with pytest.raises(vx63.SetFileError):
            delete("TOKYO")
    vx63.vx63_writeSetFile(vx63.VX63_SET_FILE_USER_LIST, [vx63.SetListEntry(NO=1, ENBFLG=1, FILE_NAME=b"TOKYO")])
    assert len(vx63.vx63_readSetFile(vx63.VX63_SET_FILE_USER_LIST)) == 1
    vx63.vx63_deleteSetFileUserBulk(vx63.VX63_SET_FILE_USER_SET)
    assert vx63.vx63_readSetFile(vx63.VX63_SET_FILE_USER_LIST)[0].FILE_NAME == b""
    vx63.vx63_deleteSetFileLoggerBulk(vx63.VX63_SET_FILE_LOGGER_SET_USB2)
    vx63.vx63_deleteAllSetFile()
    with pytest.raises(vx63.SetFileError):
        vx63.vx63_readSetFile(vx63.VX63_SET_FILE_USER_LIST)


def test_kinds_of_files(meter):
    for kind, expected in ((vx63.vx63_isFileIdUserSet, {14, 42, 44}), (vx63.vx63_isFileIdUserSetFlist, {15, 43, 45}),
                           (vx63.vx63_isFileIdLoggerSet, {35, 46, 48}),
                           (vx63.vx63_isFileIdLoggerSetFlist, {36, 47, 49})):
        assert {number for number in range(-1, 60) if kind(number) is True} == expected
        assert kind(-1) is False


def test_every_operation_was_called():
    """By the tests above, which it needs."""
    assert CALLED == set(EXPORTED) - VARIABLES
