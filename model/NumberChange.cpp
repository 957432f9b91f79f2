#include "model/NumberChange.h"

#include "model/LittleEndian.h"
#include "model/StoredNumber.h"
#include "model/ValueLimits.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace {

std::optional<NumberChange::Kind> KindOf(char16_t sign)
{
    switch (sign) {
    case u'+':
        return NumberChange::Kind::Add;
    case u'-':
        return NumberChange::Kind::Subtract;
    case u'*':
        return NumberChange::Kind::Multiply;
    case u'/':
        return NumberChange::Kind::Divide;
    default:
        return std::nullopt;
    }
}

/// The result with the item's decimals; nothing for a division by zero.
std::optional<CDecimal> Result(const CDecimal& stored, const NumberChange& change, std::int32_t decimals)
{
    switch (change.kind) {
    case NumberChange::Kind::Add:
        return (stored + change.by).Rounded(decimals);
    case NumberChange::Kind::Subtract:
        return (stored - change.by).Rounded(decimals);
    case NumberChange::Kind::Multiply:
        return (stored * change.by).Rounded(decimals);
    case NumberChange::Kind::Divide:
        break;
    }
    return stored.DividedBy(change.by, decimals);
}

bool IsWithinLimits(const ColumnCoding& coding, const CDecimal& number)
{
    const CDecimal judged = IsReal(coding.dataType) ? number : number.Scaled(DecimalsOf(coding));
    if (coding.codeType == CodeType::Bcd && IsDecimalInteger(coding.dataType) && number.IsNegative())
        return false; // as the check of a typed value refuses it
    return CDecimal(coding.minValue) <= judged && judged <= CDecimal(coding.maxValue);
}

/// The float that is nearest to a number within the limits may lie outside.
bool AreWordsWithinLimits(const ColumnCoding& coding, std::u16string_view words)
{
    return !IsReal(coding.dataType) || !ValueOutsideLimits(coding, BytesOfWords(words), 0);
}

} // namespace

std::optional<NumberChange> ReadNumberChange(std::u16string_view text)
{
    if (text.empty())
        return std::nullopt;
    const auto kind = KindOf(text.front());
    const std::u16string_view by = text.substr(1);
    const bool hasSign = by.starts_with(u'+') || by.starts_with(u'-');
    if (!kind || (hasSign && (*kind == NumberChange::Kind::Add || *kind == NumberChange::Kind::Subtract)))
        return std::nullopt;
    auto number = CDecimal::Parse(by);
    if (!number)
        return std::nullopt;
    return NumberChange{*kind, std::move(*number)};
}

ChangedNumber Changed(const ColumnCoding& coding, const CDecimal& stored, const NumberChange& change)
{
    auto result = Result(stored, change, DecimalsOf(coding));
    if (!result)
        return {ChangeFault::DividesByZero, {}, {}};
    if (!IsWithinLimits(coding, *result))
        return {ChangeFault::OutsideLimits, std::move(*result), {}};
    auto words = WordsOfNumber(coding, *result);
    if (!words)
        return {ChangeFault::DoesNotFit, std::move(*result), {}};
    if (!AreWordsWithinLimits(coding, *words))
        return {ChangeFault::OutsideLimits, std::move(*result), {}};
    return {ChangeFault::None, std::move(*result), std::move(*words)};
}
