#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// Where a cell stands in the rows: data row and data column, counted from 0. Ordered as writers go.
struct CellPlace {
    std::int32_t row = 0;
    std::uint32_t column = 0;

    friend bool operator==(const CellPlace&, const CellPlace&) = default;
    friend bool operator<(const CellPlace& a, const CellPlace& b)
    {
        return a.row != b.row ? a.row < b.row : a.column < b.column;
    }
};

/// What a cell's words are made of when it is saved: of the words it was read from, of a text that the user gave it, or
/// of the very words that the user asked for.
class CCellState {
public:
    enum class Kind : std::uint8_t {
        Untouched, ///< shows the words it was read from; a save codes what it shows
        Text,      ///< shows a text, and a save codes it
        Exact,     ///< shows given words, and a save writes them as they are
    };

    CCellState() = default; ///< untouched

    static CCellState OfText(std::u16string text) { return {Kind::Text, std::move(text)}; }

    /// `words` in the order of their addresses, one a unit: as many as the cell takes.
    static CCellState OfWords(std::u16string_view words) { return {Kind::Exact, std::u16string(words)}; }

    bool IsUntouched() const { return m_kind == Kind::Untouched; }
    bool IsText() const { return m_kind == Kind::Text; }
    bool IsExact() const { return m_kind == Kind::Exact; }
    std::u16string_view Text() const { return m_content; }  ///< of a text
    std::u16string_view Words() const { return m_content; } ///< of exact words

    /// The memory that it takes besides its own size, in bytes.
    std::size_t FurtherBytes() const
    {
        constexpr std::size_t kWithin = 7; // units that a string holds without memory of its own
        return m_content.capacity() > kWithin ? 2 * (m_content.capacity() + 1) : 0;
    }

    friend bool operator==(const CCellState&, const CCellState&) = default;

private:
    CCellState(Kind kind, std::u16string content) : m_content(std::move(content)), m_kind(kind) {}

    std::u16string m_content;
    Kind m_kind = Kind::Untouched;
};

/// One cell's part of an edit: the state that it is to have, and, once the edit was made, the one that it had before.
struct CellEdit {
    CellPlace place;
    CCellState other;
};
