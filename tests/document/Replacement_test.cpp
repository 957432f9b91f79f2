#include "document/Replacement.h"
#include "tests/document/DocumentFixture.h"

namespace {

struct Replacement : RecipeDocument {
    /// Of the document's rows.
    ReplacementPlan PlanFor(CellQuery query, const char16_t* with, Outcome expected = Outcome::Done)
    {
        CCellSearch search(document.Rows());
        search.Begin(std::move(query), {}, {});
        ReplacementPlan plan;
        EXPECT_EQ(PlanReplacement(search, document.Rows(), with, progress, plan), expected);
        return plan;
    }
};

TEST_F(Replacement, TakesWhatPassesTheCheckOfTheCell)
{
    const ReplacementPlan plan = PlanFor({u"8", CellQuery::Kind::Number}, u"12");
    ASSERT_EQ(plan.texts.size(), 1u);
    EXPECT_EQ(plan.texts[0].place, (CellPlace{1, 1}));
    EXPECT_EQ(plan.texts[0].text, u"12");
    EXPECT_EQ(plan.refusedCount, 0u);
}

TEST_F(Replacement, KeepsWhatWasRefusedWithItsText)
{
    const ReplacementPlan plan = PlanFor({u"0"}, u"x");
    EXPECT_TRUE(plan.texts.empty());
    ASSERT_EQ(plan.refused.size(), 3u) << "235.0, 1.0 and 0.0";
    EXPECT_EQ(plan.refusedCount, 3u);
    EXPECT_EQ(plan.refused[2].text, u"x.x");
    EXPECT_EQ(Text({2, 0}), u"0.0") << "nothing is changed";
}

TEST_F(Replacement, LeavesOutCellsThatShowItAlready)
{
    const ReplacementPlan plan = PlanFor({u"7"}, u"7");
    EXPECT_TRUE(plan.texts.empty() && plan.refused.empty());
    EXPECT_EQ(plan.sameCount, 1u);
}

/// A double is shown with blanks before it, which nobody types.
TEST_F(Replacement, TakesADoubleAsItWouldBeTyped)
{
    WriteAll(path, WordBytes({0x8F5C, 0xF5C2, 0x5C28, 0x4012})); // 4.59
    document.TakeSettings({MakeFormat(u"One", {MakeItem(u"Gas", DataType::Double, 4, 4, 2)}), 0, 1});
    ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    ASSERT_EQ(Text({0, 0}), u"   4.59");
    const ReplacementPlan part = PlanFor({u"5"}, u"6");
    ASSERT_EQ(part.texts.size(), 1u);
    EXPECT_EQ(part.texts[0].text, u"4.69");
    const ReplacementPlan blanks = PlanFor({u" "}, u"");
    EXPECT_TRUE(blanks.texts.empty());
    EXPECT_EQ(blanks.sameCount, 1u);
    const ReplacementPlan same = PlanFor({u"4.59", CellQuery::Kind::Number}, u"4.59");
    EXPECT_EQ(same.sameCount, 1u);
}

TEST_F(Replacement, KeepsNoMoreOfWhatWasRefusedThanItSays)
{
    constexpr std::int32_t kRows = 20000;
    CRecipeRows rows;
    rows.LayOut({document.Rows().Columns()[1]}, 0, kRows);
    rows.ShowNewDocument();
    CCellSearch search(rows);
    search.Begin({u"0"}, {}, {});
    ReplacementPlan plan;
    EXPECT_EQ(PlanReplacement(search, rows, u"no", progress, plan), Outcome::Done);
    EXPECT_EQ(plan.refusedCount, static_cast<std::size_t>(kRows));
    EXPECT_EQ(plan.refused.size(), ReplacementPlan::kMostListed);
}

TEST_F(Replacement, EditionChangesWithCellsAndRows)
{
    const auto first = document.CellsEdition();
    Type({0, 1}, u"5");
    const auto typed = document.CellsEdition();
    EXPECT_NE(typed, first);
    document.Undo();
    const auto undone = document.CellsEdition();
    EXPECT_NE(undone, typed);
    Read();
    EXPECT_NE(document.CellsEdition(), undone);
}

} // namespace
