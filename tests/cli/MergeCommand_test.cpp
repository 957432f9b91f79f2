#include "tests/cli/RunCli.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t k128KBytes = 261120;
constexpr std::size_t k256KBytes = 523264;

/// Two files of 10 and 4 words.
struct MergeCommand : testing::Test {
    MergeCommand()
    {
        WriteAll(first, WordBytes({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
        WriteAll(second, WordBytes({21, 22, 23, 24}));
    }

    std::vector<std::string> Arguments(const std::vector<std::string>& options) const
    {
        std::vector<std::string> arguments = {"merge", first.string(), second.string(), target.string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }

    void ExpectMerged(const std::vector<std::string>& options) const
    {
        const ProcessResult result = RunCli(Arguments(options));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, "");
    }

    void ExpectRefused(const std::vector<std::string>& options, const std::string& message) const
    {
        const ProcessResult result = RunCli(Arguments(options));
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, message + "\n");
    }

    CTempFolder folder;
    fs::path first = folder / "first.rcp";
    fs::path second = folder / "second.rcp";
    fs::path target = folder / "merged.rcp";
};

/// A merged file that begins with these words.
Bytes Merged(std::initializer_list<std::uint16_t> words, std::size_t size = k128KBytes)
{
    Bytes bytes = WordBytes(words);
    bytes.resize(size);
    return bytes;
}

TEST_F(MergeCommand, PutsStretchesAtTheirPlaces)
{
    ExpectMerged({"--first-read", "2", "--first-length", "3", "--second-length", "1", "--second-place", "5"});
    EXPECT_EQ(ReadAll(target), Merged({3, 4, 5, 0, 0, 21}));
}

TEST_F(MergeCommand, TakesWholeFilesUnlessToldOtherwise)
{
    ExpectMerged({"--second-place", "10"});
    EXPECT_EQ(ReadAll(target), Merged({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 21, 22, 23, 24}));
}

TEST_F(MergeCommand, AFileThatIsNotNamedIsToldBeforeAnythingElse)
{
    const std::string noFirst = "Please select the first file  which you want to merge!";
    const std::string noSecond = "Please select the second file which you want to merge!";
    const fs::path named = first;
    for (const char* blank : {"", " ", "\t \n", "\xE3\x80\x80"}) { // an ideographic space
        first = blank;
        ExpectRefused({}, noFirst);
        first = named;
        second = blank;
        ExpectRefused({}, noSecond);
        target = folder / "a?.rcp"; // no name for a merged file
        ExpectRefused({}, noSecond);
        first = "";
        ExpectRefused({}, noFirst);
        first = named;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 2);
}

TEST_F(MergeCommand, OddLastByteIsNotTaken)
{
    WriteAll(first, BytesOf({1, 0, 2, 0, 3}));
    ExpectMerged({"--first-place", "1", "--second-place", "3", "--second-read", "1", "--second-length", "2"});
    EXPECT_EQ(ReadAll(target), Merged({0, 1, 2, 22, 23}));
}

TEST_F(MergeCommand, MakesTheLargerFile)
{
    ExpectMerged({"--size", "256K", "--second-place", "10"});
    EXPECT_EQ(ReadAll(target), Merged({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 21, 22, 23, 24}, k256KBytes));
}

TEST_F(MergeCommand, AppendsTheEndingWhereItIsMissing)
{
    target = folder / "merged.bin";
    ExpectMerged({"--second-place", "10"});
    EXPECT_FALSE(fs::exists(target));
    EXPECT_EQ(ReadAll(folder / "merged.bin.rcp").size(), k128KBytes);
}

TEST_F(MergeCommand, EndingMayBeInCapitals)
{
    target = folder / "Plan.RCP";
    ExpectMerged({"--second-place", "10"});
    EXPECT_TRUE(fs::exists(target));
    EXPECT_FALSE(fs::exists(folder / "Plan.RCP.rcp"));
}

TEST_F(MergeCommand, NameNeedNotBeUtf8)
{
    target = folder / "a\xFF";
    ExpectMerged({"--second-place", "10"});
    EXPECT_TRUE(fs::exists(folder / "a\xFF.rcp"));
}

struct RefusedName {
    const char* name;
    const char* target;
    const char* message;
    friend void PrintTo(const RefusedName& c, std::ostream* out) { *out << c.name; }
};

struct MergeName : MergeCommand, testing::WithParamInterface<RefusedName> {};

TEST_P(MergeName, IsRefusedBeforeAnythingElse)
{
    fs::remove(first);
    target = folder.Path().string() + '/' + GetParam().target;
    ExpectRefused({"--first-place", "-1"}, GetParam().message);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 1); // the second file
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, MergeName, testing::Values(
    RefusedName{"Empty",        "",      "The file name can't be empty ,please input it!"},
    RefusedName{"Blank",        "  ",    "The file name can't be empty ,please input it!"},
    RefusedName{"Bar",          "a|b",   "the file isn't illegal \xEF\xBC\x8Cplease reinput it!"},
    RefusedName{"Backslash",    "a\\b",  "the file isn't illegal \xEF\xBC\x8Cplease reinput it!"},
    RefusedName{"Quote",        "a\"b",  "the file isn't illegal \xEF\xBC\x8Cplease reinput it!"},
    RefusedName{"Asterisk",     "a*b",   "the file isn't illegal \xEF\xBC\x8Cplease reinput it!"},
    RefusedName{"LessThan",     "a<b",   "the file isn't illegal \xEF\xBC\x8Cplease reinput it!"},
    RefusedName{"GreaterThan",  "a>b",   "the file isn't illegal \xEF\xBC\x8Cplease reinput it!"},
    RefusedName{"QuestionMark", "a?b",   "the file isn't illegal \xEF\xBC\x8Cplease reinput it!"},
    RefusedName{"Colon",        "a:b",   "the file isn't illegal \xEF\xBC\x8Cplease reinput it!"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(MergeCommand, ExistingTargetIsKeptUnlessForced)
{
    WriteAll(target, WordBytes({1}));
    fs::remove(first); // heard of later
    ExpectRefused({}, "The file " + target.string() + " exist,\nMerge operation can empty the file content,continue?");
    EXPECT_EQ(ReadAll(target), WordBytes({1}));
}

TEST_F(MergeCommand, ExistingFileIsLookedForUnderTheCompletedName)
{
    WriteAll(target, WordBytes({1}));
    target = folder / "merged";
    ExpectRefused({},
                  "The file " + target.string() + ".rcp exist,\nMerge operation can empty the file content,continue?");
}

TEST_F(MergeCommand, ForceReplacesAnExistingTarget)
{
    WriteAll(target, Bytes(k256KBytes, std::byte{7}));
    ExpectMerged({"--force", "--second-place", "10"});
    EXPECT_EQ(ReadAll(target), Merged({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 21, 22, 23, 24}));
}

TEST_F(MergeCommand, MissingFilesAreReportedBeforeTheChecks)
{
    fs::remove(second);
    ExpectRefused({"--first-place", "-1"}, "Can't open file " + second.string() + ",it can't be merged!");
    fs::remove(first);
    ExpectRefused({"--first-place", "-1"}, "Can't open file " + first.string() + ",it can't be mergered!");
    EXPECT_FALSE(fs::exists(target));
}

struct FailedCheck {
    const char* name;
    std::vector<std::string> options;
    const char* message;
    friend void PrintTo(const FailedCheck& c, std::ostream* out) { *out << c.name; }
};

struct MergeCheck : MergeCommand, testing::WithParamInterface<FailedCheck> {};

TEST_P(MergeCheck, IsReportedAndNothingWritten)
{
    ExpectRefused(GetParam().options, GetParam().message);
    EXPECT_FALSE(fs::exists(target));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, MergeCheck, testing::Values(
    FailedCheck{"FirstPlaceNegative", {"--first-place", "-1", "--first-read", "-1"},
        "The first file's saving location in the merged file can not be negative!"},
    FailedCheck{"FirstReadNegative", {"--first-read=-1", "--first-length", "0"},
        "The first file's reading location  cann't be negative!"},
    FailedCheck{"FirstLengthZero", {"--first-length", "0"},
        "The first file's reading length   cann't be zero or negative!"},
    FailedCheck{"FirstPlaceTooLarge", {"--first-place", "130560"},
        "The first file's saving location is too large ,which can lead to the second file can't be merged!"},
    FailedCheck{"FirstLengthTooLarge", {"--first-length", "11"},
        "The first file's reading length is larger than it's total length!"},
    FailedCheck{"FirstReadPastTheEnd", {"--first-read", "2"},
        "The first file can't be read 2 words from the starting location 10 ,the number is larger than it's "
        "toltal length 10 words"},
    FailedCheck{"SecondReadPastTheEnd", {"--second-read", "3", "--second-length", "2", "--second-place", "10"},
        "The secong file  can't be read 0  words from the starting location 10 ,the number is larger than it's "
        "toltal length 10 words"}, // kept: the first file's numbers
    FailedCheck{"SecondPlaceTooLarge", {"--second-place", "130560"},
        "The second file's saving location in the merged file is too larger,which will lead to this app can't "
        "merge file!"},
    FailedCheck{"Overlap", {"--second-place", "9"},
        "The second file's saving location in merged file should be larger than the sum of the first file's "
        "reading length and it's saving location in the merged file!"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(MergeCommand, TargetThatIsASourceIsRefused)
{
    target = second;
    const Bytes before = ReadAll(second);
    ExpectRefused({"--force", "--second-place", "10"}, "Merge file " + target.string() + " failed!");
    EXPECT_EQ(ReadAll(second), before);
}

TEST_F(MergeCommand, TargetThatCannotBeMadeIsReported)
{
    target = folder / "missing/merged.rcp";
    ExpectRefused({"--second-place", "10"}, "Merge file " + target.string() + " failed!");
}

TEST_F(MergeCommand, FolderOfThatNameIsNoFileToReplace)
{
    fs::create_directory(target);
    ExpectRefused({"--second-place", "10"}, "Merge file " + target.string() + " failed!");
    EXPECT_TRUE(fs::is_empty(target));
}

TEST_F(MergeCommand, FullDiskIsReportedWithItsReason)
{
    target = folder / "full.rcp";
    ProcessResult result;
    {
        const CFileSizeLimit limit(1000); // the program that is started has it too
        result = RunCli(Arguments({"--second-place", "10"}));
    }
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.error,
              "Merge file " + target.string() + " failed!\nWriting " + target.string() + ": File too large\n");
    EXPECT_EQ(ReadAll(target), Bytes(1000));
}

} // namespace
