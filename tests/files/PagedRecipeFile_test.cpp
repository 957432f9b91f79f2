#include "files/PagedFile.h"
#include "files/PagedRecipeFile.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

ColumnCoding Bcd(ColumnCoding column)
{
    column.codeType = CodeType::Bcd;
    return column;
}

ColumnCoding WithDecimals(ColumnCoding column, std::int32_t decimals)
{
    column.decimalDigits = decimals;
    return column;
}

/// As long as it lives, this process may open no further file.
class CNoMoreFiles {
public:
    CNoMoreFiles()
    {
        getrlimit(RLIMIT_NOFILE, &m_oldLimit);
        rlimit limit = m_oldLimit;
        limit.rlim_cur = 0;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~CNoMoreFiles() { setrlimit(RLIMIT_NOFILE, &m_oldLimit); }
    CNoMoreFiles(const CNoMoreFiles&) = delete;
    CNoMoreFiles& operator=(const CNoMoreFiles&) = delete;

private:
    rlimit m_oldLimit{};
};

struct PagedRecipe : testing::Test {
    /// Lays one row out that holds `texts`.
    void SetRow(std::vector<ColumnCoding> columns, std::int32_t startAddress, const Texts& texts)
    {
        rows.LayOut(std::move(columns), startAddress, 1);
        for (std::size_t column = 0; column < texts.size(); ++column)
            rows.SetText(0, column, texts[column]);
    }

    Bytes Save()
    {
        EXPECT_TRUE(SavePaged(rows, path, FileType::Frp, reporter, progress));
        EXPECT_TRUE(reporter.shown.empty());
        return ReadAll(path);
    }

    Texts Read(std::vector<ColumnCoding> columns, std::int32_t startAddress, std::int32_t rowCount)
    {
        rows.LayOut(std::move(columns), startAddress, rowCount);
        EXPECT_EQ(ReadPaged(rows, path, FileType::Frp, reporter, progress), Outcome::Done);
        EXPECT_TRUE(reporter.shown.empty());
        return TextsOf(rows);
    }

    void ExpectSaveFails()
    {
        reporter.shown.clear();
        EXPECT_FALSE(SavePaged(rows, path, FileType::Frp, reporter, progress));
        EXPECT_EQ(reporter.shown, Texts{u"Can't save file " + PathText(path) + u",please check file or your disk!"});
    }

    void ExpectLeftOut(const fs::path& target)
    {
        const SaveResult result = SavePaged(rows, target, FileType::Frp, reporter, progress);
        EXPECT_TRUE(result.isLeftOut) << target;
        EXPECT_FALSE(result.isSaved) << target;
        EXPECT_TRUE(reporter.shown.empty()) << target;
    }

    void ExpectReadFails()
    {
        reporter.shown.clear();
        EXPECT_EQ(ReadPaged(rows, path, FileType::Frp, reporter, progress), Outcome::Failed);
        EXPECT_EQ(reporter.shown, Texts{u"Open file " + PathText(path) + u" error!"});
        EXPECT_EQ(rows.Text(0, 0), u"");
    }

    CTempFolder folder;
    fs::path path = folder / "a.frp";
    CRecipeRows rows;
    CRecordingReporter reporter;
    CNoProgress progress;
};

TEST_F(PagedRecipe, RowBeyondTheFlatPartMakesDirectoryTableAndPage)
{
    WriteAll(path, Bytes(65536));
    SetRow({Signed16Column(), Hex16Column()}, 40000, {u"4660", u"ABCD"});
    const Bytes bytes = Save();
    ASSERT_EQ(bytes.size(), 77824u);
    EXPECT_EQ(LoadLE32(bytes, 65536), 69632);
    EXPECT_EQ(LoadLE32(bytes, 69632 + 4 * 19), 73728);
    EXPECT_EQ(LoadLE32(bytes, 73728 + 2176), static_cast<std::int32_t>(0xABCD1234));
    EXPECT_EQ(Read({Signed16Column(), Hex16Column()}, 40000, 1), (Texts{u"4660", u"ABCD"}));
}

TEST_F(PagedRecipe, TypeTellsTheFlatPart)
{
    WriteAll(path, {});
    SetRow({Signed16Column()}, 40000, {u"1"});
    EXPECT_TRUE(SavePaged(rows, path, FileType::Erp, reporter, progress));
    EXPECT_EQ(ReadAll(path).size(), 80002u);
}

TEST_F(PagedRecipe, ColumnsFollowOneAnother)
{
    WriteAll(path, WordBytes({9, 9, 9, 9, 9, 9, 9, 9, 9}));
    rows.LayOut({Signed16Column(), Unsigned32Column(), AnsiColumn(1)}, 1, 2);
    const Texts texts = {u"1", u"65538", u"AB", u"-1", u"7", u""};
    for (std::size_t i = 0; i < texts.size(); ++i)
        rows.SetText(static_cast<std::int32_t>(i / 3), i % 3, texts[i]);
    EXPECT_EQ(Save(), WordBytes({9, 1, 2, 1, 0x4241, 0xFFFF, 7, 0, 0}));
    EXPECT_EQ(Read({Signed16Column(), Unsigned32Column(), AnsiColumn(1)}, 1, 2), texts);
}

TEST_F(PagedRecipe, ValueAcrossTheEndOfTheFlatPartIsSplit)
{
    WriteAll(path, {});
    SetRow({Unsigned32Column()}, 32767, {u"305419896"}); // 0x12345678
    const Bytes bytes = Save();
    ASSERT_EQ(bytes.size(), 77824u);
    EXPECT_EQ(bytes[65534], std::byte{0x78});
    EXPECT_EQ(bytes[65535], std::byte{0x56});
    EXPECT_EQ(bytes[73728], std::byte{0x34});
    EXPECT_EQ(bytes[73729], std::byte{0x12});
    EXPECT_EQ(Read({Unsigned32Column()}, 32767, 1), Texts{u"305419896"});
}

struct CodingCase {
    const char* name;
    ColumnCoding column;
    const char16_t* text;
    std::uint32_t stored;
    friend void PrintTo(const CodingCase& c, std::ostream* out) { *out << c.name; }
};

struct PagedCoding : PagedRecipe, testing::WithParamInterface<CodingCase> {};

TEST_P(PagedCoding, StoresTheText)
{
    WriteAll(path, Bytes(8, std::byte{0xEE}));
    SetRow({GetParam().column}, 0, {GetParam().text});
    Bytes bytes = Save();
    bytes.resize(2 * static_cast<std::size_t>(GetParam().column.dataLength));
    bytes.resize(4);
    EXPECT_EQ(static_cast<std::uint32_t>(LoadLE32(bytes, 0)), GetParam().stored);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, PagedCoding, testing::Values(
    //         name                     column                                   text         stored
    CodingCase{"BinIsScaled",           WithDecimals(Signed16Column(), 2),       u"12.345",   1234},
    CodingCase{"BcdIsNotScaled",        Bcd(WithDecimals(Signed16Column(), 2)),  u"12.345",   12},
    CodingCase{"BcdWithoutDecimals",    Bcd(Signed16Column()),                   u"1234",     1234},
    CodingCase{"BinTakesLowBits",       Signed16Column(),                        u"70000",    4464},
    CodingCase{"BinHexadecimal",        Hex16Column(),                           u"aB",       0xAB},
    CodingCase{"BinOddHexadecimal",     Hex16Column(),                           u"1G",       0x10},
    CodingCase{"BcdHexadecimal",        Bcd(Hex16Column()),                      u"10",       10},
    CodingCase{"BcdHexadecimalLetters", Bcd(Hex16Column()),                      u"AB",       0},
    CodingCase{"Unsigned32",            Unsigned32Column(),                      u"4294967295", 0xFFFFFFFF},
    CodingCase{"NoNumber",              Signed16Column(),                        u"abc",      0},
    CodingCase{"EmptyString",           AnsiColumn(2),                           u"",         0},
    CodingCase{"String",                AnsiColumn(2),                           u"ABCDE",    0x44434241}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(PagedRecipe, UntouchedBcdHexadecimalIsStoredAsItsTextReads) // kept
{
    WriteAll(path, WordBytes({0x10, 0xAB, 0x10}));
    Read({Bcd(Hex16Column()), Bcd(Hex16Column()), Hex16Column()}, 0, 1);
    EXPECT_EQ(Save(), WordBytes({10, 0, 0x10}));
}

TEST_F(PagedRecipe, DoubleIsNotPadded) // kept
{
    WriteAll(path, BytesOf({0, 0, 0, 0, 0, 0, 0xF8, 0x3F}));
    EXPECT_EQ(Read({DoubleColumn()}, 0, 1), Texts{u"1.5"});
    EXPECT_EQ(Save(), BytesOf({0, 0, 0, 0, 0, 0, 0xF8, 0x3F}));
}

TEST_F(PagedRecipe, MissingWordsReadAsZeroWords)
{
    WriteAll(path, WordBytes({7}));
    EXPECT_EQ(Read({WithDecimals(Signed16Column(), 2)}, 0, 2), (Texts{u"0.70", u"0.00"}));
    EXPECT_EQ(Read({Signed16Column(), AnsiColumn(1)}, 50000, 1), (Texts{u"0", u""}));
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
}

TEST_F(PagedRecipe, NoRowsChangeNothing)
{
    WriteAll(path, {});
    EXPECT_EQ(Read({Signed16Column()}, 40000, 0), Texts{});
    EXPECT_EQ(Save(), Bytes());
}

TEST_F(PagedRecipe, LongStretchIsReadAndSavedWhole)
{
    constexpr std::int32_t kRows = 700000; // beyond the flat part, over several pieces of the work
    WriteAll(path, {});
    rows.LayOut({Signed16Column()}, 30000, kRows);
    for (std::int32_t row = 0; row < kRows; row += 1000)
        rows.SetText(row, 0, std::u16string(1, static_cast<char16_t>(u'1' + row / 1000 % 9)));
    const Texts texts = TextsOf(rows);
    CImpatientProgress patient(1000);
    EXPECT_TRUE(SavePaged(rows, path, FileType::Frp, reporter, patient));
    EXPECT_EQ(patient.reports.back(), (std::pair<std::uint64_t, std::uint64_t>{4 * kRows, 4 * kRows}));

    CImpatientProgress reader(1000);
    rows.LayOut({Signed16Column()}, 30000, kRows);
    EXPECT_EQ(ReadPaged(rows, path, FileType::Frp, reporter, reader), Outcome::Done);
    EXPECT_EQ(reader.reports,
              (std::vector<std::pair<std::uint64_t, std::uint64_t>>{{1048576, 1400000}, {1400000, 1400000}}));
    for (std::int32_t row = 0; row < kRows; ++row)
        ASSERT_EQ(rows.Text(row, 0), row % 1000 == 0 ? texts[static_cast<std::size_t>(row)] : u"0");
}

// Files that cannot be opened

TEST_F(PagedRecipe, SaveToAMissingFileWritesAndShowsNothing) // kept
{
    SetRow({Signed16Column()}, 0, {u"7"});
    for (const fs::path& missing : {path, folder / "missing" / "a.frp", fs::path()})
        ExpectLeftOut(missing);
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(PagedRecipe, SaveThroughALinkThatLeadsNowhereWritesAndShowsNothing)
{
    SetRow({Signed16Column()}, 0, {u"7"});
    fs::create_symlink(folder / "nowhere", path);
    ExpectLeftOut(path);
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_F(PagedRecipe, SaveToWhatIsNoFileFails)
{
    SetRow({Signed16Column()}, 0, {u"7"});
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("circle", folder / "circle");
    for (const fs::path& bad : {folder.Path(), folder / "pipe", fs::path("/dev/full"), folder / "circle"}) {
        path = bad;
        ExpectSaveFails();
    }
}

TEST_F(PagedRecipe, SaveOfAProgramThatMayOpenNoFurtherFileFails)
{
    WriteAll(path, WordBytes({7}));
    SetRow({Signed16Column()}, 0, {u"9"});
    {
        const CNoMoreFiles limit;
        ExpectSaveFails();
    }
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
}

TEST_F(PagedRecipe, ReadOfAMissingFileShowsTheWordsOfAZeroCharacter) // kept
{
    const ColumnCoding twoDecimals = WithDecimals(Signed16Column(), 2);
    EXPECT_EQ(
        Read({Signed16Column(), Unsigned32Column(), Hex16Column(), AnsiColumn(2), twoDecimals, DoubleColumn()}, 0, 2),
        (Texts{u"48", u"48", u"30", u"0", u"0.48", u"0.0", u"48", u"48", u"30", u"0", u"0.48", u"0.0"}));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(PagedRecipe, WordsOfAMissingFileAreNotSavedIntoOneThatIsThereMeanwhile)
{
    EXPECT_EQ(Read({Signed16Column()}, 0, 1), Texts{u"48"});
    WriteAll(path, WordBytes({7}));
    EXPECT_FALSE(SavePaged(rows, path, FileType::Frp, reporter, progress));
    EXPECT_EQ(reporter.shown, Texts{u"Can't save file " + PathText(path) + u",please check file or your disk!"});
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
}

TEST_F(PagedRecipe, WordsOfAMissingFileSufficeForTheLongestValue) // kept
{
    ColumnCoding longNumber = Signed16Column();
    longNumber.dataLength = 9;
    EXPECT_EQ(Read({longNumber, AnsiColumn(5)}, 0, 1), (Texts{u"48", u"0"}));
}

TEST_F(PagedRecipe, FileThatCannotBeWrittenIsNeitherReadNorSaved) // kept
{
    WriteAll(path, WordBytes({7}));
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const COrdinaryUser user;
    EXPECT_EQ(Read({Signed16Column()}, 0, 1), Texts{u"48"});
    rows.SetText(0, 0, u"9");
    ExpectLeftOut(path);
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
}

// Failures

TEST_F(PagedRecipe, FullDiskIsReported)
{
    WriteAll(path, {});
    SetRow({Signed16Column()}, 40000, {u"7"});
    for (const rlim_t bytes : {rlim_t{100}, rlim_t{65536 + 4096}}) {
        const CFileSizeLimit limit(bytes);
        ExpectSaveFails();
    }
    EXPECT_EQ(rows.Text(0, 0), u"7") << "the rows stay";
}

TEST_F(PagedRecipe, FullDiskIsReportedByAReadThatMakesPages)
{
    WriteAll(path, Bytes(65536 + 4096));
    rows.LayOut({Signed16Column()}, 40000, 1);
    const CFileSizeLimit limit(65536 + 4096);
    ExpectReadFails();
}

TEST_F(PagedRecipe, WordsWithoutAnAddressAreReported)
{
    WriteAll(path, WordBytes({7}));
    for (const std::int32_t start : {-1, 0x7FFFFFFF}) {
        SetRow({Signed16Column(), Signed16Column()}, start, {u"1", u"2"});
        ExpectSaveFails();
        ExpectReadFails();
    }
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
}

TEST_F(PagedRecipe, LastWordHasAnAddress)
{
    WriteAll(path, {});
    SetRow({Signed16Column()}, 0x7FFFFFFF, {u"7"});
    EXPECT_EQ(Save().size(), 77824u);
    EXPECT_EQ(Read({Signed16Column()}, 0x7FFFFFFF, 1), Texts{u"7"});
}

TEST_F(PagedRecipe, LackOfMemoryIsReported)
{
    WriteAll(path, WordBytes({7, 8}));
    SetRow({Signed16Column(), Signed16Column()}, 0, {u"1", u"2"});
    {
        const CAllocationLimit limit(3);
        ExpectSaveFails();
        ExpectReadFails();
    }
    EXPECT_EQ(ReadAll(path), WordBytes({7, 8}));
}

TEST_F(PagedRecipe, SaveGivenUpWritesNothingAndSaysNothing)
{
    WriteAll(path, WordBytes({7}));
    SetRow({Signed16Column()}, 0, {u"9"});
    CImpatientProgress impatient(0);
    EXPECT_FALSE(SavePaged(rows, path, FileType::Frp, reporter, impatient));
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
}

TEST_F(PagedRecipe, SaveIsNotGivenUpOnceItWrites)
{
    WriteAll(path, WordBytes({7}));
    SetRow({Signed16Column()}, 0, {u"9"});
    CImpatientProgress impatient(1);
    EXPECT_TRUE(SavePaged(rows, path, FileType::Frp, reporter, impatient));
    EXPECT_EQ(ReadAll(path), WordBytes({9}));
}

} // namespace
