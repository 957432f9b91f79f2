#pragma once

#include "files/CsvFields.h"
#include "files/CsvSplices.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// Text tables for tests: made up at random, and as reading shows them.

using Cells = std::vector<std::vector<std::u16string>>;

/// What the reader shows in the cells of a file.
inline Cells CellsIn(const std::filesystem::path& path, std::size_t rows, std::size_t columns)
{
    CFieldTable fields;
    CNoProgress progress;
    EXPECT_EQ(ReadCsvFields(path, rows, columns, fields, progress), Outcome::Done);
    Cells cells(rows, std::vector<std::u16string>(columns));
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < columns; ++column)
            cells[row][column] = fields.Field(row, column);
    return cells;
}

inline std::u16string& CellAt(Cells& cells, CellPlace place)
{
    return cells[static_cast<std::size_t>(place.row)][place.column];
}

inline Bytes AsciiBytes(std::string_view text)
{
    Bytes bytes(text.size());
    std::transform(text.begin(), text.end(), bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
    return bytes;
}

/// Makes up texts, tables and edits.
class CCsvMaker {
public:
    explicit CCsvMaker(unsigned seed) : m_random(seed) {}

    std::size_t Below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random); }
    bool Happens(int percent) { return Below(100) < static_cast<std::size_t>(percent); }

    /// Up to `longest` of the characters of `from`.
    std::u16string Text(std::u16string_view from, std::size_t longest)
    {
        std::u16string text(Below(longest + 1), u' ');
        for (char16_t& c : text)
            c = from[Below(from.size())];
        return text;
    }

    /// A table in the form that a save writes, though with lines of any number of fields.
    std::u16string TableAsSaved(std::size_t lines, std::size_t fields)
    {
        std::u16string table;
        for (std::size_t line = Below(lines + 1); line > 0; --line) {
            for (std::size_t field = Below(fields + 1); field > 0; --field)
                table += u'"' + Text(u"a0\"\r\u6E29 ", 3) + u"\"\t";
            const std::u16string last = Text(u"a0,", 3);
            table += (Happens(50) ? u'"' + last + u'"' : last) + u"\r\n";
        }
        return table;
    }

    /// Edits of some cells, in order.
    std::vector<CsvEdit> Edits(std::size_t rows, std::size_t columns, std::u16string_view from)
    {
        std::set<CellPlace> places;
        for (std::size_t count = 1 + Below(4); count > 0; --count)
            places.insert({static_cast<std::int32_t>(Below(rows)), static_cast<std::uint32_t>(Below(columns))});
        std::vector<CsvEdit> edits;
        edits.reserve(places.size());
        for (const CellPlace& place : places)
            edits.push_back({place, Text(from, 3)});
        return edits;
    }

private:
    std::mt19937 m_random;
};
