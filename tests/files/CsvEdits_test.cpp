#include "files/CsvEdits.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/CsvTables.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "text/PathText.h"

namespace fs = std::filesystem;

namespace {

using Edits = std::vector<CsvEdit>;
using Texts = std::vector<std::u16string>;

struct CsvEditing : testing::Test {
    bool Save(const Edits& edits) { return bool(SaveCsvEdits(edits, path, reporter, progress)); }

    Texts Refused(std::u16string_view why) const
    {
        return {u"Can't save only the edited cells of file " + PathText(path) + u": " + std::u16string(why) + u"!"};
    }

    Texts Failed() const { return {u"Save file " + PathText(path) + u" failed!"}; }

    void ExpectRefused(const Bytes& bytes, std::u16string_view why)
    {
        WriteAll(path, bytes);
        EXPECT_FALSE(Save({{{0, 0}, u"new"}}));
        EXPECT_EQ(reporter.shown, Refused(why));
        EXPECT_EQ(ReadAll(path), bytes);
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 1);
    }

    CTempFolder folder;
    fs::path path = folder / "a.csv";
    CRecordingReporter reporter;
    CNoProgress progress;
};

struct EditCase {
    const char* name;
    const char16_t* before;
    Edits edits;
    const char16_t* after; ///< a refusal where it has no line end
    friend void PrintTo(const EditCase& c, std::ostream* out) { *out << c.name; }
};

struct CsvEditCase : CsvEditing, testing::WithParamInterface<EditCase> {};
struct CsvEditWritten : CsvEditCase {};
struct CsvEditRefused : CsvEditCase {};

constexpr const char16_t* kTable = u"\"1\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\tx\r\n";

TEST_P(CsvEditWritten, ChangesItsFieldAlone)
{
    WriteAll(path, Utf16File(GetParam().before));
    const auto foretold = CsvBytesAfterEdits(GetParam().edits, path, reporter, progress);
    EXPECT_EQ(foretold, Utf16File(GetParam().after).size());
    EXPECT_EQ(ReadAll(path), Utf16File(GetParam().before));
    EXPECT_TRUE(Save(GetParam().edits));
    EXPECT_EQ(reporter.shown, Texts{});
    EXPECT_EQ(ReadAll(path), Utf16File(GetParam().after));
    for (const CsvEdit& edit : GetParam().edits) {
        Cells cells = CellsIn(path, 9, 9);
        EXPECT_EQ(CellAt(cells, edit.place), edit.text);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, CsvEditWritten, testing::Values(
    EditCase{"First",               kTable, {{{0, 0}, u"new"}}, u"\"new\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\tx\r\n"},
    EditCase{"Empty",               kTable, {{{0, 1}, u""}},    u"\"1\"\t\"\"\t\"3\"\r\n\"4\"\t\"5\"\tx\r\n"},
    EditCase{"LastIsBare",          kTable, {{{0, 2}, u"new"}}, u"\"1\"\t\"2\"\tnew\r\n\"4\"\t\"5\"\tx\r\n"},
    EditCase{"LastWithQuotes",      kTable, {{{1, 2}, u"\"7\""}}, u"\"1\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\t\"7\"\r\n"},
    EditCase{"LastEmpty",           kTable, {{{1, 2}, u""}},    u"\"1\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\t\"\"\t\r\n"},
    EditCase{"LastEndsInReturn",    kTable, {{{1, 2}, u"a\r"}}, u"\"1\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\t\"a\r\"\t\r\n"},
    EditCase{"QuoteWithin",         kTable, {{{0, 0}, u"3\"5"}}, u"\"3\"5\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\tx\r\n"},
    EditCase{"ReturnWithin",        kTable, {{{0, 0}, u"a\r"}}, u"\"a\r\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\tx\r\n"},
    EditCase{"Several",             kTable, {{{0, 0}, u"a"}, {{0, 2}, u"b"}, {{1, 1}, u"c"}}, u"\"a\"\t\"2\"\tb\r\n\"4\"\t\"c\"\tx\r\n"},
    EditCase{"NextField",           kTable, {{{1, 3}, u"new"}}, u"\"1\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\t\"x\"\tnew\r\n"},
    EditCase{"LaterField",          kTable, {{{1, 5}, u"new"}}, u"\"1\"\t\"2\"\t\"3\"\r\n\"4\"\t\"5\"\t\"x\"\t\"0\"\t\"0\"\tnew\r\n"},
    EditCase{"LastAndLater",        kTable, {{{0, 2}, u"a"}, {{0, 4}, u"b"}}, u"\"1\"\t\"2\"\t\"a\"\t\"0\"\tb\r\n\"4\"\t\"5\"\tx\r\n"},
    EditCase{"AfterABareTab",       u"\"1\"\t\r\n", {{{0, 1}, u"a"}}, u"\"1\"\ta\r\n"},
    EditCase{"LaterAfterABareTab",  u"\"1\"\t\r\n", {{{0, 2}, u"a"}}, u"\"1\"\t\"0\"\ta\r\n"},
    EditCase{"EmptyLine",           u"\r\n\"2\"\r\n", {{{0, 1}, u"a"}}, u"\"0\"\ta\r\n\"2\"\r\n"},
    EditCase{"NextLine",            u"\"1\"\r\n", {{{1, 0}, u"a"}}, u"\"1\"\r\na\r\n"},
    EditCase{"LaterLines",          u"\"1\"\r\n", {{{2, 1}, u"a"}, {{4, 0}, u""}}, u"\"1\"\r\n\r\n\"0\"\ta\r\n\r\n\"\"\t\r\n"},
    EditCase{"MarkAlone",           u"", {{{1, 0}, u"a"}}, u"\r\na\r\n"},
    EditCase{"ZeroThatIsMissing",   u"\"1\"\r\n", {{{0, 3}, u"0"}, {{7, 0}, u"0"}}, u"\"1\"\r\n"},
    EditCase{"SameText",            u"\"\"1\"\t\"2\"\r\n", {{{0, 0}, u"1"}, {{0, 1}, u"\"2\""}}, u"\"\"1\"\t\"2\"\r\n"},
    EditCase{"OthersStay",          u"\"\"\"a\"\t\"b\"\t\"c\"\t\"d\"\r\n\"e\"\t\r\n\r\n", {{{0, 1}, u"x"}}, u"\"\"\"a\"\t\"x\"\t\"c\"\t\"d\"\r\n\"e\"\t\r\n\r\n"}),
    [](const auto& c) { return std::string(c.param.name); });

TEST_P(CsvEditRefused, LeavesTheFile)
{
    WriteAll(path, Utf16File(GetParam().before));
    EXPECT_FALSE(Save(GetParam().edits));
    EXPECT_EQ(reporter.shown, Refused(GetParam().after));
    EXPECT_EQ(ReadAll(path), Utf16File(GetParam().before));
    reporter.shown.clear();
    EXPECT_EQ(CsvBytesAfterEdits(GetParam().edits, path, reporter, progress), std::nullopt);
    EXPECT_EQ(reporter.shown, Refused(GetParam().after));
}

constexpr const char16_t* kNotAsItIs = u"the text of row 1, column 3 would not be read again as it is";

INSTANTIATE_TEST_SUITE_P(Table, CsvEditRefused, testing::Values(
    EditCase{"Tab",            kTable, {{{0, 1}, u"a\tb"}}, kNotAsItIs},
    EditCase{"LineFeed",       kTable, {{{0, 1}, u"a\nb"}}, kNotAsItIs},
    EditCase{"QuoteFirst",     kTable, {{{0, 1}, u"\"a"}}, kNotAsItIs},
    EditCase{"QuoteLast",      kTable, {{{0, 1}, u"a\""}}, kNotAsItIs},
    EditCase{"LastWithTab",    u"\"1\"\t\"2\"\r\n", {{{0, 1}, u"a\tb"}}, kNotAsItIs},
    EditCase{"LastWithLineFeed", u"\"1\"\t\"2\"\r\n", {{{0, 1}, u"a\n"}}, kNotAsItIs},
    EditCase{"LastWithQuotesAndReturn", u"\"1\"\t\"2\"\r\n", {{{0, 1}, u"\"a\r"}}, kNotAsItIs},
    EditCase{"SecondOfTwo",    kTable, {{{0, 0}, u"a"}, {{0, 1}, u"\""}}, kNotAsItIs},
    EditCase{"LongerByAQuote", u"\"1\"\tx\r\n", {{{0, 1}, u"\"a"}, {{0, 2}, u"b"}}, kNotAsItIs},
    EditCase{"InAMissingLine", u"", {{{0, 1}, u"\t"}}, kNotAsItIs},
    EditCase{"LastFieldWouldLoseItsQuotes", u"\"1\"\r\n\"1\"\t\"2\"\r\n", {{{1, 2}, u"b"}},
             u"line 2 is too short, and its last field would lose its quotes in a longer one"}),
    [](const auto& c) { return std::string(c.param.name); });

struct FormCase {
    const char* name;
    const char16_t* table;
    const char16_t* why;
    friend void PrintTo(const FormCase& c, std::ostream* out) { *out << c.name; }
};
struct CsvOtherForm : CsvEditing, testing::WithParamInterface<FormCase> {};

TEST_P(CsvOtherForm, IsRefused)
{
    ExpectRefused(Utf16File(GetParam().table), GetParam().why);
}

INSTANTIATE_TEST_SUITE_P(Table, CsvOtherForm, testing::Values(
    FormCase{"BareField",      u"\"1\"\t2\r\n\r\n\"1\"\t2\t3\r\n", u"line 3, field 2 is not in quotes"},
    FormCase{"OneQuote",       u"\"\t2\r\n",                       u"line 1, field 1 is not in quotes"},
    FormCase{"HalfInQuotes",   u"\"1\t2\r\n",                      u"line 1, field 1 is not in quotes"},
    FormCase{"LineFeedAlone",  u"\"1\"\t2\r\n3\n4\r\n",            u"line 2 does not end with CR LF"},
    FormCase{"TwoReturns",     u"\"1\"\t2\r\n3\r\r\n",             u"line 2 ends with more than one CR"},
    FormCase{"NoLastEnd",      u"\"1\"\t2\r\n3",                   u"line 2 does not end with CR LF"},
    FormCase{"NoLastLineFeed", u"\"1\"\t2\r\n3\r",                 u"line 2 does not end with CR LF"},
    FormCase{"TabIsLast",      u"\"1\"\t2\r\n\"3\"\t",             u"line 2 does not end with CR LF"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(CsvEditing, AnsiTextIsRefused)
{
    ExpectRefused(AsciiBytes("\"1\",\"2\"\r\n"), u"it is not UTF-16 text");
}

TEST_F(CsvEditing, EmptyFileIsRefused)
{
    ExpectRefused({}, u"it is not UTF-16 text");
}

TEST_F(CsvEditing, HalfAMarkIsRefused)
{
    ExpectRefused(BytesOf({0xFF, 'x', '7', 0, '\r', 0, '\n', 0}), u"it does not begin with FF FE");
}

TEST_F(CsvEditing, HalfACharacterAtTheEndIsRefused)
{
    ExpectRefused(BytesOf({0xFF, 0xFE, '7', 0, '\r', 0, '\n', 0, '7'}), u"half a character stands at its end");
}

TEST_F(CsvEditing, MissingFileIsNotMade)
{
    EXPECT_FALSE(Save({{{0, 0}, u"new"}}));
    EXPECT_EQ(reporter.shown, Refused(u"it does not exist"));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(CsvEditing, FolderIsReported)
{
    fs::create_directory(path);
    EXPECT_FALSE(Save({{{0, 0}, u"new"}}));
    EXPECT_EQ(reporter.shown, Failed());
    reporter.shown.clear();
    EXPECT_EQ(CsvBytesAfterEdits(Edits{{{0, 0}, u"new"}}, path, reporter, progress), std::nullopt);
    EXPECT_EQ(reporter.shown, Failed());
}

TEST_F(CsvEditing, LongTableKeepsAllOtherBytes)
{
    std::u16string before;
    std::u16string after;
    Edits edits;
    for (std::int32_t row = 0; row < 60000; ++row) { // more bytes than are read or written at once
        const std::u16string text(static_cast<std::size_t>(row % 37), u'x');
        const bool isEdited = row % 7 == 3;
        before.append(u"\"").append(text).append(u"\"\t").append(text).append(u"\r\n");
        after.append(u"\"").append(text).append(u"\"\t").append(isEdited ? u"edited" : text).append(u"\r\n");
        if (isEdited)
            edits.push_back({{row, 1}, u"edited"});
    }
    WriteAll(path, Utf16File(before));
    EXPECT_TRUE(Save(edits));
    EXPECT_TRUE(ReadAll(path) == Utf16File(after));
}

TEST_F(CsvEditing, FieldLongerThanAPieceIsReplaced)
{
    const std::u16string longText(700000, u'x');
    WriteAll(path, Utf16File(u'"' + longText + u"\"\t2\r\n"));
    EXPECT_TRUE(Save({{{0, 0}, longText + u"y"}}));
    EXPECT_TRUE(ReadAll(path) == Utf16File(u'"' + longText + u"y\"\t2\r\n"));
    EXPECT_TRUE(Save({{{0, 0}, u""}}));
    EXPECT_TRUE(ReadAll(path) == Utf16File(u"\"\"\t2\r\n"));
}

TEST_F(CsvEditing, SameTextWritesNothing)
{
    WriteAll(path, Utf16File(kTable));
    const CFileSizeLimit limit(0);
    EXPECT_TRUE(Save({{{0, 0}, u"1"}}));
}

TEST_F(CsvEditing, FullDiskIsReportedAndTheOldFileStays)
{
    WriteAll(path, Utf16File(kTable));
    {
        const CFileSizeLimit limit(20);
        EXPECT_FALSE(Save({{{0, 0}, u"new"}}));
    }
    EXPECT_EQ(reporter.shown, Failed());
    EXPECT_EQ(ReadAll(path), Utf16File(kTable));
}

TEST_F(CsvEditing, WithoutMemoryIsReportedAndTheOldFileStays)
{
    WriteAll(path, Utf16File(kTable));
    for (const std::size_t most : {std::size_t{100000}, std::size_t{300000}}) { // while reading, while writing
        reporter.shown.clear();
        {
            const CAllocationLimit limit(CAllocationLimit::kNone, most);
            EXPECT_FALSE(Save({{{0, 0}, u"new"}}));
        }
        EXPECT_EQ(reporter.shown, Failed());
        EXPECT_EQ(ReadAll(path), Utf16File(kTable));
    }
}

TEST_F(CsvEditing, GivenUpAtAnyTimeLeavesTheOldFileAndSaysNothing)
{
    std::u16string table;
    while (table.size() < 300000)
        table += kTable;
    WriteAll(path, Utf16File(table));
    std::size_t patience = 0;
    for (;; ++patience) {
        CImpatientProgress impatient(patience);
        const SaveResult result = SaveCsvEdits(Edits{{{0, 0}, u"new"}}, path, reporter, impatient);
        EXPECT_TRUE(std::is_sorted(impatient.reports.begin(), impatient.reports.end()));
        if (result)
            break;
        EXPECT_TRUE(result.isGivenUp);
        ASSERT_TRUE(ReadAll(path) == Utf16File(table));
    }
    EXPECT_GE(patience, 5u);
    EXPECT_EQ(reporter.shown, Texts{});
}

TEST_F(CsvEditing, FileCutMeanwhileIsReported)
{
    std::u16string table;
    while (table.size() < 300000)
        table += kTable;
    WriteAll(path, Utf16File(table));
    CCuttingProgress cutting(path, 400002);
    EXPECT_FALSE(SaveCsvEdits(Edits{{{0, 0}, u"new"}}, path, reporter, cutting));
    EXPECT_EQ(reporter.shown.size(), 1u);
    EXPECT_EQ(ReadAll(path).size(), 400002u);
}

TEST_F(CsvEditing, KeepsHardLinks)
{
    WriteAll(path, Utf16File(kTable));
    fs::create_hard_link(path, folder / "same.csv");
    EXPECT_TRUE(Save({{{1, 2}, u"y"}}));
    EXPECT_TRUE(ReadAll(folder / "same.csv") == ReadAll(path));
    EXPECT_EQ(CellsIn(folder / "same.csv", 2, 3)[1][2], u"y");
}

} // namespace
