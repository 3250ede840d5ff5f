"""vx63 sets."""

import json

import pytest

from conftest import BUILD, native  # noqa: F401 (fixture)
from test_settings import ROOT, notices
from tool_support import VX63, Terminal, isolation, meter  # noqa: F401 (fixtures)

FOLDERS = [([], "user_set", 14), (["--usb1"], "user_set_usb1", 42), (["--usb2"], "user_set_usb2", 44),
           (["--logger"], "logger_set", 35), (["--logger", "--usb1"], "logger_set_usb1", 46),
           (["--usb2", "--logger"], "logger_set_usb2", 48)]


def list_id(set_id):
    return set_id + 1


@pytest.mark.parametrize("options, folder, set_id", FOLDERS)
def test_each_folder(meter, options, folder, set_id):
    where = " ".join(options)
    result = meter.shell(f"""
        set -e
        "$VX63" sets create 'A B' --from ch_set/lte --band 2 --spec 3 --mod 0x20 {where}
        "$VX63" sets copy 'A B' C {where}
        cmp '{ROOT}{folder}/A B.csv' {ROOT}{folder}/C.csv
        sed -n 3p {ROOT}{folder}/C.csv
        "$VX63" sets list --jsonl {where}
        "$VX63" sets delete 'A B' --yes {where}
        "$VX63" sets list --jsonl {where}
        "$VX63" sets clear --yes {where}
        "$VX63" sets list --jsonl {where}
        ls {ROOT}{folder}
    """)
    assert (result.returncode, result.stderr) == (0, "")
    channel, *rest, files = result.stdout.splitlines()
    assert channel.split(",")[:4] == ["1", "1", "2", "3"]
    assert channel.split(",")[6:] == ["32", "0", "0", "0"]
    assert [json.loads(line) for line in rest] == [
        {"record": 0, "name": "A B", "channels": 6}, {"record": 1, "name": "C", "channels": 6},
        {"record": 1, "name": "C", "channels": 6}]
    assert files.endswith("_setting_file_list.csv")
    assert notices(meter) == [
        ("file", set_id), ("record", list_id(set_id), 0),
        ("file", set_id), ("record", list_id(set_id), 1),
        ("file", set_id), ("record", list_id(set_id), 0),
        ("file", set_id), ("file", list_id(set_id))]


def test_channels_of_a_plan(meter):
    result = meter.shell("""
        "$VX63" sets create UHF --from uhf && "$VX63" sets show UHF --csv | sed -n '2,3p;$p'
        "$VX63" sets create CATV --from catv_all && "$VX63" sets show CATV --jsonl | sed -n '1p'
        "$VX63" settings set user_set/UHF 39 MOD 8 && "$VX63" settings get user_set/UHF 39 MOD
    """)
    assert result.stderr == ""
    header, first, last, catv, modulation = result.stdout.splitlines()
    assert header == "NO,ENBFLG,BAND,SPEC,CH,CENTER_FREQ,MOD,LOCAL_FREQ,GETDATA_FLG,DC_OUT"
    assert first == "1,1,0,0,13,473143,0,0,0,0"
    assert last == "40,1,0,0,52,707143,0,0,0,0"
    catv = json.loads(catv)
    assert (catv["record"], catv["NO"], catv["CH"], catv["CENTER_FREQ"]) == (0, 1, "1", 93000)
    assert modulation == "8"


@pytest.mark.parametrize("words, code, why", [
    (["show", "A"], 66, "cannot read user_set/A: there is no such set: see 'vx63 sets list'"),
    (["copy", "A", "B"], 66, "cannot read user_set/A: there is no such set: see 'vx63 sets list'"),
    (["copy", "logger_set/A", "B", "--usb1"], 66,
     "cannot read logger_set/A: there is no such set: see 'vx63 sets list'"),
    (["delete", "A", "--yes"], 66, "cannot delete user_set/A: there is no such set: see 'vx63 sets list'"),
    (["delete", "A"], 77, "nothing was done: there is no terminal to ask on: give --yes"),
    (["clear"], 77, "nothing was done: there is no terminal to ask on: give --yes"),
    (["create", "A", "--from", "ch_set/catv_up_stream"], 64,
     "cannot make a set of ch_set/catv_up_stream: it has 1001 channels, and a set at most 324: choose another plan"),
    (["create", "A", "--from", "lte", "--spec", "7"], 64,
     "cannot create user_set/A: record 0 SPEC: '7' is none of 0 = terrestrial, 1 = satellite, 2 = satellite-2, "
     "3 = catv, 4 = jsat, 5 = jsat-2, 6 = skyp, 9 = catv-2, 10 = level (broadcast system), and 5 more values have no "
     "meaning: give others, or --force"),
    (["create", "A", "--from", "volume"], 64,
     "cannot make a set of sys_set/volume: it is no channel plan: choose one of the files in ch_set"),
])
def test_what_cannot_be_done(meter, words, code, why):
    result = meter.vx63("sets", *words)
    assert (result.returncode, result.stdout, result.stderr) == (code, "", f"vx63: {why}\n")
    assert meter.messages() == []


def test_values_without_a_meaning(meter):
    result = meter.shell("""
        "$VX63" sets create A --from lte --spec 7 --force && "$VX63" settings get user_set/A 0 SPEC
        "$VX63" sets create PRESETS --from fm_def && "$VX63" settings get user_set/PRESETS 11 CENTER_FREQ
    """)
    assert (result.returncode, result.stdout, result.stderr) == (0, "7\n0\n", "")


def test_names_are_taken_once(meter):
    result = meter.shell(f"""
        "$VX63" sets create A --from ch_set/lte
        "$VX63" sets create A --from ch_set/pilot; echo $?
        "$VX63" sets copy A A; echo $?
        mv {ROOT}user_set/A.csv {ROOT}user_set/B.csv
        "$VX63" sets list
        "$VX63" sets create A --from ch_set/pilot; echo $?
        "$VX63" sets create B --from ch_set/pilot; echo $?
        "$VX63" sets delete A --yes; "$VX63" sets delete B --yes; "$VX63" sets list
    """)
    assert result.stdout == ("73\n73\nRECORD      NAME  CHANNELS\n0           A     no file\nnot listed  B     6\n"
                             "73\n73\nRECORD  NAME  CHANNELS\n")
    assert result.stderr.count("there is such a set already: choose another name") == 4


def test_a_full_list(meter):
    entries = "".join(f"{number},1,S{number}\n" for number in range(1, 141))
    (meter.folder / "list").write_text("1.0.0\nNO,ENBFLG,FILE_NAME\n" + entries)
    result = meter.shell(f"""
        cp "$DIR/list" {ROOT}user_set/user_setting_file_list.csv
        "$VX63" sets create A --from ch_set/lte; echo $?
        ls {ROOT}user_set
        "$VX63" sets delete S70 --yes
        "$VX63" sets create A --from ch_set/lte; echo $?
        sed -n 72p {ROOT}user_set/user_setting_file_list.csv
    """)
    assert result.stdout == "73\nuser_setting_file_list.csv\n0\n70,1,A\n"
    assert result.stderr == ("vx63: cannot create user_set/A: the list is full: 140 sets: "
                             "use 'vx63 sets delete' first, or another storage\n")


def test_without_a_list(meter):
    result = meter.shell(f"""
        rm {ROOT}user_set/*; "$VX63" sets list; "$VX63" sets clear --yes; ls {ROOT}user_set
        rm {ROOT}user_set/*; "$VX63" sets create A --from ch_set/lte; "$VX63" sets list
        wc -l < {ROOT}user_set/user_setting_file_list.csv
        echo broken > {ROOT}user_set/user_setting_file_list.csv
        "$VX63" sets create B --from ch_set/lte; echo $?; ls {ROOT}user_set
    """)
    assert result.stdout == ("RECORD  NAME  CHANNELS\nuser_setting_file_list.csv\n"
                             "RECORD  NAME  CHANNELS\n0       A     6\n142\n65\nA.csv\nuser_setting_file_list.csv\n")
    assert result.stderr.startswith("vx63: cannot read user_set/list: line 1: ")


def test_a_broken_list_is_made_anew(meter):
    result = meter.shell(f"""
        for name in B A; do "$VX63" sets create $name --from ch_set/lte; done
        echo broken > {ROOT}user_set/user_setting_file_list.csv
        "$VX63" settings reset user_set/list --yes; "$VX63" sets list; "$VX63" settings check | grep -c ok
        echo broken > {ROOT}user_set/user_setting_file_list.csv
        "$VX63" sets clear --yes; "$VX63" sets list
    """)
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == ("RECORD  NAME  CHANNELS\n0       A     6\n1       B     6\n46\n"
                             "RECORD  NAME  CHANNELS\n")
    assert notices(meter)[4:] == [("file", 15), ("file", 14), ("file", 15)]


def test_a_list_with_few_records(meter):
    result = meter.shell(f"""
        printf '1.0.0\\nNO,ENBFLG,FILE_NAME\\n' > {ROOT}user_set/user_setting_file_list.csv
        "$VX63" sets create A --from ch_set/lte && cat {ROOT}user_set/user_setting_file_list.csv
    """)
    assert (result.stdout, result.stderr) == ("1.0.0\nNO,ENBFLG,FILE_NAME\n1,1,A\n", "")


def test_names_that_no_set_can_have(meter):
    """The shell's * leaves out hidden files, and the library's deletion with it: the tool finds and deletes them."""
    result = meter.shell(f"""
        "$VX63" sets create A --from ch_set/lte
        cd {ROOT}user_set; for name in .hid '' 'x\\033]0;y\\nz'; do cp A.csv "$(printf "$name").csv"; done; touch .note
        "$VX63" sets list
        "$VX63" sets list --jsonl | head -n 1
        "$VX63" settings check | grep user_set/; "$VX63" settings list | grep user_set/NAME
        "$VX63" --complete sets show '' | grep -v ^--; "$VX63" --complete settings show '' | grep ^user_set/
        "$VX63" settings export "$DIR/out"; echo $?; ls -A "$DIR/out/user_set"
        cp A.csv "$(printf '.a\\nb').csv"; "$VX63" sets clear --yes; echo $?; ls -A; "$VX63" log | grep -c '^b\\|x1B'
    """)
    odd = "x\\x1B]0;y\\x0Az"
    hidden, empty = "it begins with a point", "it is empty"
    assert [" ".join(line.split()) for line in result.stdout.splitlines()] == [
        "RECORD NAME CHANNELS", "0 A 6", f"not listed broken: it is no name of a set: {empty}",
        f"not listed .hid broken: it is no name of a set: {hidden}",
        f"not listed {odd} broken: it is no name of a set: it is not printable",
        '{"record":0,"name":"A","channels":6}',
        f"user_set/ broken: it is no name of a set: {empty}",
        f"user_set/.hid broken: it is no name of a set: {hidden}", "user_set/A ok",
        f"user_set/{odd} broken: it is no name of a set: it is not printable", "user_set/list ok",
        "14 user_set/NAME 324 4 sets", "A", "user_set/A", "user_set/list",
        "45 files exported", "65", "A.csv", "user_setting_file_list.csv",
        "0", ".note", "user_setting_file_list.csv", "0"]
    assert result.stderr.splitlines() == [
        f"vx63: cannot export user_set/{name}: it is no name of a set: {why}: the other files are exported all the same"
        for name, why in (("", empty), (".hid", hidden), (odd, "it is not printable"))]


def test_hidden_sets_elsewhere(meter):
    result = meter.shell(f"""
        "$VX63" sets create A --from ch_set/lte --usb2 && "$VX63" settings export "$DIR/in"
        cp {ROOT}user_set_usb2/A.csv "$DIR/in/user_set_usb2/.hid.csv"; touch "$DIR/in/user_set_usb2/.lsys.0.tmp"
        "$VX63" settings import "$DIR/in" --yes; echo $?
        rm "$DIR/in/user_set_usb2/.hid.csv"
        for folder in user_set_usb2 logger_set; do cp {ROOT}user_set_usb2/A.csv {ROOT}$folder/.hid.csv; done
        "$VX63" settings import "$DIR/in" --yes; ls -A {ROOT}user_set_usb2 {ROOT}logger_set
        for folder in user_set_usb2 logger_set; do cp {ROOT}user_set_usb2/A.csv {ROOT}$folder/.hid.csv; done
        "$VX63" doctor > "$DIR/doctor"
        "$VX63" settings reset --all --delete --yes; ls -A {ROOT}user_set_usb2 {ROOT}logger_set
    """)
    hid = f"vx63: {ROOT}logger_set/.hid.csv: it is no name of a set: it begins with a point: rename or remove "
    assert result.stdout.splitlines() == [
        "45 files exported", "65", "45 files imported", f"{ROOT}logger_set:", "logger_setting_file_list.csv", "",
        f"{ROOT}user_set_usb2:", "A.csv", "user_setting_file_list.csv", f"{ROOT}logger_set:", "", f"{ROOT}user_set_usb2:"]
    assert result.stderr.splitlines()[:2] == [
        f"vx63: {meter.folder}/in/user_set_usb2/.hid.csv: no set can be called so: it begins with a point",
        f"vx63: cannot import {meter.folder}/in: some files are wrong: correct them; nothing was written"]
    assert hid in result.stderr


def test_text_of_a_file_on_a_terminal(meter):
    """Byte for byte as it stands in the file, but for what a terminal would obey."""
    (meter.folder / "script").write_text(f"""
        cd {ROOT}user_set; "$VX63" sets create A --from ch_set/lte
        printf '1.0.0\\n%s\\n1,1,0,0,"\\033[2J\\na,",723000,0,0,0,0\\n' "$(sed -n 2p A.csv)" > A.new; mv A.new A.csv
        "$VX63" sets show A --csv | cmp - A.csv && "$VX63" sets show A --csv
    """)
    terminal = Terminal(*meter.command("sh", meter.folder / "script"), columns=200, VX63=str(VX63))
    assert (terminal.finish(), terminal.shown.splitlines()[-1]) == (0, '1,1,0,0,"\\x1B[2J\\x0Aa,",723000,0,0,0,0')


PRELOAD = f"ASAN_OPTIONS=verify_asan_link_order=0:detect_leaks=0 LD_PRELOAD={BUILD}/lib/libgone_meanwhile.so"


def test_set_that_another_deletes_meanwhile(meter, native):
    result = meter.shell(f"""
        "$VX63" sets create A --from ch_set/lte
        {PRELOAD} "$VX63" sets delete A --yes
        echo $? && "$VX63" settings check && "$VX63" sets list --jsonl
    """)
    assert result.stdout.splitlines()[0] == "0", result.stderr
    assert '"A"' not in result.stdout


def test_set_that_another_deletes_while_files_are_taken_over(meter, native):
    result = meter.shell(f"""
        "$VX63" settings export "$DIR/kept" && "$VX63" sets create A --from ch_set/lte
        {PRELOAD} "$VX63" settings import "$DIR/kept" --yes
        echo $? && "$VX63" settings check && "$VX63" sets list --jsonl
    """)
    assert "0" in result.stdout.splitlines(), result.stderr
    assert '"A"' not in result.stdout
