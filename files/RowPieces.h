#pragma once

#include "files/FileType.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"
#include "files/WordBytes.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>

/// The rows of one table of a recipe file, from the first to the last, some hundred KiB of them at a time: each cell
/// shows what it does in the table as a whole (ReadRecipeOnly), and no more of the file is kept. Never writes. Throws
/// std::bad_alloc.
class CRowPieces {
public:
    virtual ~CRowPieces() = default;
    CRowPieces(const CRowPieces&) = delete;
    CRowPieces& operator=(const CRowPieces&) = delete;

    /// Takes the next rows. False after the last ones, and after a failure.
    virtual bool Next() = 0;

    /// The file cannot be read.
    bool HasFailed() const { return m_hasFailed; }

    /// The first row of the piece, counted in the table.
    std::int32_t First() const { return m_first; }

    /// Its rows, laid out from word address 0 on; good until Next.
    const CRecipeRows& Rows() const { return m_rows; }

    /// What the file holds of them. Its size is that of their words alone, as far as the file goes.
    CStoredCells Stored() const { return {m_rows, m_type, m_bytes}; }

protected:
    /// `layout` is that of the whole table, of which only the geometry counts.
    CRowPieces(FileType type, const CRecipeRows& layout) : m_type(type), m_layout(layout) {}

    const CRecipeRows& Layout() const { return m_layout; }
    std::int32_t NextRow() const { return m_next; }
    std::int32_t RowsLeft() const { return m_layout.RowCount() - m_next; }

    /// The next `count` rows are the piece, of which the file holds `bytes`; they have no cells yet.
    CRecipeRows& Begin(std::int32_t count, std::uint64_t bytes);
    bool Fail();

private:
    const FileType m_type;
    CRecipeRows m_layout;
    CRecipeRows m_rows;
    std::int32_t m_first = 0;
    std::int32_t m_next = 0; ///< the first row that comes after the piece
    std::uint64_t m_bytes = 0;
    bool m_hasFailed = false;
};

/// The rows of a table in a file of words of `type`, which `words` are read from; they outlive the pieces.
std::unique_ptr<CRowPieces> PiecesOfWords(FileType type, const CRecipeRows& layout, CWordBytes& words);

/// The rows of the table of texts at `path`.
std::unique_ptr<CRowPieces> PiecesOfTexts(const CRecipeRows& layout, const std::filesystem::path& path);
