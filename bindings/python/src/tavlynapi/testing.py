"""For pytest: the fixture desk, by which a program is tested with simulated devices.

    @pytest.mark.tavlyn(devices=["plus:2"])
    def test_the_door_opens(desk):
        desk.card("01020304:26")
        assert door.serve_next_card() == "open"

pytest loads this module by itself where the package is installed. The marker takes what simulator.desk() takes, and so
does a parameter: pytest.mark.parametrize("desk", [{"devices": ["reader"]}, …], indirect=True). A scenario is a file
beside the test's.
"""
# Old versions of pytest, into which this is loaded too, do not have all the types.
from __future__ import annotations

import inspect
import os
from typing import Any, Dict, Iterator

import pytest

from . import simulator
from .simulator import Desk, DeskError, NotMet

__all__ = ["Desk", "DeskError", "NotMet", "desk"]

_ARGUMENTS = list(inspect.signature(simulator.desk).parameters)


def pytest_configure(config: pytest.Config) -> None:
    """Makes the marker known."""
    config.addinivalue_line(
        "markers",
        "tavlyn(devices=[...], cards=[...], on_ms=1500, off_ms=1000, repeat=False, commands=[...], "
        "scenario=FILE): "
        "what is on the desk of this test",
    )


def _raise(problem: BaseException) -> None:
    raise problem


def pytest_pyfunc_call(pyfuncitem: pytest.Function) -> Iterator[None]:
    """A scenario that was not met is a failure of the test, not of what is done after it."""
    outcome: Any = yield
    opened = pyfuncitem.funcargs.get("desk")
    if not isinstance(opened, Desk):
        return
    try:
        opened.conclude()
    except NotMet as problem:
        if outcome.excinfo is not None:
            return
        # Old versions of pluggy, where a wrapper may raise, have no other way.
        getattr(outcome, "force_exception", _raise)(pytest.fail.Exception(str(problem), pytrace=False))


pytest.hookimpl(hookwrapper=True)(pytest_pyfunc_call)


def _wanted(request: pytest.FixtureRequest) -> Dict[str, Any]:
    marker = request.node.get_closest_marker("tavlyn")
    wanted: Dict[str, Any] = {**(marker.kwargs if marker else {}), **getattr(request, "param", {})}
    unknown = [name for name in wanted if name not in _ARGUMENTS]
    if unknown or (marker and marker.args):
        what = f"{unknown[0]}=" if unknown else "an argument without a name"
        pytest.fail(f"tavlyn({what}): there is no such argument; there are {', '.join(_ARGUMENTS)}", pytrace=False)
    if "scenario" in wanted:
        folder = os.path.dirname(request.module.__file__)
        wanted["scenario"] = os.path.join(folder, wanted["scenario"])
    return wanted


@pytest.fixture
def desk(request: pytest.FixtureRequest) -> Iterator[Desk]:
    """Simulated devices, new ones for each test; one card reader unless the marker tavlyn says otherwise."""
    try:
        with simulator.desk(**_wanted(request)) as opened:
            yield opened
    except DeskError as problem:
        raise pytest.fail.Exception(problem.text, pytrace=False) from None
