#pragma once

#include "model/DataType.h"
#include "model/FixedText.h"
#include "model/SharedNotes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

/// One entry of a data format: a value, or an array of values, of one type. The fields but the notes stand in the order
/// of the stored record (FormatLibrary.h). Nothing is validated here: a record from a file may hold any number.
struct DataItem {
    std::int32_t reserved0 = 0;  ///< not used; carried through load and save
    std::int32_t dataLength = 0; ///< length of one element in 16-bit words
    DataType dataType = DataType::NotChosen;
    std::int32_t integerDigits = 4; ///< digits before the point, 1 or more
    std::int32_t decimalDigits = 0; ///< digits after the point, 0 or more
    CodeType codeType = CodeType::NotChosen;
    FixedText<128> description{}; ///< the item's name; column title of the data view
    std::int32_t isArray = 0;     ///< 0 a single value, else an array
    std::int32_t reserved1 = -1;  ///< not used; carried through load and save
    std::int32_t reserved2 = 0;   ///< not used; carried through load and save
    std::int32_t arrayLength = 0; ///< elements of an array; means nothing for a single value
    std::int64_t minValue = 0;    ///< lower bound of a value
    std::int64_t maxValue = 0;    ///< upper bound of a value
    std::int32_t unicode = 0;     ///< strings: nonzero for UTF-16 text, 0 for ANSI text
    CSharedNotes notes{};         ///< what its values mean; no part of the stored record

    friend bool operator==(const DataItem&, const DataItem&) = default;
};

/// Whether both would be stored as the same record, whatever their notes.
bool HaveSameRecord(const DataItem& a, const DataItem& b);

/// The bytes of an item's stored record in a library file of `version`: 312 for 0, 320 for 20, nothing for another.
std::optional<std::size_t> StoredItemSize(std::int32_t version);

/// A new item with the values above, in the form of library `version` 0 or 20; no item for any other version.
std::unique_ptr<DataItem> CreateItem(std::int32_t version);

/// The item of the built-in default format: "Desc1", signed 16-bit, 1 word, 4 digits, BIN, bounds -999 and 9999.
DataItem DefaultItem();

/// Sets minValue and maxValue from the type and the digit counts. Called for an item that was just edited; items from
/// a library file keep the bounds that were stored.
///
/// kept: the negative bound has one digit fewer than the positive one, and a float's bounds lose their fraction.
void deriveBounds(DataItem& item);
