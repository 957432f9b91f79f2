#include "library/FormatChange.h"
#include "tests/support/Formats.h"

#include <gtest/gtest.h>

namespace {

const DataFormat kLine = MakeFormat(u"Line", {DefaultItem(), MakeItem(u"Speed", DataType::Float, 2, 4, 1)});

std::shared_ptr<const DataFormat> Kept(const DataFormat& format)
{
    return std::make_shared<DataFormat>(format);
}

struct OtherFormat {
    const char* name;
    void (*differ)(DataFormat& format);
    friend void PrintTo(const OtherFormat& c, std::ostream* out) { *out << c.name; }
};

struct HeldFormat : testing::TestWithParam<OtherFormat> {
    HeldFormat()
    {
        library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
        library.formats.push_back(std::make_unique<DataFormat>(kLine));
    }

    FormatLibrary library;
};

} // namespace

TEST_F(HeldFormat, IsTheSameOnThatSideOfTheChange)
{
    const DataFormat other = MakeFormat(u"Line", {DefaultItem()});
    const FormatChange change{.index = 1, .before = Kept(other), .after = Kept(kLine)};
    EXPECT_EQ(PlaceOf(library, change, ChangeSide::After), 1U);
    EXPECT_FALSE(Holds(library, change, ChangeSide::Before));
    const FormatChange back{.index = 1, .before = change.after, .after = change.before};
    EXPECT_FALSE(Holds(library, back, ChangeSide::After));
    EXPECT_TRUE(Holds(library, back, ChangeSide::Before));
}

TEST_F(HeldFormat, IsFoundWhereOtherFormatsMovedIt)
{
    for (const std::size_t index : {0U, 2U, 9U})
        EXPECT_EQ(PlaceOf(library, {.index = index, .before = nullptr, .after = Kept(kLine)}, ChangeSide::After), 1U);
    library.formats.insert(library.formats.begin(), std::make_unique<DataFormat>(kLine));
    library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat())); // now Line, default, Line, default
    const auto placeNear = [&](std::size_t index, const DataFormat& format) {
        return PlaceOf(library, {.index = index, .before = Kept(format), .after = nullptr}, ChangeSide::Before);
    };
    EXPECT_EQ(placeNear(2, kLine), 2U) << "its own place first";
    EXPECT_EQ(placeNear(3, kLine), 2U);
    EXPECT_EQ(placeNear(0, DefaultFormat()), 1U);
    EXPECT_EQ(placeNear(7, DefaultFormat()), 3U);
}

TEST_F(HeldFormat, IsNotLookedForElsewhereWhereItIsAnotherOneByNow)
{
    library.formats[0] = std::make_unique<DataFormat>(MakeFormat(u"Line", {DefaultItem()}));
    EXPECT_FALSE(Holds(library, {.index = 0, .before = Kept(kLine), .after = nullptr}, ChangeSide::Before));
}

TEST_F(HeldFormat, IsNoneThatIsNotThere)
{
    const DataFormat other = MakeFormat(u"Other", {DefaultItem()});
    EXPECT_FALSE(Holds(library, {.index = 2, .before = Kept(other), .after = nullptr}, ChangeSide::Before));
}

TEST_F(HeldFormat, OfNoneIsItsPlaceOrTheEnd)
{
    for (const std::size_t index : {0U, 1U, 2U, 3U})
        EXPECT_EQ(PlaceOf(library, {.index = index, .before = Kept(kLine), .after = nullptr}, ChangeSide::After),
                  std::min<std::size_t>(index, 2));
}

TEST_P(HeldFormat, IsAnotherOneWhenAnythingDiffers)
{
    DataFormat other = kLine;
    GetParam().differ(other);
    const FormatChange change{.index = 1, .before = Kept(kLine), .after = Kept(other)};
    EXPECT_FALSE(Holds(library, change, ChangeSide::After));
    EXPECT_TRUE(Holds(library, change, ChangeSide::Before));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, HeldFormat, testing::Values(
    OtherFormat{"Name",          [](DataFormat& format) { SetText(format.name, u"Lime"); }},
    OtherFormat{"RestOfTheName", [](DataFormat& format) { format.name.back() = u'x'; }},
    OtherFormat{"Count",         [](DataFormat& format) { --format.itemCount; }},
    OtherFormat{"FewerItems",    [](DataFormat& format) { format.items.pop_back(); }},
    OtherFormat{"MoreItems",     [](DataFormat& format) { format.insertItem(2, std::make_unique<DataItem>()); }},
    OtherFormat{"FirstItem",     [](DataFormat& format) { format.items.front()->dataLength = 3; }},
    OtherFormat{"LastItem",      [](DataFormat& format) { format.items.back()->unicode = 1; }}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on
