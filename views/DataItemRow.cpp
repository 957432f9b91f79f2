#include "views/DataItemRow.h"

#include "views/TextCrossing.h"

#include <QCoreApplication>

QVariant CDataItemRow::data(int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return Text(column);
    case Qt::ToolTipRole:
        return Summary().toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")); // wraps what is long
    case Qt::AccessibleDescriptionRole:
        return Summary();
    default:
        return QTreeWidgetItem::data(column, role);
    }
}

QString CDataItemRow::Text(int column) const
{
    switch (column) {
    case IdColumn:
        return QString::number(m_nId);
    case LengthColumn:
        return QString::number(m_item.dataLength);
    case TypeColumn:
        return ToQString(TypeName(m_item.dataType));
    case DescriptionColumn:
        return ToQString(TextOf(m_item.description));
    default:
        return {};
    }
}

/// What the columns have no room for: the whole description and type, and the length of an array.
QString CDataItemRow::Summary() const
{
    QString text = Text(DescriptionColumn) + QLatin1Char('\n') + Text(TypeColumn);
    if (m_item.isArray != 0)
        text += QCoreApplication::translate("CDataItemRow", "\nArray of %1").arg(m_item.arrayLength);
    return text;
}
