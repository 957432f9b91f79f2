#include "model/ColumnCoding.h"
#include "model/DataItem.h"
#include "model/DataItemCheck.h"
#include "model/ItemNotes.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

/// Records are equal when all their fields are: what is compared to see whether a format was changed must miss none.
template <class Record>
void ExpectEachFieldToCount(const std::vector<void (*)(Record&)>& changes)
{
    for (std::size_t i = 0; i < changes.size(); ++i) {
        Record changed;
        EXPECT_EQ(changed, Record{});
        changes[i](changed);
        EXPECT_NE(changed, Record{}) << "field " << i;
    }
}

TEST(RecordsAreEqual, WhenAllFieldsOfADataItemAre)
{
    ExpectEachFieldToCount<DataItem>({
        [](DataItem& i) { i.reserved0 = 9; },
        [](DataItem& i) { i.dataLength = 9; },
        [](DataItem& i) { i.dataType = DataType::Hex16; },
        [](DataItem& i) { i.integerDigits = 9; },
        [](DataItem& i) { i.decimalDigits = 9; },
        [](DataItem& i) { i.codeType = CodeType::Bcd; },
        [](DataItem& i) { i.description.back() = u'x'; },
        [](DataItem& i) { i.isArray = 9; },
        [](DataItem& i) { i.reserved1 = 9; },
        [](DataItem& i) { i.reserved2 = 9; },
        [](DataItem& i) { i.arrayLength = 9; },
        [](DataItem& i) { i.minValue = 9; },
        [](DataItem& i) { i.maxValue = 9; },
        [](DataItem& i) { i.unicode = 9; },
        [](DataItem& i) { i.notes = CSharedNotes(ItemNotes{.unit = u"m"}); },
    });
}

TEST(RecordsAreEqual, WhenAllFieldsOfAColumnsCodingAre)
{
    ExpectEachFieldToCount<ColumnCoding>({
        [](ColumnCoding& c) { c.title = u"x"; },
        [](ColumnCoding& c) { c.dataType = DataType::Hex16; },
        [](ColumnCoding& c) { c.dataLength = 9; },
        [](ColumnCoding& c) { c.codeType = CodeType::Bcd; },
        [](ColumnCoding& c) { c.integerDigits = 9; },
        [](ColumnCoding& c) { c.decimalDigits = 9; },
        [](ColumnCoding& c) { c.minValue = 9; },
        [](ColumnCoding& c) { c.maxValue = 9; },
        [](ColumnCoding& c) { c.unicode = 9; },
    });
}

TEST(RecordsAreEqual, WhenBothDigitCountsAre)
{
    ExpectEachFieldToCount<DigitCounts>({
        [](DigitCounts& c) { c.integerDigits = 9; },
        [](DigitCounts& c) { c.decimalDigits = 9; },
    });
}

} // namespace
