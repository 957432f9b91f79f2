#include "files/BinaryRecipeFile.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <random>

// A save stores what the cells show. The writer makes no text where it knows what would come of it: here every kind of
// column is saved and compared with its texts coded one by one.

namespace {

struct ColumnCase {
    const char* name;
    DataType dataType;
    std::int32_t dataLength;
    std::int32_t decimalDigits;
    std::int64_t minValue;
    std::int64_t maxValue;
    friend void PrintTo(const ColumnCase& c, std::ostream* out) { *out << c.name; }

    ColumnCoding Coding() const
    {
        return {.title = u"Any",
                .dataType = dataType,
                .dataLength = dataLength,
                .codeType = CodeType::Bin,
                .integerDigits = 5,
                .decimalDigits = decimalDigits,
                .minValue = minValue,
                .maxValue = maxValue};
    }
};

/// Every 16-bit word, then random words: as 32-bit values, small and large ones.
Bytes TestWords()
{
    Bytes bytes;
    const auto append = [&bytes](std::uint32_t word) {
        bytes.push_back(static_cast<std::byte>(word & 0xFF));
        bytes.push_back(static_cast<std::byte>(word >> 8 & 0xFF));
    };
    for (std::uint32_t word = 0; word < 0x10000; ++word)
        append(word);
    std::mt19937 random(1);
    for (int i = 0; i < 5000; ++i) {
        constexpr std::uint32_t kHighWords[] = {0, 1, 0x7FFF, 0x8000, 0xFFFE, 0xFFFF};
        append(static_cast<std::uint32_t>(random()));
        append(i % 2 == 0 ? kHighWords[random() % 6] : static_cast<std::uint32_t>(random()));
    }
    bytes.push_back(std::byte{0x7F}); // the file ends in half a word
    return bytes;
}

struct SaveAsShown : testing::TestWithParam<ColumnCase> {};

TEST_P(SaveAsShown, StoresTheTextsCodedOneByOne)
{
    const CTempFolder folder;
    const auto path = folder / "a.rcp";
    const ColumnCoding coding = GetParam().Coding();
    const Bytes bytes = TestWords();
    WriteAll(path, bytes);
    const auto rowCount = static_cast<std::int32_t>(bytes.size() / 2) / coding.dataLength + 2;

    CRecordingReporter reporter;
    CNoProgress progress;
    CRecipeRows rows;
    rows.LayOut({coding}, 0, rowCount);
    ASSERT_EQ(ReadBinaryRecipe(rows, path, false, reporter, progress), Outcome::Done);
    ASSERT_TRUE(SaveBinaryRecipe(rows, path, reporter, progress));

    Bytes expected(static_cast<std::size_t>(rows.StretchBytes()));
    std::size_t read = 0;
    std::size_t coded = 0;
    for (std::int32_t row = 0; row < rowCount; ++row)
        CodeValue(coding, FormatValue(coding, bytes, read), expected, coded);
    EXPECT_TRUE(ReadAll(path) == expected);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, SaveAsShown, testing::Values(
    //          name                    type                  words  decimals  limits
    ColumnCase{"Signed16",              DataType::Signed16,   1,     0,        -32768, 32767},
    ColumnCase{"Signed16Narrow",        DataType::Signed16,   1,     0,        -999, 9999},
    ColumnCase{"Signed16Negative",      DataType::Signed16,   1,     0,        -500, -100},
    ColumnCase{"Signed16Positive",      DataType::Signed16,   1,     0,        100, 500},
    ColumnCase{"Signed16NoLimits",      DataType::Signed16,   1,     0,        0, 0},
    ColumnCase{"Signed16WideLimits",    DataType::Signed16,   1,     0,        -2147483648LL, 4294967295},
    ColumnCase{"Signed16Crossed",       DataType::Signed16,   1,     0,        100, -100},
    ColumnCase{"Signed16Decimals",      DataType::Signed16,   1,     2,        -32768, 32767},
    ColumnCase{"Signed16InTwoWords",    DataType::Signed16,   2,     0,        -32768, 32767},
    ColumnCase{"Signed32",              DataType::Signed32,   2,     0,        -2147483648LL, 2147483647},
    ColumnCase{"Signed32Narrow",        DataType::Signed32,   2,     0,        -99999, 999999},
    ColumnCase{"Signed32Decimals",      DataType::Signed32,   2,     1,        -2147483648LL, 2147483647},
    ColumnCase{"Signed32InOneWord",     DataType::Signed32,   1,     0,        -999, 9999},
    ColumnCase{"Unsigned16",            DataType::Unsigned16, 1,     0,        0, 65535},
    ColumnCase{"Unsigned16Decimals",    DataType::Unsigned16, 1,     3,        0, 65535},
    ColumnCase{"Unsigned16InThreeWords",DataType::Unsigned16, 3,     0,        0, 65535},
    ColumnCase{"Unsigned32",            DataType::Unsigned32, 2,     0,        0, 4294967295},
    ColumnCase{"Unsigned32Decimals",    DataType::Unsigned32, 2,     2,        0, 4294967295},
    ColumnCase{"Unsigned32InOneWord",   DataType::Unsigned32, 1,     0,        0, 4294967295},
    ColumnCase{"Hex16",                 DataType::Hex16,      1,     0,        0, 65535},
    ColumnCase{"Hex16Decimals",         DataType::Hex16,      1,     2,        0, 15},
    ColumnCase{"Hex16InTwoWords",       DataType::Hex16,      2,     0,        0, 65535},
    ColumnCase{"Hex32",                 DataType::Hex32,      2,     0,        0, 4294967295},
    ColumnCase{"Hex32InOneWord",        DataType::Hex32,      1,     0,        0, 4294967295},
    ColumnCase{"Float",                 DataType::Float,      2,     1,        -999, 9999},
    ColumnCase{"FloatInOneWord",        DataType::Float,      1,     1,        -999, 9999},
    ColumnCase{"String",                DataType::String,     2,     0,        0, 0},
    ColumnCase{"NotChosen",             DataType::NotChosen,  1,     0,        0, 0}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
