#pragma once

#include "files/RecipeRows.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

/// A walk over the cells of rows in their order, as writers go: row by row, from left to right. It finds the cells that
/// were given a state without a search and makes all other texts in one buffer. Its steps are so short that they stand
/// here, inline.
class CCellTexts {
public:
    /// `rows` must outlive the walk and stay as they are meanwhile.
    explicit CCellTexts(const CRecipeRows& rows);

    /// Goes to a cell of the rows. Cells may be left out, but not stand before one that the walk was at.
    void MoveTo(std::int32_t row, std::size_t column)
    {
        m_row = row;
        m_column = column;
        m_key = m_rows.CellKey(row, column);
        while (m_next != m_end && m_next->first < m_key)
            ++m_next;
    }

    /// Goes to any cell of the rows, one before the walk's place, too.
    void Seek(std::int32_t row, std::size_t column)
    {
        m_next = m_rows.m_touchedCells.lower_bound(m_rows.CellKey(row, column));
        MoveTo(row, column);
    }

    /// The text of the cell; good until the next call.
    std::u16string_view Text();

    /// Appends the text of the cell to `text`.
    void AppendTo(std::u16string& text) const
    {
        if (IsTouched())
            m_rows.AppendState(m_next->second.state, m_row, m_column, text);
        else
            m_rows.AppendUntouched(m_row, m_column, text);
    }

    /// The bytes that the cell shows, and what follows them; fewer than the cell takes, or none, where the file ended.
    /// None either when the cell was given a text or words, or was not made from words.
    std::span<const std::byte> UntouchedWords() const
    {
        const std::size_t pos = m_rows.PositionInImage(m_row, m_column);
        if (IsTouched() || pos >= m_image.size())
            return {};
        return m_image.subspan(pos);
    }

    /// Whether the cell was given neither a text nor words.
    bool IsUntouched() const { return !IsTouched(); }

    /// The words that the cell was given to be written as they are; empty for any other cell.
    std::u16string_view ExactWords() const
    {
        return IsTouched() && m_next->second.state.IsExact() ? m_next->second.state.Words() : std::u16string_view();
    }

private:
    using TouchedCell = CRecipeRows::TouchedCells::const_iterator;

    bool IsTouched() const { return m_next != m_end && m_next->first == m_key; }

    const CRecipeRows& m_rows;
    std::span<const std::byte> m_image;
    TouchedCell m_next; ///< the first that does not stand before the cell
    TouchedCell m_end;
    std::int32_t m_row = 0;
    std::size_t m_column = 0;
    std::uint64_t m_key = 0;
    std::u16string m_text;
};
