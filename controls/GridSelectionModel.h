#pragma once

#include <QItemSelectionModel>

/// The focus cell and the selected cells of a grid: where the focus goes, the selection begins or is extended to.
///
/// A selection has an anchor, the focus cell with which it was begun. What extends it reaches from the anchor to the
/// new focus cell. All of this works on ranges, so the number of rows costs nothing.
class CGridSelectionModel final : public QItemSelectionModel {
    Q_OBJECT

public:
    /// What an extended selection is made of. A selection begins with cells.
    enum class Extent { Cells, Rows, Columns };

    using QItemSelectionModel::QItemSelectionModel;
    using QItemSelectionModel::select;

    void MoveTo(const QModelIndex& index);   ///< makes it the focus cell and the only selected one
    void ExtendTo(const QModelIndex& index); ///< makes it the focus cell, and selects from the anchor to there
    /// Makes these cells the selected ones and `focus`, one of them, the focus cell with which the selection begins.
    void Choose(const QModelIndex& focus, const QItemSelection& cells);
    /// Selects all of the rows or columns from the anchor to the focus cell, and no other cell. Without a focus cell
    /// it does nothing.
    void Widen(Extent extent);
    /// The selection that was just begun or extended consists of rows or columns, and goes on so.
    void SetExtent(Extent extent) { m_extent = extent; }

    void select(const QItemSelection& selection, QItemSelectionModel::SelectionFlags command) override;
    void setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags command) override;

signals:
    void FocusMoving(const QModelIndex& index); ///< the cell it moves to

private:
    QItemSelection FromAnchor() const;
    void Begin();

    QPersistentModelIndex m_anchor;
    Extent m_extent = Extent::Cells;
};
