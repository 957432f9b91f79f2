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

/// What a save codes of a cell; `state` is that of an edited one, else null.
CCellState StateToKeep(const CRecipeRows& rows, CellPlace place, const CCellState* state)
{
    if (state == nullptr)
        return {};
    return state->IsUntouched() ? CCellState::OfText(rows.Text(place.row, place.column)) : *state;
}

/// Fills `cell` but for its place and state. What it had keeps its memory: there may be a million.
void FillOld(const WorkInProgress& work, UnsavedCell& cell)
{
    const CStoredCells& stored = work.shown.stored.IsKnown() ? work.shown.stored : work.shown.known;
    cell.oldWords.clear();
    cell.oldText.reset();
    if (work.file.empty()) {
        cell.oldText = NewText(work.shown.rows.Columns()[cell.place.column]);
    } else if (stored.IsKnown() && work.type != FileType::Csv) {
        cell.oldWords.resize(BytesOfCell(work.shown.rows, cell.place));
        cell.oldWords.resize(stored.LoadWords(cell.place, cell.oldWords));
    } else if (stored.IsKnown() && stored.HasField(cell.place)) {
        cell.oldText = stored.Cells().Text(cell.place.row, cell.place.column);
    }
}

/// What a journal says of the work.
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

} // namespace

UnsavedCell UnsavedCellOf(const WorkInProgress& work, CellPlace place, CCellState state)
{
    UnsavedCell cell{place, std::move(state), {}, {}};
    FillOld(work, cell);
    return cell;
}

void CUnsavedKeeper::Note(const WorkInProgress& work, std::span<const CellEdit> cells) noexcept
{
    if (!IsOn())
        return;
    const auto note = [&] {
        if (!m_journal || m_isIncomplete)
            return BeginAnew(work, false);
        m_journal->BeginCommand(cells.size());
        UnsavedCell kept;
        work.shown.rows.ForEachOf(cells,
                                  [&](CellPlace place, const CCellState* state) { Add(work, place, state, kept); });
        EndCommand();
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
    const CRecipeRows& rows = work.shown.rows;
    m_journal = CJournal::Begin(m_dataFolder, HeaderOf(work), m_fault);
    m_isIncomplete = false;
    if (!m_journal)
        return;
    m_journal->BeginCommand(rows.EditedCount());
    UnsavedCell kept;
    rows.ForEachEdited([&](CellPlace place, const CCellState& state) { Add(work, place, &state, kept); });
    EndCommand();
}

/// `kept` is where it is made.
void CUnsavedKeeper::Add(const WorkInProgress& work, CellPlace place, const CCellState* state, UnsavedCell& kept)
{
    kept.place = place;
    kept.state = StateToKeep(work.shown.rows, place, state);
    FillOld(work, kept);
    m_journal->Add(kept);
}

void CUnsavedKeeper::EndCommand()
{
    m_fault = m_journal->EndCommand() ? std::error_code() : m_journal->LastError();
}
