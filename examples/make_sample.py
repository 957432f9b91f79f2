#!/usr/bin/env python3
"""Makes the sample files: RecipeFile.Dat, a format library, RecipeFile.Notes.json, what its items mean, and
bakery-oven.rcp, a recipe file of a tunnel oven.

    python3 make_sample.py [FOLDER]       the files go to FOLDER, by default the script's own

The same bytes come out of every run. Before they are written, every sample value is shown and coded back as the editor
does it: the words must come back unchanged, and the text must be one that the editor accepts, so that saving the sample
changes only what was edited. Three values are there to meet what a save can do besides (REWRITTEN): they hold digits that
are not shown.
"""

import json
import math
import re
import struct
import sys
from dataclasses import dataclass
from pathlib import Path

# The data types by their codes in the library file.
S16, S32, U16, U32, HEX16, HEX32, FLOAT, DOUBLE, STRING = range(9)
WORDS = {S16: 1, U16: 1, HEX16: 1, S32: 2, U32: 2, HEX32: 2, FLOAT: 2, DOUBLE: 4}
BIN, BCD = 0, 1


@dataclass
class Item:
    """One data item of a format; `words` only matters for a string, `array` is 0 for a single value."""

    description: str
    type: int
    integer: int = 1
    decimals: int = 0
    code: int = BIN
    array: int = 0
    words: int = 0
    unicode: int = 0

    def __post_init__(self):
        self.words = WORDS.get(self.type, self.words)
        self.lower, self.upper = bounds(self.type, self.integer, self.decimals)

    @property
    def row_words(self):
        return self.words * (self.array or 1)


def nines(count):
    return int("9" * count or "0")


def bounds(kind, integer, decimals):
    """The limits that the editor derives from the digit counts."""
    digits = integer + decimals
    if kind in (S16, S32):
        full, bits = (5, 15) if kind == S16 else (10, 31)
        return (-nines(digits - 1), nines(digits)) if digits < full else (-(2**bits), 2**bits - 1)
    if kind in (U16, U32):
        full, top = (5, 2**16 - 1) if kind == U16 else (10, 2**32 - 1)
        return 0, nines(digits) if digits < full else top
    if kind in (HEX16, HEX32):
        return 0, 16**integer - 1
    if kind in (FLOAT, DOUBLE):
        return -nines(integer - 1), nines(integer)
    return 0, 0


# ---------------------------------------------------------------------------------------------- the oven's formats

RECIPES_AT, RECIPE_ROWS = 100, 12
SHIFTS_AT = 600

OVEN_RECIPE = [
    Item("No.", U16, integer=4, code=BCD),
    Item("Product", STRING, words=16, unicode=1),
    Item("Code", STRING, words=6),
    Item("Zone °C", S16, integer=3, decimals=1, array=6),
    Item("Belt m/min", U16, integer=2, decimals=2),
    Item("Bake s", U32, integer=5),
    Item("Steam %", FLOAT, integer=3, decimals=1),
    Item("Options", HEX16, integer=4),
    Item("Trim mm", S16, integer=3, decimals=1),
    Item("Gas kWh/t", DOUBLE, integer=3, decimals=2),
]
RECIPE_WORDS = [Item("Word", HEX16, integer=4, array=sum(item.row_words for item in OVEN_RECIPE))]
LINE_SETUP = [
    Item("Plant", STRING, words=10),
    Item("Line", STRING, words=12, unicode=1),
    Item("Serial no.", U32, integer=9),
    Item("Interlocks", HEX32, integer=8),
    Item("Levelling mm", S32, integer=6, decimals=3),
    Item("Zones", U16, integer=2),
    Item("Highest °C", FLOAT, integer=3, decimals=1),
    Item("Gas total MWh", DOUBLE, integer=5, decimals=2),
]
SHIFT_LOG = [
    Item("Shift", U16, integer=4),
    Item("Loaves", U32, integer=6),
    Item("Rejects", U16, integer=4),
    Item("Gas kWh", DOUBLE, integer=4, decimals=2),
]
FORMATS = [
    ("Oven recipe", OVEN_RECIPE),
    ("Recipe words", RECIPE_WORDS),
    ("Line setup", LINE_SETUP),
    ("Shift log", SHIFT_LOG),
]

# What the values of items mean. All values of the sample lie within their ranges.
NOTES = {
    ("Line setup", "Gas total MWh"): {"unit": "MWh", "lowest": "0", "comment": "Counted since the burners were changed."},
    ("Line setup", "Highest °C"): {"unit": "°C", "lowest": "200", "highest": "300",
                                   "comment": "The burners go off above it."},
    ("Line setup", "Interlocks"): {
        "bits": ["Door 1", "Door 2", "Door 3", "Door 4", "Door 5", "Door 6"] + [""] * 10 + ["Emergency stop"]
        + [""] * 7 + ["Gas valve", "Exhaust fan", "Flame guard", "Belt drive", "Steam valve", "Mains"]},
    ("Line setup", "Levelling mm"): {"unit": "mm", "lowest": "-2", "highest": "2"},
    ("Line setup", "Zones"): {"lowest": "1", "highest": "6"},
    ("Oven recipe", "Bake s"): {"unit": "s", "lowest": "600", "highest": "7200"},
    ("Oven recipe", "Belt m/min"): {"unit": "m/min", "lowest": "0.05", "highest": "2.5"},
    ("Oven recipe", "Gas kWh/t"): {"unit": "kWh/t", "lowest": "100", "highest": "1000",
                                   "comment": "Measured by the panel, for a tonne of bread."},
    ("Oven recipe", "Options"): {
        "bits": ["Fan", "Lower heat", "Upper heat", "Steam", "Damper", "Stone plate", "Fast cooling"] + [""] * 8
        + ["Cleaning"]},
    ("Oven recipe", "Steam %"): {"unit": "%", "lowest": "0", "highest": "30", "texts": [{"value": "0", "text": "dry"}]},
    ("Oven recipe", "Trim mm"): {"unit": "mm", "lowest": "-4", "highest": "4", "comment": "Of the belt, to the left.",
                                 "texts": [{"value": "0", "text": "straight"}]},
    ("Oven recipe", "Zone °C"): {"unit": "°C", "lowest": "100", "highest": "300",
                                 "comment": "From the entry of the tunnel on."},
    ("Shift log", "Gas kWh"): {"unit": "kWh", "lowest": "0"},
    ("Shift log", "Rejects"): {"highest": "200"},
    ("Shift log", "Shift"): {"comment": "Day and shift: 103 is the third one of the first day."},
}

# ------------------------------------------------------------------------------------------------ the oven's values
# Integers with decimals are given raw, as the panel keeps them: 2155 is 215.5 °C.

RECIPES = [
    # no., product, code, zones 1 to 6, belt, bake s, steam, options, trim, gas
    [101, "Farmhouse loaf", "FL0800", [2350, 2400, 2325, 2250, 2150, 2050], 85, 2100, 12.5, 0x001F, -25, 312.25],
    [102, "Sourdough", "SD1000", [2450, 2500, 2400, 2300, 2200, 2100], 75, 2400, 18.0, 0x003F, -25, 358.50],
    [103, "Rye 1 kg", "RY1000", [2600, 2550, 2300, 2100, 1950, 1850], 60, 3300, 20.5, 0x003F, 15, 411.75],
    [104, "Baguette", "BG0250", [2450, 2475, 2450, 2400, 2350, 2300], 150, 1260, 25.04, 0x007F, 0, 274.50],
    [105, "Brötchen", "BR0060", [2300, 2350, 2350, 2300, 2250, 2200], 200, 1020, 22.5, 0x005F, 0, 231.25],
    [106, "Brioche", "BC0400", [1750, 1800, 1825, 1800, 1750, 1700], 110, 1680, 5.5, 0x0013, 10, 198.75],
    [107, "Pain d'épices", "PE0500", [1650, 1700, 1700, 1675, 1650, 1600], 70, 2700, 0.0, 0x0003, 35, 243.00],
    [108, "Pão de milho", "PM0900", [2400, 2450, 2400, 2300, 2150, 2000], 65, 2880, 15.0, 0x002F, 20, 366.4975],
    [109, "Żytni chleb", "ZC0750", [2500, 2450, 2250, 2100, 2000, 1900], 62, 3120, 19.5, 0x003F, 15, 397.25],
    [110, "Ciabatta", "CB0300", [2500, 2550, 2525, 2450, 2400, 2350], 140, 1320, 24.0, 0x007F, -15, 289.00],
    [111, "Κουλούρι", "KL0100", [2100, 2150, 2150, 2125, 2075, 2000], 220, 960, 8.5, 0x0017, 0, 187.50],
    [112, "Oven cleaning", "CLEAN", [2900, 2950, 2950, 2950, 2950, 2900], 5, 7200, 0.0, 0x8000, 0, 905.50],
]
# The belt's 0.05 m/min is shown as 0.50, the others lose their last digits: a save stores what is shown.
REWRITTEN = {("Steam %", 25.04), ("Gas kWh/t", 366.4975), ("Belt m/min", 5)}
SETUP = ["Mill Lane", "Ofen 4 – Süd", 240611704, 0x2F01003F, -1250, 6, 299.5, 18204.75]
SHIFTS = [[101 + day * 10 + shift, 18400 - day * 130 - shift * 1250, 96 + day * 7 + shift * 15, 4812.25 + day * 24.5
           - shift * 310.75] for day in range(5) for shift in range(3)]

# --------------------------------------------------------------------------------- showing and coding, as the editor


def put(item, value):
    """The words of a value, as bytes."""
    if item.type in (S16, S32):
        return value.to_bytes(2 * item.words, "little", signed=True)
    if item.type in (U16, U32, HEX16, HEX32):
        return value.to_bytes(2 * item.words, "little")
    if item.type in (FLOAT, DOUBLE):
        return struct.pack("<f" if item.type == FLOAT else "<d", value)
    return value.encode("utf-16-le" if item.unicode else "ascii").ljust(2 * item.words, b"\0")


def show(item, data):
    """The text that a cell shows for the words `data`."""
    raw, scale = int.from_bytes(data[:4], "little"), 10**item.decimals
    if item.type in (S16, S32):
        value = raw - 2**32 if raw >= 2**31 else raw
        if value > item.upper:
            value -= 65536
        if value < item.lower:
            value = 0
        if not item.decimals:
            return str(value)
        text = f"{math.trunc(value / scale)}." + str(value)[-item.decimals:].ljust(item.decimals, "0")
        return "-" + text if value < 0 and "-" not in text else text
    if item.type in (U16, U32):
        if not item.decimals:
            return str(raw - 2**32 if raw >= 2**31 else raw)
        return f"{raw // scale}." + str(raw % scale).ljust(item.decimals, "0")
    if item.type in (HEX16, HEX32):
        return f"{raw:X}"
    if item.type in (FLOAT, DOUBLE):
        value, = struct.unpack("<f" if item.type == FLOAT else "<d", data)
        if not item.lower <= value <= item.upper:
            return f"{value:e}"
        if not item.decimals:
            return str(math.trunc(value))
        width = item.integer + item.decimals + 1 if item.type == DOUBLE else 0
        return f"{value:{width}.{item.decimals}f}"
    if item.unicode:
        return data.decode("utf-16-le").partition("\0")[0]
    return data.partition(b"\0")[0].decode("ascii")


def code(item, text):
    """The words that the text of a cell is coded into."""
    if item.type <= U32:
        value = math.trunc(float(text) * 10**item.decimals) & 0xFFFFFFFF
        return value.to_bytes(4, "little")[:2 * item.words]
    if item.type in (HEX16, HEX32):
        return int(text, 16).to_bytes(4, "little")[:2 * item.words]
    return put(item, float(text) if item.type in (FLOAT, DOUBLE) else text)


def accepted(item, text):
    """Whether the editor takes the text back when a cell is entered and left again."""
    if item.type == STRING:
        return len(text) <= item.words
    if item.type in (HEX16, HEX32):
        value = int(text, 16)
        return len(text) <= item.integer and item.lower <= (value - 2**32 if value >= 2**31 else value) <= item.upper
    if not re.fullmatch(r"-?[0-9]+(\.[0-9]+)?", text):
        return False
    whole, _, fraction = text.partition(".")
    in_range = item.lower < float(text) <= item.upper or item.type <= U32 and item.lower <= float(text)
    return len(whole) <= item.integer and len(fraction) <= item.decimals and in_range


# ------------------------------------------------------------------------------------------------------- the files


def columns(items):
    """One item per column: an array stands once for each of its elements."""
    return [item for item in items for _ in range(item.array or 1)]


def flatten(values):
    return [part for value in values for part in (value if isinstance(value, list) else [value])]


def put_row(items, values):
    cells, parts = columns(items), flatten(values)
    assert len(cells) == len(parts), values
    return b"".join(put(item, value) for item, value in zip(cells, parts))


def check_rows(items, stretch):
    """Every value of the rows in `stretch` comes back as it was from its text, and its text is accepted."""
    position = 0
    while position < len(stretch):
        for item in columns(items):
            data = stretch[position:position + 2 * item.words]
            text = show(item, data)
            is_rewritten = any(name == item.description and put(item, value) == data for name, value in REWRITTEN)
            assert (code(item, text) == data) != is_rewritten, f"{item.description}: {text!r}, {data.hex(' ')}"
            assert accepted(item, text), f"{item.description}: {text!r} would be refused"
            position += len(data)
    assert position == len(stretch)


def recipe_file():
    setup = put_row(LINE_SETUP, SETUP)
    recipes = b"".join(put_row(OVEN_RECIPE, values) for values in RECIPES)
    shifts = b"".join(put_row(SHIFT_LOG, values) for values in SHIFTS)
    assert len(RECIPES) == RECIPE_ROWS

    check_rows(LINE_SETUP, setup)
    check_rows(OVEN_RECIPE, recipes)
    check_rows(RECIPE_WORDS, recipes)
    check_rows(SHIFT_LOG, shifts)

    image = setup.ljust(2 * RECIPES_AT, b"\0") + recipes
    assert len(image) <= 2 * SHIFTS_AT
    return image.ljust(2 * SHIFTS_AT, b"\0") + shifts


def fixed(text, units):
    """A zero-filled text field of so many UTF-16 units, with room for a terminating zero."""
    assert len(text) < units
    return text.encode("utf-16-le").ljust(2 * units, b"\0")


def item_record(item):
    record = struct.pack("<6i", 0, item.words, item.type, item.integer, item.decimals, item.code)
    record += fixed(item.description, 128)
    record += struct.pack("<4i2q2i", int(item.array > 0), -1, 0, item.array or -1, item.lower, item.upper,
                          item.unicode, 0)
    assert len(record) == 320
    return record


def library_file():
    data = fixed("RecipeFile2.0", 16) + struct.pack("<2i", RECIPES_AT, RECIPE_ROWS) + fixed("*.rcp", 16)
    for name, items in FORMATS:
        data += struct.pack("<i", 100) + fixed(name, 128) + struct.pack("<i", len(items))
        data += b"".join(item_record(item) for item in items) + struct.pack("<i", 200)
    return data


def notes_file():
    assert all(any(item.description == name for item in dict(FORMATS)[form]) for form, name in NOTES)
    formats = []
    for form in sorted({form for form, _ in NOTES}):
        items = [json.dumps({"item": name, **NOTES[of, name]}, ensure_ascii=False)
                 for of, name in sorted(NOTES) if of == form]
        formats.append("{" + f'"format": {json.dumps(form, ensure_ascii=False)}, "items": [\n    '
                       + ",\n    ".join(items) + "]}")
    return ('{"vantor": "notes", "version": 1, "formats": [\n  ' + ",\n  ".join(formats) + "]}\n").encode()


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent
    files = {"RecipeFile.Dat": library_file(), "RecipeFile.Notes.json": notes_file(), "bakery-oven.rcp": recipe_file()}
    for name, data in files.items():
        (folder / name).write_bytes(data)


if __name__ == "__main__":
    main()
