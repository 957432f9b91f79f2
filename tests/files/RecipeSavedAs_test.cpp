#include "files/RecipeReplacement.h"
#include "tests/files/OneType.h"

#include <gtest/gtest.h>

#include <tuple>

namespace fs = std::filesystem;

// Rows read from a file of each type and saved under a new name as each type.

namespace {

using Texts = std::vector<std::u16string>;

struct RecipeSavedAs : OneType, testing::TestWithParam<std::tuple<RecipeType, RecipeType>> {
    RecipeSavedAs() : OneType(std::get<0>(GetParam())) {}

    const RecipeType& target = std::get<1>(GetParam());
    fs::path targetPath = folder / (std::string("target") + target.extension);
};

TEST_P(RecipeSavedAs, ShowsTheSameCellsAndLeavesTheSource)
{
    MakeAndRead();
    Texts shown = Edit();
    if (!type.IsTable()) {
        std::vector<CellEdit> exact = {{{2, 1}, CCellState::OfWords(u"\u0102")}};
        rows.Exchange(exact);
        shown[2 * kColumns + 1] = u"102";
    }
    const Bytes before = ReadAll(path);
    ASSERT_TRUE(PrepareSaveAs(target.type, targetPath, rows.StartAddress(), reporter));
    EXPECT_TRUE(SaveRecipe(target.type, rows, targetPath, reporter, progress).isSaved);
    CRecipeRows fresh;
    LayOut(fresh);
    EXPECT_EQ(ReadRecipe(target.type, fresh, targetPath, false, reporter, progress), Outcome::Done);
    EXPECT_EQ(TextsOf(fresh), ReadBack(target, shown));
    EXPECT_EQ(reporter.shown, Texts());
    EXPECT_TRUE(ReadAll(path) == before);
}

TEST_P(RecipeSavedAs, IsTheSameFileBuiltBesideAsInPlace)
{
    MakeAndRead();
    Edit();
    ASSERT_TRUE(PrepareSaveAs(target.type, targetPath, rows.StartAddress(), reporter));
    EXPECT_TRUE(SaveRecipe(target.type, rows, targetPath, reporter, progress).isSaved);
    const fs::path beside = folder / (std::string("beside") + target.extension);
    EXPECT_TRUE(ReplaceRecipe(target.type, rows, beside, rows.StartAddress(), reporter, progress).isSaved);
    EXPECT_TRUE(ReadAll(beside) == ReadAll(targetPath));
    EXPECT_EQ(reporter.shown, Texts());
}

INSTANTIATE_TEST_SUITE_P(Types, RecipeSavedAs, testing::Combine(testing::ValuesIn(kTypes), testing::ValuesIn(kTypes)),
                         [](const auto& c) {
                             return std::string(std::get<0>(c.param).name) + "To" + std::get<1>(c.param).name;
                         });

} // namespace
