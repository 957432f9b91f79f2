#include "files/CsvRecipeFile.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

Bytes AsciiFile(std::string_view text)
{
    Bytes bytes(text.size());
    std::transform(text.begin(), text.end(), bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
    return bytes;
}

ColumnCoding DecimalColumn()
{
    ColumnCoding column = Signed16Column();
    column.decimalDigits = 2;
    return column;
}

struct CsvFile : testing::Test {
    void LayOut(std::size_t columns, std::int32_t rowCount)
    {
        rows.LayOut(std::vector<ColumnCoding>(columns, AnsiColumn(8)), 0, rowCount);
    }

    Texts Read(const Bytes& bytes, std::size_t columns, std::int32_t rowCount)
    {
        WriteAll(path, bytes);
        LayOut(columns, rowCount);
        EXPECT_EQ(ReadCsv(rows, path, reporter, progress), Outcome::Done);
        EXPECT_TRUE(reporter.shown.empty());
        return TextsOf(rows);
    }

    Bytes Save()
    {
        EXPECT_TRUE(SaveCsv(rows, path, reporter, progress));
        EXPECT_TRUE(reporter.shown.empty());
        return ReadAll(path);
    }

    CTempFolder folder;
    fs::path path = folder / "a.csv";
    CRecipeRows rows;
    CRecordingReporter reporter;
    CNoProgress progress;
};

// Writing

TEST_F(CsvFile, RowIsWrittenBetweenQuotesWithTabs)
{
    rows.LayOut({Signed16Column(), DecimalColumn(), Hex16Column()}, 100, 1);
    rows.SetText(0, 0, u"1");
    rows.SetText(0, 1, u"2.50");
    rows.SetText(0, 2, u"AB");
    // clang-format off
    EXPECT_EQ(Save(), BytesOf({0xFF, 0xFE,
                               '"', 0, '1', 0, '"', 0, '\t', 0,
                               '"', 0, '2', 0, '.', 0, '5', 0, '0', 0, '"', 0, '\t', 0,
                               '"', 0, 'A', 0, 'B', 0, '"', 0, '\r', 0, '\n', 0}));
    // clang-format on
}

TEST_F(CsvFile, TextsAreWrittenAsTheyAreShown)
{
    CByteBuffer image(2 * 9);
    const Bytes words = WordBytes({250, 0xAB, 0, 0x4479, 0xFFFF, 0, 0, 0, 0x3FF8});
    std::copy(words.begin(), words.end(), image.Bytes().begin());
    ColumnCoding real = DoubleColumn(); // 996.0 is beyond its limit
    real.dataType = DataType::Float;
    real.dataLength = 2;
    real.maxValue = 99;
    rows.LayOut({DecimalColumn(), Hex16Column(), real, Signed16Column(), DoubleColumn()}, 0, 1);
    rows.ShowWords(std::move(image), RecipeKind::Flat);
    EXPECT_EQ(Save(), Utf16File(u"\"2.50\"\t\"AB\"\t\"9.960000e+02\"\t\"-1\"\t\"   1.5\"\r\n"));
}

TEST_F(CsvFile, QuoteWithinATextIsNotDoubled) // kept
{
    LayOut(2, 1);
    rows.SetText(0, 0, u"3\" pipe");
    rows.SetText(0, 1, u"\"");
    EXPECT_EQ(Save(), Utf16File(u"\"3\" pipe\"\t\"\"\"\r\n"));
}

TEST_F(CsvFile, AnyUnitIsWrittenAsItIs)
{
    LayOut(1, 2);
    rows.SetText(0, 0, u"\u6E29\u5EA6");
    rows.SetText(1, 0, std::u16string{0xD83C, 0xDF5E, 0xD800}); // a pair, and half of one
    EXPECT_EQ(Save(), BytesOf({0xFF, 0xFE, '"',  0,    0x29, 0x6E, 0xA6, 0x5E, '"', 0, '\r', 0, '\n', 0,
                               '"',  0,    0x3C, 0xD8, 0x5E, 0xDF, 0x00, 0xD8, '"', 0, '\r', 0, '\n', 0}));
}

TEST_F(CsvFile, NewDocumentIsWrittenWithZerosAndEmptyStrings)
{
    rows.LayOut({Signed16Column(), AnsiColumn(2)}, 0, 2);
    rows.ShowNewDocument();
    EXPECT_EQ(Save(), Utf16File(u"\"0\"\t\"\"\r\n\"0\"\t\"\"\r\n"));
}

TEST_F(CsvFile, NoRowsLeaveTheMarkAlone)
{
    WriteAll(path, BytesOf({1, 2, 3, 4, 5}));
    LayOut(2, 0);
    EXPECT_EQ(Save(), BytesOf({0xFF, 0xFE}));
}

TEST_F(CsvFile, NoColumnsLeaveEmptyLines)
{
    LayOut(0, 2);
    EXPECT_EQ(Save(), Utf16File(u"\r\n\r\n"));
}

TEST_F(CsvFile, LongTableIsWrittenInPieces)
{
    constexpr std::int32_t kRows = 150000; // about 1.4 million units
    CByteBuffer image(2 * kRows);
    std::u16string expected;
    for (std::int32_t row = 0; row < kRows; ++row) {
        const auto word = static_cast<std::uint16_t>(row % 30011);
        image.Bytes()[2 * static_cast<std::size_t>(row)] = static_cast<std::byte>(word & 0xFF);
        image.Bytes()[2 * static_cast<std::size_t>(row) + 1] = static_cast<std::byte>(word >> 8);
        const std::string digits = std::to_string(word);
        expected += u'"' + std::u16string(digits.begin(), digits.end()) + u"\"\r\n";
    }
    rows.LayOut({Signed16Column()}, 0, kRows);
    rows.ShowWords(std::move(image), RecipeKind::Flat);

    CImpatientProgress patient(1000);
    ASSERT_TRUE(SaveCsv(rows, path, reporter, patient));
    EXPECT_TRUE(ReadAll(path) == Utf16File(expected));
    EXPECT_EQ(patient.reports.size(), expected.size() / (512 * 1024) + 1);
    EXPECT_EQ(patient.reports.back(), (std::pair<std::uint64_t, std::uint64_t>{kRows, kRows}));
    EXPECT_TRUE(std::is_sorted(patient.reports.begin(), patient.reports.end()));
}

TEST_F(CsvFile, CellLongerThanAPieceIsWrittenWhole)
{
    const std::u16string text(700000, u'x');
    LayOut(2, 1);
    rows.SetText(0, 0, text);
    rows.SetText(0, 1, u"y");
    EXPECT_TRUE(Save() == Utf16File(u'"' + text + u"\"\t\"y\"\r\n"));
}

// Reading

struct ReadCase {
    const char* name;
    const char16_t* text;
    std::size_t columns;
    Texts shown;
    friend void PrintTo(const ReadCase& c, std::ostream* out) { *out << c.name; }
};

struct ReadUtf16 : CsvFile, testing::WithParamInterface<ReadCase> {};

TEST_P(ReadUtf16, ShowsTheFields)
{
    const auto rowCount = static_cast<std::int32_t>(GetParam().shown.size() / GetParam().columns);
    EXPECT_EQ(Read(Utf16File(GetParam().text), GetParam().columns, rowCount), GetParam().shown);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ReadUtf16, testing::Values(
    //       name                          text                                columns  shown
    ReadCase{"LastFieldKeepsItsQuotes",    u"\"1\"\t\"2\"\t\"3\"\r\n",         3, {u"1", u"2", u"\"3\""}},          // kept
    ReadCase{"OnlyFieldKeepsItsQuotes",    u"\"1\"\r\n\"2\"\r\n",              1, {u"\"1\"", u"\"2\""}},            // kept
    ReadCase{"FieldEndedByATabHasNone",    u"\"1\"\t\"2\"\t\r\n",              2, {u"1", u"2"}},
    ReadCase{"AllQuotesAtBothEndsGo",      u"\"\"\"a\"\"\t\"b\t\tc\"\td",      5, {u"a", u"b", u"", u"c", u"d"}},
    ReadCase{"QuotesWithinStay",           u"\"a\"\"b\"\tc\"d",                2, {u"a\"\"b", u"c\"d"}},
    ReadCase{"NothingButQuotesIsEmpty",    u"\"\"\t\"\"\"\tx",                 3, {u"", u"", u"x"}},
    ReadCase{"EmptyFieldIsOne",            u"\t\tx\r\n",                       3, {u"", u"", u"x"}},
    ReadCase{"MissingFieldsAreZero",       u"\"a\"\tb\r\n",                    4, {u"a", u"b", u"0", u"0"}},
    ReadCase{"BareTabIsNoFieldAfterIt",    u"a\t\r\nb\t",                      2, {u"a", u"0", u"b", u"0"}},
    ReadCase{"EmptyLineIsZeros",           u"a\tb\r\n\r\nc\td\r\n",            2, {u"a", u"b", u"0", u"0", u"c", u"d"}},
    ReadCase{"MissingLinesAreZeros",       u"a\tb\r\n",                        2, {u"a", u"b", u"0", u"0", u"0", u"0"}},
    ReadCase{"NoLinesAreZeros",            u"",                                2, {u"0", u"0"}},
    ReadCase{"FurtherFieldsAreLeftOut",    u"a\tb\tc\td\r\ne\r\n",             2, {u"a", u"b", u"e", u"0"}},
    ReadCase{"FieldBeforeALeftOutOneHasNoQuotes", u"\"a\"\t\"b\"\t\"c\"",      2, {u"a", u"b"}},
    ReadCase{"FurtherLinesAreLeftOut",     u"a\nb\nc\nd\n",                    1, {u"a", u"b"}},
    ReadCase{"LineFeedAloneEndsALine",     u"a\nb\n",                          1, {u"a", u"b"}},
    ReadCase{"ReturnAloneEndsNone",        u"a\rb\r\n",                        1, {u"a\rb", u"0"}},
    ReadCase{"AllReturnsAtTheEndGo",       u"a\tb\r\r\r\n\r\r\n",              2, {u"a", u"b", u"0", u"0"}},
    ReadCase{"ReturnEndsTheFile",          u"a\tb\r",                          2, {u"a", u"b"}},
    ReadCase{"ReturnBeforeATabStays",      u"a\r\tb",                          2, {u"a\r", u"b"}},
    ReadCase{"LastLineNeedsNoEnd",         u"a\r\nb",                          1, {u"a", u"b"}},
    ReadCase{"CommaIsNoSeparator",         u"a,b\tc",                          2, {u"a,b", u"c"}},
    ReadCase{"BlanksStay",                 u"  a \t b ",                       2, {u"  a ", u" b "}},
    ReadCase{"OtherScripts",               u"\"\u6E29\u5EA6\"\t\u00B0C\u0A0A\u0D09", 2, {u"\u6E29\u5EA6", u"\u00B0C\u0A0A\u0D09"}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(CsvFile, FirstByteOfTheMarkIsEnough) // kept
{
    EXPECT_EQ(Read(BytesOf({0xFF, 'x', '7', 0, '\t', 0, '8', 0}), 2, 1), (Texts{u"7", u"8"}));
}

TEST_F(CsvFile, SecondByteOfTheMarkIsEnough) // kept
{
    EXPECT_EQ(Read(BytesOf({'x', 0xFE, '7', 0, '\t', 0, '8', 0}), 2, 1), (Texts{u"7", u"8"}));
}

TEST_F(CsvFile, MarkOfTheOtherByteOrderIsNone)
{
    const Texts shown = Read(BytesOf({0xFE, 0xFF, ',', '7'}), 2, 1);
    EXPECT_EQ(shown[1], u"7");
}

TEST_F(CsvFile, MarkAloneIsAnEmptyTable)
{
    EXPECT_EQ(Read(BytesOf({0xFF, 0xFE}), 1, 1), Texts{u"0"});
    EXPECT_EQ(Read(BytesOf({0xFF}), 1, 1), Texts{u"0"});
}

TEST_F(CsvFile, OddByteAtTheEndIsNoCharacter)
{
    EXPECT_EQ(Read(BytesOf({0xFF, 0xFE, '7', 0, '8'}), 1, 1), Texts{u"7"});
}

TEST_F(CsvFile, ZeroUnitIsACharacter)
{
    EXPECT_EQ(Read(Utf16File(std::u16string_view(u"a\0b\tc", 5)), 2, 1), (Texts{std::u16string(u"a\0b", 3), u"c"}));
}

TEST_F(CsvFile, LineOfAnyLengthIsOne)
{
    const std::u16string longText(1000000, u'x'); // several pieces of reading
    const Texts shown = Read(Utf16File(u'"' + longText + u"\"\t" + longText + u"\r\nnext"), 2, 2);
    EXPECT_TRUE(shown == (Texts{longText, longText, u"next", u"0"}));
}

TEST_F(CsvFile, FieldsAcrossPiecesAreWhole)
{
    std::u16string text; // fields of all lengths, so that a piece ends at each of their characters
    Texts expected;
    for (std::size_t i = 0; i < 60000; ++i) {
        expected.emplace_back(i % 11, u'x');
        expected.emplace_back(i % 7 + 1, u'y');
        text += u'"' + expected[2 * i] + u"\"\t" + expected[2 * i + 1] + u"\r\n";
    }
    EXPECT_TRUE(Read(Utf16File(text), 2, 60000) == expected);
}

// Text without a mark

struct AnsiCase {
    const char* name;
    const char* text;
    std::size_t columns;
    Texts shown;
    friend void PrintTo(const AnsiCase& c, std::ostream* out) { *out << c.name; }
};

struct ReadAnsi : CsvFile, testing::WithParamInterface<AnsiCase> {};

TEST_P(ReadAnsi, ShowsTheFields)
{
    const auto rowCount = static_cast<std::int32_t>(GetParam().shown.size() / GetParam().columns);
    EXPECT_EQ(Read(AsciiFile(GetParam().text), GetParam().columns, rowCount), GetParam().shown);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ReadAnsi, testing::Values(
    //       name                          text                      columns  shown
    AnsiCase{"BeginsAtTheFirstByte",       "12,34\r\n56,78\r\n",     2, {u"12", u"34", u"56", u"78"}},
    AnsiCase{"AllQuotesStay",              "\"1\",\"2\",\"3\"",      3, {u"\"1\"", u"\"2\"", u"\"3\""}},       // kept
    AnsiCase{"TabIsNoSeparator",           "a\tb,\tc",               2, {u"a\tb", u"\tc"}},
    AnsiCase{"MissingFieldsAreZero",       "a,b",                    4, {u"a", u"b", u"0", u"0"}},
    AnsiCase{"BareCommaIsNoFieldAfterIt",  "a,\r\n,\r\n",            2, {u"a", u"0", u"", u"0"}},
    AnsiCase{"EmptyLineIsZeros",           "a,b\n\nc,d\n",           2, {u"a", u"b", u"0", u"0", u"c", u"d"}},
    AnsiCase{"MissingLinesAreZeros",       "a",                      2, {u"a", u"0", u"0", u"0"}},
    AnsiCase{"EmptyFile",                  "",                       2, {u"0", u"0"}},
    AnsiCase{"OneByte",                    "7",                      1, {u"7"}},
    AnsiCase{"LineFeedFirst",              "\n7",                    1, {u"0", u"7"}},
    AnsiCase{"FurtherFieldsAreLeftOut",    "a,b,c\nd",               2, {u"a", u"b", u"d", u"0"}},
    AnsiCase{"FurtherLinesAreLeftOut",     "a\nb\nc",                1, {u"a", u"b"}},
    AnsiCase{"ReturnAloneEndsNone",        "a\rb\r\n",               1, {u"a\rb", u"0"}},
    AnsiCase{"ReturnEndsTheFile",          "a,b\r",                  2, {u"a", u"b"}},
    AnsiCase{"AllReturnsAtTheEndGo",       "a,b\r\r\n",              2, {u"a", u"b"}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct LongLineCase {
    const char* name;
    std::size_t length; ///< of the line without its end
    const char* end;
    std::vector<std::size_t> shown; ///< the lengths of the texts; 0 for a missing one
    friend void PrintTo(const LongLineCase& c, std::ostream* out) { *out << c.name; }
};

struct LongAnsiLine : CsvFile, testing::WithParamInterface<LongLineCase> {};

TEST_P(LongAnsiLine, IsTakenInPieces)
{
    const auto& [name, length, end, lengths] = GetParam();
    Texts expected;
    for (const std::size_t shown : lengths)
        expected.push_back(shown == 0 ? u"0" : std::u16string(shown, u'x'));
    expected.emplace_back(u"next");
    const Bytes bytes = AsciiFile(std::string(length, 'x') + end + "next");
    EXPECT_EQ(Read(bytes, 1, static_cast<std::int32_t>(expected.size())), expected);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, LongAnsiLine, testing::Values(
    //           name                    length    end      texts
    LongLineCase{"OneLess",              2045,     "\n",    {2045}},
    LongLineCase{"FillsThePiece",        2046,     "\n",    {2046}},
    LongLineCase{"ReturnIsNotCounted",   2046,     "\r\n",  {2046}},
    LongLineCase{"EndIsAPieceOfItsOwn",  2047,     "\n",    {2047, 0}},      // kept: the piece of the end counts as a line
    LongLineCase{"EndWithReturn",        2047,     "\r\n",  {2047, 0}},      // kept
    LongLineCase{"OneMore",              2048,     "\r\n",  {2047, 1}},
    LongLineCase{"TwoPieces",            4093,     "\r\n",  {2047, 2046}},
    LongLineCase{"ThreePieces",          5000,     "\n",    {2047, 2047, 906}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(CsvFile, LineOf100MebibytesIsOne)
{
    constexpr std::size_t kUnits = std::size_t{50} << 20;
    WriteAll(path, Utf16File(u"a\t"));
    fs::resize_file(path, 2 + 2 * kUnits); // zeros, which cost no time to write
    LayOut(3, 2);
    EXPECT_EQ(ReadCsv(rows, path, reporter, progress), Outcome::Done);
    EXPECT_EQ(rows.Text(0, 0), u"a");
    EXPECT_EQ(rows.Text(0, 1).size(), kUnits - 2);
    EXPECT_EQ(rows.Text(0, 2), u"0");
    EXPECT_EQ(rows.Text(1, 0), u"0");
}

TEST_F(CsvFile, FewRowsOfALongAnsiLineAreReadWithoutTheRest)
{
    WriteAll(path, AsciiFile("a,"));
    fs::resize_file(path, std::uintmax_t{1} << 32);
    LayOut(2, 2);
    EXPECT_EQ(ReadCsv(rows, path, reporter, progress), Outcome::Done);
    EXPECT_EQ(rows.Text(0, 0), u"a");
    EXPECT_EQ(rows.Text(0, 1), std::u16string(2045, u'\0'));
    EXPECT_EQ(rows.Text(1, 0), std::u16string(2047, u'\0'));
}

TEST_F(CsvFile, LoneSurrogatesAndZerosComeBackAsTheyWere)
{
    const std::u16string odd(u"\xD83D\0\xDC00\xFFFE\xFFFF", 5);
    EXPECT_EQ(Read(Utf16File(odd + u"\t" + odd), 2, 1), (Texts{odd, odd}));
    Save();
    LayOut(2, 1);
    EXPECT_EQ(ReadCsv(rows, path, reporter, progress), Outcome::Done);
    EXPECT_EQ(TextsOf(rows), (Texts{odd, u'"' + odd + u'"'})); // kept: the last field keeps its quotes
}

TEST_F(CsvFile, PiecesOfAnAnsiLineCountAsLines) // kept
{
    const Bytes bytes = AsciiFile(std::string(3000, 'x') + ",a\nb,c\n");
    EXPECT_EQ(Read(bytes, 2, 2), (Texts{std::u16string(2047, u'x'), u"0", std::u16string(953, u'x'), u"a"}));
}

TEST_F(CsvFile, AnsiTextOfManyPiecesOfReadingIsWhole)
{
    std::string text;
    Texts expected;
    for (std::size_t i = 0; i < 50000; ++i) {
        text += std::string(i % 13 + 1, 'x') + (i % 2 == 0 ? "\r\n" : "\n");
        expected.emplace_back(i % 13 + 1, u'x');
    }
    EXPECT_TRUE(Read(AsciiFile(text), 1, 50000) == expected);
}

// Both ways

TEST_F(CsvFile, WrittenTableIsReadAgainButForTheLastQuotes)
{
    LayOut(3, 2);
    const Texts texts = {u"1", u"a b", u"", u"\u6E29", u"2.50", u"-7"};
    for (std::size_t i = 0; i < texts.size(); ++i)
        rows.SetText(static_cast<std::int32_t>(i / 3), i % 3, texts[i]);
    Save();
    LayOut(3, 2);
    EXPECT_EQ(ReadCsv(rows, path, reporter, progress), Outcome::Done);
    EXPECT_EQ(TextsOf(rows), (Texts{u"1", u"a b", u"\"\"", u"\u6E29", u"2.50", u"\"-7\""})); // kept
}

TEST_F(CsvFile, ReadTableIsWrittenAsItIsShown)
{
    EXPECT_EQ(Read(Utf16File(u"\"1\"\t\"2\"\r\n7"), 2, 2), (Texts{u"1", u"\"2\"", u"7", u"0"}));
    EXPECT_EQ(Save(), Utf16File(u"\"1\"\t\"\"2\"\"\r\n\"7\"\t\"0\"\r\n"));
}

TEST_F(CsvFile, ReadingTellsHowFarItIs)
{
    const Bytes bytes = Utf16File(std::u16string(300000, u'\n'));
    WriteAll(path, bytes);
    LayOut(1, 300000);
    CImpatientProgress patient(1000);
    EXPECT_EQ(ReadCsv(rows, path, reporter, patient), Outcome::Done);
    EXPECT_EQ(patient.reports, (std::vector<std::pair<std::uint64_t, std::uint64_t>>{
                                   {262146, 600002}, {524290, 600002}, {600002, 600002}}));
}

TEST_F(CsvFile, ReadingEndsWithTheLastRow)
{
    WriteAll(path, Utf16File(std::u16string(300000, u'\n')));
    LayOut(1, 1);
    CImpatientProgress patient(1000);
    EXPECT_EQ(ReadCsv(rows, path, reporter, patient), Outcome::Done);
    EXPECT_EQ(patient.reports.size(), 1u);
}

} // namespace
