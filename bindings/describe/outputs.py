"""What is generated into the tree: a row for each file, and for each marked table of a file that people write.

The first line of a whole file is begun(…) with the comment sign of its language.
"""
from typing import Dict, Mapping

import python_calls
import python_settings
from renewal import Writer

# Whole files, by their paths.
FILES: Dict[str, Writer] = {
    "bindings/python/src/tavlynapi/calls.py": python_calls.calls,
    "bindings/python/src/tavlynapi/error_words.py": python_settings.error_words,
    "bindings/python/src/tavlynapi/records.py": python_calls.records,
    "bindings/python/src/tavlynapi/settings.py": python_settings.settings,
    "bindings/python/src/tavlynapi/version.py": python_calls.version,
}

# Tables by their names, by the paths of the files that they are in.
TABLES: Dict[str, Mapping[str, Writer]] = {
}
