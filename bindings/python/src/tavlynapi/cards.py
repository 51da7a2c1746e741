"""The card on a reader: what it is, and when it comes and goes."""
from dataclasses import dataclass
from typing import Callable, List, Literal, Optional

from . import calls
from .polling import Patience, Unanswered

# A reader that was used less than 235 ms ago is left alone. Some systems count time in steps of 16 ms.
PAUSE = 0.255
ID_BYTES = 32


@dataclass(frozen=True)
class Card:
    """A card: the number of its bits, and the bits, lowest byte first."""

    bits: int
    id: bytes

    @property
    def hex(self) -> str:
        """The ID in hexadecimal digits, highest byte first."""
        return self.id[::-1].hex().upper()

    @property
    def number(self) -> int:
        """The ID as a number."""
        return int.from_bytes(self.id, "little")

    def __str__(self) -> str:
        return f"{self.bits} bits {self.hex}"


@dataclass(frozen=True)
class Event:
    """Something that happened at a reader: "card" when one came, "gone" when it went."""

    kind: Literal["card", "gone"]
    card: Card

    def __str__(self) -> str:
        return f"{self.kind} {self.card}"


def ask_for_card() -> Optional[Card]:
    """The card on the active reader. Raises Unanswered also where the answer may only look like a card."""
    buffer = bytearray(ID_BYTES)
    bits = calls.GetActiveID32(buffer, ID_BYTES)
    word = calls.GetLastLibErr()
    if word != 0:
        raise Unanswered(word)
    return Card(bits, bytes(buffer[: (bits + 7) // 8])) if bits else None


def is_doubtful(card: Optional[Card]) -> bool:
    """An ID of zeros: the reader may have been asked for the bytes before the card came, and for the bits after."""
    return card is not None and not any(card.id)


class CardWatch:
    """Compares what a reader says with what it has said before."""

    def __init__(self, ask: Callable[[], Optional[Card]], gone: Callable[[int], Exception]) -> None:
        self._ask = ask
        self._gone = gone
        self._on: Optional[Card] = None
        self._doubted: Optional[Card] = None
        self._patience = Patience()

    def _change(self, card: Optional[Card]) -> List[Event]:
        if card == self._on:
            return []
        events = [Event("gone", self._on)] if self._on else []
        self._on = card
        return events + ([Event("card", card)] if card else [])

    def events(self) -> List[Event]:
        """What has happened since the last time. Raises what gone() makes when the reader does not answer any more."""
        try:
            card = self._ask()
        except Unanswered as problem:
            if self._patience.is_over(False):
                raise self._gone(problem.word) from None
            return []
        self._patience.is_over(True)
        doubted, self._doubted = self._doubted, None
        if doubted is None and is_doubtful(card) and card != self._on:
            self._doubted = card
            return []
        # A card of zeros that was seen once and has left was one all the same.
        before = self._change(doubted) if card is None and doubted is not None else []
        return before + self._change(card)
