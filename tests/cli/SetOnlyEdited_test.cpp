#include "tests/cli/CliTest.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/Formats.h"

#include <memory>

namespace fs = std::filesystem;

namespace {

using Arguments = std::vector<std::string>;

/// A format of a number with decimals, a float and a text, "Belt": two rows from word 1.
struct SetOnlyEdited : CliTest {
    SetOnlyEdited()
    {
        library.formats[0] = std::make_unique<DataFormat>(MakeFormat(
            u"Belt", {MakeItem(u"Speed", DataType::Unsigned16, 1, 2, 2), MakeItem(u"Steam", DataType::Float, 2, 3, 1),
                      MakeItem(u"Name", DataType::String, 1, 1)}));
        SaveLibrary();
        WriteAll(recipe, Sample(105));
    }

    /// 99; 1.05 (shown as 1.50), 0.123 (shown as 0.1), "A"; 7.05 (shown as 7.50), 2.0, "B"; 99.
    static Bytes Sample(std::uint16_t speed)
    {
        return WordBytes({99, speed, 0xE76D, 0x3DFB, u'A', 705, 0, 0x4000, u'B', 99});
    }

    static Arguments Set(const fs::path& file, const Arguments& options)
    {
        Arguments arguments = {"set", file.string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }

    void ExpectRefusedAndKept(const fs::path& file, const Arguments& options, const std::string& message) const
    {
        const Bytes before = ReadAll(file);
        ExpectRefused(Set(file, options), message);
        EXPECT_EQ(ReadAll(file), before);
    }

    std::string Refusal(const std::string& fault) const
    {
        return "Can't save only the edited cells of file " + table.string() + ": " + fault + "!";
    }

    const fs::path table = folder / "t.csv";
};

TEST_F(SetOnlyEdited, ChangesTheWordsThatWereSetAndNoOther)
{
    ExpectDone(Set(recipe, {"--value", "2", "Name", "C", "--only-edited"}));
    Bytes expected = Sample(105);
    expected[16] = std::byte{u'C'};
    EXPECT_EQ(ReadAll(recipe), expected);
    ExpectDone(Set(recipe, {"--only-edited", "--cell", "1", "2", "1.15"}));
    expected[2] = std::byte{114}; // as every typed text
    EXPECT_EQ(ReadAll(recipe), expected);
}

TEST_F(SetOnlyEdited, ChangesAddUpExactly)
{
    for (const int speed : {115, 125, 135}) {
        ExpectDone(Set(recipe, {"--change", "1", "Speed", "+0.1", "--only-edited"}));
        EXPECT_EQ(ReadAll(recipe), Sample(static_cast<std::uint16_t>(speed)));
    }
    ExpectDone(Set(recipe, {"--change", "1", "Speed", "-0.3", "--only-edited"}));
    EXPECT_EQ(ReadAll(recipe), Sample(105));
}

TEST_F(SetOnlyEdited, ChangesTheWordsOfAPagedFileAndNoOther)
{
    for (const char* name : {"p.erp", "p.frp"}) {
        const fs::path path = folder / name;
        ExpectDone({"convert", recipe.string(), path.string()});
        ExpectDone(Set(path, {"--only-edited", "--change", "2", "Speed", "-0.45"})); // 750 was stored
        Bytes expected = ReadAll(path);
        EXPECT_EQ(expected[10], std::byte{705 % 256});
        ExpectDone(Set(path, {"--only-edited", "--value", "1", "Name", "Z"}));
        expected[8] = std::byte{u'Z'};
        EXPECT_TRUE(ReadAll(path) == expected);
    }
}

TEST_F(SetOnlyEdited, MakesThePageOfItsWordsAlone)
{
    const fs::path path = folder / "p.frp";
    WriteAll(path, Bytes(65536 + 4096)); // with a directory, but no pages
    ExpectDone(Set(path, {"--start", "40000", "--rows", "5000", "--value", "1", "Name", "Z", "--only-edited"}));
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), 77824u); // a table and a page
    EXPECT_EQ(bytes[73728 + (80006 % 4096)], std::byte{u'Z'});
}

TEST_F(SetOnlyEdited, ChangesTheFieldsOfATableAndNoOther)
{
    WriteAll(table, Utf16File(u"\"1.05\"\t\"\"2\"\tA\r\n\"7.0\"\t\"2.0\"\t\"B\"\r\n\"beyond\"\r\n"));
    ExpectDone(Set(table, {"--only-edited", "--value", "1", "Name", "C", "--cell", "2", "2", "7.1"}));
    EXPECT_EQ(ReadAll(table), Utf16File(u"\"1.05\"\t\"\"2\"\tC\r\n\"7.1\"\t\"2.0\"\t\"B\"\r\n\"beyond\"\r\n"));
}

TEST_F(SetOnlyEdited, RefusesATableInAnotherForm)
{
    WriteAll(table, TextBytes("1.05,2,A\r\n7.05,2.0,B\r\n"));
    ExpectRefusedAndKept(table, {"--only-edited", "--value", "1", "Name", "C"}, Refusal("it is not UTF-16 text"));
}

TEST_F(SetOnlyEdited, RefusesATextThatATableCannotHold)
{
    WriteAll(table, Utf16File(u"\"1.05\"\t\"2\"\t\"A\"\t\"spare\"\r\n"));
    ExpectRefusedAndKept(table, {"--rows", "1", "--only-edited", "--value", "1", "Name", "\""},
                         Refusal("the text of row 1, column 4 would not be read again as it is"));
}

TEST_F(SetOnlyEdited, FillsUpToACellBehindTheEndWithZeros)
{
    WriteAll(recipe, WordBytes({99, 105}));
    ExpectDone(Set(recipe, {"--only-edited", "--value", "2", "Speed", "3"}));
    EXPECT_EQ(ReadAll(recipe), WordBytes({99, 105, 0, 0, 0, 300}));
}

TEST_F(SetOnlyEdited, ReportsRefusalsAndFailuresAsWithoutIt)
{
    ExpectRefusedAndKept(recipe, {"--only-edited", "--value", "*", "Speed", "x"}, "Col 1,Row 2 data error !");
    ExpectRefused(Set(folder / "none.rcp", {"--only-edited", "--cell", "1", "2", "1"}),
                  "Open error! " + (folder / "none.rcp").string() + " doesn't exit!");
    EXPECT_FALSE(fs::exists(folder / "none.rcp"));

    const Bytes before(1024, std::byte{1});
    WriteAll(recipe, before);
    const ProcessResult result =
        RunScript("ulimit -f 1; \"$cli\" set \"$1\" --library \"$2\" --start 510 --value 2 Name Z --only-edited 2>&1",
                  {recipe.string(), libraryPath.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "Can't save file " + recipe.string() + ",please check file or your disk!\n");
    EXPECT_EQ(ReadAll(recipe), before);
}

TEST_F(SetOnlyEdited, TellsOfAFileThatMayNotBeWritten)
{
    for (const char* name : {"a.rcp", "p.erp", "p.frp"}) {
        const fs::path path = folder / name;
        if (path != recipe)
            WriteAll(path, Bytes(1048576 + 4096));
        fs::permissions(path, static_cast<fs::perms>(0444));
        fs::permissions(libraryPath, static_cast<fs::perms>(0444));
        fs::permissions(folder.Path(), static_cast<fs::perms>(0555));
        {
            const COrdinaryUser user;
            ExpectRefusedAndKept(path, {"--only-edited", "--cell", "1", "2", "1"},
                                 "Can't save file " + path.string() + ",please check file or your disk!");
        }
        fs::permissions(folder.Path(), fs::perms::owner_all);
    }
}

struct SetStoredAsShown : SetOnlyEdited {};

TEST_F(SetStoredAsShown, ValuesAreCountedAfterASaveOfAllCells)
{
    ExpectDone(Set(recipe, {"--value", "1", "Name", "C"}), StoredAsShown(recipe, 3));
    ExpectDone(Set(recipe, {"--value", "1", "Name", "D"})); // once is enough
}

TEST_F(SetStoredAsShown, OneValueIsCountedAsOne)
{
    ExpectDone(Set(recipe, {"--value", "*", "Speed", "1", "--value", "2", "Steam", "1"}), StoredAsShown(recipe, 1));
}

TEST_F(SetStoredAsShown, ValuesOfAFileThatBecomesLongerAreCounted)
{
    WriteAll(recipe, WordBytes({99, 100}));
    ExpectDone(Set(recipe, {"--value", "1", "Speed", "2"}), StoredAsShown(recipe, 5));
}

/// In the saved table the last field of each line has got quotes, which are shown.
TEST_F(SetStoredAsShown, TheLastFieldsOfATableAreCounted)
{
    WriteAll(table, Utf16File(u"\"1\"\t\"2\"\t\"A\"\r\n\"7\"\t\"2\"\t\"B\"\r\n"));
    ExpectDone(Set(table, {"--value", "*", "Speed", "3"}), StoredAsShown(table, 2));
    WriteAll(table, Utf16File(u"\"1\"\t\"2\"\t\"A\"\r\n\"7\"\t\"2\"\t\"B\"\r\n"));
    ExpectDone(Set(table, {"--value", "*", "Name", "C"}));
}

TEST_F(SetStoredAsShown, DroppedTextsAreCountedAndTold)
{
    WriteAll(table, Utf16File(u"\"1\"\t\"2\"\tA\r\n\"7\"\t\"2\"\t\"B\"\tmore\r\nbeyond\r\n"));
    ExpectDone(Set(table, {"--value", "*", "Name", "C"}),
               table.string() + ": 2 values that were not set were stored as shown or dropped. With --only-edited they "
                                "stay as they are.\n");
}

TEST_F(SetStoredAsShown, NoOtherWayIsNamedWhereThereIsNone)
{
    WriteAll(table, TextBytes("1,2,A\r\n7,2,B\r\n"));
    ExpectDone(Set(table, {"--value", "1", "Name", "C"}),
               table.string() + ": 1 value that was not set was stored as shown.\n");
    WriteAll(table, TextBytes("1,2,A\r\n7,2,B\r\n"));
    ExpectDone(Set(table, {"--value", "*", "Name", "C"})); // only the form changed
}

} // namespace
