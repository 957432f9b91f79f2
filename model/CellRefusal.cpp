#include "model/CellRefusal.h"

#include "model/CellCheck.h"
#include "model/StoredNumber.h"
#include "model/ValueLimits.h"
#include "text/EscapedText.h"
#include "text/MessageText.h"
#include "text/Surrogates.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t kMostShown = 40; // units of the text that was refused

std::u16string Shown(std::u16string_view text)
{
    const std::u16string_view part = CutText(text, kMostShown);
    return EscapedText(part) + (part.size() < text.size() ? u"…" : u"");
}

std::int64_t LengthOf(std::u16string_view text)
{
    return static_cast<std::int64_t>(text.size());
}

bool HasOtherCharacters(std::u16string_view text)
{
    return std::any_of(text.begin(), text.end(), [](char16_t c) { return (c < u'0' || c > u'9') && c != u'.'; });
}

std::u16string DecimalsRefused(std::u16string_view text, std::int32_t most)
{
    if (most <= 0)
        return FillMessage(u"%s has decimals, which the item has not", {Shown(text)});
    return FillMessage(most == 1 ? u"%s has more than %d decimal" : u"%s has more than %d decimals",
                       {Shown(text), std::int64_t{most}});
}

/// Of a decimal number: the digits after its point, or before it, are too many.
std::u16string RefusalOfDigits(const ColumnCoding& coding, std::u16string_view text)
{
    const std::size_t point = std::min(text.find(u'.'), text.size());
    const std::int64_t after = LengthOf(text.substr(point)) - 1;
    if (after > coding.decimalDigits)
        return DecimalsRefused(text, coding.decimalDigits);
    if (static_cast<std::int64_t>(point) > coding.integerDigits)
        return FillMessage(coding.integerDigits == 1 ? u"%s has more than %d character before the point"
                                                     : u"%s has more than %d characters before the point",
                           {Shown(text), std::int64_t{coding.integerDigits}});
    return {};
}

std::u16string Outside(const ColumnCoding& coding, std::u16string_view text)
{
    return FillMessage(u"%s lies outside %s", {Shown(text), LimitsText(coding)});
}

/// Without digits or sign that stand in the way, so that it is the number alone that is judged.
bool LiesOutside(const ColumnCoding& coding, const CDecimal& number)
{
    const ChangedNumber judged = Changed(coding, number, {});
    return judged.fault != ChangeFault::None;
}

std::u16string RefusalOfNumber(const ColumnCoding& coding, std::u16string_view text)
{
    const auto number = NumberOfText(coding, text);
    if (!number)
        return FillMessage(IsHexadecimal(coding.dataType) ? u"%s is not a hexadecimal number" : u"%s is not a number",
                           {Shown(text)});
    if (LiesOutside(coding, *number))
        return Outside(coding, text);
    if (IsHexadecimal(coding.dataType))
        return LengthOf(text) > coding.integerDigits
                   ? FillMessage(coding.integerDigits == 1 ? u"%s has more than %d digit"
                                                           : u"%s has more than %d digits",
                                 {Shown(text), std::int64_t{coding.integerDigits}})
                   : Outside(coding, text);
    if (HasOtherCharacters(text.starts_with(u'-') ? text.substr(1) : text))
        return FillMessage(u"%s is to be written with digits alone", {Shown(text)});
    if (auto digits = RefusalOfDigits(coding, text); !digits.empty())
        return digits;
    return Outside(coding, text);
}

} // namespace

std::u16string RefusalOf(const ColumnCoding& coding, std::u16string_view text)
{
    if (coding.dataType == DataType::String)
        return FillMessage(coding.dataLength == 1 ? u"%s is longer than %d character"
                                                  : u"%s is longer than %d characters",
                           {Shown(text), std::int64_t{coding.dataLength}});
    if (TypeName(coding.dataType).empty())
        return u"its item has no type";
    return RefusalOfNumber(coding, text);
}

std::u16string RefusalOf(const ColumnCoding& coding, const ChangedNumber& changed)
{
    const std::u16string number = NumberText(coding, changed.number);
    switch (changed.fault) {
    case ChangeFault::DividesByZero:
        return u"nothing can be divided by 0";
    case ChangeFault::OutsideLimits:
        return Outside(coding, number);
    case ChangeFault::DoesNotFit:
        return FillMessage(u"%s does not fit into its words", {number});
    case ChangeFault::None:
        break;
    }
    return {};
}
