#include "files/BinaryRecipeFile.h"
#include "library/FormatLibrary.h"
#include "model/CellCheck.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::filesystem::path kExamples = std::filesystem::path(VANTOR_SOURCE_DIR) / "examples";

struct SampleFormat {
    const char* name;
    std::size_t index;
    std::int32_t startAddress, rowCount, wordsPerRow;
    const char16_t* firstText;

    friend void PrintTo(const SampleFormat& format, std::ostream* out) { *out << format.name; }
};

class SampleFiles : public testing::TestWithParam<SampleFormat> {
protected:
    void SetUp() override
    {
        ASSERT_GT(m_library.loadReadOnly(kExamples / "RecipeFile.Dat"), 0);
        ASSERT_GT(m_library.formats.size(), GetParam().index);
        const DataFormat& format = *m_library.formats[GetParam().index];
        m_rows.LayOut(LayOutColumns(format), GetParam().startAddress, GetParam().rowCount);
        ASSERT_EQ(ReadBinaryRecipe(m_rows, kExamples / "bakery-oven.rcp", false, m_reporter, m_progress),
                  Outcome::Done);
    }

    FormatLibrary m_library;
    CRecipeRows m_rows;
    CRecordingReporter m_reporter;
    CNoProgress m_progress;
};

TEST_P(SampleFiles, ShowTheirRows)
{
    EXPECT_EQ(m_rows.WordsPerRow(), GetParam().wordsPerRow);
    EXPECT_EQ(m_rows.Text(0, 0), GetParam().firstText);
}

TEST_P(SampleFiles, AreTheSameBytesAfterEveryCellWasTypedAgain)
{
    const CTempFolder folder;
    WriteAll(folder / "copy.rcp", ReadAll(kExamples / "bakery-oven.rcp"));
    for (std::int32_t row = 0; row < m_rows.RowCount(); ++row) {
        for (std::size_t column = 0; column < m_rows.Columns().size(); ++column)
            m_rows.SetText(row, column, m_rows.Text(row, column));
    }

    EXPECT_TRUE(SaveBinaryRecipe(m_rows, folder / "copy.rcp", m_reporter, m_progress));
    EXPECT_EQ(ReadAll(folder / "copy.rcp"), ReadAll(kExamples / "bakery-oven.rcp"));
    EXPECT_TRUE(m_reporter.shown.empty());
}

TEST_P(SampleFiles, HoldNoTextThatAnEditWouldRefuse)
{
    for (std::int32_t row = 0; row < m_rows.RowCount(); ++row) {
        for (std::size_t column = 0; column < m_rows.Columns().size(); ++column)
            EXPECT_TRUE(ValidateCellValue(m_rows.Columns()[column], m_rows.Text(row, column))) << row << ", " << column;
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, SampleFiles, testing::Values(
    //            name           index  start  rows  words  first text
    SampleFormat{"OvenRecipe",   0,     100,   12,   40,    u"101"},
    SampleFormat{"RecipeWords",  1,     100,   12,   40,    u"65"},
    SampleFormat{"LineSetup",    2,     0,     1,    35,    u"Mill Lane"},
    SampleFormat{"ShiftLog",     3,     600,   15,   8,     u"101"}),
    [](const auto& test) { return std::string(test.param.name); });
// clang-format on

TEST(SampleLibrary, OpensWithTheRecipes)
{
    FormatLibrary library;
    ASSERT_GT(library.loadReadOnly(kExamples / "RecipeFile.Dat"), 0);
    EXPECT_EQ(library.fileVersion, 20);
    EXPECT_EQ(library.startAddress, 100);
    EXPECT_EQ(library.rowCount, 12);
    EXPECT_EQ(TextOf(library.filePattern), u"*.rcp");
    EXPECT_EQ(TextOf(library.formats.at(0)->name), u"Oven recipe");
}

TEST(SampleLibrary, HasTheBoundsThatItsDigitsGive)
{
    FormatLibrary library;
    ASSERT_GT(library.loadReadOnly(kExamples / "RecipeFile.Dat"), 0);
    for (const auto& format : library.formats) {
        for (const auto& item : format->items) {
            DataItem derived = *item;
            deriveBounds(derived);
            EXPECT_EQ(derived, *item) << testing::PrintToString(std::u16string(TextOf(item->description)));
        }
    }
}

TEST(SampleLibrary, IsTheSameBytesAfterASave)
{
    const CTempFolder folder;
    FormatLibrary library;
    ASSERT_GT(library.loadReadOnly(kExamples / "RecipeFile.Dat"), 0);
    EXPECT_EQ(library.save(folder / "RecipeFile.Dat"), 0);
    EXPECT_EQ(ReadAll(folder / "RecipeFile.Dat"), ReadAll(kExamples / "RecipeFile.Dat"));
}

} // namespace
