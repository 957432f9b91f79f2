#include "files/PagedFile.h"
#include "files/PagedReader.h"
#include "files/RecipeFile.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace {

/// An ".frp" with a word in the flat part, one in a page of the first table and one in a page of the second.
struct PagedReader : testing::Test {
    PagedReader()
    {
        for (const auto& [address, word] : {std::pair{5, 1}, {40000, 2}, {2100000, 3}})
            EXPECT_TRUE(PagedWrite(path, WordAddress(address), 1, WordBytes({static_cast<std::uint16_t>(word)}), kFrp));
        before = ReadAll(path);
        EXPECT_TRUE(reader.Open(path, kFrp));
    }

    Bytes Read(std::int64_t wordAddress, std::size_t wordCount)
    {
        Bytes bytes(2 * wordCount, std::byte{0xEE});
        EXPECT_TRUE(reader.Read(WordAddress(wordAddress), bytes));
        return bytes;
    }

    static const fs::path& Empty(const fs::path& path)
    {
        WriteAll(path, {});
        return path;
    }

    CTempFolder folder;
    const fs::path path = Empty(folder / "a.frp");
    Bytes before;
    CPagedReader reader;
};

TEST_F(PagedReader, FindsTheWordsOfTheFlatPartAndOfPages)
{
    EXPECT_EQ(Read(5, 1), WordBytes({1}));
    EXPECT_EQ(Read(40000, 1), WordBytes({2}));
    EXPECT_EQ(Read(2099999, 3), WordBytes({0, 3, 0}));
    EXPECT_EQ(ReadAll(path), before);
}

TEST_F(PagedReader, TakesZeroForWordsWhosePageTableOrDirectoryIsMissingAndMakesNone)
{
    EXPECT_EQ(Read(50000, 3000), Bytes(6000));   // no page in a table that is there
    EXPECT_EQ(Read(9000000, 3000), Bytes(6000)); // no table
    const std::size_t words = 2100001 - 39999;   // from before the one page to after the other
    Bytes wanted(2 * words);
    wanted[2] = std::byte{2};
    wanted[2 * (words - 1)] = std::byte{3};
    EXPECT_TRUE(Read(39999, words) == wanted);
    EXPECT_EQ(ReadAll(path), before);

    WriteAll(path, WordBytes({7, 8}));
    EXPECT_EQ(Read(1, 2), WordBytes({8, 0})); // no directory, and not even all of the flat part
    EXPECT_EQ(Read(32767, 2), Bytes(4));
    EXPECT_EQ(ReadAll(path), WordBytes({7, 8}));
}

TEST_F(PagedReader, ReadsUpToTheLastAddressAndNoFurther)
{
    EXPECT_EQ(Read(2147483647, 1), Bytes(2));
    Bytes two(4);
    EXPECT_FALSE(reader.Read(WordAddress(2147483647), two));
    EXPECT_FALSE(reader.Read(WordAddress(-1), two));
}

TEST_F(PagedReader, ReadsAFileThatMayOnlyBeRead)
{
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    fs::permissions(folder.Path(), static_cast<fs::perms>(0555));
    {
        const COrdinaryUser user;
        ASSERT_TRUE(reader.Open(path, kFrp));
        EXPECT_EQ(Read(40000, 1), WordBytes({2}));
        EXPECT_EQ(Read(50000, 1), WordBytes({0}));
    }
    fs::permissions(folder.Path(), fs::perms::owner_all);
}

TEST_F(PagedReader, RefusesWhatADamagedTableLeadsTo)
{
    Bytes damaged = before;
    damaged[69632 + 4 * 30] = std::byte{1}; // an entry of the first table leads to byte 1
    WriteAll(path, damaged);
    ASSERT_TRUE(reader.Open(path, kFrp));
    EXPECT_TRUE(reader.IsSound(WordAddress(5), 2));
    EXPECT_FALSE(reader.IsSound(WordAddress(40000), 2));
    Bytes word(2);
    EXPECT_FALSE(reader.Read(WordAddress(40000), word));
    EXPECT_EQ(ReadAll(path), damaged);
}

TEST_F(PagedReader, TellsHowFarTheContentGoesWhateverIsDamaged)
{
    EXPECT_EQ(LogicalBytes(FileType::Frp, path), 4202496u); // of word 2100000's page;
    Bytes bytes = ReadAll(path);
    bytes.resize(65536 + 100); // within the directory
    WriteAll(path, bytes);
    EXPECT_EQ(LogicalBytes(FileType::Frp, path), 65536u);
    EXPECT_EQ(LogicalBytes(FileType::Frp, folder / "missing.frp"), std::nullopt);
}

TEST_F(PagedReader, CannotOpenWhatIsNoFile)
{
    EXPECT_FALSE(reader.Open(folder / "missing.frp", kFrp));
    EXPECT_FALSE(reader.Open(folder.Path(), kFrp));
    EXPECT_FALSE(fs::exists(folder / "missing.frp"));
}

} // namespace
