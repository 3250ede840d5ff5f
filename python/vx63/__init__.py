"""libvx63 in Python: the operations, records and constants of libvx63.h, by the names that they have in C.

    import vx63

    vx63.vx63_init(17)                                   # once per thread: the process id it speaks for
    vx63.vx63_startSingleMeas(0, vx63.MeasCondition(ulFreq=557143))
    try:
        print(vx63.vx63_getSingleMeasResult(0).LEVEL)
    finally:
        vx63.vx63_stopSingleMeas(0)

Results. A result code other than VX63_OK is raised: CommError, ArgError, RepeatError, PowerError, PriorityError, all
of them Error with .operation and .code. The operations on settings files raise SetFileError, with any negative code.

Arguments. A record that an operation fills is returned. It can be given as well, as in C: then it is filled and
returned, and what the operation does not write stays, after a failure all of it unless the operation says
otherwise. A number that the parameter cannot hold is refused with OverflowError before anything is called. Texts are
str (sent as UTF-8) or bytes; fields of records are bytes. MultiMeasReg is made of its channels: MultiMeasReg([...]).
Records of settings files: SET_FILES[fileId].record.

Threads. Each thread that talks to a service calls vx63_init() with an id of its own. Other threads of Python go on
while one waits.

Variables of the library, such as g_cLibTestLogFilePath, are read anew whenever they are asked for.

Library. It is loaded at the first call: the file that VX63_LIBRARY names, or else libvx63.so.1 wherever the dynamic
loader finds it (LD_LIBRARY_PATH, the system's folders). On a PC the platform's libraries liblmsg.so and liblsys.so
are taken from the same place, unless the process has their calls already. If that fails, OSError says what to try.

Tests. VirtualMeter runs a virtual meter for as long as a `with` statement lasts; pytest has the fixture
virtual_meter.
"""

from typing import TYPE_CHECKING, Any

from . import _interface
from ._call import datum as _datum
from ._errors import Error, SetFileError
from ._interface import *
from ._record import FlexibleRecord, Record
from ._set_files import SetFile
from ._virtual_meter import VirtualMeter, VirtualMeterError

__all__ = ["Error", "FlexibleRecord", "Record", "SetFile", "SetFileError", "VirtualMeter", "VirtualMeterError"]
__all__ += _interface.__all__

if __doc__ and _interface.__doc__:  # not with python -OO
    __doc__ += "\n" + _interface.__doc__

for _name in __all__:  # what tracebacks and help() show
    if hasattr(globals()[_name], "__module__"):
        globals()[_name].__module__ = "vx63"

if TYPE_CHECKING:
    from ._interface import (gLibDumpLog as gLibDumpLog, gLibDumpTestLog as gLibDumpTestLog,
                             g_cLibTestLogFilePath as g_cLibTestLogFilePath, g_lLibLogLevel as g_lLibLogLevel,
                             g_measSetManuBdsysModDef as g_measSetManuBdsysModDef)
else:
    def __getattr__(name: str) -> Any:
        if name in _interface.DATA:
            return _datum(name, _interface.DATA[name])
        raise AttributeError(f"module 'vx63' has no attribute '{name}'")
