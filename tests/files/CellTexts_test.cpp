#include "files/CellTexts.h"
#include "tests/files/TestColumns.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// Two rows of two words; the image ends after the first word of row 1.
CRecipeRows ThreeOfFourWords()
{
    CByteBuffer image(6);
    const Bytes words = WordBytes({1, 2, 3});
    std::copy(words.begin(), words.end(), image.Bytes().begin());
    CRecipeRows rows;
    rows.LayOut({Signed16Column(), Signed16Column()}, 0, 2);
    rows.ShowWords(std::move(image), RecipeKind::Flat);
    return rows;
}

std::vector<std::u16string> TextsInOrder(const CRecipeRows& rows)
{
    std::vector<std::u16string> texts;
    CCellTexts walk(rows);
    for (std::int32_t row = 0; row < rows.RowCount(); ++row)
        for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
            walk.MoveTo(row, column);
            texts.emplace_back(walk.Text());
        }
    return texts;
}

using Texts = std::vector<std::u16string>;

TEST(CellTexts, AreThoseOfTheCells)
{
    EXPECT_EQ(TextsInOrder(ThreeOfFourWords()), (Texts{u"1", u"2", u"3", u"0"}));
}

TEST(CellTexts, ChangedOnesComeAtTheirPlaces)
{
    CRecipeRows rows = ThreeOfFourWords();
    rows.SetText(1, 1, u"last");
    rows.SetText(0, 0, u"");
    EXPECT_EQ(TextsInOrder(rows), (Texts{u"", u"2", u"3", u"last"}));
}

TEST(CellTexts, CellsMayBeLeftOut)
{
    CRecipeRows rows = ThreeOfFourWords();
    for (std::size_t column = 0; column < 2; ++column) {
        rows.SetText(0, column, u"first row");
        rows.SetText(1, column, u"second row");
    }
    CCellTexts walk(rows);
    walk.MoveTo(1, 1);
    EXPECT_EQ(walk.Text(), u"second row");
}

TEST(CellTexts, CellMayBeAskedTwice)
{
    CRecipeRows rows = ThreeOfFourWords();
    rows.SetText(0, 1, u"changed");
    CCellTexts walk(rows);
    for (int i = 0; i < 2; ++i) {
        walk.MoveTo(0, 1);
        EXPECT_EQ(walk.Text(), u"changed");
        EXPECT_EQ(walk.Text(), u"changed");
    }
}

TEST(CellTexts, GiveTheWordsOfUntouchedCellsOnly)
{
    CRecipeRows rows = ThreeOfFourWords();
    rows.SetText(0, 1, u"2");
    CCellTexts walk(rows);
    walk.MoveTo(0, 0);
    EXPECT_TRUE(std::ranges::equal(walk.UntouchedWords(), WordBytes({1, 2, 3})));
    walk.MoveTo(0, 1);
    EXPECT_TRUE(walk.UntouchedWords().empty());
    walk.MoveTo(1, 0);
    EXPECT_TRUE(std::ranges::equal(walk.UntouchedWords(), WordBytes({3})));
    walk.MoveTo(1, 1);
    EXPECT_TRUE(walk.UntouchedWords().empty());
}

TEST(CellTexts, AppendToWhatIsThere)
{
    CRecipeRows rows = ThreeOfFourWords();
    rows.SetText(0, 1, u"changed");
    CCellTexts walk(rows);
    std::u16string text = u">";
    for (std::size_t column = 0; column < 2; ++column) {
        walk.MoveTo(0, column);
        walk.AppendTo(text);
    }
    EXPECT_EQ(text, u">1changed");
}

TEST(CellTexts, AreTheFieldsOfATable)
{
    CFieldTable fields;
    fields.AddField(u"a");
    fields.EndLine();
    CRecipeRows rows = ThreeOfFourWords();
    rows.ShowFields(std::move(fields));
    rows.SetText(1, 0, u"changed");
    EXPECT_EQ(TextsInOrder(rows), (Texts{u"a", u"0", u"changed", u"0"}));
    CCellTexts walk(rows);
    walk.MoveTo(0, 0);
    EXPECT_TRUE(walk.UntouchedWords().empty());
}

TEST(CellTexts, SameWordsEverywhereAreTheWordsOfEachCell)
{
    CByteBuffer image(4);
    const Bytes words = WordBytes({0x30, 0});
    std::copy(words.begin(), words.end(), image.Bytes().begin());
    CRecipeRows rows = ThreeOfFourWords();
    rows.ShowEverywhere(std::move(image), RecipeKind::Paged);
    EXPECT_EQ(TextsInOrder(rows), (Texts{u"48", u"48", u"48", u"48"}));
    CCellTexts walk(rows);
    walk.MoveTo(1, 1);
    EXPECT_TRUE(std::ranges::equal(walk.UntouchedWords(), words));
}

TEST(CellTexts, NewDocumentHasNoWords)
{
    CRecipeRows rows = ThreeOfFourWords();
    rows.ShowNewDocument();
    CCellTexts walk(rows);
    walk.MoveTo(0, 0);
    EXPECT_TRUE(walk.UntouchedWords().empty());
    EXPECT_EQ(walk.Text(), u"0");
}

} // namespace
