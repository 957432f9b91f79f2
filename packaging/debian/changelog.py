"""Prints CHANGELOG.md as a Debian changelog: changelog.py CHANGELOG.md MAINTAINER"""

import re
import sys
import textwrap
from datetime import datetime, timezone
from email.utils import format_datetime
from pathlib import Path


def releases(text):
    """(version, date, lines of the entries) of each release, newest first."""
    for section in re.split(r"^## ", text, flags=re.M)[1:]:
        heading, _, body = section.partition("\n")
        match = re.fullmatch(r"\[(\d+\.\d+\.\d+)\] - (\d{4}-\d{2}-\d{2})", heading)
        if match:
            entries = re.findall(r"^- (.*(?:\n  .*)*)", body, re.M)
            yield match[1], match[2], [re.sub(r"\s+", " ", entry) for entry in entries]


def debian(version, date, entries, maintainer):
    lines = [f"vantor ({version}) stable; urgency=medium", ""]
    for entry in entries:
        lines += textwrap.wrap(entry, 78, initial_indent="  * ", subsequent_indent="    ", break_on_hyphens=False)
    day = datetime.fromisoformat(date).replace(tzinfo=timezone.utc)
    return "\n".join([*lines, "", f" -- {maintainer}  {format_datetime(day)}", ""])


def main():
    text = Path(sys.argv[1]).read_text(encoding="utf-8")
    sys.stdout.reconfigure(encoding="utf-8")
    print("\n".join(debian(*release, sys.argv[2]) for release in releases(text)), end="")


if __name__ == "__main__":
    main()
