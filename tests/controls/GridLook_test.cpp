// How cells are drawn: colours, fonts, alignment, titles, the focus cell, other resolutions.

#include "controls/GridCorner.h"
#include "controls/GridModel.h"
#include "controls/GridTreeCell.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QHeaderView>
#include <QImage>

namespace {

/// The rectangle of all pixels in `image` that are not `background`; empty when there are none.
QRect Ink(const QImage& image, QRgb background)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != background)
                ink |= QRect(x, y, 1, 1);
    return ink;
}

struct GridLook : CGridTestBed {
    QRect CellRect(int row, int column) const { return grid->visualRect(grid->Model().BodyIndex(row, column)); }
    QColor PixelAt(const QPoint& point) const { return grid->viewport()->grab().toImage().pixelColor(point); }
    QRgb Base() const { return grid->palette().color(QPalette::Base).rgb(); }

    /// What is drawn within a cell, its lines left out.
    QRect TextInk(int row, int column) const
    {
        const QRect inner = CellRect(row, column).adjusted(0, 0, -1, -1);
        return Ink(grid->viewport()->grab(inner).toImage(), Base());
    }
};

TEST_F(GridLook, CellsShowTheirColoursAndTheirDefaultsElsewhere)
{
    Fill(4, 5);
    const QPoint inset(8, 3);
    const auto at = [&](int row, int column) {
        return grid->visualRect(grid->Model().BodyIndex(row, column)).topLeft() + inset;
    };
    grid->GetCell(1, 2)->SetBackColor(QColor(1, 2, 3));
    EXPECT_EQ(PixelAt(at(1, 2)), QColor(1, 2, 3));
    EXPECT_EQ(PixelAt(at(1, 3)), grid->palette().color(QPalette::Base));
    grid->DefaultCell(false, false).SetBackColor(QColor(4, 5, 6));
    EXPECT_EQ(PixelAt(at(1, 2)), QColor(1, 2, 3));
    EXPECT_EQ(PixelAt(at(1, 3)), QColor(4, 5, 6));
}

TEST_F(GridLook, GridLinesAreGrey)
{
    Fill(4, 5);
    const QRect cell = grid->visualRect(grid->Model().BodyIndex(1, 3));
    EXPECT_EQ(PixelAt(cell.bottomRight()), QColor(192, 192, 192));
    EXPECT_EQ(PixelAt(QPoint(cell.center().x(), cell.bottom())), QColor(192, 192, 192));
}

TEST_F(GridLook, ColoursFollowThePalette)
{
    Fill(4, 5);
    QPalette dark = grid->palette();
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    dark.setColor(QPalette::Text, QColor(230, 230, 230));
    dark.setColor(QPalette::Button, QColor(60, 60, 60));
    grid->setPalette(dark);
    EXPECT_EQ(grid->DefaultCell(false, false).BackColor(), QColor(20, 20, 20));
    EXPECT_EQ(grid->DefaultCell(false, false).TextColor(), QColor(230, 230, 230));
    EXPECT_EQ(grid->DefaultCell(true, false).BackColor(), QColor(60, 60, 60));
}

TEST_F(GridLook, TreeCellStandsIndentedByItsLevel)
{
    Fill(4, 5);
    auto cell = std::make_unique<CGridTreeCell>();
    CGridTreeCell* tree = cell.get();
    tree->SetText(u"branch");
    tree->SetTextColor(QColor(200, 0, 0));
    ASSERT_TRUE(grid->SetCell(2, 3, std::move(cell)));
    EXPECT_EQ(TextAt(2, 3), "branch");
    EXPECT_EQ(grid->GetCell(2, 3), tree);

    const GridCellLook look = LookOf(grid->Model(), 2, 3);
    const QRect rect(0, 0, 100, 26);
    const int left = tree->BoxRect(rect, look).left();
    tree->SetLevel(2);
    EXPECT_GT(tree->BoxRect(rect, look).left(), left);
    EXPECT_GT(tree->TextRect(rect, look).left(), tree->BoxRect(rect, look).right());

    const QRect place = grid->visualRect(grid->Model().BodyIndex(2, 3));
    const QRect box = tree->BoxRect(place.adjusted(0, 0, -1, -1), look);
    const QPoint upright(box.center().x(), box.top() + 2);
    EXPECT_EQ(PixelAt(upright), QColor(200, 0, 0)); // a cross: it can be expanded
    tree->SetExpanded(true);
    EXPECT_NE(PixelAt(upright), QColor(200, 0, 0));

    grid->SetColumnCount(3);
    grid->SetColumnCount(5);
    EXPECT_EQ(TextAt(2, 3), "");
}

struct AlignmentCase {
    const char* name;
    std::uint32_t format;
    int left, right; ///< the quarters of the cell that hold the text, from 0 to 3
    friend void PrintTo(const AlignmentCase& c, std::ostream* out) { *out << c.name; }
};

struct GridAlignment : GridLook, testing::WithParamInterface<AlignmentCase> {};

TEST_P(GridAlignment, FollowsTheFormatOfTheCell)
{
    Fill(4, 5);
    grid->SetColumnWidth(3, 200);
    grid->SetItem({.row = 2, .column = 3, .mask = 65, .format = GetParam().format, .text = "88"});
    const QRect ink = TextInk(2, 3);
    EXPECT_EQ(ink.left() / 50, GetParam().left);
    EXPECT_EQ(ink.right() / 50, GetParam().right);
    EXPECT_NEAR(ink.center().y(), 12, 3);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridAlignment, testing::Values(
    AlignmentCase{"Left",      0,                         0, 0},
    AlignmentCase{"Centred",   1,                         1, 2},
    AlignmentCase{"Right",     2,                         3, 3},
    AlignmentCase{"OfDefault", CGridCellBase::kNoFormat,  1, 2}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridLook, TheMarginKeepsTheTextFromTheSides)
{
    Fill(4, 5);
    grid->SetItem({.row = 2, .column = 3, .mask = 65, .format = 0, .text = "88"});
    const int left = TextInk(2, 3).left();
    grid->GetCell(2, 3)->SetMargin(23);
    EXPECT_EQ(TextInk(2, 3).left(), left + 20);
}

TEST_F(GridLook, ALongTextIsCutOffWithinItsCell)
{
    Fill(4, 5);
    grid->SetItemText(2, 2, "");
    grid->SetItemText(2, 3, QString(5000, u'8'));
    grid->SetItemText(2, 4, "");
    EXPECT_FALSE(TextInk(2, 3).isEmpty());
    EXPECT_EQ(TextInk(2, 2), QRect());
    EXPECT_EQ(TextInk(2, 4), QRect());
}

TEST_F(GridLook, AFontOfItsOwnOrOfTheDefaultCell)
{
    Fill(4, 5);
    grid->SetItemText(2, 3, "88");
    grid->SetItemText(2, 4, "88");
    const int plain = TextInk(2, 3).height();
    QFont large = grid->font();
    large.setPixelSize(20);
    grid->GetCell(2, 3)->SetFont(large);
    EXPECT_GT(TextInk(2, 3).height(), plain);
    EXPECT_EQ(TextInk(2, 4).height(), plain);
    grid->DefaultCell(false, false).SetFont(large);
    EXPECT_GT(TextInk(2, 4).height(), plain);
}

TEST_F(GridLook, TheFontOfTheGridIsThatOfItsCells)
{
    Fill(4, 5);
    QFont large = grid->font();
    large.setPixelSize(20);
    grid->setFont(large);
    EXPECT_EQ(grid->DefaultCell(false, false).Font()->pixelSize(), 20);
    EXPECT_EQ(grid->DefaultCell(true, true).Font()->pixelSize(), 20);
}

TEST_F(GridLook, SelectedCellsAreHighlightedAndTheFocusCellIsFramed)
{
    Fill(4, 5);
    Click(2, 3);
    Click(1, 2, Qt::ShiftModifier); // the focus moves here
    const QColor highlight = grid->palette().color(QPalette::Highlight);
    const QPoint inset(8, 3);
    EXPECT_EQ(PixelAt(CellRect(2, 3).topLeft() + inset), highlight);
    EXPECT_EQ(PixelAt(CellRect(1, 2).topLeft() + inset).rgb(), Base());
    for (const QPoint& corner : {CellRect(1, 2).topLeft(), CellRect(1, 2).bottomRight() - QPoint(1, 1)})
        EXPECT_EQ(PixelAt(corner), highlight);
    EXPECT_EQ(PixelAt(CellRect(3, 4).topLeft() + inset).rgb(), Base());
}

TEST_F(GridLook, TitlesHaveTheirOwnColoursAndMarkTheSelection)
{
    Fill(4, 5);
    grid->GetCell(0, 3)->SetBackColor(QColor(10, 200, 30));
    const QHeaderView* header = grid->horizontalHeader();
    const auto title = [&](int column) {
        const QPoint at(header->sectionViewportPosition(column - 2) + 4, 4);
        return header->viewport()->grab().toImage().pixelColor(at);
    };
    EXPECT_EQ(title(3), QColor(10, 200, 30));
    EXPECT_EQ(title(4), grid->palette().color(QPalette::Button));
    Click(2, 4);
    EXPECT_NE(title(4), grid->palette().color(QPalette::Button));
    EXPECT_EQ(title(2), grid->palette().color(QPalette::Button));
}

TEST_F(GridLook, TheCornerShowsItsTitles)
{
    Fill(4, 5);
    grid->GetCell(0, 0)->SetBackColor(QColor(10, 200, 30));
    grid->GetCell(0, 1)->SetBackColor(QColor(10, 20, 230));
    auto* corner = grid->findChild<CGridCorner*>();
    ASSERT_TRUE(WaitFor([&] { return corner->width() == grid->ColumnWidth(0) + grid->ColumnWidth(1); }));
    const QImage image = corner->grab().toImage();
    EXPECT_EQ(image.pixelColor(3, 3), QColor(10, 200, 30));
    EXPECT_EQ(image.pixelColor(grid->ColumnWidth(0) + 3, 3), QColor(10, 20, 230));
    EXPECT_EQ(corner->accessibleName(), QString("0,0 0,1"));
}

TEST_F(GridLook, AChangedTextIsDrawnAtOnce)
{
    Fill(4, 5);
    grid->SetItemText(2, 3, "");
    ASSERT_EQ(TextInk(2, 3), QRect());
    grid->SetItemText(2, 3, "88");
    EXPECT_NE(TextInk(2, 3), QRect());
}

TEST_F(GridLook, IsSharpOnAScreenOfTwiceTheResolution)
{
    Fill(4, 5);
    QImage image(grid->size() * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2);
    grid->render(&image);
    const QRect cell = CellRect(2, 3).translated(grid->viewport()->pos());
    const auto rgb = [&image](int x, int y) { return image.pixel(x, y); };
    const int y = 2 * cell.top() + 8;
    const int line = 2 * cell.right(); // a line of one pixel is two device pixels wide
    EXPECT_EQ(rgb(line, y), qRgb(192, 192, 192));
    EXPECT_EQ(rgb(line + 1, y), qRgb(192, 192, 192));
    EXPECT_EQ(rgb(line - 1, y), Base());
    EXPECT_EQ(rgb(line + 2, y), Base());

    const QRect inner(2 * cell.topLeft() + QPoint(4, 4), 2 * cell.size() - QSize(8, 8));
    const QRect sharp = Ink(image.copy(inner), Base());
    const QRect plain = TextInk(2, 3);
    EXPECT_NEAR(sharp.width(), 2 * plain.width(), 4);
    EXPECT_NEAR(sharp.height(), 2 * plain.height(), 4);
}

} // namespace
