"""bench/growth and bench/plots: figures, tables and pictures of how cost grows, and the estimate for the meter."""

import json
import struct
import sys

import pytest

from conftest import BUILD, SOURCE, cannot, run

sys.path.append(str(SOURCE / "bench"))
sys.path.append(str(SOURCE / "bench" / "instructions"))
import document  # noqa: E402
import estimate  # noqa: E402

FIGURES = """
{"machine": "a processor, 2 processors, Linux 6.1"}
{"what": "a row of another kind", "ratio": 1.5}
{"table": "reading", "at": 1.0, "series": "subject", "value": 1.5}
{"table": "reading", "at": 1.0, "series": "floor", "value": 0.85}
{"table": "reading", "at": 1001, "series": "subject", "value": 1234.5}
{"table": "log", "at": 128.0, "series": "a line", "value": 2}
{"table": "log", "at": 1920.0, "series": "a line", "value": 2.004}
{"table": "log", "at": 2048.0, "series": "a line", "value": 105.4}
{"table": "threads", "at": 1, "series": "together", "value": 200}
{"table": "threads", "at": 1, "series": "lowest round", "value": 100}
{"table": "threads", "at": 1, "series": "highest round", "value": 400}
""".lstrip()

TABLES = """\
Measured on a processor, 2 processors, Linux 6.1.

**Reading a settings file**: time, µs

| records | subject | floor |
|---|---:|---:|
| 1 | 1.50 | 0.850 |
| 1001 | 1,234 |  |

**A line of a log that fills up**: time a line, µs

| size of the file, KiB | a line |
|---|---:|
| 128 | 2.00 |
| 1920 | 2.00 |
| 2048: starts it anew | 105 |

**Exchanges of threads with one service**: exchanges a second

| threads | together | lowest round | highest round |
|---|---:|---:|---:|
| 1 | 200 | 100 | 400 |
"""


def size_of(picture):
    """Width and height of a PNG file."""
    data = picture.read_bytes()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    return struct.unpack(">II", data[16:24])


def plots(folder, figures):
    (folder / "figures").write_text(figures)
    return run(SOURCE / "bench" / "plots", "--into", folder / "out", folder / "figures")


def test_figures_become_tables_and_pictures(tmp_path):
    done = plots(tmp_path, FIGURES)
    assert (done.returncode, done.stdout) == (0, ""), done.stderr
    assert (tmp_path / "out" / "growth.md").read_text() == TABLES
    for name in ("reading", "log", "threads"):
        picture = tmp_path / "out" / f"{name}.png"
        assert size_of(picture) == (700, 360)
        assert picture.stat().st_size < 60000


@pytest.mark.parametrize("figures, why", [
    ('{"what": "a row"}\n', "plots: no table of growth in what was read: bench/growth prints some\n"),
    ('{"table": "depth", "at": 1, "series": "a", "value": 1}\n',
     "plots: the table depth is unknown: give it a title and axes in TABLES\n"),
])
def test_nothing_to_draw(tmp_path, figures, why):
    done = plots(tmp_path, figures)
    assert done.returncode == 1
    assert done.stderr.endswith(why)  # the first drawing of a user may be a slow one, and say so


def test_a_run_has_every_table(tmp_path):
    done = run(SOURCE / "bench" / "growth", "--brief", env={"VX63_BUILD": str(BUILD), "PATH": "/usr/bin:/bin"})
    if done.returncode == 77:
        cannot(done.stderr.strip())
    assert done.returncode == 0, done.stderr
    figures = [json.loads(line) for line in done.stdout.splitlines()]
    # A thread that does not get its turn in so short a time has made no exchange.
    assert all(figure["value"] >= 0 for figure in figures if "table" in figure)
    steps = {}
    for figure in figures[1:]:
        steps.setdefault(figure["table"], set()).add(figure["at"])
    expected = {
        "threads": {1, 13},
        "log": {128, 384, 640, 896, 1152, 1408, 1664, 1920, 2048},
        "reading": {1, 3, 10, 30, 100, 300, 1001},
        "writing": {1, 3, 10, 30, 100, 300, 1001},
        "meters": {1, 2},
    }
    if "no virtual meters side by side" in done.stderr:
        del expected["meters"]
    assert steps == expected
    assert plots(tmp_path, done.stdout).returncode == 0
    assert {path.stem for path in (tmp_path / "out").glob("*.png")} == expected.keys()


def test_usage():
    done = run(SOURCE / "bench" / "growth", "--long")
    assert (done.returncode, done.stderr) == (64, "usage: bench/growth [--brief]\n")


def test_a_table_is_put_between_its_marks(tmp_path):
    text = tmp_path / "text.md"
    text.write_text("a\n<!-- one -->\nold\n<!-- end -->\nb\n<!-- two -->\nkept\n<!-- end -->\n")
    document.replace("one", [r"new \1"], text)
    assert text.read_text() == ("a\n<!-- one -->\n\nnew \\1\n\n<!-- end -->\nb\n<!-- two -->\nkept\n<!-- end -->\n")
    with pytest.raises(SystemExit, match="no place for the table: <!-- three --> and <!-- end -->"):
        document.replace("three", [], text)


def test_the_estimate_counts_instructions_and_system_calls():
    counts = {"vx63_getMeasStatus, 12 bytes, 3 lines": 6400, "vx63_readSetFile, contents of 99 bytes, 1 line": 640,
              "vx63_init, refused, 3 lines": 3200, "lsys_readCsvNewFmt, 2 x 2 values": 1}
    assert list(estimate.rows(counts)) == [
        ["vx63_getMeasStatus, 12 bytes, 3 lines", "6,400", "10", "22", "22 to 88", "29 to 100"],
        ["vx63_init, refused, 3 lines", "3,200", "5", "16", "16 to 64", "20 to 70"],
        ["vx63_readSetFile, contents of 99 bytes, 1 line", "640", "1", "5", "5 to 20", "5.7 to 21"],
    ]
