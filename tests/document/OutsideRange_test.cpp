// Cells outside the sensible ranges of their items: judged by the number that a cell stands for.

#include "document/OutsideRange.h"
#include "tests/document/DocumentFixture.h"

namespace {

/// The temperatures are sensible from 1 to 200 °C, the numbers up to 8.
struct OutsideRange : RecipeDocument {
    OutsideRange()
    {
        ItemNotes temp;
        temp.unit = u"°C";
        temp.lowest = CDecimal(1);
        temp.highest = CDecimal(200);
        ItemNotes number;
        number.highest = CDecimal(8);
        store.SetNotes(0, 0, temp);
        store.SetNotes(0, 1, number);
        Open();
    }

    void Open(FileType type = FileType::Rcp)
    {
        document.StartOpen(path, type);
        document.TakeSettings({TwoColumns(), 0, 3});
        EXPECT_EQ(document.Read(type, reporter, progress), CRecipeDocument::Reading::Done);
    }

    std::u16string Remark(std::int32_t row, std::uint32_t column) const
    {
        return OutsideRangeRemark(document, {row, column});
    }
};

} // namespace

TEST_F(OutsideRange, StoredNumbersAreJudgedAsTheyAre)
{
    EXPECT_EQ(Remark(0, 0).substr(0, 6), u"235.04"); // shown as 235.0
    EXPECT_TRUE(Remark(0, 0).ends_with(u" lies outside 1 to 200 °C"));
    EXPECT_EQ(Remark(1, 0), u""); // an end of the range
    EXPECT_EQ(Remark(2, 0), u"0 lies outside 1 to 200 °C");
    EXPECT_EQ(Remark(0, 1), u"");
    EXPECT_EQ(Remark(1, 1), u"");
    EXPECT_EQ(Remark(2, 1), u"9 lies above 8");
}

TEST_F(OutsideRange, TypedNumbersAreJudgedAsTheyWereTyped)
{
    Type({1, 0}, u"200.01");
    EXPECT_EQ(Remark(1, 0), u"200.01 lies outside 1 to 200 °C");
    Type({1, 0}, u"200.0");
    EXPECT_EQ(Remark(1, 0), u"");
    Type({2, 1}, u"");
    EXPECT_EQ(Remark(2, 1), u""); // no number
}

TEST_F(OutsideRange, ExactWordsAreJudgedByTheirNumber)
{
    EXPECT_EQ(document.SetStates(EditKind::Calculate, {{{0, 1}, CCellState::OfWords(u"\x09")}}), EditOutcome::Made);
    EXPECT_EQ(Remark(0, 1), u"9 lies above 8");
    EXPECT_TRUE(Save());
    EXPECT_EQ(Remark(0, 1), u"9 lies above 8");
}

TEST_F(OutsideRange, WhatIsNoNumberOrNotThereIsNotOutside)
{
    words = WordBytes({0, 0x7FC0, 7, 0, 0x7F80}); // NaN, infinity, and the file ends
    WriteAll(path, words);
    Open();
    for (std::int32_t row = -1; row < 5; ++row)
        for (std::uint32_t column = 0; column < 3; ++column)
            EXPECT_EQ(Remark(row, column), u"") << row << "," << column;
}

TEST_F(OutsideRange, FieldsOfATableAreJudgedAsTheyStand)
{
    path = folder / "oven.csv";
    WriteAll(path, Utf16File(u"0.5\t9\r\n5\t8\r\nnone\t\r\n"));
    Open(FileType::Csv);
    EXPECT_EQ(Remark(0, 0), u"0.5 lies outside 1 to 200 °C");
    EXPECT_EQ(Remark(0, 1), u"9 lies above 8");
    EXPECT_EQ(Remark(1, 0), u"");
    EXPECT_EQ(Remark(1, 1), u"");
    EXPECT_EQ(Remark(2, 0), u"");
}

TEST_F(OutsideRange, TheListTellsWhichAreStillOutside)
{
    const COutsideRange list(document, {{2, 0}, {2, 1}});
    ASSERT_EQ(list.Count(), 2u);
    EXPECT_EQ(list.At(1).note, u"lies above 8");
    EXPECT_EQ(list.At(1).newText, u"9");
    EXPECT_EQ(list.At(1).row, 3);
    EXPECT_EQ(list.Header().type, FileType::Rcp);
    Type({2, 1}, u"8");
    EXPECT_EQ(list.At(1).note, u"no longer outside its range");
    EXPECT_EQ(list.At(1).newText, u"8");
    document.ClearRows();
    EXPECT_EQ(list.At(1), ChangeRecord());
}

TEST_F(OutsideRange, TheHistoryTellsEveryStep)
{
    const auto before = document.HistoryEdition();
    Type({1, 0}, u"5");
    const auto after = document.HistoryEdition();
    EXPECT_NE(after, before);
    EXPECT_TRUE(Save());
    EXPECT_EQ(document.HistoryEdition(), after);
    document.Undo();
    const auto undone = document.HistoryEdition();
    EXPECT_NE(undone, after);
    EXPECT_NE(undone, before);
    document.Redo();
    EXPECT_NE(document.HistoryEdition(), after);
}
