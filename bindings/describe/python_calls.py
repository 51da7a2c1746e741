"""The calls and records of the library for Python: tavlynapi/calls.py and records.py."""
import keyword
import textwrap
from typing import Dict, List, Tuple

import renewal
from common import first_sentence
from model import Api, Argument, Call, Field, Record

WIDTH = 120

# How the types of the description are annotated.
ANNOTATIONS: Dict[str, str] = {
    "text": "Optional[Path]",
    "text_out": "Optional[bytearray]",
    "bytes": "Optional[Data]",
    "bytes_out": "Optional[bytearray]",
    "uint16_out": "Optional[Words16]",
    "uint32_out": "Optional[Words32]",
    "callback:tavlyn_marker_function": "Optional[Marker]",
}
IMPORTS = """from ctypes import c_char_p, c_int16, c_int32, c_uint8, c_uint16, c_uint32, c_uint64
from typing import List, Optional

from . import passing
from .library import call
from .passing import Data, Marker, Path, Words16, Words32"""


def quoted(said: str) -> str:
    """The first sentence, as a docstring has it."""
    return first_sentence(said).replace("\\", "\\\\").replace('"""', "'''")


def docstring(said: str, indent: str) -> List[str]:
    """The lines of a docstring."""
    whole = f'{indent}"""{said}"""'
    if len(whole) <= WIDTH:
        return [whole]
    first, *rest = textwrap.wrap(said, WIDTH - len(indent) - 3)
    return [f'{indent}"""{first}', *(indent + line for line in rest), f'{indent}"""']


def name_of(argument: Argument) -> str:
    """The argument's name in Python."""
    return argument["name"] + "_" if keyword.iskeyword(argument["name"]) else argument["name"]


def _annotation(argument: Argument) -> str:
    kind, _, record = argument["type"].partition(":")
    return f"Optional[{record}]" if kind in ("record", "record_out") else ANNOTATIONS.get(argument["type"], "int")


def _size(argument: Argument) -> str:
    """The bytes that a buffer has at least; its length where there is one."""
    if "length" in argument:
        return argument["length"]
    return str(argument.get("room", {"uint16_out": 2, "uint32_out": 4}.get(argument["type"], 0)))


def _passed(argument: Argument) -> str:
    name, kind = name_of(argument), argument["type"]
    passed = {
        "text": f"passing.path({name})",
        "text_out": f"passing.room({name}, {_size(argument)})",
        "bytes": f"passing.data({name}, {_size(argument)})",
        "bytes_out": f"passing.room({name}, {_size(argument)})",
        "uint16_out": f"passing.words({name}, c_uint16, {_size(argument)})",
        "uint32_out": f"passing.words({name}, c_uint32, {_size(argument)})",
        "callback:tavlyn_marker_function": f"passing.marker({name})",
    }
    if kind.startswith("record"):
        return f"passing.record({name}, {kind.partition(':')[2]})"
    return passed.get(kind) or f"passing.number(c_{kind}, {name})"


def _result(one: Call) -> Tuple[str, str, List[str], str]:
    """What the function is annotated to return; the beginning of its expression, what comes before the arguments,
    and the end of it.
    """
    result = one["result"]
    kind, name = result["type"], f'"{one["name"]}"'
    if kind == "void":
        return "None", "call(", [name, "None"], ")"
    if kind == "text":
        return "Optional[str]", "return passing.text(call(", [name, "c_char_p"], "))"
    if kind == "bytes":
        owned = str(bool(result.get("owned")))
        return "Optional[bytes]", "return passing.call_for_bytes(", [name, str(result["room"]), owned], ")"
    if kind.startswith("record:"):
        record = kind.partition(":")[2]
        return f"Optional[List[{record}]]", "return passing.call_for_records(", [name, record, result["count"]], ")"
    return "int", "return int(call(", [name, f"c_{kind}"], "))"


def _listed(before: str, inside: List[str], after: str, indent: str) -> List[str]:
    """A line, or a list with one line an element where that is too long."""
    whole = before + ", ".join(inside) + after
    if len(whole) <= WIDTH:
        return [whole]
    return [before, *(f"{indent}    {one}," for one in inside), indent + after]


def _function(one: Call) -> List[str]:
    annotation, begin, inside, end = _result(one)
    parameters = [f"{name_of(each)}: {_annotation(each)}" for each in one["arguments"]]
    passed = [_passed(each) for each in one["arguments"]]
    return [
        *_listed(f"def {one['name']}(", parameters, f") -> {annotation}:", ""),
        *docstring(quoted(one["text"]), "    "),
        *_listed(f"    {begin}", inside + passed, end, "    "),
    ]


def _structure(record: Record) -> List[str]:
    return [
        f"class {record['name']}(Structure):",
        *docstring(quoted(record["text"]), "    "),
        "",
        *(f"    {field['name']}: {'ctypes.Array[c_uint8]' if 'count' in field else 'int'}"
          for field in record["fields"]),
        "    _fields_ = [",
        *(f'        ("{field["name"]}", {_c_type(field)}),' for field in record["fields"]),
        "    ]",
    ]


def _c_type(field: Field) -> str:
    return f"c_{field['type']} * {field['count']}" if "count" in field else f"c_{field['type']}"


def _begun(title: str) -> List[str]:
    return [renewal.begun("#"), f'"""{title}"""']


def records(api: Api) -> str:
    """records.py."""
    kinds = sorted({f"c_{field['type']}" for record in api["records"] for field in record["fields"]})
    lines = _begun("The records of the library, word by word.")
    lines += ["import ctypes", f"from ctypes import {', '.join([*('Structure',), *kinds])}"]
    for record in api["records"]:
        lines += ["", "", *_structure(record)]
    return "\n".join(lines) + "\n"


def calls(api: Api) -> str:
    """calls.py."""
    names = sorted(record["name"] for record in api["records"])
    lines = _begun("The calls of the library, each under its own name. "
                   "Results and error words are those of its headers.")
    lines += [IMPORTS, "from .records import (", *(f"    {name}," for name in names), ")"]
    for one in api["calls"]:
        lines += ["", "", *_function(one)]
    return "\n".join(lines) + "\n"


def version(api: Api) -> str:
    """version.py."""
    lines = _begun("The version of the library that the package was made for.")
    return "\n".join([*lines, "", f'VERSION = "{api["version"]}"']) + "\n"
