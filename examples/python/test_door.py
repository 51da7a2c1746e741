"""Tests door.py without a reader: python3 -m pytest test_door.py"""
import door


def test_a_card_of_the_list_opens(desk):
    desk.card("01020304:26")
    assert door.next_visitor(seconds=10) == "open"


def test_another_card_does_not(desk):
    desk.card("0A0B:16")
    assert door.next_visitor(seconds=10) == "shut"


def test_nobody_comes(desk):
    assert door.next_visitor(seconds=1) == "nobody came"
