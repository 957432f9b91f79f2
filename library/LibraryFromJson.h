#pragma once

#include "library/FormatLibrary.h"
#include "library/JsonFault.h"

#include <optional>
#include <string_view>

/// Fills a new `library` from JSON text as LibraryToJson makes it. What is left out keeps the value that it has in a
/// new library, format or default item; an item without `minValue` and `maxValue` gets the bounds of its type and
/// digits. A text may also be a list of texts and units, up to the whole of its field. The first fault in the order of
/// the text ends the reading.
std::optional<JsonFault> LibraryFromJson(std::string_view json, FormatLibrary& library);
