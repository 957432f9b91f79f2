#include "changes/ChangeRecord.h"

#include <gtest/gtest.h>

namespace {

TEST(ChangeReason, HasAWordEachInTheOrderInWhichTheFirstHolds)
{
    EXPECT_EQ(AllReasonWords(), u"edited, type, end, limits, decimals, digits, coding, text, quotes, rows, form");
}

TEST(ChangeReason, IsFoundByItsWord)
{
    for (int i = 0; i <= static_cast<int>(ChangeReason::Form); ++i) {
        const auto reason = static_cast<ChangeReason>(i);
        EXPECT_EQ(ReasonOf(WordOf(reason)), reason);
    }
    EXPECT_EQ(WordOf(ChangeReason::Edited), u"edited");
    EXPECT_EQ(WordOf(ChangeReason::Form), u"form");
}

TEST(ChangeReason, HasNoOtherWords)
{
    for (const std::u16string_view word : {u"", u"Edited", u"edit", u"edited ", u"limits, decimals"})
        EXPECT_EQ(ReasonOf(word), std::nullopt);
}

} // namespace
