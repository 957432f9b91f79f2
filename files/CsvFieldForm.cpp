#include "files/CsvFieldForm.h"

#include "text/AnsiText.h"
#include "text/MessageText.h"
#include "text/Utf16Bytes.h"

#include <cstddef>
#include <span>

namespace {

bool CanHold(const CsvTextForm& form, std::u16string_view text)
{
    if (text.find(form.separator) != std::u16string_view::npos || text.find(u'\n') != std::u16string_view::npos)
        return false;
    return form.isUtf16 || FromAnsi(ToAnsi(text)) == text;
}

} // namespace

std::optional<std::u16string> SeparatedCsvField(const CsvTextForm& form, std::u16string_view text, bool isInQuotes)
{
    if (!CanHold(form, text))
        return std::nullopt;
    if (!form.stripsQuotes)
        return std::u16string(text);
    if (WithoutQuotes(text) != text)
        return std::nullopt;
    const std::u16string_view quote = isInQuotes ? u"\"" : u"";
    return std::u16string(quote) + std::u16string(text) + std::u16string(quote);
}

std::optional<std::u16string> LastCsvField(const CsvTextForm& form, std::u16string_view text)
{
    if (!text.empty() && !text.ends_with(u'\r'))
        return CanHold(form, text) ? std::optional(std::u16string(text)) : std::nullopt;
    auto field = SeparatedCsvField(form, text, true);
    if (field)
        *field += form.separator;
    return field;
}

std::u16string RefusedCsvText(std::uint64_t line, std::size_t column)
{
    // as users see them: row 1 and column 2 are the first with data
    return FillMessage(u"the text of row %d, column %d would not be read again as it is",
                       {static_cast<std::int64_t>(line) + 1, static_cast<std::int64_t>(column) + 2});
}

std::u16string RefusedLongerLine(std::uint64_t line)
{
    return FillMessage(u"line %d is too short, and its last field would lose its quotes in a longer one",
                       {static_cast<std::int64_t>(line) + 1});
}

std::string CsvTextBytes(const CsvTextForm& form, std::u16string_view text)
{
    std::string bytes;
    if (!form.isUtf16) {
        AppendToAnsi(text, bytes);
        return bytes;
    }
    std::u16string units(text);
    SwapUnlessLowByteFirst(units);
    const auto raw = std::as_bytes(std::span(units));
    bytes.assign(reinterpret_cast<const char*>(raw.data()), raw.size());
    return bytes;
}
