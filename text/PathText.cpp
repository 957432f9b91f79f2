#include "text/PathText.h"

#include "text/Utf8Text.h"

namespace {

template <class Unit>
std::u16string TextOf(const std::basic_string<Unit>& name)
{
    if constexpr (sizeof(Unit) == 1) {
        return FromUtf8(name);
    } else {
        const std::u16string units(name.begin(), name.end());
        return FromUtf8(ToUtf8(units)); // for the halves of surrogate pairs that a name may hold
    }
}

} // namespace

std::u16string PathText(const std::filesystem::path& path)
{
    return TextOf(path.native());
}

std::filesystem::path PathOfUtf8(std::string_view name)
{
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}
