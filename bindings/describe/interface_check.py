"""A C++ file that compiles only if the description and the real headers say the same.

It is compiled, not run: what the parser of the headers has misread, or what a header has and the description has not,
fails the build of the tests.
"""
from typing import Iterator, List

from model import Api, Argument, Field, Record, Value

HEAD = """// Made by bindings/describe/describe --check.
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "api.h"
#include "core/fields.h"
#include "core/sonar_fields.h"

using namespace tavlyn;

// What has only a largest value takes any below, but nobody means a negative one.
constexpr bool IsLimited(const auto& row, Bounds limits, int step) {
  const bool any = row.bounds.least == Bounds{}.least && row.bounds.Limit();
  return (any ? 0 : row.bounds.least) == limits.least && row.bounds.most == limits.most && row.step == step;
}

"""

# Every export is declared in a line that cmake/Exports.cmake finds by itself.
COUNT = """
constexpr int kExports = 0
#define EXPORT(name) +1
#include "exports.inc"
    ;
"""


def _c_type(value: Value) -> str:
    """By the name of its type in the description; only pointers as C has them."""
    kind = value["type"]
    return value["c"] if "*" in value["c"] or ":" in kind or kind == "void" else f"std::{kind}_t"


def _function(result: Value, arguments: List[Argument]) -> str:
    return f"{_c_type(result)}(TAVLYN_CALL*)({', '.join(_c_type(one) for one in arguments)})"


def _same(first: str, second: str) -> str:
    return f"static_assert(std::is_same_v<{first}, {second}>);\n"


def _limits(record: Record, field: Field) -> str:
    """What the library's own table says of a word."""
    name = record["name"][2:]
    row = f"FieldOf(field::{name}_{field['name']})"
    if record["product"] == "sonar":
        row = f"sonar::kFields[sonar::kFirstOf{name} + offsetof({record['name']}, {field['name']}) / 2]"
    limits = f"{{{field['least']}, {field['most']}}}" if "least" in field else "{}"
    return f"static_assert(IsLimited({row}, {limits}, {field.get('step', 1)}));\n"


def _record(record: Record) -> Iterator[str]:
    name = record["name"]
    yield f"static_assert(sizeof({name}) == {record['size']});\n"
    for field in record["fields"]:
        array = f"[{field['count']}]" if "count" in field else ""
        yield f"static_assert(offsetof({name}, {field['name']}) == {field['offset']});\n"
        yield _same(f"decltype({name}::{field['name']})", f"std::{field['type']}_t{array}")
        if "product" in record:
            yield _limits(record, field)


def text(api: Api) -> str:
    """The whole file."""
    parts = [HEAD]
    parts += [_same(one["name"], _function(one["result"], one["arguments"])) for one in api["callbacks"]]
    parts += [_same(f"decltype(&{one['name']})", _function(one["result"], one["arguments"])) for one in api["calls"]]
    for record in api["records"]:
        parts += _record(record)
    parts += [f"static_assert({one['name']} == {one['value']:#x});\n" for one in api["errors"]]
    parts += [COUNT, f"static_assert(kExports == {len(api['calls'])});\n"]
    return "".join(parts)
