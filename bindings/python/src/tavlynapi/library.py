"""Finds and loads the library, when the first call needs it.

A copy in the package comes first (lib/, which a wheel may have), then the file that the variable
TAVLYNAPI_LIBRARY names by its whole path, then the library that is installed. The variable is ignored in programs
that run with another's rights, and by an interpreter that is told to ignore the environment.
"""
import ctypes
import os
import pathlib
import sys
import threading
from typing import Any, List, Optional, Tuple

from .errors import LibraryProblem
from .version import VERSION

VARIABLE = "TAVLYNAPI_LIBRARY"
FILE = "tavlynapi.dll" if sys.platform == "win32" else f"libtavlynapi.so.{VERSION.partition('.')[0]}"

# One call at a time: most calls of the library take no lock of their own. Whoever makes several calls that belong
# together holds it over all of them.
lock = threading.RLock()


def _has_own_rights() -> bool:
    if sys.platform == "win32":
        return True
    return os.getuid() == os.geteuid() and os.getgid() == os.getegid()


def _named() -> Optional[str]:
    path = os.environ.get(VARIABLE)
    if not path or sys.flags.ignore_environment or not _has_own_rights():
        return None
    if not os.path.isabs(path):
        raise LibraryProblem(f"{VARIABLE} has to be a whole path, but is {path!r}")
    return path


def path_of_library() -> str:
    """The file that is loaded, or the name by which the system is asked for it."""
    bundled = pathlib.Path(__file__).parent / "lib" / FILE
    return str(bundled) if bundled.is_file() else _named() or FILE


def _missing(path: str, problem: OSError) -> LibraryProblem:
    if path != FILE:
        return LibraryProblem(f"{path} could not be loaded: {problem}")
    bits = 64 if sys.maxsize > 2**32 else 32
    return LibraryProblem(
        f"the library {FILE} is not installed ({problem}). Install tavlynapi {VERSION} or later ({bits} bits), take a "
        f"wheel that bundles it, or name the file by its whole path in the variable {VARIABLE}"
    )


def _version_of(library: ctypes.CDLL) -> Tuple[int, ...]:
    numbers = [ctypes.c_uint16() for _ in range(3)]
    library.GetLibVersion(*(ctypes.byref(number) for number in numbers))
    return tuple(number.value for number in numbers)


# The library, once it is loaded.
_library: List[ctypes.CDLL] = []


def _load() -> ctypes.CDLL:
    path = path_of_library()
    try:
        library = ctypes.CDLL(path)
    except OSError as problem:
        raise _missing(path, problem) from problem
    try:
        version = _version_of(library)
    except AttributeError as problem:
        raise LibraryProblem(f"{path} is not tavlynapi") from problem
    if version < tuple(int(number) for number in VERSION.split(".")):
        found = ".".join(str(number) for number in version)
        raise LibraryProblem(f"{path} is tavlynapi {found}, but {VERSION} or later is needed: install that")
    return library


def loaded() -> ctypes.CDLL:
    """The library."""
    with lock:
        if not _library:
            _library.append(_load())
        return _library[0]


def call(name: str, result: Any, *arguments: Any) -> Any:
    """Makes a call, under the lock."""
    with lock:
        function = getattr(loaded(), name)
        function.restype = result
        return function(*arguments)


def unload() -> None:
    """Unloads the library, if a call has loaded it; the next one loads it anew, with nothing of before. On Linux."""
    with lock:
        if _library:
            handle = _library.pop()._handle  # pylint: disable=protected-access
            ctypes.CDLL(None).dlclose(ctypes.c_void_p(handle))
