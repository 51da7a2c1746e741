"""How values go into calls and come out of them: no number is cut, and no buffer is smaller than its call needs."""
import ctypes
import os
import sys
from typing import Any, Callable, List, Optional, Type, TypeVar, Union

from . import library

# Where a call stores a number, or several.
Words16 = Union[ctypes.c_uint16, ctypes.Array[ctypes.c_uint16]]
Words32 = Union[ctypes.c_uint32, ctypes.Array[ctypes.c_uint32]]
Path = Union[str, bytes, os.PathLike[str], os.PathLike[bytes]]
Data = Union[bytes, bytearray]
Marker = Callable[[bytes], None]

MARKER_FUNCTION = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_uint64)

R = TypeVar("R", bound=ctypes.Structure)

# The library may call the function until another replaces it.
_kept_markers: List[Any] = []


def number(kind: Any, value: int) -> Any:
    """A number of that type; OverflowError for one that does not fit."""
    made = kind(value)
    if made.value != value:
        raise OverflowError(f"{value} does not fit {8 * ctypes.sizeof(kind)} bits")
    return made


def _check_size(size: int, least: int) -> None:
    if size < least:
        raise ValueError(f"a buffer of {size} bytes, where the call uses {least}")


def room(buffer: Optional[bytearray], least: int) -> Any:
    """A buffer that a call fills."""
    if buffer is None:
        return None
    if not isinstance(buffer, bytearray):
        raise TypeError(f"a bytearray is needed, not {type(buffer).__name__}")
    _check_size(len(buffer), least)
    return (ctypes.c_char * len(buffer)).from_buffer(buffer)


def data(given: Optional[Data], least: int) -> Any:
    """Bytes that a call reads."""
    if given is None:
        return None
    copy = bytes(memoryview(given))
    _check_size(len(copy), least)
    return ctypes.c_char_p(copy)


def words(given: Any, kind: Any, least: int) -> Any:
    """Numbers that a call stores."""
    if given is None:
        return None
    if not isinstance(given, kind * len(given) if isinstance(given, ctypes.Array) else kind):
        raise TypeError(f"a {kind.__name__} or an array of them is needed, not {type(given).__name__}")
    _check_size(ctypes.sizeof(given), least)
    return ctypes.byref(given)


def record(given: Optional[ctypes.Structure], kind: Type[ctypes.Structure]) -> Any:
    """A record that a call reads or fills."""
    if given is None:
        return None
    if not isinstance(given, kind):
        raise TypeError(f"a {kind.__name__} is needed, not {type(given).__name__}")
    return ctypes.byref(given)


def path(given: Optional[Path]) -> Any:
    """The name of a file as the library takes it: on Windows in the code page of the program."""
    if given is None:
        return None
    name = os.fspath(given)
    if isinstance(name, str):
        name = name.encode("mbcs", "strict") if sys.platform == "win32" else os.fsencode(name)
    if b"\0" in name:
        raise ValueError("a path with a null byte")
    return ctypes.c_char_p(name)


def marker(function: Optional[Marker]) -> Any:
    """A function for the lines of the trace."""
    if function is None:
        return None
    receive = function

    def called(line: int, length: int) -> None:
        receive(ctypes.string_at(line, length))

    made = MARKER_FUNCTION(called)
    _kept_markers.append(made)
    return made


def text(given: Optional[bytes]) -> Optional[str]:
    """A text of the library, which may hold any bytes."""
    return None if given is None else given.decode("utf-8", "backslashreplace")


def _take(address: Optional[int], size: int, owned: bool) -> Optional[bytes]:
    if not address:
        return None
    taken = ctypes.string_at(address, size)
    if owned:
        runtime = ctypes.CDLL("msvcrt" if sys.platform == "win32" else None)
        runtime.free(ctypes.c_void_p(address))
    return taken


def call_for_bytes(name: str, size: int, owned: bool, *arguments: Any) -> Optional[bytes]:
    """Makes a call that returns the address of bytes; owned ones are released."""
    with library.lock:
        return _take(library.call(name, ctypes.c_void_p, *arguments), size, owned)


def call_for_records(name: str, kind: Type[R], count: Callable[[], int], *arguments: Any) -> Optional[List[R]]:
    """Makes a call that returns an array of records, which is released; a call tells their number."""
    with library.lock:
        address = library.call(name, ctypes.c_void_p, *arguments)
        size = ctypes.sizeof(kind)
        taken = _take(address, size * count(), True)
    if taken is None:
        return None
    return [kind.from_buffer_copy(taken, at) for at in range(0, len(taken), size)]
