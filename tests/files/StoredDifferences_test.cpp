#include "files/RecipeFile.h"
#include "files/StoredDifferences.h"
#include "tests/files/TestColumns.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Places = std::vector<CellPlace>;

/// Two files, read as the same rows of a signed and an unsigned column.
struct TwoFiles : testing::Test {
    void LayOut(std::int32_t count) { rows.LayOut({Signed16Column(), Unsigned32Column()}, 1, count); }

    Places Compare(FileType type, const Bytes& ours, const Bytes& theirs)
    {
        WriteAll(folder / "ours", ours);
        WriteAll(folder / "theirs", theirs);
        return DifferencesOf(ReadStoredCells(rows, type, folder / "ours"),
                             ReadStoredCells(rows, type, folder / "theirs"));
    }

    CTempFolder folder;
    CRecipeRows rows;
};

TEST_F(TwoFiles, AreAlikeWhereTheStretchIs)
{
    LayOut(2);
    const Bytes ours = WordBytes({0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(Compare(FileType::Rcp, ours, ours), Places());
    EXPECT_EQ(Compare(FileType::Rcp, ours, WordBytes({9, 1, 2, 3, 4, 5, 6, 9, 9})), Places());
}

TEST_F(TwoFiles, DifferInTheCellsWhoseWordsDo)
{
    LayOut(2);
    EXPECT_EQ(Compare(FileType::Rcp, WordBytes({0, 1, 2, 3, 4, 5, 6}), WordBytes({0, 1, 2, 9, 8, 5, 6})),
              (Places{{0, 1}, {1, 0}}));
}

TEST_F(TwoFiles, DifferWhereOneOfThemEnds)
{
    LayOut(2);
    const Bytes ours = WordBytes({0, 1, 2, 3, 0, 0, 0});
    EXPECT_EQ(Compare(FileType::Rcp, ours, WordBytes({0, 1, 2, 3})), (Places{{1, 0}, {1, 1}}));
    Bytes half = ours;
    half.pop_back();
    EXPECT_EQ(Compare(FileType::Rcp, half, ours), (Places{{1, 1}}));
    EXPECT_EQ(Compare(FileType::Rcp, WordBytes({0, 1}), WordBytes({0, 1})), Places());
}

TEST_F(TwoFiles, DifferAsTablesInTheTextsShown)
{
    LayOut(2);
    const Bytes ours = Utf16File(u"1\t2\r\n3\t4\r\n5\t6\r\n");
    EXPECT_EQ(Compare(FileType::Csv, ours, Utf16File(u"1\t2\r\n3\t4\r\n7\t8\r\n")), Places()) << "not shown";
    EXPECT_EQ(Compare(FileType::Csv, ours, Utf16File(u"\"1\"\t2\n3\t4\n")), Places()) << "mere form";
    EXPECT_EQ(Compare(FileType::Csv, ours, Utf16File(u"1\t7\r\n8\t4\r\n")), (Places{{0, 1}, {1, 0}}));
    EXPECT_EQ(Compare(FileType::Csv, Utf16File(u"1\t0\r\n3\t4\r\n"), Utf16File(u"1\r\n3\t4\r\n")), (Places{{0, 1}}));
}

TEST_F(TwoFiles, OfRandomWordsDifferAsTheirBytesDo)
{
    std::mt19937 random(5);
    LayOut(20000);
    Bytes ours(2 + 6 * 20000);
    for (std::byte& byte : ours)
        byte = static_cast<std::byte>(random());
    for (int round = 0; round < 20; ++round) {
        Bytes theirs = ours;
        Places places;
        std::size_t at = 2;
        for (std::int32_t row = 0; row < 20000; ++row)
            for (std::uint32_t column = 0; column < 2; ++column) {
                const std::size_t length = column == 0 ? 2 : 4;
                if (random() % 3000 == 0) {
                    theirs[at + random() % length] ^= std::byte{0x40};
                    places.push_back({row, column});
                }
                at += length;
            }
        ASSERT_EQ(Compare(FileType::Rcp, ours, theirs), places);
    }
}

} // namespace
