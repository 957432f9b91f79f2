#include "views/InspectorModel.h"

#include "views/TextCrossing.h"

#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace {

enum Column { kName, kValue, kColumns };

const WordView& ViewAt(const QModelIndex& index)
{
    return WordViews()[static_cast<std::size_t>(index.row())];
}

} // namespace

void CInspectorModel::SetWords(std::vector<std::byte> bytes, std::size_t own, bool isEditable)
{
    m_bytes = std::move(bytes);
    m_own = own;
    m_isEditable = isEditable;
    emit dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
}

int CInspectorModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(WordViews().size());
}

int CInspectorModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QString CInspectorModel::TextOf(const WordView& view) const
{
    return m_own == 0 ? QString() : ToQString(TextIn(view, BytesTaken(view) == 0 ? Own() : std::span(m_bytes)));
}

QString CInspectorModel::InFull(const WordView& view) const
{
    const QString text = tr("%1: %2").arg(ToQString(NameOf(view)), TextOf(view));
    return IsBeyond(view) ? tr("%1, read with the words after the cell").arg(text) : text;
}

QVariant CInspectorModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const WordView& view = ViewAt(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return index.column() == kName ? ToQString(NameOf(view)) : TextOf(view);
    case Qt::ToolTipRole: // a text may be cut off where it stands
        return QStringLiteral("<p>%1</p>").arg(InFull(view).toHtmlEscaped());
    case Qt::AccessibleTextRole:
        return index.column() == kName ? ToQString(NameOf(view)) : InFull(view);
    case Qt::ForegroundRole:
        return IsBeyond(view) ? QVariant(QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text))
                              : QVariant();
    default:
        return {};
    }
}

QVariant CInspectorModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == kName ? tr("Read as") : tr("Value");
}

Qt::ItemFlags CInspectorModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const bool isEditable =
        index.isValid() && index.column() == kValue && m_isEditable && m_own > 0 && !IsLonger(ViewAt(index));
    return isEditable ? flags | Qt::ItemIsEditable : flags;
}

bool CInspectorModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    if (value.toString() != TextOf(ViewAt(index)))
        emit Typed(ViewAt(index), value.toString());
    return true;
}
