#include "files/PagedFile.h"
#include "files/PagedRecipeFile.h"
#include "tests/cli/CliTest.h"

#include <algorithm>
#include <chrono>

namespace fs = std::filesystem;

namespace {

/// "a.rcp" of the fixture, and "b.rcp", which is a copy of it at first.
struct DiffCommand : CliTest {
    DiffCommand() { WriteAll(other, ReadAll(recipe)); }

    void ExpectDiff(std::vector<std::string> arguments, int status, const std::string& out,
                    const std::string& error = "") const
    {
        arguments.insert(arguments.begin(), "diff");
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, status);
        EXPECT_EQ(result.out, out);
        EXPECT_EQ(result.error, error);
    }

    void ExpectDiff(int status, const std::string& out) const
    {
        ExpectDiff({recipe.string(), other.string()}, status, out);
    }

    /// Two tables in the form that Save writes.
    std::vector<std::string> Tables(const std::u16string& before, const std::u16string& after) const
    {
        WriteAll(folder / "a.csv", Utf16File(before));
        WriteAll(folder / "b.csv", Utf16File(after));
        return {(folder / "a.csv").string(), (folder / "b.csv").string()};
    }

    static std::vector<std::string> With(std::vector<std::string> files, const std::string& option)
    {
        files.push_back(option);
        return files;
    }

    fs::path other = folder / "b.rcp";
};

constexpr const char* kHeader =
    R"({"vantor":"changes","version":1,"file":"a.rcp","type":"rcp","bytes":24,"newBytes":24,"tables":[{"format":"Oven","start":1,"rows":2}]})"
    "\n";

TEST_F(DiffCommand, PrintsNothingForFilesThatAreAlike)
{
    ExpectDiff(0, "");
    ExpectDiff({recipe.string(), recipe.string()}, 0, "");
    ExpectDiff({recipe.string(), other.string(), "--patch"}, 0, kHeader);
}

TEST_F(DiffCommand, PrintsALineAValue)
{
    WriteAll(other, WordBytes({98, 5, 124, 1000, u'A', u'B', 600, 45, 0, 0x5B8B, 0x4F53, 99}));
    ExpectDiff(1, "RW0  words  0063 -> 0062\n"
                  "RW2  row 1  Temp(0)  12.3 -> 12.4\n"
                  "RW4  row 1  \u540D\u79F0  A -> AB\n");
}

TEST_F(DiffCommand, PrintsRecords)
{
    WriteAll(other, WordBytes({98, 5, 124, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53, 99}));
    const std::string records = std::string(kHeader) +
                                R"({"address":0,"oldWords":"0063","newWords":"0062"})"
                                "\n"
                                R"_({"address":2,"row":1,"column":3,"item":"Temp(0)","old":"12.3","new":"12.4",)_"
                                R"("oldWords":"007B","newWords":"007C"})"
                                "\n";
    ExpectDiff({recipe.string(), other.string(), "--json"}, 1, records);
    ExpectDiff({recipe.string(), other.string(), "--patch"}, 1, records);
}

TEST_F(DiffCommand, ShowsTheWordsOfTextsThatAreTheSame)
{
    WriteAll(recipe, WordBytes({99, 5, 123, 1000, u'A', 0, 65000, 45, 0, 0x5B8B, 0x4F53, 99}));
    WriteAll(other, WordBytes({99, 5, 123, 1000, u'A', 0, 65001, 45, 0, 0x5B8B, 0x4F53, 99}));
    ExpectDiff(1, "RW6  row 2  Level  -536 -> -535\n");
    WriteAll(recipe, WordBytes({99, 5, 123, 1000, u'A', 0, 40000, 45, 0, 0x5B8B, 0x4F53, 99}));
    WriteAll(other, WordBytes({99, 5, 123, 1000, u'A', 0, 40001, 45, 0, 0x5B8B, 0x4F53, 99}));
    ExpectDiff(1, "RW6  row 2  Level  0 [9C40] -> 0 [9C41]\n");
}

TEST_F(DiffCommand, FollowsTheLongerFile)
{
    Bytes longer = ReadAll(recipe);
    const Bytes more = WordBytes({0, 0, 7, 0});
    longer.insert(longer.end(), more.begin(), more.end());
    longer.push_back(std::byte{9});
    WriteAll(other, longer);
    ExpectDiff(1, "RW12  zeros  +2\nRW14  words  (none) -> 0007\nRW15  zeros  +1\nRW16  words  (none) -> 09\n");
    ExpectDiff({other.string(), recipe.string()}, 1,
               "RW12  zeros  -2\nRW14  words  0007 -> (none)\nRW15  zeros  -1\nRW16  words  09 -> (none)\n");
}

TEST_F(DiffCommand, TellsOfValuesBehindTheEnd)
{
    WriteAll(other, WordBytes({99, 5, 123, 1000, u'A', 0, 600, 45, 0, 0x5B8B}));
    ExpectDiff(1, "RW9  row 2  \u540D\u79F0  \u5B8B\u4F53 -> [5B8B]\nRW11  words  0063 -> (none)\n");
    WriteAll(other, WordBytes({99, 5, 123, 1000, u'A', 0, 600, 45}));
    ExpectDiff(
        {recipe.string(), other.string(), "--json"}, 1,
        R"({"vantor":"changes","version":1,"file":"a.rcp","type":"rcp","bytes":24,"newBytes":16,"tables":[{"format":"Oven","start":1,"rows":2}]})"
        "\n"
        R"_({"address":8,"row":2,"column":4,"item":"Temp(1)","old":"0.0","oldWords":"0000"})_"
        "\n"
        R"({"address":9,"row":2,"column":5,"item":"名称","old":"宋体","oldWords":"5B8B 4F53"})"
        "\n"
        R"({"address":11,"oldWords":"0063"})"
        "\n");
}

TEST_F(DiffCommand, PrintsRunsOfAtMostSixteenWords)
{
    Bytes before(80);
    Bytes after(80, std::byte{1});
    WriteAll(recipe, before);
    WriteAll(other, after);
    const ProcessResult result = Run({"diff", recipe.string(), other.string(), "--start", "1000"});
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 3);
    EXPECT_TRUE(result.out.starts_with("RW0  words  0000 0000 0000"));
    EXPECT_NE(result.out.find("\nRW16  words"), std::string::npos);
    EXPECT_NE(result.out.find("\nRW32  words"), std::string::npos);
}

TEST_F(DiffCommand, KeepsALineALine)
{
    WriteAll(other, WordBytes({99, 5, 123, 1000, u'\n', 0x1B, 600, 45, 0, 0x5B8B, 0x4F53, 99}));
    ExpectDiff(1, "RW4  row 1  \u540D\u79F0  A -> \\n\\u001b\n");
}

TEST_F(DiffCommand, ComparesTablesOfTexts)
{
    const auto files =
        Tables(u"\"5\"\t\"1\"\r\n\"6\"\t\"2\"\r\n\"7\"\r\nlast\r\n", u"\"5\"\t\"1\"\r\n\"9\"\t\"2\"\r\n\"8\"\r\n");
    ExpectDiff(files, 1, "row 2  Level  6 -> 9\nline 3  \"7\" -> \"8\"\nline 4  last -> (none)\n");
    ExpectDiff(
        With(files, "--json"), 1,
        R"({"vantor":"changes","version":1,"file":"a.csv","type":"csv","bytes":60,"newBytes":48,"tables":[{"format":"Oven","start":1,"rows":2}]})"
        "\n"
        R"({"row":2,"column":2,"item":"Level","old":"6","new":"9"})"
        "\n"
        R"({"line":3,"old":"\"7\"","new":"\"8\""})"
        "\n"
        R"({"line":4,"old":"last"})"
        "\n");
}

TEST_F(DiffCommand, TellsAMissingFieldFromZero)
{
    const auto files = Tables(u"\"5\"\t\r\n", u"\"5\"\t\"0\"\t\r\n");
    ExpectDiff(files, 1, "row 1  Temp(0)  (none) -> 0\n");
}

TEST_F(DiffCommand, TellsOfFieldsAfterTheLastColumn)
{
    const auto files =
        Tables(u"\"1\"\t\"2\"\t\"3\"\t\"4\"\t\"5\"\t\"6\"\r\n", u"\"1\"\t\"2\"\t\"3\"\t\"4\"\t\"5\"\t\"7\"\r\n");
    ExpectDiff(files, 1, "row 1  column 7  \"6\" -> \"7\"\n");
}

TEST_F(DiffCommand, TellsOfTheFormWhereNothingElseDiffers)
{
    const auto files = Tables(u"\"5\"\t\"1\"\r\n", u"5\t\"1\"\r\n");
    ExpectDiff(files, 1, "form\n");
    const ProcessResult result = Run({"diff", files[0], files[1], "--patch"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error, "Can't make a patch from file " + files[0] + " to file " + files[1] +
                                ": line 1, field 1 is not in quotes!\n");
}

TEST_F(DiffCommand, RefusesAPatchThatWouldChangeTheForm)
{
    const auto files = Tables(u"\"5\"\t\"1\"\r\n\"6\"\r\n", u"\"5\"\t1\r\n\"7\"\t\r\n");
    const ProcessResult result = Run({"diff", files[0], files[1], "--patch"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error, "Can't make a patch from file " + files[0] + " to file " + files[1] +
                                ": line 2 would not have the same bytes!\n");
}

TEST_F(DiffCommand, RefusesAPatchThatCouldNotBeTakenBack)
{
    const auto files = Tables(u"\"5\"\t\"1\"\t\"2\"\t\r\n", u"\"5\"\t\"1\"\r\n");
    const ProcessResult result = Run({"diff", files[0], files[1], "--patch"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error, "Can't make a patch from file " + files[0] + " to file " + files[1] +
                                ": it could not be taken back: line 1 would not have the same bytes!\n");
}

TEST_F(DiffCommand, ComparesPagedFilesByTheirWords)
{
    const Bytes word = WordBytes({0x1234});
    const Bytes zero = WordBytes({0});
    for (const char* name : {"a.frp", "b.frp"}) {
        WriteAll(folder / name, Bytes(65536));
        ASSERT_TRUE(PagedWrite(folder / name, WordAddress(40000), 1, word, KindOf(FileType::Frp)));
    }
    const std::vector<std::string> files{(folder / "a.frp").string(), (folder / "b.frp").string()};
    ExpectDiff(files, 0, "");
    ASSERT_TRUE(PagedWrite(folder / "b.frp", WordAddress(90000), 1, zero, KindOf(FileType::Frp))); // a page of zeros
    ExpectDiff(files, 1, "form\n");
    ASSERT_TRUE(PagedWrite(folder / "b.frp", WordAddress(90000), 1, word, KindOf(FileType::Frp)));
    ExpectDiff(files, 1, "RW90000  words  (none) -> 1234\n");
    ExpectDiff({files[1], files[0]}, 1, "RW90000  words  1234 -> (none)\n");
}

TEST_F(DiffCommand, ReportsADamagedPagedFile)
{
    WriteAll(folder / "a.frp", Bytes(65536));
    ASSERT_TRUE(PagedWrite(folder / "a.frp", WordAddress(40000), 1, WordBytes({1}), KindOf(FileType::Frp)));
    Bytes damaged = ReadAll(folder / "a.frp");
    damaged[65536] = std::byte{1};
    WriteAll(folder / "b.frp", damaged);
    const std::string file = (folder / "b.frp").string();
    ExpectDiff({(folder / "a.frp").string(), file}, 2, "", "Open file " + file + " error!\n");
    ExpectDiff({file, file}, 2, "", "Open file " + file + " error!\n");
}

TEST_F(DiffCommand, ComparesFilesOfTwoTypesByWhatTheyShow)
{
    WriteAll(folder / "b.csv", Utf16File(u"\"5\"\t\"12.3\"\t\"100.0\"\t\"A\"\t\r\n\"601\"\t\"4.5\"\t\"0.0\"\t"));
    const std::string table = (folder / "b.csv").string();
    ExpectDiff({recipe.string(), table}, 1, "row 2  Level  600 -> 601\nrow 2  \u540D\u79F0  \u5B8B\u4F53 -> (none)\n");
    ExpectDiff({recipe.string(), table, "--patch"}, 2, "",
               "Can't make a patch from file " + recipe.string() + " to file " + table +
                   ": they are files of two types!\n");
    Bytes words = ReadAll(recipe);
    words[2] = std::byte{6};
    words[0] = std::byte{1};
    words.resize(words.size() / 2 * 2);
    WriteAll(folder / "b.erp", words);
    ExpectDiff(
        {recipe.string(), (folder / "b.erp").string(), "--json"}, 1,
        R"({"vantor":"changes","version":1,"file":"a.rcp","bytes":24,"newBytes":24,"tables":[{"format":"Oven","start":1,"rows":2}]})"
        "\n"
        R"({"address":0,"oldWords":"0063","newWords":"0001"})"
        "\n"
        R"({"address":1,"row":1,"column":2,"item":"Level","old":"5","new":"6"})"
        "\n");
}

TEST_F(DiffCommand, ReportsTrouble)
{
    const std::string file = recipe.string();
    ExpectDiff({file, (folder / "none.rcp").string()}, 2, "",
               "Open error! " + (folder / "none.rcp").string() + " doesn't exit!\n");
    ExpectDiff({(folder / "none.rcp").string(), file}, 2, "",
               "Open error! " + (folder / "none.rcp").string() + " doesn't exit!\n");
    ExpectDiff({file, "/dev/null"}, 2, "",
               "The type of file /dev/null is unknown! It must be .rcp, .csv, .erp or .frp!\n");
    fs::create_directory(folder / "c.rcp");
    ExpectDiff({file, (folder / "c.rcp").string()}, 2, "", "Open file " + (folder / "c.rcp").string() + " error!\n");
    EXPECT_EQ(Run({"diff", file, file, "--json", "--patch"}).exitCode, 2);
    EXPECT_EQ(Run({"diff", file}).exitCode, 2);
}

TEST_F(DiffCommand, NeverWrites)
{
    WriteAll(folder / "b.frp", Bytes(65536));
    ASSERT_TRUE(PagedWrite(folder / "b.frp", WordAddress(40000), 1, WordBytes({1}), KindOf(FileType::Frp)));
    const auto time = fs::last_write_time(recipe) - std::chrono::hours(1);
    for (const fs::path& path : {recipe, folder / "b.frp"}) {
        MakeReadOnly(path);
        fs::last_write_time(path, time);
    }
    const Bytes pages = ReadAll(folder / "b.frp");
    EXPECT_EQ(Run({"diff", recipe.string(), (folder / "b.frp").string(), "--start", "200000"}).exitCode, 1);
    EXPECT_EQ(fs::last_write_time(recipe), time);
    EXPECT_EQ(fs::last_write_time(folder / "b.frp"), time);
    EXPECT_EQ(ReadAll(folder / "b.frp"), pages);
    EXPECT_FALSE(fs::exists(usersData / "vantor"));
}

} // namespace
