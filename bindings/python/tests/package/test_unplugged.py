"""Devices that go, and come back."""
from typing import Callable, List

import pytest

import tavlynapi
from tavlynapi import calls, polling, records
from tavlynapi.testing import Desk


def test_gone_amid_a_loop(desk: Desk) -> None:
    desk.card("0A0B:16")
    told = []
    with tavlynapi.connect() as reader:
        with pytest.raises(tavlynapi.DeviceGone) as gone:
            for card in reader.cards(timeout=60):
                told.append(card.hex)
                desk.unplug()
        assert told == ["0B0A"]
        assert gone.value.word & 0x202 == 0x202
        assert "does not answer" in str(gone.value)
        with pytest.raises(tavlynapi.NoDevice):
            reader.reconnect()
        with pytest.raises(tavlynapi.DeviceGone, match="not plugged in"):
            reader.beep()


def test_back(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        desk.unplug()
        with pytest.raises(tavlynapi.DeviceGone):
            reader.read_card()
        desk.plug("reader,serial=0400123456")
        desk.card("0A0B:16")
        reader.reconnect()
        card = reader.read_card()
        assert card and card.hex == "0B0A"


@pytest.mark.tavlyn(devices=["reader", "reader"])
def test_the_other_stays(desk: Desk) -> None:
    with tavlynapi.connect(index=0) as first, tavlynapi.connect(index=1) as second:
        desk.unplug(1)
        with pytest.raises(tavlynapi.NoDevice):
            first.reconnect()
        desk.card("0A0B:16", device=2)
        card = second.read_card()
        assert card and card.hex == "0B0A"


@pytest.mark.tavlyn(devices=["plus:2", "plus:2", "plus:2"])
def test_every_configuration_of_the_other_is_read_again(desk: Desk) -> None:
    with tavlynapi.connect(index=1) as second, tavlynapi.connect(index=2) as third:
        third.configs[1].id_hold_ms = 2000
        third.commit()
        desk.unplug(1)
        second.reconnect()
        assert [one.id_hold_ms for one in second.configs] == [1000, 1000]
        assert [one.id_hold_ms for one in third.configs] == [1000, 2000]


@pytest.mark.tavlyn(devices=["reader", "reader"])
def test_the_error_word_is_that_of_the_question(desk: Desk, monkeypatch: pytest.MonkeyPatch) -> None:
    with tavlynapi.connect(index=0) as first, tavlynapi.connect(index=1) as second:
        is_over = polling.Patience.is_over

        def other_is_used(patience: polling.Patience, answered: bool) -> bool:
            with second.active():
                calls.GetFlags(records.tsCfgFlags())
            return is_over(patience, answered)

        monkeypatch.setattr(polling.Patience, "is_over", other_is_used)
        desk.unplug(1)
        questions: List[Callable[[], object]] = [first.read_card, lambda: list(first.cards(timeout=60))]
        for ask in questions:
            with pytest.raises(tavlynapi.DeviceGone) as gone:
                ask()
            assert gone.value.word & 0x202 == 0x202


def test_what_a_device_has_is_supported(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        desk.unplug()
        questions: List[Callable[[], object]] = [reader.beep, lambda: reader.volume]
        for ask in questions:
            with pytest.raises(tavlynapi.TavlynError, match="the device did not answer") as refused:
                ask()
            assert not isinstance(refused.value, tavlynapi.NotSupported)


def test_a_configuration_that_cannot_be_read(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        desk.unplug()
        with pytest.raises(tavlynapi.TavlynError) as refused:
            reader.reload()
        assert refused.value.word == 0x20202
        assert refused.value.text == "a report could not be sent; a read of the configuration failed"
        assert str(refused.value).startswith("the configuration could not be read (error word 0x20202: a report")
