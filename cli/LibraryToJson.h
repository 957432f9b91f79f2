#pragma once

#include "model/FormatLibrary.h"

#include <string>

/// The library's settings and formats as one JSON object in UTF-8, a line an item. Half a surrogate pair in a text
/// becomes U+FFFD.
std::string LibraryToJson(const FormatLibrary& library);
