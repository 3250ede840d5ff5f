"""The process beside a virtual meter that carries out what a Python process outside asks for.

Its standard input is a socket on which it says that it is ready and gets one more socket for every thread outside:
each is served by a thread of its own, since the library keeps the process id and its buffers for each thread. It
ends when nobody is left outside.
"""

from __future__ import annotations

import ctypes
import os
import socket
import subprocess
import threading
from collections.abc import Sequence
from multiprocessing.connection import Connection
from typing import Any

from ._library import Argument, Library


class Inside:
    """What can be asked for."""

    def __init__(self) -> None:
        self._library = Library()
        self._library.load()

    def call(self, operation: str, arguments: Sequence[Any]) -> tuple[int, list[bytes | None]]:
        """Memory comes as bytearray; what the operation has changed goes back, None for all else."""
        here: list[Argument] = [(ctypes.c_char * len(one)).from_buffer(one) if isinstance(one, bytearray) else one
                                for one in arguments]
        before = [bytes(one) if isinstance(one, bytearray) else None for one in arguments]
        result = self._library.call(operation, here)
        after = [bytes(one) if isinstance(one, bytearray) else None for one in arguments]
        return result, [new if new != old else None for old, new in zip(before, after)]

    def data(self, name: str, size: int) -> bytes:
        return self._library.data(name, size)

    def run(self, command: list[str], options: dict[str, Any]) -> subprocess.CompletedProcess[str]:
        if "input" not in options:
            options["stdin"] = subprocess.DEVNULL
        return subprocess.run(command, capture_output=True, text=True, check=False, **options)


def _serve(inside: Inside, descriptor: int) -> None:
    with Connection(descriptor) as connection:
        while True:
            try:
                what, *arguments = connection.recv()
            except EOFError:
                return
            try:
                answer = True, getattr(inside, what)(*arguments)
            except Exception as error:  # whoever asked is to have it
                answer = False, error
            try:
                connection.send(answer)
            except OSError:  # the thread outside has ended
                return


def main() -> None:
    inside = Inside()
    control = socket.socket(fileno=0)
    control.send(b"r")
    while True:
        message, descriptors, _, _ = socket.recv_fds(control, 1, 1)
        if not message:
            os._exit(0)  # whatever the threads are waiting for
        threading.Thread(target=_serve, args=(inside, descriptors[0]), daemon=True).start()
