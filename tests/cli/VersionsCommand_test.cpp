#include "library/LibraryLock.h"
#include "recovery/VersionStore.h"
#include "tests/cli/CliTest.h"
#include "tests/support/FakeChanges.h"
#include "tests/support/Variable.h"

namespace fs = std::filesystem;

namespace {

/// A recipe file of two words with two earlier versions, in a data folder of the test's own.
struct VersionsCommand : CliTest {
    VersionsCommand()
    {
        WriteAll(file, BytesOf({'\n', 0, 0xFF, 0, 7}));
        older = Keep(u"Save");
        WriteAll(file, WordBytes({10, 2, 3, 4}));
        newer = Keep(u"set");
        WriteAll(file, WordBytes({10, 5}));
    }

    std::string Keep(std::u16string_view command) const
    {
        const VersionKept kept = store.Keep(file, command);
        EXPECT_EQ(kept.result, VersionKept::Result::Kept);
        return kept.stamp;
    }

    /// The command with its file and what follows, but without a library: it has none.
    static ProcessResult Versions(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "versions");
        return RunCli(arguments);
    }

    static void ExpectPrinted(const std::vector<std::string>& arguments, const std::string& out)
    {
        const ProcessResult result = Versions(arguments);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, out);
        EXPECT_EQ(result.error, "");
    }

    static void ExpectFailed(const std::vector<std::string>& arguments, const std::string& message)
    {
        const ProcessResult result = Versions(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, message + "\n");
    }

    fs::path data = folder / "home";
    CVariable dataHome{"XDG_DATA_HOME", data.c_str()};
    CVariable variable{"VANTOR_VERSIONS", nullptr};
    CVersionStore store{data / "vantor"};
    fs::path file = folder / "oven.rcp";
    std::string older;
    std::string newer;
};

TEST_F(VersionsCommand, ListsThemTheNewestFirst)
{
    ExpectPrinted({"list", file.string()}, newer + "\tset\t4\t3\n" + older + "\tSave\t2\t2\n");
}

TEST_F(VersionsCommand, ShowsTheNewestWhereNoTimeIsGiven)
{
    const ProcessResult newest = Versions({"show", file.string()});
    EXPECT_EQ(newest.exitCode, 0);
    EXPECT_EQ(newest.out, Versions({"show", file.string(), newer}).out);
}

TEST_F(VersionsCommand, RestoresALibraryAndLeavesNoLock)
{
    const Bytes old = ReadAll(libraryPath);
    store.Keep(libraryPath, u"formats import");
    library.rowCount = 7;
    SaveLibrary();
    ExpectPrinted({"restore", libraryPath.string()}, "");
    EXPECT_EQ(ReadAll(libraryPath), old);
    EXPECT_FALSE(fs::exists(fs::path(libraryPath) += ".lock"));
}

/// As a window that is just writing the formats: it ends within a moment, or the work goes on without its lock.
TEST_F(VersionsCommand, RestoresALibraryThatAnotherProgramKeepsLocked)
{
    const Bytes old = ReadAll(libraryPath);
    store.Keep(libraryPath, u"formats import");
    library.rowCount = 7;
    SaveLibrary();
    const CLibraryLock lock(libraryPath);
    ASSERT_TRUE(lock.IsHeld());
    ExpectPrinted({"restore", libraryPath.string()}, "");
    EXPECT_EQ(ReadAll(libraryPath), old);
    EXPECT_TRUE(fs::exists(fs::path(libraryPath) += ".lock")) << "it is the other's";
}

TEST_F(VersionsCommand, ListsAndForgetsTheOneOfATime)
{
    ExpectPrinted({"list", file.string(), newer}, newer + "\tset\t4\t3\n");
    ExpectPrinted({"forget", file.string(), newer}, "");
    ExpectPrinted({"list", file.string()}, older + "\tSave\t2\t2\n");
    ExpectFailed({"forget", file.string(), newer}, "File " + file.string() + " has no version " + newer + "!");
}

TEST_F(VersionsCommand, ListsNothingWhereThereAreNone)
{
    const CVariable elsewhere("XDG_DATA_HOME", (folder / "empty").c_str());
    ExpectPrinted({"list", file.string()}, "");
    ExpectPrinted({"list", (folder / "none.rcp").string()}, "");
    ExpectPrinted({"forget", file.string()}, "");
    EXPECT_FALSE(fs::exists(folder / "empty"));
}

TEST_F(VersionsCommand, ListsWhatCannotBeToldAsADash)
{
    fs::remove(store.PathOf(file, store.List(file).at(0)).replace_extension(".json"));
    fs::remove(file);
    ExpectPrinted({"list", file.string()}, newer + "\t-\t4\t-\n" + older + "\tSave\t2\t-\n");
    const fs::path table = folder / "a.csv";
    WriteAll(table, Utf16File(u"1"));
    const std::string stamp = store.Keep(table, u"Save").stamp;
    ExpectPrinted({"list", table.string()}, stamp + "\tSave\t-\t0\n");
    WriteAll(table, Utf16File(u"2"));
    ExpectPrinted({"list", table.string()}, stamp + "\tSave\t-\t-\n");
}

TEST_F(VersionsCommand, PrintsAVersionByteForByte)
{
    const ProcessResult result = Versions({"show", file.string(), older});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(TextBytes(result.out), BytesOf({'\n', 0, 0xFF, 0, 7}));
    EXPECT_EQ(ReadAll(file), WordBytes({10, 5}));
}

TEST_F(VersionsCommand, WritesAVersionToAFile)
{
    const fs::path out = folder / "out.rcp";
    ExpectPrinted({"show", file.string(), newer, "-o", out.string()}, "");
    EXPECT_EQ(ReadAll(out), WordBytes({10, 2, 3, 4}));
    ExpectPrinted({"show", file.string(), older, "--output", out.string()}, "");
    EXPECT_EQ(ReadAll(out), BytesOf({'\n', 0, 0xFF, 0, 7}));
    ASSERT_EQ(store.List(out).size(), 1U); // a recipe file was overwritten
    EXPECT_EQ(store.List(out)[0].words, 4U);
}

TEST_F(VersionsCommand, DoesNotWriteAVersionOverItsFile)
{
    ExpectFailed({"show", file.string(), newer, "-o", file.string()},
                 "File " + file.string() + " is the file itself: \"versions restore\" brings it back!");
    EXPECT_EQ(ReadAll(file), WordBytes({10, 5}));
}

TEST_F(VersionsCommand, RestoresTheNewestOrTheOneOfATime)
{
    ExpectPrinted({"restore", file.string(), older}, "");
    EXPECT_EQ(ReadAll(file), BytesOf({'\n', 0, 0xFF, 0, 7}));
    ASSERT_EQ(store.List(file).size(), 3U);
    EXPECT_EQ(store.List(file)[0].command, u"Restore");
    ExpectPrinted({"restore", file.string()}, ""); // which takes it back
    EXPECT_EQ(ReadAll(file), WordBytes({10, 5}));
}

TEST_F(VersionsCommand, RestoresAFileThatWasRemoved)
{
    fs::remove(file);
    ExpectPrinted({"restore", file.string()}, "");
    EXPECT_EQ(ReadAll(file), WordBytes({10, 2, 3, 4}));
}

TEST_F(VersionsCommand, TakesTheBeginningOfATime)
{
    const fs::path copy = store.PathOf(file, store.List(file).at(1));
    fs::copy(copy, copy.parent_path() / "20200102T030405.678Z.rcp");
    ExpectPrinted({"restore", file.string(), "2020"}, "");
    EXPECT_EQ(ReadAll(file), BytesOf({'\n', 0, 0xFF, 0, 7}));
    ExpectFailed({"restore", file.string(), "2"}, "File " + file.string() + " has several versions that begin with 2!");
}

TEST_F(VersionsCommand, TellsOfATimeWithoutAVersion)
{
    for (const char* command : {"show", "restore"})
        ExpectFailed({command, file.string(), "1999"}, "File " + file.string() + " has no version 1999!");
    ExpectFailed({"restore", recipe.string()}, "File " + recipe.string() + " has no earlier version!");
    EXPECT_EQ(Versions({"show"}).exitCode, 2);
    EXPECT_EQ(Versions({}).exitCode, 2);
    EXPECT_EQ(Versions({"list"}).exitCode, 2);
}

TEST_F(VersionsCommand, TellsWhenNoVersionWasKept)
{
    const fs::path newest = store.PathOf(file, store.List(file).at(0));
    fs::rename(newest, newest.parent_path() / "99991231T235959.999Z.rcp"); // no time is later
    const ProcessResult result = Versions({"restore", file.string()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.error.starts_with("No earlier version of file " + file.string() + " was kept: "))
        << result.error;
    EXPECT_EQ(ReadAll(file), WordBytes({10, 2, 3, 4}));
}

TEST_F(VersionsCommand, ForgetsThem)
{
    const CVariable off("VANTOR_VERSIONS", "off");
    ExpectPrinted({"forget", file.string()}, "");
    ExpectPrinted({"list", file.string()}, "");
    EXPECT_TRUE(fs::is_empty(data / "vantor" / "versions"));
    EXPECT_EQ(ReadAll(file), WordBytes({10, 5}));
}

TEST_F(VersionsCommand, GoesBackByKeptChanges)
{
    CFakeChanges changes;
    changes.header = {.type = FileType::Rcp, .bytes = 4, .newBytes = 6};
    ChangeRecord record;
    record.address = WordAddress(1);
    record.oldWords = WordBytes({5});
    record.newWords = WordBytes({6, 7});
    changes.records.push_back(record);
    const std::string stamp = store.KeepChanges(file, u"Save", changes).stamp;
    WriteAll(file, WordBytes({10, 6, 7}));
    const ProcessResult shown = Versions({"show", file.string(), stamp});
    EXPECT_EQ(TextBytes(shown.out), WordBytes({10, 5}));
    WriteAll(file, WordBytes({10, 6, 8}));
    const std::string refusal = "Can't go back to version " + stamp + " of file " + file.string() +
                                ": words do not hold what was written then: RW1!";
    for (const char* command : {"show", "restore"})
        ExpectFailed({command, file.string(), stamp}, refusal);
    EXPECT_EQ(ReadAll(file), WordBytes({10, 6, 8}));
}

} // namespace
