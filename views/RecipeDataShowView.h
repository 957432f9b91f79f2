#pragma once

#include "controls/GridCtrl.h"
#include "files/RecipeRows.h"
#include "views/RecipeFrame.h"

#include <QWidget>

class QMenu;

/// The right pane: a grid over the words of the current recipe file, laid out by the format in use.
///
/// Row 0 of the grid holds the titles, columns 0 and 1 the row number and the word address of each row; the data cells
/// lie behind them. The cells' texts are the working copy of the words: they are read when the rows are shown and coded
/// back when they are saved.
class CRecipeDataShowView final : public QWidget, private CGridTextSource {
    Q_OBJECT

public:
    static constexpr int kGridControlId = 102800;
    static constexpr int kFixedRows = 1;
    static constexpr int kFixedColumns = 2;

    /// `frame` outlives the view.
    explicit CRecipeDataShowView(CRecipeFrame& frame, QWidget* parent = nullptr);
    ~CRecipeDataShowView() override;

    /// Lays out the grid from the frame's state and reads the current file, as `type`, into it. Returns 1, or 2 with an
    /// empty grid when the format in use has no words or breaks a limit (then reported).
    int ShowData(FileType type);

    /// Writes the rows to the file `path` as `type`; a failure was reported then. Rows that are not those of the
    /// frame's current file are written nowhere: none, or empty ones, would take the place of words that nobody has
    /// seen.
    SaveResult WriteData(FileType type, const QString& path);

    /// Whether there are rows that may be saved: those of the frame's current file, or of its new document.
    bool HasRowsOfFile() const { return m_bRowsOfFile && !m_rows.ShowsTheSameEverywhere(); }

    /// Whether the rows may be saved as the file `path`, of the type `type`; if not, that was reported as its failed
    /// save. Asked before a target is prepared: rows that are not the current file's must cost it no byte.
    bool MaySaveAs(FileType type, const QString& path) const;

    /// Empties the grid; no cell is chosen afterwards.
    void ClearGrid();

    /// Ends a cell's edit that is open. False when its text was refused; that was reported then.
    bool EndCellEdit();

    /// The cell value check for a column of the grid; false for a column without a coding.
    bool ValidateCellValue(int gridColumn, const QString& text) const;

    /// Whether the chosen cell's bits can be shown: a cell is chosen, and its column is neither real nor a string.
    bool CanBitBrowse() const;

    /// Word address, type and limits of the chosen cell in one line, and the marks that it has; empty when none is
    /// chosen.
    QString ChosenCellInfo() const;

    /// Opens the bit browser on the chosen cell, if it can be: the command BitBrowse. An edit that is open is ended
    /// first; a refused text stops the command.
    void OnBitBrowse();

    /// Puts a text that was checked into a data cell and redraws the cell.
    void SetCellValue(int column, int row, const QString& text);

    CGridCtrl& Grid() { return *m_pGrid; }

signals:
    /// The cell on which cell commands work was chosen, or there is none any more.
    void CellChosen();
    /// What ChosenCellInfo tells may be another text now.
    void ChosenCellChanged();

private:
    QString CellText(int row, int column) const override;
    bool SetCellText(int row, int column, const QString& text) override;
    GridCellMarks CellMarks(int row, int column) const override;
    QString CellRemark(int row, int column) const override;

    bool IsOwnType(FileType type) const;
    void LayOutGrid();
    void WriteTitles();
    void OnGridNotify(const GridNotification& notification);
    void OnTextsChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);
    void OnGridPressed(const QModelIndex& index);
    void ChooseCell(int row, int column);
    void ForgetChosenCell();
    void ForgetChanges();
    void CreatePopupMenu();

    CRecipeFrame& m_frame;
    CGridCtrl* m_pGrid;
    QMenu* m_pPopupMenu = nullptr;
    QAction* m_pActionBitBrowse = nullptr; ///< the popup menu's
    DataFormat m_dataFormat;               ///< the format that laid out the rows; the frame may have gone on to another
    CRecipeRows m_rows;
    bool m_bRowsOfFile = false; ///< they were read in full from the current file, or are those of a new document
    int m_nCurrentColumn = -1;  ///< grid column of the chosen cell, -1 for none
    int m_nCurrentRow = -1;     ///< grid row of the chosen cell
};
