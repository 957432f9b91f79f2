#include "document/CellWords.h"
#include "model/LittleEndian.h"
#include "tests/document/DocumentFixture.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace {

struct WordsOfCells : RecipeDocument {
    CellVerdict Judge(double value)
    {
        std::array<std::byte, 8> bytes{};
        StoreLittleEndian(bytes, std::bit_cast<std::uint64_t>(value));
        return JudgeWords(document, {0, 0}, bytes);
    }
};

/// What is shown has blanks before it, with which nobody could type it.
TEST_F(WordsOfCells, AreTakenForADouble)
{
    document.TakeSettings({MakeFormat(u"One", {MakeItem(u"Gas", DataType::Double, 4, 4, 2)}), 0, 1});
    ASSERT_EQ(Read(), CRecipeDocument::Reading::Done);
    ASSERT_EQ(Text({0, 0}).front(), u' ');
    EXPECT_EQ(Judge(5.25).kind, CellVerdict::Kind::Changes);
    EXPECT_EQ(Judge(-5.25).kind, CellVerdict::Kind::Changes);
    EXPECT_EQ(Judge(123456.0).kind, CellVerdict::Kind::Refused);
    EXPECT_FALSE(Judge(123456.0).reason.empty());
}

} // namespace
