"""What the records of the interface have in common."""

from __future__ import annotations

import ctypes
from collections.abc import Iterable
from typing import Any, ClassVar

# Elements of an array that repr() shows.
_SHOWN = 8


def _plain(value: Any) -> Any:
    if isinstance(value, Record):
        return value._values()
    if isinstance(value, ctypes.Array):
        return tuple(_plain(one) for one in value)
    return value


def _shown(value: Any) -> str:
    if not isinstance(value, ctypes.Array):
        return repr(value)
    more = f", ... {len(value)} in all" if len(value) > _SHOWN else ""
    return "[" + ", ".join(repr(one) for one in value[:_SHOWN]) + more + "]"


class Record(ctypes.Structure):
    """A C record. Fields are given by name, all others are 0. A number that a field cannot hold
    is refused with OverflowError, a field that there is not with AttributeError.

    A field of char is bytes up to its first NUL; bytes(record) has all of them. Two records of a class are equal
    if all their fields are; what lies between the fields does not count.
    """

    def __setattr__(self, name: str, value: Any) -> None:
        if not hasattr(type(self), name):
            raise AttributeError(f"{type(self).__name__} has no field {name}")
        before = getattr(self, name)
        super().__setattr__(name, value)
        if isinstance(before, int) and getattr(self, name) != value:
            super().__setattr__(name, before)
            raise OverflowError(f"{type(self).__name__}.{name}: {value} does not fit")

    def _values(self) -> tuple[Any, ...]:
        return tuple(self._value(name) for name in self._names())

    def _value(self, name: str) -> Any:
        value = getattr(self, name)
        if isinstance(value, bytes):  # all of it, not up to its NUL
            place = getattr(type(self), name)
            return ctypes.string_at(ctypes.addressof(self) + place.offset, place.size)
        return _plain(value)

    def __eq__(self, other: object) -> bool:
        if type(self) is not type(other) or not isinstance(other, Record):
            return NotImplemented
        return self._values() == other._values()

    __hash__ = None  # type: ignore[assignment]

    def _names(self) -> list[str]:
        """Of the fields; what begins with _ fills a gap."""
        return [field[0] for field in self._fields_ if not field[0].startswith("_")]

    def __repr__(self) -> str:
        fields = (f"{name}={_shown(getattr(self, name))}" for name in self._names())
        return f"{type(self).__name__}({', '.join(fields)})"


class FlexibleRecord(Record):
    """A record that ends in an array of records, made with the elements of the array. Its number of elements
    stays; the field that tells it to the meter is filled, and can be changed to a smaller one."""

    # Names of the number and of the array, class of an element. In _fields_ the array is hidden, without elements.
    _flexible_: ClassVar[tuple[str, str, type[Record]]]

    def __init__(self, elements: Iterable[Record] = ()) -> None:
        super().__init__()
        count, array, kind = self._flexible_
        given = list(elements)
        ctypes.resize(self, ctypes.sizeof(type(self)) + len(given) * ctypes.sizeof(kind))
        setattr(self, count, len(given))
        view = getattr(self, array)
        for index, element in enumerate(given):
            view[index] = element

    def __getattr__(self, name: str) -> Any:
        _, array, kind = self._flexible_
        if name != array:
            raise AttributeError(f"{type(self).__name__} has no field {name}")
        offset = ctypes.sizeof(type(self))
        elements = (ctypes.sizeof(self) - offset) // ctypes.sizeof(kind)
        return (kind * elements).from_buffer(self, offset)

    def _names(self) -> list[str]:
        return [*super()._names(), self._flexible_[1]]

    def __reduce__(self) -> Any:
        return type(self)._of, (bytes(self),)

    @classmethod
    def _of(cls, content: bytes) -> FlexibleRecord:
        size = ctypes.sizeof(cls)
        made = cls()
        ctypes.resize(made, max(size, len(content)))
        ctypes.memmove(ctypes.addressof(made), content, len(content))
        return made

    def check(self) -> None:
        """Raises ValueError if the record claims more elements than it has."""
        count, array, _ = self._flexible_
        if getattr(self, count) > len(getattr(self, array)):
            raise ValueError(f"{type(self).__name__}.{count}: {getattr(self, count)}, but {array} has "
                             f"{len(getattr(self, array))}")
