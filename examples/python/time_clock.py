"""A time clock: who shows a card comes, and who shows it again goes. It goes on when the reader is unplugged and back.

usage: time_clock.py FILE [EVENTS]      adds lines "time,card,in" or "time,card,out" to the file
"""
import csv
import datetime
import itertools
import sys
import time
from typing import Iterator, Set

import tavlynapi

PAUSE = 2  # seconds between two looks for a reader that is gone


def connected() -> tavlynapi.Reader:
    """The first reader, as soon as there is one."""
    while True:
        try:
            return tavlynapi.connect()
        except tavlynapi.NoDevice as problem:
            print(f"{problem}; waiting", file=sys.stderr)
            time.sleep(PAUSE)


def cards() -> Iterator[str]:
    """Every card that is shown, for ever."""
    while True:
        with connected() as reader:
            try:
                for card in reader.cards():
                    reader.beep()
                    yield card.hex
            except tavlynapi.DeviceGone as problem:
                print(problem, file=sys.stderr)


def main() -> None:
    """Runs the program."""
    path, *most = sys.argv[1:]
    present: Set[str] = set()
    with open(path, "a", newline="", encoding="utf-8") as file:
        lines = csv.writer(file)
        for card in itertools.islice(cards(), int(most[0]) if most else None):
            present ^= {card}
            direction = "in" if card in present else "out"
            lines.writerow([datetime.datetime.now().isoformat(timespec="seconds"), card, direction])
            file.flush()
            print(card, direction)


main()
