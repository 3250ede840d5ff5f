"""docs/performance.md: the tables in it that programs write, each between two lines."""

import re
from pathlib import Path

PERFORMANCE = Path(__file__).resolve().parents[1] / "docs" / "performance.md"


def table(heads, rows):
    """The lines of a table; what stands in the first column is a text, the rest are figures."""
    line = "|---" + "|---:" * (len(heads) - 1) + "|"
    return [row_of(heads), line, *map(row_of, rows)]


def row_of(cells):
    return "| " + " | ".join(cells) + " |"


def replace(mark, lines, document=PERFORMANCE):
    """Puts the lines between <!-- mark --> and <!-- end -->."""
    text, places = re.subn(rf"(?<=<!-- {mark} -->\n).*?(?=<!-- end -->)",
                           lambda _: "\n" + "\n".join(lines) + "\n\n", document.read_text(), count=1, flags=re.S)
    if places == 0:
        raise SystemExit(f"{document} has no place for the table: <!-- {mark} --> and <!-- end -->, each in a line")
    document.write_text(text)
