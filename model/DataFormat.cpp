#include "model/DataFormat.h"

#include "text/MessageText.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

constexpr std::u16string_view kDefaultFormatName = u"TestDataFormat";

std::int64_t SaturatedSum(std::int64_t a, std::int64_t b)
{
    using Limits = std::numeric_limits<std::int64_t>;
    if (b > 0 && a > Limits::max() - b)
        return Limits::max();
    if (b < 0 && a < Limits::min() - b)
        return Limits::min();
    return a + b;
}

std::int64_t WordsOf(const DataItem& item)
{
    return item.isArray != 0 ? std::int64_t{item.arrayLength} * item.dataLength : item.dataLength;
}

std::int64_t ElementsOf(const DataItem& item)
{
    return item.isArray != 0 ? std::max(item.arrayLength, 0) : 1;
}

ColumnCoding CodingOf(const DataItem& item, std::u16string title)
{
    return {
        .title = std::move(title),
        .dataType = item.dataType,
        .dataLength = item.dataLength,
        .codeType = item.codeType,
        .integerDigits = item.integerDigits,
        .decimalDigits = item.decimalDigits,
        .minValue = item.minValue,
        .maxValue = item.maxValue,
        .unicode = item.unicode,
        .notes = item.notes,
    };
}

} // namespace

DataFormat::DataFormat(const DataFormat& other) : name(other.name), itemCount(other.itemCount)
{
    items.reserve(other.items.size());
    for (const auto& item : other.items)
        items.push_back(std::make_unique<DataItem>(*item));
}

DataFormat& DataFormat::operator=(const DataFormat& other)
{
    if (this != &other)
        *this = DataFormat(other);
    return *this;
}

void DataFormat::insertItem(std::size_t position, std::unique_ptr<DataItem> item)
{
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(position), std::move(item));
}

void DataFormat::removeItem(std::size_t index)
{
    if (index < items.size())
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
    if (itemCount > std::numeric_limits<std::int32_t>::min())
        --itemCount; // kept: even when there was nothing to remove
}

void DataFormat::clear()
{
    items.clear();
    itemCount = 0;
}

std::size_t DataFormat::savedItemCount() const
{
    return std::min(static_cast<std::size_t>(std::max(itemCount, 0)), items.size());
}

std::int64_t DataFormat::totalLength() const
{
    std::int64_t words = 0;
    for (const auto& item : items)
        words = SaturatedSum(words, WordsOf(*item));
    return words;
}

std::int64_t DataFormat::elementCount() const
{
    std::int64_t count = 0;
    for (const auto& item : items)
        count = SaturatedSum(count, ElementsOf(*item));
    return count;
}

const DataItem* DataFormat::itemOfElement(std::int64_t element) const
{
    if (element < 0)
        return nullptr;
    for (const auto& item : items) {
        element -= ElementsOf(*item);
        if (element < 0)
            return item.get();
    }
    return nullptr;
}

DataFormat DefaultFormat()
{
    DataFormat format(kDefaultFormatName);
    format.insertItem(0, std::make_unique<DataItem>(DefaultItem()));
    format.itemCount = 1;
    return format;
}

ColumnCoding CodingOf(const DataItem& item)
{
    return CodingOf(item, std::u16string(TextOf(item.description)));
}

bool AreReadAlike(const DataItem& a, const DataItem& b)
{
    const bool areBothArrays = (a.isArray != 0) == (b.isArray != 0);
    return areBothArrays && ElementsOf(a) == ElementsOf(b) && CodingOf(a) == CodingOf(b);
}

std::vector<ColumnCoding> LayOutColumns(const DataFormat& format)
{
    std::vector<ColumnCoding> columns;
    columns.reserve(static_cast<std::size_t>(format.elementCount()));
    for (const auto& item : format.items) {
        const std::u16string_view description = TextOf(item->description);
        if (item->isArray == 0)
            columns.push_back(CodingOf(*item, std::u16string(description)));
        else
            for (std::int32_t i = 0; i < item->arrayLength; ++i)
                columns.push_back(CodingOf(*item, FillMessage(u"%s(%d)", {description, std::int64_t{i}})));
    }
    return columns;
}
