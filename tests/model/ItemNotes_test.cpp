#include "model/ItemNotes.h"
#include "model/SharedNotes.h"
#include "model/ValueNames.h"

#include <gtest/gtest.h>

namespace {

std::optional<CDecimal> Number(std::u16string_view text)
{
    return CDecimal::Parse(text);
}

ItemNotes Ranged(std::u16string_view lowest, std::u16string_view highest)
{
    ItemNotes notes;
    notes.unit = u"°C";
    notes.lowest = Number(lowest);
    notes.highest = Number(highest);
    return notes;
}

ColumnCoding Column(DataType type, std::int32_t decimals = 0, const ItemNotes& notes = {})
{
    return {.title = u"Item",
            .dataType = type,
            .dataLength = 1,
            .integerDigits = 4,
            .decimalDigits = decimals,
            .minValue = 0,
            .maxValue = 9999,
            .notes = CSharedNotes(notes)};
}

struct RangeCase {
    const char16_t* lowest;
    const char16_t* highest;
    const char16_t* number;
    bool isOutside;
    const char16_t* range;
    const char16_t* outside;
};

struct SensibleRange : testing::TestWithParam<RangeCase> {};

TEST_P(SensibleRange, HoldsItsEndsAndWhatLiesBetween)
{
    const RangeCase& c = GetParam();
    const ItemNotes notes = Ranged(c.lowest, c.highest);
    EXPECT_EQ(IsOutsideRange(Column(DataType::Float, 0, notes), *Number(c.number)), c.isOutside);
    EXPECT_EQ(RangeText(notes), c.range);
    EXPECT_EQ(OutsideRangeText(notes), c.outside);
}

INSTANTIATE_TEST_SUITE_P(
    All, SensibleRange,
    testing::Values(RangeCase{u"150", u"280", u"150.0", false, u"150 to 280", u"lies outside 150 to 280 °C"},
                    RangeCase{u"150", u"280", u"280", false, u"150 to 280", u"lies outside 150 to 280 °C"},
                    RangeCase{u"150", u"280", u"280.1", true, u"150 to 280", u"lies outside 150 to 280 °C"},
                    RangeCase{u"-0.5", u"0.5", u"-0.50001", true, u"-0.5 to 0.5", u"lies outside -0.5 to 0.5 °C"},
                    RangeCase{u"150", u"", u"149.9", true, u"150 or more", u"lies below 150 °C"},
                    RangeCase{u"150", u"", u"1e9", false, u"150 or more", u"lies below 150 °C"},
                    RangeCase{u"", u"280", u"281", true, u"280 or less", u"lies above 280 °C"},
                    RangeCase{u"", u"", u"1e300", false, u"", u""}));

TEST(TextsOfValues, AreFoundByTheNumberAndOfStringsByTheText)
{
    ItemNotes notes;
    notes.texts = {{u"0", u"off"}, {u"1.5", u"half"}, {u"1F", u"all"}, {u"AB", u"both"}};
    EXPECT_EQ(TextOfValue(notes, Column(DataType::Unsigned16, 1), u"0.0"), u"off");
    EXPECT_EQ(TextOfValue(notes, Column(DataType::Unsigned16, 2), u"1.50"), u"half");
    EXPECT_EQ(TextOfValue(notes, Column(DataType::Unsigned16), u"31"), u"");
    EXPECT_EQ(TextOfValue(notes, Column(DataType::Hex16), u"1F"), u"all");
    EXPECT_EQ(TextOfValue(notes, Column(DataType::String), u"AB"), u"both");
    EXPECT_EQ(TextOfValue(notes, Column(DataType::String), u"ab"), u"");
    EXPECT_EQ(TextOfValue({}, Column(DataType::Unsigned16), u"0"), u"");
}

TEST(BitsToName, AreThoseOfIntegers)
{
    EXPECT_EQ(BitsToName(Column(DataType::Unsigned16)), 16U);
    EXPECT_EQ(BitsToName(Column(DataType::Hex32)), 32U);
    EXPECT_EQ(BitsToName(Column(DataType::Float)), 0U);
    EXPECT_EQ(BitsToName(Column(DataType::String)), 0U);
}

TEST(ValuesWithANameOfTheirOwn, LieOutsideNoRange)
{
    ItemNotes notes = Ranged(u"150", u"280");
    notes.texts = {{u"0", u"off"}, {u"AUTO", u"no number"}};
    EXPECT_FALSE(IsOutsideRange(Column(DataType::Unsigned16, 1, notes), CDecimal(0)));
    EXPECT_TRUE(IsOutsideRange(Column(DataType::Unsigned16, 1, notes), *Number(u"0.5")));
    notes.texts = {{u"10", u"sixteen"}};
    EXPECT_FALSE(IsOutsideRange(Column(DataType::Hex16, 0, notes), CDecimal(16)));
    EXPECT_TRUE(IsOutsideRange(Column(DataType::Hex16, 0, notes), CDecimal(10)));
}

TEST(NamesOfSetBits, AreThoseOfTheWord)
{
    ItemNotes notes;
    notes.bits = {u"Fan", u"", u"Steam", u"Lamp"};
    using Names = std::vector<std::u16string_view>;
    const auto names = [&notes](DataType type, std::int32_t decimals, const CDecimal& number) {
        static ColumnCoding column;
        column = Column(type, decimals, notes);
        return NamesOfSetBits(column, BitsOfNumber(column, number));
    };
    EXPECT_EQ(names(DataType::Hex16, 0, CDecimal(0x17)), (Names{u"Fan", u"Steam"}));
    EXPECT_EQ(names(DataType::Signed16, 0, CDecimal(-1)), (Names{u"Fan", u"Steam", u"Lamp"}));
    EXPECT_EQ(names(DataType::Unsigned16, 1, *Number(u"0.8")), Names{u"Lamp"});
    EXPECT_EQ(names(DataType::Float, 0, CDecimal(1)), Names{});
    notes.bits.clear();
    EXPECT_EQ(names(DataType::Hex16, 0, CDecimal(1)), Names{});
}

TEST(NotesThatSayNothing, AreLeftOut)
{
    ItemNotes notes;
    notes.unit = u" °C ";
    notes.bits = {u"", u" Fan ", u"", u" "};
    notes.texts = {{u"0", u" "}, {u" 1", u"on "}};
    const ItemNotes tidied = Tidied(notes);
    EXPECT_EQ(tidied.unit, u"°C");
    EXPECT_EQ(tidied.bits, (std::vector<std::u16string>{u"", u"Fan"}));
    EXPECT_EQ(tidied.texts, (std::vector<ValueText>{{u"1", u"on"}}));
    EXPECT_EQ(NameOfBit(tidied, 1), u"Fan");
    EXPECT_EQ(NameOfBit(tidied, 9), u"");
    ItemNotes empty;
    empty.bits = {u"", u" "};
    EXPECT_TRUE(Tidied(empty).IsEmpty());
}

TEST(SharedNotes, AreEqualWhenTheySayTheSame)
{
    EXPECT_EQ(CSharedNotes(Ranged(u"1", u"2")), CSharedNotes(Ranged(u"1.0", u"2")));
    EXPECT_FALSE(CSharedNotes(Ranged(u"1", u"2")) == CSharedNotes());
    EXPECT_TRUE(CSharedNotes(ItemNotes{}).IsEmpty());
    EXPECT_EQ(CSharedNotes()->unit, u"");
}

TEST(ColumnsWithOtherNotes, AreReadAlike)
{
    ColumnCoding noted = Column(DataType::Unsigned16);
    noted.notes = CSharedNotes(Ranged(u"1", u"2"));
    EXPECT_EQ(noted, Column(DataType::Unsigned16));
}

} // namespace
