#include "controls/GridModel.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr std::uint32_t kWrappedTitle = CGridCellBase::Centred | CGridCellBase::WordBreak;
constexpr std::uint32_t kFixedRowState = CGridCellBase::Fixed | CGridCellBase::FixedRow | CGridCellBase::ReadOnly;
constexpr std::uint32_t kFixedColumnState = CGridCellBase::Fixed | CGridCellBase::FixedColumn | CGridCellBase::ReadOnly;

/// A sentence. Lines are broken in a rich text only; a remark may hold what looks like one.
QString TipOf(QString remark)
{
    if (remark.isEmpty())
        return {};
    remark[0] = remark[0].toUpper();
    return QStringLiteral("<p>%1</p>").arg(remark.toHtmlEscaped());
}

/// A title and what is said of it, line by line.
QString TipOf(const QString& title, const QString& remark)
{
    if (remark.isEmpty())
        return {};
    const QString lines = title.toHtmlEscaped() + u'\n' + remark.toHtmlEscaped();
    return QStringLiteral("<p>%1</p>").arg(QString(lines).replace(u'\n', QLatin1String("<br>")));
}

} // namespace

CGridModel::CGridModel(QObject* parent)
    : QAbstractTableModel(parent),
      m_normal(0, CGridCellBase::Centred, QPalette::Text, QPalette::Base),
      m_fixedRow(kFixedRowState, kWrappedTitle, QPalette::ButtonText, QPalette::Button),
      m_fixedColumn(kFixedColumnState, CGridCellBase::Centred, QPalette::ButtonText, QPalette::Button),
      m_fixedCorner(kFixedRowState | kFixedColumnState, kWrappedTitle, QPalette::ButtonText, QPalette::Button)
{
}

void CGridModel::Clear()
{
    beginResetModel();
    m_nRows = m_nColumns = m_nFixedRows = m_nFixedColumns = 0;
    m_source = nullptr;
    m_cells.Clear();
    endResetModel();
}

bool CGridModel::SetRowCount(int count)
{
    if (count < 0)
        return false;
    const int fixed = std::min(m_nFixedRows, count);
    const int before = rowCount();
    const int after = count - fixed;
    const auto take = [&] {
        m_nRows = count;
        m_nFixedRows = fixed;
        m_cells.DropRowsFrom(count);
    };
    if (before == 0 && after > 0) {
        beginResetModel(); // quicker than an insertion when there are many rows
        take();
        endResetModel();
    } else if (after > before) {
        beginInsertRows({}, before, after - 1);
        take();
        endInsertRows();
    } else if (after < before) {
        beginRemoveRows({}, after, before - 1);
        take();
        endRemoveRows();
    } else {
        take();
    }
    return true;
}

bool CGridModel::ResetRows(int count)
{
    if (m_source == nullptr || count < m_nFixedRows)
        return false;
    beginResetModel();
    m_nRows = count;
    endResetModel();
    return true;
}

bool CGridModel::SetColumnCount(int count)
{
    if (count < 0)
        return false;
    const int fixed = std::min(m_nFixedColumns, count);
    const int before = columnCount();
    const int after = count - fixed;
    const auto take = [&] {
        m_nColumns = count;
        m_nFixedColumns = fixed;
        m_cells.SetColumnCount(count);
    };
    if (after > before) {
        beginInsertColumns({}, before, after - 1);
        take();
        endInsertColumns();
    } else if (after < before) {
        beginRemoveColumns({}, after, before - 1);
        take();
        endRemoveColumns();
    } else {
        take();
    }
    return true;
}

bool CGridModel::SetFixedRowCount(int count)
{
    if (count < 0 || count > m_nRows)
        return false;
    if (count > m_nFixedRows) {
        beginRemoveRows({}, 0, count - m_nFixedRows - 1);
        m_nFixedRows = count;
        endRemoveRows();
    } else if (count < m_nFixedRows) {
        beginInsertRows({}, 0, m_nFixedRows - count - 1);
        m_nFixedRows = count;
        if (m_source != nullptr)
            m_cells.DropRowsFrom(count);
        endInsertRows();
    }
    return true;
}

bool CGridModel::SetFixedColumnCount(int count)
{
    if (count < 0 || count > m_nColumns)
        return false;
    if (count > m_nFixedColumns) {
        beginRemoveColumns({}, 0, count - m_nFixedColumns - 1);
        m_nFixedColumns = count;
        endRemoveColumns();
    } else if (count < m_nFixedColumns) {
        beginInsertColumns({}, 0, m_nFixedColumns - count - 1);
        m_nFixedColumns = count;
        endInsertColumns();
    }
    return true;
}

bool CGridModel::Contains(int row, int column) const
{
    return row >= 0 && row < m_nRows && column >= 0 && column < m_nColumns;
}

void CGridModel::SetSource(CGridTextSource* source)
{
    m_source = source;
    m_cells.DropRowsFrom(m_nFixedRows);
    TextsChanged();
}

bool CGridModel::IsEditable(int row, int column) const
{
    if (!m_bEditable || !Contains(row, column) || !IsBody(row, column))
        return false;
    const CGridCellBase* cell = FindCell(row, column);
    const std::uint32_t state = DefaultCellAt(row, column).StateFlags() | (cell != nullptr ? cell->StateFlags() : 0);
    return (state & CGridCellBase::ReadOnly) == 0;
}

QString CGridModel::Text(int row, int column) const
{
    if (!Contains(row, column))
        return {};
    if (!IsKept(row, column))
        return m_source->CellText(row, column);
    const CGridCellBase* cell = m_cells.Find(row, column);
    return cell != nullptr ? cell->Text() : QString();
}

bool CGridModel::SetText(int row, int column, const QString& text)
{
    if (!Contains(row, column))
        return false;
    if (!IsKept(row, column))
        return m_source->SetCellText(row, column, text);
    m_cells.Make(row, column).SetText(text);
    return true;
}

bool CGridModel::SetTexts(GridChange change, std::vector<GridCellText> texts)
{
    std::erase_if(texts, [this](const GridCellText& cell) {
        return !Contains(cell.row, cell.column) || !IsBody(cell.row, cell.column);
    });
    if (texts.empty())
        return false;
    if (m_source != nullptr)
        return m_source->SetCellTexts(change, std::move(texts));
    KeepTexts(texts);
    return true;
}

/// All that takes memory comes first.
void CGridModel::KeepTexts(const std::vector<GridCellText>& texts)
{
    std::vector<std::pair<CGridCellBase*, std::u16string>> kept;
    kept.reserve(texts.size());
    for (const GridCellText& cell : texts)
        kept.emplace_back(&m_cells.Make(cell.row, cell.column), cell.text.toStdU16String());
    for (auto& [cell, text] : kept)
        cell->TakeText(std::move(text));
}

GridCellMarks CGridModel::Marks(int row, int column) const
{
    return Contains(row, column) && !IsKept(row, column) ? m_source->CellMarks(row, column) : GridCellMarks{};
}

QString CGridModel::Remark(int row, int column) const
{
    return Contains(row, column) && !IsKept(row, column) ? m_source->CellRemark(row, column) : QString();
}

const CGridCellBase* CGridModel::FindCell(int row, int column) const
{
    return IsKept(row, column) ? m_cells.Find(row, column) : nullptr;
}

CGridCellBase* CGridModel::MakeCell(int row, int column)
{
    return IsKept(row, column) ? &m_cells.Make(row, column) : nullptr;
}

bool CGridModel::PutCell(int row, int column, std::unique_ptr<CGridCellBase> cell)
{
    if (!cell || !IsKept(row, column))
        return false;
    m_cells.Put(row, column, std::move(cell));
    return true;
}

CGridDefaultCell& CGridModel::DefaultCell(bool fixedRow, bool fixedColumn)
{
    if (fixedRow)
        return fixedColumn ? m_fixedCorner : m_fixedRow;
    return fixedColumn ? m_fixedColumn : m_normal;
}

const CGridDefaultCell& CGridModel::DefaultCellAt(int row, int column) const
{
    if (row < m_nFixedRows)
        return column < m_nFixedColumns ? m_fixedCorner : m_fixedRow;
    return column < m_nFixedColumns ? m_fixedColumn : m_normal;
}

QModelIndex CGridModel::BodyIndex(int row, int column) const
{
    return Contains(row, column) && IsBody(row, column) ? index(row - m_nFixedRows, column - m_nFixedColumns)
                                                        : QModelIndex();
}

int CGridModel::AccessibleChild(const QModelIndex& index) const
{
    return (index.row() + 1) * (columnCount() + 1) + index.column() + 1;
}

void CGridModel::TextsChanged()
{
    if (rowCount() > 0 && columnCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int CGridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_nRows - m_nFixedRows;
}

int CGridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_nColumns - m_nFixedColumns;
}

QVariant CGridModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return Text(GridRow(index), GridColumn(index));
    case Qt::ToolTipRole:
        return TipOf(Remark(GridRow(index), GridColumn(index)));
    case Qt::AccessibleDescriptionRole:
        return Description(index);
    default:
        return {};
    }
}

/// Where the cell stands and what is to be said of it.
QString CGridModel::Description(const QModelIndex& index) const
{
    QStringList parts{headerData(index.column(), Qt::Horizontal).toString(),
                      headerData(index.row(), Qt::Vertical).toString(), Remark(GridRow(index), GridColumn(index))};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

bool CGridModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    return index.isValid() && role == Qt::EditRole && m_change &&
           m_change(GridRow(index), GridColumn(index), value.toString());
}

QVariant CGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section < 0)
        return {};
    if (role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole)
        return TitleRemark(section, orientation, role);
    if (role != Qt::DisplayRole)
        return {};
    QStringList titles;
    if (orientation == Qt::Horizontal) {
        for (int row = 0; row < m_nFixedRows; ++row)
            titles += Text(row, section + m_nFixedColumns);
    } else {
        for (int column = 0; column < m_nFixedColumns; ++column)
            titles += Text(section + m_nFixedRows, column);
    }
    return titles.join(u' ');
}

/// What is said of a title as its tip, or as the description of screen readers.
QVariant CGridModel::TitleRemark(int section, Qt::Orientation orientation, int role) const
{
    const bool isOfSource = m_source != nullptr && orientation == Qt::Horizontal && section < columnCount();
    const QString remark = isOfSource ? m_source->TitleRemark(section + m_nFixedColumns) : QString();
    if (remark.isEmpty())
        return {};
    return role == Qt::ToolTipRole ? TipOf(headerData(section, orientation).toString(), remark) : remark;
}

Qt::ItemFlags CGridModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags plain = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return IsEditable(GridRow(index), GridColumn(index)) ? plain | Qt::ItemIsEditable : plain;
}
