"""What a configured build compiles of src/, sim/ and tools/, for the scripts that check it."""
import json
import os
import pathlib
import shlex

ROOT = pathlib.Path(__file__).resolve().parent.parent
ROOMS = {"src", "sim", "tools"}


def sources_of(unit):
    """The files that a unit consists of; it may be a whole folder."""
    path = pathlib.Path(unit["file"])
    text = path.read_text() if "Unity" in path.parts else f'#include "{path}"'
    return frozenset(line.split('"')[1] for line in text.splitlines() if line.startswith("#include"))


def rooms_of(unit):
    return {os.path.relpath(name, ROOT).split(os.sep)[0] for name in sources_of(unit)}


def arguments_of(unit):
    """The compiler and its options, without what is to be done and with what file to make."""
    command = shlex.split(unit["command"])
    at = command.index("-o")
    return [word for word in command[:at] + command[at + 2:] if word != "-c"]


def compile_units(build):
    """Enough units to have each file once: the tests compile some of them again."""
    units = json.loads((pathlib.Path(build) / "compile_commands.json").read_text())
    chosen = []
    covered = set()
    for unit in sorted(units, key=lambda unit: -len(sources_of(unit))):
        if rooms_of(unit) <= ROOMS and not sources_of(unit) <= covered:
            chosen.append(unit)
            covered |= sources_of(unit)
    return chosen
