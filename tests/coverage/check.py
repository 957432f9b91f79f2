#!/usr/bin/env python3
"""Judges what a run of the tests took of the code, from gcovr's JSON.

The core's branches are to be taken all; one that cannot be stands in docs/testing.md, in the table under "Branches that no
test takes", with the file, a piece of its line and the reason. Of the window's lines a share is to be run."""

import json
import re
import sys
from collections import defaultdict
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENT = ROOT / "docs/testing.md"
HEADING = "### Branches that no test takes"

CORE = {"model", "files", "disk", "merge"}
WINDOW = {"controls", "views", "app"}
MERGE_DIALOGS = {"MergeParamDlg", "ReadOnlyField", "SavePathDlg"}
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


def part(file):
    """"core", "window" or nothing, for a path in the checkout."""
    room, stem = file.split("/")[0], Path(file).stem
    if room in WINDOW or (room == "merge" and stem in MERGE_DIALOGS):
        return "window"
    return "core" if room in CORE else None


def stated():
    """The rows of the document's table as (file, piece of a line)."""
    text = DOCUMENT.read_text(encoding="utf-8").split(HEADING)[1].split("\n## ")[0].split("\n### ")[0]
    for row in re.findall(r"^\| `([^`]+)` \|([^|]+)\|", text, flags=re.MULTILINE):
        for piece in re.findall(r"`([^`]+)`", row[1]):
            yield row[0], piece


def main():
    lines, branches = defaultdict(Counts), defaultdict(Counts)
    excuses = dict.fromkeys(stated(), False)
    missing = []
    for file in json.loads(Path(sys.argv[1]).read_text(encoding="utf-8"))["files"]:
        name = file["file"]
        if part(name) is None:
            continue
        source = (ROOT / name).read_text(encoding="utf-8").splitlines()
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            lines[part(name)].add(line["count"])
            taken = [branch["count"] for branch in line["branches"] if not branch.get("throw")]
            for count in taken:
                branches[part(name)].add(count)
            if part(name) == "core" and 0 in [line["count"], *taken]:
                text = source[line["line_number"] - 1]
                fitting = [excuse for excuse in excuses if excuse[0] == name and excuse[1] in text]
                for excuse in fitting:
                    excuses[excuse] = True
                if not fitting:
                    missing.append(f"{name}:{line['line_number']}: {text.strip()}")

    print("Core (model/, files/, merge/ without its dialogs)")
    print(f"  lines    {lines['core']}\n  branches {branches['core']}")
    if lines["window"].all:
        print("Window (controls/, views/, app/ and the merge dialogs)")
        print(f"  lines    {lines['window']}\n  branches {branches['window']}")
    print(f"{sum(excuses.values())} lines of the core hold a branch not taken for a reason that is stated.")
    for place in missing:
        print(f"Not taken, no reason stated: {place}")
    for file, piece in (excuse for excuse, used in excuses.items() if not used):
        print(f"Stated, yet taken or gone: {file}: {piece}")
    return 1 if missing or lines["window"].share() < LEAST_WINDOW_LINES else 0


if __name__ == "__main__":
    sys.exit(main())
