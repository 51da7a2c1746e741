"""Where the files of the project are."""
import pathlib

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def read(path: str) -> str:
    """The text of a file of the project."""
    return (ROOT / path).read_text(encoding="utf-8")
