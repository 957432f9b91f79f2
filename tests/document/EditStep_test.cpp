#include "document/EditStep.h"
#include "tests/support/Formats.h"

#include <gtest/gtest.h>

#include <memory>

// What an edit is called, and the memory that it is counted with.

namespace {

Edit Of(EditStep step)
{
    Edit edit;
    edit.steps.push_back(std::move(step));
    return edit;
}

Edit Texts(const std::vector<std::size_t>& lengths)
{
    CellsStep step;
    step.edits.reserve(lengths.size());
    for (const std::size_t length : lengths)
        step.edits.push_back(
            {{static_cast<std::int32_t>(step.edits.size()), 0}, CCellState::OfText(std::u16string(length, u'1'))});
    return Of(std::move(step));
}

std::shared_ptr<const DataFormat> FormatOf(std::size_t items)
{
    return std::make_shared<DataFormat>(MakeFormat(u"F", std::vector<DataItem>(items, DefaultItem())));
}

/// What `edit` takes more than `less`.
std::size_t Difference(const Edit& edit, const Edit& less)
{
    return BytesOf(edit, nullptr) - BytesOf(less, nullptr);
}

TEST(EditMemory, OfCellsIsThatOfEachAndOfItsText)
{
    EXPECT_EQ(Difference(Texts({1, 1, 1}), Texts({1})), 2 * sizeof(CellEdit));
    const std::size_t text = Difference(Texts({1000}), Texts({1}));
    EXPECT_GE(text, 2000u);
    EXPECT_LT(text, 2100u);
    EXPECT_EQ(Difference(Texts({1000, 1000}), Texts({1, 1})), 2 * text);
    EXPECT_GE(BytesOf(Texts({1}), nullptr), sizeof(Edit) + sizeof(EditStep) + sizeof(CellEdit));
}

TEST(EditMemory, OfAFormatIsThatOfBothSidesWithTheirItems)
{
    const std::size_t none = BytesOf(Of(FormatChange()), nullptr);
    const std::size_t one = BytesOf(Of(FormatChange{0, FormatOf(1), nullptr}), nullptr) - none;
    EXPECT_GE(one, sizeof(DataFormat) + sizeof(DataItem));
    EXPECT_LT(one, sizeof(DataFormat) + 2 * sizeof(DataItem));
    EXPECT_EQ(BytesOf(Of(FormatChange{0, nullptr, FormatOf(1)}), nullptr) - none, one);
    EXPECT_EQ(BytesOf(Of(FormatChange{0, FormatOf(1), FormatOf(1)}), nullptr) - none, 2 * one);
    const std::size_t items = BytesOf(Of(FormatChange{0, FormatOf(11), nullptr}), nullptr) - none - one;
    EXPECT_GE(items, 10 * sizeof(DataItem));
    EXPECT_LT(items, 11 * sizeof(DataItem));
}

TEST(EditMemory, OfRowsIsThatOfTheirSourceTheirStatesAndTheirFormat)
{
    const auto rowsOf = [](std::size_t bytes, std::size_t text, std::size_t items) {
        auto shown = std::make_unique<ShownRows>();
        shown->rows.LayOut({{.title = u"W", .dataType = DataType::Signed16, .dataLength = 1}}, 0, 10);
        shown->rows.ShowWords(CByteBuffer(bytes), RecipeKind::Flat);
        shown->rows.SetText(0, 0, std::u16string(text, u'1'));
        shown->settings.format = *FormatOf(items);
        return Of(RowsStep{std::move(shown)});
    };
    const Edit least = rowsOf(1, 1, 1);
    EXPECT_EQ(Difference(rowsOf(5001, 1, 1), least), 5000u);
    EXPECT_GE(Difference(rowsOf(1, 1000, 1), least), 2000u);
    EXPECT_LT(Difference(rowsOf(1, 1000, 1), least), 2100u);
    EXPECT_GE(Difference(rowsOf(1, 1, 11), least), 10 * sizeof(DataItem));
    EXPECT_GE(BytesOf(least, nullptr), sizeof(ShownRows) + sizeof(DataItem));
    const CRecipeRows& rows = std::get<RowsStep>(least.steps.front()).other->rows;
    EXPECT_EQ(BytesOf(least, nullptr) - BytesOf(least, rows.SourceId()), 1u);
}

TEST(EditMemory, OfSeveralStepsIsTheirSum)
{
    Edit both = Texts({1000});
    both.steps.reserve(2);
    const std::size_t one = BytesOf(both, nullptr);
    both.steps.emplace_back(CellsStep());
    EXPECT_EQ(BytesOf(both, nullptr), one);
}

TEST(EditName, CountsTheCellsOfAllStepsWhereThereIsMoreThanOne)
{
    EXPECT_EQ(NameOf(Texts({1})), u"Typing");
    EXPECT_EQ(NameOf(Texts({1, 1})), u"Typing (2 cells)");
    Edit edit = Texts({1, 1});
    edit.steps.push_back(std::move(Texts({1, 1, 1}).steps.front()));
    edit.steps.emplace_back(FormatChange());
    EXPECT_EQ(CellCountOf(edit), 5u);
    EXPECT_TRUE(ChangesRows(edit));
    EXPECT_FALSE(ChangesRows(Of(FormatChange())));
}

} // namespace
