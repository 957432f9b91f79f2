#include "library/JsonFault.h"

#include "text/MessageText.h"

#include <algorithm>
#include <cstdint>

std::u16string LineAndColumn(std::string_view json, std::size_t end)
{
    const std::string_view before = json.substr(0, end == 0 ? 0 : end - 1);
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::size_t column = before.size() - (before.rfind('\n') + 1); // npos + 1 is 0
    return FillMessage(u"line %d, column %d", {std::int64_t{lines} + 1, static_cast<std::int64_t>(column) + 1});
}

std::string EscapedKey(std::string_view key)
{
    std::string escaped;
    for (const char c : key) {
        if (c == '~')
            escaped += "~0";
        else if (c == '/')
            escaped += "~1";
        else
            escaped += c;
    }
    return escaped;
}

bool IsJsonInteger(std::string_view number)
{
    return number.find_first_not_of("-0123456789") == std::string_view::npos;
}
