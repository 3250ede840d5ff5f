"""What programs read: every answer as its schema in docs/json has it, whatever the state of the meter."""

import csv
import io
import json
import re

import jsonschema
import pytest

from conftest import BUILD
import test_survey_report as surveys
from test_reasons import alone
from test_usage import LEAVES, help_of, options_of
from tool_support import SOURCE, VMETER, VX63, environment, isolation, meter, run  # noqa: F401 (fixtures)

FOLDER = SOURCE / "docs" / "json"
PAGE = SOURCE / "docs" / "json.md"
SCHEMAS = {path.name.removesuffix(".schema.json"): json.loads(path.read_text()) for path in FOLDER.glob("*")}


def closed(schema, whole):
    """The schema in one piece, and without leave for keys that it does not name."""
    if isinstance(schema, list):
        return [closed(one, whole) for one in schema]
    if not isinstance(schema, dict):
        return schema
    reference = schema.get("$ref", "")
    if reference.startswith("#/$defs/"):
        return closed(whole["$defs"][reference.removeprefix("#/$defs/")], whole)
    if reference:
        other = SCHEMAS[reference.removesuffix(".schema.json")]
        return closed(other, other)
    made = {key: closed(value, whole) for key, value in schema.items() if key not in ("allOf", "examples")}
    for base in closed(schema.get("allOf", []), whole):
        made["properties"] = base["properties"] | made["properties"]
        made["required"] = base["required"] + made["required"]
    if made.get("additionalProperties") is True:
        made["additionalProperties"] = False
    return made


def validate(answer, name):
    schema = SCHEMAS[name]
    jsonschema.Draft202012Validator(closed(schema, schema)).validate(answer)


def objects(schema):
    """Every object that a schema describes."""
    if isinstance(schema, dict):
        if "properties" in schema and isinstance(schema.get("required"), list):
            yield schema
        for part in schema.values():
            yield from objects(part)
    if isinstance(schema, list):
        for part in schema:
            yield from objects(part)


@pytest.mark.parametrize("name", SCHEMAS)
def test_schema(name):
    schema = SCHEMAS[name]
    jsonschema.Draft202012Validator.check_schema(schema)
    assert json.dumps(schema).count('"properties"') == len(list(objects(schema)))
    for one in objects(schema):
        assert set(one["required"]) == set(one["properties"])
        assert name == "settings-record" or one["additionalProperties"] is True
        assert [key for key, told in one["properties"].items() if not told.get("description")] == []
    # As those who have no tests read it: with what it refers to beside it.
    resolver = jsonschema.RefResolver((FOLDER / f"{name}.schema.json").as_uri(), schema)
    for example in schema.get("examples", []):
        jsonschema.Draft202012Validator(schema, resolver=resolver).validate(example)
        jsonschema.Draft202012Validator(schema, resolver=resolver).validate(example | {"a_key_to_come": 1})
        validate(example, name)
        with pytest.raises(jsonschema.ValidationError):
            validate(example | {"a_key_to_come": []}, name)
        with pytest.raises(jsonschema.ValidationError):
            validate({key: example[key] for key in list(example)[1:]}, name)


def test_page():
    result = run(SOURCE / "script" / "json-document", "--check")
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    parts = re.split(r"^## ", PAGE.read_text(), flags=re.M)
    told = {part.split("\n")[0]: re.findall(r"^```json\n(.*?)^```", part, re.M | re.S) for part in parts}
    assert set(SCHEMAS) <= set(told)
    for name, examples in told.items():
        assert examples == [] or name in SCHEMAS
        for example in examples:
            validate(json.loads(example), name)


def test_every_command_has_a_schema_and_a_case():
    printing = {" ".join(["vx63", *words]) for words in LEAVES if "--json" in options_of(*words)}
    assert {command for schema in SCHEMAS.values() for command in schema["x-commands"]} == printing
    cases = {(name, f"vx63 {line} ") for name, line, *_ in CASES}
    for name, schema in SCHEMAS.items():
        for command in schema["x-commands"]:
            assert any(case == name and line.startswith(command + " ") for case, line in cases), (name, command)


def test_words():
    """Of the schemas and of the program: the same."""
    def offered(option):
        text = " ".join(help_of("measure", "single").split())
        return set(re.search(rf"{option} [A-Z]+ [A-Z][a-z ]*: ([^[]*), or its code", text).group(1).split(", "))
    reading = SCHEMAS["reading"]["properties"]
    assert set(reading["system"]["enum"]) - {None} == offered("--system")
    assert set(reading["modulation"]["enum"]) - {None} == offered("--mod")
    kinds = set(re.findall(r"^  \d+ .*\(([a-z-]+)\)$", help_of(), re.M))
    assert set(SCHEMAS["error"]["properties"]["error"]["properties"]["kind"]["enum"]) == kinds | {None}


# ---- answers ----

ROOT = "/usr/local/bin"
BROKEN = f"echo x > {ROOT}/sys_set/system_setting_file_volume.csv"
CHANNEL = "measure single --freq 557143"
NOWHERE = "--freq 600000 --lock-timeout 0"
SATELLITE = "--freq 11727480 --lo 10678000 --system satellite --supply 2"
CABLE = "--freq 231000 --system catv --input 1"
LIST = """echo '[{"channel":"A","frequency_khz":557143,"band":1},{"frequency_khz":80200,"system":10}]' > "$DIR/l" """
HOUSE = """printf 'site = "House"\\nlist = [{ plan = "uhf", channels = "21" }]\\npoint = [{ name = "outlet" }]\\n' > "$DIR/h.toml" """
SURVEYS = "".join(f"cat > \"$DIR/{name}\" <<'END'\n{surveys.results(lines)}END\n" for name, lines in [
    ("good", surveys.good()), ("bad", surveys.bad()[1:])])
FAR = {"measuring": None, "input": None, "measurement_status_code": None}

# What is printed, by which command, after what, with which fault; and what one object of the answer tells.
CASES = [
    ("reading", CHANNEL, "true", "", {"locked": True, "modulation": "OFDM", "guard_interval": "1/8"}),
    ("reading", f"{CHANNEL} --band 1 --channel 27", "true", "", {"channel": "27", "verdict": "pass"}),
    ("reading", f"{CHANNEL} --count 2 --interval 0", "true", "", {"locked": True}),
    ("reading", f"measure single {NOWHERE}", "true", "", {"locked": False, "modulation": None, "ber": None}),
    ("reading", f"measure single {NOWHERE} --count 2 --interval 0", "true", "", {"locked": False}),
    ("reading", f"measure single {SATELLITE}", "true", "", {"modulation": "8PSK", "guard_interval": None}),
    ("reading", f"measure single {CABLE}", "true", "", {"modulation": "64QAM", "input": 1}),
    ("reading", f"{CHANNEL} --system level", "true", "", {"system": "level", "locked": False}),
    ("reading", CHANNEL, "true", "meas/meas-status=ret,2", {"input": None, "power_supply": None}),
    ("reading", CHANNEL, f"echo x > {ROOT}/meas_set/measrement_setting_file_thrd.csv", "", {"verdict": None}),
    ("reading", "live --freq 557143 --count 2 --interval 0", "true", "", {"channel": None}),
    ("reading", "live --channel 27 --count 20 --interval 0", "true", "", {"channel": "27", "locked": True}),
    ("reading", "measure multi --plan uhf", "true", "", {"channel": "30", "verdict": "fail"}),
    ("reading", 'measure multi --conditions "$DIR/l"', LIST, "", {"channel": "2", "system": "level"}),
    ("survey", 'survey "$DIR/h.toml"', HOUSE, "", {"verdict": "pass", "complete": True, "passed": 1}),
    ("reading", "scan --plan lte", "true", "", {"signal": False, "verdict": None}),
    ("reading", "measure single --channel BS-1", "true", "", {"channel": "BS-1", "lo_khz": 10678000}),
    ("plan", "channels", "true", "", {"plan": "uhf", "channels": 40}),
    ("plan", "channels", f"rm -r {ROOT}/ch_set", "", {"plan": "uhf", "channels": 40}),
    *[("channel", f"channels {plan}", "true", "", told) for plan, told in [
        ("uhf", {"channel": "27", "polarisation": None}), ("bs-cs", {"polarisation": "L", "power_supply": 2}),
        ("catv", {"system": "terrestrial"}), ("jsat3a", {"polarisation": "V"}), ("up-stream", {"band": 15})]],
    ("constellation", "measure constellation --freq 557143", "true", "", {"points_modulation": "64QAM"}),
    ("constellation", f"measure constellation {SATELLITE}", "true", "", {"points_modulation": "8PSK"}),
    ("delay-profile", "measure delay-profile --freq 551143", "true", "", {"locked": True}),
    ("optical", "measure optical --wavelength 1490", "true", "", {"wavelength_nm": 1490}),
    ("optical", "measure optical --wavelength 1491", "true", "", {"wavelength_nm": 1491}),
    ("dc", "measure dc", "true", "", {}),
    ("dc", "measure dc --input 1", "true", "", {"dc_v": 28.4}),
    ("angle", "measure angle", "true", "", {"calibrated": False, "heading_deg": None}),
    ("angle", "measure angle", "$VX63 angle calibrate > /dev/null", "", {"calibrated": True}),
    ("angle-calibration", "angle calibrate", "true", "", {"state_code": 4}),
    ("power-supply", "power-supply", "true", "", {"power_supply": 0}),
    ("power-supply", "power-supply", "$VX63 power-supply 2", "", {"power_supply": 2, "voltage_v": 15}),
    ("status", "status", "true", "", {"standby": "none", "missing": [], "input": 0}),
    ("status", "status", "$VX63 power standby", "", {"standby": "meter"}),
    ("status", "status", "$VX63 power standby --measurement", "", {"standby": "measurement"}),
    ("status", "status", "true", "meas=ret,2", FAR | {"standby": None, "missing": ["measurement", "standby"]}),
    ("status", "status", "true", "dev=refuse", {"device": None, "power_supply": None}),
    ("status", "status", "true", "dev=garbage", {"missing": ["power_supply"]}),
    ("info", "info", "true", "", {"model_code": "VX63"}),
    ("info", "info", "true", "sys=garbage", {}),
    ("keys", "keys", "true", "", {"pressed": []}),
    ("keys", "keys", "true", "key=garbage", {"pressed": [*range(17)]}),
    ("failure", "failure show", "true", "", {"present": False}),
    ("failure", "failure show", "$VX63 failure set 258 --info 00ff", "", {"present": True, "code": 258}),
    ("failure", "failure show", "true", "sys=garbage", {}),
    ("power-state", "power state", "true", "", {"standby": "none"}),
    ("power-state", "power state", "$VX63 power standby", "", {"standby": "meter"}),
    ("doctor", "doctor", "true", "", {"healthy": True, "first_wrong": None}),
    ("doctor", "doctor", f"$VX63 power standby; rm -r {ROOT}/user_set_usb1", "", {"healthy": True}),
    ("doctor", "doctor", f"{BROKEN}; rm {ROOT}/ch_set/channel_setting_file_fm.csv", "", {"healthy": False}),
    ("doctor", "doctor", "rm -f /var/log/libvx63.cpp.txt; mkdir /var/log/libvx63.cpp.txt", "", {"healthy": False}),
    *[("doctor", "doctor", "true", f"meas={fault}", {"healthy": False})
      for fault in ("refuse", "ret", "wrong", "stray", "twice", "garbage")],
    ("doctor", "doctor", "true", "dev=cut", {"healthy": False}),
    ("log-line", "log", "$VX63 info > /dev/null", "", {"program": "vx63", "text": None}),
    ("log-line", 'log "$DIR/l"', "printf 'cut sho\\377\\n\\n' > \"$DIR/l\"", "", {"time": None, "text": "cut sho\ufffd"}),
    ("log-line", "log --errors", "true", "", None),
    ("settings-list", "settings list", "true", "", {"present": True, "differs": False, "sets": None}),
    ("settings-list", "settings list", BROKEN, "", {"present": True, "records": None, "differs": None}),
    ("settings-list", "settings list", f"rm -r {ROOT}/*_set*", "", {"present": False}),
    ("settings-list", "settings list", "$VX63 sets create TOKYO --from uhf", "", {"sets": ["TOKYO"]}),
    ("settings-record", "settings show volume", "true", "", {"record": 0, "VOLUME": 0}),
    ("settings-record", "settings show uhf --default", "true", "", {"record": 39}),
    ("settings-record", "settings show user_set/list", f"rm -r {ROOT}/*_set*", "", None),
    ("settings-record", "sets show TOKYO", "$VX63 sets create TOKYO --from uhf", "", {"CH": "13"}),
    ("settings-difference", "settings diff", "true", "", None),
    ("settings-difference", "settings diff", "$VX63 settings set volume 0 VOLUME 3", "", {"value": 3, "other": 0}),
    ("settings-difference", 'settings diff --with "$DIR/a"',
     f'$VX63 settings export "$DIR/a" > /dev/null; $VX63 sets create B --from uhf; rm -r {ROOT}/sys_set', "",
     {"name": "user_set/B", "record": None}),
    ("settings-check", "settings check", "true", "", {"ok": True, "missing": False}),
    ("settings-check", "settings check", f"{BROKEN}; rm -r {ROOT}/meas_set", "", {"ok": False, "line": 1}),
    ("settings-check", "settings check", f"rm -r {ROOT}/meas_set", "", {"missing": True}),
    ("settings-check", "settings check", "$VX63 settings set volume 0 VOLUME 9 --force", "", {"name": "sys_set/volume"}),
    ("settings-description", "settings describe volume", "true", "", {"id": 1}),
    ("settings-description", "settings describe thrd", "true", "", {"name": "meas_set/thrd"}),
    ("settings-description", "settings describe uhf", "true", "", {"records": 40}),
    ("settings-description", "settings describe user_set/list", "true", "", {}),
    ("sets-list", "sets list", "true", "", None),
    ("sets-list", "sets list", "$VX63 sets create A --from uhf; $VX63 sets create B --from uhf", "", {"channels": 40}),
    ("survey-compare", 'survey compare "$DIR/good" "$DIR/bad"', SURVEYS, "", {"quantity": "slope_db", "channel": None}),
    ("survey-compare", 'survey compare "$DIR/bad" "$DIR/good" --all', SURVEYS, "", {"quantity": "ber", "worse": False}),
    ("sets-list", "sets list", f"echo x > '{ROOT}/user_set/B C.csv'", "", {"record": None, "channels": None}),
]


def words_of(line):
    return max((words for words in LEAVES if line.split()[:len(words)] == words), key=len)


@pytest.mark.parametrize("name, line, before, fault, told", CASES, ids=[f"{i}-{case[1]}" for i, case in enumerate(CASES)])
def test_answer(meter, tmp_path, name, line, before, fault, told):
    """In every form that the command has; told None: an empty list."""
    forms = sorted(options_of(*words_of(line)) & {"--json", "--jsonl", "--csv"})
    script = "\n".join([before, *(f'$VX63 {line} {form} > "$DIR/out{form}"' for form in forms), "true"])
    meter.shell(script, fault=fault or ())
    texts = {form: (tmp_path / f"out{form}").read_text() for form in forms}

    answer = json.loads(texts["--json"])
    is_list = "--jsonl" in forms and (words_of(line) != ["measure", "single"] or "--count" in line) and line != "keys"
    assert isinstance(answer, list) == is_list
    answers = answer if is_list else [answer]
    assert (told is None) == (answers == [])
    assert told is None or any(one.items() >= told.items() for one in answers), answers
    for one in answers:
        validate(one, name)

    if "--jsonl" in forms:
        lines = [json.loads(text) for text in texts["--jsonl"].splitlines()]
        assert len(lines) == len(answers) or line.startswith("log")
        for one in lines:
            validate(one, name)
    if "--csv" in forms and name != "settings-record":
        header, *rows = list(csv.reader(io.StringIO(texts["--csv"])))
        assert header == list(answers[0])
        assert {len(row) for row in rows} == {len(header)}


def test_keys_as_they_change(meter, tmp_path):
    meter.show("[[key]]\ntime_ms = 1000\nkey = 16\nduration_ms = 1000\n")
    assert meter.shell("""
        $VX63 keys --watch --interval 0 --jsonl > "$DIR/lines" & pid=$!
        until [ "$(grep -c pressed "$DIR/lines")" -ge 3 ]; do :; done; kill $pid; wait $pid
        $VX63 keys --watch --interval 0 --json > "$DIR/array" & pid=$!
        until grep -q pressed "$DIR/array"; do :; done; kill $pid; wait $pid; true
    """).returncode == 0
    lines = [json.loads(line) for line in (tmp_path / "lines").read_text().splitlines()]
    assert [line["pressed"] for line in lines] == [[], [16], []]
    for one in lines + json.loads((tmp_path / "array").read_text()):
        validate(one, "keys")


# ---- errors ----

@pytest.mark.parametrize("line, before, fault, kind", [
    ("measure single --freq x --jsonl", "true", "", "usage"),
    ("bogus --json", "true", "", "usage"),
    (f"measure single {NOWHERE} --json", "true", "", "no-lock"),
    (f"measure single {NOWHERE} --jsonl --count 2 --interval 0", "true", "", "no-lock"),
    ("scan --plan uhf --json", "true", "meas/multi-start=ret,2", "refused"),
    (f"{CHANNEL} --json", "true", "meas=refuse", "no-answer"),
    (f"{CHANNEL} --jsonl", "$VX63 power standby", "", "asleep"),
    ("scan --plan uhf --check --json", "true", "", "fail"),
    ("status --json", "true", "meas=ret,2", "incomplete"),
    ("doctor --json", BROKEN, "", "unhealthy"),
    ("settings show volume --jsonl", BROKEN, "", "broken"),
    ("sets show A --json", "true", "", "no-input"),
    ("log /nowhere --jsonl", "true", "", "no-input"),
    ("info --json > /dev/full", "true", "", "no-output"),
])
def test_error(meter, line, before, fault, kind):
    result = meter.shell(f"{before}; $VX63 {line}", fault=fault or ())
    [error] = [json.loads(text) for text in result.stderr.splitlines()]
    validate(error, "error")
    assert (error["error"]["kind"], error["error"]["exit_code"]) == (kind, result.returncode)


def test_error_without_a_meter():
    result = alone(VX63, "keys", "--json")
    validate(json.loads(result.stderr), "error")


# ---- the virtual meter ----

def told_in(document, heading):
    section = (SOURCE / "docs" / document).read_text().split(f"## {heading}\n")[1].split("\n## ")[0]
    cells = re.findall(r"^\| (`.*?) \|", section, re.M)
    return {key for cell in cells for key in re.findall(r"`(.*?)`", cell)}


def test_state_of_the_virtual_meter(meter, tmp_path):
    told = told_in("services.md", "Reading the state")
    command = meter.command("sh", "-c", '"$VMETER" state --json', options=["--state-json", tmp_path / "end"])
    result = run(*command, env=environment(VMETER=str(VMETER)))
    for text in result.stdout, (tmp_path / "end").read_text():
        keys = {f"{key}.{inner}" if inner else key for key, value in json.loads(text).items()
                for inner in (value if isinstance(value, dict) else [""])}
        assert {re.sub(r"^product\..*", "product.*", key) for key in keys} == told


def test_trace_of_the_virtual_meter(meter):
    told = told_in("virtual-meter.md", "Trace")
    meter.vx63("info", fault="sys=garbage")
    assert set().union(*meter.messages()) | {"note"} == told
