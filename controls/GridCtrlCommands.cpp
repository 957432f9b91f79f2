// The grid's commands on cells: which they act on, the clipboard, and the road of a text from the user into its cell.

#include "controls/CellRectangles.h"
#include "controls/GridClipboard.h"
#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "controls/GridSelectionModel.h"

#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QMimeData>

#include <algorithm>
#include <new>

namespace {

constexpr std::size_t kMostRectangles = 1000; // of a selection: the toolkit walks through all for each cell it paints

/// False when there is not enough memory for `work`.
template <typename Work>
bool HasMemoryFor(const Work& work)
{
    try {
        work();
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

QString Counted(std::int64_t count, const QString& one, const QString& many)
{
    return count == 1 ? one : many.arg(count);
}

/// What the message of the first refused value does not tell; empty when that is nothing.
QString FurtherText(const CGridEdits& edits, const GridPasteRest& rest)
{
    const QString notFitting = NotFittingText(rest);
    if (edits.Refused() == 0 || (edits.Refused() == 1 && notFitting.isEmpty()))
        return {};
    const QString refused = Counted(edits.Refused(), QStringLiteral("1 of %1 values was refused."),
                                    QStringLiteral("%1 of %2 values were refused."))
                                .arg(edits.Offered());
    return notFitting.isEmpty() ? refused : refused + QLatin1Char(' ') + notFitting;
}

QString NoMemoryText()
{
    return QStringLiteral("There is not enough memory for this command. Nothing was changed.");
}

} // namespace

QItemSelection CGridCtrl::ChosenCells() const
{
    const QModelIndex focus = currentIndex();
    return selectionModel()->hasSelection() || !focus.isValid() ? selectionModel()->selection()
                                                                : QItemSelection(focus, focus);
}

void CGridCtrl::ShowCells(const std::vector<std::pair<int, int>>& cells)
{
    std::vector<std::pair<int, int>> shown;
    shown.reserve(cells.size());
    std::copy_if(cells.begin(), cells.end(), std::back_inserter(shown),
                 [this](const auto& cell) { return m_pModel->BodyIndex(cell.first, cell.second).isValid(); });
    if (shown.empty())
        return;
    QItemSelection selection;
    for (const CellRectangle& rectangle : RectanglesOf(shown, kMostRectangles))
        selection.append({m_pModel->BodyIndex(rectangle.top, rectangle.left),
                          m_pModel->BodyIndex(rectangle.bottom, rectangle.right)});
    const CellRectangle around = RectangleAround(shown);
    const QPersistentModelIndex first(m_pModel->BodyIndex(shown.front().first, shown.front().second));
    Selection().Choose(first, selection);
    if (!first.isValid() || currentIndex() != first) // whoever was told has emptied the grid
        return;
    scrollTo(m_pModel->BodyIndex(around.bottom, around.right));
    scrollTo(m_pModel->BodyIndex(around.top, around.left));
    scrollTo(first);
}

CGridCtrl::Change CGridCtrl::ChangeText(int row, int column, const QString& text)
{
    CGridEdits edits(*m_pModel, m_check);
    const Change change = edits.Add(row, column, text);
    if (change == Change::Done) {
        MarkEdited(row, column);
        TakeText(row, column, text);
    }
    return change;
}

void CGridCtrl::ReportRefusal(int row, int column)
{
    ReportRefusal(row, column, {});
}

void CGridCtrl::ReportRefusal(int row, int column, const QString& further)
{
    // kept: the first number is the row, though the text says Col
    Report(QString::asprintf("Col %d,Row %d data error !", m_pModel->RowInMessages(row), column), further);
}

void CGridCtrl::Report(const QString& text, const QString& further)
{
    if (m_reporter) {
        m_reporter(text, further);
        return;
    }
    QMessageBox box(QMessageBox::Warning, QApplication::applicationDisplayName(), text, QMessageBox::Ok, window());
    box.setInformativeText(further);
    box.exec();
}

bool CGridCtrl::AcceptsText(int column, const QString& text)
{
    return !m_check || m_check(column, text);
}

void CGridCtrl::MarkEdited(int row, int column)
{
    emit CellEdited(row, column);
}

/// A text that the cell already has is not set again: the source need not keep what never changed.
void CGridCtrl::TakeText(int row, int column, const QString& text)
{
    if (m_pModel->Text(row, column) != text && m_pModel->SetTexts(GridChange::Typing, {{row, column, text}}))
        RedrawCell(row, column);
}

void CGridCtrl::TakeTexts(GridChange change, std::vector<GridCellText> texts)
{
    for (const GridCellText& cell : texts)
        MarkEdited(cell.row, cell.column);
    if (m_pModel->SetTexts(change, std::move(texts)))
        TextsChanged();
}

void CGridCtrl::ChangeChosenCells(GridChange change, const Collecting& collect)
{
    std::optional<CGridEdits::Cell> refusal;
    QString further;
    GridPasteRest rest;
    const bool enough = HasMemoryFor([&] {
        CGridClipboard clipboard(*m_pModel, ChosenCells(), *this);
        CGridEdits edits(*m_pModel, m_check);
        if (!collect(clipboard, edits))
            return;
        refusal = edits.FirstRefusal();
        rest = clipboard.Rest();
        if (change == GridChange::Paste)
            further = FurtherText(edits, rest);
        TakeTexts(change, edits.TakeTexts());
    });
    if (!enough)
        Report(NoMemoryText());
    else if (refusal)
        ReportRefusal(refusal->first, refusal->second, further);
    else if (rest.rows > 0 || rest.columns > 0)
        emit PasteDidNotFit(rest);
}

bool CGridCtrl::CanCopy() const
{
    return m_pEditor ? m_pEditor->hasSelectedText() : !ChosenCells().isEmpty();
}

bool CGridCtrl::CanCut() const
{
    return CanCopy() && (m_pEditor || m_pModel->IsEditable());
}

bool CGridCtrl::CanPaste() const
{
    const QMimeData* content = QApplication::clipboard()->mimeData();
    if (content == nullptr || !content->hasText())
        return false;
    return m_pEditor || (m_pModel->IsEditable() && !ChosenCells().isEmpty());
}

bool CGridCtrl::CanSelectAll() const
{
    return m_pEditor ? !m_pEditor->text().isEmpty() : m_pModel->rowCount() > 0 && m_pModel->columnCount() > 0;
}

void CGridCtrl::Copy()
{
    if (m_pEditor)
        m_pEditor->copy();
    else if (!HasMemoryFor([this] { CGridClipboard(*m_pModel, ChosenCells(), *this).Copy(); }))
        Report(NoMemoryText());
}

bool CGridCtrl::CopyAs(const GridCopyForm& form)
{
    bool isDone = false;
    if (!HasMemoryFor([&] { isDone = CGridClipboard(*m_pModel, ChosenCells(), *this).Copy(form); }))
        Report(NoMemoryText());
    return isDone;
}

void CGridCtrl::Cut()
{
    if (m_pEditor)
        m_pEditor->cut();
    else if (CanCut())
        ChangeChosenCells(GridChange::Cut, [](CGridClipboard& clipboard, CGridEdits& edits) {
            return clipboard.Copy() && clipboard.Clear(edits);
        });
}

void CGridCtrl::Paste()
{
    if (m_pEditor)
        m_pEditor->paste();
    else if (CanPaste())
        ChangeChosenCells(GridChange::Paste, [](CGridClipboard& clipboard, CGridEdits& edits) {
            return clipboard.Paste(QApplication::clipboard()->text(), edits);
        });
}

void CGridCtrl::Clear()
{
    ChangeChosenCells(GridChange::Clear,
                      [](CGridClipboard& clipboard, CGridEdits& edits) { return clipboard.Clear(edits); });
}

void CGridCtrl::SelectAll()
{
    if (m_pEditor)
        m_pEditor->selectAll();
    else
        selectAll();
}
