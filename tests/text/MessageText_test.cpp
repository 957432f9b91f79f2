#include "text/MessageText.h"

#include <gtest/gtest.h>

namespace {

TEST(FillMessage, ReplacesFromLeftToRight)
{
    EXPECT_EQ(FillMessage(u"Col %d,Row %d data error !", {std::int64_t{3}, std::int64_t{-7}}),
              u"Col 3,Row -7 data error !");
    EXPECT_EQ(FillMessage(u"%s(%d)", {u"Speed", std::int64_t{0}}), u"Speed(0)");
}

TEST(FillMessage, DoesNotSearchAValueForPlaceholders)
{
    EXPECT_EQ(FillMessage(u"Open %s, then %s", {u"%s%d", u"b"}), u"Open %s%d, then b");
}

TEST(FillMessage, LeavesAPlaceholderWithoutAValue)
{
    EXPECT_EQ(FillMessage(u"%d of %d", {std::int64_t{1}}), u"1 of %d");
    EXPECT_EQ(FillMessage(u"%s", {}), u"%s");
}

TEST(FillMessage, LeavesOtherPercentSigns)
{
    EXPECT_EQ(FillMessage(u"100% %x %", {std::int64_t{1}}), u"100% %x %");
    EXPECT_EQ(FillMessage(u"%%d", {std::int64_t{5}}), u"%5");
    EXPECT_EQ(FillMessage(u"", {u"unused"}), u"");
}

TEST(FillMessage, WritesNumbersOf64Bits)
{
    EXPECT_EQ(FillMessage(u"%d", {INT64_MIN}), u"-9223372036854775808");
}

} // namespace
