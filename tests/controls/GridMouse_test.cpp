// The mouse: what a click chooses, what dragging does not, the right button, the wheel, the titles.

#include "controls/GridCorner.h"
#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QTest>

namespace {

struct GridMouse : CGridTestBed {
    /// The middle of the title above a data column, or left of a data row.
    QPoint ColumnTitle(int column) const
    {
        const QHeaderView* header = grid->horizontalHeader();
        const int section = column - grid->FixedColumnCount();
        return {header->sectionViewportPosition(section) + header->sectionSize(section) / 2, header->height() / 2};
    }
    QPoint RowTitle(int row) const
    {
        const QHeaderView* header = grid->verticalHeader();
        const int section = row - grid->FixedRowCount();
        return {header->width() / 2, header->sectionViewportPosition(section) + header->sectionSize(section) / 2};
    }

    void ClickColumnTitle(int column, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(grid->horizontalHeader()->viewport(), Qt::LeftButton, modifiers, ColumnTitle(column));
    }
    void ClickRowTitle(int row, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(grid->verticalHeader()->viewport(), Qt::LeftButton, modifiers, RowTitle(row));
    }

    /// Moves with the left button held. Not QTest::mouseMove, which moves the pointer without a button.
    static void MoveHeld(QWidget& widget, const QPoint& to)
    {
        QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&widget, &move);
    }

    static void Drag(QWidget& widget, const QPoint& from, const QPoint& to)
    {
        QTest::mousePress(&widget, Qt::LeftButton, {}, from);
        MoveHeld(widget, (from + to) / 2);
        MoveHeld(widget, to);
        QTest::mouseRelease(&widget, Qt::LeftButton, {}, to);
    }

    CGridCorner& Corner() const { return *grid->findChild<CGridCorner*>(); }
};

TEST_F(GridMouse, AClickChoosesACellAndTellsBefore)
{
    Fill(6, 6);
    std::string focusWhenTold;
    QObject::connect(grid, &CGridCtrl::Notify, [&](const GridNotification&) { focusWhenTold = Focus(); });
    Click(1, 2);
    Click(2, 3);
    EXPECT_EQ(log, (Lines{"-100 of 102800 at 1,2", "-100 of 102800 at 2,3"}));
    EXPECT_EQ(focusWhenTold, "1,2");
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(Selected(), "2,3");
    Click(2, 3);
    EXPECT_EQ(log.size(), 2u); // nothing moves
}

TEST_F(GridMouse, ShiftExtendsTheSelectionFromWhereItBegan)
{
    Fill(6, 6);
    Click(2, 3);
    Click(3, 4, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "2,3 2,4 3,3 3,4");
    Click(1, 3, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,3 2,3");
    EXPECT_EQ(Focus(), "1,3");
}

TEST_F(GridMouse, CtrlAddsACellAndTakesItAway)
{
    Fill(6, 6);
    Click(2, 3);
    Click(4, 5, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "2,3 4,5");
    Click(2, 3, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "4,5");
    EXPECT_EQ(Focus(), "2,3");
}

TEST_F(GridMouse, DraggingOverCellsDoesNotExtendTheSelection)
{
    Fill(6, 6);
    Drag(*grid->viewport(), Center(2, 3), Center(4, 5));
    EXPECT_EQ(Selected(), "2,3");
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(log, Lines{"-100 of 102800 at 2,3"});
}

TEST_F(GridMouse, DraggingWithTheShiftKeyStaysWhereThePressWas)
{
    Fill(6, 6);
    Click(2, 3);
    QTest::mousePress(grid->viewport(), Qt::LeftButton, Qt::ShiftModifier, Center(3, 4));
    MoveHeld(*grid->viewport(), Center(5, 5));
    QTest::mouseRelease(grid->viewport(), Qt::LeftButton, Qt::ShiftModifier, Center(5, 5));
    EXPECT_EQ(Selected(), "2,3 2,4 3,3 3,4");
}

TEST_F(GridMouse, DraggingOutsideDoesNotScroll)
{
    Fill(200, 6);
    Drag(*grid->viewport(), Center(4, 3), QPoint(Center(4, 3).x(), grid->viewport()->height() + 50));
    EXPECT_EQ(grid->verticalScrollBar()->value(), 0);
    EXPECT_EQ(Selected(), "4,3");
}

TEST_F(GridMouse, MovingWithoutAButtonTellsNothing)
{
    Fill(6, 6);
    Click(2, 3);
    log.clear();
    QTest::mouseMove(grid->viewport(), Center(4, 5));
    EXPECT_FALSE(grid->viewport()->hasMouseTracking());
    EXPECT_EQ(Selected(), "2,3");
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridMouse, AClickOnATitleChoosesItsColumnOrRow)
{
    Fill(4, 5);
    ClickColumnTitle(3);
    EXPECT_EQ(Selected(), "1,3 2,3 3,3");
    ClickRowTitle(2);
    EXPECT_EQ(Selected(), "2,2 2,3 2,4");
}

TEST_F(GridMouse, ShiftAndCtrlOnTitles)
{
    Fill(3, 6);
    ClickColumnTitle(2);
    ClickColumnTitle(4, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "1,2 1,3 1,4 2,2 2,3 2,4");
    ClickColumnTitle(5);
    ClickColumnTitle(3, Qt::ControlModifier);
    EXPECT_EQ(Selected(), "1,3 1,5 2,3 2,5");
}

TEST_F(GridMouse, DraggingOverTitlesDoesNotExtendTheSelection)
{
    Fill(5, 6);
    Drag(*grid->horizontalHeader()->viewport(), ColumnTitle(3), ColumnTitle(5));
    EXPECT_EQ(Selected(), "1,3 2,3 3,3 4,3");
    Drag(*grid->verticalHeader()->viewport(), RowTitle(2), RowTitle(4));
    EXPECT_EQ(Selected(), "2,2 2,3 2,4 2,5");
}

TEST_F(GridMouse, AClickOnTheCornerChoosesAll)
{
    Fill(3, 4);
    QTest::mouseClick(&Corner(), Qt::LeftButton, {}, QPoint(Corner().width() / 4, Corner().height() / 2));
    EXPECT_EQ(Selected(), "1,2 1,3 2,2 2,3");
}

TEST_F(GridMouse, ACornerPressedAndLeftChoosesNothing)
{
    Fill(3, 4);
    const QPoint inside(Corner().width() / 4, Corner().height() / 2);
    QTest::mousePress(&Corner(), Qt::LeftButton, {}, inside);
    QTest::mouseRelease(&Corner(), Qt::LeftButton, {}, QPoint(-5, 5));
    QTest::mouseClick(&Corner(), Qt::RightButton, {}, inside);
    EXPECT_EQ(Selected(), "");
}

TEST_F(GridMouse, BordersOfTitlesAreDraggedToResize)
{
    Fill(4, 5);
    const int before = grid->ColumnWidth(3);
    const QPoint columnBorder(ColumnTitle(3).x() + before / 2 - 1, 5);
    Drag(*grid->horizontalHeader()->viewport(), columnBorder, columnBorder + QPoint(20, 0));
    EXPECT_EQ(grid->ColumnWidth(3), before + 20);

    const QPoint rowBorder(5, RowTitle(2).y() + 12);
    Drag(*grid->verticalHeader()->viewport(), rowBorder, rowBorder + QPoint(0, 10));
    EXPECT_EQ(grid->RowHeight(2), 36);

    const int fixed = grid->ColumnWidth(0);
    Drag(Corner(), QPoint(fixed, 5), QPoint(fixed + 15, 5));
    EXPECT_EQ(grid->ColumnWidth(0), fixed + 15);
    Drag(Corner(), QPoint(fixed + 15, 5), QPoint(-40, 5));
    EXPECT_EQ(grid->ColumnWidth(0), 8); // wide enough to be grabbed again
    EXPECT_EQ(Selected(), "");
}

TEST_F(GridMouse, ARightClickTellsItsCellAndChoosesNothing)
{
    Fill(6, 6);
    Click(2, 3);
    log.clear();
    QTest::mousePress(grid->viewport(), Qt::RightButton, {}, Center(4, 5));
    EXPECT_EQ(log, Lines{}); // with the release only
    QTest::mouseRelease(grid->viewport(), Qt::RightButton, {}, Center(4, 5));
    EXPECT_EQ(log, Lines{"-5 of 102800 at 4,5"});
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(Selected(), "2,3");
    EXPECT_EQ(grid->ContextMenuPosition(), grid->viewport()->mapToGlobal(Center(4, 5)));
}

TEST_F(GridMouse, ARightClickBesideTheCellsTellsNothing)
{
    Fill(3, 4);
    QTest::mouseClick(grid->viewport(), Qt::RightButton, {}, grid->viewport()->rect().bottomRight());
    QTest::mouseClick(grid->horizontalHeader()->viewport(), Qt::RightButton, {}, ColumnTitle(3));
    QTest::mouseClick(grid->verticalHeader()->viewport(), Qt::RightButton, {}, RowTitle(2));
    EXPECT_EQ(log, Lines{});
    EXPECT_EQ(Selected(), "");
}

TEST_F(GridMouse, ThePlatformsMenuRequestAfterARightClickTellsNothingMore)
{
    Fill(6, 6);
    Click(2, 3);
    log.clear();
    QContextMenuEvent request(QContextMenuEvent::Mouse, Center(4, 5), grid->viewport()->mapToGlobal(Center(4, 5)));
    QApplication::sendEvent(grid->viewport(), &request);
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridMouse, TheMiddleButtonDoesNothing)
{
    Fill(6, 6);
    QTest::mouseClick(grid->viewport(), Qt::MiddleButton, {}, Center(4, 5));
    EXPECT_EQ(log, Lines{});
    EXPECT_EQ(Focus(), "none");
}

TEST_F(GridMouse, OnlyAPlainDoubleClickEdits)
{
    Fill(6, 6);
    for (const auto modifier : {Qt::ShiftModifier, Qt::ControlModifier}) {
        Click(2, 3);
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, modifier, Center(2, 3));
        EXPECT_EQ(Editor(), nullptr);
    }
    QTest::mouseDClick(grid->viewport(), Qt::RightButton, {}, Center(2, 3));
    EXPECT_EQ(Editor(), nullptr);
    QTest::mouseDClick(grid->horizontalHeader()->viewport(), Qt::LeftButton, {}, ColumnTitle(3));
    EXPECT_EQ(Editor(), nullptr);
}

class CWheelLines {
public:
    explicit CWheelLines(int lines) { QApplication::setWheelScrollLines(lines); }
    ~CWheelLines() { QApplication::setWheelScrollLines(m_nBefore); }

private:
    int m_nBefore = QApplication::wheelScrollLines();
};

struct GridWheel : GridMouse, testing::WithParamInterface<int> {};

TEST_P(GridWheel, ScrollsByTheLinesOfTheDesktop)
{
    const CWheelLines lines(GetParam());
    Fill(200, 6);
    TurnWheel(*grid->viewport(), 1);
    EXPECT_EQ(grid->verticalScrollBar()->value(), GetParam());
    TurnWheel(*grid->viewport(), 2);
    EXPECT_EQ(grid->verticalScrollBar()->value(), 3 * GetParam());
    TurnWheel(*grid->viewport(), -1);
    EXPECT_EQ(grid->verticalScrollBar()->value(), 2 * GetParam());
    TurnWheel(*grid->viewport(), -5);
    EXPECT_EQ(grid->verticalScrollBar()->value(), 0);
    EXPECT_EQ(log, Lines{});
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridWheel, testing::Values(1, 3, 7),
    [](const auto& c) { return "Lines" + std::to_string(c.param); });
// clang-format on

TEST_F(GridMouse, TheWheelLeavesAnOpenEditorOpen)
{
    Fill(200, 6);
    Edit(4, 3, "7");
    TurnWheel(*Editor(), 1);
    EXPECT_GT(grid->verticalScrollBar()->value(), 0);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), QString("7"));
}

} // namespace
