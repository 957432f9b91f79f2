#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What separates the fields of a line.
enum class FieldSeparator : char16_t {
    None = 0, ///< a line is one field
    Tab = u'\t',
    Semicolon = u';',
    Comma = u',',
    Bar = u'|',
};

/// The separator of the text, by its first lines: the one that each of them has as often as the others have it.
/// Nothing where a comma may as well stand in the one number of each line.
std::optional<FieldSeparator> SeparatorOf(std::u16string_view text);

/// A text cut into lines and fields. A field in quotes may hold separators, line ends and, doubled, quotes; a quote
/// that is never closed is an ordinary character. Empty lines at the end are none.
class CDelimitedText {
public:
    CDelimitedText() = default;

    /// Throws std::bad_alloc. `text` has less than 4 GiB.
    CDelimitedText(std::u16string_view text, FieldSeparator separator);

    std::size_t RowCount() const { return m_rows.size(); }
    std::size_t FieldCount(std::size_t row) const;
    std::size_t MostFields() const { return m_mostFields; } ///< of all rows

    /// Empty where the row has no such field.
    std::u16string_view Field(std::size_t row, std::size_t column) const;

private:
    void EndField();
    void EndRow();
    std::size_t EndOfRow(std::size_t row) const { return row + 1 < m_rows.size() ? m_rows[row + 1] : m_ends.size(); }

    std::u16string m_text;             ///< the fields, one after the other
    std::vector<std::uint32_t> m_ends; ///< of each field in it
    std::vector<std::size_t> m_rows;   ///< the first field of each
    std::size_t m_mostFields = 0;
};
