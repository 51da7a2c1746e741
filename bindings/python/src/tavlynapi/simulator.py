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
import time
from typing import Dict, Iterator, List, Optional, Sequence

from . import connecting, library
from .errors import Problem

_PROGRAM = "tavlynsim"
_SOCKET = "TAVLYNSIM_SOCKET"
_STANDIN = "libhidapi-hidraw.so.0"
_SECONDS_TO_END = 10
_NOT_MET = 123
_LOOK_AGAIN = 0.02


class DeskError(Problem):
    """Devices cannot be simulated here, or the simulator refused a command; the text says why."""


class NotMet(AssertionError):
    """What was expected of the program did not come; the text says what, and what was seen."""


@contextlib.contextmanager
def _environment(variables: Dict[str, str]) -> Iterator[Dict[str, str]]:
    before = {name: os.environ.get(name) for name in variables}
    os.environ.update(variables)
    try:
        yield variables
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

    def __init__(self, standin: _Standin, simulator: "_Simulator") -> None:
        self._standin = standin
        self._simulator = simulator

    def conclude(self) -> None:
        """Ends the devices, and raises NotMet if something that their scenario expects was not met. The end of a
        test, and of a desk, does it."""
        self._simulator.conclude()

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

    def replug(self, device: Optional[int] = None) -> None:
        """Plugs a device in again that was unplugged or has vanished, with what it keeps without power."""
        self.do("replug", device)

    def seen(self, device: Optional[int] = None) -> List[str]:
        """What a person saw and heard of a reader, such as "leds green", "relay on" and "beep 2 short"."""
        return self.do("seen", device).splitlines()

    def await_seen(self, *lines: str, seconds: float = 10, device: Optional[int] = None) -> None:
        """Waits until these were seen, one after the other; NotMet says what is missing."""
        over = time.monotonic() + seconds
        while True:
            late = time.monotonic() >= over
            seen = self.seen(device)
            rest = iter(seen)
            missing = [line for line in lines if line not in rest]
            if not missing:
                return
            if late:
                raise NotMet(f"not seen: {missing[0]}; seen: {', '.join(seen) or 'nothing'}")
            time.sleep(_LOOK_AGAIN)

    def traffic(self, device: Optional[int] = None) -> List[str]:
        """The reports that went to and from a device, such as "set 1 8F" and "get 1 01 02"."""
        return self.do("traffic", device).splitlines()


class _Simulator:
    """The process that has the devices."""

    def __init__(self, words: Sequence[str]) -> None:
        program = shutil.which(_PROGRAM)
        if program is None:
            raise DeskError(
                f"{_PROGRAM} is not installed: it is in the package tavlyn-simulator, and has to be in PATH"
            )
        # In a session of its own, so that Ctrl-C ends the program first, and not its devices.
        self._process = subprocess.Popen(  # pylint: disable=consider-using-with
            [program, "serve", "--with-parent", "--no-interactive", "--json", "--socket", _socket(), *words],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            start_new_session=True,
        )
        self._said: Optional[str] = None

    def variables(self) -> Dict[str, str]:
        """By which programs see the devices."""
        assert self._process.stdout is not None
        line = self._process.stdout.readline()
        if not line:
            raise DeskError(self.end())
        variables: Dict[str, str] = json.loads(line)
        return variables

    def end(self) -> str:
        """Ends it, and returns what it has said."""
        if self._said is None:
            self._process.terminate()
            try:
                _, said = self._process.communicate(timeout=_SECONDS_TO_END)
            except subprocess.TimeoutExpired:
                self._process.kill()
                _, said = self._process.communicate()
            self._said = said.decode(errors="replace").strip()
        return self._said

    def conclude(self) -> None:
        """Ends it, and says once what its scenario expects and was not met."""
        if self._said is None:
            said = self.end()
            if self._process.returncode == _NOT_MET:
                raise NotMet(said.replace(f"{_PROGRAM}: ", ""))


@contextlib.contextmanager
def _simulator(words: Sequence[str]) -> Iterator[_Simulator]:
    simulator = _Simulator(words)
    try:
        yield simulator
    finally:
        simulator.end()


def _repeated(option: str, values: Sequence[str]) -> List[str]:
    return [word for value in values for word in (option, value)]


@contextlib.contextmanager
def desk(
    *,
    devices: Sequence[str] = (),
    cards: Sequence[str] = (),
    on_ms: int = 1500,
    off_ms: int = 1000,
    repeat: bool = False,
    commands: Sequence[str] = (),
    scenario: Optional[str] = None,
) -> Iterator[Desk]:
    """A desk with these devices, one card reader without any; tavlynsim devices lists what there is.

    cards come and go on the first device by themselves, each for on_ms and with off_ms after it, once or again and
    again. They begin when a program first asks for a card. commands are run before. A process has one desk at a time.

    A scenario is a file with devices, what happens to them, and what is expected of the program: NotMet tells at the
    end what was not met.
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
        *(["--scenario", scenario] if scenario is not None else []),
    ]
    with _simulator(words) as simulator, _environment(simulator.variables()) as variables:
        standin = _standin(os.path.join(variables["LD_LIBRARY_PATH"].partition(":")[0], _STANDIN))
        standin.look()
        try:
            opened = Desk(standin, simulator)
            yield opened
            opened.conclude()
        finally:
            # The next desk begins with no open device, and no card that was read here.
            connecting.close_all()
            library.unload()
