#include "document/EditMemory.h"
#include "document/RecipeDocument.h"
#include "files/StoredDifferences.h"

#include <algorithm>
#include <utility>

namespace fs = std::filesystem;

namespace {

/// Ends a hold when it goes.
class CReleasing {
public:
    explicit CReleasing(CFileLock& lock) : m_lock(lock) {}
    ~CReleasing() { m_lock.Release(); }
    CReleasing(const CReleasing&) = delete;
    CReleasing& operator=(const CReleasing&) = delete;

private:
    CFileLock& m_lock;
};

/// What has the name; none where that cannot be told.
fs::file_type TypeAt(const fs::path& path)
{
    std::error_code ignored;
    return fs::status(path, ignored).type();
}

} // namespace

CFileLock::State CRecipeDocument::Hold(const fs::path& path)
{
    m_held = path;
    return m_lock.Take(path, kLongestLockWait);
}

/// The plan of a write starts from what another program wrote meanwhile.
SaveResult CRecipeDocument::Guarded(const WriteOrder& order, CProgress& progress, const Writing& write)
{
    m_notes = {};
    const bool isHeld = std::exchange(m_held, {}) == order.path;
    if (!isHeld)
        m_lock.Take(order.path, kLongestLockWait, [&] { return progress.Advance(0, 1); });
    if (m_lock.Now() == CFileLock::State::GivenUp)
        return {.isGivenUp = true};
    const CReleasing releasing(m_lock);
    m_notes.wasBusy = m_lock.Now() == CFileLock::State::Busy;
    LearnStored();
    const FileLook look = order.path == m_strFilePath ? Look() : FileLook();
    m_notes.overwritten = Overwritten(look.changes, order.written);
    SaveResult result{.isHeldBack = m_notes.overwritten && order.rule == ForeignRule::HoldBack};
    if (!result.isHeldBack) {
        const std::vector<CellPlace> left = LeftAlone(look, order.written);
        if (look.changes && order.written != Written::OwnWords)
            StartFrom(look.changes->after);
        KeepVersion(order, progress);
        result = write({order.path, m_lock.File()});
        if (look.changes)
            NoteStillUnknown(*look.changes, result.isSaved ? left : look.changes->places, result);
    }
    return result;
}

/// Of what another program changed, that which is not written.
std::vector<CellPlace> CRecipeDocument::LeftAlone(const FileLook& look, Written written) const
{
    if (!look.changes || written == Written::AllCells)
        return {};
    std::vector<CellPlace> places = look.changes->places;
    if (written == Written::EditedCells)
        std::erase_if(places, [this](CellPlace place) { return m_shown.rows.IsEdited(place.row, place.column); });
    return places;
}

/// What another program changed, and a write left as it is, is as unknown to the user as before.
void CRecipeDocument::NoteStillUnknown(const ForeignChanges& changes, const std::vector<CellPlace>& places,
                                       const SaveResult& result)
{
    const bool mayHaveWritten = !result.isGivenUp && !result.isLeftOut;
    if (mayHaveWritten && m_shown.stored.IsKnown())
        WithMemoryFor([&] { m_shown.known = WithCellsOf(m_shown.stored, changes.before, places); });
}

/// Of what another program changed, that which is written over by other words; null for nothing.
std::shared_ptr<const ForeignChanges> CRecipeDocument::Overwritten(const std::shared_ptr<const ForeignChanges>& changes,
                                                                   Written written) const
{
    if (!changes || written == Written::OwnWords)
        return nullptr;
    std::shared_ptr<const ForeignChanges> overwritten = changes;
    WithMemoryFor([&] {
        CCellComparison cells(m_shown.rows, changes->after, false);
        auto others = std::make_shared<ForeignChanges>(*changes);
        std::erase_if(others->places, [&](CellPlace place) {
            const bool isWritten = written == Written::AllCells || m_shown.rows.IsEdited(place.row, place.column);
            return !isWritten || !cells.Compare(place);
        });
        overwritten = others->places.empty() ? nullptr : std::move(others);
    });
    return overwritten;
}

/// Without memory for it nobody can tell.
FileLook CRecipeDocument::Look() const
{
    FileLook look;
    if (!HasRowsOfFile() || !m_shown.known.IsKnown() || m_shown.known.Type() != m_nFileType)
        return look;
    WithMemoryFor([&] { look = LookAtCells(); });
    return look;
}

FileLook CRecipeDocument::LookAtCells() const
{
    switch (TypeAt(m_strFilePath)) {
    case fs::file_type::not_found:
        return {FileLook::State::Gone, nullptr};
    case fs::file_type::regular:
        break;
    case fs::file_type::none:
        return {};
    default:
        return {FileLook::State::NoFile, nullptr};
    }
    if (StillHolds(m_strFilePath, m_shown.known))
        return {};
    CStoredCells after = ReadStored(m_shown.rows);
    if (!after.IsKnown())
        return {};
    auto places = DifferencesOf(m_shown.known, after);
    if (places.empty())
        return {};
    return {FileLook::State::Changed, std::make_shared<ForeignChanges>(ForeignChanges{
                                          m_strFilePath, m_shown.known, std::move(after), std::move(places)})};
}

/// The file could not be read after a save, and may be by now.
void CRecipeDocument::LearnStored()
{
    if (!HasRowsOfFile() || m_strFilePath.empty() || m_shown.stored.IsKnown())
        return;
    m_shown.stored = ReadStored(m_shown.rows);
    m_storedEdition += m_shown.stored.IsKnown() ? 1U : 0U;
    if (!m_shown.known.IsKnown())
        m_shown.known = m_shown.stored;
    ForgetPlan();
}

void CRecipeDocument::CheckPlan()
{
    LearnStored();
    if (m_nFileType != FileType::Csv || !CanPlan())
        return;
    const auto bytes = LogicalBytes(m_nFileType, m_strFilePath);
    if (!bytes || *bytes == m_nPlannedBytes)
        return;
    m_nPlannedBytes = *bytes;
    ForgetPlan();
}

/// The plan, and what can be put back, start from what the file holds.
void CRecipeDocument::StartFrom(CStoredCells stored)
{
    m_shown.stored = std::move(stored);
    ++m_storedEdition;
    m_pStoredAsShown.reset();
    ForgetPlan();
    FollowRows(false);
}

void CRecipeDocument::KeepShown(const ForeignChanges& changes)
{
    if (changes.path != m_strFilePath || !changes.after.Cells().IsLaidOutLike(m_shown.rows))
        return;
    m_shown.known = changes.after;
    StartFrom(changes.after);
}
