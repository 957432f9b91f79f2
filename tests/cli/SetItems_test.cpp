#include "tests/cli/CliTest.h"
#include "tests/support/Formats.h"

#include <memory>

namespace {

using Arguments = std::vector<std::string>;

/// "Oven" has the items "Level", "Temp(0)", "Temp(1)" and one with the title 名称. Its rows hold 5, 12.3, 100.0, "A"
/// and 600, 4.5, 0.0, "宋体".
struct SetItems : CliTest {
    Arguments Set(const Arguments& options) const
    {
        Arguments arguments = {"set", recipe.string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }

    void ExpectWords(const Arguments& options, std::initializer_list<std::uint16_t> words) const
    {
        ExpectDone(Set(options));
        EXPECT_EQ(ReadAll(recipe), WordBytes(words));
    }

    void ExpectRefusedAndKept(const Arguments& options, const std::string& message) const
    {
        const Bytes before = ReadAll(recipe);
        ExpectRefused(Set(options), message);
        EXPECT_EQ(ReadAll(recipe), before);
    }

    void ExpectWrongUsage(const Arguments& options, const std::string& message) const
    {
        const Bytes before = ReadAll(recipe);
        const ProcessResult result = Run(Set(options));
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.error.starts_with(message + "\n")) << result.error;
        EXPECT_NE(result.error.find("Usage: vantor-cli set"), std::string::npos);
        EXPECT_EQ(ReadAll(recipe), before);
    }

    const std::string name = "\xE5\x90\x8D\xE7\xA7\xB0"; ///< the title of the last item
};

TEST_F(SetItems, PutsATextIntoTheRowsNamed)
{
    ExpectWords({"--value", "2", "Level", "7"}, {99, 5, 123, 1000, u'A', 0, 7, 45, 0, 0x5B8B, 0x4F53, 99});
    ExpectWords({"--value", "1-2", "Temp(1)", "-0.5"},
                {99, 5, 123, 0xFFFB, u'A', 0, 7, 45, 0xFFFB, 0x5B8B, 0x4F53, 99});
    ExpectWords({"--value", "2,1", name, "-h"}, {99, 5, 123, 0xFFFB, u'-', u'h', 7, 45, 0xFFFB, u'-', u'h', 99});
    ExpectWords({"--value", "*", "Level", ""}, {99, 0, 123, 0xFFFB, u'-', u'h', 0, 45, 0xFFFB, u'-', u'h', 99});
}

TEST_F(SetItems, TakesTheFileAfterItsOptions)
{
    ExpectDone({"set", "--value", "1", "Level", "7", "--where", "Temp(0)", "12.3", recipe.string()});
    EXPECT_EQ(ReadAll(recipe)[2], std::byte{7});
}

TEST_F(SetItems, LastOrderOfACellHoldsWhateverItsOption)
{
    const auto level = [this] { return ReadAll(recipe)[2]; };
    ExpectDone(Set({"--cell", "1", "2", "1", "--value", "*", "Level", "2"}));
    EXPECT_EQ(level(), std::byte{2});
    ExpectDone(Set({"--value", "*", "Level", "3", "--cell", "1", "2", "4"}));
    EXPECT_EQ(level(), std::byte{4});
    ExpectDone(Set({"--change", "1", "Level", "+1", "--value", "1", "Level", "9"}));
    EXPECT_EQ(level(), std::byte{9});
    ExpectDone(Set({"--value", "1", "Level", "1", "--cell", "1", "2", "2", "--change", "1", "Level", "+1"}));
    EXPECT_EQ(level(), std::byte{10}); // a change begins with what the file stores
    ExpectDone(Set({"--change", "1", "Level", "+1", "--change", "1", "Level", "*2"}));
    EXPECT_EQ(level(), std::byte{20});
}

TEST_F(SetItems, AreNarrowedToTheRowsThatShowATextExactly)
{
    ExpectWords({"--value", "*", "Level", "7", "--where", "Temp(0)", "4.5"},
                {99, 5, 123, 1000, u'A', 0, 7, 45, 0, 0x5B8B, 0x4F53, 99});
    ExpectWords({"--value", "*", "Level", "8", "--where", name, "\xE5\xAE\x8B\xE4\xBD\x93", "--where", "Level", "7"},
                {99, 5, 123, 1000, u'A', 0, 8, 45, 0, 0x5B8B, 0x4F53, 99});
    ExpectWords({"--where", "Level", "5", "--change", "*", "Level", "+1", "--value", "*", "Temp(1)", "1"},
                {99, 6, 123, 10, u'A', 0, 8, 45, 0, 0x5B8B, 0x4F53, 99});
}

TEST_F(SetItems, ConditionsLookAtTheFileAndNotAtOtherOrders)
{
    ExpectWords({"--value", "1", "Level", "9", "--value", "1", "Temp(0)", "1", "--where", "Level", "5"},
                {99, 9, 10, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53, 99});
}

TEST_F(SetItems, ConditionsDoNotNarrowCells)
{
    ExpectWords({"--cell", "1", "2", "9", "--value", "*", "Temp(0)", "1", "--where", "Level", "600"},
                {99, 9, 123, 1000, u'A', 0, 600, 10, 0, 0x5B8B, 0x4F53, 99});
}

TEST_F(SetItems, AnEmptyTextIsAConditionToo)
{
    ExpectDone(Set({"--cell", "2", "5", ""}));
    ExpectWords({"--value", "*", "Level", "1", "--where", name, ""}, {99, 5, 123, 1000, u'A', 0, 1, 45, 0, 0, 0, 99});
}

/// The blanks in front of a double of a flat file fill its column.
TEST_F(SetItems, PaddingOfADoubleIsNoPartOfACondition)
{
    library.formats[0] = std::make_unique<DataFormat>(
        MakeFormat(u"D", {MakeItem(u"Gas", DataType::Double, 4, 4, 1), MakeItem(u"No.", DataType::Signed16, 1, 4)}));
    library.rowCount = 1;
    library.startAddress = 0;
    SaveLibrary();
    WriteAll(recipe, WordBytes({0, 0, 0, 0x3FF8, 1}));
    ExpectWords({"--value", "*", "No.", "2", "--where", "Gas", "1.5"}, {0, 0, 0, 0x3FF8, 2});
    ExpectWords({"--value", "*", "No.", "3", "--where", "Gas", "   1.5"}, {0, 0, 0, 0x3FF8, 3});
}

TEST_F(SetItems, RefusesWhatTheCellWouldNotTake)
{
    ExpectRefusedAndKept({"--value", "*", "Level", "x"}, "Col 1,Row 2 data error !");
    ExpectRefusedAndKept({"--value", "2", "Temp(1)", "1.23"}, "Col 2,Row 4 data error !");
    ExpectRefusedAndKept({"--value", "2", name, "\xFF"}, "Col 2,Row 5 data error !");
    ExpectRefusedAndKept({"--value", "1", "Level", "1", "--cell", "2", "2", "x", "--value", "1", "Level", "y"},
                         "Col 2,Row 2 data error !");
}

TEST_F(SetItems, RefusesRowsThatAreNotThere)
{
    ExpectRefusedAndKept({"--value", "3", "Level", "1"}, "There is no row 3! The rows are 1 to 2!");
    ExpectRefusedAndKept({"--value", "1,0", "Level", "1"}, "There is no row 0! The rows are 1 to 2!");
    ExpectRefusedAndKept({"--value", "2-9", "Level", "1"}, "There is no row 3! The rows are 1 to 2!");
    ExpectRefusedAndKept({"--change", "1,4-9223372036854775807", "Level", "+1"},
                         "There is no row 4! The rows are 1 to 2!");
    ExpectRefusedAndKept({"--value", "3", "Level", "1", "--where", "Level", "5"},
                         "There is no row 3! The rows are 1 to 2!");
}

TEST_F(SetItems, RefusesItemsThatAreNotThereOrNotAlone)
{
    ExpectRefusedAndKept({"--value", "1", "level", "1"}, "The item level doesn't exist!");
    ExpectRefusedAndKept({"--value", "1", "", "1"}, "The item  doesn't exist!");
    ExpectRefusedAndKept({"--value", "1", "RW_Addr", "1"}, "The item RW_Addr doesn't exist!");
    ExpectRefusedAndKept({"--change", "1", "Temp", "+1"}, "The item Temp doesn't exist!");
    ExpectRefusedAndKept({"--value", "1", "Level", "1", "--where", "Lvl", "1"}, "The item Lvl doesn't exist!");

    library.formats[0] = std::make_unique<DataFormat>(
        MakeFormat(u"Twice", {MakeItem(u"A", DataType::Signed16, 1, 4), MakeItem(u"A", DataType::Signed16, 1, 4),
                              MakeItem(u"B", DataType::Signed16, 1, 4)}));
    SaveLibrary();
    ExpectRefusedAndKept({"--value", "1", "A", "1"}, "More than one item is called A!");
    ExpectRefusedAndKept({"--value", "1", "B", "1", "--where", "A", "5"}, "More than one item is called A!");
    ExpectDone(Set({"--value", "1", "B", "1"}));
}

TEST_F(SetItems, RefusesToChooseNoCell)
{
    ExpectRefusedAndKept({"--value", "*", "Level", "1", "--where", "Temp(0)", "4.50"},
                         "No row shows what was asked for! Nothing was changed!");
    ExpectRefusedAndKept({"--value", "1", "Level", "1", "--where", "Level", "600"},
                         "No row shows what was asked for! Nothing was changed!");
}

TEST_F(SetItems, WrongUsageIsTold)
{
    ExpectWrongUsage({"--value", "x", "Level", "1"}, "Could not convert: --value = x,Level,1");
    ExpectWrongUsage({"--value", "2-1", "Level", "1"}, "Could not convert: --value = 2-1,Level,1");
    ExpectWrongUsage({"--cell", "1", "2", "3", "--where", "Level", "5"}, "--where requires --value or --change");
    ExpectWrongUsage({"--where", "Level", "5"}, "--where requires --value or --change");
    ExpectWrongUsage({}, "--cell, --value or --change is required");
}

TEST_F(SetItems, ItemsOfATableAndOfPagedFilesAreNamedLikewise)
{
    for (const char* file : {"t.csv", "t.frp", "t.erp"}) {
        const std::string path = (folder / file).string();
        const int withQuotes = path.ends_with(".csv") ? 2 : 0; // of a table the last field of each line
        ExpectDone({"convert", recipe.string(), path});
        ExpectDone({"set", path, "--value", "*", "Temp(0)", "7.5", "--where", "Level", "600"},
                   StoredAsShown(path, withQuotes));
        const std::string out = Run({"show", path, "--json"}).out;
        EXPECT_NE(out.find(R"("cells": ["5", "12.3", "100.0", )"), std::string::npos) << out;
        EXPECT_NE(out.find(R"("cells": ["600", "7.5", "0.0",)"), std::string::npos) << out;
    }
}

} // namespace
