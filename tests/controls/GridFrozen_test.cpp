// Columns that stay in sight while the others scroll: seen, clicked, edited and gone past.

#include "controls/GridHeader.h"
#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"
#include "tests/support/PictureOf.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollBar>
#include <QTest>

namespace {

constexpr int kWidth = 100; // of every column

/// A grid of 20 data columns, of which about seven are in sight.
struct GridFrozen : CGridTestBed {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        Make();
    }

    void Make()
    {
        Fill(40, 22);
        for (int column = 0; column < 22; ++column)
            grid->SetColumnWidth(column, kWidth);
        QApplication::processEvents();
    }

    void ScrollToTheEnd()
    {
        grid->horizontalScrollBar()->setValue(grid->horizontalScrollBar()->maximum());
        QApplication::processEvents();
    }

    QRect Cell(int row, int column) const { return grid->visualRect(grid->Model().BodyIndex(row, column)); }
    QWidget& Titles() const { return *grid->horizontalHeader()->viewport(); }

    /// What the grid, titles and all, looks like from `left` on, so many pixels wide.
    static QImage Picture(QWidget& widget, int left, int width)
    {
        return widget.grab({left, 0, width, widget.height()}).toImage();
    }
};

} // namespace

TEST_F(GridFrozen, AFrozenColumnIsSeenWhereItWasAndTheOthersScroll)
{
    const QImage cells = Picture(*grid->viewport(), 0, 2 * kWidth - 2); // without the edge
    const QImage titles = Picture(Titles(), 0, 2 * kWidth - 2);
    const QImage others = Picture(*grid->viewport(), 2 * kWidth, kWidth);
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    EXPECT_EQ(Picture(*grid->viewport(), 0, 2 * kWidth - 2), cells);
    EXPECT_EQ(Picture(Titles(), 0, 2 * kWidth - 2), titles);
    EXPECT_NE(Picture(*grid->viewport(), 2 * kWidth, kWidth), others);
    EXPECT_EQ(Cell(1, 2).left(), 0);
    EXPECT_EQ(Cell(1, 3).left(), kWidth);
    EXPECT_EQ(Cell(1, 21).right(), grid->viewport()->width() - 1);
    grid->SetFrozenColumnCount(0);
    EXPECT_LT(Cell(1, 2).right(), 0);
    EXPECT_NE(Picture(*grid->viewport(), 0, 2 * kWidth - 2), cells);
}

TEST_F(GridFrozen, TheFrozenColumnsEndInALine)
{
    grid->SetFrozenColumnCount(2);
    for (const int scale : {1, 2}) {
        const CPictureOf picture(*grid->viewport(), scale);
        const QRgb line = grid->palette().color(QPalette::Shadow).rgb();
        EXPECT_EQ(picture.At(2 * kWidth - 1, 40).rgb(), line);
        EXPECT_EQ(picture.At(2 * kWidth - 2, 40).rgb(), line);
        EXPECT_NE(picture.At(2 * kWidth + 1, 40).rgb(), line);
    }
}

TEST_F(GridFrozen, AClickChoosesTheCellThatIsSeen)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, {kWidth + 50, 40});
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(Selected(), "2,3");
    EXPECT_EQ(Cell(1, 21).right(), grid->viewport()->width() - 1); // nothing scrolled
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, Cell(2, 21).center());
    EXPECT_EQ(Focus(), "2,21");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::ControlModifier, {50, 40});
    EXPECT_EQ(Selected(), "2,2 2,21");
}

TEST_F(GridFrozen, ASelectionOfFrozenCellsIsSeenAtOnce)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    const QImage before = Picture(Titles(), 0, kWidth - 2);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, {50, 40});
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::ShiftModifier, {50, 70});
    EXPECT_EQ(Selected(), "2,2 3,2");
    EXPECT_NE(Picture(Titles(), 0, kWidth - 2), before);
    const QColor marked = CPictureOf(*grid->viewport(), 1).At(10, 40);
    EXPECT_EQ(marked, grid->palette().color(QPalette::Active, QPalette::Highlight));
}

TEST_F(GridFrozen, TheKeysGoFromAFrozenColumnToTheNextOneAndBack)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, {kWidth + 50, 40});
    Press(Qt::Key_Right);
    EXPECT_EQ(Focus(), "2,4");
    EXPECT_EQ(Cell(2, 4).left(), 2 * kWidth); // beside the frozen ones, not below them
    for (int column = 5; column < 22; ++column) {
        Press(Qt::Key_Tab);
        EXPECT_EQ(Focus(), "2," + std::to_string(column));
        EXPECT_GE(Cell(2, column).left(), 2 * kWidth);
        EXPECT_LT(Cell(2, column).right(), grid->viewport()->width());
    }
    Press(Qt::Key_Tab); // the next row begins in the frozen ones
    EXPECT_EQ(Focus(), "3,2");
    EXPECT_EQ(Cell(2, 21).right(), grid->viewport()->width() - 1);
    for (int column = 21; column > 3; --column) {
        grid->SetFocusCell(2, column);
        EXPECT_GE(Cell(2, column).left(), 2 * kWidth);
    }
    Press(Qt::Key_PageDown);
    EXPECT_EQ(grid->currentIndex().column(), 2);
}

TEST_F(GridFrozen, AFrozenCellIsEditedWhereItIsSeen)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, {50, 40});
    Type("new");
    ASSERT_NE(Editor(), nullptr);
    EXPECT_TRUE(Cell(2, 2).contains(Editor()->geometry()));
    EXPECT_TRUE(Editor()->mask().isEmpty());
    Press(Qt::Key_Tab);
    EXPECT_EQ(TextAt(2, 2), "new");
    EXPECT_EQ(Focus(), "2,3");
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->x() / kWidth, 1);
}

TEST_F(GridFrozen, AnOpenEditorScrollsBelowTheFrozenColumns)
{
    grid->SetFrozenColumnCount(2);
    Edit(2, 4, "kept");
    const auto covers = [&] {
        const QRect seen = Editor()->mask().isEmpty() ? Editor()->rect() : Editor()->mask().boundingRect();
        return seen.translated(Editor()->pos()).intersects(QRect(0, 0, 2 * kWidth, grid->viewport()->height()));
    };
    EXPECT_FALSE(covers());
    for (int scrolled = 0; scrolled <= 300; scrolled += 30) {
        grid->horizontalScrollBar()->setValue(scrolled);
        EXPECT_FALSE(covers()) << scrolled;
        EXPECT_TRUE(Editor()->hasFocus());
    }
    Press(Qt::Key_A); // what is typed comes into sight
    EXPECT_EQ(Editor()->x() / kWidth, 2);
    Press(Qt::Key_Return);
    EXPECT_EQ(TextAt(2, 4), "kepta");
}

TEST_F(GridFrozen, ATitleThatIsFrozenChoosesItsOwnColumn)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    QTest::mouseClick(&Titles(), Qt::LeftButton, {}, {kWidth + 50, 10});
    EXPECT_TRUE(Selected().starts_with("1,3 2,3 3,3 "));
    QTest::mouseClick(&Titles(), Qt::LeftButton, {}, {grid->viewport()->width() - 50, 10});
    EXPECT_TRUE(Selected().starts_with("1,21 2,21 "));
}

TEST_F(GridFrozen, TheBorderOfAFrozenTitleIsDraggedWhereItIsSeen)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    const QPoint border(kWidth - 1, 10);
    QTest::mousePress(&Titles(), Qt::LeftButton, {}, border);
    const QPoint to = border + QPoint(40, 0);
    QMouseEvent move(QEvent::MouseMove, to, Titles().mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&Titles(), &move);
    QTest::mouseRelease(&Titles(), Qt::LeftButton, {}, to);
    EXPECT_EQ(grid->ColumnWidth(2), kWidth + 40);
    EXPECT_EQ(grid->ColumnWidth(3), kWidth);
    EXPECT_EQ(Cell(1, 3).left(), kWidth + 40);
}

TEST_F(GridFrozen, TheMousePointerTellsABorderThatIsFrozen)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    QTest::mouseMove(&Titles(), {kWidth + 50, 10});
    EXPECT_NE(grid->horizontalHeader()->cursor().shape(), Qt::SplitHCursor);
    QTest::mouseMove(&Titles(), {2 * kWidth - 2, 10});
    EXPECT_EQ(grid->horizontalHeader()->cursor().shape(), Qt::SplitHCursor);
    QTest::mouseMove(&Titles(), {50, 10});
    EXPECT_NE(grid->horizontalHeader()->cursor().shape(), Qt::SplitHCursor);
}

TEST_F(GridFrozen, ADoubleClickOnAFrozenBorderFitsItsColumn)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    QTest::mouseDClick(&Titles(), Qt::LeftButton, {}, {kWidth - 2, 10});
    EXPECT_LT(grid->ColumnWidth(2), kWidth);
    EXPECT_EQ(grid->ColumnWidth(3), kWidth);
}

TEST_F(GridFrozen, AMenuIsAskedForOnTheTitleThatIsSeen)
{
    std::vector<int> asked;
    QObject::connect(grid, &CGridCtrl::TitleMenuAsked, grid, [&](int column, QPoint) { asked.push_back(column); });
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    for (const int x : {50, kWidth + 50, grid->viewport()->width() - 50}) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {x, 10}, Titles().mapToGlobal(QPoint(x, 10)));
        QApplication::sendEvent(&Titles(), &event);
    }
    EXPECT_EQ(asked, (std::vector{2, 3, 21}));
}

TEST_F(GridFrozen, ColumnsThatWouldTakeTheRoomOfTheOthersScroll)
{
    const int fit = 2 * grid->viewport()->width() / 3 / kWidth;
    grid->SetFrozenColumnCount(fit);
    EXPECT_FALSE(grid->AreFrozenColumnsTooWide());
    grid->SetFrozenColumnCount(fit + 1);
    EXPECT_TRUE(grid->AreFrozenColumnsTooWide());
    ScrollToTheEnd();
    EXPECT_LT(Cell(1, 2).right(), 0);
    EXPECT_EQ(grid->indexAt({50, 40}).column(), grid->horizontalHeader()->logicalIndexAt(50));
    window.resize(1400, 500); // and they stay as soon as there is room
    QApplication::processEvents();
    EXPECT_FALSE(grid->AreFrozenColumnsTooWide());
    EXPECT_EQ(Cell(1, 2).left(), 0);
    grid->SetFrozenColumnCount(20);
    EXPECT_TRUE(grid->AreFrozenColumnsTooWide());
    grid->SetFrozenColumnCount(0);
    EXPECT_FALSE(grid->AreFrozenColumnsTooWide());
}

TEST_F(GridFrozen, AssistiveProgramsFindTheCellsWhereTheyAreSeen)
{
    grid->SetFrozenColumnCount(2);
    ScrollToTheEnd();
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(grid);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->tableInterface()->columnCount(), 20);
    QAccessibleInterface* cell = table->tableInterface()->cellAt(1, 1);
    EXPECT_EQ(cell->text(QAccessible::Name), QString("2,3"));
    EXPECT_EQ(grid->viewport()->mapFromGlobal(cell->rect().topLeft()), QPoint(kWidth, 26));
    const QPoint seen = grid->viewport()->mapToGlobal(QPoint(kWidth + 50, 40));
    QAccessibleInterface* found = table->childAt(seen.x(), seen.y());
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->text(QAccessible::Name), QString("2,3"));
}

TEST_F(GridFrozen, ARightToLeftGridFreezesAtItsRight)
{
    grid->setLayoutDirection(Qt::RightToLeft);
    QApplication::processEvents();
    grid->SetFrozenColumnCount(2);
    grid->horizontalScrollBar()->setValue(grid->horizontalScrollBar()->maximum());
    const int width = grid->viewport()->width();
    EXPECT_EQ(Cell(1, 2).right(), width - 1);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, {width - kWidth - 50, 40});
    EXPECT_EQ(Focus(), "2,3");
    QTest::mouseClick(&Titles(), Qt::LeftButton, {}, {width - 50, 10});
    EXPECT_TRUE(Selected().starts_with("1,2 2,2 "));
    grid->SetFocusCell(2, 4);
    EXPECT_EQ(Cell(2, 4).right(), width - 2 * kWidth - 1);
}

TEST_F(GridFrozen, AnotherFillingEndsIt)
{
    grid->SetFrozenColumnCount(2);
    EXPECT_EQ(grid->FrozenColumnCount(), 2);
    Make();
    EXPECT_EQ(grid->FrozenColumnCount(), 0);
}
