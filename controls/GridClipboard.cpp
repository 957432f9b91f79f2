#include "controls/GridClipboard.h"

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "controls/SlowWork.h"
#include "controls/TabbedText.h"

#include <QApplication>
#include <QClipboard>
#include <QItemSelection>

#include <algorithm>
#include <vector>

namespace {

/// Rows or columns from `first` to `last`.
struct Span {
    int first;
    int last;
};

/// Sorted, without overlaps.
std::vector<Span> Merged(std::vector<Span> spans)
{
    std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.first < b.first; });
    std::vector<Span> merged;
    for (const Span& span : spans) {
        if (!merged.empty() && span.first <= merged.back().last + 1)
            merged.back().last = std::max(merged.back().last, span.last);
        else
            merged.push_back(span);
    }
    return merged;
}

std::vector<Span> RowsOf(const QItemSelection& selection)
{
    std::vector<Span> spans;
    for (const QItemSelectionRange& range : selection)
        spans.push_back({range.top(), range.bottom()});
    return Merged(std::move(spans));
}

std::vector<Span> ColumnsOf(const QItemSelection& selection)
{
    std::vector<Span> spans;
    for (const QItemSelectionRange& range : selection)
        spans.push_back({range.left(), range.right()});
    return Merged(std::move(spans));
}

std::int64_t CountOf(const std::vector<Span>& spans)
{
    std::int64_t count = 0;
    for (const Span& span : spans)
        count += std::int64_t{span.last} - span.first + 1;
    return count;
}

void AppendRow(QString& out, const CGridModel& model, const QItemSelection& selection, const std::vector<Span>& columns,
               int row)
{
    bool first = true;
    for (const Span& span : columns) {
        for (int column = span.first; column <= span.last; ++column) {
            if (!first)
                out += u'\t';
            first = false;
            const QModelIndex index = model.index(row, column);
            if (selection.size() == 1 || selection.contains(index))
                AppendTabbedField(out, model.Text(model.GridRow(index), model.GridColumn(index)));
        }
    }
}

bool IsOneField(QStringView text)
{
    CTabbedTextReader reader(text);
    QString field;
    return reader.Next(field) && !reader.Next(field);
}

/// The top left one of the chosen cells; invalid when there are none.
QModelIndex PasteCorner(const CGridCtrl& grid)
{
    const QItemSelection selection = grid.ChosenCells();
    if (selection.isEmpty())
        return {};
    int top = selection.first().top();
    int left = selection.first().left();
    for (const QItemSelectionRange& range : selection) {
        top = std::min(top, range.top());
        left = std::min(left, range.left());
    }
    return grid.model()->index(top, left);
}

} // namespace

bool CGridClipboard::Copy()
{
    const CGridModel& model = m_grid.Model();
    const QItemSelection selection = m_grid.ChosenCells();
    if (selection.isEmpty())
        return false;
    const std::vector<Span> rows = RowsOf(selection);
    const std::vector<Span> columns = ColumnsOf(selection);
    const std::int64_t count = CountOf(rows);

    CSlowWork work(&m_grid, QStringLiteral("Copying cells"), count);
    QString text;
    std::int64_t done = 0;
    for (const Span& span : rows) {
        for (int row = span.first; row <= span.last; ++row) {
            AppendRow(text, model, selection, columns, row);
            if (count > 1) // else an empty field in the last row would be lost
                text += u'\n';
            if (!work.Step(++done))
                return false;
        }
    }
    QApplication::clipboard()->setText(text);
    return true;
}

void CGridClipboard::Clear()
{
    Fill(QString(), QStringLiteral("Clearing cells"));
    Finish();
}

void CGridClipboard::Paste(QStringView text)
{
    if (IsOneField(text)) {
        QString field;
        CTabbedTextReader(text).Next(field);
        Fill(field, QStringLiteral("Pasting cells"));
    } else {
        PasteBlock(text);
    }
    Finish();
}

void CGridClipboard::Fill(const QString& text, const QString& label)
{
    const QItemSelection selection = m_grid.ChosenCells();
    std::int64_t rows = 0;
    for (const QItemSelectionRange& range : selection)
        rows += range.height();
    CSlowWork work(&m_grid, label, rows);
    std::int64_t done = 0;
    for (const QItemSelectionRange& range : selection)
        if (!FillRange(range, text, work, done))
            return;
}

bool CGridClipboard::FillRange(const QItemSelectionRange& range, const QString& text, CSlowWork& work,
                               std::int64_t& rowsDone)
{
    for (int row = range.top(); row <= range.bottom(); ++row) {
        for (int column = range.left(); column <= range.right(); ++column)
            Change(row + m_grid.FixedRowCount(), column + m_grid.FixedColumnCount(), text);
        if (!work.Step(++rowsDone))
            return false;
    }
    return true;
}

void CGridClipboard::PasteBlock(QStringView text)
{
    const QModelIndex corner = PasteCorner(m_grid);
    if (!corner.isValid())
        return;
    const int top = m_grid.Model().GridRow(corner);
    const int left = m_grid.Model().GridColumn(corner);
    const std::int64_t room = m_grid.RowCount() - top;
    CSlowWork work(&m_grid, QStringLiteral("Pasting cells"), room);
    CTabbedTextReader reader(text);
    QString field;
    while (reader.Next(field) && reader.Row() < room) {
        if (reader.Column() < m_grid.ColumnCount() - left)
            Change(top + reader.Row(), left + reader.Column(), field);
        if (reader.Column() == 0 && !work.Step(reader.Row()))
            return;
    }
}

void CGridClipboard::Change(int row, int column, const QString& text)
{
    if (m_grid.ChangeText(row, column, text) == CGridCtrl::Change::Refused && !m_firstRefusal)
        m_firstRefusal = Cell(row, column);
}

void CGridClipboard::Finish()
{
    m_grid.Model().TextsChanged();
    if (m_firstRefusal)
        m_grid.ReportRefusal(m_firstRefusal->first, m_firstRefusal->second);
}
