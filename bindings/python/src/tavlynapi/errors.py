"""What goes wrong, as exceptions, and error words in words."""
from typing import List, Optional

from .error_words import ERROR_WORDS, NO_WORD, UNKNOWN


def error_text(word: int) -> str:
    """What an error word says: the operation and the cause, several where it is a sum of several."""
    if word == 0:
        return NO_WORD
    texts: List[str] = []
    for one in ERROR_WORDS:
        # Words of one kind have the same text and come after one another.
        if word & one.mask == one.found and one.text not in texts[-1:]:
            texts.append(one.text)
    return "; ".join(texts) or UNKNOWN


class TavlynError(Exception):
    """Something that a device or the library did not do.

    word is the error word, 0 if there was none, and text says it in words; the message says also what was to be done.
    """

    def __init__(self, what: str, word: int = 0, text: Optional[str] = None) -> None:
        self.word = word
        self.text = error_text(word) if text is None else text
        super().__init__(f"{what} (error word 0x{word:X}: {self.text})" if text is None else what)


class Problem(TavlynError):
    """One that has no error word: the text is the message."""

    def __init__(self, text: str) -> None:
        super().__init__(text, 0, text)


class LibraryProblem(Problem):
    """The library is not installed, too old, or not the library."""


class NoDevice(TavlynError):
    """There is no such device."""


class DeviceGone(NoDevice):
    """The device was there and answers no more."""


class NotSupported(TavlynError):
    """The device has no such thing."""


class OutOfRange(TavlynError, ValueError):
    """A setting has no such value."""

    def __init__(self, what: str, word: int = 0) -> None:
        super().__init__(what, word, error_text(word) if word else "a value is out of its range")


class BadFile(TavlynError):
    """A file could not be written, or is not one that can be loaded."""

    def __init__(self, what: str, word: int, reason: Optional[str]) -> None:
        text = error_text(word)
        super().__init__(f"{what}: {reason or text}", word, text)


class Busy(Problem):
    """Devices of another product or on another link are open: the library holds those of one search."""
