#include "files/BinaryRecipeFile.h"
#include "files/SavePlan.h"
#include "library/FormatLibrary.h"
#include "model/CellCheck.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

const std::filesystem::path kExamples = std::filesystem::path(VANTOR_SOURCE_DIR) / "examples";

struct SampleFormat {
    const char* name;
    std::size_t index;
    std::int32_t startAddress, rowCount, wordsPerRow;
    const char16_t* firstText;
    std::size_t rewritten; ///< values that a save would store otherwise

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

/// But for the values that are there to show what a save can do besides.
TEST_P(SampleFiles, AreTheSameBytesAfterEveryCellWasTypedAgain)
{
    const std::filesystem::path sample = kExamples / "bakery-oven.rcp";
    const CTempFolder folder;
    Bytes expected = ReadAll(sample);
    WriteAll(folder / "copy.rcp", expected);
    const CStoredCells stored(m_rows, FileType::Rcp, expected.size());
    CSavePlan plan;
    plan.Begin(m_rows, stored, sample, false);
    ASSERT_EQ(plan.Finish(m_progress), Outcome::Done);
    EXPECT_EQ(plan.Changes().size(), GetParam().rewritten);
    CCellComparison cells(m_rows, stored, false);
    for (const PlannedChange& change : plan.Changes()) {
        const auto words = cells.NewWords(change.place);
        std::copy(words.begin(), words.end(),
                  &expected[2 * static_cast<std::size_t>(AddressOfCell(m_rows, change.place).number)]);
    }

    for (std::int32_t row = 0; row < m_rows.RowCount(); ++row) {
        for (std::size_t column = 0; column < m_rows.Columns().size(); ++column)
            m_rows.SetText(row, column, m_rows.Text(row, column));
    }
    EXPECT_TRUE(SaveBinaryRecipe(m_rows, folder / "copy.rcp", m_reporter, m_progress));
    EXPECT_EQ(ReadAll(folder / "copy.rcp"), expected);
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
    //            name           index  start  rows  words  first text      rewritten
    SampleFormat{"OvenRecipe",   0,     100,   12,   40,    u"101",          3},
    SampleFormat{"RecipeWords",  1,     100,   12,   40,    u"65",           0},
    SampleFormat{"LineSetup",    2,     0,     1,    35,    u"Mill Lane",    0},
    SampleFormat{"ShiftLog",     3,     600,   15,   8,     u"101",          0}),
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
