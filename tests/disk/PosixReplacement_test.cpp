#include "disk/Replacement.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// How often the clock that only goes forward is still asked while it stands.
int questionsToTheStandingClock = 0;

} // namespace

/// In place of the C library's.
extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    static timespec standing{};
    const auto asked = syscall(SYS_clock_gettime, clock, time);
    if (clock != CLOCK_MONOTONIC || asked != 0)
        return static_cast<int>(asked);
    if (questionsToTheStandingClock == 0)
        standing = *time;
    else {
        --questionsToTheStandingClock;
        *time = standing;
    }
    return 0;
}

namespace {

struct PosixReplacement : testing::Test {
    PosixReplacement() { WriteAll(path, old); }
    ~PosixReplacement() override { fs::permissions(folder.Path(), fs::perms::owner_all); }

    /// A folder for temporary files from now on.
    static void SetTemporaryFolder(const fs::path& temporary) { setenv("TMPDIR", temporary.c_str(), 1); }

    static struct stat StateOf(const fs::path& file)
    {
        struct stat state {};
        EXPECT_EQ(stat(file.c_str(), &state), 0);
        return state;
    }

    std::vector<fs::path> NewFiles() const
    {
        std::vector<fs::path> files;
        for (const auto& entry : fs::directory_iterator(folder.Path()))
            if (entry.path().extension() == ".new")
                files.push_back(entry.path());
        return files;
    }

    CTempFolder folder;
    fs::path path = folder / "a";
    const Bytes old = BytesOf({1, 2, 3});
};

TEST_F(PosixReplacement, TakesThePlaceOfAFileOfOthersWhereItMayBeGivenToThem)
{
    constexpr uid_t kOther = 65534;
    if (geteuid() != 0) {
        std::printf("NOT RUN: this user may give no file away\n");
        RecordProperty("notRun", "not the administrator");
        return;
    }
    for (const auto& [user, group] : {std::pair<uid_t, gid_t>{0, kOther}, {kOther, 0}, {kOther, kOther}}) {
        ASSERT_EQ(chown(path.c_str(), user, group), 0);
        const struct stat before = StateOf(path);
        CReplacement file(path);
        EXPECT_TRUE(file.Append(BytesOf({4})));
        EXPECT_TRUE(file.Finish());
        const struct stat after = StateOf(path);
        EXPECT_NE(after.st_ino, before.st_ino) << "it is another file";
        EXPECT_EQ(after.st_uid, user);
        EXPECT_EQ(after.st_gid, group);
        EXPECT_EQ(ReadAll(path), BytesOf({4}));
    }
}

TEST_F(PosixReplacement, WorksInAFolderThatOneMayNotLookInto)
{
    fs::permissions(path, fs::perms::all);
    fs::permissions(folder.Path(), fs::perms::all & ~(fs::perms::others_read | fs::perms::group_read));
    {
        const COrdinaryUser user;
        CReplacement file(folder / "new");
        EXPECT_TRUE(file.Append(BytesOf({4})));
        EXPECT_TRUE(file.Finish());
    }
    EXPECT_EQ(ReadAll(folder / "new"), BytesOf({4}));
}

TEST_F(PosixReplacement, NeedsAPlaceForWhatIsCopied)
{
    fs::permissions(path, fs::perms::all);
    fs::create_directory(folder / "shut");
    fs::permissions(folder / "shut", fs::perms::none);
    fs::permissions(folder.Path(),
                    fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec);
    const std::string before = std::getenv("TMPDIR") != nullptr ? std::getenv("TMPDIR") : "/tmp";
    for (const char* temporary : {"missing", "shut"}) {
        SetTemporaryFolder(folder / temporary);
        const COrdinaryUser user;
        EXPECT_FALSE(CReplacement(path).IsOpen()) << temporary;
    }
    SetTemporaryFolder(before);
    EXPECT_EQ(ReadAll(path), old);
}

TEST_F(PosixReplacement, LeavesTheOldFileWhenWhatIsToBeCopiedIsGone)
{
    fs::create_hard_link(path, folder / "same");
    CReplacement file(path);
    EXPECT_TRUE(file.Append(BytesOf({4})));
    ASSERT_EQ(NewFiles().size(), 1u);
    fs::remove(NewFiles().front());
    EXPECT_FALSE(file.Finish());
    EXPECT_FALSE(file.MayHoldOldAndNew());
    EXPECT_EQ(ReadAll(path), old);
}

TEST_F(PosixReplacement, NeverSharesAFileWithAnotherOneOfTheSameMoment)
{
    questionsToTheStandingClock = 5;
    CReplacement one(path);
    CReplacement other(folder / "b");
    EXPECT_EQ(questionsToTheStandingClock, 0) << "asked until it went on";
    EXPECT_EQ(NewFiles().size(), 2u);
    EXPECT_TRUE(one.Append(BytesOf({4})));
    EXPECT_TRUE(other.Append(BytesOf({5})));
    EXPECT_TRUE(one.Finish());
    EXPECT_TRUE(other.Finish());
    EXPECT_EQ(ReadAll(path), BytesOf({4}));
    EXPECT_EQ(ReadAll(folder / "b"), BytesOf({5}));
}

} // namespace
