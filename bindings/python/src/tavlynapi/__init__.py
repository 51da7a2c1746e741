"""Card readers, magnetic-stripe readers and sonar sensors.

    with tavlynapi.connect() as reader:
        for card in reader.cards(timeout=60):
            print(card)

The calls of the library, one by one, are in tavlynapi.calls.
"""
from .cards import Card, Event
from .connecting import connect, devices
from .device import Device
from .errors import (
    BadFile,
    Busy,
    DeviceGone,
    LibraryProblem,
    NoDevice,
    NotSupported,
    OutOfRange,
    TavlynError,
    error_text,
)
from .library import lock
from .magstripe import Magstripe, Swipe, Track
from .places import Place
from .polling import Polling
from .reader import Configuration, Reader
from .sonar import Range, Sonar
from .version import VERSION as __version__

__all__ = [
    "BadFile",
    "Busy",
    "Card",
    "Configuration",
    "Device",
    "DeviceGone",
    "Event",
    "LibraryProblem",
    "Magstripe",
    "NoDevice",
    "NotSupported",
    "OutOfRange",
    "Place",
    "Polling",
    "Range",
    "Reader",
    "Sonar",
    "Swipe",
    "TavlynError",
    "Track",
    "__version__",
    "connect",
    "devices",
    "error_text",
    "lock",
]
