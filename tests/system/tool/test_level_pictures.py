"""Pictures and charts of levels: --plot of vx63 scan and vx63 measure multi, and what the text calls the same."""

import json
import re
from datetime import datetime, timedelta, timezone

import pytest

from pictures import Svg, pdf_texts
from tool_support import environment, isolation, meter  # noqa: F401 (fixtures)

LEGEND = ["pass", "marginal", "fail", "signal", "not recognised", "no signal"]
TIME = r"\d{4}-\d\d-\d\d \d\d:\d\d"


def drawn(meter, tmp_path, *options, command=("measure", "multi"), **more):
    result = meter.vx63(*command, *options, "--plot", tmp_path / "levels.svg", **more)
    assert (result.returncode, result.stderr) == (0, "")
    return Svg(tmp_path / "levels.svg"), result.stdout


def legend(svg):
    return [text for text in svg.texts[:10] if text in LEGEND]


@pytest.mark.parametrize("options, names", [
    (["--plan", "uhf"], [str(number) for number in range(13, 53)]),
    (["--plan", "bs"], [f"BS-{number}" for number in (*range(1, 24, 2), *range(2, 25, 2))]),
])
def test_every_name_is_there(meter, tmp_path, options, names):
    svg, _ = drawn(meter, tmp_path, *options, command=["scan"])
    assert [text for text in svg.texts if text in names and text not in ("20", "30", "40", "50")] == [
        name for name in names if name not in ("20", "30", "40", "50")]
    assert "Channel" in svg.texts


def test_long_plan_has_all_its_names(meter, tmp_path):
    """150 channels: their names are read from below."""
    svg, text = drawn(meter, tmp_path, "--plan", "catv", "--input", "1")
    assert {"C13", "C24", "C61", "C101"} < set(svg.texts)
    assert svg.size[0] == 1902
    assert legend(svg) == [kind for kind in LEGEND if kind in legend(svg)]
    assert {"pass", "not recognised", "no signal"} <= set(legend(svg))
    assert re.fullmatch(r"terrestrial, catv, input 1, " + TIME, svg.texts[2])
    assert re.search(r"^C61 +453000 +7\d\.\d +- +- +no +- +not recognised$", text, re.M)


def test_names_are_thinned_where_there_is_no_room_for_all(meter, tmp_path):
    (tmp_path / "list.json").write_text(json.dumps(
        [{"channel": f"channel{i}"[-8:], "frequency_khz": 470000 + i, "band": 1} for i in range(201)]))
    svg, _ = drawn(meter, tmp_path, "--conditions", tmp_path / "list.json")
    names = [text for text in svg.texts if text.startswith(("channel", "hannel", "annel"))]
    assert names == [f"channel{i}"[-8:] for i in range(0, 201, 2)]


@pytest.mark.parametrize("plan, input_, first, last", [("fm", 0, "70", "95"), ("pilot", 1, "100", "700"),
                                                       ("lte", 0, "720", "800"), ("up-stream", 1, "10", "60")])
def test_level_carriers_stand_at_their_frequencies(meter, tmp_path, plan, input_, first, last):
    svg, text = drawn(meter, tmp_path, "--plan", plan, "--input", input_, command=["scan"])
    assert "Frequency (MHz)" in svg.texts and "Channel" not in svg.texts
    assert svg.title == f"Levels of the channels, plan {plan}"
    assert svg.texts[1] == text.splitlines()[-1]
    assert re.fullmatch(f"level, input {input_}, {TIME}", svg.texts[2])
    below = max(place.bottom for place in svg.places if place.text != "Frequency (MHz)")
    axis = [place for place in svg.places if place.bottom == below]
    assert (axis[0].text, axis[-1].text) == (first, last)
    middles = [(place.left + place.right) / 2 for place in axis]
    steps = {round(right - left, 1) for left, right in zip(middles, middles[1:])}
    assert max(steps) - min(steps) < 0.5
    assert re.search(r"^dBuV [ \d.]+ MHz$", text, re.M)


def test_lte_carrier_is_as_wide_as_it_is(meter, tmp_path):
    svg, text = drawn(meter, tmp_path, "--plan", "lte")
    assert {"UL-L", "UL-M", "UL-H", "DL-L", "DL-M", "DL-H"} < set(svg.texts)
    (bar,) = [node for node in svg.bars if float(node.get("height")) > 200 and float(node.get("width")) < 400]
    # 718 to 803 MHz in 640 pixels, with a gap of a pixel on either side.
    assert abs(float(bar.get("width")) - (10 / 85 * 640 - 2)) < 0.1
    assert abs(float(bar.get("x")) - (78 + 55 / 85 * 640 + 1)) < 0.1
    assert re.search("│ {47}█{10} +$", text, re.M)  # 74 columns: 47.9 to 56.6


@pytest.mark.parametrize("plan, columns", [("uhf", 20), ("uhf", 200), ("catv", 40), ("fm", 40), ("fm", 200), ("lte", 80)])
def test_labels_of_the_chart_stand_apart(meter, plan, columns):
    result = meter.vx63("scan", "--plan", plan, "--input", "1" if plan == "catv" else "0",
                        env=environment(COLUMNS=str(columns)))
    labels = next(line for line in result.stdout.splitlines() if line.startswith("dBuV "))
    assert len(labels) <= columns
    places = [match.start() for match in re.finditer(r"\S+", labels.removesuffix(" MHz"))][1:]
    steps = [right - left for left, right in zip(places, places[1:])]
    assert not steps or max(steps) - min(steps) <= 2
    assert len(places) >= (1 if columns == 20 else 4)


def test_strong_but_not_demodulated(meter, tmp_path):
    """Satellites whose signals are of another system, or elsewhere."""
    svg, text = drawn(meter, tmp_path, "--plan", "jsat3a", command=["scan"])
    assert legend(svg) == ["not recognised", "no signal"]
    table, _, summary = text.split("\n\n")
    assert re.search(r"^K-1 .* not recognised$", table, re.M)
    assert summary == "0 of 28 channels carry a signal, 0 locked, 7 not recognised\n"
    objects = json.loads(meter.vx63("scan", "--plan", "jsat3a", "--json").stdout)
    assert len([one for one in objects if one["unrecognised"]]) == 7
    assert svg.texts[1] + "\n" == summary


def test_time_is_that_of_the_place(meter, tmp_path):
    zone = timezone(timedelta(hours=9))
    before = datetime.now(zone)
    svg, _ = drawn(meter, tmp_path, "--plan", "lte", env=environment(TZ="JST-9"))
    shown = svg.texts[2].removeprefix("level, input 0, ")
    assert f"{before:%Y-%m-%d %H:%M}" <= shown <= f"{datetime.now(zone):%Y-%m-%d %H:%M}"


def test_names_that_xml_does_not_take(meter, tmp_path):
    names = ["<&>\"'", "\u001b[1m", "\ufffeµ", "地デ", "a\tb"]
    (tmp_path / "list.json").write_text(json.dumps([{"channel": name, "frequency_khz": 557143} for name in names]))
    svg, _ = drawn(meter, tmp_path, "--conditions", tmp_path / "list.json")
    for shown in ("<&>\"'", "\\x1B[1m", "\ufffdµ", "地デ", "a\tb"):
        assert shown in svg.texts


def test_pdf(meter, tmp_path):
    assert meter.vx63("scan", "--plan", "lte", "--plot", tmp_path / "l.PDF").returncode == 0
    text = pdf_texts(tmp_path / "l.PDF")
    for words in ("Levels of the channels, plan lte", "1 of 6 channels carry a signal", "Frequency (MHz)", "DL-L"):
        assert words in text
