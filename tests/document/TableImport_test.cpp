// Tables of other programs on their way into cells.

#include "document/OfferedEdits.h"
#include "document/TableImport.h"
#include "tests/document/DocumentFixture.h"
#include "text/AnsiText.h"

#include <string>

namespace {

/// Three rows of a temperature with one decimal, a number and a name.
struct TableImport : testing::Test {
    TableImport()
    {
        std::vector<ColumnCoding> columns(3);
        columns[0] = {u"Temp", DataType::Float, 2, CodeType::Bin, 4, 1, -9999, 9999, 0};
        columns[1] = {u"No.", DataType::Signed16, 1, CodeType::Bin, 4, 0, -9999, 9999, 0};
        columns[2] = {u"Name", DataType::String, 8, CodeType::Bin, 0, 0, 0, 0, 0};
        rows.LayOut(columns, 0, 3);
        rows.ShowNewDocument();
    }

    CTableImport Import(const char16_t* text, ImportTarget target = {})
    {
        auto cut = std::make_shared<CDelimitedText>(text, FieldSeparator::Semicolon);
        return *CTableImport::Make(std::move(cut), rows, target, progress);
    }

    /// "row,column=new" of each change.
    std::string Given(const CTableImport& import)
    {
        COfferedEdits offered(rows, stored, FileType::Rcp, import.Command());
        EXPECT_EQ(offered.WorkOut(progress), Outcome::Done);
        std::string all;
        for (std::size_t i = 0; i < offered.Count(); ++i) {
            const ChangeRecord record = offered.At(i);
            const std::u16string text = record.newText.value_or(record.note);
            all += (all.empty() ? "" : " ") + std::to_string(*record.row) + "," + std::to_string(*record.column) + "=" +
                   std::string(text.begin(), text.end());
        }
        return all;
    }

    CRecipeRows rows;
    CStoredCells stored;
    CNoProgress progress;
};

} // namespace

TEST_F(TableImport, GoesFromACellToTheRightAndDown)
{
    const CTableImport import = Import(u"1,5;7;a\n2,5;8;b\n");
    EXPECT_TRUE(import.IsDecided());
    EXPECT_EQ(Given(import), "1,2=1.5 1,3=7 1,4=a 2,2=2.5 2,3=8 2,4=b");
    const CTableImport lower = Import(u"7;a;b;c\n8\n9;d\n10\n", {.firstRow = 1, .firstColumn = 1});
    EXPECT_EQ(Given(lower), "2,3=7 2,4=a 3,3=8");
    EXPECT_EQ(lower.RowsLeftOut(), 2);
    EXPECT_EQ(lower.ColumnsLeftOut(), 2U);
    EXPECT_EQ(lower.EmptyFields(), 1U);
}

TEST_F(TableImport, GoesToTheItemsOfItsTitlesInAnyOrder)
{
    const char16_t* text = u"ID;Name; No. ;Other\n1;a;7;x\n2;;8;y\n";
    EXPECT_TRUE(CTableImport::LooksLikeTitles(CDelimitedText(text, FieldSeparator::Semicolon), rows));
    const CTableImport import = Import(text, {.firstRow = 0, .firstColumn = 2, .hasTitles = true});
    EXPECT_EQ(Given(import), "1,3=7 1,4=a 2,3=8");
    EXPECT_EQ(import.ColumnsLeftOut(), 1U); // the row numbers are no column that is missed
    for (const char16_t* plain : {u"1;2;3", u"a;b", u"Name;1", u""})
        EXPECT_FALSE(CTableImport::LooksLikeTitles(CDelimitedText(plain, FieldSeparator::Semicolon), rows));
}

TEST_F(TableImport, IsNotDecidedWhileANumberCanBeReadInTwoWays)
{
    CTableImport import = Import(u"1,234;1,234;1,234\n5;6;7\n");
    EXPECT_FALSE(import.IsDecided());
    EXPECT_EQ(import.Columns()[0].doubtful, u"1,234");
    EXPECT_EQ(import.Columns()[2].sign, NumberSign::AsText);
    import.SetSign(0, NumberSign::Point);
    EXPECT_FALSE(import.IsDecided());
    import.SetSign(1, NumberSign::Comma);
    EXPECT_TRUE(import.IsDecided());
    EXPECT_EQ(Given(import),
              "1,2=1234.0 1,3=refused: 1.234 has decimals, which the item has not 1,4=1,234 2,2=5.0 2,3=6 2,4=7");
}

TEST_F(TableImport, LeavesTheCellsOfEmptyFieldsAlone)
{
    const CTableImport import = Import(u";;\n;5;\n");
    EXPECT_EQ(Given(import), "2,3=5");
    EXPECT_EQ(import.EmptyFields(), 5U);
    EXPECT_EQ(Given(Import(u"")), "");
}

TEST_F(TableImport, ReadsTextsOfEachCharacterSet)
{
    const std::u16string text = u"Öl;°C\n";
    EXPECT_EQ(TextOfBytes("\xC3\x96l;\xC2\xB0"
                          "C\n"),
              text);
    EXPECT_EQ(TextOfBytes("\xEF\xBB\xBF\xC3\x96l;\xC2\xB0"
                          "C\n"),
              text);
    EXPECT_EQ(TextOfBytes(std::string_view("\xFF\xFE\xD6\0l\0;\0\xB0\0C\0\n\0", 14)), text);
    EXPECT_EQ(TextOfBytes(std::string_view("\xFE\xFF\0\xD6\0l\0;\0\xB0\0C\0\n", 14)), text);
    const std::string ansi = ToAnsi(u"a\u00D6");
    EXPECT_EQ(TextOfBytes(ansi), FromAnsi(ansi));
    EXPECT_EQ(TextOfBytes(""), u"");
}
