"""Sonar sensors."""
import ctypes
from dataclasses import dataclass
from typing import Callable, List, Optional

from . import calls, records
from .device import Device
from .errors import TavlynError
from .polling import Patience, Polling
from .settings import SonarSettings

RANGE_WORDS = 5


@dataclass(frozen=True)
class Range:
    """A measurement. Somebody is present within the accepted range, and may go away or come nearer."""

    inches: int
    present: bool
    receding: bool
    approaching: bool
    status: int

    def __str__(self) -> str:
        return f"{self.inches} inches, {'present' if self.present else 'absent'}"


class Sonar(Device):
    """A sonar sensor."""

    product = "sonar"

    @property
    def config(self) -> SonarSettings:
        """The configuration."""
        return SonarSettings(self)

    def clear_error_word(self) -> None:
        calls.GetSonarParms(records.tsSonarParms())

    def range(self) -> Range:
        """Measures. It takes a quarter of a second."""
        words = (ctypes.c_uint16 * RANGE_WORDS)()
        with self.active():
            if calls.GetObjRangeInfo(words) != 1:
                raise self.failure("the sensor did not measure")
        inches, present, receding, approaching, status = words
        return Range(inches, present != 0, receding != 0, approaching != 0, status)

    def _watch(self) -> Callable[[], List[Range]]:
        patience = Patience()

        def ask() -> List[Range]:
            try:
                found = [self.range()]
            except TavlynError as problem:
                if patience.is_over(False):
                    raise self.gone(problem.word) from None
                return []
            patience.is_over(True)
            return found

        return ask

    def _watch_presence(self) -> Callable[[], List[bool]]:
        ask = self._watch()
        told: List[bool] = []

        def changes() -> List[bool]:
            found = [one.present for one in ask() if told[-1:] != [one.present]]
            told[:] = found or told
            return found

        return changes

    def ranges(self, timeout: Optional[float] = None) -> Polling[Range]:
        """Measurements, for `for` and `async for`, in timeout seconds or for ever."""
        return Polling(self._watch, 0, timeout)

    def presence(self, timeout: Optional[float] = None) -> Polling[bool]:
        """Whether somebody is present, now and at each change."""
        return Polling(self._watch_presence, 0, timeout)
