#!/usr/bin/env python3
"""Times whole runs of vantor-cli beside those of plain tools, in turn, on the same files in memory.

    bench/whole_runs.py build/bench/bin/vantor-cli [ROUNDS]

Prints medians in milliseconds, and their ratio.
"""

import json
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROWS = 1 << 20
COLUMNS = 16


def run(command):
    begin = time.perf_counter()
    subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    return 1000 * (time.perf_counter() - begin)


def make_files(folder, cli):
    item = {"description": "Value", "dataType": 0, "dataLength": 1, "codeType": 0, "integerDigits": 5,
            "isArray": 1, "arrayLength": COLUMNS, "minValue": -32768, "maxValue": 32767}
    library = {"startAddress": 0, "rowCount": ROWS, "formats": [{"name": "Row", "items": [item]}]}
    (folder / "formats.json").write_text(json.dumps(library))
    subprocess.run([cli, "formats", "import", folder / "formats.json", "--library", folder / "a.Dat"], check=True)
    words = bytearray()
    for i in range(ROWS * COLUMNS // 256):
        words += bytes((i + 3 * j) % 61 for j in range(512))
    (folder / "a.rcp").write_bytes(words)
    (folder / "same.rcp").write_bytes(words)
    (folder / "other.rcp").write_bytes(bytes((b + 1) % 64 if i % 2 == 0 else b for i, b in enumerate(words)))


def report(name, ours, plain, rounds):
    times = [(run(ours), sum(run(command) for command in plain)) for _ in range(rounds)]
    mine, theirs = (statistics.median(column) for column in zip(*times))
    print(f"{name}: {mine:.0f} ms against {theirs:.0f} ms, {mine / theirs:.2f} times")


def main():
    cli = str(pathlib.Path(sys.argv[1]).resolve())
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 7
    with tempfile.TemporaryDirectory(dir="/dev/shm") as name:
        folder = pathlib.Path(name)
        make_files(folder, cli)
        a, same, other = (str(folder / file) for file in ("a.rcp", "same.rcp", "other.rcp"))
        library = ["--library", str(folder / "a.Dat")]
        show = [[cli, "show", file, *library] for file in (a, other)]
        report("diff of equal files, beside cmp", [cli, "diff", a, same, *library], [["cmp", a, same]], rounds)
        report("diff of files that differ everywhere, beside two shows", [cli, "diff", a, other, *library], show, rounds)
        report("diff --json of them, beside two shows", [cli, "diff", "--json", a, other, *library], show, rounds)
        report("check, beside one show", [cli, "check", a, *library], show[:1], rounds)
        report("textconv, beside one show", [cli, "textconv", a, *library], show[:1], rounds)


if __name__ == "__main__":
    main()
