#include "disk/File.h"
#include "files/BinaryRecipeFile.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

struct BinaryRecipe : testing::Test {
    /// Lays the rows out and reads them; a failure is a failed test.
    void Read(std::vector<ColumnCoding> columns, std::int32_t startAddress, std::int32_t rowCount)
    {
        rows.LayOut(std::move(columns), startAddress, rowCount);
        ASSERT_EQ(ReadBinaryRecipe(rows, path, false, reporter, progress), Outcome::Done);
        ASSERT_TRUE(reporter.shown.empty());
    }

    void Save()
    {
        ASSERT_TRUE(SaveBinaryRecipe(rows, path, reporter, progress));
        ASSERT_TRUE(reporter.shown.empty());
    }

    Texts Shown() const
    {
        Texts texts;
        for (std::int32_t row = 0; row < rows.RowCount(); ++row)
            for (std::size_t column = 0; column < rows.Columns().size(); ++column)
                texts.push_back(rows.Text(row, column));
        return texts;
    }

    CTempFolder folder;
    fs::path path = folder / "a.rcp";
    CRecipeRows rows;
    CRecordingReporter reporter;
    CNoProgress progress;
};

const std::vector<ColumnCoding> kFourSigned(4, Signed16Column());

TEST_F(BinaryRecipe, ShowsZerosPastTheEnd)
{
    WriteAll(path, WordBytes({100, 101, 102, 103, 104, 105, 106, 107, 108, 109}));
    Read(kFourSigned, 8, 1);
    EXPECT_EQ(Shown(), (Texts{u"108", u"109", u"0", u"0"}));
}

TEST_F(BinaryRecipe, SaveGrowsTheFileToTheEndOfTheLastRow)
{
    WriteAll(path, WordBytes({100, 101, 102, 103, 104, 105, 106, 107, 108, 109}));
    Read(kFourSigned, 8, 1);
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 0, 0}));
}

TEST_F(BinaryRecipe, SaveToANewPathBeginsWithZeros)
{
    rows.LayOut({Signed16Column()}, 3, 2);
    rows.SetText(0, 0, u"5");
    rows.SetText(1, 0, u"-2");
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({0, 0, 0, 5, 0xFFFE}));
}

TEST_F(BinaryRecipe, NewDocumentShowsZerosAndEmptyStringsAndSavesZeroWords)
{
    rows.LayOut({Signed16Column(), AnsiColumn(2)}, 0, 2);
    ASSERT_EQ(ReadBinaryRecipe(rows, {}, true, reporter, progress), Outcome::Done);
    EXPECT_EQ(Shown(), (Texts{u"0", u"", u"0", u""}));
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({0, 0, 0, 0, 0, 0}));
}

TEST_F(BinaryRecipe, NewDocumentReadsAGivenPathAllTheSame)
{
    WriteAll(path, WordBytes({7}));
    rows.LayOut({Signed16Column()}, 0, 1);
    ASSERT_EQ(ReadBinaryRecipe(rows, path, true, reporter, progress), Outcome::Done);
    EXPECT_EQ(Shown(), Texts{u"7"});
}

TEST_F(BinaryRecipe, RowsFollowOneAnotherWithoutGaps)
{
    // Row 0 is words 1 to 5, row 1 words 6 to 10: a signed word, a 32-bit value with its low half first, two of text.
    WriteAll(path, WordBytes({99, 0xFFFF, 2, 1, 0x4241, 0x4443, 7, 0xFFFF, 0xFFFF, 0x0061, 0, 99}));
    Read({Signed16Column(), Unsigned32Column(), AnsiColumn(2)}, 1, 2);
    EXPECT_EQ(Shown(), (Texts{u"-1", u"65538", u"ABCD", u"7", u"-1", u"a"}));
}

TEST_F(BinaryRecipe, UntouchedRowsSaveAsTheyWereRead)
{
    const Bytes bytes = WordBytes({99, 0xFFFF, 2, 1, 0x4241, 0x4443, 7, 0xFFFF, 0xFFFF, 0x0061, 0, 99});
    WriteAll(path, bytes);
    Read({Signed16Column(), Unsigned32Column(), AnsiColumn(2)}, 1, 2);
    Save();
    EXPECT_EQ(ReadAll(path), bytes);
}

TEST_F(BinaryRecipe, ChangedCellChangesItsBytesOnly)
{
    WriteAll(path, WordBytes({1, 2, 3, 4, 5, 6, 7, 8, 9}));
    Read({Signed16Column(), Unsigned32Column()}, 1, 2);
    rows.SetText(1, 1, u"65537");
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({1, 2, 3, 4, 5, 1, 1, 8, 9}));
}

TEST_F(BinaryRecipe, SaveWritesEveryCellOfOtherRowsIntoAnotherFile)
{
    WriteAll(path, WordBytes({1, 2, 3}));
    Read({Signed16Column()}, 0, 3);
    path = folder / "other.rcp";
    WriteAll(path, WordBytes({11, 12, 13, 14}));
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({1, 2, 3, 14}));
}

TEST_F(BinaryRecipe, TypedTextStaysAsTypedAfterASave)
{
    WriteAll(path, WordBytes({1, 2}));
    Read({Signed16Column()}, 0, 2);
    rows.SetText(0, 0, u" 3.99 bar");
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({3, 2}));
    EXPECT_EQ(Shown(), (Texts{u" 3.99 bar", u"2"}));
}

TEST_F(BinaryRecipe, TextThatIsNoNumberIsSavedAsZero)
{
    WriteAll(path, WordBytes({1, 2, 3}));
    Read({Signed16Column()}, 0, 3);
    rows.SetText(0, 0, u"abc");
    rows.SetText(1, 0, u"");
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({0, 0, 3}));
}

TEST_F(BinaryRecipe, ShownZeroOfAWordBelowItsLimitIsSavedAsShown)
{
    ColumnCoding narrow = Signed16Column();
    narrow.minValue = -999;
    narrow.maxValue = 9999;
    WriteAll(path, WordBytes({12000, 9999}));
    Read({narrow}, 0, 2);
    EXPECT_EQ(Shown(), (Texts{u"0", u"9999"}));
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({0, 9999}));
}

TEST_F(BinaryRecipe, FileThatEndsBeforeTheStartShowsZeros)
{
    WriteAll(path, WordBytes({1, 2}));
    Read({Signed16Column(), AnsiColumn(1)}, 5, 1);
    EXPECT_EQ(Shown(), (Texts{u"0", u""}));
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({1, 2, 0, 0, 0, 0, 0}));
}

TEST_F(BinaryRecipe, OddByteAtTheEndIsNoWord)
{
    WriteAll(path, BytesOf({1, 0, 0x7F}));
    Read({Signed16Column(), Signed16Column()}, 0, 1);
    EXPECT_EQ(Shown(), (Texts{u"1", u"0"}));
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({1, 0}));
}

TEST_F(BinaryRecipe, OddByteAtTheEndIsPartOfAHexadecimalValueAndOfAString)
{
    WriteAll(path, BytesOf({1, 0, 'A'}));
    Read({Signed16Column(), Hex16Column()}, 0, 1);
    EXPECT_EQ(Shown(), (Texts{u"1", u"41"}));
    Read({Signed16Column(), AnsiColumn(1)}, 0, 1);
    EXPECT_EQ(Shown(), (Texts{u"1", u"A"}));
}

TEST_F(BinaryRecipe, DoubleIsPaddedOnTheLeft)
{
    WriteAll(path, BytesOf({0, 0, 0, 0, 0, 0, 0xF8, 0x3F}));
    Read({DoubleColumn()}, 0, 1);
    EXPECT_EQ(Shown(), Texts{u"   1.5"});
    Save();
    EXPECT_EQ(ReadAll(path), BytesOf({0, 0, 0, 0, 0, 0, 0xF8, 0x3F}));
}

TEST_F(BinaryRecipe, UnknownTypeShowsNothingAndSavesZeroBytes)
{
    ColumnCoding unknown = Signed16Column();
    unknown.dataType = static_cast<DataType>(77);
    WriteAll(path, WordBytes({1, 2, 3}));
    Read({Signed16Column(), unknown, Signed16Column()}, 0, 1);
    EXPECT_EQ(Shown(), (Texts{u"1", u"", u"3"}));
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({1, 0, 3}));
}

TEST_F(BinaryRecipe, ColumnWithoutWordsTakesNone)
{
    ColumnCoding none = Hex16Column();
    none.dataLength = 0;
    WriteAll(path, WordBytes({1, 2, 3}));
    Read({Signed16Column(), none, Signed16Column()}, 0, 1);
    EXPECT_EQ(rows.Text(0, 0), u"1");
    EXPECT_EQ(rows.Text(0, 2), u"2");
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({1, 2, 3}));
}

TEST_F(BinaryRecipe, NoRowsLeaveTheFileAsItIs)
{
    WriteAll(path, WordBytes({1, 2}));
    Read({Signed16Column()}, 1, 0);
    Save();
    EXPECT_EQ(ReadAll(path), WordBytes({1, 2}));
}

TEST_F(BinaryRecipe, StartsBeyondThreeGigabytes)
{
    constexpr std::int32_t kStart = 0x60000000; // words: byte 3 GiB
    constexpr std::uint64_t kFirstByte = std::uint64_t{3} << 30;
    rows.LayOut({Signed16Column(), Signed16Column()}, kStart, 1);
    rows.SetText(0, 0, u"258");
    Save();

    const CFile file(path, CFile::Mode::Read);
    Bytes bytes(6);
    EXPECT_EQ(file.Size(), kFirstByte + 4);
    EXPECT_EQ(file.ReadAt(kFirstByte - 2, bytes), 6u);
    EXPECT_EQ(bytes, BytesOf({0, 0, 2, 1, 0, 0}));

    Read({Signed16Column()}, kStart - 1, 2);
    EXPECT_EQ(Shown(), (Texts{u"0", u"258"}));
}

TEST_F(BinaryRecipe, ProgressGrowsToItsTotal)
{
    constexpr std::int32_t kRows = 200000; // 400,000 bytes: coded in three pieces and a rest
    CImpatientProgress patient(1000);
    rows.LayOut({Signed16Column()}, 0, kRows);
    ASSERT_TRUE(SaveBinaryRecipe(rows, path, reporter, patient));
    EXPECT_EQ(patient.reports,
              (std::vector<std::pair<std::uint64_t, std::uint64_t>>{
                  {131072, 800000}, {262144, 800000}, {393216, 800000}, {400000, 800000}, {800000, 800000}}));
    EXPECT_EQ(ReadAll(path), Bytes(2 * kRows));
}

} // namespace
