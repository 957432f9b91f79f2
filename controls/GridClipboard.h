#pragma once

#include <QStringView>

#include <cstdint>
#include <optional>
#include <utility>

class CGridCtrl;
class CSlowWork;
class QItemSelectionRange;

/// The clipboard commands on the cells of a grid. Texts go out and come in as tab-separated text. A text that the
/// grid's check refuses leaves its cell as it is; the first refusal is reported, once, when the command is done.
class CGridClipboard {
public:
    explicit CGridClipboard(CGridCtrl& grid) : m_grid(grid) {}

    /// Of several ranges: the rows and columns that hold a selected cell, with empty fields where a cell is not
    /// selected.
    bool Copy();  ///< false when nothing is selected or the user cancelled; the clipboard is then as before
    void Clear(); ///< empties the selected cells
    void Paste(QStringView text);

private:
    using Cell = std::pair<int, int>; ///< grid row and column

    void Fill(const QString& text, const QString& label);
    bool FillRange(const QItemSelectionRange& range, const QString& text, CSlowWork& work, std::int64_t& rowsDone);
    void PasteBlock(QStringView text);
    void Change(int row, int column, const QString& text);
    void Finish();

    CGridCtrl& m_grid;
    std::optional<Cell> m_firstRefusal;
};
