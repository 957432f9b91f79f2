#include "changes/ChangeSyntax.h"
#include "tests/support/TestFiles.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

namespace {

ChangeRecord RecordOf(std::string_view line)
{
    ChangeRecord record;
    const auto fault = ChangeFromLine(line, record);
    EXPECT_FALSE(fault) << ToUtf8(FaultText(fault.value_or(ChangeFault{})));
    return record;
}

TEST(ChangeFromLine, TakesItsKeysInAnyOrderAndWithBlanks)
{
    EXPECT_EQ(RecordOf(" {\t\"why\" : \"edited\", \"newWords\":\"0960\" ,\"new\":\"2\", \"column\":7,\"row\" :4,"
                       "\"oldWords\": \"0992\",\"old\":\"1\",\"address\":245 } \r"),
              RecordOf(R"({"address":245,"row":4,"column":7,"old":"1","new":"2","oldWords":"0992","newWords":"0960",)"
                       R"("why":"edited"})"));
}

TEST(ChangeFromLine, TakesWhatItWouldWriteInAnotherWay)
{
    const ChangeRecord record =
        RecordOf(R"({"address":-0,"table":0,"row":1,"new":"\u00e9\ud83d\ude00\/","oldWords":"","newWords":"ab"})");
    EXPECT_EQ(record.address, WordAddress(0));
    EXPECT_EQ(record.table, 0);
    EXPECT_EQ(record.newText, u"é\U0001F600/");
    EXPECT_TRUE(record.oldWords.empty());
    EXPECT_EQ(record.newWords, BytesOf({0xAB}));
    EXPECT_EQ(record.why, std::nullopt);
}

TEST(ChangeFromLine, TakesKeysWithEscapes)
{
    EXPECT_EQ(RecordOf(R"({"\u0061ddress":5,"new":"\u0000\uD800"})").newText, (std::u16string{0, 0xD800}));
}

TEST(ChangeFromLine, TakesHalvesOfPairsWhereverTheyStand)
{
    EXPECT_EQ(RecordOf(R"({"address":5,"new":"\uDC00\uD800\uD800\uDC00\ud800x\\ud800\\\ud800"})").newText,
              (std::u16string{0xDC00, 0xD800, 0xD800, 0xDC00, 0xD800, u'x', u'\\', u'u', u'd', u'8', u'0', u'0', u'\\',
                              0xD800}));
}

TEST(ChangeFromLine, TakesAllReasons)
{
    for (int i = 0; i <= static_cast<int>(ChangeReason::Form); ++i) {
        const auto reason = static_cast<ChangeReason>(i);
        EXPECT_EQ(RecordOf(R"({"address":5,"new":"","why":")" + ToUtf8(WordOf(reason)) + "\"}").why, reason);
    }
}

TEST(ChangeFromLine, LeavesNothingOfAnEarlierRecord)
{
    ChangeRecord record = RecordOf(R"({"address":5,"table":3,"row":1,"column":2,"old":"a","newWords":"0001"})");
    EXPECT_FALSE(ChangeFromLine(R"({"line":2,"new":"b"})", record));
    EXPECT_EQ(record, RecordOf(R"({"line":2,"new":"b"})"));
}

struct FaultCase {
    const char* name;
    std::string line;
    std::u16string key;
    const char16_t* text;
    friend void PrintTo(const FaultCase& c, std::ostream* out) { *out << c.name; }
};

std::string NameOf(const testing::TestParamInfo<FaultCase>& info)
{
    return info.param.name;
}

struct RefusedRecord : testing::TestWithParam<FaultCase> {};

TEST_P(RefusedRecord, NamesTheKeyAndWhatIsWrong)
{
    ChangeRecord record;
    const auto fault = ChangeFromLine(GetParam().line, record);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->key, GetParam().key);
    EXPECT_EQ(fault->text, GetParam().text);
}

constexpr char16_t kInteger[] = u"an integer is expected";
constexpr char16_t kText[] = u"a text is expected";
constexpr char16_t kObject[] = u"an object is expected";
constexpr char16_t kWords[] = u"words of four hexadecimal digits with a blank between are expected";
constexpr char16_t kNoPlace[] = u"an address, a row with a column or an item, or a line is missing";
constexpr char16_t kNoValue[] = u"a text, words or zeros are missing";
constexpr char16_t kOfHeader[] = u"it belongs to the header, which is the first line";
constexpr char16_t kUnknown[] = u"there is no field of this name";
constexpr char16_t kAddressRange[] = u"the number is not between 0 and 4611686018427387903";
constexpr char16_t kZerosRange[] = u"the number is not between -4611686018427387903 and 4611686018427387903";
constexpr char16_t kLineAlone[] = u"a line behind the rows has no address, no row and no words";
constexpr char16_t kZerosAlone[] = u"they have an address, no words and no texts";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Syntax, RefusedRecord, testing::Values(
    FaultCase{"Empty",               "",                                  u"", u"column 1 is no valid JSON"},
    FaultCase{"NoJson",              "abc",                               u"", u"column 1 is no valid JSON"},
    FaultCase{"Cut",                 R"({"address":5)",                   u"", u"column 13 is no valid JSON"},
    FaultCase{"TwoRecords",          R"({"why":"form"}{"why":"form"})",   u"", u"column 15 is no valid JSON"},
    FaultCase{"ColumnsAreCharacters", R"({"item":"°°" x})",               u"", u"column 14 is no valid JSON"},
    FaultCase{"ColumnAfterHalves",   R"({"item":"\ud800" x})",            u"", u"column 18 is no valid JSON"},
    FaultCase{"NoUtf8",              "{\"item\":\"\xE9\"}",               u"", u"column 11 is no valid JSON"},
    FaultCase{"CodedSurrogate",      "{\"item\":\"\xED\xA0\x80\"}",       u"", u"column 10 is no valid JSON"},
    FaultCase{"BareControl",         "{\"item\":\"\x01\"}",               u"", u"column 10 is no valid JSON"},
    FaultCase{"ZeroByte",            std::string("{\"item\":\"\0\"}", 12), u"", u"column 10 is no valid JSON"},
    FaultCase{"ShortEscape",         R"({"item":"\ud80"})",               u"", u"column 15 is no valid JSON"},
    FaultCase{"Array",               "[]",                                u"", kObject},
    FaultCase{"Text",                "\"a\"",                             u"", kObject},
    FaultCase{"Number",              "1",                                 u"", kObject},
    FaultCase{"LargeNumber",         "18446744073709551615",              u"", kObject},
    FaultCase{"Real",                "1.5",                               u"", kObject},
    FaultCase{"VeryLargeReal",       "1e999",                             u"", kObject},
    FaultCase{"Null",                "null",                              u"", kObject},
    FaultCase{"True",                "true",                              u"", kObject}), NameOf);

INSTANTIATE_TEST_SUITE_P(Keys, RefusedRecord, testing::Values(
    FaultCase{"Unknown",             R"({"adress":5})",                   u"adress", kUnknown},
    FaultCase{"OtherCase",           R"({"Address":5})",                  u"Address", kUnknown},
    FaultCase{"EmptyKey",            R"({"":5})",                         u"", kUnknown},
    FaultCase{"HalfAPairAsKey",      R"({"row\udc00":5})",                std::u16string{u'r', u'o', u'w', 0xDC00}, kUnknown},
    FaultCase{"ZeroInKey",           R"({"row\u0000x":5})",               std::u16string(u"row\0x", 5), kUnknown},
    FaultCase{"Twice",               R"({"row":5,"row":5})",              u"row", u"the field stands twice"},
    FaultCase{"Header",              R"({"vantor":"changes"})",           u"vantor", kOfHeader},
    FaultCase{"FieldOfHeader",       R"({"address":5,"tables":[]})",      u"tables", kOfHeader},
    FaultCase{"FieldOfTable",        R"({"start":5})",                    u"start", kUnknown}), NameOf);

INSTANTIATE_TEST_SUITE_P(Kinds, RefusedRecord, testing::Values(
    FaultCase{"AddressAsText",       R"({"address":"5"})",                u"address", kInteger},
    FaultCase{"AddressNull",         R"({"address":null})",               u"address", kInteger},
    FaultCase{"RowWithPoint",        R"({"row":4.0})",                    u"row", kInteger},
    FaultCase{"RowWithExponent",     R"({"row":4e1})",                    u"row", kInteger},
    FaultCase{"RowOfVeryLargeReal",  R"({"row":1e999})",                  u"row", kInteger},
    FaultCase{"ColumnTrue",          R"({"column":true})",                u"column", kInteger},
    FaultCase{"ZerosAsArray",        R"({"zeros":[1]})",                  u"zeros", kInteger},
    FaultCase{"LineAsObject",        R"({"line":{}})",                    u"line", kInteger},
    FaultCase{"OldAsNumber",         R"({"old":5})",                      u"old", kText},
    FaultCase{"OldOfLargeNumber",    R"({"old":18446744073709551615})",   u"old", kText},
    FaultCase{"NewAsNull",           R"({"new":null})",                   u"new", kText},
    FaultCase{"NewAsReal",           R"({"new":1.5})",                    u"new", kText},
    FaultCase{"ItemAsArray",         R"({"item":["a"]})",                 u"item", kText},
    FaultCase{"ReadsAsObject",       R"({"reads":{}})",                   u"reads", kText},
    FaultCase{"WordsAsNumber",       R"({"oldWords":1})",                 u"oldWords", kText}), NameOf);

INSTANTIATE_TEST_SUITE_P(Values, RefusedRecord, testing::Values(
    FaultCase{"AddressBelow0",       R"({"address":-1})",                 u"address", kAddressRange},
    FaultCase{"AddressTooLarge",     R"({"address":4611686018427387904})", u"address", kAddressRange},
    FaultCase{"AddressOf64Bits",     R"({"address":18446744073709551615})", u"address", kAddressRange},
    FaultCase{"AddressOf90Digits",   R"({"address":)" + std::string(90, '9') + "}", u"address", kAddressRange},
    FaultCase{"TableBelow0",         R"({"table":-1})",                   u"table", u"the number is not between 0 and 2147483647"},
    FaultCase{"RowBelow0",           R"({"row":-1})",                     u"row", u"the number is not between 1 and 2147483647"},
    FaultCase{"Row0",                R"({"row":0})",                      u"row", u"the number is not between 1 and 2147483647"},
    FaultCase{"RowTooLarge",         R"({"row":2147483648})",             u"row", u"the number is not between 1 and 2147483647"},
    FaultCase{"Column1",             R"({"column":1})",                   u"column", u"the number is not between 2 and 2147483647"},
    FaultCase{"Line0",               R"({"line":0})",                     u"line", u"the number is not between 1 and 9223372036854775807"},
    FaultCase{"NoZeros",             R"({"zeros":0})",                    u"zeros", u"the number is 0"},
    FaultCase{"TooManyZeros",        R"({"zeros":-4611686018427387904})", u"zeros", kZerosRange},
    FaultCase{"OldWordsOddDigits",   R"({"oldWords":"001"})",             u"oldWords", kWords},
    FaultCase{"NewWordsOtherLetter", R"({"newWords":"000G"})",            u"newWords", kWords},
    FaultCase{"WordsHalfAPair",      R"({"newWords":"00\ud800"})",        u"newWords", kWords},
    FaultCase{"UnknownReason",       R"({"why":"typo"})",                 u"why",
        u"none of these: edited, type, end, limits, decimals, digits, coding, text, quotes, rows, form"}), NameOf);

INSTANTIATE_TEST_SUITE_P(Together, RefusedRecord, testing::Values(
    FaultCase{"Nothing",             "{}",                                u"", kNoPlace},
    FaultCase{"OnlyAReason",         R"({"why":"edited"})",               u"", kNoPlace},
    FaultCase{"OnlyTexts",           R"({"old":"1","new":"2"})",          u"", kNoPlace},
    FaultCase{"OnlyARow",            R"({"row":1,"new":"2"})",            u"", kNoPlace},
    FaultCase{"OnlyAColumn",         R"({"column":2,"new":"2"})",         u"", kNoPlace},
    FaultCase{"OnlyAnItem",          R"({"item":"A","new":"2"})",         u"", kNoPlace},
    FaultCase{"ColumnAndItem",       R"({"column":2,"item":"A","new":"2"})", u"", kNoPlace},
    FaultCase{"FormWithText",        R"({"new":"2","why":"form"})",       u"", kNoPlace},
    FaultCase{"OnlyAnAddress",       R"({"address":5})",                  u"", kNoValue},
    FaultCase{"OnlyACell",           R"({"address":5,"row":1,"column":2,"item":"A","why":"edited"})", u"", kNoValue},
    FaultCase{"NoWordsOnBothSides",  R"({"address":5,"oldWords":"","newWords":""})", u"", kNoValue},
    FaultCase{"LineWithAddress",     R"({"line":5,"address":1,"new":""})", u"line", kLineAlone},
    FaultCase{"LineWithRow",         R"({"line":5,"row":1,"new":""})",    u"line", kLineAlone},
    FaultCase{"LineWithColumn",      R"({"line":5,"column":2,"new":""})", u"line", kLineAlone},
    FaultCase{"LineWithItem",        R"({"line":5,"item":"A","new":""})", u"line", kLineAlone},
    FaultCase{"LineWithTable",       R"({"line":5,"table":1,"new":""})",  u"line", kLineAlone},
    FaultCase{"LineWithOldWords",    R"({"line":5,"oldWords":"0001"})",   u"line", kLineAlone},
    FaultCase{"LineWithNewWords",    R"({"line":5,"newWords":"0001"})",   u"line", kLineAlone},
    FaultCase{"LineWithZeros",       R"({"line":5,"zeros":1})",           u"line", kLineAlone},
    FaultCase{"ZerosWithoutAddress", R"({"row":1,"column":2,"zeros":1})", u"zeros", kZerosAlone},
    FaultCase{"ZerosWithOldWords",   R"({"address":5,"zeros":1,"oldWords":"0001"})", u"zeros", kZerosAlone},
    FaultCase{"ZerosWithNewWords",   R"({"address":5,"zeros":1,"newWords":"0001"})", u"zeros", kZerosAlone},
    FaultCase{"ZerosWithOld",        R"({"address":5,"zeros":1,"old":""})", u"zeros", kZerosAlone},
    FaultCase{"ZerosWithNew",        R"({"address":5,"zeros":1,"new":""})", u"zeros", kZerosAlone},
    FaultCase{"ZerosWithReads",      R"({"address":5,"zeros":1,"reads":""})", u"zeros", kZerosAlone}), NameOf);
// clang-format on

TEST(ChangeFault, ShowsTheBeginningOfALongKey)
{
    ChangeRecord record;
    const auto fault = ChangeFromLine("{\"" + std::string(1000, 'x') + "\":1}", record);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->key, std::u16string(64, u'x'));
}

TEST(ChangeFault, IsFoundBeforeListsInListsOfAnyDepth)
{
    ChangeRecord record;
    const auto fault = ChangeFromLine("{\"row\":" + std::string(1000000, '['), record);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->text, kInteger);
}

// ---------------------------------------------------------------------------------------------------------- the header

TEST(HeaderFromLine, TakesItsKeysInAnyOrder)
{
    ChangeHeader header;
    EXPECT_FALSE(HeaderFromLine(R"({"tables":[{"rows":3,"format":"\ud800\u0000","start":2}],"newBytes":8,"type":"frp",)"
                                R"("version":1,"vantor":"changes"})",
                                header));
    ASSERT_EQ(header.tables.size(), 1u);
    EXPECT_EQ(header.tables[0], (ChangedTable{{0xD800, 0}, WordAddress(2), 3}));
    EXPECT_EQ(header.newBytes, 8);
    EXPECT_EQ(header.bytes, std::nullopt);
    EXPECT_EQ(header.type, FileType::Frp);
    EXPECT_EQ(header.file, std::nullopt);
}

TEST(HeaderFromLine, NeedsNoMoreThanItsMarkAndVersion)
{
    ChangeHeader header;
    header.bytes = 1;
    EXPECT_FALSE(HeaderFromLine(R"({"vantor":"changes","version":1})", header));
    EXPECT_EQ(header, ChangeHeader());
}

struct RefusedHeader : testing::TestWithParam<FaultCase> {};

TEST_P(RefusedHeader, NamesTheKeyAndWhatIsWrong)
{
    ChangeHeader header;
    const auto fault = HeaderFromLine(GetParam().line, header);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->key, GetParam().key);
    EXPECT_EQ(fault->text, GetParam().text);
}

constexpr char16_t kMissing[] = u"the field is missing";
constexpr char16_t kType[] = u"\"rcp\", \"csv\", \"erp\" or \"frp\" is expected";
constexpr char16_t kSizeRange[] = u"the number is not between 0 and 9223372036854775807";
constexpr char16_t kOfRecord[] = u"it belongs to a record, and the first line is the header";

std::string Header(std::string_view fields)
{
    return R"({"vantor":"changes","version":1,)" + std::string(fields) + "}";
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RefusedHeader, testing::Values(
    FaultCase{"NoJson",          "--- a/oven.rcp",                   u"", u"column 2 is no valid JSON"},
    FaultCase{"Empty",           "{}",                               u"vantor", kMissing},
    FaultCase{"NoMark",          R"({"version":1})",                 u"vantor", kMissing},
    FaultCase{"NoVersion",       R"({"vantor":"changes"})",          u"version", kMissing},
    FaultCase{"OtherMark",       R"({"vantor":"formats","version":1})", u"vantor", u"\"changes\" is expected"},
    FaultCase{"LaterVersion",    R"({"vantor":"changes","version":2})", u"version", u"version 2 is not known, only version 1"},
    FaultCase{"Version0",        R"({"vantor":"changes","version":0})", u"version", u"version 0 is not known, only version 1"},
    FaultCase{"NegativeVersion", R"({"vantor":"changes","version":-1})", u"version", kSizeRange},
    FaultCase{"VersionAsText",   R"({"vantor":"changes","version":"1"})", u"version", kInteger},
    FaultCase{"Record",          R"({"address":700,"newWords":"0001"})", u"address", kOfRecord},
    FaultCase{"Unknown",         Header(R"("size":1)"),              u"size", kUnknown},
    FaultCase{"Twice",           Header(R"("bytes":1,"bytes":1)"),   u"bytes", u"the field stands twice"},
    FaultCase{"UnknownType",     Header(R"("type":"txt")"),          u"type", kType},
    FaultCase{"TypeInCapitals",  Header(R"("type":"RCP")"),          u"type", kType},
    FaultCase{"TypeAsName",      Header(R"("type":"a.rcp")"),        u"type", kType},
    FaultCase{"EmptyType",       Header(R"("type":"")"),             u"type", kType},
    FaultCase{"BytesBelow0",     Header(R"("bytes":-1)"),            u"bytes", kSizeRange},
    FaultCase{"NewBytesTooLarge", Header(R"("newBytes":9223372036854775808)"), u"newBytes", kSizeRange},
    FaultCase{"FileAsNumber",    Header(R"("file":1)"),              u"file", kText},
    FaultCase{"TablesAsObject",  Header(R"("tables":{})"),           u"tables", u"an array is expected"},
    FaultCase{"TablesAsNull",    Header(R"("tables":null)"),         u"tables", u"an array is expected"},
    FaultCase{"TablesAsText",    Header(R"("tables":"")"),           u"tables", u"an array is expected"},
    FaultCase{"TablesAsNumber",  Header(R"("tables":18446744073709551615)"), u"tables", u"an array is expected"},
    FaultCase{"TableAsNumber",   Header(R"("tables":[1])"),          u"tables/0", kObject},
    FaultCase{"TableAsList",     Header(R"("tables":[[]])"),         u"tables/0", kObject},
    FaultCase{"EmptyTable",      Header(R"("tables":[{}])"),         u"tables/0/format", kMissing},
    FaultCase{"TableWithoutStart", Header(R"("tables":[{"format":"","rows":1}])"), u"tables/0/start", kMissing},
    FaultCase{"SecondTableWithoutRows", Header(R"("tables":[{"format":"","start":0,"rows":1},{"format":"","start":0}])"), u"tables/1/rows", kMissing},
    FaultCase{"SecondTableAsText", Header(R"("tables":[{"format":"","start":0,"rows":1},""])"), u"tables/1", kObject},
    FaultCase{"RowsBelow0",      Header(R"("tables":[{"rows":-1}])"), u"tables/0/rows", u"the number is not between 0 and 2147483647"},
    FaultCase{"StartAsText",     Header(R"("tables":[{"start":""}])"), u"tables/0/start", kInteger},
    FaultCase{"FormatAsObject",  Header(R"("tables":[{"format":{}}])"), u"tables/0/format", kText},
    FaultCase{"UnknownInTable",  Header(R"("tables":[{"row":1}])"),  u"tables/0/row", kUnknown},
    FaultCase{"TwiceInTable",    Header(R"("tables":[{"rows":1,"rows":1}])"), u"tables/0/rows", u"the field stands twice"},
    FaultCase{"TablesCut",       R"({"vantor":"changes","version":1,"tables":[{"rows":1)", u"", u"column 52 is no valid JSON"}), NameOf);
// clang-format on

// ----------------------------------------------------------------------------------------------------------- the words

TEST(FaultText, NamesLineAndKey)
{
    EXPECT_EQ(FaultText({3, u"row", u"an integer is expected"}), u"line 3, \"row\": an integer is expected");
    EXPECT_EQ(FaultText({1, u"", u"there is no header"}), u"line 1: there is no header");
    EXPECT_EQ(FaultText({9223372036854775807u, u"%s", u"%d"}), u"line 9223372036854775807, \"%s\": %d");
}

} // namespace
