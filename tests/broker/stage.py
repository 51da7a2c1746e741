"""Where the programs of a test run: a folder and an address of their own, and nothing left of them afterwards.

Whoever waits here waits for a condition, not for a time. The bound is for what never happens.
"""
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from types import TracebackType
from typing import Callable, Dict, List, Optional, Sequence, Type, TypeVar

_SECONDS_BETWEEN_LOOKS = 0.01
_LINES_TOLD = 20

Found = TypeVar("Found")


class Process:  # pylint: disable=too-many-instance-attributes
    """A program that may be killed and started again. It ends with the test, however the test ends."""

    def __init__(
        self, stage: "Stage", name: str, words: Sequence[str], variables: Optional[Dict[str, str]], typed: bool
    ) -> None:
        self.name = name
        self._stage = stage
        self._words = ["setpriv", "--pdeathsig", "KILL", "--", *words]
        self._input = subprocess.PIPE if typed else subprocess.DEVNULL
        self._variables = {**os.environ, **(variables or {})}
        self.printed = stage.folder / f"{name}.out"
        self.log = stage.folder / f"{name}.log"
        self._running: Optional["subprocess.Popen[bytes]"] = None
        self.start()

    def start(self) -> None:
        """What it prints is added to what it printed before."""
        assert not self.is_running(), f"{self.name} runs already"
        with open(self.printed, "ab") as printed, open(self.log, "ab") as log:
            # pylint: disable=consider-using-with
            self._running = subprocess.Popen(
                self._words, stdin=self._input, stdout=printed, stderr=log, env=self._variables
            )

    @property
    def process(self) -> int:
        """Its process ID."""
        assert self._running is not None
        return self._running.pid

    def type(self, text: str) -> None:
        """For a program that was begun to be typed to."""
        assert self._running is not None and self._running.stdin is not None
        self._running.stdin.write(text.encode())
        self._running.stdin.flush()

    def is_running(self) -> bool:
        """Not after its end, even if nobody has asked for it to end."""
        return self._running is not None and self._running.poll() is None

    def status(self) -> int:
        """Of a program that has ended: negative for a signal."""
        assert self._running is not None
        return self._running.wait()

    def send(self, number: int) -> None:
        """For a signal that does not end it."""
        assert self._running is not None
        self._running.send_signal(number)

    def pause(self) -> None:
        """It stands still when this returns."""
        if self.is_running():
            self.send(signal.SIGSTOP)
            os.waitpid(self.process, os.WUNTRACED)

    def resume(self) -> None:
        """After a pause."""
        if self.is_running():
            self.send(signal.SIGCONT)

    def end(self, number: int = signal.SIGTERM) -> int:
        """Its exit status, negative for a signal."""
        assert self._running is not None
        if self.is_running():
            self._running.send_signal(number)
        try:
            return self._running.wait(self._stage.patience)
        except subprocess.TimeoutExpired:
            self._running.kill()
            raise AssertionError(f"{self.name} does not end after signal {number}{self._stage.told()}") from None

    def kill(self) -> None:
        """Without giving it a chance."""
        self.end(signal.SIGKILL)


class Stage:
    """The folder and the address of a test, and how many seconds something may take that never should."""

    def __init__(self, patience: float = 120) -> None:
        self.patience = patience
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tavlyn-broker-"))
        # The loopback has an address for every process ID, so no other test has this one.
        number = os.getpid()
        self.address = f"127.{number >> 16 & 255}.{number >> 8 & 255}.{number & 255}"
        if self.address in ("127.0.0.0", "127.0.0.1", "127.255.255.255"):
            self.address = "127.0.1.1"
        self._processes: List[Process] = []
        # Whoever ends a test that takes too long lets it clean up.
        signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended by SIGTERM"))

    def __enter__(self) -> "Stage":
        return self

    def __exit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        for process in reversed(self._processes):
            if process.is_running():
                process.kill()
        shutil.rmtree(self.folder, ignore_errors=True)

    def begin(
        self, name: str, words: Sequence[str], variables: Optional[Dict[str, str]] = None, typed: bool = False
    ) -> Process:
        """The name is that of its files in the folder; `typed` for a program that reads its standard input."""
        assert all(process.name != name for process in self._processes), f"two programs are called {name}"
        process = Process(self, name, words, variables, typed)
        self._processes.append(process)
        return process

    def fresh_name(self, kind: str) -> str:
        """For one program of several."""
        return f"{kind}-{sum(process.name.startswith(kind) for process in self._processes)}"

    def file(self, name: str, text: str) -> str:
        """The path of a new file with this text, which nobody else may read."""
        path = self.folder / name
        path.touch(mode=0o600)
        path.write_text(text, encoding="utf-8")
        return str(path)

    def free_port(self) -> int:
        """Of this stage's own address."""
        with socket.socket() as asked:
            asked.bind((self.address, 0))
            port = asked.getsockname()[1]
            assert isinstance(port, int)
            return port

    def wait(self, what: str, look: Callable[[], Optional[Found]], process: Optional[Process] = None) -> Found:
        """What look() finds as soon as it is neither None nor false; an error if the process ends before."""
        until = time.monotonic() + self.patience
        while True:
            ended = process is not None and not process.is_running()
            found = look()
            if found:
                return found
            if ended or time.monotonic() > until:
                raise AssertionError(f"{what}: {'its program has ended' if ended else 'it never came'}{self.told()}")
            time.sleep(_SECONDS_BETWEEN_LOOKS)

    def told(self) -> str:
        """The last lines of every program, for the message of a failure."""
        told = []
        for process in self._processes:
            for file in (process.printed, process.log):
                lines = file.read_text(encoding="utf-8", errors="replace").splitlines()[-_LINES_TOLD:]
                told += [f"{file.name}: {line}" for line in lines]
        return "".join(f"\n  {line}" for line in told)
