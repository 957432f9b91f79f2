#include "library/ItemFields.h"

#include <algorithm>
#include <limits>
#include <type_traits>

namespace {

template <auto Member>
constexpr ItemField Number(std::string_view name)
{
    using Value = std::remove_cvref_t<decltype(DataItem{}.*Member)>;
    using Limits = std::numeric_limits<std::conditional_t<std::is_enum_v<Value>, std::int32_t, Value>>;
    return {name, Limits::min(), Limits::max(),
            [](const DataItem& item) { return static_cast<std::int64_t>(item.*Member); },
            [](DataItem& item, std::int64_t value) { item.*Member = static_cast<Value>(value); }};
}

constexpr ItemField kFields[] = {
    Number<&DataItem::dataLength>("dataLength"),
    Number<&DataItem::dataType>("dataType"),
    Number<&DataItem::integerDigits>("integerDigits"),
    Number<&DataItem::decimalDigits>("decimalDigits"),
    Number<&DataItem::codeType>("codeType"),
    {"description", 0, 0, nullptr, nullptr},
    Number<&DataItem::isArray>("isArray"),
    Number<&DataItem::arrayLength>("arrayLength"),
    Number<&DataItem::minValue>("minValue"),
    Number<&DataItem::maxValue>("maxValue"),
    Number<&DataItem::unicode>("unicode"),
    Number<&DataItem::reserved0>("reserved0"),
    Number<&DataItem::reserved1>("reserved1"),
    Number<&DataItem::reserved2>("reserved2"),
};

} // namespace

std::span<const ItemField> ItemFields()
{
    return kFields;
}

const ItemField* FindItemField(std::string_view name)
{
    const auto* found =
        std::find_if(std::begin(kFields), std::end(kFields), [name](const ItemField& f) { return f.name == name; });
    return found == std::end(kFields) ? nullptr : found;
}
