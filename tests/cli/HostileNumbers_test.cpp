#include "tests/cli/CliTest.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

const std::string kLargest = "2147483647";
const std::string kTooManyRows = "The data can't be shown! It has more than 16777216 rows!";

/// One format of one word, and an empty file of each type.
struct HostileNumbers : CliTest, testing::WithParamInterface<const char*> {
    HostileNumbers()
    {
        library.formats.erase(library.formats.begin());
        SaveLibrary();
        WriteAll(file, {});
    }

    std::vector<std::string> Show(const std::string& start, const std::string& rows) const
    {
        return {"show", file.string(), "--start", start, "--rows", rows};
    }

    std::vector<std::string> Set(const std::string& start, const std::string& rows) const
    {
        return {"set", file.string(), "--start", start, "--rows", rows, "--cell", "1", "2", "7"};
    }

    bool IsPaged() const { return file.extension() == ".frp" || file.extension() == ".erp"; }

    fs::path file = folder / (std::string("x.") + GetParam());
};

TEST_P(HostileNumbers, MoreRowsThanCanBeShownAreRefused)
{
    ExpectRefused(Show("0", kLargest), kTooManyRows);
    ExpectRefused(Set("0", kLargest), kTooManyRows);
    ExpectRefused({"convert", recipe.string(), file.string(), "--rows", kLargest}, kTooManyRows);
    EXPECT_EQ(fs::file_size(file), 0u);
}

TEST_P(HostileNumbers, LastWordAddressIsOne)
{
    const ProcessResult shown = Run(Show(kLargest, "1"));
    EXPECT_EQ(shown.exitCode, 0) << shown.error;
    EXPECT_NE(shown.out.find("RW" + kLargest), std::string::npos);

    ExpectDone(Set(kLargest, "1"));
    const std::string out = Run(Show(kLargest, "1")).out;
    EXPECT_NE(out.find('7', out.find(kLargest) + kLargest.size()), std::string::npos) << out;
}

TEST_P(HostileNumbers, RowsPastTheLastAddressAreRefusedByPagedFiles)
{
    if (IsPaged()) {
        ExpectRefused(Show(kLargest, "2"), "Open file " + file.string() + " error!");
        ExpectRefused(Set(kLargest, "2"), "Open file " + file.string() + " error!");
        EXPECT_EQ(fs::file_size(file), 0u);
    } else {
        const ProcessResult shown = Run(Show(kLargest, "2"));
        EXPECT_EQ(shown.exitCode, 0) << shown.error;
        EXPECT_NE(shown.out.find("RW2147483648"), std::string::npos);
    }
}

TEST_P(HostileNumbers, ConversionThatFailsLeavesNoNewFile)
{
    const fs::path fresh = folder / (std::string("new.") + GetParam());
    const std::vector<std::string> arguments = {
        "convert", recipe.string(), fresh.string(), "--start", kLargest, "--rows", "2"};
    if (IsPaged()) {
        ExpectRefused(arguments, "Can't save file " + fresh.string() + ",please check file or your disk!");
        EXPECT_FALSE(fs::exists(fresh));
    } else {
        ExpectDone(arguments);
    }
}

TEST_P(HostileNumbers, ConversionThatFailsLeavesAnOldFile)
{
    if (IsPaged()) {
        ExpectRefused({"convert", recipe.string(), file.string(), "--start", kLargest, "--rows", "2"},
                      "Can't save file " + file.string() + ",please check file or your disk!");
        EXPECT_TRUE(fs::exists(file));
    } else {
        ExpectDone({"convert", recipe.string(), file.string(), "--start", kLargest, "--rows", "2"});
    }
}

INSTANTIATE_TEST_SUITE_P(Types, HostileNumbers, testing::Values("rcp", "csv", "erp", "frp"),
                         [](const auto& type) { return std::string(type.param); });

struct HostileText : CliTest, testing::WithParamInterface<const char*> {};

TEST_P(HostileText, IsRefusedAsAnIntegerAndNothingIsWritten)
{
    const Bytes before = ReadAll(recipe);
    ExpectRefused({"set", recipe.string(), "--cell", "1", "2", GetParam()}, "Col 1,Row 2 data error !");
    EXPECT_EQ(ReadAll(recipe), before);
}

using HostileTextKept = CliTest;

TEST_F(HostileTextKept, AMinusLetsLettersPassThatAreNoNumber) // kept
{
    ExpectDone({"set", recipe.string(), "--cell", "1", "2", "-inf"});
    EXPECT_EQ(LoadLE32(ReadAll(recipe), 0), 99);
}

INSTANTIATE_TEST_SUITE_P(Table, HostileText,
                         testing::Values("nan", "inf", "1e400", "-1e400", "0x1p3", "1e", "1e-400", "..", "2147483648",
                                         "99999999999999999999"));

} // namespace
