#include "merge/MergeParams.h"
#include "text/NumberText.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

/// 100 words of a file of 1000 to place 0, and 50 words of one of 500 and a byte right after them.
MergeParams PassingParams()
{
    return {.mergedSize = MergedSize::Words128K,
            .firstPath = "first.rcp",
            .firstFileBytes = 2000,
            .firstReadStart = 0,
            .firstLength = 100,
            .firstPlace = 0,
            .secondPath = "second.rcp",
            .secondFileBytes = 1001,
            .secondReadStart = 0,
            .secondLength = 50,
            .secondPlace = 100,
            .mergedPath = "merged.rcp"};
}

/// Both lengths, and files that are long enough.
void SetLengths(MergeParams& p, std::int32_t first, std::int32_t second)
{
    p.firstLength = first;
    p.firstFileBytes = 1'000'000;
    p.secondLength = second;
    p.secondFileBytes = 1'000'000;
}

void SetAll(MergeParams& p, std::int32_t number)
{
    p.firstPlace = p.firstReadStart = p.firstLength = number;
    p.secondPlace = p.secondReadStart = p.secondLength = number;
}

/// The first file's read start and length, and a file that each of them alone fits.
void SetReading(MergeParams& p, std::int32_t number)
{
    p.firstReadStart = p.firstLength = number;
    p.firstFileBytes = 2 * std::int64_t{number};
}

std::optional<std::u16string> MessageOf(const char16_t* message)
{
    return message != nullptr ? std::optional<std::u16string>(message) : std::nullopt;
}

TEST(MergedSizeInWords, IsShortOfTheNominalOne)
{
    EXPECT_EQ(MergedWords(MergedSize::Words128K), 130'560); // kept: 512 words short
    EXPECT_EQ(MergedWords(MergedSize::Words256K), 261'632); // kept
    EXPECT_EQ(MergedWords(MergedSize::None), 0);
    EXPECT_EQ(MergedWords(static_cast<MergedSize>(9)), 0);
}

TEST(MergeChecks, ReportTheFirstPathWhenNothingIsChosen)
{
    EXPECT_EQ(ValidateMergeParams({}), u"Please select the first file  which you want to merge!");
}

TEST(MergeChecks, ReadLettersInALengthAsZero)
{
    MergeParams params = PassingParams();
    params.secondLength = ReadInteger(u"abc");
    EXPECT_EQ(ValidateMergeParams(params), u"The second file's reading length  can not be negative!"); // kept
    params.firstLength = ReadInteger(u"abc");
    EXPECT_EQ(ValidateMergeParams(params), u"The first file's reading length   cann't be zero or negative!");
}

struct CheckCase {
    const char* name;
    void (*change)(MergeParams& p); ///< of parameters that pass
    const char16_t* message;        ///< null when they still pass
    friend void PrintTo(const CheckCase& c, std::ostream* out) { *out << c.name; }
};
struct MergeCheckOf : testing::TestWithParam<CheckCase> {};

TEST_P(MergeCheckOf, SaysWhatIsWrong)
{
    MergeParams params = PassingParams();
    GetParam().change(params);
    EXPECT_EQ(ValidateMergeParams(params), MessageOf(GetParam().message));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, MergeCheckOf, testing::Values(
    CheckCase{"Check18SecondReadStartAtAnEvenEnd",
        [](MergeParams& p) { p.secondReadStart = 500; p.secondFileBytes = 1000; },
        u"The secong file  can't be read 0  words from the starting location 100 ,the number is larger than "
        u"it's toltal length 1000 words"}, // kept
    CheckCase{"Check1NoFirstPath", [](MergeParams& p) { p.firstPath.clear(); },
        u"Please select the first file  which you want to merge!"},
    CheckCase{"Check2NoSecondPath", [](MergeParams& p) { p.secondPath.clear(); },
        u"Please select the second file which you want to merge!"},
    CheckCase{"Check3NoMergedPath", [](MergeParams& p) { p.mergedPath.clear(); },
        u"Please select the appropriate name and path for the merging file!"},
    CheckCase{"Check4FirstPlaceNegative", [](MergeParams& p) { p.firstPlace = -1; },
        u"The first file's saving location in the merged file can not be negative!"},
    CheckCase{"Check5FirstReadStartNegative", [](MergeParams& p) { p.firstReadStart = -1; },
        u"The first file's reading location  cann't be negative!"},
    CheckCase{"Check6FirstLengthZero", [](MergeParams& p) { p.firstLength = 0; },
        u"The first file's reading length   cann't be zero or negative!"},
    CheckCase{"Check6FirstLengthNegative", [](MergeParams& p) { p.firstLength = -1; },
        u"The first file's reading length   cann't be zero or negative!"},
    CheckCase{"FirstLengthOne", [](MergeParams& p) { p.firstLength = 1; }, nullptr},
    CheckCase{"Check7FirstPlacePastTheEnd", [](MergeParams& p) { p.firstPlace = 130'560; p.firstLength = 1; },
        u"The first file's saving location is too large ,which can lead to the second file can't be merged!"},
    CheckCase{"Check7WithoutASize", [](MergeParams& p) { p.mergedSize = MergedSize::None; },
        u"The first file's saving location is too large ,which can lead to the second file can't be merged!"},
    CheckCase{"LastPlacePassesChecks7And11", [](MergeParams& p) { p.firstPlace = 130'559; p.firstLength = 1; },
        u"The second file's saving location in merged file should be larger than the first file's saving "
        u"location in the merged file!"},
    CheckCase{"Check7LargerSize",
        [](MergeParams& p) { p.mergedSize = MergedSize::Words256K; p.firstPlace = 261'632; p.firstLength = 1; },
        u"The first file's saving location is too large ,which can lead to the second file can't be merged!"},
    CheckCase{"LastPlaceOfTheLargerSize",
        [](MergeParams& p) { p.mergedSize = MergedSize::Words256K; p.firstPlace = 261'631; p.firstLength = 1; },
        u"The second file's saving location in merged file should be larger than the first file's saving "
        u"location in the merged file!"},
    CheckCase{"Check8FirstLengthBeyondTheFile", [](MergeParams& p) { p.firstLength = 1001; },
        u"The first file's reading length is larger than it's total length!"},
    CheckCase{"Check8OddByteIsNoWord", [](MergeParams& p) { p.firstFileBytes = 199; },
        u"The first file's reading length is larger than it's total length!"},
    CheckCase{"FirstLengthTheWholeFile", [](MergeParams& p) { p.firstLength = 1000; p.secondPlace = 1000; },
        nullptr},
    CheckCase{"Check9FirstReadStartBeyondTheFile", [](MergeParams& p) { p.firstReadStart = 1001; },
        u"The first file's location for  reading  is larger than it's total length!"},
    CheckCase{"Check10FirstReadStartAtTheEnd", [](MergeParams& p) { p.firstReadStart = 1000; },
        u"The first file can't be read 1000 words from the starting location 100 ,the number is larger than "
        u"it's toltal length 1000 words"}, // kept
    CheckCase{"Check10FirstReadPastTheEnd", [](MergeParams& p) { p.firstReadStart = 901; },
        u"The first file can't be read 901 words from the starting location 100 ,the number is larger than "
        u"it's toltal length 1000 words"}, // kept
    CheckCase{"Check10CountsWholeWords", [](MergeParams& p) { p.firstReadStart = 901; p.firstFileBytes = 2001; },
        u"The first file can't be read 901 words from the starting location 100 ,the number is larger than "
        u"it's toltal length 1000 words"}, // kept
    CheckCase{"FirstReadToTheEnd", [](MergeParams& p) { p.firstReadStart = 900; }, nullptr},
    CheckCase{"Check11FirstStretchPastTheEnd", [](MergeParams& p) { p.firstPlace = 130'461; },
        u"The first file's saving location 130461 in merged file and it's reading length don't match with "
        u"the merged file , the  sum of them is larger than this merged file's length 100!"}, // kept
    CheckCase{"FirstStretchToTheEnd", [](MergeParams& p) { p.firstPlace = 130'460; },
        u"The second file's saving location in merged file should be larger than the first file's saving "
        u"location in the merged file!"},
    CheckCase{"Check12SecondPlaceNegative", [](MergeParams& p) { p.secondPlace = -1; },
        u"The second file's saving location in the merged file can not be negative!"},
    CheckCase{"Check13SecondReadStartNegative", [](MergeParams& p) { p.secondReadStart = -1; },
        u"The second file's reading location  can not be negative!"},
    CheckCase{"Check14SecondLengthZero", [](MergeParams& p) { p.secondLength = 0; },
        u"The second file's reading length  can not be negative!"}, // kept
    CheckCase{"Check14SecondLengthNegative", [](MergeParams& p) { p.secondLength = -1; },
        u"The second file's reading length  can not be negative!"}, // kept
    CheckCase{"SecondLengthOne", [](MergeParams& p) { p.secondLength = 1; }, nullptr},
    CheckCase{"Check15SecondPlacePastTheEnd", [](MergeParams& p) { p.secondPlace = 130'560; p.secondLength = 1; },
        u"The second file's saving location in the merged file is too larger,which will lead to this app "
        u"can't merge file!"},
    CheckCase{"SecondPlaceTheLast", [](MergeParams& p) { p.secondPlace = 130'559; p.secondLength = 1; }, nullptr},
    CheckCase{"Check15LargerSize",
        [](MergeParams& p) { p.mergedSize = MergedSize::Words256K; p.secondPlace = 261'632; p.secondLength = 1; },
        u"The second file's saving location in the merged file is too larger,which will lead to this app "
        u"can't merge file!"},
    CheckCase{"SecondPlaceTheLastOfTheLargerSize",
        [](MergeParams& p) { p.mergedSize = MergedSize::Words256K; p.secondPlace = 261'631; p.secondLength = 1; },
        nullptr},
    CheckCase{"Check16SecondLengthBeyondTheFile", [](MergeParams& p) { p.secondLength = 501; },
        u"The second file's reading length is larger than it's total length!"},
    CheckCase{"SecondLengthTheWholeFile", [](MergeParams& p) { p.secondLength = 500; }, nullptr},
    CheckCase{"Check17SecondReadStartBeyondTheFile", [](MergeParams& p) { p.secondReadStart = 501; },
        u"The second file's reading location is larger than it's total length!"},
    CheckCase{"Check18SecondReadStartAtTheEnd", [](MergeParams& p) { p.firstReadStart = 7; p.secondReadStart = 500; },
        u"The secong file  can't be read 7  words from the starting location 100 ,the number is larger than "
        u"it's toltal length 1000 words"}, // kept
    CheckCase{"Check18SecondReadPastTheEnd", [](MergeParams& p) { p.firstReadStart = 7; p.secondReadStart = 451; },
        u"The secong file  can't be read 7  words from the starting location 100 ,the number is larger than "
        u"it's toltal length 1000 words"}, // kept
    CheckCase{"SecondReadToTheEnd", [](MergeParams& p) { p.secondReadStart = 450; }, nullptr},
    CheckCase{"Check19SecondStretchPastTheEnd", [](MergeParams& p) { p.firstPlace = 3; p.secondPlace = 130'511; },
        u"The second file's saving location 3 in merged file and it's reading length don't match with the "
        u"merged file , the  sum of them is larger than this merged file's length 100!"}, // kept
    CheckCase{"SecondStretchToTheEnd", [](MergeParams& p) { p.secondPlace = 130'510; }, nullptr},
    CheckCase{"Check20BothTogetherTooLong",
        [](MergeParams& p) { p.firstPlace = 60'560; SetLengths(p, 70'000, 60'561); p.secondPlace = 60'560; },
        u"The sum of these two file's reading length is larger than the merged file's length 60560 !"}, // kept
    CheckCase{"BothTogetherPassCheck20",
        [](MergeParams& p) { p.firstPlace = 60'560; SetLengths(p, 70'000, 60'560); p.secondPlace = 60'560; },
        u"The second file's saving location in merged file should be larger than the sum of the first "
        u"file's reading length and it's saving location in the merged file!"},
    CheckCase{"BothTogetherFillTheFile", [](MergeParams& p) { SetLengths(p, 70'000, 60'560); p.secondPlace = 70'000; },
        nullptr},
    CheckCase{"Check19BeforeCheck20", [](MergeParams& p) { SetLengths(p, 70'000, 70'000); p.secondPlace = 70'000; },
        u"The second file's saving location 0 in merged file and it's reading length don't match with the "
        u"merged file , the  sum of them is larger than this merged file's length 70000!"}, // kept
    CheckCase{"Check20BeforeCheck22", [](MergeParams& p) { SetLengths(p, 70'000, 70'000); p.secondPlace = 60'560; },
        u"The sum of these two file's reading length is larger than the merged file's length 0 !"}, // kept
    CheckCase{"Check21SecondPlaceBeforeTheFirst", [](MergeParams& p) { p.firstPlace = 100; p.secondPlace = 99; },
        u"The second file's saving location in merged file should be larger than the first file's saving "
        u"location in the merged file!"},
    CheckCase{"Check22SecondPlaceTheFirst", [](MergeParams& p) { p.firstPlace = 100; p.secondPlace = 100; },
        u"The second file's saving location in merged file should be larger than the sum of the first "
        u"file's reading length and it's saving location in the merged file!"},
    CheckCase{"Check22SecondPlaceInTheFirstStretch", [](MergeParams& p) { p.secondPlace = 99; },
        u"The second file's saving location in merged file should be larger than the sum of the first "
        u"file's reading length and it's saving location in the merged file!"},
    CheckCase{"Check22NotCheck21", [](MergeParams& p) { p.secondPlace = 0; },
        u"The second file's saving location in merged file should be larger than the sum of the first "
        u"file's reading length and it's saving location in the merged file!"},
    CheckCase{"SecondPlaceRightAfter", [](MergeParams& p) { p.secondPlace = 100; }, nullptr},
    CheckCase{"GreatestNumbersDoNotOverflow", [](MergeParams& p) { SetAll(p, kMost); },
        u"The first file's saving location is too large ,which can lead to the second file can't be merged!"},
    CheckCase{"GreatestReadStartDoesNotOverflow", [](MergeParams& p) { p.firstReadStart = kMost; },
        u"The first file's location for  reading  is larger than it's total length!"},
    CheckCase{"GreatestLengthDoesNotOverflow", [](MergeParams& p) { p.firstLength = kMost; },
        u"The first file's reading length is larger than it's total length!"},
    CheckCase{"GreatestSecondLengthDoesNotOverflow", [](MergeParams& p) { p.secondLength = kMost; },
        u"The second file's reading length is larger than it's total length!"},
    CheckCase{"GreatestReadingDoesNotOverflow", [](MergeParams& p) { SetReading(p, kMost); },
        u"The first file can't be read 2147483647 words from the starting location 2147483647 ,the number "
        u"is larger than it's toltal length 2147483647 words"},
    CheckCase{"LeastNumbersDoNotOverflow", [](MergeParams& p) { SetAll(p, kLeast); },
        u"The first file's saving location in the merged file can not be negative!"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct MendingStep {
    void (*mend)(MergeParams& p); ///< what the message before this one asked for
    const char16_t* message;
};

// Each step mends one fault and leaves the next.
// clang-format off
constexpr MendingStep kSteps[] = {
    {[](MergeParams&) {},
     u"Please select the first file  which you want to merge!"},
    {[](MergeParams& p) { p.firstPath = "first.rcp"; },
     u"Please select the second file which you want to merge!"},
    {[](MergeParams& p) { p.secondPath = "second.rcp"; },
     u"Please select the appropriate name and path for the merging file!"},
    {[](MergeParams& p) { p.mergedPath = "merged.rcp"; },
     u"The first file's saving location in the merged file can not be negative!"},
    {[](MergeParams& p) { p.firstPlace = 130'560; },
     u"The first file's reading location  cann't be negative!"},
    {[](MergeParams& p) { p.firstReadStart = 1001; },
     u"The first file's reading length   cann't be zero or negative!"},
    {[](MergeParams& p) { p.firstLength = 1001; },
     u"The first file's saving location is too large ,which can lead to the second file can't be merged!"},
    {[](MergeParams& p) { p.firstPlace = 130'559; },
     u"The first file's reading length is larger than it's total length!"},
    {[](MergeParams& p) { p.firstLength = 2; },
     u"The first file's location for  reading  is larger than it's total length!"},
    {[](MergeParams& p) { p.firstReadStart = 999; },
     u"The first file can't be read 999 words from the starting location 2 ,the number is larger than "
     u"it's toltal length 1000 words"},
    {[](MergeParams& p) { p.firstReadStart = 998; },
     u"The first file's saving location 130559 in merged file and it's reading length don't match with "
     u"the merged file , the  sum of them is larger than this merged file's length 2!"},
    {[](MergeParams& p) { p.firstPlace = 100; },
     u"The second file's saving location in the merged file can not be negative!"},
    {[](MergeParams& p) { p.secondPlace = 130'560; },
     u"The second file's reading location  can not be negative!"},
    {[](MergeParams& p) { p.secondReadStart = 131'001; },
     u"The second file's reading length  can not be negative!"},
    {[](MergeParams& p) { p.secondLength = 131'001; },
     u"The second file's saving location in the merged file is too larger,which will lead to this app "
     u"can't merge file!"},
    {[](MergeParams& p) { p.secondPlace = 0; },
     u"The second file's reading length is larger than it's total length!"},
    {[](MergeParams& p) { p.secondLength = 130'561; },
     u"The second file's reading location is larger than it's total length!"},
    {[](MergeParams& p) { p.secondReadStart = 440; },
     u"The secong file  can't be read 998  words from the starting location 2 ,the number is larger than "
     u"it's toltal length 1000 words"},
    {[](MergeParams& p) { p.secondReadStart = 438; },
     u"The second file's saving location 100 in merged file and it's reading length don't match with the "
     u"merged file , the  sum of them is larger than this merged file's length 2!"},
    {[](MergeParams& p) { p.secondLength = 130'560; },
     u"The sum of these two file's reading length is larger than the merged file's length 100 !"},
    {[](MergeParams& p) { p.secondLength = 130'558; },
     u"The second file's saving location in merged file should be larger than the first file's saving "
     u"location in the merged file!"},
    {[](MergeParams& p) { p.secondPlace = 101; p.secondLength = 1; },
     u"The second file's saving location in merged file should be larger than the sum of the first "
     u"file's reading length and it's saving location in the merged file!"},
    {[](MergeParams& p) { p.secondPlace = 102; }, nullptr},
};
// clang-format on

TEST(MergeChecks, ComeInTheirOrder)
{
    MergeParams params{.firstFileBytes = 2000, .secondFileBytes = 2 * 130'999};
    SetAll(params, -1);
    for (const MendingStep& step : kSteps) {
        step.mend(params);
        EXPECT_EQ(ValidateMergeParams(params), MessageOf(step.message));
    }
}

} // namespace
