#include "model/DataType.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::array<std::u16string_view, 9> kTypeNames{
    u"16 bit signed number",
    u"32 bit signed number",
    u"16 bit unsigned number",
    u"32 bit unsigned numebr", // kept: the item tables spell it so, the bit browser does not
    u"16 bit Hexadecimal",
    u"32 bit Hexadecimal",
    u"Single-precision float number",
    u"Double-precision float number",
    u"String Data",
};

constexpr std::array<std::u16string_view, 6> kBitBrowserTypeNames{
    u"16 bit signed number",   u"32 bit signed number", u"16 bit unsigned number",
    u"32 bit unsigned number", u"16 bit Hexadecimal",   u"32 bit Hexadecimal",
};

constexpr std::array<std::u16string_view, 2> kCodeTypeLabels{u"BIN code", u"BCD code"};

template <std::size_t N>
std::u16string_view NameAt(const std::array<std::u16string_view, N>& names, std::int32_t code)
{
    return code >= 0 && code < static_cast<std::int32_t>(N) ? names[static_cast<std::size_t>(code)]
                                                            : std::u16string_view{};
}

} // namespace

std::u16string_view TypeName(DataType type)
{
    return NameAt(kTypeNames, static_cast<std::int32_t>(type));
}

std::u16string_view BitBrowserTypeName(DataType type)
{
    return NameAt(kBitBrowserTypeNames, static_cast<std::int32_t>(type));
}

std::u16string_view CodeTypeLabel(CodeType codeType)
{
    return NameAt(kCodeTypeLabels, static_cast<std::int32_t>(codeType));
}

std::size_t WordsOfType(DataType type)
{
    switch (type) {
    case DataType::Signed16:
    case DataType::Unsigned16:
    case DataType::Hex16:
        return 1;
    case DataType::Signed32:
    case DataType::Unsigned32:
    case DataType::Hex32:
    case DataType::Float:
        return 2;
    case DataType::Double:
        return 4;
    case DataType::String:
    case DataType::NotChosen:
        break;
    }
    return 0;
}
