#pragma once

#include "files/FileType.h"
#include "files/RecipeRows.h"
#include "text/Reporter.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

/// Takes the cells of a recipe file one after the other: row by row, from left to right, none left out.
class CCellTaker {
public:
    virtual ~CCellTaker() = default;

    /// `text` is good until this returns.
    virtual void TakeCell(std::int32_t row, std::size_t column, std::u16string_view text) = 0;

    /// Whether further cells are wanted. Asked some times a second.
    virtual bool GoesOn() const { return true; }
};

/// Hands the text of every cell to `taker`, as rows of the geometry of `layout` that were read from the file at `path`
/// (ReadRecipeOnly) show it. No more of the file is kept than a piece, however many rows there are, and what it does
/// not hold costs no memory. Never writes.
///
/// False after a failure, reported exactly once in the type's own words, and when the taker ended it; `taker` may have
/// got some cells then.
bool WalkRecipe(FileType type, const CRecipeRows& layout, const std::filesystem::path& path, CCellTaker& taker,
                CReporter& reporter);
