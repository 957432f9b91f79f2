#pragma once

#include "model/WordCodec.h"
#include "tests/fuzz/Targets.h"

#include <string_view>

/// Checks that the number of any words is stored by the same words again, and that what is said of a typed text is what
/// the codec does with it.
void CheckStoredNumber(const ColumnCoding& column, FuzzBytes words, RecipeKind kind);
void CheckJudgement(const ColumnCoding& column, std::u16string_view text, RecipeKind kind);
