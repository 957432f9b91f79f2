// Which rows fulfil a condition: by their stored numbers, texts and marks.

#include "document/RowChoice.h"
#include "model/ItemNotes.h"
#include "tests/document/DocumentFixture.h"
#include "text/NumberText.h"

#include <random>

namespace {

using Rows = std::vector<std::int32_t>;

/// Gives up when it is asked for the second time.
class CGivesUp final : public CProgress {
public:
    bool Advance(std::uint64_t, std::uint64_t) override { return ++m_count < 2; }

private:
    int m_count = 0;
};

/// Two decimals, a text of four characters and a hexadecimal value: 1.05 "Rye" 1A, 0.05 "bread" FF, -2.00 "" 2.
class ChosenRows : public RecipeDocument {
protected:
    ChosenRows()
    {
        DataItem hex = MakeItem(u"Code", DataType::Hex16, 1, 4);
        WriteAll(path,
                 WordBytes({105, 'R' | 'y' << 8, 'e', 0x1A, 5, 'b' | 'r' << 8, 'e' | 'a' << 8, 0xFF, 0xFF38, 0, 0, 2}));
        document.StartOpen(path, FileType::Rcp);
        document.TakeSettings({MakeFormat(u"Mix", {MakeItem(u"Belt", DataType::Signed16, 1, 3, 2),
                                                   MakeItem(u"Name", DataType::String, 2, 4), hex}),
                               0, 3});
        EXPECT_EQ(Read(), CRecipeDocument::Reading::Done);
    }

    Rows Find(std::optional<std::size_t> column, CellCondition condition, std::u16string_view value = {})
    {
        const RowCondition wanted{column, condition, std::u16string(value)};
        EXPECT_EQ(FaultOf(wanted, document.Rows()), std::nullopt);
        return CRowChoice(document, wanted).Find(progress).value_or(Rows{-1});
    }

    std::u16string Fault(std::optional<std::size_t> column, CellCondition condition, std::u16string_view value)
    {
        return FaultOf({column, condition, std::u16string(value)}, document.Rows()).value_or(u"");
    }
};

} // namespace

TEST_F(ChosenRows, AreThoseWithANumberOutsideTheSensibleRange)
{
    DataFormat format = document.Format();
    ItemNotes notes;
    notes.lowest = CDecimal(0);
    notes.highest = CDecimal(1);
    format.items[0]->notes = CSharedNotes(notes);
    document.TakeSettings({format, 0, 3});
    ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    EXPECT_EQ(Find(std::nullopt, CellCondition::IsOutsideRange), (Rows{0, 2}));
    EXPECT_EQ(Find(1, CellCondition::IsOutsideRange), Rows{});
    ASSERT_EQ(document.SetTexts(EditKind::Typing, {{{0, 0}, u"0.50"}}), EditOutcome::Made);
    EXPECT_EQ(Find(0, CellCondition::IsOutsideRange), Rows{2});
}

TEST_F(ChosenRows, ANumberIsTheStoredOneWhateverIsShown)
{
    ASSERT_EQ(Text({1, 0}), u"0.50"); // kept: not 0.05
    EXPECT_EQ(Find(0, CellCondition::Is, u"0.05"), Rows{1});
    EXPECT_EQ(Find(0, CellCondition::Is, u"0.50"), Rows{});
    EXPECT_EQ(Find(0, CellCondition::Is, u" 1.050 "), Rows{0});
    EXPECT_EQ(Find(0, CellCondition::IsNot, u"1.05"), (Rows{1, 2}));
    EXPECT_EQ(Find(0, CellCondition::GreaterThan, u"0.05"), Rows{0});
    EXPECT_EQ(Find(0, CellCondition::LessThan, u"0.1"), (Rows{1, 2}));
    EXPECT_EQ(Find(2, CellCondition::GreaterThan, u"19"), (Rows{0, 1})); // hexadecimal as its column is
}

TEST_F(ChosenRows, ATypedNumberIsTheOneThatWasTyped)
{
    Type({1, 0}, u"0.07");
    EXPECT_EQ(Find(0, CellCondition::Is, u"0.07"), Rows{1});
    EXPECT_EQ(Find(0, CellCondition::IsEdited), Rows{1});
    EXPECT_EQ(Find(1, CellCondition::IsEdited), Rows{});
    EXPECT_EQ(Find(std::nullopt, CellCondition::IsEdited), Rows{1});
}

TEST_F(ChosenRows, TextsAreComparedAsTheyAreShown)
{
    EXPECT_EQ(Find(1, CellCondition::Is, u"Rye"), Rows{0});
    EXPECT_EQ(Find(1, CellCondition::Is, u"rye"), Rows{});
    EXPECT_EQ(Find(1, CellCondition::Contains, u"RE"), Rows{1});
    EXPECT_EQ(Find(1, CellCondition::ContainsNot, u"re"), (Rows{0, 2}));
    EXPECT_EQ(Find(1, CellCondition::Is, u""), Rows{2});
    EXPECT_EQ(Find(0, CellCondition::Contains, u".5"), Rows{1});
}

TEST_F(ChosenRows, OfAnyItemOneCellIsEnoughAndNoneWhereItIsDenied)
{
    EXPECT_EQ(Find(std::nullopt, CellCondition::Contains, u"e"), (Rows{0, 1}));
    EXPECT_EQ(Find(std::nullopt, CellCondition::ContainsNot, u"e"), Rows{2});
    EXPECT_EQ(Find(std::nullopt, CellCondition::GreaterThan, u"80"), Rows{1}); // FF is above hexadecimal 80
}

TEST_F(ChosenRows, MarksAreConditions)
{
    EXPECT_EQ(Find(0, CellCondition::IsRewritten), Rows{1});
    EXPECT_EQ(Find(std::nullopt, CellCondition::Differs), Rows{});
    const auto other = folder / "other.rcp";
    Bytes theirs = ReadAll(path);
    theirs[16] = std::byte{0};
    WriteAll(other, theirs);
    ASSERT_EQ(document.CompareWith(other, reporter, progress), Outcome::Done);
    EXPECT_EQ(Find(std::nullopt, CellCondition::Differs), Rows{2});
    EXPECT_EQ(Find(std::nullopt, CellCondition::IsOutsideLimits), Rows{});
}

TEST_F(ChosenRows, WhatIsNoNumberIsNeitherGreaterNorLess)
{
    EXPECT_EQ(Fault(0, CellCondition::GreaterThan, u"1,5"), u"Type a number with a point, not a comma.");
    EXPECT_EQ(Fault(std::nullopt, CellCondition::LessThan, u"much"), u"Type a number.");
    EXPECT_EQ(Fault(0, CellCondition::LessThan, u""), u"Type a number.");
    EXPECT_EQ(Fault(1, CellCondition::LessThan, u"5"),
              u"This item is a text: it is neither greater nor less than a number.");
    EXPECT_EQ(Fault(1, CellCondition::Is, u"1,5"), u"");
    EXPECT_EQ(Fault(0, CellCondition::IsEdited, u""), u"");
}

TEST_F(ChosenRows, GivingUpChoosesNothing)
{
    document.TakeSettings({document.Format(), 0, 2000});
    ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    CGivesUp givesUp;
    EXPECT_EQ(CRowChoice(document, {0, CellCondition::IsEdited, {}}).Find(givesUp), std::nullopt);
}

TEST_F(ChosenRows, AgreeWithTheTextsOfAllRows)
{
    std::mt19937 random(7);
    Bytes bytes;
    for (int i = 0; i < 3000 * 2; ++i)
        bytes.push_back(std::byte(random() % 3));
    WriteAll(path, bytes);
    document.StartOpen(path, FileType::Rcp);
    document.TakeSettings({MakeFormat(u"w", {ArrayOf(MakeItem(u"Word", DataType::Signed16, 1, 5), 3)}), 0, 1000});
    ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    for (int i = 0; i < 100; ++i)
        Type({static_cast<int>(random() % 1000), static_cast<std::uint32_t>(random() % 3)},
             i % 2 == 0 ? u"257" : u"-4");
    const auto number = [this](int row, std::uint32_t column) {
        const std::u16string text = Text({row, column});
        return std::stoi(std::string(text.begin(), text.end()));
    };
    for (const int value : {0, 1, 257, 512, -4, 900})
        for (std::uint32_t column = 0; column < 4; ++column) {
            const auto chosen = column < 3 ? std::optional<std::size_t>(column) : std::nullopt;
            Rows equal;
            Rows greater;
            for (int row = 0; row < 1000; ++row) {
                bool isEqual = false;
                bool isGreater = false;
                for (std::uint32_t c = chosen ? column : 0; c < (chosen ? column + 1 : 3); ++c) {
                    isEqual = isEqual || number(row, c) == value;
                    isGreater = isGreater || number(row, c) > value;
                }
                if (isEqual)
                    equal.push_back(row);
                if (isGreater)
                    greater.push_back(row);
            }
            EXPECT_EQ(Find(chosen, CellCondition::Is, DecimalText(value)), equal);
            EXPECT_EQ(Find(chosen, CellCondition::GreaterThan, DecimalText(value)), greater);
        }
}
