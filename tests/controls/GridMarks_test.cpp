// What is shown and said of a cell besides its text: that it changed, that it is out of range, that a save rewrites it.

#include "controls/GridCellPaint.h"
#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"
#include "tests/support/PictureOf.h"

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

#include <cstdlib>
#include <map>
#include <set>
#include <utility>

namespace {

constexpr int kRows = 1'048'576;
constexpr int kColumns = 16;

/// A grid's texts with marks on some of them. Counts how often it was asked for marks.
class CMarkedSource final : public CGridTextSource {
public:
    QString CellText(int row, int column) const override { return QStringLiteral("%1,%2").arg(row).arg(column); }
    bool SetCellText(int, int, const QString&) override { return false; }

    GridCellMarks CellMarks(int row, int column) const override
    {
        ++asked;
        const auto found = marks.find({row, column});
        return found != marks.end() ? found->second : GridCellMarks{};
    }

    QString TitleRemark(int column) const override
    {
        return column == 3 ? QStringLiteral("Unit: <°C>\nmore & more") : QString();
    }

    QString CellRemark(int row, int column) const override
    {
        return marks.contains({row, column}) ? QStringLiteral("value 9 is <outside> & changed") : QString();
    }

    std::map<std::pair<int, int>, GridCellMarks> marks;
    mutable int asked = 0;
};

struct GridMarks : CGridTestBed {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        source.marks[{1, 3}] = {.changed = true};
        source.marks[{2, 3}] = {.outOfRange = true};
        source.marks[{3, 3}] = {.changed = true, .outOfRange = true};
        source.marks[{5, 3}] = {.rewritten = true};
        source.marks[{6, 3}] = {.changed = true, .rewritten = true};
        source.marks[{7, 3}] = {.changed = true, .outOfRange = true, .rewritten = true};
        source.marks[{9, 3}] = {.differs = true};
        source.marks[{12, 3}] = {.unusual = true};
        source.marks[{13, 3}] = {
            .changed = true, .outOfRange = true, .rewritten = true, .unusual = true, .differs = true};
        source.marks[{10, 3}] = {.changed = true, .outOfRange = true, .rewritten = true, .differs = true};
        grid->SetTextSource(&source);
        grid->SetRowCount(1 + kRows);
        grid->SetColumnCount(2 + kColumns);
        grid->SetDefaultRowHeight(26);
        grid->SetFixedRowCount(1);
        grid->SetFixedColumnCount(2);
        ASSERT_TRUE(WaitFor([this] { return source.asked > 0; }));
    }
    void TearDown() override { grid->SetTextSource(nullptr); }

    QRect CellRect(int row, int column) const { return grid->visualRect(grid->Model().BodyIndex(row, column)); }

    // Where a cell shows its marks; its text stands in the middle.
    QColor Corner(int row, int column, int scale = 1) const
    {
        const QPoint at = CellRect(row, column).topRight() + QPoint(-4, 3);
        return CPictureOf(*grid->viewport(), scale).At(at.x(), at.y());
    }
    QColor Bar(int row, int column, int scale = 1) const
    {
        const QRect cell = CellRect(row, column);
        return CPictureOf(*grid->viewport(), scale).At(cell.left() + 3, cell.center().y());
    }
    // The open corner: its left side, which the bar moves on, and what shows within it.
    QColor OpenSide(int row, int column, int scale = 1) const
    {
        const QPoint at = CellRect(row, column).bottomLeft() + QPoint(OpenLeft(row, column), -7);
        return CPictureOf(*grid->viewport(), scale).At(at.x(), at.y());
    }
    QColor OpenInside(int row, int column, int scale = 1) const
    {
        const QPoint at = CellRect(row, column).bottomLeft() + QPoint(OpenLeft(row, column) + 2, -5);
        return CPictureOf(*grid->viewport(), scale).At(at.x(), at.y());
    }
    int OpenLeft(int row, int column) const { return grid->Model().Marks(row, column).outOfRange ? 6 : 3; }
    QColor Ground(int row, int column) const
    {
        const QPoint at = CellRect(row, column).bottomRight() - QPoint(5, 5);
        return CPictureOf(*grid->viewport(), 1).At(at.x(), at.y());
    }

    // Right below the place of the corner.
    QColor RightBar(int row, int column, int scale = 1) const
    {
        const QPoint at = CellRect(row, column).bottomRight() - QPoint(4, 8);
        return CPictureOf(*grid->viewport(), scale).At(at.x(), at.y());
    }
    QColor Middle(int row, int column) const
    {
        const QRect cell = CellRect(row, column);
        return CPictureOf(*grid->viewport(), 1).At(cell.right() - 12, cell.center().y());
    }

    /// The heights, from the bottom of the cell on, in which the zigzag's colour is met at each pixel of its width.
    std::set<int> Zigzag(int row, int column, const QColor& color, int scale = 1) const
    {
        const QRect cell = CellRect(row, column);
        const CPictureOf picture(*grid->viewport(), scale);
        std::set<int> heights;
        for (int x = cell.left() + 16; x < cell.right() - 8; ++x)
            for (int height = 1; height < 9; ++height)
                if (picture.At(x, cell.bottom() - height) == color)
                    heights.insert(height);
        return heights;
    }

    QColor Color(QPalette::ColorRole role) const { return grid->palette().color(role); }
    QString Tip(int row, int column) const
    {
        QToolTip::hideText();
        EXPECT_TRUE(WaitFor([] { return !QToolTip::isVisible(); }));
        const QPoint at = Center(row, column);
        QHelpEvent help(QEvent::ToolTip, at, grid->viewport()->mapToGlobal(at));
        QApplication::sendEvent(grid->viewport(), &help);
        return QToolTip::text();
    }
    QString Description(int row, int column) const
    {
        QAccessibleTableInterface* table = QAccessible::queryAccessibleInterface(grid)->tableInterface();
        return table->cellAt(row - 1, column - 2)->text(QAccessible::Description);
    }

    CMarkedSource source;
};

TEST_F(GridMarks, AreAskedOfTheCellsInSightOnly)
{
    source.asked = 0;
    grid->grab();
    const int visibleRows = grid->viewport()->height() / 26 + 2;
    EXPECT_GT(source.asked, 0);
    EXPECT_LE(source.asked, visibleRows * kColumns);
}

TEST_F(GridMarks, AChangedCellHasACornerAtEachResolution)
{
    for (const int scale : {1, 2, 3}) {
        EXPECT_EQ(Corner(1, 3, scale), Color(QPalette::Highlight)) << scale;
        EXPECT_EQ(Corner(1, 4, scale), Color(QPalette::Base)) << scale;
        EXPECT_EQ(Corner(2, 3, scale), WarningTint(Color(QPalette::Base))) << scale;
    }
    EXPECT_EQ(Ground(1, 3), Color(QPalette::Base));
}

TEST_F(GridMarks, ACellOutOfRangeHasABarAndATintAtEachResolution)
{
    for (const int scale : {1, 2, 3}) {
        EXPECT_EQ(Bar(2, 3, scale), WarningColor(Color(QPalette::Base))) << scale;
        EXPECT_EQ(Bar(1, 3, scale), Color(QPalette::Base)) << scale;
    }
    EXPECT_EQ(Ground(2, 3), WarningTint(Color(QPalette::Base)));
}

TEST_F(GridMarks, ACellMayHaveBoth)
{
    EXPECT_EQ(Corner(3, 3), Color(QPalette::Highlight));
    EXPECT_EQ(Bar(3, 3), WarningColor(Color(QPalette::Base)));
}

TEST_F(GridMarks, ACellThatASaveRewritesHasAnOpenCornerAtEachResolution)
{
    for (const int scale : {1, 2, 3}) {
        EXPECT_EQ(OpenSide(5, 3, scale), Color(QPalette::Highlight)) << scale;
        EXPECT_EQ(OpenInside(5, 3, scale), Color(QPalette::Base)) << scale;
        EXPECT_EQ(OpenSide(1, 3, scale), Color(QPalette::Base)) << scale;
        EXPECT_EQ(Corner(5, 3, scale), Color(QPalette::Base)) << scale;
    }
    EXPECT_EQ(Ground(5, 3), Color(QPalette::Base));
}

TEST_F(GridMarks, TheOpenCornerStandsBesideEachOther)
{
    EXPECT_EQ(OpenSide(6, 3), Color(QPalette::Highlight));
    EXPECT_EQ(OpenInside(6, 3), Color(QPalette::Base));
    EXPECT_EQ(Corner(6, 3), Color(QPalette::Highlight));
    const QColor tint = WarningTint(Color(QPalette::Base));
    EXPECT_EQ(OpenSide(7, 3), Color(QPalette::Highlight));
    EXPECT_EQ(OpenInside(7, 3), tint);
    EXPECT_EQ(Corner(7, 3), Color(QPalette::Highlight));
    EXPECT_EQ(Bar(7, 3), WarningColor(Color(QPalette::Base)));
}

TEST_F(GridMarks, TheOpenCornerStaysOnTheFocusCellAndIsInTheColourOfTheTextOnSelectedOnes)
{
    Click(7, 3);
    EXPECT_EQ(OpenSide(7, 3), Color(QPalette::Highlight));
    Click(5, 3, Qt::ShiftModifier);
    EXPECT_EQ(OpenSide(6, 3), Color(QPalette::HighlightedText));
    EXPECT_EQ(OpenInside(6, 3), Color(QPalette::Highlight));
    EXPECT_EQ(OpenSide(7, 3), Color(QPalette::HighlightedText));
}

TEST_F(GridMarks, ACellThatDiffersHasABarAtTheRightAndATintOfItsOwnAtEachResolution)
{
    const QColor base = Color(QPalette::Base);
    for (const int scale : {1, 2, 3}) {
        EXPECT_EQ(RightBar(9, 3, scale), DifferenceColor(base)) << scale;
        EXPECT_EQ(RightBar(1, 3, scale), base) << scale;
        EXPECT_EQ(Corner(9, 3, scale), DifferenceTint(base)) << scale;
    }
    EXPECT_EQ(Middle(9, 3), DifferenceTint(base));
    EXPECT_NE(DifferenceTint(base), WarningTint(base));
    EXPECT_NE(DifferenceTint(base), base);
}

TEST_F(GridMarks, ACellThatDiffersMayHaveAllOthers)
{
    const QColor warned = WarningTint(Color(QPalette::Base));
    EXPECT_EQ(Middle(10, 3), DifferenceTint(warned));
    EXPECT_EQ(RightBar(10, 3), DifferenceColor(warned));
    EXPECT_EQ(Bar(10, 3), WarningColor(warned));
    EXPECT_EQ(Corner(10, 3), Color(QPalette::Highlight));
    EXPECT_EQ(OpenSide(10, 3), Color(QPalette::Highlight));
    Click(10, 3);
    Click(9, 3, Qt::ShiftModifier);
    EXPECT_EQ(RightBar(10, 3), Color(QPalette::HighlightedText));
}

TEST_F(GridMarks, AnUnusualCellHasAZigzagLineAndATintOfItsOwnAtEachResolution)
{
    const QColor base = Color(QPalette::Base);
    const QColor line = UnusualColor(UnusualTint(base));
    for (const int scale : {1, 2, 3}) {
        EXPECT_EQ(Zigzag(12, 3, line, scale), (std::set<int>{4, 5, 6, 7})) << scale;
        EXPECT_TRUE(Zigzag(2, 3, line, scale).empty()) << scale; // out of range, which is another mark
        EXPECT_EQ(Bar(12, 3, scale), UnusualTint(base)) << scale;
        EXPECT_EQ(Corner(12, 3, scale), UnusualTint(base)) << scale;
    }
    EXPECT_NE(UnusualTint(base), base);
    EXPECT_NE(UnusualTint(base), WarningTint(base));
    EXPECT_NE(UnusualTint(base), DifferenceTint(base));
}

TEST_F(GridMarks, AnUnusualCellMayHaveAllOthers)
{
    const QColor warned = WarningTint(Color(QPalette::Base));
    const QColor ground = DifferenceTint(UnusualTint(warned));
    EXPECT_EQ(Middle(13, 3), ground);
    EXPECT_FALSE(Zigzag(13, 3, UnusualColor(ground)).empty());
    EXPECT_EQ(Bar(13, 3), WarningColor(ground));
    EXPECT_EQ(RightBar(13, 3), DifferenceColor(ground));
    EXPECT_EQ(Corner(13, 3), Color(QPalette::Highlight));
    EXPECT_EQ(OpenSide(13, 3), Color(QPalette::Highlight));
    EXPECT_EQ(OpenInside(13, 3), ground);
}

TEST_F(GridMarks, TheZigzagStaysOnTheFocusCellAndIsInTheColourOfTheTextOnSelectedOnes)
{
    Click(12, 3);
    EXPECT_FALSE(Zigzag(12, 3, UnusualColor(Color(QPalette::Base))).empty());
    Click(11, 3, Qt::ShiftModifier);
    EXPECT_TRUE(Zigzag(12, 3, UnusualColor(Color(QPalette::Base))).empty());
    EXPECT_FALSE(Zigzag(12, 3, Color(QPalette::HighlightedText)).empty());
}

TEST_F(GridMarks, TheColoursOfAnUnusualCellAreReadableOnLightAndDark)
{
    for (const QColor& ground : {QColor(Qt::white), QColor(Qt::black), QColor(45, 45, 45)}) {
        const int apart = std::abs(UnusualColor(ground).lightness() - ground.lightness());
        EXPECT_GT(apart, 90) << ground.name().toStdString();
        EXPECT_NE(UnusualColor(ground), WarningColor(ground));
        EXPECT_NE(UnusualColor(ground), DifferenceColor(ground));
    }
}

TEST_F(GridMarks, StayOnTheFocusCell)
{
    Click(3, 3);
    EXPECT_EQ(Corner(3, 3), Color(QPalette::Highlight));
    EXPECT_EQ(Bar(3, 3), WarningColor(Color(QPalette::Base)));
}

TEST_F(GridMarks, AreInTheColourOfTheTextOnSelectedCells)
{
    Click(3, 3);
    Click(1, 3, Qt::ShiftModifier);
    EXPECT_EQ(Corner(2, 3), Color(QPalette::Highlight));
    EXPECT_EQ(Bar(2, 3), Color(QPalette::HighlightedText));
    EXPECT_EQ(Corner(3, 3), Color(QPalette::HighlightedText));
    EXPECT_EQ(Bar(3, 3), Color(QPalette::HighlightedText));
}

TEST_F(GridMarks, AreSaidInTheTipAsTheyStand)
{
    EXPECT_EQ(Tip(1, 3), QString("<p>Value 9 is &lt;outside&gt; &amp; changed</p>"));
    EXPECT_EQ(Tip(1, 4), QString());
}

TEST_F(GridMarks, AreSaidInTheDescriptionAfterTheTitles)
{
    grid->SetItemText(0, 3, "Temp");
    EXPECT_EQ(Description(1, 3), QString("Temp, 1,0 1,1, value 9 is <outside> & changed"));
    EXPECT_EQ(Description(4, 3), QString("Temp, 4,0 4,1"));
}

TEST_F(GridMarks, WhatIsSaidOfATitleStandsInItsTipLineByLineAndInItsDescription)
{
    grid->SetItemText(0, 3, "Temp");
    const CGridModel& model = grid->Model();
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::ToolTipRole),
              QString("<p>Temp<br>Unit: &lt;°C&gt;<br>more &amp; more</p>"));
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::AccessibleDescriptionRole), QString("Unit: <°C>\nmore & more"));
    EXPECT_FALSE(model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
    EXPECT_FALSE(model.headerData(1, Qt::Vertical, Qt::ToolTipRole).isValid());
    EXPECT_FALSE(model.headerData(kColumns, Qt::Horizontal, Qt::ToolTipRole).isValid());
    grid->SetTextSource(nullptr);
    EXPECT_FALSE(model.headerData(1, Qt::Horizontal, Qt::ToolTipRole).isValid());
}

TEST_F(GridMarks, KeptCellsHaveNone)
{
    grid->SetTextSource(nullptr);
    EXPECT_EQ(Corner(1, 3), Color(QPalette::Base));
    EXPECT_EQ(Bar(2, 3), Color(QPalette::Base));
    EXPECT_EQ(Tip(1, 3), QString());
}

} // namespace
