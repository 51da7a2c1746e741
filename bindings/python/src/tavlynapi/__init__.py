"""Card readers, magnetic-stripe readers and sonar sensors.

    with tavlynapi.connect() as reader:
        for card in reader.cards(timeout=60):
            print(card)

The calls of the library, one by one, are in tavlynapi.calls.
"""
from .errors import BadFile, DeviceGone, LibraryProblem, NoDevice, NotSupported, TavlynError
from .version import VERSION as __version__

__all__ = [
    "BadFile",
    "DeviceGone",
    "LibraryProblem",
    "NoDevice",
    "NotSupported",
    "TavlynError",
    "__version__",
]
