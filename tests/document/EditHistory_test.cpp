#include "document/EditHistory.h"

#include <gtest/gtest.h>

#include <string>

// The edits of a document: their order, what is forgotten, and which state is the saved one.

namespace {

Edit Typed(std::int32_t row, std::size_t length = 1)
{
    Edit edit;
    edit.steps.emplace_back(CellsStep{{{{row, 0}, CCellState::OfText(std::u16string(length, u'1'))}}});
    return edit;
}

void Add(CEditHistory& history, Edit edit)
{
    history.Add(CEditHistory::Prepare(std::move(edit)), nullptr);
}

std::int32_t RowOf(const Edit* edit)
{
    return edit ? std::get<CellsStep>(edit->steps.front()).edits.front().place.row : -1;
}

TEST(EditHistory, EditsAreUndoneAndMadeAgainInTheirOrder)
{
    CEditHistory history;
    Add(history, Typed(1));
    Add(history, Typed(2));
    EXPECT_EQ(RowOf(history.NextToUndo()), 2);
    history.StepBack(nullptr);
    EXPECT_EQ(RowOf(history.NextToUndo()), 1);
    EXPECT_EQ(RowOf(history.NextToRedo()), 2);
    history.StepForth(nullptr);
    EXPECT_EQ(RowOf(history.NextToUndo()), 2);
    EXPECT_EQ(history.NextToRedo(), nullptr);
}

TEST(EditHistory, TheOldestGoFirstWhenTheMemoryIsUsedUp)
{
    CEditHistory history(20'000);
    for (std::int32_t row = 0; row < 1000; ++row) {
        Add(history, Typed(row, 100));
        EXPECT_LE(history.Bytes(), 20'000u);
        EXPECT_EQ(RowOf(history.NextToUndo()), row);
    }
    int kept = 0;
    for (; history.NextToUndo(); ++kept)
        history.StepBack(nullptr);
    EXPECT_GT(kept, 20);
    EXPECT_LT(kept, 100);
    EXPECT_EQ(RowOf(history.NextToRedo()), 1000 - kept);
}

TEST(EditHistory, TheNewestStaysHoweverLargeItIs)
{
    CEditHistory history(1000);
    Add(history, Typed(1));
    Add(history, Typed(2, 100'000));
    EXPECT_EQ(RowOf(history.NextToUndo()), 2);
    history.StepBack(nullptr);
    EXPECT_EQ(history.NextToUndo(), nullptr);
    EXPECT_EQ(RowOf(history.NextToRedo()), 2);
}

TEST(EditHistory, NumbersOfEditsAreNoLimit)
{
    CEditHistory history;
    for (std::int32_t row = 0; row < 100'000; ++row)
        Add(history, Typed(row));
    int kept = 0;
    for (; history.NextToUndo(); ++kept)
        history.StepBack(nullptr);
    EXPECT_EQ(kept, 100'000);
}

TEST(EditHistory, AsMuchMemoryAsThereIsMayBeUsed)
{
    CEditHistory one;
    Add(one, Typed(1, 100));
    CEditHistory history(2 * one.Bytes());
    Add(history, Typed(1, 100));
    Add(history, Typed(2, 100));
    history.StepBack(nullptr);
    EXPECT_NE(history.NextToUndo(), nullptr);
}

TEST(EditHistory, UndoneEditsTakeTheirMemoryUntilTheyAreForgotten)
{
    CEditHistory history;
    Add(history, Typed(1, 500));
    const std::size_t one = history.Bytes();
    Add(history, Typed(2, 500));
    EXPECT_EQ(history.Bytes(), 2 * one);
    history.StepBack(nullptr);
    EXPECT_EQ(history.Bytes(), 2 * one);
    history.StepForth(nullptr);
    EXPECT_EQ(history.Bytes(), 2 * one);
    history.StepBack(nullptr);
    history.StepBack(nullptr);
    Add(history, Typed(3, 500));
    EXPECT_EQ(history.Bytes(), one);
}

TEST(EditHistory, AllMemoryIsGivenBack)
{
    CEditHistory history;
    Add(history, Typed(1, 500));
    Add(history, Typed(2, 500));
    history.StepBack(nullptr);
    Add(history, Typed(3, 500));
    EXPECT_GT(history.Bytes(), 2000u);
    history.Clear(true);
    EXPECT_EQ(history.Bytes(), 0u);
}

Edit Read(const CRecipeRows& rows)
{
    Edit edit{EditKind::Reading, {}};
    edit.steps.emplace_back(RowsStep{std::make_unique<ShownRows>()});
    std::get<RowsStep>(edit.steps.front()).other->rows = rows;
    return edit;
}

TEST(EditHistory, RowsThatShareTheirBytesWithThoseShownCostNoMoreThanTheirStates)
{
    CRecipeRows rows;
    rows.LayOut({{.title = u"W", .dataType = DataType::Signed16, .dataLength = 1, .codeType = CodeType::Bin}}, 0,
                50'000);
    rows.ShowWords(CByteBuffer(100'000), RecipeKind::Flat);
    CEditHistory history;
    history.Add(CEditHistory::Prepare(Read(rows)), rows.SourceId());
    EXPECT_LT(history.Bytes(), 10'000u);
    history.Add(CEditHistory::Prepare(Read(rows)), nullptr);
    EXPECT_GT(history.Bytes(), 100'000u);
    EXPECT_LT(history.Bytes(), 120'000u);
}

TEST(EditHistory, AnUndoneReadingIsWeighedByTheRowsThatAreShownThen)
{
    CRecipeRows rows;
    rows.LayOut({{.title = u"W", .dataType = DataType::Signed16, .dataLength = 1, .codeType = CodeType::Bin}}, 0,
                50'000);
    rows.ShowWords(CByteBuffer(100'000), RecipeKind::Flat);
    CEditHistory history;
    history.Add(CEditHistory::Prepare(Read(rows)), nullptr);
    const std::size_t alone = history.Bytes();
    history.StepBack(rows.SourceId());
    EXPECT_EQ(history.Bytes(), alone - 100'000);
    history.StepForth(nullptr);
    EXPECT_EQ(history.Bytes(), alone);
}

TEST(EditHistory, ASavedStateThatWasLostInTheFileIsNeverReached)
{
    CEditHistory history;
    Add(history, Typed(1));
    history.ForgetSaved();
    EXPECT_FALSE(history.IsAsSaved());
    history.StepBack(nullptr);
    EXPECT_FALSE(history.IsAsSaved());
}

TEST(EditHistory, AHistoryThatBeginsUnsavedHasNoSavedState)
{
    CEditHistory history;
    history.Clear(false);
    EXPECT_FALSE(history.IsAsSaved());
}

TEST(EditHistory, AnEditOfFormatsAloneLeadsToTheSameRows)
{
    CEditHistory history;
    Edit edit{EditKind::AddFormat, {}};
    edit.steps.emplace_back(FormatChange());
    Add(history, std::move(edit));
    EXPECT_TRUE(history.IsAsSaved());
    Add(history, Typed(1));
    EXPECT_FALSE(history.IsAsSaved());
    history.StepBack(nullptr);
    EXPECT_TRUE(history.IsAsSaved());
    history.StepBack(nullptr);
    EXPECT_TRUE(history.IsAsSaved());
}

TEST(EditHistory, TheSavedStateIsReachedByUndoAndByRedo)
{
    CEditHistory history;
    Add(history, Typed(1));
    history.MarkSaved();
    Add(history, Typed(2));
    EXPECT_FALSE(history.IsAsSaved());
    history.StepBack(nullptr);
    EXPECT_TRUE(history.IsAsSaved());
    history.StepBack(nullptr);
    EXPECT_FALSE(history.IsAsSaved());
    history.StepForth(nullptr);
    EXPECT_TRUE(history.IsAsSaved());
}

TEST(EditHistory, ASavedStateThatWasForgottenIsNeverReached)
{
    CEditHistory history;
    Add(history, Typed(1));
    history.MarkSaved();
    history.StepBack(nullptr);
    Add(history, Typed(2));
    EXPECT_FALSE(history.IsAsSaved());
    history.StepBack(nullptr);
    EXPECT_FALSE(history.IsAsSaved());
    history.Clear(false);
    EXPECT_FALSE(history.IsAsSaved());
}

} // namespace
