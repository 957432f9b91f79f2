#include "disk/Content.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <array>

namespace fs = std::filesystem;

namespace {

struct Content : testing::Test {
    CTempFolder folder;
    fs::path file = folder / "file";
    fs::path copy = folder / "copy";
};

TEST_F(Content, IsTheSameOnlyByteForByte)
{
    Bytes bytes(100'001); // of several pieces
    WriteAll(file, bytes);
    WriteAll(copy, bytes);
    EXPECT_TRUE(HaveSameContent(file, copy));
    for (const std::size_t at : {std::size_t{0}, std::size_t{4096}, bytes.size() - 1}) {
        Bytes changed = bytes;
        changed[at] = std::byte{1};
        WriteAll(copy, changed);
        EXPECT_FALSE(HaveSameContent(file, copy)) << at;
    }
    bytes.pop_back();
    WriteAll(copy, bytes);
    EXPECT_FALSE(HaveSameContent(file, copy)) << "shorter";
    EXPECT_FALSE(HaveSameContent(copy, file)) << "longer";
}

TEST_F(Content, OfWhatCannotBeReadIsNotTheSame)
{
    WriteAll(file, Bytes());
    WriteAll(copy, Bytes());
    EXPECT_TRUE(HaveSameContent(file, copy));
    EXPECT_FALSE(HaveSameContent(file, folder / "missing"));
    EXPECT_FALSE(HaveSameContent(folder / "missing", folder / "missing"));
    EXPECT_FALSE(HaveSameContent(folder.Path(), file));
}

TEST_F(Content, GoesOverThatOfAnOpenFilePieceByPiece)
{
    WriteAll(file, BytesOf({1, 2, 3, 4, 5}));
    WriteAll(copy, BytesOf({9, 9, 9, 9, 9, 9}));
    std::array<std::byte, 2> piece;
    const CFile from(file, CFile::Mode::Read);
    CFile to(copy, CFile::Mode::ReadWrite);
    EXPECT_TRUE(CopyContent(from, to, 5, piece));
    EXPECT_EQ(ReadAll(copy), BytesOf({1, 2, 3, 4, 5, 9}));
    EXPECT_FALSE(CopyContent(from, to, 6, piece)) << "it holds no more than five";
}

TEST_F(Content, GoesToANewNameWithTheRights)
{
    const Bytes bytes(100'001, std::byte{7});
    WriteAll(file, bytes);
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(CopyToNewFile(file, copy));
    EXPECT_TRUE(ReadAll(copy) == bytes);
    EXPECT_EQ(fs::status(copy).permissions(), fs::status(file).permissions());
}

TEST_F(Content, GoesToNoNameThatIsTaken)
{
    WriteAll(file, BytesOf({1}));
    WriteAll(copy, BytesOf({2}));
    EXPECT_FALSE(CopyToNewFile(file, copy));
    EXPECT_EQ(ReadAll(copy), BytesOf({2}));
}

TEST_F(Content, ThatCannotBeReadLeavesNothingNew)
{
    EXPECT_FALSE(CopyToNewFile(folder / "missing", copy));
    EXPECT_FALSE(CopyToNewFile(folder.Path(), copy));
    EXPECT_FALSE(fs::exists(copy));
}

} // namespace
