#pragma once

#include "library/LibraryMerge.h"

#include <cstddef>
#include <optional>
#include <vector>

// A table shows rows by a copy of a format, while the library goes on. What the copy's items are in the library by
// now is told by their names.

/// The index of the format that `used` is a copy of: of those with its name the first whose items are read alike, else
/// the first of them; nothing where none has its name.
std::optional<std::size_t> FormatInUse(const Formats& formats, const DataFormat& used);

/// For each item of `used` the position of its item in `format`: of the same name, and read alike; nothing for one
/// without. Items that share a name go with each other in order, as long as both formats have as many of them.
std::vector<std::optional<std::size_t>> ItemsInUse(const DataFormat& format, const DataFormat& used);

/// An item of a library, by the indices of its format and of itself.
struct LibraryItem {
    std::size_t format = 0;
    std::size_t item = 0;
};

/// Where the item that the column at `column` of `used` shows stands in `formats`; nothing when it is another one there
/// by now, or gone.
std::optional<LibraryItem> ItemOfColumn(const Formats& formats, const DataFormat& used, std::size_t column);

/// Gives each item of `used` that `formats` still have the notes that it has there. False when all had these already.
bool TakeNotesFrom(const Formats& formats, DataFormat& used);
