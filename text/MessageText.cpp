#include "text/MessageText.h"

#include "text/NumberText.h"

namespace {

std::u16string ValueText(const MessageValue& value)
{
    if (const auto* text = std::get_if<std::u16string_view>(&value))
        return std::u16string(*text);
    return DecimalText(std::get<std::int64_t>(value));
}

} // namespace

std::u16string FillMessage(std::u16string_view pattern, std::initializer_list<MessageValue> values)
{
    std::u16string message;
    const auto* value = values.begin();
    while (!pattern.empty()) {
        const std::u16string_view start = pattern.substr(0, 2);
        const bool isPlaceholder = start == u"%s" || start == u"%d";
        if (isPlaceholder && value != values.end()) {
            message += ValueText(*value++);
            pattern.remove_prefix(2);
        } else {
            message += pattern.front();
            pattern.remove_prefix(1);
        }
    }
    return message;
}
