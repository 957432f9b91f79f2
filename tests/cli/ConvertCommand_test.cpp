#include "files/PagedFile.h"
#include "tests/cli/CliTest.h"
#include "tests/files/OrdinaryUser.h"

namespace fs = std::filesystem;

namespace {

/// The rows of CliTest as a text table.
const std::u16string kTable = u"\uFEFF\"5\"\t\"12.3\"\t\"100.0\"\t\"A\"\r\n"
                              u"\"600\"\t\"4.5\"\t\"0.0\"\t\"\u5B8B\u4F53\"\r\n";

Bytes UnitBytes(const std::u16string& text)
{
    Bytes bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return bytes;
}

struct ConvertCommand : CliTest {
    std::vector<std::string> To(const fs::path& target, const std::vector<std::string>& options = {}) const
    {
        std::vector<std::string> arguments = {"convert", recipe.string(), target.string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }
};

// kept: before the rows there is one zero byte a word of the start address at least, not two.
TEST_F(ConvertCommand, NewRcpHasZerosBeforeTheRows)
{
    const fs::path target = folder / "b.rcp";
    ExpectDone(To(target));
    EXPECT_EQ(ReadAll(target), WordBytes({0, 5, 123, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53}));
}

TEST_F(ConvertCommand, ExistingRcpIsMadeAnew)
{
    const fs::path target = folder / "b.rcp";
    WriteAll(target, Bytes(100, std::byte{7}));
    ExpectDone(To(target));
    EXPECT_EQ(ReadAll(target), WordBytes({0, 5, 123, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53}));
}

TEST_F(ConvertCommand, ExistingRcpKeepsItsOtherWordsForRowsFromWordZero)
{
    const fs::path target = folder / "b.rcp";
    WriteAll(target, WordBytes({7, 7, 7, 7}));
    ExpectDone(To(target, {"--format", "W\xC3\xB6rter", "--start", "0"}));
    EXPECT_EQ(ReadAll(target), WordBytes({99, 5, 7, 7}));
}

TEST_F(ConvertCommand, PagedSourceThatCannotBeOpenedGivesNoRows) // the window shows 48 in every cell of such a file
{
    const fs::path source = folder / "c.erp";
    fs::create_directory(source);
    const fs::path target = folder / "b.rcp";
    ExpectRefused({"convert", source.string(), target.string()}, "Open file " + source.string() + " error!");
    EXPECT_FALSE(fs::exists(target));
}

/// A target that is the source, by another name.
struct SourceAgain {
    const char* name;
    const char* source;
    const char* target;
    void (*makeTarget)(const fs::path& source, const fs::path& target);
    friend void PrintTo(const SourceAgain& c, std::ostream* out) { *out << c.name; }
};

struct ConvertToItself : ConvertCommand, testing::WithParamInterface<SourceAgain> {};

TEST_P(ConvertToItself, IsRefusedAndLeavesTheFileAsItIs)
{
    recipe = folder / GetParam().source;
    WriteAll(recipe, Bytes(1024, std::byte{7}));
    const fs::path target = folder / GetParam().target;
    GetParam().makeTarget(recipe, target);
    for (const char* start : {"0", "100"})
        ExpectRefused(To(target, {"--start", start}),
                      "The file " + target.string() + " can't be converted into itself!");
    EXPECT_EQ(ReadAll(recipe), Bytes(1024, std::byte{7}));
}

void MakeNothing(const fs::path&, const fs::path&) {}

void MakeSymbolicLink(const fs::path& source, const fs::path& target)
{
    fs::create_symlink(source, target);
}

void MakeHardLink(const fs::path& source, const fs::path& target)
{
    fs::create_hard_link(source, target);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Names, ConvertToItself, testing::Values(
    SourceAgain{"Rcp",             "c.rcp", "c.rcp",   MakeNothing},
    SourceAgain{"Csv",             "c.csv", "c.csv",   MakeNothing},
    SourceAgain{"Erp",             "c.erp", "c.erp",   MakeNothing},
    SourceAgain{"Frp",             "c.frp", "c.frp",   MakeNothing},
    SourceAgain{"ByAnotherWay",    "c.rcp", "./c.rcp", MakeNothing},
    SourceAgain{"ByASymbolicLink", "c.rcp", "d.csv",   MakeSymbolicLink},
    SourceAgain{"ByAHardLink",     "c.rcp", "d.frp",   MakeHardLink}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(ConvertCommand, ReadsASourceThatMayOnlyBeReadAndLeavesItAsItIs)
{
    recipe = folder / "c.frp";
    WriteAll(recipe, Bytes(65536 + 4096)); // with a directory, but no pages
    fs::permissions(recipe, static_cast<fs::perms>(0444));
    fs::permissions(folder.Path(), fs::perms::all);
    const fs::path target = folder / "b.rcp";
    ProcessResult result;
    {
        const COrdinaryUser user;
        result = Run(To(target, {"--start", "32766", "--rows", "1"}));
    }
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(ReadAll(target), Bytes(2 * (32766 + 5)));
    EXPECT_EQ(ReadAll(recipe), Bytes(65536 + 4096));
}

/// What the rows do not cover stays, in the file that takes the old one's place.
TEST_F(ConvertCommand, ExistingPagedFileKeepsItsPages)
{
    const fs::path target = folder / "b.frp";
    WriteAll(target, {});
    for (const std::int64_t address : {3, 40000, 2100000})
        ASSERT_TRUE(PagedWrite(target, WordAddress(address), 1, WordBytes({77}), kFrp));
    Bytes wanted = ReadAll(target);
    wanted[2] = std::byte{5};
    ExpectDone({"convert", recipe.string(), target.string(), "--format", "W\xC3\xB6rter", "--rows", "1"});
    EXPECT_TRUE(ReadAll(target) == wanted);
}

TEST_F(ConvertCommand, DamagedPagedTargetIsReportedAndLeftAsItIs)
{
    const fs::path target = folder / "b.frp";
    Bytes damaged(65536 + 4096);
    damaged[65536] = std::byte{1};
    WriteAll(target, damaged);
    ExpectRefused(To(target, {"--start", "32766"}),
                  "Can't save file " + target.string() + ",please check file or your disk!");
    EXPECT_EQ(ReadAll(target), damaged);
}

TEST_F(ConvertCommand, WritesATable)
{
    const fs::path target = folder / "b.CSV";
    ExpectDone(To(target));
    EXPECT_EQ(ReadAll(target), UnitBytes(kTable));
}

TEST_F(ConvertCommand, ReadsATable)
{
    const fs::path target = folder / "b.rcp";
    recipe = folder / "a.csv";
    WriteAll(recipe, TextBytes("5,12.3,100.0,A\n600,4.5,0.0,B\n"));
    ExpectDone(To(target));
    EXPECT_EQ(ReadAll(target), WordBytes({0, 5, 123, 1000, u'A', 0, 600, 45, 0, u'B', 0}));
}

TEST_F(ConvertCommand, MakesPagedFilesWhereTheyAreMissing)
{
    for (const char* name : {"b.erp", "b.frp"}) {
        const fs::path target = folder / name;
        ExpectDone(To(target));
        EXPECT_EQ(ReadAll(target), WordBytes({0, 5, 123, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53})) << name;
    }
}

TEST_F(ConvertCommand, ExistingPagedFileKeepsItsOtherWords)
{
    const fs::path target = folder / "b.frp";
    WriteAll(target, WordBytes({8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8}));
    ExpectDone(To(target));
    EXPECT_EQ(ReadAll(target), WordBytes({8, 5, 123, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53, 8, 8}));
}

TEST_F(ConvertCommand, PagedFileAndBackGivesTheSameRows)
{
    const fs::path paged = folder / "b.frp";
    const fs::path target = folder / "c.rcp";
    ExpectDone(To(paged, {"--start", "1"}));
    recipe = paged;
    ExpectDone(To(target, {"--start", "1"}));
    EXPECT_EQ(ReadAll(target), WordBytes({0, 5, 123, 1000, u'A', 0, 600, 45, 0, 0x5B8B, 0x4F53}));
}

/// No rows are not those of the source: they take nothing away from the target, nor make one.
TEST_F(ConvertCommand, FormatWithoutItemsIsRefusedAsAFailedSave)
{
    library.formats[0]->clear();
    SaveLibrary();
    const struct {
        const char* target;
        const char* before; ///< the message before the path
        const char* after;
    } rows[] = {
        {"b.rcp", "Can't save file ", ",please check file or your disk!"},
        {"b.csv", "Save file ", " failed!"},
        {"b.erp", "Can't save file ", ",please check file or your disk!"},
        {"b.frp", "Can't save file ", ",please check file or your disk!"},
    };
    for (const auto& row : rows) {
        const fs::path target = folder / row.target;
        const std::string message = row.before + target.string() + row.after;
        for (const char* start : {"0", "3"}) {
            ExpectRefused(To(target, {"--start", start}), message);
            EXPECT_FALSE(fs::exists(target)) << row.target;
        }
        WriteAll(target, Bytes(20, std::byte{7}));
        for (const char* start : {"0", "3"})
            ExpectRefused(To(target, {"--start", start}), message);
        EXPECT_EQ(ReadAll(target), Bytes(20, std::byte{7})) << row.target;
    }
}

TEST_F(ConvertCommand, MissingSourceIsReportedAndNoTargetMade)
{
    recipe = folder / "missing.rcp";
    const fs::path target = folder / "b.rcp";
    ExpectRefused(To(target), "Open error! " + recipe.string() + " doesn't exit!");
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(ConvertCommand, UnknownExtensionsAreReported)
{
    const fs::path target = folder / "b.txt";
    ExpectRefused(To(target),
                  "The type of file " + target.string() + " is unknown! It must be .rcp, .csv, .erp or .frp!");
    EXPECT_FALSE(fs::exists(target));
    recipe = folder / "a";
    WriteAll(recipe, WordBytes({1}));
    ExpectRefused(To(folder / "b.rcp"),
                  "The type of file " + recipe.string() + " is unknown! It must be .rcp, .csv, .erp or .frp!");
    EXPECT_FALSE(fs::exists(folder / "b.rcp"));
}

TEST_F(ConvertCommand, SourceThatCannotBeReadLeavesTheTargetAsItIs)
{
    const fs::path target = folder / "b.rcp";
    WriteAll(target, WordBytes({1, 2, 3}));
    recipe = folder / "folder.rcp";
    fs::create_directory(recipe);
    ExpectRefused(To(target), "Open file " + recipe.string() + " error!");
    EXPECT_EQ(ReadAll(target), WordBytes({1, 2, 3}));
}

struct RefusedTarget {
    const char* name;
    const char* file;
    const char* start;
    const char* before; ///< the message before the path
    const char* after;
    friend void PrintTo(const RefusedTarget& c, std::ostream* out) { *out << c.name; }
};

struct ConvertToFolder : ConvertCommand, testing::WithParamInterface<RefusedTarget> {};

TEST_P(ConvertToFolder, IsReported)
{
    const RefusedTarget& param = GetParam();
    const fs::path target = folder / param.file;
    fs::create_directory(target);
    const std::string path = *param.after == '\0' ? "" : target.string();
    ExpectRefused(To(target, {"--start", param.start}), param.before + path + param.after);
    EXPECT_TRUE(fs::is_empty(target));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ConvertToFolder, testing::Values(
    RefusedTarget{"RcpFromZero",  "b.rcp", "0", "Can't save file ", ",please check file or your disk!"},
    RefusedTarget{"RcpFromOne",   "b.rcp", "1", "Open ",            " failed ,It can't save!"},
    RefusedTarget{"Csv",          "b.csv", "1", "Save file ",       " failed!"},
    RefusedTarget{"Erp",          "b.erp", "1", "Can't open the file that need save!", ""},
    RefusedTarget{"Frp",          "b.frp", "1", "Can't open the file that need save!", ""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
