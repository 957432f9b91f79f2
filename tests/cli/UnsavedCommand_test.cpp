#include "recovery/Journal.h"
#include "recovery/JournalPlace.h"
#include "recovery/UnsavedStore.h"
#include "tests/cli/RunCli.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Variable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace fs = std::filesystem;

namespace {

struct UnsavedCommand : testing::Test {
    CJournal Begin(const char* stamp) const
    {
        WorkHeader header;
        header.file = "/recipes/o\tven.rcp";
        header.format = DefaultFormat();
        header.startAddress = 100;
        header.rowCount = 3;
        header.begun = *TimeOfStamp(stamp);
        std::error_code fault;
        auto journal = CJournal::Begin(data, header, fault);
        EXPECT_TRUE(journal) << fault.message();
        EXPECT_TRUE(journal->Append(
            std::vector{UnsavedCell{{1, 0}, CCellState::OfText(u"12"), {std::byte{5}, std::byte{0}}, std::nullopt}}));
        return *std::move(journal);
    }

    std::string IdOf(const char* begin) const
    {
        for (const UnsavedEntry& entry : CUnsavedStore(data).List())
            if (entry.id.starts_with(begin))
                return entry.id;
        return {};
    }

    static ProcessResult Run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "unsaved");
        return RunCli(arguments);
    }

    static void ExpectRefused(const std::vector<std::string>& arguments, const std::string& message)
    {
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, message + "\n");
    }

    static void ExpectDone(const std::vector<std::string>& arguments)
    {
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out + result.error, "");
    }

    /// ID, number, state and file of each line; the time is looked at alone.
    static std::vector<std::string> Lines(const std::string& out)
    {
        std::vector<std::string> lines;
        for (std::size_t begin = 0; begin < out.size(); begin = out.find('\n', begin) + 1) {
            std::string line = out.substr(begin, out.find('\n', begin) - begin);
            const std::size_t time = line.find('\t') + 1;
            EXPECT_EQ(line.substr(time, 2) + line[time + 10] + line[time + 19], "20TZ") << line;
            lines.push_back(line.erase(time, line.find('\t', time) + 1 - time));
        }
        return lines;
    }

    /// Names, contents and times of all that lies in the folder.
    std::map<std::string, std::pair<Bytes, fs::file_time_type>> Everything() const
    {
        std::map<std::string, std::pair<Bytes, fs::file_time_type>> all;
        for (const auto& entry : fs::recursive_directory_iterator(folder.Path()))
            all[entry.path()] = {entry.is_regular_file() ? ReadAll(entry.path()) : Bytes(), entry.last_write_time()};
        return all;
    }

    using Texts = std::vector<std::string>;

    CTempFolder folder;
    CVariable home{"XDG_DATA_HOME", folder.Path().c_str()};
    fs::path data = folder / "vantor";
};

constexpr const char* kFirst = "20261101T000000.000Z";
constexpr const char* kSecond = "20261102T000000.000Z";
constexpr const char* kThird = "20261103T000000.000Z";

constexpr const char* kShown =
    "{\"vantor\":\"changes\",\"version\":1,\"file\":\"o\\tven.rcp\",\"type\":\"rcp\",\"tables\":"
    "[{\"format\":\"TestDataFormat\",\"start\":100,\"rows\":3}]}\n"
    "{\"address\":101,\"row\":2,\"column\":2,\"item\":\"Desc1\",\"old\":\"5\",\"new\":\"12\",\"oldWords\":\"0005\","
    "\"newWords\":\"000C\",\"why\":\"edited\"}\n";

} // namespace

TEST_F(UnsavedCommand, HasNothingToTellWithoutJournals)
{
    ExpectDone({"list"});
    ExpectDone({"drop"});
    ExpectRefused({"show"}, "No unsaved edits were left behind!");
    ExpectRefused({"show", "x"}, "There are no unsaved edits with the ID x!");
    ExpectRefused({"drop", "x"}, "There are no unsaved edits with the ID x!");
    EXPECT_TRUE(fs::is_empty(folder.Path()));
    const CVariable none("XDG_DATA_HOME", nullptr);
    const CVariable user("HOME", nullptr);
    ExpectDone({"list"});
}

TEST_F(UnsavedCommand, IsWrongUsageWithoutAnother)
{
    EXPECT_EQ(Run({}).exitCode, 2);
    EXPECT_EQ(Run({"list", "x"}).exitCode, 2);
    EXPECT_EQ(Run({"show", "x", "y"}).exitCode, 2);
}

TEST_F(UnsavedCommand, ListsAllStates)
{
    EXPECT_TRUE(Begin(kFirst).Drop());
    {
        const CJournal left = Begin(kSecond);
    }
    const CJournal open = Begin(kThird);
    const std::string damaged = std::string(kFirst) + "-00000000";
    WriteAll(UnsavedFolder(data) / (damaged + ".jsonl"), {});
    const std::string dropped = JournalsIn(DroppedFolder(data)).at(0).id;
    const ProcessResult result = Run({"list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    const std::string file = "/recipes/o\xEF\xBF\xBDven.rcp";
    EXPECT_EQ(Lines(result.out), (Texts{damaged + "\t-\tleft\t", IdOf("20261102") + "\t1\tleft\t" + file,
                                        IdOf("20261103") + "\t1\topen\t" + file, dropped + "\t1\tdropped\t" + file}));
}

TEST_F(UnsavedCommand, ShowsRecords)
{
    {
        const CJournal left = Begin(kFirst);
    }
    const CJournal open = Begin(kSecond);
    EXPECT_EQ(Run({"show"}).out, kShown);
    for (const char* begin : {"20261101", "20261102"}) {
        const ProcessResult result = Run({"show", IdOf(begin)});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, kShown);
        EXPECT_EQ(result.error, "");
    }
}

TEST_F(UnsavedCommand, ShowsOnlyWhatItIsClearWhich)
{
    {
        const CJournal left = Begin(kFirst);
    }
    {
        const CJournal left = Begin(kSecond);
    }
    ExpectRefused({"show"}, "Unsaved edits were left behind 2 times! Say which by an ID of unsaved list.");
    const std::string damaged = std::string(kFirst) + "-00000000";
    WriteAll(UnsavedFolder(data) / (damaged + ".jsonl"), {});
    ExpectRefused({"show", damaged}, "The unsaved edits " + damaged + " can't be read!");
}

TEST_F(UnsavedCommand, NeverWritesWhereItReads)
{
    EXPECT_TRUE(Begin(kFirst).Drop());
    {
        const CJournal left = Begin(kSecond);
    }
    const CJournal open = Begin(kThird);
    const auto before = Everything();
    EXPECT_EQ(Run({"list"}).exitCode, 0);
    EXPECT_EQ(Run({"show"}).exitCode, 0);
    EXPECT_TRUE(Everything() == before);
}

TEST_F(UnsavedCommand, DropsOneOrAll)
{
    for (const char* stamp : {kFirst, kSecond, kSecond})
        const CJournal left = Begin(stamp);
    const CJournal open = Begin(kThird);
    const std::string first = IdOf("20261101");
    const std::string third = IdOf("20261103");
    ExpectDone({"drop", first});
    EXPECT_EQ(JournalsIn(DroppedFolder(data)).size(), 1u);
    EXPECT_EQ(Run({"show", first}).out, kShown);
    ExpectRefused({"drop", third}, "The unsaved edits " + third + " are open in a window!");
    ExpectDone({"drop"});
    EXPECT_EQ(JournalsIn(DroppedFolder(data)).size(), 3u);
    EXPECT_EQ(JournalsIn(UnsavedFolder(data)).size(), 1u);
    ExpectDone({"drop", first}); // for good
    ExpectRefused({"drop", first}, "There are no unsaved edits with the ID " + first + "!");
}
