#pragma once

#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"

#include <cstddef>
#include <span>

/// Codes the text of every cell of `rows`, in order, into `image`, as a file of `kind` holds it. `image` has
/// rows.StretchBytes() bytes. Progress counts to twice that: coding is one half of a save, writing the other.
Outcome CodeStretch(const CRecipeRows& rows, RecipeKind kind, std::span<std::byte> image, CProgress& progress);
