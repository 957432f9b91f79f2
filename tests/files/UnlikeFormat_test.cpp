#include "files/RecipeFile.h"
#include "files/UnlikeFormat.h"
#include "model/DataFormat.h"
#include "model/LittleEndian.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <iostream>
#include <random>

namespace {

DataItem AnsiItem(std::int32_t words)
{
    return MakeItem(u"Ansi", DataType::String, words, 0);
}

DataItem UnicodeItem(std::int32_t words)
{
    DataItem item = MakeItem(u"Unicode", DataType::String, words, 0);
    item.unicode = 1;
    return item;
}

/// That of the sample's recipes, at word 100.
DataFormat OvenFormat()
{
    return MakeFormat(u"Oven recipe",
                      {MakeItem(u"No.", DataType::Unsigned16, 1, 4), UnicodeItem(16), AnsiItem(6),
                       ArrayOf(MakeItem(u"Zone", DataType::Signed16, 1, 3, 1), 6),
                       MakeItem(u"Belt", DataType::Unsigned16, 1, 2, 2), MakeItem(u"Bake", DataType::Unsigned32, 2, 5),
                       MakeItem(u"Steam", DataType::Float, 2, 3, 1), MakeItem(u"Options", DataType::Hex16, 1, 4),
                       MakeItem(u"Trim", DataType::Signed16, 1, 3, 1), MakeItem(u"Gas", DataType::Double, 4, 3, 2)});
}

CRecipeRows LayOut(const DataFormat& format, std::int32_t start, std::int32_t count)
{
    CRecipeRows rows;
    rows.LayOut(LayOutColumns(format), start, count);
    return rows;
}

CRecipeRows RowsOf(const DataFormat& format, std::span<const std::byte> words, std::int32_t count)
{
    CRecipeRows rows = LayOut(format, 0, count);
    CByteBuffer image(words.size());
    std::copy(words.begin(), words.end(), image.Bytes().begin());
    rows.ShowWords(std::move(image), RecipeKind::Flat);
    return rows;
}

std::optional<FormatDoubt> DoubtAboutSample(std::int32_t start)
{
    CRecipeRows rows = LayOut(OvenFormat(), start, 12);
    CRecordingReporter reporter;
    CNoProgress progress;
    EXPECT_EQ(ReadRecipeOnly(FileType::Rcp, rows, std::filesystem::path(VANTOR_EXAMPLES) / "bakery-oven.rcp", reporter,
                             progress),
              Outcome::Done);
    return DoubtAbout(rows);
}

Bytes RealBytes(std::initializer_list<float> values)
{
    Bytes bytes(4 * values.size());
    auto at = std::span(bytes);
    for (const float value : values) {
        StoreLittleEndian(at.first(4), std::bit_cast<std::uint32_t>(value));
        at = at.subspan(4);
    }
    return bytes;
}

/// Formats, and words that are values of them or anything.
class CRandomWords {
public:
    explicit CRandomWords(unsigned seed) : m_random(seed) {}

    std::int32_t Below(std::int32_t count)
    {
        return static_cast<std::int32_t>(m_random() % static_cast<unsigned>(count));
    }

    Bytes Anything(std::size_t bytes)
    {
        Bytes words(bytes);
        for (std::byte& byte : words)
            byte = static_cast<std::byte>(m_random());
        return words;
    }

    DataFormat Format()
    {
        std::vector<DataItem> items;
        for (std::int32_t count = 1 + Below(12); count > 0; --count)
            items.push_back(Below(5) == 0 ? ArrayOf(Item(), 2 + Below(6)) : Item());
        return MakeFormat(u"Random", items);
    }

    /// Rows of values that a user would give them.
    Bytes Values(const DataFormat& format, std::int32_t rows)
    {
        Bytes words(static_cast<std::size_t>(2 * format.totalLength() * rows));
        auto at = std::span(words);
        const auto columns = LayOutColumns(format);
        for (std::int32_t row = 0; row < rows; ++row)
            for (const ColumnCoding& column : columns) {
                const auto bytes = 2 * static_cast<std::size_t>(column.dataLength);
                PutValue(column, at.first(bytes));
                at = at.subspan(bytes);
            }
        return words;
    }

private:
    DataItem Item()
    {
        const std::int32_t digits = 1 + Below(5);
        switch (Below(8)) {
        case 0:
            return AnsiItem(1 + Below(10));
        case 1:
            return UnicodeItem(1 + Below(20));
        case 2:
            return MakeItem(u"Float", DataType::Float, 2, digits, Below(3));
        case 3:
            return MakeItem(u"Double", DataType::Double, 4, digits, Below(3));
        case 4:
            return MakeItem(u"Long", DataType::Signed32, 2, digits);
        case 5:
            return MakeItem(u"Hex", DataType::Hex16, 1, 4);
        case 6:
            return MakeItem(u"Unsigned", DataType::Unsigned16, 1, std::min(digits, 4));
        default:
            return MakeItem(u"Signed", DataType::Signed16, 1, std::min(digits, 4));
        }
    }

    void PutValue(const ColumnCoding& column, std::span<std::byte> at)
    {
        if (Below(6) == 0)
            return; // nothing there yet
        if (column.dataType == DataType::String)
            return PutText(column, at);
        const double share = Below(10'001) / 10'000.0;
        const auto least = static_cast<double>(column.minValue);
        const double value = least + share * (static_cast<double>(column.maxValue) - least);
        if (column.dataType == DataType::Float)
            StoreLittleEndian(at, std::bit_cast<std::uint32_t>(static_cast<float>(value)));
        else if (column.dataType == DataType::Double)
            StoreLittleEndian(at, std::bit_cast<std::uint64_t>(value));
        else
            StoreLittleEndian(at, static_cast<std::uint64_t>(std::llround(value)));
    }

    void PutText(const ColumnCoding& column, std::span<std::byte> at)
    {
        static constexpr std::u16string_view kUnicode = u"Brötchen 5 kg – Żytni\nchleb Κουλούρι 面包😀";
        static constexpr std::string_view kAnsi = "Sourdough 1000\tg \xFC\xE9";
        const auto units = static_cast<std::size_t>(Below(static_cast<std::int32_t>(at.size())));
        if (column.unicode == 0) {
            for (std::size_t i = 0; i < units; ++i)
                at[i] = static_cast<std::byte>(kAnsi[i % kAnsi.size()]);
            return;
        }
        for (std::size_t i = 0; i < std::min(units, at.size() / 2); ++i)
            StoreLittleEndian(at.subspan(2 * i, 2), kUnicode[i % kUnicode.size()]);
    }

    std::mt19937 m_random;
};

} // namespace

TEST(UnlikeFormat, SaysNothingOfTheSampleAtItsPlace)
{
    EXPECT_EQ(DoubtAboutSample(100), std::nullopt);
}

TEST(UnlikeFormat, FindsWrongStartAddressesOfTheSample)
{
    int found = 0;
    for (int shift = 1; shift <= 30; ++shift)
        found += (DoubtAboutSample(100 + shift) ? 1 : 0) + (DoubtAboutSample(100 - shift) ? 1 : 0);
    RecordProperty("found of 60", found);
    EXPECT_EQ(found, 60);
}

TEST(UnlikeFormat, CountsFloatsThatAreNoSensibleNumbers)
{
    const DataFormat format = MakeFormat(u"F", {MakeItem(u"F", DataType::Float, 2, 7)});
    const Bytes words = RealBytes({1.5F, NAN, INFINITY, 1e30F, 1e-20F, 0.0F, -2.0F});
    EXPECT_EQ(DoubtAbout(RowsOf(format, words, 7)), (FormatDoubt{FormatDoubt::Kind::Floats, 4, 6, std::nullopt}));
}

TEST(UnlikeFormat, CountsTextsWithControlCharactersBeforeTheirEnd)
{
    const DataFormat format = MakeFormat(u"T", {AnsiItem(2)});
    const Bytes words = BytesOf({'a', 'b', 0, 7, 'a', 1, 'c', 0, 'a', 0x7F, 0, 0, 2, 2, 2, 2, '\n', '\t', 'x', 0xFC});
    EXPECT_EQ(DoubtAbout(RowsOf(format, words, 5)), (FormatDoubt{FormatDoubt::Kind::Texts, 3, 5, std::nullopt}));
}

TEST(UnlikeFormat, CountsHalvesOfPairsInUnicodeTexts)
{
    const DataFormat format = MakeFormat(u"T", {UnicodeItem(2)});
    const Bytes words =
        WordBytes({0xD83D, 0xDE00, 0xDE00, 'a', 0xD83D, 'a', 'a', 0xD83D, 0xD83D, 0, 'b', 0, 0, 0xDE00});
    EXPECT_EQ(DoubtAbout(RowsOf(format, words, 7)), (FormatDoubt{FormatDoubt::Kind::Texts, 3, 7, std::nullopt}))
        << "a pair that the value's end cuts is none of them, nor is what follows the end of a text";
}

TEST(UnlikeFormat, CountsValuesOutsideTheirLimits)
{
    const DataFormat format = MakeFormat(u"N", {MakeItem(u"N", DataType::Unsigned16, 1, 2)});
    EXPECT_EQ(DoubtAbout(RowsOf(format, WordBytes({100, 5000, 99, 700, 0, 101, 102, 103, 5}), 9)),
              (FormatDoubt{FormatDoubt::Kind::Limits, 6, 8, std::nullopt}));
    EXPECT_EQ(DoubtAbout(RowsOf(format, WordBytes({100, 101, 102, 103, 104, 105, 1, 2, 3, 4, 5, 6}), 12)), std::nullopt)
        << "half of them";
    EXPECT_EQ(DoubtAbout(RowsOf(format, WordBytes({100, 101, 102, 103, 104}), 5)), std::nullopt) << "very few";
}

TEST(UnlikeFormat, SaysNothingOfVeryFewValues)
{
    const DataFormat format = MakeFormat(u"F", {MakeItem(u"F", DataType::Float, 2, 7)});
    EXPECT_EQ(DoubtAbout(RowsOf(format, RealBytes({NAN, NAN}), 2)), std::nullopt);
    EXPECT_TRUE(DoubtAbout(RowsOf(format, RealBytes({NAN, NAN, NAN}), 3)).has_value());
}

TEST(UnlikeFormat, SaysNothingOfZerosNewRowsShortFilesAndTables)
{
    const DataFormat format = OvenFormat();
    EXPECT_EQ(DoubtAbout(RowsOf(format, Bytes(20'000), 100)), std::nullopt);
    EXPECT_EQ(DoubtAbout(RowsOf(format, Bytes(), 100)), std::nullopt);
    EXPECT_EQ(DoubtAbout(CRecipeRows()), std::nullopt);
    CRecipeRows fresh = LayOut(format, 0, 100);
    fresh.ShowNewDocument();
    EXPECT_EQ(DoubtAbout(fresh), std::nullopt);
    CRecipeRows nothing = LayOut(format, 0, 100);
    nothing.ShowNothing();
    EXPECT_EQ(DoubtAbout(nothing), std::nullopt);
    CRecipeRows same = LayOut(MakeFormat(u"F", {MakeItem(u"F", DataType::Float, 2, 7)}), 0, 100);
    CByteBuffer nan(4);
    std::fill(nan.Bytes().begin(), nan.Bytes().end(), std::byte{0xFF});
    same.ShowEverywhere(std::move(nan), RecipeKind::Paged);
    EXPECT_EQ(DoubtAbout(same), std::nullopt);

    const CTempFolder folder;
    WriteAll(folder / "t.csv", Utf16File(u"nan\tnan\tnan\tnan\r\n"));
    CRecipeRows table = LayOut(MakeFormat(u"F", {ArrayOf(MakeItem(u"F", DataType::Float, 2, 7), 4)}), 0, 1);
    CRecordingReporter reporter;
    CNoProgress progress;
    ASSERT_EQ(ReadRecipeOnly(FileType::Csv, table, folder / "t.csv", reporter, progress), Outcome::Done);
    EXPECT_EQ(DoubtAbout(table), std::nullopt);
}

TEST(UnlikeFormat, LooksAtSomeOfManyRowsSpreadOverAll)
{
    const DataFormat format = MakeFormat(u"F", {MakeItem(u"F", DataType::Float, 2, 7)});
    Bytes words(std::size_t{4} * 1'000'000);
    std::fill(words.begin() + std::ptrdiff_t{2} * 1'000'000, words.end(), std::byte{0xFF});
    EXPECT_EQ(DoubtAbout(RowsOf(format, words, 1'000'000)), (FormatDoubt{FormatDoubt::Kind::Floats, 500, 500, 1000}));
}

TEST(UnlikeFormat, RaisesNoAlarmForSensibleValues)
{
    constexpr unsigned kSeed = 3;
    CRandomWords random(kSeed);
    for (int round = 0; round < 3000; ++round) {
        const DataFormat format = random.Format();
        const std::int32_t rows = 1 + random.Below(40);
        const auto doubt = DoubtAbout(RowsOf(format, random.Values(format, rows), rows));
        ASSERT_EQ(doubt, std::nullopt) << "seed " << kSeed << ", round " << round;
    }
}

TEST(UnlikeFormat, FindsAnythingElseInTheSamplesFormat)
{
    CRandomWords random(4);
    for (int round = 0; round < 300; ++round)
        ASSERT_TRUE(DoubtAbout(RowsOf(OvenFormat(), random.Anything(std::size_t{2} * 41 * 12), 12)).has_value())
            << round;
}

TEST(UnlikeFormat, FindsMostRandomWordsOfRandomFormats)
{
    CRandomWords random(5);
    int found = 0;
    int shifted = 0;
    constexpr int kRounds = 1000;
    for (int round = 0; round < kRounds; ++round) {
        const DataFormat format = random.Format();
        const auto bytes = static_cast<std::size_t>(2 * format.totalLength() * 20);
        found += DoubtAbout(RowsOf(format, random.Anything(bytes), 20)) ? 1 : 0;
        const Bytes values = random.Values(format, 21);
        const std::size_t shift =
            2 * static_cast<std::size_t>(1 + random.Below(static_cast<std::int32_t>(format.totalLength())));
        shifted += DoubtAbout(RowsOf(format, std::span(values).subspan(shift), 20)) ? 1 : 0;
    }
    RecordProperty("random words found of 1000", found);
    RecordProperty("shifted values found of 1000", shifted);
    EXPECT_GE(found, 900) << "those of hexadecimal values alone cannot be told";
    EXPECT_GE(shifted, 500) << "a shift by a whole row cannot be told";
}

TEST(UnlikeFormat, IsToldInOneSentenceAndAQuestion)
{
    EXPECT_EQ(DoubtText({FormatDoubt::Kind::Floats, 11, 12, std::nullopt}, u"Oven recipe", 100),
              u"These words look unlike Oven recipe: 11 of 12 floats are no sensible numbers. Is RW100 the right start "
              u"address?");
    EXPECT_EQ(DoubtText({FormatDoubt::Kind::Texts, 5, 9, std::nullopt}, u"%s", 0),
              u"These words look unlike %s: 5 of 9 texts hold control characters. Is RW0 the right start address?");
    EXPECT_EQ(DoubtText({FormatDoubt::Kind::Limits, 600, 900, 1000}, u"A", 7),
              u"These words look unlike A: 600 of 900 values lie outside their limits, in 1000 rows that were looked "
              u"at. Is RW7 the right start address?");
}
