"""vx63 survey report and vx63 survey compare, on results that are written by hand: two outlets, one of them bad."""

import csv
import io
import json
import os
import re
import shutil
import signal
import subprocess
import xml.etree.ElementTree as xml
from pathlib import Path

import html5lib
import junitparser
import pytest

from conftest import HANG
from pictures import pdf_properties, pdf_texts
from tool_support import VX63, Terminal, default_signals, environment, run, until

OPEN = {"fail_below": None, "marginal_below": None, "marginal_above": None, "fail_above": None, "of_plan": False}
LIMITS = {"level_dbuv": OPEN | {"fail_below": 47.0, "fail_above": 77.0, "of_plan": True},
          "cnr_db": OPEN | {"fail_below": 20.0, "marginal_below": 25.0}, "mer_db": OPEN | {"fail_below": 20.0},
          "ber": OPEN | {"marginal_above": 1e-6, "fail_above": 2e-4}}
SITE = "Example Street 12"
FILES = {"report.html", "report.pdf", "junit.xml", "readings.csv", "results.jsonl"}
CHANNELS = [(str(number), 473143 + 6000 * (number - 13)) for number in (21, 22, 23, 24, 25, 26, 27)]
EXPECTED = ("21", "22", "27")
POINTS = [[64 * (1 - 2 * (i % 2)) // 2, 48 - i % 5] for i in range(1000)]


def survey(**changes):
    lists = [{"list": "uhf", "input": 0, "slope_db": OPEN | {"fail_above": 12.0, "of_plan": True},
              "channels": [{"channel": name, "frequency_khz": khz, "expected": name in EXPECTED} for name, khz in CHANNELS]}]
    return {"kind": "survey", "time": 1700000000.0, "site": SITE, "by": "A. Installer", "note": "after the new amplifier",
            "meter": {"model": "VX63", "serial": "000123456", "version": "1.02", "angle_calibration": 4},
            "points": [{"point": "outlet 1", "note": "kitchen\nleft", "lists": lists},
                       {"point": "outlet 2", "note": "", "lists": lists}]} | changes


def reading(point_, name, time, **changes):
    """Channels that are expected pass, the others carry no signal."""
    there = name in EXPECTED
    values = {"signal": there, "locked": there, "unrecognised": False, "level_dbuv": 62.3 if there else 10.1,
              "cnr_db": 30.1 if there else 0.0, "ber": 0.0 if there else None, "ber_errors": 0,
              "ber_bits": 1000000 if there else 0, "system": "terrestrial", "modulation": "OFDM" if there else None,
              "guard_interval": "1/8" if there else None, "tsid": 32736 if there else None, "layer": 3 if there else None,
              **{key: "pass" if there else None for key in ("verdict", "level_verdict", "cnr_verdict", "ber_verdict")},
              "lock_code": int(there), "status_code": 0x11 if there else 0, "condition_code": 0, "system_code": 0,
              "modulation_code": int(there), "guard_interval_code": 2 if there else 0}
    return {"kind": "reading", "point": point_, "list": "uhf", "time": time, "channel": name,
            "frequency_khz": dict(CHANNELS)[name], "lo_khz": 0, "input": 0, "power_supply": 0, **values,
            "asked_system_code": 0, "width_khz": 0, "mer_db": 30.2 if there else None,
            "mer_verdict": "pass" if there else None, "limits": LIMITS, "constellation": [],
            "delay_profile": [], "trouble": None} | changes


def good():
    return [reading(point, name, 1700000001 + 60 * i + k) for i, point in enumerate(["outlet 1", "outlet 2"])
            for k, (name, _) in enumerate(CHANNELS)]


def bad():
    """Outlet 2: 21 marginal by its C/N, 22 too weak, 27 without a signal; 26 is not measured there."""
    lines = good()
    lines[0] |= {"constellation": POINTS, "delay_profile": [-128] * 512 + [0] + [-128] * 1535}
    lines[1] |= {"trouble": "it was lost after 12 of 1000 points"}
    lines[7] |= {"cnr_db": 24.0, "cnr_verdict": "marginal", "verdict": "marginal", "ber_errors": 0}
    lines[8] |= {"level_dbuv": 46.5, "level_verdict": "fail", "verdict": "fail", "ber_errors": 500, "ber": 5e-4,
                 "ber_verdict": "fail"}
    lines[13] |= {key: good()[12][key] for key in ("signal", "locked", "level_dbuv", "cnr_db", "ber", "ber_bits", "verdict",
                                                   "level_verdict", "cnr_verdict", "ber_verdict", "lock_code", "status_code",
                                                   "modulation", "modulation_code", "guard_interval",
                                                   "guard_interval_code", "tsid", "layer", "mer_db", "mer_verdict")}
    del lines[12]
    return lines


def results(lines, **changes):
    return "".join(json.dumps(line) + "\n" for line in [survey(**changes), *lines])


def write(folder, lines, **changes):
    folder.mkdir(exist_ok=True)
    (folder / "results.jsonl").write_text(results(lines, **changes))
    return folder


def report(folder, **options):
    result = run(VX63, "survey", "report", folder, **options)
    assert result.returncode == 0, result.stderr
    return result


@pytest.fixture(scope="module")
def reported(tmp_path_factory):
    folder = write(tmp_path_factory.mktemp("survey") / "a", bad())
    result = report(folder, env=environment(TZ="JST-9"))
    assert result.stderr == ""
    return folder, result.stdout


def page_of(folder):
    """The page as a strict reader of HTML 5 has it, without a namespace."""
    parser = html5lib.HTMLParser(strict=True, namespaceHTMLElements=False)
    return parser.parse((folder / "report.html").read_text())


def text_of(node):
    return " ".join(" ".join(node.itertext()).split())


def rows_of(table):
    return [[text_of(cell) for cell in row] for row in table.find("tbody")]


def table_of(page, caption):
    return next(table for table in page.iter("table") if text_of(table.find("caption")) == caption)


# ---- report ----

def test_what_is_printed(reported):
    folder, said = reported
    assert said == "fail: incomplete, 1 of 14 channels is not measured: 3 pass, 1 marginal, 2 fail, 7 not judged\n" + "".join(
        f"{folder}/{name}\n" for name in ("report.html", "report.pdf", "junit.xml", "readings.csv"))
    assert {path.name for path in folder.iterdir()} == FILES


def test_page_is_right_html(reported):
    page = page_of(reported[0])
    assert page.get("lang") == "en" and text_of(page.find("head/title")) == f"Survey of {SITE}"
    assert [int(node.tag[1]) for node in page.iter() if re.fullmatch("h[1-6]", str(node.tag))] == [1, 2, 2, 2, 3, 2, 3]
    ids = [node.get("id") for node in page.iter() if node.get("id")]
    assert len(ids) == len(set(ids)) == 2
    assert [link.get("href").removeprefix("#") for link in page.iter("a") if text_of(link)] == ids
    for table in page.iter("table"):
        assert text_of(table.find("caption"))
        assert all(head.get("scope") in ("row", "col") for head in table.iter("th"))
    # Nothing comes from elsewhere, nothing runs.
    assert [node.tag for node in page.iter() if node.tag in ("script", "link", "img", "iframe", "object")] == []
    assert "url(" not in (reported[0] / "report.html").read_text().replace("attr(href url)", "")


def test_page_tells_the_whole(reported):
    page = page_of(reported[0])
    text = text_of(page)
    for words in ("fail Incomplete: 1 of 14 channels is not measured. outlet 2: 1 of 7 channels is not measured.",
                  "3 pass, 1 marginal, 2 fail, 7 not judged."):
        assert words in text
    assert rows_of(table_of(page, "Survey")) == [
        ["Site", SITE], ["Measured by", "A. Installer"], ["First reading", "2023-11-15 07:13:21 JST"],
        ["Last reading", "2023-11-15 07:14:27 JST"], ["Note", "after the new amplifier"]]
    assert "2023-11-15T07:13:21+09:00" in [node.get("datetime") for node in page.iter("time")]
    assert rows_of(table_of(page, "Meter")) == [
        ["Model", "VX63"], ["Serial number", "000123456"], ["Program version", "1.02"],
        ["Calibration of the angle sensor", "calibrated"], ["Calibration of the measurement", "not told by the meter"]]
    assert [row[:-1] for row in rows_of(table_of(page, "Channels by point"))] == [
        ["outlet 1", "pass", "7", "3", "0", "0"], ["outlet 2", "fail", "6 of 7", "0", "1", "2"]]
    assert rows_of(table_of(page, "Limits by which the values are judged")) == [
        ["uhf", "terrestrial OFDM, terrestrial", "Level (dBµV)", "47", "–", "–", "77", "plan"],
        ["uhf", "terrestrial OFDM, terrestrial", "C/N (dB)", "20", "25", "–", "–", "meter"],
        ["uhf", "terrestrial OFDM, terrestrial", "MER (dB)", "20", "–", "–", "–", "meter"],
        ["uhf", "terrestrial OFDM, terrestrial", "BER", "–", "–", "1e-06", "0.0002", "meter"],
        ["uhf", "all", "Slope (dB)", "–", "–", "–", "12", "plan"]]


def test_page_tells_every_point(reported):
    page = page_of(reported[0])
    good_one, bad_one = page.iter("section")
    assert rows_of(table_of(bad_one, "Channels of uhf, outlet 2")) == [
        ["21", "521.143", "62.3", "! 24.0 marginal", "30.2", "< 1.0e-06", "OFDM", "yes", "marginal C/N"],
        ["22", "527.143", "× 46.5 fail", "30.1", "30.2", "× 5.0e-04 fail", "OFDM", "yes", "fail level, BER"],
        ["27", "557.143", "10.1", "–", "–", "–", "–", "no", "fail no signal"]]
    for words in ("Input 0; antenna supply off; 2023-11-15 07:14:21 JST to 2023-11-15 07:14:27 JST",
                  "Slope: 15.8 dB from 21 to 22 (fails above 12 dB): fail", "no signal: 23-25", "not measured: 26"):
        assert words in text_of(bad_one)
    for words in ("outlet 1 pass kitchen left uhf", "Slope: 0.0 dB from 21 to 21 (fails above 12 dB): pass",
                  "no signal: 23-26", "Channel 22: not captured: it was lost after 12 of 1000 points",
                  "Channel 21: constellation", "Channel 21: delay profile"):
        assert words in text_of(good_one)
    assert "not measured" not in text_of(good_one)


def test_pictures_on_the_page(reported):
    text = (reported[0] / "report.html").read_text()
    drawn = [xml.fromstring(svg) for svg in re.findall(r"<svg xmlns.*?\n</svg>\n(?=</div>)", text, re.S)]
    assert len(drawn) == text.count("<svg xmlns") == 4
    svg = "{http://www.w3.org/2000/svg}"
    assert [node.find(f"{svg}title").text for node in drawn] == [
        "Levels, outlet 1, uhf", "Constellation, 521.143 MHz, 64QAM", "Delay profile, 521.143 MHz", "Levels, outlet 2, uhf"]
    assert {node.get("role") for node in drawn} == {"img"}
    levels = [node.text for node in drawn[3].iter(f"{svg}text")]
    assert "slope 15.8 dB, from 21 to 22" in levels and {"21", "22", "27"} < set(levels) and "26" not in levels
    # Told without colours.
    assert levels.count("!") == 1 and levels.count("×") == 2
    assert drawn[1].findtext(f"{svg}desc").startswith("MER 30.2 dB, C/N 30.1 dB, level 62.3 dBµV, 1000 points; ")
    # A thousand points are drawn, in few bytes.
    dots = "".join(node.get("d") for node in drawn[1].iter(f"{svg}path"))
    assert dots.count("h0") == 1000 + 1  # the one of the legend
    assert len(dots) < 16 * 1000


def test_paper(reported):
    path = reported[0] / "report.pdf"
    properties = pdf_properties(path)
    assert (properties["Title"], properties["Author"]) == (f"Survey of {SITE}", "A. Installer")
    assert properties["Page size"].endswith("(A4)")
    pages = pdf_texts(path).split("\f")[:-1]
    assert len(pages) == int(properties["Pages"]) > 1
    for number, page in enumerate(pages, 1):
        assert re.search(rf"^Survey of {SITE} +Page {number} of {len(pages)}$", page.strip().splitlines()[-1].strip())
    whole = " ".join("".join(pages).split())
    for words in ("Incomplete: 1 of 14 channels is not measured", "Levels, outlet 2, uhf", "no signal: 23-25",
                  "Level (dBµV)", "15.8 dB"):
        assert words in whole
    # The list of points tells their pages.
    for point in ("outlet 1", "outlet 2"):
        told = int(re.search(rf"^ *{point} .* (\d+)$", pages[0], re.M).group(1))
        assert re.search(rf"^ *{point} +(pass|fail)$", pages[told - 1], re.M)


def test_build_servers_read_it(reported):
    suites = junitparser.JUnitXml.fromfile(str(reported[0] / "junit.xml"))
    assert (suites.name, suites.tests, suites.failures, suites.skipped) == (SITE, 16, 3, 8)
    one, two = suites
    assert (one.name, one.tests, one.failures, one.skipped, one.timestamp, one.time) == (
        "outlet 1", 8, 0, 4, "2023-11-15T07:13:21+09:00", 6.0)
    cases = {case.name: case for case in two}
    assert {case.classname for case in two} == {f"{SITE}.outlet 2.uhf"}
    assert list(cases) == [*(f"{name} ({khz / 1000:.3f} MHz)" for name, khz in CHANNELS), "slope"]
    assert cases["21 (521.143 MHz)"].result == []
    assert cases["21 (521.143 MHz)"].system_out == "marginal: C/N (level 62.3 dBuV, C/N 24.0 dB, MER 30.2 dB, BER < 1.0e-06)"
    told = {name: [(type(one).__name__, one.message) for one in case.result] for name, case in cases.items()}
    assert told["22 (527.143 MHz)"] == [("Failure", "fail: level, BER (level 46.5 dBuV, C/N 30.1 dB, MER 30.2 dB, BER 5.0e-04)")]
    assert told["23 (533.143 MHz)"] == [("Skipped", "no signal, not expected")]
    assert told["26 (551.143 MHz)"] == [("Skipped", "not measured")]
    assert told["27 (557.143 MHz)"] == [("Failure", "fail: no signal (level 10.1 dBuV, C/N 0.0 dB, BER -)")]
    assert told["slope"] == [("Failure", "fail: 15.8 dB from 21 to 22")]


def test_spreadsheets_read_it(reported):
    lines = list(csv.DictReader(io.StringIO((reported[0] / "readings.csv").read_text())))
    assert len(lines) == 13
    assert list(lines[0])[:4] == ["point", "list", "time", "channel"]
    assert set(lines[0]) == set(bad()[0]) - {"kind", "asked_system_code", "width_khz", "limits",
                                            "constellation", "delay_profile", "trouble"} | {"why"}
    told = [(line["point"], line["channel"], line["level_dbuv"], line["mer_db"], line["verdict"], line["why"]) for line in lines]
    assert told[0] == ("outlet 1", "21", "62.3", "30.2", "pass", "")
    assert told[7:10] == [("outlet 2", "21", "62.3", "30.2", "marginal", "C/N"),
                          ("outlet 2", "22", "46.5", "30.2", "fail", "level, BER"),
                          ("outlet 2", "23", "10.1", "", "no signal", "no signal")]
    assert told[12] == ("outlet 2", "27", "10.1", "", "fail", "no signal")


HOSTILE = "<script>alert(1)</script>\"'&\u0001\ufffe\u202e地デ\\"


def test_long_name_leaves_the_verdict_on_the_paper(tmp_path):
    points = [point | {"point": point["point"] + "x" * 300} for point in survey()["points"]]
    folder = write(tmp_path / "a", [], points=points)
    report(folder)
    heading = next(line for line in pdf_texts(folder / "report.pdf").splitlines() if line.split()[:1] == ["Point"])
    assert heading.split() == ["Point", "Verdict", "Channels", "Passed", "Marginal", "Failed", "Page"]


def test_texts_stay_texts(tmp_path):
    folder = write(tmp_path / "a", [], site=HOSTILE, by=HOSTILE, note=HOSTILE, points=[
        {"point": HOSTILE, "note": HOSTILE, "lists": [{"list": HOSTILE, "input": 0, "slope_db": OPEN, "channels": [
            {"channel": HOSTILE, "frequency_khz": 521143, "expected": True}]}]}])
    line = reading("x", "21", 1700000001, point=HOSTILE, list=HOSTILE, channel=HOSTILE, trouble=HOSTILE, constellation=POINTS)
    with open(folder / "results.jsonl", "ab") as file:
        file.write(json.dumps(line).encode() + b"\n")
    assert report(folder).stderr == ""
    shown = "<script>alert(1)</script>\"'&\\x01\ufffd\u202e地デ\\"
    page = page_of(folder)
    assert text_of(page.find("head/title")) == f"Survey of {shown}"
    assert list(page.iter("script")) == []
    assert text_of(page).count(shown) > 8
    assert f"content: \"Survey\\20 of\\20 " in (folder / "report.html").read_text()
    [suite] = junitparser.JUnitXml.fromfile(str(folder / "junit.xml"))
    assert suite.name == shown
    assert shown[:25] in pdf_texts(folder / "report.pdf")


def test_without_weasyprint(tmp_path):
    folder = write(tmp_path / "a", good())
    (folder / "report.pdf").write_text("of an older run")
    (tmp_path / "bin").mkdir()
    result = report(folder, env=environment(PATH=str(tmp_path / "bin")))
    assert result.stderr == ("vx63: report.pdf is left out: weasyprint is not installed: install it, then "
                             "'vx63 survey report DIR', or print report.html\n")
    assert result.stdout.splitlines()[0] == "pass: complete, 14 channels: 6 pass, 8 not judged"
    assert "report.pdf" not in result.stdout
    assert {path.name for path in folder.iterdir()} == FILES - {"report.pdf"}


@pytest.mark.parametrize("script, why", [("echo first >&2; echo no fonts >&2; exit 3", "weasyprint ended with 3, no fonts"),
                                         ("echo no PDF", "weasyprint ended with 0"), ("kill -9 $$", "weasyprint ended with 137")])
def test_weasyprint_that_fails(tmp_path, script, why):
    folder = write(tmp_path / "a", good())
    program = tmp_path / "bin" / "weasyprint"
    program.parent.mkdir()
    program.write_text(f"#!/bin/sh\n{script}\n")
    program.chmod(0o755)
    result = report(folder, env=environment(PATH=f"{program.parent}:{os.environ['PATH']}"))
    assert result.stderr == f"vx63: report.pdf is left out: {why}: print report.html\n"
    assert {path.name for path in folder.iterdir()} == FILES - {"report.pdf"}


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM])
def test_interrupted_while_it_prints(tmp_path, number):
    folder = write(tmp_path / "a", good())
    (folder / "report.pdf").write_text("of an older run")
    program = tmp_path / "bin" / "weasyprint"
    program.parent.mkdir()
    program.write_text(f"#!/bin/sh\necho $$ > {tmp_path / 'pid.new'}\nmv {tmp_path / 'pid.new'} {tmp_path / 'pid'}\nexec sleep 600\n")
    program.chmod(0o755)
    process = subprocess.Popen([VX63, "survey", "report", folder], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                               env=environment(PATH=f"{program.parent}:{os.environ['PATH']}"), preexec_fn=default_signals)
    until((tmp_path / "pid").exists)
    process.send_signal(number)
    _, errors = process.communicate(timeout=HANG)
    assert process.returncode == 128 + number
    assert errors == "vx63: report.pdf is left out: it was interrupted: 'vx63 survey report DIR' writes it\n"
    assert not Path(f"/proc/{(tmp_path / 'pid').read_text().strip()}").exists()
    assert {path.name for path in folder.iterdir()} == FILES - {"report.pdf"}


def test_chatty_weasyprint_is_not_heard(tmp_path):
    folder = write(tmp_path / "a", good())
    program = tmp_path / "bin" / "weasyprint"
    program.parent.mkdir()
    program.write_text(f"#!/bin/sh\necho warning >&2\nexec {shutil.which('weasyprint')} \"$@\"\n")
    program.chmod(0o755)
    assert report(folder, env=environment(PATH=f"{program.parent}:{os.environ['PATH']}")).stderr == ""


@pytest.mark.parametrize("name", ["report.html", "report.pdf", "junit.xml", "readings.csv"])
def test_report_that_cannot_be_written(tmp_path, name):
    folder = write(tmp_path / "a", good())
    (folder / name).mkdir()
    (folder / name / "x").touch()
    result = run(VX63, "survey", "report", folder)
    assert result.returncode == 74
    assert result.stderr == (f"vx63: cannot write {folder}/{name}: Is a directory: make the folder writable, or copy "
                             "results.jsonl to another one\n")
    assert [path.name for path in folder.iterdir() if path.name.endswith(".new")] == []


def test_folder_that_is_for_reading_only(tmp_path):
    folder = write(tmp_path / "a", good())
    folder.chmod(0o555)
    # Without what lets root write everywhere.
    powerless = ["setpriv", "--bounding-set=-all"] if os.getuid() == 0 else []
    result = run(*powerless, VX63, "survey", "report", folder)
    folder.chmod(0o755)
    assert (result.returncode, result.stdout) == (74, "")
    assert result.stderr == (f"vx63: cannot write {folder}/report.html: Permission denied: make the folder writable, or copy "
                             "results.jsonl to another one\n")
    assert [path.name for path in folder.iterdir()] == ["results.jsonl"]


def test_line_that_was_cut_short_and_strangers(tmp_path):
    folder = write(tmp_path / "a", [*good(), reading("outlet 1", "21", 1700009999, point="outlet 9")])
    with open(folder / "results.jsonl", "a") as file:
        file.write('{"kind": "reading", "point": "outl')
    assert report(folder).stdout.startswith("pass: complete, 14 channels: ")
    assert "1 reading of what the survey no longer has: left out." in text_of(page_of(folder))


@pytest.mark.parametrize("contents, code, why", [
    (None, 66, "No such file or directory: name the folder of a survey"),
    ("", 65, "no survey is in it: name the folder of a survey"),
    ("x\n", 65, "line 1 is no JSON: take the line out, or name the folder of a survey")])
def test_results_that_cannot_be_read(tmp_path, contents, code, why):
    if contents is not None:
        (tmp_path / "results.jsonl").write_text(contents)
    result = run(VX63, "survey", "report", tmp_path)
    assert (result.returncode, result.stdout) == (code, "")
    assert result.stderr == f"vx63: cannot read the results in {tmp_path}/results.jsonl: {why}\n"


def test_no_folder(tmp_path):
    result = run(VX63, "survey", "report", tmp_path / "nowhere")
    assert result.returncode == 66
    assert result.stderr == (f"vx63: cannot write the reports of {tmp_path}/nowhere: it is no folder: "
                             "name the folder of a survey\n")


def test_nothing_measured_yet(tmp_path):
    folder = write(tmp_path / "a", [])
    assert report(folder).stdout.startswith("not judged: incomplete, 14 of 14 channels are not measured\n")
    page = page_of(folder)
    assert rows_of(table_of(page, "Survey"))[2] == ["Begun", "2023-11-14 22:13:20 UTC"]
    assert text_of(page).count("not measured: 21-27") == 2
    assert "not judged so far Incomplete: 14 of 14 channels are not measured." in text_of(page)
    assert junitparser.JUnitXml.fromfile(str(folder / "junit.xml")).skipped == 16
    assert (folder / "readings.csv").read_text().startswith("point,list,time,channel,")


# ---- compare ----

@pytest.fixture
def two(tmp_path):
    return write(tmp_path / "a", good()), write(tmp_path / "b", bad())


def compare(*words, **options):
    return run(VX63, "survey", "compare", *words, **options)


def test_what_became_worse(two):
    result = compare(*two)
    assert (result.returncode, result.stderr) == (4, "")
    assert result.stdout == """\
Point     List  Channel  What     Before     After
outlet 2  uhf   21       verdict  pass       marginal: C/N
outlet 2  uhf   21       C/N      30.1 dB    24.0 dB
outlet 2  uhf   22       verdict  pass       fail: level, BER
outlet 2  uhf   22       level    62.3 dBuV  46.5 dBuV
outlet 2  uhf   22       BER      < 1.0e-06  5.0e-04
outlet 2  uhf   27       verdict  pass       fail: no signal
outlet 2  uhf   27       signal   yes        no
outlet 2  uhf   -        slope    0.0 dB     15.8 dB

no longer measured: outlet 2, uhf: 26
8 values became worse, 0 better; 13 channels compared
"""


def test_what_became_better(two):
    result = compare(two[1] / "results.jsonl", two[0])
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == "new: outlet 2, uhf: 26\nnothing became worse, 8 better; 13 channels compared\n"
    all_of_it = compare(*reversed(two), "--all")
    assert all_of_it.returncode == 0
    assert "outlet 2  uhf   22       level    46.5 dBuV         62.3 dBuV\n" in all_of_it.stdout


def test_nothing_became_worse(two):
    assert compare(two[0], two[0]).stdout == "nothing became worse, 0 better; 14 channels compared\n"
    assert [compare(two[0], two[0], form).stdout for form in ("--json", "--jsonl", "--csv")] == ["[]\n", "", ""]


@pytest.mark.parametrize("by, quantities", [("6.2", ["level_dbuv", "slope_db"]), ("15.9", []),
                                            ("0.5", ["cnr_db", "level_dbuv", "slope_db"])])
def test_by_how_much(two, by, quantities):
    result = compare(*two, "--by", by, "--jsonl")
    lines = [json.loads(line) for line in result.stdout.splitlines()]
    assert [line["quantity"] for line in lines if line["change"] is not None] == quantities


def test_comparison_for_programs(two):
    answer = json.loads(compare(*two, "--json").stdout)
    assert answer[1] == {"point": "outlet 2", "list": "uhf", "channel": "21", "quantity": "cnr_db", "before": 30.1,
                         "after": 24.0, "change": -6.1, "worse": True}
    assert [(one["quantity"], one["before"], one["after"]) for one in answer[2:8]] == [
        ("verdict", "pass", "fail"), ("level_dbuv", 62.3, 46.5), ("ber", 0.0, 5e-4), ("measured", True, False),
        ("verdict", "pass", "fail"), ("signal", True, False)]
    assert answer[8] == {"point": "outlet 2", "list": "uhf", "channel": None, "quantity": "slope_db", "before": 0.0,
                         "after": 15.8, "change": 15.8, "worse": True}
    assert {one["worse"] for one in json.loads(compare(*reversed(two), "--all", "--json").stdout)} == {False}


def test_different_sites(tmp_path, two):
    other = write(tmp_path / "c", good(), site="Elsewhere\u001b")
    result = compare(two[0], other)
    assert result.returncode == 0
    assert result.stderr == (f"vx63: the surveys are of different sites, '{SITE}' and 'Elsewhere\\x1B': compared all the "
                             "same\n")


def test_comparison_on_a_narrow_terminal(two):
    terminal = Terminal(VX63, "survey", "compare", *two, columns=40)
    assert terminal.finish() == 4
    assert max(map(len, terminal.shown.splitlines())) <= 40


@pytest.mark.parametrize("by", ["-1", "101", "x", "1dB", "nan"])
def test_wrong_threshold(two, by):
    result = compare(*two, f"--by={by}")
    assert result.returncode == 64
    assert f"--by: '{by}' is no number of dB from 0 to 100" in result.stderr


def test_comparison_with_nothing(tmp_path, two):
    result = compare(two[0], tmp_path / "nowhere")
    assert result.returncode == 66
    assert result.stderr == (f"vx63: cannot read the results in {tmp_path}/nowhere: No such file or directory: "
                             "name the folder of a survey\n")
