#pragma once

#include "controls/ListFont.h"

#include <QColor>
#include <QTableWidget>

#include <map>
#include <optional>
#include <utility>
#include <vector>

class CHeaderCtrlCl;
class QAccessibleEvent;

/// A list whose cells are bits: coloured squares, cyan for a clear bit and magenta for a set one. A click on a cell
/// flips its bit, and so does the space bar on the cell with the focus.
///
/// Its look is set up once, before it is shown: colours by column and by cell, fonts, the row height and the header.
/// Where several colours were given for one column or one cell, the first one counts.
class CListCtrlCl final : public QTableWidget {
    Q_OBJECT

public:
    /// Where InsertColumn puts a heading in its column.
    enum Alignment { Left = 0, Right = 1, Centre = 2 };

    explicit CListCtrlCl(QWidget* parent = nullptr);

    void SetHeaderBackColor(int red, int green, int blue, int gradientStep);
    void SetHeaderHeight(float factor);
    void SetHeaderFont(int height, int width); ///< as ListFont takes them
    void SetHeaderTextColor(const QColor& color);

    void SetBkColor(const QColor& color); ///< behind all rows
    void SetColumnBackColor(int column, const QColor& color);
    void SetCellBackColor(int column, int row, const QColor& color);
    void SetTextColor(const QColor& color);
    void SetColumnTextColor(int column, const QColor& color);
    void SetCellTextColor(int column, int row, const QColor& color);
    void SetCellFont(int height, int width); ///< as ListFont takes them
    void SetRowHeight(int pixels);           ///< at once, for every row; 0 or less for the natural height

    /// Puts a column of `width` pixels in at `position`, or after the last one, and returns where it is. The heading
    /// goes to the first column from the left that has none yet. kept: an unknown `alignment` is centred. Columns have
    /// no sub-item numbers of their own here.
    int InsertColumn(int position, const QString& heading, int alignment, int width, int subItem = -1);
    /// Puts a row in at `row`, or after the last one, and returns where it is. `text` is that of its first cell.
    int InsertItem(int row, const QString& text);
    /// The text of a cell. It is not painted: it is the cell's tool tip, its first 80 characters.
    void SetItemText(int row, int column, const QString& text);
    /// Another tool tip for a cell, until it is given a text.
    void SetItemTip(int row, int column, const QString& tip);
    /// What a screen reader says for a cell.
    void SetItemName(int row, int column, const QString& name);

    void SetBitState(int row, int column, int state);        ///< 0 clear, otherwise set
    std::optional<bool> BitState(int row, int column) const; ///< none for a cell that was given no state
    /// Flips a cell's bit as a click on it does. A cell that was given no state stays clear; the click is told all the
    /// same.
    void ToggleBit(int row, int column);

    // The look of a cell that is not selected.
    QColor BackColor(int row, int column) const;
    QColor TextColor(int row, int column) const;
    const QFont& CellFont() const { return m_cellFont; }

    CHeaderCtrlCl& Header() { return *m_pHeader; }

    void keyboardSearch(const QString& search) override; ///< does nothing: the cells' texts are not on the screen

signals:
    void BitToggled(int row, int column); ///< after a bit was flipped

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    struct ColumnColor {
        int column;
        QColor color;
    };
    struct CellColor {
        int column;
        int row;
        QColor color;
    };
    static QColor FirstColor(const std::vector<ColumnColor>& columns, const std::vector<CellColor>& cells, int row,
                             int column, QColor otherwise);
    QTableWidgetItem& EnsureItem(int row, int column);
    void ShowState(int row, int column);
    void TellCheckState(int row, int column);
    void Tell(QAccessibleEvent& event, int row, int column);

    CHeaderCtrlCl* m_pHeader;
    std::vector<ColumnColor> m_columnBackColors;
    std::vector<CellColor> m_cellBackColors;
    std::vector<ColumnColor> m_columnTextColors;
    std::vector<CellColor> m_cellTextColors;
    QColor m_textColor = Qt::black;
    QFont m_cellFont = ListFont(12, 0);
    std::map<std::pair<int, int>, int> m_bitStates; ///< by row and column
};
