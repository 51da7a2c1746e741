"""Generated files, and marked tables in files that people write.

A table stands between two lines, in Markdown with an empty line after the first and before the second:

    <!-- table NAME -->     in C   /* table NAME */
    <!-- end -->                   /* end */
"""
from typing import Callable, Dict, Mapping, NamedTuple

import tree
from model import Api

Writer = Callable[[Api], str]


class Marks(NamedTuple):
    """The lines around a table."""

    begin: str
    begin_end: str
    end: str
    gap: str


MARKDOWN = Marks("<!-- table ", " -->", "<!-- end -->", "\n")
C = Marks("/* table ", " */", "/* end */", "")


def begun(sign: str) -> str:
    """The first line of a whole file, as a comment that begins with the sign."""
    return f"{sign} Made by bindings/describe/describe; renew it with its option --renew."


def _with_tables(path: str, tables: Mapping[str, Writer], api: Api) -> str:
    """The file with all its tables made again."""
    marks = MARKDOWN if path.endswith(".md") else C
    lines = []
    inside = False
    for line in tree.read(path).splitlines(keepends=True):
        bare = line.rstrip("\n")
        inside = inside and bare != marks.end
        if not inside:
            lines.append(line)
        if bare.startswith(marks.begin) and bare.endswith(marks.begin_end):
            name = bare[len(marks.begin):len(bare) - len(marks.begin_end)]
            if name not in tables:
                raise ValueError(f"{path}: no such table: {name}")
            lines.append(marks.gap + tables[name](api) + marks.gap)
            inside = True
    return "".join(lines)


def stale(files: Mapping[str, Writer], tables: Mapping[str, Mapping[str, Writer]], api: Api) -> Dict[str, str]:
    """The paths that are not as they should be, with their texts."""
    texts = {path: writer(api) for path, writer in files.items()}
    texts.update({path: _with_tables(path, writers, api) for path, writers in tables.items()})
    return {path: text for path, text in texts.items() if not (tree.ROOT / path).exists() or tree.read(path) != text}


def write(texts: Mapping[str, str]) -> None:
    """Writes files of the project."""
    for path, text in texts.items():
        (tree.ROOT / path).parent.mkdir(parents=True, exist_ok=True)
        (tree.ROOT / path).write_text(text, encoding="utf-8")
