#include "changes/WordDifferences.h"
#include "files/RecipeFile.h"
#include "recovery/VersionCells.h"
#include "recovery/VersionRestore.h"
#include "tests/recovery/VersionTest.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"

namespace fs = std::filesystem;

namespace {

/// Rows of one word and one float from word 1 on.
struct VersionCells : VersionTest {
    VersionCells()
    {
        const DataFormat format = MakeFormat(
            u"Oven", {MakeItem(u"Belt", DataType::Unsigned16, 1, 5), MakeItem(u"Steam", DataType::Float, 2, 3, 1)});
        rows.LayOut(LayOutColumns(format), 1, 2);
    }

    std::optional<VersionDifferences> Differences(const fs::path& file, FileType type = FileType::Rcp) const
    {
        const auto versions = store.List(file);
        if (versions.empty())
            return std::nullopt;
        return DifferencesFrom(ReadStoredCells(rows, type, file), store, file, versions.back());
    }

    std::vector<CellPlace> Places(const fs::path& file, FileType type = FileType::Rcp) const
    {
        const auto differences = Differences(file, type);
        EXPECT_TRUE(differences);
        return differences ? differences->places : std::vector<CellPlace>();
    }

    /// Keeps only what changes, as of a file too large to be copied.
    void Change(const Bytes& after)
    {
        const fs::path other = folder / "after.rcp";
        WriteAll(other, after);
        CFileWords old(FileType::Rcp, recipe);
        CFileWords now(FileType::Rcp, other);
        const CWordDifferences changes(old, now, FileType::Rcp, recipe);
        EXPECT_EQ(store.KeepChanges(recipe, u"Save", changes).result, Result::Kept);
        WriteAll(recipe, after);
    }

    CRecipeRows rows;
    const Bytes before = WordBytes({9, 1, 2, 3, 4, 5, 6, 9});
};

TEST_F(VersionCells, DifferWhereTheWordsDo)
{
    WriteAll(recipe, before);
    KeepAndWrite(recipe, WordBytes({8, 1, 2, 0, 5, 5, 6, 7}));
    EXPECT_EQ(Places(recipe), (std::vector<CellPlace>{{0, 1}, {1, 0}})) << "words outside the rows are none";
}

TEST_F(VersionCells, AreNoneWhereNothingDiffers)
{
    WriteAll(recipe, before);
    store.Keep(recipe, u"Save");
    EXPECT_EQ(Places(recipe), std::vector<CellPlace>());
}

TEST_F(VersionCells, DifferWhereTheFileEndedEarlier)
{
    WriteAll(recipe, WordBytes({9, 1, 2, 3}));
    KeepAndWrite(recipe, WordBytes({9, 1, 2, 3, 0, 0, 0}));
    EXPECT_EQ(Places(recipe), (std::vector<CellPlace>{{1, 0}, {1, 1}}));
}

TEST_F(VersionCells, AreThoseOfTheChainWhereOnlyChangesWereKept)
{
    WriteAll(recipe, before);
    Change(WordBytes({9, 1, 2, 3, 7, 5, 6, 9}));
    Change(WordBytes({9, 8, 2, 3, 7, 5, 6, 9}));
    const auto differences = Differences(recipe);
    ASSERT_TRUE(differences);
    EXPECT_EQ(differences->places, (std::vector<CellPlace>{{0, 0}, {1, 0}}));
    std::vector<std::byte> words(2);
    EXPECT_EQ(differences->then.LoadWords({1, 0}, words), 2U);
    EXPECT_EQ(words, WordBytes({4}));
    EXPECT_EQ(differences->then.FileBytes(), 16U);
}

TEST_F(VersionCells, AreNotKnownWhereTheRecordsDoNotFit)
{
    WriteAll(recipe, before);
    Change(WordBytes({9, 1, 2, 3, 7, 5, 6, 9}));
    WriteAll(recipe, WordBytes({9, 1, 2, 3, 6, 5, 6, 9})); // by somebody else
    EXPECT_FALSE(Differences(recipe));
}

TEST_F(VersionCells, AreThoseOfFieldsInATable)
{
    const fs::path table = folder / "oven.csv";
    WriteAll(table, Utf16File(u"\"1\"\t\"2.5\"\t\r\n\"3\"\t\"4.5\"\t\r\n"));
    KeepAndWrite(table, Utf16File(u"\"1\"\t\"2.5\"\t\r\n\"3\"\t\"9.5\"\t\r\n"));
    EXPECT_EQ(Places(table, FileType::Csv), (std::vector<CellPlace>{{1, 1}}));
}

TEST_F(VersionCells, AreNotKnownWithoutAFile)
{
    WriteAll(recipe, before);
    store.Keep(recipe, u"Save");
    fs::remove(recipe);
    EXPECT_FALSE(Differences(recipe));
}

} // namespace
