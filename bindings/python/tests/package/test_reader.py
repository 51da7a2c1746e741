"""Cards and outputs of a card reader."""
import itertools

import pytest

import tavlynapi
from tavlynapi import Card, Event
from tavlynapi.cards import CardWatch
from tavlynapi.testing import Desk

FIRST = Card(26, bytes.fromhex("01020303"))
SECOND = Card(16, bytes.fromhex("0A0B"))
CARDS = pytest.mark.tavlyn(cards=["01020303:26", "0A0B:16"])


def test_card() -> None:
    assert (FIRST.hex, FIRST.number, str(FIRST)) == ("03030201", 0x3030201, "26 bits 03030201")


def test_read_card(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        assert reader.read_card() is None
        desk.card("0A0B:16")
        assert reader.read_card() == SECOND


@CARDS
def test_arrivals(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        assert list(reader.cards(timeout=8)) == [FIRST, SECOND]


@CARDS
def test_events(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        told = list(itertools.islice(reader.events(), 4))
    assert told == [Event("card", FIRST), Event("gone", FIRST), Event("card", SECOND), Event("gone", SECOND)]


def test_a_loop_begins_with_the_card_that_lies_there(desk: Desk) -> None:
    desk.card("0A0B:16")
    with tavlynapi.connect() as reader:
        assert [next(iter(reader.cards())) for _ in range(2)] == [SECOND, SECOND]


def test_a_card_of_zeros(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        desk.card("0000:16")
        assert list(reader.events(timeout=1)) == [Event("card", Card(16, bytes(2)))]


def test_zeros_that_a_card_leaves_when_it_comes() -> None:
    said = iter([None, Card(26, bytes(4)), FIRST, FIRST, None])
    watch = CardWatch(lambda: next(said), AssertionError)
    assert [watch.events() for _ in range(5)] == [[], [], [Event("card", FIRST)], [], [Event("gone", FIRST)]]


def test_no_time(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        assert not list(reader.cards(timeout=0))
        with pytest.raises(ValueError):
            reader.cards(timeout=-1)


def test_outputs(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.leds(red=True)
        assert reader.config.red_led_on and not reader.config.green_led_on and reader.config.control_leds
        reader.relay(True)
        assert reader.config.relay_on
        reader.automatic_leds()
        reader.config.reload()
        assert not reader.config.control_leds
        reader.leds(green=True, store=True)
    assert "set 1 90 04" in " ".join(line[:11] for line in desk.traffic())


def test_beeps(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.beep(2, long=True)
        for count, long in ((0, False), (6, False), (3, True)):
            with pytest.raises(ValueError):
                reader.beep(count, long)
    assert sum(line.startswith("set 1 8C 03") for line in desk.traffic()) == 1


def test_volume(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.volume = 7
        assert reader.volume == 7
        with pytest.raises(ValueError):
            reader.volume = 256


def test_raw(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        assert reader.raw(b"\x8a") == bytes.fromhex("0100317400000000")
        with pytest.raises(ValueError):
            reader.raw(bytes(9))
        desk.do("refuse 1")
        assert reader.raw(b"\x8a")  # the library tries again
        desk.do("vanish 1")
        with pytest.raises(tavlynapi.TavlynError) as refused:
            reader.raw(b"\x8a")
        assert refused.value.word == 0x202


def test_texts(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        assert (reader.part_number, reader.path) == ("RDR-80581AKU", "/dev/hidraw-sim1")
        assert reader.firmware.startswith("LNC 16")
        assert repr(reader) == "<reader 0400123456 at /dev/hidraw-sim1>"
