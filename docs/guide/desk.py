"""The desk that the pictures of the guide are taken at, and what is done with the program there again and again."""

import fcntl
import os
import shutil
from pathlib import Path

from screen import Program, wait_for

GUIDE = Path(__file__).resolve().parent
EXAMPLES = GUIDE.parents[1] / "examples"
IMAGES = GUIDE / "images"
DESK = Path("/tmp/recipes")  # its name is in the window's title, so that it is always the same
MARK = DESK / ".made-for-the-pictures-of-the-guide"
LOCK = Path(f"/tmp/vantor-pictures-{os.getuid()}.lock")
TIME = 1_700_000_000  # of the files, which file dialogs show


def take_desk():
    """Waits until no other run works at the DESK, and makes it anew. False when it is a folder of somebody else.

    The lock lasts as long as this process, so what bears the MARK is then left of a run that was killed."""
    lock = os.open(LOCK, os.O_RDWR | os.O_CREAT | os.O_CLOEXEC, 0o600)
    fcntl.flock(lock, fcntl.LOCK_EX)
    if MARK.exists():
        shutil.rmtree(DESK)
    try:
        DESK.mkdir()
    except FileExistsError:
        return False
    MARK.touch()
    return True


class Desk:
    """A fresh DESK, with the program, the sample recipe and the sample's data formats in it, and what takes the pictures."""

    def __init__(self, screen, program):
        self.screen = screen
        for left in DESK.iterdir():
            if left != MARK:
                left.unlink()
        for file in (program, *(EXAMPLES / name for name in ("bakery-oven.rcp", "RecipeFile.Dat", "RecipeFile.Notes.json"))):
            shutil.copy(file, DESK / file.name)
            os.utime(DESK / file.name, (TIME, TIME))
        self.program = str(DESK / program.name)
        shutil.rmtree(screen.home / ".local", ignore_errors=True)  # what the scene before left unsaved

    def open(self, file=None):
        return Program(self.screen, DESK, self.program, *([str(DESK / file)] if file else []))

    def write(self, file, offset, content):
        """Changes bytes of a file on the desk, as another program does."""
        with open(DESK / file, "r+b") as stream:
            stream.seek(offset)
            stream.write(content)

    def whole(self, name):
        """The whole screen, which the main window fills."""
        self.screen.mouse_away()
        self.screen.photograph(IMAGES / name)

    def window(self, app, name):
        """The dialog that is open, with its frame."""
        self.screen.mouse_away()
        self.screen.at_rest()
        self.screen.photograph(IMAGES / name, app.frame_box())

    def part(self, name, box, margin=0):
        """The part of the screen in the box (x, y, width, height) and so many pixels around it."""
        x, y, width, height = box
        left, top = max(0, x - margin), max(0, y - margin)
        right, bottom = min(x + width + margin, self.screen.width), min(y + height + margin, self.screen.height)
        self.screen.photograph(IMAGES / name, (left, top, right - left, bottom - top))


def table_to(app, row, title=None):
    """The box of the table from its titles to that row, and to the column of that title or to the right edge."""
    x, y, width, _ = grid_of(app).box
    last = cell_of(app, title, row).box if title else grid_of(app).cell(row - 1, 0).box
    return x, y, last[0] + last[2] - x if title else width, last[1] + last[3] - y


def grid_of(app):
    return app.find("table", "Recipe data")


def column_of(grid, title):
    table = grid.accessible.queryTable()
    return next(column for column in range(table.nColumns) if table.getColumnHeader(column).name == title)


def cell_of(app, title, row):
    """The cell in the column of that title; rows count from 1, as in the table."""
    grid = grid_of(app)
    return grid.cell(row - 1, column_of(grid, title))


def wait_for_rows(app, count):
    wait_for(lambda: grid_of(app).accessible.queryTable().nRows == count, f"a table of {count} rows")


def scroll_to_the_right(app):
    cell_of(app, "No.", 1).click()
    app.screen.key("End")


def open_menu(app, title):
    """Opens a menu of the menu bar and returns its entry there."""
    entry = next(entry for entry in app.find("menu bar").children if entry.name == title)
    entry.click()
    return entry


def choose_command(app, title, command):
    """Chooses a command of the menu bar."""
    entry = open_menu(app, title)
    wait_for(lambda: next(item for menu in entry.children for item in menu.children if item.name == command and item.showing),
             command).click()


def choose_file(app, file, count=2, left=None):
    """Answers the file dialog, which is the window of that count. `left` windows are left then, one fewer if not said."""
    dialog = app.window(count)
    field = dialog.find("text", "File name:")
    field.accessible.queryEditableText().setTextContents(str(file))
    wait_for(lambda: field.text == str(file), "the file's name")
    field.accessible.queryComponent().grabFocus()
    app.screen.key("Return")
    app.window(count - 1 if left is None else left)


def use_format(app, name, start, rows):
    """Shows the open file through another of the sample's formats."""
    box = app.find("combo box")
    names = [item.name for item in box.all_below() if item.role == "list item"]
    box.click()
    app.screen.key("Home", *["Down"] * names.index(name), "Return")
    wait_for(lambda: box.name == name, f"the format {name}")
    app.find("text", "The Start Address:").enter(str(start))
    app.find("text", "Read Data Array:").enter(str(rows))
    app.find("push button", "Use dataformat").click()
    wait_for_rows(app, rows)


def item_row(app, name):
    """The row of the list of items that holds the item of that name."""
    return app.find("tree", "The detail of current dataformat").find("table cell", name)
