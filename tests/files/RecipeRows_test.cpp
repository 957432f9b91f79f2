#include "files/RecipeRows.h"
#include "tests/files/TestColumns.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

CByteBuffer ImageOf(const Bytes& bytes)
{
    CByteBuffer image(bytes.size());
    std::copy(bytes.begin(), bytes.end(), image.Bytes().begin());
    return image;
}

/// Two rows of a signed word, a hexadecimal word and a string of two words, from word 100 on.
CRecipeRows TwoRows()
{
    CRecipeRows rows;
    rows.LayOut({Signed16Column(), Hex16Column(), AnsiColumn(2)}, 100, 2);
    return rows;
}

CRecipeRows TwoFilledRows()
{
    CRecipeRows rows = TwoRows();
    rows.ShowWords(ImageOf(WordBytes({1, 0xAB, 0x4241, 0x0043, 0xFFFF, 0xF, 0x5A59, 0})), RecipeKind::Flat);
    return rows;
}

using Texts = std::vector<std::u16string>;

TEST(RecipeRows, AreNoneAtFirst)
{
    const CRecipeRows rows;
    EXPECT_EQ(rows.RowCount(), 0);
    EXPECT_TRUE(rows.Columns().empty());
    EXPECT_EQ(rows.StretchBytes(), 0u);
    EXPECT_EQ(rows.Text(0, 0), u"");
}

TEST(RecipeRows, LieOneAfterTheOther)
{
    const CRecipeRows rows = TwoRows();
    EXPECT_EQ(rows.RowCount(), 2);
    EXPECT_EQ(rows.StartAddress(), 100);
    EXPECT_EQ(rows.WordsPerRow(), 4);
    EXPECT_EQ(rows.WordOffset(0), 0);
    EXPECT_EQ(rows.WordOffset(1), 1);
    EXPECT_EQ(rows.WordOffset(2), 2);
    EXPECT_EQ(rows.RowAddress(0), WordAddress(100));
    EXPECT_EQ(rows.RowAddress(1), WordAddress(104));
    EXPECT_EQ(rows.FirstByte(), ByteOffset(200));
    EXPECT_EQ(rows.StretchBytes(), 16u);
    EXPECT_EQ(rows.Columns()[1].title, u"Hex");
}

TEST(RecipeRows, AddressesDoNotWrapRound)
{
    CRecipeRows rows;
    rows.LayOut({AnsiColumn(128)}, std::numeric_limits<std::int32_t>::max(), 16777216);
    EXPECT_EQ(rows.FirstByte(), ByteOffset(4294967294));
    EXPECT_EQ(rows.StretchBytes(), 4294967296u);
    EXPECT_EQ(rows.RowAddress(16777215), WordAddress(2147483647 + 16777215LL * 128));
}

TEST(RecipeRows, TakeAnotherGeometryEntirely)
{
    CRecipeRows rows = TwoRows();
    rows.LayOut({AnsiColumn(3), Hex16Column()}, 7, 5);
    EXPECT_EQ(rows.WordOffset(0), 0);
    EXPECT_EQ(rows.WordOffset(1), 3);
    EXPECT_EQ(rows.WordsPerRow(), 4);
}

TEST(RecipeRows, KnowHowMuchOfThemAFlatFileHolds)
{
    const CRecipeRows rows = TwoRows(); // bytes 200 to 215
    EXPECT_EQ(rows.BytesWithin(0), 0u);
    EXPECT_EQ(rows.BytesWithin(200), 0u);
    EXPECT_EQ(rows.BytesWithin(201), 1u);
    EXPECT_EQ(rows.BytesWithin(216), 16u);
    EXPECT_EQ(rows.BytesWithin(500), 16u);
}

TEST(RecipeRows, NegativeRowCountIsNone)
{
    CRecipeRows rows;
    rows.LayOut({Signed16Column()}, 0, -3);
    EXPECT_EQ(rows.RowCount(), 0);
    EXPECT_EQ(rows.StretchBytes(), 0u);
}

TEST(RecipeRows, AreEmptyAfterLayOut)
{
    CRecipeRows rows = TwoFilledRows();
    rows.SetText(0, 0, u"7");
    rows.LayOut({Signed16Column()}, 0, 2);
    EXPECT_EQ(TextsOf(rows), (Texts{u"", u""}));
}

TEST(RecipeRows, ClearLeavesNothing)
{
    CRecipeRows rows = TwoFilledRows();
    rows.Clear();
    EXPECT_EQ(rows.RowCount(), 0);
    EXPECT_EQ(rows.StartAddress(), 0);
    EXPECT_EQ(rows.WordsPerRow(), 0);
    EXPECT_TRUE(rows.Columns().empty());
}

TEST(RecipeRows, ShowTheWords)
{
    EXPECT_EQ(TextsOf(TwoFilledRows()), (Texts{u"1", u"AB", u"ABC", u"-1", u"F", u"YZ"}));
}

TEST(RecipeRows, ShowWhatThereIsOfAShortImage)
{
    CRecipeRows rows = TwoRows();
    rows.ShowWords(ImageOf(BytesOf({1, 0, 0xAB, 0, 'A', 'B', 'C', 0, 0xFF})), RecipeKind::Flat);
    EXPECT_EQ(TextsOf(rows), (Texts{u"1", u"AB", u"ABC", u"0", u"0", u""}));
}

TEST(RecipeRows, PadADoubleByTheKindOfFile)
{
    const Bytes oneAndAHalf = BytesOf({0, 0, 0, 0, 0, 0, 0xF8, 0x3F});
    CRecipeRows rows;
    rows.LayOut({DoubleColumn()}, 0, 1);
    rows.ShowWords(ImageOf(oneAndAHalf), RecipeKind::Flat);
    EXPECT_EQ(rows.Text(0, 0), u"   1.5");
    rows.ShowWords(ImageOf(oneAndAHalf), RecipeKind::Paged);
    EXPECT_EQ(rows.Text(0, 0), u"1.5");
}

TEST(RecipeRows, NewDocumentHasZerosAndEmptyStrings)
{
    CRecipeRows rows = TwoFilledRows();
    rows.ShowNewDocument();
    EXPECT_EQ(TextsOf(rows), (Texts{u"0", u"0", u"", u"0", u"0", u""}));
}

CFieldTable OneFieldAndThree()
{
    CFieldTable fields;
    fields.AddField(u"first");
    fields.EndLine();
    for (const auto* field : {u"a", u"", u"c"})
        fields.AddField(field);
    fields.EndLine();
    return fields;
}

TEST(RecipeRows, ShowTheFieldsOfATableAndZerosForMissingOnes)
{
    CRecipeRows rows = TwoFilledRows();
    rows.ShowFields(OneFieldAndThree());
    EXPECT_EQ(TextsOf(rows), (Texts{u"first", u"0", u"0", u"a", u"", u"c"}));
    rows.SetText(0, 1, u"set");
    EXPECT_EQ(rows.Text(0, 1), u"set");
    rows.ShowNothing();
    EXPECT_EQ(TextsOf(rows), Texts(6));
}

TEST(RecipeRows, ShowZerosForMissingLines)
{
    CRecipeRows rows = TwoFilledRows();
    rows.ShowFields(CFieldTable());
    EXPECT_EQ(TextsOf(rows), Texts(6, u"0"));
}

TEST(RecipeRows, ShowTheSameWordsEverywhere)
{
    CRecipeRows rows = TwoRows();
    rows.ShowEverywhere(ImageOf(WordBytes({0x30, 0})), RecipeKind::Paged);
    EXPECT_EQ(TextsOf(rows), (Texts{u"48", u"30", u"0", u"48", u"30", u"0"}));
    rows.ShowWords(ImageOf(WordBytes({1, 2})), RecipeKind::Paged);
    EXPECT_EQ(TextsOf(rows), (Texts{u"1", u"2", u"", u"0", u"0", u""}));
}

TEST(RecipeRows, KeepAChangedTextAsItWasSet)
{
    CRecipeRows rows = TwoFilledRows();
    EXPECT_TRUE(rows.SetText(1, 0, u" 007.50"));
    EXPECT_TRUE(rows.SetText(1, 2, u""));
    EXPECT_EQ(TextsOf(rows), (Texts{u"1", u"AB", u"ABC", u" 007.50", u"F", u""}));
    EXPECT_TRUE(rows.SetText(1, 0, u"8"));
    EXPECT_EQ(rows.Text(1, 0), u"8");
}

TEST(RecipeRows, ForgetChangesWhenFilledAgain)
{
    CRecipeRows rows = TwoFilledRows();
    rows.SetText(0, 0, u"7");
    rows.ShowNewDocument();
    EXPECT_EQ(rows.Text(0, 0), u"0");
    rows.SetText(0, 0, u"7");
    rows.ShowNothing();
    EXPECT_EQ(rows.Text(0, 0), u"");
    rows.SetText(0, 0, u"7");
    rows.ShowWords(ImageOf(WordBytes({5})), RecipeKind::Flat);
    EXPECT_EQ(rows.Text(0, 0), u"5");
}

TEST(RecipeRows, HaveNothingOutside)
{
    CRecipeRows rows = TwoFilledRows();
    for (const auto& [row, column] : std::vector<std::pair<std::int32_t, std::size_t>>{{-1, 0}, {2, 0}, {0, 3}}) {
        EXPECT_FALSE(rows.SetText(row, column, u"7"));
        EXPECT_EQ(rows.Text(row, column), u"");
    }
    EXPECT_EQ(TextsOf(rows), TextsOf(TwoFilledRows()));
}

TEST(RecipeRows, AppendToWhatIsThere)
{
    CRecipeRows rows = TwoFilledRows();
    rows.SetText(1, 1, u"C0DE");
    std::u16string text = u">";
    rows.AppendText(0, 2, text);
    rows.AppendText(1, 1, text);
    rows.AppendText(9, 9, text);
    EXPECT_EQ(text, u">ABCC0DE");
}

TEST(RecipeRows, ShowTheLastOfAMillion)
{
    constexpr std::int32_t kRows = 1000000;
    CByteBuffer image(std::size_t{kRows} * 2);
    std::fill(image.Bytes().begin(), image.Bytes().end(), std::byte{0x01});
    CRecipeRows rows;
    rows.LayOut({Signed16Column()}, 0, kRows);
    rows.ShowWords(std::move(image), RecipeKind::Flat);
    EXPECT_EQ(rows.Text(kRows - 1, 0), u"257");
    EXPECT_EQ(rows.Text(kRows, 0), u"");
}

TEST(RecipeRows, ACellCountsAsChangedUntilTheRowsAreSaved)
{
    CRecipeRows rows = TwoFilledRows();
    EXPECT_FALSE(rows.IsEdited(1, 0));
    rows.SetText(1, 0, u"7");
    EXPECT_TRUE(rows.IsEdited(1, 0));
    EXPECT_FALSE(rows.IsEdited(0, 0));
    rows.MarkSaved();
    EXPECT_FALSE(rows.IsEdited(1, 0));
    EXPECT_EQ(rows.Text(1, 0), u"7"); // it goes on being shown, and is written with the next save
    rows.SetText(1, 0, u"8");
    EXPECT_TRUE(rows.IsEdited(1, 0));
    EXPECT_FALSE(rows.IsEdited(-1, 0));
    EXPECT_FALSE(rows.IsEdited(0, 3));
}

TEST(RecipeRows, FilledAgainNoCellCountsAsChanged)
{
    CRecipeRows rows = TwoFilledRows();
    rows.SetText(0, 0, u"7");
    rows.ShowWords(ImageOf(WordBytes({1})), RecipeKind::Flat);
    EXPECT_FALSE(rows.IsEdited(0, 0));
}

/// Two rows of a word from 1 to 9.
CRecipeRows TwoNarrowRows()
{
    ColumnCoding column = Signed16Column();
    column.minValue = 1;
    column.maxValue = 9;
    CRecipeRows rows;
    rows.LayOut({column}, 0, 2);
    return rows;
}

TEST(RecipeRows, AnUntouchedCellIsJudgedByItsWords)
{
    CRecipeRows rows = TwoNarrowRows();
    rows.ShowWords(ImageOf(WordBytes({5, 12000})), RecipeKind::Flat);
    EXPECT_FALSE(rows.OutsideLimits(0, 0));
    EXPECT_EQ(rows.OutsideLimits(1, 0), u"12000"); // though it shows "0"
    EXPECT_EQ(rows.Text(1, 0), u"0");
    EXPECT_FALSE(rows.OutsideLimits(2, 0));
    EXPECT_FALSE(rows.OutsideLimits(0, 1));
}

TEST(RecipeRows, AChangedCellIsJudgedByItsText)
{
    CRecipeRows rows = TwoNarrowRows();
    rows.ShowWords(ImageOf(WordBytes({5, 12000})), RecipeKind::Flat);
    rows.SetText(0, 0, u"10");
    rows.SetText(1, 0, u"9");
    EXPECT_EQ(rows.OutsideLimits(0, 0), u"10");
    EXPECT_FALSE(rows.OutsideLimits(1, 0));
}

TEST(RecipeRows, OtherSourcesAreJudgedByWhatTheyShow)
{
    CRecipeRows rows = TwoNarrowRows();
    EXPECT_FALSE(rows.OutsideLimits(0, 0)); // empty, as after a failed read
    rows.ShowNewDocument();
    EXPECT_EQ(rows.OutsideLimits(0, 0), u"0");
    rows.ShowEverywhere(ImageOf(WordBytes({12})), RecipeKind::Paged);
    EXPECT_EQ(rows.OutsideLimits(1, 0), u"12");
    CFieldTable fields;
    fields.AddField(u"77");
    fields.EndLine();
    rows.ShowFields(std::move(fields));
    EXPECT_EQ(rows.OutsideLimits(0, 0), u"77");
}

} // namespace
