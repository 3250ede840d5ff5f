"""The operations on whole settings files and on single records of them, which take records of any class."""

from __future__ import annotations

import ctypes
from collections.abc import Sequence
from typing import Any, NamedTuple

from ._call import counted, number, record, text
from ._library import Argument
from ._record import Record


class SetFile(NamedTuple):
    """What is known of a settings file."""

    file_id: int
    path: str  # of a set with %s for the set's name
    record: type[Record]
    rows: int  # records of the file; of a set or a list: at most
    fixed: bool  # always written whole: neither a set nor a list


def _records(files: Sequence[SetFile], file_id: int) -> Any:
    """Room for all records of the file; for none, if there is no such file: the library refuses it."""
    if 0 <= file_id < len(files):
        return (files[file_id].record * files[file_id].rows)()
    return (ctypes.c_uint8 * 1)()


def _arguments(file_id: int, records: Any) -> tuple[Argument, Argument]:
    return number(ctypes.c_uint32, "fileId", file_id), records


def _name(value: str | bytes | None) -> bytes | None:
    return None if value is None else text("name of the set", value)


def _put(records: Any, at: int, one: Record) -> None:
    """Beyond the end nothing is put: the library refuses it."""
    if at < len(records) and records._type_ is not ctypes.c_uint8:
        records[at] = record(records._type_, "pDat", one)


def read(files: Sequence[SetFile], file_id: int, name: str | bytes | None, default: int) -> list[Any]:
    records = _records(files, file_id)
    count = counted("vx63_readSetFile", *_arguments(file_id, records), _name(name),
                    number(ctypes.c_uint32, "bDefault", default))
    return list(records[:count])


def write(files: Sequence[SetFile], file_id: int, given: Sequence[Record], name: str | bytes | None,
          count: int | None) -> int:
    records = _records(files, file_id)
    known = 0 <= file_id < len(files)
    if known and files[file_id].fixed and len(given) != len(records):
        raise ValueError(f"pDat: the file is always written whole: must be {len(records)} records, is {len(given)}")
    wanted = len(given) if count is None else count
    if len(given) < wanted <= len(records):
        raise ValueError(f"ulUserLine: {wanted}, but pDat has {len(given)} records")
    for index, one in enumerate(given):
        _put(records, index, one)
    return counted("vx63_writeSetFile", *_arguments(file_id, records), _name(name),
                   number(ctypes.c_uint32, "ulUserLine", wanted))


def read_record(files: Sequence[SetFile], file_id: int, index: int, name: str | bytes | None, default: int) -> Any:
    records = _records(files, file_id)
    counted("vx63_readSetFileIdx", *_arguments(file_id, records), number(ctypes.c_uint32, "ulIdx", index),
            _name(name), number(ctypes.c_uint32, "bDefault", default))
    return records[index]


def write_record(files: Sequence[SetFile], file_id: int, one: Record, index: int, name: str | bytes | None) -> int:
    records = _records(files, file_id)
    _put(records, index, one)
    return counted("vx63_writeSetFileIdx", *_arguments(file_id, records), number(ctypes.c_uint32, "ulIdx", index),
                   _name(name))
