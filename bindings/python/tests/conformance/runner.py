#!/usr/bin/env python3
"""Takes the steps of a case of the conformance scenario; bindings/conformance/README.md says what is printed.

usage: runner.py SCENARIO CASE
"""
import json
import pathlib
import sys
from typing import Any, Callable, Dict

import low_level
from friendly import Friendly

Step = Dict[str, Any]


def taken(step: Step, friendly: Friendly) -> str:
    """Takes a step; returns what it gave."""
    if "call" in step:
        return low_level.make_call(step["call"], step["args"])
    operation: Callable[..., str] = getattr(friendly, step["do"])
    words = {name: value for name, value in step.items() if name not in ("do", "gives")}
    return friendly.tried(lambda: operation(**words))


def main() -> None:
    """Runs the program."""
    scenario, name = sys.argv[1:]
    cases = json.loads(pathlib.Path(scenario).read_text(encoding="utf-8"))
    steps = next(case["steps"] for case in cases if case["case"] == name)
    friendly = Friendly()
    for number, step in enumerate(steps, 1):
        print(f"{number} {step.get('call') or step['do']}: {taken(step, friendly)}", flush=True)
    friendly.close()


if __name__ == "__main__":
    main()
