"""What "cmake --install" puts into an empty folder, and whether the desktop understands it. CTest runs each method as a
test of its own, with CMAKE and BUILD (the build folder) in the environment."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SHARE = ROOT / "packaging" / "share"
ID = "org.vantor.Vantor"
MIME = {"m": "http://www.freedesktop.org/standards/shared-mime-info"}
OWN_TYPES = [f"application/vnd.vantor.{extension}" for extension in ("rcp", "erp", "frp")]

# Besides the documents.
INSTALLED = [
    "bin/vantor",
    "bin/vantor-cli",
    "bin/vantor-sheet",
    f"share/applications/{ID}.desktop",
    "share/bash-completion/completions/vantor-cli",
    "share/doc/vantor/copyright",
    "share/doc/vantor/examples/README.md",
    "share/doc/vantor/examples/bakery-oven.rcp",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    f"share/icons/hicolor/scalable/mimetypes/{ID}-erp.svg",
    f"share/icons/hicolor/scalable/mimetypes/{ID}-frp.svg",
    f"share/icons/hicolor/scalable/mimetypes/{ID}-rcp.svg",
    "share/man/man1/vantor-cli.1",
    "share/man/man1/vantor-sheet.1",
    "share/man/man1/vantor.1",
    f"share/metainfo/{ID}.metainfo.xml",
    f"share/mime/packages/{ID}.xml",
    "share/vantor/RecipeFile.Dat",
    "share/vantor/RecipeFile.Notes.json",
]
DOCUMENTS = ["command-line.md", "file-formats.md", "guide/*.md"]  # of docs/, those for users; they become pages
PICTURES = "guide/images/*.png"


def run(*command):
    return subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)


def files_below(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if not path.is_dir())


def metainfo():
    return ElementTree.parse(SHARE / "metainfo" / f"{ID}.metainfo.xml").getroot()


def mime_types():
    return ElementTree.parse(SHARE / "mime" / "packages" / f"{ID}.xml").getroot().findall("m:mime-type", MIME)


def desktop_entry(key):
    text = (SHARE / "applications" / f"{ID}.desktop").read_text(encoding="utf-8")
    return re.search(rf"^{key}=(.*)$", text, re.M)[1]


class PackagingTest(unittest.TestCase):
    def install(self):
        """The prefix, installed into; removed when the test ends."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        prefix = Path(folder.name) / "any prefix"
        result = run(os.environ["CMAKE"], "--install", os.environ["BUILD"], "--prefix", prefix)
        self.assertEqual(result.returncode, 0, result.stdout)
        return prefix

    def assertContent(self, *command):
        result = run(*command)
        self.assertEqual((result.returncode, result.stdout), (0, ""))

    def testInstallPutsEveryFileInItsPlace(self):
        docs = ROOT / "docs"
        pages = [path.with_suffix(".html") for pattern in DOCUMENTS for path in docs.glob(pattern)]
        shown = [f"share/doc/vantor/html/{path.relative_to(docs).as_posix()}" for path in [*pages, *docs.glob(PICTURES)]]
        self.assertEqual(files_below(self.install()), sorted(INSTALLED + shown))

    def testInstalledProgramsRun(self):
        prefix = self.install()
        version = run(prefix / "bin" / "vantor-cli", "--version")
        self.assertEqual((version.returncode, version.stdout), (0, f"vantor-cli {self.version()}\n"))
        shown = run(prefix / "bin" / "vantor-cli", "show", prefix / "share/doc/vantor/examples/bakery-oven.rcp",
                    "--library", prefix / "share/vantor/RecipeFile.Dat")
        self.assertIn("Farmhouse loaf", shown.stdout)
        sheet = prefix / "oven.pdf"
        made = run(prefix / "bin" / "vantor-cli", "sheet", prefix / "share/doc/vantor/examples/bakery-oven.rcp",
                   "--library", prefix / "share/vantor/RecipeFile.Dat", "-o", sheet)
        self.assertEqual((made.returncode, made.stdout), (0, ""))
        self.assertEqual(sheet.read_bytes()[:5], b"%PDF-")

    def testInstalledPagesLinkToInstalledFiles(self):
        pages = {path.resolve(): path.read_text(encoding="utf-8")
                 for path in (self.install() / "share/doc/vantor/html").rglob("*.html")}
        links = [(page, (page.parent / target).resolve() if target else page, anchor) for page, text in pages.items()
                 for target, anchor in re.findall(r'(?:href|src)="([^"#:]*)#?([^"]*)"', text)]
        self.assertGreater(len(links), 100)
        dead = [link for link in links
                if not link[1].exists() or (link[2] and f' id="{link[2]}"' not in pages.get(link[1], ""))]
        self.assertEqual(dead, [])
        self.assertEqual([link for link in links if link[1].suffix == ".md" and link[1].with_suffix(".html") in pages], [])

    def version(self):
        return re.search(r"project\(Vantor VERSION (\d+\.\d+\.\d+)", (ROOT / "CMakeLists.txt").read_text())[1]

    def testVersionAndDateAreThoseOfTheChangelog(self):
        changelog = (ROOT / "CHANGELOG.md").read_text(encoding="utf-8")
        releases = re.findall(r"^## \[(\d+\.\d+\.\d+)\] - (\d{4}-\d{2}-\d{2})", changelog, re.M)
        self.assertEqual(releases[0][0], self.version())
        self.assertEqual([(r.get("version"), r.get("date")) for r in metainfo().iter("release")], releases)

    def testDebianChangelogTellsOfEveryRelease(self):
        result = run("python3", "-B", ROOT / "packaging/debian/changelog.py", ROOT / "CHANGELOG.md", "A <a@b.invalid>")
        self.assertEqual(result.returncode, 0, result.stdout)
        self.assertTrue(result.stdout.startswith(f"vantor ({self.version()}) stable; urgency=medium\n\n  * "))
        released = re.split(r"^(?=## \[\d)", (ROOT / "CHANGELOG.md").read_text(encoding="utf-8"), maxsplit=1, flags=re.M)[1]
        entries = re.findall(r"^- ", released, re.M)
        self.assertEqual(len(re.findall(r"^  \* ", result.stdout, re.M)), len(entries))

    def testOneIdNamesAll(self):
        self.assertEqual(metainfo().findtext("id"), ID)
        self.assertEqual(metainfo().findtext("launchable"), f"{ID}.desktop")
        self.assertEqual(metainfo().findtext("icon"), ID)
        self.assertEqual(desktop_entry("Icon"), ID)
        icons = {path.stem for path in (SHARE / "icons").rglob("*.svg")}
        self.assertEqual({kind.find("m:icon", MIME).get("name") for kind in mime_types()}, icons)
        self.assertTrue(all(icon.startswith(f"{ID}-") for icon in icons))
        self.assertIn(f'setDesktopFileName(QStringLiteral("{ID}"))', (ROOT / "app/VantorApp.cpp").read_text())

    def testFileTypesAreTheSameEverywhere(self):
        self.assertEqual([kind.get("type") for kind in mime_types()], OWN_TYPES)
        self.assertEqual([kind.find("m:glob", MIME).get("pattern") for kind in mime_types()], ["*.rcp", "*.erp", "*.frp"])
        self.assertEqual(desktop_entry("MimeType"), ";".join(OWN_TYPES + ["text/csv"]) + ";")
        self.assertEqual([kind.text for kind in metainfo().iter("mediatype")], OWN_TYPES)
        installer = (ROOT / "packaging" / "windows" / "vantor.nsi").read_text(encoding="utf-8")
        self.assertEqual(re.findall(r'AddOwnType "(.*)" "(.*)"', installer),
                         [(kind.find("m:glob", MIME).get("pattern")[2:], kind.find("m:comment", MIME).text) for kind in mime_types()])
        self.assertEqual(re.findall(r'RemoveType "(.*)"', installer), re.findall(r'Add(?:Own)?Type "(\w+)"', installer))

    def testDesktopFileIsValid(self):
        self.assertContent("desktop-file-validate", SHARE / "applications" / f"{ID}.desktop")

    def testMetainfoIsValid(self):
        result = run("appstreamcli", "validate", "--no-net", "--no-color", SHARE / "metainfo" / f"{ID}.metainfo.xml")
        self.assertEqual(result.returncode, 0, result.stdout)

    def testMimeTypesAreValid(self):
        with tempfile.TemporaryDirectory() as folder:
            database = Path(folder) / "mime"
            shutil.copytree(SHARE / "mime", database)
            self.assertContent("env", f"XDG_DATA_HOME={folder}", "update-mime-database", database)
            self.assertIn("application/vnd.vantor.rcp:*.rcp", (database / "globs2").read_text())

    def testIconsCanBeDrawn(self):
        for icon in [*(SHARE / "icons").rglob("*.svg"), ROOT / "res/icons/vantor.svg"]:
            result = subprocess.run(["rsvg-convert", "--width", "32", str(icon)], capture_output=True, check=True)
            self.assertTrue(result.stdout.startswith(b"\x89PNG"), icon)

    def testManPagesAreWellFormed(self):
        pages = sorted((SHARE / "man" / "man1").iterdir())
        self.assertEqual([page.name for page in pages], ["vantor-cli.1", "vantor-sheet.1", "vantor.1"])
        for page in pages:
            self.assertContent("groff", "-man", "-ww", "-z", page)


if __name__ == "__main__":
    unittest.main()
