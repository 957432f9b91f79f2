#pragma once

#include "tests/support/DialogSteps.h"
#include "tests/support/FakeChanges.h"
#include "tests/support/GuiTest.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "views/ChangesPanel.h"

#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A panel in a window whose own commands have some of the panel's keys. What the panel asks for is written down:
/// "go 3,9", "show 3,9", "keep 3,9 4,9", "left"; row and column of the cell, counted from 0.
struct CChangesPanelFixture : testing::Test {
    CChangesPanelFixture();

    /// Changes of all kinds: 0 edited, 1 decimals, 2 words outside, 3 zeros, 4 a text, 5 behind the end.
    static std::shared_ptr<CFakeChanges> AllKinds();
    /// A change of column 2, "decimals", which can be kept.
    static ChangeRecord ChangeOfRow(int row);

    void List(std::shared_ptr<const CChangeList> changes)
    {
        panel->SetList(std::move(changes), QStringLiteral("Changes on saving"), ChangeAction::KeepStored);
    }

    QTableView& Table() const { return FindIn<QTableView>(*panel, QStringLiteral("tableChanges")); }
    QLineEdit& Filter() const { return FindIn<QLineEdit>(*panel, QStringLiteral("editFilter")); }
    QPushButton& KeepButton() const { return FindIn<QPushButton>(*panel, QStringLiteral("buttonKeepStored")); }
    QPushButton& PatchButton() const { return FindIn<QPushButton>(*panel, QStringLiteral("buttonSaveAsPatch")); }
    QString Label(const char* name) const { return FindIn<QLabel>(*panel, QLatin1String(name)).text(); }

    QString Cell(int row, int column) const;
    std::string Line(int row) const; ///< the cells in sight with "|" between
    std::string Chosen() const;      ///< the rows, with blanks between
    int Current() const { return Table().currentIndex().row(); }
    void ClickRow(int row, Qt::KeyboardModifiers modifiers = {});
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}); ///< on what has the focus

    QMainWindow window;
    QLineEdit* grid = nullptr; ///< stands for what the panel's signals lead to
    CRecordingReporter reporter;
    CChangesPanel* panel = nullptr;
    std::vector<std::string> log;
};
