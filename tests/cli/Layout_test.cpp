#include "library/LibraryToJson.h"
#include "tests/cli/CliTest.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/Formats.h"

#include <algorithm>
#include <memory>

namespace fs = std::filesystem;

namespace {

/// The working folder has a layout with the library, which is not where the program looks for one.
struct LayoutCommand : CliTest {
    LayoutCommand() { Write(R"({"files":"a.rcp","format":"Oven","start":1,"rows":2})"); }

    void Write(const std::string& tables, const std::string& libraryName = "Any.Dat") const
    {
        WriteAll(folder / ".vantor.json",
                 TextBytes(R"({"library":")" + libraryName + R"(","tables":[)" + tables + "]}"));
    }

    /// Without the library, in the folder.
    ProcessResult RunHere(std::vector<std::string> arguments) const { return RunIn("", std::move(arguments)); }

    ProcessResult RunIn(const fs::path& below, std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), (folder / below).string());
        return RunScript("cd \"$1\"; shift; exec \"$cli\" \"$@\"", arguments);
    }

    std::string Layout() const { return fs::canonical(folder.Path()) / ".vantor.json"; }

    void ExpectFault(int code, const std::vector<std::string>& arguments, const std::string& message) const
    {
        const ProcessResult result = RunHere(arguments);
        EXPECT_EQ(result.exitCode, code) << arguments.front();
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, message + "\n");
    }
};

std::size_t LinesIn(const std::string& text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST_F(LayoutCommand, IsTakenByReadingCommandsWithoutAWord)
{
    const ProcessResult result = RunHere({"values", "a.rcp"});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_TRUE(result.out.starts_with(R"({"file":"a.rcp","table":0,"row":1,"address":1,"cells":[{"item":"Level",)"))
        << result.out;
    EXPECT_EQ(LinesIn(result.out), 2u);
}

TEST_F(LayoutCommand, IsTakenByShowOnlyWhenItIsAskedFor)
{
    Write(R"({"files":"a.rcp","format":"Oven","start":6,"rows":1})");
    const std::string first = RunHere({"show", "a.rcp", "--library", "Any.Dat"}).out;
    EXPECT_NE(first.find(" 1  RW1 "), std::string::npos) << first;
    const std::string rows = "ID  RW_Addr  Level  Temp(0)  Temp(1)  \xE5\x90\x8D\xE7\xA7\xB0\n"
                             " 1  RW6        600      4.5      0.0  \xE5\xAE\x8B\xE4\xBD\x93\n";
    EXPECT_EQ(RunHere({"show", "a.rcp", "--layout"}).out, rows);
    EXPECT_EQ(RunHere({"show", "--layout", "a.rcp"}).out, rows); // the file is no path of a layout
    fs::rename(folder / ".vantor.json", folder / "other.json");
    EXPECT_EQ(RunHere({"show", "--layout=other.json", "a.rcp"}).out, rows);
    ExpectFault(1, {"show", "--layout", "a.rcp"}, "No layout file names a table for the file a.rcp!");
    ExpectFault(1, {"show", "--layout=none.json", "a.rcp"}, "Open error! none.json doesn't exit!");
}

TEST_F(LayoutCommand, IsTakenBySetAndConvertWhenItIsAskedFor)
{
    EXPECT_EQ(RunHere({"set", "a.rcp", "--layout", "--cell", "2", "2", "7", "--only-edited"}).exitCode, 0);
    EXPECT_EQ(ReadAll(recipe)[12], std::byte{7}); // word 6
    EXPECT_EQ(RunHere({"convert", "a.rcp", "b.csv", "--layout"}).exitCode, 0);
    EXPECT_NE(RunHere({"show", "b.csv", "--format", "Oven", "--library", "Any.Dat"}).out.find("100.0"),
              std::string::npos);
}

TEST_F(LayoutCommand, OneOfSeveralTablesIsChosenByItsFormat)
{
    Write(R"({"files":"a.rcp","format":"Oven","start":1,"rows":2},)"
          R"({"files":"*.rcp","format":"W\u00F6rter","start":10},)"
          R"({"files":"*.csv","format":"Oven"})");
    const std::string unclear =
        "The layout " + Layout() + " names several tables for the file a.rcp! Choose one with --format!";
    ExpectFault(1, {"show", "a.rcp", "--layout"}, unclear);
    ExpectFault(1, {"convert", "a.rcp", "b.rcp", "--layout"}, unclear);
    ExpectFault(1, {"set", "a.rcp", "--layout", "--cell", "1", "2", "7"}, unclear);
    EXPECT_EQ(RunHere({"show", "a.rcp", "--layout", "--format", "W\xC3\xB6rter"}).out, "ID  RW_Addr   Word\n"
                                                                                       " 1  RW10     20307\n"
                                                                                       " 2  RW11        99\n");
    EXPECT_EQ(RunHere({"set", "a.rcp", "--layout", "--format", "W\xC3\xB6rter", "--cell", "2", "2", "98"}).exitCode, 0);
    EXPECT_EQ(ReadAll(recipe)[22], std::byte{98});
    ExpectFault(1, {"show", "a.rcp", "--layout", "--format", "Woerter"},
                "The layout " + Layout() + " names no table of the format Woerter for the file a.rcp!");
    EXPECT_EQ(LinesIn(RunHere({"values", "a.rcp"}).out), 4u); // all of them
}

TEST_F(LayoutCommand, TablesOfOneFormatAreToldApartByTheirStart)
{
    Write(R"({"files":"a.rcp","format":"W\u00F6rter","start":1,"rows":2},)"
          R"({"files":"a.rcp","format":"W\u00F6rter","start":10,"rows":2})");
    EXPECT_EQ(RunHere({"show", "a.rcp", "--layout", "--start", "10", "--rows", "1"}).out, "ID  RW_Addr   Word\n"
                                                                                          " 1  RW10     20307\n");
    EXPECT_EQ(RunHere({"show", "a.rcp", "--layout"}).exitCode, 1);
}

TEST_F(LayoutCommand, ReadingOptionsTakeItsPlace)
{
    for (const std::vector<std::string>& option :
         {std::vector<std::string>{"--start", "10"}, {"--rows", "3"}, {"--format", "W\xC3\xB6rter"}}) {
        std::vector<std::string> arguments = {"values", "a.rcp", "--library", "Any.Dat"};
        arguments.insert(arguments.end(), option.begin(), option.end());
        const ProcessResult byOptions = RunHere(arguments);
        EXPECT_EQ(byOptions.exitCode, 0) << byOptions.error;
        EXPECT_EQ(LinesIn(byOptions.out), option.front() == "--rows" ? 3u : 2u);
        EXPECT_NE(byOptions.out.find(option.front() == "--start" ? "\"address\":10," : "\"address\":1,"),
                  std::string::npos);
    }
    Write(R"({"files":"a.rcp","format":"Oven","start":1,"rows":1})", "none.dat");
    const ProcessResult byLayout = RunHere({"values", "a.rcp", "--library", "Any.Dat"}); // the library alone
    EXPECT_EQ(LinesIn(byLayout.out), 1u) << byLayout.error;
}

TEST_F(LayoutCommand, WholeRowsOfTheFileCountWhereNoneAreSaid)
{
    Write(R"({"files":"*","format":"Oven","start":1})");
    EXPECT_EQ(LinesIn(RunHere({"values", "a.rcp"}).out), 2u); // 12 words: two rows, one word more and one before
    fs::resize_file(recipe, 22);
    EXPECT_EQ(LinesIn(RunHere({"values", "a.rcp"}).out), 2u);
    fs::resize_file(recipe, 21);
    EXPECT_EQ(LinesIn(RunHere({"values", "a.rcp"}).out), 1u);
    for (const std::uintmax_t size : {11u, 2u, 0u}) {
        fs::resize_file(recipe, size);
        const ProcessResult result = RunHere({"values", "a.rcp"});
        EXPECT_EQ(result.out + result.error, "") << size;
        EXPECT_EQ(result.exitCode, 0);
    }
    WriteAll(folder / "a.csv", TextBytes("1,2\n3\n4,5,6,7,8\n9"));
    EXPECT_EQ(LinesIn(RunHere({"values", "a.csv"}).out), 4u);
    Write(R"({"files":"*","format":"W\u00F6rter","start":32768})");
    WriteAll(folder / "b.frp", Bytes(65536 + 4096)); // its directory leads nowhere
    EXPECT_EQ(RunHere({"values", "b.frp"}).out, "");
    ASSERT_EQ(Run({"convert", recipe.string(), (folder / "b.frp").string(), "--start", "40000"}).exitCode, 0);
    EXPECT_EQ(LinesIn(RunHere({"values", "b.frp"}).out), 8192u); // up to the end of the page with byte 80000
}

TEST_F(LayoutCommand, TableOfTextsHasOne)
{
    Write(R"({"files":"*.csv","format":"W\u00F6rter"},{"files":"*.csv","format":"Oven"})");
    WriteAll(folder / "a.csv", TextBytes("1\n"));
    EXPECT_EQ(RunHere({"values", "a.csv"}).out,
              "{\"file\":\"a.csv\",\"table\":0,\"row\":1,\"cells\":[{\"item\":\"Word\",\"text\":\"1\",\"number\":1,"
              "\"marks\":[\"rewritten\"]}]}\n");
}

TEST_F(LayoutCommand, FormatThatIsNotInItsLibraryIsNamedWithItsPlace)
{
    Write(R"({"files":"*","format":"Oven"},{"files":"*","format":"oven"})");
    ExpectFault(2, {"check", "a.rcp"},
                "Layout error! File " + Layout() + ", at /tables/1/format: the format oven doesn't exist!");
    Write(R"({"files":"*","format":"Oven"})", "none.dat");
    ExpectFault(2, {"values", "a.rcp"},
                "Layout error! File " + Layout() + ", at /library: there is no file " +
                    (fs::canonical(folder.Path()) / "none.dat").string() + "!");
    WriteAll(folder / "wrong.json", TextBytes("{\"formats\":7}"));
    Write(R"({"files":"*","format":"Oven"})", "wrong.json");
    ExpectFault(2, {"values", "a.rcp"},
                "Format library error! File " + (fs::canonical(folder.Path()) / "wrong.json").string() +
                    ", at /formats: an array is expected!");
}

TEST_F(LayoutCommand, MoreThanCanBeShownIsNamedWithItsPlace)
{
    Write(R"({"files":"*","format":"W\u00F6rter"})");
    fs::resize_file(recipe, std::uintmax_t{2} * 16777217);
    ExpectFault(2, {"values", "a.rcp"},
                "Layout error! File " + Layout() +
                    ", at /tables/0: The data can't be shown! It has more than 16777216 rows!");
}

TEST_F(LayoutCommand, OneThatDoesNotNameTheFileCountsAsNone)
{
    fs::create_directories(folder / "below/deep");
    fs::copy_file(recipe, folder / "below/deep/a.rcp");
    WriteAll(folder / "below/.vantor.json", TextBytes(R"({"tables":[{"files":"b.rcp","format":"Oven"}]})"));
    EXPECT_EQ(LinesIn(RunIn("below/deep", {"values", "a.rcp"}).out), 2u); // of the next one above
    Write(R"({"files":"b.rcp","format":"Oven"})");
    library.rowCount = 3;
    SaveLibrary();
    const std::string asShow = RunIn("below/deep", {"values", "a.rcp", "--library", libraryPath.string()}).out;
    EXPECT_EQ(LinesIn(asShow), 3u);
    ExpectFault(2, {"values", "a.rcp", "--layout"}, "No layout file names a table for the file a.rcp!");
}

TEST_F(LayoutCommand, TemporaryFileElsewhereIsFoundByItsName)
{
    const CTempFolder elsewhere;
    fs::copy_file(recipe, elsewhere / "a.rcp");
    Write(R"({"files":"recipes/a.rcp","format":"Oven","start":1})");
    EXPECT_EQ(LinesIn(RunHere({"values", (elsewhere / "a.rcp").string()}).out), 2u);
}

TEST_F(LayoutCommand, WhatIsNoLayoutIsTrouble)
{
    for (const char* text : {"", "7", "{\"tables\":[{\"files\":\"*\",\"format\":\"Oven\",\"rows\":0}]}", "\xFF\xFE"}) {
        WriteAll(folder / ".vantor.json", TextBytes(text));
        const ProcessResult result = RunHere({"check", "a.rcp"});
        EXPECT_EQ(result.exitCode, 2) << text;
        EXPECT_TRUE(result.error.starts_with("Layout error! File " + Layout() + ", at /")) << result.error;
        EXPECT_EQ(RunHere({"show", "a.rcp", "--layout"}).exitCode, 1);
        EXPECT_EQ(RunHere({"show", "a.rcp"}).exitCode, 0);
    }
    fs::remove(folder / ".vantor.json");
    fs::create_symlink(".vantor.json", folder / ".vantor.json");
    ExpectFault(2, {"check", "a.rcp"}, "Open file " + Layout() + " error!");
    fs::remove(folder / ".vantor.json");
    fs::create_directory(folder / ".vantor.json");
    ExpectFault(2, {"check", "a.rcp"}, "Open file " + Layout() + " error!");
}

TEST_F(LayoutCommand, OneThatMayNotBeReadIsTrouble)
{
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(folder / ".vantor.json", fs::perms::none);
    const COrdinaryUser user;
    ExpectFault(2, {"check", "a.rcp"}, "Open file " + Layout() + " error!");
}

TEST_F(LayoutCommand, LinkIsFollowed)
{
    fs::create_directory(folder / "shared");
    fs::rename(folder / ".vantor.json", folder / "shared/layout.json");
    fs::create_symlink("shared/layout.json", folder / ".vantor.json");
    EXPECT_EQ(LinesIn(RunHere({"values", "a.rcp"}).out), 2u); // the library lies beside the link
}

TEST_F(LayoutCommand, NamesMayBeOfAnyScript)
{
    const std::string name = "\xD0\x9F\xD0\xB5\xD1\x87\xD1\x8C \xE4\xB8\x80.rcp";
    fs::copy_file(recipe, folder / name);
    Write(R"({"files":"\u041F\u0435\u0447\u044C ?.rcp","format":"Oven","start":1})");
    const ProcessResult result = RunHere({"values", name});
    EXPECT_TRUE(result.out.starts_with("{\"file\":\"" + name + "\",\"table\":0,")) << result.out << result.error;
    EXPECT_EQ(LinesIn(result.out), 2u);
}

TEST_F(LayoutCommand, LibraryMayBeAJsonExport)
{
    WriteAll(folder / "formats.JSON", TextBytes(LibraryToJson(library)));
    Write(R"({"files":"a.rcp","format":"Oven","start":1,"rows":2})", "formats.JSON");
    fs::remove(libraryPath);
    EXPECT_EQ(LinesIn(RunHere({"values", "a.rcp"}).out), 2u);
    for (const char* command : {"list", "export"}) {
        const ProcessResult result = RunHere({"formats", command, "--library", "formats.JSON"});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_NE(result.out.find("Oven"), std::string::npos) << result.error;
    }
    const auto hasRows = [this](std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--library", "formats.JSON"});
        return RunHere(std::move(arguments)).exitCode == 0;
    };
    EXPECT_TRUE(hasRows({"show", "a.rcp"}));
    EXPECT_TRUE(hasRows({"set", "a.rcp", "--cell", "1", "2", "8"}));
    EXPECT_EQ(ReadAll(recipe)[2], std::byte{8});
    EXPECT_TRUE(hasRows({"convert", "a.rcp", "b.erp"}));
}

TEST_F(LayoutCommand, JsonLibraryWithAFaultIsRefused)
{
    WriteAll(folder / "x.json", TextBytes(R"({"formats":[{"items":[{"dataType":"float"}]}]})"));
    const std::string message = "Format library error! File x.json, at /formats/0/items/0/dataType: an integer is "
                                "expected!";
    ExpectFault(1, {"show", "a.rcp", "--library", "x.json"}, message);
    ExpectFault(1, {"formats", "list", "--library", "x.json"}, message);
    ExpectFault(2, {"check", "a.rcp", "--library", "x.json"}, message);
    fs::create_directory(folder / "folder.json");
    ExpectFault(1, {"formats", "list", "--library", "folder.json"}, "Open file folder.json error!");
    EXPECT_EQ(RunHere({"formats", "list", "--library", "none.json"}).out, ""); // as any that is missing
}

TEST_F(LayoutCommand, ImportNeverPutsALibraryOverJson)
{
    WriteAll(folder / "in.json", TextBytes(LibraryToJson(library)));
    WriteAll(folder / "x.json", TextBytes("{}"));
    fs::create_symlink("x.json", folder / "link.dat");
    for (const std::string name : {"x.json", "new.JSON", "link.dat"})
        ExpectFault(1, {"formats", "import", "in.json", "--library", name},
                    "Formats can't be imported into the JSON file " + name + ", only into a library file!");
    EXPECT_EQ(ReadAll(folder / "x.json"), TextBytes("{}"));
    EXPECT_FALSE(fs::exists(folder / "new.JSON"));
}

TEST(SampleLayout, LetsTheSampleBeCheckedWithoutAWord)
{
    const auto run = [](const std::string& command) {
        return RunScript("cd \"$1\"; \"$cli\" " + command, {VANTOR_SOURCE_DIR});
    };
    const ProcessResult check = run("check examples/bakery-oven.rcp");
    EXPECT_EQ(check.exitCode, 0) << check.error;
    EXPECT_EQ(check.out, "examples/bakery-oven.rcp: Belt m/min: a save would change 1 value, RW569 row 12 [rewritten]\n"
                         "examples/bakery-oven.rcp: Steam %: a save would change 1 value, RW252 row 4 [rewritten]\n"
                         "examples/bakery-oven.rcp: Gas kWh/t: a save would change 1 value, RW416 row 8 [rewritten]\n");
    EXPECT_EQ(check.error, "");
    EXPECT_EQ(LinesIn(run("values examples/bakery-oven.rcp").out), 12u + 1 + 15);
    EXPECT_EQ(run("show --layout --format 'Line setup' examples/bakery-oven.rcp").exitCode, 0);
}

} // namespace
