#pragma once

#include <QStyledItemDelegate>

/// The editor of names in a table: one line of at most so many characters, which screen readers call as the column is.
class CNameDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit CNameDelegate(int longest, QObject* parent = nullptr);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    int m_nLongest;
};
