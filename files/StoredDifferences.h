#pragma once

#include "files/StoredCells.h"

#include <vector>

/// The cells of which `ours` and `theirs`, of one layout and type, hold other bytes, in ascending order; of a table of
/// texts, those that show another text. Where one of them ends before a cell and the other does not, it is another.
std::vector<CellPlace> DifferencesOf(const CStoredCells& ours, const CStoredCells& theirs);
