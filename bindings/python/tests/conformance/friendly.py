"""The operations of a scenario, through the objects of tavlynapi."""
import itertools
from typing import Any, Callable, Iterable, List, Optional

import tavlynapi
from tavlynapi import Card, Event

DONE = "done"


def _error(error: tavlynapi.TavlynError) -> str:
    return f"error 0x{error.word:X} {error.text}"


def _card(card: Card) -> str:
    return f"{card.bits} {card.hex}"


def _event(event: Event) -> str:
    return f"{event.kind} {_card(event.card)}"


def _told(things: Iterable[Any], show: Callable[[Any], str], count: int) -> str:
    """The first so many, and the failure after them if there is one."""
    told: List[str] = []
    try:
        for one in itertools.islice(things, count):
            told.append(show(one))
    except tavlynapi.TavlynError as error:
        told.append(_error(error))
    return ", ".join(told) or "none"


class Friendly:
    """A device, and what the steps do with it: a method for each operation."""

    def __init__(self) -> None:
        self._device: Any = None

    def tried(self, operation: Callable[[], str]) -> str:
        """What an operation gives, or its failure."""
        try:
            return operation()
        except tavlynapi.TavlynError as error:
            return _error(error)

    def connect(self, product: Any, ip: Optional[str] = None, **words: Any) -> str:
        """Opens a device."""
        if ip:
            address, port = ip.split(":")
            words["ip"] = (address, int(port))
        device = self._device = tavlynapi.connect(product, **words)
        return f"{product} {device.serial_number or '-'} {device.luid} {device.part_number or '-'}"

    def close(self) -> str:
        """Closes it."""
        if self._device:
            self._device.close()
        return DONE

    def read_card(self) -> str:
        """The card on the reader."""
        card = self._device.read_card()
        return _card(card) if card else "none"

    def cards(self, count: int, seconds: float) -> str:
        """Arrivals of cards."""
        return _told(self._device.cards(timeout=seconds), _card, count)

    def events(self, count: int, seconds: float) -> str:
        """Arrivals and departures."""
        return _told(self._device.events(timeout=seconds), _event, count)

    def _config(self, configuration: int) -> Any:
        return self._device.configs[configuration] if configuration else self._device.config

    def get(self, field: str, configuration: int = 0) -> str:
        """A word of a configuration."""
        return str(int(getattr(self._config(configuration), field)))

    def set(self, field: str, value: int, configuration: int = 0) -> str:
        """Changes one."""
        setattr(self._config(configuration), field, value)
        return DONE

    def commit(self) -> str:
        """Sends what has changed."""
        self._device.commit()
        return DONE

    def reload(self) -> str:
        """Reads the configuration."""
        self._device.reload()
        return DONE

    def save(self, path: str, secure: bool = False) -> str:
        """Saves it as a file."""
        self._device.save(path, secure)
        return DONE

    def load(self, path: str, secure: bool = False) -> str:
        """Loads a file."""
        self._device.load(path, secure)
        return DONE

    def beep(self, count: int = 1, long: bool = False) -> str:
        """Beeps."""
        self._device.beep(count, long)
        return DONE

    def leds(self, red: bool, green: bool) -> str:
        """Switches the LEDs."""
        self._device.leds(red, green)
        return DONE

    def relay(self, on: bool) -> str:
        """Switches the relay."""
        self._device.relay(on)
        return DONE

    def volume(self, value: Optional[int] = None) -> str:
        """The volume."""
        if value is not None:
            self._device.volume = value
        return str(self._device.volume)

    def raw(self, **words: str) -> str:
        """Sends a command."""
        return str(self._device.raw(bytes.fromhex(words["bytes"])).hex().upper())

    def swipe(self, seconds: float) -> str:
        """The next swipe."""
        return _told(self._device.swipes(timeout=seconds), str, 1)

    def range(self) -> str:
        """What a sensor measures."""
        found = self._device.range()
        return f"{found.inches} {int(found.present)}"

    def error_text(self, word: str) -> str:
        """An error word in words."""
        return tavlynapi.error_text(int(word, 16))
