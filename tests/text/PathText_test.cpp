#include "text/PathText.h"

#include <gtest/gtest.h>

namespace {

TEST(PathText, ShowsTheNameAsText)
{
    EXPECT_EQ(PathText("/data/a b.rcp"), u"/data/a b.rcp");
    EXPECT_EQ(PathText("\xE5\xAE\x8B.rcp"), u"\u5B8B.rcp");
    EXPECT_EQ(PathText({}), u"");
}

TEST(PathText, ShowsInvalidBytesAsReplacementCharacters)
{
    EXPECT_EQ(PathText("a\xFF.rcp"), u"a\uFFFD.rcp");
}

} // namespace
