#pragma once

#include "library/FormatLibrary.h"

#include <string>

/// The library's settings and the formats as they are saved, as one JSON object in UTF-8, a line an item, with its
/// notes where it has some. A text field that holds what is no text (half a surrogate pair, units after its zero, or no
/// zero at its end) becomes a list of the texts and units that it is made of, so that LibraryFromJson gives the same
/// library.
std::string LibraryToJson(const FormatLibrary& library);
