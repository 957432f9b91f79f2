#include "files/BinaryRecipeFile.h"
#include "files/CsvRecipeFile.h"
#include "files/PagedRecipeFile.h"
#include "library/FormatLibrary.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

/// The bytes of the example that docs/file-formats.md gives between "```hex name" and "```". Each line is an offset and
/// the bytes there, up to a ";"; bytes that no line gives are zero, and the last offset is the length.
Bytes DocumentedBytes(const std::string& name)
{
    std::ifstream document(std::string(VANTOR_SOURCE_DIR) + "/docs/file-formats.md");
    std::string line;
    while (std::getline(document, line) && line != "```hex " + name) {
    }

    Bytes bytes;
    while (std::getline(document, line) && line != "```") {
        std::istringstream fields(line.substr(0, line.find(';')));
        std::size_t offset = 0;
        fields >> std::hex >> offset;
        if (fields.fail() || offset < bytes.size())
            throw std::runtime_error("not a line of a hex example: " + line);
        bytes.resize(offset);
        for (unsigned value = 0; fields >> value;)
            bytes.push_back(static_cast<std::byte>(value));
    }
    return bytes;
}

class FileFormatsDocument : public testing::Test {
protected:
    void SetUp() override
    {
        WriteAll(m_folder / "RecipeFile.Dat", DocumentedBytes("library"));
        WriteAll(m_folder / "dough.rcp", DocumentedBytes("recipe"));
        ASSERT_EQ(m_library.load(m_folder / "RecipeFile.Dat"), 1300);
        ASSERT_EQ(m_library.formats.size(), 1u);
        m_rows.LayOut(LayOutColumns(*m_library.formats[0]), m_library.startAddress, m_library.rowCount);
        ASSERT_EQ(ReadBinaryRecipe(m_rows, m_folder / "dough.rcp", false, m_reporter, m_progress), Outcome::Done);
    }

    std::u16string Row(std::int32_t row) const
    {
        return m_rows.Text(row, 0) + u" | " + m_rows.Text(row, 1) + u" | " + m_rows.Text(row, 2);
    }

    CTempFolder m_folder;
    FormatLibrary m_library;
    CRecipeRows m_rows;
    CRecordingReporter m_reporter;
    CNoProgress m_progress;
};

TEST_F(FileFormatsDocument, LibraryExampleHoldsWhatItsCommentsSay)
{
    const DataFormat& format = *m_library.formats[0];
    EXPECT_EQ(m_library.fileVersion, 20);
    EXPECT_EQ(TextOf(m_library.filePattern), u"*.rcp");
    EXPECT_EQ(TextOf(format.name), u"Dough");
    EXPECT_EQ(format.itemCount, 3);
    EXPECT_EQ(format.totalLength(), 5);

    const std::vector<ColumnCoding> columns = LayOutColumns(format);
    ASSERT_EQ(columns.size(), 3u);
    EXPECT_EQ(columns[0].title, u"Water kg");
    EXPECT_EQ(columns[0].dataType, DataType::Signed16);
    EXPECT_EQ(columns[0].minValue, -999);
    EXPECT_EQ(columns[1].title, u"Mix s");
    EXPECT_EQ(columns[1].dataType, DataType::Unsigned32);
    EXPECT_EQ(columns[1].maxValue, 9999);
    EXPECT_EQ(columns[2].title, u"Flour");
    EXPECT_EQ(columns[2].dataType, DataType::String);
}

TEST_F(FileFormatsDocument, LibraryExampleIsWhatASaveWrites)
{
    EXPECT_EQ(m_library.save(m_folder / "saved.dat"), 0);
    EXPECT_EQ(ReadAll(m_folder / "saved.dat"), DocumentedBytes("library"));
}

TEST_F(FileFormatsDocument, RecipeExampleShowsTheRowsOfItsTable)
{
    EXPECT_EQ(m_rows.RowAddress(0), WordAddress(2));
    EXPECT_EQ(Row(0), u"-5.5 | 90 | T55");
    EXPECT_EQ(Row(1), u"120.4 | 3600 | Rye");
    EXPECT_EQ(m_rows.RowAddress(2), WordAddress(12));
    EXPECT_EQ(Row(2), u"25.4 | 0 | ");
}

TEST_F(FileFormatsDocument, SavedRecipeExampleGrowsToItsLastRow)
{
    EXPECT_TRUE(SaveBinaryRecipe(m_rows, m_folder / "dough.rcp", m_reporter, m_progress));
    Bytes expected = DocumentedBytes("recipe");
    ASSERT_EQ(expected.size(), 26u);
    expected.resize(34);
    EXPECT_EQ(ReadAll(m_folder / "dough.rcp"), expected);
}

TEST_F(FileFormatsDocument, TableExampleIsWhatASaveOfTheRecipeExampleWrites)
{
    EXPECT_TRUE(SaveCsv(m_rows, m_folder / "dough.csv", m_reporter, m_progress));
    EXPECT_EQ(ReadAll(m_folder / "dough.csv"), DocumentedBytes("table"));
}

TEST_F(FileFormatsDocument, TableExampleIsReadWithItsLastQuotes)
{
    WriteAll(m_folder / "dough.csv", DocumentedBytes("table"));
    EXPECT_EQ(ReadCsv(m_rows, m_folder / "dough.csv", m_reporter, m_progress), Outcome::Done);
    EXPECT_EQ(Row(0), u"-5.5 | 90 | \"T55\"");
    EXPECT_EQ(Row(1), u"120.4 | 3600 | \"Rye\"");
    EXPECT_EQ(Row(2), u"25.4 | 0 | \"\"");
}

TEST_F(FileFormatsDocument, PagedExampleShowsTheRowsOfTheRecipeExample)
{
    WriteAll(m_folder / "dough.frp", DocumentedBytes("paged"));
    m_rows.LayOut(LayOutColumns(*m_library.formats[0]), 32766, 2);
    EXPECT_EQ(ReadPaged(m_rows, m_folder / "dough.frp", FileType::Frp, m_reporter, m_progress), Outcome::Done);
    EXPECT_EQ(Row(0), u"-5.5 | 90 | T55");
    EXPECT_EQ(Row(1), u"120.4 | 3600 | Rye");
    EXPECT_EQ(ReadAll(m_folder / "dough.frp"), DocumentedBytes("paged"));
}

TEST_F(FileFormatsDocument, PagedExampleIsWhatASaveIntoAnEmptyFileWrites)
{
    m_rows.LayOut(LayOutColumns(*m_library.formats[0]), 32766, 2);
    const char16_t* const texts[] = {u"-5.5", u"90", u"T55", u"120.4", u"3600", u"Rye"};
    for (std::size_t i = 0; i < 6; ++i)
        m_rows.SetText(static_cast<std::int32_t>(i / 3), i % 3, texts[i]);
    WriteAll(m_folder / "dough.frp", Bytes());
    EXPECT_TRUE(SavePaged(m_rows, m_folder / "dough.frp", FileType::Frp, m_reporter, m_progress));
    EXPECT_EQ(ReadAll(m_folder / "dough.frp"), DocumentedBytes("paged"));
}

} // namespace
