#include "tests/cli/CliTest.h"

namespace fs = std::filesystem;

namespace {

struct SetCommand : CliTest {
    /// Sets cells, each a row, a column and a text.
    std::vector<std::string> Cells(const std::vector<std::vector<std::string>>& cells) const
    {
        std::vector<std::string> arguments = {"set", recipe.string()};
        for (const auto& cell : cells) {
            arguments.push_back("--cell");
            arguments.insert(arguments.end(), cell.begin(), cell.end());
        }
        return arguments;
    }
};

TEST_F(SetCommand, WritesTheCellsAndNothingElse)
{
    ExpectDone(Cells({{"1", "2", "-7"}, {"2", "4", "0.1"}, {"2", "5", "\xE5\xAE\x8B"}}));
    EXPECT_EQ(ReadAll(recipe), WordBytes({99, 0xFFF9, 123, 1000, u'A', 0, 600, 45, 1, 0x5B8B, 0, 99}));
}

TEST_F(SetCommand, LastTextOfACellHolds)
{
    ExpectDone(Cells({{"1", "2", "1"}, {"1", "2", "2"}}));
    EXPECT_EQ(ReadAll(recipe)[2], std::byte{2});
}

TEST_F(SetCommand, TakesFormatStartAndRowsFromItsOptions)
{
    std::vector<std::string> arguments = Cells({{"3", "2", "-2"}});
    arguments.insert(arguments.end(), {"--format", "W\xC3\xB6rter", "--start", "9", "--rows", "3"});
    ExpectDone(arguments);
    EXPECT_EQ(ReadAll(recipe), WordBytes({99, 5, 123, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53, 0xFFFE}));
}

TEST_F(SetCommand, SavePastTheEndMakesTheFileLonger)
{
    WriteAll(recipe, WordBytes({99}));
    ExpectDone(Cells({{"1", "2", "7"}}), StoredAsShown(recipe, 7));
    EXPECT_EQ(ReadAll(recipe), WordBytes({99, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(SetCommand, TextsThatLookLikeSomethingElseAreTexts)
{
    std::vector<std::string> arguments = Cells({{"1", "5", "-h"}, {"2", "5", "%%"}, {"1", "2", ""}});
    ExpectDone(arguments);
    EXPECT_EQ(ReadAll(recipe), WordBytes({99, 0, 123, 1000, u'-', u'h', 600, 45, 0, u'%', u'%', 99}));
    ExpectDone(Cells({{"1", "5", "--"}, {"2", "5", "[]"}}));
    EXPECT_EQ(ReadAll(recipe), WordBytes({99, 0, 123, 1000, u'-', u'-', 600, 45, 0, u'[', u']', 99}));
}

struct RefusedCell {
    const char* name;
    std::vector<std::vector<std::string>> cells;
    const char* message;
    friend void PrintTo(const RefusedCell& c, std::ostream* out) { *out << c.name; }
};

struct SetRefused : SetCommand, testing::WithParamInterface<RefusedCell> {};

// The message has the row before the column, as the grid's.
TEST_P(SetRefused, WritesNothing)
{
    const Bytes before = ReadAll(recipe);
    ExpectRefused(Cells(GetParam().cells), GetParam().message);
    EXPECT_EQ(ReadAll(recipe), before);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, SetRefused, testing::Values(
    RefusedCell{"NoNumber",          {{"1", "2", "x"}},                    "Col 1,Row 2 data error !"},
    RefusedCell{"TooLarge",          {{"2", "2", "10000"}},                "Col 2,Row 2 data error !"},
    RefusedCell{"TooManyDecimals",   {{"1", "3", "1.23"}},                 "Col 1,Row 3 data error !"},
    RefusedCell{"TextTooLong",       {{"2", "5", "abc"}},                  "Col 2,Row 5 data error !"},
    RefusedCell{"NoUtf8",            {{"1", "5", "\xFF"}},                 "Col 1,Row 5 data error !"},
    RefusedCell{"SecondOfTwo",       {{"1", "2", "1"}, {"2", "3", "x"}},   "Col 2,Row 3 data error !"},
    RefusedCell{"FirstInGivenOrder", {{"2", "3", "x"}, {"1", "2", "y"}},   "Col 2,Row 3 data error !"},
    RefusedCell{"TitleRow",          {{"0", "2", "1"}},                    "Col 0,Row 2 data error !"},
    RefusedCell{"IdColumn",          {{"1", "0", "1"}},                    "Col 1,Row 0 data error !"},
    RefusedCell{"AddressColumn",     {{"1", "1", "1"}},                    "Col 1,Row 1 data error !"},
    RefusedCell{"RowPastTheLast",    {{"3", "2", "1"}},                    "Col 3,Row 2 data error !"},
    RefusedCell{"ColumnPastLast",    {{"1", "6", "1"}},                    "Col 1,Row 6 data error !"},
    RefusedCell{"NegativeRow",       {{"-1", "2", "1"}},                   "Col -1,Row 2 data error !"},
    RefusedCell{"HugeNumbers",       {{"4294967297", "4294967298", "1"}},  "Col 4294967297,Row 4294967298 data error !"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(SetCommand, FormatWithoutItemsHasNoCells)
{
    library.formats[0]->clear();
    SaveLibrary();
    const Bytes before = ReadAll(recipe);
    ExpectRefused(Cells({{"1", "2", "1"}}), "Col 1,Row 2 data error !");
    EXPECT_EQ(ReadAll(recipe), before);
}

TEST_F(SetCommand, MissingFileIsReportedAndNotMade)
{
    fs::remove(recipe);
    ExpectRefused(Cells({{"1", "2", "1"}}), "Open error! " + recipe.string() + " doesn't exit!");
    EXPECT_FALSE(fs::exists(recipe));
}

TEST_F(SetCommand, FolderInPlaceOfAFileIsReported)
{
    fs::remove(recipe);
    fs::create_directory(recipe);
    ExpectRefused(Cells({{"1", "2", "1"}}), "Open file " + recipe.string() + " error!");
}

TEST_F(SetCommand, UnknownExtensionIsReported)
{
    recipe = folder / "a.txt";
    WriteAll(recipe, WordBytes({1, 2}));
    ExpectRefused(Cells({{"1", "2", "1"}}),
                  "The type of file " + recipe.string() + " is unknown! It must be .rcp, .csv, .erp or .frp!");
    EXPECT_EQ(ReadAll(recipe), WordBytes({1, 2}));
}

TEST_F(SetCommand, FileThatMayNotGrowIsReportedAndKept)
{
    const Bytes before(1024, std::byte{1});
    WriteAll(recipe, before);
    const ProcessResult result =
        RunScript("ulimit -f 1; \"$cli\" set \"$1\" --library \"$2\" --start 510 --cell 1 2 7 2>&1",
                  {recipe.string(), libraryPath.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "Can't save file " + recipe.string() + ",please check file or your disk!\n");
    EXPECT_EQ(ReadAll(recipe).size(), before.size());
}

TEST_F(SetCommand, LeavesTheLibraryAsItIs)
{
    const Bytes before = ReadAll(libraryPath);
    ExpectDone(Cells({{"1", "2", "1"}}));
    EXPECT_EQ(ReadAll(libraryPath), before);
}

} // namespace
