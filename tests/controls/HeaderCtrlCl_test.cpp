#include "controls/HeaderCtrlCl.h"
#include "controls/ListCtrlCl.h"
#include "tests/support/GuiTest.h"
#include "tests/support/PictureOf.h"

#include <QApplication>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QTest>
#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int kScales[] = {1, 2};

/// A list of three columns and room to the right of them.
struct Header : testing::Test {
    void SetUp() override
    {
        list.resize(400, 100);
        list.setFrameShape(QFrame::NoFrame);
    }

    void AddColumns(int alignment = CListCtrlCl::Left)
    {
        for (const char* heading : {"X", "Y", "Z"})
            list.InsertColumn(list.columnCount(), heading, alignment, 60);
    }

    CPictureOf Picture(int scale = 1)
    {
        list.show();
        return {*list.Header().viewport(), scale};
    }

    CListCtrlCl list;
};

/// Whether a heading in red on black has ink in line `y`, beyond the first column's free pixel.
bool IsInked(const CPictureOf& picture, int y)
{
    for (int x = 1; x < 60; ++x)
        if (picture.At(x, y).red() > 100)
            return true;
    return false;
}

struct LineCase {
    const char* name;
    int red, green, blue, step;
    int line; ///< from 0 at the top
    QColor color;
    friend void PrintTo(const LineCase& c, std::ostream* out) { *out << c.name; }
};

struct HeaderLine : Header, testing::WithParamInterface<LineCase> {};

struct AlignmentCase {
    const char* name;
    int alignment;
    const char* stored;
    int leftmost, rightmost; ///< where the letter lies in a column of 60 pixels
    friend void PrintTo(const AlignmentCase& c, std::ostream* out) { *out << c.name; }
};

struct HeadingAlignment : Header, testing::WithParamInterface<AlignmentCase> {};

} // namespace

TEST_P(HeaderLine, DarkensDownward)
{
    const LineCase& c = GetParam();
    list.SetHeaderBackColor(c.red, c.green, c.blue, c.step);
    AddColumns();
    for (const int scale : kScales) {
        const CPictureOf picture = Picture(scale);
        EXPECT_EQ(picture.At(1, c.line), c.color) << scale;   // of the first column, after its free pixel
        EXPECT_EQ(picture.At(119, c.line), c.color) << scale; // of the second column, at its right edge
        EXPECT_EQ(picture.At(180, c.line), c.color) << scale; // to the right of the last column
        EXPECT_EQ(picture.At(399, c.line), c.color) << scale;
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Colours, HeaderLine, testing::Values(
    //       name                    red green blue step line  colour
    LineCase{"TopLine",              100, 255, 100,  8,  0, QColor(100, 255, 100)},
    LineCase{"SecondLine",           100, 255, 100,  8,  1, QColor(92, 247, 92)},
    LineCase{"ThirdLine",            100, 255, 100,  8,  2, QColor(84, 239, 84)},
    LineCase{"NeverBelowZero",       100, 255, 100,  8, 13, QColor(0, 151, 0)},
    LineCase{"DefaultColours",       171, 199, 235,  8,  1, QColor(163, 191, 227)},
    LineCase{"NoGradient",            10,  20,  30,  0, 12, QColor(10, 20, 30)},
    LineCase{"LighterUpToWhite",     250,   0,   0, -8,  2, QColor(255, 16, 16)}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(Header, StartsWithItsDefaultColours)
{
    AddColumns();
    EXPECT_EQ(Picture().At(1, 0), QColor(171, 199, 235));
    EXPECT_EQ(Picture().At(1, 2), QColor(155, 183, 219));
}

TEST_F(Header, LeavesOnePixelFreeBeforeEachColumn)
{
    list.SetHeaderBackColor(1, 2, 3, 0);
    AddColumns();
    const CPictureOf picture = Picture();
    for (const int column : {0, 60, 120}) {
        EXPECT_NE(picture.At(column, 0), QColor(1, 2, 3)) << column;
        EXPECT_EQ(picture.At(column + 1, 0), QColor(1, 2, 3)) << column;
    }
}

TEST_P(HeadingAlignment, IsThatOfTheColumn)
{
    list.SetHeaderBackColor(0, 0, 0, 0);
    list.SetHeaderTextColor(Qt::red);
    AddColumns(GetParam().alignment);
    EXPECT_EQ(list.Header().Alignments(), QString(GetParam().stored).repeated(3));
    const CPictureOf picture = Picture();
    int leftmost = 60;
    int rightmost = -1;
    for (int x = 1; x < 60; ++x)
        for (int y = 0; y < picture.Height(); ++y)
            if (picture.At(x, y).red() > 100) {
                leftmost = std::min(leftmost, x);
                rightmost = std::max(rightmost, x);
            }
    EXPECT_GE(leftmost, GetParam().leftmost);
    EXPECT_LE(rightmost, GetParam().rightmost);
    EXPECT_GT(rightmost, leftmost);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Headings, HeadingAlignment, testing::Values(
    //            name             alignment            stored leftmost rightmost
    AlignmentCase{"Left",          CListCtrlCl::Left,   "0",    3, 16},
    AlignmentCase{"Right",         CListCtrlCl::Right,  "2",   43, 56},
    AlignmentCase{"Centre",        CListCtrlCl::Centre, "1",   22, 38},
    AlignmentCase{"OtherIsCentre", 7,                   "1",   22, 38}, // kept
    AlignmentCase{"NegativeIsCentre", -1,               "1",   22, 38}), // kept
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(Header, AHeadingStandsInTheMiddleOfItsHeight)
{
    list.SetHeaderBackColor(0, 0, 0, 0);
    list.SetHeaderTextColor(Qt::red);
    list.SetHeaderFont(12, 0);
    list.SetHeaderHeight(4.0F);
    AddColumns();
    const CPictureOf picture = Picture();
    int above = 0; // free lines
    while (above < picture.Height() && !IsInked(picture, above))
        ++above;
    int below = 0;
    while (below < picture.Height() && !IsInked(picture, picture.Height() - 1 - below))
        ++below;
    EXPECT_GT(above, picture.Height() / 4);
    EXPECT_NEAR(above, below, 4); // the letter itself is not in the middle of its line
}

TEST_F(Header, HeadingsGoFromLeftToRightAsTheyWereAdded)
{
    EXPECT_EQ(list.InsertColumn(0, "first", CListCtrlCl::Left, 40), 0);
    EXPECT_EQ(list.InsertColumn(0, "second", CListCtrlCl::Left, 50), 0); // kept: in front, yet it names the other one
    EXPECT_EQ(list.InsertColumn(99, "third", CListCtrlCl::Left, 60), 2);
    EXPECT_EQ(list.Header().Headings(), (QStringList{"first", "second", "third"}));
    for (int column = 0; column < 3; ++column)
        EXPECT_EQ(list.horizontalHeaderItem(column)->text(), list.Header().Headings()[column]);
    EXPECT_EQ(list.columnWidth(0), 50);
    EXPECT_EQ(list.columnWidth(1), 40);
    EXPECT_EQ(list.columnWidth(2), 60);
}

TEST_F(Header, ItsColumnsAreNeitherDraggedNorFitted)
{
    AddColumns();
    ASSERT_TRUE(ShowActive(list));
    QWidget& area = *list.Header().viewport();
    const auto drag = [&](QPoint from, QPoint to) {
        QTest::mousePress(&area, Qt::LeftButton, {}, from);
        for (const QPoint at : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, at, area.mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(&area, &move);
        }
        QTest::mouseRelease(&area, Qt::LeftButton, {}, to);
    };
    const int y = area.height() / 2;
    drag({59, y}, {200, y}); // a border
    drag({61, y}, {5, y});
    drag({30, y}, {150, y}); // a heading
    QTest::mouseDClick(&area, Qt::LeftButton, {}, {59, y});
    for (int column = 0; column < 3; ++column) {
        EXPECT_EQ(list.columnWidth(column), 60) << column;
        EXPECT_EQ(list.Header().visualIndex(column), column);
    }
    list.setColumnWidth(1, 70); // to the program they are not fixed
    EXPECT_EQ(list.columnWidth(1), 70);
}

TEST_F(Header, ItsNaturalHeightIsMultipliedAndTruncated)
{
    AddColumns();
    list.show();
    const int natural = list.Header().height();
    CListCtrlCl higher;
    higher.InsertColumn(0, "X", CListCtrlCl::Left, 60);
    higher.SetHeaderHeight(1.55F);
    higher.show();
    EXPECT_EQ(higher.Header().height(), static_cast<int>(1.55F * static_cast<float>(natural)));
}

TEST(ListFont, FitsItsLineAndLetters)
{
    for (const int height : {9, 12, 15, 40}) {
        const QFont font = ListFont(height, 0);
        EXPECT_EQ(font.family(), QString::fromUtf8("宋体"));
        EXPECT_LE(QFontMetrics(font).height(), height);
        QFont larger(font);
        larger.setPixelSize(font.pixelSize() + 1);
        EXPECT_GT(QFontMetrics(larger).height(), height);
    }
    EXPECT_EQ(ListFont(-12, 0).pixelSize(), 12);
    EXPECT_EQ(ListFont(0, 0).pointSize(), QFont().pointSize());
    EXPECT_GT(ListFont(12, 20).stretch(), ListFont(12, 10).stretch());
    EXPECT_EQ(ListFont(12, 1'000'000).stretch(), 4000);
}
