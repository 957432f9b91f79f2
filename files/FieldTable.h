#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The fields of a text table, line by line. A field costs its characters and four bytes, one that is missing costs
/// nothing and reads as "0". The steps that are made for every field stand here, inline.
class CFieldTable {
public:
    /// Makes room beforehand, so that a table of that size need not be moved while it grows.
    void Reserve(std::size_t characters, std::size_t fields);

    /// Adds a field to the line at hand. Throws std::length_error when the line is too long to be kept.
    void AddField(std::u16string_view field)
    {
        m_text += field;
        const std::size_t end = m_text.size() - m_line.text;
        if (end > std::numeric_limits<std::uint32_t>::max())
            throw std::length_error("a line of a table is too long");
        m_ends.push_back(static_cast<std::uint32_t>(end));
    }

    /// Ends the line at hand.
    void EndLine();

    /// Of all fields.
    std::size_t CharacterCount() const { return m_text.size(); }

    std::size_t LineCount() const { return m_lines.size(); }

    /// The memory that it takes besides its own size, in bytes.
    std::size_t FurtherBytes() const;

    friend bool operator==(const CFieldTable&, const CFieldTable&) = default;

    /// Whether there is such a field in an ended line, both counted from 0.
    bool HasField(std::size_t line, std::size_t column) const
    {
        if (line >= m_lines.size())
            return false;
        const LineBegin& end = line + 1 < m_lines.size() ? m_lines[line + 1] : m_line;
        return column < end.field - m_lines[line].field;
    }

    /// A field of an ended line, both counted from 0; "0" where there is none. Good until the table is changed.
    std::u16string_view Field(std::size_t line, std::size_t column) const
    {
        if (!HasField(line, column))
            return u"0";
        const LineBegin& begin = m_lines[line];
        const std::uint32_t* const fieldEnd = &m_ends[begin.field + column];
        const std::uint32_t fieldBegin = column == 0 ? 0 : fieldEnd[-1];
        return std::u16string_view(m_text).substr(begin.text + fieldBegin, *fieldEnd - fieldBegin);
    }

private:
    struct LineBegin {
        std::size_t text = 0;  ///< where the line begins in the text
        std::size_t field = 0; ///< and with which field

        friend bool operator==(const LineBegin&, const LineBegin&) = default;
    };

    std::u16string m_text;             ///< of all fields, one after the other
    std::vector<std::uint32_t> m_ends; ///< where each field ends, counted from the beginning of its line
    std::vector<LineBegin> m_lines;    ///< those that have ended
    LineBegin m_line;                  ///< the one at hand
};
