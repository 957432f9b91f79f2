#include "model/ValueTextCheck.h"

#include "model/CellCheck.h"
#include "model/StoredNumber.h"
#include "text/MessageText.h"

#include <set>
#include <string_view>

namespace {

bool CanStore(const ColumnCoding& coding, std::u16string_view value)
{
    if (coding.dataType == DataType::String)
        return ValidateCellValue(coding, value);
    const auto number = NumberOfText(coding, value);
    return number && WordsOfNumber(coding, *number);
}

/// The values that came before.
class CNamedValues {
public:
    explicit CNamedValues(const ColumnCoding& coding) : m_coding(coding) {}

    /// False when it is one of them.
    bool Add(std::u16string_view value)
    {
        if (const auto number = NumberOfText(m_coding, value))
            return m_numbers.insert(*number).second;
        return m_texts.emplace(value).second;
    }

private:
    const ColumnCoding& m_coding;
    std::set<CDecimal> m_numbers;
    std::set<std::u16string> m_texts;
};

/// With the place of the value.
std::u16string_view FaultOf(const ColumnCoding& coding, std::u16string_view value, std::u16string_view text,
                            CNamedValues& named)
{
    if (value.empty())
        return text.empty() ? u"" : u"A value is missing for the text \"%s\".";
    if (text.empty())
        return u"A text is missing for the value %s.";
    if (coding.dataType != DataType::String && value.find(u',') != std::u16string_view::npos)
        return u"%s: numbers are typed with a point here, as in 1.5.";
    if (!CanStore(coding, value))
        return u"No cell of this item can hold the value %s.";
    return named.Add(value) ? u"" : u"The value %s has a text already.";
}

} // namespace

std::optional<ValueTextFault> FindValueTextFault(const ColumnCoding& coding, const std::vector<ValueText>& texts)
{
    CNamedValues named(coding);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::u16string_view value = WithoutBlanks(texts[i].value);
        const std::u16string_view text = WithoutBlanks(texts[i].text);
        const std::u16string_view fault = FaultOf(coding, value, text, named);
        if (!fault.empty())
            return ValueTextFault{i, FillMessage(fault, {value.empty() ? text : value})};
    }
    return std::nullopt;
}
