// What commands on many cells make of them: worked out first, refused with reasons, stored exactly.

#include "document/OfferedEdits.h"
#include "tests/document/DocumentFixture.h"

#include <algorithm>
#include <string>

namespace {

DataFormat OvenFormat()
{
    return MakeFormat(u"Oven",
                      {MakeItem(u"Belt", DataType::Unsigned16, 1, 3, 2), MakeItem(u"Steam", DataType::Float, 2, 4, 1),
                       MakeItem(u"Mask", DataType::Hex16, 1, 4), MakeItem(u"Name", DataType::String, 2, 0)});
}

/// Three rows: a belt of 1.05, 0.75 and 2.00, a steam, a mask and a name.
struct CellsCommand : testing::Test {
    CellsCommand()
    {
        WriteAll(path, WordBytes({105, 0, 0x4020, 0x00FF, 0x4241, 0x4443, 75, 0, 0x4020, 0x0010, 0x4645, 0x4847, 200, 0,
                                  0x3FC0, 0x0001, 0x4A49, 0x4C4B}));
        Open();
    }

    void Open()
    {
        document.StartOpen(path, FileType::Rcp);
        document.TakeSettings({OvenFormat(), 0, 3});
        EXPECT_EQ(document.Read(FileType::Rcp, reporter, progress), CRecipeDocument::Reading::Done);
    }

    static CChosenCells Column(std::uint32_t column) { return CChosenCells({{0, 2, column, column}}); }

    std::vector<std::string> Listed(const CCellsCommand& command)
    {
        const auto shared = std::shared_ptr<const CCellsCommand>(std::shared_ptr<const CCellsCommand>(), &command);
        COfferedEdits offered(document.Rows(), document.Stored(), document.Type(), shared);
        EXPECT_EQ(offered.WorkOut(progress), Outcome::Done);
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < offered.Count(); ++i) {
            const ChangeRecord record = offered.At(i);
            std::u16string line = *record.oldText + u">" + record.newText.value_or(u"") + record.note;
            lines.emplace_back(line.begin(), line.end());
        }
        return lines;
    }

    void Do(const CCellsCommand& command)
    {
        const auto shared = std::shared_ptr<const CCellsCommand>(std::shared_ptr<const CCellsCommand>(), &command);
        COfferedEdits offered(document.Rows(), document.Stored(), document.Type(), shared,
                              COfferedEdits::Listed::RefusedOnly);
        std::vector<CellEdit> edits;
        EXPECT_EQ(offered.WorkOut(progress, &edits), Outcome::Done);
        EXPECT_EQ(document.SetStates(EditKind::Calculate, std::move(edits)), EditOutcome::Made);
    }

    static CDecimal Decimal(const char16_t* text) { return *CDecimal::Parse(text); }
    static NumberChange Change(const char16_t* text) { return *ReadNumberChange(text); }

    CTempFolder folder;
    std::filesystem::path path = folder / "oven.rcp";
    CRecordingReporter reporter;
    CNoProgress progress;
    CRecipeDocument document;
};

using Lines = std::vector<std::string>;

} // namespace

TEST_F(CellsCommand, CalculatesWithWhatIsStored)
{
    // 1.05 is shown as 1.50: it is the stored number that is changed, and stored
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"+0.10"))), (Lines{"1.50>1.15", "0.75>0.85", "2.00>2.10"}));
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"/8"))), (Lines{"1.50>0.13", "0.75>0.09", "2.00>0.25"}));
    Do(CCalculate(Column(0), Change(u"+0.10")));
    EXPECT_EQ(document.Rows().State({0, 0}).Words(), std::u16string(1, char16_t{115}));
    ASSERT_EQ(document.SetTexts(EditKind::Typing, {{{1, 0}, u"0.50"}}), EditOutcome::Made);
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"*2"))), (Lines{"1.15>2.30", "0.50>1.00", "2.10>4.20"}));
}

TEST_F(CellsCommand, RefusesWithTheReasonAndClipsNothing)
{
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"-1"))),
              (Lines{"1.50>0.05", "0.75>refused: -0.25 lies outside 0.00 to 655.35", "2.00>1.00"}));
    EXPECT_EQ(Listed(CCalculate(Column(3), Change(u"+1"))),
              (Lines{"ABCD>refused: there is no number to change", "EFGH>refused: there is no number to change",
                     "IJKL>refused: there is no number to change"}));
    const auto reason = [this](std::uint32_t column, const char16_t* text) {
        return Listed(CFillWithText(CChosenCells({{0, 0, column, column}}), text, CFillWithText::As::Entered)).at(0);
    };
    EXPECT_EQ(reason(0, u"abc"), "1.50>refused: abc is not a number");
    EXPECT_EQ(reason(0, u"1,5"), "1.50>refused: 1,5 is not a number");
    EXPECT_EQ(reason(0, u"-12a"), "1.50>refused: -12a is not a number"); // though the check of a cell lets it pass
    EXPECT_EQ(reason(0, u"700"), "1.50>refused: 700.00 lies outside 0.00 to 655.35");
    EXPECT_EQ(reason(0, u"1.005"), "1.50>refused: 1.005 has more than 2 decimals");
    EXPECT_EQ(reason(1, u"1.25"), "2.5>refused: 1.25 has more than 1 decimal");
    EXPECT_EQ(reason(1, u"1e2"), "2.5>refused: 1e2 is to be written with digits alone");
    EXPECT_EQ(reason(2, u"XY"), "FF>refused: XY is not a hexadecimal number");
    EXPECT_EQ(reason(3, u"too long"), "ABCD>refused: too long is longer than 2 characters");
}

TEST_F(CellsCommand, FillsWithAValueThatIsStoredExactly)
{
    const CFillWithText fill(Column(0), u"1.15", CFillWithText::As::Entered);
    EXPECT_EQ(Listed(fill), (Lines{"1.50>1.15", "0.75>1.15", "2.00>1.15"}));
    Do(fill);
    EXPECT_EQ(document.Rows().State({2, 0}).Words(), std::u16string(1, char16_t{115})); // a save of the text has 114
    EXPECT_EQ(Listed(fill), Lines{});
    EXPECT_EQ(Listed(CFillWithText(Column(3), u"Z", CFillWithText::As::Entered)),
              (Lines{"ABCD>Z", "EFGH>Z", "IJKL>Z"}));
}

TEST_F(CellsCommand, StoresANumberThatIsShownWhereAnotherOneIsStored)
{
    const CFillWithText fill(Column(0), u"1.50", CFillWithText::As::Entered);
    EXPECT_EQ(Listed(fill), (Lines{"1.50>1.50", "0.75>1.50", "2.00>1.50"}));
    Do(fill);
    EXPECT_EQ(document.Rows().State({0, 0}).Text(), u"1.50");
    EXPECT_EQ(Listed(fill), Lines{});
}

TEST_F(CellsCommand, FillsWithASeriesInExactDecimals)
{
    EXPECT_EQ(Listed(CFillWithSeries(Column(0), {Decimal(u"0.1"), Decimal(u"0.1")})),
              (Lines{"1.50>0.10", "0.75>0.20", "2.00>0.30"}));
    EXPECT_EQ(Listed(CFillWithSeries(CChosenCells({{0, 0, 0, 2}}),
                                     {Decimal(u"9"), Decimal(u"1"), NumberSeries::Way::AlongColumns})),
              (Lines{"1.50>9.00", "2.5>10", "FF>B"}));
    EXPECT_EQ(Listed(CFillWithSeries(Column(0), {Decimal(u"650"), Decimal(u"2.7")})).back(),
              "2.00>refused: 655.40 lies outside 0.00 to 655.35");
}

TEST_F(CellsCommand, FillsDownTheVeryWords)
{
    const CCellJudge judge(document.Rows(), document.Stored(), document.Type());
    const CFillDown down({{0, {{1, 2, 0, 3}}}}, judge);
    Do(down);
    EXPECT_EQ(document.Rows().State({2, 0}).Words(), std::u16string(1, char16_t{105}));
    EXPECT_EQ(document.Rows().Text(2, 3), u"ABCD");
    EXPECT_EQ(Listed(down), Lines{});
}

TEST_F(CellsCommand, WorksOnWhatTheFileHoldsAfterASave)
{
    // the save stores the 1.05 that is shown as 1.50 as that, and the text stays
    ASSERT_TRUE(document.Write(document.Type(), path, reporter, progress).isSaved);
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"+0.10"))), (Lines{"1.50>1.60", "0.75>0.85", "2.00>2.10"}));
    EXPECT_EQ(Listed(CFillWithText(Column(0), u"1.50", CFillWithText::As::Entered)), (Lines{"0.75>1.50", "2.00>1.50"}));
    EXPECT_EQ(Listed(CFillWithText(Column(0), u"1.05", CFillWithText::As::Entered)),
              (Lines{"1.50>1.05", "0.75>1.05", "2.00>1.05"}));
    Do(CFillDown({{0, {{1, 2, 0, 0}}}}, CCellJudge(document.Rows(), document.Stored(), document.Type())));
    EXPECT_EQ(document.Rows().State({2, 0}).Words(), std::u16string(1, char16_t{150}));
}

TEST_F(CellsCommand, TakesTheNumberThatASaveMadeOfATypedOne)
{
    ASSERT_EQ(document.SetTexts(EditKind::Typing, {{{0, 0}, u"1.15"}}), EditOutcome::Made);
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"+0.10"))), (Lines{"1.15>1.25", "0.75>0.85", "2.00>2.10"}));
    ASSERT_TRUE(document.WriteEdited(reporter, progress).isSaved); // as 1.14
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"+0.10"))), (Lines{"1.15>1.24", "0.75>0.85", "2.00>2.10"}));
    EXPECT_EQ(Listed(CFillWithText(Column(0), u"1.15", CFillWithText::As::Entered)).at(0), "1.15>1.15");
}

TEST_F(CellsCommand, WorksOnWhatIsShownWhereAnotherProgramWroteAndMineIsKept)
{
    WriteAll(path, WordBytes({900, 0, 0x4020, 0x00FF, 0x4241, 0x4443, 76, 0, 0x4020, 0x0010, 0x4645, 0x4847, 200, 0,
                              0x3FC0, 0x0001, 0x4A49, 0x4C4B}));
    const FileLook look = document.Look();
    ASSERT_TRUE(look.changes);
    document.KeepShown(*look.changes);
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"+0.10"))), (Lines{"1.50>1.60", "0.75>0.85", "2.00>2.10"}));
    for (const auto as : {CFillWithText::As::Entered, CFillWithText::As::Typed}) // the file holds 0.76
        EXPECT_EQ(Listed(CFillWithText(Column(0), u"0.75", as)), (Lines{"1.50>0.75", "0.75>0.75", "2.00>0.75"}));
    Do(CFillDown({{0, {{1, 2, 0, 0}}}}, CCellJudge(document.Rows(), document.Stored(), document.Type())));
    EXPECT_EQ(document.Rows().State({2, 0}).Words(), std::u16string(1, char16_t{150}));
}

TEST_F(CellsCommand, WorksOnWhatIsShownWhereASaveLeftWhatAnotherProgramWrote)
{
    ASSERT_EQ(document.SetTexts(EditKind::Typing, {{{2, 0}, u"3.00"}}), EditOutcome::Made);
    WriteAll(path, WordBytes({105, 0, 0x4020, 0x00FF, 0x4241, 0x4443, 900, 0, 0x4020, 0x0010, 0x4645, 0x4847, 200, 0,
                              0x3FC0, 0x0001, 0x4A49, 0x4C4B}));
    ASSERT_TRUE(document.WriteEdited(reporter, progress).isSaved);
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"+1"))), (Lines{"1.50>2.05", "0.75>1.75", "3.00>4.00"}));
}

TEST_F(CellsCommand, GivesANumberToACellThatShowsItButHasAnotherOne)
{
    Do(CCalculate(CChosenCells({{0, 0, 0, 0}}), Change(u"+0.10")));
    Do(CCalculate(CChosenCells({{0, 0, 0, 0}}), Change(u"-0.10"))); // its words are 1.05, to stay so, and shown as 1.50
    for (const auto as : {CFillWithText::As::Entered, CFillWithText::As::Typed})
        EXPECT_EQ(Listed(CFillWithText(Column(0), u"1.50", as)).at(0), "1.50>1.50");
    ASSERT_EQ(document.SetTexts(EditKind::Typing, {{{2, 0}, u"1.50"}}), EditOutcome::Made);
    const CCellJudge judge(document.Rows(), document.Stored(), document.Type());
    EXPECT_EQ(Listed(CFillDown({{2, {{0, 0, 0, 0}}}}, judge)), Lines{"1.50>1.50"});
}

TEST_F(CellsCommand, KeepsANumberThatASaveWouldMakeAnotherOne)
{
    const CFillWithText fill(Column(0), u"1.05", CFillWithText::As::Entered);
    EXPECT_EQ(Listed(fill), (Lines{"1.50>1.05", "0.75>1.05", "2.00>1.05"})); // the first one holds it, but for how long
    Do(fill);
    ASSERT_TRUE(document.Write(document.Type(), path, reporter, progress).isSaved);
    document.Read(FileType::Rcp, reporter, progress);
    EXPECT_EQ(Listed(CCalculate(Column(0), Change(u"*2"))), (Lines{"1.50>2.10", "1.50>2.10", "1.50>2.10"}));
}

TEST_F(CellsCommand, ListsTheWordsOfATextThatIsNotSaved)
{
    ASSERT_EQ(document.SetTexts(EditKind::Typing, {{{0, 0}, u"2.00"}}), EditOutcome::Made);
    COfferedEdits offered(document.Rows(), document.Stored(), document.Type(),
                          std::make_shared<CCalculate>(CChosenCells({{0, 0, 0, 0}}), Change(u"+1")));
    ASSERT_EQ(offered.WorkOut(progress), Outcome::Done);
    EXPECT_EQ(offered.At(0).oldWords, WordBytes({200}));
    EXPECT_EQ(offered.At(0).newWords, WordBytes({300}));
}

TEST_F(CellsCommand, IsGivenUpWithoutAChange)
{
    struct CImpatient final : CProgress {
        bool Advance(std::uint64_t, std::uint64_t) override { return false; }
    } impatient;
    document.StartOpen(path, FileType::Rcp);
    document.TakeSettings({OvenFormat(), 0, 4000});
    ASSERT_EQ(document.Read(FileType::Rcp, reporter, progress), CRecipeDocument::Reading::Done);
    const auto edition = document.CellsEdition();
    COfferedEdits offered(
        document.Rows(), document.Stored(), document.Type(),
        std::make_shared<CFillWithText>(CChosenCells({{0, 3999, 0, 3}}), u"1", CFillWithText::As::Typed));
    EXPECT_EQ(offered.WorkOut(impatient), Outcome::GivenUp);
    EXPECT_EQ(document.CellsEdition(), edition);
}

TEST_F(CellsCommand, EachEditUndoAndReadingIsAnotherEditionOfTheCells)
{
    std::vector<std::uint64_t> editions{document.CellsEdition()};
    const auto note = [&] { editions.push_back(document.CellsEdition()); };
    Do(CCalculate(Column(0), Change(u"+1")));
    note();
    document.Undo();
    note();
    document.Redo();
    note();
    document.Read(FileType::Rcp, reporter, progress);
    note();
    document.StartNew();
    note();
    EXPECT_TRUE(std::is_sorted(editions.begin(), editions.end()));
    EXPECT_EQ(std::adjacent_find(editions.begin(), editions.end()), editions.end());
}
