"""The words of a configuration as attributes. They read and change the library's mirror of the device; commit() sends
what has changed.
"""
import ctypes
from typing import Any, Callable, ContextManager, NamedTuple, Optional, Protocol, Type, Union, overload

from . import calls, records
from .errors import OutOfRange, TavlynError


HIGHEST_SIGNED = 32767


class Record(NamedTuple):
    """A record with its calls."""

    kind: Type[Any]
    get: Callable[[Any], int]
    set: Callable[[Any], int]


class Owner(Protocol):
    """The device of a configuration."""

    def selected(self, configuration: int) -> ContextManager[None]:
        """Makes the record calls act on this device and configuration."""

    def commit(self) -> None:
        """Sends what has changed."""

    def reload(self) -> None:
        """Reads the configuration again."""


def read(record: Record) -> Any:
    """The record in the mirror."""
    words = record.kind()
    if record.get(words) != 1:
        raise TavlynError("the configuration could not be read", calls.GetLastLibErr())
    return words


class Settings:
    """A configuration of a device."""

    __slots__ = ("_owner", "_configuration")

    def __init__(self, owner: Owner, configuration: int = 0) -> None:
        self._owner = owner
        self._configuration = configuration

    def commit(self) -> None:
        """Sends what has changed, in every configuration of the device, for it to keep."""
        self._owner.commit()

    def reload(self) -> None:
        """Reads all configurations from the device again; what was not committed is forgotten."""
        self._owner.reload()

    def get_word(self, record: Record, name: str) -> int:
        """A word of a record."""
        with self._owner.selected(self._configuration):
            return int(getattr(read(record), name))

    def set_word(self, record: Record, name: str, value: int) -> int:
        """Changes a word; returns the error word of a refusal, else 0."""
        with self._owner.selected(self._configuration):
            words = read(record)
            if hasattr(words, "bVolatile"):
                words.bVolatile = 0  # a setting is for the next commit
            setattr(words, name, value)
            if record.set(words) != 1:
                return calls.GetLastLibErr()
            if record.set is calls.SetFlags3:
                # Its last word is sent in a block that only other records mark as changed.
                flags = records.tsCfgFlags2()
                calls.GetFlags2(flags)
                calls.SetFlags2(flags)
            return 0


class _Word:
    """A word of a record."""

    def __init__(self, record: Record, word: str) -> None:
        self.record = record
        self.word = word
        self.name = word

    def __set_name__(self, owner: Type[Any], name: str) -> None:
        self.name = name


class ReadOnlyNumber(_Word):
    """A number that the device tells."""

    @overload
    def __get__(self, settings: None, owner: Type[Any]) -> "ReadOnlyNumber":
        ...

    @overload
    def __get__(self, settings: Settings, owner: Type[Any]) -> int:
        ...

    def __get__(self, settings: Optional[Settings], owner: Type[Any]) -> "Union[ReadOnlyNumber, int]":
        return self if settings is None else settings.get_word(self.record, self.word)


class ReadOnlyFlag(_Word):
    """A flag that the device tells."""

    @overload
    def __get__(self, settings: None, owner: Type[Any]) -> "ReadOnlyFlag":
        ...

    @overload
    def __get__(self, settings: Settings, owner: Type[Any]) -> bool:
        ...

    def __get__(self, settings: Optional[Settings], owner: Type[Any]) -> "Union[ReadOnlyFlag, bool]":
        return self if settings is None else settings.get_word(self.record, self.word) != 0


class Flag(ReadOnlyFlag):
    """A flag."""

    def __set__(self, settings: Settings, value: bool) -> None:
        if value not in (0, 1):
            raise OutOfRange(f"{self.name} is True or False, not {value!r}")
        word = settings.set_word(self.record, self.word, int(value))
        if word != 0:
            raise TavlynError(f"{self.name} could not be set", word)


class Number(ReadOnlyNumber):
    """A number, with its unit; without a range it is whatever fits."""

    def __init__(self, record: Record, word: str, unit: str = "", least: Optional[int] = None, most: int = 0) -> None:
        super().__init__(record, word)
        self.unit = unit
        kind = dict((field[0], field[1]) for field in record.kind._fields_)[word]
        bits = 8 * ctypes.sizeof(kind)
        signed = kind(-1).value < 0
        self.fits = range(-(1 << bits - 1), 1 << bits - 1) if signed else range(1 << bits)
        self.has_range = least is not None
        self.least, self.most = (self.fits[0], self.fits[-1]) if least is None else (least, most)

    def _refusal(self, value: int, word: int) -> OutOfRange:
        unit = f" {self.unit}" if self.unit in ("ms", "s", "inches", "bits") else ""
        return OutOfRange(f"{self.name} is {self.least} to {self.most}{unit}, not {value!r}", word)

    def __set__(self, settings: Settings, value: int) -> None:
        # The library judges, because some readers take more than others; but it takes negative words for their bits.
        if value not in self.fits or (self.has_range and not 0 <= value <= HIGHEST_SIGNED):
            raise self._refusal(value, 0)
        word = settings.set_word(self.record, self.word, int(value))
        if word != 0:
            raise self._refusal(value, word)
