// A patch for the cells of the open recipe.

#include "document/EditMemory.h"
#include "document/RecipeDocument.h"
#include "text/FileMessages.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace fs = std::filesystem;

bool CRecipeDocument::ReadPatch(const fs::path& path, ReadCellPatch& read, CReporter& reporter,
                                CProgress& progress) const
{
    std::error_code ignored;
    std::ifstream input;
    if (fs::is_regular_file(path, ignored)) // a pipe would wait for its other end
        input.open(path, std::ios::binary);
    const auto take = [&] {
        const FileTable table{std::u16string(TextOf(Format().name)), m_shown.rows};
        read = ReadPatchFor(input, table, m_nFileType, HasExactWords(), progress);
    };
    if (input.is_open() && WithMemoryFor(take) == EditOutcome::Made && !input.bad())
        return true;
    ShowFileError(reporter, kOpenFileError, path);
    return false;
}

std::shared_ptr<const CChangeList> CRecipeDocument::ChangesBy(const CellPatch& patch,
                                                              std::shared_ptr<const CChangeList>& others) const
{
    std::shared_ptr<const CChangeList> changes;
    WithMemoryFor([&] {
        CCellsNow now(m_shown.rows, m_shown.stored, m_nFileType);
        const auto differing = OthersThan(patch, now);
        if (differing.empty())
            changes = std::make_shared<CKnownChanges>(ChangesOf(patch, now));
        else
            others = std::make_shared<CKnownChanges>(ExpectedAndFound(patch, differing, now));
    });
    return changes;
}

EditOutcome CRecipeDocument::ApplyPatch(const CellPatch& patch)
{
    std::vector<CellEdit> edits;
    const auto collect = [&] {
        CCellsNow now(m_shown.rows, m_shown.stored, m_nFileType);
        if (OthersThan(patch, now).empty())
            edits = EditsOf(patch);
        if (!std::all_of(edits.begin(), edits.end(), [this](const CellEdit& edit) { return MayHaveState(edit); }))
            edits.clear();
    };
    const EditOutcome outcome = WithMemoryFor(collect);
    return outcome == EditOutcome::Made ? SetStates(EditKind::ApplyPatch, std::move(edits)) : outcome;
}
