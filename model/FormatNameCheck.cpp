#include "model/FormatNameCheck.h"

#include <cstddef>

namespace {

constexpr std::size_t kLongestName = 128;
constexpr std::u16string_view kForbidden = u".|\\\"*/<>?:";

} // namespace

std::optional<std::u16string_view> FormatNameFault(std::u16string_view name)
{
    if (name.empty())
        return u"The File name is Empty!";
    if (name.size() > kLongestName)
        return u" File name's length Error!";
    if (name.find_first_of(kForbidden) != std::u16string_view::npos)
        return u"The File name Error!";
    return std::nullopt;
}
