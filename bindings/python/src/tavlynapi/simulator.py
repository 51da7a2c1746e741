"""Simulated devices for the programs of this process, and for those that it starts.

A desk is a tavlynsim process with devices on it. Each desk begins with new ones, and nothing of it is left when it is
closed:

    with simulator.desk(devices=["plus:2"]) as desk:
        desk.card("01020304:26")
        my_program.serve_next_card()
"""
import atexit
import contextlib
import ctypes
import functools
import json
import os
import shutil
import subprocess
import sys
import tempfile
from typing import Dict, Iterator, List, Optional, Sequence

from . import connecting, library
from .errors import Problem

_PROGRAM = "tavlynsim"
_SOCKET = "TAVLYNSIM_SOCKET"
_STANDIN = "libhidapi-hidraw.so.0"
_SECONDS_TO_END = 10


class DeskError(Problem):
    """Devices cannot be simulated here, or the simulator refused a command; the text says why."""


@contextlib.contextmanager
def _environment(variables: Dict[str, str]) -> Iterator[None]:
    before = {name: os.environ.get(name) for name in variables}
    os.environ.update(variables)
    try:
        yield
    finally:
        for name, value in before.items():
            if value is None:
                os.environ.pop(name, None)
            else:
                os.environ[name] = value


def _is_loaded(name: str) -> bool:
    try:
        ctypes.CDLL(name, mode=os.RTLD_NOW | os.RTLD_NOLOAD)
    except OSError:
        return False
    return True


@functools.lru_cache(maxsize=None)
def _socket() -> str:
    """Where every simulator of this process listens: a stand-in looks for its devices in one place ever after."""
    folder = tempfile.mkdtemp(prefix="tavlynapi-")
    atexit.register(shutil.rmtree, folder, ignore_errors=True)
    return os.path.join(folder, "socket")


class _Standin:
    """The stand-in for the system's HID library, of which a process loads one."""

    def __init__(self, path: str) -> None:
        if _is_loaded(library.FILE) or _is_loaded(_STANDIN):
            raise DeskError(
                f"{library.FILE} or {_STANDIN} was loaded before the first desk, and sees the system's devices: "
                "use tavlynapi in tests, not while their modules are imported"
            )
        # Whoever asks for the HID library by its name from now on gets this one, which has that name.
        self._run = ctypes.CDLL(path).tavlyn_standin
        self._run.argtypes = [ctypes.c_char_p, ctypes.c_char_p, ctypes.c_size_t]

    def look(self) -> None:
        """The stand-in learns where to look for its simulator; later it learns that the last one has ended."""
        with contextlib.suppress(DeskError):
            self.run("list")

    def run(self, command: str) -> str:
        """Runs a command of the simulator, and returns its reply."""
        size = 1 << 12
        while True:
            reply = ctypes.create_string_buffer(size)
            length = self._run(command.encode(), reply, size)
            text = reply.value.decode()
            if length < 0:
                raise DeskError(text)
            if length < size:
                return text
            size = length + 1  # Only a list is that long, and may be asked for once more.


_standin = functools.lru_cache(maxsize=None)(_Standin)


class Desk:
    """Simulated devices, and what people do with them. A device is told by its number, from 1; without one it is the
    device that was plugged in last."""

    def __init__(self, standin: _Standin) -> None:
        self._standin = standin

    @property
    def environment(self) -> Dict[str, str]:
        """For programs that are to see the devices. They inherit it anyway, unless they are given another."""
        return dict(os.environ)

    def do(self, command: str, device: Optional[int] = None) -> str:
        """Runs a command of the simulator, and returns its reply; do("help") lists them all."""
        return self._standin.run(command if device is None else f"#{device} {command}")

    def card(self, card: str, device: Optional[int] = None) -> None:
        """Places a card on a reader: "01020304:26" has these bytes, the lowest first, and 26 bits."""
        self.do(f"card {card}", device)

    def take(self, device: Optional[int] = None) -> None:
        """Takes the card away."""
        self.do("take", device)

    def swipe(self, tracks: str, device: Optional[int] = None) -> None:
        """Swipes a card through a magnetic-stripe reader: "%B12^DOE/JOHN^?;12=34?"."""
        self.do(f"swipe {tracks}", device)

    def range(self, inches: int, device: Optional[int] = None) -> None:
        """Somebody stands that far from a sonar sensor."""
        self.do(f"range {inches}", device)

    def walk(self, *legs: str, device: Optional[int] = None) -> None:
        """Somebody walks in front of a sonar sensor, leg by leg, "FROM:TO:MS", and stays at the end."""
        self.do(f"walk {' '.join(legs)}", device)

    def plug(self, kind: str) -> int:
        """Plugs in one more device, such as "plus:2", and returns its number."""
        return int(self.do(f"plug {kind}"))

    def unplug(self, device: Optional[int] = None) -> None:
        """Takes a device away; programs that use it see it gone."""
        self.do("unplug", device)

    def traffic(self, device: Optional[int] = None) -> List[str]:
        """The reports that went to and from a device, such as "set 1 8F" and "get 1 01 02"."""
        return self.do("traffic", device).splitlines()


def _end(process: "subprocess.Popen[bytes]") -> str:
    """Ends a simulator, and returns what it has said."""
    process.terminate()
    try:
        _, said = process.communicate(timeout=_SECONDS_TO_END)
    except subprocess.TimeoutExpired:
        process.kill()
        _, said = process.communicate()
    return said.decode(errors="replace").strip()


@contextlib.contextmanager
def _simulator(words: Sequence[str]) -> Iterator[Dict[str, str]]:
    """Runs a simulator, and hands out the variables by which programs see its devices."""
    program = shutil.which(_PROGRAM)
    if program is None:
        raise DeskError(f"{_PROGRAM} is not installed: it is in the package tavlyn-simulator, and has to be in PATH")
    # In a session of its own, so that Ctrl-C ends the program first, and not its devices.
    with subprocess.Popen(
        [program, "serve", "--with-parent", "--no-interactive", "--json", "--socket", _socket(), *words],
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        start_new_session=True,
    ) as process:
        assert process.stdout is not None
        try:
            variables = process.stdout.readline()
            if variables:
                yield json.loads(variables)
        finally:
            said = _end(process)
        if not variables:
            raise DeskError(said)


def _repeated(option: str, values: Sequence[str]) -> List[str]:
    return [word for value in values for word in (option, value)]


@contextlib.contextmanager
def desk(
    *,
    devices: Sequence[str] = ("reader",),
    cards: Sequence[str] = (),
    on_ms: int = 1500,
    off_ms: int = 1000,
    repeat: bool = False,
    commands: Sequence[str] = (),
) -> Iterator[Desk]:
    """A desk with these devices; tavlynsim devices lists what there is.

    cards come and go on the first device by themselves, each for on_ms and with off_ms after it, once or again and
    again. They begin when a program first asks for a card. commands are run before. A process has one desk at a time.
    """
    if not sys.platform.startswith("linux"):
        raise DeskError(f"desks are for Linux; on other systems start the tests by {_PROGRAM} run")
    if _SOCKET in os.environ:
        raise DeskError(f"this process sees the devices of another desk, or of {_PROGRAM}, already: {_SOCKET} is set")
    words = [
        *_repeated("--device", devices),
        *_repeated("--card", cards),
        *_repeated("--do", ["record on", *commands]),
        *("--on", str(on_ms), "--off", str(off_ms)),
        *(["--repeat"] if repeat else []),
    ]
    with _simulator(words) as variables, _environment(variables):
        standin = _standin(os.path.join(variables["LD_LIBRARY_PATH"].partition(":")[0], _STANDIN))
        standin.look()
        try:
            yield Desk(standin)
        finally:
            # The next desk begins with no open device, and no card that was read here.
            connecting.close_all()
            library.unload()
