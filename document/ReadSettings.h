#pragma once

#include "files/RecipeRows.h"
#include "model/DataFormat.h"

#include <cstdint>
#include <optional>
#include <string>

/// How the words of a file become rows.
struct ReadSettings {
    DataFormat format;
    std::int32_t startAddress = 0; ///< word address of the first row
    std::int32_t rowCount = 0;
};

/// What is told of a start address or a number of rows by which nothing can be read; nothing for good ones.
std::optional<std::u16string> ReadSettingsFault(std::int32_t startAddress, std::int32_t rowCount);

/// The rows that the settings ask for, with nothing in them yet. A format without words has no rows and no columns.
CRecipeRows LayOutRows(const ReadSettings& settings);
