#pragma once

#include "changes/ChangeRecord.h"
#include "files/RecipeRows.h"
#include "model/DataFormat.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// One table of a recipe file: how some of its words are laid out.
struct FileTable {
    std::u16string format; ///< its name
    CRecipeRows layout;    ///< its geometry; the cells are none
};

/// The table that `format` makes of `rowCount` rows from word `start` on. The caller has seen to it that it can be
/// shown (ShowLimits.h). A format without words has no rows and no columns.
FileTable MakeTable(const DataFormat& format, std::int32_t start, std::int32_t rowCount);

/// How many whole rows of `format` a file of words that holds `bytes` has from word `start` on.
std::int64_t WholeRows(const DataFormat& format, std::int32_t start, std::uint64_t bytes);

/// The tables as a header of changes names them.
std::vector<ChangedTable> NamesOf(std::span<const FileTable> tables);

/// Some words of a file that follow each other: those of a table, or some outside all of them.
struct FileZone {
    std::optional<std::size_t> table; ///< which; nothing for words outside
    std::uint64_t begin = 0;          ///< in bytes
    std::uint64_t end = 0;
};

/// The zones of a file of words that holds `bytes`, in the order of their begins; one begins before that end. Those
/// outside end there; a table has all its rows. Words in two tables are in two zones.
std::vector<FileZone> ZonesOf(std::span<const FileTable> tables, std::uint64_t bytes);
