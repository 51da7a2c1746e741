"""Magnetic-stripe readers."""
from dataclasses import dataclass
from typing import Callable, List, Optional, Tuple

from . import calls
from .device import Device
from .polling import Patience, Polling, Unanswered

PAUSE = 0.1
TRACKS = (1, 2, 3)
HEADER_COUNT = 0x7F


@dataclass(frozen=True)
class Track:
    """A track of a swipe: its text, and the characters as the card has them."""

    number: int
    text: str
    raw: bytes

    def __str__(self) -> str:
        return f"{self.number} {self.text}"


@dataclass(frozen=True)
class Swipe:
    """A swipe with the tracks that are not empty."""

    tracks: Tuple[Track, ...]

    def track(self, number: int) -> str:
        """The text of a track; empty if the card has none."""
        return next((track.text for track in self.tracks if track.number == number), "")

    def __str__(self) -> str:
        return ", ".join(str(track) for track in self.tracks)


def _characters(number: int, convert: int) -> bytes:
    """Byte 0 is the header; the characters follow, up to its count."""
    fetched = calls.sorbaneGetTrackData(number, convert) or b"\0"
    return fetched[1 : 1 + (fetched[0] & HEADER_COUNT)]


class Magstripe(Device):
    """A magnetic-stripe reader."""

    product = "magstripe"

    def clear_error_word(self) -> None:
        # This call is refused, which clears the word.
        calls.sorbaneSetActiveID(0, 0, 0, 0)

    def _tracks(self) -> Tuple[Track, ...]:
        """The tracks of the swipe that waits."""
        tracks = []
        for number in TRACKS:
            raw, text = _characters(number, 0), _characters(number, 1)
            word = calls.GetLastLibErr()
            if word != 0 or len(raw) != len(text):
                raise Unanswered(word)
            if text:
                tracks.append(Track(number, text.decode("latin-1"), raw))
        return tuple(tracks)

    def _take(self) -> List[Swipe]:
        """The swipe that waits, if any. The reader keeps what was not fetched."""
        with self.active():
            self.clear_error_word()
            waits = calls.sorbaneIsDataAvailable()
            word = calls.GetLastLibErr()
            if word != 0:
                raise Unanswered(word)
            if waits == 0:
                return []
            tracks = self._tracks()
            calls.sorbaneClearDataAvailable()
            return [Swipe(tracks)]

    def _watch(self) -> Callable[[], List[Swipe]]:
        patience = Patience()

        def ask() -> List[Swipe]:
            try:
                swipes = self._take()
            except Unanswered as problem:
                if patience.is_over(False):
                    raise self.gone(problem.word) from None
                return []
            patience.is_over(True)
            return swipes

        return ask

    def swipes(self, timeout: Optional[float] = None) -> Polling[Swipe]:
        """Swipes, for `for` and `async for`, in timeout seconds or for ever."""
        return Polling(self._watch, PAUSE, timeout)
