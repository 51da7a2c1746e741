"""The settings of readers and sensors for Python, as attributes with types: tavlynapi/settings.py; and the error words:
tavlynapi/error_words.py.
"""
import re
from typing import Dict, List

import renewal
from common import named_words
from model import Api, Field, Record
from python_calls import docstring, quoted

CLASSES = {
    "reader": ("ReaderSettings", "A configuration of a card reader."),
    "sonar": ("SonarSettings", "The configuration of a sonar sensor."),
}


def _constant(record: Record) -> str:
    return record["name"][2:].upper()


def _attribute(record: Record, field: Field, called: Dict[str, str]) -> List[str]:
    said = re.sub(r"\w+", lambda word: called.get(word[0], word[0]), quoted(field["text"]))
    begin = f'    {field["called"]} = '
    inside = [_constant(record), f'"{field["name"]}"']
    if field["read_only"]:
        made = "ReadOnlyFlag" if field["flag"] else "ReadOnlyNumber"
    elif field["flag"]:
        made = "Flag"
    else:
        made = "Number"
        inside.append(f'"{field.get("unit", "")}"')
        if "least" in field and "most" in field:
            inside += [str(field["least"]), str(field["most"])]
    return [f"{begin}{made}({', '.join(inside)})", *docstring(said, "    ")]


def _class(product: str, api: Api) -> List[str]:
    name, text = CLASSES[product]
    lines = [f"class {name}(Settings):", *docstring(text, "    "), "", "    __slots__ = ()"]
    called = {field["name"]: field["called"] for _, field in named_words(api, product)}
    for record, field in named_words(api, product):
        lines += ["", *_attribute(record, field, called)]
    return lines


def settings(api: Api) -> str:
    """settings.py."""
    lines = [renewal.begun("#"), '"""The settings of readers and sensors."""', "from . import calls, records",
             "from .fields import Flag, Number, ReadOnlyFlag, ReadOnlyNumber, Record, Settings", ""]
    for record in api["records"]:
        if "product" in record:
            made = f"Record(records.{record['name']}, calls.{record['get']}, calls.{record['set']})"
            lines.append(f"{_constant(record)} = {made}")
    for product in CLASSES:
        lines += ["", "", *_class(product, api)]
    return "\n".join(lines) + "\n"


def error_words(api: Api) -> str:
    """error_words.py."""
    lines = [renewal.begun("#"), '"""The error words of the library."""',
             "from typing import NamedTuple, Tuple", "", "",
             "class ErrorWord(NamedTuple):",
             *docstring("An error word: it is in a sum if (sum & mask) == found.", "    "), "",
             "    name: str", "    value: int", "    mask: int", "    found: int", "    text: str", "    remedy: str",
             "", "",
             f'NO_WORD = "{api["error_text"]["none"]}"', f'UNKNOWN = "{api["error_text"]["unknown"]}"', "",
             "ERROR_WORDS: Tuple[ErrorWord, ...] = ("]
    for one in api["errors"]:
        numbers = ", ".join(f"0x{one[key]:X}" for key in ("value", "mask", "found"))  # type: ignore[literal-required]
        lines += ["    ErrorWord(", f'        "{one["name"]}", {numbers},', f'        "{one["words"]}",',
                  f'        "{one["remedy"]}",', "    ),"]
    return "\n".join([*lines, ")"]) + "\n"
