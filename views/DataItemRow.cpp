#include "views/DataItemRow.h"

#include "views/TextCrossing.h"

#include <QCoreApplication>
#include <QTreeWidget>

QVariant CDataItemRow::data(int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return Text(column);
    case Qt::ToolTipRole:
        return Summary().toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")); // wraps what is long
    case IsArrayRole:
        return m_item.isArray != 0;
    case Qt::AccessibleTextRole:
        return AccessibleText(column);
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
        return m_item.isArray != 0 ? QStringLiteral("%1 x %2").arg(TypeText()).arg(m_item.arrayLength) : TypeText();
    case DescriptionColumn:
        return ToQString(TextOf(m_item.description));
    case FirstRowColumn:
        return FirstRowText();
    default:
        return {};
    }
}

QString CDataItemRow::AccessibleText(int column) const
{
    const QString text = Text(column);
    return column == FirstRowColumn && text.isEmpty() ? QCoreApplication::translate("CDataItemRow", "no value") : text;
}

QString CDataItemRow::TypeText() const
{
    return ToQString(TypeName(m_item.dataType));
}

QString CDataItemRow::FirstRowText() const
{
    const QTreeWidget* const list = treeWidget();
    return list ? m_firstRow.TextOf(list->indexFromItem(this).row()) : QString();
}

/// What the columns have no room for: the whole description and type, the length of an array, and the values.
QString CDataItemRow::Summary() const
{
    QString text = Text(DescriptionColumn) + QLatin1Char('\n') + TypeText();
    if (m_item.isArray != 0)
        text += QCoreApplication::translate("CDataItemRow", "\nArray of %1").arg(m_item.arrayLength);
    if (const QString held = FirstRowText(); !held.isEmpty())
        text += QCoreApplication::translate("CDataItemRow", "\nFirst row: %1").arg(held);
    return text;
}
