#include "files/StoredCells.h"
#include "tests/files/TestColumns.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

CByteBuffer BufferOf(const Bytes& bytes)
{
    CByteBuffer buffer(bytes.size());
    std::copy(bytes.begin(), bytes.end(), buffer.Bytes().begin());
    return buffer;
}

/// What a save left of rows that were read.
struct StoredAfterASave : testing::Test {
    static constexpr std::int32_t kRows = 6000;

    StoredAfterASave()
    {
        rows.LayOut({Signed16Column(), Unsigned32Column()}, 0, kRows);
        rows.ShowWords(BufferOf(read), RecipeKind::Flat);
    }

    /// With other bytes in the first cell of so many rows.
    CStoredCells After(std::int32_t otherRows)
    {
        saved = read;
        for (std::int32_t row = 0; row < otherRows; ++row)
            saved[6 * static_cast<std::size_t>(row + kRows - otherRows)] = std::byte{7};
        return {rows, FileType::Rcp, saved.size(), {BufferOf(saved), std::nullopt}};
    }

    Bytes WordsIn(const CStoredCells& stored) const
    {
        Bytes words;
        for (std::int32_t row = 0; row < kRows; ++row)
            for (const std::uint32_t column : {0U, 1U}) {
                Bytes cell(column == 0 ? 2 : 4);
                EXPECT_EQ(stored.LoadWords({row, column}, cell), cell.size());
                words.insert(words.end(), cell.begin(), cell.end());
            }
        return words;
    }

    CRecipeRows rows;
    const Bytes read = Bytes(std::size_t{6} * kRows, std::byte{1});
    Bytes saved;
};

TEST_F(StoredAfterASave, SharesTheMemoryOfTheRowsWhereFewCellsAreOthers)
{
    for (const std::int32_t others : {0, 1, 4000}) {
        const CStoredCells stored = After(others);
        EXPECT_EQ(stored.Cells().SourceId(), rows.SourceId()) << others;
        EXPECT_EQ(stored.Cells().EditedCount(), 0u);
        EXPECT_TRUE(WordsIn(stored) == saved) << others;
    }
}

TEST_F(StoredAfterASave, HasItsOwnMemoryWhereManyAre)
{
    const CStoredCells stored = After(kRows);
    EXPECT_NE(stored.Cells().SourceId(), rows.SourceId());
    EXPECT_TRUE(WordsIn(stored) == saved);
}

TEST_F(StoredAfterASave, HasItsOwnMemoryWhereTheFileHadEndedBeforeTheRows)
{
    rows.ShowWords(BufferOf(WordBytes({1})), RecipeKind::Flat);
    EXPECT_TRUE(WordsIn(After(1)) == saved);
}

/// The words of a paged file go on as zeros after its end.
TEST(StoredCells, WordsOfRowsEndWithTheFile)
{
    CRecipeRows rows;
    rows.LayOut({Signed16Column(), Unsigned32Column()}, 0, 2);
    rows.ShowWords(BufferOf(Bytes(12)), RecipeKind::Paged);
    const CStoredCells stored(rows, FileType::Frp, 11);
    EXPECT_EQ(stored.WordsOfRows(0, 1).value().size(), 6u);
    EXPECT_FALSE(stored.WordsOfRows(0, 2));
    EXPECT_FALSE(stored.WordsOfRows(1, 1));
    Bytes cell(4);
    EXPECT_EQ(stored.LoadWords({1, 1}, cell), 3u);
}

TEST_F(StoredAfterASave, DoesNotCountWhatTheRowsWereGiven)
{
    rows.SetText(5, 0, u"77");
    const CStoredCells stored = After(1);
    EXPECT_EQ(stored.Cells().Text(5, 0), u"257");
    EXPECT_EQ(stored.Cells().Text(kRows - 1, 0), u"263");
}

} // namespace
