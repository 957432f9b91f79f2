#include "disk/Replacement.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

struct Replacement : testing::Test {
    Replacement() { WriteAll(path, old); }

    std::size_t FilesInFolder() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()));
    }

    CTempFolder folder;
    fs::path path = folder / "a";
    const Bytes old = BytesOf({1, 2, 3});
};

TEST_F(Replacement, TakesThePlaceOfTheOldFileWhenItIsFinished)
{
    CReplacement file(path);
    ASSERT_TRUE(file.IsOpen());
    EXPECT_TRUE(file.Append(BytesOf({4})));
    EXPECT_TRUE(file.Append(BytesOf({5, 6})));
    EXPECT_EQ(ReadAll(path), old);
    EXPECT_TRUE(file.Finish());
    EXPECT_EQ(ReadAll(path), BytesOf({4, 5, 6}));
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(Replacement, LeavesTheOldFileWhenItIsNotFinished)
{
    {
        CReplacement file(path);
        EXPECT_TRUE(file.Append(BytesOf({4})));
        EXPECT_EQ(FilesInFolder(), 2u);
    }
    EXPECT_EQ(ReadAll(path), old);
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(Replacement, LeavesNoFileWhereThereWasNone)
{
    CReplacement(folder / "new").Append(BytesOf({4}));
    EXPECT_FALSE(fs::exists(folder / "new"));
}

TEST_F(Replacement, MakesAFileWhereThereWasNone)
{
    CReplacement file(folder / "new");
    EXPECT_TRUE(file.Append(BytesOf({4})));
    EXPECT_TRUE(file.Finish());
    EXPECT_EQ(ReadAll(folder / "new"), BytesOf({4}));
}

TEST_F(Replacement, MayBeginWithZerosAndWithWhatTheOldFileHolds)
{
    CReplacement file(path);
    EXPECT_TRUE(file.AppendZeros(0));
    EXPECT_TRUE(file.AppendZeros(3));
    EXPECT_TRUE(file.AppendOld());
    EXPECT_TRUE(file.AppendZeros(1));
    EXPECT_TRUE(file.Append(BytesOf({9})));
    EXPECT_EQ(ReadAll(path), old);
    EXPECT_TRUE(file.Finish());
    Bytes wanted(3);
    wanted.insert(wanted.end(), old.begin(), old.end());
    wanted.insert(wanted.end(), {std::byte{0}, std::byte{9}});
    EXPECT_EQ(ReadAll(path), wanted);
}

TEST_F(Replacement, TakesALongOldFileOverWithItsHoles)
{
    Bytes large(1'000'001); // not a number of whole pieces
    std::fill(large.begin() + 65'536, large.begin() + 3 * 65'536, std::byte{1});
    large[0] = std::byte{2};
    large[700'000] = std::byte{3};
    WriteAll(path, large);
    CReplacement file(path);
    EXPECT_TRUE(file.AppendOld());
    EXPECT_TRUE(file.Append(BytesOf({9})));
    EXPECT_TRUE(file.Finish());
    large.push_back(std::byte{9});
    EXPECT_TRUE(ReadAll(path) == large);
}

TEST_F(Replacement, MayBeNothingButAZero)
{
    CReplacement file(path);
    EXPECT_TRUE(file.AppendZeros(1));
    EXPECT_TRUE(file.Finish());
    EXPECT_EQ(ReadAll(path), Bytes(1));
}

TEST_F(Replacement, BeginsWithNothingWhereThereIsNoOldFile)
{
    CReplacement file(folder / "new");
    EXPECT_TRUE(file.AppendOld());
    EXPECT_TRUE(file.Finish());
    EXPECT_EQ(ReadAll(folder / "new"), Bytes());
}

TEST_F(Replacement, FailsToBeginWithAnOldFileThatIsNoMore)
{
    CReplacement file(path);
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_FALSE(file.AppendOld());
}

TEST_F(Replacement, MayBeWrittenByTheNameThatItHasMeanwhile)
{
    CReplacement file(path);
    EXPECT_TRUE(file.AppendZeros(2));
    WriteAll(file.FreshPath(), BytesOf({7, 8, 9}));
    EXPECT_TRUE(file.Finish());
    EXPECT_EQ(ReadAll(path), BytesOf({7, 8, 9}));
}

TEST_F(Replacement, KeepsPermissions)
{
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    CReplacement file(path);
    EXPECT_TRUE(file.Finish());
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Replacement, GoesWhereALinkLeads)
{
    fs::create_symlink("a", folder / "link");
    CReplacement file(folder / "link");
    EXPECT_TRUE(file.Append(BytesOf({4})));
    EXPECT_TRUE(file.Finish());
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadAll(path), BytesOf({4}));
}

TEST_F(Replacement, MakesTheFileThatADanglingLinkNames)
{
    fs::create_symlink("b", folder / "link");
    CReplacement file(folder / "link");
    EXPECT_TRUE(file.Append(BytesOf({4})));
    EXPECT_TRUE(file.Finish());
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(ReadAll(folder / "b"), BytesOf({4}));
}

TEST_F(Replacement, IsCopiedIntoTheOldFileWhereTheFolderTakesNoFile)
{
    fs::permissions(path, fs::perms::all);
    fs::permissions(folder.Path(),
                    fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec);
    {
        const COrdinaryUser user;
        EXPECT_TRUE(CReplacement(path).Append(BytesOf({5}))) << "not finished";
        EXPECT_EQ(ReadAll(path), old);
        CReplacement file(path);
        ASSERT_TRUE(file.IsOpen());
        EXPECT_TRUE(file.Append(BytesOf({4})));
        EXPECT_EQ(ReadAll(path), old);
        EXPECT_TRUE(file.Finish());
        EXPECT_FALSE(CReplacement(folder / "new").IsOpen());
    }
    fs::permissions(folder.Path(), fs::perms::owner_all);
    EXPECT_EQ(ReadAll(path), BytesOf({4}));
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(Replacement, KeepsHardLinks)
{
    fs::create_hard_link(path, folder / "same");
    for (const Bytes& bytes : {BytesOf({4}), Bytes(3000000, std::byte{5})}) {
        {
            CReplacement file(path);
            EXPECT_TRUE(file.Append(bytes));
            EXPECT_EQ(ReadAll(path), old);
            EXPECT_TRUE(file.Finish());
        }
        EXPECT_EQ(ReadAll(path), bytes);
        EXPECT_TRUE(fs::equivalent(path, folder / "same"));
        EXPECT_EQ(FilesInFolder(), 2u);
        WriteAll(path, old);
    }
}

TEST_F(Replacement, LeavesTheOldBytesOfAHardLinkWhenThereIsNoRoom)
{
    fs::create_hard_link(path, folder / "same");
    {
        CReplacement file(path);
        EXPECT_TRUE(file.Append(Bytes(5000, std::byte{5})));
        const CFileSizeLimit limit(4999);
        EXPECT_FALSE(file.Finish());
        EXPECT_FALSE(file.MayHoldOldAndNew());
    }
    EXPECT_EQ(ReadAll(path), old);
    EXPECT_EQ(FilesInFolder(), 2u);
}

TEST_F(Replacement, TellsThatItWasCopiedInPartAndKeepsTheWholeOne)
{
    WriteAll(path, Bytes(10'000, std::byte{1}));
    fs::create_hard_link(path, folder / "same");
    CReplacement file(path);
    EXPECT_TRUE(file.Append(Bytes(8'000, std::byte{2})));
    const fs::path kept = fs::path(file.FreshPath()).replace_extension(".kept"); // no leftover to be cleared away
    EXPECT_FALSE(file.MayHoldOldAndNew());
    {
        const CFileSizeLimit limit(5'000);
        EXPECT_FALSE(file.Finish());
    }
    EXPECT_TRUE(file.MayHoldOldAndNew());
    Bytes mixed(10'000, std::byte{1});
    std::fill_n(mixed.begin(), 5'000, std::byte{2});
    EXPECT_EQ(ReadAll(path), mixed);
    EXPECT_EQ(ReadAll(kept), Bytes(8'000, std::byte{2}));
}

TEST_F(Replacement, KeepsTheOwner)
{
    fs::permissions(path, fs::perms::all);
    fs::permissions(folder.Path(), fs::perms::all);
    struct stat before {};
    struct stat after {};
    ASSERT_EQ(stat(path.string().c_str(), &before), 0);
    {
        const COrdinaryUser user;
        CReplacement file(path);
        EXPECT_TRUE(file.Append(BytesOf({4})));
        EXPECT_TRUE(file.Finish());
    }
    ASSERT_EQ(stat(path.string().c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(ReadAll(path), BytesOf({4}));
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(Replacement, TakesTheLongestName)
{
    const fs::path longest = folder / std::string(255, 'n');
    for (const Bytes& bytes : {BytesOf({4}), BytesOf({5})}) {
        CReplacement file(longest);
        EXPECT_TRUE(file.Append(bytes));
        EXPECT_TRUE(file.Finish());
        EXPECT_EQ(ReadAll(longest), bytes);
    }
    EXPECT_EQ(FilesInFolder(), 2u);
}

TEST_F(Replacement, NeverTakesThePlaceOfWhatIsNoFile)
{
    CReplacement file(path);
    EXPECT_TRUE(file.Append(BytesOf({4})));
    fs::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_FALSE(file.Finish());
    EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(Replacement, GoesIntoAFileThatTheFolderDoesNotLetGo)
{
    // In a folder like /tmp everyone makes files, but takes away only their own.
    fs::permissions(path, fs::perms::all);
    fs::permissions(folder.Path(), fs::perms::all | fs::perms::sticky_bit);
    const COrdinaryUser user;
    CReplacement file(path);
    EXPECT_TRUE(file.Append(BytesOf({4})));
    EXPECT_TRUE(file.Finish());
    EXPECT_EQ(ReadAll(path), BytesOf({4}));
}

TEST_F(Replacement, FailsOnAFullDisk)
{
    const CFileSizeLimit limit(2);
    CReplacement file(path);
    EXPECT_FALSE(file.Append(BytesOf({4, 5, 6})));
    EXPECT_EQ(ReadAll(path), old);
}

TEST_F(Replacement, RefusesWhatIsNoFile)
{
    fs::create_directory(folder / "sub");
    fs::create_symlink("circle", folder / "circle");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const std::string withZero("a\0b", 3);
    for (const fs::path& bad : {fs::path(), folder / "sub", folder / "sub" / "", folder / "missing" / "a",
                                fs::path("/dev/null"), folder / withZero, folder / "circle", folder / "pipe"})
        EXPECT_FALSE(CReplacement(bad).IsOpen()) << bad;
    EXPECT_EQ(ReadAll(path), old);
    EXPECT_EQ(FilesInFolder(), 4u);
}

} // namespace
