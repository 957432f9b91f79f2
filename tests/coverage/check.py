#!/usr/bin/env python3
"""Judges how much of the code a run of the tests took, from gcovr's JSON.

The core's lines and branches are to be taken all; one that cannot be stands in docs/testing.md, in the table under "Branches
that no test takes", with the file, a piece of its line, how many of the branches there are not taken, and the reason. A
piece may begin in the line before. Of the window's lines a share is to be run."""

import json
import re
import sys
from collections import defaultdict
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENT = ROOT / "docs/testing.md"
HEADING = "### Branches that no test takes"
ROW = r"^\| `([^`]+)` \|([^|]+)\| *(\d+) *\|"

CORE = ["disk", "text", "model", "files", "library", "changes", "document", "merge"]
WINDOW = {"controls", "views", "app"}
LEAST_WINDOW_LINES = 85  # per cent


class Counts:
    """What was taken of how much."""

    def __init__(self):
        self.taken = self.all = 0

    def add(self, taken):
        self.all += 1
        self.taken += bool(taken)

    def share(self):
        return 100 * self.taken / self.all if self.all else 100.0

    def __str__(self):
        return f"{self.taken} of {self.all} ({self.share():.1f} %)"


class Excuse:
    """A row of the document's table."""

    def __init__(self, file, pieces, branches):
        self.file, self.pieces, self.branches = file, pieces, branches
        self.used = dict.fromkeys(pieces, False)
        self.met = 0

    def covers(self, file, source, index):
        """Whether the line is one of the row's."""
        if file != self.file:
            return False
        line = source[index].strip()
        with_line_before = f"{source[index - 1].strip()} {line}"
        fitting = [piece for piece in self.pieces if piece in line or with_line_before.endswith(piece)]
        self.used.update(dict.fromkeys(fitting, True))
        return bool(fitting)

    def faults(self):
        """What is not as the row says."""
        if self.met != self.branches:
            yield f"{self.file}: {', '.join(self.pieces)}: {self.met} branches not taken, not {self.branches}"
        for piece in (piece for piece, used in self.used.items() if not used):
            yield f"{self.file}: {piece}: taken or gone"


def room(file):
    """The room of the core, "window" or nothing, for a path in the checkout."""
    folder = file.split("/")[0]
    if folder in WINDOW:
        return "window"
    return folder if folder in CORE else None


def stated():
    """The rows of the document's table."""
    text = DOCUMENT.read_text(encoding="utf-8").split(HEADING)[1].split("\n## ")[0].split("\n### ")[0]
    return [
        Excuse(file, re.findall(r"`([^`]+)`", pieces), int(branches))
        for file, pieces, branches in re.findall(ROW, text, flags=re.MULTILINE)
    ]


def main():
    lines, branches = defaultdict(Counts), defaultdict(Counts)
    excuses = stated()
    missing = []
    for file in json.loads(Path(sys.argv[1]).read_text(encoding="utf-8"))["files"]:
        name = file["file"]
        if room(name) is None:
            continue
        source = (ROOT / name).read_text(encoding="utf-8").splitlines()
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            lines[room(name)].add(line["count"])
            taken = [branch["count"] for branch in line["branches"] if not branch.get("throw")]
            for count in taken:
                branches[room(name)].add(count)
            if room(name) in CORE and 0 in [line["count"], *taken]:
                index = line["line_number"] - 1
                fitting = [excuse for excuse in excuses if excuse.covers(name, source, index)]
                for excuse in fitting:
                    excuse.met += taken.count(0)
                if not fitting:
                    missing.append(f"{name}:{line['line_number']}: {source[index].strip()}")

    for part in [*CORE, "window"]:
        print(f"{part:6}  lines {lines[part]}, branches {branches[part]}")
    print(f"{sum(excuse.branches for excuse in excuses)} branches of the core are not taken for a reason that is stated.")
    for place in missing:
        print(f"Not taken, no reason stated: {place}")
    faults = [fault for excuse in excuses for fault in excuse.faults()]
    for fault in faults:
        print(f"Not as stated: {fault}")
    return 1 if missing or faults or lines["window"].share() < LEAST_WINDOW_LINES else 0


if __name__ == "__main__":
    sys.exit(main())
