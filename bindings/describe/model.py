"""The types of the description: what api.json holds (schema 1)."""
from typing import Dict, List, TypedDict


class Value(TypedDict):
    """What a call takes or returns."""

    type: str  # of TYPES in headers.py, or record:NAME, record_out:NAME, callback:NAME
    c: str  # the same in C: "const uint8_t*"


class Result(Value, total=False):
    """The result of a call; without a text for a callback."""

    text: str
    room: int  # bytes that the result points to
    owned: bool  # the caller releases it with free
    count: str  # the call that tells how many records the result has
    unit: str


class _Argument(Value):
    name: str
    text: str


class Argument(_Argument, total=False):
    """An argument; of a number its unit and range, of a pointer what it points to."""

    unit: str
    least: int
    most: int
    step: int
    flag: bool  # only 0 or not matters
    ignored: bool
    nullable: bool
    room: int  # bytes of a buffer, where they are always the same
    length: str  # the argument that gives the bytes of the buffer


class _Call(TypedDict):
    name: str
    header: str
    group: str
    text: str
    result: Result
    arguments: List[Argument]
    errors: List[str]
    products: Dict[str, str]


class Call(_Call, total=False):
    """An export."""

    traffic: str


class _Field(TypedDict):
    name: str
    type: str
    offset: int
    text: str
    flag: bool
    unused: bool
    read_only: bool


class Field(_Field, total=False):
    """A word of a record; without a name for friendly layers where it is unused."""

    count: int  # of an array
    called: str
    unit: str
    least: int
    most: int
    step: int
    values: Dict[str, int]
    note: str


class _Record(TypedDict):
    name: str
    header: str
    text: str
    size: int
    fields: List[Field]


class Record(_Record, total=False):
    """A struct; those that are no configuration have neither product nor calls."""

    product: str
    get: str
    set: str


class Callback(TypedDict):
    """The type of a function that is passed to a call."""

    name: str
    text: str
    result: Result
    arguments: List[Argument]


class ErrorWord(TypedDict):
    """An error word: it is in a sum if (sum & mask) == found."""

    name: str
    value: int
    mask: int
    found: int
    words: str
    how: str
    when: str
    remedy: str


class Api(TypedDict):
    """The whole description."""

    schema: int
    version: str
    calls: List[Call]
    records: List[Record]
    callbacks: List[Callback]
    errors: List[ErrorWord]
    error_text: Dict[str, str]
