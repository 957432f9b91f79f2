// The items of a format in use, found in the library that has gone on.

#include "library/ItemsInUse.h"
#include "model/ItemNotes.h"
#include "tests/support/Formats.h"

#include <gtest/gtest.h>

namespace {

const DataItem kTemp = MakeItem(u"Temp", DataType::Float, 2, 4, 1);
const DataItem kNumber = MakeItem(u"No.", DataType::Signed16, 1, 4);
const DataItem kZones = ArrayOf(MakeItem(u"Zone", DataType::Unsigned16, 1, 4), 3);

Formats LibraryOf(const std::vector<DataFormat>& of)
{
    Formats formats;
    for (const DataFormat& format : of)
        formats.push_back(std::make_unique<DataFormat>(format));
    return formats;
}

using Positions = std::vector<std::optional<std::size_t>>;

} // namespace

TEST(FormatInUse, IsTheOneOfItsNameThatIsReadAlike)
{
    const Formats formats =
        LibraryOf({MakeFormat(u"A", {kNumber}), MakeFormat(u"B", {kTemp}), MakeFormat(u"A", {kTemp, kZones})});
    EXPECT_EQ(FormatInUse(formats, MakeFormat(u"A", {kTemp, kZones})), 2U);
    EXPECT_EQ(FormatInUse(formats, MakeFormat(u"A", {kZones})), 0U);
    EXPECT_EQ(FormatInUse(formats, MakeFormat(u"a", {kTemp})), std::nullopt);
    EXPECT_EQ(FormatInUse({}, MakeFormat(u"A", {kTemp})), std::nullopt);
}

TEST(ItemsInUse, AreFoundByNameAndNumberWhereverTheyStand)
{
    const DataFormat used = MakeFormat(u"A", {kTemp, kNumber, kZones, kNumber});
    EXPECT_EQ(ItemsInUse(used, used), (Positions{0, 1, 2, 3}));
    EXPECT_EQ(ItemsInUse(MakeFormat(u"A", {kNumber, kZones, kNumber, kTemp}), used), (Positions{3, 0, 1, 2}));
}

TEST(ItemsInUse, AreNoneOfANameThatFewerBear)
{
    const DataFormat used = MakeFormat(u"A", {kTemp, kNumber, kZones, kNumber});
    EXPECT_EQ(ItemsInUse(MakeFormat(u"A", {kZones, kNumber, kTemp}), used),
              (Positions{2, std::nullopt, 0, std::nullopt}));
}

TEST(ItemsInUse, AreNoneThatAreReadOtherwise)
{
    DataItem digits = kTemp;
    digits.decimalDigits = 2;
    const DataItem more = ArrayOf(kZones, 4);
    DataItem single = kZones;
    single.isArray = 0;
    DataItem notes = kNumber;
    ItemNotes unit;
    unit.unit = u"m";
    notes.notes = CSharedNotes(unit);
    const DataFormat used = MakeFormat(u"A", {kTemp, kZones, kNumber});
    EXPECT_EQ(ItemsInUse(MakeFormat(u"A", {digits, more, notes}), used), (Positions{std::nullopt, std::nullopt, 2}));
    EXPECT_EQ(ItemsInUse(MakeFormat(u"A", {digits, single}), used),
              (Positions{std::nullopt, std::nullopt, std::nullopt}));
}
