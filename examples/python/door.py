"""Opens a door for the cards of a list."""
import tavlynapi

MAY_PASS = {"04030201"}


def next_visitor(seconds: float) -> str:
    """What happens to the next one who shows a card."""
    with tavlynapi.connect() as reader:
        for card in reader.cards(timeout=seconds):
            if card.hex in MAY_PASS:
                reader.relay(True)
                return "open"
            return "shut"
    return "nobody came"


if __name__ == "__main__":
    print(next_visitor(seconds=60))
