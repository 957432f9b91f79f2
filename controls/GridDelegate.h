#pragma once

#include <QStyledItemDelegate>

class CGridModel;

/// Draws the data cells of the grid.
class CGridDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    CGridDelegate(const CGridModel& model, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    const CGridModel& m_model;
};
