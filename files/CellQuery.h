#pragma once

#include "model/ColumnCoding.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What is looked for in cells.
struct CellQuery {
    enum class Kind : std::uint8_t {
        Text,
        Number, ///< a cell whose number is the same, however it is written: 7.5 is 7.50
    };

    std::u16string text;
    Kind kind = Kind::Text;
    bool mindsCase = false;   ///< of a text
    bool isWholeCell = false; ///< of a text: the cell shows nothing else

    friend bool operator==(const CellQuery&, const CellQuery&) = default;
};

/// What is told of a query by which nothing can be looked for; nothing for a good one.
std::optional<std::u16string> QueryFault(const CellQuery& query);

/// Looks whether texts of cells are what a query asks for, without an allocation a cell.
///
/// A number is what a cell shows: "1.50" is one and a half, whatever word shows so. In a column of hexadecimal values
/// the query's number is hexadecimal, too. Cells of texts have no number.
class CCellMatcher {
public:
    /// A matcher that finds nothing.
    CCellMatcher() = default;

    /// For a query without a fault; else nothing is found.
    CCellMatcher(CellQuery query, std::span<const ColumnCoding> columns);

    const CellQuery& Query() const { return m_query; }

    /// Whether any cell of the column can be found.
    bool IsFor(std::size_t column) const { return m_chances[column] != Chance::None; }

    /// Whether a cell of the column can be found that shows its words, and was given no text.
    bool IsForWords(std::size_t column) const { return m_chances[column] == Chance::Any; }

    bool Matches(std::size_t column, std::u16string_view text) const;

    /// What becomes of `text`, which matches: each place that was found in it gives way to `with`, and all of it where
    /// the query is for a number or for whole cells.
    std::u16string Replaced(std::u16string_view text, std::u16string_view with) const;

private:
    enum class Chance : std::uint8_t { None, GivenTexts, Any };

    /// A number in the one form that it has: digits without a zero at their outer ends.
    struct Digits {
        bool isNegative = false;
        std::u16string whole;
        std::u16string fraction;

        friend bool operator==(const Digits&, const Digits&) = default;
    };

    struct Column {
        ColumnCoding coding;
        bool isHexadecimal = false;
        std::optional<Digits> number; ///< that is looked for
    };

    Column ColumnOf(const ColumnCoding& coding) const;
    Chance ChanceOf(const Column& column) const;
    bool MayHold(std::u16string_view text) const;
    bool IsAt(std::u16string_view text, std::size_t at) const;
    std::size_t Find(std::u16string_view text, std::size_t from) const;
    static std::optional<Digits> DigitsOf(const ColumnCoding& coding, std::u16string_view text);
    static std::optional<bool> IsPlainly(const Digits& number, std::u16string_view text);
    static std::optional<bool> IsPlainlyHexadecimal(const Digits& number, std::u16string_view text);
    static bool IsSameNumber(const Column& column, std::u16string_view text);

    CellQuery m_query;
    std::u16string m_sought; ///< in lower case unless the case counts
    bool m_folds = false;    ///< cells' texts are to be taken in lower case, too
    std::vector<Column> m_columns;
    std::vector<Chance> m_chances; ///< of the columns
};
