#pragma once

#include "files/RecipeRows.h"
#include "text/NumberText.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// How rows stand in a table that shows them: in its row 0 the titles, in its columns 0 and 1 each row's number and word
// address.

inline constexpr int kTitleRows = 1;
inline constexpr int kTitleColumns = 2;

inline constexpr std::u16string_view kIdTitle = u"ID";
inline constexpr std::u16string_view kAddressTitle = u"RW_Addr";

/// The number of a data row as it is shown: the first is 1.
inline std::u16string IdText(std::int32_t row)
{
    return DecimalText(std::int64_t{row} + kTitleRows);
}

/// The word address of a data row as it is shown.
inline std::u16string AddressText(const CRecipeRows& rows, std::int32_t row)
{
    return u"RW" + DecimalText(rows.RowAddress(row).number);
}
