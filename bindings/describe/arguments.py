"""What the comment of an argument or a result says: unit, range, room. The comments have a regular form."""
import re
from typing import Dict, List, Optional, Tuple

from model import Argument, Result

NUMBERS = {"two": 2, "four": 4, "five": 5, "eight": 8}
RANGE = re.compile(r"(?<![\w.])(?<!bits )(-?\d+) (?:to|or) (\d+)\b", re.I)
MOST = re.compile(r"\bat most (\d+)\b")
LEAST = re.compile(r"\b(?:at least|from) (\d+)\b|^(\d+) to \w+\(")
STEP = re.compile(r"\bsteps of (\d+)\b")
VALUES = re.compile(r"(?:^|, )(-?\d+) (?:for )?[a-z]")
FLAG = re.compile(r"\bany other value\b|^not 0\b|\bon when not 0\b|^exactly 1\b|^0 for off, 1 for on\.|^The flag ")
NULLABLE = re.compile(r"\bmay be null\b|\bor null\b|\bnull counts\b")
IGNORED = re.compile(r"^is (ignored|not stored|not touched)\b")
ROOM = re.compile(r"(?:\broom for |^receives |^the |^)(\d+|two|four|five|eight) (bytes|characters|words|flags)\b", re.I)
UNITS: Tuple[Tuple[str, str], ...] = (
    (r"^Milliseconds\b|\bmilliseconds\b", "ms"),
    (r"^Number of bits\b", "bits"),
    (r"^Number of bytes\b", "bytes"),
    (r"\bin characters\b", "characters"),
    (r"\bin bytes\b|^number of bytes\b|^bytes in\b|\bhow many bytes\b", "bytes"),
    (r"\bbaud\b", "baud"),
)
POINTERS = ("text", "text_out", "bytes", "bytes_out", "uint16_out", "uint32_out")


def _room(text: str) -> int:
    found = ROOM.search(text)
    if not found:
        return 0
    number = found[1].lower()
    return (NUMBERS.get(number) or int(number)) * (2 if found[2] == "words" else 1)


def _range(text: str) -> Dict[str, int]:
    """The range; where the values are listed, from the first to the last."""
    found = RANGE.search(text)
    if found:
        return {"least": int(found[1]), "most": int(found[2])}
    most = MOST.search(text)
    if most:
        return {"least": 0, "most": int(most[1])}
    least = LEAST.search(text)
    if least:
        return {"least": int(least[1] or least[2])}
    values = [int(value) for value in VALUES.findall(text)]
    return {"least": min(values), "most": max(values)} if len(values) > 1 else {}


def _unit(text: str) -> Optional[str]:
    return next((unit for words, unit in UNITS if re.search(words, text)), None)


def _of_number(argument: Argument) -> None:
    text = argument["text"]
    if FLAG.search(text):
        argument["flag"] = True
    else:
        limits = _range(text)
        if "least" in limits:
            argument["least"] = limits["least"]
        if "most" in limits:
            argument["most"] = limits["most"]
    step = STEP.search(text)
    if step:
        argument["step"] = int(step[1])
    unit = _unit(text)
    if unit:
        argument["unit"] = unit


def argument_of(name: str, c_type: str, kind: str, text: str) -> Argument:
    """One argument of a call, by what its comment says of it."""
    argument: Argument = {"name": name, "type": kind, "c": c_type, "text": text}
    if NULLABLE.search(text):
        argument["nullable"] = True
    if IGNORED.search(text):
        argument["ignored"] = True
    elif kind in POINTERS:
        room = _room(text)
        if room:
            argument["room"] = room
    elif ":" not in kind:
        _of_number(argument)
    return argument


def add_lengths(arguments: List[Argument]) -> None:
    """A buffer and the argument after it that is its length."""
    for buffer, length in zip(arguments, arguments[1:]):
        if buffer["type"] in POINTERS and length["name"] == "length":
            buffer["length"] = "length"
            if buffer["type"] == "text" and "bytes" in buffer["text"]:
                buffer["type"] = "bytes"
            if "ignored" not in length:
                length.setdefault("unit", "bytes")


def result_of(c_type: str, kind: str, text: str) -> Result:
    """The result of a call."""
    result: Result = {"type": kind, "c": c_type, "text": text}
    if kind == "bytes_out":
        result["type"] = "bytes"
    if kind.startswith("record_out:"):
        result["type"] = kind.replace("record_out:", "record:")
    if kind in ("bytes_out", "bytes"):
        result["room"] = _room(text)
    if "*" in c_type and not c_type.startswith("const "):
        result["owned"] = True
    unit = None if "*" in c_type else _unit(text)
    if unit:
        result["unit"] = unit
    return result
