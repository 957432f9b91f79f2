#pragma once

#include "changes/ChangeTaker.h"
#include "changes/FileTables.h"
#include "changes/ZoneDifferences.h"
#include "files/RowPieces.h"

#include <cstddef>
#include <memory>
#include <span>

/// A table in a file of any type, of which the rows are taken one after the other.
struct TableSide {
    FileType type = FileType::Rcp;
    std::unique_ptr<CRowPieces> rows;
};

/// Hands over the cells of a table that show other texts in one file than in another; `table` counts `tables`. Where
/// both files are paged, and so code alike, a cell counts whose words alone differ, too.
ZoneEnd CompareTexts(std::span<const FileTable> tables, std::size_t table, const TableSide& before,
                     const TableSide& after, CChangeTaker& taker, CProgress& progress);
