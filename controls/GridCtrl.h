#pragma once

#include "controls/GridEdits.h"
#include "controls/GridNotification.h"
#include "controls/GridPrinter.h"
#include "controls/GridTextSource.h"
#include "controls/GridTitles.h"
#include "controls/InPlaceEdit.h"

#include <QPointer>
#include <QString>
#include <QTableView>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class CGridCellBase;
class CGridClipboard;
struct GridCopyForm;
struct GridPasteRest;
class CGridCorner;
class CGridDefaultCell;
class CGridHeader;
class CGridModel;
class CGridSelectionModel;
class CTitleTip;

/// The fields of one cell that SetItem sets, named by `mask`.
struct GridItem {
    enum Mask : std::uint32_t { Text = 1, Image = 2, Data = 4, State = 8, Format = 64 };

    int row = 0;
    int column = 0;
    std::uint32_t mask = 0;
    std::uint32_t state = 0;  ///< CGridCellBase::State; only ReadOnly can be set, the others follow from the grid
    std::uint32_t format = 0; ///< text format: 0 left, 1 centred, 2 right, 16 wraps
    QString text = {};        ///< initialised, so that designated initialisers may leave it out
    int image = -1;
    std::uintptr_t data = 0;
};

/// A grid with fixed title rows and columns, editable cells, an in-place editor, the clipboard and printing.
///
/// It knows nothing of what its cells mean: it asks the check whether a typed text is acceptable, and leaves it to the
/// reporter how to report a refused one. Rows and columns are counted with the fixed ones everywhere.
///
/// A click, Shift+click, Ctrl+click, the titles and the keys choose cells; dragging the mouse does not. The keys that
/// move the focus cell make it the selected one; with Shift they extend the selection to it, with Ctrl they go to the
/// last cell in their direction. A character, F2, Enter or a double click opens the editor on the focus cell.
class CGridCtrl : public QTableView, private CInPlaceEditOwner {
    Q_OBJECT

public:
    using CellCheck = CGridEdits::Check;
    /// Shows one message to the user and returns once it is answered. `further` is what else there is to say of it;
    /// mostly empty.
    using MessageReporter = std::function<void(const QString& text, const QString& further)>;
    /// What became of a change that goes the user's way.
    using Change = CGridEdits::Change;

    /// A grid without rows and columns. `controlId` goes with every notification.
    explicit CGridCtrl(int controlId, QWidget* parent = nullptr);
    ~CGridCtrl() override;

    void SetCellCheck(CellCheck check);          ///< none: every text is accepted
    void SetReporter(MessageReporter reporter);  ///< none: a message box
    void SetTextSource(CGridTextSource* source); ///< virtual mode while not null; the fixed rows stay kept cells
    void SetEditable(bool editable);

    void DeleteAllItems(); ///< removes every row, column and cell; ends virtual mode; an open edit is dropped
    bool SetRowCount(int count);
    bool SetColumnCount(int count);
    /// Sets the number of rows where every data row is another one then: no cell is chosen afterwards. The widths of
    /// columns stay. False for too few rows, and outside virtual mode.
    bool ResetRows(int count);
    bool SetFixedRowCount(int count);    ///< false for more than there are rows
    bool SetFixedColumnCount(int count); ///< false for more than there are columns

    /// Keeps the first `count` data columns in sight, beside the fixed ones, while the others scroll; 0 for none. In
    /// all else they are columns as the others. DeleteAllItems ends it.
    void SetFrozenColumnCount(int count);
    int FrozenColumnCount() const; ///< as it was set
    /// Whether they scroll as all others for now: they would take more than two thirds of the room.
    bool AreFrozenColumnsTooWide() const;

    int RowCount() const;
    int ColumnCount() const;
    int FixedRowCount() const;
    int FixedColumnCount() const;

    /// The height in pixels of every body row that has none of its own. Cheap for any number of rows.
    void SetDefaultRowHeight(int pixels);
    bool SetRowHeight(int row, int pixels);      ///< false for a row outside the grid
    bool SetColumnWidth(int column, int pixels); ///< false for a column outside the grid
    /// Makes the columns from `first` on as wide as their titles and texts ask for, within bounds. Looks at some rows
    /// spread over the grid, not at all of them.
    void FitColumns(int first);
    int RowHeight(int row) const;      ///< in pixels; 0 outside the grid
    int ColumnWidth(int column) const; ///< in pixels; 0 outside the grid

    /// False for a cell outside the grid. A data cell in virtual mode takes the text only.
    bool SetItem(const GridItem& item);
    bool SetItemText(int row, int column, const QString& text);
    QString GetItemText(int row, int column) const;              ///< empty for a cell outside the grid
    bool SetCellData(int row, int column, std::uintptr_t value); ///< false outside the grid, or in virtual mode
    std::uintptr_t GetCellData(int row, int column) const;
    std::uint32_t GetItemState(int row, int column) const; ///< CGridCellBase::State; 0 outside the grid
    void RedrawCell(int row, int column);
    void TextsChanged(); ///< to be called when all texts of data cells may be others

    CGridCellBase* GetCell(int row, int column); ///< a kept cell, to set its look; null outside, or when it is not kept
    bool SetCell(int row, int column,
                 std::unique_ptr<CGridCellBase> cell); ///< replaces a kept cell by one of any class
    /// The look of cells that set none: of data cells, of the fixed rows, the fixed columns, or the corner where both
    /// meet. The data cells' starts centred. Colours, font and margin come from the palette and the font of the grid.
    CGridDefaultCell& DefaultCell(bool fixedRow, bool fixedColumn);

    bool FocusCell(int& row, int& column) const; ///< false when no cell has the focus
    bool SetFocusCell(int row, int column);      ///< false for a fixed cell or one outside the grid
    /// Makes these data cells, grid row and column in ascending order, the selected ones and the first of them the
    /// focus cell, and scrolls so that it is in sight, and the others where they fit. Cells that are not data cells are
    /// left out; nothing happens when none is left. Cells that make up more than 1,000 rectangles are selected with all
    /// that lies between them.
    void ShowCells(const std::vector<std::pair<int, int>>& cells);
    /// What the commands on cells act on: the selected cells, or the focus cell alone when none is selected.
    QItemSelection ChosenCells() const;
    bool StartEdit(); ///< opens the editor on the focus cell; false when it cannot be edited
    bool IsEditing() const;
    /// Ends an edit that is open, as a click elsewhere would. False when the text was refused (and reported).
    bool EndEdit();

    /// Changes a text as if the user had typed it: asks the check and tells CellEdited. Reports nothing.
    Change ChangeText(int row, int column, const QString& text);
    void ReportRefusal(int row, int column) override; ///< "Col %d,Row %d data error !"

    // While a cell is edited these act on its editor, otherwise on the chosen cells. What a command gives cells it
    // hands over at its end: cancelled, or without the memory for it, it has changed nothing.
    bool CanCopy() const;
    bool CanCut() const;
    bool CanPaste() const;
    bool CanSelectAll() const;

    /// As Copy, but of the chosen cells even while one is edited, and in that form. False when nothing was copied.
    bool CopyAs(const GridCopyForm& form);

    /// Where a context menu belongs after a right-click notification: at the mouse, or in the middle of the focus cell
    /// when the keyboard asked for it. A point of the screen.
    QPoint ContextMenuPosition() const { return m_ptContextMenu; }

    int PrintPageCount(const QPagedPaintDevice& device) const;
    /// Prints all cells. False when the device fails or `progress` cancels.
    bool Print(QPagedPaintDevice& device, const CGridPrinter::Progress& progress = {}) const;

    CTitleTip& TitleTip() { return *m_pTitleTip; }
    CGridModel& Model() { return *m_pModel; }
    const CGridModel& Model() const { return *m_pModel; }

    void keyboardSearch(const QString& search) override; ///< does nothing: typing starts an edit
    QRect visualRect(const QModelIndex& index) const override;
    QModelIndex indexAt(const QPoint& position) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

public slots:
    void Copy();
    void Cut();
    void Paste();
    void SelectAll();

signals:
    /// Ctrl+Enter ended the edit of a cell: `text`, which is not checked, is for all chosen cells. Nothing was changed.
    void TextForChosen(const QString& text);
    /// Right click, selection changing, end of an edit: in the order in which they happen. At the end of an edit the
    /// cell shows the text already.
    void Notify(const GridNotification& notification);
    /// A text was accepted that differs from the one before; sent before the cell takes it.
    void CellEdited(int row, int column);
    /// The user came to the focus cell by a click, a key or an edit. Also told where it did not move, but then for keys
    /// only.
    void FocusCellUsed(int row, int column);
    /// All values that fit were pasted, but so many rows and columns of the clipboard did not fit into the grid.
    void PasteDidNotFit(const GridPasteRest& rest);
    /// The mouse asks for the menu of a data column's title, at a point of the screen.
    void TitleMenuAsked(int column, QPoint position);

protected:
    void paintEvent(QPaintEvent* event) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    int sizeHintForColumn(int column) const override; ///< what a double click on the border of its title asks for
    bool focusNextPrevChild(bool next) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    bool AcceptsText(int column, const QString& text) override;
    void MarkEdited(int row, int column) override;
    void TakeEdit(const EditEnd& end) override;
    void TakeForChosen(const EditEnd& end) override;

    void MakeParts();
    void ConnectParts();
    void TakeLook();
    void FixedCountsChanged();
    std::vector<int> BodyColumnWidths() const;
    void TakeText(int row, int column, const QString& text);
    void TakeTexts(GridChange change, std::vector<GridCellText> texts);
    /// What a command gives cells; false when it was given up.
    using Collecting = std::function<bool(CGridClipboard& clipboard, CGridEdits& edits)>;
    void ChangeChosenCells(GridChange change, const Collecting& collect);
    void Clear();
    void Report(const QString& text, const QString& further = {});
    void ReportRefusal(int row, int column, const QString& further);
    void SendNotification(int controlId, int code, const QModelIndex& index);
    void AskForContextMenu();
    void AskForContextMenu(const QModelIndex& index, QPoint position);

    bool OpenEditor(const QModelIndex& index);
    bool OpenEditorWith(const QString& text);
    void PlaceEditor();
    void KeepEditorBesideFrozen(const QRect& field);
    void PaintFrozen(const QRect& dirty);
    void RedrawFrozen();
    CGridHeader& ColumnTitles() const;
    void CloseEditor();
    CGridSelectionModel& Selection() const;
    void TellFocusCellUsed();
    void TitlePressed(Qt::Orientation orientation);
    static std::optional<CursorAction> MoveOf(int key); ///< none for a key that moves nothing
    QModelIndex FarthestFrom(const QModelIndex& index, CursorAction action) const;
    bool MoveFocus(int key);
    bool HandleCommandKey(QKeyEvent& event);
    bool HandleWholesKey(const QKeyEvent& event);
    bool HandleMoveKey(const QKeyEvent& event);
    void TellSelection(const QItemSelection& selected);
    int FittedWidth(int column, int rows) const;

    int m_nControlId;
    CGridModel* m_pModel = nullptr;
    CGridCorner* m_pCorner = nullptr;
    CTitleTip* m_pTitleTip = nullptr;
    QPointer<CInPlaceEdit> m_pEditor;
    GridTitleSizes m_titleSizes;
    CellCheck m_check;
    MessageReporter m_reporter;
    QPoint m_ptContextMenu;
};
