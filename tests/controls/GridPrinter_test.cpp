// Printing: how the cells are divided among pages, what stands on each, and the ways it ends early.

#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QBuffer>
#include <QHeaderView>
#include <QPageRanges>
#include <QPageSize>
#include <QPaintEngine>
#include <QPdfWriter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace {

/// A text as it was drawn on a page.
struct DrawnText {
    std::string text;
    QString family;
    int page; ///< from 1
};

/// A device with pages that keeps the texts drawn on it instead of drawing them.
class CTextRecorder final : public QPdfWriter {
public:
    explicit CTextRecorder(const QSize& page) : QPdfWriter(Sink())
    {
        const double pointsPerPixel = 72.0 / kGridDpi;
        setPageSize(QPageSize(QSizeF(page) * pointsPerPixel, QPageSize::Point, QString(), QPageSize::ExactMatch));
        setPageMargins({});
        setResolution(kResolution);
    }

    bool newPage() override
    {
        if (m_engine.page == lastPage)
            return false;
        ++m_engine.page;
        return true;
    }

    QPaintEngine* paintEngine() const override { return &m_engine; }

    int Pages() const { return m_engine.page; }
    const std::vector<DrawnText>& Texts() const { return m_engine.texts; }

    /// The texts of a page in the order of their drawing, without the footer.
    Lines CellsOfPage(int page) const
    {
        Lines cells;
        for (const DrawnText& drawn : Texts())
            if (drawn.page == page)
                cells.push_back(drawn.text);
        if (!cells.empty())
            cells.pop_back();
        return cells;
    }

    Lines Footers() const
    {
        Lines footers;
        for (std::size_t i = 0; i < Texts().size(); ++i)
            if (i + 1 == Texts().size() || Texts()[i + 1].page != Texts()[i].page)
                footers.push_back(Texts()[i].text);
        return footers;
    }

    static constexpr int kGridDpi = 96;
    static constexpr int kResolution = 300;

    int lastPage = 1000; ///< a page after it cannot be begun

private:
    class CEngine final : public QPaintEngine {
    public:
        CEngine() : QPaintEngine(AllFeatures) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        /// In some languages the toolkit draws a text in pieces, each where the one before ended.
        void drawTextItem(const QPointF& at, const QTextItem& item) override
        {
            const bool continues = page == m_endPage && at.y() == m_end.y() && std::abs(at.x() - m_end.x()) < 0.5;
            if (!continues)
                texts.push_back({{}, item.font().family(), page});
            texts.back().text += item.text().toStdString();
            m_end = at + QPointF(item.width(), 0);
            m_endPage = page;
        }
        Type type() const override { return User; }

        int page = 1;
        std::vector<DrawnText> texts;

    private:
        QPointF m_end; ///< of the piece drawn last
        int m_endPage = 0;
    };

    static QIODevice* Sink()
    {
        static QBuffer sink;
        return &sink;
    }

    mutable CEngine m_engine;
};

/// Pages of 400 x 400 pixels of the grid: beside the fixed row of 24 and the footer of 32 there is room for 13 rows of
/// 26, beside the fixed columns of 50 each for 3 columns of 100.
struct GridPrinting : CGridTestBed {
    void FillForPages(int bodyRows, int bodyColumns)
    {
        Fill(1 + bodyRows, 2 + bodyColumns);
        grid->SetRowHeight(0, 24);
        for (int column = 0; column < grid->ColumnCount(); ++column)
            grid->SetColumnWidth(column, column < 2 ? 50 : 100);
    }

    CTextRecorder device{QSize(400, 400)};
};

struct PagesCase {
    const char* name;
    int rows, columns; ///< of the body
    int pages;
    friend void PrintTo(const PagesCase& c, std::ostream* out) { *out << c.name; }
};

struct GridPages : GridPrinting, testing::WithParamInterface<PagesCase> {};

TEST_P(GridPages, AreCountedAndPrintedWithTheirNumbers)
{
    ASSERT_EQ(grid->logicalDpiX(), CTextRecorder::kGridDpi);
    FillForPages(GetParam().rows, GetParam().columns);
    const int pages = GetParam().pages;
    EXPECT_EQ(grid->PrintPageCount(device), pages);
    EXPECT_TRUE(grid->Print(device));
    EXPECT_EQ(device.Pages(), pages);
    Lines footers;
    for (int page = 1; page <= pages; ++page)
        footers.push_back("Page " + std::to_string(page) + " of " + std::to_string(pages));
    EXPECT_EQ(device.Footers(), footers);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridPages, testing::Values(
    //        name              rows columns pages
    PagesCase{"OneCell",           1,  1,  1},
    PagesCase{"OneFullPage",      13,  3,  1},
    PagesCase{"OneRowMore",       14,  3,  2},
    PagesCase{"OneColumnMore",    13,  4,  2},
    PagesCase{"RowsAndColumns",   40,  7, 12},
    PagesCase{"TitlesAlone",       0,  0,  1}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridPrinting, AGridWithoutCellsIsOneEmptyPage)
{
    EXPECT_TRUE(grid->Print(device));
    EXPECT_EQ(device.Footers(), Lines{"Page 1 of 1"});
    EXPECT_EQ(device.CellsOfPage(1), Lines{});
}

TEST_F(GridPrinting, TheFooterIsInArial)
{
    FillForPages(2, 1);
    ASSERT_TRUE(grid->Print(device));
    EXPECT_EQ(device.Texts().back().family, QString("Arial"));
    EXPECT_NE(device.Texts().front().family, QString("Arial"));
}

TEST_F(GridPrinting, TheTitlesStandOnEveryPage)
{
    FillForPages(14, 4); // the last row and the last column go to further pages
    ASSERT_TRUE(grid->Print(device));
    ASSERT_EQ(device.Pages(), 4);
    EXPECT_EQ(device.CellsOfPage(4), (Lines{"0,0", "0,1", "0,5", "14,0", "14,1", "14,5"}));
    EXPECT_EQ(device.CellsOfPage(3),
              (Lines{"0,0", "0,1", "0,2", "0,3", "0,4", "14,0", "14,1", "14,2", "14,3", "14,4"}));
    EXPECT_EQ(device.CellsOfPage(2).size(), 14u * 3u);
    EXPECT_EQ(device.CellsOfPage(1).size(), 14u * 5u);
}

TEST_F(GridPrinting, WhereTheGridIsScrolledToDoesNotMatter)
{
    FillForPages(200, 30);
    const int pages = grid->PrintPageCount(device);
    grid->verticalScrollBar()->setValue(70);
    grid->horizontalScrollBar()->setValue(333);
    EXPECT_EQ(grid->PrintPageCount(device), pages);
    ASSERT_TRUE(grid->Print(device));
    EXPECT_EQ(device.CellsOfPage(1)[2], "0,2");
    EXPECT_EQ(device.CellsOfPage(1)[7], "1,2");
}

TEST_F(GridPrinting, ARowHigherThanThePageGetsAPage)
{
    FillForPages(3, 1);
    grid->SetRowHeight(2, 1000);
    EXPECT_EQ(grid->PrintPageCount(device), 3);
    ASSERT_TRUE(grid->Print(device));
    EXPECT_EQ(device.CellsOfPage(2), (Lines{"0,0", "0,1", "0,2", "2,0", "2,1", "2,2"}));
}

TEST_F(GridPrinting, OnlyTheWantedPagesArePrinted)
{
    FillForPages(13 * 6, 3);
    QPageRanges ranges;
    ranges.addRange(2, 3);
    ranges.addPage(5);
    ranges.addRange(9, 12); // beyond the end
    device.setPageRanges(ranges);
    ASSERT_TRUE(grid->Print(device));
    EXPECT_EQ(device.Footers(), (Lines{"Page 2 of 6", "Page 3 of 6", "Page 5 of 6"}));
}

TEST_F(GridPrinting, TheProgressIsToldAndCancels)
{
    FillForPages(13 * 3, 3);
    Lines told;
    EXPECT_FALSE(grid->Print(device, [&told](int page, int pages) {
        told.push_back(std::to_string(page) + "/" + std::to_string(pages));
        return page < 2;
    }));
    EXPECT_EQ(told, (Lines{"1/3", "2/3"}));
    EXPECT_EQ(device.Footers(), Lines{"Page 1 of 3"});
}

TEST_F(GridPrinting, APageThatCannotBeBegunEndsIt)
{
    FillForPages(13 * 3, 3);
    device.lastPage = 2;
    EXPECT_FALSE(grid->Print(device));
    EXPECT_EQ(device.Footers().size(), 2u);
}

TEST_F(GridPrinting, ADeviceThatCannotBeOpenedFails)
{
    FillForPages(3, 3);
    QPdfWriter nowhere(QStringLiteral("/no such folder/grid.pdf"));
    EXPECT_FALSE(grid->Print(nowhere));
}

TEST_F(GridPrinting, APdfHasThePages)
{
    FillForPages(40, 7);
    QBuffer file;
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QPdfWriter pdf(&file);
    const int pages = grid->PrintPageCount(pdf);
    ASSERT_TRUE(grid->Print(pdf));
    EXPECT_TRUE(file.data().startsWith("%PDF-"));
    EXPECT_GT(pages, 1);
    EXPECT_EQ(file.data().count("/Type /Page\n"), pages);
}

} // namespace
