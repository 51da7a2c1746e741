"""What goes wrong, as exceptions."""


class TavlynError(Exception):
    """Something that a device or the library did not do. word is the error word, 0 if there was none."""

    def __init__(self, text: str, word: int = 0) -> None:
        super().__init__(text)
        self.text = text
        self.word = word


class LibraryProblem(TavlynError):
    """The library is not installed, too old, or not the library."""


class NoDevice(TavlynError):
    """There is no such device."""


class DeviceGone(NoDevice):
    """The device was there and answers no more."""


class NotSupported(TavlynError):
    """The device has no such thing."""


class BadFile(TavlynError):
    """A file could not be written, or is not one that can be loaded."""
