#pragma once

#include "files/CellSearch.h"
#include "views/FindBar.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CFoundCells;
class CRecipeDataShowView;
class CRecipeFrame;
class CSaveCommands;
class QWidget;

namespace Ui {
class CMainFrame;
}

/// Finds texts and numbers in the table: the bar, its commands and keys, the count of hits, and the list of all.
///
/// All searching goes in slices of at most 8 ms while the window is idle. What is typed begins it anew at the cell that
/// had the focus before; cells that change begin the count anew.
class CFindCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        CSaveCommands& saveCommands;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CFindCommands(const Parts& parts);

    /// Brings counts and list up to date with the document.
    void Follow();

    CFindBar& Bar() { return *m_pBar; }

    /// The search by what the bar says, all of its hits to be counted yet; null where that is no query, which the bar
    /// says then.
    const CCellSearch* Search();

    /// Goes to the next hit after the focus cell. What `note` says is told with it.
    void GoToNext(const QString& note);

    /// Answers in the bar, or, where that is closed, in the status bar.
    void Tell(const QString& text);

    /// What was done: it stays with the results until something else is asked for.
    void TellDone(const QString& text);

private:
    void Open(CFindBar::Fields fields);
    void OnScopeChosen();
    void FocusMoved(QWidget* from, QWidget* to);
    void TakeChosen();
    void TakeScope();
    bool ForgetChosenElsewhere();
    void OnQueryEdited();
    bool Begin();
    void Step(CCellSearch::Way way);
    void Work();
    void StopSeeking();
    void ShowSought();
    void TellResult();
    QString Result() const;
    QString Where() const;
    void ListAll();
    QString ListSummary() const;
    void WithdrawList();
    bool IsListOfTable() const;
    void OnClosed();
    void RestartSearches();
    void RestartSearch();
    void RestartList();

    Parts m_parts;
    CFindBar* m_pBar;
    CCellSearch m_search;
    bool m_isBegun = false;                ///< the search is by what the bar says, and of the cells as they are
    std::vector<CellRange> m_scope;        ///< to look in; empty for all cells
    std::vector<CellRange> m_selection;    ///< that was there before the bar had the focus
    std::optional<std::uint32_t> m_column; ///< likewise, of the focus cell
    std::filesystem::path m_chosenPath;    ///< of the table that both are of
    CRecipeRows m_chosenLayout;
    std::optional<CellPlace> m_found; ///< the hit that was gone to
    bool m_hasWrapped = false;        ///< on the way to it
    CellPlace m_anchor;               ///< from which what is typed is looked for
    bool m_isStepping = false;        ///< a step is sought, not what is typed
    QString m_strNote;                ///< said with the next result
    std::uint64_t m_edition = 0;      ///< of the document that was followed
    std::shared_ptr<CCellSearch> m_listed;
    std::shared_ptr<const CFoundCells> m_list;
    std::filesystem::path m_listedPath;
    CRecipeRows m_listedLayout;
    QTimer m_working;
};
