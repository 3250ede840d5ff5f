"""vx63 settings."""

import json
import re
import tempfile

import pytest

from conftest import VMETER
from settings_catalogue import COLUMNS, FILES
from tool_support import BUILD, SOURCE, VX63, Terminal, as_text, environment, isolation, meter, run  # noqa: F401 (fixtures)

ROOT = "/usr/local/bin/"
VOLUME = ROOT + "sys_set/system_setting_file_volume.csv"
FM = ROOT + "ch_set/channel_setting_file_fm.csv"
FACTORY_VOLUME = "1.0.0\nVOLUME_SEL1,VOLUME_SEL2,VOLUME_SEL3,VOLUME_SEL4,VOLUME\n0,1,2,3,0\n"


def lines(text):
    return [json.loads(line) for line in text.splitlines()]


def notices(meter):
    """(kind of notice, file id, record) of every one that the system service took."""
    found = []
    for message in meter.messages():
        if message["kind"] == "request" and message["usCmd"] in (0x12, 0x13):
            body = bytes.fromhex(message["body"])
            found.append(("file", body[0]) if message["usCmd"] == 0x12 else ("record", body[0], body[4]))
    return found


def notes(meter):
    return [message["note"] for message in meter.messages() if message.get("note")]


def test_a_whole_session(meter):
    result = meter.shell(f"""
        set -e
        step() {{ printf -- "-- %s\\n" "$1"; }}
        step reset; "$VX63" settings reset --all --yes
        step list; "$VX63" settings list
        step volume; "$VX63" settings set sys_set/volume 0 VOLUME 2; "$VX63" settings get sys_set/volume 0 VOLUME
        step create; "$VX63" sets create TOKYO --from ch_set/uhf; "$VX63" sets list
        step copy; "$VX63" sets copy user_set/TOKYO OSAKA --usb1; "$VX63" sets list --usb1
        step delete; "$VX63" sets delete TOKYO --yes; "$VX63" sets delete OSAKA --usb1 --yes
        "$VX63" sets list; "$VX63" sets list --usb1
        step everything; "$VX63" settings reset --all --delete --yes
        ls {ROOT}*_set*/*.csv || true
        step defaults; "$VX63" settings show sys_set/volume
    """)
    assert result.returncode == 0, result.stderr
    steps = dict(part.split("\n", 1) for part in result.stdout.split("-- ")[1:])
    assert steps["reset"] == ""
    assert re.search(r"^1   sys_set/volume  +1  +as from the factory$", steps["list"], re.M)
    assert steps["volume"] == "2\n"
    assert steps["create"] == "RECORD  NAME   CHANNELS\n0       TOKYO  40\n"
    assert steps["copy"] == "RECORD  NAME   CHANNELS\n0       OSAKA  40\n"
    assert steps["delete"] == "RECORD  NAME  CHANNELS\n" * 2
    assert steps["everything"] == ""
    assert steps["defaults"] == ("RECORD  VOLUME_SEL1  VOLUME_SEL2  VOLUME_SEL3  VOLUME_SEL4  VOLUME\n"
                                 "0       0            1            2            3            0\n")
    assert result.stderr.endswith("vx63: sys_set/volume is missing: its factory contents hold\n")
    everything = [("file", file[0]) for file in FILES if "%s" not in file[1]]
    assert notices(meter) == everything + [
        ("record", 1, 0),
        ("file", 14), ("record", 15, 0),
        ("file", 42), ("record", 43, 0),
        ("file", 14), ("record", 15, 0),
        ("file", 42), ("record", 43, 0),
    ]
    assert f"reloaded {VOLUME}, record 0" in notes(meter)
    assert f"reloaded {ROOT}user_set_usb1/user_setting_file_list.csv, record 0" in notes(meter)
    assert not [note for note in notes(meter) if not note.startswith("reloaded ")]


def test_the_catalogue(meter):
    result = meter.vx63("settings", "list", "--jsonl")
    assert (result.returncode, result.stderr) == (0, "")
    layouts = {file_id: text.split() for ids, text in COLUMNS.items() for file_id in ids}
    listed = lines(result.stdout)
    assert [(file["id"], file["path"], file["columns"], file["record_bytes"], file["rows"], file["default_bytes"])
            for file in listed] == [(file[0], ROOT + file[1], *file[2:]) for file in FILES]
    for file in listed:
        assert ["{name}:{type}/{width}/{offset}".format(**column) for column in file["column_list"]] \
            == layouts[file["id"]]
        assert file["header"] == ",".join(column["name"] for column in file["column_list"])
        assert file["version"] == "1.0.0"
        is_set = "%s" in file["path"]
        is_list = file["path"].endswith("_file_list.csv")
        assert file["present"] is not is_set
        assert file["records"] == (None if is_set else file["rows"])
        assert file["differs"] is (None if is_set or is_list else False)
        assert file["sets"] == ([] if is_set else None)
        assert file["fault"] is None


def test_state_of_the_files(meter):
    result = meter.shell(f"""
        sed -i 's/^0,1,2,3,0$/0,1,2,3,1/' {VOLUME}
        rm {ROOT}sys_set/system_setting_file_powoff.csv
        echo 9.9.9 > {FM}
        "$VX63" settings list | grep -E ' (sys_set|ch_set/fm) ?'
        "$VX63" settings list --jsonl | sed -n '1p;2p;30p'
    """)
    assert re.search(r"sys_set/powoff +1 +missing$", result.stdout, re.M)
    assert re.search(r"sys_set/volume +1 +changed$", result.stdout, re.M)
    assert re.search(r"sys_set/brightness +1 +as from the factory$", result.stdout, re.M)
    assert re.search(r"ch_set/fm +251 +broken: line 1: ", result.stdout, re.M)
    powoff, volume, fm = lines("\n".join(line for line in result.stdout.splitlines() if line.startswith("{")))
    assert (powoff["present"], powoff["records"], powoff["differs"], powoff["fault"]) == (False, None, None, None)
    assert (volume["present"], volume["records"], volume["differs"], volume["fault"]) == (True, 1, True, None)
    assert (fm["present"], fm["records"], fm["differs"]) == (True, None, None)
    assert fm["fault"].startswith("line 1: ")


def test_show(meter):
    result = meter.shell(f"""
        "$VX63" settings show volume --csv | cmp - {VOLUME}
        "$VX63" settings show 29 --default --csv | cmp - {FM}
        "$VX63" settings show ch_set/uhf --jsonl | head -n 1
        "$VX63" settings get meas_set/local_freq 0 local_freq2
        "$VX63" settings get ch_set/uhf 0 CH_NO
        "$VX63" settings show user_set/list | head -n 2
    """)
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == ('{"record":0,"CH_NO":"13","CENT_FREQ":473143}\n4294967295\n13\n'
                             'RECORD  NO   ENBFLG  FILE_NAME\n0       1    0\n')


@pytest.mark.parametrize("words, code, why", [
    (["get", "fm", "251", "CH_NO"], 64, "cannot find record 251: ch_set/fm has 251 records: choose one from 0 to 250"),
    (["get", "volume", "1", "VOLUME"], 64, "cannot find record 1: sys_set/volume has 1 record: choose 0"),
    (["get", "fm", "0", "FREQ"], 64,
     "cannot find column 'FREQ': ch_set/fm has the columns CH_NO,CENT_FREQ: choose one of them"),
    (["set", "volume", "0", "VOLUME", "256"], 64,
     "cannot set VOLUME: '256' is not a whole number from 0 to 255: give another value"),
    (["set", "volume", "0", "VOLUME", "-1"], 64,
     "cannot set VOLUME: '-1' is not a whole number from 0 to 255: give another value"),
    (["set", "volume", "0", "VOLUME", "loud"], 64,
     "cannot set VOLUME: 'loud' is not a whole number from 0 to 255: give another value"),
    (["set", "volume", "0", "VOLUME", "9"], 64,
     "cannot set VOLUME: '9' is outside 0..3 (volume of the buzzer: 0 silent to 3 loudest): give another value, "
     "or --force"),
    (["set", "uhf", "0", "CENT_FREQ", "0"], 64,
     "cannot set CENT_FREQ: '0' is outside 10000..3224000 in kHz (centre frequency): give another value, or --force"),
    (["set", "fm_def", "0", "CENT_FREQ", "1"], 64,
     "cannot set CENT_FREQ: '1' is outside 10000..3224000 in kHz, 0 = empty place (centre frequency): "
     "give another value, or --force"),
    (["set", "consta_num", "0", "CONSTA_NUM", "3000"], 64,
     "cannot set CONSTA_NUM: '3000' is none of 1000, 2000, 4000 (constellation points to collect): "
     "give another value, or --force"),
    (["set", "catv_mod", "0", "MOD_SEL1", "4"], 64,
     "cannot set MOD_SEL1: '4' is no sum of 0 = any, 1 = OFDM, 2 = BPSK, 8 = QPSK, 16 = 8PSK (satellite), "
     "32 = 8PSK (others), 64 = 16APSK, 128 = 32APSK, 1024 = 64QAM, 4096 = 256QAM, 8192 = none "
     "(selection 1 of the modulation menu): give another value, or --force"),
    (["set", "volume", "0", "VOLUME", "256", "--force"], 64,
     "cannot set VOLUME: '256' is not a whole number from 0 to 255: give another value"),
    (["describe", "volume", "LOUDNESS"], 64,
     "cannot find column 'LOUDNESS': sys_set/volume has the columns "
     "VOLUME_SEL1,VOLUME_SEL2,VOLUME_SEL3,VOLUME_SEL4,VOLUME: choose one of them"),
    (["set", "fm", "0", "CH_NO", "12345678"], 64,
     "cannot set CH_NO: '12345678' is longer than 7 bytes: give another value"),
    (["set", "user_set/list", "0", "ENBFLG", "1"], 64,
     "cannot change user_set/list: a list must agree with the sets in its folder: use 'vx63 sets'"),
    (["set", "user_set/NARA", "0", "NO", "1"], 66,
     "cannot read user_set/NARA: there is no such set: see 'vx63 sets list'"),
    (["show", "user_set/list", "--default"], 64,
     "cannot show user_set/list: sets and lists have no factory contents: leave out --default"),
    (["reset", "user_set/NARA", "--yes"], 64,
     "cannot reset user_set/NARA: sets have no factory contents: use 'vx63 sets delete'"),
    (["diff", "--with", "/nowhere"], 66,
     "cannot compare with /nowhere: it is no folder: give one that 'vx63 settings export' made"),
    (["import", "/nowhere", "--yes"], 66,
     "cannot import /nowhere: it is no folder: give one that 'vx63 settings export' made"),
    (["import", "/proc/self/fd", "--yes"], 66,
     "cannot import /proc/self/fd: no settings files are in it: give the folder above sys_set, ch_set and the others"),
    (["export", "/proc"], 73, "cannot export to /proc: the folder is not empty: choose another one"),
    (["export", "/proc/self/status"], 74,
     "cannot make the folder /proc/self/status: Not a directory: choose another one"),
    (["reset", "volume"], 77, "nothing was done: there is no terminal to ask on: give --yes"),
    (["reset", "--all"], 77, "nothing was done: there is no terminal to ask on: give --yes"),
])
def test_what_cannot_be_done(meter, words, code, why):
    result = meter.vx63("settings", *words)
    assert (result.returncode, result.stdout, result.stderr) == (code, "", f"vx63: {why}\n")
    assert meter.messages() == []


def test_set_tells_the_record(meter):
    result = meter.shell(f"""
        set -e
        "$VX63" settings set meas_set/thrd 1 BER_MIN_EXP -12
        "$VX63" settings set ch_set/fm 250 CH_NO 'a,b'
        "$VX63" settings set ch_set/catv_up_stream 256 CENT_FREQ 0x4E20
        "$VX63" settings get meas_set/thrd 1 BER_MIN_EXP
        tail -n 1 {FM}
        sed -n 259p {ROOT}ch_set/channel_setting_file_catv_up_stream.csv
    """)
    assert (result.returncode, result.stderr) == (0, "")
    assert re.fullmatch(r'-12\n"a,b",\d+\n[^,]+,20000\n', result.stdout)
    # The index in a notice has 8 bits: the whole file is told where it would not fit.
    assert notices(meter) == [("record", 4, 1), ("record", 29, 250), ("file", 33)]


def test_values_without_a_meaning(meter):
    result = meter.shell("""
        "$VX63" settings set volume 0 VOLUME 9 --force && "$VX63" settings get volume 0 VOLUME
        "$VX63" settings check | grep volume
        "$VX63" settings check --jsonl | grep volume
        "$VX63" settings check > "$DIR/check"; echo $?
        "$VX63" settings set local_freq 1 WAVE 4 --force; "$VX63" settings set local_freq 2 LOCAL_FREQ2 0
        "$VX63" settings set fm_def 0 CENT_FREQ 0
        "$VX63" settings export "$DIR/in"
        "$VX63" settings reset volume --yes; "$VX63" settings reset local_freq --yes
        "$VX63" settings import "$DIR/in" --yes; echo $?
        "$VX63" settings diff volume
        "$VX63" settings import "$DIR/in" --yes --force; echo $?
        "$VX63" settings diff volume
    """)
    note = "record 0 VOLUME: '9' is outside 0..3 (volume of the buzzer: 0 silent to 3 loudest)"
    found = '{"id":1,"name":"sys_set/volume","ok":true,"missing":false,"line":null,"column":null,"fault":null,"note":'
    assert result.stdout == (
        "9\n"
        f"sys_set/volume             ok, but {note}\n"
        f'{found}"{note}"}}\n'
        "0\n"
        "44 files exported\n"
        "65\n"
        "44 files imported\n"
        "0\n"
        "sys_set/volume 0 VOLUME: 9 (factory 0)\n")
    # The folders are read in the order of the file ids, their files in that of their names.
    assert result.stderr == (
        f"vx63: cannot import {meter.folder}/in: sys_set/volume {note}, and 1 more value has no meaning: "
        "correct them, or give --force\n")


def test_describe(meter):
    result = meter.shell("""
        COLUMNS=80 "$VX63" settings describe volume volume
        COLUMNS=80 "$VX63" settings describe fm_def
        COLUMNS=80 "$VX63" settings describe user_set/TOKYO enbflg
        COLUMNS=80 "$VX63" settings describe thrd modulation
        "$VX63" settings describe local_freq local_freq2 --json
    """)
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == """\
sys_set/volume: volume of the buzzer and its menu; 1 record

VOLUME: volume of the buzzer: 0 silent to 3 loudest
  values   0..3
  factory  0
  type     unsigned, 1 byte
ch_set/fm_def: preset channels: FM; 12 records

CH_NO: name of the channel
  factory  varies
  type     text, at most 7 bytes

CENT_FREQ: centre frequency
  values   10000..3224000
           0 = empty place
  unit     kHz
  factory  0..93300
  type     unsigned, 4 bytes
user_set/TOKYO: user set: channels under a name; at most 324 records

ENBFLG: flag: enabled
  values  0..1
  type    unsigned, 1 byte
meas_set/thrd: thresholds of the judgement, a record a band, system and
    modulation; 24 records

MODULATION: modulations
  sum of   0 = any
           1 = OFDM
           2 = BPSK
           8 = QPSK
           16 = 8PSK (satellite)
           32 = 8PSK (others)
           64 = 16APSK
           128 = 32APSK
           1024 = 64QAM
           4096 = 256QAM
           8192 = none
  factory  0..8192
  type     unsigned, 4 bytes
{"id":3,"name":"meas_set/local_freq","purpose":"local oscillators, a record a band and polarisation group",\
"records":12,"columns":[{"name":"LOCAL_FREQ2","type":"unsigned","bytes":4,"unit":"kHz",\
"meaning":"local oscillator, place 2","minimum":1,"maximum":22000000,\
"values":[{"value":0,"word":"none"},{"value":4294967295,"word":"none"}],"bits":false,"factory":4294967295}]}
"""


def test_describe_every_file(meter):
    result = meter.shell("""
        for file in $("$VX63" settings list | sed '1d; s/^[0-9]* *//; s/ .*//'); do
            "$VX63" settings describe $file --json; COLUMNS=40 "$VX63" settings describe $file >> "$DIR/text"
        done
    """)
    assert (result.returncode, result.stderr) == (0, "")
    layouts = {file_id: text.split() for ids, text in COLUMNS.items() for file_id in ids}
    described = lines(result.stdout)
    assert [(file["id"], file["records"]) for file in described] == [(file[0], file[4]) for file in FILES]
    for file in described:
        assert [column["name"] for column in file["columns"]] == [name.split(":")[0] for name in layouts[file["id"]]]
    assert max(map(len, (meter.folder / "text").read_text().splitlines())) <= 40


def test_the_page_of_the_columns():
    result = run(SOURCE / "script" / "settings-columns", "--check", env=environment(VX63_BUILD=str(BUILD)))
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")


def test_set_makes_a_missing_file(meter):
    result = meter.shell(f'rm {VOLUME}; "$VX63" settings set volume 0 VOLUME 3 && cat {VOLUME}')
    assert result.returncode == 0
    assert result.stderr == "vx63: sys_set/volume is missing: its factory contents hold\n"
    assert result.stdout == FACTORY_VOLUME.replace("3,0", "3,3")
    assert notices(meter) == [("file", 1)]


def test_set_without_the_service(meter):
    result = meter.shell(f'"$VX63" settings set volume 0 VOLUME 3; echo $?; tail -n 1 {VOLUME}',
                         fault="sys=ret,1")
    assert result.stdout == "1\n0,1,2,3,3\n"
    assert result.stderr.startswith("vx63: sys_set/volume has changed, but the system service was not told: ")


BROKEN = [
    ("0,1,2,3,x\\n", "line 3, column 5: "),
    ("0,1,2,256,0\\n", "line 3, column 4: number out of range"),
    ("0,1,2,3\\n", "line 3, column 4: "),
    ("0,1,2,3,0", "line 3"),
    ("", "0 records instead of 1"),
    ("0,1,2,3,0\\n0,1,2,3,0\\n", "line 4: "),
]


@pytest.mark.parametrize("record, why", BROKEN)
def test_broken_files(meter, record, why):
    result = meter.shell(f"""
        before() {{ head -n 2 {VOLUME}; printf '{record}'; }}
        before > "$DIR/file" && cp "$DIR/file" {VOLUME}
        "$VX63" settings check | grep volume
        "$VX63" settings check --jsonl | grep volume
        "$VX63" settings check > "$DIR/out"; echo $?
        "$VX63" settings show volume; echo $?
        "$VX63" settings set volume 0 VOLUME 1; echo $?
        "$VX63" settings export "$DIR/export"; echo $?
        cmp "$DIR/file" {VOLUME} && "$VX63" settings reset volume --yes && cat {VOLUME}
    """)
    text, found, *rest = result.stdout.splitlines()
    assert text.startswith(f"sys_set/volume             broken: {why}")
    found = json.loads(found)
    assert (found["id"], found["ok"], found["missing"]) == (1, False, False)
    place = re.match(r"line (\d+)(?:, column (\d+))?", why)
    assert found["line"] == (int(place[1]) if place else None)
    if place and place[2]:
        assert found["column"] == int(place[2])
    assert rest == ["65", "65", "65", "43 files exported", "65", *FACTORY_VOLUME.splitlines()]
    assert result.stderr.count("vx63: cannot read sys_set/volume: " + why) == 2
    assert result.stderr.count("vx63: cannot export sys_set/volume: " + why) == 1
    assert "lsys:" not in result.stderr


def test_check_of_a_good_meter(meter):
    result = meter.vx63("settings", "check")
    assert (result.returncode, result.stderr) == (0, "")
    assert len(result.stdout.splitlines()) == 44
    assert all(line.endswith("  ok") for line in result.stdout.splitlines())


def test_check_compares_lists_and_sets(meter):
    result = meter.shell(f"""
        "$VX63" sets create A --from ch_set/pilot; "$VX63" sets create B --from ch_set/pilot
        mv {ROOT}user_set/B.csv {ROOT}user_set/C.csv
        "$VX63" settings check | grep user_set/
    """)
    assert result.stdout == (
        "user_set/A                 ok\n"
        "user_set/C                 ok\n"
        "user_set/list              ok\n"
        "user_set/list              broken: record 1 names 'B', which has no file\n"
        "user_set/list              broken: it does not name 'C', which has a file\n")


def test_repair(meter):
    """As a killed command leaves them: a set that is not listed, one that is gone, a list that is gone or cut."""
    result = meter.shell(f"""
        for name in A B C D; do "$VX63" sets create $name --from ch_set/pilot; done
        "$VX63" sets create E --from ch_set/pilot --logger; "$VX63" sets create F --from ch_set/pilot --usb1
        mv {ROOT}user_set/B.csv {ROOT}user_set/Z.csv
        rm {ROOT}logger_set/*list.csv; printf 1.0 > {ROOT}user_set_usb1/user_setting_file_list.csv
        cp {ROOT}user_set/Z.csv {ROOT}user_set/.hid.csv
        "$VX63" settings check --repair > "$DIR/check"; echo $?; grep broken "$DIR/check"
        rm {ROOT}user_set/.hid.csv
        "$VX63" settings check --repair > "$DIR/check"; echo $?
        "$VX63" sets list; "$VX63" sets list --logger; "$VX63" sets list --usb1
    """)
    assert result.stderr == ("vx63: user_set/list is repaired\nvx63: logger_set/list is repaired\n"
                             "vx63: user_set_usb1/list is repaired\n")
    assert result.stdout == (
        "65\n"
        "user_set/.hid              broken: it is no name of a set: it begins with a point\n"
        "0\n"
        "RECORD  NAME  CHANNELS\n0       A     20\n1       Z     20\n2       C     20\n3       D     20\n"
        "RECORD  NAME  CHANNELS\n0       E     20\n"
        "RECORD  NAME  CHANNELS\n0       F     20\n")
    assert notices(meter)[-3:] == [("file", 15), ("file", 36), ("file", 43)]


def test_diff(meter):
    result = meter.shell("""
        "$VX63" settings diff; echo $?
        "$VX63" settings set volume 0 VOLUME 1; "$VX63" settings set fm 2 CH_NO x
        "$VX63" settings diff; echo $?
        "$VX63" settings diff 1 --jsonl; echo $?
        "$VX63" settings diff brightness; echo $?
    """)
    assert result.stderr == ""
    assert result.stdout == (
        '0\n'
        'sys_set/volume 0 VOLUME: 1 (factory 0)\nch_set/fm 2 CH_NO: "x" (factory "70.2")\n4\n'
        '{"name":"sys_set/volume","record":0,"column":"VOLUME","value":1,"other":0,"missing":null}\n4\n'
        '0\n')


def test_export_and_import(meter):
    result = meter.shell("""
        "$VX63" sets create A --from ch_set/pilot; "$VX63" sets create B --from ch_set/lte --logger
        "$VX63" settings set volume 0 VOLUME 3
        "$VX63" settings export "$DIR/backup"
        "$VX63" settings reset --all --yes; "$VX63" sets create Z --from ch_set/pilot
        "$VX63" settings diff --with "$DIR/backup" | sed "s;$DIR;DIR;"
        "$VX63" settings import "$DIR/backup"; echo $?
        "$VX63" settings import "$DIR/backup" --yes
        "$VX63" settings diff --with "$DIR/backup"; echo $?
        "$VX63" settings check > "$DIR/check"; echo $?
        "$VX63" sets list
    """)
    assert result.stderr == "vx63: nothing was done: there is no terminal to ask on: give --yes\n"
    assert result.stdout == (
        '46 files exported\n'
        'sys_set/volume 0 VOLUME: 0 (DIR/backup 3)\n'
        'user_set/A: only in DIR/backup\n'
        'user_set/Z: only on the meter\n'
        'user_set/list 0 FILE_NAME: "Z" (DIR/backup "A")\n'
        'logger_set/B: only in DIR/backup\n'
        'logger_set/list 0 ENBFLG: 0 (DIR/backup 1)\n'
        'logger_set/list 0 FILE_NAME: "" (DIR/backup "B")\n'
        '77\n'
        '46 files imported\n'
        '0\n'
        '0\n'
        'RECORD  NAME  CHANNELS\n'
        '0       A     20\n')


def test_import_is_all_or_nothing(meter):
    result = meter.shell("""
        "$VX63" settings set volume 0 VOLUME 3; "$VX63" settings export "$DIR/in"
        "$VX63" settings reset volume --yes
        sed -i 3s/.*/no,number/ "$DIR/in/ch_set/channel_setting_file_fm.csv"
        touch "$DIR/in/sys_set/system_setting_file_loudness.csv"
        cp "$DIR/in/ch_set/channel_setting_file_pilot.csv" "$DIR/in/user_set/A.csv"
        "$VX63" settings import "$DIR/in" --yes; echo $?
        "$VX63" settings get volume 0 VOLUME
    """)
    assert result.stdout == "44 files exported\n65\n0\n"
    folder = meter.folder / "in"
    errors = result.stderr.splitlines()
    assert errors[0] == f"vx63: {folder}/sys_set/system_setting_file_loudness.csv: no settings file is called so"
    assert any(error.startswith(f"vx63: {folder}/ch_set/channel_setting_file_fm.csv: line 3, column 2: ")
               for error in errors)
    assert any(error.startswith(f"vx63: {folder}/user_set/A.csv: line 2, column 2: ") for error in errors)
    assert errors[-1] == f"vx63: cannot import {folder}: some files are wrong: correct them; nothing was written"


def test_a_usb_memory_that_is_out(meter):
    script = f"""
        "$VX63" settings import "$DIR/backup" --yes; echo $?
        "$VX63" settings get volume 0 VOLUME
        "$VX63" settings check | grep usb1
        "$VX63" settings reset --all --yes; echo $?
        "$VX63" settings get volume 0 VOLUME; ls -d {ROOT}*_set* | wc -l
    """
    (meter.folder / "script").write_text(script)
    # A meter of its own namespaces has its folders mounted: they are covered by others, one less.
    result = meter.shell(f"""
        "$VX63" settings export "$DIR/backup"; "$VX63" settings set volume 0 VOLUME 1
        rm -r {ROOT}user_set_usb1 2> "$DIR/rm" && exec sh "$DIR/script"
        mkdir "$DIR/bin" && cp -r {ROOT}*_set* "$DIR/bin" && rm -r "$DIR/bin/user_set_usb1" &&
        exec bwrap --dev-bind / / --bind "$DIR/bin" {ROOT} sh "$DIR/script"
    """)
    assert result.stdout == ("44 files exported\n74\n1\nuser_set_usb1/list         missing\n"
                             "logger_set_usb1/list       ok\n0\n0\n9\n")
    assert result.stderr == (f"vx63: cannot import {meter.folder}/backup: /usr/local/bin/user_set_usb1 is not there: "
                             "plug in the USB memory, or leave out the folder\n")


def test_a_terminal_is_asked(meter):
    for answer, code in (("\n", 77), ("n\n", 77), ("yes please\n", 77), ("y\n", 0), ("\x04", 77)):
        terminal = Terminal(*meter.command(VX63, "settings", "reset", "volume"))
        terminal.wait_for("Replace sys_set/volume by its factory contents? [y/N] ")
        assert notices(meter) == []
        terminal.type(answer)
        assert terminal.finish() == code
        assert ("vx63: nothing was done: not confirmed: answer y, or give --yes" in terminal.shown) == (code == 77)
        assert notices(meter) == ([("file", 1)] if code == 0 else [])


def test_reader_that_goes_away(meter):
    result = meter.shell('{ "$VX63" settings show ch_set/catv_up_stream; echo $? > "$DIR/code"; } | true; cat "$DIR/code"')
    assert result.stdout in ("141\n", "0\n")
    assert result.stderr == ""


@pytest.mark.parametrize("words", [["list"], ["show", "fm"], ["check"], ["diff"], ["list", "--jsonl"]])
def test_full_disk(meter, words):
    result = meter.shell(f'"$VX63" settings set volume 0 VOLUME 1; "$VX63" settings {" ".join(words)} > /dev/full')
    assert result.returncode == 74
    assert as_text(result.stderr) == "vx63: cannot write to standard output: No space left on device: make room on the disk\n"


def test_no_files_at_all(isolation):
    script = """
        "$VX63" settings check | grep -vc missing; "$VX63" settings list --jsonl | grep -c '"present":true'
        "$VX63" settings diff; echo $?
        "$VX63" settings export "$DIR"; "$VX63" settings show volume --default --csv | tail -n 1
        "$VX63" settings reset --all --yes; "$VX63" settings check | grep -c ok
    """
    with tempfile.TemporaryDirectory() as folder:
        result = run(VMETER, "run", *isolation, "--empty-settings", "--", "sh", "-c", script,
                     env=environment(VX63=str(VX63), DIR=folder))
    assert result.stderr == ""
    assert result.stdout == "0\n0\n0\n0 files exported, 44 are missing\n0,1,2,3,0\n44\n"
