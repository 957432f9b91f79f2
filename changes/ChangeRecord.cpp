#include "changes/ChangeRecord.h"

#include <algorithm>
#include <array>

namespace {

/// In the order of ChangeReason.
constexpr std::array<std::u16string_view, 11> kReasonWords{
    u"edited", u"type", u"end", u"limits", u"decimals", u"digits", u"coding", u"text", u"quotes", u"rows", u"form"};
static_assert(kReasonWords.size() == static_cast<std::size_t>(ChangeReason::Form) + 1);

} // namespace

std::u16string_view WordOf(ChangeReason reason)
{
    return kReasonWords[static_cast<std::size_t>(reason)];
}

std::optional<ChangeReason> ReasonOf(std::u16string_view word)
{
    const auto found = std::find(kReasonWords.begin(), kReasonWords.end(), word);
    if (found == kReasonWords.end())
        return std::nullopt;
    return static_cast<ChangeReason>(found - kReasonWords.begin());
}

std::u16string AllReasonWords()
{
    std::u16string words;
    for (const std::u16string_view word : kReasonWords) {
        if (!words.empty())
            words += u", ";
        words += word;
    }
    return words;
}
