#!/usr/bin/env python3
"""gcov as gcovr calls it, less the branches of decisions that were never come to.

gcov says of none of them whether only an exception leads to it or out of it, so that gcovr takes for branches what the
compiler made to clean up. Nothing is hidden by leaving them out: one comes to such a decision by a branch that is
counted and was not taken, or it stands in a line that was not run."""

import re
import subprocess
import sys
from pathlib import Path

UNREACHED = re.compile(r"^branch +\d+ never executed.*\n", flags=re.MULTILINE)


def main():
    gcov = subprocess.run(["gcov", *sys.argv[1:]], stdout=subprocess.PIPE, text=True, check=False)
    for name in re.findall(r"^Creating '(.+)'$", gcov.stdout, flags=re.MULTILINE):
        file = Path(name)
        file.write_text(UNREACHED.sub("", file.read_text(encoding="utf-8")), encoding="utf-8")
    sys.stdout.write(gcov.stdout)
    return gcov.returncode


if __name__ == "__main__":
    sys.exit(main())
