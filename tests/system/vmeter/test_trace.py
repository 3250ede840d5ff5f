"""The trace: every message, both ways, as JSON lines."""

import json
import time

import pytest
from conftest import DEV, MEAS, VMETER, Client, message, vmeter

pytestmark = pytest.mark.usefixtures("namespaces")


def lines_of(path):
    return [json.loads(line) for line in path.read_text().splitlines()]


def test_a_request_and_its_response(tmp_path):
    trace = tmp_path / "trace"
    trace.write_text("what was there before\n")
    before = time.time()
    with Client(VMETER, "run", "--trace", trace, "--") as client:
        client.call(MEAS, 0x17)
        # Whoever has the answer finds it in the trace.
        lines = lines_of(trace)
    assert len(lines) == 2
    for line in lines:
        assert before - 1 <= line.pop("time") <= time.time() + 1
    assert lines[0] == {"sim_ms": 0, "from": "client 17", "to": "meas", "from_id": 17, "to_id": 12,
                        "command": "meas-status", "kind": "request", "ucSrcId": 17, "ucDstId": 12, "usCmd": 0x17,
                        "usDataLen": 4, "usOptOrRet": 0, "body": "00000000"}
    assert lines[1] == {"sim_ms": 100, "from": "meas", "to": "client 17", "from_id": 12, "to_id": 17,
                        "command": "meas-status", "kind": "response", "ucSrcId": 12, "ucDstId": 17,
                        "usCmd": 0x8017, "usDataLen": 12, "usOptOrRet": 0, "body": "00" * 12}
    assert list(lines[0])[:4] == ["sim_ms", "from", "to", "from_id"]


def test_an_unknown_command_is_named_by_its_code(tmp_path):
    with Client(VMETER, "run", "--trace", tmp_path / "trace", "--") as client:
        client.call(DEV, 0x7A)
    request, response = lines_of(tmp_path / "trace")
    assert (request["command"], response["command"]) == ("0x007A", "0x007A")
    assert (request["sim_ms"], response["sim_ms"], response["usOptOrRet"]) == (0, 0, 1)


@pytest.mark.parametrize("data, note", [
    (message(17, MEAS, 0x17, b"\0" * 4, length=5), "ignored: shorter than its header claims"),
    (message(17, MEAS, 0x8017, b"\0" * 4), "ignored: a response to a service"),
    (message(77, MEAS, 0x17), "ignored: no such client"),
    (b"\x11\x0c\x17", "ignored: shorter than a header"),
])
def test_what_is_ignored(tmp_path, data, note):
    with Client(VMETER, "run", "--trace", tmp_path / "trace", "--") as client:
        client.send(MEAS, data)
        assert client.call(MEAS, 0x17).command == 0x8017
        assert client.receive(0) is None
    ignored, request, _ = lines_of(tmp_path / "trace")
    assert ignored["note"] == note
    assert ignored["body"] == (data[8:] if len(data) >= 8 else data).hex()
    assert "note" not in request
    assert request["sim_ms"] == 0


def test_a_body_longer_than_its_header_claims_is_served_as_claimed(tmp_path):
    with Client(VMETER, "run", "--trace", tmp_path / "trace", "--") as client:
        client.send(MEAS, message(17, MEAS, 0x17, b"\1" * 1292, length=4))
        assert client.receive().body == bytes(12)
    assert lines_of(tmp_path / "trace")[0]["body"] == "01" * 1292


def test_a_client_without_an_id_is_answered():
    with Client(VMETER, "run", "--", own=255) as client:
        assert client.call(MEAS, 0x17).destination == 255


def test_answers_to_a_full_queue_are_dropped(tmp_path):
    """A client that does not read delays the others for a moment only."""
    with Client(VMETER, "run", "--trace", tmp_path / "trace", "--") as client:
        assert client.call(MEAS, 0x17).option == 0
        filled = 0
        while not any("note" in line for line in lines_of(tmp_path / "trace")):
            client.request(MEAS, 0x17)
            filled += 1
            client.own = 16
            client.call(MEAS, 0x17)
            client.own = 17
        got = 0
        while client.receive(0):
            got += 1
        assert got == filled - 1
        assert client.call(MEAS, 0x17).command == 0x8017
    dropped = [line for line in lines_of(tmp_path / "trace") if "note" in line]
    assert [line["note"] for line in dropped] == ["dropped: the client's queue is full"]
    assert (dropped[0]["kind"], dropped[0]["to"]) == ("response", "client 17")


def test_faults_are_told(tmp_path):
    with Client(VMETER, "run", "--trace", tmp_path / "trace", "--fault", "meas=stray", "--") as client:
        client.call(MEAS, 0x17)
        client.receive()
    request, stray, response = lines_of(tmp_path / "trace")
    assert [line["fault"] for line in (request, stray, response)] == ["stray"] * 3
    assert (stray["kind"], stray["from"], stray["to"], stray["command"]) == ("request", "meas", "client 17", "0x0001")


def test_five_services_write_whole_lines(tmp_path):
    trace = tmp_path / "trace"
    clients = 4
    script = " & ".join(f"(for i in 1 2 3 4 5 6 7 8 9 10; do printf '%s\\n' 'send {12 if i % 2 else 6} "
                        f"{message(10 + i if 10 + i != 12 else 17, 12 if i % 2 else 6, 0x17, b'x' * 1292).hex()}' "
                        f"'receive {10 + i if 10 + i != 12 else 17} 60000'; done | "
                        f"{VMETER.parent / 'vmeter_exchange'})" for i in range(1, clients + 1)) + " & wait"
    ended = vmeter("run", "--trace", trace, "--", "sh", "-c", script)
    assert ended.returncode == 0
    assert ended.stdout.count('"message"') == 10 * clients
    assert len(lines_of(trace)) == 2 * 10 * clients


def test_trace_that_cannot_be_written(tmp_path):
    for command in ("run", "serve"):
        ended = vmeter(command, "--trace", tmp_path / "no" / "trace", "--", "echo", "started")
        assert (ended.returncode, ended.stdout) == (125, "")
        assert ended.stderr == (f"vx63-vmeter: {tmp_path}/no/trace: No such file or directory: "
                                "give a file that you may write to with --trace\n")


def test_full_disk_disturbs_nobody():
    with Client(VMETER, "run", "--trace", "/dev/full", "--") as client:
        for _ in range(3):
            assert client.call(MEAS, 0x17).option == 0
        assert client.close() == 0


def test_trace_into_a_private_folder_comes_out():
    """The path is the caller's, not one inside."""
    ended = vmeter("run", "--trace", "/dev/stderr", "--", "sh", "-c", "exit 0")
    assert ended.returncode == 0
