#pragma once

#include "library/FormatLibrary.h"

#include <cstddef>
#include <memory>
#include <optional>

/// A format of the library that became another one, came or went. Null stands for no format. A copy is cheap: it has
/// the same formats, which nobody changes any more.
struct FormatChange {
    std::size_t index = 0; ///< of the format when it was changed, where there was one
    std::shared_ptr<const DataFormat> before;
    std::shared_ptr<const DataFormat> after;
};

/// Whether both have the same name, count and items.
bool AreSame(const DataFormat& a, const DataFormat& b);

enum class ChangeSide { Before, After };

/// Where `library` holds what stood there on that side of the change: a format with the same name, count and items.
/// That is the change's place, or, where formats of other names have come there from other windows, the nearest place
/// with such a format. One that only bears the same name there is the format of the change, and another one by now:
/// then, and without any, there is no such place. Where there was none, it is the change's place, or the end of fewer
/// formats.
std::optional<std::size_t> PlaceOf(const FormatLibrary& library, const FormatChange& change, ChangeSide side);

/// Whether there is such a place.
bool Holds(const FormatLibrary& library, const FormatChange& change, ChangeSide side);
