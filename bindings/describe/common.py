"""What the writers of several languages need."""
import re
from typing import Iterator, Tuple

from model import Api, Field, Record


def first_sentence(text: str) -> str:
    """The first sentence of a comment: in other languages they are short."""
    return re.split(r"(?<=\.)\s", text, maxsplit=1)[0]


def named_words(api: Api, product: str) -> Iterator[Tuple[Record, Field]]:
    """The words of a product's records that programs reach by a name."""
    for record in api["records"]:
        for field in record["fields"]:
            if record.get("product") == product and "called" in field:
                yield record, field


def file_name(api: Api) -> str:
    """That of the library on Linux, as it is installed."""
    return "libtavlynapi.so." + api["version"].split(".", maxsplit=1)[0]
