#include "cli/SetCommand.h"

#include "changes/SaveRecords.h"
#include "cli/KeptVersions.h"
#include "cli/OpenRecipe.h"
#include "cli/PrintedChanges.h"
#include "files/RecipeMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace fs = std::filesystem;

namespace {

/// What happens to values that nobody set.
struct Unedited {
    std::size_t count = 0;
    bool isAnyDropped = false; ///< texts of a table that are left out
    bool canStay = true;       ///< a save of the edited cells alone is possible
};

enum class Tense { Past, Future };

/// False, and then reported, when an order is refused or there is no memory for the edits.
bool SetStates(CRecipeDocument& document, const SetOptions& options, CReporter& reporter)
{
    auto edits =
        CellEditsOf(document.Rows(), document.Stored(), document.Type(), options.orders, options.conditions, reporter);
    if (!edits)
        return false;
    if (document.SetStates(EditKind::Typing, std::move(*edits)) != EditOutcome::OutOfMemory)
        return true;
    reporter.ShowError(kNoMemoryForEdit);
    return false;
}

void Tell(const Unedited& values, Tense tense, const CRecipeDocument& document, CReporter& reporter)
{
    if (values.count == 0)
        return;
    const bool isOne = values.count == 1;
    const bool isPast = tense == Tense::Past;
    const std::u16string_view pattern =
        isOne ? u"%s: %d value that %s not set %s %s." : u"%s: %d values that %s not set %s %s.";
    const std::u16string_view present = isOne ? u"is" : u"are";
    const std::u16string_view past = isOne ? u"was" : u"were";
    std::u16string text =
        FillMessage(pattern, {PathText(document.Path()), static_cast<std::int64_t>(values.count),
                              isPast ? past : present, isPast ? past : u"will be",
                              values.isAnyDropped ? u"stored as shown or dropped" : u"stored as shown"});
    if (values.canStay)
        text += isOne ? u" With --only-edited it stays as it is." : u" With --only-edited they stay as they are.";
    reporter.ShowError(text);
}

void CountToTheEnd(CRecipeDocument& document, CProgress& progress)
{
    constexpr std::chrono::milliseconds kSlice{100};
    const auto rows = static_cast<std::uint64_t>(document.Rows().RowCount());
    while (!document.ContinuePlan(std::chrono::steady_clock::now() + kSlice))
        progress.Advance(static_cast<std::uint64_t>(document.Plan().NextRow()), rows);
}

/// A file that is left out is one that cannot be opened: a script is told of it.
bool IsSaved(const SaveResult& result, const CRecipeDocument& document, CReporter& reporter)
{
    if (const auto& version = document.LastSave().version; version && (result.isSaved || result.mayHoldOldAndNew))
        TellUnlessKept(*version, document.Path(), reporter);
    if (result.isLeftOut)
        ShowFileError(reporter, kSaveFileError, document.Path());
    return result.isSaved;
}

bool SaveEditedCells(CRecipeDocument& document, CReporter& reporter, CProgress& progress)
{
    return IsSaved(document.WriteEdited(reporter, progress), document, reporter);
}

bool SaveAllCells(CRecipeDocument& document, CReporter& reporter, CProgress& progress)
{
    CountToTheEnd(document, progress);
    const bool canStay = document.Plan().FormFault().empty();
    if (!IsSaved(document.Write(document.Type(), document.Path(), reporter, progress), document, reporter))
        return false;
    if (const auto& changes = document.StoredAsShown())
        Tell({changes->UneditedCount(), changes->dropped > 0, canStay}, Tense::Past, document, reporter);
    return true;
}

ChangeSubject SubjectOf(const CRecipeDocument& document)
{
    return {document.Path(), std::u16string(TextOf(document.Format().name))};
}

bool ForetellEditedCells(const CRecipeDocument& document, CStandardOutput& output, CReporter& reporter,
                         CProgress& progress)
{
    if (!document.MayWriteEdited(reporter, progress))
        return false;
    PrintChanges(CEditedChanges(document.Rows(), document.Stored(), SubjectOf(document)), output);
    return output.Finish(reporter);
}

bool ForetellAllCells(CRecipeDocument& document, CStandardOutput& output, CReporter& reporter, CProgress& progress)
{
    CountToTheEnd(document, progress);
    const CSavePlan& plan = document.Plan();
    if (!plan.IsWhole()) {
        ShowFileError(reporter, SaveErrorOf(document.Type()), document.Path());
        return false;
    }
    PrintChanges(CPlannedChanges(plan, SubjectOf(document)), output);
    if (!output.Finish(reporter))
        return false;
    Tell({plan.CountOfUneditedValues(), !plan.Dropped().empty(), plan.FormFault().empty()}, Tense::Future, document,
         reporter);
    return true;
}

} // namespace

bool SetCells(const SetOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress)
{
    const CVersionStore versions = UsersVersions();
    CRecipeDocument document;
    if (!options.noVersion)
        document.KeepVersionsIn(versions, u"set");
    const bool isHeld = options.dryRun || HoldForWriting(document, options.file, reporter);
    if (!isHeld || !OpenAndRead(document, options.file, options.read, reporter, progress) ||
        !SetStates(document, options, reporter))
        return false;
    if (options.dryRun)
        return options.onlyEdited ? ForetellEditedCells(document, output, reporter, progress)
                                  : ForetellAllCells(document, output, reporter, progress);
    return options.onlyEdited ? SaveEditedCells(document, reporter, progress)
                              : SaveAllCells(document, reporter, progress);
}
