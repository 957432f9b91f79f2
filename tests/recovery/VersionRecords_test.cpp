#include "recovery/VersionContent.h"
#include "recovery/VersionRestore.h"
#include "tests/recovery/VersionTest.h"
#include "tests/support/FakeChanges.h"
#include "tests/support/RecordingReporter.h"

#include <algorithm>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

namespace {

/// The changes that lead from one content of a file of words to another, worked out word by word.
CFakeChanges ChangesFrom(const Bytes& before, const Bytes& after, FileType type = FileType::Rcp)
{
    CFakeChanges changes;
    changes.header.type = type;
    changes.header.bytes = static_cast<std::int64_t>(before.size());
    changes.header.newBytes = static_cast<std::int64_t>(after.size());
    const auto word = [](const Bytes& bytes, std::size_t at) {
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(2 * at, bytes.size()));
        const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(2 * at + 2, bytes.size()));
        return WordRun(begin, end);
    };
    for (std::size_t i = 0; 2 * i < std::max(before.size(), after.size()); ++i) {
        if (word(before, i) == word(after, i))
            continue;
        ChangeRecord record;
        record.address = WordAddress(static_cast<std::int64_t>(i));
        record.oldWords = word(before, i);
        record.newWords = word(after, i);
        changes.records.push_back(record);
    }
    return changes;
}

struct VersionRecords : VersionTest {
    /// Keeps the changes only, and makes them; gives the version's stamp.
    std::string Change(const fs::path& file, const Bytes& after, FileType type = FileType::Rcp)
    {
        const VersionKept kept = store.KeepChanges(file, u"Save", ChangesFrom(ReadAll(file), after, type));
        EXPECT_EQ(kept.result, Result::Kept) << std::string(kept.reason.begin(), kept.reason.end());
        WriteAll(file, after);
        return kept.stamp;
    }

    void ExpectRefused(const std::string& stamp, const std::u16string& reason)
    {
        const Bytes before = ReadAll(recipe);
        EXPECT_FALSE(RestoreVersion(store, recipe, stamp, reporter));
        ASSERT_EQ(reporter.shown.size(), 1U);
        EXPECT_NE(reporter.shown[0].find(reason), std::u16string::npos)
            << std::string(reporter.shown[0].begin(), reporter.shown[0].end());
        EXPECT_EQ(ReadAll(recipe), before);
        EXPECT_EQ(store.List(recipe)[0].command, u"Save"); // and none was kept for it
    }

    CRecordingReporter reporter;
};

TEST_F(VersionRecords, AreLinesOfJsonWithANote)
{
    const std::string stamp = Change(recipe, WordBytes({1, 5, 3}));
    EXPECT_EQ(NamesIn(OnlyFolder()), (std::set<std::string>{stamp + ".json", stamp + ".jsonl"}));
    std::ifstream lines(OnlyFolder() / (stamp + ".jsonl"));
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    EXPECT_EQ(line, R"({"address":1,"oldWords":"0002","newWords":"0005"})");
    EXPECT_EQ(fs::status(OnlyFolder() / (stamp + ".jsonl")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    const auto versions = store.List(recipe);
    ASSERT_EQ(versions.size(), 1U);
    EXPECT_TRUE(versions[0].isRecords);
    EXPECT_EQ(versions[0].words, 3U);
    EXPECT_EQ(versions[0].bytes, 6U);
}

TEST_F(VersionRecords, GoBackThroughNewerOnes)
{
    const Bytes first = ReadAll(recipe);
    const std::vector<Bytes> contents = {WordBytes({1, 5, 3}), WordBytes({1, 6, 7, 8, 0, 0}), BytesOf({1, 0, 6}),
                                         BytesOf({1, 0, 0, 0, 0, 0, 9}), WordBytes({1, 6})};
    std::vector<std::string> stamps;
    for (const Bytes& content : contents)
        stamps.push_back(Change(recipe, content));
    const fs::path out = folder / "out.rcp";
    for (std::size_t i = 0; i < stamps.size(); ++i) { // all of them from the last content
        EXPECT_TRUE(WriteVersion(store, recipe, store.Find(recipe, stamps[i]).at(0), out, reporter));
        EXPECT_EQ(ReadAll(out), i == 0 ? first : contents[i - 1]) << i;
    }
    EXPECT_EQ(ReadAll(recipe), contents.back());
    EXPECT_TRUE(RestoreVersion(store, recipe, stamps.front(), reporter));
    EXPECT_EQ(ReadAll(recipe), first);
    EXPECT_EQ(store.List(recipe)[0].command, u"Restore");
    EXPECT_TRUE(RestoreVersion(store, recipe, stamps[2], reporter)); // on by way of what was kept for that
    EXPECT_EQ(ReadAll(recipe), contents[1]);
    EXPECT_TRUE(reporter.shown.empty());
}

/// Old and new contents of any size, all of them gone back to.
TEST_F(VersionRecords, GoBackToAnyContent)
{
    std::mt19937 random(17);
    std::vector<Bytes> contents = {ReadAll(recipe)};
    std::vector<std::string> stamps;
    for (int i = 0; i < 12; ++i) {
        Bytes next = contents.back();
        next.resize(random() % 2 == 0 ? next.size() : random() % 9000);
        for (std::size_t changes = next.empty() ? 0 : random() % 6; changes > 0; --changes)
            next[random() % next.size()] = static_cast<std::byte>(random() % 3);
        if (next == contents.back())
            next.push_back(std::byte{1});
        stamps.push_back(Change(recipe, next));
        contents.push_back(next);
    }
    for (int i = 0; i < 6; ++i) {
        const std::size_t to = random() % stamps.size();
        EXPECT_TRUE(RestoreVersion(store, recipe, stamps[to], reporter));
        EXPECT_EQ(ReadAll(recipe), contents[to]) << to;
    }
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(VersionRecords, CountTheWordsThatDiffer)
{
    const std::string first = Change(recipe, WordBytes({1, 5, 3}));
    const std::string second = Change(recipe, WordBytes({1, 5, 4, 0, 0, 8}));
    EXPECT_EQ(CountDifferentWords(store, recipe, second), 4U);
    EXPECT_EQ(CountDifferentWords(store, recipe, first), 5U);
    WriteAll(recipe, WordBytes({1}));
    EXPECT_EQ(CountDifferentWords(store, recipe, second), std::nullopt);
}

TEST_F(VersionRecords, BeginWithACopyThatIsNewer)
{
    const std::string first = Change(recipe, WordBytes({1, 5, 3}));
    KeepAndWrite(recipe, WordBytes({9, 9}));
    EXPECT_TRUE(RestoreVersion(store, recipe, first, reporter));
    EXPECT_EQ(ReadAll(recipe), WordBytes({1, 2, 3}));
    EXPECT_EQ(Content(recipe, store.List(recipe).at(0)), WordBytes({9, 9}));
    fs::remove(recipe); // which is not needed then
    EXPECT_TRUE(RestoreVersion(store, recipe, first, reporter));
    EXPECT_EQ(ReadAll(recipe), WordBytes({1, 2, 3}));
}

TEST_F(VersionRecords, TellWhichWordsAreOthersNow)
{
    const std::string stamp = Change(recipe, WordBytes({4, 5, 3}));
    WriteAll(recipe, WordBytes({4, 6, 3}));
    ExpectRefused(stamp, u"words do not hold what was written then: RW1!");
}

TEST_F(VersionRecords, TellAFewWordsOfMany)
{
    WriteAll(recipe, WordBytes({1, 1, 1, 1, 1, 1, 1}));
    const std::string stamp = Change(recipe, WordBytes({2, 2, 2, 2, 2, 2, 2}));
    WriteAll(recipe, WordBytes({3, 3, 3, 3, 3, 3, 3}));
    ExpectRefused(stamp, u": RW0, RW1, RW2, RW3, RW4 and 2 more!");
}

TEST_F(VersionRecords, TellOfAnotherSize)
{
    const std::string stamp = Change(recipe, WordBytes({4, 5, 3}));
    WriteAll(recipe, WordBytes({4, 5, 3, 1}));
    ExpectRefused(stamp, u"the file has another size than after that change");
}

TEST_F(VersionRecords, TellOfAFileThatHasGone)
{
    const std::string stamp = Change(recipe, WordBytes({4, 5, 3}));
    fs::remove(recipe);
    EXPECT_FALSE(RestoreVersion(store, recipe, stamp, reporter));
    EXPECT_EQ(reporter.shown.size(), 1U);
    EXPECT_FALSE(fs::exists(recipe));
}

TEST_F(VersionRecords, TellOfDamage)
{
    const std::string header = R"({"vantor":"changes","version":1,"type":"rcp","bytes":6,"newBytes":6})";
    const std::string good = R"({"address":1,"oldWords":"0002","newWords":"0005"})";
    const std::string stamp = Change(recipe, WordBytes({1, 5, 3}));
    const fs::path records = OnlyFolder() / (stamp + ".jsonl");
    const std::vector<std::string> damaged = {
        "",
        "{",
        good,
        header + "\n{\"address\":1,\"oldWords\":\"00",
        header + "\n{\"row\":1,\"column\":2,\"old\":\"1\"}",
        header + "\n{\"address\":4611686018427387000,\"oldWords\":\"0001\"}",
        header + "\n{\"address\":3,\"zeros\":-9223372036854775808}",
        R"({"vantor":"changes","version":1,"type":"erp","bytes":6,"newBytes":6})",
        R"({"vantor":"changes","version":1,"type":"rcp","newBytes":6})",
        R"({"vantor":"changes","version":1,"type":"rcp","bytes":8,"newBytes":6})",
        R"({"vantor":"changes","version":1,"type":"rcp","bytes":9000000000000000000,"newBytes":6})"};
    for (const std::string& text : damaged) {
        WriteAll(records, std::as_bytes(std::span(text)));
        reporter.shown.clear();
        ExpectRefused(stamp, u"what was kept of it is damaged");
    }
    const std::string sound = header + '\n' + good + '\n';
    WriteAll(records, std::as_bytes(std::span(sound)));
    EXPECT_TRUE(RestoreVersion(store, recipe, stamp, reporter));
}

TEST_F(VersionRecords, AreKeptOnlyOfWhatTheFileHolds)
{
    const auto expectFailed = [this](const CFakeChanges& changes, const std::u16string& reason) {
        const VersionKept kept = store.KeepChanges(recipe, u"Save", changes);
        EXPECT_EQ(kept.result, Result::Failed);
        EXPECT_EQ(kept.reason, reason);
        EXPECT_TRUE(store.List(recipe).empty());
    };
    const Bytes now = ReadAll(recipe);
    const Bytes next = WordBytes({1, 5, 3});
    expectFailed(ChangesFrom(WordBytes({1, 7, 3}), next), u"The file was changed by another program");
    expectFailed(ChangesFrom(WordBytes({1, 2}), next), u"The file was changed by another program");
    const std::u16string unknown = u"What is about to change is not known";
    expectFailed(ChangesFrom(now, next, FileType::Erp), unknown);
    CFakeChanges changes = ChangesFrom(now, next);
    changes.isComplete = false;
    expectFailed(changes, unknown);
    changes = ChangesFrom(now, next);
    changes.records[0].address.reset();
    expectFailed(changes, unknown);
    changes = ChangesFrom(now, next);
    changes.header.newBytes.reset();
    expectFailed(changes, unknown);
}

TEST_F(VersionRecords, AreNotKeptWhereNothingChanges)
{
    const Bytes now = ReadAll(recipe);
    EXPECT_EQ(store.KeepChanges(recipe, u"Save", ChangesFrom(now, now)).result, Result::Same);
    EXPECT_FALSE(fs::exists(data));
}

/// Of a file too large to be copied what it holds now is kept as changes, too.
TEST_F(VersionRecords, ALargeFileIsRestoredInPlace)
{
    fs::resize_file(recipe, kMostCopiedBytes + 10);
    CFakeChanges changes;
    changes.header = {.type = FileType::Rcp,
                      .bytes = static_cast<std::int64_t>(kMostCopiedBytes) + 10,
                      .newBytes = static_cast<std::int64_t>(kMostCopiedBytes) + 10};
    ChangeRecord record;
    record.address = WordAddress(2);
    record.oldWords = WordBytes({3});
    record.newWords = WordBytes({8});
    changes.records.push_back(record);
    ASSERT_EQ(Keep(recipe), Result::NeedsChanges);
    const VersionKept kept = store.KeepChanges(recipe, u"Save", changes);
    ASSERT_EQ(kept.result, Result::Kept);
    {
        CFile file(recipe, CFile::Mode::ReadWrite);
        ASSERT_TRUE(file.WriteAt(4, WordBytes({8})));
    }
    const VersionRestored result = RestoreVersion(store, recipe, kept.stamp, reporter);
    EXPECT_TRUE(result.isRestored);
    EXPECT_EQ(result.kept.result, Result::Kept);
    const auto versions = store.List(recipe);
    ASSERT_EQ(versions.size(), 2U);
    EXPECT_TRUE(versions[0].isRecords);
    CFile file(recipe, CFile::Mode::Read);
    Bytes begin(6);
    file.ReadAt(0, begin);
    EXPECT_EQ(begin, WordBytes({1, 2, 3}));
    EXPECT_EQ(CountDifferentWords(store, recipe, versions[0].stamp), 1U);
}

/// What it held is kept as changes before a copy takes its place.
TEST_F(VersionRecords, ACopyTakesThePlaceOfALargeFile)
{
    const std::string stamp = KeepAndWrite(recipe, WordBytes({1, 7}));
    fs::resize_file(recipe, kMostCopiedBytes + 10);
    const VersionRestored result = RestoreVersion(store, recipe, stamp, reporter);
    EXPECT_TRUE(result.isRestored);
    EXPECT_EQ(result.kept.result, Result::Kept);
    EXPECT_EQ(ReadAll(recipe), WordBytes({1, 2, 3}));
    EXPECT_TRUE(RestoreVersion(store, recipe, result.kept.stamp, reporter));
    EXPECT_EQ(fs::file_size(recipe), kMostCopiedBytes + 10);
    EXPECT_EQ(CountDifferentWords(store, recipe, store.List(recipe).at(0).stamp), kMostCopiedBytes / 2 + 5 - 1);
}

} // namespace
