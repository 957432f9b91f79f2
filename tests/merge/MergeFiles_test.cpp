#include "merge/MergeFiles.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;
using Words = std::map<std::size_t, std::uint16_t>;

constexpr std::size_t k128KBytes = 261'120;
constexpr std::size_t k256KBytes = 523'264;

/// The words of a file that are not zero, by their addresses.
Words WordsIn(const fs::path& path)
{
    const Bytes bytes = ReadAll(path);
    Words words;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] != std::byte{0})
            words[i / 2] |= static_cast<std::uint16_t>(std::to_integer<unsigned>(bytes[i]) << (8 * (i % 2)));
    return words;
}

/// first.rcp holds ten words, second.rcp two; words 2 to 4 of the first go to 0, word 0 of the second to 5.
struct MergedFile : testing::Test {
    MergedFile()
    {
        WriteAll(first, firstBytes);
        WriteAll(second, secondBytes);
        params = {.firstPath = first,
                  .firstFileBytes = 20,
                  .firstReadStart = 2,
                  .firstLength = 3,
                  .firstPlace = 0,
                  .secondPath = second,
                  .secondFileBytes = 4,
                  .secondReadStart = 0,
                  .secondLength = 1,
                  .secondPlace = 5,
                  .mergedPath = merged};
    }

    void ExpectMerges()
    {
        EXPECT_TRUE(MergeFiles(params, reporter));
        EXPECT_TRUE(reporter.shown.empty());
        EXPECT_TRUE(reporter.asked.empty());
        ExpectSourcesAreUntouched();
    }

    void ExpectFails(const std::u16string& message)
    {
        EXPECT_FALSE(MergeFiles(params, reporter));
        EXPECT_EQ(reporter.shown, Texts{message});
        ExpectSourcesAreUntouched();
    }

    void ExpectStops(const char16_t* operation, const fs::path& path, const char16_t* reason)
    {
        ExpectFails(u"Merge file " + PathText(params.mergedPath) + u" failed!\n" + operation + u" " + PathText(path) +
                    u": " + reason);
    }
    void ExpectMergeFails() { ExpectFails(u"Merge file " + PathText(params.mergedPath) + u" failed!"); }
    void ExpectOpenFails(const fs::path& path) { ExpectFails(u"Open file " + PathText(path) + u" failed!"); }

    void ExpectSourcesAreUntouched()
    {
        EXPECT_EQ(ReadAll(first), firstBytes);
        if (!secondIsDeleted) {
            EXPECT_EQ(ReadAll(second), secondBytes);
        }
    }

    void ExpectMerged(std::size_t size, const Words& words)
    {
        EXPECT_EQ(fs::file_size(merged), size);
        EXPECT_EQ(WordsIn(merged), words);
    }

    const Bytes firstBytes =
        WordBytes({0x1100, 0x1211, 0x1312, 0x1413, 0x1514, 0x1615, 0x1716, 0x1817, 0x1918, 0x1A19});
    const Bytes secondBytes = WordBytes({0x2B2A, 0x2C2B});
    CTempFolder folder;
    fs::path first = folder / "first.rcp";
    fs::path second = folder / "second.rcp";
    fs::path merged = folder / "merged.rcp";
    MergeParams params;
    CRecordingReporter reporter;
    bool secondIsDeleted = false;
};

TEST_F(MergedFile, HoldsBothStretchesAndZerosElsewhere)
{
    ASSERT_EQ(ValidateMergeParams(params), std::nullopt);
    ExpectMerges();
    const Bytes bytes = ReadAll(merged);
    ASSERT_EQ(bytes.size(), k128KBytes);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 14),
              BytesOf({0x12, 0x13, 0x13, 0x14, 0x14, 0x15, 0, 0, 0, 0, 0x2A, 0x2B, 0, 0}));
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}, {5, 0x2B2A}});
}

TEST_F(MergedFile, MayBeOfTheLargerSize)
{
    params.mergedSize = MergedSize::Words256K;
    params.secondLength = 2;
    params.secondPlace = 261'630; // the last two words
    ASSERT_EQ(ValidateMergeParams(params), std::nullopt);
    ExpectMerges();
    ExpectMerged(k256KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}, {261'630, 0x2B2A}, {261'631, 0x2C2B}});
}

TEST_F(MergedFile, IsEmptyWithoutASize)
{
    params = {.mergedSize = MergedSize::None, .firstPath = first, .secondPath = second, .mergedPath = merged};
    ExpectMerges();
    ExpectMerged(0, {});
}

TEST_F(MergedFile, SecondStretchMayStartWhereTheFirstEnds)
{
    params.secondPlace = 3;
    ASSERT_EQ(ValidateMergeParams(params), std::nullopt);
    ExpectMerges();
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}, {3, 0x2B2A}});
}

TEST_F(MergedFile, StretchesMayFillIt)
{
    fs::resize_file(first, 2 * 130'560);
    params.firstFileBytes = 2 * 130'560;
    params.firstReadStart = 1;
    params.firstLength = 130'559;
    params.secondPlace = 130'559;
    ASSERT_EQ(ValidateMergeParams(params), std::nullopt);
    ASSERT_TRUE(MergeFiles(params, reporter));
    ExpectMerged(k128KBytes, {{0, 0x1211},
                              {1, 0x1312},
                              {2, 0x1413},
                              {3, 0x1514},
                              {4, 0x1615},
                              {5, 0x1716},
                              {6, 0x1817},
                              {7, 0x1918},
                              {8, 0x1A19},
                              {130'559, 0x2B2A}});
}

TEST_F(MergedFile, OneFileMayBeBothSources)
{
    params.secondPath = first;
    ExpectMerges();
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}, {5, 0x1100}});
}

TEST_F(MergedFile, ReplacesALongerFileEntirely)
{
    WriteAll(merged, Bytes(300'000, std::byte{0xFF}));
    ExpectMerges();
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}, {5, 0x2B2A}});
}

TEST_F(MergedFile, ReplacesAShorterFileEntirely)
{
    WriteAll(merged, Bytes(300, std::byte{0xFF}));
    ExpectMerges();
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}, {5, 0x2B2A}});
}

TEST_F(MergedFile, HasZerosForWhatASourceLostSinceItWasChosen)
{
    fs::resize_file(first, 7); // word 3 is cut, word 4 gone
    ASSERT_TRUE(MergeFiles(params, reporter));
    EXPECT_TRUE(reporter.shown.empty());
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x13}, {5, 0x2B2A}});
}

TEST_F(MergedFile, HasNothingOfTheFirstStretchInTheSecond)
{
    fs::resize_file(second, 1);
    params.secondLength = 3;
    ASSERT_TRUE(MergeFiles(params, reporter));
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}, {5, 0x2A}});
}

TEST_F(MergedFile, HasZerosForAReadFarPastTheEnd)
{
    params.firstReadStart = std::numeric_limits<std::int32_t>::max();
    ExpectMerges();
    ExpectMerged(k128KBytes, {{5, 0x2B2A}});
}

TEST_F(MergedFile, MayHaveANameBeyondAscii)
{
    params.mergedPath = merged = folder / u"合并 ü.rcp";
    ExpectMerges();
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}, {5, 0x2B2A}});
}

using MergeFailure = MergedFile;

TEST_F(MergeFailure, MergedFileInAMissingFolderIsReported)
{
    params.mergedPath = folder / "missing" / "merged.rcp";
    ExpectMergeFails();
    EXPECT_FALSE(fs::exists(folder / "missing"));
}

TEST_F(MergeFailure, FolderInPlaceOfTheMergedFileIsReported)
{
    params.mergedPath = folder.Path();
    ExpectMergeFails();
}

TEST_F(MergeFailure, DeviceInPlaceOfTheMergedFileIsReported)
{
    params.mergedPath = "/dev/full";
    ExpectMergeFails();
}

TEST_F(MergeFailure, EmptyMergedPathIsReported)
{
    params.mergedPath.clear();
    ExpectMergeFails();
}

TEST_F(MergeFailure, MergedFileIsCreatedBeforeTheSourcesAreOpened)
{
    params.mergedPath = folder / "missing" / "merged.rcp";
    params.firstPath = folder / "gone.rcp";
    ExpectMergeFails();
}

TEST_F(MergeFailure, MissingFirstFileIsReportedAndLeavesZeros)
{
    params.firstPath = folder / "gone.rcp";
    params.secondPath = folder / "gone too.rcp";
    ExpectOpenFails(params.firstPath);
    ExpectMerged(k128KBytes, {});
    EXPECT_FALSE(fs::exists(params.firstPath));
}

TEST_F(MergeFailure, MissingFirstFileIsReportedWithoutAnyOtherParameter)
{
    params = {.firstPath = folder / "gone.rcp", .mergedPath = merged};
    ExpectOpenFails(params.firstPath);
    ExpectMerged(k128KBytes, {});
}

TEST_F(MergeFailure, MissingFirstFileLeavesZerosOfTheLargerSize)
{
    params.mergedSize = MergedSize::Words256K;
    params.firstPath = folder.Path();
    ExpectOpenFails(params.firstPath);
    ExpectMerged(k256KBytes, {});
}

TEST_F(MergeFailure, SecondFileDeletedSinceItWasChosenIsReportedAndLeavesTheFirstStretch)
{
    secondIsDeleted = fs::remove(second);
    ExpectOpenFails(second);
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}});
    EXPECT_FALSE(fs::exists(second));
}

TEST_F(MergeFailure, EmptySecondPathIsReportedAndLeavesTheFirstStretch)
{
    params.secondPath.clear();
    ExpectOpenFails({});
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}});
}

TEST_F(MergeFailure, FullDiskIsReportedAndLeavesWhatWasWritten)
{
    {
        const CFileSizeLimit limit(1000);
        ExpectStops(u"Writing", merged, u"File too large");
    }
    ExpectMerged(1000, {});
}

// The process's own memory opens like a file, but nothing can be read at its first address.
TEST_F(MergeFailure, FirstFileThatCannotBeReadIsReportedAndLeavesZeros)
{
    params.firstPath = "/proc/self/mem";
    params.firstReadStart = 0;
    ExpectStops(u"Reading", "/proc/self/mem", u"Input/output error");
    ExpectMerged(k128KBytes, {});
}

TEST_F(MergeFailure, SecondFileThatCannotBeReadIsReportedAndLeavesTheFirstStretch)
{
    params.secondPath = "/proc/self/mem";
    ExpectStops(u"Reading", "/proc/self/mem", u"Input/output error");
    ExpectMerged(k128KBytes, {{0, 0x1312}, {1, 0x1413}, {2, 0x1514}});
}

struct SameFileCase {
    const char* name;
    void (*nameIt)(MergeParams& params, const fs::path& source, const fs::path& folder);
    friend void PrintTo(const SameFileCase& c, std::ostream* out) { *out << c.name; }
};
struct MergedPathThatIsASource : MergedFile, testing::WithParamInterface<SameFileCase> {};

TEST_P(MergedPathThatIsASource, IsRefusedBeforeTheFirstFileIsTouched)
{
    GetParam().nameIt(params, first, folder.Path());
    ExpectMergeFails();
    EXPECT_EQ(ReadAll(first), firstBytes);
}

TEST_P(MergedPathThatIsASource, IsRefusedBeforeTheSecondFileIsTouched)
{
    GetParam().nameIt(params, second, folder.Path());
    ExpectMergeFails();
    EXPECT_EQ(ReadAll(second), secondBytes);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, MergedPathThatIsASource, testing::Values(
    SameFileCase{"ByName", [](MergeParams& p, const fs::path& source, const fs::path&) {
        p.mergedPath = source;
    }},
    SameFileCase{"ByAnotherSpelling", [](MergeParams& p, const fs::path& source, const fs::path& folder) {
        p.mergedPath = folder / "." / source.filename();
    }},
    SameFileCase{"ByASymbolicLink", [](MergeParams& p, const fs::path& source, const fs::path& folder) {
        p.mergedPath = folder / "link.rcp";
        fs::create_symlink(source, p.mergedPath);
    }},
    SameFileCase{"ByAHardLink", [](MergeParams& p, const fs::path& source, const fs::path& folder) {
        p.mergedPath = folder / "link.rcp";
        fs::create_hard_link(source, p.mergedPath);
    }}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

struct OutsideCase {
    const char* name;
    std::int32_t readStart, length, place;
    friend void PrintTo(const OutsideCase& c, std::ostream* out) { *out << c.name; }
};
struct StretchOutside : MergedFile, testing::WithParamInterface<OutsideCase> {
    StretchOutside() { WriteAll(merged, BytesOf({1, 2, 3})); }

    void ExpectRefused()
    {
        ExpectMergeFails();
        EXPECT_EQ(ReadAll(merged), BytesOf({1, 2, 3}));
    }
};

TEST_P(StretchOutside, OfTheFirstFileIsRefusedBeforeAnythingIsTouched)
{
    params.firstReadStart = GetParam().readStart;
    params.firstLength = GetParam().length;
    params.firstPlace = GetParam().place;
    ExpectRefused();
}

TEST_P(StretchOutside, OfTheSecondFileIsRefusedBeforeAnythingIsTouched)
{
    params.secondReadStart = GetParam().readStart;
    params.secondLength = GetParam().length;
    params.secondPlace = GetParam().place;
    ExpectRefused();
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, StretchOutside, testing::Values(
    //          name                    readStart  length    place
    OutsideCase{"NegativeReadStart",    -1,        1,        0},
    OutsideCase{"NegativeLength",        0,       -1,        1},
    OutsideCase{"NegativePlace",         0,        1,       -1},
    OutsideCase{"OneWordTooLong",        0,        130'561,  0},
    OutsideCase{"OneWordTooFar",         0,        1,        130'560},
    OutsideCase{"LongestAndFarthest",    kMost,    kMost,    kMost},
    OutsideCase{"LeastOfAll",            kLeast,   kLeast,   kLeast}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
