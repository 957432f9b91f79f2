#include "model/NumberForms.h"

#include "model/ColumnCoding.h"
#include "model/LittleEndian.h"
#include "model/StoredNumber.h"
#include "text/MessageText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

namespace {

struct Type {
    DataType type;
    std::u16string_view name;
    std::int32_t mostDecimals; ///< that an item of it may have, where they change its words
};

constexpr std::array<Type, 6> kNumbers{{
    {DataType::Signed16, u"signed 16-bit", 4},
    {DataType::Unsigned16, u"unsigned 16-bit", 4},
    {DataType::Signed32, u"signed 32-bit", 9},
    {DataType::Unsigned32, u"unsigned 32-bit", 9},
    {DataType::Float, u"float", 0},
    {DataType::Double, u"double", 0},
}};

constexpr std::array<Type, 2> kHexadecimals{{
    {DataType::Hex16, u"hexadecimal 16-bit", 0},
    {DataType::Hex32, u"hexadecimal 32-bit", 0},
}};

ColumnCoding CodingOf(const Type& type, std::int32_t decimals)
{
    ColumnCoding coding;
    coding.dataType = type.type;
    coding.dataLength = static_cast<std::int32_t>(WordsOfType(type.type));
    coding.integerDigits = 10;
    coding.decimalDigits = decimals;
    return coding;
}

std::u16string NameOf(const Type& type, std::int32_t decimals)
{
    if (decimals == 0)
        return std::u16string(type.name);
    return FillMessage(decimals == 1 ? u"%s, %d decimal" : u"%s, %d decimals", {type.name, std::int64_t{decimals}});
}

/// With the low word first, and with the high one where that is another form.
void AppendOrders(const Type& type, std::int32_t decimals, std::u16string words, std::vector<NumberForm>& forms)
{
    const std::u16string name = NameOf(type, decimals);
    forms.push_back({name, BytesOfWords(words), type.type, decimals, false});
    const std::u16string lowFirst = words;
    std::reverse(words.begin(), words.end());
    if (words != lowFirst)
        forms.push_back({name + u", high word first", BytesOfWords(words), type.type, decimals, true});
}

void AppendForms(const Type& type, std::int32_t decimals, const CDecimal& number, std::vector<NumberForm>& forms)
{
    if (auto words = WordsOfNumber(CodingOf(type, decimals), number))
        AppendOrders(type, decimals, std::move(*words), forms);
}

/// A float or double has a second zero, with its sign bit set, which is the same number.
void AppendNegativeZeros(std::vector<NumberForm>& forms)
{
    for (const Type& type : kNumbers) {
        if (!IsReal(type.type))
            continue;
        std::u16string words(WordsOfType(type.type), u'\0');
        words.back() = u'\x8000';
        AppendOrders(type, 0, std::move(words), forms);
    }
}

} // namespace

std::vector<NumberForm> FormsOfNumber(std::u16string_view text)
{
    std::vector<NumberForm> forms;
    if (const auto number = NumberOfText(CodingOf(kNumbers.front(), 0), text)) {
        for (const Type& type : kNumbers)
            for (std::int32_t decimals = 0; decimals <= (number->IsZero() ? 0 : type.mostDecimals); ++decimals)
                AppendForms(type, decimals, *number, forms);
        if (number->IsZero())
            AppendNegativeZeros(forms);
        return forms;
    }
    for (const Type& type : kHexadecimals)
        if (const auto number = NumberOfText(CodingOf(type, 0), text))
            AppendForms(type, 0, *number, forms);
    return forms;
}
