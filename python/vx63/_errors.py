"""Result codes as exceptions. The class of each code is in _interface.py, with its meaning as documentation."""

from __future__ import annotations

from typing import ClassVar

# What to try, by the name of the code.
_REMEDIES = {
    "VX63_ERR_COMM": "look for the reason in /var/log/libvx63.cpp.txt ('vx63 log'), run 'vx63 doctor'; every thread "
                     "calls vx63_init() first, with a process id of its own",
    "VX63_ERR_ARG": "compare the arguments with help(); what a service refuses depends on the state of the meter, "
                    "too: /var/log/libvx63.cpp.txt shows which it was",
    "VX63_ERR_REPEAT": "stop the repeating pattern first: vx63_buzzer() with mode 2",
    "VX63_ERR_POWER": "check cable and LNB for a short circuit, switch the supply off with vx63_reqPowerSupply(0) "
                      "and on again",
    "VX63_ERR_PRIORITY": "wait until the other sound has ended",
}


class Error(Exception):
    """An operation of the library has failed. `operation` is its name, `code` its result."""

    name: str = ""
    code: int = 0
    _classes: ClassVar[dict[int, type[Error]]] = {}

    def __init__(self, operation: str, code: int) -> None:
        super().__init__(operation, code)
        self.operation = operation
        self.code = code

    def __init_subclass__(cls) -> None:
        if cls.name in _REMEDIES:
            Error._classes[cls.code] = cls

    def __str__(self) -> str:
        if self.name not in _REMEDIES:
            return f"{self.operation}: an unknown result ({self.code}): install library and module of one version"
        meaning = (type(self).__doc__ or "").rstrip(".")
        return (f"{self.operation}: {self.name} ({self.code}): {meaning[:1].lower()}{meaning[1:]}: "
                f"{_REMEDIES[self.name]}")


class SetFileError(Error):
    """A settings file could not be read, written or deleted. `code` is -1, or what the platform's reader or writer
    has given."""

    def __str__(self) -> str:
        if self.code == -1:
            return (f"{self.operation}: -1: an argument is refused, or the file cannot be removed: "
                    "see /var/log/libvx63.cpp.txt ('vx63 log')")
        return (f"{self.operation}: {self.code}: the platform cannot read or write the file: "
                "run 'vx63 settings check', or set LSYS_DEBUG=1 to see why on stderr")


def error_of(operation: str, code: int) -> Error:
    return Error._classes.get(code, Error)(operation, code)
