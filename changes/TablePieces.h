#pragma once

#include "changes/FileTables.h"
#include "files/FileType.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RowPieces.h"

#include <cstddef>
#include <filesystem>
#include <span>

/// Takes the rows of tables piece by piece.
class CPieceTaker {
public:
    enum class Answer {
        GoOn,
        NextTable, ///< nothing more of this one
        End,
    };

    virtual ~CPieceTaker() = default;

    /// The next rows of the table with that index. They are good until this returns.
    virtual Answer Take(std::size_t table, const FileTable& layout, const CRowPieces& rows) = 0;
};

/// Hands the rows of all tables of the recipe file at `path` to `taker`, one table after the other. No more of the file
/// is kept than a piece. Never writes; reports nothing. GivenUp when the taker ended it, or `progress` did; Failed when
/// the file cannot be read or memory does not suffice for a piece; the taker may have got some rows then.
Outcome WalkTables(FileType type, const std::filesystem::path& path, std::span<const FileTable> tables,
                   CPieceTaker& taker, CProgress& progress);

/// How many of the piece's rows the file holds in part at least; those of a table of texts are whole lines.
std::int32_t RowsInFile(const CRowPieces& rows);

/// Whether all words of that row of the piece are in the file; a line of texts is whole.
bool IsWholeRow(const CRowPieces& rows, std::int32_t row);
