#include "cli/SetCommand.h"

#include "cli/OpenRecipe.h"
#include "text/FileMessages.h"

#include <utility>

namespace {

/// False, and then reported, when an order is refused or there is no memory for the edits.
bool SetStates(CRecipeDocument& document, const SetOptions& options, CReporter& reporter)
{
    auto edits = CellEditsOf(document.Rows(), document.Type(), options.orders, options.conditions, reporter);
    if (!edits)
        return false;
    if (document.SetStates(EditKind::Typing, std::move(*edits)) != EditOutcome::OutOfMemory)
        return true;
    reporter.ShowError(kNoMemoryForEdit);
    return false;
}

/// A file that is left out is one that cannot be opened: a script is told of it.
bool Save(CRecipeDocument& document, CReporter& reporter)
{
    CNoProgress progress;
    const SaveResult result = document.Write(document.Type(), document.Path(), reporter, progress);
    if (result.isLeftOut)
        ShowFileError(reporter, kSaveFileError, document.Path());
    return result.isSaved;
}

} // namespace

bool SetCells(const SetOptions& options, CReporter& reporter)
{
    CRecipeDocument document;
    return OpenAndRead(document, options.file, options.read, reporter) && SetStates(document, options, reporter) &&
           Save(document, reporter);
}
