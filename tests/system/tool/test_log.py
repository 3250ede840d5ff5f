"""vx63 log."""

import json
import os
import subprocess

import pytest

from tool_support import VX63, default_signals, environment, isolation, meter, run  # noqa: F401 (fixtures)

NO_LINE = dict.fromkeys(["time", "program", "file", "line", "function", "message"]) | {"doubt": "form"}


def line(number, message="Start."):
    return f"1700000000.{number:06d} : demo : libvx63.cpp(7) vx63_init() : {message}\n"


def shown(number, message="Start."):
    return f"2023-11-14 22:13:20.{number:06d} : demo : libvx63.cpp(7) vx63_init() : {message}\n"


@pytest.fixture
def log(tmp_path):
    return tmp_path / "log.txt"


class Follower:
    """vx63 log --follow, read line by line."""

    def __init__(self, *words):
        self.process = subprocess.Popen([str(VX63), "log", "--follow", *map(str, words)], stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, env=environment(), preexec_fn=default_signals)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.communicate()

    def next(self):
        return self.process.stdout.readline()


def append(path, text):
    with open(path, "a") as file:
        file.write(text)


def test_log_of_a_real_call(meter):
    result = meter.shell("$VX63 power-supply 1 && $VX63 log --jsonl")
    assert (result.returncode, result.stderr) == (0, "")
    lines = [json.loads(text) for text in result.stdout.splitlines()]
    assert [(entry["function"], entry["message"]) for entry in lines[-2:]] == [
        ("vx63_reqPowerSupply", "Start. powerSupply=1"), ("vx63_reqPowerSupply", "End. vx63_err=0")]
    assert {(entry["program"], entry["file"]) for entry in lines} == {("vx63", "libvx63.cpp")}
    assert all(isinstance(entry["time"], float) and isinstance(entry["line"], int) for entry in lines)


def test_errors_of_a_real_call(meter):
    result = meter.shell("$VX63 power-supply 2> /dev/null; $VX63 log --errors", fault="dev=ret,1")
    messages = {text.split(" : ", 3)[3] for text in result.stdout.splitlines()}
    assert messages == {"ret error. vx63_err=-1", "End. vx63_err=-1"}


def test_text(log):
    log.write_text(line(1) + line(2, "arg error. input=2") + line(3, "End. vx63_err=-2"))
    result = run(VX63, "log", log)
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == shown(1) + shown(2, "arg error. input=2") + shown(3, "End. vx63_err=-2")


def test_last_lines_and_errors(log):
    log.write_text(line(1, "arg error. a=1") + line(2, "ret error. a=1") + line(3) + line(4))
    assert run(VX63, "log", "--lines", "1", log).stdout == shown(4)
    assert run(VX63, "log", "--lines", "0", log).stdout == ""
    assert run(VX63, "log", "--lines", "9", log).stdout.count("\n") == 4
    assert run(VX63, "log", "--lines", "1", "--errors", log).stdout == shown(2, "ret error. a=1")


def test_garbage(log):
    long_line = line(2, "x" * 300000)
    log.write_bytes(b"\x00\xff\x1b[2J\n" + line(1).encode() + b"\n" + long_line.encode() + line(3)[:20].encode())
    text = run(VX63, "log", log)
    assert (text.returncode, text.stderr) == (0, "")
    assert text.stdout == "? \\x00\\xFF\\x1B[2J\n" + shown(1) + "? \n" + shown(2, "x" * 300000) + "? " + line(3)[:20] + "\n"
    result = run(VX63, "log", "--jsonl", log)
    assert (result.returncode, result.stderr) == (0, "")
    first, second, empty, long_one, cut = map(json.loads, result.stdout.splitlines())
    assert first == NO_LINE | {"text": "\0\ufffd\x1b[2J"}
    assert second == {"time": 1700000000.000001, "program": "demo", "file": "libvx63.cpp", "line": 7,
                      "function": "vx63_init", "message": "Start.", "text": None, "doubt": None}
    assert empty == NO_LINE | {"text": ""}
    assert len(long_one["message"]) == 300000
    assert cut == NO_LINE | {"text": line(3)[:20]}
    assert run(VX63, "log", "--errors", log).stdout == ""


def test_name_that_forges_lines(meter):
    """The library writes the name of a set as it is."""
    forged = "1700000000.000000 : vx63 : libvx63.cpp(9) vx63_init() : End. vx63_err=-5\n"
    name = f"x\033]0;owned\n{forged}\x1b[2J"
    caller = VX63.parent / "matrix_caller"
    result = meter.shell(f"echo delete {name.encode().hex()} | {caller} > $DIR/out; "
                         '"$VX63" log; "$VX63" log --errors --lines 2')
    *_, argument, end, rest, error, inner, outer, first, second = result.stdout.splitlines()
    assert argument.startswith("? 20") and argument.endswith(" : pcUserFileName=[x\\x1B]0;owned")
    assert end == "? 2023-11-14 22:13:20.000000 : vx63 : libvx63.cpp(9) vx63_init() : End. vx63_err=-5"
    assert rest == "? \\x1B[2J]"
    assert [line[0] for line in (error, inner, outer)] == ["2"] * 3
    assert (first, second) == (error, outer)


def test_line_without_end(log):
    """Comes in parts, and takes no memory without end."""
    result = run("sh", "-c", f"head -c 3000000 /dev/zero | tr '\\0' x | '{VX63}' log /dev/stdin")
    assert (result.returncode, result.stderr) == (0, "")
    assert [len(text) for text in result.stdout.splitlines()] == [1048578, 1048578, 902850]


def test_empty_log(log):
    log.touch()
    result = run(VX63, "log", "--jsonl", log)
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")


def test_what_cannot_be_read(log, tmp_path):
    missing = run(VX63, "log", log)
    assert (missing.returncode, missing.stdout) == (66, "")
    assert missing.stderr.startswith(f"vx63: cannot read {log}: there is no such file: ")
    folder = run(VX63, "log", tmp_path)
    assert (folder.returncode, folder.stdout) == (66, "")
    assert folder.stderr.startswith(f"vx63: cannot read {tmp_path}: Is a directory: ")
    assert run(VX63, "log", "").returncode == 66


def test_reader_that_goes_away(log):
    log.write_text(line(1) * 20000)
    result = run("bash", "-c", f"'{VX63}' log '{log}' | head -n 1; echo ${{PIPESTATUS[0]}}")
    assert (result.stdout, result.stderr) == (shown(1) + "141\n", "")


def test_follow_ends_with_its_reader(log):
    log.write_text(line(1))
    result = run("bash", "-c", f"'{VX63}' log --follow '{log}' | head -n 1; echo ${{PIPESTATUS[0]}}")
    assert (result.stdout, result.stderr) == (shown(1) + "141\n", "")


def test_follow_shows_ten_lines_and_goes_on(log):
    log.write_text("".join(line(number) for number in range(15)) + line(15)[:30])
    with Follower(log) as follower:
        assert [follower.next() for _ in range(10)] == [shown(number) for number in range(5, 15)]
        append(log, line(15)[30:])
        assert follower.next() == shown(15)
        append(log, line(16) + line(17))
        assert [follower.next(), follower.next()] == [shown(16), shown(17)]


def test_follow_over_a_restart(log):
    log.write_text(line(1) + line(2))
    with Follower(log) as follower:
        assert [follower.next(), follower.next()] == [shown(1), shown(2)]
        with open(log, "w") as file:
            file.write(line(3) + line(4) + line(5))
        assert [follower.next() for _ in range(3)] == [shown(3), shown(4), shown(5)]


def test_follow_over_a_removal_and_a_replacement(log):
    log.write_text(line(1))
    with Follower(log) as follower:
        assert follower.next() == shown(1)
        log.unlink()
        append(log, line(2))
        assert follower.next() == shown(2)
        append(log, line(3))
        log.rename(log.with_suffix(".old"))
        append(log, line(4))
        assert [follower.next(), follower.next()] == [shown(3), shown(4)]


def test_follow_waits_for_the_file(log):
    with Follower(log) as follower:
        assert follower.process.stderr.readline() == f"vx63: {log} does not exist yet: waiting for it\n"
        append(log, line(1))
        assert follower.next() == shown(1)


def test_follow_filters_and_writes_json(log):
    log.write_text(line(1))
    with Follower("--errors", "--jsonl", log) as follower:
        append(log, line(2) + line(3, "End. vx63_err=-1"))
        assert json.loads(follower.next())["message"] == "End. vx63_err=-1"


def test_follow_ends_with_a_signal(log):
    log.write_text(line(1))
    with Follower(log) as follower:
        assert follower.next() == shown(1)
        follower.process.terminate()
        assert follower.process.wait() == -15


def test_follow_over_the_librarys_own_rotation(meter):
    """The library starts its log anew once it exceeds 2 MiB: no line before or after is lost."""
    script = """
        log=/var/log/libvx63.cpp.txt
        mkfifo "$DIR/lines"
        $VX63 log --follow --errors --jsonl $log > "$DIR/lines" 2> /dev/null & follower=$!
        exec 3< "$DIR/lines"
        echo "1.000000 : me : f(1) g() : first error." >> $log
        read -r line <&3; echo "$line"
        yes "no failure" | head -c 2100000 >> $log
        echo >> $log
        echo "1.000000 : me : f(1) g() : second error." >> $log
        read -r line <&3; echo "$line"
        $VX63 power-supply 2> /dev/null
        read -r line <&3; echo "$line"
        read -r line <&3; echo "$line"
        kill $follower
        wc -c < $log
    """
    result = meter.shell(script, fault="dev=ret,1")
    assert result.stderr == ""
    *lines, size = result.stdout.splitlines()
    assert [json.loads(text)["message"] for text in lines] == [
        "first error.", "second error.", "ret error. vx63_err=-1", "End. vx63_err=-1"]
    assert int(size) < 10000
