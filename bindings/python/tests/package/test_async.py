"""Loops of asyncio."""
import asyncio
import selectors
import threading
import time
from typing import Any, Coroutine, List, Optional, Set, Tuple

import pytest

import tavlynapi
from tavlynapi.testing import Desk

CARDS = pytest.mark.tavlyn(cards=["01020303:26", "0A0B:16"])


class SleepingSelector(selectors.PollSelector):
    """Waits for the next timer by sleeping, which costs nothing on the clock of the tests.

    It sleeps in a thread of its own: where a thread has slept, the clock makes its next look at a socket really wait.
    """

    def select(self, timeout: Optional[float] = None) -> List[Tuple[selectors.SelectorKey, int]]:
        if timeout is not None and timeout > 0:
            sleeper = threading.Thread(target=time.sleep, args=(timeout,))
            sleeper.start()
            sleeper.join()
            timeout = 0
        return super().select(timeout)


def run(work: Coroutine[Any, Any, None]) -> None:
    """Runs it to its end."""
    loop = asyncio.SelectorEventLoop(SleepingSelector())
    try:
        loop.run_until_complete(work)
        loop.run_until_complete(loop.shutdown_asyncgens())
        loop.run_until_complete(loop.shutdown_default_executor())
    finally:
        loop.close()


@CARDS
def test_cards(desk: Desk) -> None:
    told: List[str] = []

    async def work() -> None:
        with tavlynapi.connect() as reader:
            async for card in reader.cards(timeout=8):
                told.append(card.hex)

    run(work())
    assert told == ["03030201", "0B0A"]


@CARDS
def test_the_loop_never_waits_for_the_reader(desk: Desk, monkeypatch: pytest.MonkeyPatch) -> None:
    asking: Set[int] = set()
    ask = tavlynapi.calls.GetActiveID32

    def noted(buffer: bytearray, length: int) -> int:
        asking.add(threading.get_ident())
        return ask(buffer, length)

    async def work() -> None:
        with tavlynapi.connect() as reader:
            async for event in reader.events():
                if event.kind == "gone":
                    break

    monkeypatch.setattr(tavlynapi.calls, "GetActiveID32", noted)
    run(work())
    assert asking and threading.get_ident() not in asking


def test_cancelled(desk: Desk) -> None:
    async def wait_for_ever() -> None:
        with tavlynapi.connect() as reader:
            async for _ in reader.cards():
                pass

    async def work() -> None:
        waiting = asyncio.ensure_future(wait_for_ever())
        await asyncio.sleep(1.1)
        waiting.cancel()
        with pytest.raises(asyncio.CancelledError):
            await waiting
        assert tavlynapi.calls.GetDevCnt() == 0

    run(work())
    tavlynapi.connect().close()


def test_gone(desk: Desk) -> None:
    async def work() -> None:
        with tavlynapi.connect() as reader:
            desk.unplug()
            with pytest.raises(tavlynapi.DeviceGone):
                async for _ in reader.cards():
                    pass

    run(work())
