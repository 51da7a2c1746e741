"""Which library is loaded."""
import pathlib
import shutil
import subprocess
import sys
from typing import Dict

import pytest

import tavlynapi
from tavlynapi import library

PACKAGE = pathlib.Path(tavlynapi.__file__).parent
LOAD = "from tavlynapi import library\ntry: print(library.loaded()._name)\nexcept library.LibraryProblem as problem: print(problem)"


def loaded(variables: Dict[str, str], folder: pathlib.Path = PACKAGE.parent, *options: str) -> str:
    """What a program of its own loads, or what it is told."""
    command = [sys.executable, *options, "-c", f"import sys; sys.path.insert(0, {str(folder)!r})\n{LOAD}"]
    return subprocess.run(command, env=variables, capture_output=True, text=True, check=True).stdout.strip()


@pytest.fixture(name="present")
def _present() -> str:
    """The library of these tests."""
    return str(library.loaded()._name)


def test_none() -> None:
    text = loaded({})
    assert text.startswith("the library libtavlynapi.so.7 is not installed (")
    assert "Install tavlynapi" in text and "TAVLYNAPI_LIBRARY" in text


def test_named_by_the_variable(present: str) -> None:
    assert loaded({library.VARIABLE: present}) == present
    assert "is not installed" in loaded({library.VARIABLE: present}, PACKAGE.parent, "-I")


@pytest.mark.parametrize(
    "name, text",
    [
        ("lib.so", "TAVLYNAPI_LIBRARY has to be a whole path, but is 'lib.so'"),
        ("/none/lib.so", "/none/lib.so could not be loaded: "),
        ("libc.so.6", "has to be a whole path"),
    ],
)
def test_a_variable_that_names_none(name: str, text: str) -> None:
    assert text in loaded({library.VARIABLE: name})


def test_another_library(tmp_path: pathlib.Path) -> None:
    import _ctypes  # pylint: disable=import-outside-toplevel

    assert loaded({library.VARIABLE: _ctypes.__file__}).endswith(" is not tavlynapi")


def test_bundled(tmp_path: pathlib.Path, present: str) -> None:
    shutil.copytree(PACKAGE, tmp_path / "tavlynapi", ignore=shutil.ignore_patterns("__pycache__"))
    bundled = tmp_path / "tavlynapi" / "lib" / library.FILE
    bundled.parent.mkdir(exist_ok=True)
    shutil.copy(present, bundled)
    assert loaded({library.VARIABLE: "/none/lib.so"}, tmp_path) == str(bundled)


def test_too_old(tmp_path: pathlib.Path, present: str) -> None:
    shutil.copytree(PACKAGE, tmp_path / "tavlynapi", ignore=shutil.ignore_patterns("__pycache__"))
    (tmp_path / "tavlynapi" / "version.py").write_text('VERSION = "99.0.0"\n')
    text = loaded({library.VARIABLE: present}, tmp_path)
    assert text == f"{present} is tavlynapi {tavlynapi.__version__}, but 99.0.0 or later is needed: install that"


def test_another_users_rights(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv(library.VARIABLE, "/none/lib.so")
    assert library.path_of_library() == "/none/lib.so"
    monkeypatch.setattr("os.geteuid", lambda: 12345)
    assert library.path_of_library() == library.FILE
