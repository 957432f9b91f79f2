// What commands tell of units, sensible ranges and names.

#include "library/NotesFile.h"
#include "tests/cli/CliTest.h"

#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

namespace {

struct NotesOfItems : CliTest {
    NotesOfItems()
    {
        level.unit = u"l";
        level.bits = {u"Low", u"", u"High"};
        level.texts = {{u"600", u"full"}};
        temp.unit = u"\u00B0C";
        temp.lowest = CDecimal(5);
        temp.highest = CDecimal::Parse(u"99.9");
        Save(NotesPathOf(libraryPath));
    }

    void Save(const fs::path& path) const
    {
        ASSERT_TRUE(WriteNotes(
            {{{.format = u"Oven", .item = u"Level"}, level}, {{.format = u"Oven", .item = u"Temp"}, temp}}, path));
    }

    ProcessResult Check(std::vector<std::string> more = {}) const
    {
        more.insert(more.begin(), {"check", recipe.string()});
        return Run(std::move(more));
    }

    ItemNotes level;
    ItemNotes temp;
};

constexpr const char* kFound = ": RW3 row 1 Temp(1): 100.0 lies outside 5 to 99.9 \xC2\xB0"
                               "C [outside-range]\n";

TEST_F(NotesOfItems, MakeAValueOutsideItsRangeAnErrorOfTheCheck)
{
    const ProcessResult result = Check();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.starts_with(recipe.string() + kFound)) << result.out;
    EXPECT_NE(result.out.find(": RW7 row 2 Temp(0): 4.5 lies outside 5 to 99.9"), std::string::npos) << result.out;
    const std::string lines = Check({"--output", "jsonl"}).out;
    const auto line = nlohmann::json::parse(lines.substr(0, lines.find('\n')));
    EXPECT_EQ(line["kind"], "outside-range");
    EXPECT_EQ(line["level"], "error");
    EXPECT_EQ(line["message"], "100.0 lies outside 5 to 99.9 \xC2\xB0"
                               "C");
    EXPECT_EQ(line["words"], "03E8");
}

TEST_F(NotesOfItems, AreJudgedByTheStoredNumber)
{
    temp.lowest.reset();
    temp.highest = CDecimal(100);
    Save(NotesPathOf(libraryPath));
    EXPECT_EQ(Check().exitCode, 0);
    temp.highest = CDecimal::Parse(u"99.99");
    Save(NotesPathOf(libraryPath));
    EXPECT_NE(Check().out.find("100.0 lies above 99.99"), std::string::npos);
}

TEST_F(NotesOfItems, OfATableAreJudgedByItsTexts)
{
    ExpectDone({"convert", recipe.string(), (folder / "a.csv").string()});
    const ProcessResult result = Run({"check", (folder / "a.csv").string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.out.find("row 2 Temp(0): 4.5 lies outside 5 to 99.9"), std::string::npos) << result.out;
}

TEST_F(NotesOfItems, StandInTheLinesOfShow)
{
    const ProcessResult result = Run({"show", recipe.string(), "--jsonl"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "{\"row\":1,\"address\":1,\"cells\":[{\"item\":\"Level\",\"unit\":\"l\",\"text\":\"5\","
                          "\"set\":[\"Low\",\"High\"]},"
                          "{\"item\":\"Temp(0)\",\"unit\":\"\xC2\xB0"
                          "C\",\"lowest\":5,\"highest\":99.9,\"text\":\"12.3\"},"
                          "{\"item\":\"Temp(1)\",\"unit\":\"\xC2\xB0"
                          "C\",\"lowest\":5,\"highest\":99.9,\"text\":\"100.0\"},"
                          "{\"item\":\"\xE5\x90\x8D\xE7\xA7\xB0\",\"text\":\"A\"}]}\n"
                          "{\"row\":2,\"address\":6,\"cells\":[{\"item\":\"Level\",\"unit\":\"l\",\"text\":\"600\","
                          "\"means\":\"full\",\"set\":[]},"
                          "{\"item\":\"Temp(0)\",\"unit\":\"\xC2\xB0"
                          "C\",\"lowest\":5,\"highest\":99.9,\"text\":\"4.5\"},"
                          "{\"item\":\"Temp(1)\",\"unit\":\"\xC2\xB0"
                          "C\",\"lowest\":5,\"highest\":99.9,\"text\":\"0.0\"},"
                          "{\"item\":\"\xE5\x90\x8D\xE7\xA7\xB0\",\"text\":\"\xE5\xAE\x8B\xE4\xBD\x93\"}]}\n");
}

TEST_F(NotesOfItems, NameTheBitsThatAreStoredWhateverIsShown)
{
    const fs::path belt = folder / "belt.json";
    WriteAll(belt, TextBytes(R"({"formats":[{"name":"Belt","items":[{"description":"Speed","dataType":2,)"
                             R"("integerDigits":3,"decimalDigits":2,"notes":{"bits":["a","b","c","d"]}}]}]})"));
    WriteAll(folder / "belt.rcp", WordBytes({105}));
    const ProcessResult result = RunProcess(VANTOR_CLI_PROGRAM, {"show", (folder / "belt.rcp").string(), "--jsonl",
                                                                 "--library", belt.string(), "--rows", "1"});
    EXPECT_EQ(result.out,
              "{\"row\":1,\"address\":0,\"cells\":[{\"item\":\"Speed\",\"text\":\"1.50\",\"set\":[\"a\",\"d\"]}]}\n");
}

TEST_F(NotesOfItems, LeaveTheOtherFormsOfShowAsTheyAre)
{
    const std::string table = Run({"show", recipe.string()}).out;
    const std::string json = Run({"show", recipe.string(), "--json"}).out;
    fs::remove(NotesPathOf(libraryPath));
    EXPECT_EQ(Run({"show", recipe.string()}).out, table);
    EXPECT_EQ(Run({"show", recipe.string(), "--json"}).out, json);
}

TEST_F(NotesOfItems, AreNotExportedOver)
{
    const fs::path notes = NotesPathOf(libraryPath);
    const auto before = ReadAll(notes);
    EXPECT_EQ(Run({"formats", "export", "-o", notes.string()}).exitCode, 1);
    EXPECT_EQ(ReadAll(notes), before);
}

TEST_F(NotesOfItems, WithANumberForATextAreRefused)
{
    const fs::path json = folder / "wrong.json";
    for (const char* const number : {"1", "1.5"}) {
        WriteAll(json,
                 TextBytes(std::string(R"({"formats":[{"items":[{"notes":{"lowest":0.5,"unit":)") + number + "}}]}]}"));
        const ProcessResult result = Run({"formats", "import", json.string()});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_NE(result.error.find("at /formats/0/items/0/notes/unit: a text is expected!"), std::string::npos)
            << result.error;
    }
}

TEST_F(NotesOfItems, ThatAreDamagedAreToldAndLeftOut)
{
    WriteAll(NotesPathOf(libraryPath), TextBytes("{"));
    const ProcessResult result = Run({"show", recipe.string()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "Notes error! File " + NotesPathOf(libraryPath).string() +
                                ", at /: line 1, column 2 is no valid JSON!\n");
    EXPECT_EQ(ReadAll(NotesPathOf(libraryPath)), TextBytes("{")) << "only read";
}

TEST_F(NotesOfItems, AreCarriedByExportAndImport)
{
    const fs::path json = folder / "formats.json";
    const fs::path copy = folder / "Copy.Dat";
    ExpectDone({"formats", "export", "-o", json.string()});
    ASSERT_EQ(RunCli({"formats", "import", json.string(), "--library", copy.string()}).exitCode, 0);
    EXPECT_EQ(ReadAll(NotesPathOf(copy)), ReadAll(NotesPathOf(libraryPath)));
}

TEST_F(NotesOfItems, StayWhenFormatsWithoutAnyAreImported)
{
    const fs::path json = folder / "formats.json";
    const Bytes notes = ReadAll(NotesPathOf(libraryPath));
    fs::rename(NotesPathOf(libraryPath), folder / "aside");
    ExpectDone({"formats", "export", "-o", json.string()});
    fs::rename(folder / "aside", NotesPathOf(libraryPath));
    ExpectDone({"formats", "import", json.string()});
    EXPECT_EQ(ReadAll(NotesPathOf(libraryPath)), notes);
}

struct NotesOfALayout : NotesOfItems {
    NotesOfALayout()
    {
        fs::remove(NotesPathOf(libraryPath));
        Save(folder / "ours.json");
        Name("ours.json");
    }

    void Name(const std::string& notes) const
    {
        WriteAll(folder / ".vantor.json",
                 TextBytes(R"({"library":"Any.Dat","notes":")" + notes +
                           R"(","tables":[{"files":"a.rcp","format":"Oven","start":1,"rows":2}]})"));
    }

    ProcessResult CheckHere() const { return RunCli({"check", recipe.string()}); }
};

TEST_F(NotesOfALayout, TakeThePlaceOfThoseBesideTheLibrary)
{
    ASSERT_TRUE(WriteNotes({{{.format = u"Oven", .item = u"Level"}, temp}}, NotesPathOf(libraryPath)));
    const ProcessResult result = CheckHere();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.starts_with(recipe.string() + kFound)) << result.out << result.error;
    EXPECT_EQ(result.out.find("Level"), std::string::npos);
}

TEST_F(NotesOfALayout, ThatAreMissingOrDamagedAreTrouble)
{
    Name("nowhere.json");
    EXPECT_EQ(CheckHere().error, "Layout error! File " + (folder / ".vantor.json").string() +
                                     ", at /notes: there is no file " + (folder / "nowhere.json").string() + "!\n");
    EXPECT_EQ(CheckHere().exitCode, 2);
    WriteAll(folder / "ours.json", TextBytes("[]"));
    Name("ours.json");
    EXPECT_EQ(CheckHere().error,
              "Notes error! File " + (folder / "ours.json").string() + ", at /: an object is expected!\n");
    EXPECT_EQ(CheckHere().exitCode, 2);
}

} // namespace
