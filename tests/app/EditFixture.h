#pragma once

#include "tests/app/FrameFixture.h"

#include <QMenu>
#include <QPointer>
#include <QStringList>
#include <QTimer>

/// The window over "a.rcp" with counting words, and what a user does to edit it and to take that back. All keys go to
/// the widget that has the focus.
struct EditFixture : FrameFixture {
    void SetUp() override;

    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void Undo() { Key(Qt::Key_Z, Qt::ControlModifier); }
    void Redo() { Key(Qt::Key_Y, Qt::ControlModifier); }
    void Save() { Key(Qt::Key_S, Qt::ControlModifier); }

    /// Pastes `text` into the grid, at the cell, by keys.
    void PasteAt(int row, int column, const QString& text);
    /// Clicks the one cell and, with Shift, the other.
    void ChooseCells(int firstRow, int firstColumn, int lastRow, int lastColumn);
    /// Gives the focus to the field as Tab would, what it holds selected.
    QLineEdit& GoToField(const char* name);
    /// As the window system does after a dialog, which the offscreen platform does not.
    void Activate() { EXPECT_TRUE(ShowActive(*frame)); }

    /// What the data cells show, row by row.
    QStringList Shown();
    /// Row and column of each selected cell, in order: "1,2 2,2".
    QString Selected();
    /// What the status bar says.
    QString Told();
    /// What the next undo or redo is called; "" when it is disabled.
    QString NextUndo() { return NameAfter("actionUndo", "&Undo"); }
    QString NextRedo() { return NameAfter("actionRedo", "&Redo"); }
    bool IsModified() const { return frame->Document().IsModified(); }
    /// Whether closing the window asks to save; it does not save.
    bool ClosingAsks();

    QMenu& EditMenu() { return Find<QMenu>("menuEdit"); }
    QMenu& OpenEditMenu();       ///< by a click
    QMenu& OpenEditMenuByKeys(); ///< by Alt+E
    void CloseEditMenu();        ///< by Escape; the focus is where it was
    /// Each command of the menu, "-" before the disabled ones.
    static QStringList EntriesOf(const QMenu& menu);
    /// Opens the menu and clicks the command.
    void Choose(const char* action);

    /// Of "a.rcp" before anything is done.
    const Bytes original = WordBytes({1, 0x4241, 0x4443, 2, 0x4645, 0x4847, 3, 0x4A49, 0x4C4B, 4, 0x4E4D, 0x504F});

private:
    QString NameAfter(const char* action, const QString& command);
    void LookForBoxes();

    QTimer m_boxes; ///< a message box that nobody answers would hang the test
    QPointer<QWidget> m_pBox;
    int m_nLooks = 0; ///< at which it was there, after the first
};
