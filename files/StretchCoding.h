#pragma once

#include "files/CellTexts.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Codes cells as a file of words holds them: the one way from what cells show, or were given, to words. A save, a plan
/// of a save and a save of the edited cells alone all take it.
class CStretchCoder {
public:
    /// `rows` must outlive the coder.
    CStretchCoder(const CRecipeRows& rows, RecipeKind kind);

    /// Codes all cells of `count` rows, which may be none, into `words`, which has room for them. The states of cells
    /// may change between two calls, the layout may not.
    void CodeRows(std::int32_t first, std::int32_t count, std::span<std::byte> words);

    /// Codes one cell into `words`, which is as long as the cell is.
    void CodeCell(CellPlace place, std::span<std::byte> words);

    RecipeKind Kind() const { return m_kind; }

private:
    /// A column whose values lie in words; a damaged format may give any number of others.
    struct Column {
        std::size_t index;
        const ColumnCoding* coding;
        std::size_t wholeNumberBytes; ///< 2 or 4 when the column takes exactly the words of a whole number, else 0
    };

    void Code(const Column& column, std::span<std::byte> image, std::size_t& pos);
    void CodeText(const Column& column, std::u16string_view text, std::span<std::byte> image, std::size_t& pos) const;
    bool CodesToItself(const Column& column, std::span<const std::byte> words) const;

    RecipeKind m_kind;
    std::vector<Column> m_columns; ///< by index
    CCellTexts m_texts;
};

/// How many rows of those of `rows` take about so many bytes, at least one.
std::int32_t RowsWithin(std::size_t bytes, const CRecipeRows& rows);

/// Codes every cell of `rows`, in order, into `image`, as a file of `kind` holds it. `image` has rows.StretchBytes()
/// bytes. Progress counts to twice that: coding is one half of a save, writing the other.
Outcome CodeStretch(const CRecipeRows& rows, RecipeKind kind, std::span<std::byte> image, CProgress& progress);
