#pragma once

#include "files/StoredCells.h"

#include <filesystem>
#include <vector>

/// The cells of which `ours` and `theirs`, of one layout and type, hold other bytes, in ascending order; of a table of
/// texts, those that show another text. Where one of them ends before a cell and the other does not, it is another.
std::vector<CellPlace> DifferencesOf(const CStoredCells& ours, const CStoredCells& theirs);

/// Whether the file at `path` is certain to hold the words of all cells as `stored` has them: found out piece by piece.
/// False also for a table of texts, and where cells are kept one by one. Never writes.
bool StillHolds(const std::filesystem::path& path, const CStoredCells& stored);

/// `cells` with those at `places` as `other`, of the same layout and type, holds them; one that it does not hold whole
/// stays. Throws std::bad_alloc.
CStoredCells WithCellsOf(CStoredCells cells, const CStoredCells& other, const std::vector<CellPlace>& places);
