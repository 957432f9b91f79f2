#pragma once

#include "controls/GridCellStore.h"
#include "controls/GridDefaultCell.h"
#include "controls/GridTextSource.h"

#include <QAbstractTableModel>

#include <functional>

/// What a grid holds: its counts, its cells and the default cells.
///
/// All operations take rows and columns of the grid. To the toolkit's views it shows the body, the cells that are not
/// fixed; the fixed ones are its header texts.
class CGridModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    /// Changes a cell's text as if the user had typed it; false when it was refused.
    using TextChange = std::function<bool(int row, int column, const QString& text)>;

    explicit CGridModel(QObject* parent = nullptr);

    void Clear();                ///< no rows, no columns, no cells, not virtual; the default cells stay
    bool SetRowCount(int count); ///< a model without body rows resets, so views forget their section sizes
    bool ResetRows(int count);   ///< as SetRowCount, but every body row is another one; only for virtual models
    bool SetColumnCount(int count);
    bool SetFixedRowCount(int count);
    bool SetFixedColumnCount(int count);
    int RowCount() const { return m_nRows; }
    int ColumnCount() const { return m_nColumns; }
    int FixedRowCount() const { return m_nFixedRows; }
    int FixedColumnCount() const { return m_nFixedColumns; }
    bool Contains(int row, int column) const;
    bool IsBody(int row, int column) const { return row >= m_nFixedRows && column >= m_nFixedColumns; }

    void SetSource(CGridTextSource* source); ///< null for kept cells, which are then empty
    bool IsVirtual() const { return m_source != nullptr; }
    void SetEditable(bool editable) { m_bEditable = editable; }
    bool IsEditable() const { return m_bEditable; }
    bool IsEditable(int row, int column) const;
    void SetTextChange(TextChange change) { m_change = std::move(change); }

    QString Text(int row, int column) const;                ///< empty outside the grid
    bool SetText(int row, int column, const QString& text); ///< false outside the grid, or refused by the source
    /// What one command of the user gives cells of the body, all or nothing, even where std::bad_alloc is thrown for
    /// kept cells. Texts for other cells are left out. False when nothing was changed.
    bool SetTexts(GridChange change, std::vector<GridCellText> texts);
    int RowInMessages(int row) const { return m_source != nullptr ? m_source->RowInMessages(row) : row; }
    GridCellMarks Marks(int row, int column) const;           ///< none for a kept cell
    QString Remark(int row, int column) const;                ///< likewise
    const CGridCellBase* FindCell(int row, int column) const; ///< null for a cell that is not kept or not made yet
    CGridCellBase* MakeCell(int row, int column);             ///< null for a cell that cannot be kept
    bool PutCell(int row, int column, std::unique_ptr<CGridCellBase> cell); ///< false for a cell that cannot be kept
    CGridDefaultCell& DefaultCell(bool fixedRow, bool fixedColumn);
    const CGridDefaultCell& DefaultCellAt(int row, int column) const;

    QModelIndex BodyIndex(int row, int column) const; ///< of a grid cell; invalid for a fixed one
    int GridRow(const QModelIndex& index) const { return index.row() + m_nFixedRows; }
    int GridColumn(const QModelIndex& index) const { return index.column() + m_nFixedColumns; }
    /// The number of a cell among the children of the accessible table, which counts both headers as cells.
    int AccessibleChild(const QModelIndex& index) const;
    void TextsChanged(); ///< every text of the body may be another one

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QString Description(const QModelIndex& index) const;
    QVariant TitleRemark(int section, Qt::Orientation orientation, int role) const;
    void KeepTexts(const std::vector<GridCellText>& texts);
    bool IsKept(int row, int column) const { return Contains(row, column) && (!m_source || row < m_nFixedRows); }

    int m_nRows = 0;
    int m_nColumns = 0;
    int m_nFixedRows = 0;
    int m_nFixedColumns = 0;
    bool m_bEditable = true;
    CGridTextSource* m_source = nullptr;
    TextChange m_change;
    CGridCellStore m_cells;
    CGridDefaultCell m_normal;
    CGridDefaultCell m_fixedRow;
    CGridDefaultCell m_fixedColumn;
    CGridDefaultCell m_fixedCorner;
};
