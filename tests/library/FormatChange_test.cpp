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
    const FormatChange change{.index = 1, .before = Kept(DefaultFormat()), .after = Kept(kLine)};
    EXPECT_TRUE(Holds(library, change, ChangeSide::After));
    EXPECT_FALSE(Holds(library, change, ChangeSide::Before));
    const FormatChange elsewhere{.index = 0, .before = change.before, .after = change.after};
    EXPECT_FALSE(Holds(library, elsewhere, ChangeSide::After));
    EXPECT_TRUE(Holds(library, elsewhere, ChangeSide::Before));
}

TEST_F(HeldFormat, IsNoneAfterTheLast)
{
    EXPECT_FALSE(Holds(library, {.index = 2, .before = Kept(kLine), .after = nullptr}, ChangeSide::Before));
}

TEST_F(HeldFormat, OfNoneIsAnyPlaceWithinReach)
{
    for (const std::size_t index : {0U, 1U, 2U})
        EXPECT_TRUE(Holds(library, {.index = index, .before = Kept(kLine), .after = nullptr}, ChangeSide::After));
    EXPECT_FALSE(Holds(library, {.index = 3, .before = Kept(kLine), .after = nullptr}, ChangeSide::After));
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
