"""The C++ accessors of the words of records, and the list of them for the conformance runner."""
import textwrap
from typing import Dict, Iterator, List

from common import named_words
from model import Api, Field, Record
from renewal import begun

# The classes of the header.
CLASSES: Dict[str, str] = {"reader": "A card reader's configuration, one of several of a plus reader.",
                           "sonar": "A sonar sensor's parameters."}
FITS = {"int16": (-32768, 32767), "uint16": (0, 65535)}
SPOKEN_UNITS = ("ms", "s", "inches", "bits")
WIDTH = 110


def _comment(field: Field) -> List[str]:
    return textwrap.wrap(field["text"], WIDTH, initial_indent="  /// ", subsequent_indent="  /// ")


def _function(begin: str, statement: str) -> str:
    """A member function as clang-format writes it."""
    line = f"  {begin} {{ {statement} }}"
    if len(line) <= WIDTH:
        return line
    if len(statement) + 4 > WIDTH:  # what is in braces goes below the other arguments
        arguments = statement.index("(") + 5
        statement = statement.replace(" {", "\n" + arguments * " " + "{")
    return f"  {begin} {{\n    {statement}\n  }}"


def _setting(field: Field) -> str:
    """What a word is called and may hold; a number without a range is what fits."""
    least, most = (0, 1) if field["flag"] else (field.get("least"), field.get("most"))
    if least is None or most is None:
        least, most = FITS[field["type"]]
    unit = f' {field["unit"]}' if field.get("unit") in SPOKEN_UNITS else ""
    return f'{{"{field["called"]}", {least}, {most}, "{unit}"}}'


def _accessors(record: Record, field: Field) -> Iterator[str]:
    member, called = f"&{record['name']}::{field['name']}", field["called"]
    kind, test = ("bool", " != 0") if field["flag"] else ("int", "")
    yield "\n".join(_comment(field))
    yield _function(f"{kind} {called}() const", f"return words_.get({record['get']}, {member}){test};")
    if not field["read_only"]:
        begin = f"words_.set({record['get']}, {record['set']}, {member}, value,"
        yield _function(f"void {called}({kind} value)", f"{begin} {_setting(field)});")


def _class(api: Api, product: str, text: str) -> Iterator[str]:
    yield from ("", f"/// {text}", f"class {product}_fields {{", " public:",
                f"  explicit {product}_fields(const detail::record_words& words) : words_(words) {{}}")
    for record, field in named_words(api, product):
        yield from _accessors(record, field)
    yield from ("", " private:", "  detail::record_words words_;", "};")


def header(api: Api) -> str:
    """include/tavlyn/fields.hpp"""
    lines = [begun("//"), "/// @file",
             "/// The words of configurations, each by the name that it has in every language.",
             "#ifndef TAVLYN_FIELDS_HPP", "#define TAVLYN_FIELDS_HPP", "", "#include \"../api.h\"",
             "#include \"records.hpp\"", "", "namespace tavlyn {"]
    for product, text in CLASSES.items():
        lines += _class(api, product, text)
    return "\n".join([*lines, "", "}  // namespace tavlyn", "", "#endif", ""])


def listed(api: Api) -> str:
    """bindings/conformance/cpp/fields.inc: FIELD or READ_ONLY_FIELD(product, name) for each word."""
    lines = [begun("//")]
    for product in CLASSES:
        lines += [f"{'READ_ONLY_' if field['read_only'] else ''}FIELD({product}, {field['called']})"
                  for _, field in named_words(api, product)]
    return "\n".join([*lines, ""])
