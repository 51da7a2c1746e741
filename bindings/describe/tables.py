"""Reads the tables of the library and of tavlynctl: rows of macros, NAME(argument, …)."""
import re
from typing import Dict, Iterator, List, NamedTuple, Optional

import tree
from model import ErrorWord

TOKEN = re.compile(r'"(?:[^"\\]|\\.)*"|[(){},]|[^"(){},]+')
BOUND = re.compile(r"-?\d+")

# How the description names units; the others by their own names.
UNITS = {"kMilliseconds": "ms", "kSeconds": "s"}
# A flag, a choice of named values and a plain number have no unit.
WITHOUT_UNIT = ("kFlag", "kChoice", "kNumber")


class Limits(NamedTuple):
    """What a word of a record takes, and whether it only reports."""

    least: Optional[int]
    most: Optional[int]
    step: int
    read_only: bool


class Meaning(NamedTuple):
    """What a word of a record is for people."""

    called: str
    unit: str  # empty for none
    flag: bool
    values: Dict[str, int]
    note: str


def _text(argument: str) -> str:
    """The value of a string literal, which may be in several pieces."""
    return "".join(piece.replace('\\"', '"') for piece in re.findall(r'"((?:[^"\\]|\\.)*)"', argument))


def rows(path: str, macro: str) -> Iterator[List[str]]:
    """The arguments of each use of a macro in a file."""
    text = re.sub(r"(?m)^(//|#).*$", "", tree.read(path))
    for begin in re.finditer(rf"(?m)^{macro}\(", text):
        arguments, depth = [""], 1
        for token in TOKEN.finditer(text, begin.end()):
            depth += {"(": 1, "{": 1, ")": -1, "}": -1}.get(token[0], 0)
            if depth == 0:
                break
            if depth == 1 and token[0] == ",":
                arguments.append("")
            else:
                arguments[-1] += token[0]
        yield [argument.strip() for argument in arguments]


def _named(arguments: List[str]) -> Dict[str, str]:
    """The designated members in a row: .step = 4."""
    pairs = (argument[1:].split("=", 1) for argument in arguments if argument.startswith("."))
    return {name.strip(): value.strip() for name, value in pairs}


def _limits(members: Dict[str, str]) -> Limits:
    bounds = members.get("bounds", "")
    numbers = [int(number) for number in BOUND.findall(bounds)]
    step, read_only = int(members.get("step", "1")), members.get("readOnly") == "true"
    if not numbers:
        return Limits(None, None, step, read_only)
    # UpTo(15) and {.most = 255, .replacement = 0} do not refuse a negative word, but nobody means one.
    if bounds.startswith("UpTo") or ".most" in bounds:
        return Limits(0, numbers[0], step, read_only)
    return Limits(numbers[0], numbers[1], step, read_only)


def limits() -> Dict[str, Limits]:
    """Of each word of each record: tsTimeParms.iIDHoldTO."""
    found = {}
    for path in ("src/core/fields.inc", "src/core/sonar_fields.inc"):
        for record, name, *rest in rows(path, "FIELD"):
            found[f"ts{record}.{name}"] = _limits(_named(rest))
    return found


def _meaning(called: str, unit: str, members: Dict[str, str]) -> Meaning:
    values = {word: int(number) for number, word in re.findall(r'\{(\d+), "([^"]*)"\}', members.get("names", ""))}
    shown = "" if unit in WITHOUT_UNIT else UNITS.get(unit) or re.sub(r"(?<!^)([A-Z])", r"_\1", unit[1:]).lower()
    return Meaning(called, shown, unit == "kFlag", values, _text(members.get("note", "")))


def meanings() -> Dict[str, Meaning]:
    """Of each word of a record that is not padding."""
    path = "tools/tavlynctl/config/meanings.inc"
    found = {}
    for record, name, called, unit, _, *rest in rows(path, "FIELD"):
        found[f"ts{record}.{name}"] = _meaning(called, unit, _named(rest))
    words = {key: f"ts{record}.{name}" for record, name, key, *_ in rows("src/core/sonar_fields.inc", "FIELD")}
    for _, key, called, unit, _, *rest in rows(path, "SENSOR"):
        found[words[key]] = _meaning(called, unit, _named(rest))
    return found


def error_words() -> List[ErrorWord]:
    """All error words, in the order of their table."""
    found: List[ErrorWord] = []
    for name, value, mask, *texts in rows("tools/tavlynctl/trouble/error_words.inc", "ERROR_WORD"):
        word, bits = (int(number.rstrip("u"), 16) for number in (value, mask))
        words, how, when, remedy = (_text(text) for text in texts)
        found.append({"name": "TAVLYN_ERR_" + name, "value": word, "mask": bits, "found": word & bits,
                      "words": words, "how": how, "when": when, "remedy": remedy})
    return found


def error_text() -> Dict[str, str]:
    """What is said of a word that has no row: 0, and one that nobody can take apart."""
    return {name: _text(text) for name, text in rows("tools/tavlynctl/trouble/error_words.inc", "ERROR_TEXT")}
