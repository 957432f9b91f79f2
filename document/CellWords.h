#pragma once

#include "document/CellJudge.h"

#include <cstddef>
#include <span>
#include <vector>

class CRecipeDocument;

/// The words that a cell stands for: what the file holds, or, of an edited cell, what a save would store.
struct CellWords {
    std::vector<std::byte> bytes; ///< low bytes first; those of cells after it may follow
    std::size_t own = 0;          ///< how many of them are the cell's own; fewer than it takes where the file ends
    std::size_t whole = 0;        ///< how many it takes
};

/// Those of a cell in rows of words, at most `most` bytes of it, and of the cells after it until there are `ahead`.
CellWords CellWordsOf(const CRecipeDocument& document, CellPlace place, std::size_t most, std::size_t ahead);

/// What giving a cell these words, as many as it takes, comes to: refused where they lie outside its limits, or where
/// what they are shown as does not pass its check.
CellVerdict JudgeWords(const CRecipeDocument& document, CellPlace place, std::span<const std::byte> bytes);
