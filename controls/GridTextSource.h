#pragma once

#include <QString>

/// Where a grid in virtual mode gets its texts from and where it hands an edited one back. Rows and columns are those
/// of the grid, the fixed ones counted; the fixed rows are never asked for. The source outlives the grid or its virtual
/// mode.
class CGridTextSource {
public:
    virtual ~CGridTextSource() = default;
    virtual QString CellText(int row, int column) const = 0;
    virtual bool SetCellText(int row, int column, const QString& text) = 0;
};
