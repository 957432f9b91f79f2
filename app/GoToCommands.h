#pragma once

#include "files/GoToTarget.h"

#include <QObject>

class CGoToBar;
class CRecipeDataShowView;
class CRecipeFrame;

namespace Ui {
class CMainFrame;
}

/// Goes to a row, a word's value or an item that the user types into a bar under the table.
class CGoToCommands final : public QObject {
    Q_OBJECT

public:
    /// All outlive the object.
    CGoToCommands(Ui::CMainFrame& ui, CRecipeFrame& frame, CRecipeDataShowView& dataPane);

private:
    void Open();
    GoToTarget Target() const;
    void Go();
    void GoToNearest();
    void GoTo(CellPlace place);

    CRecipeFrame& m_frame;
    CRecipeDataShowView& m_dataPane;
    CGoToBar* m_pBar;
};
