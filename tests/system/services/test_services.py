"""The services about the meter itself, over real queues: what the calls do, and what the state shows of it."""

import json
import struct

import pytest
from conftest import AS_NOBODY, BUZ, DEV, EXCHANGE, KEY, MEAS, SYS, VMETER, Client, run, vmeter

pytestmark = pytest.mark.usefixtures("namespaces")

START_473143 = struct.pack("<B3xB3xI", 0, 1, 473143) + bytes(28)
NEVER = 1  # ms: no answer can come, the trace says why


@pytest.fixture
def meter(tmp_path):
    """Starts meters; `trace` and `state` read what they leave."""

    class Meter:
        trace_file = tmp_path / "trace.json"
        state_file = tmp_path / "state.json"

        def start(self, scene="", *options):
            (tmp_path / "scene.toml").write_text(scene)
            self.client = Client(VMETER, "run", "--scene", tmp_path / "scene.toml", "--trace", self.trace_file,
                                 "--state-json", self.state_file, *options, "--")
            return self.client

        def trace(self):
            return [json.loads(line) for line in self.trace_file.read_text().splitlines()]

        def notes(self):
            return [line["note"] for line in self.trace() if "note" in line]

        def state(self):
            return json.loads(self.state_file.read_text())

    made = Meter()
    yield made
    if hasattr(made, "client"):
        made.client.close()


def ret(client, service, command, body=b"\0" * 4):
    answer = client.call(service, command, body)
    assert (answer.command, answer.option, answer.length) == (command | 0x8000, 0, 4), answer
    return answer.body[0]


def byte(value, second=0):
    return bytes([value, second, 0, 0])


def update_request(program=2, version=b"2.0"):
    request = struct.pack("<4sBBH16sI", b"VXUP", program, 0, 0, version, 1 << 20)
    return request + struct.pack("<I", sum(request))


def test_information_of_the_built_in_scene():
    with Client(VMETER, "run", "--") as client:
        product = client.call(SYS, 0x05)
        assert product.body == (b"VX63\0\0\0\0" b"STD\0\0" b"VX6300000001" + b"1.0.0".ljust(16, b"\0") * 3 +
                                b"5.15.2".ljust(16, b"\0") + b"1.0.0".ljust(16, b"\0"))
        assert client.call(SYS, 0x04).body == bytes(40)
        assert client.call(KEY, 0x08).body == bytes(17)
        assert client.call(DEV, 0x06).body == struct.pack("<HBBBBBxH", 0, 80, 0, 0, 0, 30, 7400)


def test_calls_change_the_state(meter):
    with meter.start("[device]\nvolume = 1\n[[key]]\ntime_ms = 0\nkey = 5\nduration_ms = 1000000\n") as client:
        assert client.call(KEY, 0x08).body == bytes([0] * 5 + [1] + [0] * 11)
        assert ret(client, SYS, 0x11, struct.pack("<HBx32s", 0x1234, 1, b"\xab")) == 0
        assert client.call(SYS, 0x04).body[:10] == struct.pack("<HBBHxxBB", 0x1234, 1, 0, 0, 0xAB, 0)
        assert ret(client, SYS, 0x0B, byte(2)) == 0
        assert ret(client, SYS, 0x1B, byte(1)) == 0
        assert ret(client, MEAS, 0x19, byte(1)) == 0
        assert ret(client, MEAS, 0x19, byte(1)) == 3
        assert ret(client, MEAS, 0x16, byte(1)) == 0
        assert ret(client, BUZ, 0x0A, byte(4, 3)) == 0
        assert ret(client, BUZ, 0x09, byte(3, 1)) == 0
        assert ret(client, BUZ, 0x09, byte(3, 0)) == 3
        assert ret(client, BUZ, 0x09, byte(2, 0)) == 4
        assert ret(client, BUZ, 0x0A, byte(3, 0)) == 3
        assert client.call(DEV, 0x06).body[5] == 1
        assert client.close() == 0
    state = meter.state()
    assert state["sim_ms"] == 1400
    assert state["power"] == {"state": "on", "standby": 0, "reboots": 0, "low_battery": True, "developer_mode": True,
                              "factory_resets": 0, "calibrations": 1, "calibration_mode": 1}
    assert state["failure"] == {"code": 0x1234, "state": 1, "control": 0, "wait": 0, "info": "ab" + "00" * 31}
    assert state["keys"][5] == 1
    assert state["display"] == {"brightness": 2}
    assert state["buzzer"] == {"sounding": True, "kind": 3, "repeating": True, "sounds": 1,
                               "volumes": [1, 1, 1, 1, 3]}


def test_standby_and_wake_up(meter):
    with meter.start() as client:
        assert ret(client, MEAS, 0x103, START_473143) == 0
        assert ret(client, SYS, 0x0E) == 0
        assert client.call(MEAS, 0x104).body == bytes([6, 0, 0, 0])
        assert client.call(MEAS, 0x103, START_473143).body == bytes([6, 0, 0, 0])
        assert client.call(MEAS, 0x18).body == bytes([0, 0, 0, 0, 1, 0, 0, 0])
        assert ret(client, MEAS, 0x0F, byte(1)) == 4
        assert ret(client, SYS, 0x0F) == 0
        assert client.call(MEAS, 0x104).body[0] == 5
        assert ret(client, MEAS, 0x103, START_473143) == 0
        assert client.call(MEAS, 0x104).body[0] == 0
        assert ret(client, MEAS, 0x1D) == 0
        assert client.close() == 0
    assert meter.state()["power"]["state"] == "standby"
    assert meter.state()["power"]["standby"] == 2


def test_update(meter):
    with meter.start("[update]\nsteps = 2\n") as client:
        request = update_request()
        assert [ret(client, SYS, 0x10, request) for _ in range(3)] == [0, 0, 3]
        assert client.call(SYS, 0x05).body[41:57] == b"2.0".ljust(16, b"\0")
        assert ret(client, SYS, 0x10, bytes(32)) == 2
        assert client.close() == 0
    assert meter.notes() == ["no update request"]
    assert meter.state()["product"]["main_version"] == "2.0"
    assert meter.state()["update"] == {"running": False, "step": 3, "finished": 1}


def test_shutdown_is_for_good(meter):
    with meter.start() as client:
        assert ret(client, SYS, 0x0D) == 0
        for service, command in (SYS, 0x05), (DEV, 0x06), (KEY, 0x08), (BUZ, 0x09), (MEAS, 0x17), (SYS, 0x0F):
            client.request(service, command)
            assert client.receive(NEVER) is None
        while not meter.notes():  # the services take their time on a busy machine
            assert client.receive(NEVER) is None
        assert client.close() == 0  # the meter ends with its command
    assert set(meter.notes()) == {"ignored: the meter is off"}
    assert meter.state()["power"]["state"] == "off"
    assert meter.state()["sim_ms"] == 100


def test_no_service_answers_during_a_reboot(meter):
    with meter.start("[power]\nreboot_ms = 600000\n") as client:
        assert ret(client, SYS, 0x0C) == 0
        for service, command in (SYS, 0x05), (MEAS, 0x17):
            client.request(service, command)
            assert client.receive(NEVER) is None
        assert client.close() == 0
    assert set(meter.notes()) <= {"ignored: the meter is rebooting"}
    assert meter.state()["power"]["state"] == "rebooting"
    assert meter.state()["sim_ms"] == 600100


def test_meter_comes_back_from_a_reboot(meter):
    with meter.start("[power]\nreboot_ms = 300\n") as client:
        assert ret(client, MEAS, 0x100, struct.pack("<4xB3x", 1)) == 0
        assert ret(client, SYS, 0x0B, byte(2)) == 0
        assert ret(client, SYS, 0x0C) == 0
        answers = []
        while not answers:  # what is sent during the reboot is lost
            client.request(MEAS, 0x17)
            answer = client.receive(20)
            answers += [answer] if answer else []
        assert answers[0].body == bytes(12)  # input 0 again
        while client.receive(20):
            pass
        assert client.close() == 0
    assert meter.state()["power"]["state"] == "on"
    assert meter.state()["power"]["reboots"] == 1
    assert meter.state()["display"]["brightness"] == 2


def test_reboot_without_a_wait(meter):
    with meter.start("[power]\nreboot_ms = 0\n") as client:
        assert ret(client, SYS, 0x0C) == 0
        assert client.call(MEAS, 0x18).body == bytes(8)
    assert meter.notes() == []


def test_killed_system_service_forgets_nothing(meter):
    with meter.start("", "--fault", "sys/0x05:1=die,0") as client:
        assert ret(client, SYS, 0x0B, byte(0)) == 0
        client.request(SYS, 0x05)
        assert ret(client, SYS, 0x1B, byte(1)) == 0
        assert client.close() == 0
    assert meter.state()["display"]["brightness"] == 0


# ---- settings ----


LIST = "1.0.0\nNO,ENBFLG,FILE_NAME\n" + "".join(f"{number},0,\n" for number in range(1, 141))


def test_run_begins_with_the_factory_files():
    ended = vmeter("run", "--", "sh", "-c", "cd /usr/local/bin; ls */*.csv | wc -l; cat user_set_usb2/*.csv")
    assert (ended.returncode, ended.stdout, ended.stderr) == (0, "44\n" + LIST, "")


def test_settings_of_a_state_are_left_alone(tmp_path):
    (tmp_path / "sys_set").mkdir()
    (tmp_path / "sys_set" / "mine").write_text("x")
    script = "cd /usr/local/bin; ls sys_set; ls ch_set | wc -l; rm ch_set/*; echo kept > ch_set/other"
    ended = vmeter("run", "--state", tmp_path, "--", "sh", "-c", script)
    assert (ended.returncode, ended.stdout) == (0, "mine\n20\n")
    ended = vmeter("run", "--state", tmp_path, "--", "sh", "-c", "cd /usr/local/bin; ls ch_set meas_set | wc -l")
    assert ended.stdout == "18\n"  # other, 14 of meas_set, and 3 lines that ls puts around them
    assert (tmp_path / "ch_set" / "other").read_text() == "kept\n"


def test_empty_settings():
    ended = vmeter("run", "--empty-settings", "--", "sh", "-c", "cd /usr/local/bin; ls sys_set user_set pmeas_set")
    assert ended.stdout == "pmeas_set:\n\nsys_set:\n\nuser_set:\n"


def test_full_disk_is_told(tmp_path):
    # The disk holds two files; the third is that of the brightness.
    ended = run("bwrap", "--dev-bind", "/", "/", "--size", "8192", "--tmpfs", tmp_path, "--", "sh", "-c",
                f"{VMETER} run --state {tmp_path} -- echo started; ls {tmp_path}/sys_set")
    assert ended.stdout == ""  # not started, and no part of the files is left
    assert ended.stderr == ("vx63-vmeter: /usr/local/bin/sys_set/system_setting_file_brightness.csv: it cannot be "
                            "written, lsys_err=-14: free some space, or use --empty-settings\n")


def test_notices_and_factory_reset(meter, tmp_path):
    state = tmp_path / "kept"
    with meter.start("", "--state", state) as client:
        volume = state / "sys_set" / "system_setting_file_volume.csv"
        assert ret(client, SYS, 0x12, byte(1)) == 0
        factory = volume.read_text()
        volume.write_text(factory.replace("0,1,2,3,0", "0,1,2,3,3"))
        assert ret(client, SYS, 0x12, byte(1)) == 0
        assert ret(client, SYS, 0x13, struct.pack("<B3xI", 33, 44)) == 0
        assert ret(client, SYS, 0x12, byte(50)) == 2
        (state / "ch_set" / "channel_setting_file_lte.csv").write_text("garbage\n")
        assert ret(client, SYS, 0x12, byte(28)) == 1
        assert ret(client, SYS, 0x0B, byte(0)) == 0
        assert ret(client, SYS, 0x1A) == 0
        assert ret(client, SYS, 0x12, byte(28)) == 0
        assert volume.read_text() == factory
        assert client.close() == 0
    assert meter.notes() == [
        "reloaded /usr/local/bin/sys_set/system_setting_file_volume.csv",
        "reloaded /usr/local/bin/sys_set/system_setting_file_volume.csv",
        "reloaded /usr/local/bin/ch_set/channel_setting_file_catv_up_stream.csv, record 44",
        "no settings file 50",
        "cannot reload /usr/local/bin/ch_set/channel_setting_file_lte.csv: lsys_err=-5",
        "reloaded /usr/local/bin/ch_set/channel_setting_file_lte.csv"]
    assert meter.state()["settings"] == {"notices": 5, "file": 28, "record": None, "read": True}
    assert meter.state()["buzzer"]["volumes"] == [0] * 5
    assert meter.state()["display"]["brightness"] == 1
    assert meter.state()["power"]["factory_resets"] == 1


def test_serve_touches_no_settings_unasked(meter, tmp_path):
    """On somebody's own /usr/local/bin."""
    (tmp_path / "bin" / "sys_set").mkdir(parents=True)
    (tmp_path / "bin" / "sys_set" / "mine").write_text("x")
    command = ("bwrap", "--dev-bind", "/", "/", "--unshare-ipc", "--bind", tmp_path / "bin", "/usr/local/bin", "--",
               VMETER, "serve", "--trace", meter.trace_file)
    with Client(*command, "--") as client:
        assert ret(client, SYS, 0x1A) == 1
        assert client.close() == 0
    assert meter.notes() == ["the settings folders are not the meter's own"]
    assert [path.name for path in (tmp_path / "bin").rglob("*")] == ["sys_set", "mine"]
    ended = run(*command, "--settings", "factory", "--", "true")
    assert ended.returncode == 125
    assert ended.stderr == ("vx63-vmeter: /usr/local/bin/meas_set: No such file or directory: "
                            "create it as a folder\n")


# ---- the state, asked for ----


def test_state_of_a_running_meter(meter):
    ended = vmeter("run", "--", VMETER, "state", "--json")
    assert (ended.returncode, ended.stderr) == (0, "")
    assert json.loads(ended.stdout)["power"]["state"] == "on"
    ended = vmeter("run", "--", VMETER, "state")
    assert (ended.returncode, ended.stderr) == (0, "")
    assert ended.stdout.startswith("sim_ms                      0\npower.state                 on\n")
    assert "\nbuzzer.volumes              [0,0,0,0,0]\n" in ended.stdout


def test_state_is_that_of_the_meter_whose_queues_are_here(meter):
    with meter.start() as client:
        ret(client, SYS, 0x0B, byte(2))
        ended = vmeter("run", "--", VMETER, "state", "--json")
        assert json.loads(ended.stdout)["display"]["brightness"] == 1


def test_state_of_a_meter_that_is_off(tmp_path):
    script = (f"printf 'send 0 11000d00040000000000000000\\nreceive 17 60000\\n' | {EXCHANGE} >&2; "
              f"{VMETER} state --json; {VMETER} state --json")
    ended = vmeter("run", "--state-json", tmp_path / "state", "--", "sh", "-c", script)
    lines = ended.stdout.splitlines()
    assert len(lines) == 2 and lines[0] == lines[1]
    assert json.loads(lines[0])["power"]["state"] == "off"
    assert (tmp_path / "state").read_text() == lines[0] + "\n"


def test_state_is_not_for_other_users(as_root, public_bin):
    ended = run(*as_root, VMETER, "run", "--", *AS_NOBODY, public_bin / "vx63-vmeter", "state")
    assert (ended.returncode, ended.stdout) == (125, "")
    assert ended.stderr == ("vx63-vmeter: state: the meter does not tell: ask as the user who started it; "
                            "let a service that was stopped go on (kill -CONT)\n")


def test_state_without_a_meter():
    ended = run("bwrap", "--dev-bind", "/", "/", "--unshare-ipc", "--", VMETER, "state")
    assert (ended.returncode, ended.stdout) == (125, "")
    assert ended.stderr == ("vx63-vmeter: state: no meter serves the queues here: ask where the meter runs: "
                            "vx63-vmeter run -- vx63-vmeter state\n")


def test_state_file_that_cannot_be_written(tmp_path):
    ended = vmeter("run", "--state-json", tmp_path, "--", "echo", "started")
    assert (ended.returncode, ended.stdout) == (125, "")
    assert ended.stderr == (f"vx63-vmeter: {tmp_path}: Is a directory: "
                            "give a file that you may write to with --state-json\n")
    ended = vmeter("run", "--state-json", "/dev/full", "--", "sh", "-c", "exit 7")
    assert ended.returncode == 7
    assert ended.stderr == ("vx63-vmeter: --state-json: the state could not be written: "
                            "give a file on a disk with room\n")


def test_state_of_serve(tmp_path):
    ended = run("bwrap", "--dev-bind", "/", "/", "--unshare-ipc", "--", VMETER, "serve", "--state-json",
                tmp_path / "state", "--", "true")
    assert ended.returncode == 0
    assert json.loads((tmp_path / "state").read_text())["sim_ms"] == 0
