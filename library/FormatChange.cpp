#include "library/FormatChange.h"

#include <algorithm>

namespace {

bool AreSame(const DataFormat& a, const DataFormat& b)
{
    return a.name == b.name && a.itemCount == b.itemCount &&
           std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
                      [](const auto& itemA, const auto& itemB) { return *itemA == *itemB; });
}

} // namespace

bool Holds(const FormatLibrary& library, const FormatChange& change, ChangeSide side)
{
    const auto& format = side == ChangeSide::Before ? change.before : change.after;
    if (!format)
        return change.index <= library.formats.size();
    return change.index < library.formats.size() && AreSame(*library.formats[change.index], *format);
}
