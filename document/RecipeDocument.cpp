#include "document/RecipeDocument.h"

#include "document/EditMemory.h"
#include "files/RecipeMessages.h"
#include "files/RecipeReplacement.h"
#include "files/ShowLimits.h"
#include "text/FileMessages.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

namespace {

std::vector<CellEdit> EditsOf(const CRecipeRows& rows, std::vector<TextForCell> texts)
{
    std::erase_if(texts, [&rows](const TextForCell& text) { return !rows.HasCell(text.place); });
    const auto isBefore = [](const TextForCell& a, const TextForCell& b) { return a.place < b.place; };
    if (!std::is_sorted(texts.begin(), texts.end(), isBefore))
        std::stable_sort(texts.begin(), texts.end(), isBefore);
    std::vector<CellEdit> edits;
    edits.reserve(texts.size());
    for (TextForCell& text : texts) {
        if (!edits.empty() && edits.back().place == text.place)
            edits.pop_back();
        edits.push_back({text.place, CCellState::OfText(std::move(text.text))});
    }
    return edits;
}

} // namespace

/// A journal whose edits were undone tells of nothing.
CRecipeDocument::~CRecipeDocument()
{
    if (m_shown.rows.EditedCount() == 0)
        m_unsaved.End();
}

void CRecipeDocument::Start()
{
    m_unsaved.Drop();
    EndComparison();
    m_bFileOpen = true;
    m_shown = {};
    ++m_cellsEdition;
    ForgetPlan();
    m_bFirstReading = true;
    m_history.Clear(!m_bModified);
}

void CRecipeDocument::StartNew()
{
    Start();
    m_bNewFile = true;
    m_strFilePath.clear(); // the type keeps its value
}

void CRecipeDocument::StartOpen(const fs::path& path, std::optional<FileType> type)
{
    Start();
    m_strFilePath = path;
    m_nFileType = type.value_or(m_nFileType);
}

CRecipeDocument::Reading CRecipeDocument::Read(FileType type, CReporter& reporter, CProgress& progress)
{
    return Read(type, Access::AsOpened, reporter, progress);
}

CRecipeDocument::Reading CRecipeDocument::ReadOnly(CReporter& reporter, CProgress& progress)
{
    return Read(m_nFileType, Access::ReadOnly, reporter, progress);
}

CRecipeDocument::Reading CRecipeDocument::Read(FileType type, Access access, CReporter& reporter, CProgress& progress)
{
    ShownRows shown;
    Reading reading = Reading::Failed;
    const auto work = [&] {
        reading = FillRows(shown, type, access, reporter, progress);
        ShowOther(std::move(shown));
    };
    if (WithMemoryFor(work) == EditOutcome::Made)
        return reading;
    ShowFileError(reporter, OpenErrorOf(type), m_strFilePath);
    return Reading::Failed;
}

/// Leaves no rows where there are none to be shown.
CRecipeDocument::Reading CRecipeDocument::FillRows(ShownRows& shown, FileType type, Access access, CReporter& reporter,
                                                   CProgress& progress) const
{
    if (m_settings.format.totalLength() == 0 || m_settings.format.elementCount() == 0)
        return Reading::NotShown;
    if (const auto fault = ShowFault(m_settings.format, m_settings.rowCount)) {
        reporter.ShowError(*fault);
        return Reading::NotShown;
    }
    shown.rows = LayOutRows(m_settings);
    const Outcome outcome = access == Access::ReadOnly
                                ? ReadRecipeOnly(type, shown.rows, m_strFilePath, reporter, progress)
                                : ReadRecipe(type, shown.rows, m_strFilePath, m_bNewFile, reporter, progress);
    if (outcome == Outcome::GivenUp) {
        shown.rows.Clear();
        return Reading::GivenUp;
    }
    if (outcome != Outcome::Done)
        return Reading::Failed;
    // A file of an unknown type is only looked at.
    shown.areOfFile = m_strFilePath.empty() || FileTypeOf(m_strFilePath);
    shown.rows.ShareSourceOf(m_shown.rows);
    shown.readAs = type;
    if (type != m_nFileType)
        shown.stored = ReadStored(shown.rows);
    else if (const auto bytes = LogicalBytes(type, m_strFilePath); bytes && !m_strFilePath.empty())
        shown.stored = CStoredCells(shown.rows, type, *bytes);
    shown.known = shown.stored;
    return Reading::Done;
}

void CRecipeDocument::ShowOther(ShownRows rows)
{
    rows.settings = m_settings;
    rows.names = m_names;
    rows.saves = m_saves;
    rows.isModified = m_bModified; // kept: dropping edits does not clear it
    const bool isAnEdit = !m_bFirstReading && (ShowsRows() || !rows.rows.Columns().empty());
    if (isAnEdit)
        Make(EditKind::Reading, RowsStep{std::make_unique<ShownRows>(std::move(rows))});
    else
        ShowFirst(std::move(rows));
    TakeNotes(); // the settings are a copy that may be of before others changed them
}

void CRecipeDocument::ShowFirst(ShownRows rows)
{
    m_bFirstReading = false;
    m_shown = std::move(rows);
    ++m_cellsEdition;
    ForgetPlan();
}

void CRecipeDocument::ClearRows()
{
    if (WithMemoryFor([this] { ShowOther({}); }) == EditOutcome::Made)
        return;
    m_shown = {};
    ++m_cellsEdition;
    ForgetPlan();
    m_unsaved.Drop();
    m_history.Clear(false);
}

bool CRecipeDocument::Walk(CCellTaker& taker, CReporter& reporter) const
{
    const CRecipeRows layout = LayOutRows(m_settings);
    return layout.RowCount() == 0 || WalkRecipe(m_nFileType, layout, m_strFilePath, taker, reporter);
}

void CRecipeDocument::MarkSaved()
{
    m_bNewFile = false;
    MarkUnmodified();
}

void CRecipeDocument::MarkUnmodified()
{
    m_bModified = false;
    m_history.MarkSaved();
}

EditOutcome CRecipeDocument::SetTexts(EditKind kind, std::vector<TextForCell> texts)
{
    std::vector<CellEdit> edits;
    const auto outcome = WithMemoryFor([&] { edits = EditsOf(m_shown.rows, std::move(texts)); });
    return outcome == EditOutcome::Made ? SetStates(kind, std::move(edits)) : outcome;
}

EditOutcome CRecipeDocument::SetStates(EditKind kind, std::vector<CellEdit> edits)
{
    if (edits.empty())
        return EditOutcome::Nothing;
    return WithMemoryFor([&] {
        Make(kind, CellsStep{std::move(edits)});
        m_bModified = true;
    });
}

EditOutcome CRecipeDocument::NoteFormatChange(EditKind kind, FormatChange change)
{
    return WithMemoryFor([&] {
        CEditHistory::Prepared own;
        StepsFor(kind, own).emplace_back(std::move(change));
        Keep(std::move(own));
    });
}

/// Without memory for it each edit stands for itself.
CRecipeDocument::CGroup::CGroup(CRecipeDocument& document, EditKind kind) : m_document(document)
{
    WithMemoryFor([&] { document.m_group = CEditHistory::Prepare({kind, {}}); });
}

CRecipeDocument::CGroup::~CGroup()
{
    if (!m_document.m_group)
        return;
    CEditHistory::Prepared group = std::move(*m_document.m_group);
    m_document.m_group.reset();
    if (!CEditHistory::EditOf(group).steps.empty())
        m_document.Keep(std::move(group));
}

/// The steps of the open group, else of a new edit of its own.
std::vector<EditStep>& CRecipeDocument::StepsFor(EditKind kind, CEditHistory::Prepared& own)
{
    if (m_group)
        return CEditHistory::EditOf(*m_group).steps;
    own = CEditHistory::Prepare({kind, {}});
    return CEditHistory::EditOf(own).steps;
}

void CRecipeDocument::Keep(CEditHistory::Prepared own) noexcept
{
    if (!own.empty())
        m_history.Add(std::move(own), m_shown.rows.SourceId());
}

/// All memory comes first, so that what was done is always kept.
void CRecipeDocument::Make(EditKind kind, EditStep step)
{
    CEditHistory::Prepared own;
    std::vector<EditStep>& steps = StepsFor(kind, own);
    steps.push_back(std::move(step));
    try {
        Exchange(steps.back(), Way::Forth);
    } catch (const std::bad_alloc&) {
        steps.pop_back();
        throw;
    }
    Keep(std::move(own));
}

void CRecipeDocument::Exchange(EditStep& step, Way way)
{
    if (auto* cells = std::get_if<CellsStep>(&step)) {
        m_shown.rows.Exchange(cells->edits);
        ++m_cellsEdition;
        FollowEdit(*cells);
        if (m_shown.areOfFile)
            m_unsaved.Note(Work(), cells->edits);
    } else if (auto* rows = std::get_if<RowsStep>(&step))
        ExchangeRows(*rows->other);
    else if (way == Way::Back)
        m_pStore->TakeBack(std::get<FormatChange>(step));
    else
        m_pStore->Apply(std::get<FormatChange>(step));
}

/// The settings that come back are those that the rows were read by.
void CRecipeDocument::ExchangeRows(ShownRows& other)
{
    BringUpToDate(other);
    m_settings = other.settings;
    m_shown.isModified = m_bModified;
    std::swap(m_shown, other);
    ++m_cellsEdition;
    ForgetPlan();
    FollowRows(true);
    m_bModified = m_shown.isModified;
}

/// Rows that were away while the document took another name may be saved where they stand for the same words as those
/// that were saved: others would go over words of that file that nobody has seen. Rows that were away during a save are
/// edited, and the document with them modified, where they differ from what was saved.
void CRecipeDocument::BringUpToDate(ShownRows& other) const
{
    if (other.names != m_names)
        other.areOfFile = other.areOfFile && m_shown.areOfFile && other.rows.IsLaidOutLike(m_shown.rows);
    if (other.saves != m_saves)
        other.isModified = !CompareWithSaved(other) || other.rows.EditedCount() > 0;
    other.names = m_names;
    other.saves = m_saves;
}

/// By what was saved in the same layout, else by what stands in the file. False when that cannot be told. Rows that are
/// not the file's keep their edits.
bool CRecipeDocument::CompareWithSaved(ShownRows& other) const
{
    if (!other.areOfFile)
        return true;
    if (m_shown.areOfFile && other.rows.IsLaidOutLike(m_shown.rows)) {
        other.rows.TakeSavedFrom(m_shown.rows);
        other.stored = m_shown.stored;
        other.known = m_shown.known;
        return true;
    }
    other.stored = ReadStored(other.rows);
    other.known = other.stored;
    if (!other.stored.IsKnown())
        return false;
    other.rows.TakeSavedFrom(other.stored.Cells());
    return true;
}

/// Drops the steps on formats that are no longer what the edit made of them.
bool CRecipeDocument::DropForeignFormats(Edit& edit, Way way)
{
    const ChangeSide side = SideBefore(way);
    return std::erase_if(edit.steps, [&](const EditStep& step) {
               const auto* format = std::get_if<FormatChange>(&step);
               return format != nullptr && !Holds(m_pStore->Library(), *format, side);
           }) > 0;
}

/// All steps or none.
void CRecipeDocument::ExchangeAll(Edit& edit, Way way)
{
    const std::size_t count = edit.steps.size();
    const auto step = [&](std::size_t i) -> EditStep& { return edit.steps[way == Way::Back ? count - 1 - i : i]; };
    std::size_t done = 0;
    try {
        for (; done < count; ++done)
            Exchange(step(done), way);
    } catch (const std::bad_alloc&) {
        while (done > 0)
            Exchange(step(--done), way == Way::Back ? Way::Forth : Way::Back);
        throw;
    }
}

EditReport CRecipeDocument::Exchange(Edit* edit, Way way)
{
    EditReport report;
    if (edit == nullptr)
        return report;
    report.outcome = WithMemoryFor([&] {
        report.name = NameOf(*edit);
        report.isFormatLeftAlone = DropForeignFormats(*edit, way);
        ReportOn(*edit, way, report);
        ExchangeAll(*edit, way);
    });
    if (report.outcome != EditOutcome::Made)
        return report;
    if (edit->steps.empty()) {
        Drop(way);
        report.outcome = EditOutcome::Dropped;
        return report;
    }
    StepPast(*edit, way);
    TakeNotes();
    if (report.hasOtherRows) // without memory for them they are not shown, that is all
        WithMemoryFor([&] { report.cells = m_shown.rows.EditedPlaces(); });
    return report;
}

void CRecipeDocument::StepPast(const Edit& edit, Way way)
{
    if (way == Way::Back)
        m_history.StepBack(m_shown.rows.SourceId());
    else
        m_history.StepForth(m_shown.rows.SourceId());
    Flag(edit);
}

void CRecipeDocument::Drop(Way way)
{
    if (way == Way::Back)
        m_history.DropNextToUndo();
    else
        m_history.DropNextToRedo();
}

void CRecipeDocument::ReportOn(const Edit& edit, Way way, EditReport& report) const
{
    for (const EditStep& step : edit.steps) {
        if (const auto* cells = std::get_if<CellsStep>(&step)) {
            for (const CellEdit& changed : cells->edits)
                report.cells.push_back(changed.place);
        } else if (std::holds_alternative<RowsStep>(step)) {
            report.hasOtherRows = true;
        } else {
            const auto& format = std::get<FormatChange>(step);
            report.format = PlaceOf(m_pStore->Library(), format, SideBefore(way)).value_or(format.index);
        }
    }
}

/// Where the saved state is reached the work is as saved, whatever it was before. Else cells that changed make it
/// modified; other rows brought along what they know of it.
void CRecipeDocument::Flag(const Edit& edit)
{
    if (!ChangesRows(edit))
        return;
    if (m_history.IsAsSaved())
        m_bModified = false;
    else if (CellCountOf(edit) > 0)
        m_bModified = true;
}

std::optional<std::u16string> CRecipeDocument::UndoName() const
{
    const Edit* edit = m_history.NextToUndo();
    return edit ? std::optional(NameOf(*edit)) : std::nullopt;
}

std::optional<std::u16string> CRecipeDocument::RedoName() const
{
    const Edit* edit = m_history.NextToRedo();
    return edit ? std::optional(NameOf(*edit)) : std::nullopt;
}
