#pragma once

#include "files/ChangeReason.h"
#include "files/FieldTable.h"
#include "files/StoredCells.h"
#include "files/StretchCoding.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// How many bytes the words of a cell take; 0 in a column that has none.
std::size_t BytesOfCell(const CRecipeRows& rows, CellPlace place);

/// The address of the cell's first word.
WordAddress AddressOfCell(const CRecipeRows& rows, CellPlace place);

/// A cell that a save changes in its file, and why.
struct PlannedChange {
    CellPlace place;
    ChangeReason why = ChangeReason::Edited;

    friend bool operator==(const PlannedChange&, const PlannedChange&) = default;
};

/// How a save writes.
enum class SaveForm {
    AllCells,    ///< each cell, as Save does
    EditedAlone, ///< only the edited ones, as SaveEdited does
};

/// Compares what a save stores for cells with what its file holds of them: the coding of a save, without its writing.
/// In a file of words a cell differs when its words do, in a table of texts when reading the saved table again shows
/// another text. There, a TAB or line feed in a text moves the texts of the row that come after it; the rows after a
/// line feed are taken as if it did not move them.
class CCellComparison {
public:
    /// All cells are looked at as those of rows that were read from a file of another type when `isOfOtherType` says
    /// so. `rows` and `stored` have the same layout and outlive the comparison; the states of their cells may change
    /// between two calls.
    CCellComparison(const CRecipeRows& rows, const CStoredCells& stored, bool isOfOtherType,
                    SaveForm form = SaveForm::AllCells);

    /// Why the cell is not in the file as a save would store it; nothing when it is.
    std::optional<ChangeReason> Compare(CellPlace place);

    /// The same for all cells of `count` rows, in order: those that differ are appended to `changes`.
    void Compare(std::int32_t first, std::int32_t count, std::vector<PlannedChange>& changes);

    /// The words that a save stores for the cell, low bytes first; good until the next call.
    std::span<const std::byte> NewWords(CellPlace place);

    /// The words that the file holds of it, as far as the file goes; good until the next call.
    std::span<const std::byte> OldWords(CellPlace place);

    /// How reading the saved file shows the cell again.
    std::u16string ReadAgain(CellPlace place);

    /// How the words that the file holds of the cell are shown, or its field; nothing where the file ends before it.
    std::optional<std::u16string> OldText(CellPlace place);

private:
    bool IsTable() const { return m_stored.Type() == FileType::Csv; }
    std::u16string FieldReadAgain(CellPlace place, std::u16string text,
                                  const std::optional<CFieldTable>& cutLine) const;
    std::optional<CFieldTable> CutLineOf(CellPlace place) const;
    CFieldTable SavedLine(std::int32_t row) const;
    std::u16string TextOfWords(CellPlace place, std::span<const std::byte> words) const;
    void CompareRow(std::int32_t row, std::optional<std::span<const std::byte>> stored,
                    std::span<const std::byte> coded, std::vector<PlannedChange>& changes);
    void CompareFields(std::int32_t first, std::int32_t count, std::vector<PlannedChange>& changes) const;
    std::optional<ChangeReason> CompareWords(CellPlace place, std::span<const std::byte> stored,
                                             std::span<const std::byte> coded) const;
    std::optional<ChangeReason> CompareField(CellPlace place, std::u16string text,
                                             const std::optional<CFieldTable>& cutLine) const;
    std::optional<ChangeReason> GivenReason(CellPlace place) const;
    ChangeReason ReasonOf(const ColumnCoding& coding, std::span<const std::byte> stored) const;

    const CRecipeRows& m_rows;
    const CStoredCells& m_stored;
    bool m_isOfOtherType;
    SaveForm m_form;
    CStretchCoder m_coder;
    std::vector<std::byte> m_coded; ///< of the rows that are compared
    std::vector<std::byte> m_new;
    std::vector<std::byte> m_old;
};
