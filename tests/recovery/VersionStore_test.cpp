#include "disk/File.h"
#include "disk/FileNames.h"
#include "recovery/VersionSetting.h"
#include "tests/recovery/VersionTest.h"
#include "text/UtcTime.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <regex>

namespace fs = std::filesystem;

namespace {

using VersionStore = VersionTest;

std::string TextOf(const fs::path& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(VersionStore, KeepsAPlainCopyWithANote)
{
    const VersionKept kept = store.Keep(recipe, u"Save");
    EXPECT_EQ(kept.result, Result::Kept);
    EXPECT_TRUE(kept.IsSafe());
    EXPECT_TRUE(TimeOfStamp(kept.stamp));
    const fs::path kind = OnlyFolder();
    EXPECT_TRUE(std::regex_match(kind.filename().string(), std::regex("oven\\.rcp-[0-9a-f]{16}"))) << kind;
    EXPECT_EQ(NamesIn(kind), (std::set<std::string>{kept.stamp + ".json", kept.stamp + ".rcp"}));
    EXPECT_EQ(ReadAll(kind / (kept.stamp + ".rcp")), WordBytes({1, 2, 3}));

    const auto note = nlohmann::json::parse(TextOf(kind / (kept.stamp + ".json")));
    EXPECT_TRUE(std::regex_match(note["time"].get<std::string>(), std::regex("[0-9-]{10}T[0-9:]{8}Z")));
    EXPECT_EQ(note["vantor"], "version");
    EXPECT_EQ(note["version"], 1);
    EXPECT_EQ(note["file"], fs::canonical(recipe).string());
    EXPECT_EQ(note["command"], "Save");
    EXPECT_EQ(note["words"], 3);
    EXPECT_EQ(note["bytes"], 6);
}

TEST_F(VersionStore, ListsTheNewestFirst)
{
    const std::string first = KeepAndWrite(recipe, WordBytes({4}));
    EXPECT_EQ(Keep(recipe, u"set"), Result::Kept);
    const auto versions = store.List(recipe);
    ASSERT_EQ(versions.size(), 2U);
    EXPECT_EQ(versions[0].command, u"set");
    EXPECT_EQ(versions[0].words, 1U);
    EXPECT_EQ(versions[0].bytes, 2U);
    EXPECT_EQ(Content(recipe, versions[0]), WordBytes({4}));
    EXPECT_EQ(versions[1].stamp, first);
    EXPECT_EQ(versions[1].command, u"Save");
    EXPECT_FALSE(versions[1].isRecords);
    EXPECT_EQ(Content(recipe, versions[1]), WordBytes({1, 2, 3}));
}

TEST_F(VersionStore, IsForTheUserAlone)
{
    const std::string stamp = KeepAndWrite(recipe, {});
    const fs::path kind = OnlyFolder();
    for (const fs::path& path : {Versions(), kind})
        EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all) << path;
    for (const char* end : {".rcp", ".json"})
        EXPECT_EQ(fs::status(kind / (stamp + end)).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(VersionStore, KeepsWhatIsTheSameOnce)
{
    const VersionKept first = store.Keep(recipe, u"Save");
    const VersionKept again = store.Keep(recipe, u"Save");
    EXPECT_EQ(again.result, Result::Same);
    EXPECT_EQ(again.stamp, first.stamp);
    WriteAll(recipe, WordBytes({1, 2, 4}));
    EXPECT_EQ(Keep(recipe), Result::Kept);
    WriteAll(recipe, WordBytes({1, 2, 3})); // as the one before the newest
    EXPECT_EQ(Keep(recipe), Result::Kept);
    EXPECT_EQ(store.List(recipe).size(), 3U);
}

TEST_F(VersionStore, KeepsAnEmptyFile)
{
    WriteAll(recipe, {});
    EXPECT_EQ(Keep(recipe), Result::Kept);
    EXPECT_EQ(Keep(recipe), Result::Same);
    ASSERT_EQ(store.List(recipe).size(), 1U);
    EXPECT_EQ(store.List(recipe)[0].bytes, 0U);
}

TEST_F(VersionStore, HasNothingToKeepOfAMissingFile)
{
    EXPECT_EQ(Keep(folder / "none.rcp"), Result::Nothing);
    EXPECT_FALSE(fs::exists(data));
}

TEST_F(VersionStore, KeepsNothingOfAFolder)
{
    const VersionKept kept = store.Keep(folder.Path(), u"Save");
    EXPECT_EQ(kept.result, Result::Nothing);
    EXPECT_EQ(NotKeptText(kept, folder.Path()), u"");
}

TEST_F(VersionStore, KeepsNothingWhereItIsOff)
{
    ASSERT_TRUE(SetVersionsKept(data, false));
    EXPECT_EQ(Keep(recipe), Result::Off);
    EXPECT_FALSE(fs::exists(Versions()));
}

TEST_F(VersionStore, NeedsAFolderForTheUser)
{
    const CVersionStore none{fs::path()};
    const VersionKept kept = none.Keep(recipe, u"Save");
    EXPECT_EQ(kept.result, Result::Failed);
    EXPECT_EQ(kept.reason, u"There is no folder for the user's data");
    EXPECT_TRUE(none.List(recipe).empty());
    EXPECT_TRUE(none.Forget(recipe));
    EXPECT_TRUE(none.ForgetAll());
}

TEST_F(VersionStore, ListingMakesNothing)
{
    EXPECT_TRUE(store.List(recipe).empty());
    EXPECT_TRUE(store.Find(recipe, "2026").empty());
    EXPECT_FALSE(fs::exists(data));
}

TEST_F(VersionStore, KnowsAFileByWhatItsNamesLeadTo)
{
    fs::create_symlink(recipe, folder / "link.rcp");
    fs::create_directory(folder / "sub");
    KeepAndWrite(folder / "link.rcp", WordBytes({9}));
    EXPECT_EQ(store.List(recipe).size(), 1U);
    EXPECT_EQ(store.List(folder / "sub" / ".." / "oven.rcp").size(), 1U);
    fs::remove(recipe); // the link leads nowhere now, but still there
    EXPECT_EQ(store.List(recipe).size(), 1U);
    EXPECT_EQ(store.List(folder / "link.rcp").size(), 1U);
}

TEST_F(VersionStore, KnowsAFileInWhateverCaseWhereTheSystemDoes)
{
    EXPECT_EQ(Keep(recipe), Result::Kept);
    const fs::path other = folder / "Oven.RCP";
    const std::vector<Version> versions = store.List(other);
    ASSERT_EQ(versions.size(), IsCaseIgnored() ? 1U : 0U);
    EXPECT_EQ(IsCaseIgnored(), fs::exists(other));
    for (const Version& version : versions)
        EXPECT_EQ(Content(other, version), WordBytes({1, 2, 3}));
}

TEST_F(VersionStore, KeepsFilesOfOneNameApart)
{
    fs::create_directory(folder / "sub");
    WriteAll(folder / "sub" / "oven.rcp", WordBytes({7}));
    EXPECT_EQ(Keep(recipe), Result::Kept);
    EXPECT_EQ(Keep(folder / "sub" / "oven.rcp"), Result::Kept);
    EXPECT_EQ(NamesIn(Versions()).size(), 2U);
    EXPECT_EQ(Content(recipe, store.List(recipe).at(0)), WordBytes({1, 2, 3}));
}

/// Names as long as a file system takes, with and without an extension, and ones that look like something else here.
TEST_F(VersionStore, KeepsFilesOfAnyName)
{
    const std::string accents = "\xC3\xA9"; // a character of two bytes is not cut
    std::string longest = "x";
    while (longest.size() < 250)
        longest += accents;
    for (const std::string& name : {longest + ".rcp", std::string(255, 'n'), "a." + std::string(250, 'e'),
                                    std::string("formats.json"), std::string("changes.jsonl"), std::string("a.part"),
                                    std::string(".rcp"), std::string("none"), std::string("half\xFF.rcp")}) {
        const fs::path file = folder / name;
        WriteAll(file, TextOf(recipe).empty() ? Bytes() : BytesOf({1, 2}));
        EXPECT_EQ(Keep(file), Result::Kept) << name;
        EXPECT_EQ(Keep(file), Result::Same) << name;
        const auto versions = store.List(file);
        ASSERT_EQ(versions.size(), 1U) << name;
        EXPECT_EQ(versions[0].command, u"Save") << name;
        EXPECT_EQ(Content(file, versions[0]), BytesOf({1, 2})) << name;
        EXPECT_TRUE(store.Forget(file)) << name;
        EXPECT_EQ(NamesIn(Versions()).size(), 0U) << name;
    }
}

TEST_F(VersionStore, NamesAscendWhereTheClockWasSetBack)
{
    EXPECT_EQ(Keep(recipe), Result::Kept);
    const fs::path kind = OnlyFolder();
    WriteAll(kind / "20991231T235959.999Z.rcp", WordBytes({5}));
    EXPECT_EQ(store.Keep(recipe, u"Save").stamp, "21000101T000000.000Z");
    WriteAll(recipe, WordBytes({6}));
    EXPECT_EQ(store.Keep(recipe, u"Save").stamp, "21000101T000000.001Z");
    EXPECT_EQ(store.List(recipe).size(), 4U);
}

TEST_F(VersionStore, TellsWhenThereIsNoLaterName)
{
    EXPECT_EQ(Keep(recipe), Result::Kept);
    WriteAll(OnlyFolder() / "99991231T235959.999Z.rcp", WordBytes({5}));
    const VersionKept kept = store.Keep(recipe, u"Save");
    EXPECT_EQ(kept.result, Result::Failed);
    EXPECT_FALSE(kept.reason.empty());
    EXPECT_EQ(store.List(recipe).size(), 2U);
}

TEST_F(VersionStore, ListsVersionsWithoutAGoodNote)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({4}));
    const fs::path note = OnlyFolder() / (stamp + ".json");
    const std::string big = "{\"vantor\":\"version\",\"words\":1e9,\"command\":7,\"bytes\":-1}";
    for (const std::string& text :
         {std::string(), std::string("{\"vantor\":"), std::string("[]"), big, std::string(100000, ' '),
          std::string("{\"vantor\":\"other\",\"command\":\"x\"}")}) {
        WriteAll(note, std::as_bytes(std::span(text)));
        const auto versions = store.List(recipe);
        ASSERT_EQ(versions.size(), 1U);
        EXPECT_EQ(versions[0].stamp, stamp);
        EXPECT_EQ(versions[0].command, u"");
        EXPECT_EQ(versions[0].words, 3U);
        EXPECT_EQ(versions[0].bytes, 6U);
    }
    fs::remove(note);
    EXPECT_EQ(store.List(recipe).size(), 1U);
}

TEST_F(VersionStore, LeavesWhatIsNotItsOwn)
{
    KeepAndWrite(recipe, WordBytes({4}));
    const fs::path kind = OnlyFolder();
    const std::set<std::string> foreign = {"notes.txt",
                                           "20200101T000000.000Z.txt",
                                           "20200101T000000.000Z.rcp.bak",
                                           "20200101T000000.000Z copy.rcp",
                                           "20201301T000000.000Z.rcp",
                                           "20200101T000000.000Z"};
    for (const std::string& name : foreign)
        WriteAll(kind / name, WordBytes({8}));
    fs::create_directory(kind / "20200101T000000.000Z.rcp");
    fs::create_directory(Versions() / "mine");
    WriteAll(Versions() / "mine" / "20200101T000000.000Z.rcp", WordBytes({8}));

    EXPECT_EQ(Keep(recipe), Result::Kept);
    EXPECT_EQ(store.List(recipe).size(), 2U);
    EXPECT_TRUE(store.Forget(recipe));
    EXPECT_TRUE(store.ForgetAll());
    std::set<std::string> left = foreign;
    left.insert("20200101T000000.000Z.rcp");
    EXPECT_EQ(NamesIn(kind), left);
    EXPECT_EQ(NamesIn(Versions() / "mine").size(), 1U);
}

TEST_F(VersionStore, ClearsAwayWhatWasNotCompleted)
{
    KeepAndWrite(recipe, WordBytes({4}));
    const fs::path kind = OnlyFolder();
    for (const char* name : {"20200101T000000.000Z.json", "20200101T000000.000Z.part", "20210101T000000.000Z.part"})
        WriteAll(kind / name, BytesOf({1}));
    EXPECT_EQ(store.List(recipe).size(), 1U);
    EXPECT_EQ(Keep(recipe), Result::Kept);
    EXPECT_EQ(NamesIn(kind).size(), 4U); // two versions with their notes
}

TEST_F(VersionStore, LeavesAVersionThatIsBeingMade)
{
    KeepAndWrite(recipe, WordBytes({4}));
    const fs::path kind = OnlyFolder();
    WriteAll(kind / "20200101T000000.000Z.part", BytesOf({1}));
    CFile note(kind / "20200101T000000.000Z.json", CFile::Mode::CreatePrivate);
    ASSERT_EQ(note.Hold(), Holder::ThisFile);
    EXPECT_EQ(Keep(recipe), Result::Kept);
    EXPECT_EQ(NamesIn(kind).size(), 6U);
}

TEST_F(VersionStore, RemovesTheOldestWhenItKeepsOne)
{
    KeepAndWrite(recipe, WordBytes({4}));
    const fs::path kind = OnlyFolder();
    for (int i = 100; i < 160; ++i)
        WriteAll(kind / ("20200101T000000." + std::to_string(i) + "Z.rcp"), WordBytes({8}));
    EXPECT_EQ(Keep(recipe), Result::Kept);
    const auto versions = store.List(recipe);
    ASSERT_EQ(versions.size(), 50U);
    EXPECT_EQ(versions.back().stamp, "20200101T000000.112Z");
}

TEST_F(VersionStore, TakesTenThousandVersions)
{
    for (int file = 100; file < 200; ++file) {
        const fs::path kind = Versions() / ("f" + std::to_string(file) + ".rcp-0123456789abcdef");
        fs::create_directories(kind);
        for (int version = 100; version < 200; ++version)
            WriteAll(kind / ("20200101T000000." + std::to_string(version) + "Z.rcp"), {});
    }
    EXPECT_EQ(Keep(recipe), Result::Kept);
    EXPECT_EQ(store.List(recipe).size(), 1U);
    EXPECT_EQ(NamesIn(Versions() / "f100.rcp-0123456789abcdef").size(), 50U);
    EXPECT_TRUE(NamesIn(Versions() / "f199.rcp-0123456789abcdef").contains("20200101T000000.199Z.rcp"));
    EXPECT_TRUE(store.ForgetAll());
    EXPECT_TRUE(NamesIn(Versions()).empty());
}

TEST_F(VersionStore, FindsVersionsByTheBeginningOfTheirTime)
{
    KeepAndWrite(recipe, WordBytes({4}));
    const fs::path kind = OnlyFolder();
    WriteAll(kind / "20200101T000000.000Z.rcp", WordBytes({8}));
    WriteAll(kind / "20200102T000000.000Z.rcp", WordBytes({8}));
    EXPECT_EQ(store.Find(recipe, "2020010").size(), 2U);
    EXPECT_EQ(store.Find(recipe, "2020010").at(0).stamp, "20200102T000000.000Z");
    EXPECT_EQ(store.Find(recipe, "20200101").size(), 1U);
    EXPECT_TRUE(store.Find(recipe, "1999").empty());
    EXPECT_EQ(store.Find(recipe, "").size(), 3U);
}

TEST_F(VersionStore, ForgetsAFileOrAll)
{
    const fs::path other = folder / "other.csv";
    WriteAll(other, Utf16File(u"a"));
    KeepAndWrite(recipe, WordBytes({4}));
    KeepAndWrite(other, {});
    EXPECT_FALSE(store.List(other).at(0).words);
    ASSERT_TRUE(SetVersionsKept(data, false)); // which does not matter
    EXPECT_TRUE(store.Forget(recipe));
    EXPECT_TRUE(store.Forget(recipe));
    EXPECT_TRUE(store.List(recipe).empty());
    EXPECT_EQ(store.List(other).size(), 1U);
    EXPECT_TRUE(store.ForgetAll());
    EXPECT_TRUE(NamesIn(Versions()).empty());
}

TEST_F(VersionStore, FailsWhereAFileIsInTheWay)
{
    for (const fs::path& inTheWay : {data, Versions()}) {
        fs::create_directories(inTheWay.parent_path());
        WriteAll(inTheWay, BytesOf({1}));
        const VersionKept kept = store.Keep(recipe, u"Save");
        EXPECT_EQ(kept.result, Result::Failed);
        EXPECT_EQ(kept.reason, u"Not a directory");
        EXPECT_TRUE(store.List(recipe).empty());
        EXPECT_EQ(ReadAll(inTheWay), BytesOf({1}));
        fs::remove(inTheWay);
    }
}

TEST_F(VersionStore, AsksForTheChangesOfALargeFile)
{
    fs::resize_file(recipe, kMostCopiedBytes);
    EXPECT_EQ(Keep(recipe), Result::Kept);
    fs::resize_file(recipe, kMostCopiedBytes + 1);
    EXPECT_EQ(Keep(recipe), Result::NeedsChanges);
    EXPECT_EQ(store.List(recipe).size(), 1U);
}

/// It has no words.
TEST_F(VersionStore, CopiesALargeTable)
{
    const fs::path table = folder / "a.csv";
    WriteAll(table, {});
    fs::resize_file(table, kMostCopiedBytes + 1);
    EXPECT_EQ(Keep(table), Result::Kept);
    fs::resize_file(table, (std::uint64_t{512} << 20) + 1);
    EXPECT_EQ(Keep(table), Result::Failed);
}

} // namespace
