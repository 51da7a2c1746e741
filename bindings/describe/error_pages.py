"""The error words in the public headers and in docs/errors.md."""
from typing import Dict, List, Tuple

from model import Api

# Sums that a program may meet, for the page.
SUMS = (0x20202, 0x40202, 0x1000202, 0x201012, 0x30000203, 0x81000202)


def found_texts(api: Api) -> List[Tuple[int, int, str]]:
    """Mask, what is found under it, and words; of the error words that are found alike only one."""
    return list(dict.fromkeys((one["mask"], one["found"], one["words"]) for one in api["errors"]))


def text_of(api: Api, word: int) -> str:
    """What an error word says, which may be a sum."""
    if word == 0:
        return api["error_text"]["none"]
    said = [words for mask, found, words in found_texts(api) if word & mask == found]
    return "; ".join(said) or api["error_text"]["unknown"]


def room_for_texts(api: Api) -> int:
    """Bytes that hold the text of any word: no two texts that are found under one mask stand together."""
    longest: Dict[int, int] = {}
    for mask, _, words in found_texts(api):
        longest[mask] = max(longest.get(mask, 0), len(words))
    return max(sum(longest.values()) + 2 * len(longest), *map(len, api["error_text"].values())) + 1


def _hex(word: int) -> str:
    return f"0x{word:X}"


def _table(heads: List[str], rows: List[List[str]]) -> str:
    return "".join(f"| {' | '.join(cells)} |\n" for cells in [heads, ["---"] * len(heads), *rows])


def defines(api: Api) -> str:
    """The macros of api/types.h."""
    return "".join(f"#define {one['name']:<28} {_hex(one['value']) + 'u':<12} /**< {one['how']}: {one['when']} */\n"
                   for one in api["errors"])


def texts(api: Api) -> str:
    """The rows of api/error_text.h."""
    rows = [(0xFFFFFFFF, 0, api["error_text"]["none"]), *found_texts(api), (0, 0, api["error_text"]["unknown"])]
    return "".join(f'      {{{_hex(mask)}u, {_hex(found)}u, "{words}"}},\n' for mask, found, words in rows)


def room(api: Api) -> str:
    """The size of a buffer for any text, in steps of 64."""
    size = -(-room_for_texts(api) // 64) * 64
    return f"#define TAVLYN_ERROR_TEXT_SIZE {size} /**< Room for the text of any word, in bytes. */\n"


def sums(api: Api) -> str:
    """Sums in words."""
    return _table(["Word", "In words"], [[f"`{_hex(word)}`", text_of(api, word)] for word in SUMS])


def sections(api: Api) -> str:
    """All words, and a section for each."""
    rows = [[f"`{_hex(one['value'])}`", f"[{one['name']}](#{one['name'].lower()})", one["words"]]
            for one in api["errors"]]
    parts = [f"\n### {one['name']}\n\n`{_hex(one['value'])}`. {one['how']}: {one['when']}\n\n{one['remedy']}\n"
             for one in api["errors"]]
    return _table(["Word", "Name", "In words"], rows) + "".join(parts)
