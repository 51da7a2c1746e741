"""The library's table of devices: what a search has found, and which of it is open."""
import contextlib
import dataclasses
import weakref
from typing import List, Optional, Protocol

from . import calls
from .errors import Busy, LibraryProblem, NoDevice, TavlynError
from .library import lock
from .links import Link, Product

PATH_ROOM = 513
READER = 1


@dataclasses.dataclass(frozen=True)
class Place:
    """A device that a search has found; without an index it is there no more."""

    index: Optional[int]
    product: str
    path: str
    serial_number: str
    part_number: str
    luid: int


class Opened(Protocol):
    """A device that is open."""

    place: Place


def _path() -> str:
    room = bytearray(PATH_ROOM)
    calls.GetDevName(room)
    return room.partition(b"\0")[0].decode("utf-8", "backslashreplace")


def _place(index: int, product: Product) -> Place:
    calls.SetActDev(index)
    serial_number = calls.GetSerialNumber() if product.code == READER else None
    part_number = calls.getPartNumberString()
    return Place(index, product.name, _path(), serial_number or "", part_number or "", calls.GetLUID())


class Table:
    """The devices of one search, which are all that the library holds. Its methods are called under the lock."""

    def __init__(self) -> None:
        # A device that the program has forgotten is as good as closed.
        self._open: "weakref.WeakSet[Opened]" = weakref.WeakSet()
        self._link: Optional[Link] = None
        self._product: Optional[Product] = None
        self._all_read = False
        self.places: List[Place] = []

    def add(self, device: Opened) -> None:
        """Notes that the device is open."""
        self._open.add(device)

    def remove(self, device: Opened) -> None:
        """Closes the device, and with the last one the connection."""
        with lock:
            if device in self._open:
                self._open.discard(device)
                self.tidy()

    def remove_all(self) -> None:
        """Closes every device."""
        with lock:
            if self._open:
                self._open.clear()
                self.tidy()

    def tidy(self) -> None:
        """Closes the connection unless a device is open."""
        if not self._open:
            try:
                calls.USBDisconnect()
            except LibraryProblem:
                return
            self._link = self._product = None
            self.places = []

    def check_open(self, device: Opened) -> None:
        """Raises ValueError for a device that was closed."""
        if device not in self._open:
            raise ValueError("the device is closed")

    def search(self, product: Product, link: Link) -> None:
        """Finds the devices; if others are open, only the ones that were found with them."""
        if self._open:
            if (self._link, self._product) != (link, product):
                raise Busy("other devices are open: close them first, the library holds those of one search")
            return
        self._search(product, link)

    def _search(self, product: Product, link: Link) -> None:
        calls.USBDisconnect()
        self._link, self._product = link, product
        self._all_read = link.connect(product)
        self.places = [_place(index, product) for index in range(calls.GetDevCnt())]

    def search_again(self, device: Opened) -> None:
        """Searches for devices that have gone and come; the open ones are found again, where they may be now."""
        with lock:
            self.check_open(device)
            assert self._product and self._link
            self._search(self._product, self._link)
            for one in list(self._open):
                one.place = self._found_again(one.place)
                if one is not device and one.place.index is not None:
                    with contextlib.suppress(TavlynError):  # it says so itself when it is used
                        self.make_read(one.place)
            if device.place.index is None:
                raise NoDevice(f"{device} is not back", 0, self._link.nothing(self._product))
            self.make_read(device.place)

    def _found_again(self, before: Place) -> Place:
        """A reader may be on another port than before; others have nothing but their path."""
        for place in self.places:
            if place.serial_number == before.serial_number and (before.serial_number or place.path == before.path):
                return place
        return dataclasses.replace(before, index=None)

    def make_read(self, place: Place) -> None:
        """Reads what a connect has left out: all configurations but one of a plus reader that is not the first."""
        assert place.index is not None
        calls.SetActDev(place.index)
        if self._all_read and (place.index == 0 or calls.GetMaxConfig() == 0):
            return
        if calls.ReadCfg() != 1:
            raise TavlynError("the configuration could not be read", calls.GetLastLibErr())
