#pragma once

#include "changes/CellDifferences.h"
#include "changes/CellsNow.h"
#include "changes/OutsideWords.h"
#include "files/Outcome.h"
#include "files/Progress.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The other side of a comparison.
struct ComparedWith {
    std::u16string name; ///< what the user calls it
    CStoredCells cells;  ///< what it holds of the cells of the table, in the table's layout
    bool isSelf = false; ///< it is the file whose table is compared: its cells follow each save and reading
    /// All of its words; null where they cannot be read. Empty for a table of texts.
    std::function<std::shared_ptr<CWordBytes>()> openWords;
};

/// In what cells of a table another file differs from what they stand for (CCellsNow), and in what words outside of it
/// it differs from the table's file. Words are compared in files of one type that has words, else texts are, and no
/// words outside.
///
/// Counting goes on in slices, so that nobody waits for it; any cell can be asked for at once, and each edit is taken
/// into account at once.
class CTableComparison {
public:
    CTableComparison(const CRecipeRows& rows, const CStoredCells& stored, ComparedWith other);

    const std::u16string& Name() const { return m_other.name; }
    const CRecipeRows& Layout() const { return m_other.cells.Cells(); }

    /// Begins anew: the rows have another source, or the file holds other words. The file is that of `subject`, which
    /// has no path while it is none, and of `type`. Whoever compares ends the comparison instead where the rows are
    /// laid out otherwise.
    void Begin(ChangeSubject subject, FileType type);

    /// There is nothing that differs any more, and the rows are not looked at again.
    void End();
    bool HasEnded() const { return m_hasEnded; }

    bool IsFinished() const { return m_hasEnded || (m_isBegun && m_nextRow >= RowCount() && IsOutsideFinished()); }

    /// Goes on counting until `end`; false when there is more to count then. Throws std::bad_alloc.
    bool Continue(std::chrono::steady_clock::time_point end);

    /// Counts to the end, or until that is given up. Throws std::bad_alloc.
    Outcome Finish(CProgress& progress);

    /// The states of these cells changed. In ascending order, none twice. Throws std::bad_alloc.
    void Update(std::span<const CellPlace> cells);

    /// Whether the cell differs, counted or not.
    bool Differs(CellPlace place);

    /// The change from the cell to the other file's; its two sides are alike where they do not differ.
    ChangeRecord RecordOf(CellPlace place);

    /// What is known of them, in ascending order.
    const std::vector<CellPlace>& Places() const { return m_places; }

    /// The words outside; null while there are none to compare, or they are still to come.
    const COutsideWords* Outside() const { return m_outside.get(); }

    /// The words outside could not be read, or not all of them.
    bool IsOutsideUnknown() const { return m_isOutsideUnknown || (m_outside && m_outside->HasFailed()); }

    /// Another number whenever what is known may have become another; not when counting adds to it.
    std::uint64_t Edition() const { return m_edition; }

    ChangeHeader Header() const;

private:
    std::int32_t RowCount() const { return m_rows.RowCount(); }
    bool IsByText() const;
    bool IsOutsideFinished() const { return m_isOutsideBegun && (!m_outside || m_outside->IsFinished()); }
    void Step();
    void CompareNextRows();
    bool AreSame(std::int32_t first, std::int32_t count);
    void CompareRow(std::int32_t row);
    void BeginOutside();
    CCellsNow& Ours();
    CCellsNow& Theirs();

    const CRecipeRows& m_rows;
    const CStoredCells& m_stored;
    ComparedWith m_other;
    ChangeSubject m_subject;
    FileType m_type = FileType::Rcp;
    bool m_isBegun = false;
    bool m_takesStored = false; ///< the other side is what the table's file holds by now
    bool m_hasEnded = false;
    std::optional<CCellsNow> m_ours;   ///< made when it is asked for
    std::optional<CCellsNow> m_theirs; ///< likewise
    std::int32_t m_nextRow = 0;        ///< the first that was not looked at
    std::vector<CellPlace> m_places;
    std::unique_ptr<COutsideWords> m_outside;
    bool m_isOutsideBegun = false;
    bool m_isOutsideUnknown = false;
    std::uint64_t m_edition = 0;
};

/// What a comparison found, as changes from what the cells stand for to what the other file holds, in the order of the
/// addresses. It may be kept when the comparison has ended, and is empty then.
class CComparedChanges final : public CChangeList {
public:
    explicit CComparedChanges(std::shared_ptr<CTableComparison> comparison) : m_comparison(std::move(comparison)) {}

    std::size_t Count() const override;
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override { return m_comparison->Header(); }
    bool IsComplete() const override { return m_comparison->IsFinished(); }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override;

private:
    std::size_t CountBefore() const;

    std::shared_ptr<CTableComparison> m_comparison;
};
