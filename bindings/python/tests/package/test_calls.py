"""The calls, one by one."""
import ctypes
import inspect
import os
from typing import Any, Callable, List

import pytest

from tavlynapi import calls, library, records
from tavlynapi.testing import Desk

ALL = {name: one for name, one in inspect.getmembers(calls, inspect.isfunction) if one.__module__ == calls.__name__}


def connect() -> None:
    """To the readers of a desk."""
    calls.SetConnectProduct(1)
    calls.SetDevTypeSrch(0)
    assert calls.USBConnect(None) == 1


def test_the_library_has_every_call() -> None:
    assert len(ALL) == 378
    for name in ALL:
        assert getattr(library.loaded(), name)


@pytest.mark.parametrize(
    "wrong, kind",
    [
        (lambda: calls.GetActiveID32(bytearray(31), 32), ValueError),
        (lambda: calls.GetActiveID32(b"32 bytes that nobody may change.", 32), TypeError),  # type: ignore[arg-type]
        (lambda: calls.GetSepFldData(bytearray(127), 128), ValueError),
        (lambda: calls.GetHIDGuid(bytearray(15)), ValueError),
        (lambda: calls.ReadSecureData(bytes(4), bytearray(255)), ValueError),
        (lambda: calls.ReadSecureData(bytes(3), bytearray(256)), ValueError),
        (lambda: calls.WriteSecureData(bytes(3), 4), ValueError),
        (lambda: calls.SetHashKeyData(bytes(31)), ValueError),
        (lambda: calls.GetObjRangeInfo((ctypes.c_uint16 * 4)()), ValueError),
        (lambda: calls.GetObjRangeInfo((ctypes.c_uint32 * 5)()), TypeError),  # type: ignore[arg-type]
        (lambda: calls.USBConnect(ctypes.c_uint16()), TypeError),  # type: ignore[arg-type]
        (lambda: calls.GetFlags(records.tsCfgFlags2()), TypeError),  # type: ignore[arg-type]
        (lambda: calls.BeepNow(256, 0), OverflowError),
        (lambda: calls.BeepNow(-1, 0), OverflowError),
        (lambda: calls.SetActDev(32768), OverflowError),
        (lambda: calls.BeepNow("1", 0), TypeError),  # type: ignore[arg-type]
        (lambda: calls.WriteDevCfgToFile("a\0b"), ValueError),
    ],
)
def test_wrong_arguments(wrong: Callable[[], object], kind: Any) -> None:
    with pytest.raises(kind):
        wrong()


def test_null_pointers(desk: Desk) -> None:
    connect()
    assert calls.GetFlags(None) == 0
    assert calls.GetLastLibErr() == 0x100001
    assert calls.WriteDevCfgToFile(None) == 0
    assert calls.GetActiveID32(None, -1) == 0


def test_results_of_all_kinds(desk: Desk) -> None:
    assert calls.getESN() is None and calls.InstalledHardware() is None and calls.GetFWFilename() is None
    connect()
    assert calls.GetSerialNumber() == "0400123456"
    assert calls.InstalledHardware() == bytes([1, 0, 1, 0, 0, 0, 0, 0])
    assert len(calls.getESN() or b"") == 32
    assert calls.SetUnsupportedProductErrorCode(0xFFFF) is None  # type: ignore[func-returns-value]
    assert calls.GetCardType() == -1
    name = bytearray(511)
    assert calls.GetDevName(name) == 999 and name.startswith(b"/dev/hidraw-sim1\0")


@pytest.mark.tavlyn(commands=["sample 0001:01020303:26", "sample 0002:0A0B:16"])
def test_records_that_the_library_allocates(desk: Desk) -> None:
    connect()
    calls.GetCardAnalyzerStatus()
    found = calls.GetCardAnalyzerData() or []
    assert [(one.RecType, one.BitCount) for one in found] == [(1, 26), (2, 16)]
    assert found[1].CardBits[30:] == [0x0B, 0x0A]


def test_the_trace(desk: Desk, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("TAVLYNAPI_LOGGING", "1")
    lines: List[bytes] = []
    assert calls.SetMarkerFunction(lines.append) == 1
    connect()
    assert calls.SetMarkerFunction(None) == 1
    told = len(lines)
    assert told > 5 and all(line.endswith(b"\n") for line in lines)
    calls.ReadCfg()
    assert len(lines) == told


def test_paths_are_those_of_the_system(desk: Desk, tmp_path: "os.PathLike[str]") -> None:
    connect()
    path = os.fsencode(tmp_path) + b"/caf\xe9.hwg"
    assert calls.WriteDevCfgToFile(path) == 1
    assert os.path.getsize(path) > 0
