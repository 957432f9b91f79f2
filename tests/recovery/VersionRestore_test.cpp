#include "recovery/VersionRestore.h"
#include "recovery/VersionSetting.h"
#include "tests/recovery/VersionTest.h"
#include "tests/support/RecordingReporter.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

struct VersionRestore : VersionTest {
    CRecordingReporter reporter;
};

TEST_F(VersionRestore, BringsBackEveryByteOfAnyType)
{
    Bytes pages(70000);
    for (std::size_t i = 0; i < pages.size(); ++i)
        pages[i] = static_cast<std::byte>(i % 251);
    for (const char* name : {"a.rcp", "b.csv", "c.erp", "d.frp", "RecipeFile.Dat"}) {
        const fs::path file = folder / name;
        WriteAll(file, pages);
        const std::string stamp = KeepAndWrite(file, BytesOf({1, 2, 3}));
        const VersionRestored result = RestoreVersion(store, file, stamp, reporter);
        EXPECT_TRUE(result.isRestored) << name;
        EXPECT_EQ(result.kept.result, Result::Kept) << name;
        EXPECT_EQ(ReadAll(file), pages) << name;
        ASSERT_EQ(store.List(file).size(), 2U) << name;
        EXPECT_EQ(store.List(file)[0].command, u"Restore") << name;
        EXPECT_EQ(Content(file, store.List(file)[0]), BytesOf({1, 2, 3})) << name;
    }
    EXPECT_TRUE(reporter.shown.empty());
}

/// There is nothing to keep then, and nothing to write.
TEST_F(VersionRestore, LeavesWhatIsTheSame)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({1, 2, 3}));
    const auto written = fs::last_write_time(recipe);
    const VersionRestored result = RestoreVersion(store, recipe, stamp, reporter);
    EXPECT_TRUE(result.isRestored);
    EXPECT_EQ(result.kept.result, Result::Same);
    EXPECT_EQ(fs::last_write_time(recipe), written);
    EXPECT_EQ(store.List(recipe).size(), 1U);
}

TEST_F(VersionRestore, KeepsRightsAndOtherNames)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({4}));
    const auto rights = fs::perms::owner_all | fs::perms::group_read | fs::perms::others_read;
    fs::permissions(recipe, rights);
    fs::create_hard_link(recipe, folder / "other name.rcp");
    EXPECT_TRUE(RestoreVersion(store, recipe, stamp, reporter));
    EXPECT_EQ(ReadAll(folder / "other name.rcp"), WordBytes({1, 2, 3}));
    EXPECT_EQ(fs::status(recipe).permissions(), rights);
}

TEST_F(VersionRestore, FollowsALink)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({4}));
    fs::create_symlink("oven.rcp", folder / "link.rcp");
    EXPECT_TRUE(RestoreVersion(store, folder / "link.rcp", stamp, reporter));
    EXPECT_TRUE(fs::is_symlink(folder / "link.rcp"));
    EXPECT_EQ(ReadAll(recipe), WordBytes({1, 2, 3}));
}

TEST_F(VersionRestore, MakesAFileThatIsMissing)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({4}));
    fs::remove(recipe);
    const VersionRestored result = RestoreVersion(store, recipe, stamp, reporter);
    EXPECT_TRUE(result.isRestored);
    EXPECT_EQ(result.kept.result, Result::Nothing);
    EXPECT_EQ(ReadAll(recipe), WordBytes({1, 2, 3}));
}

TEST_F(VersionRestore, TellsOfAVersionThatIsNotThere)
{
    KeepAndWrite(recipe, WordBytes({4}));
    EXPECT_FALSE(RestoreVersion(store, recipe, "20200101T000000.000Z", reporter));
    EXPECT_EQ(reporter.shown, (std::vector<std::u16string>{u"Can't go back to version 20200101T000000.000Z of file " +
                                                           recipe.u16string() + u": there is no such version!"}));
    EXPECT_EQ(ReadAll(recipe), WordBytes({4}));
}

TEST_F(VersionRestore, TellsOfAFolderThatHasGone)
{
    fs::create_directory(folder / "sub");
    const fs::path file = folder / "sub" / "a.rcp";
    WriteAll(file, WordBytes({1}));
    const std::string stamp = KeepAndWrite(file, WordBytes({4}));
    fs::remove_all(folder / "sub");
    EXPECT_EQ(store.List(file).size(), 1U);
    EXPECT_FALSE(RestoreVersion(store, file, stamp, reporter));
    EXPECT_EQ(reporter.shown.size(), 1U);
    EXPECT_FALSE(fs::exists(folder / "sub"));
}

/// Keeping what is there now makes it one too many.
TEST_F(VersionRestore, BringsBackTheOldestOfAFullStore)
{
    KeepAndWrite(recipe, WordBytes({4}));
    EXPECT_TRUE(store.Forget(recipe));
    for (std::uint16_t i = 0; i < 50; ++i)
        KeepAndWrite(recipe, WordBytes({7, i}));
    const Version oldest = store.List(recipe).back();
    const Bytes content = Content(recipe, oldest);
    EXPECT_TRUE(RestoreVersion(store, recipe, oldest.stamp, reporter));
    EXPECT_EQ(ReadAll(recipe), content);
    EXPECT_EQ(store.List(recipe).size(), 50U);
}

TEST_F(VersionRestore, GoesOnWhereNothingIsKept)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({4}));
    ASSERT_TRUE(SetVersionsKept(data, false));
    const VersionRestored result = RestoreVersion(store, recipe, stamp, reporter);
    EXPECT_TRUE(result.isRestored);
    EXPECT_EQ(result.kept.result, Result::Off);
    EXPECT_EQ(ReadAll(recipe), WordBytes({1, 2, 3}));
}

TEST_F(VersionRestore, WritesAVersionElsewhere)
{
    KeepAndWrite(recipe, WordBytes({4}));
    const Version version = store.List(recipe).at(0);
    WriteAll(folder / "out.rcp", WordBytes({9, 9, 9, 9, 9}));
    EXPECT_TRUE(WriteVersion(store, recipe, version, folder / "out.rcp", reporter));
    EXPECT_EQ(ReadAll(folder / "out.rcp"), WordBytes({1, 2, 3}));
    EXPECT_EQ(ReadAll(recipe), WordBytes({4}));
    EXPECT_FALSE(WriteVersion(store, recipe, version, folder / "none" / "out.rcp", reporter));
    EXPECT_EQ(reporter.shown.size(), 1U);
}

} // namespace
