"""What the generator reads in headers and tables, and how it renews."""
import json
import pathlib
import sys
import tempfile
import unittest
from typing import Dict, Tuple, Union
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
# pylint: disable=wrong-import-position
import api
import arguments
import error_pages
import headers
import renewal
import tables
import tree

HEADER = """/** @file
 * What there is to read, and more. */

/** Receives a line.
 * @param line the line. */
typedef void(TAVLYN_CALL* line_function)(const char* line);

/** How long. */
typedef struct tsLong {
  int16_t iTime;   /**< Milliseconds: at most 1020,
                      steps of 4. */
  uint8_t Bits[3]; /**< The bits. */
} tsLong;

/** Does one thing * another.
 *
 * Traffic for a reader: 8A.
 * @param a how long,
 *   0 to 4.
 * @param record the words.
 * @return 1, or 0 with TAVLYN_ERR_COMMAND. */
TAVLYN_API uint32_t TAVLYN_CALL DoIt(uint8_t a,
                                     const tsLong* record);
"""

# An argument's text, its type, and what is found in it.
ARGUMENTS: Tuple[Tuple[str, str, Dict[str, Union[int, str]]], ...] = (
    ("position of the byte, 0 to 31.", "int16", {"least": 0, "most": 31}),
    ("-1 to 2: -1 all, 0 USB HID, 1 serial ports, 2 Ethernet.", "int16", {"least": -1, "most": 2}),
    ("2 for a good read, 3 for a bad one.", "uint16", {"least": 2, "most": 3}),
    ("0 or 1: 1 for the row's.", "int32", {"least": 0, "most": 1}),
    ("their number, at most 512. Only its low byte is sent.", "uint32", {"least": 0, "most": 512}),
    ("0 to GetDevCnt() - 1.", "int16", {"least": 0}),
    ("code of the type. Bits 4 to 7 do not count.", "int16", {}),
    ("for this time: at most 1020 milliseconds, steps of 4.", "int16",
     {"least": 0, "most": 1020, "step": 4, "unit": "ms"}),
    ("0 for off, any other value for on.", "uint16", {"flag": True}),
    ("0 for off, 1 for on.", "uint32", {"flag": True}),
    ("is ignored.", "uint32", {"ignored": True}),
    ("room for 16 bytes, or null.", "bytes_out", {"room": 16, "nullable": True}),
    ("receives five words: distance in inches.", "uint16_out", {"room": 10}),
    ("receives the ID; null counts as no room.", "bytes_out", {"nullable": True}),
)

MACROS = """// ROW(not, one)
ROW(first, .bounds = {1, 2, 3}, "a, \\"b\\" "
    "(c")
ROW(second)
"""


class Reading(unittest.TestCase):
    """Headers, comments and tables."""

    def test_header(self) -> None:
        """Calls, callbacks and structs, whatever lines they are on."""
        header = headers.parse("some.h", HEADER)
        self.assertEqual(header.title, "What there is to read")
        self.assertEqual([one.name for one in header.callbacks], ["line_function"])
        self.assertEqual(header.structs[0].members, [
            headers.Member("iTime", "int16_t", 0, "Milliseconds: at most 1020, steps of 4."),
            headers.Member("Bits", "uint8_t", 3, "The bits.")])
        call = header.calls[0]
        self.assertEqual((call.result, call.arguments), ("uint32_t", [("uint8_t", "a"), ("const tsLong*", "record")]))
        self.assertEqual(call.comment, headers.Comment(
            "Does one thing * another.", "Traffic for a reader: 8A.",
            {"a": "how long, 0 to 4.", "record": "the words."}, "1, or 0 with TAVLYN_ERR_COMMAND."))

    def test_arguments(self) -> None:
        """Ranges, units and rooms in comments."""
        for text, kind, found in ARGUMENTS:
            with self.subTest(text):
                argument = arguments.argument_of("a", "c", kind, text)
                self.assertEqual(argument, {"name": "a", "type": kind, "c": "c", "text": text, **found})

    def test_unknown_type(self) -> None:
        """What the description has no name for is not passed over."""
        with self.assertRaises(ValueError):
            headers.type_of("double", {}, {})
        with self.assertRaises(ValueError):
            headers.parse("some.h", HEADER.replace("uint8_t Bits[3]", "const char* Bits"))

    def test_rows(self) -> None:
        """Arguments of macros: in braces, in several pieces, with what would end them in a text."""
        with mock.patch.object(tree, "read", return_value=MACROS):
            rows = list(tables.rows("some.inc", "ROW"))
        self.assertEqual([row[0] for row in rows], ["first", "second"])
        self.assertEqual(rows[0][1], ".bounds = {1, 2, 3}")


# Numbers that have neither a range nor another way to say what they may be.
WITHOUT_RANGE = {
    "SetBaudRate.baud", "IsCardTypeInList.type", "sorbaneSetActiveID.term", "sorbaneGetTrackFieldOffset.field",
    "sorbaneGetTrackFieldOffset.offset", "sorbaneGetTrackFieldOffset.term",
}
ENDINGS = {"ms": "_ms", "s": "_seconds", "inches": "_inches"}


class Described(unittest.TestCase):
    """The real headers and tables."""

    described = api.description()

    def test_every_number_has_its_range(self) -> None:
        """Of an argument the comment says what it may be; words of records have theirs in tables."""
        without = {f"{call['name']}.{one['name']}" for call in self.described["calls"] for one in call["arguments"]
                   if "int" in one["type"] and "out" not in one["type"] and one["name"] != "length"
                   and not {"least", "flag", "ignored"} & set(one) and call["header"] != "accessors.h"}
        self.assertEqual(without, WITHOUT_RANGE)

    def test_names_of_words(self) -> None:
        """One for each word that is used, its own among those of a product, and it says the unit."""
        for product in ("reader", "sonar"):
            records = [one for one in self.described["records"] if one.get("product") == product]
            used = [field for record in records for field in record["fields"] if not field["unused"]]
            called = [field["called"] for field in used]
            self.assertEqual(len(set(called)), len(called))
            for field in used:
                self.assertRegex(field["called"], r"^[a-z][a-z0-9_]*$")
                ending = ENDINGS.get(field.get("unit", ""), "")
                self.assertTrue(field["called"].endswith(ending), field["called"])


class ErrorWords(unittest.TestCase):
    """What is written of error words."""

    def test_sums(self) -> None:
        """The sums of the page are among those that all bindings say in words."""
        scenario = json.loads(tree.read("bindings/conformance/scenario.json"))
        steps = {step.get("word"): step["gives"] for case in scenario for step in case["steps"]
                 if step.get("do") == "error_text"}
        described = api.description()
        for word in error_pages.SUMS:
            self.assertEqual(steps.get(f"0x{word:X}"), error_pages.text_of(described, word))


class Renewal(unittest.TestCase):
    """Generated files and tables."""

    def test_stale(self) -> None:
        """A table that is not as it should be, and a file that is not there; written, they are current."""
        page = "Head\n<!-- table numbers -->\n\n1\n\n<!-- end -->\nTail\n"
        described = mock.sentinel.api
        files, marked = {"made.txt": lambda _: "made\n"}, {"page.md": {"numbers": lambda _: "2\n"}}
        with tempfile.TemporaryDirectory() as folder, mock.patch.object(tree, "ROOT", pathlib.Path(folder)):
            tree.ROOT.joinpath("page.md").write_text(page, encoding="utf-8")
            stale = renewal.stale(files, marked, described)
            self.assertEqual(stale, {"made.txt": "made\n", "page.md": page.replace("1", "2")})
            renewal.write(stale)
            self.assertEqual(renewal.stale(files, marked, described), {})
            with self.assertRaises(ValueError):
                renewal.stale({}, {"page.md": {}}, described)


if __name__ == "__main__":
    unittest.main()
