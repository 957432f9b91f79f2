#pragma once

#include "model/DataItem.h"

#include <QTreeWidgetItem>

/// A row of the item list, with a copy of its item. It makes its texts when they are seen, so that a long list fills at
/// once.
class CDataItemRow final : public QTreeWidgetItem {
public:
    enum Column { IdColumn, LengthColumn, TypeColumn, DescriptionColumn, ColumnCount };

    /// `id` is shown as it is, wherever the row moves.
    CDataItemRow(int id, const DataItem& item) : m_nId(id), m_item(item) {}

    QVariant data(int column, int role) const override;

private:
    QString Text(int column) const;
    QString Summary() const;

    int m_nId;
    DataItem m_item;
};
