#include "changes/ChangeLines.h"
#include "changes/SaveRecords.h"
#include "files/RecipeFile.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

ColumnCoding WithDecimals(ColumnCoding coding, std::int32_t decimals)
{
    coding.decimalDigits = decimals;
    return coding;
}

ColumnCoding WithLimits(ColumnCoding coding, std::int64_t least, std::int64_t most)
{
    coding.minValue = least;
    coding.maxValue = most;
    return coding;
}

ColumnCoding Bcd(ColumnCoding coding)
{
    coding.codeType = CodeType::Bcd;
    return coding;
}

ColumnCoding Unsigned16Column()
{
    ColumnCoding coding = Hex16Column();
    coding.dataType = DataType::Unsigned16;
    coding.title = u"Belt m/min";
    return coding;
}

ColumnCoding Unicode(std::int32_t words)
{
    ColumnCoding coding = AnsiColumn(words);
    coding.unicode = 1;
    return coding;
}

/// A file, its rows, and the lines of what saves of them change.
class SaveRecords : public testing::Test {
protected:
    void Open(const char* name, const Bytes& bytes, std::vector<ColumnCoding> columns, std::int32_t start,
              std::int32_t rowCount)
    {
        path = folder / name;
        type = *FileTypeOf(path);
        WriteAll(path, bytes);
        rows.LayOut(std::move(columns), start, rowCount);
        EXPECT_EQ(ReadRecipe(type, rows, path, false, reporter, progress), Outcome::Done);
        stored = CStoredCells(rows, type, LogicalBytes(type, path).value());
    }

    static std::vector<std::string> LinesOf(const CChangeList& list)
    {
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < list.Count(); ++i) {
            AppendLine(list.At(i), lines.emplace_back());
            lines.back().pop_back();
        }
        return lines;
    }

    /// What a save of all cells changes.
    std::vector<std::string> Planned(bool isOfOtherType = false)
    {
        plan.Begin(rows, stored, path, isOfOtherType);
        EXPECT_EQ(plan.Finish(progress), Outcome::Done);
        return LinesOf(CPlannedChanges(plan, {path, u"Oven"}));
    }

    std::vector<std::string> Edited() { return LinesOf(CEditedChanges(rows, stored, {path, u"Oven"})); }

    using Lines = std::vector<std::string>;

    CTempFolder folder;
    std::filesystem::path path;
    FileType type = FileType::Rcp;
    CRecordingReporter reporter;
    CNoProgress progress;
    CRecipeRows rows;
    CStoredCells stored;
    CSavePlan plan;
};

TEST_F(SaveRecords, HeaderTellsFileSizesAndTable)
{
    Open("oven.rcp", WordBytes({1, 2}), {Signed16Column()}, 1, 3);
    Planned();
    std::string line;
    AppendLine(CPlannedChanges(plan, {path, u"Oven"}).Header(), line);
    EXPECT_EQ(line, "{\"vantor\":\"changes\",\"version\":1,\"file\":\"oven.rcp\",\"type\":\"rcp\",\"bytes\":4,"
                    "\"newBytes\":8,\"tables\":[{\"format\":\"Oven\",\"start\":1,\"rows\":3}]}\n");
}

TEST_F(SaveRecords, HeaderOfEditedCellsTellsTheSizeOfATableThen)
{
    const auto edited = [this] { return CEditedChanges(rows, stored, {path, u"Oven"}).Header(); };
    Open("oven.csv", Utf16File(u"\"1\"\t2\r\n"), {Signed16Column(), Signed16Column()}, 500, 1);
    EXPECT_EQ(edited().newBytes, 16);
    rows.SetText(0, 1, u"777");
    EXPECT_EQ(edited().bytes, 16);
    EXPECT_EQ(edited().newBytes, 20);
    Open("other.csv", BytesOf({'1', ',', '2', '\n'}), {Signed16Column(), Signed16Column()}, 500, 1);
    rows.SetText(0, 1, u"777");
    EXPECT_EQ(edited().newBytes, std::nullopt); // it would be refused
}

TEST_F(SaveRecords, APlanOfATableThatCannotBeReadIsNotWhole)
{
    Open("oven.csv", Utf16File(u"\"1\"\t2\r\nmore\r\n"), {Signed16Column(), Signed16Column()}, 0, 1);
    Planned();
    EXPECT_TRUE(plan.IsWhole());
    EXPECT_EQ(plan.CountOfUneditedValues(), 2u); // the last field and a line
    std::filesystem::remove(path);
    Planned();
    EXPECT_TRUE(plan.IsFinished());
    EXPECT_FALSE(plan.IsWhole());
    plan.Stop();
    EXPECT_FALSE(plan.IsWhole());
}

/// Records are made one by one, but not by looking at all others each time.
TEST_F(SaveRecords, OfManyEditedCellsBehindTheEndAreMadeOneByOne)
{
    constexpr std::int32_t kRows = 200'000;
    Open("oven.rcp", WordBytes({}), {Signed16Column(), Signed16Column()}, 0, kRows);
    for (std::int32_t row = 0; row < kRows; ++row)
        rows.SetText(row, 1, u"7");
    const CEditedChanges list(rows, stored, {path, u"Oven"});
    ASSERT_EQ(list.Count(), 2u * kRows);
    for (std::size_t i = 0; i < list.Count(); ++i) {
        const ChangeRecord record = list.At(i);
        ASSERT_EQ(record.address->number, static_cast<std::int64_t>(i));
        ASSERT_EQ(record.zeros, i % 2 == 0 ? 1 : 0);
        ASSERT_EQ(list.PlaceOf(i).has_value(), i % 2 == 1);
    }
}

/// So are those of fields that are dropped.
TEST_F(SaveRecords, OfManyDroppedFieldsAreMadeOneByOne)
{
    constexpr int kFields = 40'000;
    std::u16string table = u"\"1\"";
    for (int i = 1; i <= kFields; ++i)
        table += u"\t\"" + std::u16string(static_cast<std::size_t>(1 + i % 3), u'x') + u'"';
    Open("oven.csv", Utf16File(table + u"\r\nmore\r\n"), {Signed16Column()}, 0, 1);
    plan.Begin(rows, stored, path, false);
    ASSERT_EQ(plan.Finish(progress), Outcome::Done);
    ASSERT_EQ(plan.Dropped().size(), kFields + 1u);
    for (std::size_t i = 0; i < kFields; ++i) {
        const std::u16string text = plan.FieldOf(plan.Dropped()[i]).text;
        ASSERT_EQ(std::count(text.begin(), text.end(), u'x'), 1 + static_cast<int>(i + 1) % 3);
    }
    EXPECT_EQ(plan.FieldOf(plan.Dropped()[kFields]).text, u"more");
    EXPECT_EQ(plan.FieldOf(plan.Dropped()[1]).text, u"xxx");
}

/// So are those of rows with many columns.
TEST_F(SaveRecords, OfManyColumnsAreMadeOneByOne)
{
    const std::vector<ColumnCoding> columns(20'000, WithDecimals(Unsigned16Column(), 2));
    Bytes words(2 * 10 * columns.size());
    for (std::size_t at = 0; at < words.size(); at += 2)
        words[at] = std::byte{105}; // shown as 1.50
    Open("oven.rcp", words, columns, 0, 10);
    plan.Begin(rows, stored, path, false);
    ASSERT_EQ(plan.Finish(progress), Outcome::Done);
    for (std::int32_t row = 0; row < rows.RowCount(); ++row)
        for (std::size_t column = 0; column < columns.size(); ++column)
            rows.SetText(row, column, u"7");
    const CPlannedChanges planned(plan, {path, u"Oven"});
    const CEditedChanges edited(rows, stored, {path, u"Oven"});
    ASSERT_EQ(planned.Count(), 10 * columns.size());
    ASSERT_EQ(edited.Count(), 10 * columns.size());
    for (const CChangeList* list :
         {static_cast<const CChangeList*>(&planned), static_cast<const CChangeList*>(&edited)})
        for (std::size_t i = 0; i < list->Count(); ++i)
            ASSERT_EQ(list->At(i).newText, u"7");
}

TEST_F(SaveRecords, AnUneditedCellWhoseTextLosesAZeroIsToldAsDecimals)
{
    Open("oven.rcp", WordBytes({0, 0x0069}), {WithDecimals(Unsigned16Column(), 2)}, 1, 1);
    EXPECT_EQ(Planned(), (Lines{R"({"address":1,"row":1,"column":2,"item":"Belt m/min","old":"1.50","new":"1.50",)"
                                R"("oldWords":"0069","newWords":"0096","why":"decimals"})"}));
    EXPECT_EQ(Edited(), Lines());
}

TEST_F(SaveRecords, ATypedTextThatIsStoredAsAnotherTellsHowItReads)
{
    Open("oven.rcp", WordBytes({0x004B}), {WithDecimals(Unsigned16Column(), 2)}, 0, 1);
    rows.SetText(0, 0, u"1.15");
    const Lines lines{R"({"address":0,"row":1,"column":2,"item":"Belt m/min","old":"0.75","new":"1.15",)"
                      R"("reads":"1.14","oldWords":"004B","newWords":"0072","why":"edited"})"};
    EXPECT_EQ(Planned(), lines);
    EXPECT_EQ(Edited(), lines);
}

TEST_F(SaveRecords, AnEmptiedCellIsStoredAsZero)
{
    Open("oven.rcp", WordBytes({0x092E}), {WithDecimals(Signed16Column(), 1)}, 0, 1);
    rows.SetText(0, 0, u"");
    EXPECT_EQ(Planned(), (Lines{R"({"address":0,"row":1,"column":2,"item":"Signed","old":"235.0","new":"",)"
                                R"("reads":"0.0","oldWords":"092E","newWords":"0000","why":"edited"})"}));
}

TEST_F(SaveRecords, AnEditThatChangesNoWordHasNoRecord)
{
    Open("oven.rcp", WordBytes({7, 8}), {Signed16Column()}, 0, 2);
    rows.SetText(0, 0, u"7.0");
    rows.SetText(1, 0, u"9");
    EXPECT_EQ(Planned().size(), 1u);
    EXPECT_EQ(plan.CountOf(ChangeReason::Edited), 1u);
}

TEST_F(SaveRecords, RowsBehindTheEndAreNewValues)
{
    Open("oven.rcp", WordBytes({7}), {Signed16Column()}, 0, 2);
    EXPECT_EQ(Planned(), (Lines{R"({"address":1,"row":2,"column":2,"item":"Signed","new":"0","newWords":"0000",)"
                                R"("why":"end"})"}));
}

TEST_F(SaveRecords, AValueThatTheEndCutsHasItsWordsOnly)
{
    Open("oven.rcp", WordBytes({0xFFFF}), {Unsigned32Column()}, 0, 1);
    EXPECT_EQ(Planned(), (Lines{R"({"address":0,"row":1,"column":2,"item":"Unsigned","new":"0","oldWords":"FFFF",)"
                                R"("newWords":"0000 0000","why":"end"})"}));
}

TEST_F(SaveRecords, WordsBetweenTheEndAndTheFirstRowBecomeZeros)
{
    Open("oven.rcp", WordBytes({7}), {Signed16Column()}, 5, 1);
    EXPECT_EQ(Planned(), (Lines{R"({"address":1,"zeros":4,"why":"end"})",
                                R"({"address":5,"row":1,"column":2,"item":"Signed","new":"0","newWords":"0000",)"
                                R"("why":"end"})"}));
}

TEST_F(SaveRecords, AWordThatTheEndCutsIsMadeWholeOutsideTheCells)
{
    const Lines whole{R"({"address":2,"oldWords":"07","newWords":"0007","why":"end"})"};
    Open("oven.rcp", BytesOf({1, 0, 2, 0, 7}), {Signed16Column()}, 3, 1);
    EXPECT_EQ(Planned().front(), whole.front());
    Open("oven.rcp", BytesOf({1, 0, 2, 0, 7}), {Signed16Column()}, 0, 5);
    rows.SetText(4, 0, u"5");
    EXPECT_EQ(Edited(), (Lines{whole.front(), R"({"address":3,"zeros":1,"why":"end"})",
                               R"({"address":4,"row":5,"column":2,"item":"Signed","new":"5","newWords":"0005",)"
                               R"("why":"edited"})"}));
}

TEST_F(SaveRecords, WordsUpToAnEditedCellBehindTheEndBecomeZeros)
{
    Open("oven.rcp", WordBytes({7}), {Signed16Column()}, 0, 9);
    rows.SetText(3, 0, u"3");
    rows.SetText(8, 0, u"8");
    EXPECT_EQ(Edited(), (Lines{R"({"address":1,"zeros":2,"why":"end"})",
                               R"({"address":3,"row":4,"column":2,"item":"Signed","new":"3","newWords":"0003",)"
                               R"("why":"edited"})",
                               R"({"address":4,"zeros":4,"why":"end"})",
                               R"({"address":8,"row":9,"column":2,"item":"Signed","new":"8","newWords":"0008",)"
                               R"("why":"edited"})"}));
}

TEST_F(SaveRecords, ExactWordsAreTold)
{
    Open("oven.rcp", WordBytes({0x004B}), {WithDecimals(Unsigned16Column(), 2)}, 0, 1);
    std::vector<CellEdit> exact{{{0, 0}, CCellState::OfWords(u"\x0073")}};
    rows.Exchange(exact);
    EXPECT_EQ(Planned(), (Lines{R"({"address":0,"row":1,"column":2,"item":"Belt m/min","old":"0.75","new":"1.15",)"
                                R"("oldWords":"004B","newWords":"0073","why":"edited"})"}));
}

TEST_F(SaveRecords, RowsReadAsAnotherTypeSaySo)
{
    Open("oven.csv", Utf16File(u"\"5\"\t6\r\n"), {Signed16Column(), Signed16Column()}, 0, 1);
    CRecipeRows words;
    words.LayOut(rows.Columns(), 0, 1);
    EXPECT_EQ(ReadRecipe(FileType::Rcp, words, path, false, reporter, progress), Outcome::Done);
    rows = words;
    EXPECT_EQ(Planned(true), (Lines{R"({"row":1,"column":2,"item":"Signed","old":"5","new":"-257","why":"type"})",
                                    R"({"row":1,"column":3,"item":"Signed","old":"6","new":"34","reads":"\"34\"",)"
                                    R"("why":"type"})"}));
}

TEST_F(SaveRecords, ATableTellsQuotesDroppedTextsAndItsForm)
{
    Open("oven.csv", Utf16File(u"5\t6\t7\r\n\"8\"\t9\r\n10\t11\r\n"), {Signed16Column(), Signed16Column()}, 0, 2);
    EXPECT_EQ(Planned(), (Lines{R"({"row":1,"column":3,"item":"Signed","old":"6","new":"6","reads":"\"6\"",)"
                                R"("why":"quotes"})",
                                R"({"row":2,"column":3,"item":"Signed","old":"9","new":"9","reads":"\"9\"",)"
                                R"("why":"quotes"})",
                                R"({"row":1,"column":4,"old":"7","new":"","why":"rows"})",
                                R"({"line":3,"old":"10\t11","new":"","why":"rows"})", R"({"why":"form"})"}));
    EXPECT_EQ(plan.CountOfUnedited(), 5u);
    EXPECT_EQ(plan.FormFault(), u"line 1, field 1 is not in quotes");
}

TEST_F(SaveRecords, AnEditedFieldAloneReadsAsTyped)
{
    Open("oven.csv", Utf16File(u"\"5\"\t\"6\"\r\n"), {Signed16Column(), Signed16Column()}, 0, 1);
    rows.SetText(0, 1, u"7");
    EXPECT_EQ(Edited(), (Lines{R"({"row":1,"column":3,"item":"Signed","old":"\"6\"","new":"7","why":"edited"})"}));
}

struct ReasonCase {
    const char* file;
    ColumnCoding coding;
    std::initializer_list<std::uint16_t> words;
    std::optional<ChangeReason> why;
};

class ReasonOfAnUneditedValue : public SaveRecords, public testing::WithParamInterface<ReasonCase> {};

// clang-format off
const ReasonCase kReasons[] = {
    {"a.rcp", Signed16Column(),                                    {0xFFFE},         std::nullopt},
    {"a.rcp", WithDecimals(WithLimits(Signed16Column(), -999, 9999), 2), {12000},    ChangeReason::Limits},
    {"a.rcp", WithLimits(Signed16Column(), -9, 99),                {100},            ChangeReason::Limits},
    {"a.rcp", WithLimits(Signed16Column(), -9, 99),                {0xFFF7},         std::nullopt},
    {"a.rcp", WithDecimals(Unsigned16Column(), 2),                 {105},            ChangeReason::Decimals},
    {"a.rcp", WithDecimals(Unsigned16Column(), 2),                 {115},            ChangeReason::Decimals},
    {"a.rcp", WithDecimals(Unsigned16Column(), 2),                 {150},            std::nullopt},
    {"a.rcp", WithDecimals(Signed16Column(), 2),                   {5},              ChangeReason::Decimals},
    {"a.frp", Bcd(WithDecimals(Unsigned16Column(), 1)),            {15},             ChangeReason::Decimals},
    {"a.frp", Bcd(Unsigned16Column()),                             {15},             std::nullopt},
    {"a.frp", Bcd(Hex16Column()),                                  {0x00AB},         ChangeReason::Coding},
    {"a.rcp", Bcd(Hex16Column()),                                  {0x00AB},         std::nullopt},
    {"a.frp", Hex16Column(),                                       {0x00AB},         std::nullopt},
    {"a.rcp", FloatColumn(),                                       {0x0A3D, 0x436B}, ChangeReason::Digits},
    {"a.rcp", FloatColumn(),                                       {0x0000, 0x3FC0}, std::nullopt},
    {"a.rcp", DoubleColumn(),                                      {1, 0, 0, 0x3FF8}, ChangeReason::Digits},
    {"a.rcp", AnsiColumn(2),                                       {0x4241, 0x4300}, ChangeReason::Text},
    {"a.rcp", AnsiColumn(2),                                       {0x4241, 0x0043}, std::nullopt},
    {"a.rcp", Unicode(3),                                          {u'A', 0, u'B'},  ChangeReason::Text},
    {"a.rcp", Unicode(3),                                          {u'A', u'B', 0},  std::nullopt}};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, ReasonOfAnUneditedValue, testing::ValuesIn(kReasons));

TEST_P(ReasonOfAnUneditedValue, IsTold)
{
    Bytes bytes;
    for (const std::uint16_t word : GetParam().words) {
        const Bytes one = WordBytes({word});
        bytes.insert(bytes.end(), one.begin(), one.end());
    }
    Open(GetParam().file, bytes, {GetParam().coding}, 0, 1);
    Planned();
    std::optional<ChangeReason> why;
    if (!plan.Changes().empty())
        why = plan.Changes()[0].why;
    EXPECT_EQ(why, GetParam().why);
}

} // namespace
