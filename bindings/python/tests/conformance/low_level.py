"""The calls of a scenario, through tavlynapi.calls."""
import ctypes
import typing
from typing import Any, Callable, Iterator, List, Optional, Tuple

from tavlynapi import calls


def _text(text: Optional[str]) -> str:
    return "null" if text is None else f'"{text}"'


def _words(words: Any) -> str:
    """A record, or numbers that a call has stored."""
    if isinstance(words, ctypes.Structure):
        words = [getattr(words, field[0]) for field in words._fields_]
    return ",".join(str(word) for word in words)


def _result(result: object) -> str:
    if result is None or isinstance(result, str):
        return _text(result)
    return result.hex().upper() if isinstance(result, bytes) else str(result)


class _Arguments:
    """The arguments of a call, and what it puts out."""

    def __init__(self, function: Callable[..., Any], given: List[Any]) -> None:
        self._out: List[Tuple[str, Any]] = []
        hints = typing.get_type_hints(function)
        self.values = [self._value(name, hints[name], value) for name, value in zip(hints, given)]

    def _value(self, name: str, hint: Any, value: Any) -> Any:
        if not isinstance(value, dict):
            return value
        # Of Optional[one] and of Words16, which begins with the number.
        kind = typing.get_args(hint)[0]
        if "bytes" in value:
            return bytes.fromhex(value["bytes"])
        if "record" in value:
            return kind(*value["record"])
        out = self._room(kind, value["out"])
        self._out.append((name, out))
        return out

    @staticmethod
    def _room(kind: Any, count: int) -> Any:
        if issubclass(kind, ctypes.Structure):
            return kind()
        return bytearray(count) if kind is bytearray else (kind * count)()

    def out(self) -> Iterator[str]:
        """What was put out."""
        for name, out in self._out:
            if not isinstance(out, bytearray):
                yield _words(out)
            elif name == "name":
                yield _text(out.partition(b"\0")[0].decode())
            else:
                yield out.hex().upper()


def make_call(name: str, given: List[Any]) -> str:
    """Makes a call; returns what it gave."""
    function = getattr(calls, name)
    arguments = _Arguments(function, given)
    result = function(*arguments.values)
    is_void = typing.get_type_hints(function)["return"] is type(None)
    return " ".join(["-" if is_void else _result(result), *arguments.out()])
