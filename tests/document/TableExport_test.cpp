#include "document/RecipeDocument.h"
#include "document/TableExport.h"
#include "model/ItemNotes.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/DelimitedText.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

#include <random>

namespace fs = std::filesystem;

namespace {

using Units = TableExportForm::Units;

/// Two rows of a temperature in °C and a name.
struct TableExport : testing::Test {
    TableExport()
    {
        ItemNotes notes;
        notes.unit = u"°C";
        std::vector<ColumnCoding> columns(2);
        columns[0] = {u"Temp", DataType::Float, 2, CodeType::Bin, 4, 1, -9999, 9999, 0, CSharedNotes(notes)};
        columns[1] = {u"Name; long", DataType::String, 8, CodeType::Bin, 0, 0, 0, 0, 1, {}};
        rows.LayOut(columns, 100, 2);
        rows.ShowNewDocument();
        Give(0, u"235.5", u"A");
        Give(1, u"-1.0", u"\"B\"; 1.5");
    }

    void Give(std::int32_t row, std::u16string temp, std::u16string name)
    {
        rows.SetText(row, 0, std::move(temp));
        rows.SetText(row, 1, std::move(name));
    }

    std::string Written(const CTableExport& table) const
    {
        CNoProgress progress;
        EXPECT_EQ(table.Write(path, progress), Outcome::Done);
        const Bytes bytes = ReadAll(path);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

    CRecipeRows rows;
    const CTempFolder folder;
    const fs::path path = folder / "table.csv";
};

constexpr const char* kMark = "\xEF\xBB\xBF";

} // namespace

TEST_F(TableExport, HasTitlesWithUnitsAndTheSignsThatAreChosen)
{
    EXPECT_EQ(Written({rows, {.separator = u';', .point = u','}}), std::string(kMark) + "Temp [\xC2\xB0"
                                                                                        "C];\"Name; long\"\r\n"
                                                                                        "235,5;A\r\n"
                                                                                        "-1,0;\"\"\"B\"\"; 1.5\"\r\n");
    EXPECT_EQ(Written({rows, {.separator = u',', .units = Units::None}}), std::string(kMark) +
                                                                              "Temp,Name; long\r\n"
                                                                              "235.5,A\r\n"
                                                                              "-1.0,\"\"\"B\"\"; 1.5\"\r\n");
}

TEST_F(TableExport, HasUnitsInALineOfTheirOwnAndPlacesWhereTheyAreAskedFor)
{
    EXPECT_EQ(Written({rows, {.separator = u'\t', .hasPlaces = true, .units = Units::OwnLine}}),
              std::string(kMark) + "ID\tRW_Addr\tTemp\tName; long\r\n"
                                   "\t\t\xC2\xB0"
                                   "C\t\r\n"
                                   "1\tRW100\t235.5\tA\r\n"
                                   "2\tRW110\t-1.0\t\"\"\"B\"\"; 1.5\"\r\n");
}

TEST_F(TableExport, HasTheRowsThatAreChosen)
{
    const CTableExport table(rows, {.hasTitles = false}, std::vector<std::int32_t>{1});
    EXPECT_EQ(table.RowCount(), 1U);
    EXPECT_EQ(Written(table), std::string(kMark) + "-1.0;\"\"\"B\"\"; 1.5\"\r\n");
    EXPECT_EQ(table.FirstLines(9), u"-1.0;\"\"\"B\"\"; 1.5\"\r\n");
}

TEST_F(TableExport, GivesEveryTextBackToWhoReadsIt)
{
    std::mt19937 random(5);
    constexpr std::u16string_view kUnits = u"a;,\"\t \r\n|.1é宋";
    for (int round = 0; round < 300; ++round) {
        std::u16string name;
        for (std::size_t i = random() % 8; i > 0; --i)
            name += kUnits[random() % kUnits.size()];
        Give(0, u"1.5", name);
        const auto separator =
            std::array{FieldSeparator::Tab, FieldSeparator::Semicolon, FieldSeparator::Comma}[random() % 3];
        const CTableExport table(rows, {.separator = static_cast<char16_t>(separator), .point = u','});
        const std::string written = Written(table);
        const CDelimitedText read(FromUtf8(written).substr(1), separator);
        ASSERT_EQ(read.RowCount(), 3U);
        EXPECT_EQ(read.Field(1, 0), u"1,5");
        EXPECT_EQ(read.Field(1, 1), name);
        EXPECT_EQ(read.Field(2, 1), u"\"B\"; 1.5");
    }
}

TEST_F(TableExport, LeavesTheOldFileWhenItIsGivenUp)
{
    struct CImpatient final : CProgress {
        bool Advance(std::uint64_t, std::uint64_t) override { return false; }
    } impatient;
    rows.LayOut(rows.Columns(), 0, 120000);
    rows.ShowNewDocument();
    WriteAll(path, Bytes(3));
    EXPECT_EQ(CTableExport(rows, {}).Write(path, impatient), Outcome::GivenUp);
    EXPECT_EQ(ReadAll(path), Bytes(3));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 1);
}

TEST_F(TableExport, IsNotWrittenOverTheOpenFile)
{
    FormatLibrary library;
    CRecipeDocument document;
    CRecordingReporter reporter;
    CNoProgress progress;
    WriteAll(folder / "a.rcp", Bytes(20));
    document.StartOpen(folder / "a.rcp", FileType::Rcp);
    EXPECT_FALSE(document.WriteTable({document.Rows(), {}}, folder / "a.rcp", reporter, progress));
    ASSERT_EQ(reporter.shown.size(), 1U);
    EXPECT_TRUE(reporter.shown[0].ends_with(u"is the open file. A table for other programs needs another name!"));
    EXPECT_EQ(ReadAll(folder / "a.rcp"), Bytes(20));
    EXPECT_FALSE(document.WriteTable({document.Rows(), {}}, folder / "nowhere" / "a.csv", reporter, progress));
    EXPECT_EQ(reporter.shown.size(), 2U);
}
