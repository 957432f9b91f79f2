#include "views/ChangesModel.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kSlice(8);
constexpr std::size_t kLongestText = 256;           // units of a value that are shown
constexpr std::size_t kMostRows = 32 * 1024 * 1024; // so that the height of all is within the toolkit's numbers
constexpr int kFarthest = 1024;                     // rows, in which a change that moved is sought

} // namespace

CChangesModel::CChangesModel(QObject* parent) : QAbstractTableModel(parent)
{
    connect(&m_idle, &QTimer::timeout, this, &CChangesModel::LookOn);
}

void CChangesModel::SetList(std::shared_ptr<const CChangeList> list)
{
    m_list = std::move(list);
    SetFilter({});
}

void CChangesModel::SetFilter(const QString& text)
{
    beginResetModel();
    ForgetLines();
    m_nRows = 0;
    m_filter.Begin(m_list, text, [this](std::size_t change) { return ColumnOfChange(change); });
    endResetModel();
    LookOn();
}

void CChangesModel::ListGrew()
{
    LookOn();
}

/// The rows that stay are told to be others, so that the user stays where they were.
void CChangesModel::ListChanged()
{
    ForgetLines();
    m_filter.Restart();
    LookOn();
    if (m_nRows > 0)
        emit dataChanged(index(0, 0), index(m_nRows - 1, columnCount() - 1));
}

void CChangesModel::LookOn()
{
    m_filter.Work(kSlice);
    TakeRows();
    if (!IsLooking()) {
        m_idle.stop();
    } else if (!m_idle.isActive()) {
        m_idle.start();
    }
    emit CountsChanged();
}

void CChangesModel::TakeRows()
{
    const std::size_t listed = m_list ? m_list->Count() : 0;
    const auto rows = static_cast<int>(std::min(IsFiltered() ? m_filter.Matches().size() : listed, kMostRows));
    if (rows > m_nRows) {
        beginInsertRows({}, m_nRows, rows - 1);
        m_nRows = rows;
        endInsertRows();
    } else if (rows < m_nRows) {
        beginRemoveRows({}, rows, m_nRows - 1);
        m_nRows = rows;
        endRemoveRows();
    }
}

ChangeRecord CChangesModel::ChangeIn(int row) const
{
    const auto index = IndexIn(row);
    return index ? m_list->At(*index) : ChangeRecord();
}

std::optional<CellPlace> CChangesModel::PlaceIn(int row) const
{
    const auto index = IndexIn(row);
    return index ? m_list->PlaceOf(*index) : std::nullopt;
}

std::optional<std::size_t> CChangesModel::IndexIn(int row) const
{
    if (row < 0 || row >= m_nRows)
        return std::nullopt;
    const auto number = static_cast<std::size_t>(row);
    if (IsFiltered() && number >= m_filter.Matches().size()) // it is about to go
        return std::nullopt;
    const std::size_t index = IsFiltered() ? m_filter.Matches()[number] : number;
    return m_list && index < m_list->Count() ? std::optional(index) : std::nullopt;
}

std::optional<int> CChangesModel::RowOf(std::size_t index) const
{
    std::size_t row = index;
    if (IsFiltered()) {
        const auto& matches = m_filter.Matches();
        const auto found = std::lower_bound(matches.begin(), matches.end(), index);
        if (found == matches.end() || *found != index)
            return std::nullopt;
        row = static_cast<std::size_t>(found - matches.begin());
    }
    return row < static_cast<std::size_t>(m_nRows) ? std::optional(static_cast<int>(row)) : std::nullopt;
}

std::optional<int> CChangesModel::RowAt(CellPlace place, int near) const
{
    for (int distance = 0; distance <= kFarthest; ++distance)
        for (const int row : {near - distance, near + distance})
            if (PlaceIn(row) == place)
                return row;
    return std::nullopt;
}

int CChangesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_nRows;
}

int CChangesModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ChangeTexts().size());
}

QVariant CChangesModel::data(const QModelIndex& index, int role) const
{
    const auto change = IndexIn(index.row());
    const bool isShown = role == Qt::DisplayRole || role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole;
    if (!change || !isShown)
        return {};
    const Line& line = LineOf(*change);
    const auto column = static_cast<ChangeColumn>(index.column());
    if (role == Qt::DisplayRole)
        return line.texts[static_cast<std::size_t>(column)];
    const QString sentence = column == ChangeColumn::Why && line.why ? ReasonSentence(*line.why) : QString();
    if (role == Qt::AccessibleDescriptionRole)
        return sentence;
    const QString tip = sentence.isEmpty() ? line.texts[static_cast<std::size_t>(column)] : sentence;
    return QStringLiteral("<p>%1</p>").arg(tip.toHtmlEscaped()); // a value may be cut off where it stands
}

QVariant CChangesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString titles[]{tr("Address"), tr("Row"), tr("Item"), tr("Old"), tr("New"), tr("Why")};
    return titles[section];
}

void CChangesModel::ForgetLines()
{
    m_lines.fill({});
}

/// The column of a change whose notes are to be shown; null for most.
const ColumnCoding* CChangesModel::ColumnOfChange(std::size_t index) const
{
    const auto place = m_columnOf ? m_list->PlaceOf(index) : std::nullopt;
    const ColumnCoding* column = place ? m_columnOf(*place) : nullptr;
    return column != nullptr && !column->notes.IsEmpty() ? column : nullptr;
}

const CChangesModel::Line& CChangesModel::LineOf(std::size_t index) const
{
    Line& line = m_lines[index % m_lines.size()];
    const ColumnCoding* column = ColumnOfChange(index);
    const CSharedNotes notes = column != nullptr ? column->notes : CSharedNotes();
    if (line.index != index || line.notes != notes) {
        const ChangeRecord change = m_list->At(index);
        line = {index, TextsOf(change, kLongestText, column), change.why, notes};
    }
    return line;
}
