#include "views/NameDelegate.h"

#include "views/OneLineEdit.h"

#include <QLineEdit>

CNameDelegate::CNameDelegate(int longest, QObject* parent) : QStyledItemDelegate(parent), m_nLongest(longest) {}

QWidget* CNameDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const
{
    auto* edit = new QLineEdit(parent);
    edit->setFrame(false);
    edit->setMaxLength(m_nLongest);
    edit->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    KeepOnOneLine(*edit);
    return edit;
}
