#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// Which rows of the data a table shows: all of them, or some. They keep their order.
class CShownRows {
public:
    void ShowAll(std::int32_t count);                                ///< of so many rows
    void ShowSome(std::vector<std::int32_t> rows, std::int32_t all); ///< ascending, none twice; of so many rows

    /// Shows these rows, too, in any order. How many of them were hidden.
    std::size_t Add(std::vector<std::int32_t> rows);

    bool AreSome() const { return m_areSome; } ///< some row is hidden
    std::int32_t All() const { return m_all; }
    std::int32_t Count() const { return m_areSome ? static_cast<std::int32_t>(m_rows.size()) : m_all; }

    std::int32_t RowAt(std::int32_t index) const; ///< -1 outside of those shown

    /// Where the row stands among those shown; nothing for a hidden one.
    std::optional<std::int32_t> IndexOf(std::int32_t row) const;

    /// Where the first row stands that is not above `row`; the last one where all are. -1 where none is shown.
    std::int32_t IndexNear(std::int32_t row) const;

private:
    bool m_areSome = false;
    std::int32_t m_all = 0;
    std::vector<std::int32_t> m_rows; ///< those shown, while some are hidden
};
