#include "disk/Replacement.h"
#include "document/EditMemory.h"
#include "document/RecipeDocument.h"
#include "document/TableExport.h"
#include "files/CsvPutBack.h"
#include "files/EditedSave.h"
#include "files/RecipeMessages.h"
#include "files/RecipeReplacement.h"
#include "model/CellCheck.h"
#include "model/StoredNumber.h"

#include <algorithm>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostFollowed = 4096;                    // cells of an edit; for more a plan begins anew
constexpr std::size_t kMostTableBytes = std::size_t{64} << 20; // of a table that is kept to be put back

std::u16string WordsOf(const CStoredCells& stored, const CRecipeRows& rows, CellPlace place)
{
    std::vector<std::byte> bytes(BytesOfCell(rows, place));
    stored.LoadWords(place, bytes);
    return ::WordsOf(bytes);
}

/// Makes `copy` what the file will be once `saved` is put back.
bool RehearsePutBack(const SavedChanges& saved, const CRecipeRows& rows, const fs::path& copy)
{
    CReplacement file(copy);
    if (!file.IsOpen() || !file.AppendFile(saved.path) || !file.Finish())
        return false;
    SavedChanges ofCopy;
    ofCopy.path = copy;
    ofCopy.before = saved.before;
    ofCopy.after = saved.after;
    ofCopy.changes = saved.changes;
    CSilentReporter nobody;
    CNoProgress progress;
    return PutBack(ofCopy, rows, nobody, progress).isSaved;
}

} // namespace

bool CRecipeDocument::CanPlan() const
{
    return HasRowsOfFile() && m_shown.stored.IsKnown() && m_shown.stored.Type() == m_nFileType;
}

void CRecipeDocument::ForgetPlan()
{
    m_plan.Stop();
    m_isPlanStale = true;
    CompareAnew(); // which hangs on the same rows and stored words
}

void CRecipeDocument::BeginPlan()
{
    if (!m_isPlanStale || !CanPlan())
        return;
    m_isPlanStale = false; // without memory for it, it is not tried again and again
    WithMemoryFor([this] { m_plan.Begin(m_shown.rows, m_shown.stored, m_strFilePath, m_shown.readAs != m_nFileType); });
}

bool CRecipeDocument::ContinuePlan(std::chrono::steady_clock::time_point end)
{
    BeginPlan();
    return m_plan.Continue(end);
}

/// What it takes to follow a large edit is better spent when nobody waits.
void CRecipeDocument::FollowEdit(const CellsStep& step) noexcept
{
    if (!m_plan.IsBegun() && !m_comparison)
        return;
    const auto follow = [&] {
        std::vector<CellPlace> places;
        std::transform(step.edits.begin(), step.edits.end(), std::back_inserter(places),
                       [](const CellEdit& edit) { return edit.place; });
        m_plan.Update(places);
        if (m_comparison)
            m_comparison->Update(places);
    };
    if (step.edits.size() > kMostFollowed || WithMemoryFor(follow) != EditOutcome::Made)
        ForgetPlan();
}

std::optional<ChangeReason> CRecipeDocument::WhyChanged(CellPlace place)
{
    BeginPlan();
    return m_plan.IsBegun() ? m_plan.WhyChanged(place) : std::nullopt;
}

std::optional<CellOutlook> CRecipeDocument::OutlookOf(CellPlace place)
{
    const auto why = WhyChanged(place);
    if (!why)
        return std::nullopt;
    CCellComparison cells(m_shown.rows, m_shown.stored, false);
    CellOutlook outlook{*why, cells.OldText(place), m_shown.rows.Text(place.row, place.column), cells.ReadAgain(place)};
    const ColumnCoding& coding = m_shown.rows.Columns()[place.column];
    if (m_nFileType == FileType::Csv || coding.dataType == DataType::String)
        return outlook;
    if (outlook.holds)
        outlook.holds = StoredNumberText(coding, cells.OldWords(place));
    outlook.stores = StoredNumberText(coding, cells.NewWords(place));
    return outlook;
}

/// All that a save changes, still without what it leaves; null where nothing is planned, or it is not to be known.
std::shared_ptr<SavedChanges> CRecipeDocument::ChangesToCome(CProgress& progress, Outcome& outcome)
{
    if (m_nFileType == FileType::Csv) // others may have written lines that are not shown
        ForgetPlan();
    BeginPlan();
    outcome = m_plan.IsBegun() ? m_plan.Finish(progress) : Outcome::Failed;
    if (outcome != Outcome::Done || m_plan.CountOfUneditedValues() == 0)
        return nullptr;
    auto changes = std::make_shared<SavedChanges>();
    changes->path = m_strFilePath;
    changes->before = m_shown.stored;
    changes->changes = m_plan.Changes();
    changes->dropped = m_plan.Dropped().size();
    if (m_nFileType == FileType::Csv)
        changes->oldTable = ReadWholeFile(m_strFilePath, kMostTableBytes);
    return changes;
}

SaveResult CRecipeDocument::Write(FileType type, const fs::path& path, CReporter& reporter, CProgress& progress,
                                  ForeignRule rule)
{
    return Guarded({.command = u"Save", .type = type, .path = path, .rule = rule}, progress,
                   [&](const WriteTarget& target) { return WriteAll(type, target, reporter, progress); });
}

SaveResult CRecipeDocument::WriteAll(FileType type, const WriteTarget& target, CReporter& reporter, CProgress& progress)
{
    std::shared_ptr<SavedChanges> changes;
    Outcome planned = Outcome::Failed;
    if (type == m_nFileType &&
        target.path == m_strFilePath) // without memory for it there is nothing to put back, that is all
        WithMemoryFor([&] { changes = ChangesToCome(progress, planned); });
    if (planned == Outcome::GivenUp)
        return {.isGivenUp = true};
    const SaveResult result = WriteRows(type, target, reporter, progress);
    if (!result.isSaved || !changes)
        return result;
    changes->after = m_shown.stored;
    m_pStoredAsShown = std::move(changes);
    return result;
}

SaveResult CRecipeDocument::WriteRows(FileType type, const WriteTarget& target, CReporter& reporter,
                                      CProgress& progress)
{
    if (!m_shown.areOfFile) {
        ShowFileError(reporter, SaveErrorOf(type), target.path);
        return {};
    }
    SavedContent saved;
    const SaveResult result = SaveRecipe(type, m_shown.rows, target, reporter, progress, &saved);
    if (result.isSaved) {
        m_shown.stored = CStoredCells();
        WithMemoryFor([&] {
            if (const auto bytes = LogicalBytes(type, target.path))
                m_shown.stored = CStoredCells(m_shown.rows, type, *bytes, std::move(saved));
        });
        NoteSaved();
    }
    NoteFailed(result, target.path);
    return result;
}

void CRecipeDocument::NoteSaved()
{
    m_shown.rows.MarkSaved();
    ++m_storedEdition;
    m_shown.known = m_shown.stored;
    m_shown.saves = ++m_saves;
    m_pStoredAsShown.reset();
    ForgetPlan();
    m_unsaved.End();
}

/// A failed save may have written all the same: what is planned starts from what the file holds, if that can be read.
/// A torn one holds no state that can be reached.
void CRecipeDocument::NoteFailed(const SaveResult& result, const fs::path& path)
{
    const bool mayHaveWritten = !result.isSaved && !result.isGivenUp && !result.isLeftOut;
    if (!mayHaveWritten || path != m_strFilePath)
        return;
    if (result.mayHoldOldAndNew) {
        m_history.ForgetSaved();
        m_pStoredAsShown.reset();
    }
    ReadStoredAgain();
}

void CRecipeDocument::ReadStoredAgain()
{
    ForgetPlan();
    m_shown.stored = ReadStored(m_shown.rows);
    ++m_storedEdition;
    if (!m_shown.stored.IsKnown())
        return; // what the user and the journal know of it stays
    m_shown.known = m_shown.stored;
    FollowRows(false);
}

SaveResult CRecipeDocument::WriteEdited(CReporter& reporter, CProgress& progress, ForeignRule rule)
{
    if (m_shown.rows.ShowsTheSameEverywhere())
        return {.isLeftOut = true};
    LearnStored();
    if (!CanPlan()) {
        ShowFileError(reporter, SaveErrorOf(m_nFileType), m_strFilePath);
        return {};
    }
    return Guarded({u"Save edited only", m_nFileType, m_strFilePath, Written::EditedCells, rule}, progress,
                   [&](const WriteTarget& target) {
                       const SaveResult result = SaveEdited(m_shown.rows, m_shown.stored, target, reporter, progress);
                       if (result.isSaved)
                           NoteSaved();
                       NoteFailed(result, m_strFilePath);
                       return result;
                   });
}

bool CRecipeDocument::MayWriteEdited(CReporter& reporter, CProgress& progress) const
{
    if (!CanPlan()) {
        ShowFileError(reporter, SaveErrorOf(m_nFileType), m_strFilePath);
        return false;
    }
    return FileBytesAfterEdited(m_shown.rows, m_shown.stored, m_strFilePath, reporter, progress).has_value();
}

SaveResult CRecipeDocument::PutBackStored(CReporter& reporter, CProgress& progress, std::size_t& count)
{
    if (!m_pStoredAsShown)
        return {};
    const auto saved = m_pStoredAsShown;
    const bool isCurrent = saved->path == m_strFilePath && m_shown.areOfFile;
    const CRecipeRows none;
    const auto rehearse = [&](const fs::path& copy) {
        return RehearsePutBack(*saved, isCurrent ? m_shown.rows : none, copy);
    };
    const WriteOrder order{.command = u"Put back",
                           .type = saved->after.Type(),
                           .path = saved->path,
                           .written = Written::OwnWords,
                           .rehearse = rehearse};
    const SaveResult result = Guarded(order, progress, [&](const WriteTarget& target) {
        const SaveResult putBack = PutBack(*saved, isCurrent ? m_shown.rows : none, reporter, progress, target.held);
        NoteFailed(putBack, saved->path);
        if (putBack.isSaved && saved->path == m_strFilePath)
            ReadStoredAgain();
        return putBack;
    });
    if (!result.isSaved)
        return result;
    m_pStoredAsShown.reset();
    count = CountPutBack(*saved);
    if (saved->path == m_strFilePath)
        m_shown.saves = ++m_saves;
    return result;
}

bool CRecipeDocument::CanKeepStored(CellPlace place)
{
    const auto why = HasExactWords() ? WhyChanged(place) : std::nullopt;
    return why && *why != ChangeReason::Edited && *why != ChangeReason::End;
}

EditOutcome CRecipeDocument::KeepStored(std::span<const CellPlace> places)
{
    std::vector<CellEdit> edits;
    const auto collect = [&] {
        for (const CellPlace place : places)
            if (CanKeepStored(place))
                edits.push_back({place, CCellState::OfWords(WordsOf(m_shown.stored, m_shown.rows, place))});
    };
    const EditOutcome outcome = WithMemoryFor(collect);
    return outcome == EditOutcome::Made ? SetStates(EditKind::KeepStored, std::move(edits)) : outcome;
}

std::optional<TypedValue> CRecipeDocument::JudgeTyped(CellPlace place) const
{
    const CCellState& state = m_shown.rows.State(place);
    if (m_nFileType == FileType::Csv || !state.IsText())
        return std::nullopt;
    const RecipeKind kind = IsPaged(m_nFileType) ? RecipeKind::Paged : RecipeKind::Flat;
    return ::JudgeTyped(m_shown.rows.Columns()[place.column], kind, state.Text());
}

/// The words that store a typed number exactly, where a save would store others.
std::optional<std::u16string> CRecipeDocument::ExactWordsOf(CellPlace place) const
{
    auto judged = HasExactWords() ? JudgeTyped(place) : std::nullopt;
    return judged ? std::move(judged->exactWords) : std::nullopt;
}

EditOutcome CRecipeDocument::StoreExactly(std::span<const CellPlace> places)
{
    std::vector<CellEdit> edits;
    const auto collect = [&] {
        for (const CellPlace place : places)
            if (const auto words = ExactWordsOf(place))
                edits.push_back({place, CCellState::OfWords(*words)});
    };
    const EditOutcome outcome = WithMemoryFor(collect);
    return outcome == EditOutcome::Made ? SetStates(EditKind::StoreExactly, std::move(edits)) : outcome;
}

EditOutcome CRecipeDocument::TakeOver(std::vector<CellEdit> edits, std::size_t* refused)
{
    const std::size_t count = std::erase_if(edits, [this](const CellEdit& edit) { return !MayTake(edit); });
    if (refused != nullptr)
        *refused = count;
    return SetStates(EditKind::TakeOver, std::move(edits));
}

/// A table of texts takes any.
bool CRecipeDocument::MayTake(const CellEdit& edit) const
{
    if (!MayHaveState(edit))
        return false;
    const bool isChecked = edit.other.IsText() && m_nFileType != FileType::Csv;
    return !isChecked || ValidateCellValue(m_shown.rows.Columns()[edit.place.column], edit.other.Text());
}

bool CRecipeDocument::MayHaveState(const CellEdit& edit) const
{
    if (!m_shown.rows.HasCell(edit.place))
        return false;
    return !edit.other.IsExact() ||
           (HasExactWords() && 2 * edit.other.Words().size() == BytesOfCell(m_shown.rows, edit.place));
}

SaveResult CRecipeDocument::SaveAs(FileType type, const fs::path& path, CReporter& reporter, CProgress& progress)
{
    if (!MaySaveAs(type, path, reporter))
        return {};
    const auto rehearse = [&](const fs::path& copy) { return MakeReplaced(type, path, copy); };
    return Guarded({.command = u"Save as", .type = type, .path = path, .rehearse = rehearse}, progress,
                   [&](const WriteTarget& target) { return WriteAs(type, target, reporter, progress); });
}

SaveResult CRecipeDocument::WriteAs(FileType type, const WriteTarget& target, CReporter& reporter, CProgress& progress)
{
    const fs::path& path = target.path;
    const bool isReady = PrepareSaveAs(type, path, m_settings.startAddress, reporter);
    const SaveResult result = isReady ? WriteRows(type, target, reporter, progress) : SaveResult();
    const bool isNameKept = !isReady && type == FileType::Rcp; // kept: even when the file cannot be created
    if (result.isSaved || isNameKept) {
        m_shown.names = m_strFilePath == path ? m_names : ++m_names;
        m_strFilePath = path;
        m_nFileType = type;
        m_shown.readAs = type;
    }
    if (isNameKept) {
        m_shown.stored = CStoredCells();
        m_shown.known = CStoredCells();
        ForgetPlan();
        FollowRows(false);
    }
    return result;
}

SaveResult CRecipeDocument::Replace(FileType type, const fs::path& path, CReporter& reporter)
{
    if (!MaySaveAs(type, path, reporter))
        return {};
    CNoProgress progress;
    const auto rehearse = [&](const fs::path& copy) { return MakeReplaced(type, path, copy); };
    return Guarded({.command = u"Convert", .type = type, .path = path, .rehearse = rehearse}, progress,
                   [&](const WriteTarget&) {
                       return ReplaceRecipe(type, m_shown.rows, path, m_settings.startAddress, reporter, progress);
                   });
}

SaveResult CRecipeDocument::WriteTable(const CTableExport& table, const fs::path& path, CReporter& reporter,
                                       CProgress& progress)
{
    if (IsSameFile(path, m_strFilePath)) {
        ShowFileError(reporter, u"%s is the open file. A table for other programs needs another name!", path);
        return {};
    }
    const auto rehearse = [&table](const fs::path& copy) {
        CNoProgress unseen;
        return table.Write(copy, unseen) == Outcome::Done;
    };
    return Guarded({.command = u"Export table", .type = FileType::Csv, .path = path, .rehearse = rehearse}, progress,
                   [&](const WriteTarget& target) {
                       const Outcome outcome = table.Write(target.path, progress);
                       if (HasFailed(outcome))
                           ShowFileError(reporter, kSaveFileError, path);
                       return ResultOf(outcome);
                   });
}

SaveResult CRecipeDocument::WriteCopy(FileType type, const fs::path& path, CReporter& reporter, CProgress& progress)
{
    if (!MaySaveAs(type, path, reporter))
        return {};
    if (IsSameFile(path, m_strFilePath)) {
        ShowFileError(reporter, u"%s is the open file. A copy needs another name!", path);
        return {};
    }
    const bool isOfRows = type != m_nFileType || m_strFilePath.empty();
    const auto write = [&](const fs::path& target, CReporter& told, CProgress& shown) {
        return isOfRows ? ReplaceRecipe(type, m_shown.rows, target, m_settings.startAddress, told, shown)
                        : SaveRecipeCopy(type, m_shown.rows, m_strFilePath, target, told, shown);
    };
    const auto rehearse = [&](const fs::path& copy) {
        CSilentReporter nobody;
        CNoProgress unseen;
        return isOfRows ? MakeReplaced(type, path, copy) : write(copy, nobody, unseen).isSaved;
    };
    return Guarded({.command = u"Save a copy", .type = type, .path = path, .rehearse = rehearse}, progress,
                   [&](const WriteTarget& target) { return write(target.path, reporter, progress); });
}

bool CRecipeDocument::MaySaveAs(FileType type, const fs::path& path, CReporter& reporter) const
{
    if (!HasRowsOfFile())
        ShowFileError(reporter, SaveErrorOf(type), path);
    return HasRowsOfFile();
}
