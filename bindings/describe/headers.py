"""Reads the public headers: prototypes, structs and function types with their comments."""
import re
from typing import Dict, List, NamedTuple, Tuple

# The types of C as the description names them.
TYPES = {
    "void": "void",
    **{f"{sign}int{bits}_t": f"{sign}int{bits}" for sign in ("", "u") for bits in (8, 16, 32, 64)},
    "const char*": "text",
    "char*": "text_out",
    "const uint8_t*": "bytes",
    "uint8_t*": "bytes_out",
    "uint16_t*": "uint16_out",
    "uint32_t*": "uint32_out",
}
SIZES = {f"{sign}int{bits}": bits // 8 for sign in ("", "u") for bits in (8, 16, 32, 64)}

COMMENT = r"/\*\*(?P<comment>(?:[^*]|\*(?!/))*)\*/\s*"
CALL = re.compile(COMMENT + r"TAVLYN_API (?P<result>[^;(]*?) ?TAVLYN_CALL (?P<name>\w+)\((?P<arguments>[^)]*)\);")
CALLBACK = re.compile(COMMENT + r"typedef (?P<result>\w+)\(TAVLYN_CALL\* (?P<name>\w+)\)\((?P<arguments>[^)]*)\);")
STRUCT = re.compile(COMMENT + r"typedef struct (?P<name>\w+) \{\n(?P<fields>.*?)\n\} (?P=name);", re.S)
FIELD = re.compile(r"(?P<type>\w+) (?P<name>\w+)(?:\[(?P<count>\d+)\])?;\s*/\*\*<(?P<comment>(?:[^*]|\*(?!/))*)\*/")
ARGUMENT = re.compile(r"(?P<type>.*?)(?P<name>\w+)$")


class Comment(NamedTuple):
    """A comment taken apart. What it sends is a paragraph or a sentence that begins with Traffic."""

    text: str
    traffic: str
    arguments: Dict[str, str]
    result: str


class Prototype(NamedTuple):
    """A call, or the type of a function."""

    name: str
    result: str
    arguments: List[Tuple[str, str]]  # type and name
    comment: Comment


class Member(NamedTuple):
    """A word of a struct; length is 0 unless it is an array."""

    name: str
    type: str
    length: int
    text: str


class Struct(NamedTuple):
    """A struct."""

    name: str
    text: str
    members: List[Member]


class Header(NamedTuple):
    """What a header declares, in its order."""

    name: str
    title: str
    calls: List[Prototype]
    callbacks: List[Prototype]
    structs: List[Struct]


def _one_line(text: str) -> str:
    return " ".join(re.sub(r"(?m)^ \*( |$)", "", text).split())


def _comment(text: str) -> Comment:
    head, *tagged = re.split(r"(?:^|\s)@(?=param|return)", text)
    arguments: Dict[str, str] = {}
    result = ""
    for part in tagged:
        kind, rest = _one_line(part).split(" ", 1)
        if kind == "return":
            result = rest
        else:
            name, arguments_text = rest.split(" ", 1)
            arguments[name] = arguments_text
    said, _, sent = _one_line(head).partition("Traffic")
    # "Traffic: 8F." and "Traffic for a plain reader: 89 01."
    traffic = "Traffic" + sent if sent else ""
    if traffic.startswith("Traffic: "):
        traffic = traffic[len("Traffic: "):]
    return Comment(said.strip(), traffic, arguments, result)


def _prototype(found: "re.Match[str]") -> Prototype:
    arguments: List[Tuple[str, str]] = []
    for one in _one_line(found["arguments"]).split(", "):
        parts = None if one == "void" else ARGUMENT.match(one)
        if parts:
            arguments.append((parts["type"].strip(), parts["name"]))
    return Prototype(found["name"], found["result"], arguments, _comment(found["comment"]))


def _struct(found: "re.Match[str]") -> Struct:
    members = [Member(one["name"], one["type"], int(one["count"] or 0), _one_line(one["comment"]))
               for one in FIELD.finditer(found["fields"])]
    if len(members) != re.sub(r"/\*.*?\*/", "", found["fields"], flags=re.S).count(";"):
        raise ValueError(f"a word of {found['name']} is not understood")
    return Struct(found["name"], _one_line(found["comment"]), members)


def _title(text: str) -> str:
    begin = re.search(r"/\*\* @file\n \* ([^.,:]+)", text)
    return _one_line(begin[1]) if begin else ""


def parse(name: str, text: str) -> Header:
    """The header of that name."""
    return Header(name, _title(text),
                  [_prototype(found) for found in CALL.finditer(text)],
                  [_prototype(found) for found in CALLBACK.finditer(text)],
                  [_struct(found) for found in STRUCT.finditer(text)])


def type_of(c_type: str, structs: "Dict[str, Struct]", callbacks: "Dict[str, Prototype]") -> str:
    """How the description names a type of C."""
    if c_type in TYPES:
        return TYPES[c_type]
    if c_type in callbacks:
        return "callback:" + c_type
    found = re.fullmatch(r"(const )?(\w+)\*", c_type)
    if not found or found[2] not in structs:
        raise ValueError(f"a type that the description has no name for: {c_type}")
    return ("record:" if found[1] else "record_out:") + found[2]
