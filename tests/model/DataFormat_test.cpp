#include "model/DataFormat.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

namespace {

std::unique_ptr<DataItem> Single(std::int32_t dataLength, std::u16string_view description = u"")
{
    auto item = std::make_unique<DataItem>();
    item->dataLength = dataLength;
    SetText(item->description, description);
    return item;
}

std::unique_ptr<DataItem> Array(std::int32_t arrayLength, std::int32_t dataLength,
                                std::u16string_view description = u"")
{
    auto item = Single(dataLength, description);
    item->isArray = 1;
    item->arrayLength = arrayLength;
    return item;
}

void Append(DataFormat& format, std::unique_ptr<DataItem> item)
{
    format.insertItem(format.items.size(), std::move(item));
    ++format.itemCount;
}

TEST(DataFormat, BeginsEmpty)
{
    const DataFormat format;
    EXPECT_EQ(TextOf(format.name), u"");
    EXPECT_EQ(format.itemCount, 0);
    EXPECT_TRUE(format.items.empty());
    EXPECT_EQ(format.totalLength(), 0);
}

TEST(DataFormat, CutsALongName)
{
    const DataFormat format(std::u16string(200, u'n'));
    EXPECT_EQ(TextOf(format.name), std::u16string(127, u'n'));
}

TEST(DataFormatItems, AreInsertedBeforeAPositionWithoutCounting)
{
    DataFormat format;
    format.insertItem(0, Single(1));
    format.insertItem(0, Single(2));
    format.insertItem(2, Single(3));
    format.insertItem(1, Single(4));
    EXPECT_EQ(format.itemCount, 0);
    ASSERT_EQ(format.items.size(), 4U);
    EXPECT_EQ(format.items[0]->dataLength, 2);
    EXPECT_EQ(format.items[1]->dataLength, 4);
    EXPECT_EQ(format.items[2]->dataLength, 1);
    EXPECT_EQ(format.items[3]->dataLength, 3);
}

TEST(DataFormatItems, RemovalLowersTheCount)
{
    DataFormat format;
    Append(format, Single(1));
    Append(format, Single(2));
    format.removeItem(0);
    EXPECT_EQ(format.itemCount, 1);
    ASSERT_EQ(format.items.size(), 1U);
    EXPECT_EQ(format.items[0]->dataLength, 2);
}

TEST(DataFormatItems, RemovalFromAnEmptyListLowersTheCountAllTheSame)
{
    DataFormat format;
    format.removeItem(0);
    EXPECT_EQ(format.itemCount, -1); // kept
    format.removeItem(0);
    EXPECT_EQ(format.itemCount, -2);
}

TEST(DataFormatItems, TheCountStopsAtItsLowest)
{
    DataFormat format;
    format.itemCount = std::numeric_limits<std::int32_t>::min();
    format.removeItem(0);
    EXPECT_EQ(format.itemCount, std::numeric_limits<std::int32_t>::min());
}

TEST(DataFormatItems, ClearForgetsItemsAndCount)
{
    DataFormat format;
    Append(format, Single(1));
    format.itemCount = 7;
    format.clear();
    EXPECT_EQ(format.itemCount, 0);
    EXPECT_TRUE(format.items.empty());
}

TEST(DataFormatCopy, IsDeep)
{
    DataFormat format(u"A");
    Append(format, Single(1, u"first"));
    const DataFormat copy = format;
    DataFormat assigned(u"B");
    Append(assigned, Single(9));
    assigned = format;
    format.items[0]->dataLength = 5;
    SetText(format.name, u"changed");
    for (const DataFormat* other : {&copy, &std::as_const(assigned)}) {
        EXPECT_EQ(TextOf(other->name), u"A");
        EXPECT_EQ(other->itemCount, 1);
        ASSERT_EQ(other->items.size(), 1U);
        EXPECT_EQ(other->items[0]->dataLength, 1);
        EXPECT_EQ(TextOf(other->items[0]->description), u"first");
    }
}

TEST(DataFormatCopy, ToItselfChangesNothing)
{
    DataFormat format(u"A");
    Append(format, Single(3));
    const DataFormat& same = format;
    format = same;
    ASSERT_EQ(format.items.size(), 1U);
    EXPECT_EQ(format.items[0]->dataLength, 3);
}

TEST(DataFormatLength, SumsItemsAndArrays)
{
    DataFormat format;
    Append(format, Single(1));
    Append(format, Array(3, 2));
    Append(format, Single(4));
    EXPECT_EQ(format.totalLength(), 11);
    EXPECT_EQ(format.elementCount(), 5);
}

TEST(DataFormatElements, BelongToTheirItems)
{
    DataFormat format;
    Append(format, Single(1));
    Append(format, Array(0, 2));
    Append(format, Array(3, 2));
    Append(format, Array(-4, 2));
    Append(format, Single(4));
    EXPECT_EQ(format.itemOfElement(-1), nullptr);
    EXPECT_EQ(format.itemOfElement(0), format.items[0].get());
    for (const int element : {1, 2, 3})
        EXPECT_EQ(format.itemOfElement(element), format.items[2].get());
    EXPECT_EQ(format.itemOfElement(4), format.items[4].get());
    EXPECT_EQ(format.itemOfElement(5), nullptr);
    EXPECT_EQ(DataFormat().itemOfElement(0), nullptr);
}

TEST(DataFormatLength, IgnoresTheArrayLengthOfASingleItem)
{
    DataFormat format;
    Append(format, Single(3));
    format.items[0]->arrayLength = 5;
    EXPECT_EQ(format.totalLength(), 3);
    EXPECT_EQ(format.elementCount(), 1);
}

TEST(DataFormatLength, AnArrayOfNoElementsTakesNoWords)
{
    DataFormat format;
    Append(format, Array(0, 2));
    EXPECT_EQ(format.totalLength(), 0);
    EXPECT_EQ(format.elementCount(), 0);
}

TEST(DataFormatLength, HoldsHostileSumsAtTheLimits)
{
    constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
    DataFormat large;
    DataFormat small;
    for (int i = 0; i < 5; ++i) {
        Append(large, Array(kHighest, kHighest));
        Append(small, Array(kHighest, kLowest));
    }
    EXPECT_EQ(large.totalLength(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(small.totalLength(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(large.elementCount(), 5 * std::int64_t{kHighest});
}

TEST(DataFormatLength, AnArrayOfNegativeLengthHidesNoElements)
{
    DataFormat format;
    Append(format, Array(std::numeric_limits<std::int32_t>::min(), 1));
    Append(format, Array(40000, 1));
    EXPECT_EQ(format.elementCount(), 40000);
}

TEST(DefaultFormat, HoldsTheDefaultItem)
{
    const DataFormat format = DefaultFormat();
    EXPECT_EQ(TextOf(format.name), u"TestDataFormat");
    EXPECT_EQ(format.itemCount, 1);
    ASSERT_EQ(format.items.size(), 1U);
    EXPECT_EQ(*format.items[0], DefaultItem());
    EXPECT_EQ(format.totalLength(), 1);
}

TEST(LayOutColumns, NumbersTheElementsOfAnArray)
{
    DataFormat format;
    Append(format, Single(1, u"Speed"));
    Append(format, Array(2, 2, u"100%s"));
    Append(format, Array(0, 2, u"None"));
    Append(format, Array(-5, 2, u"Negative"));
    Append(format, Single(4, u""));
    const auto columns = LayOutColumns(format);
    ASSERT_EQ(columns.size(), 4U);
    EXPECT_EQ(columns[0].title, u"Speed");
    EXPECT_EQ(columns[1].title, u"100%s(0)");
    EXPECT_EQ(columns[2].title, u"100%s(1)");
    EXPECT_EQ(columns[3].title, u"");
    EXPECT_EQ(columns[2].dataLength, 2);
}

TEST(LayOutColumns, CarriesTheCodingFields)
{
    DataFormat format;
    auto item = Single(2, u"T");
    item->dataType = DataType::Unsigned32;
    item->codeType = CodeType::Bcd;
    item->integerDigits = 7;
    item->decimalDigits = 3;
    item->minValue = -5;
    item->maxValue = 1'000'000'000'000;
    item->unicode = 1;
    Append(format, std::move(item));
    const ColumnCoding expected{.title = u"T",
                                .dataType = DataType::Unsigned32,
                                .dataLength = 2,
                                .codeType = CodeType::Bcd,
                                .integerDigits = 7,
                                .decimalDigits = 3,
                                .minValue = -5,
                                .maxValue = 1'000'000'000'000,
                                .unicode = 1};
    EXPECT_EQ(LayOutColumns(format), std::vector<ColumnCoding>{expected});
}

} // namespace
