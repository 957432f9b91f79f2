#include "text/UtcTime.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::milliseconds;

constexpr UtcTime kLeapDay = UtcTime(std::chrono::sys_days(std::chrono::year(2028) / 2 / 29)) + milliseconds(83045006);

} // namespace

TEST(UtcTimeAsText, HasAllItsDigits)
{
    EXPECT_EQ(UtcStamp(kLeapDay), "20280229T230405.006Z");
    EXPECT_EQ(UtcText(kLeapDay), "2028-02-29T23:04:05Z");
    EXPECT_EQ(UtcStamp(UtcTime()), "19700101T000000.000Z");
}

TEST(UtcTimeAsText, IsReadBack)
{
    for (const auto& time : {kLeapDay, UtcTime(), UtcTime(milliseconds(-1)), UtcNow()})
        EXPECT_EQ(TimeOfStamp(UtcStamp(time)), time) << UtcStamp(time);
}

TEST(UtcTimeAsText, IsReadFromNothingElse)
{
    for (const char* text :
         {"", "20280229T230405.006", "20280229T230405.006z", "20270229T230405.006Z", "20280229T240405.006Z",
          "20280229T236005.006Z", "20280229T230460.006Z", "2028022xT230405.006Z", "-0280229T230405.006Z",
          "20280229 230405.006Z", "20280229T230405,006Z", "20281329T230405.006Z", "20280229T230405.006Z "})
        EXPECT_FALSE(TimeOfStamp(text)) << text;
}
