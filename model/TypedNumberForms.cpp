#include "model/TypedNumberForms.h"

#include "model/StoredNumber.h"
#include "text/Decimal.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::size_t kGroup = 3;     // digits between two signs of thousands
constexpr std::size_t kLongest = 400; // units of a field that may be a number

bool IsBlank(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\u00A0' || c == u'\u202F' || c == u'\u2009';
}

bool IsDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

bool IsApostrophe(char16_t c)
{
    return c == u'\'' || c == u'\u2019';
}

std::u16string_view Trimmed(std::u16string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Takes the digits off the front of `text`.
std::u16string_view TakeDigits(std::u16string_view& text)
{
    const auto end = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
    const std::u16string_view digits = text.substr(0, end);
    text.remove_prefix(end);
    return digits;
}

/// Whether both stand between thousands of the same number.
bool AreSameSeparator(char16_t a, char16_t b)
{
    return a == b || (IsBlank(a) && IsBlank(b)) || (IsApostrophe(a) && IsApostrophe(b));
}

/// The digits before the decimal sign, without what stands between them; nothing when that stands in wrong places.
std::optional<std::u16string> TakeWhole(std::u16string_view& text, char16_t thousands)
{
    std::u16string digits(TakeDigits(text));
    const auto separates = [thousands](char16_t c) { return c == thousands || IsBlank(c) || IsApostrophe(c); };
    if (text.empty() || !separates(text.front()))
        return digits;
    const char16_t separator = text.front();
    if (digits.empty() || digits.size() > kGroup || digits.front() == u'0')
        return std::nullopt;
    while (!text.empty() && AreSameSeparator(text.front(), separator)) {
        text.remove_prefix(1);
        const std::u16string_view group = TakeDigits(text);
        if (group.size() != kGroup)
            return std::nullopt;
        digits += group;
    }
    return digits;
}

/// Whether it looks like a date or a fraction: digits on both sides of a slash.
bool HasSlash(std::u16string_view field)
{
    for (std::size_t i = 1; i + 1 < field.size(); ++i)
        if (field[i] == u'/' && IsDigit(field[i - 1]) && IsDigit(field[i + 1]))
            return true;
    return false;
}

bool HasNumbers(const ColumnCoding& coding)
{
    return IsDecimalInteger(coding.dataType) || IsReal(coding.dataType);
}

} // namespace

std::optional<std::u16string> PlainNumber(std::u16string_view field, NumberSign sign)
{
    std::u16string_view text = Trimmed(field);
    if (text.empty() || text.size() > kLongest)
        return std::nullopt;
    const bool isComma = sign == NumberSign::Comma;
    std::u16string plain;
    if (text.front() == u'-' || text.front() == u'\u2212' || text.front() == u'+') {
        if (text.front() != u'+')
            plain += u'-';
        text.remove_prefix(1);
    }
    auto whole = TakeWhole(text, isComma ? u'.' : u',');
    if (!whole)
        return std::nullopt;
    plain += *whole;
    if (!text.empty() && text.front() == (isComma ? u',' : u'.')) {
        text.remove_prefix(1);
        (plain += u'.') += TakeDigits(text);
    }
    const auto number = CDecimal::Parse(plain + std::u16string(text)); // what is left is an exponent, or a fault
    const bool isPlain = number && (text.empty() || text.front() == u'e' || text.front() == u'E');
    return isPlain ? std::optional(number->Text()) : std::nullopt;
}

CColumnForms::CColumnForms(const ColumnCoding& coding) : m_hasNumbers(HasNumbers(coding)) {}

void CColumnForms::Take(std::u16string_view field)
{
    if (!m_hasNumbers || std::all_of(field.begin(), field.end(), IsDigit)) // most fields, without a closer look
        return;
    const auto withComma = PlainNumber(field, NumberSign::Comma);
    const auto withPoint = PlainNumber(field, NumberSign::Point);
    if (withComma && withPoint) {
        if (withComma != withPoint) {
            m_hasEither = true;
            Doubt(field);
        }
        return;
    }
    if (!withComma && !withPoint) {
        if (HasSlash(field)) {
            m_hasOther = true;
            Doubt(field);
        }
        return;
    }
    if (withComma ? m_hasPoint : m_hasComma)
        Doubt(field);
    (withComma ? m_hasComma : m_hasPoint) = true;
}

void CColumnForms::Doubt(std::u16string_view field)
{
    if (m_doubtful.empty())
        m_doubtful = field;
}

NumberSign CColumnForms::Sign() const
{
    if (!m_hasNumbers)
        return NumberSign::AsText;
    const bool isSettled = m_hasComma != m_hasPoint;
    if (m_hasOther || (m_hasComma && m_hasPoint) || (m_hasEither && !isSettled))
        return NumberSign::Undecided;
    return m_hasComma ? NumberSign::Comma : NumberSign::Point;
}

std::optional<std::u16string> TextOfField(const ColumnCoding& coding, std::u16string_view field, NumberSign sign)
{
    if (coding.dataType == DataType::String)
        return std::u16string(field);
    if (sign == NumberSign::AsText)
        return std::u16string(Trimmed(field));
    const auto plain = sign == NumberSign::Undecided ? std::nullopt : PlainNumber(field, sign);
    const auto number = plain ? CDecimal::Parse(*plain) : std::nullopt;
    return number ? std::optional(number->Text(DecimalsOf(coding))) : std::nullopt;
}
