"""The benchmark in its short form: every group tells what it should, in the form that is told. No time is judged."""

import json

import pytest
from conftest import BUILD, SOURCE, run

RUN = SOURCE / "bench" / "run"
REPORT = SOURCE / "bench" / "report"
MEASURED = ["group", "what", "floor", "floor_ns", "ns", "ratio", "ratio_low", "ratio_high", "rounds"]

# Some rows of each group.
GROUPS = {
    "exchanges": ["vx63_sndRcvCommon, 12 bytes, same processor", "lmsg_tsndMq, lmsg_trcvMq, 1300 bytes, same processor"],
    "log": ["a line without values, in memory", "a line with a value, on disk"],
    "operations": ["vx63_startSingleMeas, same processor", "vx63_startMultiMeas of 255 channels, same processor"],
    "settings": ["reading a file of 1001 x 2, in memory", "writing a file of 48 x 29, on disk",
                 "vx63_readSetFile, factory contents of 48 x 29"],
    "processes": ["vx63 --version"],
    "measurement": ["vx63 measure single --json"],
}


def results_of(folder, *arguments):
    done = run(RUN, BUILD / "bin", "--brief", *arguments, cwd=folder)
    assert done.returncode == 0, done.stderr
    return done.stdout


@pytest.mark.parametrize("group", GROUPS)
def test_a_group_tells_its_rows(group, tmp_path):
    rows = [json.loads(line) for line in results_of(tmp_path, group).splitlines()]
    for row in rows:
        assert list(row)[:len(MEASURED)] == MEASURED
        assert row["group"] == group
        assert row["floor_ns"] > 0 and row["ns"] > 0 and row["ratio"] > 0
        assert row["rounds"] == 1
    assert set(GROUPS[group]) <= {row["what"] for row in rows}
    assert not list(tmp_path.iterdir())


def test_rows_by_a_part_of_their_name(tmp_path):
    rows = [json.loads(line) for line in results_of(tmp_path, "--only", "with a value, in memory", "log").splitlines()]
    assert [row["what"] for row in rows] == ["a line with a value, in memory"]


def test_the_table(tmp_path):
    results = tmp_path / "results"
    results.write_text(
        '{"what":"a","floor":"f","floor_ns":10,"ns":1500,"ratio":150,"ratio_low":1,"ratio_high":2.345,"rounds":9,'
        '"target":7}\n'
        '{"table":"threads","at":1,"series":"s","value":2}\n'
        '{"what":"bb","floor":"f","floor_ns":2000000,"ns":2000000,"ratio":1,"ratio_low":1,"ratio_high":1,"rounds":9}\n')
    assert run(REPORT, results).stdout.splitlines() == [
        "what  time    ratio   quartiles     target     floor  its time",
        "a     1.5 us  150.00  1.00 .. 2.35  7.00    -  f      10 ns",
        "bb    2 ms    1.00    1.00 .. 1.00             f      2 ms",
    ]
    assert run(REPORT, "--json", results).stdout == results.read_text()
    assert run(REPORT).returncode == 64


def test_what_is_unknown_is_said(tmp_path):
    for arguments, said in (["--fast", "log"], "unknown option '--fast'"), (["lag"], "unknown group 'lag'"):
        done = run(RUN, BUILD / "bin", *arguments, cwd=tmp_path)
        assert done.returncode == 64
        assert said in done.stderr
