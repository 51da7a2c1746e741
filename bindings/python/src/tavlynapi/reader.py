"""Card readers."""
from typing import Callable, List, Optional, Sequence, Tuple

from . import calls, records
from .cards import PAUSE, Card, CardWatch, Event, ask_for_card, is_doubtful
from .device import Device
from .errors import NotSupported
from .fields import read
from .polling import Patience, Polling, Unanswered
from .settings import BPRRLYCTRL, LEDCTRL, ReaderSettings

NO_VOLUME = 65535
RAW_BYTES = 8
SERIAL_LINK = 1


class Configuration(ReaderSettings):
    """A configuration of a reader; a plus reader has several."""

    __slots__ = ()

    @property
    def card_type(self) -> Optional[int]:
        """The code of the type of cards that this configuration is for; None if the reader is no plus reader."""
        with self._owner.selected(self._configuration):
            kind = calls.GetCardType()
            return None if kind < 0 else kind

    @card_type.setter
    def card_type(self, kind: int) -> None:
        self._set_card_type(kind, calls.GetCardPriority)

    @property
    def high_priority(self) -> bool:
        """Whether this type of cards comes first."""
        with self._owner.selected(self._configuration):
            return calls.GetCardPriority() == 1

    @high_priority.setter
    def high_priority(self, high: bool) -> None:
        self._set_card_type(None, lambda: int(high))

    def _set_card_type(self, kind: Optional[int], priority: Callable[[], int]) -> None:
        with self._owner.selected(self._configuration):
            present = calls.GetCardType()
            if present < 0:
                raise NotSupported("only a plus reader has card types", 0)
            calls.SetCardTypePriority(present if kind is None else kind, priority())


class Reader(Device):
    """A card reader."""

    product = "reader"

    @property
    def config(self) -> Configuration:
        """The configuration; of a plus reader the one with index 0."""
        return Configuration(self)

    @property
    def configs(self) -> Sequence[Configuration]:
        """All configurations; a plus reader has several."""
        with self.active():
            return [Configuration(self, index) for index in range(calls.GetMaxConfig() + 1)]

    def _ask(self) -> Optional[Card]:
        """The library leaves a reader alone that was used a moment ago, and repeats the last card, of any reader."""
        self.rest(PAUSE)
        with self.active():
            self.rest(PAUSE)  # another thread may have used it in the meantime
            return ask_for_card()

    def read_card(self) -> Optional[Card]:
        """The card on the reader now, or None. It takes a quarter of a second if the reader was just in use."""
        patience = Patience()
        doubted = False
        while True:
            try:
                card = self._ask()
            except Unanswered as problem:
                if patience.is_over(False):
                    raise self.gone(problem.word) from None
                continue
            if doubted or not is_doubtful(card):
                return card
            doubted = True

    def _watch(self) -> Callable[[], List[Event]]:
        return CardWatch(self._ask, self.gone).events

    def _watch_arrivals(self) -> Callable[[], List[Card]]:
        events = self._watch()
        return lambda: [event.card for event in events() if event.kind == "card"]

    def events(self, timeout: Optional[float] = None) -> Polling[Event]:
        """Cards that come and go, for `for` and `async for`, in timeout seconds or for ever.

        A card that lies there when a loop begins is told first. DeviceGone ends a loop when the reader does not answer
        three times in a row.
        """
        return Polling(self._watch, PAUSE, timeout)

    def cards(self, timeout: Optional[float] = None) -> Polling[Card]:
        """Cards that come, like events()."""
        return Polling(self._watch_arrivals, PAUSE, timeout)

    def leds(self, red: bool = False, green: bool = False, store: bool = False) -> None:
        """Switches the LEDs; store lets the reader keep it, otherwise it is so until it loses power."""
        self._set_leds(store, bAppCtrlsLED=1, iRedLEDState=int(red), iGrnLEDState=int(green))

    def automatic_leds(self, store: bool = False) -> None:
        """Leaves the LEDs to the reader."""
        self._set_leds(store, bAppCtrlsLED=0)

    def _set_leds(self, store: bool, **words: int) -> None:
        with self.active():
            record: records.tsLEDCtrl = read(LEDCTRL)
            for name, value in {**words, "bVolatile": int(not store)}.items():
                setattr(record, name, value)
            self._finish_output("the LEDs", calls.SetLEDCtrl(record), store)

    def relay(self, on: bool, store: bool = False) -> None:
        """Switches the relay; store as for leds()."""
        if on not in (True, False):
            raise TypeError(f"a relay is switched by True or False, not by {on!r}")
        with self.active():
            record: records.tsBprRlyCtrl = read(BPRRLYCTRL)
            record.iRelayState = int(on)
            record.bVolatile = int(not store)
            self._finish_output("the relay", calls.SetBprRlyCtrl(record), store)

    def _finish_output(self, what: str, result: int, store: bool) -> None:
        if result != 1 or calls.GetLastLibErr() != 0:
            raise self.failure(f"{what} could not be switched")
        if store:
            self.commit()

    @property
    def volume(self) -> int:
        """The volume of the beeper, 0 to 255."""
        with self.active():
            self.clear_error_word()
            volume = calls.GetBeeperVolume()
            if volume == NO_VOLUME:
                raise self.refusal("the reader did not tell its volume")
            return volume

    @volume.setter
    def volume(self, volume: int) -> None:
        if not 0 <= volume <= 255:
            raise ValueError(f"a volume is 0 to 255, not {volume}")
        with self.active():
            self.clear_error_word()
            if calls.SetBeeperVolume(volume) != 1:
                raise self.refusal("the volume could not be set")

    def clear_error_word(self) -> None:
        calls.GetFlags(records.tsCfgFlags())

    def raw(self, command: bytes) -> bytes:
        """Sends a command of up to eight bytes and returns the eight of the reply."""
        if not 1 <= len(command) <= RAW_BYTES:
            raise ValueError(f"a command has 1 to {RAW_BYTES} bytes, not {len(command)}")
        with self.active():
            self.clear_error_word()
            calls.SetRawPayload_index(0, 0)
            answered = [calls.SetRawPayload_index(at, byte) for at, byte in _numbered(command)][-1]
            if answered != 1 or calls.GetLastLibErr() != 0:
                raise self.failure("the command was not answered")
            # Over a serial link the reply begins where reports have the report ID.
            first = 0 if calls.GetDevType() == SERIAL_LINK else 1
            return bytes(calls.GetRawPayload_index(first + at) for at in range(RAW_BYTES))


def _numbered(command: bytes) -> List[Tuple[int, int]]:
    return list(enumerate(command.ljust(RAW_BYTES, b"\0"), 1))
