#include "tests/cli/CliTest.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/Formats.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <sstream>

namespace fs = std::filesystem;

namespace {

constexpr std::uint16_t kInfinityHigh = 0x7F80;
constexpr std::uint16_t kNanHigh = 0x7FC0;

/// The library begins with a format of all that can be found: two items of one title, decimals, a float and a string.
struct CheckCommand : CliTest {
    CheckCommand()
    {
        DataItem text = MakeItem(u"Text", DataType::String, 3, 0);
        text.unicode = 1;
        library.formats.insert(
            library.formats.begin(),
            std::make_unique<DataFormat>(MakeFormat(u"All", {MakeItem(u"Zone \u00B0C", DataType::Signed16, 1, 3, 1),
                                                             MakeItem(u"Zone \u00B0C", DataType::Unsigned16, 1, 2, 2),
                                                             MakeItem(u"Real", DataType::Float, 2, 3, 1), text})));
        library.startAddress = 2;
        library.rowCount = 1;
        SaveLibrary();
        Put({0, 0, 100, 25, 0, 0, u'a', u'b', 0, 99});
    }

    void Put(std::initializer_list<std::uint16_t> words) const { WriteAll(recipe, WordBytes(words)); }

    ProcessResult Check(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), "check");
        return Run(std::move(arguments));
    }

    std::string Name() const { return recipe.string(); }

    void ExpectText(int code, const std::string& text, const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> arguments = {Name()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ProcessResult result = Check(arguments);
        EXPECT_EQ(result.exitCode, code);
        EXPECT_EQ(result.out, text);
        EXPECT_EQ(result.error, "");
    }
};

TEST_F(CheckCommand, FindsNothingInAGoodFile)
{
    ExpectText(0, "");
    ExpectText(0, "", {"--output", "jsonl", "--fail-on", "warning"});
}

TEST_F(CheckCommand, FindsValuesOutsideTheirLimitsByTheirWords)
{
    Put({0, 0, 9999, 10000, 0, 0, 0, 0, 0});
    ExpectText(1, Name() + ": RW3 row 1 Zone \xC2\xB0"
                           "C: 100.00 lies outside 0.00 to 99.99 [outside-limits]\n");
    Put({0, 0, 64536, 25, 0, 0, 0, 0, 0}); // -1000 is shown as 0
    const ProcessResult result = Check({Name()});
    EXPECT_TRUE(result.out.starts_with(Name() + ": RW2 row 1 Zone \xC2\xB0"
                                                "C: -100.0 lies outside -99.9 to 999.9 [outside-limits]\n"))
        << result.out;
}

TEST_F(CheckCommand, PrintsEveryFieldAsJsonInItsOrder)
{
    Put({0, 0, 64536, 25, 0, 0, 0, 0, 0});
    const ProcessResult result = Check({Name(), "--output", "jsonl"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(
        result.out,
        "{\"file\":\"" + Name() +
            "\",\"table\":0,\"row\":1,\"column\":2,\"item\":\"Zone \xC2\xB0"
            "C\",\"address\":2,\"text\":\"0.0\",\"words\":\"FC18\",\"kind\":\"outside-limits\",\"level\":\"error\","
            "\"message\":\"-100.0 lies outside -99.9 to 999.9\"}\n"
            "{\"file\":\"" +
            Name() +
            "\",\"table\":0,\"row\":1,\"column\":2,\"item\":\"Zone \xC2\xB0"
            "C\",\"address\":2,\"text\":\"0.0\",\"words\":\"FC18\",\"kind\":\"rewritten\",\"level\":\"warning\","
            "\"message\":\"a save would store it as 0.0 (limits)\"}\n");
}

TEST_F(CheckCommand, FindsTheFirstRowBehindTheEnd)
{
    ExpectText(1, Name() + ": RW9 row 2: the file ends within this row [past-end]\n", {"--rows", "9"});
    Put({0, 0, 100, 25, 0, 0, u'a', u'b', 0});
    ExpectText(1, Name() + ": RW9 row 2: the file ends before this row [past-end]\n", {"--rows", "16777216"});
    WriteAll(recipe, {});
    ExpectText(1, Name() + ": RW2 row 1: the file ends before this row [past-end]\n");
    EXPECT_EQ(Check({Name(), "--output", "jsonl"}).out,
              "{\"file\":\"" + Name() +
                  "\",\"table\":0,\"row\":1,\"address\":2,\"kind\":\"past-end\",\"level\":\"error\","
                  "\"message\":\"the file ends before this row\"}\n");
}

TEST_F(CheckCommand, LooksAtWhatIsThereOfARowThatIsCut)
{
    Put({0, 0, 100, 10000, 0});
    ExpectText(1, Name() +
                      ": RW3 row 1 Zone \xC2\xB0"
                      "C: 100.00 lies outside 0.00 to 99.99 [outside-limits]\n" +
                      Name() + ": RW2 row 1: the file ends within this row [past-end]\n");
}

TEST_F(CheckCommand, FindsValuesThatASaveRewritesAColumnAtATime)
{
    Put({0, 0, 100, 5, 0, 0, u'a', 0, u'b', 101, 105, 0, 0, u'a', 0, u'b'}); // 0.05 is shown as 0.50
    const std::string zone = ": Zone \xC2\xB0"
                             "C: a save would change 2 values, the first RW3 row 1 [rewritten]\n";
    ExpectText(0, Name() + zone + Name() + ": Text: a save would change 2 values, the first RW6 row 1 [rewritten]\n",
               {"--rows", "2"});
    EXPECT_EQ(Check({Name(), "--rows", "2", "--fail-on", "warning"}).exitCode, 1);
    EXPECT_EQ(Check({Name(), "--rows", "2", "--fail-on", "error"}).exitCode, 0);
    const std::string lines = Check({Name(), "--rows", "2", "--output", "jsonl"}).out;
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 4);
    EXPECT_NE(lines.find("\"row\":2,\"column\":3,\"item\":\"Zone \xC2\xB0"
                         "C\",\"address\":10,\"text\":\"1.50\","
                         "\"words\":\"0069\",\"kind\":\"rewritten\",\"level\":\"warning\","
                         "\"message\":\"a save would store it as 1.50 (decimals)\"}"),
              std::string::npos)
        << lines;
}

TEST_F(CheckCommand, DamagedPagesAreUnreadableWhereverTheRowsLie)
{
    Bytes bytes(65536 + 4096);
    bytes[65536] = std::byte{7}; // the directory leads into itself
    const fs::path file = folder / "dam.frp";
    WriteAll(file, bytes);
    const ProcessResult result = Check({file.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, file.string() + ": Open file " + file.string() + " error! [unreadable]\n");
}

TEST_F(CheckCommand, FindsControlCharacters)
{
    Put({0, 0, 100, 25, 0, 0, u'\n', u'"', 0x9F});
    ExpectText(0, Name() + ": RW6 row 1 Text: the text holds a control character: \\n\"\\u009f [control-characters]\n");
    const std::string line = Check({Name(), "--output", "jsonl"}).out;
    EXPECT_EQ(nlohmann::json::parse(line).at("text"), "\n\"\xC2\x9F");
    EXPECT_EQ(nlohmann::json::parse(line).at("level"), "warning");
}

TEST_F(CheckCommand, FindsNumbersThatAreNone)
{
    Put({0, 0, 100, 25, 0, kNanHigh, 0, 0, 0});
    const std::string rewritten = Name() + ": Real: a save would change 1 value, RW4 row 1 [rewritten]\n";
    ExpectText(0, Name() + ": RW4 row 1 Real: nan is no number [not-a-number]\n" + rewritten);
    Put({0, 0, 100, 25, 0, kInfinityHigh | 0x8000, 0, 0, 0});
    ExpectText(1, Name() + ": RW4 row 1 Real: -inf lies outside -99 to 999 [outside-limits]\n" + Name() +
                      ": RW4 row 1 Real: -inf is no number [not-a-number]\n" + rewritten);
}

TEST_F(CheckCommand, LooksAtEveryTable)
{
    WriteAll(folder / ".vantor.json",
             TextBytes(R"({"library":"Any.Dat","tables":[{"files":"a.rcp","format":"All","start":2,"rows":1},)"
                       R"({"files":"a.rcp","format":"All","start":9,"rows":1},)"
                       R"({"files":"a.rcp","format":"All","start":20,"rows":3}]})"));
    Put({0, 0, 100, 5, 0, 0, 0, 0, 0, 100, 5, 0, 0, 0, 0, 0});
    const auto rewritten = [this](const std::string& place) {
        return Name() +
               ": Zone \xC2\xB0"
               "C: a save would change 1 value, " +
               place + " row 1 [rewritten]\n";
    };
    ExpectText(1, rewritten("RW3") + rewritten("RW10") + Name() +
                      ": RW20 row 1: the file ends before this row [past-end]\n");
    std::istringstream lines(Check({Name(), "--output", "jsonl"}).out);
    std::string line;
    for (int table = 0; table < 3; ++table) {
        std::getline(lines, line);
        EXPECT_EQ(nlohmann::json::parse(line).at("table"), table);
    }
}

TEST_F(CheckCommand, TellsWhatCannotBeRead)
{
    const std::string none = folder / "none.rcp";
    const std::string text = folder / "a.txt";
    const std::string inPlaceOfFile = folder / "folder.csv";
    const std::string damaged = folder / "damaged.frp";
    WriteAll(text, {});
    fs::create_directory(inPlaceOfFile);
    Bytes bytes(65536 + 4096);
    bytes[65536 + 3] = std::byte{0x7F}; // the directory leads far behind the end
    WriteAll(damaged, bytes);
    const ProcessResult result =
        Check({none, text, Name(), inPlaceOfFile, damaged, "--start", "40000", "--format", "W\xC3\xB6rter"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.out,
              none + ": Open error! " + none + " doesn't exit! [unreadable]\n" + text + ": The type of file " + text +
                  " is unknown! It must be .rcp, .csv, .erp or .frp! [unreadable]\n" + Name() +
                  ": RW40000 row 1: the file ends before this row [past-end]\n" + inPlaceOfFile + ": Can't open file " +
                  inPlaceOfFile + "! [unreadable]\n" + damaged + ": Open file " + damaged + " error! [unreadable]\n");
    EXPECT_EQ(Check({none, "--output", "jsonl"}).out,
              "{\"file\":\"" + none + "\",\"kind\":\"unreadable\",\"level\":\"error\",\"message\":\"Open error! " +
                  none + " doesn't exit!\"}\n");
}

TEST_F(CheckCommand, TellsWhatMayNotBeRead)
{
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(recipe, fs::perms::none);
    const COrdinaryUser user;
    ExpectText(1, Name() + ": Open file " + Name() + " error! [unreadable]\n");
}

TEST_F(CheckCommand, NeedsNoRightToWrite)
{
    const fs::path paged = folder / "b.frp";
    WriteAll(paged, Bytes(65536));
    for (const fs::path& path : {recipe, paged, libraryPath})
        fs::permissions(path, static_cast<fs::perms>(0444));
    fs::permissions(folder.Path(), static_cast<fs::perms>(0555));
    {
        const COrdinaryUser user;
        EXPECT_EQ(Check({Name()}).out, "");
        EXPECT_EQ(Check({paged.string(), "--rows", "2"}).out, "");
        const ProcessResult behind = Check({paged.string(), "--start", "32767", "--rows", "2"});
        EXPECT_EQ(behind.out, paged.string() + ": RW32767 row 1: the file ends within this row [past-end]\n");
    }
    EXPECT_EQ(fs::file_size(paged), 65536u);
    fs::permissions(folder.Path(), fs::perms::owner_all);
}

TEST_F(CheckCommand, LooksAtPagedFilesAlike)
{
    Put({0, 0, 100, 10000, 0, kNanHigh, u'\t', 0, 0});
    for (const char* name : {"b.erp", "b.frp"}) {
        const std::string paged = folder / name;
        WriteAll(paged, Bytes(name[2] == 'e' ? 1048576 : 65536)); // words behind it lie in pages
        Bytes words = ReadAll(recipe);
        words.resize(fs::file_size(paged));
        WriteAll(paged, words);
        const std::string out = Check({paged}).out;
        EXPECT_NE(out.find(paged + ": RW3 row 1 Zone \xC2\xB0"
                                   "C: 100.00 lies outside"),
                  std::string::npos)
            << out;
        EXPECT_NE(out.find(": RW4 row 1 Real: nan is no number [not-a-number]\n"), std::string::npos) << out;
        EXPECT_NE(out.find(": RW6 row 1 Text: the text holds a control character: \\t"), std::string::npos) << out;
    }
}

TEST_F(CheckCommand, LooksAtTheTextsOfATable)
{
    const std::string table = folder / "b.csv";
    WriteAll(table, Utf16File(u"1000.5\t\"2.5\"\t\"1.0\"\tx\r\n\"\"\t\"1,5\"\t\"1e2\"\tx\r\n"));
    const ProcessResult result = Check({table, "--rows", "3"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, table +
                              ": row 1 Zone \xC2\xB0"
                              "C: 1000.5 lies outside -99.9 to 999.9 [outside-limits]\n" +
                              table +
                              ": row 2 Zone \xC2\xB0"
                              "C: \"\" is no number [not-a-number]\n" +
                              table +
                              ": row 2 Zone \xC2\xB0"
                              "C: \"1,5\" is no number [not-a-number]\n" +
                              table + ": row 3: the file ends before this row [past-end]\n" + table +
                              ": Text: a save would change 2 values, the first row 1 [rewritten]\n");
    const std::string line = Check({table, "--rows", "1", "--output", "jsonl"}).out;
    EXPECT_TRUE(
        line.starts_with("{\"file\":\"" + table +
                         "\",\"table\":0,\"row\":1,\"column\":2,\"item\":\"Zone \xC2\xB0"
                         "C\",\"text\":\"1000.5\",\"kind\":\"outside-limits\",\"level\":\"error\",\"message\":"))
        << line;
}

TEST_F(CheckCommand, EscapesWhatWouldBreakALine)
{
    const fs::path odd = folder / "a\nb\xC3\xA9.rcp";
    fs::rename(recipe, odd);
    SetText(library.formats[0]->items[0]->description, u"Zone\t1");
    SaveLibrary();
    WriteAll(odd, WordBytes({0, 0, 10000, 0, 0, 0, 0, 0, 0}));
    const std::string out = Check({odd.string()}).out;
    EXPECT_NE(out.find("a\\nb\xC3\xA9.rcp: RW2 row 1 Zone\\t1: 1000.0 lies outside"), std::string::npos) << out;
    const std::string line = Check({odd.string(), "--output", "jsonl"}).out;
    EXPECT_EQ(nlohmann::json::parse(line.substr(0, line.find('\n'))).at("file"), odd.string());
}

TEST_F(CheckCommand, WrongUsageIsTrouble)
{
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{},
                                                  {Name(), "--output", "json"},
                                                  {Name(), "--fail-on", "never"},
                                                  {Name(), "--rows", "x"}}) {
        const ProcessResult result = Check(wrong);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.error, "");
    }
    EXPECT_EQ(Check({Name(), "--format", "none"}).exitCode, 2);
    EXPECT_EQ(Check({Name(), "--start", "-1"}).exitCode, 2);
}

} // namespace
