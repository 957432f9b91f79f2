#pragma once

#include <QString>

#include <vector>

/// What a cell shows besides its text.
struct GridCellMarks {
    bool changed = false;    ///< the user changed it and it has not been saved since
    bool outOfRange = false; ///< its value lies outside what it may hold
    bool rewritten = false;  ///< a save would store another value than was read or typed
    bool unusual = false;    ///< its value may be held, but is none that is expected
    bool differs = false;    ///< it is compared with another value, which is not the same
};

/// What a command on cells was.
enum class GridChange { Typing, Paste, Cut, Clear, Fill };

/// A text for a cell; row and column of the grid.
struct GridCellText {
    int row;
    int column;
    QString text;
};

/// Where a grid in virtual mode gets its texts from and where it hands an edited one back. Rows and columns are those
/// of the grid, the fixed ones counted; the fixed rows are never asked for. The source outlives the grid or its virtual
/// mode.
class CGridTextSource {
public:
    virtual ~CGridTextSource() = default;
    virtual QString CellText(int row, int column) const = 0;
    virtual bool SetCellText(int row, int column, const QString& text) = 0;

    /// Gives cells texts that passed the grid's check: what one command of the user changed, all or nothing. False when
    /// nothing was changed. By default each goes through SetCellText.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): whoever overrides it may keep the texts
    virtual bool SetCellTexts(GridChange /*change*/, std::vector<GridCellText> texts)
    {
        bool changed = false;
        for (const GridCellText& cell : texts)
            changed = SetCellText(cell.row, cell.column, cell.text) || changed;
        return changed;
    }

    /// Asked for each cell that is painted.
    virtual GridCellMarks CellMarks(int /*row*/, int /*column*/) const { return {}; }
    /// The marks in words, for the cell's tip and for screen readers; empty without a mark.
    virtual QString CellRemark(int /*row*/, int /*column*/) const { return {}; }
    /// What there is to say of the title of a column, in lines, for its tip and for screen readers; mostly empty.
    virtual QString TitleRemark(int /*column*/) const { return {}; }
    /// The number that messages give a row.
    virtual int RowInMessages(int row) const { return row; }
};
