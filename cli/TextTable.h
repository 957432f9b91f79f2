#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Lines of a table in UTF-8 whose cells stand under one another, two blanks between them. To be told every text of a
/// column before the first line is made.
class CTextTable {
public:
    enum class Align { Left, Right };

    explicit CTextTable(const std::vector<Align>& columns);

    /// Widens `column` to hold `text`.
    void MakeRoom(std::size_t column, std::u16string_view text);

    /// Appends the cell of the next column, as AppendPrintable does; the last one ends the line.
    void AppendCell(std::u16string_view text, std::string& lines);

private:
    struct Column {
        Align align;
        std::size_t width;
    };

    std::vector<Column> m_columns;
    std::size_t m_next = 0; ///< the column of the next cell
};
