// Columns as wide as their texts: after a load, and by a double click on the border of a title.

#include "controls/GridCorner.h"
#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QHeaderView>
#include <QTest>

#include <set>

namespace {

constexpr int kMargin = 3; // pixels left and right of a text

struct GridFit : CGridTestBed {
    int TextWidth(const QString& text) const { return grid->fontMetrics().horizontalAdvance(text); }
    int Digits(int count) const { return count * TextWidth("0"); }
    bool HoldsText(int column, const QString& text) const
    {
        return grid->ColumnWidth(column) >= TextWidth(text) + 2 * kMargin + 1; // the line at its right side
    }

    void DoubleClickBorder(QWidget& titles, int x)
    {
        QTest::mouseDClick(&titles, Qt::LeftButton, {}, QPoint(x, titles.height() / 2));
    }
    void DoubleClickColumnBorder(int column)
    {
        const QHeaderView* header = grid->horizontalHeader();
        const int section = column - grid->FixedColumnCount();
        DoubleClickBorder(*header->viewport(),
                          header->sectionViewportPosition(section) + header->sectionSize(section) - 2);
    }
};

TEST_F(GridFit, AColumnHasRoomForItsLongestText)
{
    Fill(20, 6);
    const QString text("123456789.123456789");
    grid->SetItemText(19, 3, text);
    grid->FitColumns(1);
    EXPECT_TRUE(HoldsText(3, text));
    EXPECT_LT(grid->ColumnWidth(3), TextWidth(text) + Digits(3));
    EXPECT_LT(grid->ColumnWidth(2), grid->ColumnWidth(3));
}

TEST_F(GridFit, AColumnHasRoomForItsTitle)
{
    Fill(4, 6);
    grid->SetItemText(0, 3, "Temperature of the oven");
    grid->FitColumns(1);
    EXPECT_TRUE(HoldsText(3, "Temperature of the oven"));
}

TEST_F(GridFit, WidthsStayWithinBounds)
{
    Fill(4, 6);
    grid->SetItemText(1, 3, QString(5000, 'W'));
    grid->SetItemText(0, 4, "x");
    grid->FitColumns(1);
    EXPECT_EQ(grid->ColumnWidth(3), Digits(40));
    EXPECT_EQ(grid->ColumnWidth(4), Digits(8));
}

TEST_F(GridFit, ColumnsBeforeTheFirstKeepTheirWidths)
{
    Fill(4, 6);
    grid->SetColumnWidth(0, 64);
    grid->SetItemText(1, 0, "a long text in the first column");
    grid->SetItemText(1, 1, "RW2147483647");
    grid->FitColumns(1);
    EXPECT_EQ(grid->ColumnWidth(0), 64);
    EXPECT_TRUE(HoldsText(1, "RW2147483647"));
}

TEST_F(GridFit, AGridWithoutColumnsOrRowsIsLeft)
{
    grid->FitColumns(0);
    EXPECT_EQ(grid->ColumnCount(), 0);
    grid->SetColumnCount(2);
    grid->FitColumns(0);
    EXPECT_EQ(grid->ColumnWidth(0), Digits(8));
    grid->FitColumns(5);
}

TEST_F(GridFit, ADoubleClickOnTheBorderOfATitleFitsItsColumn)
{
    Fill(20, 5);
    const QString text("a text longer than the column at first");
    grid->SetItemText(5, 3, text);
    ASSERT_FALSE(HoldsText(3, text));
    const int other = grid->ColumnWidth(4);
    DoubleClickColumnBorder(3);
    EXPECT_TRUE(HoldsText(3, text));
    EXPECT_EQ(grid->ColumnWidth(4), other);
    EXPECT_EQ(Selected(), "");
}

TEST_F(GridFit, ADoubleClickMakesAWideColumnNarrow)
{
    Fill(4, 5);
    grid->SetColumnWidth(3, 200);
    DoubleClickColumnBorder(3);
    EXPECT_LT(grid->ColumnWidth(3), 200);
    EXPECT_TRUE(HoldsText(3, "1,3"));
}

TEST_F(GridFit, ADoubleClickFitsAFixedColumnToo)
{
    Fill(4, 5);
    grid->SetColumnWidth(0, 64);
    grid->SetColumnWidth(1, 40);
    grid->SetItemText(2, 1, "RW2147483647");
    DoubleClickBorder(*grid->findChild<CGridCorner*>(), 64 + 40 - 2);
    EXPECT_TRUE(HoldsText(1, "RW2147483647"));
    EXPECT_EQ(grid->ColumnWidth(0), 64);
    EXPECT_EQ(Selected(), "");
}

TEST_F(GridFit, ADoubleClickElsewhereInTheCornerSelectsAllAsAClickDoes)
{
    Fill(3, 4);
    auto& corner = *grid->findChild<CGridCorner*>();
    ASSERT_TRUE(WaitFor([&corner] { return corner.width() > 40; })); // laid out
    const QPoint inside(20, corner.height() / 2);
    QTest::mouseDClick(&corner, Qt::LeftButton, {}, inside); // without its release
    QTest::mouseRelease(&corner, Qt::LeftButton, {}, inside);
    EXPECT_EQ(Selected(), "1,2 1,3 2,2 2,3");
}

class CAskedRows final : public CGridTextSource {
public:
    QString CellText(int row, int column) const override
    {
        cells.insert({row, column});
        return QStringLiteral("1");
    }
    bool SetCellText(int, int, const QString&) override { return false; }

    mutable std::set<std::pair<int, int>> cells;
};

TEST_F(GridFit, OfAMillionRowsSomeAreLookedAtTheFirstAndTheLastAmongThem)
{
    CAskedRows source;
    grid->SetTextSource(&source);
    grid->SetRowCount(1'048'577);
    grid->SetColumnCount(18);
    grid->SetFixedRowCount(1);
    grid->SetFixedColumnCount(2);
    source.cells.clear();
    grid->FitColumns(1);
    EXPECT_LE(source.cells.size(), 64u * 17);
    EXPECT_TRUE(source.cells.contains({1, 1}));
    EXPECT_TRUE(source.cells.contains({1'048'576, 17}));
    grid->SetTextSource(nullptr);
}

TEST_F(GridFit, OfManyColumnsFewerRowsAreLookedAt)
{
    CAskedRows source;
    grid->SetTextSource(&source);
    grid->SetColumnCount(10'002);
    grid->SetRowCount(5001);
    grid->SetFixedRowCount(1);
    grid->SetFixedColumnCount(2);
    source.cells.clear();
    grid->FitColumns(2);
    EXPECT_EQ(source.cells.size(), 10'000u);
    grid->SetTextSource(nullptr);
}

} // namespace
