"""Tests the time clock on simulated readers: python3 -m pytest --junitxml=results.xml"""
import csv

import pytest

import time_clock


def noted(path):
    return [tuple(line[1:]) for line in csv.reader(path.open())] if path.exists() else []


@pytest.mark.tavlyn(cards=["01020304:26", "0A0B:16", "01020304:26"], on_ms=600, off_ms=400)
def test_who_comes_goes(desk, tmp_path):
    time_clock.run(tmp_path / "times.csv", seconds=4)
    assert noted(tmp_path / "times.csv") == [("04030201", "in"), ("0B0A", "in"), ("04030201", "out")]
    assert desk.seen() == ["beep 1 short", "beep 1 short", "beep 2 short"]


def test_a_clock_that_starts_again_knows_who_is_in(desk, tmp_path):
    path = tmp_path / "times.csv"
    path.write_text("2026-11-23T08:00:00,04030201,in\n")
    desk.card("01020304:26")
    time_clock.run(path, seconds=2)
    assert noted(path)[-1] == ("04030201", "out")
    assert desk.seen() == ["beep 2 short"]


@pytest.mark.tavlyn(scenario="back.scenario")
def test_goes_on_when_the_reader_is_back(desk, tmp_path):
    time_clock.run(tmp_path / "times.csv", seconds=11)
    assert noted(tmp_path / "times.csv") == [("04030201", "in"), ("04030201", "out")]
