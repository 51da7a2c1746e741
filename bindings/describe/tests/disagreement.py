#!/usr/bin/env python3
"""Shows that the interface check sees a change: with one fact of the headers or tables altered it does not compile.

usage: disagreement.py CHECK EXPORTS -- COMPILER OPTION...

CHECK is what describe --check has written, EXPORTS the folder of exports.inc.
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
# What changes, in which file, from what into what.
CHANGES = (
    ("nothing", "include/api/connect.h", "SetIpPort", "SetIpPort"),
    ("the width of an argument", "include/api/connect.h", "SetDevTypeSrch(int16_t", "SetDevTypeSrch(int32_t"),
    ("the sign of a result", "include/api/identity.h", "int16_t TAVLYN_CALL GetDevCnt",
     "uint16_t TAVLYN_CALL GetDevCnt"),
    ("what a pointer points to", "include/api/identity.h", "GetDevName(char*", "GetDevName(uint8_t*"),
    ("an argument of a callback", "include/api/connect.h", "uint64_t length)", "uint32_t length)"),
    ("the place of a word", "include/api/extensions.h", "uint32_t RecType;", "uint32_t before, RecType;"),
    ("the width of a word", "include/api/extensions.h", "CardBits[32]", "CardBits[33]"),
    ("an error word", "include/api/types.h", "0x60000000u", "0x61000000u"),
    ("the bounds of a word", "src/core/fields.inc", "UpTo(25)", "UpTo(26)"),
    ("the step of a word", "src/core/sonar_fields.inc", ".step = 64", ".step = 32"),
    ("an export", "exports/exports.inc", "EXPORT(BeepNow)", "EXPORT(BeepNow) EXPORT(BeepLater)"),
)


def main() -> int:
    """Compiles the check once for each change."""
    check, exports, _, *compiler = sys.argv[1:]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for part in ("include", "src"):
            shutil.copytree(ROOT / part, folder / part)
        shutil.copytree(exports, folder / "exports")
        options = [f"-I{folder / part}" for part in ("include", "src", "exports")]
        for what, path, old, new in CHANGES:
            file = folder / path
            text = file.read_text(encoding="utf-8")
            file.write_text(text.replace(old, new), encoding="utf-8")
            compiled = subprocess.run([*compiler, *options, check], capture_output=True, text=True, check=False)
            file.write_text(text, encoding="utf-8")
            seen = compiled.returncode != 0 and re.search(r"static[ _]assert", compiled.stderr) is not None
            if seen == (what == "nothing") or old not in text:
                print(f"{'seen' if seen else 'not seen'}: {what}", compiled.stderr, sep="\n")
                return 1
            print(f"{'seen' if seen else 'not seen'}: {what}")
    return 0


sys.exit(main())
