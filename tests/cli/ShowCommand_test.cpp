#include "tests/cli/CliTest.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/Formats.h"

#include <algorithm>
#include <memory>
#include <regex>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace fs = std::filesystem;

namespace {

struct ShowCommand : CliTest {
    ProcessResult Show(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), "show");
        return Run(arguments);
    }

    void ExpectRefused(std::vector<std::string> arguments, const std::string& message) const
    {
        arguments.insert(arguments.begin(), "show");
        CliTest::ExpectRefused(arguments, message);
    }
};

TEST_F(ShowCommand, PrintsTheRowsOfTheFirstFormat)
{
    const ProcessResult result = Show({recipe.string()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.out, "ID  RW_Addr  Level  Temp(0)  Temp(1)  \xE5\x90\x8D\xE7\xA7\xB0\n"
                          " 1  RW1          5     12.3    100.0  A\n"
                          " 2  RW6        600      4.5      0.0  \xE5\xAE\x8B\xE4\xBD\x93\n");
}

TEST_F(ShowCommand, WideCharactersTakeTwoPlaces)
{
    library.formats[0]->insertItem(0, std::make_unique<DataItem>(MakeItem(u"\u540D", DataType::String, 2, 4)));
    library.formats[0]->items[0]->unicode = 1;
    library.formats[0]->itemCount = 5;
    SaveLibrary();
    WriteAll(recipe, WordBytes({0, u'A', 0, 1, 2, 3, 0, 0, 0x5B8B, 0x4F53, 4, 5, 6, 0, 0}));
    EXPECT_EQ(Show({recipe.string()}).out,
              "ID  RW_Addr  \xE5\x90\x8D    Level  Temp(0)  Temp(1)  \xE5\x90\x8D\xE7\xA7\xB0\n"
              " 1  RW1      A         1      0.2      0.3  \n"
              " 2  RW8      \xE5\xAE\x8B\xE4\xBD\x93      4      0.5      0.6  \n");
}

TEST_F(ShowCommand, TakesFormatStartAndRowsFromItsOptions)
{
    const ProcessResult result = Show({recipe.string(), "--format", "W\xC3\xB6rter", "--start", "10", "--rows", "3"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "ID  RW_Addr   Word\n"
                          " 1  RW10     20307\n"
                          " 2  RW11        99\n"
                          " 3  RW12         0\n");
}

TEST_F(ShowCommand, MissingLibraryMeansTheDefaultFormatAndIsNotCreated)
{
    const fs::path missing = folder / "missing.dat";
    const ProcessResult result = RunCli({"show", recipe.string(), "--library", missing.string(), "--rows", "1"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "ID  RW_Addr  Desc1\n"
                          " 1  RW0         99\n");
    EXPECT_FALSE(fs::exists(missing));
}

TEST_F(ShowCommand, EmptyLibraryMeansTheDefaultFormat)
{
    WriteAll(libraryPath, {});
    const ProcessResult result = Show({recipe.string(), "--format", "TestDataFormat", "--rows", "1"});
    EXPECT_EQ(result.out, "ID  RW_Addr  Desc1\n"
                          " 1  RW0         99\n");
    EXPECT_TRUE(ReadAll(libraryPath).empty());
}

TEST_F(ShowCommand, LibraryThatCannotBeOpenedIsReported) // another format than the user means would mislead
{
    fs::remove(libraryPath);
    fs::create_directory(libraryPath);
    ExpectRefused({recipe.string()}, "Open file " + libraryPath.string() + " error!");
    CliTest::ExpectRefused({"set", recipe.string(), "--cell", "1", "2", "5"},
                           "Open file " + libraryPath.string() + " error!");
}

TEST_F(ShowCommand, DamagedLibraryGivesTheFormatsBeforeTheDamageAndSaysSo)
{
    Bytes bytes = ReadAll(libraryPath);
    bytes.pop_back();
    WriteAll(libraryPath, bytes);
    const ProcessResult result = Show({recipe.string(), "--rows", "1"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("RW1"), std::string::npos);
    EXPECT_EQ(result.error, "The format library " + libraryPath.string() +
                                " is damaged! What stands behind the damage is left out!\n");
}

TEST_F(ShowCommand, LooksForTheLibraryBesideTheProgram)
{
    const fs::path program = folder / "vantor-cli";
    fs::copy_file(VANTOR_CLI_PROGRAM, program);
    fs::rename(libraryPath, folder / "RecipeFile.Dat");
    const ProcessResult result = RunProcess(program, {"show", recipe.string(), "--rows", "1"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("Level"), std::string::npos) << result.out;
}

TEST_F(ShowCommand, LeavesLibraryAndFileAsTheyAre)
{
    const Bytes libraryBytes = ReadAll(libraryPath);
    const Bytes recipeBytes = ReadAll(recipe);
    EXPECT_EQ(Show({recipe.string()}).exitCode, 0);
    EXPECT_EQ(ReadAll(libraryPath), libraryBytes);
    EXPECT_EQ(ReadAll(recipe), recipeBytes);
}

/// What is read must not be touched, and no file made beside it.
struct OnlyReads : ShowCommand, testing::WithParamInterface<const char*> {
    OnlyReads()
    {
        for (const char* name : {"b.rcp", "b.csv", "b.erp", "b.frp"})
            WriteAll(folder / name, WordBytes({99, 5, 123, 1000, u'A', 0, 600, 45}));
        for (const auto& [name, flat] : {std::pair{"pages.erp", 1048576}, {"pages.frp", 65536}})
            WriteAll(folder / name, Bytes(static_cast<std::size_t>(flat + 4096))); // with a directory, but no pages
        for (const auto& entry : fs::directory_iterator(folder.Path()))
            fs::permissions(entry, static_cast<fs::perms>(0444));
        fs::permissions(folder.Path(), static_cast<fs::perms>(0555));
    }
    ~OnlyReads() override { fs::permissions(folder.Path(), fs::perms::owner_all); }

    /// Names, content and times of all files.
    std::vector<std::tuple<std::string, Bytes, std::int64_t, std::int64_t>> Files() const
    {
        std::vector<std::tuple<std::string, Bytes, std::int64_t, std::int64_t>> files;
        for (const auto& entry : fs::directory_iterator(folder.Path())) {
            struct stat status {};
            EXPECT_EQ(stat(entry.path().c_str(), &status), 0);
            const auto changed = [](const timespec& time) { return time.tv_sec * 1'000'000'000 + time.tv_nsec; };
            files.emplace_back(entry.path().filename().string(), ReadAll(entry.path()), changed(status.st_mtim),
                               changed(status.st_ctim));
        }
        return files;
    }

    ProcessResult RunAsOrdinaryUser(std::vector<std::string> arguments) const
    {
        const COrdinaryUser user;
        return Run(std::move(arguments));
    }
};

TEST_P(OnlyReads, AndNeedsNoRightToWrite)
{
    const auto before = Files();
    for (const char* form : {"--rows=20", "--json"}) {
        const ProcessResult result = RunAsOrdinaryUser({"show", folder / GetParam(), form, "--start", "700000"});
        EXPECT_EQ(result.exitCode, 0) << result.error;
        EXPECT_NE(result.out.find("RW700000"), std::string::npos) << result.out;
    }
    EXPECT_TRUE(Files() == before);
}

INSTANTIATE_TEST_SUITE_P(Files, OnlyReads,
                         testing::Values("b.rcp", "b.csv", "b.erp", "b.frp", "pages.erp", "pages.frp"),
                         [](const auto& c) { return std::regex_replace(c.param, std::regex("[.]"), "_"); });

TEST_F(OnlyReads, TheFormatsAreListedAndExportedWithoutIt)
{
    const auto before = Files();
    for (const char* command : {"list", "export"}) {
        const ProcessResult result = RunAsOrdinaryUser({"formats", command});
        EXPECT_EQ(result.exitCode, 0) << result.error;
        EXPECT_NE(result.out.find("Oven"), std::string::npos) << result.out;
    }
    EXPECT_TRUE(Files() == before);
    EXPECT_EQ(RunCli({"formats", "list", "--library", folder / "none.dat"}).exitCode, 0);
    EXPECT_FALSE(fs::exists(folder / "none.dat"));
}

TEST_F(ShowCommand, MissingPagesReadAsZeros)
{
    const fs::path paged = folder / "b.frp";
    WriteAll(paged, WordBytes({8, 9}));
    ExpectDone({"convert", recipe.string(), paged.string()}); // its words 1 to 10
    fs::resize_file(paged, 65536 + 4096);
    EXPECT_EQ(Show({paged.string(), "--format", "W\xC3\xB6rter", "--start", "32766", "--rows", "3"}).out,
              "ID  RW_Addr  Word\n"
              " 1  RW32766     0\n"
              " 2  RW32767     0\n"
              " 3  RW32768     0\n");
    EXPECT_EQ(fs::file_size(paged), 69632u);
}

TEST_F(ShowCommand, FormatWithoutItemsHasNoRows)
{
    library.formats.insert(library.formats.begin(), std::make_unique<DataFormat>(u"Empty"));
    SaveLibrary();
    const ProcessResult result = Show({recipe.string()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "ID  RW_Addr\n");
}

TEST_F(ShowCommand, HalfAPairAndControlCharactersShowAsReplacements)
{
    WriteAll(recipe, WordBytes({0, 1, 2, 3, 0xD800, u'\n'}));
    const ProcessResult result = Show({recipe.string(), "--rows", "1"});
    EXPECT_EQ(result.out, "ID  RW_Addr  Level  Temp(0)  Temp(1)  \xE5\x90\x8D\xE7\xA7\xB0\n"
                          " 1  RW1          1      0.2      0.3  \xEF\xBF\xBD\xEF\xBF\xBD\n");
}

TEST_F(ShowCommand, PrintsMoreThanOnePiece)
{
    constexpr std::size_t kRows = 100000;
    const ProcessResult result =
        Show({recipe.string(), "--format", "W\xC3\xB6rter", "--start", "0", "--rows", std::to_string(kRows)});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), kRows + 1);
    EXPECT_TRUE(result.out.ends_with("\n100000  RW99999      0\n"));
}

TEST_F(ShowCommand, UnknownFormatIsReported)
{
    ExpectRefused({recipe.string(), "--format", "oven"}, "The format oven doesn't exist!");
}

TEST_F(ShowCommand, NegativeStartIsReported)
{
    const std::string message = "The Address for reading data is error , it can' be less than 0!";
    ExpectRefused({recipe.string(), "--start", "-1"}, message);
    ExpectRefused({recipe.string(), "--start=-1"}, message);
    library.startAddress = -1;
    SaveLibrary();
    ExpectRefused({recipe.string()}, message);
}

TEST_F(ShowCommand, NoRowsAreReported)
{
    const std::string message = "The array number is error ,it must be Integer and larger than 0!";
    ExpectRefused({recipe.string(), "--rows", "0"}, message);
    ExpectRefused({recipe.string(), "--rows", "-3"}, message);
    library.rowCount = 0;
    SaveLibrary();
    ExpectRefused({recipe.string()}, message);
}

TEST_F(ShowCommand, FormatThatCannotBeShownIsReported)
{
    library.formats[0]->items[0]->dataLength = -1;
    SaveLibrary();
    ExpectRefused({recipe.string()}, "The format can't be shown! The length of the item Level is less than 0!");
}

TEST_F(ShowCommand, MissingFileIsReported)
{
    const std::string missing = folder / "missing.rcp";
    ExpectRefused({missing}, "Open error! " + missing + " doesn't exit!");
}

TEST_F(ShowCommand, UnknownExtensionIsReported)
{
    const fs::path text = folder / "a.txt";
    WriteAll(text, WordBytes({1}));
    ExpectRefused({text.string()},
                  "The type of file " + text.string() + " is unknown! It must be .rcp, .csv, .erp or .frp!");
}

TEST_F(ShowCommand, FileThatCannotBeReadIsReported)
{
    const fs::path inPlaceOfFile = folder / "folder.rcp";
    fs::create_directory(inPlaceOfFile);
    ExpectRefused({inPlaceOfFile.string()}, "Open file " + inPlaceOfFile.string() + " error!");
}

TEST_F(ShowCommand, PrintsJson)
{
    const ProcessResult result = Show({recipe.string(), "--json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.out,
              "{\"titles\": [\"Level\", \"Temp(0)\", \"Temp(1)\", \"\xE5\x90\x8D\xE7\xA7\xB0\"], \"rows\": [\n"
              "{\"id\": 1, \"address\": \"RW1\", \"cells\": [\"5\", \"12.3\", \"100.0\", \"A\"]},\n"
              "{\"id\": 2, \"address\": \"RW6\", \"cells\": [\"600\", \"4.5\", \"0.0\", "
              "\"\xE5\xAE\x8B\xE4\xBD\x93\"]}\n"
              "]}\n");
}

TEST_F(ShowCommand, JsonOfAFormatWithoutItemsHasNoRows)
{
    library.formats[0]->clear();
    SaveLibrary();
    EXPECT_EQ(Show({recipe.string(), "--json"}).out, "{\"titles\": [], \"rows\": []}\n");
}

TEST_F(ShowCommand, JsonEscapesWhatHasAMeaning)
{
    SetText(library.formats[0]->items[0]->description, u"a\"b\\c");
    library.formats[0]->items[2]->dataLength = 8;
    SaveLibrary();
    WriteAll(recipe, WordBytes({0, 1, 2, 3, '\b', '\t', '\n', '\f', '\r', 0x1F, 0xDC00, 0x7F}));
    EXPECT_EQ(Show({recipe.string(), "--json", "--rows", "1"}).out,
              "{\"titles\": [\"a\\\"b\\\\c\", \"Temp(0)\", \"Temp(1)\", \"\xE5\x90\x8D\xE7\xA7\xB0\"], \"rows\": [\n"
              "{\"id\": 1, \"address\": \"RW1\", \"cells\": [\"1\", \"0.2\", \"0.3\", "
              "\"\\b\\t\\n\\f\\r\\u001f\xEF\xBF\xBD\x7F\"]}\n"
              "]}\n");
}

TEST_F(ShowCommand, NumbersAreDecimal)
{
    const std::string out = Show({recipe.string(), "--rows", "010"}).out;
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 11) << out; // not eight rows and the titles
}

TEST_F(ShowCommand, EmptyFormatNameIsNoDefault)
{
    ExpectRefused({recipe.string(), "--format", ""}, "The format  doesn't exist!");
}

TEST_F(ShowCommand, FullOutputIsReported)
{
    for (const char* form : {"--rows=2", "--json"}) {
        const ProcessResult result = RunProcess(
            VANTOR_CLI_PROGRAM, {"show", "--library", libraryPath.string(), recipe.string(), form}, "/dev/full");
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.error, "Can't write the output!\n");
    }
}

} // namespace
