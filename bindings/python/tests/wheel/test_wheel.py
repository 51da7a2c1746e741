"""Wheels as scripts/wheel makes them of the build in TAVLYN_BUILD: what is in them, and programs that use them."""
import base64
import csv
import hashlib
import importlib.machinery
import importlib.util
import io
import json
import os
import pathlib
import re
import subprocess
import sys
import zipfile
from typing import Dict, List

import pytest

SCRIPT = pathlib.Path(__file__).resolve().parents[4] / "scripts" / "wheel"
BUILD = pathlib.Path(os.environ["TAVLYN_BUILD"])
LIBRARY = BUILD / "lib" / "libtavlynapi.so.7"
PROGRAM = """
import ctypes, importlib.metadata
from tavlynapi import calls, library
print(library.path_of_library())
print([entry.value for entry in importlib.metadata.distribution("tavlynapi").entry_points])
calls.USBConnect(ctypes.c_uint32())
bits = 0
while not bits:
    bits = calls.GetActiveID32(bytearray(32), 32)
print(bits, "bits")
"""


def make(folder: pathlib.Path, umask: int, zone: str) -> Dict[str, bytes]:
    """The wheels without and with the library, by their names."""
    subprocess.run(
        [sys.executable, SCRIPT, folder, BUILD],
        env={**os.environ, "TZ": zone, "SOURCE_DATE_EPOCH": "1700000000"},
        umask=umask,
        check=True,
    )
    return {wheel.name: wheel.read_bytes() for wheel in sorted(folder.iterdir())}


@pytest.fixture(scope="module", name="folder")
def wheels_in_a_folder(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """The wheels of this build."""
    folder = tmp_path_factory.mktemp("wheels")
    make(folder, 0o022, "UTC")
    return folder


def files_of(folder: pathlib.Path, kind: str) -> Dict[str, bytes]:
    """The files in the wheel of that kind."""
    (wheel,) = folder.glob(f"tavlynapi-*-py3-none-{kind}*.whl")
    with zipfile.ZipFile(wheel) as archive:
        return {name: archive.read(name) for name in archive.namelist()}


def ends_of(files: Dict[str, bytes], folder: str) -> List[str]:
    """The names of the files below a folder."""
    return [name.partition(f"{folder}/")[2] for name in files if f"{folder}/" in name]


def test_the_name_tells_the_oldest_c_library(folder: pathlib.Path) -> None:
    told = subprocess.run(["objdump", "-T", LIBRARY], stdout=subprocess.PIPE, text=True, check=True).stdout
    oldest = max(int(number) for number in re.findall(r"GLIBC_2\.(\d+)", told))
    tag = f"py3-none-manylinux_2_{oldest}_{os.uname().machine}"
    names = sorted(wheel.name.split("-", 2)[2] for wheel in folder.iterdir())
    assert names == ["py3-none-any.whl", f"{tag}.whl"]
    wheel = files_of(folder, "manylinux")
    (told,) = (content.decode() for name, content in wheel.items() if name.endswith(".dist-info/WHEEL"))
    assert f"Tag: {tag}\n" in told and "Root-Is-Purelib: false\n" in told


@pytest.mark.parametrize("kind", ["any", "manylinux"])
def test_the_record_lists_every_file(folder: pathlib.Path, kind: str) -> None:
    files = files_of(folder, kind)
    (record,) = (name for name in files if name.endswith("/RECORD"))
    rows = {name: digest for name, digest, _ in csv.reader(io.StringIO(files.pop(record).decode()))}
    assert rows.pop(record) == ""
    assert rows == {
        name: "sha256=" + base64.urlsafe_b64encode(hashlib.sha256(content).digest()).decode().rstrip("=")
        for name, content in files.items()
    }


def test_what_is_in_them(folder: pathlib.Path) -> None:
    pure, bundled = files_of(folder, "any"), files_of(folder, "manylinux")
    assert set(ends_of(bundled, ".dist-info")) - set(ends_of(pure, ".dist-info")) == {"NOTICE", "sboms/sbom.cdx.json"}
    assert set(ends_of(bundled, "tavlynapi")) - set(ends_of(pure, "tavlynapi")) == {"lib/libtavlynapi.so.7"}
    assert {"LICENSE", "METADATA", "entry_points.txt"} <= set(ends_of(pure, ".dist-info"))
    assert {"py.typed", "testing.py", "calls.py"} <= set(ends_of(pure, "tavlynapi"))
    (bill,) = (json.loads(content) for name, content in bundled.items() if name.endswith("sbom.cdx.json"))
    assert bill["metadata"]["component"]["name"] == "tavlynapi-library"


def test_the_same_bytes_wherever_they_are_made(folder: pathlib.Path, tmp_path: pathlib.Path) -> None:
    again = make(tmp_path, 0o077, "Asia/Tokyo")
    assert again == {wheel.name: wheel.read_bytes() for wheel in sorted(folder.iterdir())}


def test_a_library_that_needs_more_is_refused(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.syspath_prepend(str(SCRIPT.parent))
    loader = importlib.machinery.SourceFileLoader("wheel_script", str(SCRIPT))
    spec = importlib.util.spec_from_loader("wheel_script", loader)
    assert spec is not None
    script = importlib.util.module_from_spec(spec)
    loader.exec_module(script)
    with pytest.raises(SystemExit, match=r"needs more than the C library of a system: .*libstdc\+\+\.so\.6"):
        script.linux_tag(BUILD / "lib" / "tavlynapi" / "simulator" / "libhidapi-hidraw.so.0")


@pytest.mark.parametrize("kind", ["any", "manylinux"])
def test_installed(folder: pathlib.Path, tmp_path: pathlib.Path, kind: str) -> None:
    place, python = tmp_path / "venv", tmp_path / "venv" / "bin" / "python"
    subprocess.run([sys.executable, "-m", "venv", "--without-pip", place], check=True)
    (wheel,) = folder.glob(f"*-{kind}*.whl")
    pip = [sys.executable, "-m", "pip", "--python", str(python), "--disable-pip-version-check", "install", "--no-index"]
    environment = {name: os.environ[name] for name in os.environ.keys() - {"PYTHONPATH", "TAVLYNAPI_LIBRARY"}}
    subprocess.run([*pip, "--quiet", str(wheel)], env=environment, check=True)
    if kind == "any":
        environment["TAVLYNAPI_LIBRARY"] = str(LIBRARY)
    told = subprocess.run(
        ["tavlynsim", "run", "--card", "01020304:26", "--on", "60000", "--", python, "-c", PROGRAM],
        env=environment, stdout=subprocess.PIPE, text=True, check=True,
    ).stdout.splitlines()
    assert told[0] == str(LIBRARY) if kind == "any" else told[0].startswith(f"{place}/lib/")
    assert told[1:] == ["['tavlynapi.testing']", "26 bits"]


def test_what_a_build_installs_is_the_same(folder: pathlib.Path, tmp_path: pathlib.Path) -> None:
    subprocess.run(["cmake", "--install", BUILD, "--component", "python", "--prefix", tmp_path], check=True)
    modules = tmp_path / "lib" / "python3" / "dist-packages"
    installed = {str(path.relative_to(modules)): path.read_bytes() for path in modules.rglob("*") if path.is_file()}
    (metadata,) = (name for name in installed if name.endswith("/METADATA"))
    wheel = files_of(folder, "any")
    assert set(installed.pop(metadata).decode().splitlines()) <= set(wheel[metadata].decode().splitlines())
    assert installed == {
        name: content
        for name, content in wheel.items()
        if ".dist-info/" not in name or name.endswith("/entry_points.txt")
    }
