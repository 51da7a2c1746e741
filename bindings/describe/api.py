"""Puts the description together."""
import pathlib
import re
from typing import Dict, List

import headers
import products
import tables
import tree
from arguments import add_lengths, argument_of, result_of
from headers import Header, Prototype, Struct
from model import Api, Argument, Call, Callback, Field, Record, Result

ERROR = re.compile(r"\bTAVLYN_ERR_\w*[A-Z0-9]\b")
OTHER_CALL = re.compile(r"^(?:As for|What|The same as) (\w+)\(\)|\bthat (\w+)\(\) returned$")
# The calls that reach one word of a record by its get and set (accessors.h).
ONE_WORD = re.compile(r"\bthe record call that failed\b|^The (word|flag) ")
READ_ONLY = re.compile(r"\bRead only\b|\bthat the reader reports\b")
COUNTED = re.compile(r"\b(\w+)\(\) of them\b")
AS_FOR = re.compile(r"as for (\w+)\(\)")
# Headers of one product, whose records are its own.
SONAR = "sonar.h"


class Headers:
    """All public headers."""

    def __init__(self) -> None:
        folder = tree.ROOT / "include" / "api"
        self.all: List[Header] = [headers.parse(path.name, tree.read(f"include/api/{path.name}"))
                                  for path in sorted(pathlib.Path(folder).glob("*.h"))]
        self.calls: Dict[str, Prototype] = {one.name: one for header in self.all for one in header.calls}
        self.callbacks: Dict[str, Prototype] = {one.name: one for header in self.all for one in header.callbacks}
        self.structs: Dict[str, Struct] = {one.name: one for header in self.all for one in header.structs}

    def type_of(self, c_type: str) -> str:
        """How the description names a type of C."""
        return headers.type_of(c_type, self.structs, self.callbacks)

    def arguments(self, prototype: Prototype) -> List[Argument]:
        """The arguments of a call or callback."""
        found = [argument_of(name, c_type, self.type_of(c_type), self._text(prototype, name))
                 for c_type, name in prototype.arguments]
        add_lengths(found)
        return found

    def _text(self, prototype: Prototype, argument: str) -> str:
        """What is said of an argument, at another call if need be."""
        text = prototype.comment.arguments.get(argument, "")
        other = AS_FOR.match(text)
        return self._text(self.calls[other[1]], argument) if other else text

    def errors(self, prototype: Prototype) -> List[str]:
        """The error words that a comment names, and those of the call to which it refers."""
        comment = prototype.comment
        said = " ".join((comment.text, comment.traffic, *comment.arguments.values(), comment.result))
        found = ERROR.findall(said)
        if ONE_WORD.search(comment.result):
            found.append("TAVLYN_ERR_GET_UNREAD")
        other = OTHER_CALL.search(comment.result)
        if other:
            found += self.errors(self.calls[other[1] or other[2]])
        return list(dict.fromkeys(found))

    def result(self, prototype: Prototype) -> Result:
        """The result of a call; what it points to is as at the call to which the comment refers."""
        found = result_of(prototype.result, self.type_of(prototype.result), prototype.comment.result)
        other = OTHER_CALL.search(prototype.comment.result)
        if other:
            there = self.result(self.calls[other[1] or other[2]])
            if "room" in there:
                found["room"] = there["room"]
            if "unit" in there:
                found["unit"] = there["unit"]
        counted = COUNTED.search(prototype.comment.text)
        if counted and found["type"].startswith("record:"):
            found["count"] = counted[1]
        return found


def _text(prototype: Prototype) -> str:
    """What the call does. The calls that reach one word have only their argument or result for it."""
    comment = prototype.comment
    if comment.text:
        return comment.text
    for does, said in (("Sets", comment.arguments.get("value", "")), ("Returns", comment.result)):
        if said:
            return f"{does} {said[:1].lower()}{said[1:]}"
    return ""


def _call(prototype: Prototype, header: Header, known: Headers, rows: Dict[str, Dict[str, str]]) -> Call:
    row = products.row_of(prototype.name, rows)
    if row is None:
        raise ValueError(f"docs/products.md has no row for {prototype.name}")
    call: Call = {
        "name": prototype.name,
        "header": header.name,
        "group": header.title,
        "text": _text(prototype),
        "result": known.result(prototype),
        "arguments": known.arguments(prototype),
        "errors": known.errors(prototype),
        "products": rows[row],
    }
    if prototype.comment.traffic:
        call["traffic"] = prototype.comment.traffic
    return call


def _callback(prototype: Prototype, known: Headers) -> Callback:
    return {"name": prototype.name, "text": prototype.comment.text,
            "result": {"type": known.type_of(prototype.result), "c": prototype.result},
            "arguments": known.arguments(prototype)}


def _is_flag(name: str, meaning: tables.Meaning) -> bool:
    """Also a word that C names as a flag and people by what its two values mean."""
    return meaning.flag or name.startswith("b") and sorted(meaning.values.values()) == [0, 1]


def _fields(struct: Struct) -> List[Field]:
    limits, meanings = tables.limits(), tables.meanings()
    fields: List[Field] = []
    offset = 0
    for member in struct.members:
        key = f"{struct.name}.{member.name}"
        meaning, limit = meanings.get(key), limits.get(key)
        field: Field = {"name": member.name, "type": headers.TYPES[member.type], "offset": offset,
                        "text": member.text,
                        "flag": meaning is not None and _is_flag(member.name, meaning),
                        "unused": member.text == "Unused.",
                        "read_only": bool(READ_ONLY.search(member.text)) or limit is not None and limit.read_only}
        if member.length:
            field["count"] = member.length
        if meaning:
            field["called"] = meaning.called
            if meaning.unit:
                field["unit"] = meaning.unit
            if meaning.values:
                field["values"] = meaning.values
            if meaning.note:
                field["note"] = meaning.note
        if limit and limit.least is not None and limit.most is not None:
            field["least"], field["most"] = limit.least, limit.most
        if limit and limit.step > 1:
            field["step"] = limit.step
        fields.append(field)
        # No struct has gaps; the check of the description against the compiler would say so.
        offset += headers.SIZES[field["type"]] * (member.length or 1)
    return fields


def _record(struct: Struct, header: Header, known: Headers) -> Record:
    fields = _fields(struct)
    record: Record = {"name": struct.name, "header": header.name, "text": struct.text,
                      "size": sum(headers.SIZES[one["type"]] * one.get("count", 1) for one in fields),
                      "fields": fields}
    if any("called" in field for field in fields):
        record["product"] = "sonar" if header.name == SONAR else "reader"
    for prototype in known.calls.values():
        for c_type, _ in prototype.arguments:
            if c_type == f"{struct.name}*":
                record["get"] = prototype.name
            if c_type == f"const {struct.name}*":
                record["set"] = prototype.name
    return record


def _version() -> str:
    found = re.search(r"^project\(\w+ VERSION ([\d.]+)", tree.read("CMakeLists.txt"), re.M)
    if not found:
        raise ValueError("CMakeLists.txt names no version")
    return found[1]


def description() -> Api:
    """The whole description of the interface."""
    known = Headers()
    rows = products.rows(tree.read("docs/products.md"))
    return {
        "schema": 1,
        "version": _version(),
        "calls": [_call(one, header, known, rows) for header in known.all for one in header.calls],
        "records": [_record(one, header, known) for header in known.all for one in header.structs],
        "callbacks": [_callback(one, known) for one in known.callbacks.values()],
        "errors": tables.error_words(),
        "error_text": tables.error_text(),
    }
