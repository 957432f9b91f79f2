#pragma once

#include <QItemSelectionModel>

/// Tells that the focus cell is about to move, whatever moves it.
class CGridSelectionModel final : public QItemSelectionModel {
    Q_OBJECT

public:
    using QItemSelectionModel::QItemSelectionModel;

    void setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags command) override;

signals:
    void FocusMoving(const QModelIndex& index); ///< the cell it moves to
};
