"""A call of an operation: its arguments, who carries it out, its result."""

from __future__ import annotations

import ctypes
from collections.abc import Sequence
from typing import TYPE_CHECKING, Any, Protocol, TypeVar

from ._errors import SetFileError, error_of
from ._library import Argument, Library
from ._record import FlexibleRecord, Record

if TYPE_CHECKING:
    from ctypes import _SimpleCData

_Record = TypeVar("_Record", bound=Record)


class Caller(Protocol):
    """Who carries operations out: the library of this process, or that beside a virtual meter."""

    def call(self, operation: str, arguments: Sequence[Argument]) -> int: ...

    def data(self, name: str, size: int) -> bytes: ...


# The last one counts, for all threads.
callers: list[Caller] = [Library()]


def number(kind: type[_SimpleCData[int]], name: str, value: int) -> _SimpleCData[int]:
    made = kind(value)
    if made.value != value:
        limit = 1 << 8 * ctypes.sizeof(kind)
        low, high = (-limit // 2, limit // 2 - 1) if kind(-1).value < 0 else (0, limit - 1)
        raise OverflowError(f"{name}: {value}: must be {low} to {high}")
    return made


def record(kind: type[_Record], name: str, value: _Record) -> _Record:
    if not isinstance(value, kind):
        raise TypeError(f"{name}: must be {kind.__name__}, is {type(value).__name__}")
    if isinstance(value, FlexibleRecord):
        value.check()
    return value


def text(name: str, value: str | bytes) -> bytes:
    encoded = value.encode() if isinstance(value, str) else bytes(value)
    if b"\0" in encoded:
        raise ValueError(f"{name}: holds a NUL")
    return encoded


def block(length: int, name: str, value: bytes) -> bytes:
    content = bytes(value)
    if len(content) != length:
        raise ValueError(f"{name}: must be {length} bytes, is {len(content)}")
    return content


def checked(operation: str, *arguments: Argument) -> None:
    """Of an operation that returns a result code."""
    code = callers[-1].call(operation, arguments)
    if code != 0:
        raise error_of(operation, code)


def counted(operation: str, *arguments: Argument) -> int:
    """Of an operation on settings files."""
    count = callers[-1].call(operation, arguments)
    if count < 0:
        raise SetFileError(operation, count)
    return count


def asked(operation: str, *arguments: Argument) -> bool:
    return callers[-1].call(operation, arguments) != 0


def datum(name: str, kind: Any) -> Any:
    """The present value of an exported variable of the library."""
    content = kind.from_buffer_copy(callers[-1].data(name, ctypes.sizeof(kind)))
    return content.value if hasattr(content, "value") else tuple(content)
