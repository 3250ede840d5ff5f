"""libvx63.so in this process."""

from __future__ import annotations

import ctypes
import os
from collections.abc import Sequence
from ctypes import Array, Structure
from pathlib import Path
from typing import TYPE_CHECKING, Any, Union

if TYPE_CHECKING:
    from ctypes import _SimpleCData

# What an operation is called with. Records and arrays go by reference, bytes as a C string, None as a null pointer.
Argument = Union["Structure", "Array[Any]", "_SimpleCData[Any]", bytes, None]

SONAME = "libvx63.so.1"

# A library of the platform on a PC, and one of the calls that the firmware of a meter has instead.
_PLATFORM = {"liblmsg.so": "lmsg_tsndMq", "liblsys.so": "lsys_readCsvNewFmt"}


def _provide_platform(folder: Path | None) -> None:
    """libvx63.so finds the platform's calls by ordinary symbol lookup: they must be there for everybody."""
    for name, call in _PLATFORM.items():
        if not hasattr(ctypes.CDLL(None), call):
            try:
                ctypes.CDLL(str(folder / name) if folder else name, mode=ctypes.RTLD_GLOBAL)
            except OSError:
                pass  # what is missing is told when libvx63.so cannot be loaded


def _load() -> ctypes.CDLL:
    path = os.environ.get("VX63_LIBRARY") or SONAME
    _provide_platform(Path(path).parent if "/" in path else None)
    try:
        return ctypes.CDLL(path)
    except OSError as error:
        if any(name in str(error) for name in ("lmsg", "lsys")):
            remedy = ("the platform's calls are missing: on a PC install vx63-vmeter, which brings liblmsg.so and "
                      "liblsys.so, or name their folder in LD_LIBRARY_PATH")
        else:
            remedy = f"install libvx63, or name the {SONAME} of a build tree in VX63_LIBRARY"
        raise OSError(f"vx63: {path}: {error}: {remedy}") from error


class Library:
    """Loads libvx63.so when it is first needed."""

    def __init__(self) -> None:
        self._loaded: ctypes.CDLL | None = None

    def load(self) -> ctypes.CDLL:
        if self._loaded is None:
            self._loaded = _load()
        return self._loaded

    def call(self, operation: str, arguments: Sequence[Argument]) -> int:
        library = self.load()
        try:
            function = getattr(library, operation)
        except AttributeError as error:
            raise self._without(operation) from error
        return int(function(*(ctypes.byref(one) if isinstance(one, Structure) else one for one in arguments)))

    def data(self, name: str, size: int) -> bytes:
        library = self.load()
        try:
            return (ctypes.c_char * size).in_dll(library, name).raw
        except ValueError as error:
            raise self._without(name) from error

    def _without(self, name: str) -> OSError:
        path = os.environ.get("VX63_LIBRARY") or SONAME
        return OSError(f"vx63: {path}: it has no {name}: it is of another version than this module: install libvx63 "
                       "and python3-vx63 of one version")
