// What can be had back of the open recipe: earlier versions of its file, and edits that were not saved.

#include "changes/SaveRecords.h"
#include "changes/WordDifferences.h"
#include "disk/TemporaryFile.h"
#include "document/EditMemory.h"
#include "document/RecipeDocument.h"
#include "files/RecipeReplacement.h"

#include <algorithm>
#include <utility>

namespace fs = std::filesystem;

void CRecipeDocument::KeepVersionsIn(const CVersionStore& store, std::u16string command)
{
    m_pVersions = &store;
    m_command = std::move(command);
}

void CRecipeDocument::KeepVersion(const WriteOrder& order, CProgress& progress)
{
    if (m_pVersions == nullptr)
        return;
    const std::u16string_view command = m_command.empty() ? order.command : std::u16string_view(m_command);
    m_notes.version = m_pVersions->Keep(order.path, command);
    if (m_notes.version->result == VersionKept::Result::NeedsChanges)
        m_notes.version = KeepChanges(order, command, progress);
}

/// What is about to change in a file that is too large to be copied.
VersionKept CRecipeDocument::KeepChanges(const WriteOrder& order, std::u16string_view command, CProgress& progress)
{
    VersionKept kept{.reason = u"There is not enough memory for its changes"};
    WithMemoryFor(
        [&] { kept = order.rehearse ? KeepRehearsed(order, command) : KeepPlanned(order, command, progress); });
    return kept;
}

VersionKept CRecipeDocument::KeepPlanned(const WriteOrder& order, std::u16string_view command, CProgress& progress)
{
    const ChangeSubject subject{order.path, std::u16string(TextOf(Format().name))};
    if (order.written == Written::EditedCells)
        return m_pVersions->KeepChanges(order.path, command, CEditedChanges(m_shown.rows, m_shown.stored, subject));
    BeginPlan();
    if (!m_plan.IsBegun() || m_plan.Finish(progress) != Outcome::Done)
        return {.reason = u"What changes is not known"};
    return m_pVersions->KeepChanges(order.path, command, CPlannedChanges(m_plan, subject));
}

/// The write is made to a copy beside the file, which goes again.
VersionKept CRecipeDocument::KeepRehearsed(const WriteOrder& order, std::u16string_view command) const
{
    const fs::path copy = LinkTarget(order.path).parent_path() / TemporaryName();
    VersionKept kept{.reason = u"There is no room for its changes"};
    if (order.rehearse(copy)) {
        CFileWords before(order.type, order.path);
        CFileWords after(order.type, copy);
        const CWordDifferences changes(before, after, order.type, order.path);
        if (before.IsOpen() && after.IsOpen() && changes.IsRead())
            kept = m_pVersions->KeepChanges(order.path, command, changes);
    }
    std::error_code ignored;
    fs::remove(copy, ignored);
    return kept;
}

/// Makes `copy` what the file at `old` will be once the rows have taken its place as a file of `type`.
bool CRecipeDocument::MakeReplaced(FileType type, const fs::path& old, const fs::path& copy) const
{
    CSilentReporter nobody;
    CNoProgress progress;
    const bool isMadeAnew = type == FileType::Rcp && m_settings.startAddress != 0;
    return isMadeAnew ? ReplaceRecipe(type, m_shown.rows, copy, m_settings.startAddress, nobody, progress).isSaved
                      : SaveRecipeCopy(type, m_shown.rows, old, copy, nobody, progress).isSaved;
}

/// Counts as a save that the rows shown do not know of.
void CRecipeDocument::NoteRestored(VersionKept kept)
{
    m_notes = {.version = std::move(kept)};
    m_pStoredAsShown.reset();
    m_history.ForgetSaved();
    ++m_saves;
}

WorkInProgress CRecipeDocument::Work() const
{
    return {m_strFilePath, m_nFileType, m_shown};
}

/// Other rows are shown, or their file holds other words.
void CRecipeDocument::FollowRows(bool areEditsDropped)
{
    if (m_shown.areOfFile)
        m_unsaved.BeginAnew(Work(), areEditsDropped);
    else
        m_unsaved.Drop();
}

bool CRecipeDocument::IsLaidOutFor(const WorkHeader& work) const
{
    return m_shown.areOfFile && work.file == m_strFilePath && work.type == m_nFileType &&
           LayOutRows({work.format, work.startAddress, work.rowCount}).IsLaidOutLike(m_shown.rows);
}

std::vector<UnsavedCell> CRecipeDocument::PutBackUnsaved(const UnsavedWork& work, EditOutcome& outcome)
{
    std::vector<UnsavedCell> others;
    std::vector<CellEdit> edits;
    outcome = WithMemoryFor([&] {
        const bool isLaidOut = IsLaidOutFor(work.header);
        for (const UnsavedCell& cell : work.cells) {
            const CellEdit edit{cell.place, cell.state};
            if (isLaidOut && MayHaveState(edit) && UnsavedCellOf(Work(), cell.place, cell.state) == cell)
                edits.push_back(edit);
            else
                others.push_back(cell);
        }
    });
    if (outcome == EditOutcome::Made)
        outcome = SetStates(EditKind::PutBack, std::move(edits));
    return others;
}
