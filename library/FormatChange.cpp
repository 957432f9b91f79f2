#include "library/FormatChange.h"

#include <algorithm>

namespace {

std::size_t Distance(std::size_t a, std::size_t b)
{
    return a < b ? b - a : a - b;
}

/// The index of a format like `format`, as near to `place` as there is one.
std::optional<std::size_t> Nearest(const FormatLibrary& library, const DataFormat& format, std::size_t place)
{
    std::optional<std::size_t> nearest;
    for (std::size_t i = 0; i < library.formats.size(); ++i)
        if (AreSame(*library.formats[i], format) && (!nearest || Distance(i, place) < Distance(*nearest, place)))
            nearest = i;
    return nearest;
}

} // namespace

bool AreSame(const DataFormat& a, const DataFormat& b)
{
    return a.name == b.name && a.itemCount == b.itemCount &&
           std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
                      [](const auto& itemA, const auto& itemB) { return *itemA == *itemB; });
}

std::optional<std::size_t> PlaceOf(const FormatLibrary& library, const FormatChange& change, ChangeSide side)
{
    const auto& formats = library.formats;
    const auto& format = side == ChangeSide::Before ? change.before : change.after;
    if (!format)
        return std::min(change.index, formats.size());
    const bool isNamesake = change.index < formats.size() && formats[change.index]->name == format->name;
    if (isNamesake)
        return AreSame(*formats[change.index], *format) ? std::optional(change.index) : std::nullopt;
    return Nearest(library, *format, change.index);
}

bool Holds(const FormatLibrary& library, const FormatChange& change, ChangeSide side)
{
    return PlaceOf(library, change, side).has_value();
}
