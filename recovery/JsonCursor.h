#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Goes through a JSON text of known keys in a known order, without a blank between. A call that answers false leaves
/// the cursor anywhere.
class CJsonCursor {
public:
    explicit CJsonCursor(std::string_view json) : m_rest(json) {}

    /// Passes `text` if that comes next; else stays.
    bool Take(std::string_view text)
    {
        if (!m_rest.starts_with(text))
            return false;
        m_rest.remove_prefix(text.size());
        return true;
    }

    /// An integer between `least` and `most`.
    bool TakeNumber(std::int64_t least, std::int64_t most, std::int64_t& number);

    /// A text in quotes; each half of a surrogate pair has its escape.
    bool TakeText(std::u16string& text);

    std::string_view Rest() const { return m_rest; }

private:
    bool TakeEscape(std::u16string& text);
    bool TakeRun(std::u16string& text);

    std::string_view m_rest;
};
