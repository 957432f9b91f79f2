#pragma once

#include "changes/ChangeList.h"
#include "model/ColumnCoding.h"
#include "text/Reporter.h"
#include "views/ChosenChanges.h"

#include <QDockWidget>
#include <QFlags>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

class CChangesModel;
class QAction;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

/// What the lines of a list offer.
enum class ChangeAction : unsigned {
    KeepStored = 1, ///< keep the words that the file holds
    TakeOver = 2,   ///< give the cells of the table the new values
};
Q_DECLARE_FLAGS(ChangeActions, ChangeAction)

/// Lists changes, a line each, at the bottom of the window: what a save will change, for example. It is hidden at
/// first; who fills it shows it. It knows nothing of the document: who fills it does what its signals ask for.
///
/// Lines are made when they are painted. The panel is worked by the keyboard alone: Enter goes to a line's cell, F8 and
/// Shift+F8 to the next and previous line while the focus stays, whatever these keys do elsewhere in the window, Escape
/// leaves.
class CChangesPanel final : public QDockWidget {
    Q_OBJECT

public:
    /// `reporter` outlives the panel.
    explicit CChangesPanel(CReporter& reporter, QWidget* parent = nullptr);

    /// Lists `list`, null for none, under `title`. The filter is emptied, and nothing is chosen.
    void SetList(std::shared_ptr<const CChangeList> list, const QString& title, ChangeActions actions);

    /// Tells the column of a cell in the table that the list is about, null where that is not known: values are shown
    /// with what its notes say of them. Good for all lists.
    void SetColumns(std::function<const ColumnCoding*(CellPlace place)> columnOf);

    /// What is listed, and how many of what, in words: "1 edited, 61 others change". The panel adds that counting goes
    /// on, and has words of its own for an empty list.
    void SetSummary(const QString& summary);

    /// The summary says of an empty list, too, what there is to say, until there is another list.
    void SummarySaysAll();

    /// Of which file the changes are: a patch is proposed beside it, and never written over it.
    void SetFile(const std::filesystem::path& file);

    /// The list has further changes after those it had, or is complete now.
    void ListGrew();

    /// The list may have any other changes. What is chosen stays so, by its cell, and what is in sight stays there. To
    /// be called before the window handles the next event.
    void ListChanged();

signals:
    void GoToCell(CellPlace place);                       ///< and give the focus to it
    void ShowCell(CellPlace place);                       ///< bring it into sight; the focus stays in the panel
    void KeepStored(const std::vector<CellPlace>& cells); ///< in the order of the lines
    void TakeOver(const std::vector<CellEdit>& cells);    ///< likewise: new words, or texts where there are no words
    void Left();                                          ///< the focus is to go back to the table: also at closing
    void Closed();                                        ///< by the user

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QAction* MakeAction(const QString& name, const QString& text, const QList<QKeySequence>& keys,
                        void (CChangesPanel::*run)());
    QAction* ActionOf(const QKeyEvent& event) const;
    QWidget* MakeFilterRow();
    QPushButton* MakeButton(QAction& action, const QString& text);
    void SetUpTable();
    void FitTable();

    void OnFilterEdited();
    void OnChosen();
    void OnContextMenu(const QPoint& position);
    void ShowCounts();
    void UpdateActions();

    int CurrentRow() const;
    void ChooseRow(int row);
    void Step(int step);
    void GoToCurrent();
    void GoToNext() { Step(1); }
    void GoToPrevious() { Step(-1); }
    void CopyChosen();
    void KeepChosen();
    void TakeChosen();
    void SaveAsPatch();

    bool CanKeep(int row) const;
    bool CanTake(int row) const;
    bool IsForAChosen(ChangeAction action) const;
    bool ForEachChosen(const QString& label, const std::function<void(int row)>& work);
    QString LineText(int row) const;
    QString AskPatchPath();
    void TellOthers();

    CReporter& m_reporter;
    CChangesModel* m_pModel;
    QLabel* m_pSummary;
    QLineEdit* m_pFilter;
    QLabel* m_pCount;
    QTableView* m_pTable;
    QAction* m_pGo;
    QAction* m_pNext;
    QAction* m_pPrevious;
    QAction* m_pCopy;
    QAction* m_pKeep;
    QAction* m_pTake;
    QAction* m_pPatch;
    QPushButton* m_pKeepButton = nullptr;
    QPushButton* m_pTakeButton = nullptr;
    CChosenChanges m_chosen;
    QString m_strSummary;
    bool m_saysAll = false; ///< the summary
    std::filesystem::path m_file;
    ChangeActions m_actions;
    unsigned m_nLists = 0; ///< how often the list became another one or had other changes
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ChangeActions)
