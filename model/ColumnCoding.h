#pragma once

#include "model/DataType.h"
#include "model/SharedNotes.h"

#include <cstdint>
#include <string>
#include <tuple>

/// What the codec needs to know of one column of values: the part of a data item that one value takes.
struct ColumnCoding {
    std::u16string title; ///< column title: the description, or "description(index)" in an array
    DataType dataType = DataType::NotChosen;
    std::int32_t dataLength = 0; ///< length of one value in 16-bit words
    CodeType codeType = CodeType::NotChosen;
    std::int32_t integerDigits = 0; ///< digits before the point
    std::int32_t decimalDigits = 0; ///< digits after the point; 0: no point
    std::int64_t minValue = 0;      ///< lower limit: of the raw word value, or of the float itself
    std::int64_t maxValue = 0;      ///< upper limit, of the same
    std::int32_t unicode = 0;       ///< strings: nonzero for one UTF-16 unit a word, 0 for two ANSI bytes a word
    CSharedNotes notes{};           ///< what its values mean; has no part in how they are read

    /// The title and all that decides how values are read.
    auto Reading() const
    {
        return std::tie(title, dataType, dataLength, codeType, integerDigits, decimalDigits, minValue, maxValue,
                        unicode);
    }

    /// Whether both have the same title and are read alike, whatever their notes.
    friend bool operator==(const ColumnCoding& a, const ColumnCoding& b) { return a.Reading() == b.Reading(); }
};
