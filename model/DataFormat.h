#pragma once

#include "model/ColumnCoding.h"
#include "model/DataItem.h"
#include "model/FixedText.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

/// The units of a format's stored name that are read again; kept: the field has room for 128.
inline constexpr std::size_t kReadNameLength = 64;

/// A named list of data items: how one row of recipe words is to be read. Owns its items.
class DataFormat {
public:
    DataFormat() = default;
    explicit DataFormat(std::u16string_view formatName) { SetText(name, formatName); }
    virtual ~DataFormat() = default;
    DataFormat(const DataFormat& other);            ///< a deep copy
    DataFormat& operator=(const DataFormat& other); ///< a deep copy
    DataFormat(DataFormat&&) noexcept = default;
    DataFormat& operator=(DataFormat&&) noexcept = default;

    /// Puts `item` before the item at `position`, 0 to items.size(). Leaves `itemCount` alone: the caller raises it.
    void insertItem(std::size_t position, std::unique_ptr<DataItem> item);

    /// Frees the item at `index` and lowers `itemCount` by one.
    /// kept: on an empty list nothing is removed, but `itemCount` is lowered all the same.
    void removeItem(std::size_t index);

    /// Frees all items; `itemCount` becomes 0.
    void clear();

    /// The items that a save keeps, the first so many: `itemCount`, but no more than there are, and none of a negative
    /// count.
    std::size_t savedItemCount() const;

    /// The words that one row takes: dataLength of each item, times arrayLength for an array. 0 without items. Sums
    /// beyond what a stored record can mean are held at the limits of the type.
    std::int64_t totalLength() const;

    /// The values in one row: 1 a single item, arrayLength an array. Held at the limits as above.
    std::int64_t elementCount() const;

    /// The item that the value at position `element` of a row belongs to, counted from 0; null where there is none.
    const DataItem* itemOfElement(std::int64_t element) const;

    FixedText<128> name{};
    std::int32_t itemCount = 0; ///< kept beside the list and stored with it, not recomputed
    std::vector<std::unique_ptr<DataItem>> items;
};

/// The format of a library that holds none: "TestDataFormat" with one DefaultItem.
DataFormat DefaultFormat();

/// What the values of an item are, under its name, be they one or those of an array.
ColumnCoding CodingOf(const DataItem& item);

/// Whether both give the same columns, with values that are read alike, whatever their notes.
bool AreReadAlike(const DataItem& a, const DataItem& b);

/// One coding a column, in the order of the items: a single item gives one, titled with its description, an array of n
/// elements gives n, titled "description(0)" to "description(n - 1)". The caller has seen to it that the format can be
/// shown (ShowLimits.h), so that the counts are small.
std::vector<ColumnCoding> LayOutColumns(const DataFormat& format);
