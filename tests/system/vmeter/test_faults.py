"""Each fault as a client meets it."""

import json

import pytest
from conftest import DEV, MEAS, SYS, VMETER, Client, Process, descendants, message, vmeter

pytestmark = pytest.mark.usefixtures("namespaces")

GET_STATUS = 0x17
STATUS = bytes(12)  # ucRet 0, nothing measured, input 0


def client(*rules, own=17, scene=None, trace=None):
    options = [word for rule in rules for word in ("--fault", rule)]
    if scene:
        options += ["--scene", scene]
    if trace:
        options += ["--trace", trace]
    return Client(VMETER, "run", *options, "--", own=own)


def nothing_more(meter):
    """Every queue is served in turn: when a later request is answered, nothing is to come for an earlier."""
    answer = meter.call(MEAS, 0x7FFF)
    assert answer.command == 0xFFFF and meter.receive(0) is None


def test_silence():
    with client("meas/0x17:1=silence") as meter:
        meter.request(MEAS, GET_STATUS)
        nothing_more(meter)
        assert meter.call(MEAS, GET_STATUS).command == 0x8017


def test_late():
    with client("meas/0x17:1=late,300") as meter:
        assert meter.call(MEAS, GET_STATUS).body == STATUS
        nothing_more(meter)


def test_others_are_served_while_an_answer_is_late():
    with client("meas/0x17:1=late,3600000") as meter:
        meter.request(MEAS, GET_STATUS)
        for _ in range(3):
            assert meter.call(MEAS, GET_STATUS).body == STATUS
        assert meter.receive(0) is None
        assert meter.close() == 0


def test_late_answers_come_when_they_are_due(tmp_path):
    trace = tmp_path / "trace"
    delays = {0x17: 0.6, 0x7001: 0.2, 0x7002: 0.4, 0x7003: 0}
    rules = [f"meas/{command}=late,{int(delay * 1000)}" for command, delay in delays.items()]
    with client(*rules, trace=trace) as meter:
        for command in delays:
            meter.request(MEAS, command)
        for _ in delays:
            meter.receive()
    due, sent = {}, {}
    for line in map(json.loads, trace.read_text().splitlines()):
        command = line["usCmd"] & 0x7FFF
        if line["kind"] == "request":
            due[command] = line["time"] + delays[command]
        else:
            sent[command] = line["time"]
    assert all(sent[command] >= due[command] for command in delays)
    assert sorted(sent, key=sent.get) == sorted(due, key=due.get)


def test_twice():
    with client("meas/0x17:1=twice") as meter:
        first = meter.call(MEAS, GET_STATUS)
        second = meter.receive()
        assert repr(first) == repr(second) and first.body == STATUS
        nothing_more(meter)


@pytest.mark.parametrize("rule, option", [("meas/0x17=refuse", 1), ("meas/0x17=refuse,4", 4),
                                          ("meas/23=refuse,65535", 65535), ("meas/meas-status=refuse,0x1234", 0x1234)])
def test_refuse(rule, option):
    with client(rule) as meter:
        answer = meter.call(MEAS, GET_STATUS)
        assert (answer.command, answer.option, answer.length, answer.body) == (0x8017, option, 0, b"")


@pytest.mark.parametrize("rule, result", [("meas/0x17=ret", 1), ("meas/0x17=ret,2", 2), ("meas=ret,255", 255)])
def test_ret(rule, result):
    with client(rule) as meter:
        answer = meter.call(MEAS, GET_STATUS)
        assert (answer.command, answer.option, answer.body) == (0x8017, 0, bytes([result]) + STATUS[1:])


@pytest.mark.parametrize("rule, command", [("meas/0x17=wrong", 0x8001), ("meas/0x17=wrong,0x104", 0x8104)])
def test_wrong(rule, command):
    with client(rule) as meter:
        answer = meter.call(MEAS, GET_STATUS)
        assert (answer.command, answer.option, answer.body) == (command, 0, STATUS)


@pytest.mark.parametrize("rule, command", [("meas/0x17:1=stray", 0x0001), ("meas/0x17:1=stray,0x18", 0x0018)])
def test_stray(rule, command):
    with client(rule) as meter:
        stray = meter.call(MEAS, GET_STATUS)
        assert (stray.source, stray.destination, stray.command, stray.option) == (MEAS, 17, command, 0)
        assert stray.length == 0 and stray.body == b""
        assert meter.receive().command == 0x8017
        # The refusal with which the library answers is none of the service's business.
        meter.send(MEAS, message(17, MEAS, command | 0x8000, b"", option=4))
        nothing_more(meter)


@pytest.mark.parametrize("rule, length", [("meas/0x17=cut", 1), ("meas/0x17=cut,0", 0), ("meas/0x17=cut,5", 5),
                                          ("meas/0x17=cut,1292", 12)])
def test_cut(rule, length):
    with client(rule) as meter:
        answer = meter.call(MEAS, GET_STATUS)
        assert (answer.command, answer.length, answer.body) == (0x8017, length, STATUS[:length])


@pytest.mark.parametrize("rule, claimed", [("meas/0x17=oversized", 65535), ("meas/0x17=oversized,1293", 1293)])
def test_oversized(rule, claimed):
    with client(rule) as meter:
        answer = meter.call(MEAS, GET_STATUS)
        assert (answer.command, answer.length, answer.body) == (0x8017, claimed, STATUS)


def test_garbage_follows_the_seed():
    def bodies():
        with client("meas/0x17=garbage") as meter:
            return [meter.call(MEAS, GET_STATUS).body for _ in range(3)]

    first = bodies()
    assert [len(body) for body in first] == [12, 12, 12]
    assert len({*first, STATUS}) == 4
    assert bodies() == first


def test_die_and_come_back():
    with client("meas/0x17:1=die", "meas/0x17:3=die,0") as meter:
        meter.request(MEAS, GET_STATUS)
        for _ in range(2):
            # The request that lies in the queue meanwhile is answered by the service that comes back.
            assert meter.call(MEAS, GET_STATUS).body == STATUS
            assert meter.receive(0) is None
            meter.request(MEAS, GET_STATUS)
        meter.receive()


def test_a_dead_service_does_not_hinder_the_others():
    with client("meas/0x17:1=die,3600000") as meter:
        meter.call(SYS, 0x7FFF)  # all of them are there
        names = descendants(meter.process.pid)
        dead = Process(next(pid for pid, name in names.items() if name == "vx63-meas"))
        meter.request(MEAS, GET_STATUS)
        assert meter.call(DEV, 0x22).command == 0x8022
        assert meter.call(SYS, 0x7FFF).command == 0xFFFF
        dead.wait()
        assert "vx63-meas" not in descendants(meter.process.pid).values()
        assert meter.close() == 0


def test_counting():
    """Per rule, over all matching requests, and the first rule that hits wins."""
    with client("meas/0x17:2-3=refuse,2", "meas/0x17:3-=refuse,3", "dev=refuse,9") as meter:
        assert [meter.call(MEAS, GET_STATUS).option for _ in range(5)] == [0, 2, 2, 3, 3]
        assert meter.call(DEV, 0x22).option == 9


def test_counting_goes_on_in_a_service_that_came_back():
    with client("meas/0x17:2=die,0", "meas/0x17:4=refuse,2") as meter:
        assert meter.call(MEAS, GET_STATUS).option == 0
        meter.request(MEAS, GET_STATUS)
        assert [meter.call(MEAS, GET_STATUS).option for _ in range(3)] == [0, 2, 0]


def test_rules_of_the_scene_come_first(tmp_path):
    scene = tmp_path / "scene.toml"
    scene.write_text('[[fault]]\nservice = "meas"\ncommand = "meas-status"\nkind = "refuse"\nvalue = 3\nlast = 1\n')
    with client("meas/0x17=refuse,2", scene=scene) as meter:
        assert [meter.call(MEAS, GET_STATUS).option for _ in range(2)] == [3, 2]


def outcomes(seed, rule, scene, requests=60):
    scene.write_text(f"seed = {seed}\n")
    with client(rule, scene=scene) as meter:
        return [meter.call(MEAS, GET_STATUS).option for _ in range(requests)]


def test_probability_follows_the_seed(tmp_path):
    scene = tmp_path / "scene.toml"
    first = outcomes(1, "meas=refuse,2@0.5", scene)
    assert outcomes(1, "meas=refuse,2@0.5", scene) == first
    assert outcomes(2, "meas=refuse,2@0.5", scene) != first
    assert 10 < first.count(2) < 50
    assert set(outcomes(1, "meas=refuse,2@0", scene, 10)) == {0}
    assert set(outcomes(1, "meas=refuse,2@1", scene, 10)) == {2}


def test_random_mix_follows_the_seed(tmp_path):
    def faults(trace):
        with client("meas=random@0.8", trace=trace) as meter:
            for _ in range(40):
                meter.request(MEAS, GET_STATUS)
                meter.call(DEV, 0x22)
                while meter.receive(0):
                    pass
            # Only a service that is there answers; what died is back when it does.
            meter.close()
        lines = [json.loads(line) for line in trace.read_text().splitlines()]
        return [line.get("fault") for line in lines if line["kind"] == "request" and line["to"] == "meas"]

    first = faults(tmp_path / "first")
    again = faults(tmp_path / "again")
    shorter = min(len(first), len(again))
    assert shorter > 3 and len(set(first)) > 3
    assert first[:shorter] == again[:shorter]


@pytest.mark.parametrize("rule, why", [
    ("meas", "no '=' between the requests and the fault"),
    ("none=silence", "unknown service 'none' (known: sys, dev, key, buz, meas)"),
    ("meas/0x8017=silence", "unknown command '0x8017' of service meas"),
    ("meas/=silence", "no command after '/'"),
    ("meas:0=silence", "requests are counted from 1"),
    ("meas:3-2=silence", "the last request (2) comes before the first (3)"),
    ("meas:x=silence", "request 'x' is not a number"),
    ("meas:-1=silence", "request '' is not a number"),
    ("meas:4294967296=silence", "request '4294967296' is not a number"),
    ("meas=sulk", "unknown fault 'sulk' (known: silence, late,"),
    ("meas=silence,1", "fault 'silence' takes no value"),
    ("meas=refuse,0", "value 0 of fault 'refuse' is not from 1 to 65535"),
    ("meas=ret,256", "value 256 of fault 'ret' is not from 0 to 255"),
    ("meas=late,", "value '' is not a number"),
    ("meas=late,-1", "value '-1' is not a number"),
    ("meas=silence@2", "the probability is not from 0 to 1"),
    ("meas=silence@nan", "the probability is not from 0 to 1"),
    ("meas=silence@x", "probability 'x' is not a number"),
])
def test_bad_rule(rule, why):
    ended = vmeter("run", "--fault", rule, "--", "true")
    assert (ended.returncode, ended.stdout) == (64, "")
    assert ended.stderr.startswith("vx63-vmeter: usage: ") and why in ended.stderr, ended.stderr
    assert ended.stderr.endswith(": see 'vx63-vmeter run --help'\n") and ended.stderr.count("\n") == 1
