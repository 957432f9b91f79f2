#include "tests/views/MergeParamFixture.h"

#include <QTest>

namespace fs = std::filesystem;

namespace {

TEST_F(MergeParam, WithNothingChosenAsksForTheFirstFile)
{
    const auto fields = Fields();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    ExpectStaysOpen(u"Please select the first file  which you want to merge!", fields);
}

TEST_F(MergeParam, WithoutASecondFileAsksForIt)
{
    ChooseFirst("first.rcp");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Please select the second file which you want to merge!", fields);
}

TEST_F(MergeParam, WithoutAMergedPathAsksForIt)
{
    ChooseFirst("first.rcp");
    ChooseSecond("second.rcp");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Please select the appropriate name and path for the merging file!", fields);
}

struct CheckCase {
    const char* name;
    std::vector<std::pair<const char*, const char*>> typed;
    const char16_t* message;
    friend void PrintTo(const CheckCase& c, std::ostream* out) { *out << c.name; }
};

/// Of a file of 200,000 words, 100 are to go to 0; of a second one, a byte longer, 50 to 100; all in 128K words.
struct RefusedParam : MergeParam, testing::WithParamInterface<CheckCase> {
    void SetUp() override
    {
        MergeParam::SetUp();
        fs::resize_file(folder / "first.rcp", 400'000);
        fs::resize_file(folder / "second.rcp", 400'001);
        ChooseFirst("first.rcp");
        ChooseSecond("second.rcp");
        ChooseMerged("merged");
        Type("editFirstLength", "100");
        Type("editSecondPlace", "100");
        Type("editSecondLength", "50");
    }
};

TEST_P(RefusedParam, IsReportedAndTheFieldsStayAsTyped)
{
    for (const auto& [field, text] : GetParam().typed)
        Type(field, text);
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(GetParam().message, fields);
    EXPECT_FALSE(fs::exists(folder / "merged.rcp"));
}

constexpr const char16_t* kFirstLength = u"The first file's reading length   cann't be zero or negative!";
constexpr const char16_t* kFirstPlaceTooLarge =
    u"The first file's saving location is too large ,which can lead to the second file can't be merged!";
constexpr const char16_t* kSecondLength = u"The second file's reading length  can not be negative!"; // kept: zero too
constexpr const char16_t* kSecondInFirst =
    u"The second file's saving location in merged file should be larger than the sum of the first file's reading "
    u"length and it's saving location in the merged file!";
constexpr const char16_t* kSecondBeforeFirst =
    u"The second file's saving location in merged file should be larger than the first file's saving location in the "
    u"merged file!";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RefusedParam, testing::Values(
    CheckCase{"FirstPlaceNegative", {{"editFirstPlace", "-1"}},
        u"The first file's saving location in the merged file can not be negative!"},
    CheckCase{"FirstReadStartNegative", {{"editFirstReadStart", "-1"}},
        u"The first file's reading location  cann't be negative!"},
    CheckCase{"FirstLengthZero", {{"editFirstLength", "0"}}, kFirstLength},
    CheckCase{"FirstLengthOfLetters", {{"editFirstLength", "abc"}}, kFirstLength},
    CheckCase{"FirstLengthEmpty", {{"editFirstLength", ""}}, kFirstLength},
    CheckCase{"FirstPlacePastTheEnd", {{"editFirstPlace", "130560"}}, kFirstPlaceTooLarge},
    CheckCase{"LettersAfterANumber", {{"editFirstPlace", " 130560ab"}}, kFirstPlaceTooLarge},
    CheckCase{"FirstLastPlace", {{"editFirstPlace", "130559"}, {"editFirstLength", "1"}}, kSecondBeforeFirst},
    CheckCase{"FirstLengthPastTheFile", {{"editFirstLength", "200001"}},
        u"The first file's reading length is larger than it's total length!"},
    CheckCase{"FirstReadStartPastTheFile", {{"editFirstReadStart", "200001"}},
        u"The first file's location for  reading  is larger than it's total length!"},
    CheckCase{"FirstReadRange", {{"editFirstReadStart", "199950"}}, // kept: start and length in this order
        u"The first file can't be read 199950 words from the starting location 100 ,the number is larger than it's "
        u"toltal length 200000 words"},
    CheckCase{"FirstPlaceAndLength", {{"editFirstPlace", "130500"}}, // kept: the length in place of the merged file's
        u"The first file's saving location 130500 in merged file and it's reading length don't match with the merged "
        u"file , the  sum of them is larger than this merged file's length 100!"},
    CheckCase{"SecondPlaceNegative", {{"editSecondPlace", "-1"}},
        u"The second file's saving location in the merged file can not be negative!"},
    CheckCase{"SecondReadStartNegative", {{"editSecondReadStart", "-1"}},
        u"The second file's reading location  can not be negative!"},
    CheckCase{"SecondLengthZero", {{"editSecondLength", "0"}}, kSecondLength},
    CheckCase{"SecondLengthOfLetters", {{"editSecondLength", "abc"}}, kSecondLength},
    CheckCase{"SecondPlacePastTheEnd", {{"editSecondPlace", "130560"}},
        u"The second file's saving location in the merged file is too larger,which will lead to this app can't merge "
        u"file!"},
    CheckCase{"SecondLengthPastTheFile", {{"editSecondLength", "200001"}},
        u"The second file's reading length is larger than it's total length!"},
    CheckCase{"SecondReadStartPastTheFile", {{"editSecondReadStart", "200001"}},
        u"The second file's reading location is larger than it's total length!"},
    CheckCase{"SecondReadRange", {{"editFirstReadStart", "7"}, {"editSecondReadStart", "199960"}}, // kept: the first's
        u"The secong file  can't be read 7  words from the starting location 100 ,the number is larger than it's "
        u"toltal length 200000 words"},
    CheckCase{"SecondPlaceAndLength", {{"editFirstPlace", "3"}, {"editSecondPlace", "130520"}}, // kept: the first's
        u"The second file's saving location 3 in merged file and it's reading length don't match with the merged "
        u"file , the  sum of them is larger than this merged file's length 100!"},
    CheckCase{"SecondPlaceAndLengthOfTwoLongOnes",
        {{"editFirstLength", "70000"}, {"editSecondLength", "70000"}, {"editSecondPlace", "70000"}}, // kept
        u"The second file's saving location 0 in merged file and it's reading length don't match with the merged "
        u"file , the  sum of them is larger than this merged file's length 70000!"},
    CheckCase{"BothLengths", {{"editFirstPlace", "1"}, {"editFirstLength", "70000"}, // kept: the first's place
                              {"editSecondPlace", "60000"}, {"editSecondLength", "70000"}},
        u"The sum of these two file's reading length is larger than the merged file's length 1 !"},
    CheckCase{"SecondBeforeTheFirst", {{"editFirstPlace", "50"}, {"editSecondPlace", "49"}}, kSecondBeforeFirst},
    CheckCase{"SecondInTheFirst", {{"editSecondPlace", "99"}}, kSecondInFirst},
    CheckCase{"SecondAtTheFirst", {{"editSecondPlace", "0"}}, kSecondInFirst}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
