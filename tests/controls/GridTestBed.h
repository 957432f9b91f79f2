#pragma once

#include "controls/GridCtrl.h"

#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QWidget>
#include <gtest/gtest.h>

#include <string>
#include <vector>

constexpr int kGridId = 102800;

/// A window with a grid, a field and a button. What the grid tells is written down in order, one line each:
/// "-100 of 102800 at 1,2", "edited 1,2", "reported Col 1,Row 2 data error !".
class CGridTestBed : public testing::Test {
protected:
    CGridTestBed();
    void SetUp() override;

    /// Kept cells: one fixed row, two fixed columns; each cell's text is "row,column".
    void Fill(int rows, int columns);

    CInPlaceEdit* Editor() const; ///< null when none is open
    std::string TextAt(int row, int column) const;
    std::string Focus() const;    ///< "row,column", or "none"
    std::string Selected() const; ///< "row,column" of the selected cells in order, blanks between; for small grids
    QPoint Center(int row, int column) const; ///< of a data cell, in the viewport

    void Click(int row, int column, Qt::KeyboardModifiers modifiers = {});
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}); ///< on the window's focus widget
    void Type(const char* text);
    void Edit(int row, int column, const char* text); ///< opens the editor there and types `text` in place of its text

    std::vector<std::string> log; // outlives the window, whose end may still be told
    QWidget window;
    CGridCtrl* grid = nullptr;
    QLineEdit* field = nullptr;
    QPushButton* button = nullptr;
};

using Lines = std::vector<std::string>;
