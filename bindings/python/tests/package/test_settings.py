"""Settings as attributes."""
import pytest

import tavlynapi
from tavlynapi import fields, settings
from tavlynapi.testing import Desk


def test_set_and_commit(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.config.id_hold_ms = 1520
        reader.config.beep_on_id = True
        assert reader.config.id_hold_ms == 1520
        reader.config.commit()
        reader.config.reload()
        assert reader.config.id_hold_ms == 1500  # the reader has steps of 50
        assert reader.config.beep_on_id is True


def test_what_is_not_committed_is_forgotten(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.config.id_hold_ms = 2000
        reader.config.reload()
        assert reader.config.id_hold_ms == 1000


def test_misspelt(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        with pytest.raises(AttributeError):
            setattr(reader.config, "id_hold", 1000)
        with pytest.raises(AttributeError):
            setattr(reader.config, "features", 0)  # the reader tells it


@pytest.mark.parametrize(
    "name, value, text, word",
    [
        ("lock_out_ms", 12751, "lock_out_ms is 0 to 12750 ms, not 12751", 0x201032),
        ("lock_out_ms", -1, "lock_out_ms is 0 to 12750 ms, not -1", 0),
        ("id_bits", 0, "id_bits is 1 to 255 bits, not 0", 0x201012),
        ("id_length", 70000, "id_length is 0 to 25, not 70000", 0),
        ("lead_character_1", 32768, "lead_character_1 is -32768 to 32767, not 32768", 0),
        ("strip_fac", 2, "strip_fac is True or False, not 2", 0),
    ],
)
def test_out_of_range(desk: Desk, name: str, value: int, text: str, word: int) -> None:
    with tavlynapi.connect() as reader:
        before = getattr(reader.config, name)
        with pytest.raises(ValueError) as refused:
            setattr(reader.config, name, value)
        assert str(refused.value) == text
        assert isinstance(refused.value, tavlynapi.OutOfRange)
        assert (refused.value.word, refused.value.text) == (word, "a value is out of its range")
        assert getattr(reader.config, name) == before


@pytest.mark.tavlyn(devices=["sonar"])
def test_a_count_that_the_library_takes_for_negative(desk: Desk) -> None:
    with tavlynapi.connect("sonar") as sensor:
        with pytest.raises(ValueError, match="away_key_count is 0 to 6, not 40000"):
            sensor.config.away_key_count = 40000
        sensor.config.ping_ms = 300
        sensor.config.commit()
        sensor.config.reload()
        assert sensor.config.ping_ms == 300


@pytest.mark.tavlyn(devices=["plus:3"])
def test_configurations(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.configs[2].id_hold_ms = 2000
        reader.configs[2].card_type = 0x1234
        reader.configs[2].high_priority = True
        reader.commit()
        reader.reload()
        assert [one.id_hold_ms for one in reader.configs] == [1000, 1000, 2000]
        assert (reader.configs[2].card_type, reader.configs[2].high_priority) == (0x1234, True)
        assert reader.configs[1].card_type != 0x1234
        with pytest.raises(IndexError):
            reader.configs[3].commit()


def test_a_plain_reader_has_no_card_types(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        assert reader.config.card_type is None and len(reader.configs) == 1
        with pytest.raises(tavlynapi.NotSupported):
            reader.config.card_type = 1


def test_a_word_that_no_record_of_its_own_marks(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.config.not_boot_device = True
        reader.commit()
        reader.reload()
        assert reader.config.not_boot_device


def test_leds_are_stored_by_a_commit_after_they_were_switched(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.leds(red=True)
        assert reader.config.leds_volatile
        assert not any(line.startswith("set 1 90") for line in desk.traffic())
        reader.config.green_led_on = True
        assert not reader.config.leds_volatile
        reader.commit()
    assert any(line.startswith("set 1 90") for line in desk.traffic())


def test_luid(desk: Desk) -> None:
    with tavlynapi.connect() as reader:
        reader.luid = 9
        reader.commit()
    with tavlynapi.connect(luid=9) as reader:
        assert reader.luid == 9


def test_every_attribute_names_a_word() -> None:
    for kind in (settings.ReaderSettings, settings.SonarSettings):
        words = [one for one in vars(kind).values() if isinstance(one, (fields.ReadOnlyFlag, fields.ReadOnlyNumber))]
        assert len(words) > 40
        for one in words:
            assert one.word in [field[0] for field in one.record.kind._fields_]
