"""Asking a device again and again, for a loop of either kind."""
import asyncio
import time
from typing import AsyncIterator, Callable, Generic, Iterator, List, Optional, TypeVar

T = TypeVar("T")


class Polling(Generic[T]):
    """What a device tells, one after the other: for `for`, and for `async for` without blocking the event loop.

    Each loop asks the device while it waits. It ends after timeout seconds, or never without one.
    """

    def __init__(self, asking: Callable[[], Callable[[], List[T]]], pause: float, timeout: Optional[float]) -> None:
        if timeout is not None and timeout < 0:
            raise ValueError(f"a timeout of {timeout} seconds")
        self._asking = asking
        self._pause = pause
        self._timeout = timeout

    def _end(self) -> float:
        return float("inf") if self._timeout is None else time.monotonic() + self._timeout

    def __iter__(self) -> Iterator[T]:
        ask, end = self._asking(), self._end()
        while True:
            time.sleep(self._pause)
            yield from ask()
            if time.monotonic() >= end:
                return

    async def __aiter__(self) -> AsyncIterator[T]:
        ask, end = self._asking(), self._end()
        loop = asyncio.get_running_loop()
        while True:
            await asyncio.sleep(self._pause)
            for one in await loop.run_in_executor(None, ask):
                yield one
            if time.monotonic() >= end:
                return


class Unanswered(Exception):
    """The device did not answer; word is the error word that stood then."""

    def __init__(self, word: int) -> None:
        super().__init__()
        self.word = word


class Patience:
    """Bears with a device that does not answer twice in a row."""

    MOST = 3

    def __init__(self) -> None:
        self._failed = 0

    def is_over(self, answered: bool) -> bool:
        """Takes the outcome of a question."""
        self._failed = 0 if answered else self._failed + 1
        return self._failed >= self.MOST
