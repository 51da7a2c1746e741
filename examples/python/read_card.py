"""Waits for a card on the first reader."""
import sys

import tavlynapi

try:
    with tavlynapi.connect() as reader:
        for card in reader.cards(timeout=60):
            print(card)
            break
        else:
            print("nobody came")
except tavlynapi.TavlynError as problem:
    sys.exit(str(problem))
