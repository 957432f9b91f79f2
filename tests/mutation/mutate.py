#!/usr/bin/env python3
"""Changes the core's code in one small place at a time and looks whether its tests notice.

Each such change, a mutant, is compiled alone and linked into the test programs of a build that is there already; the
sources are not touched. A mutant is killed when a test fails, crashes or takes far too long, and survives otherwise. One
that does not compile, or compiles to the same object code as the original, is not counted.

The code's layout is relied on, as clang-format makes it: a binary operator has a blank on both sides, a statement begins a
line."""

import argparse
import concurrent.futures
import contextlib
import hashlib
import os
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

DISK_TESTS = "vantor_disk_tests"
TEXT_TESTS = "vantor_text_tests"
MODEL_TESTS = "vantor_model_tests"
LIBRARY_TESTS = "vantor_library_tests"
FILES_TESTS = "vantor_files_tests"
ANSI_TESTS = "vantor_ansi_table_tests"
DOCUMENT_TESTS = "vantor_document_tests"
CHANGES_TESTS = "vantor_changes_tests"
MERGE_TESTS = "vantor_merge_tests"
FAULTS_TESTS = "vantor_faults_tests"

CODEC_RUNS = [
    (MODEL_TESTS, "*Format*:*Code*:*Normalise*:*Double*:-*FormatName*"),
    (FILES_TESTS, "*StretchOf*:*Paged*:*SaveAsShown*:-*Seeds*"),
]

PAGED_RUNS = [
    (FILES_TESTS, "*Paged*:*PagePlaces*:-*Seeds*:PagedRecipe*"),
    (FILES_TESTS, "PagedRecipe*:*Seeds*:*SaveAsShown*:*Pieces*"),
    (FAULTS_TESTS, "*Faults*/*Paged*:*PagedSave*"),
]

DOCUMENT_RUNS = [(DOCUMENT_TESTS, "-Seeds*"), (DOCUMENT_TESTS, "Seeds*")]

PLAN_RUNS = [
    (FILES_TESTS, "*EditedSave*:FlatPutBack*:WordRuns*:StoredAfter*:*StretchOf*"),
    (CHANGES_TESTS, "SaveRecords*:*Unedited*"),
    (DOCUMENT_TESTS, "*SavePlan*"),
]

# File -> the runs that are to notice, the quickest and likeliest first: a test program and a filter of its tests.
TARGETS = {
    "disk/Replacement.cpp": [
        (DISK_TESTS, "*Replacement*:*Attribute*"),
        (FILES_TESTS, "RecipeReplacement*:*SameAsSaveAs*:Csv*"),
        (FAULTS_TESTS, "*SaveFaults*/*Table*:*SaveFaults*/*Replaced:*SaveFaults*/Export:MarkedTable*:*ReadOnly*/*Table*"),
        (FAULTS_TESTS, "*SaveFaults*/*New*:*SaveFaults*/*HardLink:*ReadFaults*/*HardLink:*ReadFaults*/*Replaced*:*FullDisk*"),
    ],
    "model/WordCodec.cpp": CODEC_RUNS,
    "model/LittleEndian.h": CODEC_RUNS,
    "document/EditHistory.cpp": DOCUMENT_RUNS,
    "document/EditStep.cpp": DOCUMENT_RUNS,
    "document/RecipeDocument.cpp": DOCUMENT_RUNS,
    "text/NumberText.cpp": [(TEXT_TESTS, "*"), (MODEL_TESTS, "*")],
    "model/BitText.cpp": [(MODEL_TESTS, "*Bits*")],
    "model/CellCheck.cpp": [(MODEL_TESTS, "*CellValue*")],
    "model/DataItem.cpp": [(MODEL_TESTS, "*Item*:*Bounds*:*Limits*:*Digits*"), (MODEL_TESTS, "*"), (LIBRARY_TESTS, "*")],
    "model/DataItemCheck.cpp": [(MODEL_TESTS, "*")],
    "library/FormatLibrary.cpp": [
        (LIBRARY_TESTS, "*"),
        (FAULTS_TESTS, "*Faults*/*Librar*:*ReadFaults*/Export*"),
    ],
    "library/LibraryOriginal.cpp": [
        (LIBRARY_TESTS, "*LibraryOriginal*:*OriginalAtRisk*"),
        (FAULTS_TESTS, "*Faults*/LibraryNotUnderstood*:*Loses*:*DoesNotTake*"),
    ],
    "model/ValueLimits.cpp": [(MODEL_TESTS, "*Limits*"), (FILES_TESTS, "RecipeRows*")],
    "files/CsvFields.cpp": [
        (FILES_TESTS, "Csv*:*Csv*:RecipeWalk*"),
        (ANSI_TESTS, "*"),
        (FILES_TESTS, "*Table*:*SaveAsShown*"),
        (FAULTS_TESTS, "*ReadFaults*/Table*"),
    ],
    "files/CellComparison.cpp": PLAN_RUNS,
    "files/EditedSave.cpp": PLAN_RUNS,
    "files/PagedFile.cpp": PAGED_RUNS,
    "files/PagedLayout.cpp": PAGED_RUNS,
    "files/PagedReader.cpp": PAGED_RUNS,
    "files/PutBack.cpp": [*PLAN_RUNS, (FAULTS_TESTS, "Document/SaveFaults*/PutBack*:Document/SaveFaults*/Cut*")],
    "files/RecipeRows.cpp": [
        (FILES_TESTS, "RecipeRows*:CellStates*:CellTexts*:BinaryRecipe*"),
        (FILES_TESTS, "*Csv*:*Paged*:RecipeWalk*:*SaveAsShown*:-*Seeds*"),
    ],
    "files/SavePlan.cpp": PLAN_RUNS,
    "files/StoredCells.cpp": PLAN_RUNS,
    "files/StretchCoding.cpp": [
        (FILES_TESTS, "*StretchOf*:BinaryRecipe*:PagedRecipe*"),
        (FILES_TESTS, "*SaveAsShown*:*Pieces*"),
    ],
    "files/WordRuns.cpp": [*PLAN_RUNS, (FAULTS_TESTS, "Document/SaveFaults*/Edited*:Document/SaveFaults*/Cut*")],
    "merge/MergeParams.cpp": [(MERGE_TESTS, "-*MergedFile*:*MergeFailure*"), (MERGE_TESTS, "*")],
}

# Header -> the source with which it is compiled.
INCLUDED_BY = {"model/LittleEndian.h": "model/WordCodec.cpp"}

# What names the program to the tests that start it.
STARTED = {"VANTOR_CLI": "vantor-cli", "VANTOR_RECIPE_SAVE": "vantor-recipe-save"}

MEMORY = Path("/dev/shm")
MOST_MEMORY = 4 << 30  # bytes of address space for a test program
WALL_SECONDS = 300  # the last resort, where a mutant sleeps

OTHER_OPERATORS = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "<<": [">>"], ">>": ["<<"],
    "&": ["|"], "|": ["&"], "^": ["&"], "+=": ["-=", "="], "-=": ["+=", "="], "*=": ["/="], "/=": ["*="], "|=": ["&="],
    "&=": ["|="],
}


@dataclass(frozen=True)
class Mutant:
    file: str
    start: int  # characters of the file
    end: int
    replacement: str
    kind: str
    line: int

    def applied(self, text):
        return text[: self.start] + self.replacement + text[self.end :]

    def described(self, text):
        original = " ".join(text[self.start : self.end].split())
        return f"{self.file}:{self.line}: {self.kind}: '{original}' -> '{self.replacement}'"

    def lot(self, text):
        """A number that is the same in every run, so that a sample is."""
        around = text[max(0, self.start - 40) : self.end + 40]
        return hashlib.sha256(f"{self.file} {around} {self.replacement}".encode()).hexdigest()


def blanked(text):
    """`text` with its comments, literals of text and preprocessor lines as blanks, all else in its place."""
    pattern = r'//[^\n]*|/\*.*?\*/|^[ \t]*#[^\n]*|static_assert\([^;]*;|(?:u8|u|U|L)?"(?:\\.|[^"\\\n])*"'
    return re.sub(pattern, lambda found: re.sub(r"[^\n]", " ", found[0]), text, flags=re.MULTILINE | re.DOTALL)


def closing(code, opening):
    """Where the bracket at `opening` is closed."""
    depth = 0
    for at in range(opening, len(code)):
        depth += {"(": 1, ")": -1}.get(code[at], 0)
        if depth == 0:
            return at
    raise ValueError("a bracket is left open")


def operators(code):
    for found in re.finditer(r"(?<=[ \n])(==|!=|<=|>=|&&|\|\||<<|>>|[-+*/|&]=|[-+*/%<>&|^])(?=[ \n])", code):
        for other in OTHER_OPERATORS[found[1]]:
            yield found.start(1), found.end(1), other, "operator"
    for found in re.finditer(r"\+\+|--", code):
        yield found.start(), found.end(), {"++": "--", "--": "++"}[found[0]], "step"


def constants(code):
    number = r"(?<![\w.'])(0[xX][\da-fA-F']+|\d[\d']*)[uUlLzZ]*(?![\w.'])"
    for found in re.finditer(number, code):
        yield found.start(), found.end(), f"({found[0]} + 1)", "constant"
        if int(found[1].replace("'", ""), 0) > 0:
            yield found.start(), found.end(), f"({found[0]} - 1)", "constant"
    for found in re.finditer(r"(?<![\w.])(\d+\.\d*(?:e-?\d+)?|0x[\da-fA-F.]+p\d+)(?!\w)", code):
        yield found.start(), found.end(), f"({found[0]} * 2)", "constant"
    for found in re.finditer(r"(?<![\w'])(u?)'(\\?.)'", code):
        yield found.start(), found.end(), f"char{'16_t' if found[1] else ''}({found[0]} + 1)", "character"
    for found in re.finditer(r"\b(true|false)\b", code):
        yield found.start(), found.end(), {"true": "false", "false": "true"}[found[0]], "truth"


def conditions(code):
    for found in re.finditer(r"\b(?:if|while) \(", code):
        opening = found.end() - 1
        end = closing(code, opening)
        condition = code[opening + 1 : end]
        if ";" not in condition and not re.match(r"\s*(const )?auto\b", condition):
            yield opening + 1, opening + 1, "!(", "condition", end
    for found in re.finditer(r"!(?=[\w(])", code):
        yield found.start(), found.end(), "", "negation"


def statements(code):
    whole = re.compile(r"[ \t]+([^\s;{}][^;{}]*(?:\{\}[^;{}]*)?);[ \t]*$", flags=re.MULTILINE)
    for line in re.finditer(r"^", code, flags=re.MULTILINE):
        found = whole.match(code, line.start())
        if not found:
            continue
        statement = found[1]
        before = code[: found.start()].rstrip()
        if not before or before[-1] not in ";{}):" and not before.endswith("else"):
            continue
        word = re.match(r"\w*", statement)[0]
        if word == "return":
            if statement not in ("return", "return {}"):
                yield found.start(1), found.end(1), "return {}", "return"
        elif word not in ("using", "static_assert", "case", "default", "for", "if", "while", "throw"):
            yield found.start(1), found.end(1), "", "statement"


def mutants_of(file, text):
    code = blanked(text)
    found = []
    for start, end, replacement, kind, *closes in [
        *operators(code), *constants(code), *conditions(code), *statements(code)
    ]:
        line = text.count("\n", 0, start) + 1
        if closes:  # a whole condition is turned round
            found.append(Mutant(file, start, closes[0], f"!({text[start:closes[0]]})", kind, line))
        else:
            found.append(Mutant(file, start, end, replacement, kind, line))
    return sorted(set(found), key=lambda mutant: (mutant.start, mutant.replacement))


def source_of(file):
    return INCLUDED_BY.get(file, file)


def with_source(file, text):
    """`text`, the content of `file`; that of a header in its place in the source that includes it."""
    if file == source_of(file):
        return text
    return (ROOT / source_of(file)).read_text(encoding="utf-8").replace(f'#include "{file}"\n', text)


@contextlib.contextmanager
def working_folder():
    """A folder for one run, in memory where that can be: no test waits for a disk then. Others may make files in it, since
    tests act as an ordinary user."""
    with tempfile.TemporaryDirectory(prefix="mutation-", dir=MEMORY if MEMORY.is_dir() else None) as folder:
        os.chmod(folder, 0o1777)
        yield Path(folder)


class Build:
    """A build folder of Ninja's, and the test programs in it. `scratch` is a folder for files of its own."""

    def __init__(self, folder, scratch):
        self.folder = folder
        self._scratch = scratch
        self._headers = None
        self._commands = {}

    def command(self, target):
        if target not in self._commands:
            made = subprocess.run(["ninja", "-C", self.folder, "-t", "commands", "-s", target],
                                  check=True, capture_output=True, text=True).stdout.splitlines()
            self._commands[target] = next(line for line in made if not line.startswith("ninja:"))
        return self._commands[target]

    def object_of(self, file):
        room, source = source_of(file).split("/")
        return f"{room}/CMakeFiles/vantor_{room}.dir/{source}.o"

    def compiler(self, file):
        """The command that compiles `file`, without the names of files and without warnings."""
        command = shlex.split(self.command(self.object_of(file)))
        command = command[next(i for i, word in enumerate(command) if word.endswith("++")) :]
        dropped = {"-c", "-o", "-MD", "-MF", "-MT", "-g", "-Werror", str(ROOT / source_of(file))}
        kept, words = [], iter(command)
        for word in words:
            if word in ("-o", "-MF", "-MT"):
                next(words)
            elif word not in dropped and not word.startswith("-W"):
                kept.append(word)
        return [*kept, "-g0", "-O1", "-w"]

    def compile_headers(self, file, text):
        """Compiles what `file` includes, once for all its mutants: it takes most of the compiler's time."""
        self._headers = self._scratch / (Path(file).stem + ".headers.h")
        included = re.findall(r"^#include .*\n", with_source(file, text), flags=re.MULTILINE)
        self._headers.write_text("".join(included), encoding="utf-8")
        subprocess.run([*self.compiler(file), "-x", "c++-header", self._headers, "-o", f"{self._headers}.gch"],
                       cwd=self.folder, check=True, capture_output=True)

    def compile(self, file, source, output):
        """The object code of `source`, a changed `file`; None when it does not compile."""
        try:
            done = subprocess.run([*self.compiler(file), "-include", self._headers, "-c", source, "-o", output],
                                  cwd=self.folder, capture_output=True, timeout=WALL_SECONDS)
        except subprocess.TimeoutExpired:  # a constant that is now worked out without end
            return None
        return output.read_bytes() if done.returncode == 0 else None

    def link(self, program, changed, output):
        """The test program with `changed` in the place of the library's own object. It comes first, so it is taken."""
        words = shlex.split(self.command(f"bin/{program}").split("&&")[1])
        words[words.index("-o") + 1] = str(output)
        first = next(i for i, word in enumerate(words) if word.endswith(".o"))
        words[first:first] = [str(changed), "-Wl,--strip-all", *(["-fuse-ld=lld"] if shutil.which("ld.lld") else [])]
        subprocess.run(words, cwd=self.folder, check=True, capture_output=True)


def changed_program(program, tests):
    """The program that holds the code under test: those of faults start another one."""
    if program != FAULTS_TESTS:
        return program
    return "vantor-recipe-save" if tests.startswith("Document/") else "vantor-cli"


def run_tests(build, program, tests, cpu_seconds, folder):
    """Whether the tests named pass within their time, with the program changed where there is one in `folder`."""
    environment = {"TMPDIR": str(folder)}
    environment |= {name: str(folder / started) for name, started in STARTED.items() if (folder / started).exists()}
    command = folder / program if (folder / program).exists() else build.folder / "bin" / program

    def limit():
        os.setsid()
        resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds + 1))
        resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    process = subprocess.Popen([command, f"--gtest_filter={tests}", "--gtest_brief=1", "--gtest_fail_fast"],
                               cwd=folder, env={**os.environ, **environment}, preexec_fn=limit,
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        return process.wait(WALL_SECONDS) == 0
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
        return False


def cpu_limits(build, file):
    """For each run of `file`'s: seconds of the processor, five times what the unchanged program takes."""
    limits = []
    for program, tests in TARGETS[file]:
        with working_folder() as folder:
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            if not run_tests(build, program, tests, 600, folder):
                sys.exit(f"{program} {tests} fails without any change")
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
        limits.append(int(5 * (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)) + 3)
    return limits


def verdict(build, mutant, text, original, limits):
    """"killed", "survived", "same code" or "does not compile"."""
    with working_folder() as folder:
        source = folder / Path(source_of(mutant.file)).name
        source.write_text(with_source(mutant.file, mutant.applied(text)), encoding="utf-8")
        changed = folder / "changed.o"
        code = build.compile(mutant.file, source, changed)
        if code is None:
            return "does not compile"
        if code == original:
            return "same code"
        linked = None
        for (program, tests), cpu_seconds in zip(TARGETS[mutant.file], limits):
            if changed_program(program, tests) != linked:
                linked = changed_program(program, tests)
                build.link(linked, changed, folder / linked)
            if not run_tests(build, program, tests, cpu_seconds, folder):
                return "killed"
    return "survived"


def original_code(build, file, text):
    with working_folder() as folder:
        source = folder / Path(source_of(file)).name
        source.write_text(with_source(file, text), encoding="utf-8")
        code = build.compile(file, source, folder / "changed.o")
    assert code is not None, f"{file} does not compile"
    return code


def mutate(build, file, args):
    text = (ROOT / file).read_text(encoding="utf-8")
    mutants = [mutant for mutant in mutants_of(file, text) if not args.lines or mutant.line in args.lines]
    if args.sample:
        mutants = sorted(sorted(mutants, key=lambda mutant: mutant.lot(text))[: args.sample],
                         key=lambda mutant: mutant.start)
    if args.list:
        for mutant in mutants:
            print(mutant.described(text))
        return {}
    build.compile_headers(file, text)
    original = original_code(build, file, text)
    limits = cpu_limits(build, file)
    counts = {"killed": 0, "survived": 0, "same code": 0, "does not compile": 0}
    lock = threading.Lock()

    def judge(mutant):
        result = verdict(build, mutant, text, original, limits)
        with lock:
            counts[result] += 1
            if result == "survived":
                print(mutant.described(text), flush=True)

    with concurrent.futures.ThreadPoolExecutor(args.jobs) as pool:
        list(pool.map(judge, mutants))
    print(f"{file}: {counts}", flush=True)
    return counts


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("files", nargs="*", metavar="FILE", help="of: " + ", ".join(TARGETS) + "; all when none is named")
    parser.add_argument("--build", type=Path, default=ROOT / "build/core", help="a build with the core's test programs")
    parser.add_argument("--sample", type=int, default=0, metavar="N", help="N mutants a file, the same in every run")
    parser.add_argument("--lines", type=int, nargs="+", metavar="LINE", help="those of these lines alone")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--list", action="store_true", help="name the mutants, run nothing")
    args = parser.parse_args()
    killed = survived = 0
    with working_folder() as scratch:
        build = Build(args.build.resolve(), scratch)
        for file in args.files or TARGETS:
            counts = mutate(build, file, args)
            killed += counts.get("killed", 0)
            survived += counts.get("survived", 0)
    if args.list:
        return 0
    share = 100 * killed / max(killed + survived, 1)
    print(f"{killed} of {killed + survived} mutants killed: {share:.1f} %")
    return 0 if share >= 95 else 1


if __name__ == "__main__":
    sys.exit(main())
