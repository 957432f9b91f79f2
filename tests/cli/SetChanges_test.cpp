#include "tests/cli/CliTest.h"
#include "tests/support/Formats.h"

#include <memory>

namespace {

using Arguments = std::vector<std::string>;

/// A format of every type, "All": two rows from word 0.
struct SetChanges : CliTest {
    SetChanges()
    {
        library.formats[0] = std::make_unique<DataFormat>(MakeFormat(
            u"All", {MakeItem(u"Belt", DataType::Unsigned16, 1, 2, 2), MakeItem(u"Hex", DataType::Hex16, 1, 4),
                     MakeItem(u"Steam", DataType::Float, 2, 3, 1), MakeItem(u"Gas", DataType::Double, 4, 4, 2),
                     MakeItem(u"Name", DataType::String, 1, 1), MakeItem(u"Trim", DataType::Signed16, 1, 3, 2)}));
        library.startAddress = 0;
        library.rowCount = 2;
        SaveLibrary();
        WriteAll(recipe, Sample());
    }

    /// 1.05 (shown as 1.50), AB, 0.1, 1.5, "A", 1.15; 20.00, 1, NaN, 2.25, "B", -0.05.
    static Bytes Sample()
    {
        return WordBytes({105,  0xAB, 0xCCCD, 0x3DCC, 0, 0, 0, 0x3FF8, u'A', 115, //
                          2000, 1,    0,      0x7FC0, 0, 0, 0, 0x4002, u'B', 0xFFFB});
    }

    Arguments Change(const std::string& rows, const std::string& item, const std::string& change) const
    {
        return {"set", recipe.string(), "--change", rows, item, change};
    }

    /// The words from `at` on after the change, which leaves that many values to be stored as shown.
    void ExpectWords(const Arguments& arguments, std::size_t at, std::initializer_list<std::uint16_t> words,
                     int storedAsShown)
    {
        WriteAll(recipe, Sample());
        ExpectDone(arguments, StoredAsShown(recipe, storedAsShown));
        const Bytes bytes = ReadAll(recipe);
        ASSERT_EQ(bytes.size(), Sample().size());
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(2 * at);
        EXPECT_EQ(Bytes(begin, begin + static_cast<std::ptrdiff_t>(2 * words.size())), WordBytes(words));
    }

    void ExpectRefusedAndKept(const Arguments& arguments, const std::string& message) const
    {
        const Bytes before = ReadAll(recipe);
        ExpectRefused(arguments, message);
        EXPECT_EQ(ReadAll(recipe), before);
    }
};

TEST_F(SetChanges, BeginWithTheStoredNumberAndAreStoredExactly)
{
    ExpectWords(Change("1", "Belt", "+0.1"), 0, {115},
                3); // 1.05 + 0.1, although 1.50 is shown and 1.15 is coded as 114
    ExpectWords(Change("1", "Belt", "-1"), 0, {5}, 3);
    ExpectWords(Change("1", "Belt", "*1.1"), 0, {116}, 3); // 1.155
    ExpectWords(Change("1", "Belt", "/2"), 0, {53}, 3);    // 0.525
}

TEST_F(SetChanges, OfSignedNumbersMayGoBelowZero)
{
    ExpectWords(Change("1", "Trim", "-1.2"), 9, {0xFFFB}, 3);
    ExpectWords(Change("1", "Trim", "*-1.1"), 9, {0xFF81}, 3); // -1.265
    ExpectWords(Change("2", "Trim", "/2"), 19, {0xFFFD}, 3);   // -0.025
    ExpectWords(Change("2", "Trim", "+0.05"), 19, {0}, 3);
}

TEST_F(SetChanges, OfHexadecimalValuesAreByADecimalNumber)
{
    ExpectWords(Change("*", "Hex", "+10"), 1, {0xB5}, 4);
    ExpectWords(Change("*", "Hex", "/2"), 1, {86}, 4);
}

TEST_F(SetChanges, OfRealNumbersHaveTheDecimalsOfTheItem)
{
    ExpectWords(Change("1", "Steam", "+0.05"), 2, {0xCCCD, 0x3E4C}, 4);             // 0.2
    ExpectWords(Change("1", "Steam", "+0.04"), 2, {0xCCCD, 0x3DCC}, 4);             // 0.1
    ExpectWords(Change("*", "Gas", "*3"), 4, {0, 0, 0, 0x4012, u'A'}, 4);           // 4.5
    ExpectWords(Change("2", "Gas", "/2"), 14, {0xAE14, 0xE147, 0x147A, 0x3FF2}, 4); // 1.125 becomes 1.13
}

TEST_F(SetChanges, AreNarrowedByConditions)
{
    Arguments arguments = Change("*", "Belt", "+1");
    arguments.insert(arguments.end(), {"--where", "Name", "B"});
    ExpectWords(arguments, 10, {2100}, 4);
}

TEST_F(SetChanges, AreRefusedOutsideTheLimits)
{
    ExpectRefusedAndKept(Change("2", "Belt", "+80"), "Row 2, Belt: 100.00 lies outside 0.00 to 99.99!");
    ExpectRefusedAndKept(Change("*", "Belt", "*5"), "Row 2, Belt: 100.00 lies outside 0.00 to 99.99!");
    ExpectRefusedAndKept(Change("1", "Belt", "-1.06"), "Row 1, Belt: -0.01 lies outside 0.00 to 99.99!");
    ExpectRefusedAndKept(Change("1", "Steam", "+999"), "Row 1, Steam: 999.1 lies outside -99 to 999!");
    ExpectRefusedAndKept(Change("2", "Hex", "-2"), "Row 2, Hex: -1 lies outside 0 to FFFF!");
    ExpectRefusedAndKept(Change("1", "Hex", "*1000"), "Row 1, Hex: 29BF8 lies outside 0 to FFFF!");
}

TEST_F(SetChanges, AreRefusedWithoutANumber)
{
    ExpectRefusedAndKept(Change("*", "Steam", "+1"), "Row 2, Steam: there is no number to change!");
    ExpectRefusedAndKept(Change("1", "Name", "+1"), "Row 1, Name: there is no number to change!");
    ExpectRefusedAndKept(Change("1", "Belt", "/0"), "Row 1, Belt: nothing can be divided by 0!");
    ExpectRefusedAndKept(Change("1", "Belt", "/0.00"), "Row 1, Belt: nothing can be divided by 0!");
}

/// What lies behind the end of the file is shown, but not stored.
TEST_F(SetChanges, AreRefusedBehindTheEndOfTheFile)
{
    WriteAll(recipe, WordBytes({105, 0xAB}));
    ExpectRefusedAndKept(Change("*", "Belt", "+1"), "Row 2, Belt: there is no number to change!");
    ExpectDone(Change("1", "Belt", "+1"), StoredAsShown(recipe, 10));
    EXPECT_EQ(ReadAll(recipe)[0], std::byte{205});
}

TEST_F(SetChanges, NothingIsWrittenWhenALaterOneIsRefused)
{
    Arguments arguments = Change("1", "Belt", "+1");
    arguments.insert(arguments.end(), {"--change", "2", "Belt", "+80"});
    ExpectRefusedAndKept(arguments, "Row 2, Belt: 100.00 lies outside 0.00 to 99.99!");
}

TEST_F(SetChanges, OfPagedFilesAreStoredExactly)
{
    const std::string path = (folder / "p.frp").string();
    ExpectDone({"convert", recipe.string(), path, "--rows", "1"});
    const std::string told = StoredAsShown(path, 1); // the trim, one less each time
    ExpectDone({"set", path, "--rows", "1", "--cell", "1", "2", "1.05", "--change", "1", "Hex", "+1"}, told);
    ExpectDone({"set", path, "--rows", "1", "--change", "1", "Belt", "+0.1"}, told);
    const Bytes bytes = ReadAll(path);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 4), WordBytes({115, 0xAC}));
}

TEST_F(SetChanges, OfATableWorkOnTheTextShown)
{
    const std::string path = (folder / "t.csv").string();
    ExpectDone({"convert", recipe.string(), path});
    ExpectDone({"set", path, "--change", "1", "Belt", "+0.1", "--change", "*", "Hex", "+10", "--change", "1", "Steam",
                "*2", "--change", "2", "Gas", "/2"},
               StoredAsShown(path, 2)); // the last field of each line gets quotes
    const std::string out = Run({"show", path, "--json"}).out;
    EXPECT_NE(out.find(R"("cells": ["1.60", "B5", "0.2", "   1.50", "A", )"), std::string::npos) << out;
    EXPECT_NE(out.find(R"("cells": ["20.00", "B", "nan", "1.13", )"), std::string::npos) << out;
    ExpectRefused({"set", path, "--change", "2", "Steam", "+1"}, "Row 2, Steam: there is no number to change!");
    ExpectRefused({"set", path, "--change", "2", "Belt", "+80"}, "Row 2, Belt: 100.00 lies outside 0.00 to 99.99!");
    ExpectRefused({"set", path, "--change", "1", "Name", "+1"}, "Row 1, Name: there is no number to change!");
    EXPECT_EQ(Run({"show", path, "--json"}).out, out);
}

struct WrongChange : SetChanges, testing::WithParamInterface<const char*> {};

TEST_P(WrongChange, IsWrongUsage)
{
    const ProcessResult result = Run(Change("1", "Belt", GetParam()));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.error.starts_with(std::string("Could not convert: --change = 1,Belt,") + GetParam() + "\n"))
        << result.error;
    EXPECT_EQ(ReadAll(recipe), Sample());
}

INSTANTIATE_TEST_SUITE_P(Table, WrongChange,
                         testing::Values("5", "x", "", "+", "+1,5", "--5", "+-5", "+5a", "%5", "*1e9999999"));

} // namespace
