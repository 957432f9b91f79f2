// How sheets are divided among pages, by the text of the PDF that they become.

#include "print/QtSheetPdf.h"
#include "print/SheetPainter.h"
#include "tests/support/ProcessRun.h"
#include "tests/support/TestFiles.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace {

/// Gives up after some steps.
class CEnding final : public CProgress {
public:
    explicit CEnding(int steps) : m_left(steps) {}
    bool Advance(std::uint64_t, std::uint64_t) override { return --m_left > 0; }

private:
    int m_left;
};

RecipeSheet SheetOf(std::size_t blocks, std::size_t items)
{
    RecipeSheet sheet;
    sheet.title = u"Sheet";
    sheet.file = u"a.rcp";
    sheet.shortSha = u"0123456789ab";
    sheet.facts = {{u"File", u"a.rcp"}};
    for (std::size_t i = 0; i < items; ++i)
        sheet.items.push_back({FromUtf8("Item" + std::to_string(i)), {}, {}});
    for (std::size_t block = 0; block < blocks; ++block) {
        sheet.blocks.push_back({FromUtf8("Row " + std::to_string(block + 1)), {}});
        for (std::size_t i = 0; i < items; ++i)
            sheet.blocks.back().values.push_back({FromUtf8(std::to_string(block) + "q" + std::to_string(i)), {}, {}});
    }
    return sheet;
}

struct SheetPainter : testing::Test {
    /// The pages of the sheet as texts.
    std::vector<std::string> Pages(SheetPaper paper = SheetPaper::A4)
    {
        std::string pdf;
        const std::string records = "{}\n";
        EXPECT_EQ(CQtSheetPdf().Make({sheet, paper, records}, pdf, progress), Outcome::Done);
        WriteAll(folder / "a.pdf", std::as_bytes(std::span(pdf)));
        const std::string text =
            RunProcess("/usr/bin/env", {"pdftotext", "-layout", (folder / "a.pdf").string(), "-"}).out;
        std::vector<std::string> pages;
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = std::min(text.find('\f', begin), text.size());
            pages.push_back(text.substr(begin, end - begin));
            begin = end + 1;
        }
        return pages;
    }

    CNoProgress progress;
    CTempFolder folder;
    RecipeSheet sheet = SheetOf(3, 4);
};

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

} // namespace

TEST_F(SheetPainter, PagesAreNumberedAndTellTheFile)
{
    sheet = SheetOf(40, 10);
    const auto pages = Pages();
    ASSERT_GT(pages.size(), 5u);
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const std::string number = "Page " + std::to_string(i + 1) + " of " + std::to_string(pages.size());
        EXPECT_TRUE(Has(pages[i], number)) << pages[i];
        EXPECT_TRUE(Has(pages[i], "a.rcp · SHA-256 0123456789ab…")) << pages[i];
    }
    EXPECT_TRUE(Has(pages.back(), "Issued by"));
    EXPECT_TRUE(Has(pages.back(), "Approved by"));
}

TEST_F(SheetPainter, ShortTablesStayOnOnePage)
{
    sheet = SheetOf(40, 10);
    for (const std::string& page : Pages()) {
        EXPECT_FALSE(Has(page, "(continued)"));
        EXPECT_EQ(std::count(page.begin(), page.end(), 'q') % 10, 0) << page;
    }
}

TEST_F(SheetPainter, LongTablesRepeatTheirTitles)
{
    sheet = SheetOf(2, 150);
    const auto pages = Pages();
    ASSERT_GT(pages.size(), 4u);
    for (std::size_t i = 0; i + 1 < pages.size(); ++i) {
        EXPECT_TRUE(Has(pages[i], "Item")) << pages[i];
        EXPECT_TRUE(Has(pages[i], "Value")) << pages[i];
    }
    EXPECT_TRUE(Has(pages[1], "Row 1 (continued)")) << pages[1];
    std::string all;
    for (const std::string& page : pages)
        all += page;
    for (int block = 0; block < 2; ++block)
        for (int item = 0; item < 150; ++item)
            EXPECT_TRUE(Has(all, std::to_string(block) + "q" + std::to_string(item)));
}

/// Wherever a table of some length begins, its title is not the last thing on a page, nor its last row the only one.
TEST_F(SheetPainter, TitlesStayWithRows)
{
    for (std::size_t items = 40; items < 70; ++items) {
        sheet = SheetOf(3, items);
        for (const std::string& page : Pages()) {
            for (std::size_t at = page.find("Row "); at != std::string::npos; at = page.find("Row ", at + 1)) {
                const std::string rest = page.substr(at, page.find("\nRow ", at) - at);
                EXPECT_GE(std::count(rest.begin(), rest.end(), 'q'), 2) << items << page;
            }
        }
    }
}

TEST_F(SheetPainter, PaperDecidesTheSizeOfPages)
{
    for (const auto& [paper, size] :
         {std::pair(SheetPaper::A4, "595 x 842 pts (A4)"), std::pair(SheetPaper::Letter, "612 x 792 pts (letter)")}) {
        Pages(paper);
        const std::string info = RunProcess("/usr/bin/env", {"pdfinfo", (folder / "a.pdf").string()}).out;
        EXPECT_TRUE(Has(info, size)) << info;
        EXPECT_TRUE(Has(info, "Title:           Sheet\n")) << info;
    }
}

TEST_F(SheetPainter, LongTextsAreWrappedAndGoOnOnFurtherPages)
{
    std::u16string text;
    for (int i = 0; i < 5000; ++i)
        text += FromUtf8("w" + std::to_string(i) + " ");
    sheet.blocks[1].values[2].text = text;
    const auto pages = Pages();
    ASSERT_GT(pages.size(), 3u);
    std::string all;
    for (const std::string& page : pages)
        all += page;
    for (int i = 0; i < 5000; ++i)
        ASSERT_TRUE(Has(all, "w" + std::to_string(i))) << i;
    EXPECT_TRUE(Has(pages[1], "Row 2 (continued)"));
    EXPECT_TRUE(Has(all, "2q3"));
}

TEST_F(SheetPainter, WordsWithoutEndAreBrokenAnywhere)
{
    sheet.items[0].title = std::u16string(400, u'x');
    sheet.blocks[0].values[0].text = std::u16string(3000, u'&');
    sheet.title = std::u16string(500, u'z');
    std::string all;
    for (const std::string& page : Pages())
        all += page;
    EXPECT_EQ(std::count(all.begin(), all.end(), '&'), 3000);
    EXPECT_GE(std::count(all.begin(), all.end(), 'x'), 3 * 400);
    EXPECT_EQ(std::count(all.begin(), all.end(), 'z'), 500);
}

TEST_F(SheetPainter, AllPartsOfASheetAreThere)
{
    sheet.items[0].unit = u"mm";
    sheet.items[1].range = u"1 to 5";
    sheet.blocks[0].values[1] = {u"7", u"seven", u"lies outside 1 to 5", true};
    sheet.changes = SheetChanges{u"old.rcp", {{u"1", u"Item1", u"5", u"7"}}, u"Further: 2 changes in other rows."};
    const std::string page = Pages().at(0);
    for (const char* part :
         {"Unit", "mm", "Sensible range", "1 to 5", "Remark", "seven; ! lies outside 1 to 5; not saved",
          "Changes since old.rcp", "Old value", "New value", "Further: 2 changes in other rows."})
        EXPECT_TRUE(Has(page, part)) << part << page;
    sheet.changes->changes.clear();
    EXPECT_TRUE(Has(Pages().at(0), "Nothing changed in these rows."));
    sheet.blocks.clear();
    EXPECT_TRUE(Has(Pages().at(0), "The table has no rows."));
}

TEST_F(SheetPainter, OtherWritingsAndHalvesOfCharactersDoNoHarm)
{
    sheet.title = u"مرحبا 温度 \xD83D\xDE00 \xD83D";
    sheet.blocks[0].values[0].text = u"שלום \xDC00";
    EXPECT_EQ(Pages().size(), 1u);
    sheet = {};
    EXPECT_EQ(Pages().size(), 1u);
}

TEST_F(SheetPainter, CanBeGivenUp)
{
    sheet = SheetOf(40, 10);
    std::string pdf = "before";
    const std::string records;
    for (const int steps : {1, 30, 60, 85}) {
        CEnding ending(steps);
        EXPECT_EQ(CQtSheetPdf().Make({sheet, SheetPaper::A4, records}, pdf, ending), Outcome::GivenUp) << steps;
        EXPECT_EQ(pdf, "");
    }
}

TEST_F(SheetPainter, PageWithoutRoomGetsALineAllTheSame)
{
    CSheetPainter painter(sheet);
    EXPECT_EQ(painter.LayOut({30, 30}, progress), Outcome::Done);
    EXPECT_GT(painter.PageCount(), 12);
    EXPECT_EQ(painter.LayOut({0, 0}, progress), Outcome::Done);
}
