#include "changes/ChangeLines.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <clocale>
#include <locale>

namespace {

template <class HeaderOrRecord>
std::string LineOf(const HeaderOrRecord& value)
{
    std::string line;
    AppendLine(value, line);
    return line;
}

ChangeHeader OvenHeader()
{
    ChangeHeader header;
    header.file = u"oven.rcp";
    header.type = FileType::Rcp;
    header.bytes = 1440;
    header.newBytes = 1440;
    header.tables = {{u"Oven recipe", WordAddress(100), 12}};
    return header;
}

ChangeRecord Cell(std::int64_t address, std::int32_t row, std::int32_t column, std::u16string_view item)
{
    ChangeRecord record;
    record.address = WordAddress(address);
    record.row = row;
    record.column = column;
    record.item = item;
    return record;
}

ChangeRecord WithTexts(ChangeRecord record, std::u16string_view oldText, std::u16string_view newText)
{
    record.oldText = oldText;
    record.newText = newText;
    return record;
}

ChangeRecord WithWords(ChangeRecord record, Bytes oldWords, Bytes newWords)
{
    record.oldWords = std::move(oldWords);
    record.newWords = std::move(newWords);
    return record;
}

ChangeRecord Because(ChangeRecord record, ChangeReason why)
{
    record.why = why;
    return record;
}

ChangeRecord Reading(ChangeRecord record, std::u16string_view reads)
{
    record.reads = reads;
    return record;
}

ChangeRecord At(std::int64_t address)
{
    ChangeRecord record;
    record.address = WordAddress(address);
    return record;
}

ChangeRecord Zeros(std::int64_t address, std::int64_t zeros)
{
    ChangeRecord record = At(address);
    record.zeros = zeros;
    return record;
}

ChangeRecord InTable(std::int32_t table, ChangeRecord record)
{
    record.table = table;
    return record;
}

ChangeRecord InRow(std::int32_t row, std::optional<std::int32_t> column, std::u16string_view item)
{
    ChangeRecord record;
    record.row = row;
    record.column = column;
    record.item = item;
    return record;
}

ChangeRecord InLine(std::int64_t line)
{
    ChangeRecord record;
    record.line = line;
    return record;
}

Bytes Word(std::uint16_t word)
{
    return WordBytes({word});
}

// ---------------------------------------------------------------------------------------------------------- the header

struct HeaderCase {
    const char* name;
    ChangeHeader header;
    std::string line;
    friend void PrintTo(const HeaderCase& c, std::ostream* out) { *out << c.name; }
};

struct HeaderLine : testing::TestWithParam<HeaderCase> {};

TEST_P(HeaderLine, GoesBothWays)
{
    EXPECT_EQ(LineOf(GetParam().header), GetParam().line + "\n");
    ChangeHeader read;
    EXPECT_FALSE(HeaderFromLine(GetParam().line, read));
    EXPECT_EQ(read, GetParam().header);
}

ChangeHeader HeaderWithType(FileType type)
{
    ChangeHeader header;
    header.type = type;
    return header;
}

ChangeHeader HeaderWithTables()
{
    ChangeHeader header;
    header.tables = {{u"A", WordAddress(0), 0}, {u"°\"", WordAddress(-5), 2147483647}};
    return header;
}

ChangeHeader NewFileHeader()
{
    ChangeHeader header;
    header.file = u"";
    header.bytes = 0;
    header.newBytes = 9223372036854775807;
    return header;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, HeaderLine, testing::Values(
    HeaderCase{"OfTheOven", OvenHeader(),
        R"({"vantor":"changes","version":1,"file":"oven.rcp","type":"rcp","bytes":1440,"newBytes":1440,"tables":[{"format":"Oven recipe","start":100,"rows":12}]})"},
    HeaderCase{"OfNothing", ChangeHeader(), R"({"vantor":"changes","version":1,"tables":[]})"},
    HeaderCase{"Csv", HeaderWithType(FileType::Csv), R"({"vantor":"changes","version":1,"type":"csv","tables":[]})"},
    HeaderCase{"Erp", HeaderWithType(FileType::Erp), R"({"vantor":"changes","version":1,"type":"erp","tables":[]})"},
    HeaderCase{"Frp", HeaderWithType(FileType::Frp), R"({"vantor":"changes","version":1,"type":"frp","tables":[]})"},
    HeaderCase{"SeveralTables", HeaderWithTables(),
        R"({"vantor":"changes","version":1,"tables":[{"format":"A","start":0,"rows":0},{"format":"°\"","start":-5,"rows":2147483647}]})"},
    HeaderCase{"LimitsOfSizes", NewFileHeader(),
        R"({"vantor":"changes","version":1,"file":"","bytes":0,"newBytes":9223372036854775807,"tables":[]})"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

// --------------------------------------------------------------------------------------------------------- the records

struct RecordCase {
    const char* name;
    ChangeRecord record;
    std::string line;
    friend void PrintTo(const RecordCase& c, std::ostream* out) { *out << c.name; }
};

struct RecordLine : testing::TestWithParam<RecordCase> {};

TEST_P(RecordLine, GoesBothWays)
{
    EXPECT_EQ(LineOf(GetParam().record), GetParam().line + "\n");
    ChangeRecord read;
    EXPECT_FALSE(ChangeFromLine(GetParam().line, read));
    EXPECT_EQ(read, GetParam().record);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RecordLine, testing::Values(
    RecordCase{"EditedCell",
        Because(WithWords(WithTexts(Cell(245, 4, 7, u"Zone °C(2)"), u"245.0", u"240.0"), Word(0x0992), Word(0x0960)), ChangeReason::Edited),
        R"j({"address":245,"row":4,"column":7,"item":"Zone °C(2)","old":"245.0","new":"240.0","oldWords":"0992","newWords":"0960","why":"edited"})j"},
    RecordCase{"RewrittenCell",
        Because(WithWords(WithTexts(Cell(129, 1, 11, u"Belt m/min"), u"1.50", u"1.50"), Word(0x0069), Word(0x0096)), ChangeReason::Decimals),
        R"({"address":129,"row":1,"column":11,"item":"Belt m/min","old":"1.50","new":"1.50","oldWords":"0069","newWords":"0096","why":"decimals"})"},
    RecordCase{"CellThatReadsAsAnotherText",
        Because(WithWords(Reading(WithTexts(Cell(169, 2, 11, u"Belt m/min"), u"0.75", u"1.15"), u"1.14"), Word(0x004B), Word(0x0072)), ChangeReason::Edited),
        R"({"address":169,"row":2,"column":11,"item":"Belt m/min","old":"0.75","new":"1.15","reads":"1.14","oldWords":"004B","newWords":"0072","why":"edited"})"},
    RecordCase{"WordsOutsideAllTables",
        WithWords(At(700), WordBytes({1, 2}), WordBytes({3, 2})),
        R"({"address":700,"oldWords":"0001 0002","newWords":"0003 0002"})"},
    RecordCase{"WordsThatOnlyTheNewSideHas", WithWords(At(0), {}, Word(0xABCD)), R"({"address":0,"newWords":"ABCD"})"},
    RecordCase{"WordsThatOnlyTheOldSideHas", WithWords(At(9), BytesOf({1, 0, 0xFE}), {}), R"({"address":9,"oldWords":"0001 FE"})"},
    RecordCase{"LastOddByte", WithWords(At(9), BytesOf({1}), BytesOf({2, 3})), R"({"address":9,"oldWords":"01","newWords":"0302"})"},
    RecordCase{"ZerosOfTheNewSide", Zeros(720, 1000), R"({"address":720,"zeros":1000})"},
    RecordCase{"ZerosOfTheOldSide", Zeros(720, -1000), R"({"address":720,"zeros":-1000})"},
    RecordCase{"ZerosOfAPlan", Because(Zeros(720, 1), ChangeReason::End), R"({"address":720,"zeros":1,"why":"end"})"},
    RecordCase{"AddressesAtTheirLimit", Zeros(4611686018427387903, -4611686018427387903),
        R"({"address":4611686018427387903,"zeros":-4611686018427387903})"},
    RecordCase{"CellOfALaterTable",
        WithWords(WithTexts(InTable(2, Cell(5, 1, 2, u"A")), u"1", u"2"), Word(1), Word(2)),
        R"({"address":5,"table":2,"row":1,"column":2,"item":"A","old":"1","new":"2","oldWords":"0001","newWords":"0002"})"},
    RecordCase{"WrittenByHandWithoutWords", WithTexts(InRow(4, 7, u"Zone"), u"1", u"2"),
        R"({"row":4,"column":7,"item":"Zone","old":"1","new":"2"})"},
    RecordCase{"WrittenByHandByItem", WithTexts(InRow(2147483647, std::nullopt, u"Zone"), u"", u""),
        R"({"row":2147483647,"item":"Zone","old":"","new":""})"},
    RecordCase{"LineOfATable", WithTexts(InLine(13), u"\"a\"\tb", u"c"), R"({"line":13,"old":"\"a\"\tb","new":"c"})"},
    RecordCase{"FieldBehindTheLastColumn", Because(WithTexts(InRow(2, 9, u""), u"x", u""), ChangeReason::Rows),
        R"({"row":2,"column":9,"item":"","old":"x","new":"","why":"rows"})"},
    RecordCase{"Form", Because(ChangeRecord(), ChangeReason::Form), R"({"why":"form"})"},
    RecordCase{"HalvesOfPairs", WithTexts(At(1), std::u16string{0xD83D}, std::u16string{0xDE00, 0xD83D, 0xDE00, 0xDBFF}),
        "{\"address\":1,\"old\":\"\\ud83d\",\"new\":\"\\ude00\xF0\x9F\x98\x80\\udbff\"}"},
    RecordCase{"ZeroCharacters", WithTexts(At(1), std::u16string{0, 0xD800, 0}, std::u16string(1, u'\0')),
        R"({"address":1,"old":"\u0000\ud800\u0000","new":"\u0000"})"},
    RecordCase{"ControlCharacters", WithTexts(At(1), u"\x1\x1F\x7F\u0085", u"\b\f\n\r\t\\\"/"),
        "{\"address\":1,\"old\":\"\\u0001\\u001f\x7F\xC2\x85\",\"new\":\"\\b\\f\\n\\r\\t\\\\\\\"/\"}"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(ChangeLines, FollowWhatIsThere)
{
    std::string lines = "x";
    AppendLine(OvenHeader(), lines);
    AppendLine(Zeros(1, 2), lines);
    EXPECT_EQ(lines.substr(lines.size() - 27), "]}\n{\"address\":1,\"zeros\":2}\n");
    EXPECT_EQ(lines.front(), 'x');
}

/// Digits in groups, as some locales have them.
class CGroups : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(ChangeLines, KnowNoLocale)
{
    std::locale::global(std::locale(std::locale::classic(), new CGroups)); // the locale owns it
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    const std::string line = LineOf(Zeros(1234567, -7654321));
    ChangeRecord read;
    const bool isRead = !ChangeFromLine(line, read);
    std::locale::global(std::locale::classic());
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(line, "{\"address\":1234567,\"zeros\":-7654321}\n");
    EXPECT_TRUE(isRead);
    EXPECT_EQ(read, Zeros(1234567, -7654321));
}

} // namespace
