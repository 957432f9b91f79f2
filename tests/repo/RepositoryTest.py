"""What holds for the checkout as a whole. CTest runs each method as a test of its own."""

import os
import re
import stat
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

CORE = {"disk", "text", "model", "files", "library", "changes", "recovery", "sheet", "merge", "document", "cli"}
ROOMS = {  # room -> the rooms it may include from
    "disk": {"disk"},
    "text": {"text"},
    "model": {"model", "text"},
    "files": {"files", "model", "text", "disk"},
    "library": {"library", "model", "text", "disk"},
    "changes": {"changes", "files", "library", "model", "text", "disk"},
    "recovery": {"recovery", "changes", "files", "library", "model", "text", "disk"},
    "sheet": {"sheet", "changes", "files", "library", "model", "text", "disk"},
    "merge": {"merge", "files", "model", "text", "disk"},
    "document": {"document", "sheet", "recovery", "changes", "files", "library", "model", "text", "disk"},
    "cli": {"cli", "document", "sheet", "recovery", "changes", "merge", "files", "library", "model", "text", "disk"},
    "print": {"print", "sheet", "files"},
    "sheetcli": {"sheetcli", "cli", "print", "disk"},
    "controls": {"controls"},
    "views": {"views", "controls", "print", "document", "sheet", "recovery", "changes", "merge", "files", "library", "model", "text", "disk"},
    "app": {"app", "views", "controls", "print", "document", "sheet", "recovery", "changes", "merge", "files", "library", "model", "text", "disk"},
}
PLATFORM_PLACES = {"disk/PosixFile.cpp", "text/AnsiText.cpp"}  # and app/LockKeys*
SCRIPTS = ["run", "test", "fuzz", ".ci/run", "docs/guide/make-pictures", "packaging/debian/test-package",
           "packaging/debian/check-installed", "packaging/windows/build-toolkit", "packaging/windows/build-programs",
           "packaging/windows/test-packages", "packaging/windows/test-window"]
GUIDE = ROOT / "docs" / "guide"


def files(*patterns):
    """The files of the checkout whose name or path matches, without what was built and what git keeps."""
    found = []
    for folder, subfolders, names in os.walk(ROOT):
        subfolders[:] = sorted(set(subfolders) - {".git", ".cache", "build"})
        paths = [Path(folder) / file for file in sorted(names)]
        found += [path for path in paths if any(path.match(pattern) for pattern in patterns)]
    assert found, f"no file matches {patterns}"
    return found


def sources():
    return files("*.h", "*.cpp")


def name(path):
    return path.relative_to(ROOT).as_posix()


def room(path):
    return path.relative_to(ROOT).parts[0]


def in_core(path):
    return room(path) in CORE


def lines(path):
    return enumerate(path.read_text(encoding="utf-8").splitlines(), start=1)


def links(path):
    """(line number, the file that the link leads to, the heading after "#" or "") of the links within the documents."""
    for number, line in lines(path):
        for target, anchor in re.findall(r"\]\(([^)#:]*)(?:#([^)]*))?\)", line):
            yield number, (path.parent / target).resolve() if target else path, anchor


def anchors(document):
    """What links may name after "#": the headings, in the form in which they are shown on the web."""
    found = set()
    code = False
    for _, line in lines(document):
        code ^= line.startswith("```")
        heading = re.match(r"#+ (.*)", line)
        if heading and not code:
            anchor = re.sub(r"[^\w\- ]", "", heading[1].lower()).replace(" ", "-")
            repeated = [other for other in (anchor, *(f"{anchor}-{count}" for count in range(1, 99))) if other not in found]
            found.add(repeated[0])
    return found


def includes():
    """(file, line number, what is included, whether in quotes) of every include in the rooms."""
    for path in sources():
        if room(path) not in ROOMS:
            continue
        for number, line in lines(path):
            match = re.match(r'\s*#\s*include\s*([<"])([^">]+)[">]', line)
            if match:
                yield path, number, match[2], match[1] == '"'


def units_included():
    """unit -> the units it includes, each a pair X.h and X.cpp by its path without the ending."""
    included_by = {}
    for path, _, included, quoted in includes():
        included_by.setdefault(unit(name(path)), set()).update([unit(included)] if quoted else [])
    return {one: others - {one} for one, others in included_by.items()}


def unit(path):
    return os.path.splitext(path)[0]


def circles(graph):
    """The groups of nodes that reach each other, each sorted."""
    reached = {}
    for start in graph:
        reached[start] = set()
        waiting = [start]
        while waiting:
            new = graph.get(waiting.pop(), set()) - reached[start]
            reached[start] |= new
            waiting += new
    return {tuple(sorted(other for other in reached[one] if one in reached.get(other, ()))) for one in graph
            if one in reached[one]}


class RepositoryTest(unittest.TestCase):
    def assertNone(self, faults, why):
        self.assertFalse(faults, "\n" + why + "\n  " + "\n  ".join(faults))

    def testRoomsIncludeOnlyWhatStandsBelow(self):
        faults = []
        for path, number, included, quoted in includes():
            made_by_the_toolkit = not in_core(path) and re.fullmatch(r"ui_\w+\.h|\w+\.moc", included)
            if quoted and not made_by_the_toolkit and included.split("/")[0] not in ROOMS[room(path)]:
                faults.append(f"{name(path)}:{number}: {included}")
        self.assertNone(faults, "A room includes only from itself and from the rooms below it:")

    def testUnitsIncludeEachOtherInNoCircle(self):
        graph = {one: others for one, others in units_included().items() if one.split("/")[0] in CORE | {"controls"}}
        self.assertIn("controls/GridModel", graph["controls/GridCtrl"], "the units are found")
        self.assertEqual(circles({"a": {"b"}, "b": {"c", "d"}, "c": {"a"}, "d": set()}), {("a", "b", "c")})
        faults = [", ".join(circle) for circle in sorted(circles(graph))]
        self.assertNone(faults, "Of two file pairs one is the lower, which knows nothing of the upper:")

    def testPathsAreAskedByOneDialog(self):
        faults = [f"{name(path)}:{number}" for path, number, included, _ in includes()
                  if included == "QFileDialog" and path.stem != "FileDialog"]
        self.assertNone(faults, "controls/FileDialog.h leaves the window below it active, the toolkit's own does not:")

    def testCoreIncludesNoToolkit(self):
        faults = [f"{name(path)}:{number}: {included}" for path, number, included, _ in includes()
                  if in_core(path) and re.match(r"Q[A-Z]|Qt", included)]
        self.assertNone(faults, "The core is plain C++:")

    def testPlatformsAreToldApartInThreePlaces(self):
        platform = re.compile(r"\s*#\s*(?:el)?if.*\b(?:_?WIN32|_WIN64|_MSC_VER|Q_OS_\w+|__(?:linux|unix|APPLE)__)(?!\w)")
        faults = [f"{name(path)}:{number}: {line.strip()}" for path in sources() for number, line in lines(path)
                  if platform.match(line)
                  and name(path) not in PLATFORM_PLACES and not name(path).startswith("app/LockKeys")]
        self.assertNone(faults, "What differs by platform belongs into the file class, the ANSI text or the lock keys:")

    def testWindowTestsReportToGoogleTest(self):
        macro = re.compile(r"\bQ(?:VERIFY|COMPARE|TRY_VERIFY|TRY_COMPARE|FAIL|SKIP)\w*\s*\(")
        faults = [f"{name(path)}:{number}: {line.strip()}" for path in sources() for number, line in lines(path)
                  if macro.search(line) or re.search(r"\bGTEST_" + r"SKIP\b", line)]
        self.assertNone(faults, "The toolkit's own check macros fail unseen in GoogleTest, and no test is left out:")

    def testVersionIsTheNewestInTheChangelog(self):
        project = re.search(r"project\(Vantor VERSION (\d+\.\d+\.\d+)", (ROOT / "CMakeLists.txt").read_text())
        newest = re.search(r"^## \[(\d+\.\d+\.\d+)\]", (ROOT / "CHANGELOG.md").read_text(encoding="utf-8"), re.M)
        self.assertIsNotNone(project)
        self.assertIsNotNone(newest)
        self.assertEqual(project[1], newest[1])

    def testShellScriptsParse(self):
        for script in SCRIPTS + ["cmake/scripts.sh", "cmake/long-checks.sh", "packaging/windows/wine.sh"]:
            result = subprocess.run(["bash", "-n", str(ROOT / script)], capture_output=True, text=True)
            self.assertEqual(result.returncode, 0, result.stderr)

    def testScriptsAreExecutable(self):
        for script in SCRIPTS:
            self.assertTrue((ROOT / script).stat().st_mode & stat.S_IXUSR, f"{script} is not executable")

    def testFilesSpeakOfTheProductOnly(self):
        # Put together from halves, so that this file does not match itself.
        phrases = ["specific" + "ation", r"\bspec" + r"\.md\b", r"\bPart" + r" \d+\.\d+", r"\bissue" + r" #\d+",
                   r"(?<![\w.])/wo" + r"rk/", r"\.\./sha" + "red"]
        forbidden = re.compile("|".join(phrases), re.IGNORECASE)
        text_files = files("*.h", "*.cpp", "*.md", "*.py", "*.txt", "*.cmake", "*.sh", "*.ui", "*.qrc", "*.svg", "*.json", "*.nsi",
                           *SCRIPTS)
        faults = [f"{name(path)}:{number}: {line.strip()}" for path in text_files for number, line in lines(path)
                  if forbidden.search(line)]
        self.assertNone(faults, "The product's files speak of the product, not of how it came to be:")

    def testDocumentLinksLeadSomewhere(self):
        faults = []
        for path in files("*.md"):
            for number, target, anchor in links(path):
                if not target.exists() or (anchor and anchor not in anchors(target)):
                    faults.append(f"{name(path)}:{number}: {target.name} {anchor}".rstrip())
        self.assertNone(faults, "A link in a document leads nowhere:")

    def testGuideIsReachedFromItsIndex(self):
        linked = {target for _, target, _ in links(GUIDE / "index.md")}
        faults = [name(path) for path in GUIDE.glob("*.md") if path.name != "index.md" and path not in linked]
        self.assertNone(faults, "A page of the guide is not in its index:")

    def testPicturesAreMadeByTheirScript(self):
        made = subprocess.run([sys.executable, "-B", str(GUIDE / "pictures.py"), "--list"], check=True,
                              capture_output=True, text=True).stdout.split()
        self.assertTrue(made)
        self.assertEqual(made, sorted(set(made)), "a picture is made twice")
        self.assertEqual(made, sorted(path.name for path in (GUIDE / "images").iterdir()), "made, and there")
        shown = {target.relative_to(ROOT).as_posix() for path in files("*.md") for _, target, _ in links(path)
                 if target.suffix == ".png"}
        self.assertEqual(sorted(shown), [f"docs/guide/images/{picture}" for picture in made], "shown, and made")

    def testSampleFilesAreMadeByTheirScript(self):
        examples = ROOT / "examples"
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([sys.executable, "-B", str(examples / "make_sample.py"), folder], check=True)
            made = sorted(os.listdir(folder))
            self.assertEqual(made, ["RecipeFile.Dat", "RecipeFile.Notes.json", "bakery-oven.rcp"])
            for file in made:
                self.assertEqual((Path(folder) / file).read_bytes(), (examples / file).read_bytes(), file)

    def testSourcesAreFormatted(self):
        command = [os.environ.get("CLANG_FORMAT", "clang-format"), "--dry-run", "-Werror"]
        result = subprocess.run(command + [str(path) for path in sources()], capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, result.stderr[-4000:])


if __name__ == "__main__":
    unittest.main()
