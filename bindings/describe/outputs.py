"""What is generated into the tree: a row for each file, and for each marked table of a file that people write.

The first line of a whole file is begun(…) with the comment sign of its language.
"""
from typing import Dict, Mapping

from renewal import Writer

# Whole files, by their paths.
FILES: Dict[str, Writer] = {
}

# Tables by their names, by the paths of the files that they are in.
TABLES: Dict[str, Mapping[str, Writer]] = {
}
