"""The pictures of the guide: what is done with the program before each of them, and which part of the screen they show.

    pictures.py PROGRAM             makes all pictures anew, from that program, and removes those that no scene makes
    pictures.py PROGRAM PICTURE...  makes these anew
    pictures.py --list              prints their names

docs/guide/make-pictures calls this with the program and with the interpreter that has the accessibility library. A new
picture is a new scene, or a few lines more in one: a scene starts from a desk with the sample as it was delivered.
"""

import shutil
import signal
import sys
import time
from pathlib import Path

from desk import (DESK, Desk, IMAGES, cell_of, choose_command, choose_file, grid_of, item_row, open_menu,
                  scroll_to_the_right, table_to, take_desk, use_format, wait_for_rows)
from screen import NotShown, Screen, wait_for

SCENES = []  # (the pictures that a scene makes, the scene)


def scene(*names):
    def enter(function):
        SCENES.append((names, function))
        return function
    return enter


@scene("start.png")
def start(desk):
    with desk.open():
        desk.whole("start.png")


@scene("main-window.png", "read-settings.png", "format-pane.png", "left-pane-collapsed.png")
def main_window(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        desk.whole("main-window.png")
        group = app.find("push button", "RefreshData").parent
        desk.part("read-settings.png", group.box, margin=6)
        desk.part("format-pane.png", group.parent.box)
        left = grid_of(app).box[0]
        app.find("split pane", "Show or hide the left pane").click()
        wait_for(lambda: grid_of(app).box[0] < left, "the wide table")
        desk.whole("left-pane-collapsed.png")


@scene("frozen-columns.png", "show-rows-dialog.png", "rows-shown.png")
def parts_of_the_table(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        cell_of(app, "Product", 1).click()
        choose_command(app, "View(V)", "Freeze up to this column")
        desk.screen.key("End")
        desk.part("frozen-columns.png", table_to(app, 8))
        choose_command(app, "View(V)", "Show only rows that…")
        app.window(2)
        desk.screen.type("Bake")
        desk.screen.key("Tab")
        for _ in range(4):
            desk.screen.key("Down")
        desk.screen.key("Tab")
        desk.screen.type("2500")
        desk.window(app, "show-rows-dialog.png")
        desk.screen.key("Return")
        wait_for(lambda: grid_of(app).accessible.queryTable().nRows < 12, "a table of fewer rows")
        desk.whole("rows-shown.png")


@scene("open-dialog.png")
def opening(desk):
    with desk.open() as app:
        desk.screen.key("ctrl+o")
        app.window(2).find("text", "File name:")
        desk.window(app, "open-dialog.png")


@scene("cell-open.png", "refused.png", "close-question.png")
def editing(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        cell_of(app, "Zone °C(1)", 4).click()
        desk.screen.type("250")
        desk.part("cell-open.png", table_to(app, 6, "Zone °C(2)"))
        desk.screen.type("000")
        desk.screen.key("Return")
        app.window(2)
        desk.window(app, "refused.png")
        desk.screen.key("Return")
        app.window(1)
        cell_of(app, "Zone °C(1)", 4).click()
        desk.screen.type("250")
        desk.screen.key("Return", "alt+F4")
        app.window(2)
        desk.window(app, "close-question.png")


@scene("go-to.png", "find-bar.png", "find-value.png")
def finding(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        cell_of(app, "Zone °C(1)", 2).click()
        desk.screen.key("ctrl+g")
        desk.screen.type("RW4711")
        desk.screen.key("Return")
        desk.screen.mouse_away()
        button = app.find("push button", "Go to the nearest").box
        left = grid_of(app).box[0]
        desk.part("go-to.png", (left, button[1] - 120, desk.screen.width - left, 120 + button[3]), margin=6)
        desk.screen.key("Escape", "ctrl+h")
        desk.screen.type("235")
        desk.screen.mouse_away()
        button = app.find("push button", "Replace all").box
        top = grid_of(app).box[1]
        desk.part("find-bar.png", (left, top, desk.screen.width - left, button[1] + button[3] - top), margin=6)
        desk.screen.key("Escape", "alt+e", "e")
        app.window(2).find("text", "Number to find")
        desk.screen.type("235.0")
        desk.screen.key("Return")
        desk.window(app, "find-value.png")
        desk.screen.key("Escape")


@scene("edit-menu.png")
def undo(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        cell_of(app, "Zone °C(0)", 4).click()
        desk.screen.key("shift+Right", "shift+Right", "shift+Down", "ctrl+c")
        cell_of(app, "Zone °C(0)", 8).click()
        desk.screen.key("ctrl+v")
        wait_for(lambda: cell_of(app, "Zone °C(2)", 9).name == "235.0", "the pasted values")
        open_menu(app, "Edit(E)")
        app.find("menu item", "Undo Paste (6 cells)")
        desk.screen.mouse_away()
        x, y, width, height = cell_of(app, "Zone °C(2)", 9).box
        desk.part("edit-menu.png", (0, 0, x + width, y + height), margin=6)


@scene("decimals-typed.png", "decimals-read-again.png")
def decimals(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        scroll_to_the_right(app)
        cell_of(app, "Belt m/min", 2).click()
        desk.screen.type("1.05")
        desk.screen.key("Return")
        wait_for(lambda: cell_of(app, "Belt m/min", 2).name == "1.05", "the typed number")
        desk.part("decimals-typed.png", table_to(app, 3))
        desk.screen.key("ctrl+s")
        app.find("push button", "RefreshData").click()
        wait_for(lambda: cell_of(app, "Belt m/min", 2).name == "1.50", "the number read again")
        scroll_to_the_right(app)
        desk.part("decimals-read-again.png", table_to(app, 3))


@scene("rewritten-mark.png", "changes-panel.png", "stored-otherwise.png", "stored-as-shown.png")
def what_a_save_writes(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        app.find("push button", "Changes on saving: 0 edited, 3 others change")
        scroll_to_the_right(app)
        x, y, width, height = cell_of(app, "Belt m/min", 12).box
        desk.screen.mouse_to(x + width // 2, y + height // 2)
        time.sleep(2)  # a tip is no window that can be waited for
        desk.part("rewritten-mark.png", (x - 400, y - 3 * height, desk.screen.width - x + 400, 9 * height))
        desk.screen.mouse_away()
        desk.screen.key("Home")
        cell_of(app, "Zone °C(1)", 4).click()
        desk.screen.type("250")
        desk.screen.key("Return", "F9")
        app.find("push button", "Changes on saving: 1 edited, 3 others change")
        app.find("table", "Changes on saving")
        desk.whole("changes-panel.png")
        desk.screen.key("Escape")
        scroll_to_the_right(app)
        cell_of(app, "Belt m/min", 2).click()
        desk.screen.type("1.15")
        desk.screen.key("Return")
        button = app.find("push button", "Store exactly")
        desk.part("stored-otherwise.png", (0, 0, desk.screen.width, cell_of(app, "Belt m/min", 3).box[1] + 30))
        button.click()
        desk.screen.key("ctrl+s")
        app.find("push button", "Put back")
        desk.part("stored-as-shown.png", (0, 0, desk.screen.width, cell_of(app, "Belt m/min", 3).box[1] + 30))


@scene("cell-menu.png", "bit-browser-16-bit.png")
def bits_of_a_word(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        scroll_to_the_right(app)
        cell_of(app, "Options", 1).click()
        app.open_menu_of(cell_of(app, "Options", 1))
        desk.part("cell-menu.png", table_to(app, 4))
        desk.screen.key("Down", "Return")
        app.window(2)
        desk.window(app, "bit-browser-16-bit.png")


@scene("sensible-range.png", "outside-range.png", "bit-names.png")
def what_values_mean(desk):
    desk.write("bakery-oven.rcp", 2 * (100 + 4 * 40 + 24), b"\x05\x00")  # zone 1 of row 5: 0.5
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        x, y, width, _ = cell_of(app, "Zone °C(1)", 5).box
        desk.screen.mouse_to(x + width // 2, grid_of(app).box[1] + 12)
        time.sleep(2)  # until the tip is there
        desk.part("sensible-range.png", (0, 0, desk.screen.width, y + 60))
        cell_of(app, "Zone °C(1)", 1).click()
        desk.screen.type("0.5")
        desk.screen.key("Return")
        app.find("push button", "Undo")
        desk.part("outside-range.png", (0, 0, desk.screen.width, cell_of(app, "Zone °C(1)", 5).box[1] + 30))
        scroll_to_the_right(app)
        cell_of(app, "Options", 1).click()
        app.find("push button", "BitBrowse").click()
        app.window(2)
        desk.window(app, "bit-names.png")


@scene("inspector.png")
def words_of_a_cell(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        desk.screen.key("ctrl+i")
        scroll_to_the_right(app)
        cell_of(app, "Steam %", 4).click()
        desk.whole("inspector.png")


@scene("bit-browser-32-bit.png")
def bits_of_two_words(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        use_format(app, "Line setup", 0, 1)
        cell_of(app, "Interlocks", 1).click()
        app.find("push button", "BitBrowse").click()
        app.window(2)
        desk.window(app, "bit-browser-32-bit.png")


@scene("save-as-dialog.png", "csv-reopened.png")
def spreadsheet(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        use_format(app, "Shift log", 600, 15)
        choose_command(app, "File(F)", "Save as...")
        app.window(2).find("text", "File name:")
        desk.window(app, "save-as-dialog.png")
        choose_file(app, DESK / "shifts.csv")
        app.find("push button", "RefreshData").click()
        wait_for(lambda: cell_of(app, "Gas kWh", 1).name.startswith('"'), "the table with its quotes")
        desk.part("csv-reopened.png", table_to(app, 5, "Gas kWh"))


@scene("unsaved-found.png", "changed-by-others.png", "save-question.png", "earlier-versions.png")
def getting_back(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        for row, text in ((2, "250"), (4, "252.5")):
            cell_of(app, "Zone °C(1)", row).click()
            desk.screen.type(text)
            desk.screen.key("Return")
        wait_for(lambda: cell_of(app, "Zone °C(1)", 4).name == "252.5", "the typed value")
    with desk.open() as app:
        button = app.find("push button", "Put back")
        desk.part("unsaved-found.png", (0, 0, desk.screen.width, 260))
        button.click()
        wait_for_rows(app, 12)
        desk.write("bakery-oven.rcp", 2 * (100 + 4 * 40 + 23), b"\x0b\x09")  # zone 0 of row 5: 231.5
        app.find("push button", "Keep mine")
        desk.part("changed-by-others.png", (0, 0, desk.screen.width, cell_of(app, "Zone °C(1)", 6).box[1] + 30))
        desk.screen.key("ctrl+s")
        app.window(2)
        desk.window(app, "save-question.png")
        app.find("push button", "Save edited only").click()
        app.window(1)
        choose_command(app, "File(F)", "Earlier versions…")
        app.window(2)
        desk.window(app, "earlier-versions.png")


@scene("compared.png")
def comparing(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        shutil.copy(DESK / "bakery-oven.rcp", DESK / "oven-old.rcp")
        for row, zone, value in ((1, 1, 2350), (3, 0, 2550), (4, 2, 2400)):
            desk.write("oven-old.rcp", 2 * (100 + (row - 1) * 40 + 23 + zone), value.to_bytes(2, "little"))
        desk.write("oven-old.rcp", 2 * 700, b"\x07\x00")
        choose_command(app, "File(F)", "Compare with…")
        choose_file(app, DESK / "oven-old.rcp")
        app.find("push button", "End comparing")
        desk.screen.mouse_away()
        desk.whole("compared.png")


@scene("fill.png", "calculate-preview.png", "import-table.png", "export-table.png")
def changing_many(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        cell_of(app, "Zone °C(1)", 1).click()
        desk.screen.key("shift+Down", "shift+Down", "shift+Down", "shift+Down", "shift+Right")
        choose_command(app, "Edit(E)", "Fill…")
        app.window(2).find("radio button", "Series from").click()
        desk.window(app, "fill.png")
        desk.screen.key("Escape")
        app.window(1)
        choose_command(app, "Edit(E)", "Calculate…")
        app.window(2).find("text", "Number").enter("765")
        desk.screen.key("Tab", "space")
        app.window(1)
        app.find("push button", "Discard")
        desk.screen.mouse_away()
        desk.whole("calculate-preview.png")
        app.find("push button", "Discard").click()
        (DESK / "sheet.txt").write_text("Zone °C(1);Zone °C(2);Belt m/min\n1.234;235,5;0,85\n1.240;240,0;0,90\n")
        choose_command(app, "Edit(E)", "Import table…")
        choose_file(app, DESK / "sheet.txt", left=2)
        wait_for(lambda: app.window(2).name == "Import table" and app.window(2).find_all("table", "Columns of the text"),
                 "the dialog of the table")
        desk.window(app, "import-table.png")
        desk.screen.key("Escape")
        app.window(1)
        choose_command(app, "Edit(E)", "Export table…")
        app.window(2).find("check box", "Row numbers and addresses").click()
        desk.window(app, "export-table.png")


@scene("recipe-sheet.png")
def sheets(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        cell_of(app, "Zone °C(1)", 2).click()
        desk.screen.key("shift+Down", "shift+Down")
        choose_command(app, "Edit(E)", "Recipe sheet…")
        wait_for(lambda: app.window(2).name == "Recipe sheet", "the dialog of the sheet")
        desk.window(app, "recipe-sheet.png")
        desk.screen.key("Escape")
        app.window(1)


@scene("new-file.png")
def new_file(desk):
    with desk.open() as app:
        desk.screen.key("ctrl+n")
        wait_for_rows(app, 12)
        desk.whole("new-file.png")


@scene("new-format-name.png", "item-menu.png", "item-number.png", "item-array.png", "item-string.png")
def formats(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        app.find("push button", "Add Dataformat").click()
        app.window(2).find("text").enter("Tank farm")
        desk.window(app, "new-format-name.png")
        desk.screen.key("Escape")
        app.window(1)
        for name, item in (("item-number.png", "Belt m/min"), ("item-array.png", "Zone °C"), ("item-string.png", "Product")):
            item_row(app, item).click(count=2)
            app.window(2)
            desk.window(app, name)
            desk.screen.key("Escape")
            app.window(1)
        app.open_menu_of(item_row(app, "Zone °C"))
        x, y, width, _ = app.find("tree", "The detail of current dataformat").box
        desk.part("item-menu.png", (x, y, width + 230, 340), margin=6)


@scene("notes-dialog.png")
def notes(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        item_row(app, "Trim mm").click()
        desk.screen.key("ctrl+Return")
        app.window(2)
        desk.window(app, "notes-dialog.png")
        desk.screen.key("Escape")
        app.window(1)


@scene("first-row.png")
def first_row(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        tree = app.find("tree", "The detail of current dataformat")
        x, y, width, height = tree.box
        item_row(app, "Zone °C").click()
        for _ in range(12):
            desk.screen.key("Right")  # to the last column
        desk.screen.mouse_away()
        desk.part("first-row.png", (x, y, width, height + 26), margin=6)


def strip_of(app):
    """The box of the strip, from its left edge to its right one."""
    return app.find("push button", "Dismiss this message").parent.box


@scene("last-read.png", "unlike-format.png")
def last_read(desk):
    with desk.open("bakery-oven.rcp") as app:
        wait_for_rows(app, 12)
        app.find("push button", "RefreshData").click()
        start = app.find("text", "The Start Address:")
        rows = app.find("text", "Read Data Array:")
        for name, address, count in (("last-read.png", "700", "4"), ("unlike-format.png", "101", "12")):
            start.enter(address)
            rows.enter(count)
            desk.screen.key("ctrl+o")
            choose_file(app, DESK / "bakery-oven.rcp")
            app.find("push button", "Use")
            x, y, width, height = strip_of(app)
            desk.screen.mouse_away()
            desk.part(name, (x, y, width, height + (0 if name == "last-read.png" else 160)))


@scene("save-path-dialog.png", "merge-dialog.png")
def merging(desk):
    shutil.copy(DESK / "bakery-oven.rcp", DESK / "proofing-cabinet.rcp")
    with desk.open() as app:
        choose_command(app, "File Merge(M)", "File Merge(F)")
        dialog = app.window(2)
        for index, file in enumerate(("bakery-oven.rcp", "proofing-cabinet.rcp")):
            wait_for(lambda: dialog.find_all("push button", "Path select")[index:], "the button")[0].click()
            choose_file(app, DESK / file, 3)
        places = [field for field in dialog.find_all("text") if field.name.startswith("The Address in Merged")]
        places[1].enter("720")
        dialog.find("push button", "The Path for Merged file").click()
        app.window(3).find_all("text")[0].enter("line-2")
        desk.window(app, "save-path-dialog.png")
        desk.screen.key("Return")
        app.window(2)
        desk.window(app, "merge-dialog.png")


def names():
    return {name for made, _ in SCENES for name in made}


def play_scenes(program, wanted):
    with Screen(1280, 800) as screen:
        for made, play in SCENES:
            if wanted and not wanted & set(made):
                continue
            try:
                play(Desk(screen, program))
            except NotShown as fault:  # a busy machine can lose a key
                print(f"{fault}; once more:", file=sys.stderr)
                play(Desk(screen, program))
            print(*made, flush=True)


def main():
    if len(sys.argv) < 2:
        print("Usage: pictures.py PROGRAM [PICTURE...] | --list", file=sys.stderr)
        return 2
    if sys.argv[1] == "--list":
        print("\n".join(sorted(name for made, _ in SCENES for name in made)))
        return 0
    program = Path(sys.argv[1]).resolve()
    wanted = set(sys.argv[2:])
    if wanted - set(names()):
        print("There is no", *sorted(wanted - set(names())), file=sys.stderr)
        return 2
    begun = time.time() - 1
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that the screen is ended and the desk cleared
    if not take_desk():
        print(f"{DESK} is there already. The pictures are made in that folder: remove it first.", file=sys.stderr)
        return 1
    try:
        play_scenes(program, wanted)
    finally:
        shutil.rmtree(DESK)
    for picture in IMAGES.iterdir():
        if picture.name not in names():
            picture.unlink()
    left = [name for name in wanted or names() if (IMAGES / name).stat().st_mtime < begun]
    if left:
        print("Not made:", *left, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
