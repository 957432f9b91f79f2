// What the pane has the document do: writes, and edits of cells.

#include "views/ProgressDialog.h"
#include "views/RecipeDataShowView.h"
#include "views/TextCrossing.h"

#include <utility>

namespace {

EditKind KindOf(GridChange change)
{
    switch (change) {
    case GridChange::Paste:
        return EditKind::Paste;
    case GridChange::Cut:
        return EditKind::Cut;
    case GridChange::Clear:
        return EditKind::Clear;
    case GridChange::Fill:
        return EditKind::Fill;
    case GridChange::Typing:
        break;
    }
    return EditKind::Typing;
}

std::vector<CellPlace> PlacesOf(const std::vector<CellEdit>& edits)
{
    std::vector<CellPlace> places;
    places.reserve(edits.size());
    for (const CellEdit& edit : edits)
        places.push_back(edit.place);
    return places;
}

} // namespace

SaveResult CRecipeDataShowView::WriteData(FileType type, const QString& path, ForeignRule rule)
{
    return WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.Write(type, NativePath(path), m_frame.Reporter(), progress, rule);
    });
}

SaveResult CRecipeDataShowView::WriteDataAs(FileType type, const QString& path)
{
    return WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.SaveAs(type, NativePath(path), m_frame.Reporter(), progress);
    });
}

SaveResult CRecipeDataShowView::WriteEdited(ForeignRule rule)
{
    return WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.WriteEdited(m_frame.Reporter(), progress, rule);
    });
}

SaveResult CRecipeDataShowView::WriteCopy(FileType type, const QString& path)
{
    return WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.WriteCopy(type, NativePath(path), m_frame.Reporter(), progress);
    });
}

std::optional<std::size_t> CRecipeDataShowView::PutBackStored()
{
    std::size_t count = 0;
    const SaveResult result = WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.PutBackStored(m_frame.Reporter(), progress, count);
    });
    return result ? std::optional(count) : std::nullopt;
}

/// The marks of the cells may be others then.
SaveResult CRecipeDataShowView::WriteBy(const std::function<SaveResult(CRecipeDocument&, CProgress&)>& write)
{
    CProgressDialog progress(*this, tr("Saving the recipe file"));
    const SaveResult result = write(m_frame.Document(), progress);
    if (result.isSaved)
        StoredChanged();
    return result;
}

void CRecipeDataShowView::StoredChanged()
{
    m_pGrid->viewport()->update();
    m_typedValues.LookAgain();
    emit ChosenCellChanged();
}

void CRecipeDataShowView::SetCellValue(int column, int row, const QString& text)
{
    Take(EditKind::BitBrowser, row, column, text);
    m_pGrid->RedrawCell(row, column);
}

bool CRecipeDataShowView::SetCellText(int row, int column, const QString& text)
{
    return Take(EditKind::Typing, row, column, text);
}

bool CRecipeDataShowView::SetCellTexts(GridChange change, std::vector<GridCellText> texts)
{
    std::vector<TextForCell> ofRows;
    ofRows.reserve(texts.size());
    for (const GridCellText& cell : texts)
        if (cell.column >= kTitleColumns)
            ofRows.push_back({PlaceOf(cell.row, cell.column), std::u16string(ViewOf(cell.text))});
    return Take(KindOf(change), std::move(ofRows));
}

bool CRecipeDataShowView::Take(EditKind kind, int row, int column, const QString& text)
{
    std::vector<TextForCell> texts;
    if (column >= kTitleColumns)
        texts.push_back(TextForCell{PlaceOf(row, column), std::u16string(ViewOf(text))});
    return Take(kind, std::move(texts));
}

/// One edit of the document. False when nothing was changed.
bool CRecipeDataShowView::Take(EditKind kind, std::vector<TextForCell> texts)
{
    std::vector<CellPlace> places;
    places.reserve(texts.size());
    for (const TextForCell& text : texts)
        places.push_back(text.place);
    if (!Report(m_frame.Document().SetTexts(kind, std::move(texts))))
        return false;
    emit ValuesGiven(places);
    m_typedValues.Look(std::move(places));
    return true;
}

/// Whether an edit was made; those who show it, or must hear of it, have then heard.
bool CRecipeDataShowView::Report(EditOutcome outcome)
{
    if (outcome == EditOutcome::OutOfMemory)
        m_frame.Reporter().ShowError(kNoMemoryForEdit);
    if (outcome == EditOutcome::Made)
        emit Edited();
    return outcome == EditOutcome::Made;
}

bool CRecipeDataShowView::SetTexts(EditKind kind, std::vector<TextForCell> texts)
{
    if (!EndCellEdit() || !Take(kind, std::move(texts)))
        return false;
    m_pGrid->TextsChanged();
    emit ChosenCellChanged();
    return true;
}

/// Of texts it is told how they are stored, as of typed ones.
bool CRecipeDataShowView::SetStates(EditKind kind, std::vector<CellEdit> edits)
{
    if (!EndCellEdit())
        return false;
    const std::vector<CellPlace> places = PlacesOf(edits);
    std::vector<CellPlace> texts;
    for (const CellEdit& edit : edits)
        if (edit.other.IsText())
            texts.push_back(edit.place);
    if (!Report(m_frame.Document().SetStates(kind, std::move(edits))))
        return false;
    emit ValuesGiven(places);
    m_pGrid->TextsChanged();
    m_typedValues.Look(std::move(texts));
    emit ChosenCellChanged();
    return true;
}

void CRecipeDataShowView::KeepStored(const std::vector<CellPlace>& places)
{
    if (EndCellEdit())
        ShowStates(m_frame.Document().KeepStored(places));
}

void CRecipeDataShowView::StoreExactly(const std::vector<CellPlace>& places)
{
    if (EndCellEdit())
        ShowStates(m_frame.Document().StoreExactly(places));
}

void CRecipeDataShowView::TakeOver(const std::vector<CellEdit>& edits)
{
    if (!EndCellEdit())
        return;
    std::size_t refused = 0;
    const EditOutcome outcome = m_frame.Document().TakeOver(edits, &refused);
    ShowStates(outcome);
    if (outcome == EditOutcome::Made)
        emit ValuesGiven(PlacesOf(edits));
    if (refused > 0)
        m_frame.TellEdit(refused == 1
                             ? tr("1 value was not taken over: its cell cannot have it.")
                             : tr("%1 values were not taken over: their cells cannot have them.").arg(refused));
}

bool CRecipeDataShowView::ApplyPatch(const CellPatch& patch)
{
    if (!EndCellEdit())
        return false;
    const EditOutcome outcome = m_frame.Document().ApplyPatch(patch);
    ShowStates(outcome);
    if (outcome != EditOutcome::Made)
        return false;
    std::vector<CellPlace> places;
    for (const CellPatch::Entry& entry : patch.entries)
        places.push_back(entry.place);
    emit ValuesGiven(places);
    ShowCells(places);
    return true;
}

std::optional<std::vector<UnsavedCell>> CRecipeDataShowView::PutBackUnsaved(const UnsavedWork& work)
{
    EditOutcome outcome = EditOutcome::Nothing;
    auto others = m_frame.Document().PutBackUnsaved(work, outcome);
    ShowStates(outcome);
    if (outcome == EditOutcome::OutOfMemory)
        return std::nullopt;
    return others;
}

void CRecipeDataShowView::ShowStates(EditOutcome outcome)
{
    if (!Report(outcome))
        return;
    m_pGrid->TextsChanged();
    m_typedValues.LookAgain();
    emit ChosenCellChanged();
}
