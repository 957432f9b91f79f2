#include "views/FoundPlacesModel.h"

#include "files/TableTitles.h"
#include "text/EscapedText.h"
#include "views/TextCrossing.h"

#include <algorithm>

CFoundPlacesModel::CFoundPlacesModel(const CRecipeRows& rows, const std::vector<NumberForm>& forms, bool areFields,
                                     QObject* parent)
    : QAbstractTableModel(parent),
      m_rows(rows),
      m_forms(forms),
      m_areFields(areFields)
{
}

void CFoundPlacesModel::Clear()
{
    beginResetModel();
    m_places.clear();
    m_nShown = 0;
    endResetModel();
}

void CFoundPlacesModel::ShowUpTo(std::size_t count)
{
    const int rows = static_cast<int>(std::min(count, m_places.size()));
    if (rows <= m_nShown)
        return;
    beginInsertRows({}, m_nShown, rows - 1);
    m_nShown = rows;
    endInsertRows();
}

/// Words that another item's words stand around are in the table, too.
std::optional<CellPlace> CFoundPlacesModel::CellOf(const Place& place) const
{
    if (m_areFields || m_rows.RowCount() == 0 || m_rows.Columns().empty())
        return std::nullopt;
    return ValueAt(m_rows, WordAddress(static_cast<std::int64_t>(place.word)));
}

int CFoundPlacesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_nShown;
}

int CFoundPlacesModel::columnCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return 0;
    return m_areFields ? 3 : 5;
}

QVariant CFoundPlacesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const Place& place = At(index.row());
    const QString text = m_areFields ? FieldText(place, index.column()) : WordText(place, index.column());
    return role == Qt::DisplayRole ? text : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
}

QString CFoundPlacesModel::FieldText(const Place& place, int column) const
{
    if (column == 2)
        return ToQString(EscapedText(place.text));
    return QString::number(column == 0 ? place.word : place.form);
}

QString CFoundPlacesModel::WordText(const Place& place, int column) const
{
    const NumberForm& form = m_forms[place.form];
    switch (column) {
    case 0:
        return QStringLiteral("RW%1").arg(place.word);
    case 1:
        return ToQString(form.name).section(u',', 0, 0);
    case 2:
        return QString::number(form.decimals);
    case 3:
        return form.bytes.size() <= 2 ? QString() : form.isHighWordFirst ? tr("high word first") : tr("low word first");
    default:
        return CellText(place);
    }
}

/// "row 4, Product".
QString CFoundPlacesModel::CellText(const Place& place) const
{
    const auto cell = CellOf(place);
    return cell ? tr("row %1, %2")
                      .arg(cell->row + kTitleRows)
                      .arg(ToQString(m_rows.Columns()[cell->column].title).simplified())
                : QString();
}

QVariant CFoundPlacesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString ofFields[]{tr("Line"), tr("Field"), tr("Text")};
    const QString ofWords[]{tr("Address"), tr("Type"), tr("Decimals"), tr("Word order"), tr("In the table")};
    return m_areFields ? ofFields[section] : ofWords[section];
}
