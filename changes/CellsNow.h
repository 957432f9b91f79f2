#pragma once

#include "files/StoredCells.h"
#include "files/StretchCoding.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What the cells of rows stand for in a file of a type: an edited one for what a save would code, all others for what
/// the file holds.
class CCellsNow {
public:
    /// Those of `rows`, of which the file holds `stored`; where that is not known, or of another type, all cells stand
    /// for what a save would code. Both outlive this here, and keep their source; the states of cells may change.
    CCellsNow(const CRecipeRows& rows, const CStoredCells& stored, FileType type);

    /// Those of a file that was only read.
    explicit CCellsNow(const CStoredCells& stored) : CCellsNow(stored.Cells(), stored, stored.Type()) {}

    const CRecipeRows& Rows() const { return m_rows; }
    FileType Type() const { return m_type; }

    /// The words of the cell, low bytes first; good until the next call. Fewer, or none, where a flat file ends before
    /// them: a paged one goes on with zeros. Of a file of words.
    std::span<const std::byte> Words(CellPlace place);

    /// How these words are shown, or the field of a table of texts; nothing where the file ends before it.
    std::optional<std::u16string> Text(CellPlace place);

    /// The words of `count` rows, where they are the file's and lie in one piece, and no cell of them is edited.
    std::optional<std::span<const std::byte>> WordsOfRows(std::int32_t first, std::int32_t count);

    /// Cells were edited, or are edited no more.
    void EditsChanged() { m_nextEdited.reset(); }

private:
    bool IsStored(CellPlace place) const { return m_isStoredKnown && !m_rows.IsEdited(place.row, place.column); }
    bool HasEdited(std::int32_t first, std::int32_t count);

    const CRecipeRows& m_rows;
    const CStoredCells& m_stored;
    FileType m_type;
    bool m_isStoredKnown;
    CStretchCoder m_coder;
    std::vector<std::byte> m_words;
    std::int32_t m_askedFrom = 0;             ///< the row that m_nextEdited was sought from
    std::optional<std::int32_t> m_nextEdited; ///< the first row from there with an edited cell, or that after the last
};
