"""An agent and its devices: tavlynd under a configuration, on the devices of tavlynsim."""
import json
import subprocess
from typing import Dict, Optional

from stage import Process, Stage


class Simulator:
    """Devices, which programs find that have its variables."""

    def __init__(self, stage: Stage, *words: str, name: str = "devices", typed: bool = False) -> None:
        self._socket = str(stage.folder / f"{name}.socket")
        command = ["tavlynsim", "serve", "--json", "--socket", self._socket, *words]
        command.append("--interactive" if typed else "--no-interactive")
        self._process = stage.begin(name, command, typed=typed)
        line = stage.wait("the devices", lambda: self._process.printed.read_text(encoding="utf-8"), self._process)
        self.variables: Dict[str, str] = json.loads(line)

    def type(self, line: str) -> None:
        """A command whose reply nobody waits for, for a simulator that is typed to."""
        self._process.type(line + "\n")

    def do(self, *lines: str) -> str:
        """Typed commands, and their replies."""
        words = ["tavlynsim", "do", "--socket", self._socket, *lines]
        return subprocess.run(words, check=True, capture_output=True, text=True).stdout


class Agent:
    """Runs when it has been made, and after start()."""

    def __init__(
        self, stage: Stage, settings: str, devices: Optional[Simulator] = None, name: str = "agent"
    ) -> None:
        words = ["tavlynd", stage.file(f"{name}.toml", settings)]
        self.program: Process = stage.begin(name, words, devices.variables if devices else {})

    def start(self) -> None:
        """After a stop or a kill."""
        self.program.start()

    def stop(self) -> int:
        """Its exit status."""
        return self.program.end()

    def kill(self) -> None:
        """At this moment, whatever it is doing."""
        self.program.kill()
