"""Magnetic-stripe readers and sonar sensors."""
import itertools

import pytest

import tavlynapi
from tavlynapi.testing import Desk

MAGSTRIPE = pytest.mark.tavlyn(devices=["magstripe"])
SONAR = pytest.mark.tavlyn(devices=["sonar"])


@MAGSTRIPE
def test_swipes(desk: Desk) -> None:
    with tavlynapi.connect("magstripe") as reader:
        assert not list(reader.swipes(timeout=0.5))
        desk.swipe("%B12^DOE/JOHN^?;77=1?")
        desk.swipe(";12=34?")
        swipes = list(reader.swipes(timeout=1))
    assert [str(swipe) for swipe in swipes] == ["1 %B12^DOE/JOHN^?9, 2 ;77=1?8", "2 ;12=34?="]
    assert swipes[0].track(2) == ";77=1?8" and swipes[1].track(1) == ""
    assert swipes[0].tracks[1].raw == bytes([0xB, 7, 7, 0xD, 1, 0xF, 8])


@MAGSTRIPE
def test_swipes_end_with_the_reader(desk: Desk) -> None:
    with tavlynapi.connect("magstripe") as reader:
        assert reader.serial_number == "" and reader.part_number == "OMS-2100-AKU"
        desk.unplug()
        with pytest.raises(tavlynapi.DeviceGone):
            list(reader.swipes(timeout=60))


@SONAR
def test_range(desk: Desk) -> None:
    with tavlynapi.connect("sonar") as sensor:
        desk.range(25)
        assert str(sensor.range()) == "25 inches, present"
        desk.range(80)
        assert not sensor.range().present
        with pytest.raises(tavlynapi.NotSupported):
            sensor.beep()


@SONAR
def test_presence(desk: Desk) -> None:
    with tavlynapi.connect("sonar") as sensor:
        desk.walk("20:70:4000", "70:20:4000")
        assert list(itertools.islice(sensor.presence(), 3)) == [True, False, True]
        walked = list(itertools.islice(sensor.ranges(), 2))
        assert [one.inches for one in walked] == sorted((one.inches for one in walked), reverse=True)
        assert walked[0].approaching and not walked[0].receding


@SONAR
def test_ranges_end_with_the_sensor(desk: Desk) -> None:
    with tavlynapi.connect("sonar") as sensor:
        desk.unplug()
        with pytest.raises(tavlynapi.TavlynError):
            sensor.range()
        with pytest.raises(tavlynapi.DeviceGone):
            list(sensor.ranges(timeout=60))
