"""The fixture desk, as a test of a user's program has it."""
import ctypes
import subprocess
from typing import List

import pytest

import tavlynapi
from tavlynapi import calls
from tavlynapi.testing import Desk, DeskError, NotMet


def connect() -> int:
    """How many devices the library finds."""
    calls.USBConnect(ctypes.c_uint32())
    return calls.GetDevCnt()


def bits_of_next_card() -> int:
    """Asks until a card is read."""
    bits = 0
    while not bits:
        bits = calls.GetActiveID32(bytearray(32), 32)
    return bits


def kinds(desk: Desk) -> List[str]:
    """What is plugged in."""
    return [line.split()[2] for line in desk.do("list").splitlines()]


def test_one_reader_without_a_marker(desk: Desk) -> None:
    assert kinds(desk) == ["reader"]
    assert connect() == 1


def test_cards_come_and_go(desk: Desk) -> None:
    connect()
    desk.card("01020304:26")
    assert bits_of_next_card() == 26
    desk.take()


@pytest.mark.tavlyn(devices=["plus:2"], cards=["0A0B:16"], on_ms=60000)
def test_cards_come_by_themselves(desk: Desk) -> None:
    assert connect() == 1
    assert bits_of_next_card() == 16
    assert "set 1 8E" in desk.traffic()


# The second finds nothing of what the first has left: neither its devices nor its connection.
@pytest.mark.parametrize("_", ["first", "second"])
def test_each_test_begins_anew(desk: Desk, _: str) -> None:
    assert calls.GetDevCnt() == 0
    assert desk.plug("plus:3") == 2
    assert connect() == 2
    desk.unplug(1)
    assert kinds(desk) == ["plus:3"]


# As that of a test that fails, whose variables pytest keeps.
KEPT: List[tavlynapi.Device] = []


@pytest.mark.parametrize("desk", [{"devices": ["reader"]}, {"devices": ["sonar"]}], indirect=True)
def test_a_device_that_stays_open_is_closed_with_its_desk(desk: Desk) -> None:
    for device in KEPT:
        with pytest.raises(ValueError, match="the device is closed"):
            device.beep()
    KEPT.append(tavlynapi.connect("sonar") if kinds(desk) == ["sonar"] else tavlynapi.connect())


@pytest.mark.parametrize("desk", [{"devices": ["plus:2", "sonar", "magstripe"]}], indirect=True)
def test_other_products(desk: Desk) -> None:
    assert kinds(desk) == ["plus:2", "sonar", "magstripe"]
    desk.range(25, device=2)
    desk.walk("20:40:5000", "40:90:2000", device=2)
    desk.swipe(";12=34?", device=3)
    with pytest.raises(DeskError, match="^swipe: not for a sonar"):
        desk.do("swipe 12", device=2)


def test_what_a_person_sees(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.leds(green=True)
        reader.beep(2)
        reader.relay(True)
        desk.await_seen("leds green", "relay on")
        assert desk.seen() == ["leds green", "beep 2 short", "relay on"]
        with pytest.raises(NotMet, match="^not seen: relay off; seen: leds green, beep 2 short, relay on$"):
            desk.await_seen("leds green", "relay off", seconds=0.01)


def test_a_device_that_is_back_has_what_it_keeps(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.config.id_hold_ms = 1500
        reader.config.commit()
        reader.relay(True)
        desk.unplug()
        desk.replug()
        reader.reconnect()
        assert reader.config.id_hold_ms == 1500
    assert desk.seen() == ["relay on", "relay off"]


def test_other_programs_see_the_devices(desk: Desk) -> None:
    desk.plug("plus:3")
    for environment in (None, desk.environment):
        listed = subprocess.run(["tavlynctl", "list"], env=environment, check=True, stdout=subprocess.PIPE, text=True)
        assert listed.stdout.count("7A31:3BFA") == 2


@pytest.mark.tavlyn(devices=["plus:2"] * 300)
def test_replies_of_any_length(desk: Desk) -> None:
    assert kinds(desk) == ["plus:2"] * 300


@pytest.mark.tavlyn(devices=["reader@com3"])
def test_ports_of_the_desk(desk: Desk) -> None:
    calls.ComConnectPort(3, ctypes.c_uint32())
    assert desk.traffic()[0].startswith("write FA")  # and what came before the simulator looked again
