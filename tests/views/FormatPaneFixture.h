#pragma once

#include "library/FormatLibrary.h"
#include "tests/support/DialogSteps.h"
#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestFiles.h"
#include "tests/views/RecordingFrame.h"
#include "views/RecipeFormatEditView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

/// The format pane over a library of one test's own, in a frame that records what the pane asks of it.
struct FormatPane : testing::Test {
    using Shown = std::vector<std::u16string>;
    using Calls = std::vector<std::string>;

    void Store(const std::vector<DataFormat>& formats, std::int32_t startAddress = 0, std::int32_t rows = 10);
    void Start();

    FormatLibrary Stored() const;

    /// Expects the library file to hold exactly `formats` with the settings that Store() takes by default.
    void ExpectStored(const std::vector<DataFormat>& formats) const;

    /// Whether the pane writes the library when it goes, and only then.
    bool SavesAtTheEnd();

    template <class Widget>
    Widget& Find(const char* name) const
    {
        return FindIn<Widget>(*view, QLatin1String(name));
    }

    QTreeWidget& List() const { return Find<QTreeWidget>("listItems"); }
    QComboBox& Formats() const { return Find<QComboBox>("comboFormats"); }
    QMenu& ItemMenu() const { return Find<QMenu>("menuItems"); }
    std::string FormatLength() const { return TextIn(*view, "editFormatLength"); }

    QStringList Row(int row) const;       ///< texts of a row of the list, up to the description
    QStringList Column(int column) const; ///< texts of a column of the list, row by row

    void Type(const char* edit, const QString& text) { TypeInto(*view, edit, text); }
    void Press(const char* button) { ClickOn(*view, button); }
    void SetAutoUse(bool on);

    void RightClick(const QPoint& listPosition);
    void RightClickRow(int row) { RightClick(RowCentre(row)); }
    void RightClickBelowTheRows() { RightClick({20, List().viewport()->height() - 4}); }
    void DoubleClickRow(int row);
    void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}); ///< in the list

    /// Clicks the entry of the item menu with the object name `action`, which must be open and enabled.
    void ChooseInMenu(const char* action);

    QPoint RowCentre(int row) const;
    std::filesystem::path LibraryPath() const { return folder / "RecipeFile.Dat"; }

    CTempFolder folder;
    CRecordingFrame frame;
    std::unique_ptr<CRecipeFormatEditView> view;
};
