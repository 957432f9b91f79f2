#pragma once

#include "files/FieldTable.h"
#include "files/FileType.h"
#include "files/RecipeRows.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// What a save left in its file of the cells it wrote: words or fields, by the file's type.
struct SavedContent {
    CByteBuffer words;
    std::optional<CFieldTable> fields; ///< nothing where they are not known
};

/// The words that `bytes` are, as the state of a cell keeps them.
std::u16string WordsOf(std::span<const std::byte> bytes);

/// What the file holds of the cells that rows show, the other side of a plan of a save. What the rows show is fixed
/// when they are read; this here follows each save. Copies share what was read.
class CStoredCells {
public:
    /// What the file holds is not known, or there is none.
    CStoredCells() = default;

    /// Those of `rows`, which were read from a file of `type` that holds `fileBytes` (LogicalBytes in RecipeFile.h).
    CStoredCells(const CRecipeRows& rows, FileType type, std::uint64_t fileBytes);

    /// Those that a save of all cells of `rows` into a file of `type` left, which holds `fileBytes` since. Where few of
    /// them are others than `rows` were read from, they share the memory of those.
    CStoredCells(const CRecipeRows& rows, FileType type, std::uint64_t fileBytes, SavedContent saved);

    bool IsKnown() const { return m_isKnown; }
    FileType Type() const { return m_type; }                ///< of the file
    RecipeKind Kind() const;                                ///< how its words are coded
    std::uint64_t FileBytes() const { return m_fileBytes; } ///< that the file holds, stretch or not
    const CRecipeRows& Cells() const { return m_cells; }    ///< the cells as the file holds them; none is edited

    // Of a file of words.

    /// Fills `words`, which is as long as the cell is, with what the file holds of it, low bytes first: gives how many
    /// bytes lie within the file. Those behind its end are zero.
    std::size_t LoadWords(CellPlace place, std::span<std::byte> words) const;

    /// The words of `count` rows; nothing where the file does not hold all of them, or they do not lie in a row.
    std::optional<std::span<const std::byte>> WordsOfRows(std::int32_t first, std::int32_t count) const;

    /// The cells of `edits` have these words, or texts, in the file by now, and it holds `fileBytes`. In ascending
    /// order.
    void TakeWords(std::vector<CellEdit> edits, std::uint64_t fileBytes);

    // Of a table of texts.

    /// Whether the file has a field for the cell; one that it lacks shows "0".
    bool HasField(CellPlace place) const { return m_cells.HasField(place); }

private:
    void ShowSaved(const CRecipeRows& rows, CByteBuffer words);

    CRecipeRows m_cells;
    bool m_isKnown = false;
    FileType m_type = FileType::Rcp;
    std::uint64_t m_fileBytes = 0;
    std::uint64_t m_stretchBytes = 0; ///< of the cells' words, those within the file
};
