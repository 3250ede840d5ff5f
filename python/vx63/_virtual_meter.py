"""A virtual meter for a test, in Python.

The virtual meter gives a command message queues, logs and settings of its own, which a process that already runs
cannot enter. So it runs a process of its own (_inside.py), to which this one forwards the operations: thread by
thread, with all that they read and write.
"""

from __future__ import annotations

import ctypes
import functools
import json
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
from collections.abc import Iterable, Sequence
from multiprocessing.connection import Connection
from pathlib import Path
from types import TracebackType
from typing import Any, Union

from . import _call
from ._library import Argument

# Seconds after which a meter that does not start or end is given up.
_PATIENCE = 60

_INSIDE = "import sys; sys.path.insert(0, sys.argv.pop()); from vx63._inside import main; main()"

_Path = Union[str, "os.PathLike[str]"]


class VirtualMeterError(RuntimeError):
    """The virtual meter cannot be started, or has ended."""


@functools.cache
def _isolation(program: str) -> tuple[str, ...]:
    """Options of `run`: none, or --in-place where namespaces are refused."""
    checked = subprocess.run([program, "check"], stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    if checked.returncode == 0:
        return ()
    if os.geteuid() == 0:
        return ("--in-place",)
    raise VirtualMeterError(checked.stderr.strip() or f"{program} check: exit status {checked.returncode}")


class _Outside:
    """A thread's way to its thread inside. Made anew in a process that was forked."""

    def __init__(self, control: socket.socket) -> None:
        mine, other = socket.socketpair()
        with other:
            socket.send_fds(control, [b"t"], [other.fileno()])
        self.process = os.getpid()
        self._connection = Connection(mine.detach())

    def ask(self, *request: Any) -> Any:
        self._connection.send(request)
        well, answer = self._connection.recv()
        if not well:
            raise answer
        return answer


class VirtualMeter:
    """A virtual meter, as long as the `with` statement lasts. All operations of this process, whatever its thread,
    go to it meanwhile; the library of this process is not even loaded.

        with vx63.VirtualMeter(faults=["meas/single-result:2=silence"]) as meter:
            vx63.vx63_init(1)
            vx63.vx63_startSingleMeas(0, vx63.MeasCondition(ulFreq=557143))
            ...
            assert meter.state()["measurement"]["run"] == "single"

    Every thread begins without a process id there. Of two meters, one within the other, the inner one counts.

        scene           scene file; none: the scene that is built in
        scene_text      the text of a scene, instead of a file
        faults          fault rules, SERVICE[/COMMAND][:FIRST[-[LAST]]]=KIND[,VALUE][@PROBABILITY]
        state           folder in which log and settings stay from meter to meter
        empty_settings  leave the settings folders empty, without the factory files
        in_place        True: on this machine's own queues and paths, False: in namespaces, None: in place only where
                        namespaces are refused to root
        program         the virtual meter: a path, or a name on PATH

    docs/virtual-meter.md of the library tells of scenes, faults and traces.
    """

    def __init__(self, *, scene: _Path | None = None, scene_text: str | None = None, faults: Iterable[str] = (),
                 state: _Path | None = None, empty_settings: bool = False, in_place: bool | None = None,
                 program: _Path = "vx63-vmeter") -> None:
        if scene is not None and scene_text is not None:
            raise ValueError("give scene or scene_text, not both")
        self._scene = scene
        self._scene_text = scene_text
        self._options = [word for rule in faults for word in ("--fault", rule)]
        if state is not None:
            self._options += ["--state", os.fspath(state)]
        if empty_settings:
            self._options.append("--empty-settings")
        self._in_place = in_place
        self._program = os.fspath(program)

    def __enter__(self) -> VirtualMeter:
        found = shutil.which(self._program)
        if found is None:
            raise VirtualMeterError(f"{self._program}: not found: install vx63-vmeter, or put the bin folder of a "
                                    "build tree on PATH")
        self._program = os.path.abspath(found)
        in_place = _isolation(self._program) if self._in_place is None else ["--in-place"] * self._in_place
        self._folder = tempfile.TemporaryDirectory(prefix="vx63-python-")
        try:
            self._start(in_place)
        except BaseException:
            self._folder.cleanup()
            raise
        _call.callers.append(self)
        return self

    def _start(self, in_place: Sequence[str]) -> None:
        folder = Path(self._folder.name)
        self._trace = folder / "trace"
        self._said = folder / "said"
        scene = self._scene
        if self._scene_text is not None:
            scene = folder / "scene.toml"
            Path(scene).write_text(self._scene_text, encoding="utf-8")
        command = [self._program, "run", *in_place, *self._options, "--trace", str(self._trace)]
        if scene is not None:
            command += ["--scene", os.fspath(scene)]
        package = str(Path(__file__).resolve().parent.parent)
        command += ["--", sys.executable, "-I", "-c", _INSIDE, package]

        self._thread = threading.local()
        self._control, inside = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        with inside, open(self._said, "wb") as said:
            # A session of its own: Ctrl-C on the terminal is this process's business.
            self._process = subprocess.Popen(command, stdin=inside.fileno(), stdout=said, stderr=said, start_new_session=True)
        try:
            self._control.settimeout(_PATIENCE)
            ready = self._control.recv(1)
            self._control.settimeout(None)
        except BaseException as error:
            self._end()
            if isinstance(error, TimeoutError):
                raise VirtualMeterError(f"the virtual meter does not start: {self._words()}") from error
            raise
        if not ready:
            self._end()
            raise VirtualMeterError(self._words() or "the virtual meter does not start")

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        _call.callers.remove(self)
        self._end()
        self._folder.cleanup()

    def _end(self) -> None:
        self._control.close()
        self._process.terminate()
        try:
            self._process.wait(_PATIENCE)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()

    def _words(self) -> str:
        return self._said.read_text(errors="replace").strip()

    def _ask(self, *request: Any) -> Any:
        try:
            outside: _Outside | None = getattr(self._thread, "outside", None)
            if outside is None or outside.process != os.getpid():
                outside = self._thread.outside = _Outside(self._control)
            return outside.ask(*request)
        except (EOFError, BrokenPipeError, ConnectionResetError) as error:
            raise VirtualMeterError(f"the virtual meter has ended: {self._words() or 'something has killed it'}"
                                    ) from error
        except KeyboardInterrupt:
            self._thread.__dict__.pop("outside", None)  # an answer would come to the next call
            raise

    def call(self, operation: str, arguments: Sequence[Argument]) -> int:
        """Carries out an operation; for the functions of this module."""
        memory = (ctypes.Structure, ctypes.Array)
        sent = [bytearray(one) if isinstance(one, memory) else one for one in arguments]
        result, written = self._ask("call", operation, sent)
        for one, content in zip(arguments, written):
            if content is not None and isinstance(one, memory):
                ctypes.memmove(ctypes.addressof(one), content, len(content))
        return int(result)

    def data(self, name: str, size: int) -> bytes:
        """Reads a variable of the library; for the functions of this module."""
        content: bytes = self._ask("data", name, size)
        return content

    def run(self, *command: _Path, check: bool = True, **options: Any) -> subprocess.CompletedProcess[str]:
        """Runs a program beside the meter to its end, both outputs caught, as subprocess.run() does; `options` are
        among its input, timeout, cwd and env. Raises subprocess.CalledProcessError if it fails and `check` is set."""
        words = [os.fspath(word) for word in command]
        done: subprocess.CompletedProcess[str] = self._ask("run", words, options)
        if check:
            done.check_returncode()
        return done

    def state(self) -> dict[str, Any]:
        """The state of the meter, at this moment: docs/services.md of the library tells the keys."""
        state: dict[str, Any] = json.loads(self.run(self._program, "state", "--json").stdout)
        return state

    def trace(self) -> list[dict[str, Any]]:
        """All messages so far, requests and responses."""
        lines = self._trace.read_text(encoding="utf-8").splitlines(keepends=True)
        return [json.loads(line) for line in lines if line.endswith("\n")]

    def log(self, name: str = "libvx63.cpp.txt") -> list[str]:
        """The lines of the library's log so far; none if there is no such log."""
        done = self.run("cat", f"/var/log/{name}", check=False)
        return done.stdout.splitlines()
