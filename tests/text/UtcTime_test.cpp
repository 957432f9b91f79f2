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

TEST(UtcTimeTexts, ClockOfThePlace)
{
    const auto time = TimeOfStamp("20260701T233500.000Z");
    ASSERT_TRUE(time);
    const std::string text = LocalText(*time); // the same moment, wherever the tests run
    ASSERT_EQ(text.size(), std::string_view("2026-07-02 01:35 (UTC+02:00)").size());
    const int ahead = (text[21] == '-' ? -1 : 1) * (60 * std::stoi(text.substr(22, 2)) + std::stoi(text.substr(25, 2)));
    EXPECT_EQ(UtcText(*time + std::chrono::minutes(ahead)), text.substr(0, 10) + 'T' + text.substr(11, 5) + ":00Z");
}
