"""For pytest: the fixture desk, by which a program is tested with simulated devices.

    @pytest.mark.tavlyn(devices=["plus:2"])
    def test_the_door_opens(desk):
        desk.card("01020304:26")
        assert door.serve_next_card() == "open"

pytest loads this module by itself where the package is installed. The marker takes what simulator.desk() takes, and so
does a parameter: pytest.mark.parametrize("desk", [{"devices": ["reader"]}, …], indirect=True).
"""
# Old versions of pytest, into which this is loaded too, do not have all the types.
from __future__ import annotations

from typing import Iterator

import pytest

from . import simulator
from .simulator import Desk, DeskError

__all__ = ["Desk", "DeskError", "desk"]


def pytest_configure(config: pytest.Config) -> None:
    """Makes the marker known."""
    config.addinivalue_line(
        "markers",
        "tavlyn(devices=[...], cards=[...], on_ms=1500, off_ms=1000, repeat=False, commands=[...]): "
        "what is on the desk of this test",
    )


@pytest.fixture
def desk(request: pytest.FixtureRequest) -> Iterator[Desk]:
    """Simulated devices, new ones for each test; one card reader unless the marker tavlyn says otherwise."""
    marker = request.node.get_closest_marker("tavlyn")
    wanted = {**(marker.kwargs if marker else {}), **getattr(request, "param", {})}
    try:
        with simulator.desk(**wanted) as opened:
            yield opened
    except DeskError as problem:
        raise pytest.fail.Exception(problem.text, pytrace=False) from None
