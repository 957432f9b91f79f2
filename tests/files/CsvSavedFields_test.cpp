#include "files/CsvRecipeFile.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/CsvTables.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"

namespace fs = std::filesystem;

namespace {

using Table = std::optional<CFieldTable>;

/// A save that tells what reading will show.
struct CsvSavedFields : testing::Test {
    void LayOut(std::size_t columns, std::int32_t rowCount)
    {
        rows.LayOut(std::vector<ColumnCoding>(columns, AnsiColumn(8)), 0, rowCount);
        rows.ShowNewDocument();
    }

    bool Save(Table& shown) { return bool(SaveCsv(rows, path, reporter, progress, &shown)); }

    CFieldTable Read() const
    {
        CFieldTable fields;
        CNoProgress unwatched;
        const auto lines = static_cast<std::size_t>(rows.RowCount());
        EXPECT_EQ(ReadCsvFields(path, lines, rows.Columns().size(), fields, unwatched), Outcome::Done);
        return fields;
    }

    CTempFolder folder;
    fs::path path = folder / "a.csv";
    CRecipeRows rows;
    CRecordingReporter reporter;
    CNoProgress progress;
};

TEST_F(CsvSavedFields, LastOfALineHasItsQuotes)
{
    LayOut(3, 2);
    rows.SetText(0, 0, u"\"a\"");
    rows.SetText(0, 2, u"b");
    Table shown;
    ASSERT_TRUE(Save(shown));
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->Field(0, 0), u"a");
    EXPECT_EQ(shown->Field(0, 1), u"");
    EXPECT_EQ(shown->Field(0, 2), u"\"b\"");
    EXPECT_EQ(shown->Field(1, 2), u"\"\"");
    EXPECT_EQ(*shown, Read());
}

TEST_F(CsvSavedFields, AreThoseOfTheReader)
{
    CCsvMaker maker(1);
    for (int i = 0; i < 300; ++i) {
        LayOut(maker.Below(4), static_cast<std::int32_t>(maker.Below(4)));
        const bool isCut = maker.Happens(30); // texts that are cut when they are read
        for (std::int32_t row = 0; row < rows.RowCount(); ++row)
            for (std::size_t column = 0; column < rows.Columns().size(); ++column)
                rows.SetText(row, column, maker.Text(isCut ? u"a\"\r\t\n" : u"a\"\r,", 4));
        Table shown;
        ASSERT_TRUE(Save(shown));
        ASSERT_TRUE(shown);
        ASSERT_EQ(*shown, Read());
    }
}

TEST_F(CsvSavedFields, ChangeNoByteOfTheFile)
{
    LayOut(2, 3);
    rows.SetText(1, 1, u"\"x");
    Table shown;
    ASSERT_TRUE(Save(shown));
    const Bytes bytes = ReadAll(path);
    ASSERT_TRUE(SaveCsv(rows, path, reporter, progress));
    EXPECT_EQ(ReadAll(path), bytes);
}

TEST_F(CsvSavedFields, AreNoneWhenNothingWasSaved)
{
    LayOut(2, 3);
    Table shown(CFieldTable{});
    {
        const CFileSizeLimit limit(6);
        EXPECT_FALSE(Save(shown));
    }
    EXPECT_FALSE(shown);
    CImpatientProgress impatient(0);
    shown.emplace();
    EXPECT_FALSE(SaveCsv(rows, path, reporter, impatient, &shown));
    EXPECT_FALSE(shown);
}

TEST_F(CsvSavedFields, AreNoneWithoutMemoryAndTheSaveIsDone)
{
    LayOut(1, 200);
    for (std::int32_t row = 0; row < 200; ++row)
        rows.SetText(row, 0, std::u16string(10'000, u'x'));
    Table shown;
    {
        const CAllocationLimit limit(CAllocationLimit::kNone, 1'100'000); // what the writer needs, and not much more
        EXPECT_TRUE(Save(shown));
    }
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_FALSE(shown);
    EXPECT_EQ(Read().Field(199, 0).size(), 10'002u);
}

} // namespace
