"""A time clock: who shows a card comes, and who shows it again goes. One beep for in, two for out.

usage: time_clock.py FILE       adds lines "time,card,in" or "time,card,out" to the file
"""
import csv
import datetime
import pathlib
import sys
import time
from typing import Optional, Set

import tavlynapi

PAUSE = 0.5  # seconds between two looks for a reader that is gone
HOLD_MS = 1000


class Clock:
    """What is noted, in a file; who is in is known from it after a restart."""

    def __init__(self, path: pathlib.Path) -> None:
        self._path = path
        self._present: Set[str] = set()
        if path.exists():
            for _, card, _ in csv.reader(path.open(encoding="utf-8")):
                self._present ^= {card}

    def note(self, card: str) -> str:
        """Notes that a card was shown, and returns "in" or "out"."""
        self._present ^= {card}
        direction = "in" if card in self._present else "out"
        with self._path.open("a", newline="", encoding="utf-8") as file:
            csv.writer(file).writerow([datetime.datetime.now().isoformat(timespec="seconds"), card, direction])
        return direction


def serve(clock: Clock, reader: tavlynapi.Reader, seconds: Optional[float]) -> None:
    """Notes cards until the time is over."""
    if reader.config.id_hold_ms != HOLD_MS:
        reader.config.id_hold_ms = HOLD_MS
        reader.config.commit()
    for card in reader.cards(timeout=seconds):
        reader.beep(1 if clock.note(card.hex) == "in" else 2)


def run(path: pathlib.Path, seconds: Optional[float] = None) -> None:
    """Runs the clock, for ever without a time."""
    over = None if seconds is None else time.monotonic() + seconds
    clock = Clock(path)
    while over is None or time.monotonic() < over:
        try:
            with tavlynapi.connect() as reader:
                serve(clock, reader, None if over is None else over - time.monotonic())
        except tavlynapi.NoDevice as problem:  # also one that is gone
            print(problem, file=sys.stderr)
            time.sleep(PAUSE)


if __name__ == "__main__":
    run(pathlib.Path(sys.argv[1]))
