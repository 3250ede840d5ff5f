"""Every operation that asks a service, under every fault of the virtual meter.

For each cell: the documented result, the record as it was (or exactly as documented), the log lines of the
failure, the messages with their time-outs - and the next call works. A meter runs for each fault; in it, one
client calls all operations in turn, and one request of each is hit. Waiting is left out: where no answer
comes, the library's wait is over at once, and the time-out that it asked for is compared.
"""

import re
import struct
import time

import pytest
from conftest import BUILD, VMETER, Client, run
from operations import ASK_NO_SERVICE, COMM, OK, OPERATIONS, SERVICE_NAMES, UPDATE, delay_profile

pytestmark = pytest.mark.usefixtures("namespaces")

CALLER = BUILD / "bin" / "matrix_caller"
CLIENTS = 17, 16  # a thread that is out of step goes on with the other id

ROWS = [row for row in OPERATIONS if not isinstance(row, str)]
PLAIN = {row.name: row for row in reversed(ROWS)}  # the first of those that differ by the request that is hit

# One channel; an update of two requests; a reboot takes no time.
SCENE = """
clock_ms = 1000
power = { reboot_ms = 0 }
update = { steps = 1 }
light = [{ wavelength_nm = 1550, power_dbm = -8 }]

[[input]]
id = 0
dc_v = 12
lnb = { current_ma = 160 }

[[signal]]
input = 0
frequency_khz = 557143
system = "terrestrial"
carriers = "64QAM"
level_dbuv = 70
cn_db = 33
tsid = 0x7FE0
"""

IN_TIME = "late,20"  # late, but not too late

FAULTS = ["silence", "late,1", IN_TIME, "twice", "refuse,1", "refuse,4", "refuse,65535", "wrong", "stray", "die,0",
          *(f"ret,{ret}" for ret in (0, 1, 2, 3, 4, 5, 6, 7, 8, 255)),
          "cut,0", "cut,1", "cut,4", "cut,46", "oversized,1293", "oversized,65535", "garbage"]

# How many requests the call that is hit sends when it does not end at that request, or not after the usual
# number. A profile is asked for block by block until the right one comes; an update until it is finished.
REQUESTS = {
    ("vx63_getDlyPrfResult@1", "twice"): 11,  # from then on each block is asked for twice
    ("vx63_getDlyPrfResult@3", "twice"): 9,
    ("vx63_getDlyPrfResult@1", "cut,0"): 1,  # block 0, no data
    ("vx63_getDlyPrfResult@1", "cut,1"): 1,
    ("vx63_getDlyPrfResult@1", "cut,4"): 1,
    ("vx63_getDlyPrfResult@3", "cut,0"): 7,  # block 0 instead of 2
    ("vx63_getDlyPrfResult@3", "cut,1"): 7,
    ("vx63_getDlyPrfResult@3", "cut,4"): 7,
    ("vx63_prgUpdate@1", "twice"): 3,  # "goes on" twice, then "finished"
    ("vx63_prgUpdate@1", "ret,3"): 1,
    ("vx63_prgUpdate@2", "ret,0"): 4,  # "finished" is not heard: another update
    ("vx63_prgUpdate@2", "cut,0"): 4,
}
# The same of the call that takes the stale answer for its own.
REQUESTS_WITH_STALE = {
    "vx63_getDlyPrfResult@1": 11,
    "vx63_getDlyPrfResult@3": 12,
    "vx63_prgUpdate@1": 2,
    "vx63_prgUpdate@2": 1,
}


ANY = "as many as the answers make it"


class Messages:
    """The messages of a call: what was sent, and what was received."""

    def __init__(self, answer):
        self.sent = [message for message in answer["messages"] if "sent" in message]
        self.received = [message for message in answer["messages"] if "received" in message]

    def bodies(self, command):
        """Bodies of the responses to `command` that were accepted; no message carries more than 1292 bytes."""
        found = []
        for message in self.received:
            data = bytes.fromhex(message["received"])
            if message["result"] == 0:
                _, _, code, length, option = struct.unpack("<BBHHH", data[:8])
                if (code, option) == (command | 0x8000, 0):
                    found.append(data[8:8 + length].ljust(min(length, 1292), b"\0"))
        return found


def log_lines(answer):
    lines = []
    for line in answer["log"]:
        parts = re.match(r"-?\d+\.\d{6} : matrix_caller : libvx63\.cpp\(\d+\) (\w+)\(\) : (.*)$", line)
        if parts:  # spoiled texts can have line feeds
            lines.append(parts.groups())
    return lines


class Cell:
    """One operation under one fault: the checks of a call."""

    def __init__(self, fault, row, own):
        self.fault, self.row, self.own = fault, row, own

    def expect(self, real, wanted, what, answer):
        if real != wanted:
            pytest.fail(f"{self.row.id} under {self.fault}: {what}: {real!r} instead of {wanted!r}: {answer}",
                        pytrace=False)

    def same_lines(self, real, wanted, answer):
        matches = len(real) == len(wanted) and all(
            function == by and (text.fullmatch(line) if isinstance(text, re.Pattern) else text == line)
            for (function, line), (by, text) in zip(real, wanted))
        if not matches:
            self.expect(real, wanted, "log", answer)

    def requests(self, answer, count, refusal=None):
        """`count` requests of the row, and for each a wait; behind them the refusal of a request, if any."""
        row, messages = self.row, Messages(answer)
        count = len(messages.sent) if count is ANY else count
        head = struct.pack("<BBHHH", self.own, row.service, row.command, row.length, 0).hex()
        for message in messages.sent[:count]:
            self.expect(message["sent"][:16], head, "request", answer)
            self.expect(len(message["sent"]), 2 * (8 + row.length), "digits of the request", answer)
        for message in messages.sent[count:]:
            self.expect(message["sent"], refusal, "refusal", answer)
        for message in messages.sent:
            self.expect((message["queue"], message["timeout"], message["result"]), (row.service, row.timeout, 0),
                        "sending", answer)
        for message in messages.received:
            self.expect((message["queue"], message["timeout"]), (self.own, row.timeout), "waiting", answer)
        self.expect(len(messages.sent), count + (refusal is not None), "messages sent", answer)
        self.expect(len(messages.received), count, "waits", answer)

    def record(self, answer, wanted):
        if set(wanted) <= {0xA5}:
            wanted = None
        self.expect(answer["record"], wanted and wanted.hex(), "record", answer)
        self.expect(answer["guard"], True, "bytes behind the record untouched", answer)

    def end(self, result):
        return [(self.row.function, f"End. vx63_err={result}")] if self.row.ends else []

    def succeeded(self, answer):
        row = self.row
        self.expect(answer["result"], OK, "result", answer)
        self.record(answer, row.written(Messages(answer).bodies(row.command)))
        lines = log_lines(answer)
        self.same_lines(lines[-1:] if row.ends else [], self.end(OK), answer)
        self.expect([line for _, line in lines if "error" in line], [], "errors in the log", answer)
        if row.name in ("vx63_getKeyStatus", "vx63_getDeviceStatus"):
            self.expect(lines, [], "lines of a silent operation", answer)
        self.expect(answer["keys"], [], "lines in the key log", answer)

    def failed(self, answer, result, lines):
        """The last lines of the log are these and the end; no error stands before them."""
        row = self.row
        self.expect(answer["result"], result, "result", answer)
        # A profile keeps the blocks that were complete; everything else is as it was.
        partial = row.record is delay_profile
        self.record(answer, delay_profile(Messages(answer).bodies(row.command)) if partial else b"")
        lines = lines + self.end(result)
        logged = log_lines(answer)
        self.same_lines(logged[-len(lines):], lines, answer)
        self.expect([line for _, line in logged[:-len(lines)] if "error" in line], [], "earlier errors", answer)

    def refused_by(self, answer, ret):
        """The service's ucRet says why."""
        self.failed(answer, self.row.result(ret), [(self.row.logger or self.row.function, self.row.text(ret))])
        self.expect(answer["keys"], [], "lines in the key log", answer)

    def no_answer(self, answer, lines):
        """The transport says why."""
        row = self.row
        self.failed(answer, COMM, [*(("vx63_sndRcvCommon", line) for line in lines),
                                   (row.logger or row.function, f"{row.failed} communication error. vx63_err=-1")])
        keys = [line.split(" : ")[-1] for line in answer["keys"]]
        if row.name == "vx63_getKeyStatus":  # the key states as the caller has them
            self.expect(keys, [f"pKeyStat->stat[{key}]=-1515870811" for key in range(17)], "key log", answer)
        else:
            self.expect(keys, [], "key log", answer)

    def another(self, code, source, is_request=False):
        """Lines of a message that is not the answer."""
        row = self.row
        sent = f"lmsg_tsndMq(pSndMsg->head.ucDstId={row.service}, pSndMsg->head.ucSrcId={self.own}), "
        came = (f"lmsg_trcvMq(ucSrcId={self.own}, pRcvMsg->head.ucSrcId={source}, "
                f"pRcvMsg->head.ucDstId={self.own})")
        if is_request:
            last = sent + came
        else:
            pointer = "0x[0-9a-f]+"
            last = re.compile(re.escape(sent) + f"pSndMsg={pointer}, " + re.escape(came) + f", pRcvMsg={pointer}")
        return [f"cmd error. usCmd(Req)={row.command:04X}, usCmd(Rsp)={code:04X}",
                re.compile(rf"s_procId={self.own} getpid\(\)=\d+ pthread_self\(\)=-?\d+"), last]


TIMEOUT = ["lmsgrcvMq() timeout error. lmsg_err=-4"]


class Session:
    """What a client does with a meter, planned first: a fault rule names its request by number."""

    def __init__(self, fault=""):
        self.take(fault)
        self.rules = []
        self.steps = []  # orders, and what is to become of each
        self.counts = {}  # requests so far, by service and command
        self.updating = False  # between the two requests of an update
        self.own = CLIENTS[0]
        self.order(f"init {self.own}", {"result": OK})

    def take(self, fault):
        """The fault of the cells from here on."""
        self.fault = fault
        self.kind, _, value = fault.partition(",")
        self.value = int(value or 0)

    def order(self, order, wanted):
        def check(answer):
            assert answer == wanted, order
        self.steps.append((order, check))

    def call(self, row, check, requests=None, hit=None, over=None, refusal=None):
        """`check` gets the cell and the answer. Without `requests` it is the number of an undisturbed call."""
        if requests is None:
            requests = 1 if row.results is UPDATE and self.updating else row.requests
        place = row.service, row.command
        before = self.counts.get(place, 0)
        if hit:
            self.rules.append(f"{SERVICE_NAMES[row.service]}/0x{row.command:X}:{before + hit}={self.fault}")
        if requests is not ANY:
            self.counts[place] = before + requests
            done = requests - (1 if hit and self.kind in ("refuse", "die") else 0)  # those were not carried out
            if row.results is UPDATE and done % 2:
                self.updating = not self.updating
        cell = Cell(self.fault, row, self.own)

        def checked(answer):
            cell.requests(answer, requests, refusal)
            check(cell, answer)
        self.steps.append((f"call {row.name}" + (f" over {over}" if over else ""), checked))

    def works(self, row):
        self.call(row, Cell.succeeded)

    def meets(self, row, code, source):
        """The call meets the response to another one."""
        self.call(row, lambda cell, answer: cell.no_answer(answer, cell.another(code, source)), row.at)

    def times_out(self, row, **more):
        self.call(row, lambda cell, answer: cell.no_answer(answer, TIMEOUT), row.at, over=row.at, **more)

    def message_comes(self):
        self.order(f"await {self.own}", {"result": 0})

    def fresh_id(self, row):
        """With an id whose queue is empty the thread is in step again; one message was left in the old queue."""
        old, self.own = self.own, sum(CLIENTS) - self.own
        self.order(f"init {self.own}", {"result": OK})
        self.works(row)
        self.order(f"await {old}", {"result": 0})
        self.order(f"drain {old}", {"messages": 1})

    def ends_out_of_step(self, row):
        """The answer to the call before lies in the queue."""
        other = PLAIN["vx63_getProductInfo" if row.name == "vx63_getKeyStatus" else "vx63_getKeyStatus"]
        off = row.name == "vx63_shutdown"
        self.message_comes()
        if self.kind != "twice":
            # The same command takes the stale answer for its own.
            self.call(row, Cell.succeeded, REQUESTS_WITH_STALE.get(row.id))
            if off:
                return
            self.message_comes()
        # Another command fails, and its own answer is left.
        self.meets(other, row.command | 0x8000, row.service)
        if off:
            return
        self.message_comes()
        if self.kind == "twice":
            self.works(other)
        self.fresh_id(row)

    def next_works(self, row):
        """... unless the meter was switched off by the call that was hit."""
        if row.name == "vx63_shutdown" and self.kind not in ("refuse", "die"):
            self.times_out(row)
        else:
            self.works(row)

    def hit(self, row):
        """The cell: the call that is hit, and those behind it."""
        usual = REQUESTS.get((row.id, self.fault))
        if self.kind in ("silence", "die"):
            self.times_out(row, hit=row.at)
            self.next_works(row)
        elif self.fault == IN_TIME:
            self.call(row, Cell.succeeded, hit=row.at)
            self.next_works(row)
        elif self.kind == "late":
            self.times_out(row, hit=row.at)
            self.ends_out_of_step(row)
        elif self.kind == "twice":
            self.call(row, Cell.succeeded, usual, hit=row.at)
            self.ends_out_of_step(row)
        elif self.kind == "refuse":
            lines = [f"ret error. usOptOrRet={self.value:04X}"]
            self.call(row, lambda cell, answer: cell.no_answer(answer, lines), row.at, hit=row.at)
            self.next_works(row)
        elif self.kind == "wrong":
            def not_the_answer(cell, answer):
                cell.no_answer(answer, cell.another(0x8001, row.service))
            self.call(row, not_the_answer, row.at, hit=row.at)
            self.next_works(row)
        elif self.kind == "stray":
            def not_even_an_answer(cell, answer):
                cell.no_answer(answer, cell.another(0x0001, row.service, is_request=True))
            refusal = struct.pack("<BBHHH", self.own, row.service, 0x8001, 0, 4).hex()
            self.call(row, not_even_an_answer, row.at, hit=row.at, refusal=refusal)
            self.ends_out_of_step(row)
        elif self.kind == "ret":
            asked_again = row.results is UPDATE and self.value == 0
            if asked_again or row.result(self.value) == OK:
                self.call(row, Cell.succeeded, usual, hit=row.at)
            else:
                ret = self.value
                self.call(row, lambda cell, answer: cell.refused_by(answer, ret), row.at, hit=row.at)
            self.next_works(row)
        elif self.kind in ("cut", "oversized"):
            # What the message does not carry is 0, and so is a ucRet.
            self.call(row, Cell.succeeded, usual, hit=row.at)
            self.next_works(row)
        else:
            assert self.kind == "garbage"
            requests = 1 if row.requests == 1 else ANY
            self.call(row, garbage, requests, hit=row.at)
            if row.name == "vx63_shutdown":
                self.times_out(row)
            else:
                self.call(row, Cell.succeeded, requests)

    def run(self, scene):
        rules = [word for rule in self.rules for word in ("--fault", rule)]
        with Client(VMETER, "run", "--scene", scene, *rules, "--", program=CALLER) as client:
            for order, check in self.steps:
                check(client.order(order))


def garbage(cell, answer):
    """The first random byte is the ucRet, where there is one."""
    row = cell.row
    sent = len(Messages(answer).sent)
    body = Messages(answer).bodies(row.command)[row.at - 1]
    ret = body[0]
    if row.results is UPDATE and ret == 0:  # asked again
        cell.succeeded(answer)
        cell.expect(sent, 2 * row.at, "requests", answer)
    elif row.result(ret) != OK:
        cell.refused_by(answer, ret)
        cell.expect(sent, row.at, "requests", answer)
    elif row.record is delay_profile:
        assert int.from_bytes(body[6:8], "little") != row.at - 1, "the right block by chance: take another seed"
        cell.succeeded(answer)
        cell.expect(sent, row.requests + 1, "requests", answer)
    else:
        cell.succeeded(answer)
        cell.expect(sent, row.at if row.results is UPDATE else row.requests, "requests", answer)


@pytest.fixture
def scene(tmp_path):
    file = tmp_path / "scene.toml"
    file.write_text(SCENE)
    return file


def test_no_operation_is_forgotten():
    symbols = run("nm", "-D", "--defined-only", BUILD / "lib" / "libvx63.so")
    assert symbols.returncode == 0, symbols.stderr
    exported = {line.split()[2].split("@")[0] for line in symbols.stdout.splitlines() if line.split()[1] == "T"}
    told = {row.function for row in ROWS}
    assert not told & ASK_NO_SERVICE
    assert exported == told | ASK_NO_SERVICE


def sessions(fault):
    """All rows with one meter. Where it is up to random bytes how many requests a call takes, nothing can be
    planned behind it: such rows have a meter each."""
    apart = [row for row in ROWS if fault == "garbage" and row.requests > 1]
    for alone in [None, *apart]:
        session = Session(fault)
        for row in OPERATIONS:
            if isinstance(row, str):
                session.works(PLAIN[row])
            elif row is alone or (alone is None and row not in apart):
                session.hit(row)
                if row is alone:
                    break
            else:
                session.works(row)
        yield session


@pytest.mark.parametrize("fault", FAULTS)
def test_fault(fault, scene):
    for session in sessions(fault):
        session.run(scene)


def test_a_real_time_out(scene):
    row = PLAIN["vx63_setPowerSupplyMultiMeasMixBand"]  # 5 s, the shortest
    with Client(VMETER, "run", "--scene", scene, "--fault", "meas/0x1C:1=silence", "--",
                program=CALLER) as client:
        client.order("init 17")
        begin = time.monotonic()
        answer = client.order(f"call {row.name}")
        assert time.monotonic() - begin >= 5
        Cell("silence", row, 17).no_answer(answer, TIMEOUT)
        Cell("silence", row, 17).succeeded(client.order(f"call {row.name}"))
