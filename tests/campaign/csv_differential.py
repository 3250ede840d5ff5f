#!/usr/bin/python3
"""csv_differential.py SECONDS SEED: writes and reads random and mutated settings files through liblsys.so, and holds
results, records and bytes against a reader and a writer that follow docs/settings-files.md a byte at a time."""

import ctypes
import os
import random
import re
import sys
import tempfile
import time
from pathlib import Path

OK, VERSION, COLUMNS, NUMBER, RANGE, TEXT, QUOTE, CUT, RECORDS, BINARY = 0, -5, -6, -7, -8, -9, -10, -11, -12, -13
FILL = 0xA5


class Column(ctypes.Structure):
    _fields_ = [("type", ctypes.c_uint32), ("width", ctypes.c_uint32), ("offset", ctypes.c_uint32)]

    def is_text(self):
        return self.type == 6


class Refused(Exception):
    pass


def is_control(byte):
    return byte < 0x20 or byte == 0x7F


def number(column, digits):
    """The bytes of a field."""
    if digits in (b"", b"-"):
        raise Refused(NUMBER)
    value, signed = int(digits), column.type == 4
    bits = 8 * column.width
    lowest, highest = (-(1 << bits - 1), (1 << bits - 1) - 1) if signed else (0, (1 << bits) - 1)
    if not lowest <= value <= highest:
        raise Refused(RANGE)
    return value.to_bytes(column.width, "little", signed=signed)


class Reader:
    """Reads as the page tells it, from the first byte to the last."""

    def __init__(self, data):
        self.data = data
        self.at = 0

    def end(self):
        """What ends here: a comma, a line, the file; or nothing does."""
        rest = self.data[self.at:]
        if not rest or rest == b"\r":
            return "file"
        if rest.startswith(b","):
            return "comma"
        return "line" if rest.startswith((b"\n", b"\r\n")) else None

    def take_end(self):
        end = self.end()
        self.at += 2 if self.data[self.at:].startswith(b"\r\n") else 1
        return end

    def refuse(self, otherwise):
        """Of a byte that cannot stand here."""
        raise Refused(BINARY if is_control(self.data[self.at]) else otherwise)

    def must_end(self, last):
        """A line ends behind its last column and nowhere else."""
        end = self.take_end()
        if end == "file":
            raise Refused(CUT)
        if end != ("line" if last else "comma"):
            raise Refused(COLUMNS)

    def version(self, version):
        start = self.at
        while self.at < len(self.data) and not is_control(self.data[self.at]):
            self.at += 1
        line = self.data[start:self.at]
        if self.end() not in ("line", "file"):
            raise Refused(BINARY)
        self.must_end(True)
        if line != version:
            raise Refused(VERSION)

    def header(self, count):
        for i in range(count):
            start = self.at
            while self.end() is None:
                if is_control(self.data[self.at]) or self.data[self.at] == 0x22:
                    self.refuse(QUOTE)
                self.at += 1
            empty = self.at == start
            self.must_end(i == count - 1)
            if empty:
                raise Refused(COLUMNS)

    def number(self, column, last):
        start = self.at
        if self.data[self.at:self.at + 1] == b"-":
            self.at += 1
        while self.end() is None:
            if self.data[self.at] not in b"0123456789":
                self.refuse(NUMBER)
            self.at += 1
        digits = self.data[start:self.at]
        self.must_end(last)
        return number(column, digits)

    def text(self, column, last):
        text = bytearray()

        def take():
            if len(text) == column.width - 1:
                raise Refused(TEXT)
            text.append(self.data[self.at])
            self.at += 1

        if self.data[self.at:self.at + 1] == b'"':
            self.at += 1
            while True:
                rest = self.data[self.at:]
                if not rest:
                    raise Refused(QUOTE)
                if rest[0] == 0:
                    raise Refused(BINARY)
                if rest[0] == 0x22:
                    self.at += 1
                    if rest[1:2] != b'"':
                        break
                take()
            if self.end() is None:
                self.refuse(QUOTE)
        while self.end() is None:
            if is_control(self.data[self.at]) or self.data[self.at] == 0x22:
                self.refuse(QUOTE)
            take()
        self.must_end(last)
        return bytes(text).ljust(column.width, b"\0")


def read(data, version, layout, most):
    """The result, and the records with what is behind them."""
    size, columns = layout
    room = bytearray([FILL] * (most * size))
    reader, count = Reader(data), 0
    try:
        reader.version(version)
        reader.header(len(columns))
        while reader.at < len(data):
            if count == most:
                raise Refused(BINARY if data[reader.at] == 0 else RECORDS)
            record = bytearray(size)
            room[count * size:(count + 1) * size] = bytes(size)
            for i, column in enumerate(columns):
                take = reader.text if column.is_text() else reader.number
                record[column.offset:column.offset + column.width] = take(column, i == len(columns) - 1)
            room[count * size:(count + 1) * size] = record
            count += 1
    except Refused as refused:
        return refused.args[0], bytes(room)
    return count, bytes(room)


def written(version, header, layout, records):
    """The bytes of the file; none where a text has no end."""
    _, columns = layout
    lines = [version, header]
    for record in records:
        cells = []
        for column in columns:
            field = record[column.offset:column.offset + column.width]
            if not column.is_text():
                cells.append(b"%d" % int.from_bytes(field, "little", signed=column.type == 4))
                continue
            if 0 not in field:
                return None
            text = field[:field.index(0)]
            blank = text[:1] == b" " or text[-1:] == b" "
            if blank or any(is_control(byte) or byte in b',"' for byte in text):
                text = b'"' + text.replace(b'"', b'""') + b'"'
            cells.append(text)
        lines.append(b",".join(cells))
    return b"".join(line + b"\n" for line in lines)


class Library:
    def __init__(self, folder):
        build = Path(os.environ.get("VX63_BUILD", Path(__file__).resolve().parents[2] / "build" / "release"))
        path = build / "lib" / "liblsys.so"
        if re.search(rb"__[at]san_init", path.read_bytes()):
            sys.exit(77)  # a sanitizer wants to be in the program from its start
        self.lsys = ctypes.CDLL(str(path))
        self.path = str(folder / "file.csv").encode()

    def read(self, data, version, layout, most):
        size, columns = layout
        with open(self.path, "wb") as file:
            file.write(data)
        room = (ctypes.c_uint8 * (most * size + 1))(*[FILL] * (most * size + 1))
        result = self.lsys.lsys_readCsvNewFmt(self.path, version, most, len(columns), room, size,
                                              (Column * len(columns))(*columns))
        found = bytes(room)
        if found[-1] != FILL:
            raise AssertionError("a byte behind the records has changed")
        return result, found[:-1]

    def write(self, version, header, layout, records):
        size, columns = layout
        with open(self.path, "wb") as file:
            file.write(b"before")
        every = b"".join(records) or b"\0"
        result = self.lsys.lsys_writeCsvNewFmt(self.path, version, header, len(records), len(columns),
                                               (ctypes.c_uint8 * len(every))(*every), size,
                                               (Column * len(columns))(*columns))
        with open(self.path, "rb") as file:
            return result, file.read()


class Chance(random.Random):
    WORDS = [b",", b'"', b'""', b"\n", b"\r\n", b"\r", b"\0", b"\t", b" ", b"-", b"-0", b"-1", b"+1", b"0", b"00", b"127",
             b"128", b"-128", b"-129", b"255", b"256", b"32767", b"-32768", b"65535", b"65536", b"2147483647",
             b"-2147483648", b"4294967295", b"4294967296", b"99999999999999999999999", b"1.5", b"1e3", b"A", b"\xff",
             b"\x7f", b"\xef\xbb\xbf", b"1.0.0", b'"\n"', b'"",', b'" "']

    def layout(self):
        columns, at = [], self.randrange(3)
        for _ in range(self.randint(1, 5)):
            kind = self.choice([0, 1, 2, 3, 3, 4, 4, 6, 6, 6])
            width = self.randint(1, 9) if kind == 6 else self.choice([1, 2, 4])
            columns.append(Column(kind, width, at))
            at += width + self.choice([0, 0, 1, 3])
        self.shuffle(columns)
        return at, columns

    def some(self, size):
        if self.random() < 0.4:
            return bytes(self.choice(b' ,"\n\r\0\tAZ09\x7f\xff') for _ in range(size))
        return self.choice([bytes, self.randbytes])(size)

    def records(self, layout):
        size, columns = layout
        records = []
        for _ in range(self.choice([0, 1, 1, 2, 3])):
            record = bytearray(self.some(size))
            for column in columns:
                if column.is_text() and self.random() < 0.95:
                    record[column.offset + self.randrange(column.width)] = 0
            records.append(bytes(record))
        return records

    def mutated(self, data):
        data = bytearray(data)
        for _ in range(self.choice([1, 1, 1, 2, 4])):
            at = self.randint(0, len(data))
            how = self.randrange(6)
            if how == 0:
                data[at:at] = self.choice(self.WORDS)
            elif how == 1:
                data[at:at + self.randint(1, 4)] = self.choice(self.WORDS)
            elif how == 2:
                del data[at:at + self.randint(1, 6)]
            elif how == 3:
                del data[at:]
            elif how == 4:
                data[at:at + 1] = bytes([self.randrange(256)])
            else:
                data[at:at] = data[self.randint(0, len(data)):][:self.randint(1, 12)]
        return bytes(data)


def meant(layout, records):
    """Without what is in no column, or behind the end of a text."""
    size, columns = layout
    result = []
    for record in records:
        clean = bytearray(size)
        for column in columns:
            field = record[column.offset:column.offset + column.width]
            if column.is_text():
                field = field[:field.index(0)].ljust(column.width, b"\0")
            clean[column.offset:column.offset + column.width] = field
        result.append(bytes(clean))
    return b"".join(result)


def attempt(library, chance):
    """One layout, one file, some that are nearly it. Gives how many calls it was."""
    layout, version = chance.layout(), chance.choice([b"1.0.0", b"1.0.0", b"2", b"a b"])
    header = b",".join(chance.choice([b"NO", b"A", b" x", b"NAME"]) for _ in layout[1])
    records = chance.records(layout)
    want = written(version, header, layout, records)
    result, data = library.write(version, header, layout, records)
    if want is None:
        assert (result, data) == (TEXT, b"before"), f"a text without an end: {result} {data} {records}"
        want = written(version, header, layout, [])
        records = []
    else:
        assert (result, data) == (OK, want), f"written otherwise: {result} {data} {want}"
        got = library.read(data, version, layout, len(records))
        assert got == (len(records), meant(layout, records)), f"it comes back otherwise: {got} {records}"
    calls = 2
    for _ in range(30):
        mutant = chance.mutated(want)
        if chance.random() < 0.2:
            mutant = mutant.replace(b"\n", b"\r\n")
        most = chance.choice([4, 4, 4, 1, max(1, len(records))])
        want_read = read(mutant, version, layout, most)
        got = library.read(mutant, version, layout, most)
        assert got == want_read, (f"{mutant} with version {version}, columns "
                                  f"{[(c.type, c.width, c.offset) for c in layout[1]]}, room for {most}: "
                                  f"{got[0]} instead of {want_read[0]}, {got[1]} instead of {want_read[1]}")
        calls += 1
    return calls


def main():
    seconds, seed = float(sys.argv[1]), int(sys.argv[2])
    chance, calls, found = Chance(seed), 0, 0
    end = time.monotonic() + seconds
    shared = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(dir=shared) as folder:
        library = Library(Path(folder))
        while time.monotonic() < end and found < 10:
            try:
                calls += attempt(library, chance)
            except AssertionError as finding:
                print(f"csv_differential: {finding}", file=sys.stderr)
                found += 1
    print(f"executions: {calls}")
    sys.exit(found > 0)


if __name__ == "__main__":
    main()
