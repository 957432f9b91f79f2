#include "files/ShowLimits.h"

#include "text/MessageText.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::int32_t kMostElementWords = kMostElementBytes / 2;
constexpr std::int64_t kMostRowWords = std::numeric_limits<std::int32_t>::max();

std::optional<std::u16string> ItemFault(const DataItem& item)
{
    const std::u16string_view name = TextOf(item.description);
    if (item.dataLength < 0 || (item.isArray != 0 && item.arrayLength < 0))
        return FillMessage(u"The format can't be shown! The length of the item %s is less than 0!", {name});
    if (item.dataLength > kMostElementWords)
        return FillMessage(u"The format can't be shown! The data length of the item %s exceeds 512k!", {name});
    return std::nullopt;
}

} // namespace

std::optional<std::u16string> ShowFault(const DataFormat& format, std::int32_t rowCount)
{
    for (const auto& item : format.items)
        if (auto fault = ItemFault(*item))
            return fault;

    // With no negative and no very long item among them, the sums below are exact or far above every limit.
    if (format.elementCount() > kMostColumns)
        return FillMessage(u"The format can't be shown! It has more than %d columns!", {kMostColumns});
    if (rowCount > kMostRows)
        return FillMessage(u"The data can't be shown! It has more than %d rows!", {kMostRows});
    const std::int64_t rowWords = format.totalLength();
    if (rowWords > kMostRowWords)
        return FillMessage(u"The format can't be shown! A row has more than %d words!", {kMostRowWords});
    if (rowWords * std::max(rowCount, 1) > kMostStretchWords)
        return FillMessage(u"The data can't be shown! It has more than %d words!", {kMostStretchWords});
    return std::nullopt;
}
