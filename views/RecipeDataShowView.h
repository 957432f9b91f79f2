#pragma once

#include "controls/GridCtrl.h"
#include "files/CellRange.h"
#include "files/TableTitles.h"
#include "views/RecipeFrame.h"
#include "views/ShownRows.h"
#include "views/TypedValues.h"

#include <QWidget>

#include <functional>

class QMenu;

/// The right pane: a grid over the words of the current recipe file, laid out by the format in use.
///
/// Row 0 of the grid holds the titles, columns 0 and 1 the row number and the word address of each row; the data cells
/// follow them. What the cells show are the rows of the document, and each command of the grid that changes texts is
/// one edit of it.
///
/// The grid shows all rows of the document, or some of them. That hides rows from the user and from the commands on
/// chosen cells, and changes nothing else: a save saves all rows. Whoever goes to a hidden cell has its row shown.
class CRecipeDataShowView final : public QWidget, private CGridTextSource {
    Q_OBJECT

public:
    static constexpr int kGridControlId = 102800;

    /// `frame` outlives the view.
    explicit CRecipeDataShowView(CRecipeFrame& frame, QWidget* parent = nullptr);
    ~CRecipeDataShowView() override;

    /// Has the document read its file, as `type`, and lays out the grid for the rows that it has then. Returns 1, or 2
    /// with an empty grid when the format in use has no words or breaks a limit (then reported).
    int ShowData(FileType type);

    /// Has the document write its rows to the file `path` as `type`; a failure was reported then. `rule` says what a
    /// save does where another program changed what it would write over.
    SaveResult WriteData(FileType type, const QString& path, ForeignRule rule);

    /// As WriteData, under the new name `path`, which is the document's then.
    SaveResult WriteDataAs(FileType type, const QString& path);

    /// Has the document write its edited cells alone; a failure was reported then.
    SaveResult WriteEdited(ForeignRule rule);

    /// Has the document write a copy to the file `path` as `type`; a failure was reported then.
    SaveResult WriteCopy(FileType type, const QString& path);

    /// Has the document put back what its last save stored as shown: how many values went back. Nothing after a
    /// failure, reported.
    std::optional<std::size_t> PutBackStored();

    /// Has the document take the notes that the library has by now, and shows what they say of the cells.
    void TakeNotes();

    /// What the document knows of its file is something else by now: marks and remarks are shown anew.
    void StoredChanged();

    /// Has the document drop its rows, and empties the grid; no cell is chosen afterwards.
    void ClearGrid();

    /// Shows what an undo or redo left: the cells that it gave other states are selected and come into sight.
    void ShowEdited(const EditReport& report);

    /// Goes to the next edited cell after the focus cell, or to the one before it. False when there is none. An edit
    /// that is open is ended first; a refused text, which was reported then, stops the command.
    bool GoToNextEdited();
    bool GoToPreviousEdited();

    /// Goes to a data cell and gives the keyboard focus to the grid. A row that is hidden is shown from then on.
    void GoToCell(CellPlace place) { GoTo(place); }

    /// Selects data cells, in ascending order, and brings them into sight; the focus stays where it is. Rows of them
    /// that are hidden are shown from then on.
    void ShowCells(const std::vector<CellPlace>& places);

    /// Shows these data rows alone, ascending, none twice, until other rows are read or laid out; an edit of theirs
    /// does not hide them. The focus cell stays, or goes to the next row that is shown. An edit that is open is ended
    /// first; false when its text was refused, which was reported then.
    bool ShowOnlyRows(std::vector<std::int32_t> rows);
    bool ShowAllRows();

    const CShownRows& ShownRows() const { return m_shownRows; }

    /// Keeps the data columns up to this one in sight while the others scroll, as long as columns like these are shown.
    /// False where they would take more than two thirds of the room: they scroll on until there is more.
    bool FreezeUpTo(std::uint32_t column);
    void Unfreeze();
    bool HasFrozenColumns() const { return m_nFrozen > 0; }

    // Where data cells stand in the grid.

    CellPlace PlaceOf(int gridRow, int gridColumn) const; ///< of a data cell
    int DataRowOf(int gridRow) const;                     ///< -1 for the titles and outside the grid
    std::optional<int> GridRowOf(int dataRow) const;      ///< nothing for a row that is hidden

    /// The data cell that has the focus; nothing while none has.
    std::optional<CellPlace> FocusCell() const;

    /// The cell that cell commands work on; nothing while none is chosen.
    std::optional<CellPlace> ChosenPlace() const;

    /// The data cell that has the focus; one above the rows while none has it.
    CellPlace FocusPlace() const;

    /// Whether the row can be gone to.
    bool IsRowShown(std::int32_t row) const { return GridRowOf(row).has_value(); }

    /// Has `bar`, which hides itself, stand under the table.
    void AddBar(QWidget& bar);

    /// The data cells that are chosen, in blocks in no order; no cell stands in two, and no hidden one in any.
    std::vector<CellRange> ChosenRanges() const;

    /// A block of the grid that is chosen: its data cells, and the data row that is shown just above it, where there is
    /// one.
    struct ChosenBlock {
        std::vector<CellRange> ranges; ///< from top to bottom; one unless rows between are not shown
        std::optional<std::int32_t> rowAbove;
    };
    std::vector<ChosenBlock> ChosenBlocks() const;

    /// The data cells that are chosen, in ascending order, at most so many.
    std::vector<CellPlace> ChosenPlaces(std::size_t most) const;

    // These end an edit that is open first; a refused text, which was reported then, stops the command.

    /// Gives cells texts that passed their columns' checks: one edit. False when nothing was changed.
    bool SetTexts(EditKind kind, std::vector<TextForCell> texts);

    /// Gives data cells, in ascending order, states that were judged (CCellJudge): one edit. False when nothing was
    /// changed.
    bool SetStates(EditKind kind, std::vector<CellEdit> edits);

    /// Has saves leave the words that the file holds in those cells which they would store otherwise: one edit.
    void KeepStored(const std::vector<CellPlace>& places);

    /// Has the typed numbers of those cells stored exactly which would be stored as others: one edit.
    void StoreExactly(const std::vector<CellPlace>& places);

    /// Gives cells other states than they have (CRecipeDocument::TakeOver): one edit.
    void TakeOver(const std::vector<CellEdit>& edits);

    /// Has the document apply a patch (CRecipeDocument::ApplyPatch): one edit, whose cells are selected. False when
    /// nothing was changed.
    bool ApplyPatch(const CellPatch& patch);

    /// Has the document put edits back that were not saved: one edit. Those that could not be; nothing when there was
    /// no memory for it, which was reported then.
    std::optional<std::vector<UnsavedCell>> PutBackUnsaved(const UnsavedWork& work);

    /// Ends a cell's edit that is open. False when its text was refused; that was reported then.
    bool EndCellEdit();

    /// The cell value check for a column of the grid; false for a column without a coding.
    bool ValidateCellValue(int gridColumn, const QString& text) const;

    /// Whether the chosen cell's bits can be shown: a cell is chosen, and its column is neither real nor a string.
    bool CanBitBrowse() const;

    /// Of the chosen cell what one line can say (views/CellRemarks.h): word address, type, limits, marks; empty when
    /// none is chosen.
    QString ChosenCellInfo() const;

    /// Opens the bit browser on the chosen cell, if it can be: the command BitBrowse. An edit that is open is ended
    /// first; a refused text stops the command.
    void OnBitBrowse();

    /// Takes a text that was checked in the bit browser for a data cell.
    void SetCellValue(int column, int row, const QString& text);

    CGridCtrl& Grid() { return *m_pGrid; }

signals:
    /// The cell on which cell commands work was chosen, or there no longer is one.
    void CellChosen();
    /// What ChosenCellInfo tells may be another text now.
    void ChosenCellChanged();
    /// The notes of columns, as the document has them, are others now. Not told where other rows are shown.
    void NotesChanged();
    /// An edit was made.
    void Edited();
    /// Cells were given values by the edit that was told last; not by an undo or redo.
    void ValuesGiven(const std::vector<CellPlace>& places);
    /// The mouse asks for the menu of a data column's title, at a point of the screen.
    void TitleMenuAsked(std::uint32_t column, QPoint position);
    /// Other rows are hidden now, or none are. `added` of those shown were hidden until one went to them.
    void ShownRowsChanged(std::size_t added);

private:
    QString CellText(int row, int column) const override;
    bool SetCellText(int row, int column, const QString& text) override;
    bool SetCellTexts(GridChange change, std::vector<GridCellText> texts) override;
    GridCellMarks CellMarks(int row, int column) const override;
    QString CellRemark(int row, int column) const override;
    QString TitleRemark(int column) const override;
    int RowInMessages(int row) const override { return DataRowOf(row) + kTitleRows; }

    void ShowRows();
    SaveResult WriteBy(const std::function<SaveResult(CRecipeDocument&, CProgress&)>& write);
    void ShowOtherRows();
    void FollowShownRows(std::optional<CellPlace> focus);
    int LastInARow(int first, int last) const;
    void ShowHidden(const std::vector<CellPlace>& places);
    void LayOutGrid();
    int LeastGridWidth() const;
    void WriteTitles();
    void FreezeAgain();
    void OnGridNotify(const GridNotification& notification);
    void OnTextsChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);
    void ChooseCell(int row, int column);
    void ForgetChosenCell();
    bool Take(EditKind kind, int row, int column, const QString& text);
    bool Take(EditKind kind, std::vector<TextForCell> texts);
    bool Report(EditOutcome outcome);
    void ShowStates(EditOutcome outcome);
    const ColumnCoding* ChosenColumn() const;
    bool GoTo(std::optional<CellPlace> place);
    void CreatePopupMenu();

    const CRecipeRows& Rows() const { return m_frame.Document().Rows(); }

    CRecipeFrame& m_frame;
    CGridCtrl* m_pGrid;
    CTypedValues m_typedValues;
    CShownRows m_shownRows;
    std::uint64_t m_nNotes = 0;           ///< the document's edition of the notes that are shown
    int m_nFrozen = 0;                    ///< data columns that stay in sight
    std::vector<ColumnCoding> m_frozenOf; ///< of a table with these columns
    QMenu* m_pPopupMenu = nullptr;
    QAction* m_pActionBitBrowse = nullptr; ///< the popup menu's
    int m_nCurrentColumn = -1;             ///< grid column of the chosen cell, -1 for none
    int m_nCurrentRow = -1;                ///< grid row of the chosen cell
};
