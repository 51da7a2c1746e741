"""What is generated: a row for each file, and for each marked table of a file that people write.

The first line of a whole file is begun(…) of renewal.py with the comment sign of its language.
"""
import json
from typing import Dict, Mapping

import cpp_fields
import dotnet_calls
import error_pages
import interface_check
import python_calls
import python_settings
from model import Api
from renewal import Writer


def _document(api: Api) -> str:
    return json.dumps(api, indent=1, ensure_ascii=False) + "\n"


# What a build makes, by the option of describe.
BUILT: Dict[str, Writer] = {
    "--api": _document,
    "--check": interface_check.text,
}

# Whole files of the tree, by their paths.
FILES: Dict[str, Writer] = {
    "bindings/conformance/cpp/fields.inc": cpp_fields.listed,
    "include/tavlyn/fields.hpp": cpp_fields.header,
    "bindings/python/src/tavlynapi/calls.py": python_calls.calls,
    "bindings/python/src/tavlynapi/error_words.py": python_settings.error_words,
    "bindings/python/src/tavlynapi/records.py": python_calls.records,
    "bindings/python/src/tavlynapi/settings.py": python_settings.settings,
    "bindings/python/src/tavlynapi/version.py": python_calls.version,
    **dotnet_calls.FILES,
}


def files(api: Api) -> Dict[str, Writer]:
    """All files, those too whose names come from the description."""
    return {**FILES, **dotnet_calls.calls(api)}


# Tables by their names, by the paths of the files that they are in.
TABLES: Dict[str, Mapping[str, Writer]] = {
    "docs/errors.md": {"sums": error_pages.sums, "words": error_pages.sections},
    "include/api/types.h": {"error words": error_pages.defines},
    "include/api/error_text.h": {"room": error_pages.room, "texts": error_pages.texts},
}
