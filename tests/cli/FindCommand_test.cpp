#include "tests/cli/CliTest.h"
#include "tests/support/Formats.h"

#include <bit>
#include <cstring>
#include <memory>

namespace fs = std::filesystem;

namespace {

struct FindCommand : CliTest {
    void ExpectFound(std::vector<std::string> arguments, const std::string& lines) const
    {
        arguments.insert(arguments.begin(), "find");
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, lines.empty() ? 1 : 0);
        EXPECT_EQ(result.out, lines);
        EXPECT_EQ(result.error, "");
    }

    void ExpectTrouble(std::vector<std::string> arguments, const std::string& message) const
    {
        arguments.insert(arguments.begin(), "find");
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, message + "\n");
    }
};

TEST_F(FindCommand, FindsCellsThatShowExactlyTheText)
{
    ExpectFound({recipe.string(), "4.5"}, "RW7 row 2 Temp(0) = 4.5\n");
    ExpectFound({recipe.string(), "100"}, "");
    ExpectFound({recipe.string(), "\xE5\xAE\x8B\xE4\xBD\x93"},
                "RW9 row 2 \xE5\x90\x8D\xE7\xA7\xB0 = \xE5\xAE\x8B\xE4\xBD\x93\n");
}

TEST_F(FindCommand, PartFindsCellsThatContainTheText)
{
    ExpectFound({recipe.string(), "0.0", "--part"}, "RW3 row 1 Temp(1) = 100.0\n"
                                                    "RW8 row 2 Temp(1) = 0.0\n");
}

TEST_F(FindCommand, ItemNarrowsTheSearchToColumnsOfThatTitle)
{
    ExpectFound({recipe.string(), "5", "--part", "--item", "Level"}, "RW1 row 1 Level = 5\n");
    ExpectFound({recipe.string(), "5", "--part", "--item", "Temp(0)"}, "RW7 row 2 Temp(0) = 4.5\n");
    ExpectTrouble({recipe.string(), "5", "--item", "Nix"}, "The item Nix doesn't exist!");
}

TEST_F(FindCommand, ATitleThatStandsTwiceIsLookedThroughTwice)
{
    library.formats[0]->insertItem(0, std::make_unique<DataItem>(MakeItem(u"Level", DataType::Signed16, 1, 4)));
    library.formats[0]->itemCount = 4;
    SaveLibrary();
    WriteAll(recipe, WordBytes({0, 7, 7, 0, 0, 0, 0}));
    ExpectFound({recipe.string(), "7", "--item", "Level"}, "RW1 row 1 Level = 7\nRW2 row 1 Level = 7\n");
}

TEST_F(FindCommand, FindsInATableOfTextsWithoutAddresses)
{
    const fs::path file = folder / "a.csv";
    WriteAll(file, TextBytes("5,12.3\nx,a\tb\n"));
    ExpectFound({file.string(), "12.3"}, "row 1 Temp(0) = 12.3\n");
    ExpectFound({file.string(), "b", "--part"}, "row 2 Temp(0) = a\\tb\n");
}

TEST_F(FindCommand, AnywhereFindsANumberAsAnyTypeScalingAndWordOrder)
{
    const auto single = std::bit_cast<std::uint32_t>(24.5F);
    const auto low = static_cast<std::uint16_t>(single);
    const auto high = static_cast<std::uint16_t>(single >> 16);
    WriteAll(recipe, WordBytes({245, 7, low, high, 7, high, low, 7, 2450}));
    ExpectFound({recipe.string(), "24.5", "--anywhere"}, "RW0 signed 16-bit, 1 decimal\n"
                                                         "RW0 unsigned 16-bit, 1 decimal\n"
                                                         "RW2 float\n"
                                                         "RW5 float, high word first\n"
                                                         "RW8 signed 16-bit, 2 decimals\n"
                                                         "RW8 unsigned 16-bit, 2 decimals\n");
}

TEST_F(FindCommand, AnywhereFindsLongAndNegativeNumbers)
{
    WriteAll(recipe, WordBytes({0x86A0, 0x0001, 9, 0x0001, 0x86A0, 9, 0xFFFB}));
    ExpectFound({recipe.string(), "100000", "--anywhere"}, "RW0 signed 32-bit\n"
                                                           "RW0 unsigned 32-bit\n"
                                                           "RW3 signed 32-bit, high word first\n"
                                                           "RW3 unsigned 32-bit, high word first\n");
    ExpectFound({recipe.string(), "-5", "--anywhere"}, "RW6 signed 16-bit\n");
    const double value = 1e300;
    std::uint16_t words[4];
    std::memcpy(words, &value, sizeof words);
    WriteAll(recipe, WordBytes({1, words[0], words[1], words[2], words[3], words[3], words[2], words[1], words[0]}));
    ExpectFound({recipe.string(), "1e300", "--anywhere"}, "RW1 double\nRW5 double, high word first\n");
}

TEST_F(FindCommand, AnywhereTakesAHexadecimalNumber)
{
    WriteAll(recipe, WordBytes({9, 0x1F, 7}));
    ExpectFound({recipe.string(), "1f", "--anywhere"}, "RW1 hexadecimal 16-bit\n");
}

TEST_F(FindCommand, AnywhereLooksAcrossPieces)
{
    Bytes bytes(std::size_t{256} << 10, std::byte{0x11});
    const Bytes number = WordBytes({0x86A0, 0x0001});
    bytes.resize(bytes.size() + 100, std::byte{0x11});
    std::copy(number.begin(), number.end(), bytes.begin() + (256 << 10) - 2);
    WriteAll(recipe, bytes);
    ExpectFound({recipe.string(), "100000", "--anywhere"}, "RW131071 signed 32-bit\nRW131071 unsigned 32-bit\n");
}

TEST_F(FindCommand, AnywhereLooksThroughAllWordsOfAPagedFileAndAllFieldsOfATable)
{
    const fs::path paged = folder / "a.erp";
    ASSERT_EQ(Run({"convert", recipe.string(), paged.string(), "--start", "6", "--rows", "1"}).exitCode, 0);
    ExpectFound({paged.string(), "600", "--anywhere"}, "RW5 signed 32-bit, high word first\n"
                                                       "RW5 unsigned 32-bit, high word first\n"
                                                       "RW6 signed 16-bit\n"
                                                       "RW6 unsigned 16-bit\n");

    const fs::path table = folder / "a.csv";
    WriteAll(table, TextBytes("1,2\n3,4\n5,6,7,8,9,24.50\n"));
    ExpectFound({table.string(), "24.5", "--anywhere"}, "line 3 field 6 = 24.50\n");
}

TEST_F(FindCommand, SaysWhatItCannotDo)
{
    ExpectTrouble({recipe.string(), "warm", "--anywhere"}, "warm is no number!");
    ExpectTrouble({(folder / "none.rcp").string(), "5"},
                  "Open error! " + (folder / "none.rcp").string() + " doesn't exit!");
    ExpectTrouble({recipe.string(), "5", "--format", "Nix"}, "The format Nix doesn't exist!");
    EXPECT_EQ(Run({"find", recipe.string(), "5", "--anywhere", "--part"}).exitCode, 2);
    EXPECT_EQ(Run({"find", recipe.string()}).exitCode, 2);
}

TEST_F(FindCommand, ADamagedFileIsTrouble)
{
    const fs::path file = folder / "a.frp";
    WriteAll(file, Bytes(65536 + 4096, std::byte{0x77}));
    ExpectTrouble({file.string(), "5", "--anywhere"}, "Open file " + file.string() + " error!");
}

} // namespace
