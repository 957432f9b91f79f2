#include "files/CellTexts.h"
#include "files/RecipeRows.h"
#include "files/StretchCoding.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/TestColumns.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <map>
#include <new>
#include <random>

// What the cells of rows are made of: the words they were read from, a text, or words that were asked for.

namespace {

CByteBuffer ImageOf(const Bytes& bytes)
{
    CByteBuffer image(bytes.size());
    std::copy(bytes.begin(), bytes.end(), image.Bytes().begin());
    return image;
}

/// Three rows of a float with one decimal and a signed word.
CRecipeRows Rows()
{
    CRecipeRows rows;
    rows.LayOut({FloatColumn(), Signed16Column()}, 0, 3);
    // 235.04, 7; 1.0, 8; 0.0, 9
    rows.ShowWords(ImageOf(WordBytes({0x0A3D, 0x436B, 7, 0x0000, 0x3F80, 8, 0, 0, 9})), RecipeKind::Flat);
    return rows;
}

Bytes Coded(const CRecipeRows& rows)
{
    Bytes image(static_cast<std::size_t>(rows.StretchBytes()));
    CNoProgress progress;
    EXPECT_EQ(CodeStretch(rows, RecipeKind::Flat, image, progress), Outcome::Done);
    return image;
}

std::vector<CellEdit> Texts(std::initializer_list<std::pair<CellPlace, const char16_t*>> texts)
{
    std::vector<CellEdit> edits;
    for (const auto& [place, text] : texts)
        edits.push_back({place, CCellState::OfText(text)});
    return edits;
}

TEST(CellStates, AnExchangeTakesTheFormerStatesAndTheSameCallTakesItBack)
{
    CRecipeRows rows = Rows();
    auto edits = Texts({{{0, 0}, u"1.5"}, {{1, 1}, u"-3"}});
    rows.Exchange(edits);
    EXPECT_EQ(rows.Text(0, 0), u"1.5");
    EXPECT_EQ(rows.Text(1, 1), u"-3");
    EXPECT_TRUE(edits[0].other.IsUntouched());
    EXPECT_EQ(rows.EditedCount(), 2u);
    rows.Exchange(edits);
    EXPECT_EQ(rows.Text(0, 0), u"235.0");
    EXPECT_EQ(edits[0].other, CCellState::OfText(u"1.5"));
    EXPECT_EQ(rows.EditedCount(), 0u);
    EXPECT_FALSE(rows.IsEdited(0, 0));
}

TEST(CellStates, AFloatThatWasTakenBackHasItsWordsAgainWhole)
{
    CRecipeRows rows = Rows();
    auto edits = Texts({{{0, 0}, u"1.5"}});
    rows.Exchange(edits);
    rows.Exchange(edits);
    CCellTexts cells(rows);
    cells.MoveTo(0, 0);
    const auto words = cells.UntouchedWords();
    ASSERT_GE(words.size(), 4u);
    EXPECT_EQ(Bytes(words.begin(), words.begin() + 4), WordBytes({0x0A3D, 0x436B}));
}

TEST(CellStates, ExactWordsAreShownAndCodedAsTheyAre)
{
    CRecipeRows rows = Rows();
    std::vector<CellEdit> edits{{{0, 0}, CCellState::OfWords({u"\x0A3D\x436B", 2})}};
    rows.Exchange(edits);
    EXPECT_EQ(rows.Text(0, 0), u"235.0");
    EXPECT_TRUE(rows.IsEdited(0, 0));
    const Bytes coded = Coded(rows);
    EXPECT_EQ(Bytes(coded.begin(), coded.begin() + 4), WordBytes({0x0A3D, 0x436B}));
}

TEST(CellStates, ExactWordsOutsideTheLimitsAreJudgedAsWords)
{
    ColumnCoding column = Signed16Column();
    column.minValue = 0;
    column.maxValue = 9;
    CRecipeRows rows;
    rows.LayOut({column}, 0, 1);
    rows.ShowWords(ImageOf(WordBytes({5})), RecipeKind::Flat);
    std::vector<CellEdit> edits{{{0, 0}, CCellState::OfWords({u"\x0064", 1})}};
    rows.Exchange(edits);
    EXPECT_EQ(rows.OutsideLimits(0, 0), u"100");
}

TEST(CellStates, ATextLikeTheOneShownIsAnEditAllTheSame)
{
    CRecipeRows rows = Rows();
    rows.SetText(0, 0, u"235.0"); // its words are others: those hold hidden digits
    EXPECT_TRUE(rows.IsEdited(0, 0));
}

TEST(CellStates, AfterASaveACellIsEditedWhileItIsNotAsItWasSaved)
{
    CRecipeRows rows = Rows();
    rows.SetText(0, 1, u"5");
    rows.MarkSaved();
    EXPECT_EQ(rows.EditedCount(), 0u);
    rows.SetText(0, 1, u"6");
    EXPECT_TRUE(rows.IsEdited(0, 1));
    rows.SetText(0, 1, u"5");
    EXPECT_FALSE(rows.IsEdited(0, 1));
    EXPECT_EQ(rows.EditedCount(), 0u);
}

TEST(CellStates, TakenBackPastASaveACellIsEdited)
{
    CRecipeRows rows = Rows();
    auto edits = Texts({{{0, 1}, u"5"}});
    rows.Exchange(edits);
    rows.MarkSaved();
    rows.Exchange(edits);
    EXPECT_EQ(rows.Text(0, 1), u"7");
    EXPECT_TRUE(rows.IsEdited(0, 1));
    rows.Exchange(edits);
    EXPECT_FALSE(rows.IsEdited(0, 1));
}

TEST(CellStates, EditedCellsAreFoundInTheirOrder)
{
    CRecipeRows rows = Rows();
    EXPECT_EQ(rows.NextEdited({-1, 0}), std::nullopt);
    rows.SetText(0, 1, u"saved");
    rows.MarkSaved();
    rows.SetText(2, 0, u"1");
    rows.SetText(1, 1, u"2");
    EXPECT_EQ(rows.EditedPlaces(), (std::vector<CellPlace>{{1, 1}, {2, 0}}));
    EXPECT_EQ(rows.NextEdited({-1, 0}), (CellPlace{1, 1})); // what was saved is not edited
    EXPECT_EQ(rows.NextEdited({1, 0}), (CellPlace{1, 1}));
    EXPECT_EQ(rows.NextEdited({1, 1}), (CellPlace{2, 0}));
    EXPECT_EQ(rows.NextEdited({2, 0}), std::nullopt);
    EXPECT_EQ(rows.PreviousEdited({2, 1}), (CellPlace{2, 0}));
    EXPECT_EQ(rows.PreviousEdited({2, 0}), (CellPlace{1, 1}));
    EXPECT_EQ(rows.PreviousEdited({1, 1}), std::nullopt);
    EXPECT_EQ(rows.PreviousEdited({-1, 0}), std::nullopt);
}

TEST(CellStates, RowsAreEditedWhereTheyAreNotShownAsOthersWereSaved)
{
    CRecipeRows saved = Rows();
    saved.SetText(0, 1, u"5");
    saved.SetText(1, 1, u"6");
    saved.MarkSaved();
    saved.SetText(1, 1, u"60"); // not saved
    CRecipeRows rows = Rows();
    rows.SetText(1, 1, u"6");
    rows.SetText(2, 1, u"9"); // as it was read
    rows.SetText(2, 0, u"1.5");
    rows.TakeSavedFrom(saved);
    EXPECT_EQ(rows.EditedPlaces(), (std::vector<CellPlace>{{0, 1}, {2, 0}}));
    rows.SetText(0, 1, u"5");
    EXPECT_FALSE(rows.IsEdited(0, 1)); // as it was saved
}

TEST(CellStates, RowsReadFromOtherWordsAreEditedWhereTheyShowOthers)
{
    CRecipeRows rows = Rows();
    CRecipeRows saved = Rows();
    saved.ShowWords(ImageOf(WordBytes({0x0A3D, 0x436B, 7, 0x0000, 0x3F80, 80, 0, 0})), RecipeKind::Flat);
    rows.TakeSavedFrom(saved);
    EXPECT_EQ(rows.EditedPlaces(), (std::vector<CellPlace>{{1, 1}, {2, 1}})); // 80 for 8, and none for 9
}

TEST(CellStates, ExactWordsAreComparedAsWords)
{
    const auto exact = [](std::u16string_view words) {
        return std::vector<CellEdit>{{{0, 0}, CCellState::OfWords(words)}};
    };
    CRecipeRows saved = Rows();
    auto edit = exact({u"\x0A3E\x436B", 2});
    saved.Exchange(edit);
    saved.MarkSaved();
    CRecipeRows rows = Rows();
    rows.TakeSavedFrom(saved);
    EXPECT_TRUE(rows.IsEdited(0, 0)); // both show 235.0
    edit = exact({u"\x0A3E\x436B", 2});
    rows.Exchange(edit);
    EXPECT_FALSE(rows.IsEdited(0, 0));
}

TEST(CellStates, RowsOfAnotherLayoutKeepTheirEdits)
{
    CRecipeRows saved = Rows();
    saved.LayOut({Signed16Column()}, 0, 3);
    CRecipeRows rows = Rows();
    rows.SetText(0, 1, u"5");
    rows.TakeSavedFrom(saved);
    EXPECT_EQ(rows.EditedPlaces(), (std::vector<CellPlace>{{0, 1}}));
}

TEST(CellStates, RowsOfTheSameBytesShareThem)
{
    const CRecipeRows rows = Rows();
    CRecipeRows same = Rows();
    EXPECT_NE(same.SourceId(), rows.SourceId());
    same.ShareSourceOf(rows);
    EXPECT_EQ(same.SourceId(), rows.SourceId());
    CRecipeRows other = Rows();
    other.ShowWords(ImageOf(WordBytes({1, 2, 3, 4, 5, 6, 7, 8, 9})), RecipeKind::Flat);
    other.ShareSourceOf(rows);
    EXPECT_NE(other.SourceId(), rows.SourceId());
    EXPECT_EQ(other.Text(0, 1), u"3");
}

TEST(CellStates, RowsOfTheSameFieldsShareThem)
{
    const auto fieldsOf = [](std::u16string_view field) {
        CFieldTable fields;
        fields.AddField(field);
        fields.EndLine();
        return fields;
    };
    CRecipeRows rows = Rows();
    rows.ShowFields(fieldsOf(u"7"));
    CRecipeRows same = Rows();
    same.ShowFields(fieldsOf(u"7"));
    same.ShareSourceOf(rows);
    EXPECT_EQ(same.SourceId(), rows.SourceId());
    same.ShowFields(fieldsOf(u"8"));
    same.ShareSourceOf(rows);
    EXPECT_EQ(same.Text(0, 0), u"8");
}

TEST(CellStates, TheMemoryOfRowsGrowsWithWhatWasReadAndWithTouchedCells)
{
    CRecipeRows rows = Rows();
    EXPECT_EQ(rows.SourceBytes(), 18u);
    const std::size_t before = rows.FurtherBytes();
    rows.SetText(0, 0, std::u16string(1000, u'1'));
    EXPECT_GE(rows.FurtherBytes(), before + 2000);
    rows.MarkSaved();
    rows.SetText(0, 0, u"1"); // the saved state is kept beside
    EXPECT_GE(rows.FurtherBytes(), before + 2000);
    rows.ShowNothing();
    EXPECT_EQ(rows.SourceId(), nullptr);
    EXPECT_EQ(rows.SourceBytes(), 0u);
    EXPECT_EQ(rows.FurtherBytes(), before);
}

TEST(CellStates, CopiesOfRowsShareWhatWasRead)
{
    CRecipeRows rows;
    rows.LayOut({Signed16Column()}, 0, 1000000);
    rows.ShowWords(CByteBuffer(2000000), RecipeKind::Flat);
    const CAllocationLimit limit(1000000); // less than the words
    CRecipeRows copy = rows;
    copy.SetText(0, 0, u"5");
    EXPECT_EQ(copy.Text(0, 0), u"5");
    EXPECT_NE(rows.Text(0, 0), u"5");
}

TEST(CellStates, WithoutMemoryNothingIsExchanged)
{
    CRecipeRows rows = Rows();
    rows.SetText(1, 1, std::u16string(100000, u'1'));
    rows.MarkSaved();
    auto edits = Texts({{{0, 1}, u"5"}, {{1, 1}, u"6"}});
    {
        const CAllocationLimit limit(CAllocationLimit::kNone, 10000); // too little to keep the saved text
        EXPECT_THROW(rows.Exchange(edits), std::bad_alloc);
    }
    EXPECT_EQ(rows.Text(0, 1), u"7");
    EXPECT_EQ(rows.Text(1, 1).size(), 100000u);
    EXPECT_EQ(rows.EditedCount(), 0u);
    EXPECT_EQ(edits[0].other, CCellState::OfText(u"5"));
    rows.Exchange(edits);
    EXPECT_EQ(rows.EditedCount(), 2u);
}

/// The cells as a plain map keeps them.
struct Model {
    std::map<CellPlace, CCellState> now;
    std::map<CellPlace, CCellState> saved;

    CCellState At(const std::map<CellPlace, CCellState>& states, CellPlace place) const
    {
        const auto found = states.find(place);
        return found == states.end() ? CCellState() : found->second;
    }
};

struct RandomStates : testing::TestWithParam<unsigned> {};

TEST_P(RandomStates, AreThoseOfAPlainMap)
{
    constexpr std::int32_t kRows = 7;
    std::mt19937 random(GetParam());
    CRecipeRows rows;
    rows.LayOut({Signed16Column(), Signed16Column(), Signed16Column()}, 0, kRows);
    rows.ShowWords(CByteBuffer(2 * 3 * kRows), RecipeKind::Flat);
    Model model;
    const auto randomState = [&random] {
        const char16_t unit = static_cast<char16_t>(u'0' + random() % 3);
        switch (random() % 4) {
        case 0:
            return CCellState();
        case 1:
            return CCellState::OfWords({&unit, 1});
        default:
            return CCellState::OfText({&unit, 1});
        }
    };
    for (int step = 0; step < 20000; ++step) {
        if (random() % 50 == 0) {
            rows.MarkSaved();
            model.saved = model.now;
        }
        std::map<CellPlace, CCellState> chosen;
        for (auto cells = random() % 5; cells > 0; --cells)
            chosen[{static_cast<std::int32_t>(random() % kRows), static_cast<std::uint32_t>(random() % 3)}] =
                randomState();
        std::vector<CellEdit> edits;
        for (const auto& [place, state] : chosen)
            edits.push_back({place, state});
        rows.Exchange(edits);
        for (std::size_t i = 0; i < edits.size(); ++i)
            ASSERT_EQ(edits[i].other, model.At(model.now, edits[i].place));
        for (const auto& [place, state] : chosen)
            model.now[place] = state;
        std::size_t edited = 0;
        for (std::int32_t row = 0; row < kRows; ++row)
            for (std::uint32_t column = 0; column < 3; ++column) {
                const CellPlace place{row, column};
                ASSERT_EQ(rows.State(place), model.At(model.now, place)) << "step " << step;
                const bool isEdited = model.At(model.now, place) != model.At(model.saved, place);
                ASSERT_EQ(rows.IsEdited(row, column), isEdited) << "step " << step;
                edited += isEdited ? 1 : 0;
            }
        ASSERT_EQ(rows.EditedCount(), edited) << "step " << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomStates, testing::Values(1u, 2u, 3u));

} // namespace
