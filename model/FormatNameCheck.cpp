#include "model/FormatNameCheck.h"

#include "model/DataFormat.h"
#include "text/MessageText.h"
#include "text/Surrogates.h"

#include <cstddef>
#include <cstdint>
#include <tuple>

namespace {

constexpr std::size_t kLongestName = 128;
constexpr std::size_t kStoredLength = std::tuple_size_v<decltype(DataFormat::name)> - 1; ///< a zero ends it
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

std::optional<std::u16string> FormatNameNotice(std::u16string_view name)
{
    if (name.size() <= kReadNameLength)
        return std::nullopt;
    const auto length = static_cast<std::int64_t>(name.size());
    if (name.size() > kLongestName)
        return FillMessage(u"This name has %d characters; %d are the most.",
                           {length, static_cast<std::int64_t>(kLongestName)});
    const std::u16string_view stored = CutText(name, kStoredLength);
    const auto read = static_cast<std::int64_t>(CutText(stored, kReadNameLength).size());
    if (stored == name)
        return FillMessage(u"All %d characters are saved, but only the first %d are read at the next start.",
                           {length, read});
    return FillMessage(u"Of %d characters the first %d are saved, and only the first %d are read at the next start.",
                       {length, static_cast<std::int64_t>(stored.size()), read});
}
