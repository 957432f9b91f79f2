#pragma once

#include "files/CellState.h"
#include "files/FileType.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"
#include "model/NumberChange.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

/// What a command would make of a cell.
struct CellVerdict {
    enum class Kind {
        LeftAlone, ///< it has that value already, or the command has none for it
        Changes,
        Refused, ///< it cannot have that value
    };

    Kind kind = Kind::LeftAlone;
    CCellState state;           ///< that it is to have, or has already; of a refused one untouched
    std::u16string text;        ///< the same for the user: the text, or the number that the words are
    std::u16string reason;      ///< of a refused one: a part of a sentence
    bool isTextRefused = false; ///< by the check of texts

    static CellVerdict Refused(std::u16string reason) { return {Kind::Refused, {}, {}, std::move(reason)}; }
};

/// Judges what cells would become, and changes nothing: the one place that says which value a command may give a cell,
/// in which state, and why not.
class CCellJudge {
public:
    /// The rows are to be saved as `type`, and the file holds `stored` of them. Both outlive the judge; a judge that is
    /// asked again sees the cells as they are then.
    CCellJudge(const CRecipeRows& rows, const CStoredCells& stored, FileType type)
        : m_rows(rows),
          m_stored(stored),
          m_type(type)
    {
    }

    /// `text` as a user types it: the cell's check decides, and the text stays as it is.
    CellVerdict Typed(CellPlace place, std::u16string_view text) const;

    /// `text` as Typed, but a text that is no number in full is refused in a column of numbers, and a number of which a
    /// save would store another one is stored exactly.
    CellVerdict Entered(CellPlace place, std::u16string_view text) const;

    /// `number`, rounded to the item's decimals, half away from zero, and stored exactly.
    CellVerdict Number(CellPlace place, const CDecimal& number) const { return Changed(place, number, {}); }

    /// The cell's number (NumberIn), changed. The result is stored exactly; in a table of texts it is one with the
    /// item's decimals.
    CellVerdict Changed(CellPlace place, const NumberChange& change) const;

    /// What one cell has, for others of its column: its text where it was given one that is not saved yet, or words are
    /// not its to have, else the very words.
    CCellState ContentOf(CellPlace place) const;
    CellVerdict Copied(CellPlace place, const CCellState& content) const;

    /// The words that a cell stands for, as many as it takes: the file's, zeros past its end, or, of an edited cell and
    /// one that shows something else than another program wrote there, those that a save stores.
    std::u16string WordsIn(CellPlace place) const { return WordsIn(place, IsStored(place)); }

    /// The number that a cell stands for: that of a text or words that it was given and that are not saved yet, else
    /// the one that the file holds, or that is shown instead of what another program wrote there. Nothing where that is
    /// none.
    std::optional<CDecimal> NumberIn(CellPlace place) const;

    /// Whether cells may be given the very words.
    bool TakesWords() const { return m_type != FileType::Csv && m_rows.IsOfWords(); }

private:
    CellVerdict Changed(CellPlace place, const CDecimal& number, const NumberChange& change) const;
    CellVerdict OfText(CellPlace place, std::u16string_view text) const;
    CellVerdict OfWords(CellPlace place, const std::u16string& words, std::u16string text) const;
    std::u16string WordsIn(CellPlace place, bool isStored) const;
    bool IsStoredKnown() const { return m_stored.IsKnown() && m_stored.Type() == m_type; }
    bool IsStored(CellPlace place) const
    {
        return IsStoredKnown() && !m_rows.IsEdited(place.row, place.column) && !IsOtherInFile(place);
    }
    bool IsOtherInFile(CellPlace place) const;
    std::u16string WordsOfText(CellPlace place, std::u16string_view text) const;
    bool HasWords(CellPlace place, std::u16string_view words) const;
    const ColumnCoding& CodingOf(CellPlace place) const { return m_rows.Columns()[place.column]; }

    RecipeKind Kind() const { return IsPaged(m_type) ? RecipeKind::Paged : RecipeKind::Flat; }

    const CRecipeRows& m_rows;
    const CStoredCells& m_stored;
    FileType m_type;
};
