#include "files/CellQuery.h"

#include "model/StoredNumber.h"
#include "text/Decimal.h"
#include "text/LowerCase.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::u16string_view kIntegerUnits = u"0123456789.-";
constexpr std::u16string_view kHexadecimalUnits = u"0123456789ABCDEFabcdef";
constexpr std::u16string_view kRealUnits = u"0123456789.-+eEnNaAiIfF "; // a double's width is filled up with blanks

bool IsDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

/// Of a hexadecimal digit, in capitals; nothing for any other unit.
std::optional<char16_t> HexadecimalDigit(char16_t unit)
{
    if (IsDigit(unit) || (unit >= u'A' && unit <= u'F'))
        return unit;
    return unit >= u'a' && unit <= u'f' ? std::optional(static_cast<char16_t>(unit - u'a' + u'A')) : std::nullopt;
}

/// The units that words of the column can show; nothing where any may be.
std::optional<std::u16string_view> UnitsShown(const ColumnCoding& coding)
{
    if (coding.codeType == CodeType::Bcd)
        return std::nullopt;
    switch (coding.dataType) {
    case DataType::Signed16:
    case DataType::Signed32:
    case DataType::Unsigned16:
    case DataType::Unsigned32:
        return kIntegerUnits;
    case DataType::Hex16:
    case DataType::Hex32:
        return kHexadecimalUnits;
    case DataType::Float:
    case DataType::Double:
        return kRealUnits;
    case DataType::String:
    case DataType::NotChosen:
        break;
    }
    return std::nullopt;
}

/// Whether lower case and capitals make a difference to it.
bool HasCase(std::u16string_view lower)
{
    static const std::u16string cased = [] { // units in lower case that have a capital
        std::u16string units;
        for (std::uint32_t unit = 0; unit < 0x10000; ++unit)
            if (LowerCase(static_cast<char16_t>(unit)) != unit)
                units += LowerCase(static_cast<char16_t>(unit));
        std::sort(units.begin(), units.end());
        return units;
    }();
    return std::any_of(lower.begin(), lower.end(),
                       [](char16_t unit) { return std::binary_search(cased.begin(), cased.end(), unit); });
}

/// A column of plain numbers, to read the query's own by.
ColumnCoding CodingOf(DataType type)
{
    ColumnCoding coding;
    coding.dataType = type;
    coding.dataLength = 2;
    return coding;
}

} // namespace

std::optional<std::u16string> QueryFault(const CellQuery& query)
{
    if (query.text.empty())
        return u"";
    if (query.kind == CellQuery::Kind::Text || NumberOfText(CodingOf(DataType::Double), query.text) ||
        NumberOfText(CodingOf(DataType::Hex32), query.text))
        return std::nullopt;
    return FillMessage(query.text.find(u',') == query.text.npos ? u"%s is no number."
                                                                : u"%s is no number: decimals come after a point.",
                       {query.text});
}

CCellMatcher::CCellMatcher(CellQuery query, std::span<const ColumnCoding> columns)
    : m_query(std::move(query)),
      m_sought(m_query.mindsCase ? m_query.text : LowerCase(m_query.text))
{
    m_folds = !m_query.mindsCase && HasCase(m_sought);
    for (const ColumnCoding& coding : columns) {
        m_columns.push_back(ColumnOf(coding));
        m_chances.push_back(ChanceOf(m_columns.back()));
    }
}

CCellMatcher::Column CCellMatcher::ColumnOf(const ColumnCoding& coding) const
{
    Column column{coding, IsHexadecimal(coding.dataType), std::nullopt};
    if (m_query.kind == CellQuery::Kind::Number)
        column.number = DigitsOf(coding, m_query.text);
    return column;
}

CCellMatcher::Chance CCellMatcher::ChanceOf(const Column& column) const
{
    if (QueryFault(m_query))
        return Chance::None;
    if (m_query.kind == CellQuery::Kind::Number)
        return column.number ? Chance::Any : Chance::None;
    const auto units = UnitsShown(column.coding);
    const bool canBeShown = !units || m_sought.find_first_not_of(*units) == m_sought.npos;
    return canBeShown ? Chance::Any : Chance::GivenTexts;
}

std::optional<CCellMatcher::Digits> CCellMatcher::DigitsOf(const ColumnCoding& coding, std::u16string_view text)
{
    const auto number = NumberOfText(coding, text);
    if (!number)
        return std::nullopt;
    Digits digits;
    digits.isNegative = number->IsNegative();
    if (IsHexadecimal(coding.dataType)) {
        const auto value = number->ToInt64();
        if (!value)
            return std::nullopt;
        digits.whole = HexadecimalText(*value);
    } else {
        const std::u16string full = number->Text();
        const std::size_t point = std::min(full.find(u'.'), full.size());
        digits.whole = full.substr(0, point);
        digits.fraction = full.substr(std::min(point + 1, full.size()));
    }
    digits.whole.erase(0, std::min(digits.whole.find_first_not_of(u"-0"), digits.whole.size()));
    return digits;
}

bool CCellMatcher::Matches(std::size_t column, std::u16string_view text) const
{
    if (m_query.kind == CellQuery::Kind::Number)
        return IsSameNumber(m_columns[column], text);
    if (m_query.isWholeCell)
        return text.size() == m_sought.size() && IsAt(text, 0);
    return Find(text, 0) != text.npos;
}

/// The plain forms that nearly all cells have are compared as they stand.
bool CCellMatcher::IsSameNumber(const Column& column, std::u16string_view text)
{
    if (!column.number)
        return false;
    const auto plain =
        column.isHexadecimal ? IsPlainlyHexadecimal(*column.number, text) : IsPlainly(*column.number, text);
    return plain ? *plain : DigitsOf(column.coding, text) == column.number;
}

/// Nothing for a text that is not just a sign, digits and a point.
std::optional<bool> CCellMatcher::IsPlainly(const Digits& number, std::u16string_view text)
{
    const bool isNegative = text.starts_with(u'-');
    const auto end = text.end();
    const auto begin = text.begin() + (isNegative ? 1 : 0);
    const auto point = std::find_if_not(begin, end, IsDigit);
    if (point == begin || (point != end && (*point != u'.' || !std::all_of(point + 1, end, IsDigit))))
        return std::nullopt;
    const std::u16string_view whole(std::find_if(begin, point, [](char16_t unit) { return unit != u'0'; }), point);
    std::u16string_view fraction(point == end ? end : point + 1, end);
    while (fraction.ends_with(u'0'))
        fraction.remove_suffix(1);
    const bool isZero = whole.empty() && fraction.empty();
    return whole == number.whole && fraction == number.fraction && (isNegative && !isZero) == number.isNegative;
}

std::optional<bool> CCellMatcher::IsPlainlyHexadecimal(const Digits& number, std::u16string_view text)
{
    if (text.empty())
        return std::nullopt;
    std::size_t next = 0;
    bool isSame = !number.isNegative;
    for (const char16_t unit : text) {
        const auto digit = HexadecimalDigit(unit);
        if (!digit)
            return std::nullopt;
        if (next == 0 && *digit == u'0')
            continue;
        isSame = isSame && next < number.whole.size() && number.whole[next] == *digit;
        ++next;
    }
    return isSame && next == number.whole.size();
}

/// Whether `text`, long enough, has at `at` what is sought.
bool CCellMatcher::IsAt(std::u16string_view text, std::size_t at) const
{
    if (!m_folds)
        return std::equal(m_sought.begin(), m_sought.end(), text.begin() + static_cast<std::ptrdiff_t>(at));
    for (std::size_t i = 0; i < m_sought.size(); ++i)
        if (LowerCase(text[at + i]) != m_sought[i])
            return false;
    return true;
}

/// Whether its first and last unit stand anywhere as far apart in `text`, which is long enough: quickly told, without a
/// jump that depends on what the text is.
bool CCellMatcher::MayHold(std::u16string_view text) const
{
    const std::size_t distance = m_sought.size() - 1;
    const char16_t first = m_sought.front();
    const char16_t last = m_sought.back();
    unsigned found = 0;
    for (const char16_t *unit = text.data(), *end = unit + (text.size() - distance); unit != end; ++unit)
        found |= static_cast<unsigned>(unit[0] == first) & static_cast<unsigned>(unit[distance] == last);
    return found != 0;
}

std::size_t CCellMatcher::Find(std::u16string_view text, std::size_t from) const
{
    if (text.size() < m_sought.size() || (!m_folds && !MayHold(text)))
        return text.npos;
    for (std::size_t at = from; at + m_sought.size() <= text.size(); ++at)
        if (IsAt(text, at))
            return at;
    return text.npos;
}

std::u16string CCellMatcher::Replaced(std::u16string_view text, std::u16string_view with) const
{
    if (m_query.isWholeCell || m_query.kind == CellQuery::Kind::Number)
        return std::u16string(with);
    std::u16string replaced;
    std::size_t from = 0;
    for (std::size_t at = Find(text, 0); at != text.npos; at = Find(text, from)) {
        replaced.append(text, from, at - from).append(with);
        from = at + m_sought.size();
    }
    return replaced.append(text, from);
}
