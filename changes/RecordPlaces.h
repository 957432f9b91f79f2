#pragma once

#include "changes/ChangeRecord.h"
#include "changes/ChangeSyntax.h"
#include "changes/FileTables.h"
#include "files/CellState.h"
#include "files/FileType.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

/// The file that records are to be found in, as far as it says where they stand.
struct RecordFile {
    FileType type = FileType::Rcp;

    /// How it is laid out: a record's `table` counts them. One without columns is of a format that is not known, and
    /// nothing that it says of rows and titles can be held against a record with words.
    std::span<const FileTable> tables;

    /// Where it may end, in bytes, before or after the change: a value has fewer words there.
    std::vector<std::uint64_t> ends;
};

/// The cell of a table.
struct TableCell {
    std::size_t table = 0;
    CellPlace place;

    friend bool operator==(const TableCell&, const TableCell&) = default;
};

/// A record that stands for no cell: words that no table knows as a value, zeros, a line, a field after the last
/// column, the form.
struct NoCell {};

/// Where the record stands: in the cell that its row and column say, its row and the one item of that title, or else
/// its address. The answer is what is wrong instead, without a line number, where no cell is there though one must be
/// (the record has a row, an item or no words), or where the layout says otherwise than the record: of the address, the
/// title or how many words the value has.
std::variant<TableCell, NoCell, ChangeFault> PlaceOf(const ChangeRecord& record, const RecordFile& file);
