#include "files/PagedFile.h"
#include "files/PagedRecipeFile.h"
#include "recovery/VersionStore.h"
#include "tests/cli/CliTest.h"

#include <chrono>

namespace fs = std::filesystem;

namespace {

const std::string kHeader = R"({"vantor":"changes","version":1})";
const std::string kOvenHeader =
    R"({"vantor":"changes","version":1,"file":"a.rcp","type":"rcp","bytes":24,"newBytes":24,"tables":[{"format":"Oven","start":1,"rows":2}]})";
const std::string kTemp =
    R"_({"address":2,"row":1,"column":3,"item":"Temp(0)","old":"12.3","new":"12.4","oldWords":"007B","newWords":"007C"})_";

/// A patch for "a.rcp" of the fixture.
struct PatchCommand : CliTest {
    ProcessResult Patch(const fs::path& file, const std::vector<std::string>& lines,
                        const std::vector<std::string>& options = {}) const
    {
        std::string text;
        for (const std::string& line : lines)
            text += line + "\n";
        WriteAll(folder / "p.jsonl", TextBytes(text));
        std::vector<std::string> arguments{"patch", file.string(), (folder / "p.jsonl").string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Run(arguments);
    }

    void ExpectDone(const std::vector<std::string>& lines, const Bytes& bytes,
                    const std::vector<std::string>& options = {}) const
    {
        const ProcessResult result = Patch(recipe, lines, options);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, "");
        EXPECT_EQ(ReadAll(recipe), bytes);
    }

    /// `reason` is what follows "Can't apply the patch to file …: ", without the mark at its end.
    void ExpectRefused(const fs::path& file, const std::vector<std::string>& lines, const std::string& reason,
                       const std::vector<std::string>& options = {}) const
    {
        const Bytes before = ReadAll(file);
        const ProcessResult result = Patch(file, lines, options);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, "Can't apply the patch to file " + file.string() + ": " + reason + "!\n");
        EXPECT_EQ(ReadAll(file), before);
        EXPECT_FALSE(fs::exists(usersData / "vantor"));
    }

    void ExpectRefused(const std::vector<std::string>& lines, const std::string& reason) const
    {
        ExpectRefused(recipe, lines, reason);
    }

    void ExpectTrouble(const std::vector<std::string>& arguments, const std::string& message) const
    {
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, message + "\n");
    }

    /// The fixture's file with other words.
    Bytes With(std::initializer_list<std::pair<int, int>> words) const
    {
        Bytes bytes = ReadAll(recipe);
        for (const auto& [address, word] : words) {
            bytes[static_cast<std::size_t>(2 * address)] = static_cast<std::byte>(word & 0xFF);
            bytes[static_cast<std::size_t>(2 * address) + 1] = static_cast<std::byte>(word >> 8);
        }
        return bytes;
    }

    fs::path Table(const std::u16string& text) const
    {
        WriteAll(folder / "a.csv", Utf16File(text));
        return folder / "a.csv";
    }

    void ExpectTable(const std::u16string& before, const std::vector<std::string>& lines,
                     const std::u16string& after) const
    {
        const ProcessResult result = Patch(Table(before), lines);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.error, "");
        EXPECT_EQ(ReadAll(folder / "a.csv"), Utf16File(after));
    }
};

TEST_F(PatchCommand, WritesTheNewWordsAndNoOtherByte)
{
    ExpectDone({kOvenHeader, kTemp, R"({"address":11,"oldWords":"0063","newWords":"0001"})"},
               With({{2, 124}, {11, 1}}));
}

TEST_F(PatchCommand, ReadsStandardInput)
{
    WriteAll(folder / "p.jsonl", TextBytes(kOvenHeader + "\n" + kTemp + "\n"));
    const Bytes wanted = With({{2, 124}});
    const ProcessResult result = RunScript("\"$cli\" patch \"$1\" --library \"$2\" < \"$3\" 2>&1",
                                           {recipe.string(), libraryPath.string(), (folder / "p.jsonl").string()});
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_EQ(ReadAll(recipe), wanted);
}

TEST_F(PatchCommand, GoesBack)
{
    const Bytes before = ReadAll(recipe);
    EXPECT_EQ(Patch(recipe, {kOvenHeader, kTemp}).exitCode, 0);
    ExpectDone({kOvenHeader, kTemp}, before, {"--reverse"});
}

TEST_F(PatchCommand, TellsAllValuesThatAreOthers)
{
    const Bytes before = ReadAll(recipe);
    const ProcessResult result = Patch(
        recipe,
        {kOvenHeader,
         R"_({"address":2,"row":1,"column":3,"item":"Temp(0)","old":"12.5","oldWords":"007D","newWords":"007C"})_",
         R"({"address":1,"row":1,"column":2,"item":"Level","oldWords":"0005","newWords":"0006"})",
         R"({"address":11,"oldWords":"0064","newWords":"0001"})"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "Can't apply the patch to file " + recipe.string() + ": 2 values are others!\n" +
                                "RW2  row 1  Temp(0): 12.5 [007D] is expected, but 12.3 [007B] is there\n"
                                "RW11: [0064] is expected, but [0063] is there\n");
    EXPECT_EQ(ReadAll(recipe), before);
    EXPECT_FALSE(fs::exists(usersData / "vantor"));
}

TEST_F(PatchCommand, AHeaderAloneChangesNothing)
{
    const auto time = fs::last_write_time(recipe) - std::chrono::hours(1);
    fs::last_write_time(recipe, time);
    ExpectDone({kHeader}, ReadAll(recipe));
    ExpectDone({R"({"vantor":"changes","version":1,"bytes":1,"newBytes":2})"}, ReadAll(recipe));
    EXPECT_EQ(fs::last_write_time(recipe), time);
    EXPECT_FALSE(fs::exists(usersData / "vantor"));
}

TEST_F(PatchCommand, AHeaderAloneIsTroubleForATableThatCannotBeRead)
{
    const fs::path table = folder / "folder.csv";
    fs::create_directory(table);
    for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"--dry-run"}}) {
        const ProcessResult result = Patch(table, {kHeader}, options);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, "Can't open file " + table.string() + "!\n");
    }
}

TEST_F(PatchCommand, KeepsAnEarlierVersion)
{
    const Bytes before = ReadAll(recipe);
    EXPECT_EQ(Patch(recipe, {kOvenHeader, kTemp}).exitCode, 0);
    const CVersionStore versions(usersData / "vantor");
    const auto list = versions.List(recipe);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].command, u"patch");
    EXPECT_EQ(ReadAll(versions.PathOf(recipe, list[0])), before);
}

TEST_F(PatchCommand, KeepsNoneWhenAskedNotTo)
{
    EXPECT_EQ(Patch(recipe, {kOvenHeader, kTemp}, {"--no-version"}).exitCode, 0);
    EXPECT_FALSE(fs::exists(usersData / "vantor"));
}

TEST_F(PatchCommand, GrowsAndCutsAFlatFile)
{
    Bytes longer = ReadAll(recipe);
    longer.resize(longer.size() + 8);
    longer.push_back(std::byte{9});
    longer[28] = std::byte{7};
    const std::vector<std::string> lines{R"({"vantor":"changes","version":1,"bytes":24,"newBytes":33})",
                                         R"({"address":12,"zeros":2})", R"({"address":14,"newWords":"0007"})",
                                         R"({"address":15,"zeros":1})", R"({"address":16,"newWords":"09"})"};
    const Bytes before = ReadAll(recipe);
    ExpectDone(lines, longer);
    ExpectDone(lines, before, {"--reverse"});
    EXPECT_EQ(Patch(recipe, {kHeader, R"({"address":14,"newWords":"0007"})"}).exitCode, 0); // without sizes
    longer.resize(30);
    EXPECT_EQ(ReadAll(recipe), longer);
}

TEST_F(PatchCommand, RefusesSizesThatAreNotTheFiles)
{
    ExpectRefused(
        {R"({"vantor":"changes","version":1,"bytes":22,"newBytes":26})", R"({"address":12,"newWords":"0007"})"},
        "the file has 24 bytes, and 22 are expected");
    ExpectRefused(
        {R"({"vantor":"changes","version":1,"bytes":24,"newBytes":18})", R"({"address":11,"oldWords":"0063"})"},
        R"(line 2, "address": words behind the new end go that no record names)");
    ExpectRefused({kHeader, R"({"address":5,"oldWords":"0000"})"},
                  R"(line 2, "address": words behind the new end go that no record names)");
    ExpectRefused(
        {R"({"vantor":"changes","version":1,"bytes":24,"newBytes":26})", R"({"address":14,"newWords":"0007"})"},
        R"(line 2, "address": the words lie behind the end that the file is to have)");
}

TEST_F(PatchCommand, TakesTextsOfAPatchThatIsWrittenByHand)
{
    ExpectDone({kHeader, R"_({"row":1,"item":"Temp(0)","old":"12.3","new":"12.4"})_",
                R"({"row":2,"column":2,"new":"7"})", R"({"address":4,"new":"B"})"},
               With({{2, 124}, {6, 7}, {4, u'B'}}));
}

TEST_F(PatchCommand, RefusesTextsThatDoNotFit)
{
    const ProcessResult result = Patch(recipe, {kHeader, R"_({"row":1,"item":"Temp(0)","old":"12.5","new":"12.4"})_"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "Can't apply the patch to file " + recipe.string() + ": 1 value is another!\n" +
                                "RW2  row 1  Temp(0): 12.5 is expected, but 12.3 [007B] is there\n");
    ExpectRefused({kHeader, R"({"row":1,"column":2,"new":"many"})"},
                  R"(line 2, "new": the cell does not take that text)");
    ExpectRefused({kHeader, R"({"row":1,"column":2,"old":"5"})"}, R"(line 2, "new": the text is missing)");
}

TEST_F(PatchCommand, RefusesAPatchOfAnotherLayout)
{
    ExpectRefused({kOvenHeader, R"({"address":2,"row":1,"column":4,"oldWords":"007B","newWords":"007C"})"},
                  R"(line 2, "address": the value stands at RW3)");
    ExpectRefused({kOvenHeader, R"({"row":1,"item":"Temp","new":"5"})"}, R"(line 2, "item": no column has that title)");
    ExpectRefused({kOvenHeader, R"({"address":4,"row":1,"column":5,"oldWords":"0041","newWords":"0042"})"},
                  R"(line 2, "newWords": the value has 2 words)");
    library.formats[0]->items.erase(library.formats[0]->items.begin()); // the format has changed since
    SaveLibrary();
    ExpectRefused({kOvenHeader, kTemp}, R"(line 2, "item": the title of that column is Temp(1))");
}

TEST_F(PatchCommand, TakesTheLayoutOfTheOptionsFirst)
{
    ExpectRefused(recipe, {kOvenHeader, kTemp}, R"(line 2, "address": the value stands at RW3)", {"--start", "2"});
    const std::string words =
        R"({"vantor":"changes","version":1,"tables":[{"format":"W\u00F6rter","start":11,"rows":1}]})";
    ExpectDone({words, R"({"row":1,"column":2,"old":"99","new":"98"})"}, With({{11, 98}}));
}

TEST_F(PatchCommand, NeedsAFormatOnlyForWhatSaysNoWords)
{
    const std::string gone = R"({"vantor":"changes","version":1,"tables":[{"format":"Gone","start":1,"rows":2}]})";
    ExpectRefused({gone, R"({"row":1,"column":3,"new":"1"})"},
                  R"(line 2, "table": there is no format Gone, which is needed)");
    ExpectDone({gone, kTemp}, With({{2, 124}}));
}

TEST_F(PatchCommand, RefusesRecordsThatContradictEachOther)
{
    ExpectRefused({kOvenHeader, kTemp, R"({"address":2,"oldWords":"007B","newWords":"007D"})"},
                  R"(line 3, "address": another record says something else of the same words)");
    ExpectRefused({kOvenHeader, kTemp, R"({"address":1,"oldWords":"0005 007C","newWords":"0005 007C"})"},
                  R"(line 2, "address": another record says something else of the same words)");
    ExpectDone({kOvenHeader, R"({"address":11,"oldWords":"0063","newWords":"0001"})", kTemp, kTemp,
                R"({"address":1,"oldWords":"0005 007B","newWords":"0005 007C"})"},
               With({{2, 124}, {11, 1}}));
}

TEST_F(PatchCommand, RefusesWhatNoFileHas)
{
    ExpectRefused({kHeader, R"({"address":12,"zeros":500000000000})"},
                  "the file would become much longer, and the header does not say both sizes");
    ExpectRefused({kHeader, R"({"address":12,"zeros":1000000000000000})"},
                  R"(line 2, "zeros": no file of that type has so many words)");
    ExpectRefused({kHeader, R"({"address":12,"zeros":-4611686018427387903})"},
                  R"(line 2, "zeros": no file of that type has so many words)");
    ExpectRefused({kHeader, R"({"address":4611686018427387903,"newWords":"0001"})"},
                  R"(line 2, "address": no file of that type has such words)");
    ExpectRefused({R"({"vantor":"changes","version":1,"bytes":24,"newBytes":9223372036854775807})",
                   R"({"address":12,"newWords":"0001"})"},
                  "no file has so many bytes as it is to have");
    ExpectRefused({kHeader, R"({"address":5,"oldWords":"0000","newWords":"01"})"},
                  R"(line 2, "address": words behind the new end go that no record names)");
    ExpectRefused({kHeader, R"({"why":"form"})"},
                  R"(line 2, "why": the form of a file is nothing that a patch can change)");
    ExpectRefused({R"({"vantor":"changes","version":1,"type":"erp"})", kTemp}, "it is made for a file of another type");
}

TEST_F(PatchCommand, DryRunPrintsAndWritesNothing)
{
    MakeReadOnly(recipe);
    const Bytes before = ReadAll(recipe);
    const ProcessResult result = Patch(recipe,
                                       {kHeader, R"_({"row":1,"item":"Temp(0)","new":"12.4"})_",
                                        R"({"address":1,"oldWords":"0005","newWords":"0006"})"},
                                       {"--dry-run"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(
        result.out,
        kOvenHeader + "\n" +
            R"({"address":1,"row":1,"column":2,"item":"Level","old":"5","new":"6","oldWords":"0005","newWords":"0006"})" +
            "\n" + kTemp + "\n");
    EXPECT_EQ(ReadAll(recipe), before);
    EXPECT_FALSE(fs::exists(usersData / "vantor"));
}

TEST_F(PatchCommand, ReportsTrouble)
{
    const std::string file = recipe.string();
    const std::string patch = (folder / "p.jsonl").string();
    ExpectTrouble({"patch", file, patch}, "Open error! " + patch + " doesn't exit!");
    WriteAll(patch, TextBytes(kHeader + "\n"));
    ExpectTrouble({"patch", file + ".rcp", patch}, "Open error! " + file + ".rcp doesn't exit!");
    ExpectTrouble({"patch", patch, patch},
                  "The type of file " + patch + " is unknown! It must be .rcp, .csv, .erp or .frp!");
    WriteAll(patch, TextBytes(kHeader + "\n" + R"({"row":0,"column":2,"new":"1"})" + "\n"));
    const ProcessResult damaged = Run({"patch", file, patch});
    EXPECT_EQ(damaged.exitCode, 2);
    EXPECT_TRUE(damaged.error.starts_with("Can't read the patch: line 2, \"row\": ")) << damaged.error;
    WriteAll(patch, {});
    EXPECT_EQ(Run({"patch", file, patch}).exitCode, 2);
    EXPECT_EQ(Run({"patch", file}).exitCode, 2); // nothing on standard input
}

TEST_F(PatchCommand, WritesPagesAndGoesBackInThem)
{
    const fs::path paged = folder / "a.frp";
    WriteAll(paged, Bytes(65536));
    const std::vector<std::string> lines{R"({"vantor":"changes","version":1,"type":"frp"})",
                                         R"({"address":40000,"newWords":"1234"})",
                                         R"({"address":10,"oldWords":"0000","newWords":"0001"})"};
    const std::string foretold = Patch(paged, lines, {"--dry-run"}).out;
    EXPECT_NE(foretold.find(R"("bytes":65536,"newBytes":81920)"), std::string::npos) << foretold;
    EXPECT_EQ(Patch(paged, lines, {"--no-version"}).exitCode, 0);
    Bytes word(2);
    ASSERT_TRUE(PagedRead(paged, WordAddress(40000), 1, word, KindOf(FileType::Frp)));
    EXPECT_EQ(word, WordBytes({0x1234}));
    EXPECT_EQ(Patch(paged, lines, {"--reverse", "--no-version"}).exitCode, 0);
    ASSERT_TRUE(PagedRead(paged, WordAddress(40000), 1, word, KindOf(FileType::Frp)));
    EXPECT_EQ(word, WordBytes({0}));
    EXPECT_EQ(Patch(paged, lines, {"--no-version"}).exitCode, 0); // the page of zeros is there now
    ExpectRefused(paged, {kHeader, R"({"address":2147483648,"newWords":"0001"})"},
                  R"(line 2, "address": no file of that type has such words)");
}

TEST_F(PatchCommand, ChangesTheFieldsOfATable)
{
    ExpectTable(u"\"5\"\t\"1\"\r\n\"6\"\t\"2\"\r\nlast\r\n",
                {kHeader, R"({"row":2,"column":2,"item":"Level","old":"6","new":"many"})",
                 R"({"line":3,"old":"last","new":"more"})", R"({"line":4,"new":"\"x\"\ty"})"},
                u"\"5\"\t\"1\"\r\n\"many\"\t\"2\"\r\nmore\r\n\"x\"\ty\r\n");
    ExpectTable(u"\"5\"\t\"1\"\r\n\"6\"\r\nlast\r\n",
                {kHeader, R"({"row":1,"column":3,"old":"\"1\""})", R"({"row":1,"column":2,"old":"5","new":"4"})",
                 R"({"line":3,"old":"last"})", R"({"row":2,"column":2,"old":"\"6\""})"},
                u"4\r\n");
    ExpectTable(u"\"5\"\t\r\n", {kHeader, R"({"row":2,"column":3,"new":"1"})"}, u"\"5\"\t\r\n\"0\"\t1\r\n");
}

TEST_F(PatchCommand, RefusesChangesOfATableThatCannotBe)
{
    const fs::path table = Table(u"\"5\"\t\"1\"\t\"2\"\r\n\"6\"\r\nlast\r\n");
    ExpectRefused(table, {kHeader, R"({"row":1,"column":3,"old":"1"})"},
                  "row 1, column 3 is not the last field of its line");
    ExpectRefused(table, {kHeader, R"({"line":9,"new":"x"})"}, "line 9 does not follow the last one");
    ExpectRefused(table, {kHeader, R"({"line":9223372036854775807,"new":"x"})"},
                  "line 9223372036854775807 does not follow the last one");
    ExpectRefused(table, {kHeader, R"({"row":1,"column":2147483647,"new":"x"})"},
                  "row 1, column 2147483647 does not follow the last field of its line");
    ExpectRefused(table, {kHeader, R"({"line":3,"new":"x\ty"})"},
                  "line 3 would not be in the form in which a save leaves one");
    ExpectRefused(table, {kHeader, R"({"line":2,"new":"x"})"},
                  R"(line 2, "line": the last row of the table is 2, and that line is one of its rows)");
    ExpectRefused(table, {kHeader, R"({"address":1,"new":"x"})"}, R"(line 2, "address": a .csv file has no words)");
    const ProcessResult other =
        Patch(table, {kHeader, R"({"row":1,"column":2,"old":"6","new":"7"})", R"({"line":3,"old":"lost"})"});
    EXPECT_EQ(other.exitCode, 1);
    EXPECT_EQ(other.error, "Can't apply the patch to file " + table.string() + ": 2 values are others!\n" +
                               "row 1  Level: 6 is expected, but 5 is there\n"
                               "line 3: lost is expected, but last is there\n");
}

TEST_F(PatchCommand, RefusesATableInAnotherForm)
{
    const fs::path table = Table(u"5\t\"1\"\r\n");
    ExpectRefused(table, {kHeader, R"({"row":1,"column":2,"old":"5","new":"7"})"}, "line 1, field 1 is not in quotes");
}

TEST_F(PatchCommand, TakesWhatWasForetold)
{
    const ProcessResult plan = Run({"set", recipe.string(), "--cell", "1", "3", "12.4", "--dry-run"});
    WriteAll(folder / "plan.jsonl", TextBytes(plan.out));
    const Bytes wanted = With({{2, 124}});
    EXPECT_EQ(Run({"patch", recipe.string(), (folder / "plan.jsonl").string()}).exitCode, 0);
    EXPECT_EQ(ReadAll(recipe), wanted);
}

TEST_F(PatchCommand, ReportsAFileThatMayNotBeWritten)
{
    const ProcessResult result = RunScript(
        "(ulimit -f 0; \"$cli\" patch \"$1\" --no-version --library \"$2\" <<< \"$3\") 2>&1 | cat; exit "
        "${PIPESTATUS[0]}",
        {recipe.string(), libraryPath.string(), kHeader + "\n" + R"({"address":2000,"newWords":"0001"})" + "\n"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "Can't save file " + recipe.string() + ",please check file or your disk!\n");
    EXPECT_EQ(ReadAll(recipe).size(), 24u);
}

} // namespace
