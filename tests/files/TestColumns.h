#pragma once

#include "files/Progress.h"
#include "files/RecipeRows.h"
#include "model/ColumnCoding.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

// Columns and watchers that several tests of this folder lay out.

inline ColumnCoding Signed16Column()
{
    return {.title = u"Signed",
            .dataType = DataType::Signed16,
            .dataLength = 1,
            .codeType = CodeType::Bin,
            .integerDigits = 5,
            .minValue = -32768,
            .maxValue = 32767};
}

inline ColumnCoding Hex16Column()
{
    return {.title = u"Hex",
            .dataType = DataType::Hex16,
            .dataLength = 1,
            .codeType = CodeType::Bin,
            .integerDigits = 4,
            .maxValue = 65535};
}

inline ColumnCoding Unsigned32Column()
{
    return {.title = u"Unsigned",
            .dataType = DataType::Unsigned32,
            .dataLength = 2,
            .codeType = CodeType::Bin,
            .integerDigits = 10,
            .maxValue = 4294967295};
}

inline ColumnCoding FloatColumn()
{
    return {.title = u"Float",
            .dataType = DataType::Float,
            .dataLength = 2,
            .codeType = CodeType::Bin,
            .integerDigits = 4,
            .decimalDigits = 1,
            .minValue = -999,
            .maxValue = 9999};
}

inline ColumnCoding DoubleColumn()
{
    return {.title = u"Double",
            .dataType = DataType::Double,
            .dataLength = 4,
            .codeType = CodeType::Bin,
            .integerDigits = 4,
            .decimalDigits = 1,
            .minValue = -999,
            .maxValue = 9999};
}

inline ColumnCoding AnsiColumn(std::int32_t words)
{
    return {.title = u"Name", .dataType = DataType::String, .dataLength = words, .codeType = CodeType::Bin};
}

/// The texts of all cells, row by row.
inline std::vector<std::u16string> TextsOf(const CRecipeRows& rows)
{
    std::vector<std::u16string> texts;
    for (std::int32_t row = 0; row < rows.RowCount(); ++row)
        for (std::size_t column = 0; column < rows.Columns().size(); ++column)
            texts.push_back(rows.Text(row, column));
    return texts;
}

/// Gives up at the call with the number `patience`, counted from 0, and remembers what it was told.
class CImpatientProgress final : public CProgress {
public:
    explicit CImpatientProgress(std::size_t patience) : m_patience(patience) {}

    bool Advance(std::uint64_t done, std::uint64_t total) override
    {
        reports.emplace_back(done, total);
        return reports.size() <= m_patience;
    }

    std::vector<std::pair<std::uint64_t, std::uint64_t>> reports; ///< done and total of each call

private:
    std::size_t m_patience;
};

/// Cuts a file to a length as soon as the first piece of work is through, as another program might.
class CCuttingProgress final : public CProgress {
public:
    CCuttingProgress(std::filesystem::path path, std::uintmax_t length) : m_path(std::move(path)), m_length(length) {}

    bool Advance(std::uint64_t, std::uint64_t) override
    {
        std::filesystem::resize_file(m_path, m_length);
        return true;
    }

private:
    std::filesystem::path m_path;
    std::uintmax_t m_length;
};
