"""What all devices have."""
import contextlib
import dataclasses
import os
import time
from typing import Iterator, Optional, Type, TypeVar

from . import calls
from .errors import BadFile, DeviceGone, NotSupported, TavlynError
from .library import lock
from .passing import Path
from .places import Place, Table

D = TypeVar("D", bound="Device")


def _bad_file(done: str, path: Path, flags: int) -> BadFile:
    """Asks the system what it has against opening the file, which the library does not say."""
    reason = None
    is_new = not os.path.lexists(path)
    try:
        os.close(os.open(path, flags))
        if is_new:
            os.unlink(path)
    except OSError as problem:
        reason = problem.strerror
    return BadFile(f"{os.fsdecode(path)} could not be {done}", calls.GetLastLibErr(), reason)


class Device:
    """A device that is open until close() or the end of `with`.

    Any thread may use it; the calls of all threads come one after the other.
    """

    product = ""

    def __init__(self, table: Table, place: Place) -> None:
        self._table = table
        self._place = place
        self._used = time.monotonic()
        table.add(self)

    def __enter__(self: D) -> D:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<{self.product} {self.serial_number or self.luid} at {self.path}>"

    def close(self) -> None:
        """Lets go of the device; a second time does nothing."""
        self._table.remove(self)

    @contextlib.contextmanager
    def active(self) -> Iterator[None]:
        """For the calls of tavlynapi.calls: they act on this device, and no other thread makes any."""
        with lock:
            self._table.check_open(self)
            if self._place.index is None:
                raise DeviceGone(f"{self} is not plugged in any more", 0, "the device is gone")
            calls.SetActDev(self._place.index)
            try:
                yield
            finally:
                self._used = time.monotonic()

    def rest(self, seconds: float) -> None:
        """Waits until nobody has used the device for so long."""
        time.sleep(max(self._used + seconds - time.monotonic(), 0))

    @contextlib.contextmanager
    def selected(self, configuration: int) -> Iterator[None]:
        """The same, with a configuration of a plus reader selected."""
        with self.active():
            before = calls.GetActConfig()
            if configuration == before:
                yield
                return
            calls.SetActConfig(configuration)
            try:
                yield
            finally:
                calls.SetActConfig(before)

    @property
    def place(self) -> Place:
        """Where the device is."""
        return self._place

    @place.setter
    def place(self, place: Place) -> None:
        self._place = place
        self._used = time.monotonic()

    @property
    def serial_number(self) -> str:
        """The serial number; empty if the device has none."""
        return self._place.serial_number

    @property
    def path(self) -> str:
        """The path or port of the device."""
        return self._place.path

    @property
    def part_number(self) -> str:
        """The part number; empty if the device has none."""
        return self._place.part_number

    @property
    def luid(self) -> int:
        """The logical unit ID. A new one reaches the device with the next commit()."""
        return self._place.luid

    @luid.setter
    def luid(self, luid: int) -> None:
        with self.active():
            calls.SetLUID(luid)
            self._place = dataclasses.replace(self._place, luid=luid)

    @property
    def firmware(self) -> str:
        """The version of the firmware."""
        with self.active():
            return calls.GetFullFWVersion() or ""

    def failure(self, what: str) -> TavlynError:
        """What an operation that did not succeed raises."""
        return TavlynError(what, calls.GetLastLibErr())

    def refusal(self, what: str) -> TavlynError:
        """What one raises that the device may not have: without an error word it was not even asked, or said no."""
        word = calls.GetLastLibErr()
        return TavlynError(what, word) if word else NotSupported(what)

    def gone(self, word: int) -> TavlynError:
        """What an operation raises whose device answers no more, with the error word of the last question."""
        return DeviceGone(f"{self} does not answer", word)

    def clear_error_word(self) -> None:
        """For calls that leave the word as it is."""

    def reconnect(self) -> None:
        """Searches again, for a device that was unplugged and is back; NoDevice if it is not.

        The configurations of all devices are read again; what was not committed is forgotten.
        """
        self._table.search_again(self)

    def commit(self) -> None:
        """Sends what has changed in the configuration, for the device to keep."""
        with self.active():
            if calls.WriteCfg() != 1:
                raise self.failure("the configuration could not be written")

    def reload(self) -> None:
        """Reads the configuration from the device again; what was not committed is forgotten."""
        with self.active():
            if calls.ReadCfg() != 1:
                raise self.failure("the configuration could not be read")

    def beep(self, count: int = 1, long: bool = False) -> None:
        """Beeps now: 1 to 5 times, or 1 or 2 times long."""
        if not 1 <= count <= (2 if long else 5):
            raise ValueError(f"{count} beeps: a device makes 1 or 2 long ones, or 1 to 5 short ones")
        with self.active():
            self.clear_error_word()
            if calls.BeepNow(count, int(long)) != 1:
                raise self.refusal("the device did not beep")

    def save(self, path: Path, secure: bool = False) -> None:
        """Saves the configuration as a file; secure adds a trailer, by which load() finds damage."""
        self._check_secure(secure)
        with self.active():
            self.clear_error_word()
            if not secure:
                saved = calls.WriteDevCfgToFile(path) == 1 and os.path.getsize(path) > 0
            else:
                saved = calls.WriteDevCfgToSecureFile(path) == 1 and calls.CheckTamperedFile(path, 0) == 1
            if not saved:
                raise _bad_file("saved", path, os.O_WRONLY | os.O_CREAT)

    def load(self, path: Path, secure: bool = False) -> None:
        """Loads a file into the device; secure refuses one that has no trailer or is damaged."""
        self._check_secure(secure)
        with self.active():
            self.clear_error_word()
            call = calls.ReadDevCfgFromSecureFile if secure else calls.ReadDevCfgFmFile
            if call(path) != 1:
                raise _bad_file("loaded", path, os.O_RDONLY)
            if self.product != "reader":
                self.commit()  # a reader has got it by the load

    def _check_secure(self, secure: bool) -> None:
        if secure and self.product != "reader":
            raise NotSupported("only files of readers have a trailer")
