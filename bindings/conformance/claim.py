"""A runner that prints what is expected and does nothing: only what was not sent can tell."""
import json
import pathlib
import sys

cases = {case["case"]: case for case in json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))}
for number, step in enumerate(cases[sys.argv[2]]["steps"], 1):
    print(f"{number} {step.get('call') or step['do']}: {step['gives']}")
