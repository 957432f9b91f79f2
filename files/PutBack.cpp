#include "files/PutBack.h"

#include "files/CsvPutBack.h"
#include "files/RecipeFile.h"
#include "files/RecipeMessages.h"
#include "files/WordRuns.h"
#include "text/FileMessages.h"

#include <algorithm>
#include <new>
#include <optional>

namespace {

/// What goes back into a file of words.
class CWordsBack {
public:
    /// `now` is what the file holds by now.
    CWordsBack(const SavedChanges& saved, const CRecipeRows& rows, const CStoredCells& now)
        : m_saved(saved),
          m_layout(saved.after.Cells()),
          m_rows(rows),
          m_now(now)
    {
    }

    /// The length to which a file that grew is cut.
    std::optional<std::uint64_t> Length() const
    {
        const std::uint64_t grown = m_saved.after.FileBytes();
        if (IsPaged(m_saved.after.Type()) || m_now.FileBytes() != grown || grown == m_saved.before.FileBytes())
            return std::nullopt;
        const auto last = std::find_if(m_saved.changes.rbegin(), m_saved.changes.rend(),
                                       [this](const PlannedChange& change) { return !GoesBack(change); });
        const std::uint64_t kept = last == m_saved.changes.rend() ? 0 : EndOf(last->place);
        return std::max(m_saved.before.FileBytes(), kept);
    }

    /// The words before `length`.
    CWordRuns Runs(std::optional<std::uint64_t> length) const
    {
        CWordRuns runs;
        for (const PlannedChange& change : m_saved.changes) {
            const WordAddress first = AddressOfCell(m_layout, change.place);
            if (!GoesBack(change) || (length && FirstByteOf(first).number >= *length))
                continue;
            runs.Append(first, Words(m_saved.before, change.place));
        }
        return runs;
    }

private:
    std::uint64_t EndOf(CellPlace place) const
    {
        return (FirstByteOf(AddressOfCell(m_layout, place)) + BytesOfCell(m_layout, place)).number;
    }

    std::vector<std::byte> Words(const CStoredCells& cells, CellPlace place) const
    {
        std::vector<std::byte> words(BytesOfCell(m_layout, place));
        cells.LoadWords(place, words);
        return words;
    }

    bool GoesBack(const PlannedChange& change) const
    {
        const bool isEdited = m_rows.IsLaidOutLike(m_layout) && m_rows.IsEdited(change.place.row, change.place.column);
        return change.why != ChangeReason::Edited && !isEdited &&
               Words(m_now, change.place) == Words(m_saved.after, change.place);
    }

    const SavedChanges& m_saved;
    const CRecipeRows& m_layout; ///< of the rows that were saved
    const CRecipeRows& m_rows;
    const CStoredCells& m_now;
};

/// The fields that stay as the file shows them now: those edited at the save, and since.
std::vector<CellPlace> KeptFields(const SavedChanges& saved, const CRecipeRows& rows)
{
    std::vector<CellPlace> kept;
    for (const PlannedChange& change : saved.changes)
        if (change.why == ChangeReason::Edited)
            kept.push_back(change.place);
    if (rows.IsLaidOutLike(saved.after.Cells())) {
        const auto since = rows.EditedPlaces();
        kept.insert(kept.end(), since.begin(), since.end());
    }
    std::sort(kept.begin(), kept.end());
    kept.erase(std::unique(kept.begin(), kept.end()), kept.end());
    return kept;
}

SaveResult PutTableBack(const SavedChanges& saved, const CRecipeRows& rows, CReporter& reporter, CProgress& progress)
{
    const CRecipeRows& layout = saved.after.Cells();
    const auto kept = KeptFields(saved, rows);
    const CsvPutBack back{saved.oldTable->Bytes(), static_cast<std::size_t>(layout.RowCount()), layout.Columns().size(),
                          *layout.Fields(), kept};
    return PutBackCsv(back, saved.path, reporter, progress);
}

SaveResult PutWordsBack(const SavedChanges& saved, const CRecipeRows& rows, const CStoredCells& now, CFile* held,
                        CReporter& reporter)
{
    const CWordsBack back(saved, rows, now);
    const auto length = back.Length();
    return WriteWordRuns(saved.after.Type(), back.Runs(length), {saved.path, held}, length, reporter);
}

} // namespace

std::size_t SavedChanges::UneditedCount() const
{
    const auto edited = std::count_if(changes.begin(), changes.end(),
                                      [](const PlannedChange& change) { return change.why == ChangeReason::Edited; });
    return changes.size() - static_cast<std::size_t>(edited) + dropped;
}

SaveResult PutBack(const SavedChanges& saved, const CRecipeRows& rows, CReporter& reporter, CProgress& progress,
                   CFile* held)
try {
    if (saved.after.Type() == FileType::Csv)
        return PutTableBack(saved, rows, reporter, progress);
    const CStoredCells now = ReadStoredCells(saved.after.Cells(), saved.after.Type(), saved.path);
    if (now.IsKnown())
        return PutWordsBack(saved, rows, now, held, reporter);
    ShowFileError(reporter, kSaveFileError, saved.path);
    return {};
} catch (const std::bad_alloc&) {
    ShowFileError(reporter, SaveErrorOf(saved.after.Type()), saved.path);
    return {};
}

std::size_t CountPutBack(const SavedChanges& saved)
try {
    const CRecipeRows& layout = saved.after.Cells();
    const CStoredCells now = ReadStoredCells(layout, saved.after.Type(), saved.path);
    if (!now.IsKnown())
        return 0;
    CCellComparison cellsBefore(layout, saved.before, false);
    CCellComparison cellsNow(layout, now, false);
    const bool isTable = saved.after.Type() == FileType::Csv;
    const auto isBack = [&](const PlannedChange& change) {
        if (change.why == ChangeReason::Edited)
            return false;
        return isTable ? cellsNow.OldText(change.place) == cellsBefore.OldText(change.place)
                       : std::ranges::equal(cellsNow.OldWords(change.place), cellsBefore.OldWords(change.place));
    };
    const auto back = std::count_if(saved.changes.begin(), saved.changes.end(), isBack);
    return static_cast<std::size_t>(back) + saved.dropped;
} catch (const std::bad_alloc&) {
    return 0;
}
