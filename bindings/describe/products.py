"""The tables of docs/products.md: what each call does with each product."""
import re
from typing import Collection, Dict, Optional

# The columns after that of the calls.
PRODUCTS = ("reader", "magstripe", "sonar")

ROW = re.compile(r"(?m)^\| (?=`)(.*?) \|")
NAME = re.compile(r"`([\w*]+)`")


def row_of(call: str, names: Collection[str]) -> Optional[str]:
    """The name in the tables that means the call: its own, or the longest that ends in * and fits."""
    if call in names:
        return call
    fitting = [name for name in names if name.endswith("*") and call.startswith(name[:-1])]
    return max(fitting, key=len) if fitting else None


def rows(page: str) -> Dict[str, Dict[str, str]]:
    """What the page says of each name in its tables, by product."""
    found: Dict[str, Dict[str, str]] = {}
    for line in page.split("\n"):
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if ROW.match(line):
            found.update({name: dict(zip(PRODUCTS, cells[1:])) for name in NAME.findall(cells[0])})
    return found
