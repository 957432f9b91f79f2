#pragma once

#include "files/PutBack.h"
#include "views/ChangesPanel.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class CFileCommands;
class CRecipeDataShowView;
class CRecipeFrame;
class QMainWindow;
class QToolButton;

namespace Ui {
class CMainFrame;
}

/// Shows what a save will change before it changes it, and what it changed: the counts in the status bar, the panel of
/// changes, and the strip that offers to put back what nobody had edited. The commands that go with it are its own.
///
/// The plan of the save is counted while the window is idle, in slices too short to be felt, from a moment after the
/// last thing that changed it.
class CSaveCommands final : public QObject {
    Q_OBJECT

public:
    /// All outlive the object; `ui` has the menus and their actions, `window` takes the panel and the field.
    CSaveCommands(Ui::CMainFrame& ui, CRecipeFrame& frame, CFileCommands& fileCommands, CRecipeDataShowView& dataPane,
                  QMainWindow& window);

    /// Brings commands, field and panel up to date with the document; counting goes on when there is something to
    /// count.
    void Update();

    /// A save, or an opening, is over: tells what was stored as shown, or withdraws it. What was told already is not
    /// told again: the user may have dismissed it.
    void TellStoredAsShown();

    /// A list of changes for the panel, which is none of a save.
    struct OtherList {
        std::shared_ptr<const CChangeList> changes;
        QString title;
        QString summary;
        std::filesystem::path path; ///< of the file that it is about
        CRecipeRows layout;         ///< of its cells
        ChangeActions actions = ChangeAction::TakeOver;
        bool summarySaysAll = false; ///< also that there are no changes
    };

    /// Lists it and opens the panel. Its cells are gone to, and taken over, while the table shows that file in that
    /// layout.
    void Show(OtherList list);

    /// Whether it is what the panel lists, open or not.
    bool Lists(const std::shared_ptr<const CChangeList>& changes) const;

    /// What the panel lists of it became something else.
    void ListChanged(const std::shared_ptr<const CChangeList>& changes, const QString& summary);

    /// Counting adds to it.
    void ListGrew(const std::shared_ptr<const CChangeList>& changes, const QString& summary);

    /// What `changes` tells holds no more: where the panel lists it, it lists the plan instead.
    void Withdraw(const std::shared_ptr<const CChangeList>& changes);

    /// What the window shows beside the panes.
    CChangesPanel& Panel() { return *m_pPanel; }
    QToolButton& Field() { return *m_pField; }

signals:
    /// Words were put back into the file `path`, or that failed.
    void WasPutBack(const QString& path);

    /// The user closed the panel.
    void PanelClosed();

private:
    enum class Listed { Nothing, Plan, StoredAsShown, Other };

    void ConnectActions();
    void ConnectPanel();
    void CountOn();
    void ShowCounts();
    void FollowDocument();
    void ListPlan();
    void OpenPlan();
    void WithdrawStoredAsShown();
    QString StoredAsShownText() const;
    void ListStoredAsShown();
    void OpenPanel();
    void PutBack();
    bool IsListOfTable() const;
    const ColumnCoding* ColumnOf(CellPlace place) const;
    void EnableEditEntries();
    void AllowEditKeys();

    Ui::CMainFrame& m_ui;
    CRecipeFrame& m_frame;
    CRecipeDataShowView& m_dataPane;
    QMainWindow& m_window;
    CChangesPanel* m_pPanel;
    QToolButton* m_pField;
    QTimer m_counting;
    bool m_wasPanelOpen = false;
    Listed m_listed = Listed::Nothing;           ///< what the panel lists
    std::filesystem::path m_listedPath;          ///< of which file
    CRecipeRows m_listedLayout;                  ///< of the cells, unless that is the plan
    std::shared_ptr<const CChangeList> m_pOther; ///< likewise, of a list that is none of a save
    std::u16string m_listedFormat;               ///< likewise, of its format
    std::uint64_t m_listedEdition = 0;           ///< likewise
    std::shared_ptr<const SavedChanges> m_pTold; ///< what the strip spoke of last
    std::u16string m_toldFormat;                 ///< of its rows
    QString m_strTold;                           ///< what it said
};
