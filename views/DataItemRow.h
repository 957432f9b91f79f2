#pragma once

#include "model/DataItem.h"
#include "views/FirstRow.h"

#include <QTreeWidgetItem>

/// A row of the item list, with a copy of its item, and with what the table's first row holds of it. It makes its texts
/// when they are seen, so that a long list fills at once and shows what is there then.
class CDataItemRow final : public QTreeWidgetItem {
public:
    static constexpr int IsArrayRole = Qt::UserRole; ///< of any column
    enum Column { IdColumn, LengthColumn, TypeColumn, DescriptionColumn, FirstRowColumn, ColumnCount };

    /// `id` is shown as it is, wherever the row moves; `firstRow` knows the item by where the row is. It outlives the
    /// row.
    CDataItemRow(int id, const DataItem& item, const CFirstRow& firstRow)
        : m_nId(id),
          m_item(item),
          m_firstRow(firstRow)
    {
    }

    QVariant data(int column, int role) const override;

private:
    QString Text(int column) const;
    QString AccessibleText(int column) const;
    QString TypeText() const;
    QString FirstRowText() const;
    QString Summary() const;

    int m_nId;
    DataItem m_item;
    const CFirstRow& m_firstRow;
};
