#!/usr/bin/env python3
"""Shows that scripts/check-abi sees a change: the file of the interface with one fact altered is not that of the library.

usage: changed_abi.py CHECK LIBRARY FOLDER
"""
import pathlib
import re
import subprocess
import sys

PROMISED = (pathlib.Path(__file__).resolve().parent / "tavlynapi.abi").read_text()
# What changes, where, into what.
CHANGES = [
    ("an argument", r"(<function-decl name='SetActDev'.*?type-id=')23bd8cb5", r"\g<1>149c6638"),
    ("a result", r"(<function-decl name='SetActDev'.*?<return type-id=')8f92235e", r"\g<1>3ff5601b"),
    ("the width of a word", r"(<var-decl name='iIDDispLen' type-id=')23bd8cb5", r"\g<1>3ff5601b"),
    ("the place of a word", r"(layout-offset-in-bits=')16('>\s*<var-decl name='iELDelim')", r"\g<1>32\2"),
    ("a name", r"(<elf-symbol name=')BeepNow", r"\1BeepLater"),
    ("a version", r"(<elf-symbol name='BeepNow' version='TAVLYNAPI_)7", r"\g<1>6"),
    ("the soname", r"(soname='libtavlynapi\.so\.)7", r"\g<1>6"),
]

check, library, folder = sys.argv[1:]
file = pathlib.Path(folder) / "changed.abi"
for what, old, new in CHANGES:
    changed, count = re.subn(old, new, PROMISED, count=1, flags=re.S)
    file.write_text(changed)
    compared = subprocess.run([check, library, file], capture_output=True, text=True)
    if count != 1 or compared.returncode != 1 or "not the interface" not in compared.stdout:
        sys.exit(f"not seen: {what}\n{compared.stdout}{compared.stderr}")
    print(f"seen: {what}")
