#pragma once

#include "library/FormatLibrary.h"

#include <cstddef>
#include <memory>

/// A format of the library that became another one, came or went. Null stands for no format. A copy is cheap: it has
/// the same formats, which nobody changes any more.
struct FormatChange {
    std::size_t index = 0; ///< of the format, where there is one
    std::shared_ptr<const DataFormat> before;
    std::shared_ptr<const DataFormat> after;
};

enum class ChangeSide { Before, After };

/// Whether `library` holds at the change's place what stood there on that side of it: a format with the same name,
/// count and items. Where there was none, any place that a format can be put to will do.
bool Holds(const FormatLibrary& library, const FormatChange& change, ChangeSide side);
