#include "controls/HeaderCtrlCl.h"
#include "controls/ListCtrlCl.h"
#include "tests/controls/FillRecorder.h"
#include "tests/support/GuiTest.h"
#include "tests/support/PictureOf.h"

#include <QAccessible>
#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyledItemDelegate>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const QColor kCyan(0, 255, 255);
const QColor kMagenta(255, 0, 255);

/// A list of 2 rows and 16 columns of 18 pixels, all bits clear, in a window with a button that has the focus.
struct List : testing::Test {
    void SetUp() override
    {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&button);
        layout->addWidget(&list);
        list.setFrameShape(QFrame::NoFrame);
        for (int column = 0; column < 16; ++column)
            list.InsertColumn(column, QString::number(15 - column), CListCtrlCl::Left, 18);
        list.SetRowHeight(18);
        for (int row = 0; row < 2; ++row) {
            list.InsertItem(row, "0");
            for (int column = 0; column < 16; ++column)
                list.SetBitState(row, column, 0);
        }
        window.resize(400, 200);
        ASSERT_TRUE(ShowActive(window));
        button.setFocus();
    }

    QPoint Centre(int row, int column) { return list.visualRect(list.model()->index(row, column)).center(); }
    void Click(int row, int column, Qt::MouseButton mouseButton = Qt::LeftButton)
    {
        QTest::mouseClick(list.viewport(), mouseButton, {}, Centre(row, column));
    }
    CPictureOf Picture(int scale = 1) { return {*list.viewport(), scale}; }

    QWidget window;
    QPushButton button;
    CListCtrlCl list;
    QSignalSpy toggled{&list, &CListCtrlCl::BitToggled};
};

struct PointCase {
    const char* name;
    int width, height; ///< of the cell
    int x, y;          ///< in the cell
    bool inSquare;
    friend void PrintTo(const PointCase& c, std::ostream* out) { *out << c.name; }
};

struct Square : List, testing::WithParamInterface<PointCase> {};

struct StrayClickCase {
    const char* name;
    Qt::MouseButton button;
    QPoint pressed, released;
    friend void PrintTo(const StrayClickCase& c, std::ostream* out) { *out << c.name; }
};

struct StrayClick : List, testing::WithParamInterface<StrayClickCase> {};

/// What is filled, one on top of another, where the cell is painted at the origin.
std::vector<Fill> FillsOf(const CListCtrlCl& list, int row, int column, QStyle::State state = QStyle::State_None)
{
    CFillRecorder recorder;
    QPainter painter(&recorder);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 18, 18);
    option.state = state;
    option.palette = list.palette();
    list.itemDelegate()->paint(&painter, option, list.model()->index(row, column));
    painter.end();
    return recorder.Fills();
}

QString TipAt(CListCtrlCl& list, QPoint point)
{
    QToolTip::hideText();
    EXPECT_TRUE(WaitFor([] { return !QToolTip::isVisible(); }));
    QHelpEvent help(QEvent::ToolTip, point, list.viewport()->mapToGlobal(point));
    QCoreApplication::sendEvent(list.viewport(), &help);
    return QToolTip::text();
}

} // namespace

TEST_P(Square, LiesInItsCellByWholePixels)
{
    const PointCase& c = GetParam();
    list.SetRowHeight(c.height);
    for (const int column : {0, 1, 15})
        list.setColumnWidth(column, c.width);
    list.SetBitState(1, 1, 1);
    for (const int scale : {1, 2}) {
        const CPictureOf picture = Picture(scale);
        EXPECT_EQ(picture.At(c.x, c.y), c.inSquare ? kCyan : QColor(Qt::white)) << scale;
        EXPECT_EQ(picture.At(c.width + c.x, c.height + c.y), c.inSquare ? kMagenta : QColor(Qt::white)) << scale;
        const QPoint last = list.visualRect(list.model()->index(1, 15)).topLeft();
        EXPECT_EQ(picture.At(last.x() + c.x, last.y() + c.y), c.inSquare ? kCyan : QColor(Qt::white)) << scale;
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Points, Square, testing::Values(
    //        name              width height  x   y  in square
    PointCase{"TopLeft",          18,  18,    0,  0, false}, // 18 x 18: the square is x 4 to 14, y 2 to 14
    PointCase{"LeftOfIt",         18,  18,    3,  8, false},
    PointCase{"ItsLeftEdge",      18,  18,    4,  8, true},
    PointCase{"ItsRightEdge",     18,  18,   14,  8, true},
    PointCase{"RightOfIt",        18,  18,   15,  8, false},
    PointCase{"AboveIt",          18,  18,    9,  1, false},
    PointCase{"ItsTopEdge",       18,  18,    9,  2, true},
    PointCase{"ItsBottomEdge",    18,  18,    9, 14, true},
    PointCase{"BelowIt",          18,  18,    9, 15, false},
    PointCase{"BottomRight",      18,  18,   17, 17, false},
    PointCase{"WideLeftOfIt",     30,  20,    6, 10, false}, // 30 x 20: x 7 to 24, y 4 to 14
    PointCase{"WideLeftEdge",     30,  20,    7, 10, true},
    PointCase{"WideRightEdge",    30,  20,   24, 10, true},
    PointCase{"WideRightOfIt",    30,  20,   25, 10, false},
    PointCase{"WideAboveIt",      30,  20,   15,  3, false},
    PointCase{"WideTopEdge",      30,  20,   15,  4, true},
    PointCase{"WideBottomEdge",   30,  20,   15, 14, true},
    PointCase{"WideBelowIt",      30,  20,   15, 15, false}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(List, AClickFlipsTheBitOfItsCell)
{
    for (const int column : {0, 15}) {
        Click(1, column);
        EXPECT_EQ(list.BitState(1, column), true);
        EXPECT_EQ(toggled.takeFirst(), (QVariantList{1, column}));
        EXPECT_EQ(Picture().At(18 * column + 9, 27), kMagenta);
        EXPECT_EQ(list.BitState(0, column), false);
        Click(1, column);
        EXPECT_EQ(list.BitState(1, column), false);
        EXPECT_EQ(toggled.takeFirst(), (QVariantList{1, column}));
        EXPECT_EQ(Picture().At(18 * column + 9, 27), kCyan);
    }
    EXPECT_TRUE(toggled.isEmpty());
}

TEST_F(List, AClickInAnyCornerOfACellFlipsItsBit)
{
    for (const int column : {0, 15}) {
        const QRect cell(18 * column, 18, 18, 18);
        bool set = false;
        for (const QPoint corner : {cell.topLeft(), cell.topRight(), cell.bottomLeft(), cell.bottomRight()}) {
            set = !set;
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, corner);
            EXPECT_EQ(list.BitState(1, column), set);
            EXPECT_EQ(toggled.takeFirst(), (QVariantList{1, column}));
        }
    }
    EXPECT_TRUE(toggled.isEmpty());
}

TEST_F(List, AnyStateButZeroIsSetAndFlipsToClear)
{
    list.SetBitState(0, 3, -7);
    EXPECT_EQ(list.BitState(0, 3), true);
    Click(0, 3);
    EXPECT_EQ(list.BitState(0, 3), false);
}

TEST_F(List, BothClicksOfADoubleClickFlip)
{
    Click(0, 5);
    EXPECT_EQ(list.BitState(0, 5), true);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, Centre(0, 5)); // the second press
    QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, Centre(0, 5));
    EXPECT_EQ(list.BitState(0, 5), false);
    EXPECT_EQ(toggled.size(), 2);
}

TEST_F(List, ADoubleClickThatBeginsOnAnotherCellFlipsTheSecondOne)
{
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, Centre(0, 5));
    QMouseEvent second(QEvent::MouseButtonDblClick, Centre(0, 6), list.viewport()->mapToGlobal(Centre(0, 6)),
                       Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list.viewport(), &second);
    QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, Centre(0, 6));
    EXPECT_EQ(list.BitState(0, 5), true);
    EXPECT_EQ(list.BitState(0, 6), true);
}

TEST_F(List, ACellWithoutABitStaysCyanWhenItIsClickedAndTellsAllTheSame)
{
    list.InsertItem(2, "x");
    EXPECT_EQ(list.BitState(2, 4), std::nullopt);
    Click(2, 4);
    EXPECT_EQ(toggled.takeFirst(), (QVariantList{2, 4}));
    EXPECT_EQ(list.BitState(2, 4), std::nullopt);
    EXPECT_EQ(Picture().At(18 * 4 + 9, 45), kCyan);
}

TEST_P(StrayClick, FlipsNothing)
{
    QTest::mousePress(list.viewport(), GetParam().button, {}, GetParam().pressed);
    QTest::mouseRelease(list.viewport(), GetParam().button, {}, GetParam().released);
    EXPECT_TRUE(toggled.isEmpty());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Places, StrayClick, testing::Values(
    //             name             button            pressed           released
    StrayClickCase{"BelowTheRows",  Qt::LeftButton,   {9, 60},          {9, 60}},
    StrayClickCase{"JustBelow",     Qt::LeftButton,   {9, 36},          {9, 36}},
    StrayClickCase{"RightOfThem",   Qt::LeftButton,   {16 * 18, 9},     {16 * 18, 9}},
    StrayClickCase{"OtherCell",     Qt::LeftButton,   {9, 9},           {27, 9}},
    StrayClickCase{"RightButton",   Qt::RightButton,  {9, 9},           {9, 9}},
    StrayClickCase{"MiddleButton",  Qt::MiddleButton, {9, 9},           {9, 9}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(List, TheSpaceBarFlipsTheBitThatTheArrowKeysReached)
{
    list.setFocus();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Down, Qt::Key_Left})
        QTest::keyClick(&list, key);
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_EQ(list.BitState(1, 1), true);
    QTest::keyClick(&list, Qt::Key_End);
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_EQ(list.BitState(1, 15), true);
    EXPECT_EQ(toggled.size(), 2);
}

TEST_F(List, AHeldSpaceBarFlipsOnce)
{
    list.setFocus();
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ");
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ", true);
    QCoreApplication::sendEvent(&list, &press);
    QCoreApplication::sendEvent(&list, &repeated);
    EXPECT_EQ(list.BitState(0, 0), true);
}

TEST_F(List, ATypedCharacterMovesNowhere)
{
    list.SetItemText(0, 0, "0");
    list.SetItemText(1, 0, "1");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_1);
    EXPECT_EQ(list.currentRow(), 0);
}

TEST_F(List, TabLeavesIt)
{
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), &button);
}

TEST_F(List, TheCellWithTheFocusIsFramedAndKeepsItsColours)
{
    list.setFocus();
    list.setCurrentCell(1, 2);
    for (const int scale : {1, 2}) {
        const CPictureOf picture = Picture(scale);
        for (const QPoint corner : {QPoint(36, 18), QPoint(53, 18), QPoint(36, 35), QPoint(53, 35)})
            EXPECT_EQ(picture.At(corner.x(), corner.y()), QColor(Qt::black)) << scale;
        EXPECT_EQ(picture.At(38, 20), QColor(Qt::white)) << scale;
        EXPECT_EQ(picture.At(40, 20), kCyan) << scale; // the square's corner
        EXPECT_EQ(picture.At(54, 18), QColor(Qt::white)) << scale;
    }
    button.setFocus();
    EXPECT_EQ(Picture().At(36, 18), QColor(Qt::white));
}

TEST_F(List, TheFirstColourOfAColumnShadowsALaterOne)
{
    list.SetColumnBackColor(2, Qt::red);
    list.SetColumnBackColor(2, Qt::blue);
    EXPECT_EQ(list.BackColor(0, 2), QColor(Qt::red));
    EXPECT_EQ(FillsOf(list, 0, 2).front(), (Fill{QRect(0, 0, 18, 18), Qt::red}));

    list.SetColumnTextColor(2, Qt::green);
    list.SetColumnTextColor(2, Qt::blue);
    EXPECT_EQ(list.TextColor(0, 2), QColor(Qt::green));
}

TEST_F(List, ACellsColourGoesBeforeItsColumnsAndTheLists)
{
    list.SetBkColor(Qt::yellow);
    list.SetColumnBackColor(1, Qt::red);
    list.SetCellBackColor(1, 0, Qt::green); // column, then row
    list.SetCellBackColor(1, 0, Qt::blue);
    EXPECT_EQ(FillsOf(list, 0, 1).front().color, QColor(Qt::green));
    EXPECT_EQ(FillsOf(list, 1, 1).front().color, QColor(Qt::red));
    EXPECT_EQ(FillsOf(list, 1, 0).front().color, QColor(Qt::yellow));

    list.SetTextColor(Qt::gray);
    list.SetColumnTextColor(1, Qt::red);
    list.SetCellTextColor(1, 0, Qt::green);
    list.SetCellTextColor(1, 0, Qt::blue);
    EXPECT_EQ(list.TextColor(0, 1), QColor(Qt::green));
    EXPECT_EQ(list.TextColor(1, 1), QColor(Qt::red));
    EXPECT_EQ(list.TextColor(1, 0), QColor(Qt::gray));
}

TEST_F(List, ASelectedRowHasTheHighlightBehindItsSquares)
{
    list.SetColumnBackColor(1, Qt::red);
    EXPECT_EQ(FillsOf(list, 0, 1, QStyle::State_Selected),
              (std::vector<Fill>{{QRect(0, 0, 18, 18), list.palette().color(QPalette::Highlight)},
                                 {QRect(0, 0, 18, 18), Qt::white},
                                 {QRect(4, 2, 11, 13), kCyan}}));
}

TEST_F(List, StartsWithBlackTextInAFontOfTwelvePixels)
{
    EXPECT_EQ(list.TextColor(0, 0), QColor(Qt::black));
    EXPECT_EQ(list.CellFont(), ListFont(12, 0));
    list.SetCellFont(15, 0);
    EXPECT_EQ(list.CellFont(), ListFont(15, 0));
}

TEST_F(List, TheRowHeightHoldsForEveryRowAtOnce)
{
    list.SetRowHeight(23);
    EXPECT_EQ(list.rowHeight(0), 23);
    EXPECT_EQ(list.rowHeight(1), 23);
    list.InsertItem(2, "");
    EXPECT_EQ(list.rowHeight(2), 23);
    list.SetRowHeight(1);
    EXPECT_EQ(list.rowHeight(0), 1);
}

TEST_F(List, ARowHeightOfZeroOrLessLeavesTheNaturalOne)
{
    QTableWidget plain(1, 1);
    for (const int height : {0, -5}) {
        list.SetRowHeight(23);
        list.SetRowHeight(height);
        EXPECT_EQ(list.rowHeight(0), plain.rowHeight(0));
        EXPECT_EQ(list.rowHeight(1), plain.rowHeight(0));
    }
}

TEST_F(List, TheTipIsTheCellsText)
{
    list.SetItemText(1, 3, "some text");
    list.SetItemText(1, 4, QString(81, 'x'));
    list.SetItemText(1, 5, "");
    EXPECT_EQ(TipAt(list, Centre(1, 3)), "some text");
    EXPECT_EQ(TipAt(list, Centre(1, 4)), QString(80, 'x'));
    EXPECT_EQ(TipAt(list, Centre(1, 5)), "");
    EXPECT_EQ(TipAt(list, QPoint(9, 60)), ""); // below the rows
}

TEST_F(List, ScreenReadersHearNameAndStateOfEachCell)
{
    list.SetItemName(1, 3, "Bit 12");
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&list);
    ASSERT_NE(table, nullptr);
    QAccessibleInterface* cell = table->tableInterface()->cellAt(1, 3);
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->role(), QAccessible::Cell);
    EXPECT_EQ(cell->text(QAccessible::Name), "Bit 12");
    EXPECT_TRUE(cell->state().checkable);
    EXPECT_FALSE(cell->state().checked);
    Click(1, 3);
    EXPECT_TRUE(cell->state().checked);
}

TEST_F(List, RowsBeyondTheLastAreAppended)
{
    EXPECT_EQ(list.InsertItem(99, "end"), 2);
    EXPECT_EQ(list.InsertItem(-1, "start"), 0);
    EXPECT_EQ(list.item(0, 0)->text(), "start");
    EXPECT_EQ(list.item(3, 0)->text(), "end");
}
