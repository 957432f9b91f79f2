#include "recovery/VersionRetention.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

UtcTime At(std::string_view stamp)
{
    const auto time = TimeOfStamp(stamp);
    EXPECT_TRUE(time) << stamp;
    return time.value_or(UtcTime{});
}

/// A version of a file of a day of November 2026, or the day so many days after its first; an hour of it, its bytes.
struct Made {
    int day;
    int hour = 12;
    std::size_t file = 0;
    std::uint64_t bytes = 10;
    bool isRecords = false;
};

struct RetentionCase {
    const char* name;
    VersionLimits limits;
    std::vector<Made> versions;
    std::vector<std::size_t> removed;
    friend void PrintTo(const RetentionCase& c, std::ostream* out) { *out << c.name; }
};

struct Retention : testing::TestWithParam<RetentionCase> {};

const UtcTime kNow = At("20261122T150000.000Z");
constexpr VersionLimits kTwo = {.newest = 2, .days = 3, .bytes = 1000};
constexpr VersionLimits kSmall = {.newest = 9, .days = 9, .bytes = 35};

// clang-format off
const RetentionCase kCases[] = {
    {"NothingOfNothing",        kTwo, {}, {}},
    {"TheOnlyOneStays",         kTwo, {{-500}}, {}},
    {"TheNewestStayHoweverOld", kTwo, {{-500}, {-499}}, {}},
    {"OlderOnesGo",             kTwo, {{1}, {2}, {3}, {4}}, {0, 1}},
    {"InAnyOrder",              kTwo, {{4}, {1}, {3}, {2}}, {1, 3}},
    {"TheLastOfADayStays",      kTwo, {{21, 8}, {21, 9}, {22, 8}, {22, 9}}, {0}},
    {"OfThreeDaysUpToNow",      kTwo, {{19}, {20}, {21}, {22, 8}, {22, 9}}, {0}},
    {"DaysAreThoseOfTheClock",  kTwo, {{20, 0}, {20, 23}, {22, 8}, {22, 9}}, {0}},
    {"ADayWithoutOneCounts",    kTwo, {{18}, {22, 7}, {22, 8}, {22, 9}}, {0, 1}},
    {"WhatIsToComeIsYoung",     kTwo, {{20}, {21}, {9000, 1}, {9000, 2}, {9000, 3}}, {2}},
    {"EachFileForItself",       kTwo, {{1, 1, 7}, {2, 1, 7}, {3, 1, 8}, {4, 1, 8}, {5, 1, 8}}, {2}},
    {"TooMuchTakesTheOldest",   kSmall, {{20}, {21}, {22, 8}, {22, 9}}, {0}},
    {"JustEnoughStays",         {.newest = 9, .days = 9, .bytes = 40}, {{20}, {21}, {22, 8}, {22, 9}}, {}},
    {"OldestOverAllFiles",      kSmall, {{19, 1, 1}, {20, 1, 2}, {21, 1, 2}, {22, 1, 1}}, {0}},
    {"NeverTheNewestOfAFile",   kSmall, {{1, 1, 1, 30}, {2, 1, 2, 30}, {3, 1, 2, 30}}, {1}},
    {"NotEvenIfAllAreTooMuch",  kSmall, {{1, 1, 1, 90}, {2, 1, 2, 90}}, {}},
    {"ChangesNeedNewerOnes",    kTwo, {{20, 12, 0, 1, true}, {22, 6, 0, 1, true}, {22, 7, 0, 1, true}, {22, 8}, {22, 9}}, {}},
    {"UpToACopy",               kTwo, {{20, 12, 0, 1, true}, {22, 5}, {22, 6}, {22, 7}, {22, 8}}, {2}},
    {"ACopyNeedsNone",          kTwo, {{20}, {22, 6, 0, 1, true}, {22, 7, 0, 1, true}, {22, 8}, {22, 9}}, {1, 2}},
};
// clang-format on

TEST_P(Retention, RemovesWhatIsTooOldOrTooMuch)
{
    std::vector<KeptVersion> versions;
    for (const Made& made : GetParam().versions)
        versions.push_back(
            {made.file, At("20261101T000000.000Z") + std::chrono::days(made.day - 1) + std::chrono::hours(made.hour),
             made.bytes, made.isRecords});
    EXPECT_EQ(VersionsToRemove(versions, kNow, GetParam().limits), GetParam().removed);
}

INSTANTIATE_TEST_SUITE_P(Table, Retention, testing::ValuesIn(kCases),
                         [](const auto& c) { return std::string(c.param.name); });

/// Fifty on the last day, and one a day before.
TEST(VersionsToRemove, KeepsFiftyAndThirtyDays)
{
    std::vector<KeptVersion> versions;
    for (int day = 100; day > 0; --day)
        versions.push_back({0, kNow - std::chrono::days(day), 1});
    for (int minute = 60; minute > 0; --minute)
        versions.push_back({0, kNow - std::chrono::minutes(minute), 1});
    const auto removed = VersionsToRemove(versions, kNow);
    EXPECT_EQ(removed.size(), 71 + 10U); // days 100 to 30 before, and the first ten minutes
    EXPECT_EQ(removed[70], 70U);
    EXPECT_EQ(removed[71], 100U);
    EXPECT_EQ(removed.back(), 109U);
}

TEST(VersionsToRemove, KeepsFiveHundredAndTwelveMebibytes)
{
    const std::vector<KeptVersion> versions = {{0, kNow - std::chrono::hours(3), std::uint64_t{1} << 29},
                                               {0, kNow - std::chrono::hours(2), 1},
                                               {0, kNow - std::chrono::hours(1), (std::uint64_t{1} << 29) - 1}};
    EXPECT_EQ(VersionsToRemove(versions, kNow), (std::vector<std::size_t>{0}));
}

} // namespace
