#include "sheet/SheetHtml.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

namespace {

RecipeSheet Sample()
{
    RecipeSheet sheet;
    sheet.title = u"Sheet";
    sheet.facts = {{u"File", u"a.rcp"}};
    sheet.items = {{u"Level", u"mm", u"1 to 5"}, {u"Name", u"", u""}};
    sheet.blocks = {{u"Row 1 (RW0)", {{u"7", u"", u"lies above 5 mm", false}, {u"Rye", u"", u"", false}}}};
    return sheet;
}

/// How often `part` stands in `text`.
std::size_t CountOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

} // namespace

TEST(SheetHtml, ValuesStandInTablesWithHeaders)
{
    const std::string html = SheetHtml(Sample());
    EXPECT_EQ(html.rfind("<!DOCTYPE html>\n<html lang=\"en\">", 0), 0u);
    EXPECT_NE(html.find("<title>Sheet</title>"), std::string::npos);
    EXPECT_NE(html.find("<caption>Row 1 (RW0)</caption>"), std::string::npos);
    EXPECT_NE(html.find("<th scope=\"col\" class=\"range\">Sensible range</th>"), std::string::npos);
    EXPECT_NE(html.find("<th scope=\"row\" dir=\"auto\">Level</th>\n<td class=\"warned\" dir=\"auto\">7</td>\n"
                        "<td dir=\"auto\">mm</td>\n<td>1 to 5</td>\n"
                        "<td class=\"warned\" dir=\"auto\">! lies above 5 mm</td>"),
              std::string::npos)
        << html;
    EXPECT_NE(html.find("<p>Issued by<br>Name, date and signature</p>"), std::string::npos);
    EXPECT_EQ(html.find("Changes since"), std::string::npos);
    EXPECT_EQ(html.find("<script"), std::string::npos);
}

TEST(SheetHtml, LeavesOutColumnsThatSayNothing)
{
    RecipeSheet sheet = Sample();
    sheet.items[0].unit.clear();
    sheet.items[0].range.clear();
    sheet.blocks[0].values[0].warning.clear();
    const std::string html = SheetHtml(sheet);
    EXPECT_EQ(CountOf(html, "<th scope=\"col\""), 2u);
}

TEST(SheetHtml, TextsNeverBecomeMarkup)
{
    RecipeSheet sheet = Sample();
    const std::u16string hostile = u"</table><script>alert(\"1\" & '2')</script>\xFFFE";
    sheet.title = sheet.items[0].title = sheet.blocks[0].title = sheet.blocks[0].values[0].text = hostile;
    sheet.facts[0].text = sheet.items[0].unit = sheet.items[0].range = sheet.blocks[0].values[0].warning = hostile;
    sheet.changes = SheetChanges{hostile, {{hostile, hostile, hostile, hostile}}, hostile};
    const std::string html = SheetHtml(sheet);
    EXPECT_EQ(html.find("<script"), std::string::npos);
    EXPECT_EQ(CountOf(html, "&lt;/table&gt;&lt;script&gt;alert(&quot;1&quot; &amp; '2')&lt;/script&gt;\xEF\xBF\xBD"),
              15u);
}

TEST(SheetHtml, OtherWritingsStayAsTheyAre)
{
    RecipeSheet sheet = Sample();
    sheet.items[0].title = u"温度 مرحبا \xD83D\xDE00 \xD83D";
    EXPECT_NE(SheetHtml(sheet).find(">" + ToUtf8(u"温度 مرحبا \xD83D\xDE00 ") + "\xEF\xBF\xBD<"), std::string::npos);
}

TEST(SheetHtml, ChangesAreATableOfTheirOwn)
{
    RecipeSheet sheet = Sample();
    sheet.changes = SheetChanges{u"old.rcp", {{u"1", u"Level", u"5", u"7"}}, u"Further: 2 changes in other rows."};
    const std::string html = SheetHtml(sheet);
    EXPECT_NE(html.find("<h2 dir=\"auto\">Changes since old.rcp</h2>"), std::string::npos);
    EXPECT_NE(html.find("<td>1</td>\n<th scope=\"row\" dir=\"auto\">Level</th>\n<td dir=\"auto\">5</td>\n"
                        "<td dir=\"auto\">7</td>"),
              std::string::npos);
    EXPECT_NE(html.find("<p>Further: 2 changes in other rows.</p>"), std::string::npos);
    sheet.changes->changes.clear();
    EXPECT_NE(SheetHtml(sheet).find("<p>Nothing changed in these rows.</p>"), std::string::npos);
}

TEST(SheetHtml, EmptyTableIsTold)
{
    RecipeSheet sheet = Sample();
    sheet.blocks.clear();
    EXPECT_NE(SheetHtml(sheet).find("<p>The table has no rows.</p>"), std::string::npos);
}
