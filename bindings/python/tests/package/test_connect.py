"""Which device a connect opens."""
from typing import Any, Dict

import pytest

import tavlynapi
from tavlynapi.testing import Desk

TWO_READERS = pytest.mark.tavlyn(devices=["reader", "plus:3,luid=7"])
FIRST, SECOND = "0400123456", "0400123457"


@TWO_READERS
@pytest.mark.parametrize(
    "choice, serial_number",
    [({}, FIRST), ({"serial": SECOND}, SECOND), ({"luid": 7}, SECOND), ({"index": 1}, SECOND), ({"index": 0}, FIRST)],
)
def test_one_of_several(desk: Desk, choice: Dict[str, Any], serial_number: str) -> None:
    with tavlynapi.connect(**choice) as reader:
        assert reader.serial_number == serial_number


@TWO_READERS
def test_all_that_there_are(desk: Desk) -> None:
    assert [(one.serial_number, one.luid) for one in tavlynapi.devices()] == [(FIRST, 1), (SECOND, 7)]
    assert tavlynapi.calls.GetDevCnt() == 0


@TWO_READERS
def test_two_at_once(desk: Desk) -> None:
    with tavlynapi.connect(index=0) as first, tavlynapi.connect(index=1) as second:
        desk.card("0A0B:16", device=2)
        assert first.read_card() is None
        assert str(second.read_card()) == "16 bits 0B0A"
        first.close()
        assert len(second.configs) == 3


@TWO_READERS
@pytest.mark.parametrize(
    "choice, text",
    [
        ({"serial": "none"}, "no reader has this serial number"),
        ({"luid": 9}, "no reader has this LUID"),
        ({"index": 2}, "no reader has this index"),
        ({"product": "sonar"}, "no sonar sensor is plugged in"),
    ],
)
def test_no_such_device(desk: Desk, choice: Dict[str, Any], text: str) -> None:
    with pytest.raises(tavlynapi.NoDevice) as refused:
        tavlynapi.connect(**choice)
    assert (str(refused.value), refused.value.text, refused.value.word) == (text, text, 0)


@pytest.mark.tavlyn(devices=["reader", "sonar"])
def test_products_one_after_the_other(desk: Desk) -> None:
    with tavlynapi.connect():
        with pytest.raises(tavlynapi.Busy):
            tavlynapi.connect("sonar")
    tavlynapi.connect("sonar").close()


@pytest.mark.parametrize(
    "wrong", [{"product": "printer"}, {"com": 0}, {"com": 3, "ip": ("10.0.0.5", 1)}, {"ip": ("here", 1)}, {"ip": ("10.0.0.5", 0)}]
)
def test_wrong_words(wrong: Dict[str, Any]) -> None:
    with pytest.raises(ValueError):
        tavlynapi.connect(**wrong)


def test_an_address_without_a_port_is_told_what_is_missing() -> None:
    address: Any = "10.0.0.5"
    with pytest.raises(ValueError, match="an address and a port"):
        tavlynapi.connect(ip=address)


def test_a_device_that_was_forgotten_holds_nothing(desk: Desk) -> None:
    reader = tavlynapi.connect()
    del reader
    with pytest.raises(tavlynapi.NoDevice):
        tavlynapi.connect("magstripe")


def test_closed(desk: Desk) -> None:
    reader = tavlynapi.connect()
    reader.close()
    reader.close()
    with pytest.raises(ValueError, match="closed"):
        reader.beep()


@pytest.mark.tavlyn(devices=["plus:2", "plus:2"], commands=["#1 card 0A0B:16"])
def test_every_configuration_of_a_later_reader_is_read(desk: Desk) -> None:
    with tavlynapi.connect(index=1) as reader:
        assert [one.id_hold_ms for one in reader.configs] == [1000, 1000]
