"""Several threads of one program."""
import threading
from concurrent.futures import ThreadPoolExecutor
from typing import List

import pytest

import tavlynapi
from tavlynapi.testing import Desk

ROUNDS = 20


@pytest.mark.tavlyn(devices=["reader", "reader"], commands=["#1 card 01020303:26", "#2 card 0A0B:16"])
def test_each_thread_has_its_reader(desk: Desk) -> None:
    start = threading.Barrier(4)

    def work(reader: tavlynapi.Reader, hold: int) -> None:
        start.wait()
        for turn in range(ROUNDS):
            reader.config.id_hold_ms = hold + turn
            assert reader.config.id_hold_ms == hold + turn
            reader.beep()

    def read(reader: tavlynapi.Reader, card: str) -> None:
        start.wait()
        for _ in range(ROUNDS):
            found = reader.read_card()
            assert found and found.hex == card

    with tavlynapi.connect(index=0) as first, tavlynapi.connect(index=1) as second, ThreadPoolExecutor(4) as threads:
        ended = [
            threads.submit(work, first, 1000),
            threads.submit(work, second, 5000),
            threads.submit(read, first, "03030201"),
            threads.submit(read, second, "0B0A"),
        ]
        for one in ended:
            one.result()


def test_closed_by_another_thread(desk: Desk) -> None:
    with tavlynapi.connect() as reader, ThreadPoolExecutor(1) as threads:
        loop = iter(reader.events())
        desk.card("0A0B:16")
        assert next(loop).kind == "card"
        threads.submit(reader.close).result()
        with pytest.raises(ValueError, match="closed"):
            next(loop)


def test_a_call_keeps_other_threads_away(desk: Desk, monkeypatch: pytest.MonkeyPatch) -> None:
    free: List[bool] = []

    def try_lock() -> None:
        free.append(tavlynapi.lock.acquire(blocking=False))
        if free[-1]:
            tavlynapi.lock.release()

    def ask_from_another_thread(_: bytes) -> None:
        asking = threading.Thread(target=try_lock)
        asking.start()
        asking.join()

    monkeypatch.setenv("TAVLYNAPI_LOGGING", "1")
    with tavlynapi.connect():
        tavlynapi.calls.SetMarkerFunction(ask_from_another_thread)
        tavlynapi.calls.ReadCfg()
        tavlynapi.calls.SetMarkerFunction(None)
    assert free and not any(free)


def test_active_keeps_other_threads_away(desk: Desk) -> None:
    with tavlynapi.connect() as reader, ThreadPoolExecutor(1) as threads:
        with reader.active():
            waiting = threads.submit(reader.beep)
            assert not any(line.startswith("set 1 8C 03") for line in desk.traffic())
            assert not waiting.done()
        waiting.result()
