"""What every operation that asks a service is to do: its request, its failures, and what it writes on success.

All of it is typed from the definition of the operations, nothing is taken from the library.
"""

from dataclasses import dataclass
from typing import Callable

from conftest import BUZ, DEV, KEY, MEAS, SYS

FILL = b"\xA5"  # what a record is full of before the call

SERVICE_NAMES = {SYS: "sys", DEV: "dev", KEY: "key", BUZ: "buz", MEAS: "meas"}

OK, COMM, ARG, REPEAT, POWER, PRIORITY = 0, -1, -2, -6, -7, -8

TEXTS = {
    COMM: "ret error. vx63_err=-1",
    ARG: "parameter error. vx63_err=-2",
    REPEAT: "buzzer repeating. vx63_err=-6",
    POWER: "power supply error. vx63_err=-7",
    PRIORITY: "buzzer priority busy. vx63_err=-8",
}

# ucRet and the result that it becomes; any other ucRet is COMM.
STRICT = {0: OK}
PARAMETER = {0: OK, 2: ARG}
MEASUREMENT = {0: OK, 7: OK, 2: ARG}
READING = {0: OK, 7: OK, 2: ARG, 3: POWER}
LOW_BATTERY = {0: OK, 3: OK, 2: ARG}
BUZZER = {0: OK, 2: ARG, 3: REPEAT, 4: PRIORITY}
VOLUME = {0: OK, 2: ARG, 3: REPEAT}
UPDATE = {3: OK}  # 0: asked again
NO_RET = None  # the response has no ucRet: whatever comes is success


@dataclass(frozen=True)
class Operation:
    name: str  # with the argument that tells it from the same function's other rows
    service: int
    command: int
    length: int  # body bytes of the request
    timeout: int  # ms
    failed: str  # whose communication error
    results: dict | None
    # What is written on success: (offset in the record, offset in the response, bytes there, bytes here) each,
    # or a function that makes the record of the responses' bodies.
    record: list | Callable = ()
    size: int = 0  # of the record
    logger: str = ""  # who logs failures; empty: the operation itself
    ends: bool = True  # logs its end
    requests: int = 1  # of a call that nothing disturbs
    at: int = 1  # the request that the fault hits

    @property
    def function(self):
        return self.name.split("(")[0]

    @property
    def id(self):
        return self.name if self.requests == 1 else f"{self.name}@{self.at}"

    def result(self, ret):
        return OK if self.results is None else self.results.get(ret, COMM)

    def text(self, ret):
        """The line that tells of a ucRet that is no success."""
        text = TEXTS[self.result(ret)]
        return text + f" rspData.ucRet={ret}" if self.results is UPDATE else text

    def written(self, bodies):
        """The record after a success; `bodies` are those of the responses, in their order."""
        if callable(self.record):
            return self.record(bodies)
        return fields(self.record, self.size, bodies[-1])


def fields(layout, size, body):
    record = bytearray(FILL * size)
    for here, there, width, wide in layout:
        value = body[there:there + width].ljust(width, b"\0")
        record[here:here + wide] = value.ljust(wide, b"\0")
    return bytes(record)


def same(here, there, width):
    return here, there, width, width


# lock, stat, mesCond, bdSys, LEVEL to MOD. Whether readIdx and currIdx lie in between is the only difference.
SINGLE = [same(0, 4, 1), same(2, 8, 2), same(4, 10, 2), same(8, 14, 2), same(12, 16, 24)]
MULTI = [same(0, 4, 1), same(2, 8, 2), same(4, 10, 2), same(6, 12, 1), same(7, 13, 1), same(8, 14, 2),
         same(12, 16, 24)]
SINGLE_SIZE, MULTI_SIZE = 8040, 36


def constellation(bodies):
    """CONS_NUM as it came; points that did not come are 0, those beyond the record's 4000 are left out."""
    body = bodies[-1]
    record = bytearray(fields([*SINGLE, same(36, 40, 2)], SINGLE_SIZE, body))
    count = min(int.from_bytes(record[36:38], "little"), 4000)
    record[38:38 + 2 * count] = body[44:44 + 2 * count].ljust(2 * count, b"\0")
    return bytes(record)


def delay_profile(bodies):
    """Every block that answers its request and is complete, and the status of the last that answered."""
    record = bytearray(FILL * 2050)
    block = 0
    for body in (body.ljust(412, b"\0") for body in bodies):
        status, came = (int.from_bytes(body[at:at + 2], "little") for at in (4, 6))
        if body[0] not in (0, 7) or block > 5:
            break
        if came != block:
            continue
        record[0:2] = status.to_bytes(2, "little")
        if status != 2:
            break
        width = 400 if block < 5 else 48
        record[2 + 400 * block:2 + 400 * block + width] = body[12:12 + width]
        block += 1
    return bytes(record)


def system(name, command, results=STRICT, timeout=10000, length=4, **more):
    return Operation(name, SYS, command, length, timeout, "PROC_ID_PSYS", results, **more)


def device(name, command, failed="PROC_ID_PDEV", results=STRICT, **more):
    return Operation(name, DEV, command, 4, 10000, failed, results, **more)


def measurement(name, command, length, results=MEASUREMENT, failed="subcpu", timeout=10000, **more):
    return Operation(name, MEAS, command, length, timeout, failed, results, **more)


def single_start(name):
    return measurement(name, 0x103, 40, logger="vx63_startSingleMeasCommon")


def multi_start(name, at):
    return measurement(name, 0x109, 1292, logger="vx63_startMultiMeasCommon", requests=2, at=at)


def profile(at):
    return measurement("vx63_getDlyPrfResult", 0x108, 8, READING, record=delay_profile, size=2050, requests=6,
                       at=at)


def update(at):
    return system("vx63_prgUpdate", 0x10, UPDATE, 600000, 32, requests=2, at=at)


# In an order in which each leaves the meter as the next one needs it. A string is a call in between.
OPERATIONS = [
    system("vx63_ntfUpdateFile", 0x12, PARAMETER),
    system("vx63_ntfUpdateFileIdx", 0x13, PARAMETER, length=8),

    measurement("vx63_setMeasInput", 0x100, 8),
    measurement("vx63_reqPowerSupply", 0x15, 4, failed="PROC_ID_PMEAS"),
    measurement("vx63_getMeasStatus", 0x17, 4, record=[same(0, 4, 4), same(4, 8, 2)], size=8),
    device("vx63_getPowerSupplyInfo", 0x22,
           record=[same(0, 4, 1), same(1, 5, 1), same(2, 6, 2), same(4, 8, 4), same(8, 12, 4)], size=12),
    measurement("vx63_setPowerSupplyMultiMeasMixBand", 0x1C, 4, STRICT, "PROC_ID_PMEAS", 5000),

    single_start("vx63_startSingleMeas"),
    measurement("vx63_getSingleMeasResult", 0x104, 4, READING, record=SINGLE, size=SINGLE_SIZE),
    measurement("vx63_startConstaMeas", 0x105, 8),
    measurement("vx63_getSingleMeasResult(624)", 0x106, 8, READING, record=constellation, size=SINGLE_SIZE),
    measurement("vx63_stopConstaMeas", 0x105, 8),
    measurement("vx63_stopSingleMeas", 0x103, 40),
    single_start("vx63_startMultiChPrioMeas"),
    measurement("vx63_getMultiChPrioMeas", 0x104, 4, READING, record=SINGLE, size=SINGLE_SIZE),
    measurement("vx63_stopMultiChPrioMeas", 0x103, 40),

    measurement("vx63_startDlyPrfMeas", 0x107, 40),
    "vx63_getMeasStatus", "vx63_getMeasStatus",  # time for the profile to be complete
    profile(at=1),
    profile(at=3),
    measurement("vx63_stopDlyPrfMeas", 0x107, 40),

    multi_start("vx63_startMultiMeas", at=1),
    multi_start("vx63_startMultiMeas", at=2),
    measurement("vx63_getMultiMeasResult", 0x10B, 12, READING, record=MULTI, size=MULTI_SIZE),
    measurement("vx63_stopMultiMeas", 0x109, 1292),
    multi_start("vx63_startScan", at=1),
    multi_start("vx63_startScan", at=2),
    measurement("vx63_getScanResult", 0x10B, 12, READING, record=MULTI, size=MULTI_SIZE),
    measurement("vx63_stopScan", 0x109, 1292),

    measurement("vx63_startOptMeas", 0x10C, 12),
    measurement("vx63_getOptMeasResult", 0x10D, 4, record=[same(0, 4, 4)], size=4),
    measurement("vx63_stopOptMeas", 0x10C, 12),
    measurement("vx63_startDcMeas", 0x10E, 8),
    measurement("vx63_getDcMeasResult", 0x10F, 4, record=[same(0, 4, 4)], size=4),
    measurement("vx63_stopDcMeas", 0x10E, 8),

    device("vx63_startAngleMeas", 0x07, "subcpu"),
    device("vx63_getAngleCalInfoDetail", 0x21, record=[same(0, 4, 56)], size=56),
    device("vx63_stopAngleMeas", 0x07, "subcpu"),
    device("vx63_startAngleCal", 0x1F),
    device("vx63_getAngleCalStat", 0x20, record=[same(0, 4, 40)], size=40),

    system("vx63_getProductInfo", 0x05, NO_RET, record=[same(0, 0, 105)], size=105),
    system("vx63_getFailinfo", 0x04, NO_RET, record=[same(0, 0, 40)], size=40, ends=False),
    Operation("vx63_getKeyStatus", KEY, 0x08, 4, 10000, "PROC_ID_PKEY", NO_RET,
              record=[(4 * key, key, 1, 4) for key in range(17)], size=68, ends=False),
    # The byte at 6 comes before those at 3, 4 and 5.
    device("vx63_getDeviceStatus", 0x06, results=NO_RET, ends=False, size=20,
           record=[same(0, 0, 2), same(2, 2, 1), same(3, 6, 1), (4, 3, 1, 4), (8, 4, 1, 4), (12, 5, 1, 4),
                   same(16, 8, 2)]),
    system("vx63_setFailStat", 0x11, NO_RET, length=36, ends=False),

    measurement("vx63_calibration", 0x16, 4, STRICT, "PROC_ID_PMEAS", 5000),
    measurement("vx63_ntfLowBattStatChg", 0x19, 4, LOW_BATTERY, "PROC_ID_PMEAS", 5000),
    measurement("vx63_standby(1)", 0x0E, 4, STRICT, "PROC_ID_PMEAS"),
    measurement("vx63_getStandbyStat", 0x18, 4, PARAMETER, record=[same(0, 4, 4)], size=4),
    measurement("vx63_wakeup(1)", 0x0F, 4, STRICT, "PROC_ID_PMEAS"),
    # These ask the measurement service and blame the system service.
    measurement("vx63_force_standby", 0x1D, 4, STRICT, "PROC_ID_PSYS"),
    measurement("vx63_force_wakeup", 0x1E, 4, STRICT, "PROC_ID_PSYS"),
    system("vx63_standby(0)", 0x0E),
    system("vx63_wakeup(0)", 0x0F),
    system("vx63_initFactoryDefault", 0x1A, timeout=5000),
    system("vx63_setDeveloperMode", 0x1B, timeout=5000),
    update(at=1),
    update(at=2),

    Operation("vx63_buzzer", BUZ, 0x09, 4, 10000, "PROC_ID_PBUZ", BUZZER),
    Operation("vx63_forceBuzzerVolume", BUZ, 0x0A, 4, 10000, "PROC_ID_PBUZ", VOLUME),
    system("vx63_forceBrightness", 0x0B, PARAMETER),

    system("vx63_reboot", 0x0C),
    system("vx63_shutdown", 0x0D),  # the last: nothing answers any more
]

# Operations that send nothing to any service.
ASK_NO_SERVICE = {
    "vx63_init",
    "vx63_isFileIdUserSet",
    "vx63_isFileIdUserSetFlist",
    "vx63_isFileIdLoggerSet",
    "vx63_isFileIdLoggerSetFlist",
    "vx63_readSetFile",
    "vx63_writeSetFile",
    "vx63_readSetFileIdx",
    "vx63_writeSetFileIdx",
    "vx63_deleteSetFileUser",
    "vx63_deleteSetFileUserUsb1",
    "vx63_deleteSetFileUserUsb2",
    "vx63_deleteSetFileLogger",
    "vx63_deleteSetFileLoggerUsb1",
    "vx63_deleteSetFileLoggerUsb2",
    "vx63_deleteSetFileUserBulk",
    "vx63_deleteSetFileLoggerBulk",
    "vx63_deleteAllSetFile",
    "vx63_setMultiMeasChannel",
}
