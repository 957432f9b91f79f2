#pragma once

#include <QObject>
#include <QString>

class CChosenCells;
class COfferCommands;
class CRecipeDataShowView;
class CRecipeFrame;
class QWidget;

namespace Ui {
class CMainFrame;
}

/// The commands that fill the chosen cells or calculate with their numbers, and Ctrl+Enter in a cell's editor.
class CFillCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        COfferCommands& offers;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CFillCommands(const Parts& parts);

private:
    void EnableForMenu();
    void AllowKeys();
    void Fill();
    void FillDown();
    void Calculate();
    void FillWithTyped(const QString& text);
    QString TextOf(const CChosenCells& cells) const;

    Parts m_parts;
};
