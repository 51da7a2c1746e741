"""Error words in words."""
import pytest

from tavlynapi import error_text
from tavlynapi.error_words import ERROR_WORDS


@pytest.mark.parametrize(
    "word, text",
    [
        (0, "the library names no reason; the device refused, or its answer was none"),
        (0x20202, "a report could not be sent; a read of the configuration failed"),
        (0x201032, "a value is out of its range"),
        (8, "several failures, whose numbers have joined"),
    ],
)
def test_sums(word: int, text: str) -> None:
    assert error_text(word) == text


def test_each_word_has_its_text() -> None:
    assert len(ERROR_WORDS) > 30
    for one in ERROR_WORDS:
        assert one.text in error_text(one.value)
