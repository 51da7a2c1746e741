"""Configurations as files."""
import os
import pathlib

import pytest

import tavlynapi
from tavlynapi.testing import Desk


@pytest.mark.parametrize("secure", [False, True])
def test_save_and_load(desk: Desk, tmp_path: pathlib.Path, secure: bool) -> None:
    path = tmp_path / "Empfang süd.hwg"
    with tavlynapi.connect() as reader:
        reader.save(path, secure)
        reader.config.id_hold_ms = 3000
        reader.commit()
        reader.load(path, secure)
        reader.reload()
        assert reader.config.id_hold_ms == 1000


def test_damaged(desk: Desk, tmp_path: pathlib.Path) -> None:
    path = tmp_path / "desk.hwg"
    with tavlynapi.connect() as reader:
        reader.save(path, secure=True)
        path.write_bytes(path.read_bytes().replace(b"1000", b"2000"))
        with pytest.raises(tavlynapi.BadFile) as refused:
            reader.load(path, secure=True)
        assert refused.value.word == 0x91000000
        assert str(refused.value) == f"{path} could not be loaded: a file failed its integrity test"
        with pytest.raises(tavlynapi.BadFile) as refused:
            reader.load(tmp_path / "none.hwg")
        assert refused.value.word == 0


def test_what_the_system_says(desk: Desk, tmp_path: pathlib.Path) -> None:
    with tavlynapi.connect() as reader:
        for operation in (reader.load, reader.save):
            with pytest.raises(tavlynapi.BadFile, match="No such file or directory"):
                operation(tmp_path / "folder" / "desk.hwg")
        with pytest.raises(OSError) as system:
            open("/sys/desk.hwg", "wb")  # pylint: disable=consider-using-with
        with pytest.raises(tavlynapi.BadFile, match=system.value.strerror):
            reader.save("/sys/desk.hwg")
        with pytest.raises(ValueError):
            reader.save("a\0b")


@pytest.mark.skipif(not os.path.exists("/dev/full"), reason="no /dev/full")
def test_a_full_disk(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        with pytest.raises(tavlynapi.BadFile):
            reader.save("/dev/full")


@pytest.mark.tavlyn(devices=["sonar"])
def test_sensor(desk: Desk, tmp_path: pathlib.Path) -> None:
    with tavlynapi.connect("sonar") as sensor:
        sensor.save(tmp_path / "desk.txt")
        sensor.config.max_distance_inches = 20
        sensor.commit()
        sensor.load(tmp_path / "desk.txt")
        sensor.reload()
        assert sensor.config.max_distance_inches == 60
        with pytest.raises(tavlynapi.NotSupported):
            sensor.save(tmp_path / "desk.txt", secure=True)


@pytest.mark.tavlyn(devices=["magstripe"])
def test_magstripe(desk: Desk, tmp_path: pathlib.Path) -> None:
    path = tmp_path / "desk.txt"
    with tavlynapi.connect("magstripe") as reader:
        before = tavlynapi.calls.sorbaneGetTrackEnables()
        reader.save(path)
        with reader.active():
            tavlynapi.calls.sorbaneSetTrackEnables(before ^ 1)
        reader.commit()
        reader.load(path)
        reader.reload()
        assert tavlynapi.calls.sorbaneGetTrackEnables() == before
