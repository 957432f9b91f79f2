#pragma once

#include "changes/WordViews.h"
#include "files/CellState.h"

#include <QDockWidget>
#include <QString>

#include <optional>

class CInspectorModel;
class CRecipeDataShowView;
class CRecipeFrame;
class QLabel;
class QTableView;

/// Shows what the words of the chosen cell are as every type, in both orders of their words, as bits, text and
/// hexadecimal, and what the notes of its item say of its value. It is hidden at first, and follows the table while it
/// is in sight.
///
/// A value can be typed in each of these ways. It becomes the cell's when the cell may have the words that it makes:
/// an edit like one that is typed in the table. Else a line tells why not, and the cell stays. Escape gives the focus
/// back to the table.
class CInspectorDock final : public QDockWidget {
    Q_OBJECT

public:
    /// Both outlive the dock.
    CInspectorDock(CRecipeFrame& frame, CRecipeDataShowView& dataPane, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void SetUpTable();
    void Follow();
    void ShowCell(CellPlace place);
    void ShowNothing(const QString& why);
    void Take(const WordView& view, const QString& text);
    void Say(const QString& notice);

    CRecipeFrame& m_frame;
    CRecipeDataShowView& m_dataPane;
    CInspectorModel* m_pModel;
    QLabel* m_pTitle;
    QTableView* m_pTable;
    QLabel* m_pNotice;
    std::optional<CellPlace> m_place; ///< of the cell that is shown
};
