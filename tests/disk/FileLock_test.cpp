#include "disk/FileLock.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace fs = std::filesystem;

using State = CFileLock::State;

namespace {

constexpr std::chrono::milliseconds kShort{30};
constexpr std::chrono::seconds kLong{60};

} // namespace

TEST(FileLock, HoldsAFileUntilItIsReleased)
{
    const CTempFolder folder;
    WriteAll(folder / "a", BytesOf({1}));
    CFileLock first;
    CFileLock second;
    EXPECT_EQ(first.Take(folder / "a", kShort), State::Held);
    ASSERT_NE(first.File(), nullptr);
    EXPECT_TRUE(first.File()->WriteAt(0, BytesOf({2})));
    EXPECT_EQ(second.Take(folder / "a", kShort), State::Busy);
    EXPECT_EQ(second.File(), nullptr);
    first.Release();
    EXPECT_EQ(second.Take(folder / "a", kShort), State::Held);
    EXPECT_EQ(ReadAll(folder / "a"), BytesOf({2}));
}

TEST(FileLock, HoldsNothingWhereThereIsNoFileToWrite)
{
    const CTempFolder folder;
    fs::create_directory(folder / "folder");
    CFileLock lock;
    EXPECT_EQ(lock.Take(folder / "missing", kShort), State::None);
    EXPECT_EQ(lock.Take(folder / "folder", kShort), State::None);
    EXPECT_FALSE(fs::exists(folder / "missing"));
}

TEST(FileLock, IsOneForAllNamesOfAFile)
{
    const CTempFolder folder;
    WriteAll(folder / "a", {});
    fs::create_symlink("a", folder / "link");
    fs::create_hard_link(folder / "a", folder / "hard");
    CFileLock lock;
    ASSERT_EQ(lock.Take(folder / "link", kShort), State::Held);
    for (const char* name : {"a", "hard", "link"})
        EXPECT_EQ(CFileLock().Take(folder / name, kShort), State::Busy) << name;
}

TEST(FileLock, StaysWhenAnotherHandleOfTheProgramCloses)
{
    const CTempFolder folder;
    WriteAll(folder / "a", {});
    CFileLock lock;
    ASSERT_EQ(lock.Take(folder / "a", kShort), State::Held);
    CFile(folder / "a", CFile::Mode::ReadWrite).Close();
    EXPECT_EQ(CFileLock().Take(folder / "a", kShort), State::Busy);
}

TEST(FileLock, WaitsForTheOther)
{
    const CTempFolder folder;
    WriteAll(folder / "a", {});
    CFileLock first;
    ASSERT_EQ(first.Take(folder / "a", kShort), State::Held);
    std::atomic<int> asked = 0;
    std::jthread ending([&] {
        while (asked < 3)
            std::this_thread::yield();
        first.Release();
    });
    CFileLock second;
    EXPECT_EQ(second.Take(folder / "a", kLong,
                          [&asked] {
                              ++asked;
                              return true;
                          }),
              State::Held);
}

TEST(FileLock, IsGivenUpWhenAskedTo)
{
    const CTempFolder folder;
    WriteAll(folder / "a", {});
    CFileLock first;
    ASSERT_EQ(first.Take(folder / "a", kShort), State::Held);
    CFileLock second;
    EXPECT_EQ(second.Take(folder / "a", kLong, [] { return false; }), State::GivenUp);
    EXPECT_EQ(second.File(), nullptr);
}

/// What one waited for is replaced as a whole by the other: the file that has the name then is the one to be held.
TEST(FileLock, HoldsTheFileThatHasTheNameInTheEnd)
{
    const CTempFolder folder;
    WriteAll(folder / "a", BytesOf({1}));
    CFileLock first;
    ASSERT_EQ(first.Take(folder / "a", kShort), State::Held);
    CFileLock second;
    bool isReplaced = false;
    const auto replace = [&] {
        if (isReplaced)
            return true;
        isReplaced = true;
        WriteAll(folder / "b", BytesOf({2}));
        fs::rename(folder / "b", folder / "a");
        first.Release();
        return true;
    };
    ASSERT_EQ(second.Take(folder / "a", kLong, replace), State::Held);
    Bytes bytes(1);
    EXPECT_EQ(second.File()->ReadAt(0, bytes), 1u);
    EXPECT_EQ(bytes, BytesOf({2}));
}
