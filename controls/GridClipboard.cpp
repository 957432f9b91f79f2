#include "controls/GridClipboard.h"

#include "controls/GridEdits.h"
#include "controls/GridModel.h"
#include "controls/SlowWork.h"
#include "controls/TabbedText.h"

#include <QApplication>
#include <QClipboard>
#include <QWidget>

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

void AppendTitles(QString& out, const CGridModel& model, const std::vector<Span>& columns)
{
    bool first = true;
    for (const Span& span : columns) {
        for (int column = span.first; column <= span.last; ++column) {
            if (!first)
                out += u'\t';
            first = false;
            AppendTabbedField(out, model.headerData(column, Qt::Horizontal).toString());
        }
    }
    out += u'\n';
}

QString TextOf(const CGridModel& model, const QModelIndex& index, const GridCopyForm& form)
{
    QString text = model.Text(model.GridRow(index), model.GridColumn(index));
    if (form.edit)
        form.edit(model.GridColumn(index), text);
    return text;
}

void AppendRow(QString& out, const CGridModel& model, const QItemSelection& selection, const std::vector<Span>& columns,
               int row, const GridCopyForm& form)
{
    bool first = true;
    for (const Span& span : columns) {
        for (int column = span.first; column <= span.last; ++column) {
            if (!first)
                out += u'\t';
            first = false;
            const QModelIndex index = model.index(row, column);
            if (selection.size() == 1 || selection.contains(index))
                AppendTabbedField(out, TextOf(model, index, form));
        }
    }
}

bool IsOneField(QStringView text)
{
    CTabbedTextReader reader(text);
    QString field;
    return reader.Next(field) && !reader.Next(field);
}

/// The top left cell of what the ranges reach over; there is one at least.
std::pair<int, int> CornerOf(const QItemSelection& selection)
{
    int top = selection.first().top();
    int left = selection.first().left();
    for (const QItemSelectionRange& range : selection) {
        top = std::min(top, range.top());
        left = std::min(left, range.left());
    }
    return {top, left};
}

} // namespace

QString NotFittingText(const GridPasteRest& rest)
{
    const auto counted = [](int count, const QString& one, const QString& many) {
        return count == 1 ? QStringLiteral("1 ") + one : QString::number(count) + QLatin1Char(' ') + many;
    };
    QStringList parts;
    if (rest.rows > 0)
        parts += counted(rest.rows, QStringLiteral("row"), QStringLiteral("rows"));
    if (rest.columns > 0)
        parts += counted(rest.columns, QStringLiteral("column"), QStringLiteral("columns"));
    return parts.isEmpty() ? QString() : parts.join(QStringLiteral(" and ")) + QStringLiteral(" did not fit.");
}

bool CGridClipboard::Copy(const GridCopyForm& form)
{
    if (m_chosen.isEmpty())
        return false;
    const std::vector<Span> rows = RowsOf(m_chosen);
    const std::vector<Span> columns = ColumnsOf(m_chosen);
    const std::int64_t count = CountOf(rows);

    CSlowWork work(&m_window, QStringLiteral("Copying cells"), count);
    QString text;
    if (form.hasTitles)
        AppendTitles(text, m_model, columns);
    std::int64_t done = 0;
    for (const Span& span : rows) {
        for (int row = span.first; row <= span.last; ++row) {
            AppendRow(text, m_model, m_chosen, columns, row, form);
            if (count > 1 || form.hasTitles) // else an empty field in the last row would be lost
                text += u'\n';
            if (!GoesOn(work, ++done))
                return false;
        }
    }
    QApplication::clipboard()->setText(text);
    return true;
}

bool CGridClipboard::Clear(CGridEdits& edits)
{
    return Fill(QString(), QStringLiteral("Clearing cells"), edits);
}

bool CGridClipboard::Paste(QStringView text, CGridEdits& edits)
{
    if (!IsOneField(text))
        return PasteBlock(text, edits);
    QString field;
    CTabbedTextReader(text).Next(field);
    return Fill(field, QStringLiteral("Pasting cells"), edits);
}

bool CGridClipboard::Fill(const QString& text, const QString& label, CGridEdits& edits)
{
    std::int64_t rows = 0;
    std::int64_t cells = 0;
    for (const QItemSelectionRange& range : m_chosen) {
        rows += range.height();
        cells += std::int64_t{range.height()} * range.width();
    }
    edits.MakeRoom(cells);
    CSlowWork work(&m_window, label, rows);
    std::int64_t done = 0;
    return std::all_of(m_chosen.begin(), m_chosen.end(), [&](const QItemSelectionRange& range) {
        return FillRange(range, text, work, done, edits); //
    });
}

bool CGridClipboard::FillRange(const QItemSelectionRange& range, const QString& text, CSlowWork& work,
                               std::int64_t& rowsDone, CGridEdits& edits)
{
    for (int row = range.top(); row <= range.bottom(); ++row) {
        for (int column = range.left(); column <= range.right(); ++column)
            edits.Add(row + m_model.FixedRowCount(), column + m_model.FixedColumnCount(), text);
        if (!GoesOn(work, ++rowsDone))
            return false;
    }
    return true;
}

bool CGridClipboard::PasteBlock(QStringView text, CGridEdits& edits)
{
    if (m_chosen.isEmpty())
        return true;
    const auto [bodyTop, bodyLeft] = CornerOf(m_chosen);
    const int top = bodyTop + m_model.FixedRowCount();
    const int left = bodyLeft + m_model.FixedColumnCount();
    const int rows = m_model.RowCount() - top;
    const int columns = m_model.ColumnCount() - left;
    edits.MakeRoom(std::min<std::int64_t>(text.size() + 1, std::int64_t{rows} * columns));
    CSlowWork work(&m_window, QStringLiteral("Pasting cells"), rows);
    CTabbedTextReader reader(text);
    QString field;
    while (reader.Next(field)) {
        if (reader.Row() < rows && reader.Column() < columns)
            edits.Add(top + reader.Row(), left + reader.Column(), std::move(field));
        if (reader.Column() == 0 && !GoesOn(work, std::min(reader.Row(), rows)))
            return false;
        m_rest.rows = std::max(m_rest.rows, reader.Row() + 1 - rows);
        m_rest.columns = std::max(m_rest.columns, reader.Column() + 1 - columns);
    }
    return true;
}

/// Showing how far it is lets events happen, any of which may reset the grid.
bool CGridClipboard::GoesOn(CSlowWork& work, std::int64_t done) const
{
    return work.Step(done) && m_chosen.first().isValid();
}
