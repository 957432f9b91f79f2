#include "document/UnsavedKeeper.h"

#include "document/EditMemory.h"
#include "files/CellComparison.h"

#include <utility>

namespace {

/// What an untouched cell of a new document shows.
std::u16string NewText(const ColumnCoding& coding)
{
    return coding.dataType == DataType::String ? u"" : u"0";
}

/// What a save codes. Each look-up counts where a million cells are pasted.
CCellState StateOfEdited(const CRecipeRows& rows, CellPlace place)
{
    const CCellState& state = rows.State(place);
    return state.IsUntouched() ? CCellState::OfText(rows.Text(place.row, place.column)) : state;
}

CCellState StateOf(const CRecipeRows& rows, CellPlace place)
{
    return rows.IsEdited(place.row, place.column) ? StateOfEdited(rows, place) : CCellState();
}

} // namespace

WorkHeader HeaderOf(const WorkInProgress& work)
{
    return {.file = work.file,
            .type = work.type,
            .readAs = work.shown.readAs,
            .format = work.shown.settings.format,
            .startAddress = work.shown.settings.startAddress,
            .rowCount = work.shown.settings.rowCount,
            .begun = UtcNow()};
}

UnsavedCell UnsavedCellOf(const WorkInProgress& work, CellPlace place, CCellState state)
{
    UnsavedCell cell{place, std::move(state), {}, {}};
    const CStoredCells& stored = work.shown.stored;
    if (work.file.empty()) {
        cell.oldText = NewText(work.shown.rows.Columns()[place.column]);
    } else if (stored.IsKnown() && work.type != FileType::Csv) {
        cell.oldWords.resize(BytesOfCell(work.shown.rows, place));
        cell.oldWords.resize(stored.LoadWords(place, cell.oldWords));
    } else if (stored.IsKnown() && stored.HasField(place)) {
        cell.oldText = stored.Cells().Text(place.row, place.column);
    }
    return cell;
}

void CUnsavedKeeper::Note(const WorkInProgress& work, std::span<const CellEdit> cells) noexcept
{
    if (!IsOn())
        return;
    const auto note = [&] {
        if (!m_journal || m_isIncomplete)
            return BeginAnew(work, false);
        std::vector<UnsavedCell> changed;
        changed.reserve(cells.size());
        for (const CellEdit& cell : cells)
            changed.push_back(UnsavedCellOf(work, cell.place, StateOf(work.shown.rows, cell.place)));
        Append(changed);
    };
    if (WithMemoryFor(note) == EditOutcome::Made)
        return;
    m_isIncomplete = true;
    m_fault = std::make_error_code(std::errc::not_enough_memory);
}

void CUnsavedKeeper::BeginAnew(const WorkInProgress& work, bool isDropped) noexcept
{
    auto before = std::exchange(m_journal, {});
    if (IsOn() && work.shown.rows.EditedCount() > 0 &&
        WithMemoryFor([&] { Begin(work); }) != EditOutcome::Made) // the old one stays meanwhile
        m_fault = std::make_error_code(std::errc::not_enough_memory);
    if (!before)
        return;
    if (isDropped)
        before->Drop();
    else if (m_journal || work.shown.rows.EditedCount() == 0)
        before->End();
    else
        m_journal = std::move(before);
}

void CUnsavedKeeper::End() noexcept
{
    if (m_journal)
        m_journal->End();
    m_journal.reset();
    m_fault = {};
}

void CUnsavedKeeper::Drop() noexcept
{
    if (m_journal)
        m_journal->Drop();
    m_journal.reset();
    m_fault = {};
}

bool CUnsavedKeeper::Flush() noexcept
{
    if (!m_journal)
        return !m_fault;
    const bool isFlushed = m_journal->Flush();
    if (!m_isIncomplete)
        m_fault = isFlushed ? std::error_code() : m_journal->LastError();
    return isFlushed && !m_isIncomplete;
}

/// With all that is edited.
void CUnsavedKeeper::Begin(const WorkInProgress& work)
{
    std::vector<UnsavedCell> cells;
    cells.reserve(work.shown.rows.EditedCount());
    for (const CellPlace place : work.shown.rows.EditedPlaces())
        cells.push_back(UnsavedCellOf(work, place, StateOfEdited(work.shown.rows, place)));
    if (cells.empty())
        return;
    m_journal = CJournal::Begin(m_dataFolder, HeaderOf(work), m_fault);
    m_isIncomplete = false;
    if (m_journal)
        Append(cells);
}

void CUnsavedKeeper::Append(const std::vector<UnsavedCell>& cells)
{
    m_fault = m_journal->Append(cells) ? std::error_code() : m_journal->LastError();
}
