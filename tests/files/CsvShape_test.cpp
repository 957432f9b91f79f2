#include "files/CsvShape.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/CsvTables.h"

namespace fs = std::filesystem;

namespace {

using Places = std::vector<CellPlace>;
using Texts = std::vector<std::u16string>;

struct CsvShapes : testing::Test {
    const CsvShape& Scan(const Bytes& bytes, std::size_t rows, std::size_t columns)
    {
        WriteAll(path, bytes);
        scan.emplace(rows, columns);
        EXPECT_TRUE(scan->Open(path));
        while (scan->Continue()) {
        }
        EXPECT_TRUE(scan->IsDone());
        EXPECT_FALSE(scan->HasFailed());
        return scan->Shape();
    }

    /// "LINE:COLUMN text" of everything that is dropped; without a column for a line.
    Texts Dropped() const
    {
        Texts all;
        const auto number = [](std::uint64_t n) {
            const std::string digits = std::to_string(n);
            return std::u16string(digits.begin(), digits.end());
        };
        for (const CsvShape::Dropped& dropped : scan->Shape().dropped) {
            const auto texts = DroppedTexts(path, scan->Shape(), dropped);
            EXPECT_TRUE(texts);
            EXPECT_EQ(texts->size(), dropped.fields);
            for (const CsvDroppedText& one : *texts)
                all.push_back(number(dropped.line) + u":" + (dropped.column ? number(one.column) : u"") + u" " +
                              one.text);
        }
        return all;
    }

    /// "ROW:FIELDS" of the short lines.
    std::vector<std::pair<std::int32_t, std::uint32_t>> Short() const
    {
        std::vector<std::pair<std::int32_t, std::uint32_t>> all;
        for (const CsvShape::ShortLine& line : scan->Shape().shortLines)
            all.emplace_back(line.row, line.fields);
        return all;
    }

    CTempFolder folder;
    fs::path path = folder / "a.csv";
    std::optional<CCsvShapeScan> scan;
};

using Shorts = std::vector<std::pair<std::int32_t, std::uint32_t>>;

TEST_F(CsvShapes, OfWhatASaveWroteHasNothingToTell)
{
    const CsvShape& shape = Scan(Utf16File(u"\"1\"\t\"\"\t\"3\"\r\n\"4\"\t\"5\"\t\"6\"\r\n"), 2, 3);
    EXPECT_TRUE(shape.isUtf16);
    EXPECT_EQ(shape.lines, 2u);
    EXPECT_EQ(Short(), Shorts{});
    EXPECT_EQ(shape.reformed, Places{});
    EXPECT_FALSE(shape.isReformedElsewhere);
    EXPECT_EQ(Dropped(), Texts{});
    EXPECT_EQ(shape.formFault, u"");
}

TEST_F(CsvShapes, TellsShortAndMissingLines)
{
    const CsvShape& shape = Scan(Utf16File(u"\"1\"\t2\r\n\r\n\"1\"\t\r\n1\t2\t3\r\n"), 9, 3);
    EXPECT_EQ(shape.lines, 4u);
    EXPECT_EQ(Short(), (Shorts{{0, 2}, {1, 0}, {2, 1}}));
    EXPECT_FALSE(shape.isReformedElsewhere) << "what is added is not meant";
}

TEST_F(CsvShapes, TellsFieldsThatASaveWritesInOtherBytes)
{
    const CsvShape& shape = Scan(Utf16File(u"\"1\"\t2\t\"\"3\"\t\"\t\"\"\"\t\"\"\tx\r\n1\t\"b\"\r\n1\r\n"), 3, 7);
    EXPECT_EQ(shape.reformed, (Places{{0, 1}, {0, 2}, {0, 3}, {0, 4}, {1, 0}}));
    EXPECT_FALSE(shape.isReformedElsewhere);
    EXPECT_EQ(shape.formFault, u"line 1, field 2 is not in quotes");
}

TEST_F(CsvShapes, TellsWhatIsDropped)
{
    const CsvShape& shape =
        Scan(Utf16File(u"\"1\"\t2\t\"x\"\t\"\"\t\"y\"\r\n\"1\"\t2\r\n\"1\"\t\"2\"\t\r\n\"1\"\tline\r\n\r\nlast \u6E29"),
             3, 2);
    EXPECT_EQ(Dropped(), (Texts{u"0:2 x", u"0:4 \"y\"", u"3: \"1\"\tline", u"5: last \u6E29"}));
    EXPECT_TRUE(shape.isReformedElsewhere) << "a TAB, and an empty line";
    EXPECT_EQ(shape.lines, 6u);
}

TEST_F(CsvShapes, DroppedFieldsAreNoOtherForm)
{
    EXPECT_FALSE(Scan(Utf16File(u"\"1\"\t\"2\"\t\"x\"\r\n\"1\"\t2\r\nlast"), 2, 2).isReformedElsewhere);
    EXPECT_EQ(Dropped(), (Texts{u"0:2 \"x\"", u"2: last"}));
}

TEST_F(CsvShapes, OfAnsiText)
{
    const CsvShape& shape = Scan(AsciiBytes("\"1\",2,x,,y\r\n1\r\nline,2\r"), 2, 2);
    EXPECT_FALSE(shape.isUtf16);
    EXPECT_EQ(Short(), (Shorts{{1, 1}}));
    EXPECT_EQ(shape.reformed, Places{});
    EXPECT_TRUE(shape.isReformedElsewhere);
    EXPECT_EQ(Dropped(), (Texts{u"0:2 x", u"0:4 y", u"2: line,2"}));
    EXPECT_EQ(shape.formFault, u"it is not UTF-16 text");
}

struct ReformedCase {
    const char* name;
    Bytes bytes;
    bool isReformed;
    friend void PrintTo(const ReformedCase& c, std::ostream* out) { *out << c.name; }
};
struct CsvReformed : CsvShapes, testing::WithParamInterface<ReformedCase> {};

TEST_P(CsvReformed, IsTold)
{
    EXPECT_EQ(Scan(GetParam().bytes, 2, 2).isReformedElsewhere, GetParam().isReformed);
    EXPECT_EQ(scan->Shape().reformed, Places{});
    EXPECT_EQ(Dropped(), Texts{});
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, CsvReformed, testing::Values(
    ReformedCase{"MarkAlone",      Utf16File(u""),                           false},
    ReformedCase{"EmptyFile",      {},                                       true},
    ReformedCase{"HalfAMark",      BytesOf({0xFF, 'x', '7', 0, '\r', 0, '\n', 0}), true},
    ReformedCase{"OddByte",        BytesOf({0xFF, 0xFE, '7', 0, '\r', 0, '\n', 0, 0}), true},
    ReformedCase{"LineFeedAlone",  Utf16File(u"\"1\"\t2\n"),                 true},
    ReformedCase{"TwoReturns",     Utf16File(u"\"1\"\t2\r\r\n"),             true},
    ReformedCase{"NoLastEnd",      Utf16File(u"\"1\"\t2\r\n\"1\"\t2"),       true},
    ReformedCase{"FurtherTab",     Utf16File(u"\"1\"\t\"2\"\t\r\n"),         true},
    ReformedCase{"FurtherQuotes",  Utf16File(u"\"1\"\t\"2\"\t\"\"\t\r\n"),   true},
    ReformedCase{"EmptyLineAfter", Utf16File(u"\"1\"\t2\r\n\"1\"\t2\r\n\r\n"), true}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(CsvShapes, NoColumnsAndNoRows)
{
    EXPECT_FALSE(Scan(Utf16File(u"\r\n\r\n"), 2, 0).isReformedElsewhere);
    EXPECT_EQ(Dropped(), Texts{});
    Scan(Utf16File(u"1\t2\r\n3\r\n"), 1, 0);
    EXPECT_EQ(Dropped(), (Texts{u"0:0 1", u"0:1 2", u"1: 3"}));
    Scan(Utf16File(u"1\t2\r\n"), 0, 0);
    EXPECT_EQ(Dropped(), (Texts{u"0: 1\t2"}));
}

TEST_F(CsvShapes, LongFileIsTakenInSlices)
{
    std::u16string table;
    for (int line = 0; line < 60000; ++line)
        table += line % 5 == 0 ? u"1\t2\r\n" : u"\"1\"\t\"2\"\t\"further\"\r\n";
    WriteAll(path, Utf16File(table));
    CCsvShapeScan sliced(59000, 2);
    ASSERT_TRUE(sliced.Open(path));
    std::size_t slices = 1;
    while (sliced.Continue())
        ++slices;
    EXPECT_EQ(slices, 2 * table.size() / (256 << 10) + 1);
    EXPECT_EQ(sliced.Position(), sliced.Size());
    EXPECT_EQ(sliced.Shape().reformed.size(), 59000u / 5);
    EXPECT_EQ(sliced.Shape().dropped.size(), 59000u - 59000u / 5 + 1000u);
    EXPECT_EQ(DroppedTexts(path, sliced.Shape(), sliced.Shape().dropped[40000])->front().text, u"\"further\"");
}

TEST_F(CsvShapes, ListOfOtherFormsIsBounded)
{
    std::u16string table;
    for (std::size_t line = 0; line < CCsvShapeScan::kMostReformed + 1; ++line)
        table += u"1\t2\r\n";
    const CsvShape& shape = Scan(Utf16File(table), table.size(), 2);
    EXPECT_EQ(shape.reformed.size(), CCsvShapeScan::kMostReformed);
    EXPECT_TRUE(shape.isReformedElsewhere);
}

TEST_F(CsvShapes, MissingFileFails)
{
    CCsvShapeScan failing(2, 2);
    EXPECT_FALSE(failing.Open(path));
    EXPECT_TRUE(failing.HasFailed());
    EXPECT_FALSE(failing.Continue());
    EXPECT_FALSE(failing.IsDone());
    EXPECT_EQ(failing.Shape().lines, 0u);
}

TEST_F(CsvShapes, WithoutMemoryItFails)
{
    WriteAll(path, Utf16File(std::u16string(100'000, u'x')));
    CCsvShapeScan failing(2, 2);
    ASSERT_TRUE(failing.Open(path));
    const CAllocationLimit limit(CAllocationLimit::kNone, 100'000);
    EXPECT_FALSE(failing.Continue());
    EXPECT_TRUE(failing.HasFailed());
    EXPECT_FALSE(failing.IsDone());
}

TEST_F(CsvShapes, TextOfAFileThatBecameShorterIsNone)
{
    Scan(Utf16File(u"1\r\nlong line\r\n"), 1, 1);
    const CsvShape::Dropped dropped = scan->Shape().dropped.at(0);
    fs::resize_file(path, 12);
    EXPECT_FALSE(DroppedTexts(path, scan->Shape(), dropped));
    fs::remove(path);
    EXPECT_FALSE(DroppedTexts(path, scan->Shape(), dropped));
}

} // namespace
