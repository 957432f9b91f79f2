// The keys that move the focus cell and choose cells: what they show is what typing, pasting, Delete and Copy act on.

#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QScrollBar>
#include <QTest>

#include <set>
#include <sstream>

namespace {

constexpr Qt::KeyboardModifiers kCtrlShift = Qt::ControlModifier | Qt::ShiftModifier;

struct MoveCase {
    const char* name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    const char* focus; ///< afterwards, from 3,4 in a grid of 6 rows and 7 columns
    const char* selected;
    friend void PrintTo(const MoveCase& c, std::ostream* out) { *out << c.name; }
};

struct GridMoves : CGridTestBed, testing::WithParamInterface<MoveCase> {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        Fill(6, 7);
        Click(3, 4);
        log.clear();
        Press(GetParam().key, GetParam().modifiers);
    }

    static std::set<std::string> SelectedByTheKey()
    {
        std::istringstream words(GetParam().selected);
        return {std::istream_iterator<std::string>(words), {}};
    }

    /// The data cells whose text is no longer "row,column", each with its text.
    std::set<std::string> ChangedCells() const
    {
        std::set<std::string> changed;
        for (int row = 1; row < grid->RowCount(); ++row)
            for (int column = 2; column < grid->ColumnCount(); ++column) {
                const std::string place = std::to_string(row) + "," + std::to_string(column);
                if (TextAt(row, column) != place)
                    changed.insert(place + " " + TextAt(row, column));
            }
        return changed;
    }

    static std::set<std::string> Each(const std::set<std::string>& places, const std::string& text)
    {
        std::set<std::string> all;
        for (const std::string& place : places)
            all.insert(place + " " + text);
        return all;
    }
};

TEST_P(GridMoves, MovesTheFocusCellAndTheSelection)
{
    EXPECT_EQ(Focus(), GetParam().focus);
    EXPECT_EQ(Selected(), GetParam().selected);
    EXPECT_EQ(log, Lines{std::string("-100 of 102800 at ") + GetParam().focus});
    EXPECT_EQ(Editor(), nullptr);
}

TEST_P(GridMoves, TypingActsOnTheFocusCell)
{
    Type("77");
    Press(Qt::Key_Return);
    EXPECT_EQ(ChangedCells(), Each({GetParam().focus}, "77"));
}

TEST_P(GridMoves, PastingOneTextFillsTheSelectedCells)
{
    QApplication::clipboard()->setText("88");
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(ChangedCells(), Each(SelectedByTheKey(), "88"));
}

TEST_P(GridMoves, DeleteEmptiesTheSelectedCells)
{
    Press(Qt::Key_Delete);
    EXPECT_EQ(ChangedCells(), Each(SelectedByTheKey(), ""));
}

TEST_P(GridMoves, CutTakesTheSelectedCells)
{
    Press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(ChangedCells(), Each(SelectedByTheKey(), ""));
    QString text = QApplication::clipboard()->text();
    std::istringstream cells(text.replace('\t', ' ').toStdString());
    EXPECT_EQ(std::set<std::string>(std::istream_iterator<std::string>(cells), {}), SelectedByTheKey());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridMoves, testing::Values(
    MoveCase{"Left",              Qt::Key_Left,      Qt::NoModifier,        "3,3", "3,3"},
    MoveCase{"Right",             Qt::Key_Right,     Qt::NoModifier,        "3,5", "3,5"},
    MoveCase{"Up",                Qt::Key_Up,        Qt::NoModifier,        "2,4", "2,4"},
    MoveCase{"Down",              Qt::Key_Down,      Qt::NoModifier,        "4,4", "4,4"},
    MoveCase{"Home",              Qt::Key_Home,      Qt::NoModifier,        "3,2", "3,2"},
    MoveCase{"End",               Qt::Key_End,       Qt::NoModifier,        "3,6", "3,6"},
    MoveCase{"PageUp",            Qt::Key_PageUp,    Qt::NoModifier,        "1,4", "1,4"},
    MoveCase{"PageDown",          Qt::Key_PageDown,  Qt::NoModifier,        "5,4", "5,4"},
    MoveCase{"CtrlLeft",          Qt::Key_Left,      Qt::ControlModifier,   "3,2", "3,2"},
    MoveCase{"CtrlRight",         Qt::Key_Right,     Qt::ControlModifier,   "3,6", "3,6"},
    MoveCase{"CtrlUp",            Qt::Key_Up,        Qt::ControlModifier,   "1,4", "1,4"},
    MoveCase{"CtrlDown",          Qt::Key_Down,      Qt::ControlModifier,   "5,4", "5,4"},
    MoveCase{"CtrlHome",          Qt::Key_Home,      Qt::ControlModifier,   "1,2", "1,2"},
    MoveCase{"CtrlEnd",           Qt::Key_End,       Qt::ControlModifier,   "5,6", "5,6"},
    MoveCase{"CtrlPageUp",        Qt::Key_PageUp,    Qt::ControlModifier,   "1,4", "1,4"},
    MoveCase{"CtrlPageDown",      Qt::Key_PageDown,  Qt::ControlModifier,   "5,4", "5,4"},
    MoveCase{"ShiftLeft",         Qt::Key_Left,      Qt::ShiftModifier,     "3,3", "3,3 3,4"},
    MoveCase{"ShiftRight",        Qt::Key_Right,     Qt::ShiftModifier,     "3,5", "3,4 3,5"},
    MoveCase{"ShiftUp",           Qt::Key_Up,        Qt::ShiftModifier,     "2,4", "2,4 3,4"},
    MoveCase{"ShiftDown",         Qt::Key_Down,      Qt::ShiftModifier,     "4,4", "3,4 4,4"},
    MoveCase{"ShiftHome",         Qt::Key_Home,      Qt::ShiftModifier,     "3,2", "3,2 3,3 3,4"},
    MoveCase{"ShiftEnd",          Qt::Key_End,       Qt::ShiftModifier,     "3,6", "3,4 3,5 3,6"},
    MoveCase{"ShiftPageUp",       Qt::Key_PageUp,    Qt::ShiftModifier,     "1,4", "1,4 2,4 3,4"},
    MoveCase{"ShiftPageDown",     Qt::Key_PageDown,  Qt::ShiftModifier,     "5,4", "3,4 4,4 5,4"},
    MoveCase{"CtrlShiftLeft",     Qt::Key_Left,      kCtrlShift,            "3,2", "3,2 3,3 3,4"},
    MoveCase{"CtrlShiftRight",    Qt::Key_Right,     kCtrlShift,            "3,6", "3,4 3,5 3,6"},
    MoveCase{"CtrlShiftUp",       Qt::Key_Up,        kCtrlShift,            "1,4", "1,4 2,4 3,4"},
    MoveCase{"CtrlShiftDown",     Qt::Key_Down,      kCtrlShift,            "5,4", "3,4 4,4 5,4"},
    MoveCase{"CtrlShiftHome",     Qt::Key_Home,      kCtrlShift,            "1,2", "1,2 1,3 1,4 2,2 2,3 2,4 3,2 3,3 3,4"},
    MoveCase{"CtrlShiftEnd",      Qt::Key_End,       kCtrlShift,            "5,6", "3,4 3,5 3,6 4,4 4,5 4,6 5,4 5,5 5,6"},
    MoveCase{"CtrlShiftPageUp",   Qt::Key_PageUp,    kCtrlShift,            "1,4", "1,4 2,4 3,4"},
    MoveCase{"CtrlShiftPageDown", Qt::Key_PageDown,  kCtrlShift,            "5,4", "3,4 4,4 5,4"},
    MoveCase{"AltLeft",           Qt::Key_Left,      Qt::AltModifier,       "3,3", "3,3"},
    MoveCase{"AltRight",          Qt::Key_Right,     Qt::AltModifier,       "3,5", "3,5"},
    MoveCase{"AltUp",             Qt::Key_Up,        Qt::AltModifier,       "2,4", "2,4"},
    MoveCase{"AltDown",           Qt::Key_Down,      Qt::AltModifier,       "4,4", "4,4"},
    MoveCase{"AltHome",           Qt::Key_Home,      Qt::AltModifier,       "3,2", "3,2"},
    MoveCase{"AltEnd",            Qt::Key_End,       Qt::AltModifier,       "3,6", "3,6"},
    MoveCase{"AltPageUp",         Qt::Key_PageUp,    Qt::AltModifier,       "1,4", "1,4"},
    MoveCase{"AltPageDown",       Qt::Key_PageDown,  Qt::AltModifier,       "5,4", "5,4"},
    MoveCase{"Tab",               Qt::Key_Tab,       Qt::NoModifier,        "3,5", "3,5"},
    MoveCase{"ShiftTab",          Qt::Key_Backtab,   Qt::ShiftModifier,     "3,3", "3,3"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct GridChoice : CGridTestBed {
    void ClickColumnTitle(int column, Qt::KeyboardModifiers modifiers = {})
    {
        const QHeaderView& header = *grid->horizontalHeader();
        const int x = header.sectionViewportPosition(column - grid->FixedColumnCount()) + 30;
        QTest::mouseClick(header.viewport(), Qt::LeftButton, modifiers, {x, header.height() / 2});
    }

    void ClickRowTitle(int row)
    {
        const QHeaderView& header = *grid->verticalHeader();
        const int y = header.sectionViewportPosition(row - grid->FixedRowCount()) + 10;
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, {header.width() / 2, y});
    }
};

TEST_F(GridChoice, CtrlPageKeysGoToTheFirstAndTheLastRow)
{
    Fill(200, 6);
    Click(3, 4);
    Press(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(Focus(), "199,4");
    EXPECT_EQ(Selected(), "199,4");
    Press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(Focus(), "1,4");
    EXPECT_EQ(Selected(), "1,4");
}

TEST_F(GridChoice, ArrowsGoTheirWayInAMirroredWindow)
{
    window.setLayoutDirection(Qt::RightToLeft);
    Fill(6, 7);
    Click(3, 4);
    Press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "3,6");
    Press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "3,2");
}

TEST_F(GridChoice, TheSelectionShrinksAgainOnTheWayBackToItsAnchor)
{
    Fill(6, 7);
    Click(3, 4);
    Press(Qt::Key_Right, kCtrlShift);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "3,4 3,5 4,4 4,5");
    Press(Qt::Key_Home, Qt::ShiftModifier);
    Press(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "3,2 3,3 3,4");
}

TEST_F(GridChoice, AKeyWithNowhereToGoLeavesTheFocusCellSelectedAlone)
{
    Fill(6, 7);
    Click(4, 4);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "4,4 5,4");
    Press(Qt::Key_Down);
    EXPECT_EQ(Selected(), "5,4");
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "5,4");
}

TEST_F(GridChoice, AKeyWithNowhereToGoBringsTheFocusCellIntoSight)
{
    Fill(200, 6);
    Click(1, 2);
    grid->verticalScrollBar()->setValue(150);
    Press(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(grid->verticalScrollBar()->value(), 0);
}

TEST_F(GridChoice, TheFirstKeyChoosesTheFirstCell)
{
    Fill(6, 7);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Focus(), "1,2");
    EXPECT_EQ(Selected(), "1,2");
}

TEST_F(GridChoice, AnEditMovesTheAnchorAlong)
{
    Fill(6, 7);
    Click(1, 3);
    Type("7");
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    Press(Qt::Key_Escape);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "3,3 4,3");
}

TEST_F(GridChoice, AClickWithShiftExtendsFromWhereTheKeysWent)
{
    Fill(6, 7);
    Click(1, 2);
    Press(Qt::Key_Right);
    Press(Qt::Key_Down);
    Click(3, 4, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "2,3 2,4 3,3 3,4");
}

TEST_F(GridChoice, SeveralStretchesAreKeptWhileTheLastOneIsExtended)
{
    Fill(6, 7);
    Click(1, 2);
    Click(3, 4, Qt::ControlModifier);
    Press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,2 3,4 3,5");
    Press(Qt::Key_Right);
    EXPECT_EQ(Selected(), "3,6");
}

TEST_F(GridChoice, CtrlSpaceChoosesTheColumnsOfTheSelection)
{
    Fill(4, 6);
    Click(2, 3);
    log.clear();
    Press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "1,3 2,3 3,3");
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(log, Lines{});
    EXPECT_EQ(Editor(), nullptr);
    Press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,3 1,4 2,3 2,4 3,3 3,4");
    Press(Qt::Key_Left, Qt::ShiftModifier);
    Press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,2 1,3 2,2 2,3 3,2 3,3");
    Press(Qt::Key_Down);
    EXPECT_EQ(Selected(), "3,2");
    Press(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "2,2 3,2");
}

TEST_F(GridChoice, ShiftSpaceChoosesTheRowsOfTheSelection)
{
    Fill(5, 5);
    Click(2, 3);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "2,2 2,3 2,4 3,2 3,3 3,4");
    EXPECT_EQ(Focus(), "3,3");
    EXPECT_EQ(Editor(), nullptr);
    Press(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "2,2 2,3 2,4");
}

TEST_F(GridChoice, CtrlShiftSpaceChoosesAll)
{
    Fill(3, 4);
    Click(2, 3);
    Press(Qt::Key_Space, kCtrlShift);
    EXPECT_EQ(Selected(), "1,2 1,3 2,2 2,3");
    EXPECT_EQ(Focus(), "2,3");
}

TEST_F(GridChoice, TheSpaceBarChoosesNothingWithoutAFocusCell)
{
    Fill(3, 4);
    Press(Qt::Key_Space, Qt::ControlModifier);
    Press(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "");
    EXPECT_EQ(Focus(), "none");
}

TEST_F(GridChoice, DeleteAndPasteActOnAChosenColumn)
{
    Fill(4, 5);
    Click(2, 3);
    Press(Qt::Key_Space, Qt::ControlModifier);
    QApplication::clipboard()->setText("9");
    Press(Qt::Key_V, Qt::ControlModifier);
    for (int row = 1; row < 4; ++row)
        EXPECT_EQ(TextAt(row, 3), "9");
    EXPECT_EQ(TextAt(2, 2), "2,2");
    Press(Qt::Key_Delete);
    for (int row = 1; row < 4; ++row)
        EXPECT_EQ(TextAt(row, 3), "");
}

TEST_F(GridChoice, ShiftExtendsWholeColumnsAndRowsFromTheirTitles)
{
    Fill(4, 6);
    ClickColumnTitle(3);
    Press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,3 1,4 2,3 2,4 3,3 3,4");
    ClickRowTitle(2);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "2,2 2,3 2,4 2,5 3,2 3,3 3,4 3,5");
}

TEST_F(GridChoice, AClickWithShiftOnATitleExtendsFromWhereTheKeysWent)
{
    Fill(3, 7);
    ClickColumnTitle(2);
    Press(Qt::Key_Right);
    Press(Qt::Key_Right);
    ClickColumnTitle(5, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,4 1,5 2,4 2,5");
}

TEST_F(GridChoice, AClickWithShiftOnACellAfterATitleSelectsCells)
{
    Fill(4, 6);
    ClickColumnTitle(3);
    Click(2, 4, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,3 1,4 2,3 2,4");
}

TEST_F(GridChoice, ADeselectedFocusCellIsWhatCommandsActOn)
{
    Fill(4, 5);
    Click(2, 3);
    Click(2, 3, Qt::ControlModifier);
    ASSERT_EQ(Selected(), "");
    ASSERT_EQ(Focus(), "2,3");
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QString("2,3"));
    Press(Qt::Key_Delete);
    EXPECT_EQ(TextAt(2, 3), "");
}

TEST_F(GridChoice, AGridEmptiedByWhoeverIsToldOfAnExtensionHasNoSelection)
{
    Fill(4, 5);
    Click(2, 3);
    QObject::connect(grid, &CGridCtrl::Notify, [this](const GridNotification&) { grid->DeleteAllItems(); });
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Focus(), "none");
    EXPECT_EQ(Selected(), "");
}

TEST_F(GridChoice, ANewContentForgetsTheColumnsThatWereChosen)
{
    Fill(4, 5);
    Click(2, 3);
    Press(Qt::Key_Space, Qt::ControlModifier);
    Fill(4, 5);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,2 2,2");
}

} // namespace
