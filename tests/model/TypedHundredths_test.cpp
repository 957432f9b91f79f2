#include "model/StoredNumber.h"
#include "model/TypedValue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// All values that can be typed into a signed column of two integer and two decimal digits, or of five. A double is the
// judge of what a save stores, as it is in a save; all else is whole numbers.

namespace {

constexpr int kMost = 9999; ///< 99.99

struct Hundredths : testing::TestWithParam<std::int64_t> {
    ColumnCoding Coding() const
    {
        return {.dataType = DataType::Signed16,
                .dataLength = 1,
                .codeType = CodeType::Bin,
                .integerDigits = 2,
                .decimalDigits = 2,
                .minValue = GetParam() == 9999 ? -999 : -32768,
                .maxValue = GetParam()};
    }
};

std::u16string TypedText(int hundredths)
{
    const std::u16string digits{static_cast<char16_t>(u'0' + hundredths / 10 % 10),
                                static_cast<char16_t>(u'0' + hundredths % 10)};
    const std::string whole = std::to_string(hundredths / 100);
    return std::u16string(whole.begin(), whole.end()) + u'.' + digits;
}

/// The nearest double of the typed number times 100, which is exact, cut: what the coding of a text is said to do. The
/// quotient of two whole numbers is the nearest double, too.
int StoredHundredths(int hundredths)
{
    return static_cast<int>(static_cast<double>(hundredths) / 100.0 * 100.0);
}

TEST_P(Hundredths, AreStoredAsAnotherNumberWhereTheDoubleFallsShort)
{
    const ColumnCoding coding = Coding();
    int others = 0;
    for (int typed = 1; typed <= kMost; ++typed) {
        const int stored = StoredHundredths(typed);
        const TypedValue value = JudgeTyped(coding, RecipeKind::Flat, TypedText(typed));
        ASSERT_EQ(value.words, std::u16string(1, static_cast<char16_t>(stored))) << typed;
        ASSERT_EQ(value.typed, CDecimal(typed).Scaled(-2)) << typed;
        ASSERT_EQ(value.stored, CDecimal(stored).Scaled(-2)) << typed;
        ASSERT_EQ(value.verdict == TypedVerdict::AnotherNumber, stored != typed) << typed;
        others += stored != typed ? 1 : 0;
    }
    EXPECT_EQ(others, 573);
}

TEST_P(Hundredths, AreStoredExactlyOnDemand)
{
    const ColumnCoding coding = Coding();
    for (int typed = 1; typed <= kMost; ++typed) {
        const std::u16string word(1, static_cast<char16_t>(typed));
        ASSERT_EQ(WordsOfNumber(coding, *CDecimal::Parse(TypedText(typed))), word) << typed;
        const TypedValue value = JudgeTyped(coding, RecipeKind::Flat, TypedText(typed));
        ASSERT_EQ(value.exactWords.has_value(), value.verdict == TypedVerdict::AnotherNumber) << typed;
        ASSERT_EQ(value.exactWords.value_or(word), word) << typed;
    }
}

/// A word from 1 to 9 hundredths shows its digit in front.
TEST_P(Hundredths, AreShownAsAnotherNumberBelowATenth)
{
    const ColumnCoding coding = Coding();
    for (int typed = 1; typed <= kMost; ++typed) {
        const TypedVerdict verdict = JudgeTyped(coding, RecipeKind::Flat, TypedText(typed)).verdict;
        if (StoredHundredths(typed) != typed)
            continue;
        const bool isShownAsAnother = typed < 10;
        ASSERT_EQ(verdict, isShownAsAnother ? TypedVerdict::ShownAsAnother : TypedVerdict::Fine) << typed;
    }
}

INSTANTIATE_TEST_SUITE_P(UpTo, Hundredths, testing::Values(9999, 32767));

} // namespace
